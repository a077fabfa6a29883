#version 330 core

in vec2 TexCoords;
in vec4 TexColor;
in vec4 TextColor;
in vec4 TextColor1;

uniform sampler2D texture0;
uniform int modelType;
uniform vec3 simpleColor;

out vec4 FragColor;

// A glyph of one colour over a background of another, both with straight alpha.
vec4 textBlend(float fontColor)
{
    float foreAlpha = fontColor * TextColor.a;
    vec3 outRgb = TextColor.rgb * foreAlpha + TextColor1.rgb * (1.0 - foreAlpha);
    float outA = 1.0 - (1.0 - foreAlpha) * (1.0 - TextColor1.a);
    // Nothing over nothing has no colour: no quotient of zeros goes into the blending.
    return outA > 0.0 ? vec4(outRgb / outA, outA) : vec4(0.0);
}

void main()
{
    // In one place: software renderers run through all branches.
    vec4 texel = vec4(0.0);
    if (modelType == 0 || modelType == 4)
        texel = texture(texture0, TexCoords);
    if (modelType == 0)
        FragColor = texel;
    else if (modelType == 1)
        FragColor = vec4(TexColor.rgb, 1.0);
    else if (modelType == 2)
        FragColor = vec4(TexColor.rgb, 0.7);
    else if (modelType == 3)
        FragColor = vec4(simpleColor, 1.0);
    else if (modelType == 4)
        FragColor = textBlend(texel.r);
}
