#include "view/ViewEyePrivate.h"

#include "render/CurrentContextGuard.h"
#include "render/OrthographicProjection.h"
#include "scene/Scene.h"

#include <QMouseEvent>
#include <QWheelEvent>

namespace NELK
{

namespace
{

constexpr float leastLevel = 1.0f;
constexpr float greatestLevel = 100.0f;

constexpr int unitsPerPixelWithoutEdges = 256;

/// A narrower eye is not yet laid out.
constexpr int leastWidth = 16;

/// How far a wheel was turned, along the axis that the event is for. Its successor does not tell that axis.
int turnOf(const QWheelEvent& event)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return event.delta();
    QT_WARNING_POP
}

} // namespace

ViewEyePrivate::ViewEyePrivate(Scene* shownScene, QWidget* parent) : BaseGLView(shownScene, parent)
{
    connect(shownScene, SIGNAL(signalElementsMoved()), this, SLOT(slotElementsMoved()));
}

ViewEyePrivate::~ViewEyePrivate()
{
    destroyGLObjects();
}

void ViewEyePrivate::initShaders()
{
    buildProgram(":/shader/shader/shader.eye.vs", ":/shader/shader/shader.eye.fs");
}

void ViewEyePrivate::initGLObjects()
{
    glClearColor(0.95f, 0.95f, 0.95f, 1.0f);
    createImageMesh();
    createEdgeLineMesh();
    createEdgeCurveMesh();
    shader.setMat4("view", Mat4().data());
    applySceneSize();
}

void ViewEyePrivate::setupProjection()
{
    // Before the context is there and after it has gone, initGLObjects will set the projection.
    if (!glReady)
        return;
    const CurrentContextGuard current(*this);
    applySceneSize();
}

void ViewEyePrivate::applySceneSize()
{
    if (m_eyeWidth > leastWidth)
        m_hideEdges = scene->width / m_eyeWidth > unitsPerPixelWithoutEdges;
    shader.use();
    const Mat4 projection = orthographicProjection(static_cast<float>(scene->width), static_cast<float>(scene->height));
    shader.setMat4("projection", projection.data());
}

void ViewEyePrivate::paintEdges()
{
    if (m_hideEdges)
        return;
    shader.use();
    paintQuads(edgeLineMesh, scene->edgeLineItems);
    paintQuads(edgeCurveMesh, scene->edgeCurveItems);
}

void ViewEyePrivate::paintNodes()
{
    shader.use();
    paintQuads(imageMesh, scene->eyeItems);
}

void ViewEyePrivate::paintQuads(const InstancedMesh& mesh, const InstanceList& list)
{
    uploadInstances(mesh.instances, list);
    drawInstances(mesh, GL_TRIANGLES, list);
}

void ViewEyePrivate::slotElementsMoved()
{
    update();
}

void ViewEyePrivate::setEyeSize(int width, int height)
{
    m_eyeWidth = width;
    m_eyeHeight = height;
    Q_EMIT signalEyeWatchedScaleChanged(wantedShare());
}

void ViewEyePrivate::setWatched(const QRect& rect, float percentage)
{
    const double pixelsPerUnit = static_cast<float>(m_eyeHeight) / static_cast<float>(scene->height);
    m_watchedRect = QRectF(rect.x() * pixelsPerUnit, rect.y() * pixelsPerUnit, rect.width() * pixelsPerUnit,
                           rect.height() * pixelsPerUnit);
    // Before the eye has a size, the camera has no range of scales, and its share of the scene means nothing.
    if (m_eyeHeight > 0)
        m_level = greatestLevel * percentage;
}

void ViewEyePrivate::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint position = event->pos();
    if (m_watchedRect.contains(position)) {
        m_lastPos = position;
        m_pressed = true;
        return;
    }
    const double ratio = sceneUnitsPerPixel();
    Q_EMIT signalEyeWatchedCenterChanged(
        {(position.x() - m_eyeWidth / 2) * ratio, (m_eyeHeight / 2 - position.y()) * ratio});
}

void ViewEyePrivate::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_pressed)
        return;
    const QPoint step = event->pos() - m_lastPos;
    m_lastPos = event->pos();
    const float ratio = sceneUnitsPerPixel();
    Q_EMIT signalEyeWatchedMoved(
        {qRound(static_cast<float>(step.x()) * ratio), qRound(static_cast<float>(-step.y()) * ratio)});
}

void ViewEyePrivate::mouseReleaseEvent(QMouseEvent* /*event*/)
{
    m_pressed = false;
}

/// Forward shows less of the scene, and so more of its detail.
void ViewEyePrivate::wheelEvent(QWheelEvent* event)
{
    if (m_pressed)
        return;
    const bool forward = turnOf(*event) >= 0;
    if (forward ? m_level <= leastLevel : m_level >= greatestLevel)
        return;
    m_level += forward ? -1.0f : 1.0f;
    Q_EMIT signalEyeWatchedScaleChanged(wantedShare());
}

/// Whole units: the rectangle trails the pointer a little rather than running ahead of it.
float ViewEyePrivate::sceneUnitsPerPixel() const
{
    if (m_eyeHeight == 0)
        return 0.0f;
    const int units = scene->height / m_eyeHeight;
    return static_cast<float>(units);
}

float ViewEyePrivate::wantedShare() const
{
    return m_level / greatestLevel;
}

} // namespace NELK
