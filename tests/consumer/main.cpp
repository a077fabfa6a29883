// Creates a network through the installed package and quits: 0 if the scene answers as it should.

#include <NELK/NELK>

#include <cstdlib>

int main()
{
    NELK::GraphScene scene;
    NELK::GraphNode from = scene.createNode();
    NELK::GraphNode to = scene.createNode();
    from.setPosGraph(0, 0);
    to.setPosGraph(600, 200);
    const NELK::GraphEdge edge = scene.createEdge(from, to);

    const bool asExpected = edge.valid() && edge.endPos() == to.posGraph() && scene.getNode(to.getId()) == to;
    return asExpected ? EXIT_SUCCESS : EXIT_FAILURE;
}
