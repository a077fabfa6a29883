#include "scene/ElementHits.h"

#include "scene/EdgeData.h"
#include "scene/EdgeShape.h"
#include "scene/ElementIds.h"
#include "scene/NodeData.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

using namespace NELK;

class ElementHitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void passesOverHiddenElements();
    void passesOverNodesFromTheIdLimitOn();

    void countsTheRimOfACircle();
    void doesNotCountTheSidesOfAPlainIcon();
    void halvesBodiesInWholeUnits();
    void meetsTheRimOfABigCircleExactly_data();
    void meetsTheRimOfABigCircleExactly();
    void hangsTheLabelBelowTheIcon();
    void hangsTheLabelBelowTheCircle();
    void doesNotCountTheSidesOfALabel();
    void takesTheSetNumbersForTheLabelWithoutNodeText();
    void hitsNothingOfANodeWithoutLabelBelowIt();
    void agreesWithExactArithmeticOnNodesAtPoints();

    void doesNotCountFramesThatOnlyTouchTheIcon();
    void measuresAFrameAgainstTheCircleWhereThatIsOn();
    void halvesBodiesInWholeUnitsForFrames();
    void doesNotCountFramesThatOnlyTouchTheLabel();
    void measuresAFrameAgainstTheSetNumbersWithoutNodeText();
    void takesFramesWithoutExtent();
    void agreesWithExactArithmeticOnNodesInFrames();

    void hitsARingOnItsBandOnly();
    void halvesTheRingDiameterInWholeUnits();
    void fillsTheHoleOfARingThatIsNarrowerThanTheTolerance();
    void meetsTheRimsOfABigRingExactly_data();
    void meetsTheRimsOfABigRingExactly();
    void ignoresARightAngleOnARing();

    void hitsAStraightEdgeNearerThanItsWidth();
    void hitsAStraightEdgeFromCentreToCentre();
    void hitsASlantingEdgeOnEitherSide();
    void hitsARightAngledEdgeOnItsPieces_data();
    void hitsARightAngledEdgeOnItsPieces();
    void hitsALevelRightAngledEdge();
    void hitsAParallelEdgeOnItsTrack();
    void hitsAnEdgeThatOutlivedItsBaseOnItsTrack();
    void drawsARightAngleBeforeATrack();
    void reachesAsFarAsTheLargestTolerance();
    void agreesWithDoublePrecisionOnEdgesNearPoints();

    void hitsARingWhoseRimParts_data();
    void hitsARingWhoseRimParts();
    void doesNotCountTheRimOfTheRingAsItsInside();
    void hitsARingWithAnExtremePointInTheFrame();
    void hitsARingUnderTheTopSideOfTheFrame();
    void hitsARingUnderTheLeftSideOfTheFrame();
    void missesARingUnderTheBottomOrRightSideOfTheFrame();
    void missesARingAroundTheFrame();
    void meetsTheOuterRimOfABigRingExactlyWithAFrame();
    void agreesWithExactArithmeticOnRingsInFrames();

    void hitsAnEdgeThatCrossesTheFrame();
    void measuresEdgesAndFramesInWholeUnits();
    void hitsARightAngledEdgeInTheFrameByItsPieces_data();
    void hitsARightAngledEdgeInTheFrameByItsPieces();
    void hitsAParallelEdgeInTheFrameByItsTrack();
    void agreesWithIntegerArithmeticOnEdgesInFrames();
};

namespace
{

/// Whether `hit` holds on the side of `limit` to which `inward` points, one unit or one float away, but neither at
/// `limit` nor beyond.
template <typename Hit>
bool beginsBeyond(float limit, float inward, Hit hit)
{
    return hit(limit + inward) && hit(std::nextafter(limit, limit + inward)) && !hit(limit) &&
           !hit(std::nextafter(limit, limit - inward)) && !hit(limit - inward);
}

/// The same, but `limit` itself holds too.
template <typename Hit>
bool beginsAt(float limit, float inward, Hit hit)
{
    return hit(limit + inward) && hit(limit) && !hit(std::nextafter(limit, limit - inward)) && !hit(limit - inward);
}

void place(NodeData& node, float x, float y)
{
    node.x = x;
    node.y = y;
}

void setLabel(NodeData& node, int width, int height)
{
    node.labelWidth = width;
    node.labelHeight = height;
}

void setSetNumbers(NodeData& node, int width, int height)
{
    node.setNumWidth = width;
    node.setNumHeight = height;
}

void showCircle(NodeData& node, int diameter)
{
    node.circleShow = true;
    node.circleDiameter = diameter;
}

/// Two nodes for an edge to join.
struct Ends
{
    Ends(QVector2D startPos, QVector2D endPos)
    {
        place(start, startPos.x(), startPos.y());
        place(end, endPos.x(), endPos.y());
    }

    NodeData start;
    NodeData end;
};

/// A ring of diameter 362 and width 8, unless changed, whose centre is the origin.
struct RingAtOrigin
{
    RingAtOrigin() : edge((place(node, 0.0f, -181.0f), node), 0) {}

    NodeData node;
    EdgeData edge;
};

struct Frame
{
    float left;
    float top;
    float right;
    float bottom;

    QVector2D leftTop() const { return {left, top}; }
    QVector2D rightBottom() const { return {right, bottom}; }

    Frame with(float Frame::*side, float value) const
    {
        Frame changed = *this;
        changed.*side = value;
        return changed;
    }
};

bool nodeHit(const NodeData& node, Frame frame, bool nodeTextShow = true)
{
    return nodeInFrame(frame.leftTop(), frame.rightBottom(), node, nodeTextShow);
}

bool edgeHit(const EdgeData& edge, Frame frame)
{
    return edgeInFrame(frame.leftTop(), frame.rightBottom(), edge);
}

/// A side of a frame that, moved beyond `limit`, overlaps what lies that way.
struct SideLimit
{
    float Frame::*side;
    float limit;
    float inward;
};

/// Random numbers that come out the same in each run. Quarters, so that sums and products are exact in floats.
class Random
{
public:
    int whole(int least, int greatest) { return std::uniform_int_distribution<int>(least, greatest)(m_engine); }
    float quarter(int least, int greatest) { return static_cast<float>(whole(4 * least, 4 * greatest)) * 0.25f; }
    QVector2D point(int reach)
    {
        const float x = quarter(-reach, reach);
        return {x, quarter(-reach, reach)};
    }
    bool flag() { return whole(0, 1) == 1; }

private:
    std::mt19937 m_engine{20240229};
};

/// Counts the answers of random cases, so that a test can show that it met both.
struct Answers
{
    int hits = 0;
    int misses = 0;

    void count(bool hit) { ++(hit ? hits : misses); }
    bool bothAtLeast(int number) const { return std::min(hits, misses) >= number; }
};

void randomizeBody(NodeData& node, Random& random)
{
    place(node, random.quarter(-50, 50), random.quarter(-50, 50));
    node.circleShow = random.flag();
    node.circleSize = random.quarter(1, 2);
    node.resize(static_cast<float>(random.whole(1, 400)) / 256.0f);
    setLabel(node, random.whole(0, 500), random.whole(0, 300));
    setSetNumbers(node, random.whole(0, 500), random.whole(0, 300));
}

} // namespace

