#include "support/LookAt.h"
#include "support/OpenView.h"

#include <NELK/GraphScene.h>

#include <QtTest>

#include <cmath>

using namespace NELK;

namespace
{

/// Qt rounds halves up, also below zero.
int rounded(double value)
{
    return static_cast<int>(std::floor(value + 0.5));
}

bool isNear(double value, double expected)
{
    return std::abs(value - expected) < 1e-6 * expected;
}

/// Takes another number of steps than any of the views has pixels, so that all kinds of remainders occur.
constexpr int gridSteps = 37;

void addCameras()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QPoint>("wholePosition");

    const QSize usual(800, 600);
    const QSize odd(401, 301);
    const QSize huge(9000, 5001);
    QTest::newRow("a pixel a unit") << usual << 1.0f << QPointF(0.0, 0.0) << QPoint(0, 0);
    QTest::newRow("off the middle") << usual << 1.0f << QPointF(123.0, -456.0) << QPoint(123, -456);
    QTest::newRow("parts of units") << usual << 0.5f << QPointF(12.75, -3.5) << QPoint(12, -3);
    QTest::newRow("parts of units, negated") << usual << 0.5f << QPointF(-12.75, 3.5) << QPoint(-12, 3);
    QTest::newRow("odd size") << odd << 0.25f << QPointF(-7.25, 9.0) << QPoint(-7, 9);
    QTest::newRow("a scale with a remainder") << odd << 0.3f << QPointF(0.0, 0.0) << QPoint(0, 0);
    QTest::newRow("far") << usual << 0.1f << QPointF(0.0, 500.5) << QPoint(0, 500);
    QTest::newRow("near") << huge << 2.5f << QPointF(100.5, 100.25) << QPoint(100, 100);
    QTest::newRow("near, with a remainder") << huge << 7.7f << QPointF(-0.875, 0.875) << QPoint(0, 0);
}

} // namespace

class ViewPlanesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksAtTheMiddleFromTheStart();
    void takesTheRangeOfScalesFromItsSize_data();
    void takesTheRangeOfScalesFromItsSize();
    void leavesTheScaleWhenItsSizeChanges();
    void readsTheSizeOfTheSceneWithItsOwn();
    void mapsItsPixelsToTheScene_data();
    void mapsItsPixelsToTheScene();
    void mapsTheSceneToItsPixels_data();
    void mapsTheSceneToItsPixels();
    void roundsHalvesUp();
    void tellsWhatItShows_data();
    void tellsWhatItShows();
    void tellsTheLeastWidthThatItCanShow_data();
    void tellsTheLeastWidthThatItCanShow();
    void tellsHowManyTimesMoreOfTheSceneThereIs_data();
    void tellsHowManyTimesMoreOfTheSceneThereIs();
    void tellsNoRatioForAScaleOfAlmostNothing();
};

void ViewPlanesTest::looksAtTheMiddleFromTheStart()
{
    GraphScene graph;
    const View view(&sceneOf(graph));
    QVERIFY(view.cameraScale() == 1.0f);
    QCOMPARE(view.cameraX(false), 0);
    QCOMPARE(view.cameraY(false), 0);
    // 100 by 100 pixels until told otherwise.
    QCOMPARE(view.viewToScene({50, 50}), QPoint(0, 0));
    QCOMPARE(view.viewRect(), QRect(-50, 50, 100, 100));
    QVERIFY(isNear(view.getZoomRatio(), 80.0));
}

void ViewPlanesTest::takesTheRangeOfScalesFromItsSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("least");
    QTest::addColumn<float>("greatest");

    // The scene has 8000 by 4800 units.
    QTest::newRow("narrower") << QSize(800, 600) << 0.1f << 1.0f;
    QTest::newRow("flatter") << QSize(2000, 480) << 0.1f << 1.0f;
    QTest::newRow("tiny") << QSize(16, 16) << 0.002f << 1.0f;
    QTest::newRow("as large as the scene") << QSize(8000, 4800) << 1.0f << 1.0f;
    QTest::newRow("wider than the scene") << QSize(8001, 2400) << 0.5f << 5.0f;
    QTest::newRow("higher than the scene") << QSize(4000, 4801) << 0.5f << 5.0f;
    QTest::newRow("larger than the scene") << QSize(10000, 6000) << 1.25f << 12.5f;
}

