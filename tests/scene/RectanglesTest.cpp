#include "scene/Rectangles.h"

#include <QtTest>

#include <cmath>
#include <limits>

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

} // namespace

class RectanglesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frameHoldsWhatIsStrictlyInside_data();
    void frameHoldsWhatIsStrictlyInside();
    void frameHoldsNothingBetweenSwappedCorners();
    void frameWithoutExtentHoldsNothing();
    void boxHoldsWhatIsStrictlyInside_data();
    void boxHoldsWhatIsStrictlyInside();
    void boxWithoutExtentHoldsNothing();
    void sizesMakeTheRectanglesOfQt_data();
    void sizesMakeTheRectanglesOfQt();
    void sizesAreHeldToTheIntegers_data();
    void sizesAreHeldToTheIntegers();
    void cornersMakeTheSameRectangleInAnyOrder_data();
    void cornersMakeTheSameRectangleInAnyOrder();
    void cornersMayLieAtTheEndsOfTheIntegers();
};

void RectanglesTest::frameHoldsWhatIsStrictlyInside_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<float>("y");
    QTest::addColumn<bool>("inside");

    // The frame runs from (-10, 20) at the left top to (30, -5) at the right bottom, y up.
    QTest::newRow("middle") << 10.0f << 7.0f << true;
    QTest::newRow("left rim") << -10.0f << 7.0f << false;
    QTest::newRow("one step in from the left rim") << above(-10.0f) << 7.0f << true;
    QTest::newRow("one unit out from the left rim") << -11.0f << 7.0f << false;
    QTest::newRow("right rim") << 30.0f << 7.0f << false;
    QTest::newRow("one step in from the right rim") << below(30.0f) << 7.0f << true;
    QTest::newRow("one unit out from the right rim") << 31.0f << 7.0f << false;
    QTest::newRow("top rim") << 10.0f << 20.0f << false;
    QTest::newRow("one step in from the top rim") << 10.0f << below(20.0f) << true;
    QTest::newRow("one unit out from the top rim") << 10.0f << 21.0f << false;
    QTest::newRow("bottom rim") << 10.0f << -5.0f << false;
    QTest::newRow("one step in from the bottom rim") << 10.0f << above(-5.0f) << true;
    QTest::newRow("one unit out from the bottom rim") << 10.0f << -6.0f << false;
    QTest::newRow("left top corner") << -10.0f << 20.0f << false;
    QTest::newRow("one step in from the left top corner") << above(-10.0f) << below(20.0f) << true;
    QTest::newRow("right bottom corner") << 30.0f << -5.0f << false;
    QTest::newRow("one step in from the right bottom corner") << below(30.0f) << above(-5.0f) << true;
    QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << 7.0f << false;
}

void RectanglesTest::frameHoldsWhatIsStrictlyInside()
{
    QFETCH(float, x);
    QFETCH(float, y);
    QFETCH(bool, inside);
    QCOMPARE(insideFrame({-10.0f, 20.0f}, {30.0f, -5.0f}, {x, y}), inside);
}

void RectanglesTest::frameHoldsNothingBetweenSwappedCorners()
{
    const QVector2D middle(10.0f, 7.0f);
    QVERIFY(!insideFrame({30.0f, -5.0f}, {-10.0f, 20.0f}, middle));
    QVERIFY(!insideFrame({-10.0f, -5.0f}, {30.0f, 20.0f}, middle));
    QVERIFY(!insideFrame({30.0f, 20.0f}, {-10.0f, -5.0f}, middle));
}

void RectanglesTest::frameWithoutExtentHoldsNothing()
{
    QVERIFY(!insideFrame({5.0f, 5.0f}, {5.0f, 5.0f}, {5.0f, 5.0f}));
    QVERIFY(!insideFrame({5.0f, 10.0f}, {5.0f, 0.0f}, {5.0f, 5.0f}));
    QVERIFY(!insideFrame({0.0f, 5.0f}, {10.0f, 5.0f}, {5.0f, 5.0f}));
}

void RectanglesTest::boxHoldsWhatIsStrictlyInside_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<float>("y");
    QTest::addColumn<bool>("inside");

    // The box is 21 wide and 8 high around (100, -50): from 89.5 to 110.5 and from -54 to -46.
    QTest::newRow("centre") << 100.0f << -50.0f << true;
    QTest::newRow("left side") << 89.5f << -50.0f << false;
    QTest::newRow("one step in from the left side") << above(89.5f) << -50.0f << true;
    QTest::newRow("one unit out from the left side") << 88.5f << -50.0f << false;
    QTest::newRow("right side") << 110.5f << -50.0f << false;
    QTest::newRow("one step in from the right side") << below(110.5f) << -50.0f << true;
    QTest::newRow("one unit out from the right side") << 111.5f << -50.0f << false;
    QTest::newRow("top side") << 100.0f << -46.0f << false;
    QTest::newRow("one step in from the top side") << 100.0f << below(-46.0f) << true;
    QTest::newRow("one unit out from the top side") << 100.0f << -45.0f << false;
    QTest::newRow("bottom side") << 100.0f << -54.0f << false;
    QTest::newRow("one step in from the bottom side") << 100.0f << above(-54.0f) << true;
    QTest::newRow("one unit out from the bottom side") << 100.0f << -55.0f << false;
    QTest::newRow("corner") << 110.5f << -46.0f << false;
    QTest::newRow("one step in from the corner") << below(110.5f) << below(-46.0f) << true;
}

