#pragma once

#include <QtGlobal>

#include <vector>

namespace NELK
{

/// The triangles of a ring of outer diameter 1 around the origin, as vertices of x, y, para.x and para.y.
///
/// All vertices are on the outer rim. Those of the inner rim carry the way to the centre in their para, the others
/// zero: the vertex shader moves the former inward by a part of it, so that one mesh serves rings of any thickness.
class RingMeshData
{
public:
    /// At least 10 segments.
    explicit RingMeshData(qint32 segmentCount);

    const std::vector<float>& vertices() const { return m_vertices; }
    qint32 vertexCount() const { return static_cast<qint32>(m_vertices.size()) / 4; }

private:
    std::vector<float> m_vertices;
};

} // namespace NELK
