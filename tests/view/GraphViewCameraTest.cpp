#include "support/HostedGraphView.h"
#include "support/LookAt.h"

#include <QKeyEvent>

#include <vector>

using namespace NELK;

namespace
{

/// Where a camera stands, in whole units, and how large it shows the scene.
struct Shot
{
    QPoint middle;
    float scale;
};

/// A call that the host can make, from a scale of 0.5 at (100, -50), and what comes of it.
struct CameraCall
{
    const char* name;
    void (*call)(GraphView& view);
    Shot shot;
};

const std::vector<CameraCall> refreshingCalls{
    {"fitToView", [](GraphView& view) { view.fitToView(); }, {{100, 200}, 800.0f / 1112.0f}},
    {"fitHeight", [](GraphView& view) { view.fitHeight(); }, {{100, 200}, 600.0f / 712.0f}},
    {"fitOriginalSize", [](GraphView& view) { view.fitOriginalSize(); }, {{0, 0}, 0.1f}},
    {"showFullEye", [](GraphView& view) { view.showFullEye(); }, {{0, 0}, 0.1f}},
    {"selectedViewMax", [](GraphView& view) { view.selectedViewMax(); }, {{400, 300}, 1.0f}},
    {"fitInView",
     [](GraphView& view) {
         view.fitInView({100.0, 400.0, 1000.0, 300.0});
     },
     {{600, 250}, 0.8f}},
    {"zoom in", [](GraphView& view) { view.zoom(true); }, {{100, -50}, 0.525f}},
    {"zoom out", [](GraphView& view) { view.zoom(false); }, {{100, -50}, 0.5f / 1.05f}},
    {"setCameraX", [](GraphView& view) { view.setCameraX(30); }, {{60, -50}, 0.5f}},
    {"setCameraY", [](GraphView& view) { view.setCameraY(-45); }, {{100, -90}, 0.5f}},
    {"setCameraX beyond the scene", [](GraphView& view) { view.setCameraX(5000); }, {{3200, -50}, 0.5f}},
};

const std::vector<CameraCall> silentCalls{
    {"setCameraScale", [](GraphView& view) { view.setCameraScale(0.25f); }, {{100, -50}, 0.25f}},
    {"setCameraScale below the least", [](GraphView& view) { view.setCameraScale(0.01f); }, {{0, -50}, 0.1f}},
    {"setCameraLimit", [](GraphView& view) { view.setCameraLimit(false); }, {{100, -50}, 0.5f}},
};

void addCalls(const std::vector<CameraCall>& calls)
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < calls.size(); ++i)
        QTest::newRow(calls[i].name) << static_cast<int>(i);
}

/// Range, steps and value of a scroll bar, as text.
QString text(const QScrollBar* bar)
{
    return QStringLiteral("%1 to %2 by %3 or %4 at %5")
        .arg(bar->minimum())
        .arg(bar->maximum())
        .arg(bar->singleStep())
        .arg(bar->pageStep())
        .arg(bar->value());
}

/// Keeps the keys that nobody took.
class KeyCatcher : public QObject
{
public:
    explicit KeyCatcher(QWidget& window) { window.installEventFilter(this); }

    QList<int> caught;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress)
            caught.append(static_cast<QKeyEvent*>(event)->key());
        return false;
    }
};

} // namespace

/// The camera of a graph view: what the host sets and reads, scroll bars and keys.
class GraphViewCameraTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void passesCallsOnAndTellsTheShare_data();
    void passesCallsOnAndTellsTheShare();
    void passesCallsOnInSilence_data();
    void passesCallsOnInSilence();
    void readsTheCamera();
    void goesBeyondTheSceneWithoutTheLimit();

    void barsFollowTheCamera();
    void barsMoveTheCamera();
    void barsFollowTheSizeOfTheScene();
    void leavesBarsAloneWhileTheUserMovesOne();
    void writesBarsThatTheCameraMovedInSilence();
    void barsWithoutAnEyeFollowOnlyTheSizeOfTheScene();
    void swallowsAnUpdateAfterADragWithoutAnEye();
    void sharesTheGuardAmongViews();

    void pansByKeys_data();
    void pansByKeys();
    void takesKeysPressedInTheNetwork();
    void pansNowhereWhileBlocked();
    void pansByNothingWithoutAnEyeAtFirst();
    void pansByKeysWithoutBars();

