#pragma once

#include <NELK/GraphScene.h>

#include <QList>

/// What is selected in a network.
struct Selection
{
    QList<qint64> nodes;
    QList<qint64> edges;
};

/// Fills a scene with a small made-up case in which every kind of node, badge, edge, arrow, ring and label occurs.
/// Half of it is selected, which the scene tells nobody.
Selection buildSampleNetwork(NELK::GraphScene& scene);
