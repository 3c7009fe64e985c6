// Clutter from afar: one draw for all types, an upright picture a plant that faces the eye.
#include "common.glsl"
#include "clutter_common.glsl"

#ifdef VERTEX_STAGE
layout(std140, binding = 6) uniform Impostors // "Clutter Impostor Buffer"
{
    vec4 impostors[256]; // variance of size, half width, half height (metres), 0
};

layout(location = 0) in vec2 inPlace;
layout(location = 1) in vec4 inGround; // normal, height
layout(location = 2) in uint inColourIndex;

out vec3 texCoord; // z: layer
out vec3 lit;
out vec4 air;

void main()
{
    uint index = inColourIndex & 255u;
    vec4 record = impostors[index];
    vec4 dice = placeDice(inPlace);
    vec3 ground = normalize(inGround.xyz);
    float clumps = clumpsAt(inPlace);
    vec4 groundShade = shadeAt(inPlace);
    float distanceTo = distance(inPlace, eye.xy);
    float size = sizeAt(clumps, record.x, dice.x) * shrinkAt(distanceTo, true);

    vec2 corner = vec2(float(gl_VertexID & 1) * 2.0 - 1.0, float(gl_VertexID >> 1));
    vec2 way = eye.w > 0.5 ? viewAxis.xy : inPlace - eye.xy;
    vec2 side = vec2(way.y, -way.x) / max(length(way), 0.001);
    vec2 shift = gatherAt(inPlace);
    vec3 root = vec3(inPlace + shift, inGround.w - dot(ground.xy, shift) / max(ground.z, 0.4));
    vec3 position = root + size * vec3(side * (corner.x * record.y), corner.y * 2.0 * record.z);
    gl_Position = viewProjection * vec4(position, 1.0);

    texCoord = vec3(corner.x * 0.5 + 0.5, 1.0 - corner.y, float(index));
    LeafLight light = leafLight(tintAt(inColourIndex, groundShade, clumps, dice) * plantLight(ground, groundShade) * mix(0.55, 1.0, corner.y), position);
    lit = light.light;
    air = light.air;
}
#endif

#ifdef FRAGMENT_STAGE
layout(binding = 0) uniform sampler2DArray impostorTextures;

in vec3 texCoord;
in vec3 lit;
in vec4 air;
layout(location = 0) out vec4 result;

void main()
{
    vec4 leaf = texture(impostorTextures, texCoord);
    if (leaf.a < 0.3)
        discard;
    result = vec4(leafColour(leaf.rgb, lit, air), 1.0);
}
#endif
