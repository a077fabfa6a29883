#include "scene/SegmentHits.h"

#include "support/PlanePoint.h"
#include "support/RandomPlane.h"

#include <QPoint>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using namespace NELK;

namespace
{

float above(float value)
{
    return std::nextafter(value, std::numeric_limits<float>::infinity());
}

float below(float value)
{
    return std::nextafter(value, -std::numeric_limits<float>::infinity());
}

/// Where a point lies, seen along a segment.
struct Level
{
    Level(PlanePoint a, PlanePoint b, PlanePoint point) : segmentLength(length(b - a))
    {
        const PlanePoint along = (b - a) * (1.0 / segmentLength);
        passed = dot(point - a, along);
        beside = std::abs(cross(along, point - a));
    }

    bool isBetweenEnds() const { return passed >= 0.0 && passed <= segmentLength; }
    double distanceToEnds() const { return std::min(std::abs(passed), std::abs(passed - segmentLength)); }

    double segmentLength;
    double passed;
    double beside;
};

double manhattanLength(PlanePoint way)
{
    return std::abs(way.x) + std::abs(way.y);
}

bool isOutside(double value, double one, double other)
{
    return value < std::min(one, other) || value > std::max(one, other);
}

/// A segment with square ends, without the corners that stick out of its bounding box; or, when short, a disc.
bool isNearReference(PlanePoint a, PlanePoint b, double tolerance, PlanePoint point)
{
    if (manhattanLength(b - a) < 2.0)
        return length(point - a) < tolerance;
    if (isOutside(point.x, a.x, b.x) && isOutside(point.y, a.y, b.y))
        return false;
    const Level level(a, b, point);
    return level.isBetweenEnds() && level.beside < tolerance;
}

/// How far the answer for a point is from changing, the straight sides of the bounding box aside: those are met
/// exactly.
double distanceToBorder(PlanePoint a, PlanePoint b, double tolerance, PlanePoint point)
{
    if (manhattanLength(b - a) < 2.0)
        return std::abs(length(point - a) - tolerance);
    const Level level(a, b, point);
    return std::min(level.distanceToEnds(), std::abs(level.beside - tolerance));
}

/// Two ends somewhere, on a level, upright, diagonal or nearly level line, or close together.
std::pair<QVector2D, QVector2D> randomSegment(RandomPlane& random)
{
    const QVector2D a = random.point(1000.0);
    const QVector2D way = random.point(1000.0);
    switch (random.whole(0, 6)) {
    case 0:
        return {a, a + QVector2D(way.x(), 0.0f)};
    case 1:
        return {a, a + QVector2D(0.0f, way.y())};
    case 2:
        return {a, a + QVector2D(way.x(), way.x())};
    case 3:
        return {a, a + QVector2D(way.x(), way.y() * 1e-3f)};
    case 4:
        return {a, a + way * 1e-3f};
    default:
        return {a, a + way};
    }
}

/// A point beside the segment or beyond its ends, near enough for both answers to be common.
QVector2D randomPointAround(RandomPlane& random, QVector2D a, QVector2D b, double tolerance)
{
    const PlanePoint way = PlanePoint(b) - PlanePoint(a);
    const double passed = random.number(-0.3, 1.3);
    return (PlanePoint(a) + way * passed + PlanePoint(random.point(2.0)) * tolerance).toFloats();
}

/// What lies nearer to a border than this is left to the rounding of floats, whose steps are 0.0001 out there.
constexpr double border = 0.01;

/// A rectangle of integers, rim included.
struct IntegerFrame
{
    IntegerFrame(QPoint one, QPoint other)
        : left(std::min(one.x(), other.x())),
          right(std::max(one.x(), other.x())),
          low(std::min(one.y(), other.y())),
          high(std::max(one.y(), other.y()))
    {
    }

    bool holds(QPoint p) const { return p.x() >= left && p.x() <= right && p.y() >= low && p.y() <= high; }

    /// Whether the rectangle and the segment have a point in common, that is, no line keeps them apart.
    bool meets(QPoint a, QPoint b) const
    {
        if (std::max(a.x(), b.x()) < left || std::min(a.x(), b.x()) > right)
            return false;
        if (std::max(a.y(), b.y()) < low || std::min(a.y(), b.y()) > high)
            return false;
        const QPoint corners[] = {{left, low}, {left, high}, {right, low}, {right, high}};
        const auto side = [&](QPoint p) {
            return (b.x() - a.x()) * (p.y() - a.y()) - (b.y() - a.y()) * (p.x() - a.x());
        };
        const bool allLeft = std::all_of(std::begin(corners), std::end(corners), [&](QPoint p) { return side(p) > 0; });
        const bool allRight =
            std::all_of(std::begin(corners), std::end(corners), [&](QPoint p) { return side(p) < 0; });
        return !allLeft && !allRight;
    }

