#pragma once

#include <QList>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions_3_3_Core>
#include <QSurfaceFormat>

/// What OpenGL has complained of in the current context since it was last asked.
inline QList<GLenum> takeErrors(QOpenGLFunctions_3_3_Core& functions)
{
    QList<GLenum> errors;
    for (GLenum error = functions.glGetError(); error != GL_NO_ERROR; error = functions.glGetError())
        errors.append(error);
    return errors;
}

/// A context of a test's own with the functions of OpenGL 3.3 core, current on a surface that nobody sees.
class OffscreenGL : public QOpenGLFunctions_3_3_Core
{
public:
    explicit OffscreenGL(QOpenGLContext* sharing = nullptr)
    {
        QSurfaceFormat format = sharing ? sharing->format() : QSurfaceFormat::defaultFormat();
        format.setVersion(3, 3);
        format.setProfile(QSurfaceFormat::CoreProfile);
        m_context.setFormat(format);
        m_context.setShareContext(sharing);
        m_context.create();
        m_surface.setFormat(m_context.format());
        m_surface.create();
        makeCurrent();
        initializeOpenGLFunctions();
    }

    Q_DISABLE_COPY(OffscreenGL)

    void makeCurrent() { m_context.makeCurrent(&m_surface); }
    bool isCurrent() const { return QOpenGLContext::currentContext() == &m_context; }
    QList<GLenum> takeErrors() { return ::takeErrors(*this); }

private:
    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
};
