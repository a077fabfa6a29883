#include "render/InstanceRebuild.h"

#include "render/InstanceBuilders.h"

namespace NELK
{

namespace
{

/// Shares the builders out among the threads of the team that enters it. A thread on its own takes all in their order.
void runSections(Scene& scene, qint32 textCols, bool withEye)
{
#pragma omp sections
    {
#pragma omp section
        {
            buildCircles(scene);
            buildRings(scene);
        }
#pragma omp section
        {
            buildImages(scene);
            if (withEye)
                buildEyeNodes(scene);
        }
#pragma omp section
        buildFrames(scene);
#pragma omp section
        buildEdges(scene);
#pragma omp section
        buildArrows(scene);
#pragma omp section
        buildLabels(scene, textCols);
#pragma omp section
        buildEdgeRings(scene);
    }
}

} // namespace

void rebuildAll(Scene& scene, qint32 textCols)
{
    runSections(scene, textCols, true);
}

void rebuildParallel(Scene& scene, qint32 textCols)
{
#pragma omp parallel
    runSections(scene, textCols, false);
}

} // namespace NELK
