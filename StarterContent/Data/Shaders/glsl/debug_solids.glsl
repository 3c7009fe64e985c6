// Plain triangles: the handles of tools.
#include "common.glsl"

#ifdef VERTEX_STAGE
layout(location = 0) in vec3 inPosition;
layout(location = 1) in vec4 inColour;

out vec4 colour;

void main()
{
    colour = inColour;
    gl_Position = viewProjection * vec4(inPosition, 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
in vec4 colour;
layout(location = 0) out vec4 result;

void main()
{
    result = colour;
}
#endif