void ElementHitsTest::passesOverHiddenElements()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    EdgeData edge(ends.start, ends.end);
    QVERIFY(isPickable(ends.start));
    QVERIFY(isPickable(edge));

    ends.start.show = false;
    QVERIFY(!isPickable(ends.start));
    QVERIFY(isPickable(edge));

    edge.show = false;
    QVERIFY(!isPickable(edge));
}

void ElementHitsTest::passesOverNodesFromTheIdLimitOn()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    ends.start.id = 12345678899;
    QVERIFY(isPickable(ends.start));
    ends.start.id = 12345678900;
    QVERIFY(!isPickable(ends.start));
    ends.start.id = std::numeric_limits<qint64>::max();
    QVERIFY(!isPickable(ends.start));
    ends.start.id = -12345678900;
    QVERIFY(isPickable(ends.start));

    EdgeData edge(ends.start, ends.end);
    edge.id = 12345678900;
    QVERIFY(isPickable(edge));
}

void ElementHitsTest::countsTheRimOfACircle()
{
    NodeData node;
    showCircle(node, 362);
    for (const QVector2D direction :
         {QVector2D(1.0f, 0.0f), QVector2D(-1.0f, 0.0f), QVector2D(0.0f, 1.0f), QVector2D(0.0f, -1.0f)})
        QVERIFY(beginsAt(181.0f, -1.0f, [&](float away) { return nodeAtPoint(away * direction, node, true); }));

    place(node, 1000.0f, -500.0f);
    QVERIFY(nodeAtPoint({1181.0f, -500.0f}, node, true));
    QVERIFY(!nodeAtPoint({1182.0f, -500.0f}, node, true));
    QVERIFY(!nodeAtPoint({1130.0f, -630.0f}, node, true)); // in the corner of the circle's box
}

void ElementHitsTest::doesNotCountTheSidesOfAPlainIcon()
{
    const NodeData node;
    for (const float side : {128.0f, -128.0f}) {
        const float inward = side > 0.0f ? -1.0f : 1.0f;
        QVERIFY(beginsBeyond(side, inward, [&](float x) { return nodeAtPoint({x, 0.0f}, node, true); }));
        QVERIFY(beginsBeyond(side, inward, [&](float y) { return nodeAtPoint({0.0f, y}, node, true); }));
        QVERIFY(beginsBeyond(side, inward, [&](float x) { return nodeAtPoint({x, 127.0f}, node, true); }));
    }
}

void ElementHitsTest::halvesBodiesInWholeUnits()
{
    NodeData node;
    node.resize(0.0f);
    QCOMPARE(node.width, 25);
    QVERIFY(beginsBeyond(12.0f, -1.0f, [&](float x) { return nodeAtPoint({x, 0.0f}, node, true); }));
    QVERIFY(beginsBeyond(-12.0f, 1.0f, [&](float y) { return nodeAtPoint({0.0f, y}, node, true); }));

    node.circleShow = true;
    QCOMPARE(node.circleDiameter, 35);
    QVERIFY(beginsAt(17.0f, -1.0f, [&](float x) { return nodeAtPoint({x, 0.0f}, node, true); }));
}

void ElementHitsTest::meetsTheRimOfABigCircleExactly_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<QVector2D>("fromCentre");
    QTest::addColumn<bool>("hit");

    // Sides of right triangles whose third side is the radius, or one unit off it.
    QTest::newRow("4000 of 4001") << 4001 << QVector2D(3200.0f, 2400.0f) << true;
    QTest::newRow("4001 of 4001") << 4001 << QVector2D(3920.0f, -801.0f) << true;
    QTest::newRow("4002 of 4001") << 4001 << QVector2D(-2898.0f, 2760.0f) << false;
    QTest::newRow("12002 of 12003") << 12003 << QVector2D(-9248.0f, -7650.0f) << true;
    QTest::newRow("12003 of 12003") << 12003 << QVector2D(11760.0f, 2403.0f) << true;
    QTest::newRow("12004 of 12003") << 12003 << QVector2D(8804.0f, 8160.0f) << false;
    QTest::newRow("beside the rim of 12003") << 12003 << QVector2D(12003.0f, 1.0f) << false;
}

void ElementHitsTest::meetsTheRimOfABigCircleExactly()
{
    QFETCH(int, radius);
    QFETCH(QVector2D, fromCentre);
    QFETCH(bool, hit);

    NodeData node;
    showCircle(node, 2 * radius);
    QCOMPARE(nodeAtPoint(fromCentre, node, true), hit);
    place(node, -250000.0f, 1000001.0f);
    QCOMPARE(nodeAtPoint(node.center() + fromCentre, node, true), hit);
}

void ElementHitsTest::hangsTheLabelBelowTheIcon()
{
    NodeData node;
    place(node, 100.0f, 50.0f);
    setLabel(node, 300, 40);

    // The icon ends at y = -78, the label at y = -118. To either side of the icon the label stands out by 22.
    for (const float x : {-49.0f, 100.0f, 249.0f})
        QVERIFY(nodeAtPoint({x, -98.0f}, node, true));
    QVERIFY(beginsBeyond(-118.0f, 1.0f, [&](float y) { return nodeAtPoint({100.0f, y}, node, true); }));
    QVERIFY(beginsBeyond(-78.0f, -1.0f, [&](float y) { return nodeAtPoint({240.0f, y}, node, true); }));
    QVERIFY(!nodeAtPoint({100.0f, -78.0f}, node, true)); // between the two, in neither
    QVERIFY(!nodeAtPoint({240.0f, 50.0f}, node, true));
}

void ElementHitsTest::hangsTheLabelBelowTheCircle()
{
    NodeData node;
    setLabel(node, 40, 40);
    QVERIFY(nodeAtPoint({0.0f, -148.0f}, node, true));

    showCircle(node, 363);
    QVERIFY(nodeAtPoint({0.0f, -181.0f}, node, true)); // the circle's rim
    QVERIFY(beginsBeyond(-221.0f, 1.0f, [&](float y) { return nodeAtPoint({0.0f, y}, node, true); }));
    QVERIFY(nodeAtPoint({19.0f, -201.0f}, node, true));
    QVERIFY(!nodeAtPoint({20.0f, -201.0f}, node, true));
}

void ElementHitsTest::doesNotCountTheSidesOfALabel()
{
    NodeData node;
    setLabel(node, 301, 41);

    // The centre hangs 20 below the icon, half the height in whole units, while width and height halve to 150.5 and
    // 20.5.
    const QVector2D centre(0.0f, -148.0f);
    QVERIFY(beginsBeyond(150.5f, -1.0f, [&](float x) { return nodeAtPoint({x, centre.y()}, node, true); }));
    QVERIFY(beginsBeyond(-150.5f, 1.0f, [&](float x) { return nodeAtPoint({x, centre.y()}, node, true); }));
    QVERIFY(beginsBeyond(-168.5f, 1.0f, [&](float y) { return nodeAtPoint({0.0f, y}, node, true); }));
    QVERIFY(beginsBeyond(-127.5f, -1.0f, [&](float y) { return nodeAtPoint({140.0f, y}, node, true); }));
}

