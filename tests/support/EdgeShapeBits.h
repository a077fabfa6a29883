#pragma once

#include "scene/EdgeData.h"

#include <QByteArray>

namespace NELK
{

/// Every point and matrix of an edge, bit for bit: equal bytes are the same picture.
inline QByteArray shapeBits(const EdgeData& edge)
{
    QByteArray bits;
    const auto append = [&bits](const auto& value) {
        bits.append(reinterpret_cast<const char*>(&value), static_cast<int>(sizeof value));
    };
    const auto appendPoint = [&append](QVector2D point) {
        append(point.x());
        append(point.y());
    };
    for (const QVector2D point : {edge.startPos, edge.endPos, edge.centerPos, edge.curveStartPos, edge.curveEndPos})
        appendPoint(point);
    for (const Mat4* matrix : {&edge.lineMatrix, &edge.segmentMatrix0, &edge.segmentMatrix1, &edge.segmentMatrix2,
                               &edge.startArrowMatrix, &edge.endArrowMatrix})
        append(*matrix);
    append(edge.ringDiameter);
    return bits;
}

} // namespace NELK
