#include "support/HostedGraphView.h"
#include "support/LookAt.h"
#include "support/WidgetInput.h"

#include <limits>

using namespace NELK;

namespace
{

constexpr qint64 nodeId = 7;
constexpr qint64 edgeId = 20;

constexpr QPoint onNode(400, 300);
constexpr QPoint onEdge(500, 300);
constexpr QPoint onNothing(100, 500);

/// A host whose slots have the types of the signals spelt as the signals have them.
class Host : public QObject
{
    Q_OBJECT

public:
    QStringList heard;

public Q_SLOTS:
    void hearRight(E_ELEMENTS_TYPE type, qint64 id) { hear("right", type, id); }
    void hearDouble(E_ELEMENTS_TYPE type, qint64 id) { hear("double", type, id); }
    void hearMode(E_OP_MODE mode) { heard.append(QStringLiteral("mode %1").arg(int(mode))); }
    void hearLine(const QPoint& p1, const QPoint& p2)
    {
        heard.append(QStringLiteral("line %1,%2 %3,%4").arg(p1.x()).arg(p1.y()).arg(p2.x()).arg(p2.y()));
    }
    void hearRatio(double ratio) { heard.append(QStringLiteral("ratio %1").arg(ratio)); }

private:
    void hear(const char* which, E_ELEMENTS_TYPE type, qint64 id)
    {
        heard.append(QStringLiteral("%1 %2 %3").arg(QLatin1String(which)).arg(int(type)).arg(id));
    }
};

void connectByText(const GraphView& view, const View& network, Host& host, Qt::ConnectionType type)
{
    QVERIFY(QObject::connect(&view, SIGNAL(signalRightMouseButtonClicked(E_ELEMENTS_TYPE, qint64)), &host,
                             SLOT(hearRight(E_ELEMENTS_TYPE, qint64)), type));
    QVERIFY(QObject::connect(&view, SIGNAL(signalLeftMouseButtonDblClicked(E_ELEMENTS_TYPE, qint64)), &host,
                             SLOT(hearDouble(E_ELEMENTS_TYPE, qint64)), type));
    QVERIFY(QObject::connect(&view, SIGNAL(signalProcessLine(QPoint, QPoint)), &host, SLOT(hearLine(QPoint, QPoint)),
                             type));
    QVERIFY(QObject::connect(&view, SIGNAL(signalZoomRatioChanged(double)), &host, SLOT(hearRatio(double)), type));
    QVERIFY(
        QObject::connect(&network, SIGNAL(signalFrameModeChanged(E_OP_MODE)), &host, SLOT(hearMode(E_OP_MODE)), type));
}

void connectByPointer(const GraphView& view, const View& network, Host& host, Qt::ConnectionType type)
{
    QObject::connect(&view, &GraphView::signalRightMouseButtonClicked, &host, &Host::hearRight, type);
    QObject::connect(&view, &GraphView::signalLeftMouseButtonDblClicked, &host, &Host::hearDouble, type);
    QObject::connect(&view, &GraphView::signalProcessLine, &host, &Host::hearLine, type);
    QObject::connect(&view, &GraphView::signalZoomRatioChanged, &host, &Host::hearRatio, type);
    QObject::connect(&network, &View::signalFrameModeChanged, &host, &Host::hearMode, type);
}

} // namespace

/// What a graph view tells its host, and what the mouse does in each mode.
class GraphViewSignalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void reachesTheHostThroughEveryConnection_data();
    void reachesTheHostThroughEveryConnection();
    void tellsWhatWasClicked();
    void tellsTheShareOfTheSceneThatIsInSight();
    void tellsAShareOfNothingWhenTheSceneChangesItsSize();

    void takesItsModeFromAPublicCode_data();
    void takesItsModeFromAPublicCode();
    void tellsOfALineThatWasDrawn_data();
    void tellsOfALineThatWasDrawn();
    void tellsOfNoLineInOtherModes_data();
    void tellsOfNoLineInOtherModes();
    void tellsOfNoLineBelowTheThreshold();
    void spansTheOverlayOverTheFrame_data();
    void spansTheOverlayOverTheFrame();
    void drawsTheHeadsThatAreAskedFor_data();
    void drawsTheHeadsThatAreAskedFor();
    void blocksTheNetworkAlone();

