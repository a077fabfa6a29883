// What View does with points of the widget: picking, selecting, moving.

#include "view/View.h"

#include "scene/Scene.h"
#include "scene/Truncation.h"

#include <QPointer>

namespace NELK
{

namespace
{

/// A frame of up to this length, both ways together, may be a click with an unsteady hand.
constexpr int dragThreshold = 8;

SelectMode clickMode(bool toggle)
{
    return toggle ? SELECT_ADD : SELECT_REPLACE;
}

} // namespace

void View::setMode(E_OP_MODE mode)
{
    switch (mode) {
    case OP_NORMAL:
        setCursor(Qt::ArrowCursor);
        break;
    case OP_HAND:
        setCursor(Qt::OpenHandCursor);
        break;
    case OP_LINE:
    case OP_ZOOM_FRAME:
        setCursor(Qt::CrossCursor);
        break;
    }
    Q_EMIT signalFrameModeChanged(mode);
}

bool View::hitNode(QPoint position, qint64* id, bool selectedOnly) const
{
    return scene->testNodeAt(scenePoint(position), id, selectedOnly);
}

bool View::hitEdge(QPoint position, qint64* id, int radius) const
{
    return scene->testEdgeAt(scenePoint(position), sceneRadius(radius), id);
}

bool View::pressSelect(QPoint position, bool toggle)
{
    if (!hitNode(position, nullptr, false))
        return false;
    clickSelect(position, toggle, clickRadius);
    return true;
}

bool View::clickSelect(QPoint position, bool toggle, int radius)
{
    bool changed = false;
    const QPointer<View> self(this); // a slot of the host may delete the view
    const bool nodeHit = scene->selectAtPoint(scenePoint(position), clickMode(toggle), &changed, sceneRadius(radius));
    if (self && changed) {
        rebuildParallel();
        update();
    }
    return nodeHit;
}

void View::frameSelect(const QRect& frame, bool add)
{
    const QPointer<View> self(this);
    scene->selectInFrame(scenePoint(frame.topLeft()), scenePoint(frame.bottomRight()), clickMode(add));
    if (!self)
        return;
    rebuildParallel();
    update();
}

void View::moveSelected(QPoint delta)
{
    const QPointer<View> self(this);
    scene->moveSelected(
        {static_cast<float>(delta.x()) / camera.scale(), static_cast<float>(-delta.y()) / camera.scale()});
    if (!self)
        return;
    rebuildAll();
    update();
}

void View::frameChanged(bool show, const QPoint& p1, const QPoint& p2)
{
    if ((p1 - p2).manhattanLength() > dragThreshold)
        Q_EMIT signalFrameSizeChanged(show, p1, p2);
}

void View::doubleClick(QPoint position)
{
    qint64 id = -1;
    const E_ELEMENTS_TYPE type = elementAt(position, id);
    if (type != ELEMENT_NONE)
        Q_EMIT signalLeftMouseButtonDblClicked(type, id);
}

void View::rightPress(QPoint position)
{
    qint64 id = -1;
    const E_ELEMENTS_TYPE type = elementAt(position, id);
    Q_EMIT signalRightMouseButtonClicked(type, id);
}

/// Without rounding: a click is as exact as the screen.
QVector2D View::scenePoint(QPoint position) const
{
    return QVector2D(static_cast<float>(position.x() - W / 2), static_cast<float>(H / 2 - position.y())) /
               camera.scale() +
           camera.position();
}

E_ELEMENTS_TYPE View::elementAt(QPoint position, qint64& id) const
{
    if (hitNode(position, &id, false))
        return ELEMENT_NODE;
    return hitEdge(position, &id, clickRadius) ? ELEMENT_EDGE : ELEMENT_NONE;
}

int View::sceneRadius(int radius) const
{
    return truncated(static_cast<float>(radius) / camera.scale());
}

} // namespace NELK
