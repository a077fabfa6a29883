#include <NELK/NELK>

#include <QColor>
#include <QProcess>
#include <QtTest>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

using namespace NELK;

/// Debug builds stop a host that breaks a precondition. Each deed is done in a process of its own: this very
/// executable, with the name of the deed as its argument.
class PreconditionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void misuseStopsWithAClearText_data();
    void misuseStopsWithAClearText();
    void whatIsAllowedGoesOn_data();
    void whatIsAllowedGoesOn();
};

namespace
{

struct Deed
{
    QString name;
    std::function<void()> run;
    /// What the assertion says; null where none is due.
    const char* assertion;
};

using Deeds = std::vector<Deed>;

constexpr int goneOn = 0;
constexpr int stoppedByAssertion = 33;

constexpr qint64 usedId = 5;
constexpr qint64 unknownId = 6;

/// Why a handle is not live.
enum Ending
{
    NeverBegun,
    NotFound,
    Removed,
    Cleared,
    Replaced
};

constexpr std::array<Ending, 5> allEndings{NeverBegun, NotFound, Removed, Cleared, Replaced};

QString nameOf(Ending ending)
{
    const QStringList names{"null", "null of a scene", "removed", "cleared away", "replaced"};
    return names[ending];
}

/// Holds a node and an edge that came to that end.
class Bygone
{
public:
    explicit Bygone(Ending ending)
    {
        if (ending != NeverBegun) {
            const GraphNode used = m_scene.createNode(usedId);
            m_scene.createEdge(usedId, used, used);
            const qint64 id = ending == NotFound ? unknownId : usedId;
            node = m_scene.getNode(id);
            edge = m_scene.getEdge(id);
        }
        if (ending == Removed)
            m_scene.removeNode(usedId);
        if (ending == Cleared)
            m_scene.clear();
        if (ending == Replaced)
            replace();
    }

    GraphNode node;
    GraphEdge edge;

private:
    void replace()
    {
        const GraphNode newer = m_scene.createNode(usedId);
        m_scene.createEdge(usedId, newer, newer);
    }

