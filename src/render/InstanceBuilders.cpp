#include "render/InstanceBuilders.h"

#include "render/ElementMatrix.h"
#include "scene/Scene.h"
#include "scene/Truncation.h"

#include <algorithm>
#include <array>
#include <utility>

namespace NELK
{

namespace
{

using Para = std::array<float, 4>;

Para plainColor(const Rgb& color, float last)
{
    return {color[0], color[1], color[2], last};
}

/// What the shader divides the way inward by, so that the ring comes out `thickness` units thick.
float ringDivisor(qint32 diameter, qint32 thickness)
{
    return static_cast<float>(diameter) / (2.0f * static_cast<float>(thickness));
}

Mat4 squareMatrix(float x, float y, qint32 edge)
{
    const auto side = static_cast<float>(edge);
    return elementMatrix(x, y, side, side);
}

Mat4 badgeMatrix(const NodeData& node, float offsetX, float offsetY)
{
    return squareMatrix(node.x + offsetX, node.y + offsetY, node.badgeSize);
}

const Rgb& shownColor(const Scene& scene, const EdgeData& edge)
{
    return edge.select ? scene.selectColor : edge.edgeColor;
}

// Where the atlas has the badges.
constexpr Para focusBadge{0.0f, 0.0f, 0.0f, 0.0f};
constexpr Para lockBadge{0.0f, 1.0f, 0.0f, 0.0f};
constexpr Para combinedBadge{1.0f, 1.0f, 0.0f, 0.0f};

void addImages(const NodeData& node, InstanceList& images)
{
    if (!node.imageHidden) {
        const Para cell{static_cast<float>(node.imageRow), static_cast<float>(node.imageCol), 0.0f, 0.0f};
        images.add({squareMatrix(node.x, node.y, node.width), cell, {}, {}});
    }
    if (node.lock)
        images.add({badgeMatrix(node, node.lockBadgePos.x(), node.lockBadgePos.y()), lockBadge, {}, {}});
    const QVector2D corner = node.cornerBadgePos;
    if (node.focus)
        images.add({badgeMatrix(node, corner.x(), corner.y()), focusBadge, {}, {}});
    // The focus badge comes first; beside it there is room on the level of the node's centre.
    if (node.combined)
        images.add({badgeMatrix(node, corner.x(), node.focus ? 0.0f : corner.y()), combinedBadge, {}, {}});
}

void addArrows(const Scene& scene, const Scene::EdgeSet& edges, Mat4 EdgeData::*matrix, InstanceList& arrows)
{
    for (const EdgeData* edge : edges) {
        if (edge->show)
            arrows.add({edge->*matrix, plainColor(shownColor(scene, *edge), 0.0f), {}, {}});
    }
}

} // namespace

void buildCircles(Scene& scene)
{
    scene.circleItems.restart();
    scene.selCircleItems.restart();
    for (const NodeData* node : std::as_const(scene.circleNodes)) {
        if (!node->show)
            continue;
        // The rim runs along the middle of the ring.
        const qint32 diameter = node->circleDiameter - node->circleRingWidth;
        InstanceList& circles = node->select ? scene.selCircleItems : scene.circleItems;
        circles.add({squareMatrix(node->x, node->y, diameter), plainColor(node->circleColor, 0.0f), {}, {}});
    }
    scene.circleItems.complete();
    scene.selCircleItems.complete();
}

void buildRings(Scene& scene)
{
    scene.ringItems.restart();
    scene.selRingItems.restart();
    for (const NodeData* node : std::as_const(scene.circleNodes)) {
        if (!node->show)
            continue;
        const qint32 diameter = node->circleDiameter;
        const Para para = plainColor(node->circleColor, ringDivisor(diameter, node->circleRingWidth));
        InstanceList& rings = node->select ? scene.selRingItems : scene.ringItems;
        rings.add({squareMatrix(node->x, node->y, diameter), para, {}, {}});
    }
    scene.ringItems.complete();
    scene.selRingItems.complete();
}

void buildImages(Scene& scene)
{
    scene.imageItems.restart();
    scene.selImageItems.restart();
    for (const NodeData* node : std::as_const(scene.nodes)) {
        if (node->show)
            addImages(*node, node->select ? scene.selImageItems : scene.imageItems);
    }
    scene.imageItems.complete();
    scene.selImageItems.complete();
}

void buildEyeNodes(Scene& scene)
{
    scene.eyeItems.restart();
    for (const NodeData* node : std::as_const(scene.nodes)) {
        if (!node->show)
            continue;
        const Para cell{static_cast<float>(node->imageRow), static_cast<float>(node->imageCol), 0.0f, 0.0f};
        scene.eyeItems.add({squareMatrix(node->x, node->y, node->width), cell, node->entityColor, {}});
    }
    scene.eyeItems.complete();
}

void buildFrames(Scene& scene)
{
    scene.frameItems.restart();
    for (const NodeData* node : std::as_const(scene.selectedNodes)) {
        if (!node->show)
            continue;
        const QSize text = node->labelBox(scene.nodeTextShow);
        const qint32 body = node->bodyDiameter();
        // The text hangs below the body, so the middle of both is half a text lower.
        scene.frameItems.add(
            {elementMatrix(node->x, node->y - wholeHalf(text.height()),
                           static_cast<float>(std::max(text.width(), body)), static_cast<float>(body + text.height())),
             {},
             {},
             {}});
    }
    scene.frameItems.complete();
}

void buildEdges(Scene& scene)
{
    scene.edgeLineItems.restart();
    scene.edgeCurveItems.restart();
    for (const EdgeData* edge : std::as_const(scene.plainEdges)) {
        if (!edge->show)
            continue;
        const Para color = plainColor(shownColor(scene, *edge), 0.0f);
        // The overview shows no selection.
        const Para plain = plainColor(edge->edgeColor, 1.0f);
        if (!edge->rightAngle && edge->index == 0) {
            scene.edgeLineItems.add({edge->lineMatrix, color, plain, {}});
            continue;
        }
        for (const Mat4* piece : {&edge->segmentMatrix0, &edge->segmentMatrix1, &edge->segmentMatrix2})
            scene.edgeCurveItems.add({*piece, color, plain, {}});
    }
    scene.edgeLineItems.complete();
    scene.edgeCurveItems.complete();
}

void buildArrows(Scene& scene)
{
    scene.arrowItems.restart();
    addArrows(scene, scene.startArrowEdges, &EdgeData::startArrowMatrix, scene.arrowItems);
    addArrows(scene, scene.endArrowEdges, &EdgeData::endArrowMatrix, scene.arrowItems);
    scene.arrowItems.complete();
}

void buildEdgeRings(Scene& scene)
{
    scene.edgeRingItems.restart();
    for (const EdgeData* edge : std::as_const(scene.ringEdges)) {
        if (!edge->show)
            continue;
        const Para para = plainColor(shownColor(scene, *edge), ringDivisor(edge->ringDiameter, edge->edgeWidth));
        scene.edgeRingItems.add(
            {squareMatrix(edge->startPos.x(), edge->startPos.y(), edge->ringDiameter), para, {}, {}});
    }
    scene.edgeRingItems.complete();
}

} // namespace NELK