private:
    QScopedPointer<HostedGraphView> host;
    OpenGraphView* view = nullptr;
    View* network = nullptr;
};

void GraphViewSignalsTest::initTestCase()
{
    host.reset(new HostedGraphView);
    QVERIFY(host->show());
    view = host->view;
    network = view->network();
    GraphNode node = host->graph.createNode(nodeId);
    GraphNode other = host->graph.createNode();
    other.setPos(1000, 0);
    host->graph.createEdge(edgeId, node, other);
}

/// Half of the scene is in sight.
void GraphViewSignalsTest::init()
{
    view->setOperateMode(1, 0);
    view->overlay()->hide();
    view->blockInteraction(false);
    host->graph.setSize(8000, 4800);
    lookAt(*network, {0.0, 0.0}, 0.2f);
}

void GraphViewSignalsTest::cleanup()
{
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void GraphViewSignalsTest::cleanupTestCase()
{
    host.reset();
}

void GraphViewSignalsTest::reachesTheHostThroughEveryConnection_data()
{
    QTest::addColumn<bool>("byText");
    QTest::addColumn<bool>("isQueued");
    QTest::newRow("text, direct") << true << false;
    QTest::newRow("text, queued") << true << true;
    QTest::newRow("pointer to member, direct") << false << false;
    QTest::newRow("pointer to member, queued") << false << true;
}

void GraphViewSignalsTest::reachesTheHostThroughEveryConnection()
{
    QFETCH(bool, byText);
    QFETCH(bool, isQueued);

    Host listener;
    const auto connectAll = byText ? connectByText : connectByPointer;
    connectAll(*view, *network, listener, isQueued ? Qt::QueuedConnection : Qt::DirectConnection);

    press(network, onNode, Qt::RightButton);
    QTest::mouseDClick(network, Qt::LeftButton, Qt::NoModifier, onEdge);
    view->setOperateMode(5, 0);
    drag(network, {10, 20}, {110, 70});
    view->setCameraX(0);
    const QStringList all{"right 1 7", "double 2 20", "mode 2", "line 10,20 110,70", "ratio 0.5"};
    QCOMPARE(listener.heard, isQueued ? QStringList() : all);
    QCoreApplication::processEvents();
    QCOMPARE(listener.heard, all);
}

void GraphViewSignalsTest::tellsWhatWasClicked()
{
    Host listener;
    connectByPointer(*view, *network, listener, Qt::DirectConnection);
    for (const QPoint position : {onNode, onEdge, onNothing})
        press(network, position, Qt::RightButton);
    QCOMPARE(listener.heard, QStringList({"right 1 7", "right 2 20", "right 0 -1"}));
    listener.heard.clear();
    for (const QPoint position : {onNode, onEdge, onNothing})
        QTest::mouseDClick(network, Qt::LeftButton, Qt::NoModifier, position);
    QCOMPARE(listener.heard, QStringList({"double 1 7", "double 2 20"}));
}

void GraphViewSignalsTest::tellsTheShareOfTheSceneThatIsInSight()
{
    Host listener;
    connectByPointer(*view, *network, listener, Qt::DirectConnection);
    view->fitOriginalSize();
    view->fitInView({0.0, 0.0, 2000.0, 100.0});
    view->setCameraY(10);
    QCOMPARE(listener.heard, QStringList({"ratio 1", "ratio 0.25", "ratio 0.25"}));
    listener.heard.clear();
    // Higher than the scene is: now the width is the tighter way. The eye has the share of before shown again.
    host->resize({416, 616});
    QCOMPARE(listener.heard, QStringList({"ratio 0.25"}));
    host->resize({816, 616});
}

void GraphViewSignalsTest::tellsAShareOfNothingWhenTheSceneChangesItsSize()
{
    Host listener;
    connectByPointer(*view, *network, listener, Qt::DirectConnection);
    host->graph.setSize(16000, 9600);
    QCOMPARE(listener.heard, QStringList({"ratio 0.5", "ratio 0"}));
}

void GraphViewSignalsTest::takesItsModeFromAPublicCode_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("cursor");
    for (const int code : {std::numeric_limits<int>::min(), -1, 0, 1, 4, 6, 100})
        QTest::addRow("%d", code) << code << 0 << int(Qt::ArrowCursor);
    QTest::newRow("2") << 2 << 1 << int(Qt::OpenHandCursor);
    QTest::newRow("3") << 3 << 3 << int(Qt::CrossCursor);
    QTest::newRow("5") << 5 << 2 << int(Qt::CrossCursor);
}

