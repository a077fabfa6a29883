#pragma once

#include "view/SelectArea.h"
#include "view/TriangleWidget.h"
#include "view/View.h"
#include "view/ViewEye.h"
#include "view/ViewEyePrivate.h"

#include <NELK/GraphScene.h>
#include <NELK/GraphView.h>

#include <QLabel>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest>

namespace NELK
{

/// A graph view whose parts are within reach; those that it was made without are null.
class OpenGraphView : public GraphView
{
public:
    using GraphView::GraphView;

    View* network() const { return findChild<View*>(); }
    SelectArea* overlay() const { return findChild<SelectArea*>(); }
    ViewEye* eye() const { return findChild<ViewEye*>(); }
    ViewEyePrivate* eyeSurface() const { return findChild<ViewEyePrivate*>(); }
    /// The rectangle in the eye.
    QLabel* watched() const { return eye()->findChild<QLabel*>(); }
    TriangleWidget* eyeButton() const { return findChild<TriangleWidget*>(); }
    QPushButton* corner() const { return findChild<QPushButton*>(); }

    QScrollBar* horizontalBar() const { return bar(Qt::Horizontal); }
    QScrollBar* verticalBar() const { return bar(Qt::Vertical); }

    /// The scene point in the middle, in whole units.
    QPoint middle() const { return {network()->cameraX(false), network()->cameraY(false)}; }

    /// What OpenGL has complained of in the contexts of network and eye since it was last asked.
    QList<GLenum> takeErrors() const
    {
        QList<GLenum> errors;
        for (QOpenGLWidget* surface : findChildren<QOpenGLWidget*>()) {
            surface->makeCurrent();
            if (!surface->context())
                continue;
            QOpenGLFunctions& gl = *surface->context()->functions();
            for (GLenum error = gl.glGetError(); error != GL_NO_ERROR; error = gl.glGetError())
                errors.append(error);
            surface->doneCurrent();
        }
        return errors;
    }

private:
    QScrollBar* bar(Qt::Orientation orientation) const
    {
        for (QScrollBar* bar : findChildren<QScrollBar*>()) {
            if (bar->orientation() == orientation)
                return bar;
        }
        return nullptr;
    }
};

/// A scene and a graph view on it, in a window without a layout, so that the view takes whatever size it is given.
struct HostedGraphView
{
    explicit HostedGraphView(bool hasEye = true, bool hasScrollBar = true, bool hasEyeButton = true)
        : view(new OpenGraphView(&graph, &window, hasEye, hasScrollBar, hasEyeButton))
    {
        resize({816, 616});
    }

    Q_DISABLE_COPY(HostedGraphView)

    bool show()
    {
        window.show();
        const bool isShown = QTest::qWaitForWindowExposed(&window);
        QCoreApplication::processEvents();
        return isShown;
    }

    void resize(QSize size)
    {
        window.resize(size);
        view->resize(size);
    }

    GraphScene graph;
    QWidget window;
    /// Null once it was deleted.
    QPointer<OpenGraphView> view;
};

/// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }

    int count() const { return m_count; }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

} // namespace NELK
