#include "view/Camera.h"

#include "support/MatrixText.h"
#include "support/PointText.h"

#include <QtTest>

#include <cmath>
#include <utility>
#include <vector>

using namespace NELK;

namespace
{

/// Of a scene of 8000 by 4800 in a view of 800 by 600.
Camera usualCamera()
{
    Camera camera;
    camera.setScreenSize(800, 600);
    camera.setSceneSize(8000, 4800);
    camera.setScaleRange(0.125f, 16.0f, 0.5f);
    return camera;
}

Camera cameraAt(QVector2D position, bool limited = true)
{
    Camera camera = usualCamera();
    camera.setLimited(false);
    camera.setPosition(position.x(), position.y());
    camera.setLimited(limited);
    return camera;
}

QVector2D limitOf(const Camera& camera)
{
    return {camera.limitX(), camera.limitY()};
}

/// One axis of the camera's pan.
struct Axis
{
    bool (Camera::*move)(float distance);
    /// A position that stands there on this axis, and in the middle of the other.
    QVector2D (*at)(float value);
};

const Axis horizontal{&Camera::moveX, [](float value) { return QVector2D(value, 0.0f); }};
const Axis vertical{&Camera::moveY, [](float value) { return QVector2D(0.0f, value); }};

} // namespace

class CameraTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsInTheMiddleAtScaleOne();
    void keepsScaleOneUntilThereIsARange();
    void goesAsFarAsHalfOfWhatSceneAndViewDifferBy_data();
    void goesAsFarAsHalfOfWhatSceneAndViewDifferBy();
    void keepsPositionsWithinTheLimit();
    void takesAnyPositionWithTheLimitOff();
    void staysWhereItIsWhenASizeChanges();
    void staysWhereItIsWhenTheLimitGoesOn_data();
    void staysWhereItIsWhenTheLimitGoesOn();
    void keepsTheScaleWithinItsRange_data();
    void keepsTheScaleWithinItsRange();
    void keepsTheScaleWhenTheRangeChanges();
    void comesBackWithinTheLimitOfANewScale();
    void resetsToTheLeastScaleInTheMiddle();
    void doesNotTurn();
    void pansByPixels_data();
    void pansByPixels();
    void pansByNothingLessThanAPixel_data();
    void pansByNothingLessThanAPixel();
    void refusesToPanOnFromTheLimit_data();
    void refusesToPanOnFromTheLimit();
    void stopsAPanAtTheLimit();
    void passesTheLimitSidewaysOnlyWhileItIsOff();
    void zoomsByAFactor();
    void stopsTheLastStepAtTheEndOfTheRange();
    void refusesToZoomAtTheEndOfTheRange_data();
    void refusesToZoomAtTheEndOfTheRange();
    void zoomsToARatioOfTheRange_data();
    void zoomsToARatioOfTheRange();
    void flattensTheSceneIntoPixelsAroundTheMiddle();
};

void CameraTest::startsInTheMiddleAtScaleOne()
{
    Camera camera;
    QVERIFY(camera.scale() == 1.0f);
    QCOMPARE(camera.position(), QVector2D(0.0f, 0.0f));
    QCOMPARE(limitOf(camera), QVector2D(0.0f, 0.0f));
    QVERIFY(camera.maxScale() == 0.0f);

    camera.setPosition(5.0f, -5.0f); // the limit is on
    QCOMPARE(camera.position(), QVector2D(0.0f, 0.0f));
}

void CameraTest::keepsScaleOneUntilThereIsARange()
{
    Camera camera;
    camera.setScreenSize(800, 600);
    camera.setSceneSize(8000, 4800);
    camera.setScale(0.25f);
    QVERIFY(camera.scale() == 1.0f);
    camera.reset();
    QVERIFY(camera.scale() == 1.0f);
    QCOMPARE(limitOf(camera), QVector2D(3600.0f, 2100.0f));
}