    int left, right, low, high;
};

QPoint cut(QVector2D point)
{
    return {static_cast<int>(std::trunc(point.x())), static_cast<int>(std::trunc(point.y()))};
}

} // namespace

class SegmentHitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nearMeansLessThanTheTolerance_data();
    void nearMeansLessThanTheTolerance();
    void nothingIsNearBeyondAnEnd_data();
    void nothingIsNearBeyondAnEnd();
    void nothingIsNearOutsideTheBoxInBothAxes();
    void shortSegmentsCountAsTheirFirstEnd_data();
    void shortSegmentsCountAsTheirFirstEnd();
    void shortSegmentsAreNearAllAround();
    void nothingIsNearWithoutTolerance();
    void nearPointsAreThoseOfTheReference();

    void betweenEndsCountsTheEndsOfStraightSegments_data();
    void betweenEndsCountsTheEndsOfStraightSegments();
    void betweenEndsTakesHairSlopesForStraight();
    void betweenEndsIsSquareToSlopedSegments_data();
    void betweenEndsIsSquareToSlopedSegments();
    void betweenEndsMatchesTheReference();

    void framesAreCrossedAsTold_data();
    void framesAreCrossedAsTold();
    void framesMayHaveTheirCornersInAnyOrder();
    void framesCutCoordinatesTowardZero_data();
    void framesCutCoordinatesTowardZero();
    void framesOneUnitHighHoldNothing();
    void framesWithoutExtentHoldTheirPoint();
    void framesAreCrossedByEndlessSegments();
    void crossedFramesAreThoseOfTheReference();
};

void SegmentHitsTest::nearMeansLessThanTheTolerance_data()
{
    QTest::addColumn<QVector2D>("end");
    QTest::addColumn<QVector2D>("point");
    QTest::addColumn<bool>("near");

    // Segments from the origin, with a tolerance of 5.
    const QVector2D level(100.0f, 0.0f);
    const QVector2D upright(0.0f, 100.0f);
    const QVector2D leftward(-100.0f, 0.0f);
    const float almostFive = below(5.0f);
    QTest::newRow("on the segment") << level << QVector2D(50.0f, 0.0f) << true;
    QTest::newRow("above, at the tolerance") << level << QVector2D(50.0f, 5.0f) << false;
    QTest::newRow("above, one step nearer") << level << QVector2D(50.0f, almostFive) << true;
    QTest::newRow("above, one unit nearer") << level << QVector2D(50.0f, 4.0f) << true;
    QTest::newRow("above, one unit farther") << level << QVector2D(50.0f, 6.0f) << false;
    QTest::newRow("below, at the tolerance") << level << QVector2D(50.0f, -5.0f) << false;
    QTest::newRow("below, one step nearer") << level << QVector2D(50.0f, -almostFive) << true;
    QTest::newRow("right, at the tolerance") << upright << QVector2D(5.0f, 50.0f) << false;
    QTest::newRow("right, one step nearer") << upright << QVector2D(almostFive, 50.0f) << true;
    QTest::newRow("left, at the tolerance") << upright << QVector2D(-5.0f, 50.0f) << false;
    QTest::newRow("left, one step nearer") << upright << QVector2D(-almostFive, 50.0f) << true;
    QTest::newRow("backwards, at the tolerance") << leftward << QVector2D(-50.0f, 5.0f) << false;
    QTest::newRow("backwards, one step nearer") << leftward << QVector2D(-50.0f, almostFive) << true;
    // 4 and 6 units to the left of (200, 150).
    QTest::newRow("sloped, nearer") << QVector2D(400.0f, 300.0f) << QVector2D(197.6f, 153.2f) << true;
    QTest::newRow("sloped, farther") << QVector2D(400.0f, 300.0f) << QVector2D(196.4f, 154.8f) << false;
}

void SegmentHitsTest::nearMeansLessThanTheTolerance()
{
    QFETCH(QVector2D, end);
    QFETCH(QVector2D, point);
    QFETCH(bool, near);
    QCOMPARE(nearSegment({0.0f, 0.0f}, end, 5.0f, point), near);
    QCOMPARE(nearSegment(end, {0.0f, 0.0f}, 5.0f, point), near);
}

