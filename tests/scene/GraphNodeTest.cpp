#include "support/EdgeShapeBits.h"
#include "support/EmissionCounter.h"
#include "support/PointText.h"
#include "support/SceneInvariants.h"
#include "support/SceneOf.h"

#include <NELK/NELK>

#include <QColor>
#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>

using namespace NELK;

class GraphNodeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setPosGraphMirrorsAtTheXAxis();
    void setPosTakesTheScenePlane();
    void setPosTakesAnyPosition_data();
    void setPosTakesAnyPosition();
    void setPosGraphNegatesTheInteger();
    void positionsAreCutTowardZero_data();
    void positionsAreCutTowardZero();
    void setPosTakesTheEdgesAlong_data();
    void setPosTakesTheEdgesAlong();
    void setPosMovesALockedNode();

    void rectIsTheIcon();
    void rectIsTheCircleWhereThatIsShown();
    void rectHalvesItsSideInIntegers();
    void rectHoldsTheLabelBelowTheIcon_data();
    void rectHoldsTheLabelBelowTheIcon();
    void rectIsCutTowardZero_data();
    void rectIsCutTowardZero();

    void setSelectKeepsOneEntryInTheSet();
    void setSelectIsForgottenOnRemoval();
    void setCircleShowKeepsOneEntryInTheSet();
    void anEqualValueDoesNothingAtAll();
    void plainSettersStoreTheirFlagAndNothingElse_data();
    void plainSettersStoreTheirFlagAndNothingElse();
    void setShowLeavesTheEdgesShown();

    void setSizeGivesWidthAndCircle_data();
    void setSizeGivesWidthAndCircle();
    void setSizeRefreshesTheBadges();
    void setSizeBuildsRingsAndNoOtherEdge();
    void setCircleSizeHasAFloor_data();
    void setCircleSizeHasAFloor();
    void ringsFollowTheCircleSizeWithTheNextMoveOrSetSize();
    void setCircleColorTakesTheChannelsOver255();

    void settersEmitNothing();
};

namespace
{

/// A scene with one node at the origin.
struct OneNode
{
    NodeData& record() { return *sceneOf(scene).getNode(1); }

    GraphScene scene;
    GraphNode node = scene.createNode(1);
};

/// Puts a mark on the shape of an edge that the next build wipes out.
void markShape(EdgeData& edge)
{
    edge.centerPos = {-12345.0f, 54321.0f};
}

bool isMarked(const EdgeData& edge)
{
    return edge.centerPos == QVector2D(-12345.0f, 54321.0f);
}

} // namespace

void GraphNodeTest::setPosGraphMirrorsAtTheXAxis()
{
    OneNode one;
    GraphNode other = one.scene.createNode(2);
    const GraphEdge edge = one.scene.createEdge(3, one.node, other);
    one.node.setPosGraph(10, 20);
    QCOMPARE(one.node.pos(), QPoint(10, -20));
    QCOMPARE(one.node.posGraph(), QPoint(10, 20));
    QCOMPARE(edge.startPos(), QPoint(10, 20));
    QCOMPARE(one.record().center(), QVector2D(10.0f, -20.0f));

    other.setPosGraph(QPoint(-30, -40));
    QCOMPARE(other.pos(), QPoint(-30, 40));
    QCOMPARE(other.posGraph(), QPoint(-30, -40));
    QCOMPARE(edge.endPos(), QPoint(-30, -40));
}

void GraphNodeTest::setPosTakesTheScenePlane()
{
    OneNode one;
    QCOMPARE(one.node.pos(), QPoint(0, 0));
    QCOMPARE(one.node.posGraph(), QPoint(0, 0));
    one.node.setPos(10, 20);
    QCOMPARE(one.node.pos(), QPoint(10, 20));
    QCOMPARE(one.node.posGraph(), QPoint(10, -20));
    QCOMPARE(one.record().center(), QVector2D(10.0f, 20.0f));
    one.node.setPos(QPoint(-30, -40));
    QCOMPARE(one.node.pos(), QPoint(-30, -40));
    QCOMPARE(one.node.posGraph(), QPoint(-30, 40));
}

