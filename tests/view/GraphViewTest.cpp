#include "scene/NodeData.h"
#include "support/HostedGraphView.h"
#include "support/SceneOf.h"

#include <QElapsedTimer>

#include <array>

using namespace NELK;

namespace
{

/// Where eye and button stand in a view with scroll bars, to the pixel.
struct Place
{
    QSize scene;
    QSize view;
    QRect eye;
    /// After the eye was unfolded. Floats, in which the eye may overlap a whole pixel by next to nothing, leave the
    /// button there; a resize puts it into the corner of the eye.
    QPoint unfoldedButton;
};

constexpr std::array<Place, 50> places{{
    {{8000, 4800}, {816, 616}, {640, 504, 160, 96}, {640, 504}},
    {{8000, 4800}, {32, 32}, {12, 14, 4, 2}, {12, 14}},
    {{8000, 4800}, {141, 216}, {100, 184, 25, 16}, {100, 185}},
    {{8000, 4800}, {241, 516}, {180, 472, 45, 28}, {180, 473}},
    {{8000, 4800}, {1016, 617}, {800, 480, 200, 121}, {800, 481}},
    {{8000, 4800}, {816, 376}, {680, 288, 120, 72}, {680, 288}},
    {{8000, 4800}, {1616, 1216}, {1280, 1008, 320, 192}, {1280, 1008}},
    {{8000, 4800}, {500, 1000}, {387, 925, 97, 59}, {387, 925}},
    {{8000, 4800}, {966, 993}, {760, 862, 190, 115}, {760, 863}},
    {{8000, 4800}, {965, 1080}, {759, 950, 190, 114}, {759, 950}},
    {{8000, 4800}, {1242, 428}, {1088, 329, 138, 83}, {1088, 329}},
    {{8000, 4800}, {418, 1088}, {321, 1023, 81, 49}, {321, 1023}},
    {{8000, 4800}, {1014, 421}, {863, 324, 135, 81}, {863, 324}},
    {{8000, 4800}, {232, 954}, {172, 912, 44, 26}, {172, 912}},
    {{8000, 4800}, {661, 330}, {540, 251, 105, 63}, {540, 251}},
    {{8000, 4800}, {225, 125}, {172, 87, 37, 22}, {172, 87}},
    {{8000, 4800}, {1259, 851}, {994, 685, 249, 150}, {994, 685}},
    {{8000, 4800}, {967, 362}, {835, 276, 116, 70}, {835, 276}},
    {{8000, 4800}, {1316, 70}, {1282, 43, 18, 11}, {1282, 43}},
    {{8000, 4800}, {1122, 169}, {1055, 122, 51, 31}, {1055, 122}},
    {{8000, 4800}, {161, 113}, {116, 79, 29, 18}, {116, 79}},
    {{8000, 4800}, {429, 535}, {330, 469, 83, 50}, {330, 469}},
    {{8000, 4800}, {1268, 101}, {1223, 68, 29, 17}, {1223, 68}},
    {{8000, 4800}, {990, 708}, {779, 575, 195, 117}, {779, 575}},
    {{8000, 4800}, {942, 440}, {784, 339, 142, 85}, {784, 339}},
    {{8000, 4800}, {1103, 518}, {919, 401, 168, 101}, {919, 401}},
    {{8000, 9600}, {266, 496}, {200, 419, 50, 61}, {200, 420}},
    {{8000, 9600}, {1351, 642}, {1230, 500, 105, 126}, {1230, 500}},
    {{8000, 9600}, {1063, 49}, {1041, 26, 6, 7}, {1041, 26}},
    {{8000, 9600}, {1396, 214}, {1347, 158, 33, 40}, {1347, 158}},
    {{8000, 9600}, {976, 609}, {861, 474, 99, 119}, {861, 474}},
    {{8000, 9600}, {873, 210}, {824, 155, 33, 39}, {824, 155}},
    {{8000, 9600}, {1489, 560}, {1382, 435, 91, 109}, {1382, 435}},
    {{8000, 9600}, {685, 510}, {586, 395, 83, 99}, {586, 395}},
    {{12000, 4800}, {1090, 631}, {859, 529, 215, 86}, {859, 529}},
    {{12000, 4800}, {100, 183}, {67, 160, 17, 7}, {67, 160}},
    {{12000, 4800}, {1193, 261}, {1054, 196, 123, 49}, {1054, 196}},
    {{12000, 4800}, {860, 260}, {722, 195, 122, 49}, {722, 195}},
    {{12000, 4800}, {635, 831}, {495, 765, 124, 50}, {495, 765}},
    {{12000, 4800}, {176, 74}, {131, 46, 29, 12}, {131, 46}},
    {{12000, 4800}, {1442, 41}, {1413, 20, 13, 5}, {1413, 20}},
    {{12000, 4800}, {477, 469}, {368, 416, 93, 37}, {368, 416}},
    {{16001, 9999}, {147, 1002}, {104, 969, 27, 17}, {104, 969}},
    {{16001, 9999}, {808, 853}, {633, 738, 159, 99}, {633, 738}},
    {{16001, 9999}, {899, 189}, {827, 138, 56, 35}, {827, 138}},
    {{16001, 9999}, {1199, 446}, {1045, 344, 138, 86}, {1045, 344}},
    {{16001, 9999}, {1422, 592}, {1221, 460, 185, 116}, {1221, 460}},
    {{16001, 9999}, {729, 218}, {648, 161, 65, 41}, {648, 161}},
    {{16001, 9999}, {677, 721}, {528, 622, 133, 83}, {528, 622}},
    {{16001, 9999}, {71, 879}, {44, 856, 11, 7}, {44, 856}},
}};

constexpr QSize buttonSize{28, 28};

/// Circles are a little translucent.
const QColor blueOnWhite(77, 77, 255);

/// A blue disc in the middle of the scene.
void addDisc(GraphScene& graph)
{
    GraphNode node = graph.createNode();
    sceneOf(graph).nodes[node.getId()]->imageHidden = true;
    node.setCircleShow(true);
    node.setCircleColor(Qt::blue);
    node.setSize(2.0f);
}

} // namespace

