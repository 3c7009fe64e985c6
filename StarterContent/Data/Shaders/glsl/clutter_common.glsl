// What clutter meshes and impostors share, so that one can follow the other without a jump.

layout(std140, binding = 2) uniform ClutterDraw // "CB_CLUTTER_DRAW"
{
    vec4 clutterTime;     // seconds
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

// Slow waves over the ground, -1 to 1: where plants gather and how well they do.
float clumpsAt(vec2 place)
{
    return 0.5 * sin(place.x * 0.83 + 1.9 * sin(place.y * 0.37)) +
           0.5 * sin(place.y * 0.71 + 2.3 * sin(place.x * 0.29 + 1.0));
}

// Plants lean together a little: a shift of the place, at most a third of a metre.
vec2 gatherAt(vec2 place)
{
    return 0.24 * vec2(sin(place.x * 2.9 + 1.3 * sin(place.y * 1.7)), sin(place.y * 3.1 + 1.3 * sin(place.x * 1.9)));
}

float sizeAt(vec2 place, float variance, float dice)
{
    return 1.0 + variance * (1.1 * dice - 0.75 + 0.45 * clumpsAt(place));
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

// The ground's colour at the root, with a variation of its own.
vec3 tintAt(uint colour, vec2 place, vec4 dice)
{
    vec3 stored = vec3((uvec3(colour) >> uvec3(24u, 16u, 8u)) & 255u) * (1.333 / 255.0);
    float tone = 0.55 * dice.z + 0.225 * (clumpsAt(place * 0.21 + 7.0) + 1.0);
    return stored * stored * mix(vec3(0.80, 0.88, 0.86), vec3(1.22, 1.10, 0.98), tone);
}

// Sun and sky on soft, translucent plants.
vec3 plantLight(vec3 normal)
{
    float sun = max(dot(normal, sunDirection.xyz) * 0.82 + 0.18, 0.0);
    return sunColour.rgb * sun + ambientLight(normal);
}
