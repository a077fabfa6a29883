#pragma once

#include "render/BaseGLView.h"
#include "support/OffscreenGL.h"
#include "support/SceneOf.h"

#include <NELK/GraphScene.h>

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

namespace NELK
{

/// A view with its inside open that draws nothing but keeps a log of what it is asked for. Without samples, so that its
/// framebuffer can be read.
class LoggingView : public BaseGLView
{
public:
    explicit LoggingView(GraphScene& graph) : BaseGLView(&sceneOf(graph), nullptr)
    {
        askedSamples = format().samples();
        QSurfaceFormat readable = format();
        readable.setSamples(0);
        setFormat(readable);
        resize(40, 30);
    }

    using BaseGLView::applyPixelTransfer;
    using BaseGLView::buildProgram;
    using BaseGLView::destroyGLObjects;
    using BaseGLView::entityTexture;
    using BaseGLView::glReady;
    using BaseGLView::resizeGL;
    using BaseGLView::savePixelTransfer;
    using BaseGLView::shader;
    using BaseGLView::textTexture;
    using BaseGLView::uploadInstances;

    /// By name.
    const InstancedMesh& mesh(const QByteArray& name) const
    {
        static const QMap<QByteArray, InstancedMesh BaseGLView::*> all{{"quad", &LoggingView::quadMesh},
                                                                       {"image", &LoggingView::imageMesh},
                                                                       {"text", &LoggingView::textMesh},
                                                                       {"edge line", &LoggingView::edgeLineMesh},
                                                                       {"edge curve", &LoggingView::edgeCurveMesh},
                                                                       {"circle", &LoggingView::circleMesh},
                                                                       {"ring", &LoggingView::ringMesh},
                                                                       {"frame", &LoggingView::frameMesh},
                                                                       {"arrow", &LoggingView::arrowMesh}};
        return this->*all[name];
    }

    /// Makes the view ready, and its context current.
    void start()
    {
        grabFramebuffer();
        makeCurrent();
    }

    /// What OpenGL has complained of in all its life. Asked for at once, since Qt drops what it finds.
    QList<GLenum> allErrors()
    {
        makeCurrent();
        if (glReady)
            m_errors += takeErrors(*this);
        return m_errors;
    }

    void paintGL() override
    {
        BaseGLView::paintGL();
        if (glReady)
            m_errors += takeErrors(*this);
    }

    int askedSamples = 0;
    QStringList log;
    std::function<void()> whenPainting = [] {};

protected:
    void initializeGL() override
    {
        BaseGLView::initializeGL();
        m_errors += takeErrors(*this);
    }

    void initShaders() override
    {
        log.append(QStringLiteral("initShaders"));
        buildProgram(QStringLiteral(":/shader/shader/shader.view.vs"),
                     QStringLiteral(":/shader/shader/shader.view.fs"));
    }

    void initGLObjects() override
    {
        log.append(glIsEnabled(GL_BLEND) ? QStringLiteral("initGLObjects, blending") : QStringLiteral("initGLObjects"));
        resizeGL(1, 2); // too early to count
        createQuadMesh();
        createImageMesh();
        createTextMesh();
        createEdgeLineMesh();
        createEdgeCurveMesh();
        createCircleMesh();
        createRingMesh();
        createFrameMesh();
        createArrowMesh();
        createEntityTexture();
        createTextTexture();
    }

    void resizeView(int width, int height) override
    {
        log.append(QStringLiteral("resizeView %1 %2").arg(width).arg(height));
    }

    void paintEdges() override
    {
        log.append(QStringLiteral("paintEdges"));
        whenPainting();
    }

    void paintNodes() override
    {
        log.append(QStringLiteral("paintNodes"));
        whenPainting();
    }

private:
    QList<GLenum> m_errors;
};

/// A parameter of the context in use.
inline GLint integer(LoggingView& view, GLenum name)
{
    GLint value = -1;
    view.glGetIntegerv(name, &value);
    return value;
}

} // namespace NELK