void GraphNodeTest::setPosTakesAnyPosition_data()
{
    constexpr int lastInt = std::numeric_limits<int>::max();
    constexpr int firstInt = std::numeric_limits<int>::min();
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QVector2D>("center");
    QTest::newRow("beyond the scene's size") << QPoint(100000, -70000) << QVector2D(100000.0f, -70000.0f);
    QTest::newRow("last integer that floats keep") << QPoint(16777216, -16777216) << QVector2D(16777216.f, -16777216.f);
    QTest::newRow("nearest float") << QPoint(16777217, 16777219) << QVector2D(16777216.0f, 16777220.0f);
    QTest::newRow("extremes") << QPoint(lastInt, firstInt) << QVector2D(2147483648.0f, -2147483648.0f);
}

void GraphNodeTest::setPosTakesAnyPosition()
{
    QFETCH(QPoint, pos);
    QFETCH(QVector2D, center);
    OneNode one;
    one.node.setPos(pos);
    QCOMPARE(one.record().center(), center);
    one.node.setPos(0, 0);
    one.node.setPos(pos.x(), pos.y());
    QCOMPARE(one.record().center(), center);
    one.node.setPosGraph(pos);
    QCOMPARE(one.record().center(), QVector2D(center.x(), -center.y()));
    one.node.setPosGraph(0, 0);
    one.node.setPosGraph(pos.x(), pos.y());
    QCOMPARE(one.record().center(), QVector2D(center.x(), -center.y()));
}

void GraphNodeTest::setPosGraphNegatesTheInteger()
{
    // A float would come out as minus zero.
    OneNode one;
    one.node.setPosGraph(0, 0);
    QVERIFY(!std::signbit(one.record().y));
    one.node.setPosGraph(QPoint(0, 0));
    QVERIFY(!std::signbit(one.record().y));
}

void GraphNodeTest::positionsAreCutTowardZero_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<float>("y");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QPoint>("posGraph");
    QTest::newRow("positive") << 10.9f << 20.9f << QPoint(10, 20) << QPoint(10, -20);
    QTest::newRow("negative") << -10.9f << -20.9f << QPoint(-10, -20) << QPoint(-10, 20);
    QTest::newRow("about zero") << 0.9f << -0.9f << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("one ulp below") << std::nextafter(5.0f, 0.0f) << std::nextafter(-5.0f, 0.0f) << QPoint(4, -4)
                                   << QPoint(4, 4);
}

void GraphNodeTest::positionsAreCutTowardZero()
{
    QFETCH(float, x);
    QFETCH(float, y);
    OneNode one;
    one.record().x = x;
    one.record().y = y;
    QTEST(one.node.pos(), "pos");
    QTEST(one.node.posGraph(), "posGraph");
}

using SetPos = std::function<void(GraphNode&)>;
Q_DECLARE_METATYPE(SetPos)

void GraphNodeTest::setPosTakesTheEdgesAlong_data()
{
    QTest::addColumn<SetPos>("setPos");
    QTest::newRow("setPos(int, int)") << SetPos([](GraphNode& node) { node.setPos(100, 200); });
    QTest::newRow("setPos(QPoint)") << SetPos([](GraphNode& node) { node.setPos(QPoint(100, 200)); });
    QTest::newRow("setPosGraph(int, int)") << SetPos([](GraphNode& node) { node.setPosGraph(100, -200); });
    QTest::newRow("setPosGraph(QPoint)") << SetPos([](GraphNode& node) { node.setPosGraph(QPoint(100, -200)); });
}

