#pragma once // The plain values that drawing code hands to the graphics device.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace resource
{

/// Format code of a texture. 0 to 4 are block-compressed. 5 is no layout.
enum class TextureResourceLayout : uint32_t
{
    Bc1 = 0,
    Bc2 = 1,
    Bc3 = 2,
    Bc4 = 3,
    Bc5 = 4,
    R11G11B10Float = 6,
    Rgba8 = 7,
    Rg16 = 8,
    R16 = 9,
    R32 = 10,
    R32G8X24 = 11,
    R24G8 = 12,
    R8 = 13,
};

[[nodiscard]] constexpr bool isCompressed(TextureResourceLayout eLayout)
{
    return static_cast<uint32_t>(eLayout) < 5;
}

} // namespace resource

namespace rend
{

/// A resource of the device; 0 is null. The tag keeps the kinds apart.
template <class Tag>
struct Handle
{
    uint32_t uId = 0;
    explicit operator bool() const { return uId != 0; }
    bool operator==(const Handle&) const = default;
};
using BufferHandle = Handle<struct BufferTag>;
using TextureHandle = Handle<struct TextureTag>;
using PipelineHandle = Handle<struct PipelineTag>;
using TargetHandle = Handle<struct TargetTag>;

enum class BufferKind : uint8_t
{
    Vertex = 1,
    Index,
    Constant,
};

struct BufferDesc
{
    std::string sName;
    size_t uSize = 0;   ///< bytes
    size_t uStride = 0; ///< bytes from element to element; 0 for constant buffers
    BufferKind eKind = BufferKind::Vertex;
    bool bDynamic = false; ///< rewritten every frame
};

struct TextureDesc
{
    std::string sName;
    int iWidth = 1;
    int iHeight = 1;
    int iLayers = 0; ///< 0: a plain texture; else an array
    int iMips = 1;
    resource::TextureResourceLayout eLayout = resource::TextureResourceLayout::Rgba8;
    bool bLuminanceAlpha = false; ///< two bytes a texel, read as LLLA (layout Rg16's bytes halved: fonts)
    bool bSrgb = false;           ///< colour bytes are sRGB and read as linear
};

struct TextureRegion
{
    int iX = 0;
    int iY = 0;
    int iWidth = 0;
    int iHeight = 0;
    int iLayer = 0;
    int iMip = 0;
};

struct TargetDesc
{
    std::string sName;
    int iWidth = 1;
    int iHeight = 1;
    bool bDepth = true;
    bool bHdr = false;        ///< R11G11B10 float instead of RGBA8
    bool bWindowRows = false; ///< keeps its rows as the window does, which makes copies to it cheap
};

enum class VertexFormat : uint8_t
{
    Float1,
    Float2,
    Float3,
    Float4,
    Half2,
    Half4,
    Unorm8x4,
    Uint1,
};

struct VertexAttribute
{
    uint32_t uLocation = 0; ///< layout(location = n) of the vertex shader
    VertexFormat eFormat = VertexFormat::Float3;
    uint32_t uOffset = 0; ///< bytes within an element
    uint32_t uSlot = 0;   ///< vertex buffer slot
};

struct VertexSlot
{
    uint32_t uStride = 0;
    bool bPerInstance = false;
};

enum class Topology : uint8_t
{
    Triangles,
    TriangleStrip,
    Lines,
    LineStrip,
};

enum class BlendMode : uint8_t
{
    Opaque,
    Alpha,         ///< source alpha over
    Premultiplied, ///< source already times its alpha
    Additive,
};

enum class DepthMode : uint8_t
{
    None,
    Test,      ///< reversed depth: greater or equal passes
    TestWrite, ///< and writes
};

enum class CullMode : uint8_t
{
    None,
    Back, ///< counter-clockwise is front
    Front,
};

struct PipelineDesc
{
    std::string sName;
    std::string sVertexSource;   ///< GLSL, without "#version"; VERTEX_STAGE is defined
    std::string sFragmentSource; ///< GLSL, without "#version"; FRAGMENT_STAGE is defined
    std::vector<std::string> vecDefines;
    std::vector<VertexSlot> vecSlots;
    std::vector<VertexAttribute> vecAttributes;
    Topology eTopology = Topology::Triangles;
    BlendMode eBlend = BlendMode::Opaque;
    DepthMode eDepth = DepthMode::TestWrite;
    CullMode eCull = CullMode::Back;
};

enum class SamplerMode : uint8_t
{
    LinearClamp,
    LinearWrap,
    PointClamp,
    AnisotropicWrap, ///< trilinear with mips
    ShadowCompare,
};

enum class IndexWidth : uint8_t
{
    Bits16,
    Bits32,
};

struct PassSettings
{
    bool bClearColour = true;
    bool bClearDepth = true; ///< to 0, the far end of reversed depth
    std::array<float, 4> arrColour{0.0f, 0.0f, 0.0f, 1.0f};
};

} // namespace rend
