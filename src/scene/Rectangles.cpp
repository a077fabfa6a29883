#include "scene/Rectangles.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace NELK
{

bool insideFrame(QVector2D leftTop, QVector2D rightBottom, QVector2D point)
{
    return point.x() > leftTop.x() && rightBottom.x() > point.x() && point.y() > rightBottom.y() &&
           leftTop.y() > point.y();
}

bool insideBox(QVector2D centre, float width, float height, QVector2D point)
{
    return width * 0.5f > std::abs(point.x() - centre.x()) && height * 0.5f > std::abs(point.y() - centre.y());
}

QRect rectOfSize(int left, int top, qint64 width, qint64 height)
{
    const auto far = [](int near, qint64 length) {
        const qint64 coordinate = near + length - 1;
        return static_cast<int>(
            std::clamp<qint64>(coordinate, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    };
    QRect rect;
    rect.setCoords(left, top, far(left, width), far(top, height));
    return rect;
}

QRect rectFromCorners(QPoint one, QPoint other)
{
    QRect rect;
    rect.setLeft(std::min(one.x(), other.x()));
    rect.setRight(std::max(one.x(), other.x()));
    rect.setTop(std::min(one.y(), other.y()));
    rect.setBottom(std::max(one.y(), other.y()));
    return rect;
}

} // namespace NELK
