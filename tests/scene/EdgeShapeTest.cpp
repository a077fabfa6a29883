#include "scene/EdgeShape.h"

#include "scene/EdgeData.h"
#include "scene/ModelMatrices.h"
#include "scene/NodeData.h"
#include "support/MatrixText.h"
#include "support/PointText.h"
#include "support/RandomPlane.h"
#include "support/ShapeDifferences.h"
#include "support/ShapeReference.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

using namespace NELK;

namespace
{

constexpr int largestInt = std::numeric_limits<int>::max();
constexpr float halfPi = 1.5707964f;

struct PlacedNode : NodeData
{
    explicit PlacedNode(QVector2D place) { moveTo(place); }

    void moveTo(QVector2D place)
    {
        x = place.x();
        y = place.y();
    }
};

/// Two nodes, the edge between them, and the four tracks nearest to it.
struct Fan
{
    Fan(QVector2D from, QVector2D to) : start(from), end(to) {}

    PlacedNode start, end;
    EdgeData base{start, end};
    std::array<EdgeData, 4> tracks{{{base, 1}, {base, 2}, {base, 3}, {base, 4}}};
};

/// How far track `index` stands off the line, above zero on the right.
double trackDistance(int index, double zoomSpan)
{
    const double steps = index % 2 == 1 ? (index + 1) / 2 : -(index / 2);
    return 128.0 * zoomSpan * steps;
}

QString arrowsComplaint(const EdgeData& edge, const FrameReference& frame, PlanePoint offset, double bound)
{
    const double halfTurn = 3.14159265358979;
    const PlanePoint start = frame.arrowStartBase + offset;
    const PlanePoint end = frame.arrowEndBase + offset;
    return arrowComplaint("startArrowMatrix", edge.startArrowMatrix,
                          arrowReference(start, frame.angle + halfTurn, edge.edgeWidth), bound) +
           arrowComplaint("endArrowMatrix", edge.endArrowMatrix, arrowReference(end, frame.angle, edge.edgeWidth),
                          bound);
}

/// What is wrong with an edge of three pieces over two corners.
QString piecesComplaint(const EdgeData& edge, PlanePoint first, PlanePoint corner1, PlanePoint corner2, PlanePoint last,
                        double bound)
{
    const int width = edge.edgeWidth;
    return complaintAbout("curveStartPos", edge.curveStartPos, corner1, bound) +
           complaintAbout("curveEndPos", edge.curveEndPos, corner2, bound) +
           quadComplaint("segmentMatrix0", edge.segmentMatrix0, quadReference(first, corner1, width, 0.0), bound) +
           quadComplaint("segmentMatrix1", edge.segmentMatrix1, quadReference(corner1, corner2, width, width / 2),
                         bound) +
           quadComplaint("segmentMatrix2", edge.segmentMatrix2, quadReference(corner2, last, width, 0.0), bound);
}

/// What is wrong with a straight edge.
QString straightComplaint(const EdgeData& edge, double bound)
{
    const PlanePoint start = edge.startPos;
    const PlanePoint end = edge.endPos;
    const FrameReference frame(start, end, 128.0);
    return complaintAbout("centerPos", edge.centerPos, (start + end) * 0.5, bound) +
           complaintAbout("curveStartPos", edge.curveStartPos, frame.lineStart, bound) +
           complaintAbout("curveEndPos", edge.curveEndPos, frame.lineEnd, bound) +
           quadComplaint("lineMatrix", edge.lineMatrix, quadReference(start, end, edge.edgeWidth, 0.0), bound) +
           arrowsComplaint(edge, frame, {}, bound);
}

/// What is wrong with an edge on a track beside the line between its ends.
QString trackComplaint(const EdgeData& edge, double bound)
{
    const PlanePoint start = edge.startPos;
    const PlanePoint end = edge.endPos;
    const FrameReference frame(start, end, 128.0);
    const PlanePoint offset = frame.right * (trackDistance(edge.index, double{edge.zoomSpan}) / 128.0);
    const PlanePoint corner1 = frame.lineStart + offset;
    const PlanePoint corner2 = frame.lineEnd + offset;
    return complaintAbout("centerPos", edge.centerPos, (corner1 + corner2) * 0.5, bound) +
           piecesComplaint(edge, start, corner1, corner2, end, bound) + arrowsComplaint(edge, frame, offset, bound);
}

/// What is wrong with a right-angled edge: down from the upper end, across, and down to the lower end.
QString rightAngleComplaint(const EdgeData& edge, double bound)
{
    const PlanePoint start = edge.startPos;
    const PlanePoint end = edge.endPos;
    const bool rises = end.y > start.y;
    const PlanePoint upper = rises ? end : start;
    const PlanePoint lower = rises ? start : end;
    const double level = upper.y - (upper.y - lower.y) / 4.0;
    const PlanePoint towardsEnd(0.0, rises ? 179.2 : -179.2);
    const double upwards = halfPi;
    return complaintAbout("centerPos", edge.centerPos, {lower.x, (level + lower.y) / 2.0}, bound) +
           piecesComplaint(edge, upper, {upper.x, level}, {lower.x, level}, lower, bound) +
           arrowComplaint("startArrowMatrix", edge.startArrowMatrix,
                          arrowReference(start + towardsEnd, rises ? -upwards : upwards, edge.edgeWidth), bound) +
           arrowComplaint("endArrowMatrix", edge.endArrowMatrix,
                          arrowReference(end - towardsEnd, rises ? upwards : -upwards, edge.edgeWidth), bound);
}

/// Whether any number in the shape is not one.
bool hasNaN(const EdgeData& edge)
{
    // NaN alone differs from itself.
    return !shapeDifferences(edge, edge).isEmpty();
}

} // namespace

class EdgeShapeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void straightEdgesRunFromCentreToCentre();
    void straightEdgesHaveTheirLabelInTheMiddleWhateverTheirArrows();
    void straightEdgesLeaveThePiecesAlone();
    void straightEdgesBetweenCoincidingNodesShowNothing();
    void straightEdgesBetweenCloseNodesPassTheirOwnEnds();
    void straightEdgesLieWhereTrigonometryLaysThem();

    void tracksLieBesideTheLine_data();
    void tracksLieBesideTheLine();
    void tracksRunInThreePieces();
    void tracksPointTheirArrowsAlongTheLine();
    void tracksSpreadWithTheirOwnZoomSpan_data();
    void tracksSpreadWithTheirOwnZoomSpan();
    void tracksIgnoreTheZoomSpanOfTheirBaseEdge();
    void tracksKeepNoLineOfTheirOwn();
    void tracksFollowTheFrameThatTheBaseEdgeLastBuilt();
    void tracksOfAFramelessBaseEdgeBendAtTheOrigin();
    void tracksBetweenCoincidingNodesRunLevel();
    void tracksLieWhereTrigonometryLaysThem();
    void tracksOfNearlyLevelLinesStayInPlace_data();
    void tracksOfNearlyLevelLinesStayInPlace();

    void rightAnglesRunDownFromTheUpperEnd();
    void rightAnglesRunDownToTheStartOfARisingEdge();
    void rightAnglesBetweenEqualHeightsStartAtTheStart();
    void rightAnglesKeepTheUpperEndToOneStep();
    void rightAnglesPointArrowsAtTheNodes();
    void rightAnglesLieOnTopOfEachOther();
    void rightAnglesLeaveLineAndFrameAlone();
    void rightAnglesLieWhereTrigonometryLaysThem();

    void ringsGrowWithTheirNumber_data();
    void ringsGrowWithTheirNumber();
    void ringsStandOnTheCentreOfTheirNode();
    void ringsFollowTheCircleOfTheirNode();
    void ringsMayBeOffTheirLabelByRounding();
    void ringsHaveNeitherLinesNorArrows();

    void ringsComeBeforeRightAngles();
    void rightAnglesComeBeforeTracks();
    void changesShowInTheEdgeThatIsBuiltOnly();
    void shapesFollowFromTheInputsAlone();
    void arrowsGrowWithTheEdge();
    void largestNumbersGiveFiniteShapes();
    void tracksCountInStepsOfTwo();
};

void EdgeShapeTest::straightEdgesRunFromCentreToCentre()
{
    PlacedNode start({100.0f, 50.0f});
    PlacedNode end({1100.0f, 50.0f});
    const EdgeData edge(start, end);

    QCOMPARE(edge.lineMatrix, lineModel({100.0f, 50.0f}, {1100.0f, 50.0f}, 8, false));
    QCOMPARE(edge.centerPos, QVector2D(600.0f, 50.0f));
    QCOMPARE(edge.curveStartPos, QVector2D(228.0f, 50.0f));
    QCOMPARE(edge.curveEndPos, QVector2D(972.0f, 50.0f));
    QCOMPARE(edge.startArrowMatrix, arrowModel({279.2f, 50.0f}, 0.0f, 8, true));
    QCOMPARE(edge.endArrowMatrix, arrowModel({920.8f, 50.0f}, 0.0f, 8, false));

    QCOMPARE(edge.frame.lineStart, edge.curveStartPos);
    QCOMPARE(edge.frame.lineEnd, edge.curveEndPos);
    QCOMPARE(edge.frame.offsetStartA, QVector2D(228.0f, -78.0f));
    QCOMPARE(edge.frame.offsetStartB, QVector2D(228.0f, 178.0f));
    QCOMPARE(edge.frame.offsetEndA, QVector2D(972.0f, -78.0f));
    QCOMPARE(edge.frame.offsetEndB, QVector2D(972.0f, 178.0f));
    QCOMPARE(edge.frame.arrowStartBase, QVector2D(279.2f, 50.0f));
    QCOMPARE(edge.frame.arrowEndBase, QVector2D(920.8f, 50.0f));
    QVERIFY(edge.frame.lineAngle == 0.0f);
    QCOMPARE(edge.startPos, QVector2D(100.0f, 50.0f));
    QCOMPARE(edge.endPos, QVector2D(1100.0f, 50.0f));
}

void EdgeShapeTest::straightEdgesHaveTheirLabelInTheMiddleWhateverTheirArrows()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({500.0f, -300.0f});
    EdgeData edge(start, end);
    for (const bool startArrow : {false, true}) {
        for (const bool endArrow : {false, true}) {
            edge.startArrowShow = startArrow;
            edge.endArrowShow = endArrow;
            edge.centerPos = {};
            edge.startArrowMatrix = edge.endArrowMatrix = {};
            rebuildShape(edge);
            QCOMPARE(edge.centerPos, QVector2D(250.0f, -150.0f));
            // Arrow heads are ready whether shown or not.
            const QString complaint = straightComplaint(edge, 0.001);
            QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
        }
    }
}

