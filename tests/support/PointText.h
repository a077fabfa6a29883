#pragma once

#include <QVector2D>
#include <QtTest>

// The text that test logs have for a QVector2D is rounded. Tests of geometry want to see every digit of a float.

namespace QTest
{

template <>
inline bool qCompare(const QVector2D& actual, const QVector2D& expected, const char* actualText,
                     const char* expectedText, const char* file, int line)
{
    const bool equal = actual.x() == expected.x() && actual.y() == expected.y();
    const auto text = [](const QVector2D& point) {
        return qstrdup(
            qPrintable(QStringLiteral("(%1, %2)").arg(double(point.x()), 0, 'g', 9).arg(double(point.y()), 0, 'g', 9)));
    };
    return compare_helper(equal, "Points are not the same", text(actual), text(expected), actualText, expectedText,
                          file, line);
}

} // namespace QTest
