#pragma once // Writes the models, their renderables, the asset database and the pictures that they share.

#include "Tools/ContentBuilder/OutputFolder.h"

#include <functional>

namespace content
{

/// Jobs for any threads; each is false, with a line on standard error, when a file can't be written. What
/// was made from inputs of the same hash stays as it is. The folder must outlive them.
[[nodiscard]] std::vector<std::function<bool()>> modelJobs(uint64_t uModels, uint64_t uPictures,
                                                           OutputFolder& output);

} // namespace content
