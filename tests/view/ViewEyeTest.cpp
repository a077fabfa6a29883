#include "support/HostedGraphView.h"
#include "support/LookAt.h"
#include "support/WidgetInput.h"

using namespace NELK;

namespace
{

/// The eye's wishes, as text, in their order.
class Wishes : public QObject
{
public:
    explicit Wishes(const ViewEye& eye)
    {
        connect(&eye, &ViewEye::signalEyeWatchedMoved, this, [this](const QPoint& delta) {
            m_all.append(QStringLiteral("move %1,%2").arg(delta.x()).arg(delta.y()));
        });
        connect(&eye, &ViewEye::signalEyeWatchedCenterChanged, this, [this](const QPointF& middle) {
            m_all.append(QStringLiteral("look at %1,%2").arg(middle.x()).arg(middle.y()));
        });
        connect(&eye, &ViewEye::signalEyeWatchedScaleChanged, this,
                [this](float share) { m_all.append(QStringLiteral("show %1").arg(double(share))); });
    }

    /// Since the last call.
    QStringList take()
    {
        QStringList taken;
        taken.swap(m_all);
        return taken;
    }

private:
    QStringList m_all;
};
} // namespace

/// What the mouse does in the overview, from end to end. In a graph view of 816 by 616 it is 160 by 96, and a pixel
/// spans 50 units.
class ViewEyeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void asksForHalfOfTheSceneAtFirst();
    void laysTheRectangleOverTheSurface();
    void followsTheCamera_data();
    void followsTheCamera();

    void dragsTheCamera();
    void dragsByWholeUnitsAPixel_data();
    void dragsByWholeUnitsAPixel();
    void dragsWithTheLeftButtonOnly();
    void endsADragWithAnyRelease();
    void jumpsToAPointOutsideTheRectangle_data();
    void jumpsToAPointOutsideTheRectangle();
    void doesNotDragAfterAJump();
    void takesTheRectangleWithItsEdges_data();
    void takesTheRectangleWithItsEdges();

    void turnsTheWheelToZoom_data();
    void turnsTheWheelToZoom();
    void zoomsByHundredths();
    void zoomsNoFurtherThanTheWholeScene();
    void zoomsNoFurtherThanAHundredth_data();
    void zoomsNoFurtherThanAHundredth();
    void zoomsNotDuringADrag();

private:
    QScopedPointer<HostedGraphView> host;
    OpenGraphView* view = nullptr;
    ViewEye* eye = nullptr;
    ViewEyePrivate* surface = nullptr;
};

void ViewEyeTest::initTestCase()
{
    host.reset(new HostedGraphView);
    view = host->view;
    eye = view->eye();
    surface = view->eyeSurface();
    Wishes wishes(*eye);
    QSignalSpy watched(view->network(), SIGNAL(signalViewWatchedChanged(QRect, float)));
    QVERIFY(host->show());
    QCOMPARE(wishes.take(), QStringList{"show 0.5"});
    QCOMPARE(watched.last(), QList<QVariant>({QRect(2001, 901, 4000, 3000), 0.5f}));
}

/// Half of the default scene is in sight.
void ViewEyeTest::init()
{
    host->resize({816, 616});
    host->graph.setSize(8000, 4800);
    lookAt(*view->network(), {0.0, 0.0}, 0.2f);
}

