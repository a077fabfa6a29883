#include "support/Desk.h"
#include "support/OwnDesktop.h"

#include <NELK/NELK>

#include <QApplication>
#include <QDialog>
#include <QtTest>

using namespace NELK;

/// What a host sees of a user who works with a view under a window manager.
class EndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectsByClicks();
    void togglesByControlClicks();
    void movesTheSelectionByADrag();
    void selectsAndMovesByOneDrag();
    void selectsByARubberBand();
    void zoomsByTheWheelAtTheCursor();
    void keepsTheScaleWhileControlIsHeld();
    void forgetsControlUnderAModalWindow();
    void pansByHand();
    void zoomsToAFrame();
    void drawsALine();
    void pansByADragInTheEye();
    void jumpsInTheEye();
    void zoomsByTheWheelOverTheEye();
    void foldsTheEyeAway();
    void leavesToTheEyeWhatMissesTheButton();
    void scrollsByTheBars();
    void pansByKeys_data();
    void pansByKeys();
    void tellsOfRightClicks();
    void tellsOfDoubleClicks();
    void letsNothingThroughWhileBlocked();
};

namespace
{

// Where things are in the view at first, in pixels.
constexpr QPoint node1{200, 200};
constexpr QPoint node2{600, 200};
constexpr QPoint node3{200, 400};
constexpr QPoint edge12{400, 200};
constexpr QPoint background{400, 400};
constexpr QPoint eye{640, 504};
constexpr QPoint middleOfEye{720, 552};
constexpr QPoint rightArrow{792, 608};
constexpr QPoint downArrow{808, 592};

/// Inside the circle of a node, outside its icon.
constexpr QPoint besideTheIcon{0, -31};

const QString white = QStringLiteral("#ffffff");
const QString black = QStringLiteral("#000000");
const QString circleBlue = QStringLiteral("#0000ff");
const QString rubberBandBlue = QStringLiteral("#2a7fd4");
const QString eyeGrey = QStringLiteral("#f2f2f2");
const QString watchedFrame = QStringLiteral("#26508f");

const QString control = QStringLiteral("Control_L");

} // namespace

void EndToEndTest::selectsByClicks()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.click(node1);
    QCOMPARE(desk.takeTold(), QStringList{selected({1}, {})});
    desk.user.click(edge12);
    QCOMPARE(desk.takeTold(), QStringList{selected({}, {12})});
    desk.user.click(node3);
    QCOMPARE(desk.takeTold(), QStringList{selected({3}, {})});
    QVERIFY(desk.node(3).select());
    desk.user.click(background);
    QCOMPARE(desk.takeTold(), QStringList{selected({}, {})});
    QVERIFY(!desk.node(3).select());
    desk.user.click(background);
    QCOMPARE(desk.takeTold(), QStringList{});
}

void EndToEndTest::togglesByControlClicks()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.click(node1);
    desk.user.holdKey(control);
    desk.user.click(node2);
    desk.user.click(edge12);
    desk.user.click(node1);
    desk.user.click(background);
    desk.user.click(node3);
    desk.user.releaseKey(control);
    QCOMPARE(desk.takeTold(), (QStringList{selected({1}, {}), selected({1, 2}, {}), selected({1, 2}, {12}),
                                           selected({2}, {12}), selected({2, 3}, {12})}));
    desk.user.click(node2);
    QCOMPARE(desk.takeTold(), QStringList{selected({2}, {})});
}

void EndToEndTest::movesTheSelectionByADrag()
{
    Desk desk;
    desk.node(1).setSelect(true);
    desk.node(2).setSelect(true);
    QVERIFY(desk.show());

    desk.user.drag(node1, node1 + QPoint(60, -30));
    QCOMPARE(desk.node(1).pos(), QPoint(-700, 650));
    QCOMPARE(desk.node(2).pos(), QPoint(1300, 650));
    QCOMPARE(desk.node(3).pos(), QPoint(-1000, -500));
    QCOMPARE(desk.edge().startPos(), QPoint(-700, -650));
    QCOMPARE(desk.edge().endPos(), QPoint(1300, -650));
    QCOMPARE(desk.takeTold(), QStringList{});
    QCOMPARE(desk.middle(), QPoint(0, 0));
    QTRY_COMPARE(desk.colorNameAt(node1 + QPoint(60, -30) + besideTheIcon), circleBlue);
    QCOMPARE(desk.colorNameAt(node1 - QPoint(30, 0)), white);
}

void EndToEndTest::selectsAndMovesByOneDrag()
{
    Desk desk;
    desk.node(1).setSelect(true);
    QVERIFY(desk.show());

    desk.user.drag(node3, node3 + QPoint(-20, 10));
    QCOMPARE(desk.takeTold(), QStringList{selected({3}, {})});
    QCOMPARE(desk.node(3).pos(), QPoint(-1100, -550));
    QCOMPARE(desk.node(1).pos(), QPoint(-1000, 500));
}

