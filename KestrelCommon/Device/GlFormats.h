#pragma once // What the device's codes are in OpenGL. For the GL device's own sources.

#include "KestrelCommon/Device/DeviceTypes.h"

#include <epoxy/gl.h>

namespace rend
{

struct GlTextureFormat
{
    GLenum eInternal = 0; ///< 0: no such layout
    GLenum eFormat = 0;   ///< of the bytes handed over; 0 for compressed layouts
    GLenum eType = 0;
};

struct GlVertexFormat
{
    GLint iCount = 0;
    GLenum eType = 0;
    bool bNormalized = false;
    bool bInteger = false;
};

[[nodiscard]] GlTextureFormat glTextureFormat(const TextureDesc& desc);
[[nodiscard]] GlVertexFormat glVertexFormat(VertexFormat eFormat);
[[nodiscard]] GLenum glTopology(Topology eTopology);

} // namespace rend
