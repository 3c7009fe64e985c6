// The ground of a tile: nine materials blended by eight weights a metre, tinted by a colour a vertex.
//
// Passes: GBUFFER draws it lit; DEPTH writes depth alone.
// Material maps, one layer a material:
//   diffuse  RGB colour, with SOFTWARE as display values; A height (0 low to 1 high; 1 everywhere means:
//            blend by weight alone)
//   asg      R ambient occlusion, G gloss
//   normal   R, G: slope along +X and +Y around 0.5; the third part follows from them
// The ninth material has no weight of its own: it shows where the eight leave room.
// With SOFTWARE defined a CPU draws: at most two materials a pixel and one normal map.
// The shade map, one texel a vertex, is terrain_shade's.
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
layout(binding = 5) uniform sampler2D shadeMap;

out vec3 worldPosition;
out vec3 worldNormal;
out vec3 tint;       // with large patches, some warmer and lighter, some cooler and darker
out vec4 shade;      // part of the sun, part of the sky that is seen; small patches; metres to the eye
out vec2 bentPlace;  // the place bent a little, so that repeated maps stand in no straight rows
#ifdef SOFTWARE
out vec4 air; // the colour of the air before the point, and how much of it is seen
#endif
#endif

void main()
{
    uint vertex = uint(gl_VertexID);
    uint row = vertex / verticesPerRow;
    uint column = vertex - row * verticesPerRow;
    vec3 position = vec3(2.0 * float(column), 2.0 * float(row), inHeight);
    gl_Position = viewProjection * vec4(position, 1.0);
#ifdef GBUFFER
    worldPosition = position;
    worldNormal = inNormal;
    vec4 found = texelFetch(shadeMap, ivec2(int(column), int(row)), 0);
    // The stored colour is darkened by noise to three quarters on average; the light makes up for it.
    vec3 stored = inColour.abg * 1.333;
    tint = stored * stored * mix(vec3(0.76, 0.82, 0.82), vec3(1.21, 1.17, 1.08), found.b) *
           mix(0.88, 1.12, found.a);
    found.r *= smoothstep(-0.05, 0.25, dot(inNormal, sunDirection.xyz));
    shade = vec4(found.rg, found.a, eye.w > 0.5 ? 1000.0 : distance(position, eye.xyz));
    bentPlace = position.xy + 2.2 * sin(position.yx * 0.083 + 1.4 * sin(position.xy * 0.037 + 0.6));
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
layout(binding = 6) uniform sampler2D instanceShade; // asset_shade's, seen from above

in vec3 worldPosition;
in vec3 worldNormal;
in vec3 tint;
in vec4 shade;
in vec2 bentPlace;
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

// Every sample counts and branches save none: five in all, none of which blends mips. So scales and
// mips aren't blended with one another but take turns, square by square of 2 x 2 pixels.
Ground groundAt(vec2 place, Mixture mixture)
{
    float chance = fract(52.9829189 * fract(dot(floor(gl_FragCoord.xy * 0.5), vec2(0.0671106, 0.0583715))));
    float far = shade.w * mix(0.7, 1.3, shade.z);
    bool wide = far > mix(26.0, 60.0, chance);
    bool widest = far > mix(75.0, 190.0, chance);
    vec2 chosen = widest ? wideTurn * wideTurn * place * 0.13 : (wide ? wideTurn * place * 0.31 : place);
    // Of the narrow side of a pixel's footprint, which keeps slanted ground crisp, and somewhat above it.
    vec2 across = fwidth(chosen) * float(textureSize(diffuseArray, 0).x);
    float mip = log2(min(across.x, across.y) + 0.25 * max(across.x, across.y)) + chance - 0.5;

    vec4 first = textureLod(diffuseArray, vec3(chosen, mixture.material.x), mip);
    vec4 second = textureLod(diffuseArray, vec3(chosen, mixture.material.y), mip);
    vec4 blend = heightBlend(vec4(mixture.weight.xy, 0.0, 0.0), vec4(first.a, second.a, 0.0, 0.0));
    vec3 sum = first.rgb * blend.x + second.rgb * blend.y;
    vec2 slope = textureLod(normalArray, vec3(chosen, mixture.material.x), mip).rg * 2.0 - 1.0;
    return Ground(sum * sum, slope, 1.0, 0.0);
}

#else

struct Footprint // of a pixel on the maps
{
    vec2 x;
    vec2 y;
};

// A turned, larger scale shimmers through nearby and takes over with distance. Strong materials blend
// as heightBlend() does, but one after the other.
Ground groundAt(vec2 place, Footprint size, Mixture mixture)
{
    float wideShare = 0.18 + 0.5 * smoothstep(15.0, 90.0, shade.w);
    float wideScale = shade.w > 160.0 ? 0.117 : 0.217;
    Ground sum = Ground(vec3(0.0), vec2(0.0), 0.0, 0.0);
    float total = 0.0;
    for (int i = 0; i < 4 && mixture.weight[i] > 0.0; ++i)
    {
        vec3 near = vec3(place, mixture.material[i]);
        vec4 colour = textureGrad(diffuseArray, near, size.x, size.y);
        vec4 wide = textureGrad(diffuseArray, vec3(wideTurn * place * wideScale, mixture.material[i]),
                                wideTurn * size.x * wideScale, wideTurn * size.y * wideScale);
        colour = mix(colour, wide, wideShare);
        float share = min(mixture.weight[i] * 10.0, 1.0) * exp2(18.0 * (mixture.weight[i] + 0.5 * colour.a - 1.0));
        vec3 asg = textureGrad(asgArray, near, size.x, size.y).rgb;
        sum.colour += colour.rgb * share;
        sum.slope += (textureGrad(normalArray, near, size.x, size.y).rg * 2.0 - 1.0) * share;
        sum.occlusion += asg.r * share;
        sum.gloss += asg.g * share;
        total += share;
    }
    total = 1.0 / max(total, 1.0e-9);
    return Ground(sum.colour * total, sum.slope * total, sum.occlusion * total, sum.gloss * total);
}

#endif

void main()
{
    vec3 smoothNormal = worldNormal; // near enough to unit length
    vec3 place = vec3(worldPosition.xy, worldPosition.z) / repeatMetres;
    vec2 flatPlace = bentPlace / repeatMetres;
    Mixture mixture = mixtureHere();
    // Where the ground is steep the maps lie against its side instead of hanging down it.
#ifdef SOFTWARE
    bool flatEnough = smoothNormal.z > 0.66;
    bool alongX = abs(smoothNormal.x) > abs(smoothNormal.y);
    Ground ground = groundAt(flatEnough ? flatPlace : (alongX ? place.yz : place.xz), mixture);
    vec3 sideSlope = alongX ? slopeAlongX(ground.slope) : slopeAlongY(ground.slope);
    vec3 normal = smoothNormal + (flatEnough ? vec3(ground.slope * smoothNormal.z, 0.0) : sideSlope);
#else
    Footprint flatSize = Footprint(dFdx(flatPlace), dFdy(flatPlace));
    vec3 placeX = dFdx(place);
    vec3 placeY = dFdy(place);
    float flatShare = smoothstep(0.60, 0.74, smoothNormal.z);
    vec2 lean = abs(smoothNormal.xy);
    float xShare = smoothstep(0.35, 0.65, lean.x / (lean.x + lean.y + 0.0001));
    vec3 shares = vec3((1.0 - flatShare) * xShare, (1.0 - flatShare) * (1.0 - xShare), flatShare);
    Ground ground = Ground(vec3(0.0), vec2(0.0), 0.0, 0.0);
    vec3 normal = vec3(0.0);
    for (int i = shares.z < 1.0 ? 0 : 2; i < 3; ++i)
    {
        if (shares[i] <= 0.0)
            continue;
        Ground side = groundAt(i == 0 ? place.yz : (i == 1 ? place.xz : flatPlace),
                               i == 0 ? Footprint(placeX.yz, placeY.yz)
                                      : (i == 1 ? Footprint(placeX.xz, placeY.xz) : flatSize),
                               mixture);
        ground.colour += side.colour * shares[i];
        ground.occlusion += side.occlusion * shares[i];
        ground.gloss += side.gloss * shares[i];
        normal += (smoothNormal + (i == 0   ? slopeAlongX(side.slope)
                                   : i == 1 ? slopeAlongY(side.slope)
                                            : vec3(side.slope * smoothNormal.z, 0.0))) *
                  shares[i];
    }
#endif
    normal = normalize(normal);

    vec3 albedo = ground.colour * tint;
    float hidden = fog.w > 0.0 ? texture(instanceShade, worldPosition.xy * fog.w).r : 0.0;
    float sun = max(dot(normal, sunDirection.xyz), 0.0) * shade.x * (1.0 - 0.92 * hidden);
    vec3 light = sunColour.rgb * sun + ambientLight(normal) * (ground.occlusion * shade.y * (1.0 - 0.2 * hidden));
    vec3 colour = albedo * light;
#ifdef SOFTWARE
    colour = mix(air.rgb, colour, air.a);
#else
    vec3 toEye = eye.w > 0.5 ? -viewAxis.xyz : normalize(eye.xyz - worldPosition);
    float shine = max(dot(normal, normalize(toEye + sunDirection.xyz)), 0.0);
    float sharpness = exp2(2.0 + ground.gloss * 6.0);
    colour += sunColour.rgb * sun * ground.gloss * pow(max(shine, 0.0001), sharpness) * (sharpness + 8.0) * 0.004;
    float edge = 1.0 - max(dot(normal, toEye), 0.0);
    colour += skyHorizon.rgb * ground.gloss * edge * edge * edge * edge * 0.2 * ground.occlusion * shade.y;
    colour = throughAir(colour, worldPosition);
#endif
    result = vec4(toDisplay(colour), 1.0);
}
#else
void main() {}
#endif
#endif
