#pragma once

#include <QString>
#include <QStringList>

#include <cmath>
#include <cstddef>
#include <vector>

namespace NELK
{

/// A point of the scene plane in the precision of a mesh.
struct MeshPoint
{
    MeshPoint operator-() const { return {-x, -y}; }

    float x = 0.0f;
    float y = 0.0f;
};

/// Where the arc of a segment ends that many segments after the right end of a circle of diameter 1.
inline MeshPoint rimReference(int segment, int segmentsInAll)
{
    const float angle = static_cast<float>(segment) * 6.2831855f / static_cast<float>(segmentsInAll);
    return {0.5f * std::cos(angle), 0.5f * std::sin(angle)};
}

/// For comparisons: a vertex in all its digits. Zero has no sign.
inline QString vertexText(MeshPoint position, MeshPoint para)
{
    QString text;
    for (const float value : {position.x, position.y, para.x, para.y})
        text += QStringLiteral("%1 ").arg(static_cast<double>(value == 0.0f ? 0.0f : value), 0, 'g', 9);
    return text;
}

/// The vertices of a mesh in their order, four floats each. What is left over is told too.
inline QStringList vertexTexts(const std::vector<float>& floats)
{
    QStringList texts;
    std::size_t next = 0;
    for (; next + 4 <= floats.size(); next += 4)
        texts.append(vertexText({floats[next], floats[next + 1]}, {floats[next + 2], floats[next + 3]}));
    if (next != floats.size())
        texts.append(QStringLiteral("a part of a vertex"));
    return texts;
}

} // namespace NELK