private:
    QScopedPointer<HostedGraphView> host;
    OpenGraphView* view = nullptr;
};

void GraphViewCameraTest::initTestCase()
{
    host.reset(new HostedGraphView);
    QVERIFY(host->show());
    view = host->view;
    host->graph.createNode().setPos(-200, 100);
    GraphNode selected = host->graph.createNode();
    selected.setPos(400, 300);
    selected.setSelect(true);
    GraphNode hidden = host->graph.createNode();
    hidden.setPos(3000, 0);
    hidden.setShow(false);
    hidden.setSelect(true);
}

/// A network of 800 by 600, a little off (100, -50) with half a pixel a unit. No bar counts as being dragged.
void GraphViewCameraTest::init()
{
    host->graph.setSize(8000, 4800);
    view->setCameraLimit(true);
    lookAt(*view->network(), {100.75, -50.5}, 0.5f);
}

void GraphViewCameraTest::cleanup()
{
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void GraphViewCameraTest::cleanupTestCase()
{
    host.reset();
}

void GraphViewCameraTest::passesCallsOnAndTellsTheShare_data()
{
    addCalls(refreshingCalls);
}

void GraphViewCameraTest::passesCallsOnAndTellsTheShare()
{
    QFETCH(int, index);
    const CameraCall& call = refreshingCalls[static_cast<std::size_t>(index)];

    QSignalSpy ratios(view, SIGNAL(signalZoomRatioChanged(double)));
    call.call(*view);
    QCOMPARE(view->middle(), call.shot.middle);
    QCOMPARE(view->cameraScale(), call.shot.scale);
    // At a tenth of a pixel a unit, all 8000 units are in sight.
    QCOMPARE(ratios.count(), 1);
    QCOMPARE(float(ratios.first().first().toDouble()), 0.1f / call.shot.scale);
    QCOMPARE(float(view->getZoomRatio()), 10.0f * call.shot.scale);
}

void GraphViewCameraTest::passesCallsOnInSilence_data()
{
    addCalls(silentCalls);
}

void GraphViewCameraTest::passesCallsOnInSilence()
{
    QFETCH(int, index);
    const CameraCall& call = silentCalls[static_cast<std::size_t>(index)];

    QSignalSpy ratios(view, SIGNAL(signalZoomRatioChanged(double)));
    const QString bar = text(view->horizontalBar());
    call.call(*view);
    QCOMPARE(view->middle(), call.shot.middle);
    QCOMPARE(view->cameraScale(), call.shot.scale);
    QVERIFY(ratios.isEmpty());
    QCOMPARE(text(view->horizontalBar()), bar);
}

void GraphViewCameraTest::readsTheCamera()
{
    QCOMPARE(view->cameraX(), 50);
    QCOMPARE(view->cameraY(), -25);
    QCOMPARE(view->cameraScale(), 0.5f);
    QCOMPARE(float(view->getZoomRatio()), 5.0f);
    QCOMPARE(view->minFitWidth(), 800);
    QCOMPARE(view->viewRect(), QRect(-699, 549, 1600, 1200));
    QCOMPARE(view->viewToScene({0, 0}), QPoint(-700, 550));
    QCOMPARE(view->viewToScene({800, 600}), QPoint(900, -650));
}

void GraphViewCameraTest::goesBeyondTheSceneWithoutTheLimit()
{
    view->setCameraLimit(false);
    view->setCameraX(5000);
    view->setCameraY(-4000);
    QCOMPARE(view->middle(), QPoint(10000, -8000));
    view->setCameraLimit(true);
    QCOMPARE(view->middle(), QPoint(10000, -8000));
    view->setCameraX(5000);
    QCOMPARE(view->middle(), QPoint(3200, -1800));
}

void GraphViewCameraTest::barsFollowTheCamera()
{
    QCOMPARE(text(view->horizontalBar()), QStringLiteral("-3200 to 3200 by 160 or 1600 at 100"));
    QCOMPARE(text(view->verticalBar()), QStringLiteral("-1800 to 1800 by 120 or 1200 at 50"));
    // 1523.8 by 1142.9 units are in sight.
    view->zoom(true);
    QCOMPARE(text(view->horizontalBar()), QStringLiteral("-3238 to 3238 by 152 or 1523 at 100"));
    QCOMPARE(text(view->verticalBar()), QStringLiteral("-1828 to 1828 by 114 or 1142 at 50"));

    QSignalSpy ratios(view, SIGNAL(signalZoomRatioChanged(double)));
    view->setCameraX(-525);
    view->setCameraY(525);
    QCOMPARE(view->horizontalBar()->value(), -1000);
    QCOMPARE(view->verticalBar()->value(), -1000);
    QCOMPARE(ratios.count(), 2);
}

void GraphViewCameraTest::barsMoveTheCamera()
{
    QSignalSpy ratios(view, SIGNAL(signalZoomRatioChanged(double)));
    view->horizontalBar()->setValue(700);
    QCOMPARE(view->middle(), QPoint(700, -50));
    view->verticalBar()->setValue(250);
    QCOMPARE(view->middle(), QPoint(700, -250));
    view->horizontalBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
    QCOMPARE(view->middle(), QPoint(540, -250));
    view->verticalBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(view->middle(), QPoint(540, -1450));
    QCOMPARE(ratios.count(), 4);
    for (const QList<QVariant>& ratio : qAsConst(ratios))
        QCOMPARE(float(ratio.first().toDouble()), 0.2f);
}

void GraphViewCameraTest::barsFollowTheSizeOfTheScene()
{
    // The eye asks for the share of the scene that was in sight: a fifth.
    host->graph.setSize(16000, 9600);
    QCOMPARE(text(view->horizontalBar()), QStringLiteral("-6400 to 6400 by 320 or 3200 at 100"));
    QCOMPARE(text(view->verticalBar()), QStringLiteral("-3600 to 3600 by 240 or 2400 at 50"));
}

void GraphViewCameraTest::leavesBarsAloneWhileTheUserMovesOne()
{
    // All that the bars show is outdated by now; at this scale the camera cannot go sideways.
    view->setCameraScale(0.1f);
    const QString verticalBefore = text(view->verticalBar());
    view->horizontalBar()->setValue(1500);
    QCOMPARE(view->middle(), QPoint(0, -50));
    QCOMPARE(text(view->horizontalBar()), QStringLiteral("-3200 to 3200 by 160 or 1600 at 1500"));
    QCOMPARE(text(view->verticalBar()), verticalBefore);

    view->setCameraX(0);
    QCOMPARE(text(view->horizontalBar()), QStringLiteral("0 to 0 by 800 or 8000 at 0"));
    QCOMPARE(text(view->verticalBar()), QStringLiteral("-600 to 600 by 600 or 6000 at 50"));
}

/// The steps of the keys are taken up also where the bars are left alone.
void GraphViewCameraTest::writesBarsThatTheCameraMovedInSilence()
{
    view->setCameraScale(0.8f);
    view->verticalBar()->setValue(-1000);
    QCOMPARE(view->verticalBar()->pageStep(), 1200);
    QTest::keyClick(view, Qt::Key_Up);
    QCOMPARE(view->middle(), QPoint(100, 1075));
    QCOMPARE(text(view->verticalBar()), QStringLiteral("-2025 to 2025 by 75 or 750 at -1075"));
}

void GraphViewCameraTest::barsWithoutAnEyeFollowOnlyTheSizeOfTheScene()
{
    HostedGraphView blind(false);
    QVERIFY(blind.show());
    QSignalSpy ratios(blind.view, SIGNAL(signalZoomRatioChanged(double)));
    const QString before = text(blind.view->horizontalBar());
    blind.view->setCameraX(300);
    QCOMPARE(blind.view->middle(), QPoint(300, 0));
    QCOMPARE(text(blind.view->horizontalBar()), before);
    QVERIFY(ratios.isEmpty());

    blind.graph.setSize(10000, 6000);
    QCOMPARE(text(blind.view->horizontalBar()), QStringLiteral("-4600 to 4600 by 80 or 800 at 300"));
    QCOMPARE(text(blind.view->verticalBar()), QStringLiteral("-2700 to 2700 by 60 or 600 at 0"));
    QCOMPARE(ratios.count(), 1);
    QVERIFY(ratios.first().first().toDouble() == 0.0);
}

void GraphViewCameraTest::swallowsAnUpdateAfterADragWithoutAnEye()
{
    HostedGraphView blind(false);
    QVERIFY(blind.show());
    blind.view->horizontalBar()->setValue(50);
    QCOMPARE(blind.view->middle(), QPoint(50, 0));
    const QString dragged = text(blind.view->horizontalBar());

    blind.graph.setSize(10000, 6000);
    QCOMPARE(text(blind.view->horizontalBar()), dragged);
    blind.graph.setSize(12000, 6000);
    QCOMPARE(text(blind.view->horizontalBar()), QStringLiteral("-5600 to 5600 by 80 or 800 at 50"));
}

void GraphViewCameraTest::sharesTheGuardAmongViews()
{
    HostedGraphView blind(false);
    QVERIFY(blind.show());
    blind.view->verticalBar()->setValue(50);

    view->setCameraX(350);
    QCOMPARE(view->middle(), QPoint(700, -50));
    QCOMPARE(view->horizontalBar()->value(), 100);
    view->setCameraX(400);
    QCOMPARE(view->horizontalBar()->value(), 800);
}

void GraphViewCameraTest::pansByKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QPoint>("middle");
    QTest::newRow("left") << int(Qt::Key_Left) << QPoint(-60, -50);
    QTest::newRow("right") << int(Qt::Key_Right) << QPoint(260, -50);
    QTest::newRow("up") << int(Qt::Key_Up) << QPoint(100, 70);
    QTest::newRow("down") << int(Qt::Key_Down) << QPoint(100, -170);
    QTest::newRow("page up") << int(Qt::Key_PageUp) << QPoint(100, 1150);
    QTest::newRow("page down") << int(Qt::Key_PageDown) << QPoint(100, -1250);
    QTest::newRow("another") << int(Qt::Key_Home) << QPoint(100, -50);
}

