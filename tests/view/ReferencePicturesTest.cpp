#include "support/EveryKind.h"
#include "support/LookAt.h"
#include "support/OpenView.h"
#include "support/Pixels.h"
#include "support/PlainIcons.h"

#include <NELK/GraphScene.h>

#include <QDir>
#include <QtTest>

#include <vector>

using namespace NELK;

namespace
{

const QString steel = QStringLiteral("steelblue");
const QString sand = QStringLiteral("burlywood");

GraphNode addIcon(GraphScene& graph, QPoint position, const QString& icon, const QString& label = {})
{
    GraphNode node = addNode(graph, position, label);
    node.setImage(icon, false);
    return node;
}

/// Two nodes side by side.
struct Pair
{
    explicit Pair(GraphScene& graph, int distance = 1000)
        : left(addIcon(graph, {-distance / 2, 0}, steel)), right(addIcon(graph, {distance / 2, 0}, sand))
    {
    }

    GraphNode left;
    GraphNode right;
};

void fillIcons(GraphScene& graph)
{
    addIcon(graph, {-500, 0}, steel).setSize(2.0f);
    addIcon(graph, {0, 0}, sand);
    addIcon(graph, {300, 200}, steel).setSize(0.5f);
    addIcon(graph, {300, -200}, sand).setSize(0.1f);
}

void fillBadges(GraphScene& graph)
{
    addIcon(graph, {-500, 0}, sand).setLock(true);
    addIcon(graph, {-170, 0}, sand).setFocus(true);
    addIcon(graph, {170, 0}, sand).setCombined(true);
    GraphNode all = addIcon(graph, {500, 0}, sand);
    all.setLock(true);
    all.setFocus(true);
    all.setCombined(true);
}

void fillCircles(GraphScene& graph)
{
    const std::vector<QColor> colors{Qt::red, Qt::darkGreen, Qt::black};
    int x = -600;
    float size = 1.0f;
    for (const QColor& color : colors) {
        GraphNode node = addIcon(graph, {x, 0}, steel);
        node.setCircleShow(true);
        node.setCircleColor(color);
        node.setCircleSize(size);
        x += 550;
        size += 0.25f;
    }
}

void fillArrows(GraphScene& graph)
{
    const Pair pair(graph, 1200);
    const GraphNode top = addIcon(graph, {0, 500}, steel);
    GraphEdge flat = addEdge(graph, pair.left, pair.right, Qt::red);
    flat.setStartArrowShow(true);
    flat.setEndArrowShow(true);
    GraphEdge rising = addEdge(graph, pair.left, top, Qt::darkGreen);
    rising.setEndArrowShow(true);
    rising.setEdgeWidth(40);
    addEdge(graph, pair.right, top, Qt::blue).setStartArrowShow(true);
}

void fillParallelEdges(GraphScene& graph)
{
    const Pair pair(graph, 1400);
    GraphEdge base = addEdge(graph, pair.left, pair.right, Qt::red);
    for (int track = 1; track <= 4; ++track) {
        GraphEdge edge = graph.createEdge(base, track);
        edge.setEdgeWidth(8 + 8 * track);
        edge.setEdgeColor(QColor(0, 60 * track, 200));
        edge.setEndArrowShow(track % 2 != 0);
        edge.setStartArrowShow(track % 2 == 0);
    }
}

void fillRightAngles(GraphScene& graph)
{
    const GraphNode top = addIcon(graph, {0, 400}, steel);
    for (const int x : {-700, 0, 700}) {
        const GraphNode child = addIcon(graph, {x, -400}, sand);
        GraphEdge edge = addEdge(graph, top, child, Qt::darkMagenta);
        edge.setEdgeWidth(24);
        edge.setRightAngle(true);
        edge.setEndArrowShow(true);
    }
}

void fillRings(GraphScene& graph)
{
    const Pair pair(graph, 1200);
    GraphEdge ring = addEdge(graph, pair.left, pair.left, Qt::red);
    graph.createEdge(ring, 1).setEdgeColor(Qt::darkGreen);
    graph.createEdge(ring, 2).setEdgeColor(Qt::blue);
    addEdge(graph, pair.right, pair.right, Qt::black).setEdgeWidth(60);
}

void fillLabels(GraphScene& graph)
{
    addIcon(graph, {-500, 300}, steel, QStringLiteral("plain\nin two rows"));
    GraphNode colored = addIcon(graph, {450, 300}, sand);
    colored.setLabel(QStringLiteral("first"), QStringLiteral("second"));
    colored.setLabelSize(2.0f);
    colored.setLabelColor(Qt::white, Qt::darkRed);
    addIcon(graph, {-500, -250}, steel, QStringLiteral("\u4eba\u7269")).setLabelSize(1.5f);
}

void fillSetNumbers(GraphScene& graph)
{
    GraphNode node = addIcon(graph, {0, 230}, steel);
    node.setSetNum({QStringLiteral("3"), QStringLiteral("14"), QStringLiteral("159")});
    node.setLabel(QStringLiteral("above"), QStringLiteral("below"));
    node.setLabelSize(2.0f);
}

void fillEdgeLabels(GraphScene& graph)
{
    const Pair pair(graph, 1300);
    GraphEdge edge = addEdge(graph, pair.left, pair.right, Qt::red);
    edge.setLabel(QStringLiteral("one\ntwo\nthree"));
    edge.setLabelColor(Qt::black, QColor(255, 255, 255, 200));
    GraphEdge ring = addEdge(graph, pair.left, pair.left, Qt::darkGreen);
    ring.setLabel(QStringLiteral("ring"));
    ring.setLabelSize(1.5f);
}

void fillSelection(GraphScene& graph)
{
    Pair pair(graph, 700);
    GraphEdge edge = addEdge(graph, pair.left, pair.right, Qt::red);
    edge.setEdgeWidth(30);
    edge.setEndArrowShow(true);
    edge.setSelect(true);
    pair.left.setCircleShow(true);
    pair.left.setSelect(true);
    pair.left.setLabel(QStringLiteral("a selected node"), {});
    addIcon(graph, {-200, 200}, sand).setSelect(false);
    pair.right.setSelect(true);
}

void fillEveryKind(GraphScene& graph)
{
    addEveryKind(graph);
    for (const qint64 id : sceneOf(graph).nodes.keys())
        graph.getNode(id).setImage(sand, false);
}

void fillHidden(GraphScene& graph)
{
    fillEveryKind(graph);
    graph.setNodeTextShow(false);
    graph.setEdgeTextShow(false);
    addIcon(graph, {300, 700}, steel, QStringLiteral("hidden")).setShow(false);
}

/// What is drawn, and how: fitted unless there is a scale.
struct Picture
{
    const char* name;
    void (*fill)(GraphScene& graph);
    float scale = 0.0f;
};

const std::vector<Picture> pictures{
    {"icons", fillIcons},
    {"badges", fillBadges, 0.25f},
    {"circles", fillCircles, 0.19f},
    {"arrows", fillArrows},
    {"parallel-edges", fillParallelEdges},
    {"right-angles", fillRightAngles},
    {"rings", fillRings, 0.13f},
    {"labels", fillLabels},
    {"set-numbers", fillSetNumbers, 0.25f},
    {"edge-labels", fillEdgeLabels},
    {"selection", fillSelection},
    {"every-kind", fillEveryKind},
    {"hidden", fillHidden},
    {"near", fillEveryKind, 0.9f},
};

QString referenceOf(const Picture& picture)
{
    return QStringLiteral(NELK_REFERENCE_PICTURES "/%1.png").arg(picture.name);
}

/// The pixels that are far off. Drivers smooth edges and scale text in ways of their own, which moves a pixel at an
/// edge by a few of its samples, but not by most of them.
int countFarOff(const QImage& seen, const QImage& expected)
{
    constexpr int mostOff = 96;
    int count = 0;
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x)
            count += difference(seen.pixel(x, y), expected.pixel(x, y)) > mostOff ? 1 : 0;
    }
    return count;
}

