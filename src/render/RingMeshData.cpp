#include "render/RingMeshData.h"

#include "render/RimPoints.h"

#include <QVector2D>

#include <algorithm>

namespace NELK
{

RingMeshData::RingMeshData(qint32 segmentCount)
{
    const qint32 segments = std::max(segmentCount, leastSegments);
    for (qint32 i = 0; i < segments; ++i) {
        const QVector2D a = rimPoint(i, segments);
        const QVector2D b = rimPoint(i + 1, segments);
        m_vertices.insert(m_vertices.end(), {a.x(), a.y(), -a.x(), -a.y(), //
                                             a.x(), a.y(), 0.0f,   0.0f,   //
                                             b.x(), b.y(), 0.0f,   0.0f,   //
                                             b.x(), b.y(), -b.x(), -b.y(), //
                                             a.x(), a.y(), -a.x(), -a.y(), //
                                             b.x(), b.y(), 0.0f,   0.0f});
    }
}

} // namespace NELK
