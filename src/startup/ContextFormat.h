#pragma once

#include <QSurfaceFormat>

#include <functional>

namespace NELK
{

/// Whether a context asked for with `format` has the functions of OpenGL 3.3 core.
bool hasCoreFunctions(const QSurfaceFormat& format);

/// What a view asks for when the process's default format is `defaultFormat`: that format with ten samples or, where
/// `servesViews` denies that it gives a context that will do, a core profile of version 3.3 beside.
QSurfaceFormat contextFormat(const QSurfaceFormat& defaultFormat,
                             const std::function<bool(const QSurfaceFormat&)>& servesViews);

/// What a view asks for in this process. Needs a QGuiApplication.
QSurfaceFormat contextFormat();

} // namespace NELK
