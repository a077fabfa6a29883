#pragma once

#include "atlas/SImageCell.h"

#include <QMap>
#include <QMetaType>

/// The state of an atlas's grid of cells. The grid grows in shells around the top left corner: a shell is one further
/// column at the right, then one further row at the bottom, so that no cell ever changes its row or column.
struct SImageConfig
{
    qint32 texRowNum = 0;
    /// Always equal to `texRowNum`.
    qint32 texColNum = 0;
    /// How many cells of the newest shell are taken.
    qint32 shellIndex = 0;
    /// All cells by id.
    QMap<qint32, SImageCell> cells;
};

Q_DECLARE_METATYPE(SImageConfig)
