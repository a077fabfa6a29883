#include <NELK/GraphScene.h>

#include "scene/Distance.h"
#include "scene/ElementIds.h"
#include "scene/Scene.h"
#include "scene/Truncation.h"

#include <QMetaType>

namespace NELK
{

namespace
{

/// The running id of elements that are created without one: nodes and edges of all scenes alike.
qint32 nextElementId = 1;

/// Queued connections look the lists in the signals up under the very names that the signals use.
void registerSignalTypes()
{
    qRegisterMetaType<QList<qint64>>("QList<qint64>");
    qRegisterMetaType<QList<QRectF>>("QList<QRectF>");
}

} // namespace

GraphScene::GraphScene() : scene(new Scene(this))
{
    registerSignalTypes();
    connect(scene, SIGNAL(signalSelectChanged(const QList<qint64>&, const QList<qint64>&)), this,
            SIGNAL(signalSelectChanged(const QList<qint64>&, const QList<qint64>&)));
    connect(scene, SIGNAL(signalChanged(const QList<QRectF>&)), this, SIGNAL(changed(const QList<QRectF>&)));
}

GraphScene::~GraphScene() = default;

GraphNode GraphScene::createNode()
{
    return createNode(takeNextId(nextElementId));
}

GraphNode GraphScene::createNode(qint64 id)
{
    return {scene->createNode(id), scene};
}

GraphEdge GraphScene::createEdge(const GraphNode& start, const GraphNode& end)
{
    return createEdge(takeNextId(nextElementId), start, end);
}

GraphEdge GraphScene::createEdge(qint64 id, const GraphNode& start, const GraphNode& end)
{
    const bool bothValid = start.valid() && end.valid();
    return {bothValid ? scene->createEdge(id, start.record, end.record) : nullptr, scene};
}

GraphEdge GraphScene::createEdge(const GraphEdge& base, int index)
{
    return createEdge(takeNextId(nextElementId), base, index);
}

GraphEdge GraphScene::createEdge(qint64 id, const GraphEdge& base, int index)
{
    return {base.valid() ? scene->createEdge(id, base.record, index) : nullptr, scene};
}

GraphNode GraphScene::getNode(qint64 id) const
{
    return {scene->getNode(id), scene};
}

GraphEdge GraphScene::getEdge(qint64 id) const
{
    return {scene->getEdge(id), scene};
}

void GraphScene::removeNode(qint64 id)
{
    scene->removeNode(id);
}

void GraphScene::removeEdge(qint64 id)
{
    scene->removeEdge(id);
}

void GraphScene::clear()
{
    scene->clear();
}

void GraphScene::setSize(int width, int height)
{
    scene->setSize(width, height);
    Q_EMIT signalSizeChanged();
}

int GraphScene::width() const
{
    return scene->width;
}

int GraphScene::height() const
{
    return scene->height;
}

QRect GraphScene::boundingRect(bool visibleOnly) const
{
    return scene->boundingRect(visibleOnly);
}

void GraphScene::elementsAlignToCenter()
{
    scene->elementsAlignToCenter();
}

void GraphScene::setNodeTextShow(bool show)
{
    scene->nodeTextShow = show;
}

void GraphScene::setEdgeTextShow(bool show)
{
    scene->edgeTextShow = show;
}

QList<GraphNode> GraphScene::testNodeAtPoint(const QPoint& point) const
{
    const QVector2D scenePoint(point);
    QList<GraphNode> found;
    for (NodeData* node : qAsConst(scene->nodes)) {
        if (distance(node->center(), scenePoint) < wholeHalf(node->circleDiameter))
            found.append({node, scene});
    }
    return found;
}

} // namespace NELK
