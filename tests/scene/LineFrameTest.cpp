#include "scene/LineFrame.h"

#include "support/PointText.h"
#include "support/RandomPlane.h"
#include "support/ShapeReference.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace NELK;

namespace
{

constexpr float radius = 128.0f;

/// Below this rise of a line within its radius, its two side points are laid out as mirror images. Of a line that is
/// not quite level they are not, and one of them comes to lie off by the root of 8, or a little more, times the rise.
constexpr double levelRise = 0.1;
constexpr double offByMirroring = 2.84;

/// How far side points may be off. Both ends of the radius are rounded to floats, which turns it, and then the point
/// is rounded too.
double sidePointBound(PlanePoint start, PlanePoint end)
{
    const double rounding = 4.0 * floatStep({start, end, PlanePoint(radius, radius)});
    const double rise = std::abs(FrameReference(start, end, radius).right.x);
    return rounding + (rise < levelRise + rounding ? offByMirroring * (rise + rounding) : 0.0);
}

/// The two points Q with Q.way = r^2 and |Q|^2 = 2 r^2: so far along the way, and the rest beside it.
struct SquareReference
{
    SquareReference(PlanePoint way, double r)
    {
        const double along = r * r / length(way);
        const double beside = std::sqrt(2.0 * r * r - along * along);
        const PlanePoint direction = way * (1.0 / length(way));
        right = direction * along + quarterTurnRight(direction) * beside;
        left = direction * along + quarterTurnLeft(direction) * beside;
    }

    PlanePoint right, left;
};

QString frameComplaint(const LineFrame& frame, const FrameReference& reference, double bound, double sideBound)
{
    return complaintAbout("lineStart", frame.lineStart, reference.lineStart, bound) +
           complaintAbout("lineEnd", frame.lineEnd, reference.lineEnd, bound) +
           complaintAbout("arrowStartBase", frame.arrowStartBase, reference.arrowStartBase, bound) +
           complaintAbout("arrowEndBase", frame.arrowEndBase, reference.arrowEndBase, bound) +
           complaintAbout("offsetStartA", frame.offsetStartA, reference.lineStart + reference.right, sideBound) +
           complaintAbout("offsetStartB", frame.offsetStartB, reference.lineStart - reference.right, sideBound) +
           complaintAbout("offsetEndA", frame.offsetEndA, reference.lineEnd + reference.right, sideBound) +
           complaintAbout("offsetEndB", frame.offsetEndB, reference.lineEnd - reference.right, sideBound) +
           complaintAbout("lineAngle", directionAt(double{frame.lineAngle}), directionAt(reference.angle), 1e-6);
}

QString frameComplaint(QVector2D start, QVector2D end)
{
    const double bound = 4.0 * floatStep({start, end, PlanePoint(radius, radius)});
    return frameComplaint(computeLineFrame(start, end, radius), {start, end, double{radius}}, bound,
                          sidePointBound(start, end));
}

} // namespace

class LineFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesALevelLine();
    void framesALineBackwards();
    void framesASlopedLine();
    void keepsSidesRightAndLeftInEveryDirection_data();
    void keepsSidesRightAndLeftInEveryDirection();
    void letsTheEndsOfAShortLinePassEachOther();
    void tellsCoincidingEndsApartAlongX();
    void tellsCoincidingEndsApartWhereFloatsHoldNoUnit();
    void tellsEndsApartBelowATenthOfAUnit_data();
    void tellsEndsApartBelowATenthOfAUnit();
    void cutsTheRadiusOfTheSidePointsOnly();
    void framesAnyLine();
    void framesNearlyLevelLines();

    void squarePointsStandRightAndLeft_data();
    void squarePointsStandRightAndLeft();
    void squarePointsLieBesideAnyWay();
    void squarePointsAreMirrorImagesBelowATenthOfRise_data();
    void squarePointsAreMirrorImagesBelowATenthOfRise();
    void squarePointsOfNearlyLevelWaysAreFinite_data();
    void squarePointsOfNearlyLevelWaysAreFinite();
    void squarePointsOfShortWaysAreFinite();
    void squarePointsStayPutWhereFloatsCannotTellThemApart();
    void squarePointsTakeTheLargestRadius();
};