void EdgeShapeTest::straightEdgesLeaveThePiecesAlone()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({500.0f, -300.0f});
    EdgeData edge(start, end);
    QCOMPARE(edge.segmentMatrix0, Mat4());
    QCOMPARE(edge.segmentMatrix1, Mat4());
    QCOMPARE(edge.segmentMatrix2, Mat4());
    QCOMPARE(edge.ringDiameter, 10);
}

void EdgeShapeTest::straightEdgesBetweenCoincidingNodesShowNothing()
{
    PlacedNode start({30.0f, -40.0f});
    PlacedNode end({30.0f, -40.0f});
    const EdgeData edge(start, end);

    const Mat4 nothing = scale(translate({}, {30.0f, -40.0f, 0.0f}), {0.0f, 8.0f, 1.0f});
    QCOMPARE(edge.lineMatrix, nothing);
    QCOMPARE(edge.centerPos, QVector2D(30.0f, -40.0f));
    QVERIFY(edge.frame.lineAngle == 0.0f);
    QCOMPARE(edge.curveStartPos, QVector2D(158.0f, -40.0f));
    // The frame takes the end for one unit further to the right.
    QCOMPARE(edge.curveEndPos, QVector2D(-97.0f, -40.0f));
    QVERIFY(!hasNaN(edge));
}

void EdgeShapeTest::straightEdgesBetweenCloseNodesPassTheirOwnEnds()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({0.0f, 200.0f});
    const EdgeData edge(start, end);
    QCOMPARE(edge.curveStartPos, QVector2D(0.0f, 128.0f));
    QCOMPARE(edge.curveEndPos, QVector2D(0.0f, 72.0f));

    // Each arrow head stands nearer to the other node.
    QCOMPARE(double{edge.startArrowMatrix.data()[13]}, double{179.2f});
    QCOMPARE(double{edge.endArrowMatrix.data()[13]}, double{200.0f - 179.2f});
}

void EdgeShapeTest::straightEdgesLieWhereTrigonometryLaysThem()
{
    RandomPlane random(61);
    for (int i = 0; i < 3000; ++i) {
        const double reach = std::pow(10.0, random.number(2.0, 6.0));
        PlacedNode start(random.point(reach));
        PlacedNode end(random.point(reach));
        EdgeData edge(start, end);
        edge.edgeWidth = random.whole(8, 300);
        rebuildShape(edge);

        const double bound = 8.0 * floatStep({edge.startPos, edge.endPos, PlanePoint(500.0, 0.0)});
        const QString complaint = straightComplaint(edge, bound);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    }
}

void EdgeShapeTest::tracksLieBesideTheLine_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<float>("distance");

    // Right of the way is above zero.
    QTest::newRow("1") << 1 << 128.0f;
    QTest::newRow("2") << 2 << -128.0f;
    QTest::newRow("3") << 3 << 256.0f;
    QTest::newRow("4") << 4 << -256.0f;
    QTest::newRow("5") << 5 << 384.0f;
    QTest::newRow("6") << 6 << -384.0f;
    QTest::newRow("99") << 99 << 6400.0f;
    QTest::newRow("100") << 100 << -6400.0f;
}

void EdgeShapeTest::tracksLieBesideTheLine()
{
    QFETCH(int, index);
    QFETCH(float, distance);

    const QVector2D directions[] = {{1.0f, 0.0f}, {-1.0f, 0.0f}, {0.0f, 1.0f}, {0.0f, -1.0f}};
    for (const QVector2D along : directions) {
        PlacedNode start({0.0f, 0.0f});
        PlacedNode end(along * 1000.0f);
        EdgeData base(start, end);
        const EdgeData track(base, index);
        const QVector2D right(along.y(), -along.x());
        QCOMPARE(track.curveStartPos, along * 128.0f + right * distance);
        QCOMPARE(track.curveEndPos, along * 872.0f + right * distance);
    }
}

void EdgeShapeTest::tracksRunInThreePieces()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({1000.0f, 0.0f});
    EdgeData base(start, end);
    EdgeData track(base, 2);
    track.edgeWidth = 11;
    rebuildShape(track);

    const QVector2D bend1(128.0f, 128.0f);
    const QVector2D bend2(872.0f, 128.0f);
    QCOMPARE(track.segmentMatrix0, lineModel({0.0f, 0.0f}, bend1, 11, false));
    QCOMPARE(track.segmentMatrix1, lineModel(bend1, bend2, 11, true));
    QCOMPARE(track.segmentMatrix2, lineModel(bend2, {1000.0f, 0.0f}, 11, false));
    // Only the middle piece is longer than the way between its corners: 744 and half of 11.
    QCOMPARE(double{track.segmentMatrix1.data()[0]}, 749.0);
    QCOMPARE(track.centerPos, QVector2D(500.0f, 128.0f));
}

void EdgeShapeTest::tracksPointTheirArrowsAlongTheLine()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({0.0f, 1000.0f});
    EdgeData base(start, end);
    const EdgeData track(base, 3);
    QCOMPARE(track.startArrowMatrix, arrowModel({256.0f, 179.2f}, base.frame.lineAngle, 8, true));
    QCOMPARE(track.endArrowMatrix, arrowModel({256.0f, 820.8f}, base.frame.lineAngle, 8, false));
}