void GraphNodeTest::setPosTakesTheEdgesAlong()
{
    QFETCH(SetPos, setPos);
    OneNode one;
    GraphNode other = one.scene.createNode(2);
    other.setPos(100, 1200);
    const GraphEdge leaving = one.scene.createEdge(10, one.node, other);
    one.scene.createEdge(11, other, one.node);
    one.scene.createEdge(12, one.node, one.node);
    one.scene.createEdge(13, leaving, 1);

    setPos(one.node);
    const Scene& model = sceneOf(one.scene);
    QCOMPARE(model.getEdge(10)->startPos, QVector2D(100.0f, 200.0f));
    QCOMPARE(model.getEdge(10)->centerPos, QVector2D(100.0f, 700.0f));
    QCOMPARE(model.getEdge(11)->endPos, QVector2D(100.0f, 200.0f));
    QCOMPARE(model.getEdge(11)->centerPos, QVector2D(100.0f, 700.0f));
    QCOMPARE(model.getEdge(12)->startPos, QVector2D(100.0f, 381.0f));
    QCOMPARE(model.getEdge(12)->centerPos, QVector2D(100.0f, 562.0f));
    // Right of the way up lies track 1: it has followed the base edge's new line. Upright, its points are 128 off to
    // within the rounding of a float at this distance.
    QCOMPARE(model.getEdge(13)->startPos, QVector2D(100.0f, 200.0f));
    QVERIFY(std::abs(model.getEdge(13)->centerPos.x() - 228.0f) < 0.001f);
    QVERIFY(std::abs(model.getEdge(13)->centerPos.y() - 700.0f) < 0.001f);
    QCOMPARE(brokenInvariant(model), QString());
}

void GraphNodeTest::setPosMovesALockedNode()
{
    OneNode one;
    one.node.setLock(true);
    one.node.setPos(10, 20);
    QCOMPARE(one.node.pos(), QPoint(10, 20));
    one.node.setPosGraph(30, 40);
    QCOMPARE(one.node.posGraph(), QPoint(30, 40));
}

void GraphNodeTest::rectIsTheIcon()
{
    OneNode one;
    QCOMPARE(one.node.rect(), QRect(-128, 128, 256, 256));
    QCOMPARE(one.node.rectGraph(), QRect(-128, -128, 256, 256));
    one.node.setPos(1000, 500);
    QCOMPARE(one.node.rect(), QRect(872, 628, 256, 256));
    QCOMPARE(one.node.rectGraph(), QRect(872, -628, 256, 256));
}

void GraphNodeTest::rectIsTheCircleWhereThatIsShown()
{
    OneNode one;
    one.node.setCircleShow(true);
    QCOMPARE(one.node.rect(), QRect(-181, 181, 362, 362));
    QCOMPARE(one.node.rectGraph(), QRect(-181, -181, 362, 362));
}

void GraphNodeTest::rectHalvesItsSideInIntegers()
{
    OneNode one;
    one.node.setSize(0.0f); // width 25, circle 35
    QCOMPARE(one.node.rect(), QRect(-12, 12, 24, 24));
    QCOMPARE(one.node.rectGraph(), QRect(-12, -12, 24, 24));
    one.node.setCircleShow(true);
    QCOMPARE(one.node.rect(), QRect(-17, 17, 34, 34));
    QCOMPARE(one.node.rectGraph(), QRect(-17, -17, 34, 34));
}

void GraphNodeTest::rectHoldsTheLabelBelowTheIcon_data()
{
    QTest::addColumn<bool>("nodeTextShow");
    QTest::addColumn<QSize>("label");
    QTest::addColumn<QSize>("setNum");
    QTest::addColumn<QSize>("size");
    QTest::newRow("narrow label") << true << QSize(100, 76) << QSize(0, 0) << QSize(256, 332);
    QTest::newRow("as wide as the icon") << true << QSize(256, 76) << QSize(0, 0) << QSize(256, 332);
    QTest::newRow("one wider") << true << QSize(257, 76) << QSize(0, 0) << QSize(257, 332);
    QTest::newRow("wide label") << true << QSize(900, 228) << QSize(400, 76) << QSize(900, 484);
    QTest::newRow("set numbers alone") << false << QSize(900, 228) << QSize(400, 76) << QSize(400, 332);
    QTest::newRow("neither") << false << QSize(900, 228) << QSize(0, 0) << QSize(256, 256);
}