void ElementHitsTest::takesTheSetNumbersForTheLabelWithoutNodeText()
{
    NodeData node;
    setLabel(node, 300, 40);
    QVERIFY(nodeAtPoint({140.0f, -148.0f}, node, true));
    QVERIFY(!nodeAtPoint({140.0f, -148.0f}, node, false));

    setSetNumbers(node, 500, 100);
    QVERIFY(nodeAtPoint({249.0f, -227.0f}, node, false));
    QVERIFY(!nodeAtPoint({250.0f, -227.0f}, node, false));
    QVERIFY(!nodeAtPoint({249.0f, -228.0f}, node, false));
    QVERIFY(!nodeAtPoint({249.0f, -227.0f}, node, true));
}

void ElementHitsTest::hitsNothingOfANodeWithoutLabelBelowIt()
{
    const NodeData node;
    for (const float y : {-128.0f, std::nextafter(-128.0f, -129.0f), -129.0f}) {
        QVERIFY(!nodeAtPoint({0.0f, y}, node, true));
        QVERIFY(!nodeAtPoint({0.0f, y}, node, false));
    }
}

namespace
{

/// nodeAtPoint() by squares and doubled lengths, all of them exact.
bool expectedAtPoint(QVector2D point, const NodeData& node, bool nodeTextShow)
{
    const double x = std::abs(double(point.x()) - double(node.x));
    const double y = double(point.y()) - double(node.y);
    const int radius = node.circleDiameter / 2;
    const int side = node.width / 2;
    if (node.circleShow ? x * x + y * y <= radius * radius : x < side && std::abs(y) < side)
        return true;

    const int width = nodeTextShow ? node.labelWidth : node.setNumWidth;
    const int height = nodeTextShow ? node.labelHeight : node.setNumHeight;
    const int labelCentre = -(node.circleShow ? radius : side) - height / 2;
    return 2.0 * x < width && 2.0 * std::abs(y - labelCentre) < height;
}

} // namespace

void ElementHitsTest::agreesWithExactArithmeticOnNodesAtPoints()
{
    Random random;
    Answers answers;
    for (int i = 0; i < 20000; ++i) {
        NodeData node;
        randomizeBody(node, random);
        const QVector2D point = random.point(400);
        const bool nodeTextShow = random.flag();
        const bool expected = expectedAtPoint(point, node, nodeTextShow);
        QCOMPARE(nodeAtPoint(point, node, nodeTextShow), expected);
        answers.count(expected);
    }
    QVERIFY(answers.bothAtLeast(2000));
}

void ElementHitsTest::doesNotCountFramesThatOnlyTouchTheIcon()
{
    NodeData node;
    place(node, 1000.0f, 500.0f);
    const Frame around{0.0f, 2000.0f, 2000.0f, 0.0f};
    QVERIFY(nodeHit(node, around));
    const std::array<SideLimit, 4> limits{SideLimit{&Frame::left, 1128.0f, -1.0f},
                                          SideLimit{&Frame::right, 872.0f, 1.0f}, SideLimit{&Frame::top, 372.0f, 1.0f},
                                          SideLimit{&Frame::bottom, 628.0f, -1.0f}};
    for (const SideLimit& side : limits) {
        QVERIFY(beginsBeyond(side.limit, side.inward,
                             [&](float value) { return nodeHit(node, around.with(side.side, value)); }));
    }
}

void ElementHitsTest::measuresAFrameAgainstTheCircleWhereThatIsOn()
{
    NodeData node;
    showCircle(node, 362);
    const Frame around{-1000.0f, 1000.0f, 1000.0f, -1000.0f};
    const std::array<SideLimit, 4> limits{
        SideLimit{&Frame::left, 181.0f, -1.0f}, SideLimit{&Frame::right, -181.0f, 1.0f},
        SideLimit{&Frame::top, -181.0f, 1.0f}, SideLimit{&Frame::bottom, 181.0f, -1.0f}};
    for (const SideLimit& side : limits) {
        QVERIFY(beginsBeyond(side.limit, side.inward,
                             [&](float value) { return nodeHit(node, around.with(side.side, value)); }));
    }

    // A frame is held against the box of the circle, corners included.
    QVERIFY(nodeHit(node, {170.0f, 1000.0f, 1000.0f, 170.0f}));
}

void ElementHitsTest::halvesBodiesInWholeUnitsForFrames()
{
    NodeData node;
    node.resize(0.0f);
    const Frame around{-1000.0f, 1000.0f, 1000.0f, -1000.0f};
    const auto hitWithRight = [&](float right) { return nodeHit(node, around.with(&Frame::right, right)); };

    QCOMPARE(node.width, 25);
    QVERIFY(beginsBeyond(-12.0f, 1.0f, hitWithRight));
    node.circleShow = true;
    QCOMPARE(node.circleDiameter, 35);
    QVERIFY(beginsBeyond(-17.0f, 1.0f, hitWithRight));
}

void ElementHitsTest::doesNotCountFramesThatOnlyTouchTheLabel()
{
    NodeData node;
    setLabel(node, 301, 41);

    // Below the icon, which ends at y = -128. The width halves in whole units; the height is taken whole.
    const Frame below{-1000.0f, -128.0f, 1000.0f, -1000.0f};
    QVERIFY(nodeHit(node, below));
    const std::array<SideLimit, 3> limits{SideLimit{&Frame::left, 150.0f, -1.0f},
                                          SideLimit{&Frame::right, -150.0f, 1.0f},
                                          SideLimit{&Frame::top, -169.0f, 1.0f}};
    for (const SideLimit& side : limits) {
        QVERIFY(beginsBeyond(side.limit, side.inward,
                             [&](float value) { return nodeHit(node, below.with(side.side, value)); }));
    }

    // To the right of the icon, where the label alone stands out.
    const Frame beside{130.0f, 1000.0f, 1000.0f, -1000.0f};
    QVERIFY(
        beginsBeyond(-128.0f, -1.0f, [&](float bottom) { return nodeHit(node, beside.with(&Frame::bottom, bottom)); }));

    // Below a circle, which ends at y = -181.
    showCircle(node, 362);
    QVERIFY(beginsBeyond(-222.0f, 1.0f, [&](float top) { return nodeHit(node, below.with(&Frame::top, top)); }));
}

void ElementHitsTest::measuresAFrameAgainstTheSetNumbersWithoutNodeText()
{
    NodeData node;
    setLabel(node, 300, 40);
    const Frame onLabel{-10.0f, -140.0f, 10.0f, -160.0f};
    QVERIFY(nodeHit(node, onLabel, true));
    QVERIFY(!nodeHit(node, onLabel, false));

    setSetNumbers(node, 500, 100);
    const Frame onSetNumbers{240.0f, -210.0f, 260.0f, -220.0f};
    QVERIFY(nodeHit(node, onSetNumbers, false));
    QVERIFY(!nodeHit(node, onSetNumbers, true));
    QVERIFY(!nodeHit(node, onSetNumbers.with(&Frame::left, 250.0f), false));
    QVERIFY(!nodeHit(node, onSetNumbers.with(&Frame::top, -228.0f), false));
}

void ElementHitsTest::takesFramesWithoutExtent()
{
    NodeData node;
    QVERIFY(nodeHit(node, {50.0f, 50.0f, 50.0f, 50.0f}));
    QVERIFY(nodeHit(node, {-300.0f, 50.0f, 300.0f, 50.0f}));
    QVERIFY(nodeHit(node, {50.0f, 300.0f, 50.0f, -300.0f}));
    QVERIFY(!nodeHit(node, {128.0f, 300.0f, 128.0f, -300.0f}));
    QVERIFY(!nodeHit(node, {128.0f, 0.0f, 128.0f, 0.0f}));

    setLabel(node, 20, 40);
    QVERIFY(nodeHit(node, {0.0f, -148.0f, 0.0f, -148.0f}));
    QVERIFY(!nodeHit(node, {0.0f, -168.0f, 0.0f, -168.0f}));
}

