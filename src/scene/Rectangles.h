#pragma once

#include <QPoint>
#include <QRect>
#include <QVector2D>

namespace NELK
{

/// Whether `point` lies inside the frame between two corners, the rim not counted. y is up: `leftTop` has the lesser x
/// and the greater y.
bool insideFrame(QVector2D leftTop, QVector2D rightBottom, QVector2D point);

/// Whether `point` lies inside the box around `centre`, the rim not counted.
bool insideBox(QVector2D centre, float width, float height, QVector2D point);

/// The rectangle of that corner and that size. A side that would lie beyond the range of int is held to it.
QRect rectOfSize(int left, int top, qint64 width, qint64 height);

/// The rectangle whose sides run through two opposite corners, given in any order.
QRect rectFromCorners(QPoint one, QPoint other);

} // namespace NELK