void GraphViewSignalsTest::takesItsModeFromAPublicCode()
{
    QFETCH(int, code);
    QFETCH(int, mode);
    QFETCH(int, cursor);

    view->setOperateMode(mode == 0 ? 2 : 1, 0);
    Host listener;
    connectByText(*view, *network, listener, Qt::DirectConnection);
    view->setOperateMode(code, 0);
    QCOMPARE(listener.heard, QStringList{QStringLiteral("mode %1").arg(mode)});
    QCOMPARE(int(view->overlay()->mode()), mode);
    QCOMPARE(int(network->cursor().shape()), cursor);
}

void GraphViewSignalsTest::tellsOfALineThatWasDrawn_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::newRow("down to the right") << QPoint(10, 20) << QPoint(110, 70);
    QTest::newRow("up to the left") << QPoint(110, 70) << QPoint(10, 20);
    QTest::newRow("up to the right") << QPoint(10, 70) << QPoint(110, 20);
    QTest::newRow("just long enough") << QPoint(50, 50) << QPoint(55, 46);
    QTest::newRow("out of the view") << QPoint(50, 50) << QPoint(-30, 640);
}

void GraphViewSignalsTest::tellsOfALineThatWasDrawn()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);

    view->setOperateMode(5, 3);
    QSignalSpy lines(view, SIGNAL(signalProcessLine(QPoint, QPoint)));
    press(network, from);
    moveTo(network, {300, 300});
    moveTo(network, to);
    QVERIFY(lines.isEmpty());
    QVERIFY(view->overlay()->isVisible());
    release(network, to);
    QCOMPARE(lines.count(), 1);
    QCOMPARE(lines.first(), QList<QVariant>({from, to}));
    QVERIFY(view->overlay()->isHidden());
}

void GraphViewSignalsTest::tellsOfNoLineInOtherModes_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {1, 2, 3})
        QTest::addRow("%d", code) << code;
}

void GraphViewSignalsTest::tellsOfNoLineInOtherModes()
{
    QFETCH(int, code);
    view->setOperateMode(code, 3);
    QSignalSpy lines(view, SIGNAL(signalProcessLine(QPoint, QPoint)));
    drag(network, {100, 450}, {200, 550});
    QVERIFY(lines.isEmpty());
    QVERIFY(view->overlay()->isHidden());
}

/// A line that came back under the threshold stays in sight, and does not stand in the way of the next one.
void GraphViewSignalsTest::tellsOfNoLineBelowTheThreshold()
{
    view->setOperateMode(5, 0);
    QSignalSpy lines(view, SIGNAL(signalProcessLine(QPoint, QPoint)));
    drag(network, {50, 50}, {54, 54});
    QVERIFY(view->overlay()->isHidden());

    press(network, {50, 50});
    moveTo(network, {250, 150});
    moveTo(network, {54, 54});
    release(network, {54, 54});
    QVERIFY(lines.isEmpty());
    QVERIFY(view->overlay()->isVisible());
    QCOMPARE(view->overlay()->geometry(), QRect(50, 50, 201, 101));
    QCOMPARE(view->childAt(100, 100), network);

    drag(network, {60, 60}, {160, 60});
    QCOMPARE(lines.count(), 1);
    QVERIFY(view->overlay()->isHidden());
}

