#include <NELK/GraphEdge.h>

#include "scene/AtLeast.h"
#include "scene/EdgeShape.h"
#include "scene/MirroredFlag.h"
#include "scene/RecordIdentity.h"
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
    return scene && holdsRecord(scene->edges, id, record, serial);
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
    EdgeData& edge = data();
    setMirrored(edge, &EdgeData::select, select, scene->selectedEdges);
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
    EdgeData& edge = data();
    const int bounded = std::max(width, 8);
    if (bounded == edge.edgeWidth)
        return;
    edge.edgeWidth = bounded;
    rebuildShape(edge);
}

void GraphEdge::setRightAngle(bool rightAngle)
{
    EdgeData& edge = data();
    if (rightAngle == edge.rightAngle)
        return;
    edge.rightAngle = rightAngle;
    rebuildShape(edge);
}

void GraphEdge::setZoomSpan(float span)
{
    if (!record)
        return;
    EdgeData& edge = data();
    edge.zoomSpan = span;
    rebuildShape(edge);
}

void GraphEdge::setStartArrowShow(bool show)
{
    EdgeData& edge = data();
    setMirrored(edge, &EdgeData::startArrowShow, show, scene->startArrowEdges);
}

void GraphEdge::setEndArrowShow(bool show)
{
    EdgeData& edge = data();
    setMirrored(edge, &EdgeData::endArrowShow, show, scene->endArrowEdges);
}

void GraphEdge::setLabel(const QString& text)
{
    EdgeData& edge = data();
    setMember(scene->labelEdges, edge, !text.isEmpty());
    edge.labelLines.clear();
    const QStringList rows = labelRows(text);
    for (const QString& row : rows)
        edge.appendLabelLine(row);
}

void GraphEdge::setLabelColor(const QColor& color, const QColor& background)
{
    EdgeData& edge = data();
    edge.labelColor = colorToRgba(color);
    edge.labelBackColor = colorToRgba(background);
}

void GraphEdge::setLabelSize(float size)
{
    data().labelSize = atLeast(size, 1.0f);
}

} // namespace NELK
