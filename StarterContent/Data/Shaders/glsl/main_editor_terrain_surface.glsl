// The ground of a tile: nine materials blended by eight weights a metre, tinted by a colour a vertex.
//
// Passes: GBUFFER draws it lit; DEPTH writes depth alone.
// Material maps, one layer a material:
//   diffuse  RGB colour, A height (0 low to 1 high; 1 everywhere means: blend by weight alone)
//   asg      R ambient occlusion, G gloss
//   normal   R, G: slope along +X and +Y around 0.5; the third part follows from them
// The ninth material has no weight of its own: it shows where the eight leave room.
// With SOFTWARE defined a CPU draws: at most two materials a pixel and one normal map.
// With HEIGHTS defined the vertices can be read as a whole: hills cast shadows and hollows are dim.
#include "common.glsl"

layout(std140, binding = 0) uniform SurfaceInfo // "CB_SURFACE_INFO"
{
    uint verticesPerRow;
    float inverseQuadsX;
};

#ifdef VERTEX_STAGE
layout(location = 0) in vec3 inNormal;
layout(location = 1) in float inHeight;
layout(location = 2) in vec4 inColour; // the word's bytes from the lowest: A, B, G, R

#ifdef GBUFFER
out vec3 worldPosition;
out vec3 worldNormal;
out vec3 tint;     // with large patches, some warmer and lighter, some cooler and darker
out vec2 openness; // part of the sun, part of the sky that is seen
#ifdef SOFTWARE
out vec4 air; // the colour of the air before the point, and how much of it is seen
#endif

#ifdef HEIGHTS
layout(std430, binding = 0) readonly buffer Vertices
{
    float words[]; // five a vertex, the fourth is the height
};

float heightAt(vec2 place)
{
    float last = float(verticesPerRow - 1u);
    float rows = float(words.length() / 5) / float(verticesPerRow) - 1.0;
    vec2 grid = clamp(place * 0.5, vec2(0.0), vec2(last, rows));
    vec2 low = floor(min(grid, vec2(last, rows) - 0.001));
    vec2 part = grid - low;
    int first = int(low.y) * int(verticesPerRow) + int(low.x);
    int above = first + int(verticesPerRow);
    return mix(mix(words[first * 5 + 3], words[first * 5 + 8], part.x),
               mix(words[above * 5 + 3], words[above * 5 + 8], part.x), part.y);
}

// Walks towards the sun and, a short way, to all sides.
vec2 opennessAt(vec3 position)
{
    float reach = length(sunDirection.xy);
    vec2 toSun = sunDirection.xy / max(reach, 0.001);
    float climb = sunDirection.z / max(reach, 0.001);
    float above = -1.0;
    float way = 3.0;
    for (int i = 0; i < 14; ++i)
    {
        float over = heightAt(position.xy + toSun * way) - position.z - climb * way;
        above = max(above, over / (0.6 + way * 0.07));
        way *= 1.28;
    }
    float sun = 1.0 - smoothstep(-0.35, 0.55, above);

    float hidden = 0.0;
    for (int i = 0; i < 6; ++i)
    {
        vec2 side = vec2(cos(float(i) * 1.0472 + 0.4), sin(float(i) * 1.0472 + 0.4));
        float near = (heightAt(position.xy + side * 3.5) - position.z) / 3.5;
        float far = (heightAt(position.xy + side * 11.0) - position.z) / 11.0;
        float rise = max(max(near * 0.8, far), 0.0);
        hidden += rise * inversesqrt(1.0 + rise * rise);
    }
    return vec2(sun, 1.0 - 0.95 * hidden / 6.0);
}
#endif

float hash(vec2 cell)
{
    vec3 p = fract(vec3(cell.xyx) * 0.1031);
    p += dot(p, p.yzx + 33.33);
    return fract((p.x + p.y) * p.z);
}

