#pragma once // Things that stand on a landscape.

#include "Tools/TileForge/Landscape.h"

#include <functional>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <map>

namespace forge
{

/// An asset by its name. Degrees turn it about the vertical; at 0 its front looks along -Y.
struct PlacedAsset
{
    std::string sName;
    glm::vec3 position{0.0f}; ///< metres
    float fDegrees = 0.0f;
    float fScale = 1.0f;                           ///< of its real size
    std::map<std::string, std::string> mapColours; ///< slots that differ from the defaults, "RRGGBB"
};

/// A place with a direction: local x runs along it, local y towards its front.
struct Frame
{
    glm::vec2 at{0.0f};
    float fDegrees = 0.0f;
    float fHeight = 0.0f; ///< of its ground

    [[nodiscard]] glm::vec2 world(float fX, float fY) const;
};

struct PlaceOptions
{
    float fUp = 0.0f; ///< metres over the ground
    float fScale = 1.0f;
    std::map<std::string, std::string> mapColours;
};

/// A landscape being furnished. Ground may still be changed; what already stands stays where it is.
class Scene
{
public:
    Scene(Landscape& land, uint32_t uSeed) : m_land(land), m_uState(uSeed * 2654435761u + 977u) {}

    [[nodiscard]] const Landscape& land() const { return m_land; }
    [[nodiscard]] float size() const { return 64.0f * static_cast<float>(m_land.iCells); } ///< metres a side
    [[nodiscard]] float heightAt(const glm::vec2& at) const;
    /// Rise over run, over 4 m.
    [[nodiscard]] float steepAt(const glm::vec2& at) const;
    /// The way down.
    [[nodiscard]] glm::vec2 downhillAt(const glm::vec2& at) const;
    [[nodiscard]] float shareOf(Material eMaterial, const glm::vec2& at) const; ///< 0 to 1
    float roll(float fLow, float fHigh);

    // Ground

    /// Makes the ground level over a turned rectangle (half sizes) and lets it run out over fBlend metres.
    Frame level(const glm::vec2& at, const glm::vec2& half, float fDegrees, float fBlend);
    /// Covers a circle, softer towards its rim.
    void cover(const glm::vec2& at, float fRadius, Material eMaterial, float fAmount);

    // Things

    /// How far a thing must be sunk so that no side of its foot, half as wide as told, hangs in the air.
    [[nodiscard]] float sinkAt(const glm::vec2& at, float fFoot) const { return 0.8f * steepAt(at) * fFoot; }
    /// On the ground.
    void place(const std::string& sName, const glm::vec2& at, float fDegrees,
               const PlaceOptions& options = {});
    /// In a frame, at a height over its own ground.
    void placeIn(const Frame& frame, const std::string& sName, float fX, float fY, float fUp, float fDegrees,
                 const std::map<std::string, std::string>& mapColours = {});

    /// Keeps a circle free of what is scattered.
    void reserve(const glm::vec2& at, float fRadius);
    [[nodiscard]] bool isFree(const glm::vec2& at, float fRadius) const;

    struct Scatter
    {
        std::vector<std::string> vecNames;
        int iCount = 0;
        float fRadius = 1.0f; ///< that each keeps free
        float fSmallest = 0.85f;
        float fLargest = 1.2f;
        float fSink = 0.0f; ///< metres
        float fFoot = 0.3f; ///< half as wide as what touches the ground; sunk by more on a slope
        std::vector<std::map<std::string, std::string>> vecColours; ///< one is picked for each
    };
    /// Tries places at random where the function says how likely one is, 0 to 1.
    void scatter(const Scatter& scatter, const std::function<float(const glm::vec2& at)>& fnLikely);

    [[nodiscard]] const std::vector<PlacedAsset>& assets() const { return m_vecAssets; }

private:
    struct Circle
    {
        glm::vec2 at;
        float fRadius;
    };
    Landscape& m_land;
    uint32_t m_uState;
    std::vector<PlacedAsset> m_vecAssets;
    std::vector<Circle> m_vecCircles;
};

/// A hut of one to three modules of 4 m in a row, its door at the front.
struct Hut
{
    int iModules = 1;
    bool bPorch = false;
    bool bChimney = true;
    const char* pRoof = "AC8672";
    const char* pPlaster = "EFE3CA";
};
/// Levels the ground for it; the frame is its floor's.
Frame buildHut(Scene& scene, const Hut& hut, const glm::vec2& at, float fDegrees);

/// A row of parts of a length from one place to another, on the ground; what doesn't fit is left out.
void buildRow(Scene& scene, const std::vector<std::string>& vecParts, float fLength, const glm::vec2& from,
              const glm::vec2& to, float fSink = 0.05f);

// The scenes

void furnishHamlet(Scene& scene); ///< of the meadow
void furnishRuin(Scene& scene);   ///< of the eroded hills
void furnishGrove(Scene& scene);  ///< of the cliff coast

} // namespace forge
