#pragma once

#include "scene/Mat4.h"

namespace NELK
{

/// A mesh of size 1 placed at (x, y), stretched to width and height.
///
/// Written out rather than multiplied: rebuilds make them by the million.
inline Mat4 elementMatrix(float x, float y, float width, float height)
{
    return {{glm::vec4(width, 0.0f, 0.0f, 0.0f), glm::vec4(0.0f, height, 0.0f, 0.0f), glm::vec4(0.0f, 0.0f, 1.0f, 0.0f),
             glm::vec4(x, y, 0.0f, 1.0f)}};
}

} // namespace NELK
