#pragma once

#include "scene/Mat4.h"

namespace NELK
{

/// From an area of that size around the origin to OpenGL's clip space, y up in both. Depth is not used.
inline Mat4 orthographicProjection(float width, float height)
{
    Mat4 projection;
    projection.columns[0][0] = 2.0f / width;
    projection.columns[1][1] = 2.0f / height;
    projection.columns[2][2] = -1.0f;
    return projection;
}

} // namespace NELK
