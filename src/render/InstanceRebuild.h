#pragma once

#include <QtGlobal>

namespace NELK
{

class Scene;

// A rebuild turns everything that a scene shows into its lists. Neither form changes anything but the lists. A scene
// must not change until the call returns. `textCols` is how many columns the text atlas has.

/// Rebuilds all lists on the calling thread.
void rebuildAll(Scene& scene, qint32 textCols);
/// Rebuilds all lists but the overview's, which a selection does not change, on a team of threads of OpenMP's default
/// size, the calling one among them. Returns when all are done.
void rebuildParallel(Scene& scene, qint32 textCols);

} // namespace NELK
