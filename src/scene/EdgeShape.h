#pragma once

#include <QtGlobal>

namespace NELK
{

struct EdgeData;

// The shape of an edge is built once per change of the edge and then only copied. It is a function of the edge's ends
// and settings at that time, and for a derived edge also of the line frame that its base edge then has.

/// Builds whichever shape the edge has: ring, right-angled, or straight with its parallel tracks.
void rebuildShape(EdgeData& edge);

/// One quad from centre to centre, or the three straight pieces of a parallel track.
void buildCurveShape(EdgeData& edge);
/// Three axis-parallel pieces, the level one a quarter of the way down from the upper end.
void buildRightAngleShape(EdgeData& edge);
/// A ring above the node and through its centre.
void buildRingShape(EdgeData& edge);

/// How many steps track `index` stands off the line: 1 and 2 lie one step to either side of it, 3 and 4 two steps.
inline qint32 trackStep(qint32 index)
{
    return index / 2 + index % 2;
}

} // namespace NELK
