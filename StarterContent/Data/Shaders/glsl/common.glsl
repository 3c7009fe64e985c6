// What all passes of a view share: the frame's values, the sky, fog and tone mapping.
// Colours are linear until toDisplay().

layout(std140, binding = 1) uniform Frame
{
    mat4 viewProjection;
    mat4 inverseViewProjection; // of the view without its place: clip to directions
    vec4 eye;                   // xyz metres; w: 1 for an orthographic view
    vec4 sunDirection;          // towards the sun; w: sharpness of the disc
    vec4 sunColour;             // w: exposure
    vec4 skyZenith;
    vec4 skyHorizon;
    vec4 skyNadir;  // below the horizon
    vec4 fog;       // density a metre, metres clear before it starts, metres to the end of the view; w: sides of the
                                // map of instances' shadows a metre, 0 without
    vec4 viewport;  // width, height, 1 / width, 1 / height
    vec4 viewAxis;  // the view's direction
};

// The light of the sky from a direction, without the sun's disc.
vec3 skyLight(vec3 direction)
{
    float up = max(direction.z, 0.0);
    float down = max(-direction.z, 0.0);
    vec3 colour = mix(skyHorizon.rgb, skyZenith.rgb, 1.0 - exp2(-up * 5.5));
    colour = mix(colour, skyNadir.rgb, 1.0 - exp2(-down * 5.0));
    float toSun = max(dot(direction, sunDirection.xyz), 0.0);
    float glow = toSun * toSun;
    glow *= glow;
    return colour + sunColour.rgb * (0.05 * glow * glow + 0.025 * glow) * (1.0 - 0.6 * up);
}

// Light from all around that falls on a surface: the sky from above, sunlit ground from the sides and
// below. Less blue than the sky is seen, as an eye that is used to it takes it.
vec3 ambientLight(vec3 normal)
{
    vec3 seen = mix(skyHorizon.rgb, skyZenith.rgb, 0.3);
    vec3 sky = mix(vec3(dot(seen, vec3(0.33))), seen, 0.45) * vec3(1.2, 1.13, 1.05);
    vec3 bounce = sunColour.rgb * max(sunDirection.z, 0.0) * vec3(0.26, 0.24, 0.19) +
                  vec3(dot(skyNadir.rgb, vec3(0.4)));
    return mix(bounce, sky, normal.z * 0.5 + 0.5);
}

// The light of the air towards a direction: as the sky, but it stays bright below the horizon.
vec3 airLight(vec3 direction)
{
    return skyLight(direction.z < 0.0 ? vec3(direction.xy, direction.z * 0.1) : direction);
}

// The air between the eye and a point: its colour, and in the last part how much is seen through it.
// Nothing is seen through it at the end of the view.
vec4 airBefore(vec3 point)
{
    if (eye.w > 0.5)
        return vec4(0.0, 0.0, 0.0, 1.0);
    vec3 way = point - eye.xyz;
    float distanceTo = length(way);
    float clear = exp2(-max(distanceTo - fog.y, 0.0) * fog.x);
    clear *= 1.0 - smoothstep(0.55, 0.98, distanceTo / fog.z);
    return vec4(airLight(way / max(distanceTo, 0.001)), clear);
}

vec3 throughAir(vec3 colour, vec3 point)
{
    vec4 air = airBefore(point);
    return mix(air.rgb, colour, air.a);
}

// A filmic curve with a soft toe and a long shoulder, applied to each channel; then display values.
vec3 toDisplay(vec3 colour)
{
    colour *= sunColour.w * 0.62;
    colour = mix(vec3(dot(colour, vec3(0.2126, 0.7152, 0.0722))), colour, 0.92); // the curve adds it again
    colour = colour * (2.51 * colour + 0.03) / (colour * (2.43 * colour + 0.59) + 0.14);
    return sqrt(clamp(colour, 0.0, 1.0));
}
