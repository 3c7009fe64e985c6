// What passes over asset instances share: the mesh's vertices, and an instance's place and colours.
#ifdef VERTEX_STAGE
layout(location = 0) in vec3 inPosition; // the model's own units
layout(location = 1) in vec3 inNormal;
layout(location = 2) in vec2 inTexCoord;
layout(location = 3) in vec4 inRow0; // of the matrix to the world, metres
layout(location = 4) in vec4 inRow1;
layout(location = 5) in vec4 inRow2;
layout(location = 6) in vec4 inColour0; // display values; alpha: how much it tints
layout(location = 7) in vec4 inColour1;
layout(location = 8) in vec4 inColour2;
layout(location = 9) in vec4 inColour3;

vec3 instancePosition()
{
    vec4 place = vec4(inPosition, 1.0);
    return vec3(dot(inRow0, place), dot(inRow1, place), dot(inRow2, place));
}

// Upright on the surface whatever the scale of each axis.
vec3 instanceNormal()
{
    vec3 x = vec3(inRow0.x, inRow1.x, inRow2.x);
    vec3 y = vec3(inRow0.y, inRow1.y, inRow2.y);
    vec3 z = vec3(inRow0.z, inRow1.z, inRow2.z);
    vec3 size = max(vec3(dot(x, x), dot(y, y), dot(z, z)), 1.0e-8);
    vec3 part = inNormal / size;
    return normalize(x * part.x + y * part.y + z * part.z);
}
#endif
