#pragma once

#include <QtGlobal>

/// Edge length of a cell of the text atlas in pixels; so also the height of a row of text and the gap between two
/// set-number boxes, in scene units at text size 1.
inline constexpr qint32 textCellEdge = 76;

/// From the left side of a text cell to its middle.
inline constexpr qint32 halfTextCell = textCellEdge / 2;