void LineFrameTest::framesALevelLine()
{
    const LineFrame frame = computeLineFrame({0.0f, 0.0f}, {1000.0f, 0.0f}, radius);
    QCOMPARE(frame.lineStart, QVector2D(128.0f, 0.0f));
    QCOMPARE(frame.lineEnd, QVector2D(872.0f, 0.0f));
    QCOMPARE(frame.arrowStartBase, QVector2D(179.2f, 0.0f));
    QCOMPARE(frame.arrowEndBase, QVector2D(820.8f, 0.0f));
    QVERIFY(frame.lineAngle == 0.0f);

    // A lies below, on the right of the way, and B above it.
    QCOMPARE(frame.offsetStartA, QVector2D(128.0f, -128.0f));
    QCOMPARE(frame.offsetStartB, QVector2D(128.0f, 128.0f));
    QCOMPARE(frame.offsetEndA, QVector2D(872.0f, -128.0f));
    QCOMPARE(frame.offsetEndB, QVector2D(872.0f, 128.0f));
}

void LineFrameTest::framesALineBackwards()
{
    const LineFrame frame = computeLineFrame({1000.0f, 50.0f}, {0.0f, 50.0f}, radius);
    QCOMPARE(frame.lineStart, QVector2D(872.0f, 50.0f));
    QCOMPARE(frame.lineEnd, QVector2D(128.0f, 50.0f));
    QCOMPARE(frame.arrowStartBase, QVector2D(820.8f, 50.0f));
    QCOMPARE(frame.arrowEndBase, QVector2D(179.2f, 50.0f));
    QVERIFY(frame.lineAngle == 3.14159265f);

    // On the way to the left, the right is above.
    QCOMPARE(frame.offsetStartA, QVector2D(872.0f, 178.0f));
    QCOMPARE(frame.offsetStartB, QVector2D(872.0f, -78.0f));
    QCOMPARE(frame.offsetEndA, QVector2D(128.0f, 178.0f));
    QCOMPARE(frame.offsetEndB, QVector2D(128.0f, -78.0f));
}

void LineFrameTest::framesASlopedLine()
{
    // 300 by 400 is 500 long, so that the radius of 125 is a quarter of it: 75 by 100.
    const LineFrame frame = computeLineFrame({1000.0f, 2000.0f}, {1300.0f, 2400.0f}, 125.0f);
    QCOMPARE(frame.lineStart, QVector2D(1075.0f, 2100.0f));
    QCOMPARE(frame.lineEnd, QVector2D(1225.0f, 2300.0f));
    QCOMPARE(frame.arrowStartBase, QVector2D(1105.0f, 2140.0f));
    QCOMPARE(frame.arrowEndBase, QVector2D(1195.0f, 2260.0f));
    QCOMPARE(frame.offsetStartA, QVector2D(1175.0f, 2025.0f));
    QCOMPARE(frame.offsetStartB, QVector2D(975.0f, 2175.0f));
    QCOMPARE(frame.offsetEndA, QVector2D(1325.0f, 2225.0f));
    QCOMPARE(frame.offsetEndB, QVector2D(1125.0f, 2375.0f));
    QVERIFY(frame.lineAngle == std::atan2(400.0f, 300.0f));
}