void EndToEndTest::selectsByARubberBand()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.startDrag({120, 130}, {330, 460});
    QTRY_COMPARE(desk.colorNameAt({120, 300}), rubberBandBlue);
    QCOMPARE(desk.takeTold(), QStringList{});
    desk.user.release();
    QCOMPARE(desk.takeTold(), QStringList{selected({1, 3}, {12})});
    QTRY_COMPARE(desk.colorNameAt({120, 300}), white);

    desk.user.drag({120, 320}, {300, 460});
    QCOMPARE(desk.takeTold(), QStringList{selected({3}, {})});

    desk.user.holdKey(control);
    desk.user.drag({660, 250}, {540, 150});
    desk.user.releaseKey(control);
    QCOMPARE(desk.takeTold(), QStringList{selected({2, 3}, {12})});
    QCOMPARE(desk.node(3).pos(), QPoint(-1000, -500));
}

void EndToEndTest::zoomsByTheWheelAtTheCursor()
{
    Desk desk;
    QVERIFY(desk.show());
    QVERIFY(desk.hasScale(0.2f));

    // The point under the cursor, (1000, 500), is brought back by 10 and 5 whole pixels: by 47.6 and 23.8 units.
    desk.user.turnWheelForward(node2);
    QVERIFY(desk.hasScale(0.2f * 1.05f));
    QVERIFY(qFuzzyCompare(float(desk.zoomRatio), 0.5f / 1.05f));
    QCOMPARE(desk.view.viewToScene(node2), QPoint(952 + 47, 476 + 23));
    QTRY_COMPARE(desk.colorNameAt(node2 + QPoint(0, -37)), circleBlue);

    // And back by as many pixels, which are 50 and 25 units now.
    desk.user.turnWheelBackward(node2);
    QVERIFY(desk.hasScale(0.2f));
    QVERIFY(qFuzzyCompare(float(desk.zoomRatio), 0.5f));
    QCOMPARE(desk.view.viewToScene(node2), QPoint(1000 - 2, 500 - 1));
    QCOMPARE(desk.takeTold(), QStringList{});
}

void EndToEndTest::keepsTheScaleWhileControlIsHeld()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.holdKey(control);
    desk.user.turnWheelForward(node2);
    QVERIFY(desk.hasScale(0.2f));
    QCOMPARE(desk.middle(), QPoint(0, 0));
    desk.user.releaseKey(control);
    desk.user.turnWheelForward(node2);
    QVERIFY(desk.hasScale(0.2f * 1.05f));
}

void EndToEndTest::forgetsControlUnderAModalWindow()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.holdKey(control);
    QDialog dialog(&desk.view);
    dialog.open();
    QVERIFY(QTest::qWaitForWindowActive(&dialog, DesktopUser::patience));
    desk.user.releaseKey(control);
    dialog.close();
    QVERIFY(QTest::qWaitForWindowActive(&desk.view, DesktopUser::patience));
    desk.user.turnWheelForward(node2);
    QVERIFY(desk.hasScale(0.2f * 1.05f));
}

void EndToEndTest::pansByHand()
{
    Desk desk;
    QVERIFY(desk.show());
    QCOMPARE(desk.middle(), QPoint(0, 0));

    desk.view.setOperateMode(2, 0);
    QCOMPARE(desk.view.childAt(background)->cursor().shape(), Qt::OpenHandCursor);
    desk.user.drag(node1, node1 + QPoint(60, -40));
    QCOMPARE(desk.middle(), QPoint(-300, -200));
    QCOMPARE(desk.takeTold(), QStringList{});
    QCOMPARE(desk.node(1).pos(), QPoint(-1000, 500));
    QTRY_COMPARE(desk.colorNameAt(node1 + QPoint(60, -40) + besideTheIcon), circleBlue);

    desk.view.setOperateMode(1, 0);
    desk.user.click(node1 + QPoint(60, -40));
    QCOMPARE(desk.takeTold(), QStringList{selected({1}, {})});
    QCOMPARE(desk.middle(), QPoint(-300, -200));
}

void EndToEndTest::zoomsToAFrame()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.view.setOperateMode(3, 0);
    desk.user.startDrag({100, 100}, {299, 249});
    QTRY_COMPARE(desk.colorNameAt({101, 101}), black);
    desk.user.release();
    QCOMPARE(desk.view.viewRect(), QRect(-1500, 1000, 1000, 750));
    QCOMPARE(desk.takeTold(), QStringList{});

    // The mode is the normal one again: a click selects, here node 1, which has moved.
    desk.user.click({400, 400});
    QCOMPARE(desk.takeTold(), QStringList{selected({1}, {})});
    QCOMPARE(desk.view.viewRect(), QRect(-1500, 1000, 1000, 750));
}

