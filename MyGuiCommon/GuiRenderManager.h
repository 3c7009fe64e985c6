#pragma once // Draws MyGUI through the graphics device.

#include "KestrelCommon/Device/GraphicsDeviceI.h"

#include <MyGUI_RenderManager.h>
#include <map>
#include <memory>
#include <string>

class GuiDataManager;
class GuiTexture;

/// MyGUI's renderer: its vertex lists and textures as buffers and textures of the device.
///
/// Colours are written as they are, as sRGB bytes, over what the target holds.
/// Lifetime: borrows the device and the data manager; lives as long as the GUI.
/// Threads:  main thread only.
class GuiRenderManager : public MyGUI::RenderManager, public MyGUI::IRenderTarget
{
public:
    GuiRenderManager(rend::GraphicsDeviceI& device, const GuiDataManager& data);
    ~GuiRenderManager() override;

    /// Compiles the pipeline from the text of "gui.glsl". False when that fails.
    [[nodiscard]] bool initialise(const std::string& sShader);

    /// Runs the widgets' clocks by dt seconds and draws all layers in a pass of its own; a null
    /// target is the window's.
    void drawFrame(float fDt, rend::TargetHandle target);

    // MyGUI::RenderManager

    MyGUI::IVertexBuffer* createVertexBuffer() override;
    void destroyVertexBuffer(MyGUI::IVertexBuffer* pBuffer) override;
    MyGUI::ITexture* createTexture(const std::string& sName) override;
    void destroyTexture(MyGUI::ITexture* pTexture) override;
    MyGUI::ITexture* getTexture(const std::string& sName) override;
    const MyGUI::IntSize& getViewSize() const override { return m_viewSize; }
    MyGUI::VertexColourType getVertexFormat() const override { return MyGUI::VertexColourType::ColourABGR; }
    bool isFormatSupported(MyGUI::PixelFormat format, MyGUI::TextureUsage usage) override;
    void setViewSize(int iWidth, int iHeight) override;
    void registerShader(const std::string& sName, const std::string& sVertexFile,
                        const std::string& sFragmentFile) override;

    // MyGUI::IRenderTarget

    void begin() override;
    void end() override;
    void doRender(MyGUI::IVertexBuffer* pBuffer, MyGUI::ITexture* pTexture, size_t uCount) override;
    const MyGUI::RenderTargetInfo& getInfo() const override { return m_info; }

private:
    rend::GraphicsDeviceI& m_device;
    const GuiDataManager& m_data;
    rend::PipelineHandle m_pipeline;
    rend::TextureHandle m_white; ///< for what is drawn without a texture
    rend::TargetHandle m_target;
    MyGUI::IntSize m_viewSize;
    MyGUI::RenderTargetInfo m_info;
    bool m_bUpdate = true;
    std::map<std::string, std::unique_ptr<GuiTexture>, std::less<>> m_mapTextures;
};