void LineFrameTest::keepsSidesRightAndLeftInEveryDirection_data()
{
    QTest::addColumn<QVector2D>("end");

    QTest::newRow("right") << QVector2D(2000.0f, 0.0f);
    QTest::newRow("right and up") << QVector2D(2000.0f, 2000.0f);
    QTest::newRow("up") << QVector2D(0.0f, 2000.0f);
    QTest::newRow("left and up") << QVector2D(-2000.0f, 2000.0f);
    QTest::newRow("left") << QVector2D(-2000.0f, 0.0f);
    QTest::newRow("left and down") << QVector2D(-2000.0f, -2000.0f);
    QTest::newRow("down") << QVector2D(0.0f, -2000.0f);
    QTest::newRow("right and down") << QVector2D(2000.0f, -2000.0f);
    QTest::newRow("hardly up") << QVector2D(2000.0f, 1.0f);
    QTest::newRow("hardly down") << QVector2D(2000.0f, -1.0f);
    QTest::newRow("left and hardly up") << QVector2D(-2000.0f, 1.0f);
    QTest::newRow("left and hardly down") << QVector2D(-2000.0f, -1.0f);
}

void LineFrameTest::keepsSidesRightAndLeftInEveryDirection()
{
    QFETCH(QVector2D, end);
    const LineFrame frame = computeLineFrame({0.0f, 0.0f}, end, radius);
    QVERIFY(cross(end, frame.offsetStartA) < 0.0);
    QVERIFY(cross(end, frame.offsetEndA) < 0.0);
    QVERIFY(cross(end, frame.offsetStartB) > 0.0);
    QVERIFY(cross(end, frame.offsetEndB) > 0.0);

    const QString complaint = frameComplaint({0.0f, 0.0f}, end);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
}

void LineFrameTest::letsTheEndsOfAShortLinePassEachOther()
{
    const LineFrame frame = computeLineFrame({0.0f, 0.0f}, {100.0f, 0.0f}, radius);
    QCOMPARE(frame.lineStart, QVector2D(128.0f, 0.0f));
    QCOMPARE(frame.lineEnd, QVector2D(-28.0f, 0.0f));
    QCOMPARE(frame.arrowStartBase, QVector2D(179.2f, 0.0f));
    QCOMPARE(frame.arrowEndBase, QVector2D(100.0f - 179.2f, 0.0f));
    QCOMPARE(frame.offsetStartA, QVector2D(128.0f, -128.0f));
    QCOMPARE(frame.offsetEndA, QVector2D(-28.0f, -128.0f));
    QVERIFY(frame.lineAngle == 0.0f);
}

void LineFrameTest::tellsCoincidingEndsApartAlongX()
{
    const LineFrame frame = computeLineFrame({3.0f, 4.0f}, {3.0f, 4.0f}, radius);
    QCOMPARE(frame.lineStart, QVector2D(131.0f, 4.0f));
    // The end is taken for (4, 4).
    QCOMPARE(frame.lineEnd, QVector2D(-124.0f, 4.0f));
    QCOMPARE(frame.offsetStartA, QVector2D(131.0f, -124.0f));
    QCOMPARE(frame.offsetStartB, QVector2D(131.0f, 132.0f));
    QCOMPARE(frame.offsetEndA, QVector2D(-124.0f, -124.0f));
    QCOMPARE(frame.offsetEndB, QVector2D(-124.0f, 132.0f));
    QVERIFY(frame.lineAngle == 0.0f);
}

void LineFrameTest::tellsCoincidingEndsApartWhereFloatsHoldNoUnit()
{
    // Floats are 2 apart from 2^24 on.
    const QVector2D place(20000000.0f, -30000000.0f);
    const LineFrame frame = computeLineFrame(place, place, radius);
    QCOMPARE(frame.lineStart, place + QVector2D(128.0f, 0.0f));
    QCOMPARE(frame.lineEnd, place - QVector2D(128.0f, 0.0f));
    QCOMPARE(frame.offsetStartA, place + QVector2D(128.0f, -128.0f));
    QCOMPARE(frame.offsetEndB, place + QVector2D(-128.0f, 128.0f));
    QVERIFY(frame.lineAngle == 0.0f);

    const QVector2D fartherOut(-1e20f, 1e20f);
    const LineFrame vanishing = computeLineFrame(fartherOut, fartherOut, radius);
    QCOMPARE(vanishing.lineStart, fartherOut);
    QCOMPARE(vanishing.offsetEndA, fartherOut);
    QCOMPARE(vanishing.arrowEndBase, fartherOut);
}

