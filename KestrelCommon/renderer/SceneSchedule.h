#pragma once // When the scene is drawn anew, and how finely.

#include "KestrelCommon/renderer/RenderSettings.h"

#include <array>
#include <cstdint>
#include <optional>

namespace rend
{

/// Places in SceneState::arrContent: ten of the ground, then those of clutter and instances.
constexpr size_t s_uClutterRevision = 10;
constexpr size_t s_uClutterTime = 11;
constexpr size_t s_uInstanceRevision = 12;
constexpr size_t s_uInstanceTextures = 13;
constexpr size_t s_uInstanceShade = 14;
constexpr size_t s_uSceneContents = 15;

/// All that a picture of the scene follows from; equal states give equal pictures.
struct SceneState
{
    SceneView view;
    RenderSettings settings;
    int iWidth = 0; ///< pixels of the window
    int iHeight = 0;
    std::array<uint64_t, s_uSceneContents> arrContent{}; ///< handles and revisions of what is drawn
    bool operator==(const SceneState&) const = default;
};

/// Keeps a still scene from being drawn again and again. Where a CPU draws, a scene in motion is
/// drawn smaller once its frames take too long, and sharply again when it comes to rest.
class SceneSchedule
{
public:
    struct Size
    {
        int iWidth;
        int iHeight;
        bool operator==(const Size&) const = default;
    };

    /// Only with bAdapt does the size ever differ from the window's.
    explicit SceneSchedule(bool bAdapt) : m_bAdapt(bAdapt) {}

    /// Once a frame. The size to draw the scene with, or nullopt when the last picture still serves.
    /// fNow: seconds of a steady clock. bPartial: the last picture left things out to be quick, so that a
    /// scene at rest wants another.
    [[nodiscard]] std::optional<Size> next(const SceneState& state, double fNow, bool bPartial = false);

    /// The picture that the last next() asked for is one of a scene at rest, and may take its time.
    [[nodiscard]] bool isResting() const { return m_bResting; }

private:
    void judge(double fPeriod);
    [[nodiscard]] Size sizeFor(const SceneState& state, size_t uStep) const;

    bool m_bAdapt;
    std::optional<SceneState> m_lastState;
    bool m_bMoved = false;     ///< the last frame had changed
    bool m_bResting = false;   ///< since the last change a picture at rest was asked for
    bool m_bSharp = false;     ///< the last picture has the window's size
    double m_fLastFrame = 0.0; ///< seconds
    double m_fLastChange = 0.0;
    size_t m_uStep = 0; ///< of the sizes, from the window's own downwards
    int m_iJudged = 0;  ///< frames in motion since the last step
    double m_fPeriods = 0.0;
};

} // namespace rend
