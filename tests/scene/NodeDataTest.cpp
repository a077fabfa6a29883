#include "scene/NodeData.h"

#include "support/PointText.h"

#include <QtTest>

#include <cmath>
#include <limits>
#include <type_traits>

using namespace NELK;

static_assert(!std::is_polymorphic_v<NodeData>);
static_assert(!std::is_copy_constructible_v<NodeData> && !std::is_copy_assignable_v<NodeData>);

class NodeDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsInTheDefaultSize();
    void startsAtTheOriginShownAndWithoutEdges();
    void startsWithoutText();
    void startsInTheDefaultColors();

    void circleIsTheDiagonalTimesTheCircleSize_data();
    void circleIsTheDiagonalTimesTheCircleSize();
    void badgesFollowTheWidth_data();
    void badgesFollowTheWidth();
    void badgesWidenTheLabelBoundAndNeverShrinkIt();

    void resizeTakesAMultipleOfTheDefaultSize_data();
    void resizeTakesAMultipleOfTheDefaultSize();
    void resizeKeepsTheCircleSizeButRaisesItToOne_data();
    void resizeKeepsTheCircleSizeButRaisesItToOne();
    void resizeRefreshesTheBadges();

    void bodyIsTheCircleWhereThatIsShown();
    void labelBoxIsThatOfTheSetNumbersWhileTextIsOff();
};

namespace
{

constexpr int lastInt = std::numeric_limits<int>::max();

} // namespace

void NodeDataTest::startsInTheDefaultSize()
{
    const NodeData node;
    QCOMPARE(node.width, 256);
    QCOMPARE(node.height, 256);
    QCOMPARE(node.circleDiameter, 362);
    QCOMPARE(node.circleRingWidth, 32);
    QVERIFY(node.circleSize == 1.0f);
    QCOMPARE(node.badgeSize, 64);
    QCOMPARE(node.lockBadgePos, QVector2D(-96.0f, 96.0f));
    QCOMPARE(node.cornerBadgePos, QVector2D(96.0f, 96.0f));
}

void NodeDataTest::startsAtTheOriginShownAndWithoutEdges()
{
    const NodeData node;
    QCOMPARE(node.center(), QVector2D(0.0f, 0.0f));
    QVERIFY(node.show);
    QVERIFY(!node.select);
    QVERIFY(!node.lock);
    QVERIFY(!node.focus);
    QVERIFY(!node.combined);
    QVERIFY(!node.circleShow);
    QVERIFY(!node.imageHidden);
    QVERIFY(node.imageName.isNull());
    QCOMPARE(node.imageRow, 0);
    QCOMPARE(node.imageCol, 0);
    QVERIFY(node.outEdges.isEmpty());
    QVERIFY(node.inEdges.isEmpty());
}

void NodeDataTest::startsWithoutText()
{
    const NodeData node;
    QVERIFY(node.labelLines.isEmpty());
    QVERIFY(node.setNumLines.isEmpty());
    QCOMPARE(node.labelLineCount, 0);
    QCOMPARE(node.labelWidth, 0);
    QCOMPARE(node.labelHeight, 0);
    QCOMPARE(node.setNumWidth, 0);
    QCOMPARE(node.setNumHeight, 0);
    QCOMPARE(node.labelBoundWidth, 0);
    QVERIFY(node.labelSize == 1.0f);
}

void NodeDataTest::startsInTheDefaultColors()
{
    const NodeData node;
    QCOMPARE(node.circleColor, (Rgb{0.0f, 0.0f, 0.0f}));
    QCOMPARE(node.labelColor, (Rgba{0.0f, 0.0f, 0.0f, 1.0f}));
    QCOMPARE(node.labelBackColor, (Rgba{1.0f, 1.0f, 1.0f, 0.0f}));
    QCOMPARE(node.entityColor, (Rgba{0.349f, 0.722f, 0.271f, 1.0f}));
}

void NodeDataTest::circleIsTheDiagonalTimesTheCircleSize_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<float>("circleSize");
    QTest::addColumn<int>("diameter");
    QTest::newRow("default: 362.04") << 256 << 1.0f << 362;
    QTest::newRow("smallest: 35.36") << 25 << 1.0f << 35;
    QTest::newRow("half as wide again: 543.05") << 256 << 1.5f << 543;
    QTest::newRow("twice as wide: 724.07") << 256 << 2.0f << 724;
    QTest::newRow("cut, not rounded: 360.62") << 255 << 1.0f << 360;
    // 7070.99974 is nearer to 7071 than to the next float below it; in doubles the cut would give 7070.
    QTest::newRow("products are in single precision") << 2000 << 2.5f << 7071;
    QTest::newRow("beyond int") << lastInt << 1.0f << lastInt;
}

void NodeDataTest::circleIsTheDiagonalTimesTheCircleSize()
{
    QFETCH(int, width);
    QFETCH(float, circleSize);
    NodeData node;
    node.width = width;
    node.circleSize = circleSize;
    node.updateCircleDiameter();
    QTEST(node.circleDiameter, "diameter");
}

