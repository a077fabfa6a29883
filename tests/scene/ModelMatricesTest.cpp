#include "scene/ModelMatrices.h"

#include "support/MatrixText.h"
#include "support/RandomPlane.h"
#include "support/ShapeReference.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace NELK;

namespace
{

constexpr int largestInt = std::numeric_limits<int>::max();

/// A matrix by the two columns and the place that matter in the plane.
Mat4 planeMatrix(glm::vec2 x, glm::vec2 y, glm::vec2 place)
{
    return {
        glm::mat4(x.x, x.y, 0.0f, 0.0f, y.x, y.y, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, place.x, place.y, 0.0f, 1.0f)};
}

/// The first column's length: how far the unit quad is stretched.
double stretch(const Mat4& model)
{
    return length(mapped(model, {1.0, 0.0}) - mapped(model, {0.0, 0.0}));
}

/// Whether the matrix moves nothing out of the plane and has no perspective.
bool staysInThePlane(const Mat4& model)
{
    const float* m = model.data();
    const bool keepsDepth = std::abs(m[10] - 1.0f) < 1e-6f;
    return m[2] == 0.0f && m[3] == 0.0f && m[6] == 0.0f && m[7] == 0.0f && m[8] == 0.0f && m[9] == 0.0f && keepsDepth &&
           m[11] == 0.0f && m[14] == 0.0f && m[15] == 1.0f;
}

} // namespace

class ModelMatricesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stretchesTheUnitQuadBetweenTwoPoints();
    void lengthensByHalfTheWidthInWholeNumbers_data();
    void lengthensByHalfTheWidthInWholeNumbers();
    void growsEachEndByAQuarterOfTheWidth();
    void makesAnEmptyQuadOfCoincidingPoints();
    void laysLinesWhereTrigonometryDoes();
    void makesArrowsGrowWithTheWidth_data();
    void makesArrowsGrowWithTheWidth();
    void pointsArrowsAlongTheAngle();
    void turnsReversedArrowsByHalfACircle();
    void laysArrowsWhereTrigonometryDoes();
    void staysInThePlaneWithTheLargestWidth();
};

void ModelMatricesTest::stretchesTheUnitQuadBetweenTwoPoints()
{
    QCOMPARE(lineModel({10.0f, 20.0f}, {110.0f, 20.0f}, 8, false),
             planeMatrix({100.0f, 0.0f}, {0.0f, 8.0f}, {60.0f, 20.0f}));

    // Up and along: 300 by 400, so 500 long.
    const Mat4 sloped = lineModel({0.0f, 0.0f}, {300.0f, 400.0f}, 10, false);
    const Quad corners{{{-4.0, 3.0}, {296.0, 403.0}, {304.0, 397.0}, {4.0, -3.0}}};
    const QString complaint = quadComplaint("sloped line", sloped, corners, 1e-3);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
}

void ModelMatricesTest::lengthensByHalfTheWidthInWholeNumbers_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("lengthening");

    QTest::newRow("even") << 8 << 4.0;
    QTest::newRow("odd") << 9 << 4.0;
    QTest::newRow("next even") << 10 << 5.0;
    QTest::newRow("one") << 1 << 0.0;
    QTest::newRow("none") << 0 << 0.0;
    QTest::newRow("negative, toward zero") << -9 << -4.0;
}

void ModelMatricesTest::lengthensByHalfTheWidthInWholeNumbers()
{
    QFETCH(int, width);
    QFETCH(double, lengthening);

    const QVector2D start(-50.0f, 7.0f);
    const QVector2D end(50.0f, 7.0f);
    QCOMPARE(stretch(lineModel(start, end, width, false)), 100.0);
    QCOMPARE(stretch(lineModel(start, end, width, true)), 100.0 + lengthening);
    // Only the length grows.
    QCOMPARE(double{lineModel(start, end, width, true).data()[5]}, double(width));
}

void ModelMatricesTest::growsEachEndByAQuarterOfTheWidth()
{
    const Mat4 model = lineModel({0.0f, 0.0f}, {100.0f, 0.0f}, 12, true);
    QCOMPARE(mapped(model, {-0.5, 0.0}).x, -3.0);
    QCOMPARE(mapped(model, {0.5, 0.0}).x, 103.0);
}

