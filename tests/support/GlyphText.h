#pragma once

#include "scene/LabelLine.h"
#include "support/LabelText.h"
#include "support/RecordText.h"

#include <QStringList>

namespace NELK
{

/// What the characters of a text have in common, as it is at first.
struct GlyphLook
{
    float size = 1.0f;
    Four color{0.0f, 0.0f, 0.0f, 1.0f};
    Four backColor{1.0f, 1.0f, 1.0f, 0.0f};
    int textCols = 60;
};

/// What the record of one character should say.
inline QString glyphRecord(const SImageCell& cell, int pen, int row, const GlyphLook& look)
{
    const auto advance = static_cast<float>(advanceOf(cell));
    const float freeAtEachSide = (76.0f - advance) * 0.5f;
    const float crop = 2.0f * freeAtEachSide / 76.0f / static_cast<float>(look.textCols);
    return placedRecord(static_cast<float>(pen) - look.size * freeAtEachSide, static_cast<float>(row),
                        advance * look.size + look.size * 0.5f, look.size * 76.0f,
                        {static_cast<float>(cell.texRowIdx), static_cast<float>(cell.texColIdx), crop, 0.0f},
                        look.color, look.backColor);
}

/// What the records of a row should say whose first character has its pen at `pen`.
inline QStringList rowRecords(const QList<SImageCell>& cells, int pen, int row, const GlyphLook& look)
{
    QStringList records;
    for (const SImageCell& cell : cells) {
        records += glyphRecord(cell, pen, row, look);
        pen = static_cast<int>(static_cast<float>(advanceOf(cell)) * look.size + static_cast<float>(pen));
    }
    return records;
}

/// What the text atlas has for the characters of a text.
inline QList<SImageCell> cellsOf(const QString& text)
{
    QList<SImageCell> cells;
    for (const QChar character : text)
        cells.append(cellOf(character));
    return cells;
}

/// The pen of the first character of a row that is centred on `anchor`.
inline int firstPen(const QString& text, float anchor, float size)
{
    const int offset = widthOf(text) / 2 - 38;
    return static_cast<int>(anchor - static_cast<float>(offset) * size);
}

} // namespace NELK
