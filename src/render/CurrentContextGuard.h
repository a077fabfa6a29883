#pragma once

#include <QOpenGLContext>
#include <QOpenGLWidget>

namespace NELK
{

/// Makes the context of a widget current for a while, and then the one that was current before.
class CurrentContextGuard
{
public:
    explicit CurrentContextGuard(QOpenGLWidget& widget)
        : m_widget(widget),
          m_previous(QOpenGLContext::currentContext()),
          m_previousSurface(m_previous ? m_previous->surface() : nullptr)
    {
        if (m_previous != m_widget.context())
            m_widget.makeCurrent();
    }

    ~CurrentContextGuard()
    {
        if (m_previous == m_widget.context())
            return;
        m_widget.doneCurrent();
        if (m_previous)
            m_previous->makeCurrent(m_previousSurface);
    }

    Q_DISABLE_COPY(CurrentContextGuard)

private:
    QOpenGLWidget& m_widget;
    QOpenGLContext* m_previous;
    QSurface* m_previousSurface;
};

} // namespace NELK
