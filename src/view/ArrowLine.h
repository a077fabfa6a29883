#pragma once

#include <QLineF>
#include <QPolygonF>

class QPainter;

namespace NELK
{

/// A line with an arrow head at either end, as it is drawn from one node to another.
class ArrowLine
{
public:
    /// 1 puts a head at the end, 2 at the start, 3 at both; any other number at neither.
    void setArrowMode(int mode) { m_arrowMode = mode; }
    /// Draws the line and its heads in black. A head stands on a point a little inside the end, so that the line runs
    /// on past it.
    void paint(QPainter& painter, const QLineF& line) const;

private:
    int m_arrowMode = 0;
};

} // namespace NELK
