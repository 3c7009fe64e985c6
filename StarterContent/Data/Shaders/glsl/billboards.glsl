// Icons that face the eye: one instance each, four corners.
#include "common.glsl"

layout(std140, binding = 2) uniform Icons
{
    vec4 iconRight;
    vec4 iconUp;
    vec4 iconDraw; // opacity, depth bias
};

#ifdef VERTEX_STAGE
layout(location = 0) in vec4 inPlace; // metres; w: a side
layout(location = 1) in vec4 inColour;
layout(location = 2) in uint inLayer;

out vec3 texCoord;
out vec4 colour;

void main()
{
    vec2 corner = vec2((gl_VertexID & 1) == 0 ? -0.5 : 0.5, gl_VertexID < 2 ? 0.5 : -0.5);
    texCoord = vec3(corner.x + 0.5, 0.5 - corner.y, float(inLayer));
    colour = inColour;
    gl_Position = viewProjection * vec4(inPlace.xyz + (iconRight.xyz * corner.x + iconUp.xyz * corner.y) * inPlace.w, 1.0);
    gl_Position.z += gl_Position.z * iconDraw.y;
}
#endif

#ifdef FRAGMENT_STAGE
layout(binding = 0) uniform sampler2DArray images;

in vec3 texCoord;
in vec4 colour;
layout(location = 0) out vec4 result;

void main()
{
    vec4 image = texture(images, texCoord);
    float opacity = image.a * colour.a * iconDraw.x;
    if (opacity < 0.004)
        discard;
#ifndef SOFTWARE
    image.rgb = pow(image.rgb, vec3(1.0 / 2.2));
#endif
    result = vec4(image.rgb * colour.rgb, opacity);
}
#endif