void EdgeShapeTest::tracksSpreadWithTheirOwnZoomSpan_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<float>("zoomSpan");
    QTest::addColumn<float>("y");

    QTest::newRow("twice as far to the right") << 1 << 2.0f << -256.0f;
    QTest::newRow("twice as far to the left") << 2 << 2.0f << 256.0f;
    QTest::newRow("two steps of half the size") << 3 << 0.5f << -128.0f;
    QTest::newRow("on the base line") << 1 << 0.0f << 0.0f;
    QTest::newRow("on the other side") << 1 << -1.0f << 128.0f;
    QTest::newRow("in between") << 4 << 1.25f << 320.0f;
}

void EdgeShapeTest::tracksSpreadWithTheirOwnZoomSpan()
{
    QFETCH(int, index);
    QFETCH(float, zoomSpan);
    QFETCH(float, y);

    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({1000.0f, 0.0f});
    EdgeData base(start, end);
    EdgeData track(base, index);
    track.zoomSpan = zoomSpan;
    rebuildShape(track);

    QCOMPARE(track.curveStartPos, QVector2D(128.0f, y));
    QCOMPARE(track.curveEndPos, QVector2D(872.0f, y));
    QCOMPARE(track.centerPos, QVector2D(500.0f, y));
    QCOMPARE(track.segmentMatrix0, lineModel({0.0f, 0.0f}, {128.0f, y}, 8, false));
    QCOMPARE(track.segmentMatrix1, lineModel({128.0f, y}, {872.0f, y}, 8, true));
    QCOMPARE(track.segmentMatrix2, lineModel({872.0f, y}, {1000.0f, 0.0f}, 8, false));
    QCOMPARE(track.startArrowMatrix, arrowModel({179.2f, y}, 0.0f, 8, true));
    QCOMPARE(track.endArrowMatrix, arrowModel({820.8f, y}, 0.0f, 8, false));
}

void EdgeShapeTest::tracksIgnoreTheZoomSpanOfTheirBaseEdge()
{
    Fan fan({0.0f, 0.0f}, {1000.0f, 0.0f});
    fan.base.zoomSpan = 3.0f;
    rebuildShape(fan.base);
    rebuildShape(fan.tracks[0]);
    QCOMPARE(fan.tracks[0].curveStartPos, QVector2D(128.0f, -128.0f));
    // Nor does the base edge itself stand off its line.
    QCOMPARE(fan.base.curveStartPos, QVector2D(128.0f, 0.0f));
}

void EdgeShapeTest::tracksKeepNoLineOfTheirOwn()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({700.0f, 900.0f});
    EdgeData base(start, end);
    const EdgeData track(base, 1);
    QCOMPARE(track.lineMatrix, Mat4());
    QCOMPARE(track.frame.lineStart, QVector2D());
    QCOMPARE(track.frame.lineEnd, QVector2D());
    QCOMPARE(track.frame.offsetStartA, QVector2D());
    QCOMPARE(track.frame.arrowEndBase, QVector2D());
    QVERIFY(track.frame.lineAngle == 0.0f);
}

void EdgeShapeTest::tracksFollowTheFrameThatTheBaseEdgeLastBuilt()
{
    Fan fan({0.0f, 0.0f}, {1000.0f, 0.0f});
    EdgeData& track = fan.tracks[0];

    // A right-angled base edge builds no frame: the one from before stands.
    fan.base.rightAngle = true;
    track.endPos = fan.base.endPos = {0.0f, 1000.0f};
    rebuildShape(fan.base);
    rebuildShape(track);
    QCOMPARE(track.curveStartPos, QVector2D(128.0f, -128.0f));
    QCOMPARE(track.curveEndPos, QVector2D(872.0f, -128.0f));
    QCOMPARE(track.segmentMatrix2, lineModel({872.0f, -128.0f}, {0.0f, 1000.0f}, 8, false));
    QCOMPARE(track.endArrowMatrix, arrowModel({820.8f, -128.0f}, 0.0f, 8, false));

    fan.base.rightAngle = false;
    rebuildShape(fan.base);
    rebuildShape(track);
    QCOMPARE(track.curveStartPos, QVector2D(128.0f, 128.0f));
    QCOMPARE(track.curveEndPos, QVector2D(128.0f, 872.0f));
}

void EdgeShapeTest::tracksOfAFramelessBaseEdgeBendAtTheOrigin()
{
    Fan fan({100.0f, 200.0f}, {1000.0f, 200.0f});
    fan.base.rightAngle = true;
    fan.base.frame = {};
    rebuildShape(fan.base);
    EdgeData& track = fan.tracks[2];
    rebuildShape(track);
    QCOMPARE(track.curveStartPos, QVector2D(0.0f, 0.0f));
    QCOMPARE(track.curveEndPos, QVector2D(0.0f, 0.0f));
    QCOMPARE(track.segmentMatrix0, lineModel({100.0f, 200.0f}, {0.0f, 0.0f}, 8, false));
    QCOMPARE(track.segmentMatrix2, lineModel({0.0f, 0.0f}, {1000.0f, 200.0f}, 8, false));
    QVERIFY(!hasNaN(track));
}

void EdgeShapeTest::tracksBetweenCoincidingNodesRunLevel()
{
    const Fan fan({30.0f, -40.0f}, {30.0f, -40.0f});
    const EdgeData& track = fan.tracks[2];
    QCOMPARE(track.curveStartPos, QVector2D(158.0f, -296.0f));
    // The frame takes the end for one unit further to the right.
    QCOMPARE(track.curveEndPos, QVector2D(-97.0f, -296.0f));
    QCOMPARE(track.segmentMatrix0, lineModel({30.0f, -40.0f}, {158.0f, -296.0f}, 8, false));
    QCOMPARE(track.segmentMatrix2, lineModel({-97.0f, -296.0f}, {30.0f, -40.0f}, 8, false));
    QVERIFY(!hasNaN(track));
}