namespace
{

/// Whether two stretches have more than a point in common, or one, a point, lies inside the other.
bool overlap(double least1, double greatest1, double least2, double greatest2)
{
    return greatest1 > least2 && greatest2 > least1;
}

bool expectedInFrame(Frame frame, const NodeData& node, bool nodeTextShow)
{
    const double x = node.x;
    const double y = node.y;
    const int half = (node.circleShow ? node.circleDiameter : node.width) / 2;
    if (overlap(x - half, x + half, frame.left, frame.right) && overlap(y - half, y + half, frame.bottom, frame.top))
        return true;

    const int halfWidth = (nodeTextShow ? node.labelWidth : node.setNumWidth) / 2;
    const int height = nodeTextShow ? node.labelHeight : node.setNumHeight;
    return overlap(x - halfWidth, x + halfWidth, frame.left, frame.right) &&
           overlap(y - half - height, y - half, frame.bottom, frame.top);
}

Frame randomFrame(Random& random)
{
    const float left = random.quarter(-600, 600);
    const float bottom = random.quarter(-600, 600);
    const float right = left + random.quarter(0, 400);
    return {left, bottom + random.quarter(0, 400), right, bottom};
}

} // namespace

void ElementHitsTest::agreesWithExactArithmeticOnNodesInFrames()
{
    Random random;
    Answers answers;
    for (int i = 0; i < 20000; ++i) {
        NodeData node;
        randomizeBody(node, random);
        const Frame frame = randomFrame(random);
        const bool nodeTextShow = random.flag();
        const bool expected = expectedInFrame(frame, node, nodeTextShow);
        QCOMPARE(nodeHit(node, frame, nodeTextShow), expected);
        answers.count(expected);
    }
    QVERIFY(answers.bothAtLeast(2000));
}

void ElementHitsTest::hitsARingOnItsBandOnly()
{
    const RingAtOrigin ring;
    QCOMPARE(ring.edge.startPos.x(), 0.0f);
    QCOMPARE(ring.edge.startPos.y(), 0.0f);
    const auto hitAt = [&](float x) { return edgeNearPoint({x, 0.0f}, ring.edge, 4); };

    // The radius is 181: outward the tolerance of 4 is added, inward it is taken off together with the width.
    QVERIFY(beginsBeyond(185.0f, -1.0f, hitAt));
    QVERIFY(beginsBeyond(169.0f, 1.0f, hitAt));
    QVERIFY(beginsBeyond(-185.0f, 1.0f, hitAt));
    QVERIFY(!hitAt(0.0f));
    QVERIFY(!edgeNearPoint({0.0f, -100.0f}, ring.edge, 4));
    QVERIFY(edgeNearPoint({0.0f, -181.0f}, ring.edge, 1)); // the node's centre, on the very rim
    QVERIFY(!edgeNearPoint({0.0f, -181.0f}, ring.edge, 0));

    RingAtOrigin broad;
    broad.edge.edgeWidth = 20;
    QVERIFY(beginsBeyond(157.0f, 1.0f, [&](float y) { return edgeNearPoint({0.0f, y}, broad.edge, 4); }));
    QVERIFY(beginsBeyond(185.0f, -1.0f, [&](float y) { return edgeNearPoint({0.0f, y}, broad.edge, 4); }));
}

void ElementHitsTest::halvesTheRingDiameterInWholeUnits()
{
    RingAtOrigin ring;
    ring.edge.ringDiameter = 363;
    QVERIFY(beginsBeyond(181.0f, -1.0f, [&](float x) { return edgeNearPoint({x, 0.0f}, ring.edge, 0); }));
    QVERIFY(beginsBeyond(173.0f, 1.0f, [&](float x) { return edgeNearPoint({x, 0.0f}, ring.edge, 0); }));
}

void ElementHitsTest::fillsTheHoleOfARingThatIsNarrowerThanTheTolerance()
{
    RingAtOrigin ring;
    ring.edge.ringDiameter = 35;
    QVERIFY(!edgeNearPoint({0.0f, 0.0f}, ring.edge, 8));
    QVERIFY(!edgeNearPoint({0.0f, 0.0f}, ring.edge, 9));
    QVERIFY(edgeNearPoint({std::numeric_limits<float>::denorm_min(), 0.0f}, ring.edge, 9));
    QVERIFY(edgeNearPoint({0.0f, 0.0f}, ring.edge, 10));
}

void ElementHitsTest::meetsTheRimsOfABigRingExactly_data()
{
    QTest::addColumn<QVector2D>("fromCentre");
    QTest::addColumn<bool>("hit");

    // The band reaches from 5072 to 5080, neither included.
    QTest::newRow("5071") << QVector2D(4180.0f, 2871.0f) << false;
    QTest::newRow("5072") << QVector2D(-4928.0f, 1200.0f) << false;
    QTest::newRow("5072 and a trifle") << QVector2D(5072.0f, 1.0f) << true;
    QTest::newRow("5073") << QVector2D(4560.0f, -2223.0f) << true;
    QTest::newRow("5079") << QVector2D(3996.0f, 3135.0f) << true;
    QTest::newRow("5080") << QVector2D(-4064.0f, -3048.0f) << false;
    QTest::newRow("5081") << QVector2D(4720.0f, 1881.0f) << false;
}

void ElementHitsTest::meetsTheRimsOfABigRingExactly()
{
    QFETCH(QVector2D, fromCentre);
    QFETCH(bool, hit);

    RingAtOrigin ring;
    ring.edge.ringDiameter = 10160;
    QCOMPARE(edgeNearPoint(fromCentre, ring.edge, 0), hit);
    ring.edge.startPos = {1000001.0f, -250000.0f};
    QCOMPARE(edgeNearPoint(ring.edge.startPos + fromCentre, ring.edge, 0), hit);
}

void ElementHitsTest::ignoresARightAngleOnARing()
{
    RingAtOrigin ring;
    ring.edge.rightAngle = true;
    rebuildShape(ring.edge);
    QVERIFY(edgeNearPoint({180.0f, 0.0f}, ring.edge, 0));
    QVERIFY(!edgeNearPoint({0.0f, 0.0f}, ring.edge, 0));
    QVERIFY(edgeHit(ring.edge, {-10.0f, 190.0f, 10.0f, 170.0f}));
    QVERIFY(!edgeHit(ring.edge, {-10.0f, 10.0f, 10.0f, -10.0f}));
}

void ElementHitsTest::hitsAStraightEdgeNearerThanItsWidth()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    EdgeData edge(ends.start, ends.end);
    QVERIFY(beginsBeyond(12.0f, -1.0f, [&](float y) { return edgeNearPoint({500.0f, y}, edge, 4); }));
    QVERIFY(beginsBeyond(-12.0f, 1.0f, [&](float y) { return edgeNearPoint({500.0f, y}, edge, 4); }));
    QVERIFY(beginsBeyond(8.0f, -1.0f, [&](float y) { return edgeNearPoint({500.0f, y}, edge, 0); }));

    edge.edgeWidth = 21;
    QVERIFY(beginsBeyond(25.0f, -1.0f, [&](float y) { return edgeNearPoint({500.0f, y}, edge, 4); }));
}