float noise(vec2 place)
{
    vec2 cell = floor(place);
    vec2 part = place - cell;
    part = part * part * (3.0 - 2.0 * part);
    return mix(mix(hash(cell), hash(cell + vec2(1.0, 0.0)), part.x),
               mix(hash(cell + vec2(0.0, 1.0)), hash(cell + vec2(1.0, 1.0)), part.x), part.y);
}
#endif

void main()
{
    uint vertex = uint(gl_VertexID);
    uint row = vertex / verticesPerRow;
    vec3 position = vec3(2.0 * float(vertex - row * verticesPerRow), 2.0 * float(row), inHeight);
    gl_Position = viewProjection * vec4(position, 1.0);
#ifdef GBUFFER
    worldPosition = position;
    worldNormal = inNormal;
    // The stored colour is darkened by noise to three quarters on average; the light makes up for it.
    vec3 stored = inColour.abg * 1.333;
    float patches = noise(position.xy * 0.021) * 0.6 + noise(position.xy * 0.083 + 5.2) * 0.4;
    tint = stored * stored * mix(vec3(0.8, 0.86, 0.9), vec3(1.2, 1.13, 1.02), patches);
    openness = vec2(1.0);
#ifdef HEIGHTS
#ifdef SOFTWARE
    if (verticesPerRow <= 257u) // on larger tiles the walks would cost more than the rest
#endif
        openness = opennessAt(position);
#endif
    openness.x *= smoothstep(-0.05, 0.25, dot(inNormal, sunDirection.xyz));
#ifdef SOFTWARE
    air = airBefore(position);
#endif
#endif
}
#endif

#ifdef FRAGMENT_STAGE
#ifdef GBUFFER
layout(binding = 0) uniform sampler2DArray diffuseArray;
layout(binding = 1) uniform sampler2DArray asgArray;
layout(binding = 2) uniform sampler2DArray normalArray;
layout(binding = 3) uniform sampler2D weights0;
layout(binding = 4) uniform sampler2D weights1;

in vec3 worldPosition;
in vec3 worldNormal;
in vec3 tint;
in vec2 openness;
#ifdef SOFTWARE
in vec4 air;
#endif
layout(location = 0) out vec4 result;

const float repeatMetres = 3.5;
const float blendDepth = 0.22; // how far below the highest material another still shows, as height
const mat2 wideTurn = mat2(0.8, 0.6, -0.6, 0.8);

// The four strongest of the nine materials, in order, and their weights.
struct Mixture
{
    vec4 material;
    vec4 weight;
};

float takeLargest(inout vec4 low, inout vec4 high, inout float last)
{
    vec4 pairs = max(low, high);
    float key = max(max(max(pairs.x, pairs.y), max(pairs.z, pairs.w)), last);
    low = mix(low, vec4(0.0), equal(low, vec4(key)));
    high = mix(high, vec4(0.0), equal(high, vec4(key)));
    last = last == key ? 0.0 : last;
    return key;
}

// By keys of weight (in 255ths) and material, 16 to a step: no two are equal.
Mixture mixtureHere()
{
    vec2 place = (worldPosition.xy + 0.5) / vec2(textureSize(weights0, 0));
    vec4 low = floor(texture(weights0, place) * 255.0 + 0.5);
    vec4 high = floor(texture(weights1, place) * 255.0 + 0.5);
    vec4 sums = low + high;
    float last = max(255.0 - sums.x - sums.y - sums.z - sums.w, 0.0) * 16.0 + 8.0;
    low = low * 16.0 + vec4(0.0, 1.0, 2.0, 3.0);
    high = high * 16.0 + vec4(4.0, 5.0, 6.0, 7.0);
    vec4 keys;
    keys.x = takeLargest(low, high, last);
    keys.y = takeLargest(low, high, last);
    keys.z = takeLargest(low, high, last);
    keys.w = takeLargest(low, high, last);
    vec4 steps = floor(keys * (1.0 / 16.0));
    return Mixture(keys - steps * 16.0, steps * (1.0 / 255.0));
}