void ViewPlanesTest::takesTheRangeOfScalesFromItsSize()
{
    QFETCH(QSize, size);
    QFETCH(float, least);
    QFETCH(float, greatest);

    GraphScene graph;
    OpenView view(graph);
    view.setViewSize(size.width(), size.height());
    view.fitOriginalSize();
    QCOMPARE(view.cameraScale(), least);
    view.setCameraScale(0.0f);
    QCOMPARE(view.cameraScale(), least);
    view.setCameraScale(1000.0f);
    QCOMPARE(view.cameraScale(), greatest);
}

void ViewPlanesTest::leavesTheScaleWhenItsSizeChanges()
{
    GraphScene graph;
    OpenView view(graph, {800, 600});
    view.setCameraScale(0.5f);
    view.setViewSize(10000, 6000); // from 1.25 to 12.5
    QVERIFY(view.cameraScale() == 0.5f);
}

void ViewPlanesTest::readsTheSizeOfTheSceneWithItsOwn()
{
    GraphScene graph;
    OpenView view(graph, {800, 600});
    graph.setSize(16000, 9600);
    view.setCameraScale(0.0f);
    QCOMPARE(view.cameraScale(), 0.1f);
    view.setViewSize(800, 600);
    view.setCameraScale(0.0f);
    QCOMPARE(view.cameraScale(), 0.05f);
}

void ViewPlanesTest::mapsItsPixelsToTheScene_data()
{
    addCameras();
}

void ViewPlanesTest::mapsItsPixelsToTheScene()
{
    QFETCH(QSize, size);
    QFETCH(float, scale);
    QFETCH(QPointF, position);
    QFETCH(QPoint, wholePosition);

    GraphScene graph;
    OpenView view(graph, size);
    lookAt(view, position, scale);
    for (int i = -gridSteps; i <= 2 * gridSteps; ++i) {
        const QPoint pixel(i * size.width() / gridSteps, i * size.height() / gridSteps);
        const int right = pixel.x() - size.width() / 2;
        const int up = size.height() / 2 - pixel.y();
        const QPoint expected(rounded(right / double{scale}) + wholePosition.x(),
                              rounded(up / double{scale}) + wholePosition.y());
        QCOMPARE(view.viewToScene(pixel), expected);
    }
}

void ViewPlanesTest::mapsTheSceneToItsPixels_data()
{
    addCameras();
}

void ViewPlanesTest::mapsTheSceneToItsPixels()
{
    QFETCH(QSize, size);
    QFETCH(float, scale);
    QFETCH(QPointF, position);
    QFETCH(QPoint, wholePosition);

    GraphScene graph;
    OpenView view(graph, size);
    lookAt(view, position, scale);
    for (int i = -gridSteps; i <= gridSteps; ++i) {
        const QPoint point(i * 4000 / gridSteps, i * 2400 / gridSteps);
        const QPoint way = point - wholePosition;
        // In floats, as Qt multiplies a point by a float.
        const float right = static_cast<float>(way.x()) * scale;
        const float up = static_cast<float>(way.y()) * scale;
        const QPoint expected(size.width() / 2 + rounded(double{right}), size.height() / 2 - rounded(double{up}));
        QCOMPARE(view.sceneToView(point), expected);
    }
}

void ViewPlanesTest::roundsHalvesUp()
{
    GraphScene graph;
    OpenView view(graph, {9000, 5000});
    view.setCameraScale(2.0f);
    QCOMPARE(view.viewToScene({4500 + 5, 2500 - 5}), QPoint(3, 3));
    QCOMPARE(view.viewToScene({4500 - 5, 2500 + 5}), QPoint(-2, -2));

    OpenView smallView(graph, {800, 600});
    smallView.setCameraScale(0.5f);
    QCOMPARE(smallView.sceneToView({5, 5}), QPoint(403, 297));
    QCOMPARE(smallView.sceneToView({-5, -5}), QPoint(398, 302));
}