void NodeDataTest::badgesFollowTheWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<float>("corner");
    QTest::addColumn<int>("badgeSize");
    QTest::newRow("default") << 256 << 96.0f << 64;
    QTest::newRow("75 / 8 is cut toward zero on both sides") << 25 << 9.0f << 6;
    QTest::newRow("93 / 8 is cut, not rounded") << 31 << 11.0f << 7;
    QTest::newRow("twice the default") << 512 << 192.0f << 128;
    QTest::newRow("three times the width is beyond int") << lastInt << 805306367.0f << 536870911;
}

void NodeDataTest::badgesFollowTheWidth()
{
    QFETCH(int, width);
    QFETCH(float, corner);
    NodeData node;
    node.width = width;
    node.updateBadges();
    QCOMPARE(node.lockBadgePos, QVector2D(-corner, corner));
    QCOMPARE(node.cornerBadgePos, QVector2D(corner, corner));
    QTEST(node.badgeSize, "badgeSize");
}

void NodeDataTest::badgesWidenTheLabelBoundAndNeverShrinkIt()
{
    NodeData node;
    node.labelWidth = 500;
    node.updateBadges();
    QCOMPARE(node.labelBoundWidth, 500);
    node.labelWidth = 300;
    node.updateBadges();
    QCOMPARE(node.labelBoundWidth, 500);
}

void NodeDataTest::resizeTakesAMultipleOfTheDefaultSize_data()
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    QTest::addColumn<float>("factor");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("diameter");
    QTest::newRow("default") << 1.0f << 256 << 362;
    QTest::newRow("twice") << 2.0f << 512 << 724;
    QTest::newRow("one ulp below 1") << std::nextafter(1.0f, 0.0f) << 255 << 360;
    QTest::newRow("at the floor") << 0.1f << 25 << 35;
    QTest::newRow("below the floor, where 24 would come out") << 0.0976f << 25 << 35;
    QTest::newRow("first factor that gives 26") << 0.1015625f << 26 << 36;
    QTest::newRow("one ulp less") << std::nextafter(0.1015625f, 0.0f) << 25 << 35;
    QTest::newRow("zero") << 0.0f << 25 << 35;
    QTest::newRow("negative") << -3.0f << 25 << 35;
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << 25 << 35;
    QTest::newRow("negative infinity") << -infinity << 25 << 35;
    QTest::newRow("beyond int") << 1e9f << lastInt << lastInt;
    QTest::newRow("infinity") << infinity << lastInt << lastInt;
}

void NodeDataTest::resizeTakesAMultipleOfTheDefaultSize()
{
    QFETCH(float, factor);
    NodeData node;
    node.resize(factor);
    QTEST(node.width, "width");
    QTEST(node.height, "width");
    QTEST(node.circleDiameter, "diameter");
}

void NodeDataTest::resizeKeepsTheCircleSizeButRaisesItToOne_data()
{
    QTest::addColumn<float>("circleSize");
    QTest::addColumn<float>("expected");
    QTest::addColumn<int>("diameter");
    QTest::newRow("above one") << 1.5f << 1.5f << 543;
    QTest::newRow("one") << 1.0f << 1.0f << 362;
    QTest::newRow("one ulp above one") << std::nextafter(1.0f, 2.0f) << std::nextafter(1.0f, 2.0f) << 362;
    QTest::newRow("one ulp below one") << std::nextafter(1.0f, 0.0f) << 1.0f << 362;
    QTest::newRow("half") << 0.5f << 1.0f << 362;
}

void NodeDataTest::resizeKeepsTheCircleSizeButRaisesItToOne()
{
    QFETCH(float, circleSize);
    QFETCH(float, expected);
    NodeData node;
    node.circleSize = circleSize;
    node.resize(1.0f);
    QVERIFY(node.circleSize == expected);
    QTEST(node.circleDiameter, "diameter");
}

void NodeDataTest::resizeRefreshesTheBadges()
{
    NodeData node;
    node.labelWidth = 500;
    node.resize(2.0f);
    QCOMPARE(node.lockBadgePos, QVector2D(-192.0f, 192.0f));
    QCOMPARE(node.cornerBadgePos, QVector2D(192.0f, 192.0f));
    QCOMPARE(node.badgeSize, 128);
    QCOMPARE(node.labelBoundWidth, 500);
}

void NodeDataTest::bodyIsTheCircleWhereThatIsShown()
{
    NodeData node;
    QCOMPARE(node.bodyDiameter(), 256);
    node.circleShow = true;
    QCOMPARE(node.bodyDiameter(), 362);
}

void NodeDataTest::labelBoxIsThatOfTheSetNumbersWhileTextIsOff()
{
    NodeData node;
    node.labelWidth = 500;
    node.labelHeight = 228;
    node.setNumWidth = 120;
    node.setNumHeight = 76;
    QCOMPARE(node.labelBox(true), QSize(500, 228));
    QCOMPARE(node.labelBox(false), QSize(120, 76));
}

QTEST_APPLESS_MAIN(NodeDataTest)

#include "NodeDataTest.moc"