void ElementHitsTest::hitsAStraightEdgeFromCentreToCentre()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    const EdgeData edge(ends.start, ends.end);
    for (const float y : {0.0f, 5.0f, -11.0f}) {
        QVERIFY(beginsAt(0.0f, 1.0f, [&](float x) { return edgeNearPoint({x, y}, edge, 4); }));
        QVERIFY(beginsAt(1000.0f, -1.0f, [&](float x) { return edgeNearPoint({x, y}, edge, 4); }));
    }
}

void ElementHitsTest::hitsASlantingEdgeOnEitherSide()
{
    Ends ends({1000.0f, 0.0f}, {1600.0f, 800.0f});
    const EdgeData edge(ends.start, ends.end);

    // (0.6, 0.8) along the edge and (-0.8, 0.6) across it; the reach is 10.
    const QVector2D along(0.6f, 0.8f);
    const QVector2D across(-0.8f, 0.6f);
    const auto hitAt = [&](float way, float off) {
        return edgeNearPoint(QVector2D(1000.0f, 0.0f) + way * along + off * across, edge, 2);
    };
    for (const float way : {1.0f, 100.0f, 500.0f, 999.0f}) {
        for (const float side : {1.0f, -1.0f}) {
            QVERIFY(hitAt(way, side * 9.0f));
            QVERIFY(!hitAt(way, side * 11.0f));
        }
    }
    for (const float off : {0.0f, 5.0f, -5.0f}) {
        QVERIFY(!hitAt(-1.0f, off));
        QVERIFY(!hitAt(1001.0f, off));
    }
}

void ElementHitsTest::hitsARightAngledEdgeOnItsPieces_data()
{
    QTest::addColumn<QVector2D>("start");
    QTest::addColumn<QVector2D>("end");

    QTest::newRow("from the upper end") << QVector2D(0.0f, 0.0f) << QVector2D(800.0f, -1000.0f);
    QTest::newRow("from the lower end") << QVector2D(800.0f, -1000.0f) << QVector2D(0.0f, 0.0f);
}

void ElementHitsTest::hitsARightAngledEdgeOnItsPieces()
{
    QFETCH(QVector2D, start);
    QFETCH(QVector2D, end);

    Ends ends(start, end);
    EdgeData edge(ends.start, ends.end);
    edge.rightAngle = true;
    rebuildShape(edge);

    // Down to y = -250 at x = 0, over to x = 800, and down again.
    QVERIFY(beginsBeyond(12.0f, -1.0f, [&](float x) { return edgeNearPoint({x, -100.0f}, edge, 4); }));
    QVERIFY(beginsBeyond(-12.0f, 1.0f, [&](float x) { return edgeNearPoint({x, -100.0f}, edge, 4); }));
    QVERIFY(beginsBeyond(-238.0f, -1.0f, [&](float y) { return edgeNearPoint({400.0f, y}, edge, 4); }));
    QVERIFY(beginsBeyond(-262.0f, 1.0f, [&](float y) { return edgeNearPoint({400.0f, y}, edge, 4); }));
    QVERIFY(beginsBeyond(812.0f, -1.0f, [&](float x) { return edgeNearPoint({x, -700.0f}, edge, 4); }));
    QVERIFY(beginsAt(0.0f, -1.0f, [&](float y) { return edgeNearPoint({0.0f, y}, edge, 4); }));
    QVERIFY(beginsAt(-1000.0f, 1.0f, [&](float y) { return edgeNearPoint({800.0f, y}, edge, 4); }));

    QVERIFY(!edgeNearPoint({400.0f, -500.0f}, edge, 4)); // straight between the nodes
    QVERIFY(!edgeNearPoint({0.0f, -700.0f}, edge, 4));   // where the mirrored shape would run
    QVERIFY(!edgeNearPoint({800.0f, -100.0f}, edge, 4));
    QVERIFY(!edgeNearPoint({400.0f, -750.0f}, edge, 4));
}

void ElementHitsTest::hitsALevelRightAngledEdge()
{
    Ends ends({0.0f, 0.0f}, {800.0f, 0.0f});
    EdgeData edge(ends.start, ends.end);
    edge.rightAngle = true;
    rebuildShape(edge);

    QVERIFY(beginsBeyond(12.0f, -1.0f, [&](float y) { return edgeNearPoint({400.0f, y}, edge, 4); }));
    // The vertical pieces have shrunk to points, which are near all around.
    QVERIFY(beginsBeyond(-12.0f, 1.0f, [&](float x) { return edgeNearPoint({x, 0.0f}, edge, 4); }));
    QVERIFY(beginsBeyond(812.0f, -1.0f, [&](float x) { return edgeNearPoint({x, 0.0f}, edge, 4); }));
}

void ElementHitsTest::hitsAParallelEdgeOnItsTrack()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    EdgeData base(ends.start, ends.end);
    const EdgeData right(base, 1);
    const EdgeData left(base, 2);

    QVERIFY(beginsBeyond(-116.0f, -1.0f, [&](float y) { return edgeNearPoint({500.0f, y}, right, 4); }));
    QVERIFY(beginsBeyond(-140.0f, 1.0f, [&](float y) { return edgeNearPoint({500.0f, y}, right, 4); }));
    QVERIFY(beginsBeyond(116.0f, 1.0f, [&](float y) { return edgeNearPoint({500.0f, y}, left, 4); }));
    QVERIFY(edgeNearPoint({64.0f, -64.0f}, right, 4)); // the way out and the way back
    QVERIFY(edgeNearPoint({936.0f, -64.0f}, right, 4));
    QVERIFY(!edgeNearPoint({64.0f, 64.0f}, right, 4));
    QVERIFY(!edgeNearPoint({500.0f, 0.0f}, right, 4));
    QVERIFY(!edgeNearPoint({500.0f, 128.0f}, right, 4));
    QVERIFY(!edgeNearPoint({500.0f, -128.0f}, base, 4));
}

void ElementHitsTest::hitsAnEdgeThatOutlivedItsBaseOnItsTrack()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    EdgeData base(ends.start, ends.end);
    EdgeData derived(base, 1);
    derived.baseEdge = nullptr;

    QVERIFY(edgeNearPoint({500.0f, -128.0f}, derived, 4));
    QVERIFY(!edgeNearPoint({500.0f, 0.0f}, derived, 4));
    QVERIFY(edgeHit(derived, {400.0f, -120.0f, 600.0f, -140.0f}));
    QVERIFY(!edgeHit(derived, {400.0f, 10.0f, 600.0f, -10.0f}));
}

void ElementHitsTest::drawsARightAngleBeforeATrack()
{
    Ends ends({0.0f, 0.0f}, {800.0f, -1000.0f});
    EdgeData base(ends.start, ends.end);
    EdgeData derived(base, 2);
    derived.rightAngle = true;
    rebuildShape(derived);
    QVERIFY(edgeNearPoint({400.0f, -250.0f}, derived, 4));

    // With the pieces walked from the lower end, the way to the nearer corner would be a slanting one.
    Ends upward({800.0f, -1000.0f}, {0.0f, 0.0f});
    EdgeData upwardBase(upward.start, upward.end);
    EdgeData upwardDerived(upwardBase, 2);
    upwardDerived.rightAngle = true;
    rebuildShape(upwardDerived);
    QVERIFY(edgeNearPoint({0.0f, -100.0f}, upwardDerived, 4));
    QVERIFY(edgeHit(upwardDerived, {-10.0f, -90.0f, 10.0f, -110.0f}));
}

