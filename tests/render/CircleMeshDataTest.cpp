#include "render/CircleMeshData.h"

#include "support/MeshVertices.h"

#include <QtTest>

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

using namespace NELK;

class CircleMeshDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasATriangleForEachSegment_data();
    void hasATriangleForEachSegment();
    void leavesNoGapAndHasTheAreaOfItsPolygon();
};

namespace
{

constexpr MeshPoint middle{0.0f, 0.0f};
// What the para of a vertex tells.
constexpr MeshPoint inTheMiddle{0.0f, 0.0f};
constexpr MeshPoint onTheRim{1.0f, 0.0f};

} // namespace

void CircleMeshDataTest::hasATriangleForEachSegment_data()
{
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("segments");
    QTest::addColumn<int>("vertices");
    QTest::newRow("as views do") << 40 << 40 << 120;
    QTest::newRow("an odd number") << 77 << 77 << 231;
    QTest::newRow("more than the least") << 11 << 11 << 33;
    QTest::newRow("the least") << 10 << 10 << 30;
    QTest::newRow("one too few") << 9 << 10 << 30;
    QTest::newRow("none") << 0 << 10 << 30;
    QTest::newRow("below zero") << std::numeric_limits<int>::min() << 10 << 30;
}

void CircleMeshDataTest::hasATriangleForEachSegment()
{
    QFETCH(int, asked);
    QFETCH(int, segments);
    QStringList expected;
    for (int i = 0; i < segments; ++i) {
        expected += vertexText(middle, inTheMiddle);
        expected += vertexText(rimReference(i, segments), onTheRim);
        expected += vertexText(rimReference(i + 1, segments), onTheRim);
    }
    const CircleMeshData mesh(asked);
    QTEST(mesh.vertexCount(), "vertices");
    QCOMPARE(vertexTexts(mesh.vertices()), expected);
}

void CircleMeshDataTest::leavesNoGapAndHasTheAreaOfItsPolygon()
{
    const CircleMeshData mesh(40);
    const std::vector<float>& floats = mesh.vertices();
    constexpr std::size_t floatsOfATriangle = 12;
    double doubledArea = 0.0;
    for (std::size_t i = 0; i < floats.size(); i += floatsOfATriangle) {
        const double doubled =
            double{floats[i + 4]} * double{floats[i + 9]} - double{floats[i + 5]} * double{floats[i + 8]};
        QVERIFY(doubled > 0.0); // counterclockwise
        doubledArea += doubled;
    }
    // Of a polygon of 40 sides in a circle of diameter 1: 40 sin(9 degrees) / 8.
    QVERIFY(std::abs(doubledArea / 2.0 - 0.7821723252) < 1e-6);
}

QTEST_GUILESS_MAIN(CircleMeshDataTest)

#include "CircleMeshDataTest.moc"