    GraphScene m_scene;
};

constexpr const char* deadNode =
    "ASSERT failure in NELK::GraphNode: \"the handle is null or its node is no longer in the scene\"";
constexpr const char* deadEdge =
    "ASSERT failure in NELK::GraphEdge: \"the handle is null or its edge is no longer in the scene\"";
constexpr const char* noSuchNode = "ASSERT failure in NELK::Scene::removeNode: \"no node has this id\"";
constexpr const char* noSuchEdge = "ASSERT failure in NELK::Scene::removeEdge: \"no edge has this id\"";

using NodeCall = std::pair<const char*, void (*)(GraphNode&)>;
using EdgeCall = std::pair<const char*, void (*)(GraphEdge&)>;

const std::vector<NodeCall> nodeCalls{
    {"pos", [](GraphNode& node) { node.pos(); }},
    {"posGraph", [](GraphNode& node) { node.posGraph(); }},
    {"rect", [](GraphNode& node) { node.rect(); }},
    {"rectGraph", [](GraphNode& node) { node.rectGraph(); }},
    {"setPos(QPoint)", [](GraphNode& node) { node.setPos(QPoint(1, 2)); }},
    {"setPos(int,int)", [](GraphNode& node) { node.setPos(1, 2); }},
    {"setPosGraph(QPoint)", [](GraphNode& node) { node.setPosGraph(QPoint(1, 2)); }},
    {"setPosGraph(int,int)", [](GraphNode& node) { node.setPosGraph(1, 2); }},
    {"select", [](GraphNode& node) { node.select(); }},
    {"setSelect", [](GraphNode& node) { node.setSelect(true); }},
    {"setShow", [](GraphNode& node) { node.setShow(false); }},
    {"setLock", [](GraphNode& node) { node.setLock(true); }},
    {"setFocus", [](GraphNode& node) { node.setFocus(true); }},
    {"setCombined", [](GraphNode& node) { node.setCombined(true); }},
    {"setSize", [](GraphNode& node) { node.setSize(2.0f); }},
    {"setCircleShow", [](GraphNode& node) { node.setCircleShow(true); }},
    {"setCircleSize", [](GraphNode& node) { node.setCircleSize(2.0f); }},
    {"setCircleColor", [](GraphNode& node) { node.setCircleColor(Qt::red); }},
};

const std::vector<EdgeCall> edgeCalls{
    {"startPos", [](GraphEdge& edge) { edge.startPos(); }},
    {"endPos", [](GraphEdge& edge) { edge.endPos(); }},
    {"curveStartPos", [](GraphEdge& edge) { edge.curveStartPos(); }},
    {"curveEndPos", [](GraphEdge& edge) { edge.curveEndPos(); }},
    {"select", [](GraphEdge& edge) { edge.select(); }},
    {"setSelect", [](GraphEdge& edge) { edge.setSelect(true); }},
    {"setShow", [](GraphEdge& edge) { edge.setShow(false); }},
    {"setEdgeColor", [](GraphEdge& edge) { edge.setEdgeColor(Qt::red); }},
    {"setEdgeWidth", [](GraphEdge& edge) { edge.setEdgeWidth(20); }},
    {"setRightAngle", [](GraphEdge& edge) { edge.setRightAngle(true); }},
    {"setStartArrowShow", [](GraphEdge& edge) { edge.setStartArrowShow(true); }},
    {"setEndArrowShow", [](GraphEdge& edge) { edge.setEndArrowShow(true); }},
};

/// Edge calls that a null handle may take, but no dangling one.
const std::vector<EdgeCall> forgivingEdgeCalls{
    {"ring", [](GraphEdge& edge) { edge.ring(); }},
    {"setZoomSpan", [](GraphEdge& edge) { edge.setZoomSpan(2.0f); }},
};

/// What any handle may be asked while its scene exists.
void askWithCare(Bygone& bygone)
{
    const GraphNode node = bygone.node;
    const GraphEdge edge = bygone.edge;
    const bool right =
        !node.valid() && !edge.valid() && node == bygone.node && edge == bygone.edge && node.getId() == edge.getId();
    bygone.node = GraphNode();
    bygone.edge = GraphEdge();
    if (!right)
        qFatal("a handle that is not live gave a wrong answer");
}

void removeNodeTwice()
{
    GraphScene scene;
    scene.createNode(usedId);
    scene.removeNode(usedId);
    scene.removeNode(usedId);
}

void removeEdgeTwice()
{
    GraphScene scene;
    const GraphNode node = scene.createNode(usedId);
    scene.createEdge(usedId, node, node);
    scene.removeEdge(usedId);
    scene.removeEdge(usedId);
}

/// Nodes and edges have their ids apart from each other.
void removeNodeByTheIdOfAnEdge()
{
    GraphScene scene;
    const GraphNode node = scene.createNode(usedId);
    scene.createEdge(unknownId, node, node);
    scene.removeNode(unknownId);
}

void removeEdgeByTheIdOfANode()
{
    GraphScene scene;
    scene.createNode(usedId);
    scene.removeEdge(usedId);
}

Deed nodeDeed(const NodeCall& call, Ending ending)
{
    const auto run = [=] {
        Bygone bygone(ending);
        call.second(bygone.node);
    };
    return {QStringLiteral("GraphNode::%1, %2").arg(call.first, nameOf(ending)), run, deadNode};
}

Deed edgeDeed(const EdgeCall& call, Ending ending, const char* assertion)
{
    const auto run = [=] {
        Bygone bygone(ending);
        call.second(bygone.edge);
    };
    return {QStringLiteral("GraphEdge::%1, %2").arg(call.first, nameOf(ending)), run, assertion};
}

Deeds misuses()
{
    Deeds deeds{{"removeNode, unknown", [] { GraphScene().removeNode(unknownId); }, noSuchNode},
                {"removeEdge, unknown", [] { GraphScene().removeEdge(unknownId); }, noSuchEdge},
                {"removeNode, twice", removeNodeTwice, noSuchNode},
                {"removeEdge, twice", removeEdgeTwice, noSuchEdge},
                {"removeNode, id of an edge", removeNodeByTheIdOfAnEdge, noSuchNode},
                {"removeEdge, id of a node", removeEdgeByTheIdOfANode, noSuchEdge}};
    for (const Ending ending : allEndings) {
        for (const NodeCall& call : nodeCalls)
            deeds.push_back(nodeDeed(call, ending));
        for (const EdgeCall& call : edgeCalls)
            deeds.push_back(edgeDeed(call, ending, deadEdge));
    }
    for (const Ending ending : {Removed, Cleared, Replaced}) {
        for (const EdgeCall& call : forgivingEdgeCalls)
            deeds.push_back(edgeDeed(call, ending, deadEdge));
    }
    return deeds;
}

Deeds allowedDeeds()
{
    Deeds deeds;
    for (const Ending ending : allEndings) {
        const auto ask = [=] {
            Bygone bygone(ending);
            askWithCare(bygone);
        };
        deeds.push_back({QStringLiteral("ask, %1").arg(nameOf(ending)), ask, nullptr});
    }
    for (const Ending ending : {NeverBegun, NotFound}) {
        for (const EdgeCall& call : forgivingEdgeCalls)
            deeds.push_back(edgeDeed(call, ending, nullptr));
    }
    return deeds;
}

/// Ends the process as soon as the assertion has spoken: an abort would leave a core file behind.
void speakAndStop(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    std::fflush(stderr);
    if (type == QtFatalMsg)
        std::_Exit(stoppedByAssertion);
}

/// Does the deed of that name. Answers whether there is one.
bool doDeed(const QString& name)
{
    for (const Deeds& deeds : {misuses(), allowedDeeds()}) {
        for (const Deed& deed : deeds) {
            if (deed.name != name)
                continue;
            qInstallMessageHandler(speakAndStop);
            deed.run();
            return true;
        }
    }
    return false;
}

void addRows(const Deeds& deeds)
{
    QTest::addColumn<QString>("assertion");
    for (const Deed& deed : deeds)
        QTest::newRow(qPrintable(deed.name)) << QString(deed.assertion);
}

struct Outcome
{
    bool ended = false;
    int exitCode = -1;
    QString errors;
};

/// What becomes of a process that does the deed named after the current row.
Outcome outcomeOfCurrentRow()
{
    constexpr int patience = 60000;
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationFilePath(), {QString::fromUtf8(QTest::currentDataTag())});
    Outcome outcome;
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
    }
    outcome.ended = process.error() == QProcess::UnknownError && process.exitStatus() == QProcess::NormalExit;
    outcome.exitCode = process.exitCode();
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

} // namespace