/// From the whole unit toward the middle of the scene, and then a tenth of what is in sight, or all of it.
void GraphViewCameraTest::pansByKeys()
{
    QFETCH(int, key);
    QFETCH(QPoint, middle);

    KeyCatcher window(host->window);
    QSignalSpy ratios(view, SIGNAL(signalZoomRatioChanged(double)));
    QTest::keyClick(view, Qt::Key(key));
    QCOMPARE(view->middle(), middle);
    QCOMPARE(ratios.count(), key == Qt::Key_Home ? 0 : 1);
    QCOMPARE(window.caught, QList<int>{key});
}

void GraphViewCameraTest::takesKeysPressedInTheNetwork()
{
    KeyCatcher window(host->window);
    QTest::keyClick(view->network(), Qt::Key_Right);
    QCOMPARE(view->middle(), QPoint(260, -50));
    QCOMPARE(window.caught, QList<int>{Qt::Key_Right});
}

void GraphViewCameraTest::pansNowhereWhileBlocked()
{
    KeyCatcher window(host->window);
    QSignalSpy ratios(view, SIGNAL(signalZoomRatioChanged(double)));
    const QList<int> keys{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};
    view->blockInteraction(true);
    for (const int key : keys)
        QTest::keyClick(view, Qt::Key(key));
    QVERIFY(ratios.isEmpty());
    QCOMPARE(window.caught, keys);
    view->blockInteraction(false);
    QTest::keyClick(view, Qt::Key_Left);
    QCOMPARE(view->middle(), QPoint(-60, -50));
}

