#include "TileEditorCommon/Interface/StatusText.h"

#include <sstream>

namespace tilebuilder
{

namespace
{

void appendPosition(std::ostringstream& out, const std::array<float, 3>& position)
{
    out << position[0] << ' ' << position[1] << ' ' << position[2];
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
