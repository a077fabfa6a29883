#pragma once

#include "atlas/TextCell.h"

#include <QtGlobal>

/// The measures of one character in the text atlas, in pixels. As it stands here, that of a glyph that cannot be had.
struct SGlyphMetrics
{
    quint32 code = 0;
    /// Of the rendered bitmap.
    qint32 width = 0;
    qint32 rows = 0;
    /// From the pen to the left side of the bitmap.
    qint32 left = 0;
    /// From the baseline up to the top of the bitmap.
    qint32 top = 0;
    /// How far the pen moves on.
    qint32 advance = 0;
    /// Half of the cell's width that the character does not use.
    float trim = halfTextCell;
};