void SegmentHitsTest::nothingIsNearBeyondAnEnd_data()
{
    QTest::addColumn<QVector2D>("start");
    QTest::addColumn<QVector2D>("end");
    QTest::addColumn<QVector2D>("point");
    QTest::addColumn<bool>("near");

    const QVector2D left(10.0f, 20.0f);
    const QVector2D right(110.0f, 20.0f);
    QTest::newRow("left end itself") << left << right << left << true;
    QTest::newRow("right end itself") << left << right << right << true;
    QTest::newRow("above the left end") << left << right << QVector2D(10.0f, 23.0f) << true;
    QTest::newRow("below the right end") << left << right << QVector2D(110.0f, 17.0f) << true;
    QTest::newRow("one unit left of the line") << left << right << QVector2D(9.0f, 20.0f) << false;
    QTest::newRow("one step left of the line") << left << right << QVector2D(below(10.0f), 20.0f) << false;
    QTest::newRow("one unit right of the line") << left << right << QVector2D(111.0f, 20.0f) << false;
    QTest::newRow("one step right of the line") << left << right << QVector2D(above(110.0f), 20.0f) << false;

    const QVector2D lower(20.0f, 10.0f);
    const QVector2D upper(20.0f, 110.0f);
    QTest::newRow("lower end itself") << lower << upper << lower << true;
    QTest::newRow("right of the upper end") << lower << upper << QVector2D(23.0f, 110.0f) << true;
    QTest::newRow("one unit under the line") << lower << upper << QVector2D(20.0f, 9.0f) << false;
    QTest::newRow("one step under the line") << lower << upper << QVector2D(20.0f, below(10.0f)) << false;
    QTest::newRow("one unit over the line") << lower << upper << QVector2D(20.0f, 111.0f) << false;
    QTest::newRow("one step over the line") << lower << upper << QVector2D(20.0f, above(110.0f)) << false;

    // The square through (0, 0) falls to the right: 3 to the right and 4 down is on it.
    const QVector2D foot(0.0f, 0.0f);
    const QVector2D top(400.0f, 300.0f);
    QTest::newRow("before the foot of a slope") << foot << top << QVector2D(1.5f, -3.0f) << false;
    QTest::newRow("past the foot of a slope") << foot << top << QVector2D(3.0f, -3.0f) << true;
    QTest::newRow("before the top of a slope") << foot << top << QVector2D(401.5f, 297.0f) << true;
    QTest::newRow("past the top of a slope") << foot << top << QVector2D(398.5f, 303.0f) << false;
}

void SegmentHitsTest::nothingIsNearBeyondAnEnd()
{
    QFETCH(QVector2D, start);
    QFETCH(QVector2D, end);
    QFETCH(QVector2D, point);
    QFETCH(bool, near);
    QCOMPARE(nearSegment(start, end, 5.0f, point), near);
    QCOMPARE(nearSegment(end, start, 5.0f, point), near);
}

void SegmentHitsTest::nothingIsNearOutsideTheBoxInBothAxes()
{
    const QVector2D start(0.0f, 0.0f);
    const QVector2D end(100.0f, 2.0f);
    // All three lie about 8 off the segment and level with it. The last one is outside the bounding box in x too.
    QVERIFY(nearSegment(start, end, 10.0f, {1.0f, 8.0f}));
    QVERIFY(nearSegment(start, end, 10.0f, {0.0f, 8.0f}));
    QVERIFY(!nearSegment(start, end, 10.0f, {-0.01f, 8.0f}));

    QVERIFY(nearSegment(start, end, 10.0f, {100.0f, -6.0f}));
    QVERIFY(!nearSegment(start, end, 10.0f, {100.01f, -6.0f}));
}

void SegmentHitsTest::shortSegmentsCountAsTheirFirstEnd_data()
{
    QTest::addColumn<QVector2D>("end");
    QTest::addColumn<bool>("countsAsPoint");

    QTest::newRow("one unit") << QVector2D(1.0f, 0.0f) << true;
    QTest::newRow("two units") << QVector2D(2.0f, 0.0f) << false;
    QTest::newRow("almost two units") << QVector2D(below(2.0f), 0.0f) << true;
    QTest::newRow("two units down") << QVector2D(0.0f, -2.0f) << false;
    QTest::newRow("almost two units down") << QVector2D(0.0f, above(-2.0f)) << true;
    // It is the Manhattan length that counts, and as a float the sum of the last one would be 2.
    QTest::newRow("one unit each way") << QVector2D(1.0f, -1.0f) << false;
    QTest::newRow("almost one unit one way") << QVector2D(-1.0f, below(1.0f)) << true;
    QTest::newRow("three units") << QVector2D(-3.0f, 0.0f) << false;
}

