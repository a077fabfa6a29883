#pragma once

#include <QtGlobal>

#include <vector>

namespace NELK
{

/// The triangles of a filled circle of diameter 1 around the origin, as vertices of x, y, para.x and para.y. The
/// first para is 0 in the middle and 1 on the rim.
class CircleMeshData
{
public:
    /// At least 10 segments.
    explicit CircleMeshData(qint32 segmentCount);

    const std::vector<float>& vertices() const { return m_vertices; }
    qint32 vertexCount() const { return static_cast<qint32>(m_vertices.size()) / 4; }

private:
    std::vector<float> m_vertices;
};

} // namespace NELK
