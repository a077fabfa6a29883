#pragma once

#include <QtGlobal>

#include <string>

class QOpenGLFunctions_3_3_Core;

namespace NELK
{

/// One OpenGL program, compiled from the texts of its stages and fed by name.
///
/// A plain value: the program it names belongs to the context in which it was built, and whoever has it built frees it.
/// Setters act on the program in use, so use() comes first; a name that the program does not know is passed over.
/// Matrices are column-major.
class ShaderProgram
{
public:
    /// `functionTable` must outlive the program.
    explicit ShaderProgram(QOpenGLFunctions_3_3_Core* functionTable);

    /// Compiles and links; each text ends with a zero, and there may be no geometry stage. What does not compile or
    /// link is reported on standard output and leaves a program that draws nothing.
    void build(const char* vertexText, const char* fragmentText, const char* geometryText);
    void use() const;

    void setBool(const std::string& name, bool value) const;
    void setInt(const std::string& name, qint32 value) const;
    void setFloat(const std::string& name, float value) const;
    void setVec2(const std::string& name, const float* values) const;
    void setVec2(const std::string& name, float x, float y) const;
    void setVec3(const std::string& name, const float* values) const;
    void setVec3(const std::string& name, float x, float y, float z) const;
    void setVec4(const std::string& name, const float* values) const;
    void setVec4(const std::string& name, float x, float y, float z, float w) const;
    void setMat2(const std::string& name, const float* values) const;
    void setMat3(const std::string& name, const float* values) const;
    void setMat4(const std::string& name, const float* values) const;

    /// The program's name in OpenGL; 0 as long as nothing was built.
    quint32 id = 0;

private:
    quint32 compiledStage(quint32 stage, const char* text, const std::string& type) const;
    void check(quint32 object, const std::string& type) const;
    qint32 location(const std::string& name) const;

    QOpenGLFunctions_3_3_Core* functions;
};

} // namespace NELK
