#include "support/LookAt.h"
#include "support/OpenView.h"

#include <NELK/GraphScene.h>

#include <QCursor>
#include <QSignalSpy>
#include <QStringList>
#include <QtTest>

#include <vector>

using namespace NELK;

namespace
{

/// A view that counts its repaints, and what it tells of its camera.
class WatchedView : public OpenView
{
public:
    using OpenView::OpenView;

    int repaints = 0;
    QSignalSpy changes{this, SIGNAL(signalViewWatchedChanged(QRect, float))};

protected:
    void paintGL() override
    {
        ++repaints;
        OpenView::paintGL();
    }
};

QPoint positionOf(const View& view)
{
    return {view.cameraX(false), view.cameraY(false)};
}

/// A call that changes the camera, from a scale of 0.5 at (100, -50).
struct CameraCall
{
    const char* name;
    void (*call)(View& view);
};

const std::vector<CameraCall> refreshingCalls{
    {"setCameraX", [](View& view) { view.setCameraX(7, false); }},
    {"setCameraX to where it is", [](View& view) { view.setCameraX(100, false); }},
    {"setCameraY", [](View& view) { view.setCameraY(7, true); }},
    {"zoom", [](View& view) { view.zoom(true); }},
    {"zoomAt", [](View& view) { view.zoomAt(false, false); }},
    {"zoomAt the cursor", [](View& view) { view.zoomAt(true, true); }},
    {"panBy to the right", [](View& view) { view.panBy(1, 0); }},
    {"panBy downward", [](View& view) { view.panBy(0, -1); }},
    {"rotateBy", [](View& view) { view.rotateBy(45); }},
    {"fitToView", [](View& view) { view.fitToView(); }},
    {"fitHeight", [](View& view) { view.fitHeight(); }},
    {"selectedViewMax", [](View& view) { view.selectedViewMax(); }},
    {"fitInView",
     [](View& view) {
         view.fitInView({0.0, 0.0, 1000.0, 500.0});
     }},
    {"fitOriginalSize", [](View& view) { view.fitOriginalSize(); }},
    {"showFullEye", [](View& view) { view.showFullEye(); }},
    {"zoomToFrame",
     [](View& view) {
         view.zoomToFrame({0, 0, 100, 100});
     }},
    {"eye moved",
     [](View& view) { QMetaObject::invokeMethod(&view, "slotEyeWatchedMoved", Q_ARG(QPoint, QPoint(5, 5))); }},
    {"eye centred",
     [](View& view) {
         lookAt(view, {5.0, 5.0});
     }},
    {"eye scaled",
     [](View& view) { QMetaObject::invokeMethod(&view, "slotEyeWatchedScaleChanged", Q_ARG(float, 0.3f)); }},
};

const std::vector<CameraCall> silentCalls{
    {"setCameraScale", [](View& view) { view.setCameraScale(0.25f); }},
    {"setCameraLimit", [](View& view) { view.setCameraLimit(false); }},
    {"setViewSize", [](View& view) { view.setViewSize(700, 500); }},
    {"panBy nothing", [](View& view) { view.panBy(0, 0); }},
    {"zoomToFrame in the middle",
     [](View& view) {
         view.zoomToFrame({300, 225, 200, 150});
     }},
};

void addCalls(const std::vector<CameraCall>& calls)
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < calls.size(); ++i)
        QTest::newRow(calls[i].name) << static_cast<int>(i);
}

} // namespace

class ViewCameraTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void refreshesOnceWithEveryChange_data();
    void refreshesOnceWithEveryChange();
    void refreshesNothingElse_data();
    void refreshesNothingElse();
    void tellsTheOverviewFirstAndThenTheScene();
    void tellsWhatIsInSight_data();
    void tellsWhatIsInSight();
    void tellsTheSizeOfTheWidgetButTheShareOfTheView();
    void tellsTheWholeSceneForAScaleOfAlmostNothing();
    void tellsOfTheCameraBeforeItIsShown();

    void readsThePositionInUnitsAndPixels();
    void setsOneCoordinateAndKeepsTheOther();
    void keepsPositionsWithinTheSceneUnlessTheLimitIsOff();
    void showsANewScaleWithTheNextRefresh();
    void pansByPixels();
    void pansNowhereFromACorner();
    void doesNotTurn();
    void takesTheWishesOfTheOverview();
    void showsTheShareThatTheOverviewAsksFor_data();
    void showsTheShareThatTheOverviewAsksFor();

