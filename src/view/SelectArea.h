#pragma once

#include "view/ArrowLine.h"

#include <NELK/OperateMode.h>

#include <QLabel>
#include <QPoint>

namespace NELK
{

/// Shows the frame that is being spanned over a view: a rubber band, a dotted rectangle or a line with arrow heads.
///
/// It only shows. It covers the rectangle between the frame's two points, and the mouse goes through it.
class SelectArea : public QLabel
{
    Q_OBJECT

public:
    explicit SelectArea(QWidget* parent);

    void setMode(E_OP_MODE mode);
    E_OP_MODE mode() const { return m_mode; }
    /// The point where the mouse was pressed, in the parent.
    void setP1(const QPoint& point) { m_p1 = point; }
    /// The point where the mouse is, in the parent.
    void setP2(const QPoint& point) { m_p2 = point; }
    /// Which ends of a line have a head, as ArrowLine::setArrowMode.
    void setArrowMode(int mode) { m_arrowLine.setArrowMode(mode); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintZoomFrame();
    void paintLine();

    E_OP_MODE m_mode = OP_NORMAL;
    QPoint m_p1;
    QPoint m_p2;
    ArrowLine m_arrowLine;
};

} // namespace NELK
