// What View does with its camera, and how the planes map to each other.

#include "view/View.h"

#include "scene/Scene.h"
#include "scene/Truncation.h"

#include <QCursor>
#include <QPointer>

#include <algorithm>
#include <limits>
#include <utility>

namespace NELK
{

namespace
{

constexpr float zoomFactor = 1.05f;

/// Around what is fitted, in scene units, both sides together.
constexpr float fitMargin = 512.0f;

/// Cut toward zero, and held so far within the range of int that sums stay in it: nodes may lie anywhere, and fits
/// follow them.
int wholeUnits(float value)
{
    constexpr int farthest = 1 << 29;
    return std::clamp(truncated(value), -farthest, farthest);
}

/// The span of some coordinates.
class Span
{
public:
    void add(float value) { add(value, value); }
    void add(float least, float greatest)
    {
        m_least = std::min(m_least, least);
        m_greatest = std::max(m_greatest, greatest);
    }

    /// 0 where there is nothing.
    float length() const { return m_least <= m_greatest ? m_greatest - m_least : 0.0f; }
    /// 0 where there is nothing.
    float middle() const { return (m_greatest + m_least) * 0.5f; }

private:
    float m_least = std::numeric_limits<float>::max();
    float m_greatest = std::numeric_limits<float>::lowest();
};

} // namespace

int View::cameraX(bool scaled) const
{
    const float x = camera.position().x();
    return wholeUnits(scaled ? camera.scale() * x : x);
}

int View::cameraY(bool scaled) const
{
    const float y = camera.position().y();
    return wholeUnits(scaled ? camera.scale() * y : y);
}

void View::setCameraX(int value, bool scaled)
{
    const auto x = static_cast<float>(value);
    camera.setPosition(scaled ? x / camera.scale() : x, camera.position().y());
    refreshCamera();
}

void View::setCameraY(int value, bool scaled)
{
    const auto y = static_cast<float>(value);
    camera.setPosition(camera.position().x(), scaled ? y / camera.scale() : y);
    refreshCamera();
}

void View::zoom(bool in)
{
    if (camera.zoomStep(in, zoomFactor))
        refreshCamera();
}

void View::zoomAt(bool in, bool atCursor)
{
    if (!atCursor) {
        zoom(in);
        return;
    }
    const QPoint cursor = mapFromGlobal(QCursor::pos());
    const QPoint anchor = viewToScene(cursor);
    if (!camera.zoomStep(in, zoomFactor))
        return;
    const QPoint offset = (anchor - QPoint(cameraX(false), cameraY(false))) * camera.scale();
    camera.moveX(static_cast<float>(W / 2 - cursor.x() + offset.x()));
    camera.moveY(static_cast<float>(offset.y() - H / 2 + cursor.y()));
    refreshCamera();
}

void View::panBy(int dx, int dy)
{
    const bool movedX = camera.moveX(static_cast<float>(dx));
    const bool movedY = camera.moveY(static_cast<float>(dy));
    if (movedX || movedY)
        refreshCamera();
}

void View::rotateBy(int angle)
{
    camera.rotate(angle);
    refreshCamera();
}

void View::fitToView()
{
    fitNodes(false);
}

void View::selectedViewMax()
{
    fitNodes(true);
}

void View::fitNodes(bool selectedOnly)
{
    Span x;
    Span y;
    for (const NodeData* node : std::as_const(scene->nodes)) {
        if (!node->show || (selectedOnly && !node->select))
            continue;
        // Labels may be wide; of the selected nodes just the centres count.
        const float half = selectedOnly ? 0.0f : wholeHalf(node->labelBoundWidth);
        x.add(node->x - half, node->x + half);
        y.add(node->y);
    }
    camera.setScale(
        std::min(static_cast<float>(W) / (x.length() + fitMargin), static_cast<float>(H) / (y.length() + fitMargin)));
    camera.setPosition(x.middle(), y.middle());
    refreshCamera();
}

void View::fitHeight()
{
    Span y;
    for (const NodeData* node : std::as_const(scene->nodes)) {
        if (node->show)
            y.add(node->y);
    }
    const float x = camera.position().x();
    camera.setScale(static_cast<float>(H) / (y.length() + fitMargin));
    camera.setPosition(x, y.middle());
    refreshCamera();
}

void View::fitInView(const QRectF& rect)
{
    camera.setPosition(static_cast<float>(rect.left() + rect.width() * 0.5),
                       static_cast<float>(rect.top() - rect.height() * 0.5));
    camera.setScale(static_cast<float>(W / rect.width()));
    refreshCamera();
}

void View::fitOriginalSize()
{
    showFullEye();
}

void View::showFullEye()
{
    camera.reset();
    refreshCamera();
}

void View::zoomToFrame(const QRect& frame)
{
    // Qt's normalized rectangle between neighbouring pixels has no size at all.
    const float widthShare = static_cast<float>(std::max(frame.width(), 1)) / static_cast<float>(width());
    const float heightShare = static_cast<float>(std::max(frame.height(), 1)) / static_cast<float>(height());
    const float share = std::max(widthShare, heightShare);
    camera.setScale(camera.scale() / share);
    const QPoint offset = (frame.center() - rect().center()) / qreal{share};
    panBy(offset.x(), -offset.y()); // refreshes, unless the frame is centred
}

double View::getZoomRatio() const
{
    return 1.0 / double{watchedShare()};
}

int View::minFitWidth() const
{
    return truncated(static_cast<float>(W) / camera.maxScale());
}

QRect View::viewRect() const
{
    const int shownWidth = truncated(static_cast<float>(W) / camera.scale());
    const int shownHeight = truncated(static_cast<float>(H) / camera.scale());
    return {wholeUnits(camera.position().x() - wholeHalf(shownWidth)),
            wholeUnits(wholeHalf(shownHeight) + camera.position().y()), shownWidth, shownHeight};
}

QPoint View::viewToScene(const QPoint& point) const
{
    const QPoint centred(point.x() - W / 2, H / 2 - point.y());
    return centred / qreal{camera.scale()} + QPoint(cameraX(false), cameraY(false));
}

QPoint View::sceneToView(const QPoint& point) const
{
    const QPoint centred = (point - QPoint(cameraX(false), cameraY(false))) * camera.scale();
    return {W / 2 + centred.x(), H / 2 - centred.y()};
}

void View::setViewSize(int newWidth, int newHeight)
{
    W = newWidth;
    H = newHeight;
    camera.setScreenSize(W, H);
    camera.setSceneSize(scene->width, scene->height);

    const float widthRatio = static_cast<float>(scene->width) / static_cast<float>(W);
    const float heightRatio = static_cast<float>(scene->height) / static_cast<float>(H);
    const float least = std::min(1.0f / widthRatio, 1.0f / heightRatio); // the whole scene just fits
    constexpr int fewestSteps = 50;
    if (std::min(widthRatio, heightRatio) >= 1.0f) {
        const int steps = std::max((scene->width - W) / 100, fewestSteps);
        camera.setScaleRange(least, 1.0f, (1.0f - least) / static_cast<float>(steps));
    } else {
        const float greatest = least * 10.0f;
        camera.setScaleRange(least, greatest, (greatest - least) / static_cast<float>(fewestSteps));
    }
}

/// What changes of the camera end in: overview and scroll bars hear of it only from here.
void View::refreshCamera()
{
    const QSize shown(truncated(static_cast<float>(width()) / camera.scale()),
                      truncated(static_cast<float>(height()) / camera.scale()));
    QRect watched(QPoint(0, 0), shown);
    watched.moveCenter({wholeUnits(wholeHalf(scene->width) + camera.position().x()),
                        wholeUnits(wholeHalf(scene->height) - camera.position().y())});
    const QPointer<View> self(this); // a slot of the host may delete the view
    Q_EMIT signalViewWatchedChanged(watched, watchedShare());
    if (self)
        Q_EMIT scene->signalChanged({});
    if (!self || !glReady)
        return;
    view = camera.viewMatrix();
    update();
}

/// The share of the scene that the view shows, along its tighter axis.
float View::watchedShare() const
{
    const float scale = camera.scale();
    if (scale <= std::numeric_limits<float>::epsilon())
        return 1.0f;
    return std::min(static_cast<float>(W) / scale / static_cast<float>(scene->width),
                    static_cast<float>(H) / scale / static_cast<float>(scene->height));
}

void View::slotEyeWatchedMoved(const QPoint& delta)
{
    const QVector2D position = camera.position();
    camera.setPosition(static_cast<float>(delta.x()) + position.x(), static_cast<float>(delta.y()) + position.y());
    refreshCamera();
}

void View::slotEyeWatchedCenterChanged(const QPointF& viewOri)
{
    camera.setPosition(static_cast<float>(viewOri.x()), static_cast<float>(viewOri.y()));
    refreshCamera();
}

void View::slotEyeWatchedScaleChanged(float percentage)
{
    camera.setScale(std::min(static_cast<float>(W) / (static_cast<float>(scene->width) * percentage),
                             static_cast<float>(H) / (static_cast<float>(scene->height) * percentage)));
    refreshCamera();
}

} // namespace NELK
