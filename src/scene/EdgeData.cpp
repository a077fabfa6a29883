#include "scene/EdgeData.h"

#include "scene/EdgeShape.h"
#include "scene/NodeData.h"

#include <algorithm>
#include <limits>

namespace NELK
{

EdgeData::EdgeData(NodeData& start, NodeData& end)
{
    linkNodes(start, end);
    rebuildShape(*this);
}

EdgeData::EdgeData(EdgeData& base, int number) : baseEdge(&base), index(number > 0 ? number : 1)
{
    base.maxIndex = std::max(base.maxIndex, number);
    linkNodes(*base.startNode, *base.endNode);
    rebuildShape(*this);
}

EdgeData::EdgeData(NodeData& node, int number)
    : ring(true), startNode(&node), endNode(&node), index(number >= 0 ? number : 0)
{
    ringScale = static_cast<float>(index * 0.4 + 1.0);
    node.outEdges.append(this);
    rebuildShape(*this);
}

void EdgeData::linkNodes(NodeData& start, NodeData& end)
{
    startNode = &start;
    endNode = &end;
    startPos = start.center();
    endPos = end.center();
    start.outEdges.append(this);
    end.inEdges.append(this);
}

void EdgeData::appendLabelLine(const QString& text)
{
    if (!text.isEmpty())
        labelLines.append(makeLabelLine(text));
}

int EdgeData::edgeMargin() const
{
    constexpr qint64 trackDistance = 128;
    if (baseEdge)
        return 0;
    const qint64 margin = trackStep(maxIndex) * trackDistance;
    return static_cast<int>(std::min<qint64>(margin, std::numeric_limits<int>::max()));
}

} // namespace NELK
