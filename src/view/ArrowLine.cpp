#include "view/ArrowLine.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace NELK
{

namespace
{

/// How far inside the ends of the line the heads stand.
constexpr double headInset = 20.0;
constexpr double headSize = 12.0;
/// Between the line and a side of the head, in radians.
constexpr double headAngle = 1.23;
constexpr double pi = 3.141592653589793;

QPointF pointInside(QLineF line)
{
    line.setLength(headInset);
    return line.pointAt(1.0);
}

/// The angle in which a head is turned, from the direction between the two tips. Rounding may carry the cosine beyond
/// what acos takes.
double directionOf(const QLineF& tips)
{
    const double angle = std::acos(std::clamp(tips.dx() / tips.length(), -1.0, 1.0));
    return tips.dy() >= 0.0 ? 2.0 * pi - angle : angle;
}

/// Sine gives x and cosine y: angles run from the downward axis.
QPointF offset(double angle)
{
    return {headSize * std::sin(angle), headSize * std::cos(angle)};
}

QPolygonF headAt(QPointF tip, QPointF a, QPointF b)
{
    const QPointF middle = (tip + a + tip + b) / 2.0;
    return QPolygonF({middle, middle + a, middle + b});
}

} // namespace

void ArrowLine::paint(QPainter& painter, const QLineF& line) const
{
    painter.setPen(Qt::black);
    if (line.length() == 0.0)
        return;
    painter.drawLine(line);

    const QLineF tips(pointInside(line), pointInside(QLineF(line.p2(), line.p1())));
    if (tips.length() == 0.0)
        return;
    const double direction = directionOf(tips);
    painter.setBrush(Qt::black);
    if (m_arrowMode == 1 || m_arrowMode == 3)
        painter.drawPolygon(headAt(tips.p2(), offset(direction - headAngle), offset(direction - pi + headAngle)));
    if (m_arrowMode == 2 || m_arrowMode == 3)
        painter.drawPolygon(headAt(tips.p1(), offset(direction + headAngle), offset(direction + pi - headAngle)));
}

} // namespace NELK
