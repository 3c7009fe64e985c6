// The edge of the mask: a bright line with a dark one outside, so that it shows on sand, snow and grass.
// Within, what something hides is hatched.
#include "common.glsl"

#ifdef VERTEX_STAGE
void main()
{
    gl_Position = vec4(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0, 0.5, 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
layout(binding = 0) uniform sampler2D mask;
layout(location = 0) out vec4 result;

const vec3 bright = vec3(1.0, 0.83, 0.30);

float maskAt(ivec2 place)
{
    return texelFetch(mask, place, 0).r;
}

void main()
{
    ivec2 place = ivec2(gl_FragCoord.xy);
    vec2 here = texelFetch(mask, place, 0).rg;
    if (here.r > 0.5)
    {
        bool stripe = ((place.x + place.y) & 7) < 3;
        result = vec4(bright, here.g > 0.5 ? 0.07 : (stripe ? 0.42 : 0.14));
        return;
    }
    ivec2 last = textureSize(mask, 0) - 1;
    float inner = 0.0;
    float outer = 0.0;
    for (int y = -3; y <= 3; ++y)
        for (int x = -3; x <= 3; ++x)
        {
            int away = x * x + y * y;
            if (away > 12)
                continue;
            float found = maskAt(clamp(place + ivec2(x, y), ivec2(0), last));
            inner = max(inner, found * clamp(2.9 - sqrt(float(away)), 0.0, 1.0));
            outer = max(outer, found * clamp(4.1 - sqrt(float(away)), 0.0, 1.0));
        }
    if (outer <= 0.0)
        discard;
    float alpha = max(inner, outer * 0.55);
    result = vec4(bright * (inner / max(alpha, 0.001)), alpha);
}
#endif
