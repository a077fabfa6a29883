#include "scene/NodeData.h"
#include "support/HostedGraphView.h"
#include "support/LookAt.h"
#include "support/SceneOf.h"
#include "support/WidgetInput.h"

#include <QPainter>

using namespace NELK;

namespace
{

const QColor ground(242, 242, 242);
const QColor plainNode(89, 184, 69);

bool hasOnly(const QImage& picture, const QColor& color)
{
    QImage plain(picture.size(), picture.format());
    plain.fill(color);
    return picture == plain;
}

} // namespace

/// What the overview shows: in a graph view of 816 by 616 it is 160 by 96, and a pixel spans 50 units.
class ViewEyePictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void showsNodesAsPlainSquares();
    void showsNoSelection();
    void showsEdgesInTheirColor();
    void dropsEdgesOfWideScenes_data();
    void dropsEdgesOfWideScenes();
    void looksAtTheWidthOnlyWithTheSceneSize();
    void keepsItsMindWhileItIsNarrow();
    void takesUpChangesWithAnUpdateOrADragOnly();

private:
    QImage updatedPicture();
    void addWideEdge();
    bool showsEdges();

    QScopedPointer<HostedGraphView> host;
    OpenGraphView* view = nullptr;
    ViewEye* eye = nullptr;
};

void ViewEyePictureTest::initTestCase()
{
    host.reset(new HostedGraphView);
    view = host->view;
    eye = view->eye();
    QVERIFY(host->show());
}

/// Half of the default scene is in sight.
void ViewEyePictureTest::init()
{
    host->resize({816, 616});
    host->graph.clear();
    host->graph.setSize(8000, 4800);
    lookAt(*view->network(), {0.0, 0.0}, 0.2f);
    view->NelkUpdate();
}

void ViewEyePictureTest::cleanup()
{
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ViewEyePictureTest::cleanupTestCase()
{
    host.reset();
}

QImage ViewEyePictureTest::updatedPicture()
{
    view->NelkUpdate();
    return view->saveEyeImage();
}

void ViewEyePictureTest::addWideEdge()
{
    GraphNode left = host->graph.createNode();
    left.setPos(-3000, 0);
    GraphNode right = host->graph.createNode();
    right.setPos(3000, 0);
    GraphEdge edge = host->graph.createEdge(left, right);
    edge.setEdgeColor(Qt::red);
    edge.setEdgeWidth(1500);
    left.setShow(false);
    right.setShow(false);
}

bool ViewEyePictureTest::showsEdges()
{
    return !hasOnly(updatedPicture(), ground);
}

void ViewEyePictureTest::showsNodesAsPlainSquares()
{
    GraphNode node = host->graph.createNode();
    node.setPos(2000, 1200);
    node.setSize(3.90625f); // 1000 units
    const auto showsSquare = [](const QImage& picture, const QColor& color) {
        QImage expected(picture.size(), picture.format());
        expected.fill(ground);
        QPainter(&expected).fillRect(110, 14, 20, 20, color);
        return picture == expected;
    };
    QVERIFY(showsSquare(updatedPicture(), plainNode));
    sceneOf(host->graph).nodes[node.getId()]->entityColor = {1.0f, 0.0f, 0.4f, 1.0f};
    QVERIFY(showsSquare(updatedPicture(), QColor(255, 0, 102)));
}

void ViewEyePictureTest::showsNoSelection()
{
    GraphNode node = host->graph.createNode();
    node.setSize(4.0f);
    const QImage plain = updatedPicture();
    QVERIFY(!hasOnly(plain, ground));
    node.setSelect(true);
    node.setCircleShow(true);
    node.setLock(true);
    QCOMPARE(updatedPicture(), plain);
    node.setShow(false);
    QVERIFY(hasOnly(updatedPicture(), ground));
}

void ViewEyePictureTest::showsEdgesInTheirColor()
{
    addWideEdge();
    const QImage picture = updatedPicture();
    QCOMPARE(picture.pixelColor(80, 48), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(80, 10), ground);
}

void ViewEyePictureTest::dropsEdgesOfWideScenes_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("areShown");
    QTest::newRow("256") << 40960 << true;
    QTest::newRow("256 and a fraction") << 41119 << true;
    QTest::newRow("257") << 41120 << false;
}

void ViewEyePictureTest::dropsEdgesOfWideScenes()
{
    QFETCH(int, width);
    QFETCH(bool, areShown);

    addWideEdge();
    host->graph.setSize(width, 24000);
    QCOMPARE(eye->width(), 160);
    QCOMPARE(showsEdges(), areShown);
}

void ViewEyePictureTest::looksAtTheWidthOnlyWithTheSceneSize()
{
    addWideEdge();
    host->graph.setSize(41120, 24000);
    host->resize({1616, 1216});
    QCOMPARE(eye->width(), 320);
    QVERIFY(!showsEdges());
    host->graph.setSize(41120, 24000);
    QVERIFY(showsEdges());
}

void ViewEyePictureTest::keepsItsMindWhileItIsNarrow()
{
    addWideEdge();
    QVERIFY(showsEdges());
    host->resize({96, 616});
    QCOMPARE(eye->width(), 16);
    host->graph.setSize(8000, 4800);
    QVERIFY(showsEdges());
    host->resize({97, 616});
    QCOMPARE(eye->width(), 17);
    QVERIFY(showsEdges());
    host->graph.setSize(8000, 4800);
    QVERIFY(!showsEdges());
}

void ViewEyePictureTest::takesUpChangesWithAnUpdateOrADragOnly()
{
    GraphNode node = host->graph.createNode();
    GraphNode other = host->graph.createNode();
    other.setPos(1000, 1000);
    const QImage before = updatedPicture();
    other.setPos(-1000, 1000);

    // A click selects the node, and the network takes up all that has changed.
    press(view->network(), {400, 300});
    release(view->network(), {400, 300});
    QVERIFY(node.select());
    view->setCameraX(100);
    QCOMPARE(view->saveEyeImage(), before);

    view->setCameraX(0);
    QCoreApplication::processEvents();
    PaintCounter paints(*view->eyeSurface());
    press(view->network(), {400, 300});
    moveTo(view->network(), {500, 300});
    QTRY_COMPARE(paints.count(), 1);
    const QImage dragged = view->saveEyeImage();
    QCOMPARE(dragged.pixelColor(90, 48), plainNode);
    QCOMPARE(dragged.pixelColor(60, 28), plainNode);
    QCOMPARE(dragged.pixelColor(80, 48), ground);
    release(view->network(), {500, 300});
}

QTEST_MAIN(ViewEyePictureTest)

#include "ViewEyePictureTest.moc"