void LineFrameTest::tellsEndsApartBelowATenthOfAUnit_data()
{
    QTest::addColumn<QVector2D>("end");
    QTest::addColumn<QVector2D>("takenFor");

    const float tenth = 0.1f; // this float is a little more than a tenth
    const float lessThanTenth = std::nextafter(tenth, 0.0f);
    QTest::newRow("a tenth to the left") << QVector2D(-tenth, 0.0f) << QVector2D(-tenth, 0.0f);
    QTest::newRow("less to the left") << QVector2D(-lessThanTenth, 0.0f) << QVector2D(1.0f - lessThanTenth, 0.0f);
    QTest::newRow("a tenth up") << QVector2D(0.0f, tenth) << QVector2D(0.0f, tenth);
    QTest::newRow("less up") << QVector2D(0.0f, lessThanTenth) << QVector2D(1.0f, lessThanTenth);
    QTest::newRow("a tenth on the slope") << QVector2D(-0.0601f, -0.08f) << QVector2D(-0.0601f, -0.08f);
    QTest::newRow("less on the slope") << QVector2D(-0.0599f, -0.08f) << QVector2D(0.9401f, -0.08f);
}

void LineFrameTest::tellsEndsApartBelowATenthOfAUnit()
{
    QFETCH(QVector2D, end);
    QFETCH(QVector2D, takenFor);

    const QVector2D start(0.0f, 0.0f);
    const LineFrame frame = computeLineFrame(start, end, radius);
    const FrameReference reference(start, takenFor, double{radius});
    const QString complaint = frameComplaint(frame, reference, 1e-4, sidePointBound(start, takenFor));
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
}

void LineFrameTest::cutsTheRadiusOfTheSidePointsOnly()
{
    const LineFrame frame = computeLineFrame({0.0f, 0.0f}, {0.0f, 100.0f}, 5.9f);
    QCOMPARE(frame.lineStart, QVector2D(0.0f, 5.9f));
    QCOMPARE(frame.lineEnd, QVector2D(0.0f, 94.1f));

    const SquareReference atStart(PlanePoint(0.0, 5.9), 5.0);
    const SquareReference atEnd(PlanePoint(0.0, -5.9), 5.0);
    const PlanePoint end(0.0, 100.0);
    const QString complaint = complaintAbout("offsetStartA", frame.offsetStartA, atStart.right, 1e-5) +
                              complaintAbout("offsetStartB", frame.offsetStartB, atStart.left, 1e-5) +
                              complaintAbout("offsetEndA", frame.offsetEndA, end + atEnd.left, 1e-4) +
                              complaintAbout("offsetEndB", frame.offsetEndB, end + atEnd.right, 1e-4);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
}

void LineFrameTest::framesAnyLine()
{
    RandomPlane random(41);
    for (int i = 0; i < 10000; ++i) {
        const double reach = std::pow(10.0, random.number(1.0, 6.0));
        const QVector2D start = random.point(reach);
        const QVector2D end = random.point(reach);
        const QString complaint = frameComplaint(start, end);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    }
}

void LineFrameTest::framesNearlyLevelLines()
{
    RandomPlane random(42);
    for (int i = 0; i < 20000; ++i) {
        const double length = std::pow(10.0, random.number(2.0, 6.0));
        const double rise = length * std::pow(10.0, random.number(-12.0, -1.0));
        const QVector2D start = random.point(random.coin() ? 0.0 : 1e6);
        const QVector2D way = PlanePoint{random.sign() * length, random.sign() * rise}.toFloats();
        const QString complaint = frameComplaint(start, start + way);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    }
}

