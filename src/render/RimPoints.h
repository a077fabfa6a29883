#pragma once

#include <QVector2D>

#include <cmath>

namespace NELK
{

/// With fewer, nothing looks round.
inline constexpr qint32 leastSegments = 10;

/// The point number `index` of `count` on the rim of a circle of diameter 1, counterclockwise from the right.
inline QVector2D rimPoint(qint32 index, qint32 count)
{
    constexpr float fullTurn = 6.2831855f;
    const float angle = static_cast<float>(index) * fullTurn / static_cast<float>(count);
    return {std::cos(angle) * 0.5f, std::sin(angle) * 0.5f};
}

} // namespace NELK
