#pragma once

#include <NELK/GraphScene.h>

/// Fills a scene with a small made-up case in which every kind of node, badge, edge, arrow, ring and label occurs.
/// Half of it is selected.
void buildSampleNetwork(NELK::GraphScene& scene);