void CameraTest::goesAsFarAsHalfOfWhatSceneAndViewDifferBy_data()
{
    QTest::addColumn<QSize>("scene");
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QVector2D>("limit");

    const QSize scene(8000, 4800);
    QTest::newRow("a pixel a unit") << scene << QSize(800, 600) << 1.0f << QVector2D(3600.0f, 2100.0f);
    QTest::newRow("two pixels a unit") << scene << QSize(800, 600) << 2.0f << QVector2D(3800.0f, 2250.0f);
    QTest::newRow("the height just fits") << scene << QSize(800, 600) << 0.125f << QVector2D(800.0f, 0.0f);
    QTest::newRow("a view larger than the scene") << scene << QSize(10000, 6000) << 1.0f << QVector2D(1000.0f, 600.0f);
    QTest::newRow("larger by far") << scene << QSize(10000, 6000) << 0.125f << QVector2D(36000.0f, 21600.0f);
    QTest::newRow("larger on one side") << scene << QSize(9000, 600) << 1.0f << QVector2D(500.0f, 2100.0f);
    QTest::newRow("odd difference") << QSize(8001, 4803) << QSize(800, 600) << 1.0f << QVector2D(3600.5f, 2101.5f);
}

void CameraTest::goesAsFarAsHalfOfWhatSceneAndViewDifferBy()
{
    QFETCH(QSize, scene);
    QFETCH(QSize, screen);
    QFETCH(float, scale);
    QFETCH(QVector2D, limit);

    Camera scaledLast = usualCamera();
    scaledLast.setSceneSize(scene.width(), scene.height());
    scaledLast.setScreenSize(screen.width(), screen.height());
    scaledLast.setScale(scale);
    QCOMPARE(limitOf(scaledLast), limit);

    Camera scaledFirst = usualCamera();
    scaledFirst.setScale(scale);
    scaledFirst.setScreenSize(screen.width(), screen.height());
    scaledFirst.setSceneSize(scene.width(), scene.height());
    QCOMPARE(limitOf(scaledFirst), limit);
}

void CameraTest::keepsPositionsWithinTheLimit()
{
    Camera camera = usualCamera();
    for (float x = -4000.0f; x <= 4000.0f; x += 100.0f) {
        for (float y = -2500.0f; y <= 2500.0f; y += 100.0f) {
            camera.setPosition(x, y);
            const float expectedX = x < -3600.0f ? -3600.0f : x > 3600.0f ? 3600.0f : x;
            const float expectedY = y < -2100.0f ? -2100.0f : y > 2100.0f ? 2100.0f : y;
            QCOMPARE(camera.position(), QVector2D(expectedX, expectedY));
        }
    }
}

void CameraTest::takesAnyPositionWithTheLimitOff()
{
    Camera camera = usualCamera();
    camera.setLimited(false);
    camera.setPosition(1e6f, -2e6f);
    QCOMPARE(camera.position(), QVector2D(1e6f, -2e6f));
    camera.setScale(0.5f);
    QCOMPARE(camera.position(), QVector2D(1e6f, -2e6f));
}

void CameraTest::staysWhereItIsWhenASizeChanges()
{
    Camera camera = usualCamera();
    camera.setPosition(3600.0f, -2100.0f);
    camera.setSceneSize(8000 - 200, 4800 - 400);
    camera.setScreenSize(800 + 100, 600 + 100);
    QCOMPARE(camera.position(), QVector2D(3600.0f, -2100.0f));
    QCOMPARE(limitOf(camera), QVector2D(3450.0f, 1850.0f));

    camera.setPosition(camera.position().x(), camera.position().y());
    QCOMPARE(camera.position(), QVector2D(3450.0f, -1850.0f));
}

void CameraTest::staysWhereItIsWhenTheLimitGoesOn_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<QVector2D>("after");

    QTest::newRow("position") << 0 << QVector2D(3600.0f, -2100.0f);
    QTest::newRow("scale") << 1 << QVector2D(3600.0f, -2100.0f);
    QTest::newRow("pan of x") << 2 << QVector2D(3600.0f, -9000.0f);
    QTest::newRow("pan of y") << 3 << QVector2D(9000.0f, -2100.0f);
}

