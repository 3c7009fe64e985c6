// Flat plain quads in the world's ground plane: what lies around a tile in its picture.
#include "common.glsl"

layout(std140, binding = 2) uniform Quads
{
    vec4 colour;    // linear
    vec4 places[8]; // xyz of the corner with the smallest x and y
    vec4 size;      // x, y metres
};

#ifdef VERTEX_STAGE
out vec3 worldPosition;

void main()
{
    vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1);
    worldPosition = places[gl_InstanceID].xyz + vec3(corner * size.xy, 0.0);
    gl_Position = viewProjection * vec4(worldPosition, 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
in vec3 worldPosition;
layout(location = 0) out vec4 result;

void main()
{
    vec3 normal = vec3(0.0, 0.0, 1.0);
    vec3 light = sunColour.rgb * max(dot(normal, sunDirection.xyz), 0.0) + ambientLight(normal);
    result = vec4(toDisplay(throughAir(colour.rgb * light, worldPosition)), 1.0);
}
#endif
