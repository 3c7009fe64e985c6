// What clutter meshes and impostors share, so that one can follow the other without a jump.

layout(std140, binding = 2) uniform ClutterDraw // "CB_CLUTTER_DRAW"
{
    vec4 clutterTime;     // seconds; y: 1 when there is a shade map
    uvec4 hasImpostor[2]; // a bit a type
};

// Four numbers from 0 to 1 that belong to a place.
vec4 placeDice(vec2 place)
{
    uvec2 bits = floatBitsToUint(place);
    uint h = bits.x * 0x9E3779B1u ^ bits.y * 0x85EBCA77u;
    h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
    h = (h ^ (h >> 12)) * 0x297A2D39u;
    h ^= h >> 15;
    return vec4(uvec4(h, h >> 8, h >> 16, h >> 24) & 255u) * (1.0 / 255.0);
}

// About sin(6.2832 * t), without its cost.
float wave(float t)
{
    float part = fract(t) - 0.5;
    return part * (16.0 * abs(part) - 8.0);
}

vec2 wave(vec2 t)
{
    vec2 part = fract(t) - 0.5;
    return part * (16.0 * abs(part) - 8.0);
}

// Slow waves over the ground, -1 to 1: where plants gather and how well they do.
float clumpsAt(vec2 place)
{
    vec2 bent = place * vec2(0.132, 0.113) + 0.3 * wave(place.yx * vec2(0.059, 0.046));
    vec2 both = wave(bent);
    return 0.5 * (both.x + both.y);
}

// Plants lean together a little: a shift of the place, at most a third of a metre.
vec2 gatherAt(vec2 place)
{
    return 0.24 * wave(place * vec2(0.46, 0.49) + 0.2 * wave(place.yx * vec2(0.27, 0.30)));
}

float sizeAt(float clumps, float variance, float dice)
{
    return 1.0 + variance * (1.1 * dice - 0.75 + 0.45 * clumps);
}

// Plants shrink with distance: those without impostors to nothing before their group turns into
// impostors, the others a little until then and to nothing far away.
float shrinkAt(float distanceTo, bool impostor)
{
    if (eye.w > 0.5)
        return 0.85;
    float share = 1.0 - 0.3 * smoothstep(50.0, 110.0, distanceTo);
    return share * (impostor ? 1.0 - smoothstep(260.0, 420.0, distanceTo) : 1.0 - smoothstep(66.0, 98.0, distanceTo));
}

#ifdef VERTEX_STAGE
layout(binding = 5) uniform sampler2D shadeMap; // terrain_shade's, one texel in 2 m
layout(binding = 6) uniform sampler2D instanceShade; // asset_shade's, seen from above

// At a place of the ground: part of the sun, part of the sky, large and small patches.
vec4 shadeAt(vec2 place)
{
    if (clutterTime.y < 0.5)
        return vec4(1.0, 1.0, 0.5, 0.5);
    vec4 shade = texelFetch(shadeMap, clamp(ivec2(place * 0.5 + 0.5), ivec2(0), textureSize(shadeMap, 0) - 1), 0);
    float hidden = fog.w > 0.0 ? textureLod(instanceShade, place * fog.w, 0.0).r : 0.0;
    shade.rg *= 1.0 - vec2(0.8, 0.15) * hidden;
    return shade;
}
#endif

// The ground's colour at the root, patches and all, with a variation of its own.
vec3 tintAt(uint colour, vec4 shade, float clumps, vec4 dice)
{
    vec3 stored = vec3((uvec3(colour) >> uvec3(24u, 16u, 8u)) & 255u) * (1.333 / 255.0);
    float tone = 0.6 * dice.z + 0.2 * (clumps + 1.0);
    return stored * stored * mix(vec3(0.76, 0.82, 0.82), vec3(1.21, 1.17, 1.08), shade.b) *
           mix(0.88, 1.12, shade.a) * mix(vec3(0.84, 0.90, 0.88), vec3(1.18, 1.08, 0.99), tone);
}

// Sun and sky on soft, translucent plants.
vec3 plantLight(vec3 normal, vec4 shade)
{
    float sun = max(dot(normal, sunDirection.xyz) * 0.82 + 0.18, 0.0);
    return sunColour.rgb * (sun * shade.r) + ambientLight(normal) * shade.g;
}

// What a pixel does with its leaf: on a CPU the light is turned into display values at the vertices,
// for a leaf of middle tone, and the air has no glow around the sun.
struct LeafLight
{
    vec3 light;
    vec4 air;
};

LeafLight leafLight(vec3 lit, vec3 point)
{
#ifdef SOFTWARE
    float clear = exp2(-max(distance(point, eye.xyz) - fog.y, 0.0) * fog.x);
    float seen = eye.w > 0.5 ? 1.0 : max(clear, 1.0 - fog.z);
    return LeafLight(toDisplay(0.2 * lit) * seen, vec4(toDisplay(skyHorizon.rgb) * (1.0 - seen), 0.0));
#else
    return LeafLight(lit, airBefore(point));
#endif
}

vec3 leafColour(vec3 leaf, vec3 light, vec4 air)
{
#ifdef SOFTWARE
    vec3 tone = leaf * leaf * 5.0; // of the middle one
    return tone * 2.0 / (tone + 1.0) * light + air.rgb; // the shape of the curve around it
#else
    return toDisplay(mix(air.rgb, leaf * light, air.a));
#endif
}