void CameraTest::staysWhereItIsWhenTheLimitGoesOn()
{
    QFETCH(int, call);
    QFETCH(QVector2D, after);

    Camera camera = cameraAt({9000.0f, -9000.0f}, true);
    QCOMPARE(camera.position(), QVector2D(9000.0f, -9000.0f));
    switch (call) {
    case 0:
        camera.setPosition(9000.0f, -9000.0f);
        break;
    case 1:
        camera.setScale(1.0f);
        break;
    case 2:
        QVERIFY(camera.moveX(5.0f));
        break;
    default:
        QVERIFY(camera.moveY(5.0f));
    }
    QCOMPARE(camera.position(), after);
}

void CameraTest::keepsTheScaleWithinItsRange_data()
{
    QTest::addColumn<float>("asked");
    QTest::addColumn<float>("taken");

    QTest::newRow("nothing") << 0.0f << 0.125f;
    QTest::newRow("negative") << -3.0f << 0.125f;
    QTest::newRow("below") << 0.1249f << 0.125f;
    QTest::newRow("least") << 0.125f << 0.125f;
    QTest::newRow("within") << 0.7f << 0.7f;
    QTest::newRow("greatest") << 16.0f << 16.0f;
    QTest::newRow("above") << 16.1f << 16.0f;
}

void CameraTest::keepsTheScaleWithinItsRange()
{
    QFETCH(float, asked);
    QFETCH(float, taken);

    Camera camera = usualCamera();
    camera.setScale(asked);
    QVERIFY(camera.scale() == taken);
}

void CameraTest::keepsTheScaleWhenTheRangeChanges()
{
    Camera camera = usualCamera();
    camera.setScaleRange(2.0f, 4.0f, 0.5f);
    QVERIFY(camera.scale() == 1.0f);
    QVERIFY(camera.maxScale() == 4.0f);
    camera.setScale(camera.scale());
    QVERIFY(camera.scale() == 2.0f);
}

void CameraTest::comesBackWithinTheLimitOfANewScale()
{
    Camera camera = usualCamera();
    camera.setPosition(3000.0f, -2000.0f);
    camera.setScale(0.25f); // 3200 by 2400 units in sight
    QCOMPARE(camera.position(), QVector2D(2400.0f, -1200.0f));
    camera.setScale(1.0f);
    QCOMPARE(camera.position(), QVector2D(2400.0f, -1200.0f));
}

void CameraTest::resetsToTheLeastScaleInTheMiddle()
{
    for (const bool limited : {true, false}) {
        Camera camera = cameraAt({1234.0f, -567.0f}, limited);
        camera.reset();
        QVERIFY(camera.scale() == 0.125f);
        QCOMPARE(camera.position(), QVector2D(0.0f, 0.0f));
        QCOMPARE(limitOf(camera), QVector2D(800.0f, 0.0f));
    }
}

void CameraTest::doesNotTurn()
{
    Camera camera = cameraAt({100.0f, 200.0f});
    const Mat4 before = camera.viewMatrix();
    QVERIFY(!camera.rotate(90));
    QCOMPARE(camera.viewMatrix(), before);
}

void CameraTest::pansByPixels_data()
{
    QTest::addColumn<float>("scale");
    QTest::addColumn<float>("distance");
    QTest::addColumn<float>("way");

    QTest::newRow("a pixel a unit") << 1.0f << 30.0f << 30.0f;
    QTest::newRow("back") << 1.0f << -30.0f << -30.0f;
    QTest::newRow("far away") << 0.125f << 30.0f << 240.0f;
    QTest::newRow("near") << 8.0f << -30.0f << -3.75f;
    QTest::newRow("parts of pixels") << 1.0f << 1.75f << 1.75f;
}