void ViewEyeTest::cleanup()
{
    release(surface, {0, 0});
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ViewEyeTest::cleanupTestCase()
{
    host.reset();
}

/// An edge through the middle of the scene, wide enough for the eye.
void ViewEyeTest::asksForHalfOfTheSceneAtFirst()
{
    QCOMPARE(eye->geometry(), QRect(640, 504, 160, 96));
    QCOMPARE(view->cameraScale(), 0.2f);
    QCOMPARE(view->watched()->geometry(), QRect(40, 18, 80, 60));
}

void ViewEyeTest::laysTheRectangleOverTheSurface()
{
    QCOMPARE(eye->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(surface->geometry(), QRect(0, 0, 160, 96));
    QVERIFY(eye->children().indexOf(surface) < eye->children().indexOf(view->watched()));
    QCOMPARE(view->watched()->styleSheet(),
             QStringLiteral("QLabel{background-color: #4cc8e4ff;border: 1px solid #26508f;}"));
    QCOMPARE(eye->childAt(80, 48), surface);
}

void ViewEyeTest::followsTheCamera_data()
{
    QTest::addColumn<QPointF>("middle");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QRect>("rectangle");
    QTest::newRow("all") << QPointF(0, 0) << 0.1f << QRect(0, -12, 160, 120);
    QTest::newRow("right and up") << QPointF(1000, 500) << 0.2f << QRect(60, 8, 80, 60);
    QTest::newRow("left and down") << QPointF(-1000, -500) << 0.2f << QRect(20, 28, 80, 60);
    QTest::newRow("small") << QPointF(0, 0) << 1.0f << QRect(72, 42, 16, 12);
}

void ViewEyeTest::followsTheCamera()
{
    QFETCH(QPointF, middle);
    QFETCH(float, scale);
    QFETCH(QRect, rectangle);

    Wishes wishes(*eye);
    lookAt(*view->network(), middle, scale);
    QCOMPARE(view->watched()->geometry(), rectangle);
    QCOMPARE(wishes.take(), QStringList());
}

void ViewEyeTest::dragsTheCamera()
{
    Wishes wishes(*eye);
    press(surface, {80, 48});
    QCOMPARE(wishes.take(), QStringList());
    moveTo(surface, {83, 46});
    QCOMPARE(wishes.take(), QStringList{"move 150,100"});
    QCOMPARE(view->middle(), QPoint(150, 100));
    QCOMPARE(view->watched()->geometry(), QRect(43, 16, 80, 60));
    moveTo(surface, {82, 50});
    QCOMPARE(wishes.take(), QStringList{"move -50,-200"});
    QCOMPARE(view->middle(), QPoint(100, -100));

    // The camera stops, whatever is wished for.
    moveTo(surface, {159, 50});
    QCOMPARE(wishes.take(), QStringList{"move 3850,0"});
    QCOMPARE(view->middle(), QPoint(2000, -100));
    QCOMPARE(view->watched()->geometry(), QRect(80, 20, 80, 60));
    release(surface, {159, 50});
    moveTo(surface, {80, 48});
    QCOMPARE(wishes.take(), QStringList());
}

void ViewEyeTest::dragsByWholeUnitsAPixel_data()
{
    QTest::addColumn<QSize>("scene");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("wish");
    // The height decides: 4800 / 97, 9600 / 120, 5000 / 96 and 20000 / 120.
    QTest::newRow("a little more") << QSize(8000, 4800) << QSize(817, 616) << QStringLiteral("move 490,-147");
    QTest::newRow("high") << QSize(8000, 9600) << QSize(816, 616) << QStringLiteral("move 800,-240");
    QTest::newRow("wide") << QSize(8300, 5000) << QSize(816, 616) << QStringLiteral("move 510,-153");
    QTest::newRow("large") << QSize(20000, 20000) << QSize(816, 616) << QStringLiteral("move 1660,-498");
}

void ViewEyeTest::dragsByWholeUnitsAPixel()
{
    QFETCH(QSize, scene);
    QFETCH(QSize, size);
    QFETCH(QString, wish);

    host->graph.setSize(scene.width(), scene.height());
    host->resize(size);
    lookAt(*view->network(), {0.0, 0.0});
    Wishes wishes(*eye);
    const QPoint middle = surface->rect().center();
    drag(surface, middle, middle + QPoint(10, 3));
    QCOMPARE(wishes.take(), QStringList{wish});
}

void ViewEyeTest::dragsWithTheLeftButtonOnly()
{
    Wishes wishes(*eye);
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        press(surface, {80, 48}, button);
        moveTo(surface, {90, 48});
        press(surface, {5, 5}, button);
    }
    QCOMPARE(wishes.take(), QStringList());
}

void ViewEyeTest::endsADragWithAnyRelease()
{
    Wishes wishes(*eye);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        press(surface, {80, 48});
        release(surface, {80, 48}, button);
        moveTo(surface, {90, 48});
    }
    QCOMPARE(wishes.take(), QStringList());
}