void EdgeShapeTest::tracksLieWhereTrigonometryLaysThem()
{
    RandomPlane random(62);
    for (int i = 0; i < 3000; ++i) {
        const double reach = std::pow(10.0, random.number(3.0, 5.0));
        PlacedNode start(random.point(reach));
        PlacedNode end(random.point(reach));
        EdgeData base(start, end);
        const FrameReference frame(start.center(), end.center(), 128.0);
        if (std::abs(frame.right.x) < 0.2)
            continue; // nearly level lines have a test of their own

        EdgeData track(base, random.whole(1, 9));
        track.edgeWidth = random.whole(8, 300);
        track.zoomSpan = random.floatNumber(-2.0, 3.0);
        rebuildShape(track);

        // Each step of the track adds the rounding of the side point, and the pieces carry it to their corners.
        const double steps = 1.0 + std::abs(trackDistance(track.index, double{track.zoomSpan})) / 128.0;
        const double bound = 16.0 * steps * floatStep({track.startPos, track.endPos, PlanePoint(500.0, 0.0)});
        const QString complaint = trackComplaint(track, bound);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    }
}

void EdgeShapeTest::tracksOfNearlyLevelLinesStayInPlace_data()
{
    QTest::addColumn<QVector2D>("start");
    QTest::addColumn<float>("run");

    for (const float run : {300.0f, 1000.0f, 12345.0f, 100000.0f, 350000.0f, 1000000.0f}) {
        QTest::addRow("from the origin over %d units", int(run)) << QVector2D(0.0f, 0.0f) << run;
        QTest::addRow("from far right and below over %d units", int(run)) << QVector2D(777777.0f, -654321.0f) << run;
        QTest::addRow("from far left and above over %d units", int(run)) << QVector2D(-1e6f, 1e6f) << run;
    }
}

void EdgeShapeTest::tracksOfNearlyLevelLinesStayInPlace()
{
    QFETCH(QVector2D, start);
    QFETCH(float, run);

    // Where the line rises by a tenth of a unit within the radius, the rule for its side points changes.
    const double ruleAt = 0.1 * double{run} / 128.0;
    QVector<double> rises{0.0};
    for (double rise = 1e-9; rise < std::max(300.0, 4.0 * ruleAt); rise *= 1.1)
        rises << rise;
    for (double part = 0.01; part < 1.5; part += 0.01)
        rises << part * ruleAt;

    for (const double rise : qAsConst(rises)) {
        for (const QVector2D side : {QVector2D(1.0f, 1.0f), {1.0f, -1.0f}, {-1.0f, 1.0f}, {-1.0f, -1.0f}}) {
            const Fan fan(start, start + side * QVector2D(run, static_cast<float>(rise)));
            QVERIFY2(!hasNaN(fan.base), qPrintable(QStringLiteral("rise %1").arg(rise)));
            for (const EdgeData& track : fan.tracks) {
                QVERIFY2(!hasNaN(track), qPrintable(QStringLiteral("rise %1").arg(rise)));
                // The outer tracks take two steps. At each a side point is off by up to 0.284 within the rule, and by
                // some steps between floats, which are 0.125 apart out at two million. The rest is for the corners of
                // the pieces.
                const double bound = 2.0 * (0.3 + 4.0 * floatStep({track.startPos, track.endPos}));
                const QString complaint = trackComplaint(track, bound);
                QVERIFY2(complaint.isEmpty(), qPrintable(QStringLiteral("rise %1: %2").arg(rise).arg(complaint)));
            }
        }
    }
}

void EdgeShapeTest::rightAnglesRunDownFromTheUpperEnd()
{
    PlacedNode start({0.0f, 1000.0f});
    PlacedNode end({600.0f, 200.0f});
    EdgeData edge(start, end);
    edge.rightAngle = true;
    rebuildShape(edge);

    // A quarter of the 800 units down from the upper end.
    QCOMPARE(edge.curveStartPos, QVector2D(0.0f, 800.0f));
    QCOMPARE(edge.curveEndPos, QVector2D(600.0f, 800.0f));
    QCOMPARE(edge.centerPos, QVector2D(600.0f, 500.0f));
    QCOMPARE(edge.segmentMatrix0, lineModel({0.0f, 1000.0f}, {0.0f, 800.0f}, 8, false));
    QCOMPARE(edge.segmentMatrix1, lineModel({0.0f, 800.0f}, {600.0f, 800.0f}, 8, true));
    QCOMPARE(edge.segmentMatrix2, lineModel({600.0f, 800.0f}, {600.0f, 200.0f}, 8, false));
    QCOMPARE(edge.startPos, QVector2D(0.0f, 1000.0f));
    QCOMPARE(edge.endPos, QVector2D(600.0f, 200.0f));
}