void CameraTest::pansByPixels()
{
    QFETCH(float, scale);
    QFETCH(float, distance);
    QFETCH(float, way);

    Camera camera = usualCamera();
    camera.setSceneSize(80000, 48000); // room at any scale
    camera.setScale(scale);
    camera.setPosition(100.0f, -50.0f);
    QVERIFY(camera.moveX(distance));
    QCOMPARE(camera.position(), QVector2D(100.0f + way, -50.0f));
    QVERIFY(camera.moveY(distance));
    QCOMPARE(camera.position(), QVector2D(100.0f + way, -50.0f + way));
}

void CameraTest::pansByNothingLessThanAPixel_data()
{
    QTest::addColumn<float>("distance");
    QTest::addColumn<bool>("pans");

    QTest::newRow("nothing") << 0.0f << false;
    QTest::newRow("half") << 0.5f << false;
    QTest::newRow("half back") << -0.5f << false;
    QTest::newRow("nearly one") << 0.99999f << false;
    QTest::newRow("nearly one back") << -0.99999f << false;
    QTest::newRow("one") << 1.0f << true;
    QTest::newRow("one back") << -1.0f << true;
}

void CameraTest::pansByNothingLessThanAPixel()
{
    QFETCH(float, distance);
    QFETCH(bool, pans);

    for (const bool limited : {true, false}) {
        Camera camera = cameraAt({10.0f, 20.0f}, limited);
        QCOMPARE(camera.moveX(distance), pans);
        QCOMPARE(camera.moveY(distance), pans);
        QCOMPARE(camera.position(), QVector2D(10.0f, 20.0f) + (pans ? QVector2D(distance, distance) : QVector2D()));
    }
}

void CameraTest::refusesToPanOnFromTheLimit_data()
{
    QTest::addColumn<float>("beyond"); // how far beyond the limit the camera stands
    QTest::addColumn<bool>("pans");

    QTest::newRow("more than one before") << -1.5f << true;
    QTest::newRow("one before") << -1.0f << true;
    QTest::newRow("less than one before") << -0.75f << false;
    QTest::newRow("at it") << 0.0f << false;
    QTest::newRow("less than one beyond") << 0.75f << false;
    QTest::newRow("one beyond") << 1.0f << true;
    QTest::newRow("more than one beyond") << 1.5f << true;
}

void CameraTest::refusesToPanOnFromTheLimit()
{
    QFETCH(float, beyond);
    QFETCH(bool, pans);

    const std::vector<std::pair<Axis, float>> axes{{horizontal, 3600.0f}, {vertical, 2100.0f}};
    for (const auto& [axis, limit] : axes) {
        for (const float side : {1.0f, -1.0f}) {
            for (const bool limited : {true, false}) {
                const QVector2D start = axis.at(side * (limit + beyond));
                Camera outward = cameraAt(start, limited);
                QCOMPARE((outward.*axis.move)(side * 50.0f), pans);
                QCOMPARE(outward.position() == start, !pans);

                Camera inward = cameraAt(start, limited);
                QVERIFY((inward.*axis.move)(side * -50.0f));
                QCOMPARE(inward.position(), start - axis.at(side * 50.0f));
            }
        }
    }
}

void CameraTest::stopsAPanAtTheLimit()
{
    Camera camera = cameraAt({3500.0f, -2000.0f});
    QVERIFY(camera.moveX(300.0f));
    QVERIFY(camera.moveY(-300.0f));
    QCOMPARE(camera.position(), QVector2D(3600.0f, -2100.0f));
}

void CameraTest::passesTheLimitSidewaysOnlyWhileItIsOff()
{
    Camera camera = cameraAt({3500.0f, -2000.0f}, false);
    QVERIFY(camera.moveX(300.0f));
    QVERIFY(camera.moveY(-300.0f));
    QCOMPARE(camera.position(), QVector2D(3800.0f, -2100.0f));
    QVERIFY(camera.moveX(300.0f));
    QVERIFY(!camera.moveY(-300.0f));
    QCOMPARE(camera.position(), QVector2D(4100.0f, -2100.0f));
}

