#pragma once // Pictures for the interface.

#include "KestrelCommon/Resources/Picture.h"

#include <optional>
#include <string>

/// Reads a picture file. Nothing, with one error line, when that fails. Clear pixels beside drawn
/// ones take their colour, so that drawing at another size leaves no dark rim.
[[nodiscard]] std::optional<resource::Picture> loadGuiPicture(const std::string& sRealPath);

/// The second half of it: colours only, alpha stays.
void bleedColours(resource::Picture& picture);