void EdgeShapeTest::rightAnglesRunDownToTheStartOfARisingEdge()
{
    PlacedNode start({600.0f, 200.0f});
    PlacedNode end({0.0f, 1000.0f});
    EdgeData edge(start, end);
    edge.rightAngle = true;
    rebuildShape(edge);

    // The same way as that of the falling edge, so the first corner is the one at the end node.
    QCOMPARE(edge.curveStartPos, QVector2D(0.0f, 800.0f));
    QCOMPARE(edge.curveEndPos, QVector2D(600.0f, 800.0f));
    QCOMPARE(edge.centerPos, QVector2D(600.0f, 500.0f));
    QCOMPARE(edge.segmentMatrix0, lineModel({0.0f, 1000.0f}, {0.0f, 800.0f}, 8, false));
    QCOMPARE(edge.segmentMatrix1, lineModel({0.0f, 800.0f}, {600.0f, 800.0f}, 8, true));
    QCOMPARE(edge.segmentMatrix2, lineModel({600.0f, 800.0f}, {600.0f, 200.0f}, 8, false));
    QCOMPARE(edge.startPos, QVector2D(600.0f, 200.0f));
    QCOMPARE(edge.endPos, QVector2D(0.0f, 1000.0f));
}

void EdgeShapeTest::rightAnglesBetweenEqualHeightsStartAtTheStart()
{
    PlacedNode left({-300.0f, 70.0f});
    PlacedNode right({500.0f, 70.0f});
    EdgeData edge(right, left);
    edge.rightAngle = true;
    rebuildShape(edge);
    QCOMPARE(edge.curveStartPos, QVector2D(500.0f, 70.0f));
    QCOMPARE(edge.curveEndPos, QVector2D(-300.0f, 70.0f));
    QCOMPARE(edge.centerPos, QVector2D(-300.0f, 70.0f));
    QCOMPARE(edge.segmentMatrix0, lineModel({500.0f, 70.0f}, {500.0f, 70.0f}, 8, false));
    QCOMPARE(edge.startArrowMatrix, arrowModel({500.0f, 70.0f - 179.2f}, halfPi, 8, false));
    QCOMPARE(edge.endArrowMatrix, arrowModel({-300.0f, 70.0f + 179.2f}, -halfPi, 8, false));
}

void EdgeShapeTest::rightAnglesKeepTheUpperEndToOneStep()
{
    const auto firstCorner = [](float endY) {
        PlacedNode start({0.0f, 100.0f});
        PlacedNode end({500.0f, endY});
        EdgeData edge(start, end);
        edge.rightAngle = true;
        rebuildShape(edge);
        return edge.curveStartPos.x();
    };
    QVERIFY(firstCorner(std::nextafter(100.0f, 0.0f)) == 0.0f);
    QVERIFY(firstCorner(100.0f) == 0.0f);
    QVERIFY(firstCorner(std::nextafter(100.0f, 200.0f)) == 500.0f);
}

void EdgeShapeTest::rightAnglesPointArrowsAtTheNodes()
{
    PlacedNode upper({0.0f, 1000.0f});
    PlacedNode lower({600.0f, 200.0f});
    EdgeData falling(upper, lower);
    falling.rightAngle = true;
    rebuildShape(falling);
    QCOMPARE(falling.startArrowMatrix, arrowModel({0.0f, 1000.0f - 179.2f}, halfPi, 8, false));
    QCOMPARE(falling.endArrowMatrix, arrowModel({600.0f, 200.0f + 179.2f}, -halfPi, 8, false));

    EdgeData rising(lower, upper);
    rising.rightAngle = true;
    rebuildShape(rising);
    QCOMPARE(rising.startArrowMatrix, arrowModel({600.0f, 200.0f + 179.2f}, -halfPi, 8, false));
    QCOMPARE(rising.endArrowMatrix, arrowModel({0.0f, 1000.0f - 179.2f}, halfPi, 8, false));
}

void EdgeShapeTest::rightAnglesLieOnTopOfEachOther()
{
    Fan fan({0.0f, 1000.0f}, {600.0f, 200.0f});
    fan.base.rightAngle = true;
    rebuildShape(fan.base);
    for (EdgeData& track : fan.tracks) {
        track.rightAngle = true;
        track.zoomSpan = 2.0f;
        rebuildShape(track);
        QCOMPARE(track.curveStartPos, fan.base.curveStartPos);
        QCOMPARE(track.curveEndPos, fan.base.curveEndPos);
        QCOMPARE(track.centerPos, fan.base.centerPos);
        QCOMPARE(track.segmentMatrix0, fan.base.segmentMatrix0);
        QCOMPARE(track.segmentMatrix1, fan.base.segmentMatrix1);
        QCOMPARE(track.segmentMatrix2, fan.base.segmentMatrix2);
        QCOMPARE(track.startArrowMatrix, fan.base.startArrowMatrix);
        QCOMPARE(track.endArrowMatrix, fan.base.endArrowMatrix);
    }
}

void EdgeShapeTest::rightAnglesLeaveLineAndFrameAlone()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({1000.0f, 0.0f});
    EdgeData edge(start, end);
    edge.rightAngle = true;
    edge.endPos = {0.0f, -1000.0f};
    rebuildShape(edge);
    QCOMPARE(edge.lineMatrix, lineModel({0.0f, 0.0f}, {1000.0f, 0.0f}, 8, false));
    QCOMPARE(edge.frame.lineStart, QVector2D(128.0f, 0.0f));
    QCOMPARE(edge.frame.offsetEndA, QVector2D(872.0f, -128.0f));
    QVERIFY(edge.frame.lineAngle == 0.0f);
}

