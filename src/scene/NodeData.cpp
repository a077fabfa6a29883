#include "scene/NodeData.h"

#include "atlas/TextCell.h"
#include "scene/AtLeast.h"
#include "scene/EdgeData.h"
#include "scene/EdgeShape.h"
#include "scene/Truncation.h"

#include <algorithm>
#include <numeric>

namespace NELK
{

namespace
{

/// The width of boxes side by side, with a gap between two of them.
qint32 rowWidth(const QList<LabelLine>& boxes)
{
    if (boxes.isEmpty())
        return 0;
    const qint32 gaps = textCellEdge * (boxes.size() - 1);
    return std::accumulate(boxes.cbegin(), boxes.cend(), gaps,
                           [](qint32 width, const LabelLine& box) { return width + box.lineWidth; });
}

} // namespace

NodeData::NodeData()
{
    updateBadges();
}

QSize NodeData::labelBox(bool nodeTextShow) const
{
    return nodeTextShow ? QSize(labelWidth, labelHeight) : QSize(setNumWidth, setNumHeight);
}

void NodeData::resize(float factor)
{
    width = truncated(atLeast(factor, 0.1f) * 256.0f);
    height = width;
    circleSize = atLeast(circleSize, 1.0f);
    updateCircleDiameter();
    updateBadges();
}

void NodeData::updateCircleDiameter()
{
    circleDiameter = truncated(static_cast<float>(width) * 1.4142f * circleSize);
}

void NodeData::updateBadges()
{
    const qint64 wholeCorner = 3 * qint64{width} / 8;
    const auto corner = static_cast<float>(wholeCorner);
    lockBadgePos = {-corner, corner};
    cornerBadgePos = {corner, corner};
    badgeSize = width / 4;
    labelBoundWidth = std::max(labelWidth, labelBoundWidth);
}

void NodeData::updateAttachedEdges()
{
    for (EdgeData* edge : qAsConst(outEdges)) {
        edge->startPos = center();
        rebuildShape(*edge);
    }
    for (EdgeData* edge : qAsConst(inEdges)) {
        edge->endPos = center();
        rebuildShape(*edge);
    }
}

void NodeData::appendLabelLine(const QString& text)
{
    labelLines.append(makeLabelLine(text));
}

void NodeData::buildSetNumLines(const QStringList& numbers)
{
    setNumLines.clear();
    // Spaces at both sides give each box a margin, since its background reaches as far as its text.
    const QString margin = QStringLiteral("  ");
    for (const QString& number : numbers)
        setNumLines.append(makeLabelLine(margin + number + margin));

    qint32 pen = rowWidth(setNumLines) / 2;
    for (LabelLine& box : setNumLines) {
        box.startOffset = pen - halfTextCell;
        pen -= textCellEdge + box.lineWidth;
    }
}

void NodeData::updateLabelSize()
{
    const qint32 widestRow =
        std::accumulate(labelLines.cbegin(), labelLines.cend(), 0,
                        [](qint32 widest, const LabelLine& row) { return std::max(widest, row.lineWidth); });
    const qint32 boxes = rowWidth(setNumLines);
    const qint32 rowsHeight = textCellEdge * labelLines.size();
    const auto scaled = [this](qint32 length) { return truncated(static_cast<float>(length) * labelSize); };

    setNumWidth = scaled(boxes);
    setNumHeight = setNumLines.isEmpty() ? 0 : scaled(textCellEdge);
    labelWidth = scaled(std::max(widestRow, boxes));
    labelHeight = scaled(rowsHeight);
    labelBoundWidth = std::max(labelWidth, badgeSize);
}

} // namespace NELK
