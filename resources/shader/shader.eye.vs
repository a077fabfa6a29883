#version 330 core

layout (location = 0) in vec2 aPos;
layout (location = 1) in vec2 aTexCoord;
layout (location = 2) in vec4 nmodel0;
layout (location = 3) in vec4 nmodel1;
layout (location = 4) in vec4 nmodel2;
layout (location = 5) in vec4 nmodel3;
layout (location = 6) in vec4 para1;
layout (location = 7) in vec4 para2;

uniform mat4 view;
uniform mat4 projection;

out vec2 TexCoords;
out vec4 color;

void main()
{
    gl_Position = projection * (view * (mat4(nmodel0, nmodel1, nmodel2, nmodel3) * vec4(aPos, 0.0, 1.0)));
    TexCoords = aTexCoord;
    color = para2;
}
