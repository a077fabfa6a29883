#pragma once

#include "render/BaseGLView.h"

#include <QPoint>
#include <QRectF>

namespace NELK
{

/// The surface of the overview: draws all nodes as squares of one colour and the edges as flat shapes, and turns the
/// mouse into wishes for the camera of the main view. It has no camera of its own, and it takes the outcome of a wish
/// only from setWatched().
class ViewEyePrivate : public BaseGLView
{
    Q_OBJECT

public:
    ViewEyePrivate(Scene* shownScene, QWidget* parent);
    ~ViewEyePrivate() override;

    /// Takes the size in pixels, and asks the main view to show the share of the scene that it showed before.
    void setEyeSize(int width, int height);
    /// Takes the scene's present size. Shows with the next repaint.
    void setupProjection();
    /// Takes what the main view shows: a rectangle in the eye plane, and its share of the scene.
    void setWatched(const QRect& rect, float percentage);
    /// What the main view shows, in pixels of the eye.
    QRectF watchedRect() const { return m_watchedRect; }

Q_SIGNALS:
    void signalEyeWatchedMoved(const QPoint& delta);
    void signalEyeWatchedCenterChanged(const QPointF& viewOri);
    void signalEyeWatchedScaleChanged(float scale);

protected:
    void initShaders() override;
    void initGLObjects() override;
    /// The whole scene fills the eye, whatever its size.
    void resizeView(int /*width*/, int /*height*/) override {}
    void paintEdges() override;
    void paintNodes() override;

    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

protected Q_SLOTS:
    void slotElementsMoved();

private:
    void applySceneSize();
    void paintQuads(const InstancedMesh& mesh, const InstanceList& list);
    float sceneUnitsPerPixel() const;
    float wantedShare() const;

    QRectF m_watchedRect;
    bool m_pressed = false;
    QPoint m_lastPos;
    /// The share of the scene that the main view is to show, in hundredths. Follows the camera, so seldom whole.
    float m_level = 50.0f;
    int m_eyeWidth = 0;
    int m_eyeHeight = 0;
    /// One pixel spans so much that edges would be a haze.
    bool m_hideEdges = true;
};

} // namespace NELK