void ViewEyeTest::jumpsToAPointOutsideTheRectangle_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QString>("wish");
    QTest::addColumn<QPoint>("middle");
    QTest::addColumn<QRect>("rectangle");
    const QSize usual(816, 616);
    QTest::newRow("left") << usual << QPoint(39, 40) << "look at -2050,400" << QPoint(-2000, 400)
                          << QRect(0, 10, 80, 60);
    QTest::newRow("down") << usual << QPoint(70, 80) << "look at -500,-1600" << QPoint(-500, -900)
                          << QRect(30, 36, 80, 60);
    QTest::newRow("corner") << usual << QPoint(159, 0) << "look at 3950,2400" << QPoint(2000, 900)
                            << QRect(80, 0, 80, 60);
    // 161 by 97 pixels of 49 units; half of that is 80 by 48.
    QTest::newRow("odd size") << QSize(817, 617) << QPoint(20, 47) << "look at -2940,49" << QPoint(-2000, 49)
                              << QRect(0, 17, 81, 61);
}

void ViewEyeTest::jumpsToAPointOutsideTheRectangle()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, point);
    QFETCH(QString, wish);
    QFETCH(QPoint, middle);
    QFETCH(QRect, rectangle);

    host->resize(size);
    lookAt(*view->network(), {0.0, 0.0});
    Wishes wishes(*eye);
    press(surface, point);
    QCOMPARE(wishes.take(), QStringList{wish});
    QCOMPARE(view->middle(), middle);
    QCOMPARE(view->watched()->geometry(), rectangle);
}

void ViewEyeTest::doesNotDragAfterAJump()
{
    view->setCameraX(400);
    press(surface, {50, 48});
    QCOMPARE(view->middle(), QPoint(-1500, 0));
    QVERIFY(view->watched()->geometry().contains(50, 48));
    Wishes wishes(*eye);
    moveTo(surface, {60, 48});
    QCOMPARE(wishes.take(), QStringList());
    press(surface, {60, 48});
    moveTo(surface, {61, 48});
    QCOMPARE(wishes.take(), QStringList{"move 50,0"});
}

void ViewEyeTest::takesTheRectangleWithItsEdges_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<bool>("isInside");
    QTest::newRow("left") << QPoint(23, 40) << true;
    QTest::newRow("left of it") << QPoint(22, 40) << false;
    QTest::newRow("right") << QPoint(103, 40) << true;
    QTest::newRow("right of it") << QPoint(104, 40) << false;
    QTest::newRow("bottom") << QPoint(60, 57) << true;
    QTest::newRow("below") << QPoint(60, 58) << false;
    QTest::newRow("first row inside") << QPoint(60, 20) << true;
    QTest::newRow("row before") << QPoint(60, 19) << false;
    QTest::newRow("lower right corner") << QPoint(103, 57) << true;
}

/// The eye is 75 high, so that 64 units are exactly a pixel, and 5120 by 2400 units are in sight. From (31, -47) that
/// is 80 by 37.5 pixels from (23, 19.5).
void ViewEyeTest::takesTheRectangleWithItsEdges()
{
    QFETCH(QPoint, point);
    QFETCH(bool, isInside);

    host->resize({816, 391});
    QCOMPARE(eye->size(), QSize(125, 75));
    lookAt(*view->network(), {31.0, -47.0}, 0.15625f);
    Wishes wishes(*eye);
    press(surface, point);
    QCOMPARE(wishes.take().isEmpty(), isInside);
    moveTo(surface, point + QPoint(1, 0));
    QCOMPARE(wishes.take(), isInside ? QStringList{"move 64,0"} : QStringList());
}

