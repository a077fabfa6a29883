#pragma once

#include "scene/Scene.h"

#include <NELK/GraphScene.h>

namespace NELK
{

/// The model behind the public scene, for tests that look at records and sets.
inline Scene& sceneOf(const GraphScene& graphScene)
{
    return *graphScene.findChild<Scene*>();
}

} // namespace NELK
