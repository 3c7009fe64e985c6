// The ground of a tile: nine materials blended by eight weights a metre, tinted by a colour a vertex.
//
// Passes: GBUFFER draws it lit; DEPTH writes depth alone.
// Material maps, one layer a material:
//   diffuse  RGB colour, A height (0 low to 1 high; 1 everywhere means: blend by weight alone)
//   asg      R ambient occlusion, G gloss, B height once more
//   normal   R, G: slope along +X and +Y around 0.5; the third part follows from them
// The ninth material has no weight of its own: it shows where the eight leave room.
// With SOFTWARE defined a CPU draws: at most three materials a pixel and one normal map.
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
out vec3 tint;
out float macroTone;
out vec2 openness; // part of the sun, part of the sky that is seen

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
    tint = stored * stored;
    macroTone = noise(position.xy * 0.021) * 0.6 + noise(position.xy * 0.083 + 5.2) * 0.4;
    openness = vec2(1.0);
#ifdef HEIGHTS
#ifdef SOFTWARE
    if (verticesPerRow <= 257u) // on larger tiles the walks would cost more than the rest
#endif
        openness = opennessAt(position);
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
in float macroTone;
in vec2 openness;
layout(location = 0) out vec4 result;

const float repeatMetres = 3.5;
const float blendDepth = 0.22; // how far below the highest material another still shows, as height

vec3 normalFrom(vec2 stored)
{
    vec2 slope = stored * 2.0 - 1.0;
    return vec3(slope, sqrt(max(1.0 - dot(slope, slope), 0.05)));
}

void materialWeights(out float weights[9])
{
    vec2 place = (worldPosition.xy + 0.5) / vec2(textureSize(weights0, 0));
    vec4 low = texture(weights0, place);
    vec4 high = texture(weights1, place);
    weights[0] = low.r;
    weights[1] = low.g;
    weights[2] = low.b;
    weights[3] = low.a;
    weights[4] = high.r;
    weights[5] = high.g;
    weights[6] = high.b;
    weights[7] = high.a;
    vec4 sum = low + high;
    weights[8] = max(1.0 - sum.r - sum.g - sum.b - sum.a, 0.0);
}

struct Ground
{
    vec3 colour; // linear
    vec2 slope;  // of the normal map
    float occlusion;
    float gloss;
};

#ifdef SOFTWARE

Ground groundAt(vec2 place)
{
    float weights[9];
    materialWeights(weights);
    // A turned, larger scale takes over with distance.
    vec2 wide = mat2(0.8, 0.6, -0.6, 0.8) * place * 0.29;
    float wideShare = eye.w > 0.5 ? 1.0 : smoothstep(25.0, 60.0, length(worldPosition - eye.xyz));
    vec2 chosen = wideShare > 0.5 ? wide : place;
    // The three strongest, in order.
    vec3 strongest = vec3(weights[8], -1.0, -1.0);
    ivec3 material = ivec3(8, 0, 0);
    for (int m = 0; m < 8; ++m)
    {
        float weight = weights[m];
        if (weight > strongest.x)
        {
            strongest = vec3(weight, strongest.xy);
            material = ivec3(m, material.xy);
        }
        else if (weight > strongest.y)
        {
            strongest = vec3(strongest.x, weight, strongest.y);
            material = ivec3(material.x, m, material.y);
        }
        else if (weight > strongest.z)
        {
            strongest.z = weight;
            material.z = m;
        }
    }

    vec4 first = texture(diffuseArray, vec3(place, material.x));
    if (wideShare > 0.0)
        first = mix(first, texture(diffuseArray, vec3(wide, material.x)), wideShare);
    vec3 sum = first.rgb;
    if (strongest.y > 0.02)
    {
        vec4 second = texture(diffuseArray, vec3(chosen, material.y));
        float firstHeight = strongest.x + first.a * 0.5;
        float secondHeight = strongest.y + second.a * 0.5;
        float thirdHeight = -1.0;
        vec3 third = vec3(0.0);
        if (strongest.z > 0.05)
        {
            vec4 texel = texture(diffuseArray, vec3(chosen, material.z));
            third = texel.rgb;
            thirdHeight = strongest.z + texel.a * 0.5;
        }
        float top = max(max(firstHeight, secondHeight), thirdHeight) - blendDepth;
        vec3 blend = max(vec3(firstHeight, secondHeight, thirdHeight) - top, 0.0);
        sum = (first.rgb * blend.x + second.rgb * blend.y + third * blend.z) / (blend.x + blend.y + blend.z);
    }

    Ground ground;
    ground.colour = sum * sum;
    ground.slope = texture(normalArray, vec3(chosen, material.x)).rg * 2.0 - 1.0;
    ground.occlusion = 1.0;
    ground.gloss = 0.0;
    return ground;
}

#else

