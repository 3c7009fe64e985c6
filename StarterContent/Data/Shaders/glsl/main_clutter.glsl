// Clutter as meshes: one draw a type, an instance a plant.
//
// Flags of a type: 1 stands along the ground's normal; 2 sways in the wind; 4 is sheared so that its
// foot follows the slope; 8 lies at a random tilt.
#include "common.glsl"
#include "clutter_common.glsl"

#ifdef VERTEX_STAGE
layout(std140, binding = 6) uniform Types // "Clutter Buffer"
{
    vec4 types[256]; // height, variance of size, flags (bits), 0
};

layout(location = 0) in vec4 inPosition; // quarter metres; 4 along Z are the type's height
layout(location = 1) in vec2 inTexCoord;
layout(location = 2) in vec4 inNormal;
layout(location = 3) in vec2 inPlace;
layout(location = 4) in vec4 inGround; // normal, height
layout(location = 5) in uint inColourIndex;

out vec3 texCoord; // z: layer
out vec3 lit; // tint and light
out vec4 air;
out vec2 edge; // alpha that is seen, and how much of a grain is added at the root

void main()
{
    uint type = inColourIndex & 255u;
    vec4 record = types[type];
    uint flags = floatBitsToUint(record.z);
    vec4 dice = placeDice(inPlace);
    vec3 ground = normalize(inGround.xyz);
    bool impostor = ((hasImpostor[type >> 7][(type >> 5) & 3u] >> (type & 31u)) & 1u) != 0u;

    float clumps = clumpsAt(inPlace);
    vec4 groundShade = shadeAt(inPlace);
    float distanceTo = distance(inPlace, eye.xy);
    float size = sizeAt(clumps, record.y, dice.x) * shrinkAt(distanceTo, impostor);
    vec2 turned = normalize(wave(vec2(dice.y + 0.25, dice.y)));
    mat2 turn = mat2(turned.x, turned.y, -turned.y, turned.x);
    vec3 local = vec3(turn * inPosition.xy, inPosition.z * record.x) * (0.25 * size);
    vec3 normal = normalize(vec3(turn * inNormal.xy * record.x, inNormal.z)); // Z is stretched by the height
    if ((flags & 8u) != 0u)
    {
        vec2 tilt = (dice.zw - 0.5) * 0.5;
        local += vec3(tilt * local.z, -dot(tilt, local.xy));
    }
    if ((flags & 1u) != 0u)
    {
        vec3 along = normalize(vec3(ground.z, 0.0, -ground.x));
        mat3 stand = mat3(along, cross(ground, along), ground);
        local = stand * local;
        normal = stand * normal;
    }
    else
    {
        normal = normalize(normal + ground - vec3(0.0, 0.0, 1.0));
        if ((flags & 4u) != 0u)
            local.z -= dot(ground.xy, local.xy) / max(ground.z, 0.4);
    }
    float up = clamp(inPosition.z * 0.25, 0.0, 1.0);
    if ((flags & 2u) != 0u)
    {
        float gust = wave(clutterTime.x * 0.09 + dot(inPlace, vec2(0.0095, 0.007)));
        float sway = wave(clutterTime.x * 0.31 + dot(inPlace, vec2(0.065, 0.046)) + dice.w * 0.3);
        float bend = (0.05 + 0.035 * gust + 0.04 * (1.3 + gust) * sway) * up * up * record.x * size;
        local.xy += vec2(0.8, 0.6) * bend;
    }

    vec2 shift = gatherAt(inPlace);
    vec3 root = vec3(inPlace + shift, inGround.w - dot(ground.xy, shift) / max(ground.z, 0.4));
    vec3 position = root + local;
    gl_Position = viewProjection * vec4(position, 1.0);

    texCoord = vec3(inTexCoord, float(type));
    float shade = mix(0.42, 1.08, smoothstep(-0.05, 0.75, up));
    LeafLight light = leafLight(tintAt(inColourIndex, groundShade, clumps, dice) * plantLight(normal, groundShade) * shade, position);
    lit = light.light;
    air = light.air;
    // Coarser pictures are thinner: what still counts as leaf goes down with distance.
    edge = vec2(mix(0.5, 0.22, smoothstep(4.0, 55.0, distanceTo)), 0.55 * (1.0 - smoothstep(0.0, 0.16, up)));
}
#endif

#ifdef FRAGMENT_STAGE
layout(binding = 0) uniform sampler2DArray clutterTextures;

in vec3 texCoord;
in vec3 lit;
in vec4 air;
in vec2 edge;
layout(location = 0) out vec4 result;

void main()
{
    vec4 leaf = texture(clutterTextures, texCoord);
    float grain = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.0671106, 0.0583715))));
    if (leaf.a < edge.x + edge.y * grain)
        discard;
    result = vec4(leafColour(leaf.rgb, lit, air), 1.0);
}
#endif
