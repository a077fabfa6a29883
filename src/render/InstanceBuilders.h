#pragma once

#include <QtGlobal>

namespace NELK
{

class Scene;

// Builders fill the lists of a Scene from its elements: one record for each thing to draw, finished, so that painting
// is no more than handing the lists over. Hidden elements are passed over; where the camera is does not matter.
//
// Each builder empties its own lists and fills them anew. It only reads elements, sets and settings, and no two
// builders write the same list, so that they may run at once. None of them touches OpenGL. The order of records is
// that of the sets.

/// The filled circles of nodes.
void buildCircles(Scene& scene);
/// The rings around these circles.
void buildRings(Scene& scene);
/// Icons and badges.
void buildImages(Scene& scene);
/// The squares that the overview shows for nodes.
void buildEyeNodes(Scene& scene);
/// The frames around selected nodes and their text.
void buildFrames(Scene& scene);
/// The bodies of all edges but rings.
void buildEdges(Scene& scene);
/// Arrow heads.
void buildArrows(Scene& scene);
/// Edges that are rings.
void buildEdgeRings(Scene& scene);
/// The glyphs of all texts. `textCols` is how many columns the text atlas has.
void buildLabels(Scene& scene, qint32 textCols);

} // namespace NELK