void EdgeShapeTest::rightAnglesLieWhereTrigonometryLaysThem()
{
    RandomPlane random(63);
    for (int i = 0; i < 3000; ++i) {
        const double reach = std::pow(10.0, random.number(2.0, 6.0));
        PlacedNode start(random.point(reach));
        PlacedNode end(random.point(reach));
        EdgeData edge(start, end);
        edge.edgeWidth = random.whole(8, 300);
        edge.rightAngle = true;
        rebuildShape(edge);

        const double bound = 8.0 * floatStep({edge.startPos, edge.endPos, PlanePoint(500.0, 0.0)});
        const QString complaint = rightAngleComplaint(edge, bound);
        QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    }
}

void EdgeShapeTest::ringsGrowWithTheirNumber_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("diameter");

    // 1.0, 1.4 and 1.8 times the default circle of 362, and so on, cut to whole units.
    QTest::newRow("0") << 0 << 362;
    QTest::newRow("1") << 1 << 506;
    QTest::newRow("2") << 2 << 651;
    QTest::newRow("3") << 3 << 796;
    QTest::newRow("5") << 5 << 1086;
}

void EdgeShapeTest::ringsGrowWithTheirNumber()
{
    QFETCH(int, index);
    QFETCH(int, diameter);

    PlacedNode node({-70.0f, 30.0f});
    const EdgeData ring(node, index);
    QCOMPARE(ring.ringDiameter, diameter);
    const auto height = static_cast<float>(diameter);
    QCOMPARE(ring.centerPos, QVector2D(-70.0f, 30.0f + height));
    const auto halfHeight = static_cast<float>(diameter / 2);
    QCOMPARE(ring.startPos, QVector2D(-70.0f, 30.0f + halfHeight));
    QCOMPARE(ring.endPos, ring.startPos);
    QCOMPARE(ring.curveStartPos, ring.startPos);
    QCOMPARE(ring.curveEndPos, ring.startPos);
}

void EdgeShapeTest::ringsStandOnTheCentreOfTheirNode()
{
    PlacedNode node({1234.0f, -5678.0f});
    for (int index = 0; index < 60; ++index) {
        for (const int circle : {35, 45, 362, 1000}) {
            node.circleDiameter = circle;
            const EdgeData ring(node, index);
            // Within the half unit that the halving of whole numbers may cost, and the one that the two ways of
            // rounding may differ by.
            const double radius = ring.ringDiameter / 2.0;
            const double fromCentre = length(PlanePoint(ring.startPos) - PlanePoint(node.center()));
            QVERIFY(std::abs(fromCentre - radius) <= 1.0);
            QVERIFY(std::abs(double{ring.centerPos.y()} - node.y - ring.ringDiameter) <= 1.0);
            QVERIFY(std::abs(ring.ringDiameter - circle * (1.0 + 0.4 * index)) <= 1.0);
        }
    }
}

void EdgeShapeTest::ringsFollowTheCircleOfTheirNode()
{
    PlacedNode node({0.0f, 0.0f});
    EdgeData ring(node, 1);
    node.circleDiameter = 1000;
    buildRingShape(ring);
    QCOMPARE(ring.ringDiameter, 1400);
    QCOMPARE(ring.centerPos, QVector2D(0.0f, 1400.0f));
    QCOMPARE(ring.startPos, QVector2D(0.0f, 700.0f));

    // The diameter comes from the scale, the places from the number.
    ring.ringScale = 2.0f;
    buildRingShape(ring);
    QCOMPARE(ring.ringDiameter, 2000);
    QCOMPARE(ring.centerPos, QVector2D(0.0f, 1400.0f));
    QCOMPARE(ring.startPos, QVector2D(0.0f, 700.0f));
}

void EdgeShapeTest::ringsMayBeOffTheirLabelByRounding()
{
    // 9.4 lies between two floats. The scale, computed in doubles, takes the lower one; 21 x 0.4 + 1 in single
    // precision comes out at the upper one. A circle of 45 makes that 422.99998 and 423.00003.
    PlacedNode node({0.0f, 0.0f});
    node.circleDiameter = 45;
    const EdgeData ring(node, 21);
    QCOMPARE(ring.ringDiameter, 422);
    QCOMPARE(ring.centerPos, QVector2D(0.0f, 423.0f));
    QCOMPARE(ring.startPos, QVector2D(0.0f, 211.0f));
}

void EdgeShapeTest::ringsHaveNeitherLinesNorArrows()
{
    PlacedNode node({500.0f, 600.0f});
    EdgeData ring(node, 2);
    ring.edgeWidth = 40;
    rebuildShape(ring);
    for (const Mat4& matrix : {ring.lineMatrix, ring.segmentMatrix0, ring.segmentMatrix1, ring.segmentMatrix2,
                               ring.startArrowMatrix, ring.endArrowMatrix})
        QCOMPARE(matrix, Mat4());
    QCOMPARE(ring.frame.lineStart, QVector2D());
    QCOMPARE(ring.frame.lineEnd, QVector2D());
    QCOMPARE(ring.frame.offsetStartA, QVector2D());
}

void EdgeShapeTest::ringsComeBeforeRightAngles()
{
    PlacedNode node({500.0f, 600.0f});
    const EdgeData untouched(node, 1);
    EdgeData ring(node, 1);
    ring.rightAngle = true;
    rebuildShape(ring);
    QCOMPARE(shapeDifferences(ring, untouched), QString());
}

