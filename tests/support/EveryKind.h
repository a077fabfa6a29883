#pragma once

#include <NELK/GraphScene.h>

#include <QColor>
#include <QPoint>
#include <QString>

namespace NELK
{

inline GraphNode addNode(GraphScene& graph, QPoint position, const QString& label = {})
{
    GraphNode node = graph.createNode();
    node.setPos(position);
    if (!label.isEmpty())
        node.setLabel(label, {});
    return node;
}

inline GraphEdge addEdge(GraphScene& graph, const GraphNode& start, const GraphNode& end, const QColor& color)
{
    GraphEdge edge = graph.createEdge(start, end);
    edge.setEdgeColor(color);
    return edge;
}

/// Fills all lists that are drawn, no two of those that take the same buffer with as many records.
inline void addEveryKind(GraphScene& graph)
{
    GraphNode left = addNode(graph, {-600, 0}, QStringLiteral("left"));
    left.setCircleShow(true);
    left.setCircleColor(Qt::darkGreen);
    left.setLock(true);
    left.setFocus(true);
    left.setCombined(true);
    GraphNode right = addNode(graph, {600, 0}, QStringLiteral("right side"));
    right.setCircleShow(true);
    right.setCircleColor(Qt::darkBlue);
    for (const QPoint place : {QPoint(0, -700), QPoint(0, 700), QPoint(-1200, 700)}) {
        GraphNode chosen = addNode(graph, place, QStringLiteral("chosen"));
        chosen.setLabelColor(Qt::black, Qt::white);
        chosen.setLabelSize(2.0f);
        chosen.setCircleShow(true);
        chosen.setSelect(true);
    }

    GraphEdge line = addEdge(graph, left, right, Qt::red);
    line.setEndArrowShow(true);
    line.setLabel(QStringLiteral("line"));
    graph.createEdge(line, 1).setStartArrowShow(true);
    graph.createEdge(line, 2).setSelect(true);
    addEdge(graph, right, left, Qt::magenta).setRightAngle(true);
    addEdge(graph, right, right, Qt::darkCyan);
}

} // namespace NELK