void SegmentHitsTest::shortSegmentsCountAsTheirFirstEnd()
{
    QFETCH(QVector2D, end);
    QFETCH(bool, countsAsPoint);
    // Beyond the first end, so near the point but not near the segment.
    QCOMPARE(nearSegment({0.0f, 0.0f}, end, 10.0f, end * -2.0f), countsAsPoint);
}

void SegmentHitsTest::shortSegmentsAreNearAllAround()
{
    const QVector2D a(100.0f, 200.0f);
    const QVector2D b(101.0f, 200.0f);
    QVERIFY(nearSegment(a, b, 5.0f, {96.0f, 200.0f}));
    QVERIFY(nearSegment(a, b, 5.0f, {97.0f, 197.0f}));
    // 5 from the first end, whether nearer to the other or not.
    QVERIFY(!nearSegment(a, b, 5.0f, {105.0f, 200.0f}));
    QVERIFY(!nearSegment(a, b, 5.0f, {103.0f, 204.0f}));
    QVERIFY(!nearSegment(a, b, 5.0f, {97.0f, 196.0f}));
    QVERIFY(nearSegment(a, b, 5.0f, {below(105.0f), 200.0f}));
    QVERIFY(nearSegment(b, a, 5.0f, {105.0f, 200.0f}));
    QVERIFY(nearSegment(a, a, 5.0f, {100.0f, 204.0f}));

    const QVector2D farOut(8000000.0f, -6000000.0f);
    QVERIFY(!nearSegment(farOut, farOut, 5.0f, farOut + QVector2D(3.0f, 4.0f)));
    QVERIFY(nearSegment(farOut, farOut, above(5.0f), farOut + QVector2D(3.0f, 4.0f)));
}

void SegmentHitsTest::nothingIsNearWithoutTolerance()
{
    QVERIFY(!nearSegment({0.0f, 0.0f}, {100.0f, 0.0f}, 0.0f, {50.0f, 0.0f}));
    QVERIFY(!nearSegment({0.0f, 0.0f}, {100.0f, 0.0f}, -1.0f, {50.0f, 0.0f}));
    QVERIFY(!nearSegment({0.0f, 0.0f}, {1.0f, 0.0f}, 0.0f, {0.0f, 0.0f}));
    QVERIFY(!nearSegment({0.0f, 0.0f}, {1.0f, 0.0f}, -1.0f, {0.0f, 0.0f}));
}

void SegmentHitsTest::nearPointsAreThoseOfTheReference()
{
    RandomPlane random(51);
    int nearCount = 0;
    int farCount = 0;
    for (int i = 0; i < 50000; ++i) {
        const auto [a, b] = randomSegment(random);
        const float tolerance = random.floatNumber(1.0, 60.0);
        const QVector2D point = randomPointAround(random, a, b, double{tolerance});
        const bool atTheLimit = std::abs(manhattanLength(PlanePoint(b) - PlanePoint(a)) - 2.0) < 1e-3;
        if (atTheLimit || distanceToBorder(a, b, double{tolerance}, point) < border)
            continue;

        const bool expected = isNearReference(a, b, double{tolerance}, point);
        if (nearSegment(a, b, tolerance, point) != expected) {
            qInfo() << a << b << tolerance << point;
            QFAIL("differs from the reference");
        }
        ++(expected ? nearCount : farCount);
    }
    QVERIFY(nearCount > 5000);
    QVERIFY(farCount > 5000);
}

