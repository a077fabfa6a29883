#pragma once

#include <QMetaType>

namespace NELK
{

/// What the mouse does in a view. GraphView::setOperateMode() has numbers of its own.
enum E_OP_MODE
{
    /// Clicks select, a drag moves the selected nodes or spans a frame that selects.
    OP_NORMAL = 0,
    /// A drag moves the picture.
    OP_HAND = 1,
    /// A drag draws a line.
    OP_LINE = 2,
    /// A drag spans a frame that is then shown as large as fits; the mode falls back to OP_NORMAL.
    OP_ZOOM_FRAME = 3
};

} // namespace NELK

Q_DECLARE_METATYPE(NELK::E_OP_MODE)
