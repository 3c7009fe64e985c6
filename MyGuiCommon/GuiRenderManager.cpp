#include "MyGuiCommon/GuiRenderManager.h"

#include "KestrelCommon/Core/Console.h"
#include "MyGuiCommon/GuiDataManager.h"
#include "MyGuiCommon/GuiTexture.h"

#include <MyGUI_VertexData.h>

namespace
{

static_assert(sizeof(MyGUI::Vertex) == 24);

/// The vertices stay in memory, where MyGUI writes them, and go up whole when it is done.
class GuiVertexBuffer : public MyGUI::IVertexBuffer
{
public:
    explicit GuiVertexBuffer(rend::GraphicsDeviceI& device) : m_device(device) {}
    ~GuiVertexBuffer() override { m_device.destroyBuffer(m_buffer); }
    GuiVertexBuffer(const GuiVertexBuffer&) = delete;
    GuiVertexBuffer& operator=(const GuiVertexBuffer&) = delete;

    [[nodiscard]] rend::BufferHandle handle() const { return m_buffer; }

    void setVertexCount(size_t uCount) override { m_uCount = uCount; }
    size_t getVertexCount() const override { return m_uCount; }

    MyGUI::Vertex* lock() override
    {
        if (m_uCount > m_vecVertices.size())
        {
            m_vecVertices.resize(std::max(m_uCount, m_vecVertices.size() * 2));
            m_device.destroyBuffer(m_buffer);
            m_buffer = m_device.createBuffer({.sName = "gui",
                                              .uSize = m_vecVertices.size() * sizeof(MyGUI::Vertex),
                                              .uStride = sizeof(MyGUI::Vertex),
                                              .eKind = rend::BufferKind::Vertex,
                                              .bDynamic = true},
                                             {});
        }
        return m_vecVertices.data();
    }

    void unlock() override
    {
        if (m_uCount > 0)
            m_device.updateBuffer(m_buffer, 0, std::as_bytes(std::span(m_vecVertices).first(m_uCount)));
    }

private:
    rend::GraphicsDeviceI& m_device;
    rend::BufferHandle m_buffer;
    size_t m_uCount = 0;
    std::vector<MyGUI::Vertex> m_vecVertices;
};

rend::PipelineDesc pipelineDesc(const std::string& sShader)
{
    rend::PipelineDesc desc;
    desc.sName = "gui";
    desc.sVertexSource = "#define QM_VERTEX 1\n" + sShader;
    desc.sFragmentSource = "#define QM_FRAGMENT 1\n" + sShader;
    desc.vecSlots = {{.uStride = sizeof(MyGUI::Vertex)}};
    desc.vecAttributes = {{.uLocation = 0, .eFormat = rend::VertexFormat::Float3, .uOffset = 0},
                          {.uLocation = 1, .eFormat = rend::VertexFormat::Unorm8x4, .uOffset = 12},
                          {.uLocation = 2, .eFormat = rend::VertexFormat::Float2, .uOffset = 16}};
    desc.eBlend = rend::BlendMode::Alpha;
    desc.eDepth = rend::DepthMode::None;
    desc.eCull = rend::CullMode::None;
    return desc;
}

} // namespace

GuiRenderManager::GuiRenderManager(rend::GraphicsDeviceI& device, const GuiDataManager& data)
    : m_device(device),
      m_data(data)
{
    m_info.maximumDepth = 1.0f;
}

GuiRenderManager::~GuiRenderManager()
{
    m_mapTextures.clear();
    m_device.destroyTexture(m_white);
    m_device.destroyPipeline(m_pipeline);
}

bool GuiRenderManager::initialise(const std::string& sShader)
{
    m_pipeline = m_device.createPipeline(pipelineDesc(sShader));
    m_white = m_device.createTexture({.sName = "gui white"});
    const std::array<uint8_t, 4> arrWhite{255, 255, 255, 255};
    m_device.updateTexture(m_white, {.iWidth = 1, .iHeight = 1}, 4, std::as_bytes(std::span(arrWhite)));
    return static_cast<bool>(m_pipeline);
}

void GuiRenderManager::drawFrame(float fDt, rend::TargetHandle target)
{
    m_target = target;
    onFrameEvent(fDt);
    begin();
    onRenderToTarget(this, m_bUpdate);
    end();
    m_bUpdate = false;
}

void GuiRenderManager::begin()
{
    m_device.beginPass(m_target, {.bClearColour = false, .bClearDepth = false});
    m_device.setPipeline(m_pipeline);
}

void GuiRenderManager::end()
{
    m_device.endPass();
}

void GuiRenderManager::doRender(MyGUI::IVertexBuffer* pBuffer, MyGUI::ITexture* pTexture, size_t uCount)
{
    if (uCount == 0)
        return;
    const rend::TextureHandle texture = pTexture ? static_cast<GuiTexture*>(pTexture)->handle() : m_white;
    m_device.setTexture(0, texture, rend::SamplerMode::LinearClamp);
    m_device.setVertexBuffer(0, static_cast<GuiVertexBuffer*>(pBuffer)->handle());
    m_device.draw(static_cast<uint32_t>(uCount), 0);
}

MyGUI::IVertexBuffer* GuiRenderManager::createVertexBuffer()
{
    return new GuiVertexBuffer(m_device);
}

void GuiRenderManager::destroyVertexBuffer(MyGUI::IVertexBuffer* pBuffer)
{
    delete pBuffer;
}

MyGUI::ITexture* GuiRenderManager::createTexture(const std::string& sName)
{
    auto& pTexture = m_mapTextures[sName];
    pTexture = std::make_unique<GuiTexture>(sName, m_device, m_data);
    return pTexture.get();
}

void GuiRenderManager::destroyTexture(MyGUI::ITexture* pTexture)
{
    if (pTexture)
        m_mapTextures.erase(std::string(pTexture->getName()));
}

MyGUI::ITexture* GuiRenderManager::getTexture(const std::string& sName)
{
    const auto it = m_mapTextures.find(sName);
    return it == m_mapTextures.end() ? nullptr : it->second.get();
}

bool GuiRenderManager::isFormatSupported(MyGUI::PixelFormat, MyGUI::TextureUsage usage)
{
    return !usage.isValue(MyGUI::TextureUsage::RenderTarget);
}

void GuiRenderManager::setViewSize(int iWidth, int iHeight)
{
    if (iWidth <= 0 || iHeight <= 0)
        return;
    m_viewSize.set(iWidth, iHeight);
    m_info.pixScaleX = 1.0f / static_cast<float>(iWidth);
    m_info.pixScaleY = 1.0f / static_cast<float>(iHeight);
    m_info.aspectCoef = static_cast<float>(iHeight) / static_cast<float>(iWidth);
    onResizeView(m_viewSize);
    m_bUpdate = true;
}

void GuiRenderManager::registerShader(const std::string& sName, const std::string&, const std::string&)
{
    QM_LOG_WARNING("The interface has one shader; '", sName, "' is left out");
}
