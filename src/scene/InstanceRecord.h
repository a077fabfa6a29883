#pragma once

#include "scene/Mat4.h"

#include <array>

namespace NELK
{

/// One thing to draw, as the vertex shaders read it: 28 floats without a gap.
struct InstanceRecord
{
    Mat4 model;
    std::array<float, 4> para1{};
    std::array<float, 4> para2{};
    std::array<float, 4> para3{};
};

static_assert(sizeof(InstanceRecord) == 28 * sizeof(float), "the shaders read 28 floats an instance");

} // namespace NELK
