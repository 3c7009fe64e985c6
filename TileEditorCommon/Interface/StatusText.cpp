#include "TileEditorCommon/Interface/StatusText.h"

#include <cmath>
#include <sstream>

namespace tilebuilder
{

namespace
{

void appendPosition(std::ostringstream& out, const std::array<float, 3>& position)
{
    // What a ray leaves beside 0 is no place.
    const auto shown = [](float fMetres) { return std::abs(fMetres) < 1e-4f ? 0.0f : fMetres; };
    out << shown(position[0]) << ' ' << shown(position[1]) << ' ' << shown(position[2]);
}

} // namespace

std::string statusText(const StatusFigures& figures)
{
    std::ostringstream out;
    out.precision(4);
    out << "FPS: " << figures.uFrames << '\n';
    out << "Rendering Time CPU " << figures.fCpuMs << '\n';
    out << "Rendering Time GPU " << figures.fGpuMs << "\n\n";
    out << "Camera Position ";
    appendPosition(out, figures.camera);
    out << "\nCursor Position ";
    appendPosition(out, figures.cursor);
    if (figures.gridSpacing)
        out << "\nGrid Spacing " << *figures.gridSpacing;
    return out.str();
}

} // namespace tilebuilder
