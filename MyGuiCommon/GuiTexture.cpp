#include "MyGuiCommon/GuiTexture.h"

#include "KestrelCommon/Core/Console.h"
#include "MyGuiCommon/GuiDataManager.h"
#include "MyGuiCommon/GuiPicture.h"

namespace
{

constexpr std::array<uint8_t, 4> s_arrClear{};

/// MyGUI keeps colours as blue, green, red, alpha; the device takes red first and no three-byte texels.
std::vector<uint8_t> toRgba(const std::vector<uint8_t>& vecIn, size_t uBytes)
{
    std::vector<uint8_t> vecOut(vecIn.size() / uBytes * 4);
    for (size_t i = 0, o = 0; o < vecOut.size(); i += uBytes, o += 4)
    {
        const uint8_t* pIn = vecIn.data() + i;
        vecOut[o] = uBytes == 1 ? pIn[0] : pIn[2];
        vecOut[o + 1] = uBytes == 1 ? pIn[0] : pIn[1];
        vecOut[o + 2] = pIn[0];
        vecOut[o + 3] = uBytes == 4 ? pIn[3] : 255;
    }
    return vecOut;
}

} // namespace

GuiTexture::GuiTexture(std::string sName, rend::GraphicsDeviceI& device, const GuiDataManager& data)
    : m_sName(std::move(sName)),
      m_device(device),
      m_data(data)
{
}

GuiTexture::~GuiTexture()
{
    m_device.destroyTexture(m_texture);
}

void GuiTexture::destroy()
{
    m_device.destroyTexture(m_texture);
    m_texture = {};
    m_iWidth = 0;
    m_iHeight = 0;
}

void GuiTexture::createManual(int iWidth, int iHeight, MyGUI::TextureUsage usage, MyGUI::PixelFormat format)
{
    destroy();
    m_iWidth = std::max(iWidth, 1);
    m_iHeight = std::max(iHeight, 1);
    m_usage = usage;
    m_format = format;
    rend::TextureDesc desc;
    desc.sName = m_sName;
    desc.iWidth = m_iWidth;
    desc.iHeight = m_iHeight;
    desc.bLuminanceAlpha = format == MyGUI::PixelFormat::L8A8;
    desc.eLayout =
        desc.bLuminanceAlpha ? resource::TextureResourceLayout::Rg16 : resource::TextureResourceLayout::Rgba8;
    m_texture = m_device.createTexture(desc);
}

void GuiTexture::upload(std::span<const std::byte> spanPixels, size_t uBytesPerPixel)
{
    m_device.updateTexture(m_texture, {.iWidth = m_iWidth, .iHeight = m_iHeight},
                           static_cast<size_t>(m_iWidth) * uBytesPerPixel, spanPixels);
}

void GuiTexture::loadFromFile(const std::string& sFile)
{
    const std::optional<resource::Picture> picture = loadGuiPicture(m_data.realPath(sFile));
    createManual(picture ? picture->iWidth : 1, picture ? picture->iHeight : 1,
                 MyGUI::TextureUsage::Static | MyGUI::TextureUsage::Write, MyGUI::PixelFormat::R8G8B8A8);
    upload(picture ? std::span<const std::byte>(picture->vecPixels) : std::as_bytes(std::span(s_arrClear)),
           4);
}

void GuiTexture::saveToFile(const std::string& sFile)
{
    QM_LOG_WARNING("Textures of the interface are not saved: ", sFile);
}

void* GuiTexture::lock(MyGUI::TextureUsage)
{
    m_vecLocked.assign(static_cast<size_t>(m_iWidth) * static_cast<size_t>(m_iHeight) * getNumElemBytes(), 0);
    m_bLocked = true;
    return m_vecLocked.data();
}

void GuiTexture::unlock()
{
    if (!m_bLocked)
        return;
    const size_t uBytes = getNumElemBytes();
    if (uBytes == 2)
        upload(std::as_bytes(std::span(m_vecLocked)), 2);
    else if (uBytes > 0)
        upload(std::as_bytes(std::span<const uint8_t>(toRgba(m_vecLocked, uBytes))), 4);
    m_vecLocked = {};
    m_bLocked = false;
}
