// The interface: coloured, textured triangles in clip space.

#ifdef QM_VERTEX
layout(location = 0) in vec3 a_position;
layout(location = 1) in vec4 a_colour;
layout(location = 2) in vec2 a_uv;

layout(location = 0) out vec4 v_colour;
layout(location = 1) out vec2 v_uv;

void main()
{
    v_colour = a_colour;
    v_uv = a_uv;
    gl_Position = vec4(a_position.xy, 0.0, 1.0);
}
#endif

#ifdef QM_FRAGMENT
layout(binding = 0) uniform sampler2D u_texture;

layout(location = 0) in vec4 v_colour;
layout(location = 1) in vec2 v_uv;

layout(location = 0) out vec4 o_colour;

void main()
{
    o_colour = v_colour * texture(u_texture, v_uv);
}
#endif
