#pragma once // Shaders as content: reads their text.

#include "KestrelCommon/Device/DeviceTypes.h"
#include "KestrelCommon/Resources/PathResolver.h"

namespace resource
{

/// Reads "$GAME_DATA/Shaders/glsl/<sName>.glsl", which holds both stages between "#ifdef VERTEX_STAGE"
/// and "#ifdef FRAGMENT_STAGE", into the two sources of the description, and the name.
/// A line '#include "file"' is replaced by that file of the same folder, up to 8 levels deep.
/// False with one line on the shader channel when a file is missing; the description stays as it was.
[[nodiscard]] bool loadShaderSource(const PathResolver& fnResolve, std::string_view sName,
                                    rend::PipelineDesc& desc);

} // namespace resource
