#include "render/BaseGLView.h"

#include "render/CurrentContextGuard.h"
#include "startup/AtlasStart.h"
#include "startup/ContextFormat.h"

#include <QCoreApplication>
#include <QDebug>
#include <QElapsedTimer>
#include <QFile>
#include <QOpenGLContext>
#include <QWindow>

namespace NELK
{

BaseGLView::BaseGLView(Scene* shownScene, QWidget* parent) : QOpenGLWidget(parent), shader(this), scene(shownScene)
{
    setFormat(contextFormat());
    // Without alpha: a translucent element must not let what is behind the widget shine through where it is grabbed.
    setTextureFormat(GL_RGB8);
}

BaseGLView::~BaseGLView()
{
    // The context goes after this part of the object has gone.
    if (context())
        disconnect(context(), nullptr, this, nullptr);
    BaseGLView::destroyGLObjects();
}

/// Qt 5.15 clears the samples in the requested format when it makes a context, so that the next one, in another window,
/// would be without antialiasing. Without a size Qt makes none, and the format can be set again in between.
bool BaseGLView::event(QEvent* event)
{
    if (!context() || !mayChangeContext(event->type()))
        return QOpenGLWidget::event(event);
    const QSize fullSize = size();
    resize(0, 0);
    const bool handled = QOpenGLWidget::event(event);
    if (!context())
        setFormat(contextFormat());
    resize(fullSize);
    return handled;
}

bool BaseGLView::mayChangeContext(QEvent::Type event) const
{
    if (QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts))
        return false;
    return event == QEvent::WindowChangeInternal || (event == QEvent::Show && m_hasContextWithoutWindow);
}

void BaseGLView::initializeGL()
{
    m_hasContextWithoutWindow = !window()->windowHandle();
    startAtlases();
    if (!initializeOpenGLFunctions()) {
        qWarning("OpenGL not Support, exit.");
        return;
    }
    connect(context(), SIGNAL(aboutToBeDestroyed()), this, SLOT(slotContextDestroyed()));
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    initShaders();
    initGLObjects();
    glReady = true;
    // Qt does not resize a widget that is grabbed before it was shown.
    resizeGL(width(), height());
}

void BaseGLView::resizeGL(int width, int height)
{
    if (glReady)
        resizeView(width, height);
}

void BaseGLView::paintGL()
{
    if (!glReady)
        return;
    QElapsedTimer stopwatch;
    stopwatch.start();
    glClear(GL_COLOR_BUFFER_BIT);
    paintEdges();
    paintNodes();
    lastPaintMs = static_cast<qint32>(stopwatch.elapsed());
}

void BaseGLView::slotContextDestroyed()
{
    qDebug("The OpenGL context of a view goes, and its objects with it.");
    destroyGLObjects();
}

void BaseGLView::destroyGLObjects()
{
    if (!glReady)
        return;
    glReady = false;
    const CurrentContextGuard current(*this);
    for (GLuint* texture : {&entityTexture, &textTexture}) {
        glDeleteTextures(1, texture);
        *texture = 0;
    }
    for (InstancedMesh* mesh : {&quadMesh, &frameMesh, &circleMesh, &ringMesh, &imageMesh, &textMesh, &edgeLineMesh,
                                &edgeCurveMesh, &arrowMesh})
        destroyMesh(*mesh);
    // Contexts that share would keep it for as long as one of them lives.
    glDeleteProgram(shader.id);
    shader.id = 0;
}

bool BaseGLView::buildProgram(const QString& vertexPath, const QString& fragmentPath)
{
    QFile vertexFile(vertexPath);
    QFile fragmentFile(fragmentPath);
    if (!vertexFile.open(QIODevice::ReadOnly) || !fragmentFile.open(QIODevice::ReadOnly))
        return false;
    shader.build(vertexFile.readAll().constData(), fragmentFile.readAll().constData(), nullptr);
    shader.use();
    return true;
}

QOpenGLPixelTransferOptions BaseGLView::savePixelTransfer()
{
    const auto parameter = [this](GLenum name) {
        GLint value = 0;
        glGetIntegerv(name, &value);
        return value;
    };
    QOpenGLPixelTransferOptions options;
    options.setAlignment(parameter(GL_UNPACK_ALIGNMENT));
    options.setSkipImages(parameter(GL_UNPACK_SKIP_IMAGES));
    options.setSkipRows(parameter(GL_UNPACK_SKIP_ROWS));
    options.setSkipPixels(parameter(GL_UNPACK_SKIP_PIXELS));
    options.setImageHeight(parameter(GL_UNPACK_IMAGE_HEIGHT));
    options.setRowLength(parameter(GL_UNPACK_ROW_LENGTH));
    options.setLeastSignificantByteFirst(parameter(GL_UNPACK_LSB_FIRST) == GL_TRUE);
    options.setSwapBytesEnabled(parameter(GL_UNPACK_SWAP_BYTES) == GL_TRUE);
    return options;
}

void BaseGLView::applyPixelTransfer(const QOpenGLPixelTransferOptions& options)
{
    glPixelStorei(GL_UNPACK_ALIGNMENT, options.alignment());
    glPixelStorei(GL_UNPACK_SKIP_IMAGES, options.skipImages());
    glPixelStorei(GL_UNPACK_SKIP_ROWS, options.skipRows());
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, options.skipPixels());
    glPixelStorei(GL_UNPACK_IMAGE_HEIGHT, options.imageHeight());
    glPixelStorei(GL_UNPACK_ROW_LENGTH, options.rowLength());
    glPixelStorei(GL_UNPACK_LSB_FIRST, options.isLeastSignificantBitFirst() ? GL_TRUE : GL_FALSE);
    glPixelStorei(GL_UNPACK_SWAP_BYTES, options.isSwapBytesEnabled() ? GL_TRUE : GL_FALSE);
}

void BaseGLView::uploadInstances(GLuint buffer, const InstanceList& list)
{
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, list.count * static_cast<GLsizeiptr>(sizeof(InstanceRecord)), list.records.data(),
                 GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void BaseGLView::drawInstances(const InstancedMesh& mesh, GLenum primitive, const InstanceList& list)
{
    glBindVertexArray(mesh.vao);
    glDrawArraysInstanced(primitive, 0, mesh.vertexCount, list.count);
}

} // namespace NELK
