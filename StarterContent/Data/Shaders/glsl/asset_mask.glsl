// The shapes of highlighted assets: R where they are, G where nothing hides them.
#include "common.glsl"
#include "asset_common.glsl"

#ifdef VERTEX_STAGE
out vec2 texCoord;

void main()
{
    texCoord = inTexCoord;
    gl_Position = viewProjection * vec4(instancePosition(), 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
layout(binding = 0) uniform sampler2DArray diffuseMap;
layout(binding = 1) uniform sampler2D sceneDepth; // 1 near, 0 far

in vec2 texCoord;
layout(location = 0) out vec4 result;

void main()
{
    if (texture(diffuseMap, vec3(texCoord, 0.0)).a < 0.5)
        discard;
    float hidden = texelFetch(sceneDepth, ivec2(gl_FragCoord.xy), 0).r;
    float seen = gl_FragCoord.z * 1.002 >= hidden ? 1.0 : 0.0;
    result = vec4(1.0, seen, 0.0, 1.0);
}
#endif
