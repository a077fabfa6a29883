#include "scene/ModelMatrices.h"

#include "scene/Truncation.h"

#include <cmath>

namespace NELK
{

namespace
{

/// The product of a translation, a rotation about z and a scaling, written out: edges are shaped by the thousand with
/// each step of a drag, and in the plane the general products would spend most of their time on zeros.
Mat4 placed(QVector2D position, float angle, float scaleX, float scaleY)
{
    const float cosine = std::cos(angle);
    const float sine = std::sin(angle);
    return {{glm::vec4(cosine * scaleX, sine * scaleX, 0.0f, 0.0f),
             glm::vec4(-sine * scaleY, cosine * scaleY, 0.0f, 0.0f), glm::vec4(0.0f, 0.0f, 1.0f, 0.0f),
             glm::vec4(position.x(), position.y(), 0.0f, 1.0f)}};
}

} // namespace

Mat4 lineModel(QVector2D start, QVector2D end, int width, bool lengthen)
{
    const QVector2D way = end - start;
    const float angle = std::atan2(way.y(), way.x());
    float length = std::sqrt(way.x() * way.x() + way.y() * way.y());
    if (lengthen)
        length += wholeHalf(width);
    return placed((start + end) * 0.5f, angle, length, static_cast<float>(width));
}

Mat4 arrowModel(QVector2D position, float angle, int width, bool reverse)
{
    constexpr float halfTurn = 3.1415927f;
    const auto size = static_cast<float>(static_cast<double>(width) * 1.25 + 88.0);
    return placed(position, reverse ? angle + halfTurn : angle, size, size);
}

} // namespace NELK
