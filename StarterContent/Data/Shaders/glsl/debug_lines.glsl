// Lines in the world, two pixels wide whatever the distance, with a dark rim that keeps them apart
// from bright ground. One instance a line, four corners each.
#include "common.glsl"

layout(std140, binding = 2) uniform Lines
{
    vec4 lineWidths; // half width of the core and of the rim, pixels; depth bias; opacity
};

#ifdef VERTEX_STAGE
layout(location = 0) in vec3 inStart;
layout(location = 1) in vec3 inEnd;
layout(location = 2) in vec4 inColour;
out vec4 colour;
noperspective out float across; // pixels from the middle

void main()
{
    vec4 start = viewProjection * vec4(inStart, 1.0);
    vec4 end = viewProjection * vec4(inEnd, 1.0);
    const float nearest = 0.02;
    if (start.w < nearest && end.w < nearest)
    {
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
        return;
    }
    if (start.w < nearest)
        start = mix(start, end, (nearest - start.w) / (end.w - start.w));
    else if (end.w < nearest)
        end = mix(end, start, (nearest - end.w) / (start.w - end.w));

    vec2 along = (end.xy / end.w - start.xy / start.w) * viewport.xy;
    float pixels = length(along);
    along = pixels > 0.001 ? along / pixels : vec2(1.0, 0.0);
    vec2 side = vec2(-along.y, along.x);

    float reach = lineWidths.y + 0.5;
    float sign = (gl_VertexID & 1) == 0 ? -1.0 : 1.0;
    bool atEnd = gl_VertexID > 1;
    vec4 place = atEnd ? end : start;
    place.xy += (side * sign * reach + along * (atEnd ? 0.5 : -0.5)) * 2.0 * viewport.zw * place.w;
    place.z += place.z * lineWidths.z;
    across = sign * reach;
    colour = inColour;
    gl_Position = place;
}
#endif

#ifdef FRAGMENT_STAGE
in vec4 colour;
noperspective in float across;
layout(location = 0) out vec4 result;

void main()
{
    float core = clamp(lineWidths.x + 0.5 - abs(across), 0.0, 1.0);
    float rim = clamp((lineWidths.y + 0.5 - abs(across)) / (lineWidths.y - lineWidths.x + 0.5), 0.0, 1.0) * 0.4;
    float opacity = max(core, rim);
    result = vec4(colour.rgb * core / max(opacity, 0.001), opacity * colour.a * lineWidths.w);
}
#endif