void SegmentHitsTest::betweenEndsCountsTheEndsOfStraightSegments_data()
{
    QTest::addColumn<QVector2D>("start");
    QTest::addColumn<QVector2D>("end");
    QTest::addColumn<QVector2D>("point");
    QTest::addColumn<bool>("between");

    const QVector2D left(10.0f, 20.0f);
    const QVector2D right(110.0f, 20.0f);
    QTest::newRow("left end") << left << right << QVector2D(10.0f, 24.0f) << true;
    QTest::newRow("one step past the left end") << left << right << QVector2D(below(10.0f), 24.0f) << false;
    QTest::newRow("right end") << left << right << QVector2D(110.0f, 24.0f) << true;
    QTest::newRow("one step past the right end") << left << right << QVector2D(above(110.0f), 24.0f) << false;
    QTest::newRow("level, far off the line") << left << right << QVector2D(60.0f, -9999.0f) << true;

    const QVector2D lower(20.0f, 10.0f);
    const QVector2D upper(20.0f, 110.0f);
    QTest::newRow("lower end") << lower << upper << QVector2D(24.0f, 10.0f) << true;
    QTest::newRow("one step past the lower end") << lower << upper << QVector2D(24.0f, below(10.0f)) << false;
    QTest::newRow("upper end") << lower << upper << QVector2D(24.0f, 110.0f) << true;
    QTest::newRow("one step past the upper end") << lower << upper << QVector2D(24.0f, above(110.0f)) << false;
    QTest::newRow("upright, far off the line") << lower << upper << QVector2D(-9999.0f, 60.0f) << true;

    QTest::newRow("a point, on its level") << left << left << QVector2D(99.0f, 20.0f) << true;
    QTest::newRow("a point, off its level") << left << left << QVector2D(10.0f, above(20.0f)) << false;
}

void SegmentHitsTest::betweenEndsCountsTheEndsOfStraightSegments()
{
    QFETCH(QVector2D, start);
    QFETCH(QVector2D, end);
    QFETCH(QVector2D, point);
    QFETCH(bool, between);
    QCOMPARE(betweenSegmentEnds(start, end, point, 5.0f), between);
    QCOMPARE(betweenSegmentEnds(end, start, point, 5.0f), between);
}

void SegmentHitsTest::betweenEndsTakesHairSlopesForStraight()
{
    // A million units to the side a slope of a hair in a hundred makes for as much as a hundredth of a unit: the point
    // is on the level of the end, but past the square through it.
    const float lessThanAHair = 0.9e-6f;
    const float moreThanAHair = 1.5e-6f;
    const QVector2D origin(0.0f, 0.0f);

    const QVector2D farRight(1e6f, 100.0f);
    QVERIFY(betweenSegmentEnds(origin, {lessThanAHair, 100.0f}, farRight, 5.0f));
    QVERIFY(!betweenSegmentEnds(origin, {moreThanAHair, 100.0f}, farRight, 5.0f));

    const QVector2D farUp(100.0f, 1e6f);
    QVERIFY(betweenSegmentEnds(origin, {100.0f, lessThanAHair}, farUp, 5.0f));
    QVERIFY(!betweenSegmentEnds(origin, {100.0f, moreThanAHair}, farUp, 5.0f));
}

void SegmentHitsTest::betweenEndsIsSquareToSlopedSegments_data()
{
    QTest::addColumn<QVector2D>("start");
    QTest::addColumn<QVector2D>("end");

    QTest::newRow("rising") << QVector2D(0.0f, 0.0f) << QVector2D(400.0f, 300.0f);
    QTest::newRow("falling") << QVector2D(0.0f, 0.0f) << QVector2D(400.0f, -300.0f);
    QTest::newRow("steep") << QVector2D(-50.0f, 100.0f) << QVector2D(10.0f, 900.0f);
    QTest::newRow("flat") << QVector2D(100.0f, 100.0f) << QVector2D(900.0f, 104.0f);
    QTest::newRow("short") << QVector2D(3.0f, 4.0f) << QVector2D(5.0f, 7.0f);
}

void SegmentHitsTest::betweenEndsIsSquareToSlopedSegments()
{
    QFETCH(QVector2D, start);
    QFETCH(QVector2D, end);

    const PlanePoint a = start;
    const PlanePoint b = end;
    const PlanePoint along = (b - a) * (1.0 / length(b - a));
    for (const double beside : {-30.0, -4.0, 0.0, 4.0, 30.0}) {
        const PlanePoint aside = quarterTurnLeft(along) * beside;
        for (const bool backwards : {false, true}) {
            const auto between = [&](PlanePoint place) {
                const QVector2D point = (place + aside).toFloats();
                return betweenSegmentEnds(backwards ? end : start, backwards ? start : end, point, 5.0f);
            };
            QVERIFY(!between(a - along * 0.01));
            QVERIFY(between(a + along * 0.01));
            QVERIFY(between((a + b) * 0.5));
            QVERIFY(between(b - along * 0.01));
            QVERIFY(!between(b + along * 0.01));
        }
    }
}

