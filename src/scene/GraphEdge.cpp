#include <NELK/GraphEdge.h>

#include "scene/EdgeShape.h"
#include "scene/MirroredFlag.h"
#include "scene/Scene.h"
#include "scene/Truncation.h"

#include <algorithm>

namespace NELK
{

namespace
{

QPoint graphPoint(QVector2D scenePoint)
{
    return {truncated(scenePoint.x()), truncated(-scenePoint.y())};
}

} // namespace

GraphEdge::GraphEdge(EdgeData* edgeRecord, Scene* edgeScene) : record(edgeRecord), scene(edgeScene)
{
    if (!record)
        return;
    id = record->id;
    serial = RecordPool<EdgeData>::serialOf(record);
}

bool GraphEdge::operator==(const GraphEdge& other) const
{
    return record == other.record && scene == other.scene && serial == other.serial;
}

bool GraphEdge::valid() const
{
    // The record of a removed edge is never read: the scene is asked what it holds under the id now.
    return record && scene->getEdge(id) == record && RecordPool<EdgeData>::serialOf(record) == serial;
}

EdgeData& GraphEdge::data() const
{
    Q_ASSERT_X(valid(), "NELK::GraphEdge", "the handle is null or its edge is no longer in the scene");
    return *record;
}

bool GraphEdge::ring() const
{
    return record && data().ring;
}

QPoint GraphEdge::startPos() const
{
    return graphPoint(data().startPos);
}

QPoint GraphEdge::endPos() const
{
    return graphPoint(data().endPos);
}

QPoint GraphEdge::curveStartPos() const
{
    return graphPoint(data().curveStartPos);
}

QPoint GraphEdge::curveEndPos() const
{
    return graphPoint(data().curveEndPos);
}

bool GraphEdge::select() const
{
    return data().select;
}

void GraphEdge::setSelect(bool select)
{
    setMirrored(data(), &EdgeData::select, select, scene->selectedEdges);
}

void GraphEdge::setShow(bool show)
{
    data().show = show;
}

void GraphEdge::setEdgeColor(const QColor& color)
{
    data().edgeColor = colorToRgb(color);
}

void GraphEdge::setEdgeWidth(int width)
{
    const int bounded = std::max(width, 8);
    if (bounded == data().edgeWidth)
        return;
    data().edgeWidth = bounded;
    rebuildShape(data());
}

void GraphEdge::setRightAngle(bool rightAngle)
{
    if (rightAngle == data().rightAngle)
        return;
    data().rightAngle = rightAngle;
    rebuildShape(data());
}

void GraphEdge::setZoomSpan(float span)
{
    if (!record)
        return;
    data().zoomSpan = span;
    rebuildShape(data());
}

void GraphEdge::setStartArrowShow(bool show)
{
    setMirrored(data(), &EdgeData::startArrowShow, show, scene->startArrowEdges);
}

void GraphEdge::setEndArrowShow(bool show)
{
    setMirrored(data(), &EdgeData::endArrowShow, show, scene->endArrowEdges);
}

void GraphEdge::setLabel(const QString& text)
{
    EdgeData& edge = data();
    setMirrored(edge, !text.isEmpty(), scene->labelEdges);
    edge.labelLines.clear();
    const QStringList rows = labelRows(text);
    for (const QString& row : rows)
        edge.appendLabelLine(row);
}

void GraphEdge::setLabelColor(const QColor& color, const QColor& background)
{
    data().labelColor = colorToRgba(color);
    data().labelBackColor = colorToRgba(background);
}

void GraphEdge::setLabelSize(float size)
{
    data().labelSize = size > 1.0f ? size : 1.0f;
}

} // namespace NELK
