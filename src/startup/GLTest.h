#pragma once

#include <NELK/InitNelk.h>

#include <QOpenGLFunctions_3_3_Core>
#include <QOpenGLWidget>

namespace NELK
{

/// A widget that is shown for a moment to see what OpenGL a view would get.
class GLTest : public QOpenGLWidget, public QOpenGLFunctions_3_3_Core
{
public:
    /// Asks for the context that a view asks for, so that the answer holds for views.
    GLTest();

    E_GL_TEST_CODE result = GL_TEST_OK;

protected:
    void initializeGL() override;
    void resizeGL(int /*width*/, int /*height*/) override {}
    void paintGL() override {}
};

/// Tests OpenGL. Leaves no window behind.
E_GL_TEST_CODE runGLTest();

} // namespace NELK
