// The shadows of instances on the ground, seen from above: 1 where the sun is hidden. With CLEAR the part
// of the map within the scissor is made empty.
#include "common.glsl"
#include "asset_common.glsl"

layout(std140, binding = 3) uniform AssetShade // "CB_ASSET_SHADE"
{
    vec4 shadeShift; // X and Y that a metre of height adds; z: map sides a metre
};

#ifdef VERTEX_STAGE
#ifdef CLEAR
void main()
{
    gl_Position = vec4(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0, 0.5, 1.0);
}
#else
out vec2 texCoord;

void main()
{
    texCoord = inTexCoord;
    vec3 place = instancePosition();
    vec2 shadow = place.xy + shadeShift.xy * max(place.z - inRow2.w, 0.0);
    vec2 onMap = shadow * shadeShift.z * 2.0 - 1.0;
    gl_Position = vec4(onMap.x, -onMap.y, 0.5, 1.0); // Y grows with the rows
}
#endif
#endif

#ifdef FRAGMENT_STAGE
layout(location = 0) out vec4 result;

#ifdef CLEAR
void main()
{
    result = vec4(0.0);
}
#else
layout(binding = 0) uniform sampler2DArray diffuseMap;
in vec2 texCoord;

void main()
{
    if (texture(diffuseMap, vec3(texCoord, 0.0)).a < 0.5)
        discard;
    result = vec4(1.0);
}
#endif
#endif