void EndToEndTest::drawsALine()
{
    Desk desk;
    QVERIFY(desk.show());
    const QPoint onTheLine(600, 374);
    const QPoint inTheHeadAtTheEnd(713, 316);
    const QPoint whereAHeadAtTheStartWouldBe(486, 433);

    desk.view.setOperateMode(5, 1);
    desk.user.startDrag({450, 450}, {750, 300});
    QTRY_VERIFY(desk.isDarkAt(onTheLine));
    QVERIFY(desk.isDarkAt(inTheHeadAtTheEnd));
    QCOMPARE(desk.colorNameAt(whereAHeadAtTheStartWouldBe), white);
    QCOMPARE(desk.takeTold(), QStringList{});

    desk.user.release();
    QCOMPARE(desk.takeTold(), QStringList{lineDrawn({450, 450}, {750, 300})});
    QTRY_COMPARE(desk.colorNameAt(onTheLine), white);
    QCOMPARE(desk.middle(), QPoint(0, 0));
}

void EndToEndTest::pansByADragInTheEye()
{
    Desk desk;
    QVERIFY(desk.show());
    QTRY_COMPARE(desk.colorNameAt(eye + QPoint(40, 18)), watchedFrame);

    // A pixel of the eye is 50 units.
    desk.user.drag(middleOfEye, middleOfEye + QPoint(10, -4));
    QCOMPARE(desk.middle(), QPoint(500, 200));
    QTRY_COMPARE(desk.colorNameAt(eye + QPoint(50, 14)), watchedFrame);
    QCOMPARE(desk.takeTold(), QStringList{});

    // The drag is over, and the wheel is free again.
    desk.user.turnWheelForward(middleOfEye);
    QVERIFY(desk.hasScale(800.0f / (8000.0f * 0.49f)));
    QCOMPARE(desk.middle(), QPoint(500, 200));
}

void EndToEndTest::jumpsInTheEye()
{
    Desk desk;
    QVERIFY(desk.show());
    desk.view.setCameraScale(0.8f);
    desk.view.setCameraX(0);
    QCOMPARE(desk.view.viewRect(), QRect(-500, 375, 1000, 750));

    // 40 pixels to the right of the middle of the eye and 18 up. The drag that follows in one go is none.
    desk.user.drag(eye + QPoint(120, 30), eye + QPoint(130, 40));
    QCOMPARE(desk.middle(), QPoint(2000, 900));

    desk.user.drag(eye + QPoint(120, 30), eye + QPoint(100, 35));
    QCOMPARE(desk.middle(), QPoint(1000, 650));
    QVERIFY(desk.hasScale(0.8f));
}

void EndToEndTest::zoomsByTheWheelOverTheEye()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.turnWheelForward(middleOfEye + QPoint(60, 30));
    QVERIFY(desk.hasScale(800.0f / (8000.0f * 0.49f)));
    desk.user.turnWheelBackward(middleOfEye + QPoint(60, 30));
    QVERIFY(desk.hasScale(0.2f));
    desk.user.turnWheelBackward(middleOfEye + QPoint(60, 30));
    QVERIFY(desk.hasScale(800.0f / (8000.0f * 0.51f)));
    QCOMPARE(desk.middle(), QPoint(0, 0));
}

void EndToEndTest::foldsTheEyeAway()
{
    Desk desk;
    QVERIFY(desk.show());
    const QPoint inTheEye = eye + QPoint(50, 6);
    QVERIFY(desk.view.isViewEyeVisible());

    desk.user.click(eye + QPoint(5, 5));
    QVERIFY(!desk.view.isViewEyeVisible());
    QTRY_COMPARE(desk.colorNameAt(inTheEye), white);
    desk.user.click(inTheEye, Qt::RightButton);
    QCOMPARE(desk.takeTold(), QStringList{rightClicked(ELEMENT_NONE, -1)});

    // The button has gone to the corner of the view.
    desk.user.click({795, 595});
    QVERIFY(desk.view.isViewEyeVisible());
    QTRY_COMPARE(desk.colorNameAt(inTheEye), eyeGrey);
    desk.user.click(inTheEye, Qt::RightButton);
    QCOMPARE(desk.takeTold(), QStringList{});
    QCOMPARE(desk.middle(), QPoint(0, 0));
}

void EndToEndTest::leavesToTheEyeWhatMissesTheButton()
{
    Desk desk;
    QVERIFY(desk.show());

    // In the square of the button, but below the diagonal: a jump to (-2800, 1200), as far as the limits let it.
    desk.user.click(eye + QPoint(24, 24));
    QVERIFY(desk.view.isViewEyeVisible());
    QCOMPARE(desk.middle(), QPoint(-2000, 900));
}

