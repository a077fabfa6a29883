// buildLabels, the builder of texts: by far the most records come from here, one for each character.

#include "atlas/SGlyphMetrics.h"
#include "atlas/TextCell.h"
#include "render/ElementMatrix.h"
#include "render/InstanceBuilders.h"
#include "scene/Scene.h"
#include "scene/Truncation.h"

#include <utility>

namespace NELK
{

namespace
{

/// What the glyphs of one label have in common.
struct GlyphStyle
{
    float size;
    const Rgba& color;
    const Rgba& backColor;
};

/// The height of a row of text in scene units.
float rowHeight(float labelSize)
{
    return labelSize * static_cast<float>(textCellEdge);
}

/// Writes rows of glyphs into a list, which can be changed between rows.
///
/// Pen and row stand at whole scene units, whatever the size of the text: what a character's advance has over is cut
/// off before the next one.
class GlyphWriter
{
public:
    explicit GlyphWriter(qint32 textCols) : m_textCols(static_cast<float>(textCols)) {}

    /// A row whose middle is at `rowY`, around the anchor `anchorX`.
    void write(const LabelLine& line, float anchorX, float rowY, const GlyphStyle& style, InstanceList& glyphs) const
    {
        float pen = wholePart(anchorX - static_cast<float>(line.startOffset) * style.size);
        for (const SImageCell& cell : line.cells) {
            const auto& metrics = *static_cast<const SGlyphMetrics*>(cell.payload);
            const float advance = static_cast<float>(metrics.advance) * style.size;
            glyphs.add({elementMatrix(pen - style.size * metrics.trim, rowY, advance + style.size * 0.5f,
                                      rowHeight(style.size)),
                        {static_cast<float>(cell.texRowIdx), static_cast<float>(cell.texColIdx),
                         horizontalCrop(metrics.trim), 0.0f},
                        style.color,
                        style.backColor});
            pen = wholePart(advance + pen);
        }
    }

private:
    static float wholePart(float value) { return static_cast<float>(truncated(value)); }

    /// The part of the atlas's width that a glyph leaves free in its cell.
    float horizontalCrop(float trim) const { return (trim + trim) / static_cast<float>(textCellEdge) / m_textCols; }

    float m_textCols;
};

/// The height at which a row stands whose middle is `down` below the node's centre, moved below the node's body.
qint64 rowBelowBody(const NodeData& node, float down)
{
    const qint32 body = node.circleShow ? node.circleDiameter : node.height;
    return qint64{truncated(node.y - down)} - body / 2;
}

void buildNodeLabels(Scene& scene, const GlyphWriter& writer)
{
    for (const NodeData* node : std::as_const(scene.labelNodes)) {
        if (!node->show)
            continue;
        InstanceList& glyphs = node->select ? scene.selTextItems : scene.textItems;
        const GlyphStyle style{node->labelSize, node->labelColor, node->labelBackColor};
        float row = 0.5f;
        for (const LabelLine& line : node->labelLines) {
            const qint64 rowY = rowBelowBody(*node, row * rowHeight(style.size));
            writer.write(line, node->x, static_cast<float>(rowY), style, glyphs);
            row += 1.0f;
        }
    }
}

void buildEdgeLabels(Scene& scene, const GlyphWriter& writer)
{
    for (const EdgeData* edge : std::as_const(scene.labelEdges)) {
        if (!edge->show)
            continue;
        const GlyphStyle style{edge->labelSize, edge->labelColor, edge->labelBackColor};
        // In rows from the middle of the block, up.
        float row = static_cast<float>(edge->labelLines.size() - 1) * 0.5f;
        for (const LabelLine& line : edge->labelLines) {
            const int rowY = truncated(row * rowHeight(style.size) + edge->centerPos.y());
            writer.write(line, edge->centerPos.x(), static_cast<float>(rowY), style, scene.edgeTextItems);
            row -= 1.0f;
        }
    }
}

void buildSetNumbers(Scene& scene, const GlyphWriter& writer)
{
    for (const NodeData* node : std::as_const(scene.setNumNodes)) {
        if (!node->show)
            continue;
        InstanceList& glyphs = node->select ? scene.selTextItems : scene.textItems;
        const GlyphStyle style{node->labelSize, scene.setNumColor, scene.setNumBackColor};
        const float height = rowHeight(style.size);
        auto rowY = static_cast<float>(rowBelowBody(*node, height * 0.5f));
        if (scene.nodeTextShow)
            rowY = static_cast<float>(truncated(rowY - static_cast<float>(node->labelLineCount) * height));
        for (const LabelLine& box : node->setNumLines)
            writer.write(box, node->x, rowY, style, glyphs);
    }
}

} // namespace

void buildLabels(Scene& scene, qint32 textCols)
{
    InstanceList* const lists[] = {&scene.textItems, &scene.selTextItems, &scene.edgeTextItems};
    for (InstanceList* list : lists)
        list->restart();

    const GlyphWriter writer(textCols);
    if (scene.nodeTextShow)
        buildNodeLabels(scene, writer);
    if (scene.edgeTextShow)
        buildEdgeLabels(scene, writer);
    buildSetNumbers(scene, writer);

    for (InstanceList* list : lists)
        list->complete();
}

} // namespace NELK
