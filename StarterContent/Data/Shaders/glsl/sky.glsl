// The sky behind everything: one triangle over the view, at the far end of the depth.
#include "common.glsl"

#ifdef VERTEX_STAGE
out vec3 direction;

void main()
{
    vec2 corner = vec2(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0);
    vec4 far = inverseViewProjection * vec4(corner, 1.0, 1.0);
    direction = eye.w > 0.5 ? viewAxis.xyz : far.xyz / far.w;
    gl_Position = vec4(corner, 0.0, 1.0);
}
#endif

#ifdef FRAGMENT_STAGE
in vec3 direction;
layout(location = 0) out vec4 result;

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

void main()
{
    vec3 way = normalize(direction);
    vec3 colour = airLight(way);
    float toSun = max(dot(way, sunDirection.xyz), 0.0);

    // High, thin clouds on a plane overhead.
    if (way.z > 0.03)
    {
        vec2 place = way.xy / (way.z + 0.12) * 1.6;
        float cover = noise(place * vec2(1.0, 1.6)) * 0.55 + noise(place * vec2(2.3, 3.1) + 7.3) * 0.3;
#ifndef SOFTWARE
        cover += noise(place * 6.1 + 3.1) * 0.12 + noise(place * 13.7 + 1.7) * 0.06;
        cover -= 0.09;
#endif
        cover = smoothstep(0.42, 0.85, cover) * smoothstep(0.03, 0.22, way.z) * 0.55;
        vec3 cloud = mix(skyHorizon.rgb, sunColour.rgb * 0.62, 0.45 + 0.3 * toSun);
        colour = mix(colour, cloud, cover);
    }
    colour += sunColour.rgb * smoothstep(0.99955, 0.9998, toSun) * 6.0;
    result = vec4(toDisplay(colour), 1.0);
}
#endif
