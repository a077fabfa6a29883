#include "scene/Scene.h"

#include "scene/Rectangles.h"
#include "scene/Truncation.h"

#include <algorithm>
#include <limits>

namespace NELK
{

namespace
{

/// The box around a number of points; upside down while there are none.
struct Bounds
{
    float minX = std::numeric_limits<float>::max();
    float minY = std::numeric_limits<float>::max();
    float maxX = std::numeric_limits<float>::lowest();
    float maxY = std::numeric_limits<float>::lowest();

    void extend(float x, float y)
    {
        minX = std::min(minX, x);
        minY = std::min(minY, y);
        maxX = std::max(maxX, x);
        maxY = std::max(maxY, y);
    }
};

} // namespace

void Scene::moveSelected(QVector2D delta)
{
    for (NodeData* node : qAsConst(nodes)) {
        if (!node->show || node->lock || !node->select)
            continue;
        node->x += delta.x();
        node->y += delta.y();
        node->updateAttachedEdges();
    }
    Q_EMIT signalElementsMoved();
    Q_EMIT signalChanged({});
}

QRect Scene::boundingRect(bool visibleOnly) const
{
    const QRect defaultArea(-4000, 2400, 8000, -4800);

    Bounds bounds;
    bool anyNode = false;
    for (const NodeData* node : nodes) {
        if (visibleOnly && !node->show)
            continue;
        bounds.extend(node->x, node->y);
        anyNode = true;
    }
    if (!anyNode)
        return defaultArea;

    int widestMargin = 0;
    for (const EdgeData* edge : edges) {
        if (edge->maxIndex != 0 && (!visibleOnly || edge->show))
            widestMargin = std::max(widestMargin, edge->edgeMargin());
    }
    const auto margin = static_cast<float>(widestMargin);
    const float left = bounds.minX - margin;
    const float bottom = bounds.minY - margin;
    const float right = bounds.maxX + margin;
    const float top = bounds.maxY + margin;
    return rectOfSize(truncated(left), truncated(top), truncated(right - left), truncated(top - bottom));
}

void Scene::elementsAlignToCenter()
{
    Bounds bounds;
    for (const NodeData* node : qAsConst(nodes))
        bounds.extend(node->x, node->y);
    const float centreX = (bounds.maxX + bounds.minX) * 0.5f;
    const float centreY = (bounds.maxY + bounds.minY) * 0.5f;

    for (NodeData* node : qAsConst(nodes)) {
        node->x -= centreX;
        node->y -= centreY;
        node->updateAttachedEdges();
    }
}

} // namespace NELK
