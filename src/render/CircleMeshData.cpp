#include "render/CircleMeshData.h"

#include "render/RimPoints.h"

#include <QVector2D>

#include <algorithm>

namespace NELK
{

CircleMeshData::CircleMeshData(qint32 segmentCount)
{
    const qint32 segments = std::max(segmentCount, leastSegments);
    for (qint32 i = 0; i < segments; ++i) {
        const QVector2D a = rimPoint(i, segments);
        const QVector2D b = rimPoint(i + 1, segments);
        m_vertices.insert(m_vertices.end(), {0.0f, 0.0f, 0.0f, 0.0f,   //
                                             a.x(), a.y(), 1.0f, 0.0f, //
                                             b.x(), b.y(), 1.0f, 0.0f});
    }
}

} // namespace NELK