void EdgeShapeTest::rightAnglesComeBeforeTracks()
{
    Fan fan({0.0f, 1000.0f}, {600.0f, 200.0f});
    EdgeData& track = fan.tracks[0];
    track.rightAngle = true;
    rebuildShape(track);
    QCOMPARE(track.curveStartPos, QVector2D(0.0f, 800.0f));

    // Without the right angle the track is what it was.
    track.rightAngle = false;
    rebuildShape(track);
    const Fan untouched({0.0f, 1000.0f}, {600.0f, 200.0f});
    QCOMPARE(shapeDifferences(track, untouched.tracks[0]), QString());
}

void EdgeShapeTest::changesShowInTheEdgeThatIsBuiltOnly()
{
    const Fan untouched({0.0f, 0.0f}, {700.0f, 900.0f});
    Fan fan({0.0f, 0.0f}, {700.0f, 900.0f});
    fan.base.edgeWidth = 100;
    fan.base.zoomSpan = 3.0f;
    rebuildShape(fan.base);
    for (std::size_t i = 0; i < fan.tracks.size(); ++i)
        QCOMPARE(shapeDifferences(fan.tracks[i], untouched.tracks[i]), QString());

    fan.tracks[0].edgeWidth = 100;
    rebuildShape(fan.tracks[0]);
    QCOMPARE(shapeDifferences(fan.tracks[1], untouched.tracks[1]), QString());
    QCOMPARE(shapeDifferences(fan.tracks[0], untouched.tracks[0]),
             QString("segmentMatrix0 segmentMatrix1 segmentMatrix2 startArrowMatrix endArrowMatrix "));
}

void EdgeShapeTest::shapesFollowFromTheInputsAlone()
{
    Fan fan({10.0f, 20.0f}, {700.0f, 901.0f});
    PlacedNode node({1.0f, 2.0f});
    EdgeData ring(node, 1);

    // Away and back again.
    fan.base.endPos = {-5.0f, 3000.0f};
    ring.startPos = {9999.0f, 9999.0f};
    ring.ringDiameter = 1;
    rebuildShape(fan.base);
    rebuildShape(fan.tracks[3]);
    fan.base.endPos = {700.0f, 901.0f};
    rebuildShape(fan.base);
    rebuildShape(fan.tracks[3]);
    rebuildShape(ring);

    const Fan untouched({10.0f, 20.0f}, {700.0f, 901.0f});
    const EdgeData untouchedRing(node, 1);
    QCOMPARE(shapeDifferences(fan.base, untouched.base), QString());
    QCOMPARE(shapeDifferences(fan.tracks[3], untouched.tracks[3]), QString());
    QCOMPARE(shapeDifferences(ring, untouchedRing), QString());
}

void EdgeShapeTest::arrowsGrowWithTheEdge()
{
    Fan fan({0.0f, 0.0f}, {1000.0f, 0.0f});
    QCOMPARE(double{fan.base.endArrowMatrix.data()[0]}, 98.0);
    QCOMPARE(double{fan.tracks[0].endArrowMatrix.data()[0]}, 98.0);

    for (EdgeData* edge : {&fan.base, &fan.tracks[0]}) {
        edge->edgeWidth = 32;
        rebuildShape(*edge);
        QCOMPARE(double{edge->endArrowMatrix.data()[0]}, 128.0);
        // The place stays.
        QCOMPARE(double{edge->endArrowMatrix.data()[12]}, double{820.8f});
    }
    fan.base.rightAngle = true;
    rebuildShape(fan.base);
    QCOMPARE(double{fan.base.startArrowMatrix.data()[1]}, 128.0);
}

void EdgeShapeTest::largestNumbersGiveFiniteShapes()
{
    PlacedNode start({0.0f, 0.0f});
    PlacedNode end({600.0f, -800.0f});
    EdgeData base(start, end);
    EdgeData track(base, largestInt);
    EdgeData ring(start, largestInt);
    for (EdgeData* edge : {&base, &track, &ring}) {
        edge->edgeWidth = largestInt;
        rebuildShape(*edge);
        QVERIFY(!hasNaN(*edge));
    }
    // 2^30 steps to the right, which is to the left and below here: 0.8 and 0.6 of 2^37.
    const double distance = 1073741824.0 * 128.0;
    const QString complaint = complaintAbout("curveStartPos", track.curveStartPos,
                                             PlanePoint(-0.8 * distance, -0.6 * distance), 1e-6 * distance);
    QVERIFY2(complaint.isEmpty(), qPrintable(complaint));
    QCOMPARE(ring.ringDiameter, largestInt);
    QVERIFY(ring.centerPos.y() == 2147483648.0f);

    start.circleDiameter = largestInt;
    track.rightAngle = true;
    rebuildShape(ring);
    rebuildShape(track);
    QCOMPARE(ring.ringDiameter, largestInt);
    QVERIFY(!hasNaN(track));
}

void EdgeShapeTest::tracksCountInStepsOfTwo()
{
    QCOMPARE(EdgeData::trackStep(0), 0);
    QCOMPARE(EdgeData::trackStep(1), 1);
    QCOMPARE(EdgeData::trackStep(2), 1);
    QCOMPARE(EdgeData::trackStep(3), 2);
    QCOMPARE(EdgeData::trackStep(4), 2);
    QCOMPARE(EdgeData::trackStep(largestInt - 1), 1073741823);
    QCOMPARE(EdgeData::trackStep(largestInt), 1073741824);
}

QTEST_APPLESS_MAIN(EdgeShapeTest)

#include "EdgeShapeTest.moc"