void GraphNodeTest::rectHoldsTheLabelBelowTheIcon()
{
    QFETCH(bool, nodeTextShow);
    QFETCH(QSize, label);
    QFETCH(QSize, setNum);
    QFETCH(QSize, size);
    OneNode one;
    one.scene.setNodeTextShow(nodeTextShow);
    one.record().labelWidth = label.width();
    one.record().labelHeight = label.height();
    one.record().setNumWidth = setNum.width();
    one.record().setNumHeight = setNum.height();
    QCOMPARE(one.node.rect(), QRect(QPoint(-128, 128), size));
    QCOMPARE(one.node.rectGraph(), QRect(QPoint(-128, -128), size));
}

void GraphNodeTest::rectIsCutTowardZero_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<float>("y");
    QTest::addColumn<QPoint>("topLeft");
    QTest::addColumn<QPoint>("topLeftGraph");
    // Half of the icon is 128; the sums stand beside each row.
    QTest::newRow("-127.1, 128.9, -128.9") << 0.9f << 0.9f << QPoint(-127, 128) << QPoint(-127, -128);
    QTest::newRow("-0.5, 0.5, -0.5") << 127.5f << -127.5f << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("0.5, -0.5, 0.5") << 128.5f << -128.5f << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("-129.5, -1.75, 1.75") << -1.5f << -129.75f << QPoint(-129, -1) << QPoint(-129, 1);
}

void GraphNodeTest::rectIsCutTowardZero()
{
    QFETCH(float, x);
    QFETCH(float, y);
    QFETCH(QPoint, topLeft);
    QFETCH(QPoint, topLeftGraph);
    OneNode one;
    one.record().x = x;
    one.record().y = y;
    QCOMPARE(one.node.rect(), QRect(topLeft, QSize(256, 256)));
    QCOMPARE(one.node.rectGraph(), QRect(topLeftGraph, QSize(256, 256)));
}

void GraphNodeTest::setSelectKeepsOneEntryInTheSet()
{
    OneNode one;
    const Scene& model = sceneOf(one.scene);
    QVERIFY(!one.node.select());
    one.node.setSelect(true);
    one.node.setSelect(true);
    QVERIFY(one.node.select());
    QVERIFY(one.record().select);
    QCOMPARE(model.selectedNodes, (Scene::NodeSet{{1, &one.record()}}));
    QVERIFY(model.circleNodes.isEmpty());
    one.node.setSelect(false);
    one.node.setSelect(false);
    QVERIFY(!one.node.select());
    QVERIFY(model.selectedNodes.isEmpty());
}

void GraphNodeTest::setSelectIsForgottenOnRemoval()
{
    OneNode one;
    one.node.setSelect(true);
    one.node.setCircleShow(true);
    one.scene.removeNode(1);
    QVERIFY(sceneOf(one.scene).selectedNodes.isEmpty());
    QVERIFY(sceneOf(one.scene).circleNodes.isEmpty());
}

void GraphNodeTest::setCircleShowKeepsOneEntryInTheSet()
{
    OneNode one;
    const Scene& model = sceneOf(one.scene);
    one.node.setCircleShow(true);
    one.node.setCircleShow(true);
    QVERIFY(one.record().circleShow);
    QCOMPARE(model.circleNodes, (Scene::NodeSet{{1, &one.record()}}));
    QVERIFY(model.selectedNodes.isEmpty());
    one.node.setCircleShow(false);
    one.node.setCircleShow(false);
    QVERIFY(!one.record().circleShow);
    QVERIFY(model.circleNodes.isEmpty());
}

void GraphNodeTest::anEqualValueDoesNothingAtAll()
{
    OneNode one;
    Scene& model = sceneOf(one.scene);
    one.node.setSelect(true);
    one.node.setCircleShow(true);
    model.selectedNodes.clear();
    model.circleNodes.clear();
    one.node.setSelect(true);
    one.node.setCircleShow(true);
    QVERIFY(model.selectedNodes.isEmpty());
    QVERIFY(model.circleNodes.isEmpty());
}

using FlagSetter = void (GraphNode::*)(bool);
using Flag = bool NodeData::*;
Q_DECLARE_METATYPE(FlagSetter)
Q_DECLARE_METATYPE(Flag)

