#pragma once

#include "scene/ColorConversion.h"
#include "scene/LabelLine.h"

#include <QList>
#include <QSize>
#include <QString>
#include <QVector2D>

namespace NELK
{

struct EdgeData;

/// All that the system knows of one node.
///
/// Positions and sizes are in scene units, y up. `select` and `circleShow` are mirrored in sets of the Scene: change
/// them through setMirrored alone.
struct NodeData
{
    NodeData();
    Q_DISABLE_COPY(NodeData)

    /// Centre of the icon.
    QVector2D center() const { return {x, y}; }
    /// Edge length of the icon or, with the circle on, its diameter: how far the node reaches without its label.
    qint32 bodyDiameter() const { return circleShow ? circleDiameter : width; }
    /// What hangs below the body: the text, or only the set numbers while node text is off.
    QSize labelBox(bool nodeTextShow) const;

    /// Takes `factor` times the default size, at least 0.1 times, and refreshes all that follows from it but rings.
    void resize(float factor);
    /// Refreshes the diameter, which follows from `width` and `circleSize`.
    void updateCircleDiameter();
    /// Refreshes place and size of the badges, which follow from `width`.
    void updateBadges();
    /// Takes all edges along to where the node is now.
    void updateAttachedEdges();

    /// Adds a row to the label; one without text is a blank row.
    void appendLabelLine(const QString& text);
    /// Makes the boxes of the set-number row, side by side and centred on the node together.
    void buildSetNumLines(const QStringList& numbers);
    /// Measures the text block, which follows from the rows, the boxes and `labelSize`.
    void updateLabelSize();

    qint64 id = 0;
    float x = 0.0f;
    float y = 0.0f;
    bool select = false;
    bool show = true;
    bool lock = false;
    bool focus = false;
    bool combined = false;
    /// Every edge that starts here, rings included, in creation order.
    QList<EdgeData*> outEdges;
    /// Every edge that ends here but rings, in creation order.
    QList<EdgeData*> inEdges;
    /// Badge centres, relative to the node's own.
    QVector2D lockBadgePos;
    QVector2D cornerBadgePos;
    qint32 badgeSize = 0;
    qint32 width = 256;
    qint32 height = 256;
    bool imageHidden = false;
    QString imageName;
    /// The cell of the icon in the entity atlas.
    qint32 imageRow = 0;
    qint32 imageCol = 0;
    bool circleShow = false;
    float circleSize = 1.0f;
    qint32 circleDiameter = 362;
    qint32 circleRingWidth = 32;
    Rgb circleColor{0.0f, 0.0f, 0.0f};
    QList<LabelLine> labelLines;
    /// How many rows came from the first text.
    qint32 labelLineCount = 0;
    QList<LabelLine> setNumLines;
    qint32 labelWidth = 0;
    qint32 labelHeight = 0;
    qint32 setNumWidth = 0;
    qint32 setNumHeight = 0;
    qint32 labelBoundWidth = 0;
    float labelSize = 1.0f;
    Rgba labelColor{0.0f, 0.0f, 0.0f, 1.0f};
    Rgba labelBackColor{1.0f, 1.0f, 1.0f, 0.0f};
    /// The plain colour in which the overview draws the node.
    Rgba entityColor{0.349f, 0.722f, 0.271f, 1.0f};
};

} // namespace NELK