void LineFrameTest::squarePointsStandRightAndLeft_data()
{
    QTest::addColumn<QVector2D>("way");
    QTest::addColumn<QVector2D>("right");
    QTest::addColumn<QVector2D>("left");

    QTest::newRow("rightward") << QVector2D(5.0f, 0.0f) << QVector2D(5.0f, -5.0f) << QVector2D(5.0f, 5.0f);
    QTest::newRow("leftward") << QVector2D(-5.0f, 0.0f) << QVector2D(-5.0f, 5.0f) << QVector2D(-5.0f, -5.0f);
    QTest::newRow("upward") << QVector2D(0.0f, 5.0f) << QVector2D(5.0f, 5.0f) << QVector2D(-5.0f, 5.0f);
    QTest::newRow("downward") << QVector2D(0.0f, -5.0f) << QVector2D(-5.0f, -5.0f) << QVector2D(5.0f, -5.0f);
    QTest::newRow("right and up") << QVector2D(3.0f, 4.0f) << QVector2D(7.0f, 1.0f) << QVector2D(-1.0f, 7.0f);
    QTest::newRow("left and up") << QVector2D(-3.0f, 4.0f) << QVector2D(1.0f, 7.0f) << QVector2D(-7.0f, 1.0f);
    QTest::newRow("left and down") << QVector2D(-3.0f, -4.0f) << QVector2D(-7.0f, -1.0f) << QVector2D(1.0f, -7.0f);
    QTest::newRow("right and down") << QVector2D(3.0f, -4.0f) << QVector2D(-1.0f, -7.0f) << QVector2D(7.0f, -1.0f);
}

void LineFrameTest::squarePointsStandRightAndLeft()
{
    QFETCH(QVector2D, way);
    QFETCH(QVector2D, right);
    QFETCH(QVector2D, left);

    const QVector2D centre(100.0f, -20.0f);
    const auto [first, second] = squarePoints(centre, centre + way, 5);
    QCOMPARE(first, centre + right);
    QCOMPARE(second, centre + left);
}

void LineFrameTest::squarePointsLieBesideAnyWay()
{
    // Also where the way is not quite as long as the radius says.
    RandomPlane random(43);
    for (int i = 0; i < 10000; ++i) {
        const int r = random.whole(1, 1000);
        const PlanePoint direction = directionAt(random.number(-3.2, 3.2));
        const QVector2D way = (direction * (r * random.number(0.8, 1.25))).toFloats();
        if (std::abs(double{way.y()}) < levelRise)
            continue;

        const auto [first, second] = squarePoints({0.0f, 0.0f}, way, r);
        const SquareReference reference(way, r);
        const double bound = 2.0 * floatStep({PlanePoint(r, r)});
        const QString complaint = complaintAbout("first", first, reference.right, bound) +
                                  complaintAbout("second", second, reference.left, bound);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    }
}

void LineFrameTest::squarePointsAreMirrorImagesBelowATenthOfRise_data()
{
    QTest::addColumn<float>("rise");
    QTest::addColumn<bool>("mirrored");

    const float tenth = 0.1f; // this float is a little more than a tenth
    QTest::newRow("none") << 0.0f << true;
    QTest::newRow("just below a tenth") << std::nextafter(tenth, 0.0f) << true;
    QTest::newRow("just below a tenth, falling") << std::nextafter(-tenth, 0.0f) << true;
    QTest::newRow("a tenth") << tenth << false;
    QTest::newRow("a tenth, falling") << -tenth << false;
}

void LineFrameTest::squarePointsAreMirrorImagesBelowATenthOfRise()
{
    QFETCH(float, rise);
    QFETCH(bool, mirrored);

    for (const float side : {1.0f, -1.0f}) {
        const QVector2D way(side * std::sqrt(128.0f * 128.0f - rise * rise), rise);
        const auto [first, second] = squarePoints({0.0f, 0.0f}, way, 128);
        // Square to the way, the two differ in y by twice the rise.
        const double bothY = double{first.y()} + double{second.y()};
        QVERIFY(std::abs(bothY - (mirrored ? 0.0 : 2.0 * double{rise})) < 1e-4);
        QVERIFY(cross(way, first) < 0.0);
        QVERIFY(cross(way, second) > 0.0);
    }
}

