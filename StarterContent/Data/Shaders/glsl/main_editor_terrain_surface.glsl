// The ground of a tile: nine materials blended by eight weights a metre, tinted by a colour a vertex.
//
// Passes: GBUFFER draws it lit; DEPTH writes depth alone.
// Material maps, one layer a material:
//   diffuse  RGB colour, A height (0 low to 1 high; 1 everywhere means: blend by weight alone)
//   asg      R ambient occlusion, G gloss, B height once more
//   normal   R, G: slope along +X and +Y around 0.5; the third part follows from them
// The ninth material has no weight of its own: it shows where the eight leave room.
// With SOFTWARE defined a CPU draws: at most three materials a pixel and one normal map.
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
    vec3 sum = first.rgb;
    if (strongest.y > 0.02)
    {
        vec4 second = texture(diffuseArray, vec3(place, material.y));
        float firstHeight = strongest.x + first.a * 0.5;
        float secondHeight = strongest.y + second.a * 0.5;
        float thirdHeight = -1.0;
        vec3 third = vec3(0.0);
        if (strongest.z > 0.05)
        {
            vec4 texel = texture(diffuseArray, vec3(place, material.z));
            third = texel.rgb;
            thirdHeight = strongest.z + texel.a * 0.5;
        }
        float top = max(max(firstHeight, secondHeight), thirdHeight) - blendDepth;
        vec3 blend = max(vec3(firstHeight, secondHeight, thirdHeight) - top, 0.0);
        sum = (first.rgb * blend.x + second.rgb * blend.y + third * blend.z) / (blend.x + blend.y + blend.z);
    }

    Ground ground;
    ground.colour = sum * sum;
    ground.slope = texture(normalArray, vec3(place, material.x)).rg * 2.0 - 1.0;
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

void main()
{
    Ground ground = groundAt(worldPosition.xy / repeatMetres);
    vec3 smoothNormal = normalize(worldNormal);
    vec3 normal = normalize(vec3(smoothNormal.xy + ground.slope * smoothNormal.z, smoothNormal.z));

    // Large patches, some warmer and lighter, some cooler and darker.
    vec3 albedo = ground.colour * tint * mix(vec3(0.8, 0.86, 0.9), vec3(1.2, 1.13, 1.02), macroTone);

    float sun = max(dot(normal, sunDirection.xyz), 0.0);
    sun *= smoothstep(-0.05, 0.25, dot(smoothNormal, sunDirection.xyz));
    vec3 light = sunColour.rgb * sun + ambientLight(normal) * ground.occlusion;
    vec3 colour = albedo * light;
#ifndef SOFTWARE
    vec3 toEye = eye.w > 0.5 ? -viewAxis.xyz : normalize(eye.xyz - worldPosition);
    float shine = max(dot(normal, normalize(toEye + sunDirection.xyz)), 0.0);
    float sharpness = exp2(2.0 + ground.gloss * 6.0);
    colour += sunColour.rgb * sun * ground.gloss * pow(shine, sharpness) * (sharpness + 8.0) * 0.004;
    float edge = 1.0 - max(dot(normal, toEye), 0.0);
    colour += skyHorizon.rgb * ground.gloss * edge * edge * edge * edge * 0.2 * ground.occlusion;
#endif
    result = vec4(toDisplay(throughAir(colour, worldPosition)), 1.0);
}
#else
void main() {}
#endif
#endif