/// How a graph view is put together and laid out, and what it shows.
class GraphViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void hasEverythingUnlessTold();
    void hasThePartsThatAreAskedFor_data();
    void hasThePartsThatAreAskedFor();
    void stacksOverlayEyeAndButtonOverTheNetwork();
    void laysOutTheScrollBarsAroundTheNetwork();

    void putsTheEyeIntoTheLowerRightCorner_data();
    void putsTheEyeIntoTheLowerRightCorner();
    void laysOutWithoutScrollBars();
    void keepsEverythingWhenItGetsTooSmall_data();
    void keepsEverythingWhenItGetsTooSmall();
    void hidesAndShowsTheScrollBars();
    void hasNoScrollBarsToShowThatItWasMadeWithout();

    void foldsTheEyeAwayWithItsButton();
    void staysFoldedThroughAResize();
    void foldsWithoutMovingAButtonThatIsNotShown();

    void showsWhatTheHostChangedAfterAnUpdate();
    void repaintsTheNetworkWithoutAnEyeToo();
    void savesWhatNetworkAndEyeShow();
    void tellsTheTimeOfTheLastRepaint();

private:
    QScopedPointer<HostedGraphView> resizable;
};

void GraphViewTest::initTestCase()
{
    resizable.reset(new HostedGraphView);
    QVERIFY(resizable->show());
}

void GraphViewTest::cleanupTestCase()
{
    resizable.reset();
}

void GraphViewTest::hasEverythingUnlessTold()
{
    GraphScene graph;
    const OpenGraphView view(&graph);
    QVERIFY(!view.parentWidget());
    QCOMPARE(view.size(), QSize(800, 600));
    QVERIFY(!view.eye()->isHidden());
    QVERIFY(!view.eyeButton()->isHidden());
    QVERIFY(!view.horizontalBar()->isHidden());
    QVERIFY(!view.verticalBar()->isHidden());
}