// The higher one hides the lower; faint ones fade out, whatever their height.
vec4 heightBlend(vec4 weight, vec4 height)
{
    vec4 level = weight + height * 0.5;
    float top = max(max(level.x, level.y), max(level.z, level.w)) - blendDepth;
    vec4 blend = max(level - top, 0.0) * min(weight * 10.0, 1.0);
    return blend / max(blend.x + blend.y + blend.z + blend.w, 0.0001);
}

struct Ground
{
    vec3 colour; // linear
    vec2 slope;  // of the normal map
    float occlusion;
    float gloss;
};

// How the slope of a map that lies against a side turns the normal.
vec3 slopeAlongX(vec2 slope) { return vec3(0.0, slope); }
vec3 slopeAlongY(vec2 slope) { return vec3(slope.x, 0.0, slope.y); }

#ifdef SOFTWARE

// Every sample counts and branches save none: five in all. So the second, larger scale isn't blended
// with the first but takes over square by square of 2 x 2 pixels.
Ground groundAt(vec2 place, Mixture mixture)
{
    vec3 way = worldPosition - eye.xyz;
    float chance = fract(52.9829189 * fract(dot(floor(gl_FragCoord.xy * 0.5), vec2(0.0671106, 0.0583715))));
    bool far = eye.w > 0.5 || dot(way, way) > mix(900.0, 3600.0, chance);
    vec2 chosen = far ? wideTurn * place * 0.31 : place;

    vec4 first = texture(diffuseArray, vec3(chosen, mixture.material.x));
    vec4 second = texture(diffuseArray, vec3(chosen, mixture.material.y));
    vec4 blend = heightBlend(vec4(mixture.weight.xy, 0.0, 0.0), vec4(first.a, second.a, 0.0, 0.0));
    vec3 sum = first.rgb * blend.x + second.rgb * blend.y;
    vec2 slope = texture(normalArray, vec3(chosen, mixture.material.x)).rg * 2.0 - 1.0;
    return Ground(sum * sum, slope, 1.0, 0.0);
}

#else

struct Footprint // of a pixel on the maps
{
    vec2 x;
    vec2 y;
};

vec4 diffuseAt(vec2 place, Footprint size, float material, float wideShare)
{
    vec4 near = textureGrad(diffuseArray, vec3(place, material), size.x, size.y);
    vec4 wide = textureGrad(diffuseArray, vec3(wideTurn * place * 0.217, material), wideTurn * size.x * 0.217,
                            wideTurn * size.y * 0.217);
    return mix(near, wide, wideShare);
}

void addGround(inout Ground sum, vec2 place, Footprint size, float material, vec3 colour, float share)
{
    if (share <= 0.0)
        return;
    vec3 asg = textureGrad(asgArray, vec3(place, material), size.x, size.y).rgb;
    vec2 slope = textureGrad(normalArray, vec3(place, material), size.x, size.y).rg * 2.0 - 1.0;
    sum.colour += colour * colour * share;
    sum.slope += slope * share;
    sum.occlusion += asg.r * share;
    sum.gloss += asg.g * share;
}

// A turned, larger scale shimmers through nearby and takes over with distance.
Ground groundAt(vec2 place, Footprint size, Mixture mixture)
{
    float distanceTo = length(worldPosition - eye.xyz);
    float wideShare = eye.w > 0.5 ? 0.5 : 0.18 + 0.5 * smoothstep(15.0, 90.0, distanceTo);
    vec4 first = diffuseAt(place, size, mixture.material.x, wideShare);
    vec4 second = diffuseAt(place, size, mixture.material.y, wideShare);
    vec4 third = diffuseAt(place, size, mixture.material.z, wideShare);
    vec4 fourth = diffuseAt(place, size, mixture.material.w, wideShare);
    vec4 blend = heightBlend(mixture.weight, vec4(first.a, second.a, third.a, fourth.a));
    Ground sum = Ground(vec3(0.0), vec2(0.0), 0.0, 0.0);
    addGround(sum, place, size, mixture.material.x, first.rgb, blend.x);
    addGround(sum, place, size, mixture.material.y, second.rgb, blend.y);
    addGround(sum, place, size, mixture.material.z, third.rgb, blend.z);
    addGround(sum, place, size, mixture.material.w, fourth.rgb, blend.w);
    return sum;
}