void ModelMatricesTest::makesAnEmptyQuadOfCoincidingPoints()
{
    const QVector2D place(-3.5f, 12.25f);
    QCOMPARE(lineModel(place, place, 8, false), planeMatrix({0.0f, 0.0f}, {0.0f, 8.0f}, {-3.5f, 12.25f}));
    QCOMPARE(lineModel(place, place, 8, true), planeMatrix({4.0f, 0.0f}, {0.0f, 8.0f}, {-3.5f, 12.25f}));
}

void ModelMatricesTest::laysLinesWhereTrigonometryDoes()
{
    RandomPlane random(31);
    for (int i = 0; i < 5000; ++i) {
        const double reach = std::pow(10.0, random.number(0.0, 6.0));
        const QVector2D start = random.point(reach);
        const QVector2D end = random.point(reach);
        const int width = random.whole(1, 400);
        const bool lengthen = random.coin();

        const Mat4 model = lineModel(start, end, width, lengthen);
        const Quad expected = quadReference(start, end, width, lengthen ? width / 2 : 0);
        // The angle may be some float steps off, which the length of the line carries out to its ends.
        const double bound = 8.0 * floatStep({start, end, PlanePoint(width, width)});
        const QString complaint = quadComplaint("line", model, expected, bound);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
        QVERIFY(staysInThePlane(model));
    }
}

void ModelMatricesTest::makesArrowsGrowWithTheWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("size");

    QTest::newRow("narrowest edge") << 8 << 98.0;
    QTest::newRow("odd width") << 9 << 99.25;
    QTest::newRow("none") << 0 << 88.0;
    QTest::newRow("wide") << 1000 << 1338.0;
    // 20971609.25 lies between two floats; a width already rounded to float would give 20971608.
    QTest::newRow("rounded once") << 16777217 << 20971610.0;
    QTest::newRow("largest width") << largestInt << 2684354560.0;
}

void ModelMatricesTest::makesArrowsGrowWithTheWidth()
{
    QFETCH(int, width);
    QFETCH(double, size);
    const auto factor = static_cast<float>(size);

    QCOMPARE(arrowModel({5.0f, -6.0f}, 0.0f, width, false), planeMatrix({factor, 0.0f}, {0.0f, factor}, {5.0f, -6.0f}));
}

void ModelMatricesTest::pointsArrowsAlongTheAngle()
{
    const Mat4 upward = arrowModel({10.0f, 20.0f}, 1.5707964f, 8, false);
    const Triangle corners{{{-29.2, -29.0}, {49.2, -29.0}, {10.0, 69.0}}};
    const QString complaint = arrowComplaint("upward arrow", upward, corners, 1e-4);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
}

void ModelMatricesTest::turnsReversedArrowsByHalfACircle()
{
    const Mat4 leftward = arrowModel({10.0f, 20.0f}, 0.0f, 8, true);
    const Triangle corners{{{59.0, -19.2}, {59.0, 59.2}, {-39.0, 20.0}}};
    const QString complaint = arrowComplaint("leftward arrow", leftward, corners, 1e-4);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));

    QCOMPARE(leftward, arrowModel({10.0f, 20.0f}, 3.1415927f, 8, false));
}

void ModelMatricesTest::laysArrowsWhereTrigonometryDoes()
{
    constexpr double pi = 3.14159265358979;
    RandomPlane random(32);
    for (int i = 0; i < 5000; ++i) {
        const QVector2D position = random.point(std::pow(10.0, random.number(0.0, 6.0)));
        const float angle = random.floatNumber(-pi, pi);
        const int width = random.whole(1, 1000);
        const bool reverse = random.coin();

        const Mat4 model = arrowModel(position, angle, width, reverse);
        const Triangle expected = arrowReference(position, double{angle} + (reverse ? pi : 0.0), width);
        const double bound = 8.0 * floatStep({position, PlanePoint(width * 1.25 + 88.0, 0.0)});
        const QString complaint = arrowComplaint("arrow", model, expected, bound);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
        QVERIFY(staysInThePlane(model));
    }
}

void ModelMatricesTest::staysInThePlaneWithTheLargestWidth()
{
    const Mat4 line = lineModel({0.0f, 0.0f}, {100.0f, 0.0f}, largestInt, true);
    QCOMPARE(line, planeMatrix({1073741924.0f, 0.0f}, {0.0f, 2147483648.0f}, {50.0f, 0.0f}));
    QVERIFY(staysInThePlane(arrowModel({0.0f, 0.0f}, 1.0f, largestInt, true)));
}

QTEST_APPLESS_MAIN(ModelMatricesTest)

#include "ModelMatricesTest.moc"
