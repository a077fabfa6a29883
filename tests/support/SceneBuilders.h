#pragma once

#include "render/InstanceBuilders.h"

#include <QList>
#include <QStringList>

namespace NELK
{

/// A builder and the lists that it owns, in their declared order.
struct SceneBuilder
{
    void (*build)(Scene&);
    QStringList lists;
};

inline QList<SceneBuilder> sceneBuilders()
{
    return {
        {buildCircles, {"circleItems", "selCircleItems"}},
        {buildRings, {"ringItems", "selRingItems"}},
        {buildImages, {"imageItems", "selImageItems"}},
        {buildEyeNodes, {"eyeItems"}},
        {buildFrames, {"frameItems"}},
        {buildEdges, {"edgeLineItems", "edgeCurveItems"}},
        {buildArrows, {"arrowItems"}},
        {buildEdgeRings, {"edgeRingItems"}},
        {[](Scene& scene) { buildLabels(scene, 60); }, {"textItems", "selTextItems", "edgeTextItems"}},
    };
}

inline void buildEverything(Scene& scene)
{
    for (const SceneBuilder& builder : sceneBuilders())
        builder.build(scene);
}

} // namespace NELK
