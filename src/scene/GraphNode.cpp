#include <NELK/GraphNode.h>

#include "atlas/ImageManager.h"
#include "atlas/SEntityPayload.h"
#include "scene/EdgeData.h"
#include "scene/EdgeShape.h"
#include "scene/ElementIds.h"
#include "scene/MirroredFlag.h"
#include "scene/Scene.h"
#include "scene/Truncation.h"

#include <algorithm>

namespace NELK
{

GraphNode::GraphNode(NodeData* nodeRecord, Scene* nodeScene) : record(nodeRecord), scene(nodeScene)
{
    if (!record)
        return;
    id = record->id;
    serial = RecordPool<NodeData>::serialOf(record);
}

bool GraphNode::operator==(const GraphNode& other) const
{
    return record == other.record && scene == other.scene && serial == other.serial;
}

bool GraphNode::valid() const
{
    // The record of a removed node is never read: the scene is asked what it holds under the id now.
    return record && scene->getNode(id) == record && RecordPool<NodeData>::serialOf(record) == serial;
}

NodeData& GraphNode::data() const
{
    Q_ASSERT_X(valid(), "NELK::GraphNode", "the handle is null or its node is no longer in the scene");
    return *record;
}

QPoint GraphNode::pos() const
{
    return {truncated(data().x), truncated(data().y)};
}

QPoint GraphNode::posGraph() const
{
    return {truncated(data().x), truncated(-data().y)};
}

QRect GraphNode::rect() const
{
    return rectWithTop(truncated(data().y + wholeHalf(data().bodyDiameter())));
}

QRect GraphNode::rectGraph() const
{
    return rectWithTop(truncated(-data().y - wholeHalf(data().bodyDiameter())));
}

QRect GraphNode::rectWithTop(int top) const
{
    const int half = data().bodyDiameter() / 2;
    const int side = 2 * half;
    const QSize label = data().labelBox(scene->nodeTextShow);
    return {truncated(data().x - static_cast<float>(half)), top, std::max(label.width(), side), label.height() + side};
}

void GraphNode::setPos(const QPoint& pos)
{
    setPos(pos.x(), pos.y());
}

void GraphNode::setPos(int x, int y)
{
    moveTo(static_cast<float>(x), static_cast<float>(y));
}

void GraphNode::setPosGraph(const QPoint& pos)
{
    setPosGraph(pos.x(), pos.y());
}

void GraphNode::setPosGraph(int x, int y)
{
    moveTo(static_cast<float>(x), static_cast<float>(-qint64{y}));
}

void GraphNode::moveTo(float x, float y)
{
    data().x = x;
    data().y = y;
    data().updateAttachedEdges();
}

bool GraphNode::select() const
{
    return data().select;
}

void GraphNode::setSelect(bool select)
{
    setMirrored(data(), &NodeData::select, select, scene->selectedNodes);
}

void GraphNode::setShow(bool show)
{
    data().show = show;
}

void GraphNode::setLock(bool lock)
{
    data().lock = lock;
}

void GraphNode::setFocus(bool focus)
{
    data().focus = focus;
}

void GraphNode::setCombined(bool combined)
{
    data().combined = combined;
}

void GraphNode::setSize(float size)
{
    data().resize(size);
    const QList<EdgeData*> leaving = data().outEdges;
    for (EdgeData* edge : leaving) {
        if (edge->ring)
            buildRingShape(*edge);
    }
}

void GraphNode::setCircleShow(bool show)
{
    setMirrored(data(), &NodeData::circleShow, show, scene->circleNodes);
}

void GraphNode::setCircleSize(float size)
{
    data().circleSize = size > 1.0f ? size : 1.0f;
    data().updateCircleDiameter();
}

void GraphNode::setCircleColor(const QColor& color)
{
    data().circleColor = colorToRgb(color);
}

void GraphNode::setLabel(const QString& text, const QString& text2)
{
    NodeData& node = data();
    setMirrored(node, !text.isEmpty() || !text2.isEmpty(), scene->labelNodes);

    const QStringList rows = labelRows(text);
    node.labelLines.clear();
    for (const QString& row : rows)
        node.appendLabelLine(row);
    node.labelLineCount = rows.size();
    if (!node.setNumLines.isEmpty())
        node.appendLabelLine(QString()); // the boxes are drawn over this one
    const QStringList rowsBelow = labelRows(text2);
    for (const QString& row : rowsBelow)
        node.appendLabelLine(row);
    node.updateLabelSize();
}

void GraphNode::setSetNum(const QStringList& numbers)
{
    setMirrored(data(), !numbers.isEmpty(), scene->setNumNodes);
    data().buildSetNumLines(numbers);
    data().updateLabelSize();
}

void GraphNode::setLabelColor(const QColor& color, const QColor& background)
{
    data().labelColor = colorToRgba(color);
    data().labelBackColor = colorToRgba(background);
}

void GraphNode::setLabelSize(float size)
{
    data().labelSize = size > 1.0f ? size : 1.0f;
    data().updateLabelSize();
}

void GraphNode::setImage(const QString& name, bool customFile)
{
    const E_IMAGE_KIND iconKind = data().id < floatIdLimit ? IMAGE_ENTITY : IMAGE_FLOAT;
    const SImageCell cell = ImageManager::instance(0)->requestCell(customFile ? IMAGE_FILE : iconKind, name);
    if (!cell.payload)
        return;
    data().imageRow = cell.texRowIdx;
    data().imageCol = cell.texColIdx;
    data().entityColor = colorToRgba(static_cast<const SEntityPayload*>(cell.payload)->color);
}

void GraphNode::setImage(int /*image*/) {}

} // namespace NELK
