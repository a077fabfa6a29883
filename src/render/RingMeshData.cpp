#include "render/RingMeshData.h"

#include "render/RimPoints.h"

#include <QVector2D>

#include <algorithm>

namespace NELK
{

RingMeshData::RingMeshData(qint32 segmentCount) : m_segments(std::max(segmentCount, leastSegments))
{
    for (qint32 i = 0; i < m_segments; ++i) {
        const QVector2D a = rimPoint(i, m_segments);
        const QVector2D b = rimPoint(i + 1, m_segments);
        m_vertices.insert(m_vertices.end(), {a.x(), a.y(), -a.x(), -a.y(), //
                                             a.x(), a.y(), 0.0f,   0.0f,   //
                                             b.x(), b.y(), 0.0f,   0.0f,   //
                                             b.x(), b.y(), -b.x(), -b.y(), //
                                             a.x(), a.y(), -a.x(), -a.y(), //
                                             b.x(), b.y(), 0.0f,   0.0f});
        m_vertexCount += 6;
    }
}

} // namespace NELK
