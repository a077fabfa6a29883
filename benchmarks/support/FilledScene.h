#pragma once

#include "support/Network.h"
#include "support/SceneOf.h"

#include <memory>

namespace NELK
{

/// A scene that is full, of the size that a benchmark asks for. Only the last one is kept, since the large ones take
/// long to build and much room.
class FilledScene
{
public:
    static FilledScene& ofSize(std::size_t nodeCount)
    {
        static std::unique_ptr<FilledScene> last;
        if (!last || last->network.nodes.size() != nodeCount) {
            last.reset();
            last = std::make_unique<FilledScene>(nodeCount);
        }
        return *last;
    }

    explicit FilledScene(std::size_t nodeCount) : FilledScene(NetworkPlan(nodeCount)) {}

    explicit FilledScene(NetworkPlan networkPlan) : plan(std::move(networkPlan))
    {
        createNodes(graphScene, plan, network);
        createEdges(graphScene, plan, network);
    }

    Scene& scene() { return sceneOf(graphScene); }

    NetworkPlan plan;
    GraphScene graphScene;
    Network network;
};

} // namespace NELK
