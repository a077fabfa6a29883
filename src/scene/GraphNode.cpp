#include <NELK/GraphNode.h>

#include "atlas/ImageManager.h"
#include "atlas/SEntityPayload.h"
#include "scene/AtLeast.h"
#include "scene/EdgeData.h"
#include "scene/EdgeShape.h"
#include "scene/ElementIds.h"
#include "scene/MirroredFlag.h"
#include "scene/RecordIdentity.h"
#include "scene/Rectangles.h"
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
    return scene && holdsRecord(scene->nodes, id, record, serial);
}

NodeData& GraphNode::data() const
{
    Q_ASSERT_X(valid(), "NELK::GraphNode", "the handle is null or its node is no longer in the scene");
    return *record;
}

QPoint GraphNode::pos() const
{
    const NodeData& node = data();
    return {truncated(node.x), truncated(node.y)};
}

QPoint GraphNode::posGraph() const
{
    const NodeData& node = data();
    return {truncated(node.x), truncated(-node.y)};
}

QRect GraphNode::rect() const
{
    const NodeData& node = data();
    return rectWithTop(truncated(node.y + wholeHalf(node.bodyDiameter())));
}

QRect GraphNode::rectGraph() const
{
    const NodeData& node = data();
    return rectWithTop(truncated(-node.y - wholeHalf(node.bodyDiameter())));
}

QRect GraphNode::rectWithTop(int top) const
{
    const NodeData& node = data();
    const QSize label = node.labelBox(scene->nodeTextShow);
    const qint64 side = qint64{2} * (node.bodyDiameter() / 2);
    const int left = truncated(node.x - wholeHalf(node.bodyDiameter()));
    return rectOfSize(left, top, std::max<qint64>(label.width(), side), label.height() + side);
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
    NodeData& node = data();
    node.x = x;
    node.y = y;
    node.updateAttachedEdges();
}

bool GraphNode::select() const
{
    return data().select;
}

void GraphNode::setSelect(bool select)
{
    NodeData& node = data();
    setMirrored(node, &NodeData::select, select, scene->selectedNodes);
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
    NodeData& node = data();
    node.resize(size);
    for (EdgeData* edge : qAsConst(node.outEdges)) {
        if (edge->ring)
            buildRingShape(*edge);
    }
}

void GraphNode::setCircleShow(bool show)
{
    NodeData& node = data();
    setMirrored(node, &NodeData::circleShow, show, scene->circleNodes);
}

void GraphNode::setCircleSize(float size)
{
    NodeData& node = data();
    node.circleSize = atLeast(size, 1.0f);
    node.updateCircleDiameter();
}

void GraphNode::setCircleColor(const QColor& color)
{
    data().circleColor = colorToRgb(color);
}

void GraphNode::setLabel(const QString& text, const QString& text2)
{
    NodeData& node = data();
    setMember(scene->labelNodes, node, !text.isEmpty() || !text2.isEmpty());

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
    NodeData& node = data();
    setMember(scene->setNumNodes, node, !numbers.isEmpty());
    node.buildSetNumLines(numbers);
    node.updateLabelSize();
}

void GraphNode::setLabelColor(const QColor& color, const QColor& background)
{
    NodeData& node = data();
    node.labelColor = colorToRgba(color);
    node.labelBackColor = colorToRgba(background);
}

void GraphNode::setLabelSize(float size)
{
    NodeData& node = data();
    node.labelSize = atLeast(size, 1.0f);
    node.updateLabelSize();
}

void GraphNode::setImage(const QString& name, bool customFile)
{
    NodeData& node = data();
    ImageManager& icons = *ImageManager::instance(ImageManager::entityIndex);
    if (!icons.isStarted())
        return; // a file must not take the place of the first badge
    const E_IMAGE_KIND iconKind = node.id < floatIdLimit ? IMAGE_ENTITY : IMAGE_FLOAT;
    const SImageCell cell = icons.requestCell(customFile ? IMAGE_FILE : iconKind, name);
    if (!cell.payload)
        return;
    node.imageRow = cell.texRowIdx;
    node.imageCol = cell.texColIdx;
    node.entityColor = colorToRgba(static_cast<const SEntityPayload*>(cell.payload)->color);
}

void GraphNode::setImage(int /*image*/) {}

} // namespace NELK