void GraphViewTest::hasThePartsThatAreAskedFor_data()
{
    QTest::addColumn<bool>("eye");
    QTest::addColumn<bool>("bars");
    QTest::addColumn<bool>("button");
    for (const bool eye : {false, true}) {
        for (const bool bars : {false, true}) {
            for (const bool button : {false, true})
                QTest::addRow("eye %d, bars %d, button %d", eye, bars, button) << eye << bars << button;
        }
    }
}

void GraphViewTest::hasThePartsThatAreAskedFor()
{
    QFETCH(bool, eye);
    QFETCH(bool, bars);
    QFETCH(bool, button);

    HostedGraphView host(eye, bars, button);
    QVERIFY(host.show());
    QCOMPARE(host.view->eye() != nullptr, eye);
    QCOMPARE(host.view->eyeButton() != nullptr, eye);
    QCOMPARE(host.view->eyeButton() && host.view->eyeButton()->isVisible(), eye && button);
    QCOMPARE(host.view->findChildren<QScrollBar*>().size(), bars ? 2 : 0);
    QCOMPARE(host.view->corner() != nullptr, bars);
    QCOMPARE(host.view->network()->geometry(), bars ? QRect(0, 0, 800, 600) : QRect(0, 0, 816, 616));
    QVERIFY(host.view->overlay()->isHidden());
    QVERIFY(host.view->isViewEyeVisible());
    QCOMPARE(host.view->saveEyeImage().isNull(), !eye);
    QCOMPARE(host.view->takeErrors(), QList<GLenum>());
}

void GraphViewTest::stacksOverlayEyeAndButtonOverTheNetwork()
{
    const HostedGraphView host;
    const QObjectList& children = host.view->children();
    const QList<QObject*> upward{host.view->network(), host.view->overlay(), host.view->eye(), host.view->eyeButton()};
    for (int i = 1; i < upward.size(); ++i)
        QVERIFY(children.indexOf(upward[i - 1]) < children.indexOf(upward[i]));
}

void GraphViewTest::laysOutTheScrollBarsAroundTheNetwork()
{
    HostedGraphView host;
    QVERIFY(host.show());
    QCOMPARE(host.view->horizontalBar()->geometry(), QRect(0, 600, 800, 16));
    QCOMPARE(host.view->verticalBar()->geometry(), QRect(800, 0, 16, 600));
    QCOMPARE(host.view->corner()->geometry(), QRect(800, 600, 16, 16));
    QVERIFY(!host.view->corner()->isEnabled());
    QCOMPARE(host.view->corner()->styleSheet(),
             QStringLiteral("QPushButton{background-color: white; padding: 0px; border: none; }"));
    QCOMPARE(host.view->corner()->grab().toImage().pixelColor(8, 8), QColor(Qt::white));
}

void GraphViewTest::putsTheEyeIntoTheLowerRightCorner_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Place& place = places[i];
        QTest::addRow("%d by %d in %d by %d", place.scene.width(), place.scene.height(), place.view.width(),
                      place.view.height())
            << static_cast<int>(i);
    }
}

void GraphViewTest::putsTheEyeIntoTheLowerRightCorner()
{
    QFETCH(int, index);
    const Place& place = places[static_cast<std::size_t>(index)];

    HostedGraphView& host = *resizable;
    host.graph.setSize(place.scene.width(), place.scene.height());
    host.resize(place.view);
    const QRect inCorner(place.eye.topLeft(), buttonSize);
    QCOMPARE(host.view->eye()->geometry(), place.eye);
    QCOMPARE(host.view->eyeButton()->geometry(), inCorner);

    const QSize area = place.view - QSize(16, 16);
    host.view->slotViewEyeOn(false);
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(area.width() - 28, area.height() - 28, 28, 28));
    host.view->slotViewEyeOn(true);
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(place.unfoldedButton, buttonSize));
    QCOMPARE(host.view->eye()->geometry(), place.eye);

    // At one pixel a unit, where the scene is the larger one, the view spans its own size.
    host.view->setCameraScale(1.0f);
    QCOMPARE(host.view->viewRect().size(), area);
}

void GraphViewTest::laysOutWithoutScrollBars()
{
    HostedGraphView host(true, false);
    QVERIFY(host.show());
    QCOMPARE(host.view->eye()->geometry(), QRect(652, 518, 164, 98));
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(652, 518, 28, 28));
}

