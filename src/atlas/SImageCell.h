#pragma once

#include <QtGlobal>

/// One cell of an atlas: a plain value, copied freely. With all fields zero it stands for a cell that is not there.
struct SImageCell
{
    /// The key of the cell: an image id in the entity atlas, a UTF-16 code unit in the text atlas.
    qint32 id = 0;
    /// Column, 0 at the left edge of the atlas.
    qint32 texColIdx = 0;
    /// Row, 0 at the top edge of the atlas.
    qint32 texRowIdx = 0;
    /// What the atlas itself knows of the cell, shared by all copies of it.
    void* payload = nullptr;
    /// The picture of the cell is on the atlas's canvas.
    bool painted = false;
};

Q_DECLARE_TYPEINFO(SImageCell, Q_MOVABLE_TYPE);
