#pragma once

#include "render/ShaderProgram.h"
#include "support/OffscreenGL.h"

#include <QFile>
#include <QOpenGLFunctions>
#include <QString>
#include <QStringList>

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

using Four = std::array<float, 4>;
/// Sixteen floats, column after column.
using Matrix = std::array<float, 16>;

inline constexpr Matrix identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// A vertex of a mesh: its place and what attribute 1 gives with it.
struct Corner
{
    float x, y, paraX, paraY;
};
using Mesh = std::vector<Corner>;

/// The unit square; attribute 1 runs from 0 at the lower left to 1 at the upper right.
inline const Mesh unitSquare{{-0.5f, -0.5f, 0, 0}, {0.5f, -0.5f, 1, 0}, {0.5f, 0.5f, 1, 1},
                             {-0.5f, -0.5f, 0, 0}, {0.5f, 0.5f, 1, 1},  {-0.5f, 0.5f, 0, 1}};

/// What the attributes 2 to 8 give for one element.
struct Element
{
    Matrix model = identity;
    Four para1{};
    Four para2{};
    Four para3{};
};

/// Where the product of matrices, the leftmost first, takes a point. In doubles.
inline Four transformed(const std::vector<Matrix>& matrices, Four point)
{
    std::array<double, 4> at{double{point[0]}, double{point[1]}, double{point[2]}, double{point[3]}};
    for (auto matrix = matrices.rbegin(); matrix != matrices.rend(); ++matrix) {
        std::array<double, 4> next{};
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t column = 0; column < 4; ++column)
                next[row] += double{(*matrix)[column * 4 + row]} * at[column];
        }
        at = next;
    }
    return {static_cast<float>(at[0]), static_cast<float>(at[1]), static_cast<float>(at[2]), static_cast<float>(at[3])};
}

inline bool near(const Four& one, const Four& other, float bound = 1e-5f)
{
    for (std::size_t i = 0; i < one.size(); ++i) {
        if (!(std::abs(one[i] - other[i]) <= bound)) // so that what is not a number is not near
            return false;
    }
    return true;
}

inline QString text(const Four& four)
{
    return QStringLiteral("(%1, %2, %3, %4)").arg(four[0]).arg(four[1]).arg(four[2]).arg(four[3]);
}

/// A program from two resources and a small square to draw single elements on. Colours are kept as floats, so that what
/// a shader puts out comes back unrounded.
class ElementBoard : public OffscreenGL
{
public:
    static constexpr int edge = 16;

    ElementBoard(const QString& vertexPath, const QString& fragmentPath)
    {
        createFramebuffer();
        createMesh();
        program.build(read(vertexPath).constData(), read(fragmentPath).constData(), nullptr);
        const char* const captured = "gl_Position";
        glTransformFeedbackVaryings(program.id, 1, &captured, GL_INTERLEAVED_ATTRIBS);
        glLinkProgram(program.id);
        program.use();
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    bool isLinked()
    {
        GLint linked = GL_FALSE;
        glGetProgramiv(program.id, GL_LINK_STATUS, &linked);
        return linked == GL_TRUE;
    }

    /// "location: name type" of each attribute that the program reads, but for those that it may drop.
    QStringList attributes(const QStringList& droppable)
    {
        QStringList found;
        const GLint count = parameter(GL_ACTIVE_ATTRIBUTES);
        for (GLint i = 0; i < count; ++i) {
            std::array<char, 64> name{};
            GLint size = 0;
            GLenum type = 0;
            glGetActiveAttrib(program.id, static_cast<GLuint>(i), name.size(), nullptr, &size, &type, name.data());
            const QString attribute = QStringLiteral("%1: %2 %3")
                                          .arg(glGetAttribLocation(program.id, name.data()))
                                          .arg(name.data(), typeName(type));
            if (!droppable.contains(attribute))
                found.append(attribute);
        }
        found.sort();
        return found;
    }

    void clear(const Four& color)
    {
        glClearColor(color[0], color[1], color[2], color[3]);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    void draw(const Element& element, const Mesh& mesh = unitSquare)
    {
        feed(element, mesh);
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(mesh.size()));
    }

    /// Where the vertex shader puts the corners.
    std::vector<Four> positions(const Element& element, const Mesh& mesh)
    {
        std::vector<Four> places(mesh.size());
        const auto bytes = static_cast<GLsizeiptr>(places.size() * sizeof(Four));
        GLuint buffer = 0;
        glGenBuffers(1, &buffer);
        glBindBufferBase(GL_TRANSFORM_FEEDBACK_BUFFER, 0, buffer);
        glBufferData(GL_TRANSFORM_FEEDBACK_BUFFER, bytes, nullptr, GL_STREAM_READ);
        feed(element, mesh);
        glBeginTransformFeedback(GL_TRIANGLES);
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(mesh.size()));
        glEndTransformFeedback();
        glGetBufferSubData(GL_TRANSFORM_FEEDBACK_BUFFER, 0, bytes, places.data());
        glDeleteBuffers(1, &buffer);
        return places;
    }

    /// From the lower left corner.
    Four pixel(int x, int y)
    {
        Four color{};
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_FLOAT, color.data());
        return color;
    }
    Four middle() { return pixel(edge / 2, edge / 2); }

    NELK::ShaderProgram program{this};

private:
    GLint parameter(GLenum name)
    {
        GLint value = 0;
        glGetProgramiv(program.id, name, &value);
        return value;
    }

    static QString typeName(GLenum type)
    {
        if (type == GL_FLOAT_VEC2)
            return QStringLiteral("vec2");
        return type == GL_FLOAT_VEC4 ? QStringLiteral("vec4") : QString::number(type);
    }

    void createFramebuffer()
    {
        GLuint colors = 0;
        glGenTextures(1, &colors);
        glBindTexture(GL_TEXTURE_2D, colors);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, edge, edge, 0, GL_RGBA, GL_FLOAT, nullptr);
        glBindTexture(GL_TEXTURE_2D, 0);
        GLuint framebuffer = 0;
        glGenFramebuffers(1, &framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, colors, 0);
        glViewport(0, 0, edge, edge);
    }

    void createMesh()
    {
        GLuint array = 0;
        glGenVertexArrays(1, &array);
        glBindVertexArray(array);
        GLuint corners = 0;
        glGenBuffers(1, &corners);
        glBindBuffer(GL_ARRAY_BUFFER, corners);
        for (const GLuint location : {0u, 1u}) {
            glEnableVertexAttribArray(location);
            glVertexAttribPointer(location, 2, GL_FLOAT, GL_FALSE, sizeof(Corner),
                                  reinterpret_cast<const void*>(location * 2 * sizeof(float)));
        }
    }

    void feed(const Element& element, const Mesh& mesh)
    {
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh.size() * sizeof(Corner)), mesh.data(),
                     GL_STREAM_DRAW);
        // Qt's table for the core profile leaves these out.
        QOpenGLFunctions& constants = *QOpenGLContext::currentContext()->functions();
        for (GLuint column = 0; column < 4; ++column)
            constants.glVertexAttrib4fv(2 + column, element.model.data() + column * 4);
        constants.glVertexAttrib4fv(6, element.para1.data());
        constants.glVertexAttrib4fv(7, element.para2.data());
        constants.glVertexAttrib4fv(8, element.para3.data());
    }
};
