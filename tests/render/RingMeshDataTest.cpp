#include "render/RingMeshData.h"

#include "support/MeshVertices.h"

#include <QtTest>

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

using namespace NELK;

class RingMeshDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTwoTrianglesForEachSegment_data();
    void hasTwoTrianglesForEachSegment();
    void innerVerticesPointToTheCentre();
};

namespace
{

// The para of a vertex that stays on the outer rim.
constexpr MeshPoint stay{0.0f, 0.0f};

} // namespace

void RingMeshDataTest::hasTwoTrianglesForEachSegment_data()
{
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("segments");
    QTest::addColumn<int>("vertices");
    QTest::newRow("as views do") << 80 << 80 << 480;
    QTest::newRow("an odd number") << 77 << 77 << 462;
    QTest::newRow("more than the least") << 11 << 11 << 66;
    QTest::newRow("the least") << 10 << 10 << 60;
    QTest::newRow("one too few") << 9 << 10 << 60;
    QTest::newRow("none") << 0 << 10 << 60;
    QTest::newRow("below zero") << std::numeric_limits<int>::min() << 10 << 60;
}

void RingMeshDataTest::hasTwoTrianglesForEachSegment()
{
    QFETCH(int, asked);
    QFETCH(int, segments);
    QStringList expected;
    for (int i = 0; i < segments; ++i) {
        const MeshPoint from = rimReference(i, segments);
        const MeshPoint to = rimReference(i + 1, segments);
        expected += {vertexText(from, -from), vertexText(from, stay), vertexText(to, stay)};
        expected += {vertexText(to, -to), vertexText(from, -from), vertexText(to, stay)};
    }
    const RingMeshData mesh(asked);
    QTEST(mesh.vertexCount(), "vertices");
    QCOMPARE(vertexTexts(mesh.vertices()), expected);
}

void RingMeshDataTest::innerVerticesPointToTheCentre()
{
    const RingMeshData mesh(80);
    const std::vector<float>& floats = mesh.vertices();
    int outer = 0;
    for (std::size_t i = 0; i + 3 < floats.size(); i += 4) {
        const double x = double{floats[i]};
        const double y = double{floats[i + 1]};
        QVERIFY(std::abs(std::hypot(x, y) - 0.5) < 1e-6);
        const double leftX = x + double{floats[i + 2]};
        const double leftY = y + double{floats[i + 3]};
        if (std::hypot(leftX, leftY) > 0.25)
            ++outer;
        else
            QVERIFY(leftX == 0.0 && leftY == 0.0);
    }
    QCOMPARE(outer, 240);
}

QTEST_GUILESS_MAIN(RingMeshDataTest)

#include "RingMeshDataTest.moc"