void SegmentHitsTest::betweenEndsMatchesTheReference()
{
    RandomPlane random(52);
    int betweenCount = 0;
    int beyondCount = 0;
    for (int i = 0; i < 50000; ++i) {
        const auto [a, b] = randomSegment(random);
        const float tolerance = random.floatNumber(1.0, 60.0);
        const QVector2D point = randomPointAround(random, a, b, 2.0 * double{tolerance});
        const Level level(a, b, point);
        if (level.distanceToEnds() < border)
            continue;

        if (betweenSegmentEnds(a, b, point, tolerance) != level.isBetweenEnds()) {
            qInfo() << a << b << tolerance << point;
            QFAIL("differs from the reference");
        }
        ++(level.isBetweenEnds() ? betweenCount : beyondCount);
    }
    QVERIFY(betweenCount > 5000);
    QVERIFY(beyondCount > 5000);
}

void SegmentHitsTest::framesAreCrossedAsTold_data()
{
    QTest::addColumn<QVector2D>("a");
    QTest::addColumn<QVector2D>("b");
    QTest::addColumn<bool>("crossed");
    QTest::addColumn<bool>("whole");

    // The frame runs from (0, 100) at the left top to (200, 0) at the right bottom, y up.
    const auto row = [](const char* name, QVector2D a, QVector2D b, bool crossed, bool whole) {
        QTest::newRow(name) << a << b << crossed << whole;
    };
    row("inside", {50.0f, 50.0f}, {150.0f, 20.0f}, true, true);
    row("both ends on opposite rims", {0.0f, 50.0f}, {200.0f, 50.0f}, true, true);
    row("both ends on corners", {0.0f, 100.0f}, {200.0f, 0.0f}, true, true);
    row("along the top rim", {20.0f, 100.0f}, {150.0f, 100.0f}, true, true);
    row("a point on the rim", {200.0f, 40.0f}, {200.0f, 40.0f}, true, true);
    row("one end out to the left", {-1.0f, 50.0f}, {50.0f, 50.0f}, true, false);
    row("one end out to the right", {150.0f, 50.0f}, {201.0f, 50.0f}, true, false);
    row("one end out above", {50.0f, 50.0f}, {50.0f, 101.0f}, true, false);
    row("one end out below", {50.0f, -1.0f}, {50.0f, 50.0f}, true, false);
    row("one end on the rim, the other out", {200.0f, 50.0f}, {300.0f, 50.0f}, true, false);
    row("through, from left to right", {-10.0f, 50.0f}, {210.0f, 60.0f}, true, false);
    row("through, from below to above", {90.0f, -10.0f}, {110.0f, 110.0f}, true, false);
    row("across the left top corner", {-10.0f, 80.0f}, {30.0f, 120.0f}, true, false);
    row("across the right bottom corner", {170.0f, -20.0f}, {210.0f, 20.0f}, true, false);
    row("touching the left top corner", {-10.0f, 90.0f}, {10.0f, 110.0f}, true, false);
    row("one unit past the left top corner", {-11.0f, 90.0f}, {9.0f, 110.0f}, false, false);
    row("touching the right bottom corner", {190.0f, -10.0f}, {210.0f, 10.0f}, true, false);
    row("over the top rim and beyond at both ends", {-10.0f, 100.0f}, {210.0f, 100.0f}, true, false);
    row("ending on the left rim from outside", {-50.0f, 50.0f}, {0.0f, 50.0f}, true, false);
    row("ending one unit short of the left rim", {-50.0f, 50.0f}, {-1.0f, 50.0f}, false, false);
    row("one unit above", {-10.0f, 101.0f}, {210.0f, 101.0f}, false, false);
    row("one unit below", {-10.0f, -1.0f}, {210.0f, -1.0f}, false, false);
    row("one unit to the left", {-1.0f, -10.0f}, {-1.0f, 110.0f}, false, false);
    row("one unit to the right", {201.0f, -10.0f}, {201.0f, 110.0f}, false, false);
    row("past a corner, though its box overlaps", {-60.0f, 80.0f}, {10.0f, 160.0f}, false, false);
    row("on the way to the frame", {300.0f, 50.0f}, {201.0f, 50.0f}, false, false);
    row("a point outside", {-1.0f, 50.0f}, {-1.0f, 50.0f}, false, false);
}