void GraphNodeTest::plainSettersStoreTheirFlagAndNothingElse_data()
{
    QTest::addColumn<FlagSetter>("setter");
    QTest::addColumn<Flag>("flag");
    QTest::newRow("show") << FlagSetter(&GraphNode::setShow) << Flag(&NodeData::show);
    QTest::newRow("lock") << FlagSetter(&GraphNode::setLock) << Flag(&NodeData::lock);
    QTest::newRow("focus") << FlagSetter(&GraphNode::setFocus) << Flag(&NodeData::focus);
    QTest::newRow("combined") << FlagSetter(&GraphNode::setCombined) << Flag(&NodeData::combined);
}

void GraphNodeTest::plainSettersStoreTheirFlagAndNothingElse()
{
    QFETCH(FlagSetter, setter);
    QFETCH(Flag, flag);
    OneNode one;
    NodeData& record = one.record();
    one.node.setSelect(true);
    for (const bool value : {true, false, false, true}) {
        (one.node.*setter)(value);
        QCOMPARE(record.*flag, value);
        for (const Flag other : {&NodeData::show, &NodeData::lock, &NodeData::focus, &NodeData::combined,
                                 &NodeData::select, &NodeData::circleShow, &NodeData::imageHidden}) {
            const bool unchanged = other == &NodeData::show || other == &NodeData::select;
            QVERIFY(other == flag || record.*other == unchanged);
        }
        QCOMPARE(brokenInvariant(sceneOf(one.scene)), QString());
        QCOMPARE(sceneOf(one.scene).selectedNodes.size(), 1);
    }
}

void GraphNodeTest::setShowLeavesTheEdgesShown()
{
    OneNode one;
    const GraphNode other = one.scene.createNode(2);
    one.scene.createEdge(10, one.node, other);
    one.scene.createEdge(11, other, one.node);
    one.scene.createEdge(12, one.node, one.node);
    one.node.setShow(false);
    QVERIFY(!one.record().show);
    for (const EdgeData* edge : qAsConst(sceneOf(one.scene).edges))
        QVERIFY(edge->show);
}

void GraphNodeTest::setSizeGivesWidthAndCircle_data()
{
    QTest::addColumn<float>("size");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("diameter");
    QTest::newRow("0") << 0.0f << 25 << 35;
    QTest::newRow("1") << 1.0f << 256 << 362;
    QTest::newRow("2") << 2.0f << 512 << 724;
    QTest::newRow("the floor") << 0.1f << 25 << 35;
    QTest::newRow("below the floor") << 0.0976f << 25 << 35;
    QTest::newRow("above the floor") << 0.1015625f << 26 << 36;
    QTest::newRow("negative") << -1.0f << 25 << 35;
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << 25 << 35;
}

void GraphNodeTest::setSizeGivesWidthAndCircle()
{
    QFETCH(float, size);
    OneNode one;
    one.node.setSize(3.0f);
    one.node.setSize(size);
    QTEST(one.record().width, "width");
    QTEST(one.record().height, "width");
    QTEST(one.record().circleDiameter, "diameter");
    QVERIFY(one.record().circleSize == 1.0f);
}

void GraphNodeTest::setSizeRefreshesTheBadges()
{
    OneNode one;
    one.node.setSize(2.0f);
    QCOMPARE(one.record().lockBadgePos, QVector2D(-192.0f, 192.0f));
    QCOMPARE(one.record().cornerBadgePos, QVector2D(192.0f, 192.0f));
    QCOMPARE(one.record().badgeSize, 128);
}

void GraphNodeTest::setSizeBuildsRingsAndNoOtherEdge()
{
    OneNode one;
    const GraphNode other = one.scene.createNode(2);
    const GraphEdge base = one.scene.createEdge(10, one.node, other);
    one.scene.createEdge(11, base, 1);
    one.scene.createEdge(12, other, one.node);
    const GraphEdge ring = one.scene.createEdge(13, one.node, one.node);
    one.scene.createEdge(14, ring, 1);
    const Scene& model = sceneOf(one.scene);
    for (EdgeData* edge : model.edges)
        markShape(*edge);

    one.node.setSize(2.0f);
    for (const qint64 id : {10, 11, 12})
        QVERIFY(isMarked(*model.getEdge(id)));
    for (const qint64 id : {13, 14})
        QVERIFY(!isMarked(*model.getEdge(id)));
    QCOMPARE(model.getEdge(13)->ringDiameter, 724);
    QCOMPARE(model.getEdge(14)->ringDiameter, 1013); // 724 * 1.4 is 1013.6
    QCOMPARE(model.getEdge(13)->startPos, QVector2D(0.0f, 362.0f));
}

