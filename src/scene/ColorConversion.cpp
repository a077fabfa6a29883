#include "scene/ColorConversion.h"

#include <QColor>

namespace NELK
{

namespace
{

float unitChannel(int channel)
{
    return static_cast<float>(channel) / 255.0f;
}

} // namespace

Rgb colorToRgb(const QColor& color)
{
    return {unitChannel(color.red()), unitChannel(color.green()), unitChannel(color.blue())};
}

Rgba colorToRgba(const QColor& color)
{
    return {unitChannel(color.red()), unitChannel(color.green()), unitChannel(color.blue()),
            unitChannel(color.alpha())};
}

} // namespace NELK
