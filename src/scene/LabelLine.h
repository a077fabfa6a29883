#pragma once

#include "atlas/SImageCell.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace NELK
{

/// One row of text of a label, or one box of a set-number row. All measures are unscaled.
struct LabelLine
{
    /// One cell per UTF-16 code unit, in text order.
    QList<SImageCell> cells;
    /// From the anchor back to the centre of the first cell.
    qint32 startOffset = 0;
    /// The advances of all cells together.
    qint32 lineWidth = 0;
};

/// A row for `text` with a cell for each code unit, centred on its anchor. Characters that are new to the atlas get
/// their cell now.
LabelLine makeLabelLine(const QString& text);

/// The rows of a label's text: what stands between line feeds and is not empty.
QStringList labelRows(const QString& text);

} // namespace NELK