void SegmentHitsTest::framesAreCrossedAsTold()
{
    QFETCH(QVector2D, a);
    QFETCH(QVector2D, b);
    QFETCH(bool, crossed);
    QFETCH(bool, whole);

    const QVector2D leftTop(0.0f, 100.0f);
    const QVector2D rightBottom(200.0f, 0.0f);
    QCOMPARE(segmentCrossesFrame(leftTop, rightBottom, a, b, false), crossed);
    QCOMPARE(segmentCrossesFrame(leftTop, rightBottom, b, a, false), crossed);
    QCOMPARE(segmentCrossesFrame(leftTop, rightBottom, a, b, true), whole);
    QCOMPARE(segmentCrossesFrame(leftTop, rightBottom, b, a, true), whole);
}

void SegmentHitsTest::framesMayHaveTheirCornersInAnyOrder()
{
    const QVector2D corners[] = {{0.0f, 0.0f}, {200.0f, 100.0f}, {0.0f, 100.0f}, {200.0f, 0.0f}};
    for (int i = 0; i < 4; ++i) {
        const QVector2D one = corners[i];
        const QVector2D opposite = corners[i ^ 1];
        QVERIFY(segmentCrossesFrame(one, opposite, {50.0f, 50.0f}, {150.0f, 50.0f}, true));
        QVERIFY(segmentCrossesFrame(one, opposite, {-50.0f, 50.0f}, {250.0f, 50.0f}, false));
        QVERIFY(!segmentCrossesFrame(one, opposite, {-50.0f, 150.0f}, {250.0f, 150.0f}, false));
    }
}

void SegmentHitsTest::framesCutCoordinatesTowardZero_data()
{
    QTest::addColumn<QVector2D>("leftTop");
    QTest::addColumn<QVector2D>("rightBottom");
    QTest::addColumn<QVector2D>("point");
    QTest::addColumn<bool>("inside");

    const QVector2D leftTop(0.0f, 10.0f);
    const QVector2D rightBottom(10.0f, 0.0f);
    QTest::newRow("cut back to the right top") << leftTop << rightBottom << QVector2D(10.9f, 10.9f) << true;
    QTest::newRow("cut up to the left bottom") << leftTop << rightBottom << QVector2D(-0.9f, -0.9f) << true;
    QTest::newRow("one unit out at the right") << leftTop << rightBottom << QVector2D(11.0f, 5.0f) << false;
    QTest::newRow("one step less at the right") << leftTop << rightBottom << QVector2D(below(11.0f), 5.0f) << true;
    QTest::newRow("one unit out at the left") << leftTop << rightBottom << QVector2D(-1.0f, 5.0f) << false;
    QTest::newRow("one step less at the left") << leftTop << rightBottom << QVector2D(above(-1.0f), 5.0f) << true;
    QTest::newRow("one unit out at the top") << leftTop << rightBottom << QVector2D(5.0f, 11.0f) << false;
    QTest::newRow("one step less at the top") << leftTop << rightBottom << QVector2D(5.0f, below(11.0f)) << true;
    QTest::newRow("one unit out at the bottom") << leftTop << rightBottom << QVector2D(5.0f, -1.0f) << false;
    QTest::newRow("one step less at the bottom") << leftTop << rightBottom << QVector2D(5.0f, above(-1.0f)) << true;

    // Corners are cut too: this frame runs from (-5, 5) to (5, -5).
    const QVector2D cutLeftTop(-5.9f, 5.9f);
    const QVector2D cutRightBottom(5.9f, -5.9f);
    QTest::newRow("left of the cut frame") << cutLeftTop << cutRightBottom << QVector2D(-6.0f, 0.0f) << false;
    QTest::newRow("on the left of the cut frame") << cutLeftTop << cutRightBottom << QVector2D(-5.9f, 0.0f) << true;
    QTest::newRow("right of the cut frame") << cutLeftTop << cutRightBottom << QVector2D(6.0f, 0.0f) << false;
    QTest::newRow("above the cut frame") << cutLeftTop << cutRightBottom << QVector2D(0.0f, 6.0f) << false;
    QTest::newRow("below the cut frame") << cutLeftTop << cutRightBottom << QVector2D(0.0f, -6.0f) << false;
}

void SegmentHitsTest::framesCutCoordinatesTowardZero()
{
    QFETCH(QVector2D, leftTop);
    QFETCH(QVector2D, rightBottom);
    QFETCH(QVector2D, point);
    QFETCH(bool, inside);

    QCOMPARE(segmentCrossesFrame(leftTop, rightBottom, point, point, true), inside);
    // Each end is cut for itself.
    QCOMPARE(segmentCrossesFrame(leftTop, rightBottom, point, {3.0f, 3.0f}, true), inside);
    QCOMPARE(segmentCrossesFrame(leftTop, rightBottom, {3.0f, 3.0f}, point, true), inside);
}

