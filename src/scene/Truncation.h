#pragma once

#include <QtGlobal>

#include <limits>

namespace NELK
{

/// `value` cut toward zero: how every float of the scene becomes an integer.
///
/// What lies beyond the range of int becomes the nearest int, and NaN becomes 0, because the language leaves those
/// conversions undefined and hosts may place elements anywhere.
inline int truncated(float value)
{
    constexpr float beyondInt = 2147483648.0f;
    if (value >= beyondInt)
        return std::numeric_limits<int>::max();
    if (value <= -beyondInt)
        return std::numeric_limits<int>::min();
    return value == value ? static_cast<int>(value) : 0;
}

/// Half of a length in whole units, what is over cut off.
inline float wholeHalf(qint64 length)
{
    const qint64 half = length / 2;
    return static_cast<float>(half);
}

} // namespace NELK
