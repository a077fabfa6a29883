#pragma once

#include "atlas/SGlyphMetrics.h"
#include "scene/LabelLine.h"

#include <QList>

#include <map>

namespace NELK
{

/// The measures of a character with that advance; the same for the whole run of a test.
inline SGlyphMetrics& madeMetrics(int advance)
{
    static std::map<int, SGlyphMetrics> madeBefore;
    SGlyphMetrics& metrics = madeBefore[advance];
    metrics.advance = advance;
    metrics.trim = 38.0f - static_cast<float>(advance) / 2.0f;
    return metrics;
}

/// A row for characters of these advances, without an atlas. Each cell has a place of its own.
inline LabelLine madeLine(const QList<int>& advances)
{
    LabelLine line;
    for (const int advance : advances) {
        SImageCell cell;
        cell.texRowIdx = 5 + line.cells.size();
        cell.texColIdx = 20 + 2 * line.cells.size();
        cell.payload = &madeMetrics(advance);
        line.cells.append(cell);
        line.lineWidth += advance;
    }
    line.startOffset = line.lineWidth / 2 - 38;
    return line;
}

} // namespace NELK