void GraphNodeTest::setCircleSizeHasAFloor_data()
{
    const float above = std::nextafter(1.0f, 2.0f);
    QTest::addColumn<float>("asked");
    QTest::addColumn<float>("stored");
    QTest::addColumn<int>("diameter");
    QTest::newRow("1.5") << 1.5f << 1.5f << 543;
    QTest::newRow("2") << 2.0f << 2.0f << 724;
    QTest::newRow("1") << 1.0f << 1.0f << 362;
    QTest::newRow("one ulp above 1") << above << above << 362;
    QTest::newRow("one ulp below 1") << std::nextafter(1.0f, 0.0f) << 1.0f << 362;
    QTest::newRow("0") << 0.0f << 1.0f << 362;
    QTest::newRow("negative") << -2.0f << 1.0f << 362;
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << 1.0f << 362;
}

void GraphNodeTest::setCircleSizeHasAFloor()
{
    QFETCH(float, asked);
    QFETCH(float, stored);
    OneNode one;
    one.node.setCircleSize(3.0f);
    one.node.setCircleSize(asked);
    QVERIFY(one.record().circleSize == stored);
    QTEST(one.record().circleDiameter, "diameter");
    QCOMPARE(one.record().width, 256);
    QVERIFY(!one.record().circleShow);
}

void GraphNodeTest::ringsFollowTheCircleSizeWithTheNextMoveOrSetSize()
{
    OneNode one;
    one.scene.createEdge(10, one.node, one.node);
    const EdgeData& ring = *sceneOf(one.scene).getEdge(10);
    const QByteArray shapeBefore = shapeBits(ring);
    one.node.setCircleSize(2.0f);
    QCOMPARE(shapeBits(ring), shapeBefore);
    QCOMPARE(ring.ringDiameter, 362);
    one.node.setPos(0, 0);
    QCOMPARE(ring.ringDiameter, 724);

    one.node.setCircleSize(1.5f);
    QCOMPARE(ring.ringDiameter, 724);
    one.node.setSize(1.0f);
    QCOMPARE(ring.ringDiameter, 543);
}

void GraphNodeTest::setCircleColorTakesTheChannelsOver255()
{
    OneNode one;
    one.node.setCircleColor(QColor(51, 102, 204, 7));
    QCOMPARE(one.record().circleColor, (Rgb{0.2f, 0.4f, 0.8f}));
}

void GraphNodeTest::settersEmitNothing()
{
    OneNode one;
    one.scene.createEdge(10, one.node, one.node);
    const EmissionCounter emissions(one.scene);
    const EmissionCounter emissionsOfTheModel(sceneOf(one.scene));
    QCOMPARE(emissions.signalsWatched() + emissionsOfTheModel.signalsWatched(), 6);
    one.node.setPos(1, 2);
    one.node.setPos(QPoint(3, 4));
    one.node.setPosGraph(1, 2);
    one.node.setPosGraph(QPoint(3, 4));
    one.node.setSelect(true);
    one.node.setSelect(true);
    one.node.setSelect(false);
    one.node.setShow(false);
    one.node.setLock(true);
    one.node.setFocus(true);
    one.node.setCombined(true);
    one.node.setSize(2.0f);
    one.node.setCircleShow(true);
    one.node.setCircleSize(2.0f);
    one.node.setCircleColor(Qt::red);
    QCOMPARE(emissions.count(), 0);
    QCOMPARE(emissionsOfTheModel.count(), 0);
}

QTEST_APPLESS_MAIN(GraphNodeTest)

#include "GraphNodeTest.moc"