Ground mixed(Ground a, Ground b, float share)
{
    return Ground(mix(a.colour, b.colour, share), mix(a.slope, b.slope, share), mix(a.occlusion, b.occlusion, share),
                  mix(a.gloss, b.gloss, share));
}

#endif

void main()
{
    vec3 smoothNormal = worldNormal; // near enough to unit length
    vec3 place = worldPosition / repeatMetres;
    Mixture mixture = mixtureHere();
    // Where the ground is steep the maps lie against its side instead of hanging down it.
#ifdef SOFTWARE
    bool flatEnough = smoothNormal.z > 0.66;
    bool alongX = abs(smoothNormal.x) > abs(smoothNormal.y);
    Ground ground = groundAt(flatEnough ? place.xy : (alongX ? place.yz : place.xz), mixture);
    vec3 sideSlope = alongX ? slopeAlongX(ground.slope) : slopeAlongY(ground.slope);
    vec3 normal = smoothNormal + (flatEnough ? vec3(ground.slope * smoothNormal.z, 0.0) : sideSlope);
#else
    vec3 placeX = dFdx(place);
    vec3 placeY = dFdy(place);
    float flatShare = smoothstep(0.60, 0.74, smoothNormal.z);
    Ground ground = Ground(vec3(0.0), vec2(0.0), 1.0, 0.0);
    vec3 normal = smoothNormal;
    if (flatShare > 0.0)
    {
        ground = groundAt(place.xy, Footprint(placeX.xy, placeY.xy), mixture);
        normal += vec3(ground.slope * smoothNormal.z, 0.0);
    }
    if (flatShare < 1.0)
    {
        vec2 lean = abs(smoothNormal.xy);
        float xShare = smoothstep(0.35, 0.65, lean.x / (lean.x + lean.y + 0.0001));
        Ground alongX = groundAt(place.yz, Footprint(placeX.yz, placeY.yz), mixture);
        Ground alongY = groundAt(place.xz, Footprint(placeX.xz, placeY.xz), mixture);
        vec3 sideSlope = mix(slopeAlongY(alongY.slope), slopeAlongX(alongX.slope), xShare);
        normal = mix(smoothNormal + sideSlope, normal, flatShare);
        ground = mixed(mixed(alongY, alongX, xShare), ground, flatShare);
    }
#endif
    normal = normalize(normal);

    vec3 albedo = ground.colour * tint;
    float sun = max(dot(normal, sunDirection.xyz), 0.0) * openness.x;
    vec3 light = sunColour.rgb * sun + ambientLight(normal) * (ground.occlusion * openness.y);
    vec3 colour = albedo * light;
#ifdef SOFTWARE
    colour = mix(air.rgb, colour, air.a);
#else
    vec3 toEye = eye.w > 0.5 ? -viewAxis.xyz : normalize(eye.xyz - worldPosition);
    float shine = max(dot(normal, normalize(toEye + sunDirection.xyz)), 0.0);
    float sharpness = exp2(2.0 + ground.gloss * 6.0);
    colour += sunColour.rgb * sun * ground.gloss * pow(max(shine, 0.0001), sharpness) * (sharpness + 8.0) * 0.004;
    float edge = 1.0 - max(dot(normal, toEye), 0.0);
    colour += skyHorizon.rgb * ground.gloss * edge * edge * edge * edge * 0.2 * ground.occlusion * openness.y;
    colour = throughAir(colour, worldPosition);
#endif
    result = vec4(toDisplay(colour), 1.0);
}
#else
void main() {}
#endif
#endif
