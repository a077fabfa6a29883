#pragma once

#include <array>

class QColor;

namespace NELK
{

/// Red, green and blue, each from 0 to 1.
using Rgb = std::array<float, 3>;
/// Red, green, blue and alpha, each from 0 to 1.
using Rgba = std::array<float, 4>;

Rgb colorToRgb(const QColor& color);
Rgba colorToRgba(const QColor& color);

} // namespace NELK
