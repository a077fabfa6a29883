#include "render/ShaderProgram.h"

#include <QOpenGLFunctions_3_3_Core>

#include <array>
#include <iostream>

namespace NELK
{

namespace
{

const std::string programType = "PROGRAM";

} // namespace

ShaderProgram::ShaderProgram(QOpenGLFunctions_3_3_Core* functionTable) : functions(functionTable) {}

void ShaderProgram::build(const char* vertexText, const char* fragmentText, const char* geometryText)
{
    const GLuint vertex = compiledStage(GL_VERTEX_SHADER, vertexText, "VERTEX");
    const GLuint fragment = compiledStage(GL_FRAGMENT_SHADER, fragmentText, "FRAGMENT");
    const GLuint geometry = geometryText ? compiledStage(GL_GEOMETRY_SHADER, geometryText, "GEOMETRY") : 0;

    id = functions->glCreateProgram();
    functions->glAttachShader(id, vertex);
    functions->glAttachShader(id, fragment);
    if (geometryText)
        functions->glAttachShader(id, geometry);
    functions->glLinkProgram(id);
    check(id, programType);

    functions->glDeleteShader(vertex);
    functions->glDeleteShader(fragment);
    if (geometryText)
        functions->glDeleteShader(geometry);
}

void ShaderProgram::use() const
{
    functions->glUseProgram(id);
}

void ShaderProgram::setBool(const std::string& name, bool value) const
{
    functions->glUniform1i(location(name), value ? 1 : 0);
}

void ShaderProgram::setInt(const std::string& name, qint32 value) const
{
    functions->glUniform1i(location(name), value);
}

void ShaderProgram::setFloat(const std::string& name, float value) const
{
    functions->glUniform1f(location(name), value);
}

void ShaderProgram::setVec2(const std::string& name, const float* values) const
{
    functions->glUniform2fv(location(name), 1, values);
}

void ShaderProgram::setVec2(const std::string& name, float x, float y) const
{
    functions->glUniform2f(location(name), x, y);
}

void ShaderProgram::setVec3(const std::string& name, const float* values) const
{
    functions->glUniform3fv(location(name), 1, values);
}

void ShaderProgram::setVec3(const std::string& name, float x, float y, float z) const
{
    functions->glUniform3f(location(name), x, y, z);
}

void ShaderProgram::setVec4(const std::string& name, const float* values) const
{
    functions->glUniform4fv(location(name), 1, values);
}

void ShaderProgram::setVec4(const std::string& name, float x, float y, float z, float w) const
{
    functions->glUniform4f(location(name), x, y, z, w);
}

void ShaderProgram::setMat2(const std::string& name, const float* values) const
{
    functions->glUniformMatrix2fv(location(name), 1, GL_FALSE, values);
}

void ShaderProgram::setMat3(const std::string& name, const float* values) const
{
    functions->glUniformMatrix3fv(location(name), 1, GL_FALSE, values);
}

void ShaderProgram::setMat4(const std::string& name, const float* values) const
{
    functions->glUniformMatrix4fv(location(name), 1, GL_FALSE, values);
}

quint32 ShaderProgram::compiledStage(quint32 stage, const char* text, const std::string& type) const
{
    const GLuint shader = functions->glCreateShader(stage);
    functions->glShaderSource(shader, 1, &text, nullptr);
    functions->glCompileShader(shader);
    check(shader, type);
    return shader;
}

void ShaderProgram::check(quint32 object, const std::string& type) const
{
    const bool isProgram = type == programType;
    GLint succeeded = GL_FALSE;
    if (isProgram)
        functions->glGetProgramiv(object, GL_LINK_STATUS, &succeeded);
    else
        functions->glGetShaderiv(object, GL_COMPILE_STATUS, &succeeded);
    if (succeeded)
        return;

    std::array<char, 1024> log{};
    if (isProgram)
        functions->glGetProgramInfoLog(object, log.size(), nullptr, log.data());
    else
        functions->glGetShaderInfoLog(object, log.size(), nullptr, log.data());
    std::cout << (isProgram ? "ERROR::PROGRAM_LINKING_ERROR of type: " : "ERROR::SHADER_COMPILATION_ERROR of type: ")
              << type << "\n"
              << log.data() << "\n -- --------------------------------------------------- -- " << std::endl;
}

/// Asked afresh each time: a frame has a few dozen of these, whatever it shows.
qint32 ShaderProgram::location(const std::string& name) const
{
    return functions->glGetUniformLocation(id, name.c_str());
}

} // namespace NELK
