#pragma once // Lights that several sets use.

#include "Tools/ContentBuilder/Models/ModelMesh.h"

namespace content
{

/// About 2 units high when fSize is 1, with a ring to hang it by.
void addLantern(ModelMesh& mesh, const glm::vec3& foot, float fSize);
/// About 1.6 units high when fSize is 1.
void addFlame(ModelMesh& mesh, const glm::vec3& foot, float fSize);

} // namespace content
