// The lines of the editor's grid, drawn on one large square: a pixel wide whatever the distance, fading
// where they come too close together, and towards the horizon.
#include "common.glsl"

layout(std140, binding = 2) uniform Grid
{
    vec4 gridOrigin; // of a crossing; spacing
    vec4 gridX;      // along the lines of one way; half a side of the square, metres
    vec4 gridY;      // along those of the other; depth bias
    vec4 gridColour;
    vec4 gridOtherColour;
};

#ifdef VERTEX_STAGE
out vec2 place; // metres from the crossing

void main()
{
    place = vec2((gl_VertexID & 1) == 0 ? -1.0 : 1.0, gl_VertexID < 2 ? -1.0 : 1.0) * gridX.w;
    gl_Position = viewProjection * vec4(gridOrigin.xyz + gridX.xyz * place.x + gridY.xyz * place.y, 1.0);
    gl_Position.z += gl_Position.z * gridY.w;
}
#endif

#ifdef FRAGMENT_STAGE
in vec2 place;
layout(location = 0) out vec4 result;

// How much of a pixel the lines of a spacing cover; less the closer they come together.
float lines(vec2 coordinate, float width)
{
    vec2 slope = max(fwidth(coordinate), vec2(1e-6));
    vec2 away = abs(fract(coordinate - 0.5) - 0.5) / slope;
    vec2 cover = clamp(width + 0.5 - away, 0.0, 1.0) * clamp(1.2 - slope * 3.0, 0.0, 1.0);
    return max(cover.x, cover.y);
}

void main()
{
    vec2 cell = place / gridOrigin.w;
    float even = lines(cell * 0.5, 0.75);
    float all = lines(cell, 0.5);
    float far = 1.0 - smoothstep(0.35, 1.0, length(place) / min(gridX.w, gridOrigin.w * 60.0));
    vec4 colour = even > 0.01 ? gridColour : gridOtherColour;
    float opacity = max(even * 0.55, all * 0.35) * far;
    if (opacity < 0.004)
        discard;
    result = vec4(colour.rgb, opacity);
}
#endif
