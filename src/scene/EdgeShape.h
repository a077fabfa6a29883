#pragma once

namespace NELK
{

struct EdgeData;

// The shape of an edge is built once per change of the edge and then only copied. It is a function of the edge's ends
// and settings at that time, and for a derived edge also of the line frame that its base edge then has.

/// Takes the line frame anew from the edge's own ends.
void buildLineFrame(EdgeData& edge);

/// Builds whichever shape the edge has: ring, right-angled, or straight with its parallel tracks.
void rebuildShape(EdgeData& edge);

/// One quad from centre to centre, or the three straight pieces of a parallel track.
void buildCurveShape(EdgeData& edge);
/// Three axis-parallel pieces, the level one a quarter of the way down from the upper end.
void buildRightAngleShape(EdgeData& edge);
/// A ring above the node and through its centre.
void buildRingShape(EdgeData& edge);

} // namespace NELK