void PreconditionsTest::misuseStopsWithAClearText_data()
{
#if defined(QT_NO_DEBUG) && !defined(QT_FORCE_ASSERTS)
    // The macro lacks an argument in the eyes of clang's -Wpedantic.
    QTest::qSkip("assertions are compiled out of this build", __FILE__, __LINE__);
#else
    addRows(misuses());
#endif
}

void PreconditionsTest::misuseStopsWithAClearText()
{
    QFETCH(QString, assertion);
    const Outcome outcome = outcomeOfCurrentRow();
    QVERIFY2(outcome.ended, qPrintable(outcome.errors));
    QVERIFY2(outcome.errors.startsWith(assertion), qPrintable(outcome.errors));
    QCOMPARE(outcome.exitCode, stoppedByAssertion);
}

void PreconditionsTest::whatIsAllowedGoesOn_data()
{
    addRows(allowedDeeds());
}

void PreconditionsTest::whatIsAllowedGoesOn()
{
    const Outcome outcome = outcomeOfCurrentRow();
    QVERIFY2(outcome.ended, qPrintable(outcome.errors));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, goneOn);
}

int main(int argc, char** argv)
{
    if (argc == 2 && doDeed(QString::fromUtf8(argv[1])))
        return goneOn;
    QCoreApplication application(argc, argv);
    PreconditionsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PreconditionsTest.moc"