void ViewEyeTest::turnsTheWheelToZoom_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<QString>("wish");
    QTest::newRow("forward") << QPoint(0, 120) << QStringLiteral("show 0.49");
    QTest::newRow("forward, far") << QPoint(0, 1200) << QStringLiteral("show 0.49");
    QTest::newRow("a little forward") << QPoint(0, 1) << QStringLiteral("show 0.49");
    QTest::newRow("not at all") << QPoint(0, 0) << QStringLiteral("show 0.49");
    QTest::newRow("backward") << QPoint(0, -120) << QStringLiteral("show 0.51");
    QTest::newRow("a little backward") << QPoint(0, -1) << QStringLiteral("show 0.51");
    QTest::newRow("sideways") << QPoint(120, 0) << QStringLiteral("show 0.49");
    QTest::newRow("sideways, the other way") << QPoint(-120, 0) << QStringLiteral("show 0.51");
}

void ViewEyeTest::turnsTheWheelToZoom()
{
    QFETCH(QPoint, angle);
    QFETCH(QString, wish);

    Wishes wishes(*eye);
    turnWheel(surface, {10, 10}, angle);
    QCOMPARE(wishes.take(), QStringList{wish});
}

void ViewEyeTest::zoomsByHundredths()
{
    Wishes wishes(*eye);
    for (int turn = 0; turn < 3; ++turn)
        turnWheel(surface, {80, 48}, {0, 120});
    QCOMPARE(wishes.take(), QStringList({"show 0.49", "show 0.48", "show 0.47"}));
    QCOMPARE(view->cameraScale(), 0.1f / 0.47f);
    // From wherever the camera went in the meantime.
    view->zoom(true);
    turnWheel(surface, {80, 48}, {0, -120});
    QCOMPARE(wishes.take(), QStringList{"show 0.457619"});
}

void ViewEyeTest::zoomsNoFurtherThanTheWholeScene()
{
    view->fitOriginalSize();
    Wishes wishes(*eye);
    turnWheel(surface, {80, 48}, {0, -120});
    QCOMPARE(wishes.take(), QStringList());
    turnWheel(surface, {80, 48}, {0, 120});
    turnWheel(surface, {80, 48}, {0, -120});
    QCOMPARE(wishes.take(), QStringList({"show 0.99", "show 1"}));
}

void ViewEyeTest::zoomsNoFurtherThanAHundredth_data()
{
    QTest::addColumn<QSize>("scene");
    QTest::addColumn<QString>("wishForward");
    QTest::addColumn<QString>("wishBackward");
    // At one pixel a unit, 800 units are in sight.
    QTest::newRow("a hundredth and a half") << QSize(53333, 32000) << "show 0.00500009"
                                            << "show 0.0250001";
    QTest::newRow("a hundredth") << QSize(80000, 48000) << ""
                                 << "show 0.02";
    QTest::newRow("half a hundredth") << QSize(160000, 96000) << ""
                                      << "show 0.015";
}

void ViewEyeTest::zoomsNoFurtherThanAHundredth()
{
    QFETCH(QSize, scene);
    QFETCH(QString, wishForward);
    QFETCH(QString, wishBackward);

    host->graph.setSize(scene.width(), scene.height());
    Wishes wishes(*eye);
    lookAt(*view->network(), {0.0, 0.0}, 1.0f);
    turnWheel(surface, {80, 48}, {0, 120});
    QCOMPARE(wishes.take().join(QLatin1Char(' ')), wishForward);
    lookAt(*view->network(), {0.0, 0.0}, 1.0f);
    turnWheel(surface, {80, 48}, {0, -120});
    QCOMPARE(wishes.take().join(QLatin1Char(' ')), wishBackward);
}

void ViewEyeTest::zoomsNotDuringADrag()
{
    press(surface, {80, 48});
    Wishes wishes(*eye);
    turnWheel(surface, {80, 48}, {0, 120});
    turnWheel(surface, {80, 48}, {0, -120});
    QCOMPARE(wishes.take(), QStringList());
    release(surface, {80, 48});
    turnWheel(surface, {80, 48}, {0, 120});
    QCOMPARE(wishes.take(), QStringList{"show 0.49"});
}

QTEST_MAIN(ViewEyeTest)

#include "ViewEyeTest.moc"