/// About an arrow head of the scenes.
constexpr int mostFarOff = 60;
/// In a channel, over the whole picture.
constexpr double greatestMeanOff = 1.0;

} // namespace

/// With NELK_RENEW_REFERENCE_PICTURES set, takes what it sees for right. Look at the pictures then.
class ReferencePicturesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void looksAsBefore_data();
    void looksAsBefore();
    void cleanup();
    void cleanupTestCase();

private:
    /// The working directory from outside: icons have one of their own.
    const QDir outputFolder = QDir::current();
    QScopedPointer<PlainIcons> icons;
    QScopedPointer<GraphScene> graph;
    QScopedPointer<OpenView> view;
};

void ReferencePicturesTest::initTestCase()
{
    icons.reset(new PlainIcons({steel, sand}));
    graph.reset(new GraphScene);
    view.reset(new OpenView(*graph, {320, 200}));
}

void ReferencePicturesTest::cleanup()
{
    graph->clear();
    graph->setNodeTextShow(true);
    graph->setEdgeTextShow(true);
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ReferencePicturesTest::cleanupTestCase()
{
    view.reset();
    graph.reset();
}

void ReferencePicturesTest::looksAsBefore_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < pictures.size(); ++i)
        QTest::newRow(pictures[i].name) << static_cast<int>(i);
}

void ReferencePicturesTest::looksAsBefore()
{
    QFETCH(int, index);
    const Picture& picture = pictures[static_cast<std::size_t>(index)];

    picture.fill(*graph);
    if (picture.scale > 0.0f)
        lookAt(*view, {0.0, 0.0}, picture.scale);
    else
        view->fitToView();
    const QImage seen = view->rebuiltPicture();

    if (qEnvironmentVariableIsSet("NELK_RENEW_REFERENCE_PICTURES")) {
        QVERIFY(seen.save(referenceOf(picture)));
        return;
    }
    const QImage expected(referenceOf(picture));
    QCOMPARE(expected.size(), seen.size());
    const int farOff = countFarOff(seen, expected);
    const double meanOff = meanDifference(seen, expected);
    if (farOff <= mostFarOff && meanOff <= greatestMeanOff)
        return;

    const QString seenFile = outputFolder.absoluteFilePath(QStringLiteral("%1.seen.png").arg(picture.name));
    seen.save(seenFile);
    QFAIL(qPrintable(QStringLiteral("%1 pixels are far off, all by %2 in the mean; compare %3 with %4")
                         .arg(farOff)
                         .arg(meanOff)
                         .arg(seenFile, referenceOf(picture))));
}

QTEST_MAIN(ReferencePicturesTest)

#include "ReferencePicturesTest.moc"
