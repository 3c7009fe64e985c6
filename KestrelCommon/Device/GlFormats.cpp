#include "KestrelCommon/Device/GlFormats.h"

namespace rend
{

GlTextureFormat glTextureFormat(const TextureDesc& desc)
{
    using enum resource::TextureResourceLayout;
    if (desc.bLuminanceAlpha)
        return {GL_RG8, GL_RG, GL_UNSIGNED_BYTE};
    const bool bSrgb = desc.bSrgb;
    switch (desc.eLayout)
    {
    case Bc1:
        return {bSrgb ? GLenum(GL_COMPRESSED_SRGB_ALPHA_S3TC_DXT1_EXT)
                      : GLenum(GL_COMPRESSED_RGBA_S3TC_DXT1_EXT),
                0, 0};
    case Bc2:
        return {bSrgb ? GLenum(GL_COMPRESSED_SRGB_ALPHA_S3TC_DXT3_EXT)
                      : GLenum(GL_COMPRESSED_RGBA_S3TC_DXT3_EXT),
                0, 0};
    case Bc3:
        return {bSrgb ? GLenum(GL_COMPRESSED_SRGB_ALPHA_S3TC_DXT5_EXT)
                      : GLenum(GL_COMPRESSED_RGBA_S3TC_DXT5_EXT),
                0, 0};
    case Bc4:
        return {GL_COMPRESSED_RED_RGTC1, 0, 0};
    case Bc5:
        return {GL_COMPRESSED_RG_RGTC2, 0, 0};
    case R11G11B10Float:
        return {GL_R11F_G11F_B10F, GL_RGB, GL_UNSIGNED_INT_10F_11F_11F_REV};
    case Rgba8:
        return {bSrgb ? GLenum(GL_SRGB8_ALPHA8) : GLenum(GL_RGBA8), GL_RGBA, GL_UNSIGNED_BYTE};
    case Rg16:
        return {GL_RG16, GL_RG, GL_UNSIGNED_SHORT};
    case R16:
        return {GL_R16, GL_RED, GL_UNSIGNED_SHORT};
    case R32:
        return {GL_R32F, GL_RED, GL_FLOAT};
    case R32G8X24:
        return {GL_DEPTH32F_STENCIL8, GL_DEPTH_STENCIL, GL_FLOAT_32_UNSIGNED_INT_24_8_REV};
    case R24G8:
        return {GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL, GL_UNSIGNED_INT_24_8};
    case R8:
        return {GL_R8, GL_RED, GL_UNSIGNED_BYTE};
    }
    return {};
}

GlVertexFormat glVertexFormat(VertexFormat eFormat)
{
    switch (eFormat)
    {
    case VertexFormat::Float1:
        return {1, GL_FLOAT, false, false};
    case VertexFormat::Float2:
        return {2, GL_FLOAT, false, false};
    case VertexFormat::Float3:
        return {3, GL_FLOAT, false, false};
    case VertexFormat::Float4:
        return {4, GL_FLOAT, false, false};
    case VertexFormat::Half2:
        return {2, GL_HALF_FLOAT, false, false};
    case VertexFormat::Half4:
        return {4, GL_HALF_FLOAT, false, false};
    case VertexFormat::Unorm8x4:
        return {4, GL_UNSIGNED_BYTE, true, false};
    case VertexFormat::Uint1:
        return {1, GL_UNSIGNED_INT, false, true};
    }
    return {};
}

GLenum glTopology(Topology eTopology)
{
    switch (eTopology)
    {
    case Topology::Triangles:
        return GL_TRIANGLES;
    case Topology::TriangleStrip:
        return GL_TRIANGLE_STRIP;
    case Topology::Lines:
        return GL_LINES;
    case Topology::LineStrip:
        return GL_LINE_STRIP;
    }
    return GL_TRIANGLES;
}

} // namespace rend
