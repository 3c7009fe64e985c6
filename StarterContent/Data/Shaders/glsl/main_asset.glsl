// Assets: one draw a part of a model, an instance an object.
//
// Maps: diffuse RGB colour, with SOFTWARE as display values, A what is left of a cut-out; normal RG slope
// around 0.5; asg R ambient occlusion, G gloss.
#include "common.glsl"
#include "asset_common.glsl"

layout(std140, binding = 2) uniform AssetPart // "CB_ASSET_PART"
{
    vec4 partTint;    // linear
    ivec4 partColour; // x: which of the instance's four colours; -1: none
};
layout(std140, binding = 3) uniform AssetView // "CB_ASSET_VIEW"
{
    vec4 assetView; // x: 1 when there is a shade map
};

#ifdef VERTEX_STAGE
layout(binding = 5) uniform sampler2D shadeMap; // terrain_shade's, one texel in 2 m

out vec3 worldPosition;
out vec3 worldNormal;
out vec2 texCoord;
out vec3 tint;
out vec3 shade; // part of the sun, part of the sky, part of the sky near the ground
#ifdef SOFTWARE
out vec3 lit;
out vec4 air;
#endif

// The ground's shadows also fall on what stands there, less so higher up.
vec3 shadeAt(vec3 place, float above)
{
    float contact = mix(0.5, 1.0, smoothstep(-0.05, 0.9, above));
    if (assetView.x < 0.5)
        return vec3(1.0, 1.0, contact);
    ivec2 last = textureSize(shadeMap, 0) - 1;
    ivec2 texel = ivec2(place.xy * 0.5 + 0.5);
    vec2 found = texelFetch(shadeMap, clamp(texel, ivec2(0), last), 0).rg;
    if (any(lessThan(texel, ivec2(0))) || any(greaterThan(texel, last)))
        found = vec2(1.0);
    float high = smoothstep(0.5, 12.0, above);
    return vec3(mix(found.r, 1.0, high), mix(found.g, 1.0, high), contact);
}

void main()
{
    worldPosition = instancePosition();
    worldNormal = instanceNormal();
    texCoord = inTexCoord;
    gl_Position = viewProjection * vec4(worldPosition, 1.0);

    vec4 colour = partColour.x == 0 ? inColour0 : partColour.x == 1 ? inColour1 : partColour.x == 2 ? inColour2 : inColour3;
    colour = partColour.x < 0 ? vec4(1.0) : colour;
    tint = mix(vec3(1.0), colour.rgb * colour.rgb, colour.a) * partTint.rgb;
    shade = shadeAt(worldPosition, worldPosition.z - inRow2.w);
#ifdef SOFTWARE
    lit = sunColour.rgb * (max(dot(worldNormal, sunDirection.xyz), 0.0) * shade.x) +
          ambientLight(worldNormal) * (shade.y * shade.z);
    lit *= tint;
    air = airBefore(worldPosition);
#endif
}
#endif

#ifdef FRAGMENT_STAGE
layout(binding = 0) uniform sampler2DArray diffuseMap;
layout(binding = 1) uniform sampler2DArray normalMap;
layout(binding = 2) uniform sampler2DArray asgMap;

in vec3 worldPosition;
in vec3 worldNormal;
in vec2 texCoord;
in vec3 tint;
in vec3 shade;
#ifdef SOFTWARE
in vec3 lit;
in vec4 air;
#endif
layout(location = 0) out vec4 result;

void main()
{
    vec4 diffuse = texture(diffuseMap, vec3(texCoord, 0.0));
    if (diffuse.a < 0.5)
        discard;
#ifdef SOFTWARE
    vec3 colour = mix(air.rgb, diffuse.rgb * diffuse.rgb * lit, air.a);
#else
    // The map's axes follow from how place and coordinates change from pixel to pixel.
    vec3 smoothNormal = normalize(worldNormal);
    vec2 slope = texture(normalMap, vec3(texCoord, 0.0)).rg * 2.0 - 1.0;
    vec3 placeX = dFdx(worldPosition);
    vec3 placeY = dFdy(worldPosition);
    vec2 coordX = dFdx(texCoord);
    vec2 coordY = dFdy(texCoord);
    vec3 acrossX = cross(smoothNormal, placeX);
    vec3 acrossY = cross(placeY, smoothNormal);
    vec3 alongU = acrossY * coordX.x + acrossX * coordY.x;
    vec3 alongV = acrossY * coordX.y + acrossX * coordY.y;
    float longest = max(dot(alongU, alongU), dot(alongV, alongV));
    vec3 normal = smoothNormal;
    if (longest > 1.0e-12)
        normal = normalize(smoothNormal + (alongU * slope.x - alongV * slope.y) * inversesqrt(longest));
    vec3 asg = texture(asgMap, vec3(texCoord, 0.0)).rgb;

    float sun = max(dot(normal, sunDirection.xyz), 0.0) * shade.x;
    float sky = asg.r * shade.y * shade.z;
    vec3 colour = diffuse.rgb * tint * (sunColour.rgb * sun + ambientLight(normal) * sky);
    vec3 toEye = eye.w > 0.5 ? -viewAxis.xyz : normalize(eye.xyz - worldPosition);
    float shine = max(dot(normal, normalize(toEye + sunDirection.xyz)), 0.0);
    float sharpness = exp2(2.0 + asg.g * 6.0);
    colour += sunColour.rgb * sun * asg.g * pow(max(shine, 0.0001), sharpness) * (sharpness + 8.0) * 0.004;
    float edge = 1.0 - max(dot(normal, toEye), 0.0);
    colour += skyHorizon.rgb * asg.g * edge * edge * edge * edge * 0.2 * sky;
    colour = throughAir(colour, worldPosition);
#endif
    result = vec4(toDisplay(colour), 1.0);
}
#endif
