#pragma once

#include "scene/Mat4.h"

#include <QtTest>

namespace NELK
{

/// Shows a matrix in test logs, column after column.
inline char* toString(const Mat4& matrix)
{
    QString text;
    for (int i = 0; i < 16; ++i)
        text += QStringLiteral("%1%2").arg(i % 4 == 0 ? " | " : " ").arg(static_cast<double>(matrix.data()[i]));
    return qstrdup(qPrintable(text));
}

} // namespace NELK