void ElementHitsTest::reachesAsFarAsTheLargestTolerance()
{
    constexpr int largest = std::numeric_limits<int>::max();
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    const EdgeData edge(ends.start, ends.end);
    QVERIFY(edgeNearPoint({500.0f, 1.0e6f}, edge, largest));
    QVERIFY(!edgeNearPoint({500.0f, 3.0e9f}, edge, largest));

    const RingAtOrigin ring;
    QVERIFY(edgeNearPoint({0.0f, 1.0e6f}, ring.edge, largest));
    QVERIFY(edgeNearPoint({0.0f, 0.0f}, ring.edge, largest));
    QVERIFY(!edgeNearPoint({0.0f, 3.0e9f}, ring.edge, largest));
}

namespace
{

/// Where a point lies from a piece of an edge: along it from its start, and off it to either side.
struct PlaceAtPiece
{
    PlaceAtPiece(QVector2D start, QVector2D end, QVector2D point)
    {
        const double dx = double(end.x()) - double(start.x());
        const double dy = double(end.y()) - double(start.y());
        const double px = double(point.x()) - double(start.x());
        const double py = double(point.y()) - double(start.y());
        length = std::hypot(dx, dy);
        fromStart = std::hypot(px, py);
        isPoint = std::abs(dx) + std::abs(dy) < 2.0;
        along = (px * dx + py * dy) / length;
        off = std::abs(px * dy - py * dx) / length;
        atCorner = px * (px - dx) > 0.0 && py * (py - dy) > 0.0;
    }

    bool isNear(double reach) const
    {
        if (isPoint)
            return fromStart < reach;
        return !atCorner && off < reach && along >= 0.0 && along <= length;
    }

    /// Whether floats may well give the other answer.
    bool isClose(double reach) const
    {
        constexpr double margin = 0.25;
        if (isPoint)
            return std::abs(fromStart - reach) < margin;
        const double beyond = std::min(std::abs(along), std::abs(along - length));
        return std::abs(off - reach) < margin || (off < reach + margin && beyond < margin);
    }

    double length, fromStart, along, off;
    bool isPoint, atCorner;
};

using Pieces = std::vector<std::pair<QVector2D, QVector2D>>;

Pieces piecesOf(const EdgeData& edge)
{
    if (edge.index == 0 && !edge.rightAngle)
        return {{edge.startPos, edge.endPos}};
    const bool startIsUpper = edge.startPos.y() >= edge.endPos.y();
    const QVector2D first = edge.rightAngle && !startIsUpper ? edge.endPos : edge.startPos;
    const QVector2D last = edge.rightAngle && !startIsUpper ? edge.startPos : edge.endPos;
    return {{first, edge.curveStartPos}, {edge.curveStartPos, edge.curveEndPos}, {edge.curveEndPos, last}};
}

/// A base edge and an edge derived from it, either of them right-angled or not.
struct RandomEdges
{
    explicit RandomEdges(Random& random)
        : ends(random.point(1000), random.point(1000)), base(ends.start, ends.end), derived(base, random.whole(1, 5))
    {
        for (EdgeData* edge : {&base, &derived}) {
            edge->rightAngle = random.flag();
            edge->edgeWidth = random.whole(8, 60);
            rebuildShape(*edge);
        }
    }

    const EdgeData& any(Random& random) const { return random.flag() ? base : derived; }

    Ends ends;
    EdgeData base;
    EdgeData derived;
};

/// A point on one of the pieces or around it.
QVector2D pointNear(const Pieces& pieces, Random& random)
{
    const auto& [start, end] = pieces[size_t(random.whole(0, int(pieces.size()) - 1))];
    return start + (end - start) * random.quarter(-1, 2) + random.point(60);
}

} // namespace

void ElementHitsTest::agreesWithDoublePrecisionOnEdgesNearPoints()
{
    Random random;
    Answers answers;
    for (int i = 0; i < 20000; ++i) {
        const RandomEdges edges(random);
        const EdgeData& edge = edges.any(random);
        const int tolerance = random.whole(0, 20);
        const double reach = edge.edgeWidth + tolerance;
        const Pieces pieces = piecesOf(edge);
        const QVector2D point = pointNear(pieces, random);

        bool expected = false;
        bool close = false;
        for (const auto& [start, end] : pieces) {
            const PlaceAtPiece place(start, end, point);
            expected = expected || place.isNear(reach);
            close = close || place.isClose(reach);
        }
        if (close)
            continue;
        QCOMPARE(edgeNearPoint(point, edge, tolerance), expected);
        answers.count(expected);
    }
    QVERIFY(answers.bothAtLeast(4000));
}

void ElementHitsTest::hitsARingWhoseRimParts_data()
{
    QTest::addColumn<float>("left");
    QTest::addColumn<float>("top");
    QTest::addColumn<float>("right");
    QTest::addColumn<float>("bottom");

    // No extreme point of the ring lies in any of these, and neither top nor left side passes over its middle.
    QTest::newRow("left top inside") << 100.0f << -100.0f << 300.0f << -300.0f;
    QTest::newRow("right top inside") << -300.0f << -100.0f << -100.0f << -300.0f;
    QTest::newRow("right bottom inside") << -300.0f << 300.0f << -100.0f << 100.0f;
    QTest::newRow("left bottom inside") << 100.0f << 300.0f << 300.0f << 100.0f;
    QTest::newRow("left top outside") << -150.0f << 150.0f << -10.0f << 10.0f;
    QTest::newRow("right top outside") << 10.0f << 150.0f << 150.0f << 10.0f;
    QTest::newRow("right bottom outside") << 10.0f << -10.0f << 150.0f << -150.0f;
    QTest::newRow("left bottom outside") << -150.0f << -10.0f << -10.0f << -150.0f;
}

void ElementHitsTest::hitsARingWhoseRimParts()
{
    QFETCH(float, left);
    QFETCH(float, top);
    QFETCH(float, right);
    QFETCH(float, bottom);

    const RingAtOrigin ring;
    QVERIFY(edgeHit(ring.edge, {left, top, right, bottom}));
}

void ElementHitsTest::doesNotCountTheRimOfTheRingAsItsInside()
{
    // Outside with half the width the ring reaches 185 from its centre, so that is where a corner comes inside.
    RingAtOrigin ring;
    const Frame toTheLeft{-400.0f, 300.0f, -185.0f, 0.0f};
    const auto hitWithRight = [&](float right) { return edgeHit(ring.edge, toTheLeft.with(&Frame::right, right)); };
    QVERIFY(beginsBeyond(-185.0f, 1.0f, hitWithRight));

    ring.edge.edgeWidth = 9; // 371 / 2, in whole units
    QVERIFY(beginsBeyond(-185.0f, 1.0f, hitWithRight));
    ring.edge.edgeWidth = 10;
    QVERIFY(beginsBeyond(-186.0f, 1.0f, hitWithRight));
    ring.edge.ringDiameter = 363;
    QVERIFY(beginsBeyond(-186.0f, 1.0f, hitWithRight));
}