void SegmentHitsTest::framesOneUnitHighHoldNothing()
{
    // QRect takes a bottom one above the top for a rectangle without height. Its sides can still be crossed.
    const QVector2D leftTop(0.0f, 1.0f);
    const QVector2D rightBottom(10.0f, 0.0f);
    QVERIFY(!segmentCrossesFrame(leftTop, rightBottom, {2.0f, 0.0f}, {8.0f, 0.0f}, false));
    QVERIFY(segmentCrossesFrame(leftTop, rightBottom, {2.0f, 0.0f}, {8.0f, 1.0f}, false));
    QVERIFY(!segmentCrossesFrame(leftTop, rightBottom, {2.0f, 0.0f}, {8.0f, 1.0f}, true));
    QVERIFY(segmentCrossesFrame({0.0f, 2.0f}, rightBottom, {2.0f, 0.0f}, {8.0f, 0.0f}, true));
}

void SegmentHitsTest::framesWithoutExtentHoldTheirPoint()
{
    const QVector2D place(5.0f, 5.0f);
    QVERIFY(segmentCrossesFrame(place, place, place, place, true));
    QVERIFY(!segmentCrossesFrame(place, place, {6.0f, 5.0f}, {6.0f, 5.0f}, false));
    // Four sides without length are not crossed by a segment through them.
    QVERIFY(!segmentCrossesFrame(place, place, {0.0f, 5.0f}, {10.0f, 5.0f}, false));

    // A frame of one column is crossed from side to side.
    QVERIFY(segmentCrossesFrame({5.0f, 10.0f}, {5.0f, 0.0f}, {0.0f, 5.0f}, {10.0f, 5.0f}, false));
    QVERIFY(segmentCrossesFrame({5.0f, 10.0f}, {5.0f, 0.0f}, {5.0f, 2.0f}, {5.0f, 8.0f}, true));
}

void SegmentHitsTest::framesAreCrossedByEndlessSegments()
{
    // Coordinates beyond the integers are held to their range.
    const QVector2D leftTop(-100.0f, 100.0f);
    const QVector2D rightBottom(100.0f, -100.0f);
    QVERIFY(segmentCrossesFrame(leftTop, rightBottom, {-1e30f, 0.0f}, {1e30f, 0.0f}, false));
    QVERIFY(!segmentCrossesFrame(leftTop, rightBottom, {-1e30f, 0.0f}, {1e30f, 0.0f}, true));
    QVERIFY(!segmentCrossesFrame(leftTop, rightBottom, {-1e30f, 101.0f}, {1e30f, 101.0f}, false));
    QVERIFY(segmentCrossesFrame({-2e9f, 2e9f}, {1e30f, -2e9f}, {-7.0f, 3.0f}, {8e9f, 5.0f}, true));
}

void SegmentHitsTest::crossedFramesAreThoseOfTheReference()
{
    RandomPlane random(53);
    int crossedCount = 0;
    int wholeCount = 0;
    for (int i = 0; i < 100000; ++i) {
        // Few different coordinates, so that touching is common.
        const QVector2D corner = random.point(10.0);
        const PlanePoint extent{random.sign() * random.whole(3, 20), random.sign() * random.whole(3, 20)};
        const QVector2D opposite = corner + extent.toFloats();
        const QVector2D a = random.point(16.0);
        const QVector2D elsewhere = random.point(16.0);
        const QVector2D b = random.coin() ? elsewhere : QVector2D(elsewhere.x(), a.y());

        const IntegerFrame frame(cut(corner), cut(opposite));
        const bool crossed = frame.meets(cut(a), cut(b));
        const bool whole = frame.holds(cut(a)) && frame.holds(cut(b));
        if (segmentCrossesFrame(corner, opposite, a, b, false) != crossed ||
            segmentCrossesFrame(corner, opposite, a, b, true) != whole) {
            qInfo() << corner << opposite << a << b;
            QFAIL("differs from the reference");
        }
        crossedCount += crossed ? 1 : 0;
        wholeCount += whole ? 1 : 0;
    }
    QVERIFY(wholeCount > 1000);
    QVERIFY(crossedCount > wholeCount + 10000);
    QVERIFY(crossedCount < 90000);
}

QTEST_APPLESS_MAIN(SegmentHitsTest)

#include "SegmentHitsTest.moc"