void GraphViewTest::keepsEverythingWhenItGetsTooSmall_data()
{
    QTest::addColumn<bool>("bars");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("both") << true << QSize(31, 31) << true;
    QTest::newRow("width") << true << QSize(31, 400) << true;
    QTest::newRow("height") << true << QSize(400, 31) << true;
    QTest::newRow("neither") << true << QSize(32, 32) << false;
    QTest::newRow("both, without bars") << false << QSize(15, 15) << true;
    QTest::newRow("neither, without bars") << false << QSize(16, 16) << false;
}

void GraphViewTest::keepsEverythingWhenItGetsTooSmall()
{
    QFETCH(bool, bars);
    QFETCH(QSize, size);
    QFETCH(bool, isKept);

    HostedGraphView host(true, bars);
    QVERIFY(host.show());
    host.view->setCameraX(100);
    const QRect eye = host.view->eye()->geometry();
    const QRect button = host.view->eyeButton()->geometry();
    const QRect shown = host.view->viewRect();
    QSignalSpy ratios(host.view, SIGNAL(signalZoomRatioChanged(double)));

    host.resize(size);
    QCOMPARE(host.view->eye()->geometry() == eye, isKept);
    QCOMPARE(host.view->eyeButton()->geometry() == button, isKept);
    QCOMPARE(host.view->viewRect() == shown, isKept);
    QCOMPARE(ratios.isEmpty(), isKept);
}

void GraphViewTest::hidesAndShowsTheScrollBars()
{
    HostedGraphView host;
    QVERIFY(host.show());
    host.view->setScrollBarShow(false);
    for (const QWidget* part :
         {static_cast<QWidget*>(host.view->horizontalBar()), static_cast<QWidget*>(host.view->verticalBar()),
          static_cast<QWidget*>(host.view->corner())})
        QVERIFY(part->isHidden());
    QCOMPARE(host.view->eye()->geometry(), QRect(652, 518, 164, 98));
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(652, 518, 28, 28));
    QTRY_COMPARE(host.view->network()->geometry(), QRect(0, 0, 816, 616));

    host.view->slotViewEyeOn(false);
    host.view->setScrollBarShow(true);
    QCOMPARE(host.view->eye()->geometry(), QRect(640, 504, 160, 96));
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(772, 572, 28, 28));
    QTRY_COMPARE(host.view->network()->geometry(), QRect(0, 0, 800, 600));
    QVERIFY(host.view->horizontalBar()->isVisible());
    QVERIFY(host.view->verticalBar()->isVisible());
    QVERIFY(host.view->corner()->isVisible());
}

void GraphViewTest::hasNoScrollBarsToShowThatItWasMadeWithout()
{
    HostedGraphView host(true, false);
    QVERIFY(host.show());
    QSignalSpy ratios(host.view, SIGNAL(signalZoomRatioChanged(double)));
    host.view->setScrollBarShow(true);
    QVERIFY(host.view->findChildren<QScrollBar*>().isEmpty());
    QCOMPARE(host.view->eye()->geometry(), QRect(652, 518, 164, 98));
    QVERIFY(ratios.isEmpty());
}

void GraphViewTest::foldsTheEyeAwayWithItsButton()
{
    HostedGraphView host;
    QVERIFY(host.show());
    QTest::mousePress(host.view->eyeButton(), Qt::LeftButton, Qt::NoModifier, {5, 5});
    QVERIFY(host.view->eye()->isHidden());
    QVERIFY(!host.view->isViewEyeVisible());
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(772, 572, 28, 28));

    QTest::mousePress(host.view->eyeButton(), Qt::LeftButton, Qt::NoModifier, {23, 23});
    QVERIFY(host.view->eye()->isVisible());
    QVERIFY(host.view->isViewEyeVisible());
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(640, 504, 28, 28));
}