void EndToEndTest::scrollsByTheBars()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.click(rightArrow);
    QCOMPARE(desk.middle(), QPoint(400, 0));
    desk.user.click({700, 608}); // beside the handle: a page
    QCOMPARE(desk.middle(), QPoint(2000, 0));
    desk.user.click(downArrow);
    QCOMPARE(desk.middle(), QPoint(2000, -300));
    desk.user.drag({808, 300}, {808, 10}); // as far up as the handle goes
    QCOMPARE(desk.middle(), QPoint(2000, 900));
    QCOMPARE(desk.takeTold(), QStringList{});
    QTRY_COMPARE(desk.colorNameAt(QPoint(200, 380) + besideTheIcon), circleBlue);
}

void EndToEndTest::pansByKeys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QPoint>("middle");

    QTest::newRow("left") << QStringLiteral("Left") << QPoint(-400, 0);
    QTest::newRow("right") << QStringLiteral("Right") << QPoint(400, 0);
    QTest::newRow("up") << QStringLiteral("Up") << QPoint(0, 300);
    QTest::newRow("down") << QStringLiteral("Down") << QPoint(0, -300);
    QTest::newRow("page up, to the limit") << QStringLiteral("Page_Up") << QPoint(0, 900);
    QTest::newRow("page down, to the limit") << QStringLiteral("Page_Down") << QPoint(0, -900);
    QTest::newRow("another key") << QStringLiteral("Home") << QPoint(0, 0);
}

void EndToEndTest::pansByKeys()
{
    QFETCH(QString, key);
    QFETCH(QPoint, middle);
    Desk desk;
    QVERIFY(desk.show());

    desk.user.strikeKey(key);
    QCOMPARE(desk.middle(), middle);
    QCOMPARE(desk.bar(Qt::Horizontal).value(), middle.x());
    QCOMPARE(desk.bar(Qt::Vertical).value(), -middle.y());
}

void EndToEndTest::tellsOfRightClicks()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.user.click(node2, Qt::RightButton);
    QCOMPARE(desk.takeTold(), QStringList{rightClicked(ELEMENT_NODE, 2)});
    desk.user.click(edge12, Qt::RightButton);
    QCOMPARE(desk.takeTold(), QStringList{rightClicked(ELEMENT_EDGE, 12)});
    desk.user.click(background, Qt::RightButton);
    QCOMPARE(desk.takeTold(), QStringList{rightClicked(ELEMENT_NONE, -1)});
}

void EndToEndTest::tellsOfDoubleClicks()
{
    Desk desk;
    QVERIFY(desk.show());
    QApplication::setDoubleClickInterval(60000);

    desk.user.doubleClick(node2);
    QCOMPARE(desk.takeTold(), (QStringList{selected({2}, {}), doubleClicked(ELEMENT_NODE, 2)}));
    desk.user.doubleClick(edge12);
    QCOMPARE(desk.takeTold(), (QStringList{selected({}, {12}), doubleClicked(ELEMENT_EDGE, 12)}));
    desk.user.doubleClick(background);
    QCOMPARE(desk.takeTold(), QStringList{selected({}, {})});
}

void EndToEndTest::letsNothingThroughWhileBlocked()
{
    Desk desk;
    QVERIFY(desk.show());

    desk.view.blockInteraction(true);
    desk.user.click(node1);
    desk.user.click(node1, Qt::RightButton);
    desk.user.drag(node2, node2 + QPoint(50, 50));
    desk.user.drag({120, 130}, {330, 460});
    desk.user.turnWheelForward(node2);
    desk.user.strikeKey(QStringLiteral("Right"));
    QCOMPARE(desk.takeTold(), QStringList{});
    QCOMPARE(desk.node(2).pos(), QPoint(1000, 500));
    QCOMPARE(desk.view.viewRect(), QRect(-2000, 1500, 4000, 3000));

    // Eye and bars are not blocked.
    desk.user.drag(middleOfEye, middleOfEye + QPoint(10, -4));
    QCOMPARE(desk.middle(), QPoint(500, 200));
    desk.user.click(rightArrow);
    QCOMPARE(desk.middle(), QPoint(900, 200));

    desk.view.blockInteraction(false);
    desk.user.click({420, 240});
    QCOMPARE(desk.takeTold(), QStringList{selected({2}, {})});
}

int main(int argc, char* argv[])
{
    if (!OwnDesktop::isHere())
        return runOnOwnDesktop(argc, argv);
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("fusion"));
    EndToEndTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "EndToEndTest.moc"