void CameraTest::zoomsByAFactor()
{
    Camera camera = usualCamera();
    QVERIFY(camera.zoomStep(true, 1.5f));
    QVERIFY(camera.scale() == 1.5f);
    QVERIFY(camera.zoomStep(false, 2.0f));
    QVERIFY(camera.scale() == 0.75f);
}

void CameraTest::stopsTheLastStepAtTheEndOfTheRange()
{
    Camera camera = usualCamera();
    camera.setScale(15.5f);
    QVERIFY(camera.zoomStep(true, 1.05f));
    QVERIFY(camera.scale() == 16.0f);
    camera.setScale(0.13f);
    QVERIFY(camera.zoomStep(false, 1.05f));
    QVERIFY(camera.scale() == 0.125f);
}

void CameraTest::refusesToZoomAtTheEndOfTheRange_data()
{
    QTest::addColumn<bool>("in");
    QTest::addColumn<float>("scale");
    QTest::addColumn<bool>("zooms");

    const float step = std::ldexp(1.0f, -24); // of floats just above 0.5 and just below 1
    QTest::newRow("in, at the greatest") << true << 1.0f << false;
    QTest::newRow("in, as good as there") << true << 1.0f - 2.0f * step << false;
    QTest::newRow("in, before it") << true << 1.0f - 3.0f * step << true;
    QTest::newRow("in, at the least") << true << 0.5f << true;
    QTest::newRow("out, at the least") << false << 0.5f << false;
    QTest::newRow("out, as good as there") << false << 0.5f + 2.0f * step << false;
    QTest::newRow("out, before it") << false << 0.5f + 3.0f * step << true;
    QTest::newRow("out, at the greatest") << false << 1.0f << true;
}

void CameraTest::refusesToZoomAtTheEndOfTheRange()
{
    QFETCH(bool, in);
    QFETCH(float, scale);
    QFETCH(bool, zooms);

    Camera camera = usualCamera();
    camera.setScaleRange(0.5f, 1.0f, 0.0f);
    camera.setScale(scale);
    QCOMPARE(camera.zoomStep(in, 1.05f), zooms);
    QCOMPARE(camera.scale() == scale, !zooms);
}

void CameraTest::zoomsToARatioOfTheRange_data()
{
    QTest::addColumn<float>("ratio");
    QTest::addColumn<float>("scale");

    QTest::newRow("greatest") << 0.0f << 16.0f;
    QTest::newRow("least") << 1.0f << 0.125f;
    QTest::newRow("middle") << 0.5f << 8.0625f;
    QTest::newRow("nearer to the greatest") << 0.25f << 12.03125f;
    QTest::newRow("beyond the least") << 1.5f << 0.125f;
    QTest::newRow("beyond the greatest") << -1.0f << 16.0f;
}

void CameraTest::zoomsToARatioOfTheRange()
{
    QFETCH(float, ratio);
    QFETCH(float, scale);

    Camera camera = usualCamera();
    QVERIFY(camera.zoomToRatio(ratio));
    QVERIFY(camera.scale() == scale);
    // It is there already, if that is within the range.
    QCOMPARE(camera.zoomToRatio(ratio), ratio < 0.0f || ratio > 1.0f);
    QVERIFY(camera.scale() == scale);
}

void CameraTest::flattensTheSceneIntoPixelsAroundTheMiddle()
{
    Camera camera = usualCamera();
    camera.setScale(0.5f);
    camera.setPosition(300.0f, -40.0f);
    const Mat4 expected{
        glm::mat4(0.5f, 0.0f, 0.0f, 0.0f, 0.0f, 0.5f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, -150.0f, 20.0f, 0.0f, 1.0f)};
    QCOMPARE(camera.viewMatrix(), expected);
    QCOMPARE(Camera().viewMatrix(), (Mat4{glm::mat4(1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
                                                    0.0f, 0.0f, 0.0f, 0.0f, 1.0f)}));
}

QTEST_APPLESS_MAIN(CameraTest)

#include "CameraTest.moc"
