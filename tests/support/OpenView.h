#pragma once

#include "scene/Scene.h"
#include "support/OffscreenGL.h"
#include "support/SceneOf.h"
#include "view/View.h"

#include <NELK/GraphScene.h>

#include <QCoreApplication>
#include <QImage>
#include <QList>

/// A view whose insides a test may look at, sized as a host would size it.
class OpenView : public NELK::View
{
public:
    explicit OpenView(NELK::GraphScene& graph, QSize size = {400, 300}) : View(&NELK::sceneOf(graph))
    {
        resize(size);
        setViewSize(size.width(), size.height());
    }

    using View::entityTexture;
    using View::glReady;
    using View::shader;
    using View::slotImageChanged;
    using View::slotWordChanged;
    using View::textTexture;

    /// What the view shows after a rebuild, as opaque pixels.
    QImage rebuiltPicture()
    {
        rebuildAll();
        return picture();
    }

    /// What the view shows. Events are handled first, so that what the atlases owe arrives.
    QImage picture()
    {
        QCoreApplication::processEvents();
        return grabFramebuffer().convertToFormat(QImage::Format_RGB32);
    }

    /// What OpenGL has complained of since it was last asked.
    QList<GLenum> takeErrors()
    {
        makeCurrent();
        collectErrors();
        doneCurrent();
        QList<GLenum> taken;
        taken.swap(m_errors);
        return taken;
    }

    // Errors are collected right after each of these: Qt drops those that it finds when it makes a framebuffer, as it
    // does for every picture.

    void resizeGL(int width, int height) override
    {
        View::resizeGL(width, height);
        collectErrors();
    }

    void paintGL() override
    {
        View::paintGL();
        collectErrors();
    }

protected:
    void initializeGL() override
    {
        View::initializeGL();
        collectErrors();
    }

private:
    void collectErrors()
    {
        if (glReady)
            m_errors += ::takeErrors(*this);
    }

    QList<GLenum> m_errors;
};