Ground groundAt(vec2 place)
{
    float weights[9];
    materialWeights(weights);
    float distanceTo = length(worldPosition - eye.xyz);
    // A turned, larger scale takes over with distance and shimmers through nearby.
    vec2 wide = mat2(0.8, 0.6, -0.6, 0.8) * place * 0.217;
    float wideShare = eye.w > 0.5 ? 0.5 : 0.18 + 0.5 * smoothstep(15.0, 90.0, distanceTo);
    vec2 placeX = dFdx(place);
    vec2 placeY = dFdy(place);
    vec2 wideX = dFdx(wide);
    vec2 wideY = dFdy(wide);

    vec4 diffuse[9];
    float top = 0.0;
    for (int m = 0; m < 9; ++m)
    {
        if (weights[m] < 0.004)
            continue;
        diffuse[m] = mix(textureGrad(diffuseArray, vec3(place, m), placeX, placeY),
                         textureGrad(diffuseArray, vec3(wide, m), wideX, wideY), wideShare);
        top = max(top, weights[m] + diffuse[m].a * 0.5);
    }
    top -= blendDepth;

    Ground ground = Ground(vec3(0.0), vec2(0.0), 0.0, 0.0);
    float sum = 0.0;
    for (int m = 0; m < 9; ++m)
    {
        if (weights[m] < 0.004)
            continue;
        // Faint weights fade out, whatever their height.
        float blend = max(weights[m] + diffuse[m].a * 0.5 - top, 0.0) * min(weights[m] * 8.0, 1.0);
        if (blend <= 0.0)
            continue;
        vec3 asg = textureGrad(asgArray, vec3(place, m), placeX, placeY).rgb;
        vec2 near = textureGrad(normalArray, vec3(place, m), placeX, placeY).rg;
        vec2 far = textureGrad(normalArray, vec3(wide, m), wideX, wideY).rg;
        ground.colour += diffuse[m].rgb * diffuse[m].rgb * blend;
        ground.slope += ((near * 2.0 - 1.0) + (far * 2.0 - 1.0) * 0.7) * blend;
        ground.occlusion += asg.r * blend;
        ground.gloss += asg.g * blend;
        sum += blend;
    }
    sum = max(sum, 0.0001);
    ground.colour /= sum;
    ground.slope /= sum;
    ground.occlusion /= sum;
    ground.gloss /= sum;
    return ground;
}

#endif

Ground mixed(Ground a, Ground b, float share)
{
    return Ground(mix(a.colour, b.colour, share), mix(a.slope, b.slope, share), mix(a.occlusion, b.occlusion, share),
                  mix(a.gloss, b.gloss, share));
}

void main()
{
    vec3 smoothNormal = normalize(worldNormal);
    vec3 place = worldPosition / repeatMetres;
    // Where the ground is steep the maps lie against its side instead of hanging down it.
    vec2 lean = abs(smoothNormal.xy);
    bool alongY = lean.x > lean.y;
    vec2 sidePlace = alongY ? place.yz : place.xz;
#ifdef SOFTWARE
    bool flatEnough = smoothNormal.z + 0.06 * macroTone > 0.69;
    Ground ground = groundAt(flatEnough ? place.xy : sidePlace);
    vec3 sideSlope = vec3(alongY ? vec2(0.0, ground.slope.x) : vec2(ground.slope.x, 0.0), ground.slope.y);
    vec3 normal = smoothNormal + (flatEnough ? vec3(ground.slope * smoothNormal.z, 0.0) : sideSlope);
#else
    float flatShare = smoothstep(0.60, 0.74, smoothNormal.z);
    Ground ground = Ground(vec3(0.0), vec2(0.0), 1.0, 0.0);
    vec3 normal = smoothNormal;
    if (flatShare > 0.0)
    {
        ground = groundAt(place.xy);
        normal += vec3(ground.slope * smoothNormal.z, 0.0);
    }
    if (flatShare < 1.0)
    {
        Ground side = groundAt(sidePlace);
        vec3 sideSlope = vec3(alongY ? vec2(0.0, side.slope.x) : vec2(side.slope.x, 0.0), side.slope.y);
        normal = mix(smoothNormal + sideSlope, normal, flatShare);
        ground = mixed(side, ground, flatShare);
    }
#endif
    normal = normalize(normal);

    // Large patches, some warmer and lighter, some cooler and darker.
    vec3 albedo = ground.colour * tint * mix(vec3(0.8, 0.86, 0.9), vec3(1.2, 1.13, 1.02), macroTone);

    float sun = max(dot(normal, sunDirection.xyz), 0.0);
    sun *= smoothstep(-0.05, 0.25, dot(smoothNormal, sunDirection.xyz)) * openness.x;
    vec3 light = sunColour.rgb * sun + ambientLight(normal) * (ground.occlusion * openness.y);
    vec3 colour = albedo * light;
#ifndef SOFTWARE
    vec3 toEye = eye.w > 0.5 ? -viewAxis.xyz : normalize(eye.xyz - worldPosition);
    float shine = max(dot(normal, normalize(toEye + sunDirection.xyz)), 0.0);
    float sharpness = exp2(2.0 + ground.gloss * 6.0);
    colour += sunColour.rgb * sun * ground.gloss * pow(shine, sharpness) * (sharpness + 8.0) * 0.004;
    float edge = 1.0 - max(dot(normal, toEye), 0.0);
    colour += skyHorizon.rgb * ground.gloss * edge * edge * edge * edge * 0.2 * ground.occlusion * openness.y;
#endif
    result = vec4(toDisplay(throughAir(colour, worldPosition)), 1.0);
}
#else
void main() {}
#endif
#endif
