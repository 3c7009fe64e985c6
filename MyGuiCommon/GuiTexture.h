#pragma once // A texture of MyGUI on the graphics device.

#include "KestrelCommon/Device/GraphicsDeviceI.h"

#include <MyGUI_ITexture.h>
#include <span>
#include <string>
#include <vector>

class GuiDataManager;

/// Keeps no pixels but while it is locked.
class GuiTexture : public MyGUI::ITexture
{
public:
    /// Both are borrowed.
    GuiTexture(std::string sName, rend::GraphicsDeviceI& device, const GuiDataManager& data);
    ~GuiTexture() override;
    GuiTexture(const GuiTexture&) = delete;
    GuiTexture& operator=(const GuiTexture&) = delete;

    [[nodiscard]] rend::TextureHandle handle() const { return m_texture; }

    const std::string& getName() const override { return m_sName; }
    void createManual(int iWidth, int iHeight, MyGUI::TextureUsage usage, MyGUI::PixelFormat format) override;
    /// A file that can't be read leaves an empty texture of 1 x 1.
    void loadFromFile(const std::string& sFile) override;
    void saveToFile(const std::string& sFile) override;
    void setShader(const std::string&) override {}
    void destroy() override;
    void* lock(MyGUI::TextureUsage access) override;
    void unlock() override;
    bool isLocked() const override { return m_bLocked; }
    int getWidth() const override { return m_iWidth; }
    int getHeight() const override { return m_iHeight; }
    MyGUI::PixelFormat getFormat() const override { return m_format; }
    MyGUI::TextureUsage getUsage() const override { return m_usage; }
    size_t getNumElemBytes() const override { return static_cast<size_t>(m_format.getBytesPerPixel()); }

private:
    void upload(std::span<const std::byte> spanPixels, size_t uBytesPerPixel);

    std::string m_sName;
    rend::GraphicsDeviceI& m_device;
    const GuiDataManager& m_data;
    rend::TextureHandle m_texture;
    int m_iWidth = 0;
    int m_iHeight = 0;
    MyGUI::PixelFormat m_format;
    MyGUI::TextureUsage m_usage;
    bool m_bLocked = false;
    std::vector<uint8_t> m_vecLocked; ///< in MyGUI's own layout
};