private:
    bool showSettled();

    QScopedPointer<GraphScene> graph;
    QScopedPointer<WatchedView> view;
};

void ViewCameraTest::initTestCase()
{
    graph.reset(new GraphScene);
    view.reset(new WatchedView(*graph, QSize(800, 600)));
}

/// A view of 800 by 600 on a scene of 8000 by 4800, at (100, -50) with half a pixel a unit.
void ViewCameraTest::init()
{
    graph->setSize(8000, 4800);
    view->resize(800, 600);
    view->setViewSize(800, 600);
    view->setCameraLimit(true);
    lookAt(*view, {100.0, -50.0}, 0.5f);
    view->changes.clear();
}

void ViewCameraTest::cleanup()
{
    graph->clear();
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ViewCameraTest::cleanupTestCase()
{
    view.reset();
    graph.reset();
}

/// Shows the view, and counts repaints from then.
bool ViewCameraTest::showSettled()
{
    view->show();
    const bool shown =
        QTest::qWaitForWindowExposed(view.data()) && QTest::qWaitFor([this] { return view->repaints > 0; });
    QCoreApplication::processEvents();
    view->repaints = 0;
    return shown;
}

void ViewCameraTest::refreshesOnceWithEveryChange_data()
{
    addCalls(refreshingCalls);
}

void ViewCameraTest::refreshesOnceWithEveryChange()
{
    QFETCH(int, index);

    QVERIFY(showSettled());
    QCursor::setPos(view->mapToGlobal({200, 200}));
    QSignalSpy sceneChanges(&sceneOf(*graph), SIGNAL(signalChanged(QList<QRectF>)));

    refreshingCalls[static_cast<std::size_t>(index)].call(*view);
    QCOMPARE(view->changes.count(), 1);
    QCOMPARE(sceneChanges.count(), 1);
    QVERIFY(sceneChanges.first().first().value<QList<QRectF>>().isEmpty());
    QCOMPARE(view->repaints, 0);
    QTRY_COMPARE(view->repaints, 1);
}

void ViewCameraTest::refreshesNothingElse_data()
{
    addCalls(silentCalls);
}

void ViewCameraTest::refreshesNothingElse()
{
    QFETCH(int, index);

    QVERIFY(showSettled());
    QSignalSpy sceneChanges(&sceneOf(*graph), SIGNAL(signalChanged(QList<QRectF>)));

    silentCalls[static_cast<std::size_t>(index)].call(*view);
    QCoreApplication::processEvents();
    QCOMPARE(view->changes.count(), 0);
    QCOMPARE(sceneChanges.count(), 0);
    QCOMPARE(view->repaints, 0);
}

void ViewCameraTest::tellsTheOverviewFirstAndThenTheScene()
{
    QStringList order;
    QObject listener;
    connect(view.data(), &View::signalViewWatchedChanged, &listener,
            [&](const QRect& rect) { order.append(QStringLiteral("overview at %1").arg(rect.left())); });
    connect(graph.data(), &GraphScene::changed, &listener, [&] { order.append(QStringLiteral("scene")); });

    // 1600 units wide, so the middle of the scene is 799 units after the left side.
    view->setCameraX(0, false);
    view->setCameraX(10, false);
    QCOMPARE(order, QStringList({"overview at 3201", "scene", "overview at 3211", "scene"}));
}

void ViewCameraTest::tellsWhatIsInSight_data()
{
    QTest::addColumn<QSize>("scene");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<float>("share");

    const QSize usual(8000, 4800);
    QTest::newRow("middle") << usual << 0.2f << QPointF(0.0, 0.0) << QRect(2001, 901, 4000, 3000) << 0.5f;
    QTest::newRow("right and up") << usual << 1.0f << QPointF(3000.0, 2000.0) << QRect(6601, 101, 800, 600) << 0.1f;
    QTest::newRow("cut") << usual << 0.7f << QPointF(12.75, -3.5) << QRect(3442, 1975, 1142, 857) << 1.0f / 7.0f;
    QTest::newRow("odd scene") << QSize(8001, 9601) << 1.0f << QPointF(0.0, 0.0) << QRect(3601, 4501, 800, 600)
                               << 600.0f / 9601.0f;
}

void ViewCameraTest::tellsWhatIsInSight()
{
    QFETCH(QSize, scene);
    QFETCH(float, scale);
    QFETCH(QPointF, position);
    QFETCH(QRect, rect);
    QFETCH(float, share);

    graph->setSize(scene.width(), scene.height());
    lookAt(*view, position, scale);
    QCOMPARE(view->changes.count(), 1);
    QCOMPARE(view->changes.first().at(0).toRect(), rect);
    QCOMPARE(view->changes.first().at(1).toFloat(), share);
}

void ViewCameraTest::tellsTheSizeOfTheWidgetButTheShareOfTheView()
{
    view->resize(400, 200);
    lookAt(*view, {0.0, 0.0}, 0.2f);
    QCOMPARE(view->changes.first().at(0).toRect(), QRect(3001, 1901, 2000, 1000));
    QCOMPARE(view->changes.first().at(1).toFloat(), 0.5f);
}

void ViewCameraTest::tellsTheWholeSceneForAScaleOfAlmostNothing()
{
    graph->setSize(1000000000, 1000000000);
    view->resize(1, 1);
    view->setViewSize(1, 1);
    lookAt(*view, {0.0, 0.0}, 2e-7f);
    QCOMPARE(view->changes.takeFirst().at(1).toFloat(), 0.005f);
    lookAt(*view, {0.0, 0.0}, 1.1e-7f);
    QCOMPARE(view->changes.takeFirst().at(1).toFloat(), 1.0f);
}

void ViewCameraTest::tellsOfTheCameraBeforeItIsShown()
{
    WatchedView newView(*graph, QSize(800, 600));
    newView.panBy(10, 0);
    QVERIFY(!newView.glReady);
    QCOMPARE(newView.changes.count(), 1);
    QCOMPARE(newView.changes.first().at(0).toRect(), QRect(3611, 2101, 800, 600));
}

void ViewCameraTest::readsThePositionInUnitsAndPixels()
{
    lookAt(*view, {12.75, -3.5});
    QCOMPARE(view->cameraX(false), 12);
    QCOMPARE(view->cameraX(true), 6);
    QCOMPARE(view->cameraY(false), -3);
    QCOMPARE(view->cameraY(true), -1);
}

void ViewCameraTest::setsOneCoordinateAndKeepsTheOther()
{
    view->setCameraX(30, false);
    QCOMPARE(positionOf(*view), QPoint(30, -50));
    view->setCameraY(-40, false);
    QCOMPARE(positionOf(*view), QPoint(30, -40));
    view->setCameraX(30, true);
    QCOMPARE(positionOf(*view), QPoint(60, -40));
    view->setCameraY(-45, true);
    QCOMPARE(positionOf(*view), QPoint(60, -90));
}

void ViewCameraTest::keepsPositionsWithinTheSceneUnlessTheLimitIsOff()
{
    // 1600 by 1200 units are in sight.
    lookAt(*view, {9000.0, -9000.0});
    QCOMPARE(positionOf(*view), QPoint(3200, -1800));
    view->setCameraLimit(false);
    lookAt(*view, {9000.0, -9000.0});
    QCOMPARE(positionOf(*view), QPoint(9000, -9000));
    view->setCameraLimit(true);
    QCOMPARE(positionOf(*view), QPoint(9000, -9000));
    view->setCameraX(0, false);
    QCOMPARE(positionOf(*view), QPoint(0, -1800));
}

void ViewCameraTest::showsANewScaleWithTheNextRefresh()
{
    graph->createNode().setPos(100, -50);
    const QImage before = view->rebuiltPicture();
    view->setCameraScale(0.25f);
    QVERIFY(view->cameraScale() == 0.25f);
    QCOMPARE(view->picture(), before);
    view->rotateBy(0);
    QVERIFY(view->picture() != before);
}

void ViewCameraTest::pansByPixels()
{
    view->panBy(30, -20);
    QCOMPARE(positionOf(*view), QPoint(160, -90));
    view->panBy(-30, 20);
    QCOMPARE(positionOf(*view), QPoint(100, -50));
}

void ViewCameraTest::pansNowhereFromACorner()
{
    lookAt(*view, {9000.0, 9000.0});
    view->changes.clear();
    view->panBy(50, 50);
    QCOMPARE(view->changes.count(), 0);
    view->panBy(50, -50);
    QCOMPARE(view->changes.count(), 1);
    QCOMPARE(positionOf(*view), QPoint(3200, 1700));
}

void ViewCameraTest::doesNotTurn()
{
    graph->createNode().setPos(150, 0);
    const QImage before = view->rebuiltPicture();
    view->rotateBy(90);
    QCOMPARE(positionOf(*view), QPoint(100, -50));
    QVERIFY(view->cameraScale() == 0.5f);
    QCOMPARE(view->picture(), before);
}

void ViewCameraTest::takesTheWishesOfTheOverview()
{
    QVERIFY(QMetaObject::invokeMethod(view.data(), "slotEyeWatchedMoved", Q_ARG(QPoint, QPoint(30, -40))));
    QCOMPARE(positionOf(*view), QPoint(130, -90));
    QVERIFY(QMetaObject::invokeMethod(view.data(), "slotEyeWatchedCenterChanged", Q_ARG(QPointF, QPointF(-10.5, 9.0))));
    QCOMPARE(positionOf(*view), QPoint(-10, 9));
    QVERIFY(QMetaObject::invokeMethod(view.data(), "slotEyeWatchedMoved", Q_ARG(QPoint, QPoint(9000, 9000))));
    QCOMPARE(positionOf(*view), QPoint(3200, 1800));
    QVERIFY(view->cameraScale() == 0.5f);
}

void ViewCameraTest::showsTheShareThatTheOverviewAsksFor_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("asked");
    QTest::addColumn<float>("scale");
    QTest::addColumn<float>("told");

    const QSize usual(800, 600);
    QTest::newRow("half") << usual << 0.5f << 0.2f << 0.5f;
    QTest::newRow("a quarter") << usual << 0.25f << 0.4f << 0.25f;
    QTest::newRow("all") << usual << 1.0f << 0.1f << 1.0f;
    QTest::newRow("more than all") << usual << 2.0f << 0.1f << 1.0f;
    QTest::newRow("less than can be") << usual << 0.05f << 1.0f << 0.1f;
    QTest::newRow("half, height tighter") << QSize(800, 240) << 0.5f << 0.1f << 0.5f;
}

void ViewCameraTest::showsTheShareThatTheOverviewAsksFor()
{
    QFETCH(QSize, size);
    QFETCH(float, asked);
    QFETCH(float, scale);
    QFETCH(float, told);

    view->setViewSize(size.width(), size.height());
    QVERIFY(QMetaObject::invokeMethod(view.data(), "slotEyeWatchedScaleChanged", Q_ARG(float, asked)));
    QCOMPARE(view->cameraScale(), scale);
    QCOMPARE(view->changes.count(), 1);
    QCOMPARE(view->changes.first().at(1).toFloat(), told);
}

QTEST_MAIN(ViewCameraTest)

#include "ViewCameraTest.moc"
