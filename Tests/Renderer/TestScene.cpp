#include "Tests/Renderer/TestScene.h"

#include "KestrelCommon/Core/FrameClock.h"

#include <glm/geometric.hpp>

#include <cstdlib>

namespace
{

struct Vertex
{
    glm::vec3 normal;
    float fHeight;
    uint32_t uColour; ///< bytes from the highest: R, G, B, A
};
static_assert(sizeof(Vertex) == 20);

template <class T>
std::span<const std::byte> bytesOf(const std::vector<T>& vec)
{
    return std::as_bytes(std::span(vec));
}

float waves(float fX, float fY, int iOctaves)
{
    float fSum = 0.0f;
    float fSize = 1.0f;
    for (int i = 0; i < iOctaves; ++i)
    {
        fSum += fSize * std::sin(fX + 1.7f * std::sin(fY * 0.6f + static_cast<float>(i))) *
                std::cos(fY + 0.7f * std::sin(fX * 0.8f));
        const float fTurned = fX * 1.55f + fY * 1.1f;
        fY = fY * 1.55f - fX * 1.1f + 3.1f;
        fX = fTurned;
        fSize *= 0.47f;
    }
    return fSum;
}

float ramp(float fFrom, float fTo, float f)
{
    const float t = std::clamp((f - fFrom) / (fTo - fFrom), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

} // namespace

TestGroundSample hillsAt(float fX, float fY, float fSize)
{
    const float fScale = 9.0f / fSize;
    const auto height = [&](float x, float y)
    {
        const float fHills = waves(x * fScale, y * fScale, 6);
        const float fCrest = 1.0f - std::abs(waves(x * fScale * 0.7f + 4.0f, y * fScale * 0.7f, 5));
        return fSize * (0.03f * fHills + 0.075f * fCrest * ramp(0.1f, 0.8f, x / fSize));
    };
    TestGroundSample sample;
    sample.fHeight = height(fX, fY);
    const float fSlope = std::max(std::abs(height(fX + 1, fY) - height(fX - 1, fY)),
                                  std::abs(height(fX, fY + 1) - height(fX, fY - 1))) *
                         0.5f;
    const float fRelative = sample.fHeight / fSize + 0.006f * waves(fX * 0.3f, fY * 0.3f, 3);
    const float fPatch = waves(fX * 0.06f + 2.0f, fY * 0.06f, 4);
    auto& w = sample.arrWeights;
    w[6] = ramp(0.55f, 0.85f, fSlope);
    w[7] = ramp(0.075f, 0.095f, fRelative) * (1.0f - w[6]);
    w[5] = ramp(-0.012f, -0.03f, fRelative) * (1.0f - w[6]);
    w[4] = ramp(0.35f, 0.55f, fSlope) * (1.0f - w[6]) * (1.0f - w[7]);
    const float fRest = (1.0f - w[6]) * (1.0f - w[7]) * (1.0f - w[5]) * (1.0f - w[4]);
    w[0] = ramp(-0.2f, 0.3f, fPatch) * fRest;
    w[3] = ramp(0.1f, 0.5f, waves(fX * 0.045f, fY * 0.045f + 8.0f, 3)) * (fRest - w[0]);
    w[1] = ramp(-0.1f, -0.5f, fPatch) * (fRest - w[0] - w[3]);
    const float fTone = 0.75f + 0.1f * waves(fX * 0.1f, fY * 0.1f, 3);
    sample.arrColour = {static_cast<uint8_t>(std::clamp(fTone, 0.5f, 0.88f) * 255.0f),
                        static_cast<uint8_t>(std::clamp(fTone, 0.5f, 0.88f) * 255.0f),
                        static_cast<uint8_t>(std::clamp(fTone, 0.5f, 0.88f) * 255.0f)};
    return sample;
}

bool TestScene::isAvailable()
{
    return std::filesystem::exists(std::filesystem::path(QM_GAME_DIR) / "Data/Shaders/glsl");
}

TestScene::TestScene(int iWidth, int iHeight, bool bForceHardwarePath)
{
    m_pContext = rend::EglContext::create();
    if (!m_pContext)
        return;
    m_pDevice = rend::createGlDevice(*m_pContext, {.iWidth = iWidth,
                                                   .iHeight = iHeight,
                                                   .cacheFolder = {},
                                                   .bForceHardwarePath = bForceHardwarePath,
                                                   .bDebugOutput = true});
    if (!m_pDevice)
        return;
    const auto resolve = [](std::string_view sPath)
    {
        constexpr std::string_view s_sKey = "$GAME_DATA/";
        constexpr std::string_view s_sSurvivalKey = "$SURVIVAL_DATA/";
        if (sPath.starts_with(s_sSurvivalKey))
            return std::filesystem::path(QM_GAME_DIR) / "Survival" / sPath.substr(s_sSurvivalKey.size());
        return std::filesystem::path(QM_GAME_DIR) / "Data" /
               (sPath.starts_with(s_sKey) ? sPath.substr(s_sKey.size()) : sPath);
    };
    m_pResources = std::make_unique<resource::ResourceManager>(*m_pDevice, resolve, 2, false);
    m_pResources->init();
    m_pRenderer = std::make_unique<rend::Renderer>(*m_pDevice, *m_pResources);
    m_bReady = m_pRenderer->init();
    m_pResources->initDefaults();
    m_pRenderer->setDebugDrawer(&m_debugDrawer);

    constexpr std::array<const char*, 9> s_arrNames = {"grass_meadow", "grass_dry",    "dirt_packed",
                                                       "forest_floor", "gravel_river", "sand_dune",
                                                       "rock_cliff",   "snow_fresh",   "turf_worn"};
    const auto load = [&](const char* pEnding, resource::TextureResourceLayout eLayout)
    {
        std::vector<std::string> vecPaths;
        for (const char* pName : s_arrNames)
            vecPaths.push_back(std::string("$GAME_DATA/Terrain/Materials/gnd_") + pName + pEnding);
        return m_pResources->loadTextureArray(vecPaths, 512, 512, eLayout, 0, 0);
    };
    rend::TerrainSurfaceBindings& ground = m_pRenderer->terrainBindings();
    ground.diffuseArray = load("_dif.png", resource::TextureResourceLayout::Bc3);
    ground.asgArray = load("_asg.png", resource::TextureResourceLayout::Bc3);
    ground.normalArray = load("_nor.png", resource::TextureResourceLayout::Bc5);

    m_camera.width = static_cast<float>(iWidth);
    m_camera.height = static_cast<float>(iHeight);
    m_camera.nearPlane = 0.1f;
    m_camera.farPlane = 2000.0f;
}

TestScene::~TestScene()
{
    m_pRenderer.reset();
    m_pResources.reset();
    m_pDevice.reset();
}

void TestScene::setGround(int iCells, const std::function<TestGroundSample(float, float)>& fnSample)
{
    const int iQuads = 32 * iCells;
    const int iSide = iQuads + 1;
    const auto uSide = static_cast<uint32_t>(iSide);
    std::vector<Vertex> vecVertices;
    for (int iY = 0; iY < iSide; ++iY)
        for (int iX = 0; iX < iSide; ++iX)
        {
            const float fX = 2.0f * static_cast<float>(iX);
            const float fY = 2.0f * static_cast<float>(iY);
            const TestGroundSample sample = fnSample(fX, fY);
            const float fDx = fnSample(fX + 2.0f, fY).fHeight - fnSample(fX - 2.0f, fY).fHeight;
            const float fDy = fnSample(fX, fY + 2.0f).fHeight - fnSample(fX, fY - 2.0f).fHeight;
            vecVertices.push_back({glm::normalize(glm::vec3(-fDx, -fDy, 4.0f)), sample.fHeight,
                                   uint32_t{sample.arrColour[0]} << 24 | uint32_t{sample.arrColour[1]} << 16 |
                                       uint32_t{sample.arrColour[2]} << 8 | 255u});
        }
    std::vector<uint32_t> vecIndices;
    for (uint32_t uRow = 0; uRow + 1 < uSide; ++uRow)
        for (uint32_t uColumn = 0; uColumn + 1 < uSide; ++uColumn)
        {
            const uint32_t a = uRow * uSide + uColumn;
            for (const uint32_t u : {a + uSide, a + 1, a, a + uSide, a + uSide + 1, a + 1})
                vecIndices.push_back(u);
        }
    const int iTexels = 64 * iCells + 1;
    std::vector<uint8_t> vecLow;
    std::vector<uint8_t> vecHigh;
    for (int iY = 0; iY < iTexels; ++iY)
        for (int iX = 0; iX < iTexels; ++iX)
        {
            const TestGroundSample sample = fnSample(static_cast<float>(iX), static_cast<float>(iY));
            for (size_t u = 0; u < 8; ++u)
                (u < 4 ? vecLow : vecHigh)
                    .push_back(
                        static_cast<uint8_t>(std::clamp(sample.arrWeights[u], 0.0f, 1.0f) * 255.0f + 0.5f));
        }

    rend::TerrainSurfaceBindings& ground = m_pRenderer->terrainBindings();
    for (const rend::BufferHandle buffer : {ground.vertexBuffer, ground.indexBuffer, ground.surfaceInfo})
        m_pDevice->destroyBuffer(buffer);
    for (const rend::TextureHandle texture : {ground.texture0, ground.texture1})
        m_pDevice->destroyTexture(texture);
    struct SurfaceInfo
    {
        uint32_t uVerticesPerRow;
        float fInverseQuadsX;
        std::array<uint32_t, 2> arrUnused{};
    };
    const std::vector<SurfaceInfo> vecInfo{{uSide, 1.0f / static_cast<float>(iQuads)}};
    ground.vertexBuffer = m_pResources->createBuffer(bytesOf(vecVertices), vecVertices.size() * 20, 20,
                                                     "EditorTerrainSurfaceMesh", rend::BufferKind::Vertex);
    ground.indexBuffer = m_pResources->createBuffer(bytesOf(vecIndices), vecIndices.size() * 4, 4,
                                                    "EditorTerrainSurfaceIndex", rend::BufferKind::Index);
    ground.surfaceInfo =
        m_pResources->createBuffer(bytesOf(vecInfo), 16, 0, "CB_SURFACE_INFO", rend::BufferKind::Constant);
    ground.indexCount = static_cast<uint32_t>(vecIndices.size());
    ground.verticesX = ground.verticesY = uSide;
    for (rend::TextureHandle* pTexture : {&ground.texture0, &ground.texture1})
    {
        *pTexture = m_pDevice->createTexture(
            {.sName = "Terrain Material texture", .iWidth = iTexels, .iHeight = iTexels});
        m_pDevice->updateTexture(*pTexture, {0, 0, iTexels, iTexels}, static_cast<size_t>(iTexels) * 4,
                                 bytesOf(pTexture == &ground.texture0 ? vecLow : vecHigh));
    }
}

double TestScene::draw()
{
    m_debugDrawer.swap();
    const double fStart = FrameClock::seconds();
    m_pRenderer->render({}, m_pDevice->width(), m_pDevice->height(),
                        {.view = m_camera.viewMatrix(), .projection = m_camera.projectionMatrix()});
    m_pDevice->present();
    (void)picture(); // waits for the driver
    return (FrameClock::seconds() - fStart) * 1000.0;
}

resource::Picture TestScene::picture()
{
    resource::Picture picture{m_pDevice->width(), m_pDevice->height(), {}};
    picture.vecPixels.resize(static_cast<size_t>(picture.iWidth) * static_cast<size_t>(picture.iHeight) * 4);
    m_pDevice->readTarget({}, picture.vecPixels);
    return picture;
}

void TestScene::keep(const std::string& sName)
{
    if (const char* pFolder = std::getenv("QM_TEST_PICTURES"))
    {
        const resource::Picture shown = picture();
        (void)resource::writePicture(std::filesystem::path(pFolder) / (sName + ".png"), shown.iWidth,
                                     shown.iHeight, shown.vecPixels);
    }
}
