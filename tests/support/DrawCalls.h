#pragma once

#include <QtGui/qopengl.h>

#include <functional>

namespace NELK
{

/// What OpenGL was told to draw.
struct DrawCall
{
    GLenum primitive;
    GLint first;
    GLsizei vertexCount;
    /// -1 for a call without instances.
    GLsizei instanceCount;
};

/// What an OpenGL buffer was filled with.
struct Upload
{
    GLenum target;
    GLsizeiptr size;
    const void* data;
    GLenum usage;
};

/// Is told of each call that draws or uploads, while it lives; there is one at a time. It sees all that goes through
/// Qt, from outside: Qt is handed functions of this class when it asks GLX for those of OpenGL.
///
/// A test that uses it has DrawCalls.cpp among its sources and exports its symbols.
class DrawCalls
{
public:
    explicit DrawCalls(std::function<void(const DrawCall&)> whenDrawn,
                       std::function<void(const Upload&)> whenUploaded = {});
    ~DrawCalls();
    DrawCalls(const DrawCalls&) = delete;
    DrawCalls& operator=(const DrawCalls&) = delete;

    /// Draws do not reach OpenGL: what is left of a repaint is the work of whoever asks for them.
    bool swallowsInstances = false;
    const std::function<void(const DrawCall&)> whenDrawn;
    const std::function<void(const Upload&)> whenUploaded;
};

} // namespace NELK
