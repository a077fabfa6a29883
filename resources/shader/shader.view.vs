#version 330 core

// One corner of a mesh.
layout (location = 0) in vec2 aPos;
layout (location = 1) in vec2 para;

// One element: its model matrix in four columns and what its kind needs beside.
layout (location = 2) in vec4 nmodel0;
layout (location = 3) in vec4 nmodel1;
layout (location = 4) in vec4 nmodel2;
layout (location = 5) in vec4 nmodel3;
layout (location = 6) in vec4 para1;
layout (location = 7) in vec4 para2;
layout (location = 8) in vec4 para3;

uniform mat4 view;
uniform mat4 projection;
uniform mat4 model;
uniform bool simplemodel;
uniform float ringIdx;
uniform float texRowNum;
uniform float texColNum;

out vec2 TexCoords;
out vec4 TexColor;
out vec4 TextColor;
out vec4 TextColor1;

// Where a corner of an atlas quad lies on the atlas. Row 0 is at the upper end of v, and para1.z crops the right side.
vec2 atlasCoords()
{
    return vec2((para1.y + para.x) / texColNum - para.x * para1.z,
                (texRowNum - para1.x - 1.0 + para.y) / texRowNum);
}

void main()
{
    vec2 newPos = aPos;
    // The inner rim of a ring: the mesh gives the way inward, the element how thin the ring is.
    if (para1.a > 0.0 && abs(para.x) + abs(para.y) > 0.0)
        newPos = aPos + para / para1.a;

    mat4 placing = simplemodel ? model : mat4(nmodel0, nmodel1, nmodel2, nmodel3);
    vec2 corner = simplemodel ? aPos : newPos;
    // The parentheses spare products of matrices.
    gl_Position = projection * (view * (placing * vec4(corner, 0.0, 1.0)));

    TexCoords = simplemodel ? para : atlasCoords();
    TexColor = vec4(para1.rgb, para.r);
    TextColor = para2;
    TextColor1 = para3;
}