void ElementHitsTest::hitsARingWithAnExtremePointInTheFrame()
{
    // The box of the ring without its width: all corners lie outside, and no extreme point is strictly inside.
    RingAtOrigin ring;
    const Frame box{-181.0f, 181.0f, 181.0f, -181.0f};
    QVERIFY(!edgeHit(ring.edge, box));
    const std::array<SideLimit, 4> limits{SideLimit{&Frame::left, -181.0f, -1.0f}, SideLimit{&Frame::top, 181.0f, 1.0f},
                                          SideLimit{&Frame::right, 181.0f, 1.0f},
                                          SideLimit{&Frame::bottom, -181.0f, -1.0f}};
    for (const SideLimit& side : limits) {
        QVERIFY(edgeHit(ring.edge, box.with(side.side, side.limit + side.inward)));
        QVERIFY(edgeHit(ring.edge, box.with(side.side, std::nextafter(side.limit, side.limit + side.inward))));
    }

    // With all corners inside: a small frame on the band.
    QVERIFY(edgeHit(ring.edge, {-5.0f, 183.0f, 5.0f, 179.0f}));
    QVERIFY(!edgeHit(ring.edge, {-5.0f, 181.0f, 5.0f, 179.0f}));

    ring.edge.ringDiameter = 363; // the extreme points stay where they are
    QVERIFY(!edgeHit(ring.edge, box));
    QVERIFY(edgeHit(ring.edge, box.with(&Frame::top, 181.25f)));
}

void ElementHitsTest::hitsARingUnderTheTopSideOfTheFrame()
{
    // Frames without height: no corner is inside and no extreme point can be.
    const RingAtOrigin ring;
    const auto hitWithTop = [&](float top) { return edgeHit(ring.edge, {-300.0f, top, 300.0f, top}); };
    QVERIFY(beginsBeyond(-181.0f, 1.0f, hitWithTop));
    QVERIFY(beginsBeyond(181.0f, -1.0f, hitWithTop));
    QVERIFY(hitWithTop(0.0f));
    QVERIFY(hitWithTop(100.0f));
    QVERIFY(!hitWithTop(183.0f)); // over the outer curve alone

    QVERIFY(!edgeHit(ring.edge, {-300.0f, 100.0f, -200.0f, 99.0f}));
    QVERIFY(!edgeHit(ring.edge, {200.0f, 100.0f, 300.0f, 99.0f}));
}

void ElementHitsTest::hitsARingUnderTheLeftSideOfTheFrame()
{
    const RingAtOrigin ring;
    const auto hitWithLeft = [&](float left) { return edgeHit(ring.edge, {left, 300.0f, left, -300.0f}); };
    QVERIFY(beginsBeyond(-181.0f, 1.0f, hitWithLeft));
    QVERIFY(beginsBeyond(181.0f, -1.0f, hitWithLeft));
    QVERIFY(hitWithLeft(0.0f));
    QVERIFY(hitWithLeft(100.0f));
    QVERIFY(!hitWithLeft(-183.0f));

    QVERIFY(!edgeHit(ring.edge, {100.0f, 300.0f, 101.0f, 200.0f}));
    QVERIFY(!edgeHit(ring.edge, {100.0f, -200.0f, 101.0f, -300.0f}));
}

void ElementHitsTest::missesARingUnderTheBottomOrRightSideOfTheFrame()
{
    const RingAtOrigin ring;
    QVERIFY(!edgeHit(ring.edge, {-300.0f, 181.0f, 300.0f, 100.0f}));
    QVERIFY(edgeHit(ring.edge, {-300.0f, -100.0f, 300.0f, -181.0f})); // its mirror image
    QVERIFY(!edgeHit(ring.edge, {-181.0f, 300.0f, -100.0f, -300.0f}));
    QVERIFY(edgeHit(ring.edge, {100.0f, 300.0f, 181.0f, -300.0f}));

    // Only the outer curve, beyond the extreme points.
    QVERIFY(!edgeHit(ring.edge, {-300.0f, 300.0f, 300.0f, 183.0f}));
    QVERIFY(!edgeHit(ring.edge, {-300.0f, 300.0f, -183.0f, -300.0f}));
}

void ElementHitsTest::missesARingAroundTheFrame()
{
    const RingAtOrigin ring;
    QVERIFY(!edgeHit(ring.edge, {-50.0f, 50.0f, 50.0f, -50.0f}));
    QVERIFY(!edgeHit(ring.edge, {-120.0f, 120.0f, 120.0f, -120.0f}));
    QVERIFY(!edgeHit(ring.edge, {10.0f, 10.0f, 10.0f, 10.0f}));
    QVERIFY(!edgeHit(ring.edge, {-100.0f, 10.0f, 100.0f, 10.0f}));
}

void ElementHitsTest::meetsTheOuterRimOfABigRingExactlyWithAFrame()
{
    // With half the width the ring reaches 5080 from its centre.
    RingAtOrigin ring;
    ring.edge.ringDiameter = 10152;
    QVERIFY(edgeHit(ring.edge, {-9000.0f, 9000.0f, -3996.0f, 3135.0f}));  // to 5079
    QVERIFY(!edgeHit(ring.edge, {-9000.0f, 9000.0f, -4064.0f, 3048.0f})); // to 5080
    QVERIFY(!edgeHit(ring.edge, {-9000.0f, 9000.0f, -4720.0f, 1881.0f})); // to 5081

    ring.edge.ringDiameter = 10078;
    QVERIFY(edgeHit(ring.edge, {-9000.0f, 9000.0f, -4222.0f, 2758.0f})); // 5043, less a trifle
}

namespace
{

/// edgeInFrame() of a ring by squares, all of them exact.
bool expectedRingInFrame(Frame frame, const EdgeData& ring)
{
    const double left = double(frame.left) - double(ring.startPos.x());
    const double right = double(frame.right) - double(ring.startPos.x());
    const double top = double(frame.top) - double(ring.startPos.y());
    const double bottom = double(frame.bottom) - double(ring.startPos.y());
    const int reach = (ring.ringDiameter + ring.edgeWidth) / 2;
    const int radius = ring.ringDiameter / 2;

    const auto inside = [&](double x, double y) { return x * x + y * y < reach * reach; };
    const int cornersInside = inside(left, top) + inside(right, top) + inside(right, bottom) + inside(left, bottom);
    if (cornersInside != 0 && cornersInside != 4)
        return true;

    const auto framed = [&](double x, double y) { return left < x && x < right && bottom < y && y < top; };
    if (framed(0.0, radius) || framed(0.0, -radius) || framed(radius, 0.0) || framed(-radius, 0.0))
        return true;

    const bool topOver = left < 0.0 && 0.0 < right && -radius < top && top < radius;
    const bool leftOver = bottom < 0.0 && 0.0 < top && -radius < left && left < radius;
    return cornersInside == 0 && (topOver || leftOver);
}

} // namespace

void ElementHitsTest::agreesWithExactArithmeticOnRingsInFrames()
{
    Random random;
    Answers answers;
    for (int i = 0; i < 20000; ++i) {
        RingAtOrigin ring;
        ring.edge.startPos = random.point(200);
        ring.edge.ringDiameter = random.whole(30, 700);
        ring.edge.edgeWidth = random.whole(8, 60);
        const Frame frame = randomFrame(random);
        const bool expected = expectedRingInFrame(frame, ring.edge);
        QCOMPARE(edgeHit(ring.edge, frame), expected);
        answers.count(expected);
    }
    QVERIFY(answers.bothAtLeast(4000));
}