void LineFrameTest::squarePointsOfNearlyLevelWaysAreFinite_data()
{
    QTest::addColumn<int>("r");
    QTest::addColumn<double>("stretch");

    for (const int r : {128, 100, 7}) {
        QTest::addRow("as long as the radius of %d", r) << r << 1.0;
        QTest::addRow("longer than the radius of %d by rounding", r) << r << 1.0000001;
        QTest::addRow("shorter than the radius of %d by rounding", r) << r << 0.9999999;
        QTest::addRow("longer than the radius of %d", r) << r << 1.0005;
        QTest::addRow("shorter than the radius of %d", r) << r << 0.9995;
    }
}

void LineFrameTest::squarePointsOfNearlyLevelWaysAreFinite()
{
    QFETCH(int, r);
    QFETCH(double, stretch);

    // The root's argument is zero on a level way and a small difference of large numbers near one.
    for (double rise = 1e-20; rise < 0.5 * r; rise *= 1.01) {
        const double run = std::sqrt(double(r) * r - rise * rise);
        for (const PlanePoint side : {PlanePoint(1.0, 1.0), {1.0, -1.0}, {-1.0, 1.0}, {-1.0, -1.0}}) {
            const QVector2D way = PlanePoint(side.x * stretch * run, side.y * rise).toFloats();
            const auto [first, second] = squarePoints({0.0f, 0.0f}, way, r);

            const double bound = 1e-4 + (rise < levelRise ? offByMirroring * rise : 0.0);
            const SquareReference reference(way, r);
            const QString complaint = complaintAbout("first", first, reference.right, bound) +
                                      complaintAbout("second", second, reference.left, bound);
            QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
        }
    }
}

void LineFrameTest::squarePointsOfShortWaysAreFinite()
{
    // No point lies far enough out along a way that is much shorter than the radius.
    RandomPlane random(44);
    for (int i = 0; i < 5000; ++i) {
        const PlanePoint direction = random.coin() ? directionAt(random.number(-3.2, 3.2)) : PlanePoint(1.0, 0.0);
        const QVector2D way = (direction * (128.0 * random.number(0.001, 0.7))).toFloats();
        const auto [first, second] = squarePoints({0.0f, 0.0f}, way, 128);
        QVERIFY(std::isfinite(first.x()) && std::isfinite(first.y()));
        QVERIFY(std::isfinite(second.x()) && std::isfinite(second.y()));
    }
}

void LineFrameTest::squarePointsStayPutWhereFloatsCannotTellThemApart()
{
    const QVector2D farOut(4e9f, -4e9f);
    const auto [first, second] = squarePoints(farOut, farOut, 128);
    QCOMPARE(first, farOut);
    QCOMPARE(second, farOut);

    const LineFrame frame = computeLineFrame({1e10f, 1e10f}, {3e10f, 2e10f}, radius);
    QCOMPARE(frame.offsetStartA, QVector2D(1e10f, 1e10f));
    QCOMPARE(frame.offsetStartB, QVector2D(1e10f, 1e10f));
    QCOMPARE(frame.offsetEndA, QVector2D(3e10f, 2e10f));
    QCOMPARE(frame.offsetEndB, QVector2D(3e10f, 2e10f));
}

void LineFrameTest::squarePointsTakeTheLargestRadius()
{
    constexpr int largest = std::numeric_limits<int>::max();
    const float r = static_cast<float>(largest);
    const auto [first, second] = squarePoints({0.0f, 0.0f}, {0.0f, r}, largest);
    const double bound = 4.0 * floatStep({PlanePoint(r, r)});
    const QString complaint = complaintAbout("first", first, PlanePoint(r, r), bound) +
                              complaintAbout("second", second, PlanePoint(-r, r), bound);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
}

QTEST_APPLESS_MAIN(LineFrameTest)

#include "LineFrameTest.moc"