void GraphViewCameraTest::pansByNothingWithoutAnEyeAtFirst()
{
    HostedGraphView blind(false);
    QVERIFY(blind.show());
    lookAt(*blind.view->network(), {100.75, -50.5});
    QSignalSpy changes(&blind.graph, SIGNAL(changed(QList<QRectF>)));
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_PageDown})
        QTest::keyClick(blind.view, key);
    QCOMPARE(blind.view->middle(), QPoint(100, -50));
    QCOMPARE(changes.count(), 5);

    blind.graph.setSize(8000, 4800);
    QTest::keyClick(blind.view, Qt::Key_Left);
    QTest::keyClick(blind.view, Qt::Key_PageUp);
    QCOMPARE(blind.view->middle(), QPoint(20, 550));
}

void GraphViewCameraTest::pansByKeysWithoutBars()
{
    HostedGraphView bare(true, false);
    QVERIFY(bare.show());
    lookAt(*bare.view->network(), {100.0, -50.0}, 0.5f);
    // 1632 by 1232 units are in sight.
    QTest::keyClick(bare.view, Qt::Key_Right);
    QTest::keyClick(bare.view, Qt::Key_PageDown);
    QCOMPARE(bare.view->middle(), QPoint(263, -1282));
}

QTEST_MAIN(GraphViewCameraTest)

#include "GraphViewCameraTest.moc"