void GraphViewTest::staysFoldedThroughAResize()
{
    HostedGraphView host;
    QVERIFY(host.show());
    QTest::mousePress(host.view->eyeButton(), Qt::LeftButton, Qt::NoModifier, {5, 5});
    host.resize({816, 376});
    QVERIFY(!host.view->isViewEyeVisible());
    QVERIFY(host.view->eye()->isHidden());
    QCOMPARE(host.view->eye()->geometry(), QRect(680, 288, 120, 72));
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(772, 332, 28, 28));
    // It still knows that it is to unfold the eye.
    QTest::mousePress(host.view->eyeButton(), Qt::LeftButton, Qt::NoModifier, {23, 23});
    QVERIFY(host.view->isViewEyeVisible());
}

void GraphViewTest::foldsWithoutMovingAButtonThatIsNotShown()
{
    HostedGraphView host(true, true, false);
    QVERIFY(host.show());
    host.view->slotViewEyeOn(false);
    QVERIFY(host.view->eye()->isHidden());
    QVERIFY(!host.view->isViewEyeVisible());
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(640, 504, 28, 28));
    host.view->slotViewEyeOn(true);
    QVERIFY(host.view->eye()->isVisible());
    QVERIFY(host.view->isViewEyeVisible());
    QVERIFY(host.view->eyeButton()->isHidden());
    QCOMPARE(host.view->eyeButton()->geometry(), QRect(640, 504, 28, 28));
}

void GraphViewTest::showsWhatTheHostChangedAfterAnUpdate()
{
    HostedGraphView host;
    QVERIFY(host.show());
    PaintCounter networkPaints(*host.view->network());
    PaintCounter eyePaints(*host.view->eyeSurface());
    const QImage emptyNetwork = host.view->saveImage();
    const QImage emptyEye = host.view->saveEyeImage();

    addDisc(host.graph);
    QCoreApplication::processEvents();
    QCOMPARE(host.view->saveImage(), emptyNetwork);
    QCOMPARE(host.view->saveEyeImage(), emptyEye);
    QCOMPARE(networkPaints.count() + eyePaints.count(), 0);

    host.view->NelkUpdate();
    QTRY_COMPARE(networkPaints.count(), 1);
    QTRY_COMPARE(eyePaints.count(), 1);
    QCOMPARE(host.view->saveImage().pixelColor(400, 300), blueOnWhite);
    QVERIFY(host.view->saveEyeImage().pixelColor(80, 48) != emptyEye.pixelColor(80, 48));
    QCOMPARE(host.view->takeErrors(), QList<GLenum>());
}

void GraphViewTest::repaintsTheNetworkWithoutAnEyeToo()
{
    HostedGraphView host(false);
    QVERIFY(host.show());
    addDisc(host.graph);
    PaintCounter paints(*host.view->network());
    host.view->NelkUpdate();
    QTRY_COMPARE(paints.count(), 1);
    QCOMPARE(host.view->saveImage().pixelColor(400, 300), blueOnWhite);
}

void GraphViewTest::savesWhatNetworkAndEyeShow()
{
    HostedGraphView host;
    QVERIFY(host.show());
    const QImage network = host.view->saveImage();
    QCOMPARE(network.size(), QSize(800, 600));
    QCOMPARE(network.pixelColor(400, 300), QColor(Qt::white));
    // Without the eye that lies over it.
    QCOMPARE(network.pixelColor(720, 552), QColor(Qt::white));

    const QImage eye = host.view->saveEyeImage();
    QCOMPARE(eye.size(), QSize(160, 96));
    QCOMPARE(eye.pixelColor(3, 3), QColor(242, 242, 242));
    // Without the rectangle that lies over it.
    QCOMPARE(eye.pixelColor(80, 48), QColor(242, 242, 242));
}

void GraphViewTest::tellsTheTimeOfTheLastRepaint()
{
    HostedGraphView host;
    QCOMPARE(host.view->getRenderT(), 10);
    QVERIFY(host.show());
    QElapsedTimer stopwatch;
    stopwatch.start();
    const QImage repainted = host.view->saveImage();
    QVERIFY(!repainted.isNull());
    QVERIFY(host.view->getRenderT() >= 0);
    QVERIFY(host.view->getRenderT() <= stopwatch.elapsed());
}

QTEST_MAIN(GraphViewTest)

#include "GraphViewTest.moc"