void RectanglesTest::boxHoldsWhatIsStrictlyInside()
{
    QFETCH(float, x);
    QFETCH(float, y);
    QFETCH(bool, inside);
    QCOMPARE(insideBox({100.0f, -50.0f}, 21.0f, 8.0f, {x, y}), inside);
}

void RectanglesTest::boxWithoutExtentHoldsNothing()
{
    const QVector2D centre(3.0f, 4.0f);
    QVERIFY(!insideBox(centre, 0.0f, 10.0f, centre));
    QVERIFY(!insideBox(centre, 10.0f, 0.0f, centre));
    QVERIFY(!insideBox(centre, -10.0f, 10.0f, centre));
    QVERIFY(!insideBox(centre, 10.0f, -10.0f, centre));
    QVERIFY(insideBox(centre, 10.0f, 10.0f, centre));
}

void RectanglesTest::sizesMakeTheRectanglesOfQt_data()
{
    QTest::addColumn<QRect>("rect");

    QTest::newRow("ordinary") << QRect(-10, 20, 30, 40);
    QTest::newRow("one by one") << QRect(5, 6, 1, 1);
    QTest::newRow("without extent") << QRect(100, 50, 0, 0);
    QTest::newRow("with a negative height") << QRect(-4000, 2400, 8000, -4800);
}

void RectanglesTest::sizesMakeTheRectanglesOfQt()
{
    QFETCH(QRect, rect);
    QCOMPARE(rectOfSize(rect.left(), rect.top(), rect.width(), rect.height()), rect);
}

void RectanglesTest::sizesAreHeldToTheIntegers_data()
{
    QTest::addColumn<int>("near");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<int>("far");

    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    QTest::newRow("to the last one") << 1 << qint64{highest} << highest;
    QTest::newRow("one past the last one") << 2 << qint64{highest} << highest;
    QTest::newRow("far past the last one") << highest << qint64{highest} << highest;
    QTest::newRow("beyond the integers") << 0 << qint64{highest} * 4 << highest;
    QTest::newRow("nothing at the last one") << highest << qint64{0} << highest - 1;
    QTest::newRow("one at the first one") << lowest << qint64{1} << lowest;
    QTest::newRow("nothing at the first one") << lowest << qint64{0} << lowest;
    QTest::newRow("less than nothing at the first one") << lowest << qint64{-1000} << lowest;
    QTest::newRow("most from the first one") << lowest << qint64{highest} << -2;
}

void RectanglesTest::sizesAreHeldToTheIntegers()
{
    QFETCH(int, near);
    QFETCH(qint64, length);
    QFETCH(int, far);

    const QRect wide = rectOfSize(near, 3, length, 4);
    QCOMPARE(wide.left(), near);
    QCOMPARE(wide.right(), far);
    QCOMPARE(wide.top(), 3);
    QCOMPARE(wide.bottom(), 6);

    const QRect high = rectOfSize(3, near, 4, length);
    QCOMPARE(high.left(), 3);
    QCOMPARE(high.right(), 6);
    QCOMPARE(high.top(), near);
    QCOMPARE(high.bottom(), far);
}

void RectanglesTest::cornersMakeTheSameRectangleInAnyOrder_data()
{
    QTest::addColumn<QPoint>("one");
    QTest::addColumn<QPoint>("other");

    QTest::newRow("left top, right bottom") << QPoint(-3, 4) << QPoint(10, 25);
    QTest::newRow("right bottom, left top") << QPoint(10, 25) << QPoint(-3, 4);
    QTest::newRow("left bottom, right top") << QPoint(-3, 25) << QPoint(10, 4);
    QTest::newRow("right top, left bottom") << QPoint(10, 4) << QPoint(-3, 25);
}

void RectanglesTest::cornersMakeTheSameRectangleInAnyOrder()
{
    QFETCH(QPoint, one);
    QFETCH(QPoint, other);

    const QRect rect = rectFromCorners(one, other);
    QCOMPARE(rect.left(), -3);
    QCOMPARE(rect.right(), 10);
    QCOMPARE(rect.top(), 4);
    QCOMPARE(rect.bottom(), 25);
    // Both corners belong to the rectangle.
    QCOMPARE(rect.size(), QSize(14, 22));
}

void RectanglesTest::cornersMayLieAtTheEndsOfTheIntegers()
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();

    const QRect rect = rectFromCorners({highest, lowest}, {lowest, highest});
    QCOMPARE(rect.left(), lowest);
    QCOMPARE(rect.right(), highest);
    QCOMPARE(rect.top(), lowest);
    QCOMPARE(rect.bottom(), highest);
    QCOMPARE(rectFromCorners({5, 6}, {5, 6}), QRect(5, 6, 1, 1));
}

QTEST_APPLESS_MAIN(RectanglesTest)

#include "RectanglesTest.moc"