void GraphViewSignalsTest::spansTheOverlayOverTheFrame_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("frame");
    for (const int code : {1, 3, 5}) {
        QTest::addRow("mode %d, down to the right", code) << code << QPoint(260, 560) << QRect(200, 500, 61, 61);
        QTest::addRow("mode %d, down to the left", code) << code << QPoint(120, 520) << QRect(120, 500, 81, 21);
        QTest::addRow("mode %d, up to the right", code) << code << QPoint(300, 470) << QRect(200, 470, 101, 31);
        QTest::addRow("mode %d, up to the left", code) << code << QPoint(150, 450) << QRect(150, 450, 51, 51);
        QTest::addRow("mode %d, level", code) << code << QPoint(290, 500) << QRect(200, 500, 91, 1);
    }
}

void GraphViewSignalsTest::spansTheOverlayOverTheFrame()
{
    QFETCH(int, code);
    QFETCH(QPoint, to);
    QFETCH(QRect, frame);

    view->setOperateMode(code, 0);
    press(network, {200, 500});
    QVERIFY(view->overlay()->isHidden());
    moveTo(network, {204, 504});
    QVERIFY(view->overlay()->isHidden());
    moveTo(network, to);
    QVERIFY(view->overlay()->isVisible());
    QCOMPARE(view->overlay()->geometry(), frame);
    release(network, to);
    QVERIFY(view->overlay()->isHidden());
}

void GraphViewSignalsTest::drawsTheHeadsThatAreAskedFor_data()
{
    QTest::addColumn<int>("arrow");
    QTest::addColumn<bool>("atStart");
    QTest::addColumn<bool>("atEnd");
    QTest::newRow("neither") << 0 << false << false;
    QTest::newRow("end") << 1 << false << true;
    QTest::newRow("start") << 2 << true << false;
    QTest::newRow("both") << 3 << true << true;
}

void GraphViewSignalsTest::drawsTheHeadsThatAreAskedFor()
{
    QFETCH(int, arrow);
    QFETCH(bool, atStart);
    QFETCH(bool, atEnd);

    view->setOperateMode(5, arrow);
    press(network, {100, 100});
    moveTo(network, {200, 200});
    // The base of a head is 8 wide and 42.6 away from the end of the line.
    const QImage picture = view->overlay()->grab().toImage();
    const auto isInk = [&picture](int x, int y) { return qGray(picture.pixel(x, y)) < 64; };
    QCOMPARE(isInk(31, 27), atStart);
    QCOMPARE(isInk(73, 69), atEnd);
    release(network, {200, 200});
}

void GraphViewSignalsTest::blocksTheNetworkAlone()
{
    view->blockInteraction(true);
    Host listener;
    connectByPointer(*view, *network, listener, Qt::DirectConnection);
    QSignalSpy selections(&host->graph, SIGNAL(signalSelectChanged(QList<qint64>, QList<qint64>)));
    QSignalSpy changes(&host->graph, SIGNAL(changed(QList<QRectF>)));
    drag(network, onNode, onNothing);
    press(network, onNode, Qt::RightButton);
    QTest::mouseDClick(network, Qt::LeftButton, Qt::NoModifier, onNode);
    turnWheel(network, onNothing, {0, 120});
    QVERIFY(listener.heard.isEmpty());
    QVERIFY(selections.isEmpty());
    QVERIFY(changes.isEmpty());

    view->horizontalBar()->setValue(100);
    QCOMPARE(view->middle(), QPoint(100, 0));
    press(view->eyeSurface(), {10, 48});
    QCOMPARE(view->middle(), QPoint(-2000, 0));
    view->setCameraX(0);
    view->setOperateMode(2, 0);
    QCOMPARE(view->middle(), QPoint(0, 0));
    QCOMPARE(int(view->overlay()->mode()), 1);

    view->blockInteraction(false);
    drag(network, {100, 500}, {110, 500});
    QCOMPARE(view->middle(), QPoint(-50, 0));
}

QTEST_MAIN(GraphViewSignalsTest)

#include "GraphViewSignalsTest.moc"
