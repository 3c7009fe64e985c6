#pragma once // Models of the editor's own that aren't placed: the figure that shows scale, and the origin.

#include "Tools/ContentBuilder/Models/ModelMesh.h"

namespace content
{

/// A material of one colour, display values 0 to 255; it has no colour slot.
struct PlainMaterial
{
    const char* pName;
    std::array<uint8_t, 3> arrColour;
};

struct Figure
{
    const char* pFile; ///< below the folder "Data", without an ending
    std::vector<PlainMaterial> vecMaterials;
    void (*fnMake)(ModelMesh& mesh);
};
[[nodiscard]] std::span<const Figure> figures();

[[nodiscard]] std::string figureText(const Figure& figure);

} // namespace content
