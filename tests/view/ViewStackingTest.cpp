#include "atlas/ImageManager.h"
#include "support/EveryKind.h"
#include "support/OpenView.h"
#include "support/Pixels.h"
#include "support/PlainIcons.h"

#include <NELK/GraphScene.h>

#include <QtTest>

#include <array>
#include <vector>

using namespace NELK;

namespace
{

constexpr QSize viewSize(200, 200);

/// A square of `edge` units around a point of the scene.
Mat4 squareAt(float x, float y, float edge)
{
    return scale(translate({}, {x, y, 0.0f}), {edge, edge, 1.0f});
}

std::array<float, 4> channelsOf(QRgb color, float last)
{
    return {static_cast<float>(qRed(color)) / 255.0f, static_cast<float>(qGreen(color)) / 255.0f,
            static_cast<float>(qBlue(color)) / 255.0f, last};
}

// Elements that cover the middle of the view.

InstanceRecord flat(QRgb color)
{
    return {squareAt(0.0f, 0.0f, 120.0f), channelsOf(color, 0.0f), {}, {}};
}

/// From 30 to 50 units around a point that is 40 to the left.
InstanceRecord ring(QRgb color)
{
    return {squareAt(-40.0f, 0.0f, 100.0f), channelsOf(color, 2.5f), {}, {}};
}

/// An empty cell in front of the color.
InstanceRecord text(QRgb color)
{
    const SImageCell blank = ImageManager::instance(1)->requestWord(' ');
    return {squareAt(0.0f, 0.0f, 120.0f),
            {static_cast<float>(blank.texRowIdx), static_cast<float>(blank.texColIdx), 0.0f, 0.0f},
            channelsOf(Qt::black, 1.0f),
            channelsOf(color, 1.0f)};
}

/// The icon that was named after the color.
InstanceRecord icon(QRgb color)
{
    const SImageCell cell = ImageManager::instance(0)->requestCell(IMAGE_ENTITY, nameOf(color));
    return {squareAt(0.0f, 0.0f, 120.0f),
            {static_cast<float>(cell.texRowIdx), static_cast<float>(cell.texColIdx), 0.0f, 0.0f},
            {},
            {}};
}

/// Its right side runs through the middle.
InstanceRecord frame(QRgb /*color*/)
{
    return {squareAt(-40.0f, 0.0f, 80.0f), {}, {}, {}};
}

/// One kind of element, in a colour of its own.
struct Kind
{
    const char* name;
    InstanceList Scene::*items;
    InstanceRecord (*record)(QRgb color);
    QRgb color;
    double alpha;
};

constexpr QRgb iconColor = qRgb(0x20, 0x80, 0x20);
constexpr QRgb selectedIconColor = qRgb(0xc0, 0x40, 0xc0);

/// From the bottom to the top.
const std::vector<Kind> kinds{
    {"straight edges", &Scene::edgeLineItems, flat, qRgb(255, 0, 0), 1.0},
    {"bent edges", &Scene::edgeCurveItems, flat, qRgb(0, 255, 0), 1.0},
    {"arrows", &Scene::arrowItems, flat, qRgb(0, 0, 255), 1.0},
    {"edge rings", &Scene::edgeRingItems, ring, qRgb(255, 255, 0), 1.0},
    {"edge text", &Scene::edgeTextItems, text, qRgb(0, 255, 255), 1.0},
    {"circles", &Scene::circleItems, flat, qRgb(255, 0, 255), 0.7},
    {"rings", &Scene::ringItems, ring, qRgb(128, 0, 0), 1.0},
    {"icons", &Scene::imageItems, icon, iconColor, 1.0},
    {"text", &Scene::textItems, text, qRgb(0, 0, 128), 1.0},
    {"selected circles", &Scene::selCircleItems, flat, qRgb(128, 128, 0), 0.7},
    {"selected rings", &Scene::selRingItems, ring, qRgb(0, 128, 128), 1.0},
    {"selected icons", &Scene::selImageItems, icon, selectedIconColor, 1.0},
    {"selected text", &Scene::selTextItems, text, qRgb(90, 90, 90), 1.0},
    {"frames", &Scene::frameItems, frame, qRgb(51, 102, 204), 1.0},
};

QRgb over(const Kind& upper, QRgb lower)
{
    const auto blend = [&upper](int above, int below) {
        return qRound(upper.alpha * above + (1 - upper.alpha) * below);
    };
    return qRgb(blend(qRed(upper.color), qRed(lower)), blend(qGreen(upper.color), qGreen(lower)),
                blend(qBlue(upper.color), qBlue(lower)));
}

/// A view on what a test puts into the lists itself.
class ListView : public OpenView
{
public:
    explicit ListView(GraphScene& graph) : OpenView(graph, viewSize), shown(sceneOf(graph))
    {
        shown.selectColor = {0.2f, 0.4f, 0.8f};
        picture(); // the set-up rebuilds the lists
    }

    void add(const Kind& kind)
    {
        InstanceList& list = shown.*kind.items;
        list.add(kind.record(kind.color));
        list.complete();
    }

    void clearLists()
    {
        for (const Kind& kind : kinds)
            (shown.*kind.items) = {};
    }

    /// One color wherever all kinds are.
    QRgb middle() { return picture().pixel(viewSize.width() / 2 - 1, viewSize.height() / 2); }

private:
    Scene& shown;
};

/// A label that shows as a bar of one color.
void setBar(GraphNode& node, const QColor& color)
{
    node.setLabel(QStringLiteral("        "), {});
    node.setLabelColor(Qt::black, color);
}

} // namespace

class ViewStackingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void drawsEachKind_data();
    void drawsEachKind();
    void drawsOneKindOverAnother_data();
    void drawsOneKindOverAnother();
    void drawsSelectedNodesOverTheTextOfOthers_data();
    void drawsSelectedNodesOverTheTextOfOthers();
    void drawsTheTextOfNodesOverOtherNodes();
    void drawsNodesOverEdges();
    void drawsFramesOverEverything();

private:
    QScopedPointer<PlainIcons> icons;
    QScopedPointer<GraphScene> graph;
    QScopedPointer<ListView> view;
};

void ViewStackingTest::initTestCase()
{
    icons.reset(new PlainIcons({nameOf(iconColor), nameOf(selectedIconColor)}));
    graph.reset(new GraphScene);
    view.reset(new ListView(*graph));
}

void ViewStackingTest::cleanup()
{
    graph->clear();
    view->clearLists();
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ViewStackingTest::cleanupTestCase()
{
    view.reset();
    graph.reset();
}

void ViewStackingTest::drawsEachKind_data()
{
    QTest::addColumn<int>("kind");
    for (std::size_t i = 0; i < kinds.size(); ++i)
        QTest::newRow(kinds[i].name) << static_cast<int>(i);
}

void ViewStackingTest::drawsEachKind()
{
    QFETCH(int, kind);
    const Kind& drawn = kinds[static_cast<std::size_t>(kind)];

    QCOMPARE(nameOf(view->middle()), nameOf(qRgb(255, 255, 255)));
    view->add(drawn);
    QVERIFY(difference(view->middle(), over(drawn, qRgb(255, 255, 255))) <= 1);
}

void ViewStackingTest::drawsOneKindOverAnother_data()
{
    drawsEachKind_data();
}

void ViewStackingTest::drawsOneKindOverAnother()
{
    QFETCH(int, kind);
    const Kind& upper = kinds[static_cast<std::size_t>(kind)];

    for (int i = 0; i < kind; ++i) {
        const Kind& lower = kinds[static_cast<std::size_t>(i)];
        view->clearLists();
        view->add(upper);
        view->add(lower);
        const QRgb expected = over(upper, over(lower, qRgb(255, 255, 255)));
        const QRgb seen = view->middle();
        QVERIFY2(
            difference(seen, expected) <= 2,
            qPrintable(QStringLiteral("over %1: %2 instead of %3").arg(lower.name, nameOf(seen), nameOf(expected))));
    }
}

void ViewStackingTest::drawsSelectedNodesOverTheTextOfOthers_data()
{
    QTest::addColumn<qint64>("selectedId");
    for (const qint64 id : {1, 2, 3, 50, 999, 123456})
        QTest::addRow("node %lld", id) << id;
}

void ViewStackingTest::drawsSelectedNodesOverTheTextOfOthers()
{
    QFETCH(qint64, selectedId);

    // Whatever the order in which the nodes come, the selected one lies over the bars of all others.
    for (const qint64 id : {1, 2, 3, 50, 999, 123456}) {
        GraphNode node = graph->createNode(id);
        node.setImage(nameOf(id == selectedId ? selectedIconColor : iconColor), false);
        node.setPos(0, id == selectedId ? 0 : 128 + 38);
        node.setSelect(id == selectedId);
        if (id != selectedId)
            setBar(node, Qt::red);
    }
    const QImage picture = view->rebuiltPicture();
    QCOMPARE(nameOf(picture.pixel(pixelAt(picture, 0.0, 0.0))), nameOf(selectedIconColor));
    graph->getNode(selectedId).setSelect(false);
    const QImage unselected = view->rebuiltPicture();
    QCOMPARE(nameOf(unselected.pixel(pixelAt(unselected, 0.0, 0.0))), QStringLiteral("#ff0000"));
}

void ViewStackingTest::drawsTheTextOfNodesOverOtherNodes()
{
    GraphNode named = addNode(*graph, {0, 128 + 38});
    setBar(named, Qt::red);
    GraphNode other = addNode(*graph, {0, 0});
    other.setImage(nameOf(iconColor), false);
    other.setCircleShow(true);
    const QImage picture = view->rebuiltPicture();
    QCOMPARE(nameOf(picture.pixel(pixelAt(picture, 0.0, 0.0))), QStringLiteral("#ff0000"));
    QCOMPARE(nameOf(picture.pixel(pixelAt(picture, 0.0, -50.0))), nameOf(iconColor));
}

void ViewStackingTest::drawsNodesOverEdges()
{
    const GraphNode left = addNode(*graph, {-400, 0});
    const GraphNode right = addNode(*graph, {400, 0});
    GraphEdge edge = addEdge(*graph, left, right, Qt::red);
    edge.setEdgeWidth(60);
    edge.setSelect(true);
    GraphNode node = addNode(*graph, {0, 0});
    node.setImage(nameOf(iconColor), false);
    node.setSize(0.5f);
    const QImage picture = view->rebuiltPicture();
    QCOMPARE(nameOf(picture.pixel(pixelAt(picture, 0.0, 0.0))), nameOf(iconColor));
    QCOMPARE(nameOf(picture.pixel(pixelAt(picture, 80.0, 0.0))), nameOf(qRgb(51, 102, 204)));
}

void ViewStackingTest::drawsFramesOverEverything()
{
    GraphNode framed = addNode(*graph, {-128, 0});
    framed.setSelect(true);
    GraphNode other = addNode(*graph, {0, 128 + 38});
    setBar(other, Qt::red);
    other.setSelect(true);
    const QImage picture = view->rebuiltPicture();
    QCOMPARE(nameOf(picture.pixel(pixelAt(picture, 0.0, 0.0))), nameOf(qRgb(51, 102, 204)));
    QCOMPARE(nameOf(picture.pixel(pixelAt(picture, 10.0, 0.0))), QStringLiteral("#ff0000"));
}

QTEST_MAIN(ViewStackingTest)

#include "ViewStackingTest.moc"
