#pragma once

#include "scene/Mat4.h"

#include <QVector2D>

namespace NELK
{

/// The unit quad stretched from `start` to `end`, `width` units wide.
/// With `lengthen` the quad is half its width longer, which closes the gaps where pieces meet at a bend.
Mat4 lineModel(QVector2D start, QVector2D end, int width, bool lengthen);

/// An arrow head at `position`, pointing along `angle` (radians) or, with `reverse`, against it. Its size grows with
/// the `width` of the edge that it ends.
Mat4 arrowModel(QVector2D position, float angle, int width, bool reverse);

} // namespace NELK
