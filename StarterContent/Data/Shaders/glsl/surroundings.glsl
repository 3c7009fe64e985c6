// The calm plain around a tile, at height 0 from its rim to the end of the view, in four strips.
#include "common.glsl"

layout(std140, binding = 2) uniform Surroundings
{
    vec4 plainColour; // linear
    vec4 tileSize;    // x, y metres; z: metres that the plain reaches beyond
};

#ifdef VERTEX_STAGE
out vec3 worldPosition;

void main()
{
    vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1);
    float reach = tileSize.z;
    bool along = gl_InstanceID < 2; // below and above the tile over the whole width, or beside it
    bool after = (gl_InstanceID & 1) == 1;
    vec2 low = along ? vec2(-reach, after ? tileSize.y : -reach) : vec2(after ? tileSize.x : -reach, 0.0);
    vec2 size = along ? vec2(tileSize.x + 2.0 * reach, reach) : vec2(reach, tileSize.y);
    worldPosition = vec3(low + corner * size, 0.0);
    gl_Position = viewProjection * vec4(worldPosition, 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
in vec3 worldPosition;
layout(location = 0) out vec4 result;

void main()
{
    vec2 place = worldPosition.xy;
    float patches = sin(place.x * 0.023 + 1.9 * sin(place.y * 0.011)) * sin(place.y * 0.019 + 1.3 * sin(place.x * 0.009)) +
                    0.5 * sin(place.x * 0.071 - place.y * 0.043) * sin(place.y * 0.067 + place.x * 0.031);
    vec2 beyond = max(abs(place - tileSize.xy * 0.5) - tileSize.xy * 0.5, 0.0);
    float shade = 1.0 - 0.38 * exp2(-length(beyond) * 0.5); // as if the tile lay in it
    vec3 light = sunColour.rgb * sunDirection.z + ambientLight(vec3(0.0, 0.0, 1.0));
    vec3 colour = plainColour.rgb * (1.0 + 0.07 * patches) * light * shade;
    result = vec4(toDisplay(throughAir(colour, worldPosition)), 1.0);
}
#endif
