#pragma once

namespace NELK
{

/// `value`, or `floor` where it is not above that. NaN is not above anything, which std::max would not see to.
inline float atLeast(float value, float floor)
{
    return value > floor ? value : floor;
}

} // namespace NELK