void ViewPlanesTest::tellsWhatItShows_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QRect>("shown");

    const QSize usual(800, 600);
    QTest::newRow("a pixel a unit") << usual << 1.0f << QPointF(0.0, 0.0) << QRect(-400, 300, 800, 600);
    QTest::newRow("off the middle") << usual << 0.5f << QPointF(100.0, -200.0) << QRect(-700, 400, 1600, 1200);
    QTest::newRow("cut size") << usual << 0.7f << QPointF(12.75, -3.5) << QRect(-558, 424, 1142, 857);
    QTest::newRow("cut across zero") << usual << 1.0f << QPointF(399.5, -299.5) << QRect(0, 0, 800, 600);
    QTest::newRow("odd size") << QSize(401, 301) << 1.0f << QPointF(0.0, 0.0) << QRect(-200, 150, 401, 301);
    QTest::newRow("odd size at half a unit")
        << QSize(401, 301) << 1.0f << QPointF(0.5, 0.5) << QRect(-199, 150, 401, 301);
}

void ViewPlanesTest::tellsWhatItShows()
{
    QFETCH(QSize, size);
    QFETCH(float, scale);
    QFETCH(QPointF, position);
    QFETCH(QRect, shown);

    GraphScene graph;
    OpenView view(graph, size);
    lookAt(view, position, scale);
    QCOMPARE(view.viewRect(), shown);
}

void ViewPlanesTest::tellsTheLeastWidthThatItCanShow_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("width");

    QTest::newRow("smaller than the scene") << QSize(801, 600) << 801;
    QTest::newRow("larger than the scene") << QSize(10000, 6000) << 800;
    QTest::newRow("cut") << QSize(9001, 5000) << 864; // the scale goes to 10.41666
}

void ViewPlanesTest::tellsTheLeastWidthThatItCanShow()
{
    QFETCH(QSize, size);
    QFETCH(int, width);

    GraphScene graph;
    const OpenView view(graph, size);
    QCOMPARE(view.minFitWidth(), width);
}

void ViewPlanesTest::tellsHowManyTimesMoreOfTheSceneThereIs_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("scene");
    QTest::addColumn<float>("scale");
    QTest::addColumn<double>("ratio");

    const QSize usual(8000, 4800);
    QTest::newRow("width is tighter") << QSize(800, 600) << usual << 0.2f << 2.0;
    QTest::newRow("height is tighter") << QSize(800, 240) << usual << 0.2f << 4.0;
    QTest::newRow("all of it") << QSize(800, 480) << usual << 0.1f << 1.0;
    QTest::newRow("more than all of it") << QSize(8000, 9600) << usual << 1.0f << 1.0;
    QTest::newRow("a larger scene") << QSize(800, 600) << QSize(16000, 4800) << 0.2f << 4.0;
}

void ViewPlanesTest::tellsHowManyTimesMoreOfTheSceneThereIs()
{
    QFETCH(QSize, size);
    QFETCH(QSize, scene);
    QFETCH(float, scale);
    QFETCH(double, ratio);

    GraphScene graph;
    OpenView view(graph, size);
    graph.setSize(scene.width(), scene.height()); // counts at once, even before the range of scales follows
    view.setCameraScale(scale);
    QVERIFY(isNear(view.getZoomRatio(), ratio));
}

void ViewPlanesTest::tellsNoRatioForAScaleOfAlmostNothing()
{
    GraphScene graph;
    graph.setSize(1000000000, 1000000000);
    OpenView view(graph, {1, 1});
    view.setCameraScale(2e-7f);
    QVERIFY(isNear(view.getZoomRatio(), 200.0));
    view.setCameraScale(1.1e-7f);
    QCOMPARE(view.getZoomRatio(), 1.0);
}

QTEST_MAIN(ViewPlanesTest)

#include "ViewPlanesTest.moc"
