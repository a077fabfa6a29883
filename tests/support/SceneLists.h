#pragma once

#include "scene/Scene.h"
#include "support/RecordText.h"

#include <QStringList>

#include <array>

namespace NELK
{

struct SceneList
{
    const char* name;
    InstanceList Scene::*list;
};

inline constexpr std::array<SceneList, 15> sceneLists{{
    {"circleItems", &Scene::circleItems},
    {"ringItems", &Scene::ringItems},
    {"imageItems", &Scene::imageItems},
    {"eyeItems", &Scene::eyeItems},
    {"textItems", &Scene::textItems},
    {"selCircleItems", &Scene::selCircleItems},
    {"selRingItems", &Scene::selRingItems},
    {"selImageItems", &Scene::selImageItems},
    {"frameItems", &Scene::frameItems},
    {"selTextItems", &Scene::selTextItems},
    {"edgeLineItems", &Scene::edgeLineItems},
    {"edgeCurveItems", &Scene::edgeCurveItems},
    {"arrowItems", &Scene::arrowItems},
    {"edgeRingItems", &Scene::edgeRingItems},
    {"edgeTextItems", &Scene::edgeTextItems},
}};

/// The names of all lists that draw something, in their declared order.
inline QStringList filledLists(const Scene& scene)
{
    QStringList names;
    for (const auto& [name, list] : sceneLists) {
        if ((scene.*list).count != 0 || !(scene.*list).records.empty())
            names.append(QLatin1String(name));
    }
    return names;
}

} // namespace NELK
