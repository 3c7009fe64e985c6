// What the ground's vertices don't hold and needn't be found anew each frame, one texel a vertex:
// R part of the sun and G part of the sky that is seen, B large patches, A small ones.
#include "common.glsl"

#ifdef VERTEX_STAGE
void main()
{
    gl_Position = vec4(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0, 0.5, 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
layout(location = 0) out vec4 result;

layout(std140, binding = 0) uniform SurfaceInfo // "CB_SURFACE_INFO"
{
    uint verticesPerRow;
    float inverseQuadsX;
};
layout(std430, binding = 0) readonly buffer Vertices
{
    float words[]; // five a vertex, the fourth is the height
};

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

float heightAt(vec2 place, vec2 last)
{
    vec2 grid = clamp(place, vec2(0.0), last);
    vec2 low = floor(min(grid, last - 0.001));
    vec2 part = grid - low;
    int first = (int(low.y) * int(verticesPerRow) + int(low.x)) * 5 + 3;
    int above = first + int(verticesPerRow) * 5;
    return mix(mix(words[first], words[first + 5], part.x), mix(words[above], words[above + 5], part.x), part.y);
}

// Walks towards the sun and, a short way, to all sides. Places are counted in vertices, 2 m apart.
vec2 opennessAt(vec2 place, vec2 last)
{
    float height = heightAt(place, last);
    float reach = max(length(sunDirection.xy), 0.001);
    vec2 toSun = sunDirection.xy / reach;
    float climb = sunDirection.z / reach;
    float above = -1.0;
    float way = 3.0;
    for (int i = 0; i < 14; ++i)
    {
        float over = heightAt(place + toSun * way * 0.5, last) - height - climb * way;
        above = max(above, over / (0.6 + way * 0.07));
        way *= 1.28;
    }
    float hidden = 0.0;
    for (int i = 0; i < 6; ++i)
    {
        vec2 side = vec2(cos(float(i) * 1.0472 + 0.4), sin(float(i) * 1.0472 + 0.4));
        float near = (heightAt(place + side * 1.75, last) - height) / 3.5;
        float far = (heightAt(place + side * 5.5, last) - height) / 11.0;
        float rise = max(max(near * 0.8, far), 0.0);
        hidden += rise * inversesqrt(1.0 + rise * rise);
    }
    return vec2(1.0 - smoothstep(-0.35, 0.55, above), 1.0 - 0.95 * hidden / 6.0);
}

void main()
{
    vec2 place = floor(gl_FragCoord.xy);
    vec2 last = vec2(float(verticesPerRow), float(words.length() / 5) / float(verticesPerRow)) - 1.0;
    vec2 metres = place * 2.0;
    float large = noise(metres * 0.013 + 9.1) * 0.55 + noise(metres * 0.041) * 0.45;
    float small = noise(metres * 0.11 + 5.2) * 0.6 + noise(metres * 0.27 + 1.3) * 0.4;
    result = vec4(opennessAt(place, last), large, small);
}
#endif
