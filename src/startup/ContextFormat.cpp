#include "startup/ContextFormat.h"

#include <QOpenGLContext>
#include <QPair>

namespace NELK
{

namespace
{

constexpr QPair<int, int> leastVersion(3, 3);

/// Qt asks for a forward-compatible context from version 3.0 on unless it is told that deprecated functions are needed.
/// In a forward-compatible one wide lines are an error, and selection frames are wide lines.
QSurfaceFormat withWideLines(QSurfaceFormat format)
{
    if (format.majorVersion() >= 3)
        format.setOption(QSurfaceFormat::DeprecatedFunctions);
    return format;
}

} // namespace

bool hasCoreFunctions(const QSurfaceFormat& format)
{
    QOpenGLContext context;
    context.setFormat(format);
    return context.create() && !context.isOpenGLES() && context.format().version() >= leastVersion;
}

QSurfaceFormat contextFormat(const QSurfaceFormat& defaultFormat,
                             const std::function<bool(const QSurfaceFormat&)>& servesViews)
{
    QSurfaceFormat format = withWideLines(defaultFormat);
    format.setSamples(10);
    if (servesViews(format))
        return format;

    // Some drivers offer later versions in a core profile alone.
    QSurfaceFormat coreFormat = format;
    coreFormat.setRenderableType(QSurfaceFormat::OpenGL);
    coreFormat.setVersion(leastVersion.first, leastVersion.second);
    coreFormat.setProfile(QSurfaceFormat::CoreProfile);
    coreFormat = withWideLines(coreFormat);
    return servesViews(coreFormat) ? coreFormat : format;
}

QSurfaceFormat contextFormat()
{
    return contextFormat(QSurfaceFormat::defaultFormat(), hasCoreFunctions);
}

} // namespace NELK
