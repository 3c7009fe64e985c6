// The cut earth between the rim of a tile and the plain around it at height 0: four walls.
#include "common.glsl"

#ifdef VERTEX_STAGE
layout(std140, binding = 0) uniform SurfaceInfo // "CB_SURFACE_INFO"
{
    uint verticesPerRow;
    float inverseQuadsX;
};
layout(std430, binding = 0) readonly buffer Vertices
{
    float words[]; // five a vertex, the fourth is the height
};

out vec3 worldPosition;
out float below; // metres under the rim, or over it where the rim lies under the plain
flat out vec3 side;

void main()
{
    int columns = int(verticesPerRow);
    int rows = words.length() / 5 / columns;
    bool alongX = gl_InstanceID < 2;
    bool last = (gl_InstanceID & 1) == 1;
    int step = min(gl_VertexID >> 1, (alongX ? columns : rows) - 1);
    ivec2 place = alongX ? ivec2(step, last ? rows - 1 : 0) : ivec2(last ? columns - 1 : 0, step);
    float height = words[(place.y * columns + place.x) * 5 + 3];
    bool foot = (gl_VertexID & 1) == 1;
    worldPosition = vec3(vec2(place) * 2.0, foot ? 0.0 : height);
    below = foot ? abs(height) : 0.0;
    side = (alongX ? vec3(0.0, 1.0, 0.0) : vec3(1.0, 0.0, 0.0)) * (last ? 1.0 : -1.0) * (height < 0.0 ? -1.0 : 1.0);
    gl_Position = viewProjection * vec4(worldPosition, 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
in vec3 worldPosition;
in float below;
flat in vec3 side;
layout(location = 0) out vec4 result;

void main()
{
    float along = worldPosition.x + worldPosition.y;
    float layer = sin(below * 2.3 + sin(along * 0.21) * 0.8) * 0.5 + sin(below * 6.1 + sin(along * 0.47) * 1.1) * 0.3;
    vec3 earth = mix(vec3(0.165, 0.130, 0.088), vec3(0.215, 0.178, 0.128), layer * 0.5 + 0.5);
    earth *= mix(0.62, 1.0, smoothstep(0.0, 0.7, below));
    vec3 light = sunColour.rgb * max(dot(side, sunDirection.xyz), 0.0) + ambientLight(side);
    result = vec4(toDisplay(throughAir(earth * light, worldPosition)), 1.0);
}
#endif