void ElementHitsTest::hitsAnEdgeThatCrossesTheFrame()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    const EdgeData edge(ends.start, ends.end);
    QVERIFY(edgeHit(edge, {-100.0f, 100.0f, 1100.0f, -100.0f})); // both ends inside
    QVERIFY(edgeHit(edge, {-100.0f, 100.0f, 500.0f, -100.0f}));  // one
    QVERIFY(edgeHit(edge, {400.0f, 100.0f, 500.0f, -100.0f}));   // none
    QVERIFY(edgeHit(edge, {0.0f, 100.0f, 1000.0f, -100.0f}));    // both on the rim
    QVERIFY(edgeHit(edge, {400.0f, 100.0f, 400.0f, -100.0f}));   // a frame of zero width
    QVERIFY(!edgeHit(edge, {400.0f, 100.0f, 500.0f, 2.0f}));
    QVERIFY(!edgeHit(edge, {400.0f, -2.0f, 500.0f, -100.0f}));
    QVERIFY(!edgeHit(edge, {1001.0f, 100.0f, 1100.0f, -100.0f}));
    QVERIFY(!edgeHit(edge, {-100.0f, 100.0f, -1.0f, -100.0f}));
}

void ElementHitsTest::measuresEdgesAndFramesInWholeUnits()
{
    Ends ends({0.0f, 0.9f}, {1000.0f, -0.9f});
    const EdgeData edge(ends.start, ends.end); // both ends are cut to y = 0
    QVERIFY(edgeHit(edge, {400.0f, 100.0f, 500.0f, 0.9f}));
    QVERIFY(!edgeHit(edge, {400.0f, 100.0f, 500.0f, 1.0f}));
    QVERIFY(edgeHit(edge, {400.0f, -0.9f, 500.0f, -100.0f}));
    QVERIFY(!edgeHit(edge, {400.0f, -1.0f, 500.0f, -100.0f}));
    QVERIFY(edgeHit(edge, {1000.9f, 100.0f, 1100.0f, -100.0f}));
    QVERIFY(!edgeHit(edge, {1001.0f, 100.0f, 1100.0f, -100.0f}));
}

void ElementHitsTest::hitsARightAngledEdgeInTheFrameByItsPieces_data()
{
    hitsARightAngledEdgeOnItsPieces_data();
}

void ElementHitsTest::hitsARightAngledEdgeInTheFrameByItsPieces()
{
    QFETCH(QVector2D, start);
    QFETCH(QVector2D, end);

    Ends ends(start, end);
    EdgeData edge(ends.start, ends.end);
    edge.rightAngle = true;
    rebuildShape(edge);

    QVERIFY(edgeHit(edge, {-10.0f, -90.0f, 10.0f, -110.0f}));
    QVERIFY(edgeHit(edge, {390.0f, -240.0f, 410.0f, -260.0f}));
    QVERIFY(edgeHit(edge, {790.0f, -690.0f, 810.0f, -710.0f}));
    QVERIFY(!edgeHit(edge, {390.0f, -490.0f, 410.0f, -510.0f}));
    QVERIFY(!edgeHit(edge, {-10.0f, -690.0f, 10.0f, -710.0f}));
    QVERIFY(!edgeHit(edge, {790.0f, -90.0f, 810.0f, -110.0f}));
}

void ElementHitsTest::hitsAParallelEdgeInTheFrameByItsTrack()
{
    Ends ends({0.0f, 0.0f}, {1000.0f, 0.0f});
    EdgeData base(ends.start, ends.end);
    const EdgeData right(base, 1);

    QVERIFY(edgeHit(right, {490.0f, -120.0f, 510.0f, -140.0f}));
    QVERIFY(edgeHit(right, {54.0f, -54.0f, 74.0f, -74.0f}));
    QVERIFY(edgeHit(right, {926.0f, -54.0f, 946.0f, -74.0f}));
    QVERIFY(!edgeHit(right, {490.0f, 10.0f, 510.0f, -10.0f}));
    QVERIFY(!edgeHit(right, {490.0f, 140.0f, 510.0f, 120.0f}));
    QVERIFY(!edgeHit(base, {490.0f, -120.0f, 510.0f, -140.0f}));
}

namespace
{

/// A point or frame corner in whole units.
struct WholePoint
{
    WholePoint(qint64 pointX, qint64 pointY) : x(pointX), y(pointY) {}
    explicit WholePoint(QVector2D point) : WholePoint(qint64(std::trunc(point.x())), qint64(std::trunc(point.y()))) {}

    qint64 x;
    qint64 y;
};

/// Whether the segment meets the line of all points with `x`, at a point that lies between `least` and `greatest`, all
/// ends included. A segment along that line meets it nowhere.
bool meetsUpright(WholePoint start, WholePoint end, qint64 x, qint64 least, qint64 greatest)
{
    if (start.x > end.x)
        std::swap(start, end);
    const qint64 dx = end.x - start.x;
    if (dx == 0 || x < start.x || x > end.x)
        return false;
    const qint64 y = start.y * dx + (end.y - start.y) * (x - start.x); // times dx
    return least * dx <= y && y <= greatest * dx;
}

bool expectedPieceInFrame(WholePoint leftTop, WholePoint rightBottom, WholePoint start, WholePoint end)
{
    const auto framed = [&](WholePoint point) {
        return leftTop.x <= point.x && point.x <= rightBottom.x && rightBottom.y <= point.y && point.y <= leftTop.y;
    };
    if (framed(start) && framed(end))
        return true;
    const auto turned = [](WholePoint point) { return WholePoint(point.y, point.x); };
    return meetsUpright(start, end, leftTop.x, rightBottom.y, leftTop.y) ||
           meetsUpright(start, end, rightBottom.x, rightBottom.y, leftTop.y) ||
           meetsUpright(turned(start), turned(end), leftTop.y, leftTop.x, rightBottom.x) ||
           meetsUpright(turned(start), turned(end), rightBottom.y, leftTop.x, rightBottom.x);
}

} // namespace

void ElementHitsTest::agreesWithIntegerArithmeticOnEdgesInFrames()
{
    Random random;
    Answers answers;
    for (int i = 0; i < 20000; ++i) {
        const RandomEdges edges(random);
        const EdgeData& edge = edges.any(random);
        const Pieces pieces = piecesOf(edge);
        const QVector2D leftTop = pointNear(pieces, random);
        // A frame one whole unit high is left out: as a QRect with y up it counts as empty.
        const QVector2D rightBottom = leftTop + QVector2D(random.quarter(0, 200), -random.quarter(2, 200));

        const bool expected = std::any_of(pieces.begin(), pieces.end(), [&](const auto& piece) {
            return expectedPieceInFrame(WholePoint(leftTop), WholePoint(rightBottom), WholePoint(piece.first),
                                        WholePoint(piece.second));
        });
        QCOMPARE(edgeInFrame(leftTop, rightBottom, edge), expected);
        answers.count(expected);
    }
    QVERIFY(answers.bothAtLeast(4000));
}

QTEST_APPLESS_MAIN(ElementHitsTest)

#include "ElementHitsTest.moc"
