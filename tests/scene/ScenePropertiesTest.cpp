#include "scene/ElementHits.h"
#include "scene/LineFrame.h"
#include "scene/ModelMatrices.h"
#include "scene/Scene.h"
#include "support/SceneOf.h"
#include "support/SignalLog.h"

#include <NELK/GraphScene.h>

#include <QColor>
#include <QtTest>

#include <rapidcheck.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using namespace NELK;

/// Plays random sequences of calls on a scene and on a simple model of it, and compares the two after every call.
class ScenePropertiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void behavesLikeItsModel();
};

namespace
{

// The model. Records are told apart by a serial, counted from 0 for nodes and for edges, since ids may be given again.

/// What labels measure here, with node text and without.
const QSize textSize(301, 41);
const QSize setNumbersSize(601, 31);

using Serial = std::size_t;
using SerialsById = std::map<qint64, Serial>;

struct ModelNode
{
    int circleDiameter() const { return static_cast<int>(static_cast<float>(width) * 1.4142f * circleSize); }
    int bodyDiameter() const { return circleShow ? circleDiameter() : width; }
    QVector2D center() const { return {x, y}; }

    qint64 id = 0;
    float x = 0.0f;
    float y = 0.0f;
    bool select = false;
    bool show = true;
    bool lock = false;
    bool focus = false;
    bool combined = false;
    int width = 256;
    bool circleShow = false;
    float circleSize = 1.0f;
    Rgb circleColor{};
    bool hasLabel = false;
};

struct ModelEdge
{
    float ringScale() const { return ring ? static_cast<float>(index * 0.4 + 1.0) : 1.0f; }

    qint64 id = 0;
    bool ring = false;
    Serial start = 0;
    Serial end = 0;
    std::optional<Serial> base;
    int index = 0;
    int maxIndex = 0;
    bool rightAngle = false;
    bool select = false;
    bool show = true;
    bool startArrowShow = false;
    bool endArrowShow = false;
    int width = 8;
    float zoomSpan = 1.0f;
    Rgb color{};
    bool hasLabel = false;

    // As the last build of the shape left them.
    LineFrame frame;
    int ringDiameter = 10;
    QVector2D curveStartPos;
    QVector2D curveEndPos;
    QVector2D centerPos;
};

/// What the scene should hold, and the operations on it in their plainest form.
struct Model
{
    Serial addNode(qint64 id);
    Serial addBaseEdge(qint64 id, Serial start, Serial end);
    Serial addRing(qint64 id, Serial node, int number);
    Serial addDerivedEdge(qint64 id, Serial base, int number);
    void removeEdge(qint64 id);
    void removeNode(qint64 id);
    void clear();

    void moveNode(Serial node, QVector2D to);
    void resizeNode(Serial node, float size);
    void rebuildShape(ModelEdge& edge);
    void rebuildRing(ModelEdge& edge);
    void rebuildRightAngle(ModelEdge& edge);
    void alignToCenter();

    static bool isPickable(const ModelNode& node) { return node.show && node.id < 12345678900; }
    bool holdsNode(Serial node) const;
    bool holdsEdge(Serial edge) const;
    std::array<int, 4> boundingRect(bool visibleOnly) const;

    /// Every record that is alive. Beside those that the scene knows by an id there are those that lost theirs to a
    /// later element.
    std::map<Serial, ModelNode> nodes;
    std::map<Serial, ModelEdge> edges;
    SerialsById nodesById;
    SerialsById edgesById;

    Serial nodesCreated = 0;
    Serial edgesCreated = 0;
    int width = 8000;
    int height = 4800;
    bool nodeTextShow = true;
    bool edgeTextShow = true;

private:
    Serial enter(const ModelEdge& edge);
};

Serial Model::addNode(qint64 id)
{
    const Serial serial = nodesCreated++;
    nodes[serial].id = id;
    nodesById[id] = serial;
    return serial;
}

Serial Model::addBaseEdge(qint64 id, Serial start, Serial end)
{
    ModelEdge edge;
    edge.id = id;
    edge.start = start;
    edge.end = end;
    return enter(edge);
}

Serial Model::addRing(qint64 id, Serial node, int number)
{
    ModelEdge edge;
    edge.id = id;
    edge.ring = true;
    edge.start = node;
    edge.end = node;
    edge.index = std::max(number, 0);
    return enter(edge);
}

Serial Model::addDerivedEdge(qint64 id, Serial base, int number)
{
    ModelEdge edge;
    edge.id = id;
    edge.start = edges[base].start;
    edge.end = edges[base].end;
    edge.base = base;
    edge.index = std::max(number, 1);
    edges[base].maxIndex = std::max(edges[base].maxIndex, number);
    return enter(edge);
}

Serial Model::enter(const ModelEdge& edge)
{
    const Serial serial = edgesCreated++;
    edges[serial] = edge;
    edgesById[edge.id] = serial;
    rebuildShape(edges[serial]);
    return serial;
}

void Model::removeEdge(qint64 id)
{
    const Serial removed = edgesById.at(id);
    const ModelEdge edge = edges.at(removed);
    edgesById.erase(id);
    edges.erase(removed);
    if (edge.base && edges[*edge.base].maxIndex == edge.index && edge.index > edges[*edge.base].index)
        --edges[*edge.base].maxIndex;

    for (auto& [serial, derived] : edges) {
        if (derived.base != removed)
            continue;
        derived.base.reset();
        derived.maxIndex = derived.index;
        derived.frame = computeLineFrame(nodes[derived.start].center(), nodes[derived.end].center(), 128.0f);
        rebuildShape(derived);
    }
}

void Model::removeNode(qint64 id)
{
    const Serial removed = nodesById.at(id);
    nodesById.erase(id);
    nodes.erase(removed);
    for (Serial edge = 0; edge < edgesCreated; ++edge) {
        if (edges.count(edge) == 0 || (edges[edge].start != removed && edges[edge].end != removed))
            continue;
        if (holdsEdge(edge))
            edgesById.erase(edges[edge].id);
        edges.erase(edge);
    }
}

void Model::clear()
{
    nodes.clear();
    edges.clear();
    nodesById.clear();
    edgesById.clear();
}

void Model::moveNode(Serial node, QVector2D to)
{
    nodes[node].x = to.x();
    nodes[node].y = to.y();
    for (auto& [serial, edge] : edges) {
        if (edge.start == node || edge.end == node)
            rebuildShape(edge);
    }
}

void Model::resizeNode(Serial node, float size)
{
    nodes[node].width = static_cast<int>((size > 0.1f ? size : 0.1f) * 256.0f);
    for (auto& [serial, edge] : edges) {
        if (edge.ring && edge.start == node)
            rebuildRing(edge);
    }
}

void Model::rebuildRing(ModelEdge& edge)
{
    const QVector2D center = nodes[edge.start].center();
    const auto circle = static_cast<float>(nodes[edge.start].circleDiameter());
    const int top = static_cast<int>((static_cast<float>(edge.index) * 0.4f + 1.0f) * circle);
    edge.ringDiameter = static_cast<int>(circle * edge.ringScale());
    edge.centerPos = center + QVector2D(0.0f, static_cast<float>(top));
    const int middle = top / 2;
    edge.curveStartPos = center + QVector2D(0.0f, static_cast<float>(middle));
    edge.curveEndPos = edge.curveStartPos;
}

void Model::rebuildRightAngle(ModelEdge& edge)
{
    QVector2D upper = nodes[edge.start].center();
    QVector2D lower = nodes[edge.end].center();
    if (lower.y() > upper.y())
        std::swap(upper, lower);
    const float level = (upper.y() * 3.0f + lower.y()) * 0.25f;
    edge.curveStartPos = {upper.x(), level};
    edge.curveEndPos = {lower.x(), level};
    edge.centerPos = {lower.x(), (level + lower.y()) * 0.5f};
}

void Model::rebuildShape(ModelEdge& edge)
{
    if (edge.ring) {
        rebuildRing(edge);
        return;
    }
    if (edge.rightAngle) {
        rebuildRightAngle(edge);
        return;
    }

    const QVector2D start = nodes[edge.start].center();
    const QVector2D end = nodes[edge.end].center();
    if (!edge.base)
        edge.frame = computeLineFrame(start, end, 128.0f);
    const LineFrame& frame = edge.base ? edges[*edge.base].frame : edge.frame;
    const QVector2D side = edge.index % 2 == 1 ? frame.offsetStartA : frame.offsetStartB;
    const int steps = (edge.index + 1) / 2;
    const QVector2D offset = static_cast<float>(steps) * edge.zoomSpan * (side - frame.lineStart);
    edge.curveStartPos = frame.lineStart + offset;
    edge.curveEndPos = frame.lineEnd + offset;
    edge.centerPos = edge.index == 0 ? (start + end) * 0.5f : (edge.curveStartPos + edge.curveEndPos) * 0.5f;
}

void Model::alignToCenter()
{
    if (nodesById.empty())
        return;
    std::vector<float> xs;
    std::vector<float> ys;
    for (const auto& [id, serial] : nodesById) {
        xs.push_back(nodes[serial].x);
        ys.push_back(nodes[serial].y);
    }
    const auto middle = [](const std::vector<float>& values) {
        return (*std::max_element(values.begin(), values.end()) + *std::min_element(values.begin(), values.end())) *
               0.5f;
    };
    const QVector2D center(middle(xs), middle(ys));
    for (const auto& [id, serial] : nodesById)
        moveNode(serial, nodes[serial].center() - center);
}

bool Model::holdsNode(Serial node) const
{
    return nodes.count(node) == 1 && nodesById.count(nodes.at(node).id) == 1 && nodesById.at(nodes.at(node).id) == node;
}

bool Model::holdsEdge(Serial edge) const
{
    return edges.count(edge) == 1 && edgesById.count(edges.at(edge).id) == 1 && edgesById.at(edges.at(edge).id) == edge;
}

std::array<int, 4> Model::boundingRect(bool visibleOnly) const
{
    std::vector<float> xs;
    std::vector<float> ys;
    for (const auto& [id, serial] : nodesById) {
        const ModelNode& node = nodes.at(serial);
        if (visibleOnly && !node.show)
            continue;
        xs.push_back(node.x);
        ys.push_back(node.y);
    }
    if (xs.empty())
        return {-4000, 2400, 8000, -4800};

    int margin = 0;
    for (const auto& [id, serial] : edgesById) {
        const ModelEdge& edge = edges.at(serial);
        if (!edge.base && (edge.show || !visibleOnly))
            margin = std::max(margin, edge.ring ? 0 : (edge.maxIndex + 1) / 2 * 128);
    }
    const auto allAround = static_cast<float>(margin);
    const float left = *std::min_element(xs.begin(), xs.end()) - allAround;
    const float bottom = *std::min_element(ys.begin(), ys.end()) - allAround;
    const float right = *std::max_element(xs.begin(), xs.end()) + allAround;
    const float top = *std::max_element(ys.begin(), ys.end()) + allAround;
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left),
            static_cast<int>(top - bottom)};
}

// Failures tell what is wrong in words.

/// What was created, by serial. Handles are kept for good, to be asked after their elements are gone.
struct Created
{
    std::vector<GraphNode> nodeHandles;
    std::vector<NodeData*> nodes;
    std::vector<GraphEdge> edgeHandles;
    std::vector<EdgeData*> edges;
};

/// Holds a scene against its model, in every respect. A difference fails the property and is told in words.
class Comparison
{
public:
    Comparison(const GraphScene& comparedScene, const Model& expectedModel, const Created& createdRecords);

    void run() const;

private:
    /// The element of which a comparison speaks.
    struct Subject
    {
        const char* kind;
        qint64 id;
        Serial serial;
    };
    friend std::ostream& operator<<(std::ostream& stream, const Subject& subject)
    {
        return stream << subject.kind << ' ' << subject.id << " (number " << subject.serial << ")";
    }

    void compareSets() const;
    void compareNode(Serial serial, const ModelNode& expected) const;
    void compareEdge(Serial serial, const ModelEdge& expected) const;
    void compareShape(Serial serial, const ModelEdge& expected) const;
    void compareHandles() const;
    void compareNodeAnswers(Serial serial, const ModelNode& expected) const;
    void compareEdgeAnswers(Serial serial, const ModelEdge& expected) const;
    void compareSceneAnswers() const;

    Serial serialOf(const NodeData* record) const { return serialIn(nodeSerials, record); }
    Serial serialOf(const EdgeData* record) const { return serialIn(edgeSerials, record); }
    template <typename Serials, typename Record>
    static Serial serialIn(const Serials& serials, const Record* record);
    template <typename Record, typename Elements, typename Belongs>
    void compareSet(const char* name, const QHash<qint64, Record*>& actual, const SerialsById& ids,
                    const Elements& elements, Belongs belongs) const;
    template <typename Belongs>
    void compareList(const Subject& node, const char* name, const QList<EdgeData*>& actual, Belongs belongs) const;

    const GraphScene& graphScene;
    const Scene& scene;
    const Model& model;
    const Created& created;
    std::map<const NodeData*, Serial> nodeSerials;
    std::map<const EdgeData*, Serial> edgeSerials;
};

template <typename Whose, typename Value>
void same(const Whose& whose, const char* what, const Value& actual, const Value& expected)
{
    if (actual == expected)
        return;
    std::ostringstream message;
    message << std::boolalpha << whose << ": " << what << " is ";
    rc::show(actual, message);
    message << " and should be ";
    rc::show(expected, message);
    RC_FAIL(message.str());
}

// Points and rectangles in a form that can be shown.

std::array<float, 2> numbers(QVector2D point)
{
    return {point.x(), point.y()};
}

std::array<int, 2> numbers(QPoint point)
{
    return {point.x(), point.y()};
}

std::array<int, 4> numbers(const QRect& rect)
{
    return {rect.left(), rect.top(), rect.width(), rect.height()};
}

Rgb fractionsOf(const QColor& color)
{
    return {static_cast<float>(color.red()) / 255.0f, static_cast<float>(color.green()) / 255.0f,
            static_cast<float>(color.blue()) / 255.0f};
}

QPoint graphPoint(QVector2D point)
{
    return {static_cast<int>(point.x()), static_cast<int>(-point.y())};
}

Comparison::Comparison(const GraphScene& comparedScene, const Model& expectedModel, const Created& createdRecords)
    : graphScene(comparedScene), scene(sceneOf(comparedScene)), model(expectedModel), created(createdRecords)
{
    for (const auto& [serial, node] : model.nodes)
        nodeSerials[created.nodes[serial]] = serial;
    for (const auto& [serial, edge] : model.edges)
        edgeSerials[created.edges[serial]] = serial;
}

void Comparison::run() const
{
    compareSets();
    for (const auto& [serial, node] : model.nodes)
        compareNode(serial, node);
    for (const auto& [serial, edge] : model.edges) {
        compareEdge(serial, edge);
        compareShape(serial, edge);
    }
    compareHandles();
    for (const auto& [id, serial] : model.nodesById)
        compareNodeAnswers(serial, model.nodes.at(serial));
    for (const auto& [id, serial] : model.edgesById)
        compareEdgeAnswers(serial, model.edges.at(serial));
    compareSceneAnswers();
}

template <typename Serials, typename Record>
Serial Comparison::serialIn(const Serials& serials, const Record* record)
{
    constexpr Serial unknown = 99999;
    const auto found = serials.find(record);
    return found == serials.end() ? unknown : found->second;
}

template <typename Record, typename Elements, typename Belongs>
void Comparison::compareSet(const char* name, const QHash<qint64, Record*>& actual, const SerialsById& ids,
                            const Elements& elements, Belongs belongs) const
{
    SerialsById actualSerials;
    for (auto it = actual.begin(); it != actual.end(); ++it)
        actualSerials[it.key()] = serialOf(it.value());
    SerialsById expected;
    for (const auto& [id, serial] : ids) {
        if (belongs(elements.at(serial)))
            expected[id] = serial;
    }
    same("scene", name, actualSerials, expected);
    same(name, "size", actual.size(), static_cast<int>(expected.size()));
}

void Comparison::compareSets() const
{
    const auto compareNodes = [this](const char* name, const Scene::NodeSet& set, auto belongs) {
        compareSet(name, set, model.nodesById, model.nodes, belongs);
    };
    compareNodes("nodes", scene.nodes, [](const ModelNode&) { return true; });
    compareNodes("circleNodes", scene.circleNodes, [](const ModelNode& node) { return node.circleShow; });
    compareNodes("selectedNodes", scene.selectedNodes, [](const ModelNode& node) { return node.select; });
    compareNodes("labelNodes", scene.labelNodes, [](const ModelNode& node) { return node.hasLabel; });
    compareNodes("setNumNodes", scene.setNumNodes, [](const ModelNode& node) { return node.hasLabel; });

    const auto compareEdges = [this](const char* name, const Scene::EdgeSet& set, auto belongs) {
        compareSet(name, set, model.edgesById, model.edges, belongs);
    };
    compareEdges("edges", scene.edges, [](const ModelEdge&) { return true; });
    compareEdges("plainEdges", scene.plainEdges, [](const ModelEdge& edge) { return !edge.ring; });
    compareEdges("ringEdges", scene.ringEdges, [](const ModelEdge& edge) { return edge.ring; });
    compareEdges("selectedEdges", scene.selectedEdges, [](const ModelEdge& edge) { return edge.select; });
    compareEdges("startArrowEdges", scene.startArrowEdges, [](const ModelEdge& edge) { return edge.startArrowShow; });
    compareEdges("endArrowEdges", scene.endArrowEdges, [](const ModelEdge& edge) { return edge.endArrowShow; });
    compareEdges("labelEdges", scene.labelEdges, [](const ModelEdge& edge) { return edge.hasLabel; });
}

template <typename Belongs>
void Comparison::compareList(const Subject& node, const char* name, const QList<EdgeData*>& actual,
                             Belongs belongs) const
{
    std::vector<Serial> actualSerials;
    for (const EdgeData* edge : actual)
        actualSerials.push_back(serialOf(edge));
    std::vector<Serial> expected;
    for (const auto& [serial, edge] : model.edges) {
        if (belongs(edge))
            expected.push_back(serial);
    }
    same(node, name, actualSerials, expected);
}

void Comparison::compareNode(Serial serial, const ModelNode& expected) const
{
    const NodeData& actual = *created.nodes[serial];
    const Subject node{"node", expected.id, serial};
    same(node, "id", actual.id, expected.id);
    same(node, "position", numbers(actual.center()), numbers(expected.center()));
    same(node, "select", actual.select, expected.select);
    same(node, "show", actual.show, expected.show);
    same(node, "lock", actual.lock, expected.lock);
    same(node, "focus", actual.focus, expected.focus);
    same(node, "combined", actual.combined, expected.combined);
    same(node, "width", actual.width, expected.width);
    same(node, "height", actual.height, expected.width);
    same(node, "circleShow", actual.circleShow, expected.circleShow);
    same(node, "circleSize", actual.circleSize, expected.circleSize);
    same(node, "circleDiameter", actual.circleDiameter, expected.circleDiameter());
    same(node, "circleColor", actual.circleColor, expected.circleColor);

    const int wholeCorner = 3 * expected.width / 8;
    const auto corner = static_cast<float>(wholeCorner);
    same(node, "badgeSize", actual.badgeSize, expected.width / 4);
    same(node, "lockBadgePos", numbers(actual.lockBadgePos), {-corner, corner});
    same(node, "cornerBadgePos", numbers(actual.cornerBadgePos), {corner, corner});

    compareList(node, "outEdges", actual.outEdges, [&](const ModelEdge& edge) { return edge.start == serial; });
    compareList(node, "inEdges", actual.inEdges,
                [&](const ModelEdge& edge) { return edge.end == serial && !edge.ring; });
}

void Comparison::compareEdge(Serial serial, const ModelEdge& expected) const
{
    const EdgeData& actual = *created.edges[serial];
    const Subject edge{"edge", expected.id, serial};
    same(edge, "id", actual.id, expected.id);
    same(edge, "ring", actual.ring, expected.ring);
    same(edge, "startNode", serialOf(actual.startNode), expected.start);
    same(edge, "endNode", serialOf(actual.endNode), expected.end);
    same(edge, "having a base edge", actual.baseEdge != nullptr, expected.base.has_value());
    if (expected.base)
        same(edge, "baseEdge", serialOf(actual.baseEdge), *expected.base);
    same(edge, "index", actual.index, expected.index);
    same(edge, "maxIndex", actual.maxIndex, expected.maxIndex);
    same(edge, "select", actual.select, expected.select);
    same(edge, "show", actual.show, expected.show);
    same(edge, "rightAngle", actual.rightAngle, expected.rightAngle);
    same(edge, "startArrowShow", actual.startArrowShow, expected.startArrowShow);
    same(edge, "endArrowShow", actual.endArrowShow, expected.endArrowShow);
    same(edge, "edgeWidth", actual.edgeWidth, expected.width);
    same(edge, "edgeColor", actual.edgeColor, expected.color);
    same(edge, "zoomSpan", actual.zoomSpan, expected.zoomSpan);
}

void Comparison::compareShape(Serial serial, const ModelEdge& expected) const
{
    const EdgeData& actual = *created.edges[serial];
    const Subject edge{"edge", expected.id, serial};
    const QVector2D start = expected.ring ? expected.curveStartPos : model.nodes.at(expected.start).center();
    const QVector2D end = expected.ring ? expected.curveEndPos : model.nodes.at(expected.end).center();
    same(edge, "startPos", numbers(actual.startPos), numbers(start));
    same(edge, "endPos", numbers(actual.endPos), numbers(end));
    same(edge, "curveStartPos", numbers(actual.curveStartPos), numbers(expected.curveStartPos));
    same(edge, "curveEndPos", numbers(actual.curveEndPos), numbers(expected.curveEndPos));
    same(edge, "centerPos", numbers(actual.centerPos), numbers(expected.centerPos));
    same(edge, "ringDiameter", actual.ringDiameter, expected.ringDiameter);
    same(edge, "ringScale", actual.ringScale, expected.ringScale());
    if (expected.ring)
        return;
    if (expected.rightAngle || expected.index != 0) {
        const Mat4 middle = lineModel(expected.curveStartPos, expected.curveEndPos, expected.width, true);
        same(edge, "segmentMatrix1 being up to date", actual.segmentMatrix1 == middle, true);
    } else {
        const Mat4 line = lineModel(start, end, expected.width, false);
        same(edge, "lineMatrix being up to date", actual.lineMatrix == line, true);
    }
}

void Comparison::compareHandles() const
{
    for (Serial serial = 0; serial < model.nodesCreated; ++serial) {
        const GraphNode& handle = created.nodeHandles[serial];
        const Subject node{"handle of node", handle.getId(), serial};
        same(node, "valid()", handle.valid(), model.holdsNode(serial));
        same(node, "being what getNode() gives", graphScene.getNode(handle.getId()) == handle, model.holdsNode(serial));
    }
    for (Serial serial = 0; serial < model.edgesCreated; ++serial) {
        const GraphEdge& handle = created.edgeHandles[serial];
        const Subject edge{"handle of edge", handle.getId(), serial};
        same(edge, "valid()", handle.valid(), model.holdsEdge(serial));
        same(edge, "being what getEdge() gives", graphScene.getEdge(handle.getId()) == handle, model.holdsEdge(serial));
    }
}

void Comparison::compareNodeAnswers(Serial serial, const ModelNode& expected) const
{
    const GraphNode& actual = created.nodeHandles[serial];
    const Subject node{"node", expected.id, serial};
    same(node, "getId()", actual.getId(), expected.id);
    same(node, "select()", actual.select(), expected.select);
    same(node, "pos()", numbers(actual.pos()), {static_cast<int>(expected.x), static_cast<int>(expected.y)});
    same(node, "posGraph()", numbers(actual.posGraph()), numbers(graphPoint(expected.center())));

    const int half = expected.bodyDiameter() / 2;
    const QSize label = !expected.hasLabel ? QSize(0, 0) : model.nodeTextShow ? textSize : setNumbersSize;
    const int left = static_cast<int>(expected.x - static_cast<float>(half));
    const int top = static_cast<int>(expected.y + static_cast<float>(half));
    const int topGraph = static_cast<int>(-expected.y - static_cast<float>(half));
    const int width = std::max(2 * half, label.width());
    const int height = 2 * half + label.height();
    same(node, "rect()", numbers(actual.rect()), {left, top, width, height});
    same(node, "rectGraph()", numbers(actual.rectGraph()), {left, topGraph, width, height});
}

void Comparison::compareEdgeAnswers(Serial serial, const ModelEdge& expected) const
{
    const GraphEdge& actual = created.edgeHandles[serial];
    const Subject edge{"edge", expected.id, serial};
    const EdgeData& record = *created.edges[serial];
    same(edge, "getId()", actual.getId(), expected.id);
    same(edge, "ring()", actual.ring(), expected.ring);
    same(edge, "select()", actual.select(), expected.select);
    same(edge, "startPos()", numbers(actual.startPos()), numbers(graphPoint(record.startPos)));
    same(edge, "endPos()", numbers(actual.endPos()), numbers(graphPoint(record.endPos)));
    same(edge, "curveStartPos()", numbers(actual.curveStartPos()), numbers(graphPoint(expected.curveStartPos)));
    same(edge, "curveEndPos()", numbers(actual.curveEndPos()), numbers(graphPoint(expected.curveEndPos)));
}

void Comparison::compareSceneAnswers() const
{
    same("scene", "width()", graphScene.width(), model.width);
    same("scene", "height()", graphScene.height(), model.height);
    same("scene", "aspect", scene.aspect, static_cast<float>(model.height) / static_cast<float>(model.width));
    same("scene", "nodeTextShow", scene.nodeTextShow, model.nodeTextShow);
    same("scene", "edgeTextShow", scene.edgeTextShow, model.edgeTextShow);
    for (const bool visibleOnly : {false, true}) {
        same("scene", visibleOnly ? "boundingRect(true)" : "boundingRect(false)",
             numbers(graphScene.boundingRect(visibleOnly)), model.boundingRect(visibleOnly));
    }

    std::vector<qint64> actualAtOrigin;
    const QList<GraphNode> nodesAtOrigin = graphScene.testNodeAtPoint(QPoint(0, 0));
    for (const GraphNode& node : nodesAtOrigin)
        actualAtOrigin.push_back(node.getId());
    std::sort(actualAtOrigin.begin(), actualAtOrigin.end());
    std::vector<qint64> expectedAtOrigin;
    for (const auto& [id, serial] : model.nodesById) {
        const ModelNode& node = model.nodes.at(serial);
        const int radius = node.circleDiameter() / 2;
        if (std::hypot(double(node.x), double(node.y)) < radius)
            expectedAtOrigin.push_back(id);
    }
    same("scene", "testNodeAtPoint(origin)", actualAtOrigin, expectedAtOrigin);
}

/// The random numbers that a step is made of. Each choice takes the next.
class Choices
{
public:
    using Numbers = std::array<int, 10>;

    explicit Choices(const Numbers& numbersToUse) : m_numbers(numbersToUse) {}

    int below(int bound) { return m_numbers.at(m_next++) % bound; }
    bool flag() { return below(2) == 1; }
    /// Few enough that nodes come to lie on, above and beside each other.
    int coordinate() { return 300 * (below(9) - 4); }
    float eighths(int least, int greatest) { return 0.125f * static_cast<float>(least + below(greatest - least + 1)); }
    /// Few enough that ids are given again.
    qint64 id()
    {
        const std::array<qint64, 11> ids{0, 1, 2, 3, 4, 5, 6, -7, 12345678899, 12345678900, 12345678901};
        return ids[static_cast<std::size_t>(below(static_cast<int>(ids.size())))];
    }
    QColor color()
    {
        const int red = below(256);
        const int green = below(256);
        return {red, green, below(256)};
    }
    SelectMode mode() { return static_cast<SelectMode>(below(3)); }
    std::optional<Serial> oneOf(const SerialsById& serials)
    {
        if (serials.empty())
            return {};
        return std::next(serials.begin(), below(static_cast<int>(serials.size())))->second;
    }
    /// Mostly one that the scene holds; now and then any that ever was, or one that never was.
    Serial oneOfAll(const SerialsById& held, Serial everCreated)
    {
        const int kind = below(10);
        if (kind < 8 && !held.empty())
            return *oneOf(held);
        return static_cast<Serial>(below(static_cast<int>(everCreated) + 1));
    }

private:
    Numbers m_numbers;
    std::size_t m_next = 0;
};

/// The running number of the process, which no scene starts anew.
qint64 nextRunningId = 1;

struct Operation;

struct Step
{
    const Operation* operation;
    Choices::Numbers numbers;
};

/// A scene and its model, which take every step together. A step whose element is missing does nothing.
class Trial
{
public:
    void take(const Step& step);

    void createNode(Choices& choices);
    void createEdge(Choices& choices);
    void createParallelEdge(Choices& choices);
    void removeNode(Choices& choices);
    void removeEdge(Choices& choices);
    void clear(Choices& choices);

    void setPos(Choices& choices);
    void setNodeSize(Choices& choices);
    void setCircleSize(Choices& choices);
    void setCircleColor(Choices& choices);
    void giveNodeLabel(Choices& choices);
    template <auto setter, auto flag>
    void setNodeFlag(Choices& choices);

    void setRightAngle(Choices& choices);
    void setEdgeWidth(Choices& choices);
    void setZoomSpan(Choices& choices);
    void setEdgeColor(Choices& choices);
    void giveEdgeLabel(Choices& choices);
    template <auto setter, auto flag>
    void setEdgeFlag(Choices& choices);

    void setSceneSize(Choices& choices);
    template <auto setter, auto flag>
    void setTextShow(Choices& choices);
    void elementsAlignToCenter(Choices& choices);
    void selectAtPoint(Choices& choices);
    void selectInFrame(Choices& choices);
    void moveSelected(Choices& choices);

private:
    template <typename... Arguments>
    void tell(const Arguments&... arguments) const;
    static std::string number(Serial serial) { return '#' + std::to_string(serial); }
    /// The handle with that serial; a null handle where nothing was created under it.
    template <typename Handle>
    static Handle handleIn(const std::vector<Handle>& handles, Serial serial)
    {
        return serial < handles.size() ? handles[serial] : Handle();
    }
    void keep(const GraphEdge& edge, Serial serial);
    QVector2D anyPoint(Choices& choices) const;
    template <typename NodeHit, typename EdgeHit, typename StateAfter>
    bool selectInModel(NodeHit nodeHit, EdgeHit edgeHit, StateAfter stateAfter);

    const char* operationName = nullptr;
    GraphScene graphScene;
    Scene& scene = sceneOf(graphScene);
    SignalLog innerLog{scene};
    SignalLog log{graphScene};
    QStringList expectedOfScene;
    QStringList expectedOfGraphScene;
    Model model;
    Created created;
};

struct Operation
{
    int weight;
    const char* name;
    void (Trial::*perform)(Choices&);
};

const std::vector<Operation> operations{
    {30, "createNode", &Trial::createNode},
    {30, "createEdge", &Trial::createEdge},
    {30, "createEdge beside", &Trial::createParallelEdge},
    {3, "removeNode", &Trial::removeNode},
    {8, "removeEdge", &Trial::removeEdge},
    {1, "clear", &Trial::clear},
    {20, "node: setPos", &Trial::setPos},
    {4, "node: setSize", &Trial::setNodeSize},
    {4, "node: setCircleSize", &Trial::setCircleSize},
    {1, "node: setCircleColor", &Trial::setCircleColor},
    {1, "node: set label", &Trial::giveNodeLabel},
    {6, "node: setSelect", &Trial::setNodeFlag<&GraphNode::setSelect, &ModelNode::select>},
    {2, "node: setShow", &Trial::setNodeFlag<&GraphNode::setShow, &ModelNode::show>},
    {2, "node: setLock", &Trial::setNodeFlag<&GraphNode::setLock, &ModelNode::lock>},
    {1, "node: setFocus", &Trial::setNodeFlag<&GraphNode::setFocus, &ModelNode::focus>},
    {1, "node: setCombined", &Trial::setNodeFlag<&GraphNode::setCombined, &ModelNode::combined>},
    {2, "node: setCircleShow", &Trial::setNodeFlag<&GraphNode::setCircleShow, &ModelNode::circleShow>},
    {6, "edge: setRightAngle", &Trial::setRightAngle},
    {6, "edge: setEdgeWidth", &Trial::setEdgeWidth},
    {6, "edge: setZoomSpan", &Trial::setZoomSpan},
    {1, "edge: setEdgeColor", &Trial::setEdgeColor},
    {1, "edge: set label", &Trial::giveEdgeLabel},
    {3, "edge: setSelect", &Trial::setEdgeFlag<&GraphEdge::setSelect, &ModelEdge::select>},
    {2, "edge: setShow", &Trial::setEdgeFlag<&GraphEdge::setShow, &ModelEdge::show>},
    {2, "edge: setStartArrowShow", &Trial::setEdgeFlag<&GraphEdge::setStartArrowShow, &ModelEdge::startArrowShow>},
    {2, "edge: setEndArrowShow", &Trial::setEdgeFlag<&GraphEdge::setEndArrowShow, &ModelEdge::endArrowShow>},
    {1, "setSize", &Trial::setSceneSize},
    {1, "setNodeTextShow", &Trial::setTextShow<&GraphScene::setNodeTextShow, &Model::nodeTextShow>},
    {1, "setEdgeTextShow", &Trial::setTextShow<&GraphScene::setEdgeTextShow, &Model::edgeTextShow>},
    {3, "elementsAlignToCenter", &Trial::elementsAlignToCenter},
    {12, "selectAtPoint", &Trial::selectAtPoint},
    {8, "selectInFrame", &Trial::selectInFrame},
    {8, "moveSelected", &Trial::moveSelected},
};

void Trial::take(const Step& step)
{
    operationName = step.operation->name;
    Choices choices(step.numbers);
    (this->*step.operation->perform)(choices);

    Comparison(graphScene, model, created).run();
    const auto separator = QStringLiteral("; ");
    same("Scene", "what it emitted", innerLog.take().join(separator).toStdString(),
         expectedOfScene.join(separator).toStdString());
    same("GraphScene", "what it emitted", log.take().join(separator).toStdString(),
         expectedOfGraphScene.join(separator).toStdString());
    expectedOfScene.clear();
    expectedOfGraphScene.clear();
}

/// Writes down what is called, to be read when the property fails.
template <typename... Arguments>
void Trial::tell(const Arguments&... arguments) const
{
    std::ostream& stream = RC_LOG();
    stream << std::boolalpha << operationName;
    ((stream << ' ' << arguments), ...);
    stream << '\n';
}

void Trial::createNode(Choices& choices)
{
    const bool running = choices.flag();
    const qint64 id = running ? nextRunningId++ : choices.id();
    tell("id", id);
    const GraphNode handle = running ? graphScene.createNode() : graphScene.createNode(id);
    created.nodeHandles.push_back(handle);
    created.nodes.push_back(scene.getNode(id));
    model.addNode(id);
}

void Trial::createEdge(Choices& choices)
{
    const Serial start = choices.oneOfAll(model.nodesById, model.nodesCreated);
    const Serial end = choices.oneOfAll(model.nodesById, model.nodesCreated);
    const bool running = choices.flag();
    const qint64 id = running ? nextRunningId++ : choices.id();
    tell("id", id, "from", number(start), "to", number(end));

    const GraphNode startHandle = handleIn(created.nodeHandles, start);
    const GraphNode endHandle = handleIn(created.nodeHandles, end);
    const GraphEdge edge =
        running ? graphScene.createEdge(startHandle, endHandle) : graphScene.createEdge(id, startHandle, endHandle);
    if (!model.holdsNode(start) || !model.holdsNode(end))
        same("a refused edge", "valid()", edge.valid(), false);
    else if (start == end)
        keep(edge, model.addRing(id, start, 0));
    else
        keep(edge, model.addBaseEdge(id, start, end));
}

void Trial::createParallelEdge(Choices& choices)
{
    const Serial base = choices.oneOfAll(model.edgesById, model.edgesCreated);
    const int index = choices.below(8) - 2;
    const bool running = choices.flag();
    const qint64 id = running ? nextRunningId++ : choices.id();
    tell("id", id, "beside", number(base), "index", index);

    const GraphEdge baseHandle = handleIn(created.edgeHandles, base);
    const GraphEdge edge =
        running ? graphScene.createEdge(baseHandle, index) : graphScene.createEdge(id, baseHandle, index);
    if (!model.holdsEdge(base) || model.edges[base].base)
        same("a refused edge", "valid()", edge.valid(), false);
    else if (model.edges[base].ring)
        keep(edge, model.addRing(id, model.edges[base].start, index));
    else
        keep(edge, model.addDerivedEdge(id, base, index));
}

void Trial::keep(const GraphEdge& edge, Serial serial)
{
    created.edgeHandles.push_back(edge);
    created.edges.push_back(scene.getEdge(model.edges[serial].id));
}

void Trial::removeNode(Choices& choices)
{
    if (const std::optional<Serial> node = choices.oneOf(model.nodesById)) {
        const qint64 id = model.nodes[*node].id;
        tell(number(*node));
        graphScene.removeNode(id);
        model.removeNode(id);
    }
}

void Trial::removeEdge(Choices& choices)
{
    if (const std::optional<Serial> edge = choices.oneOf(model.edgesById)) {
        const qint64 id = model.edges[*edge].id;
        tell(number(*edge));
        graphScene.removeEdge(id);
        model.removeEdge(id);
    }
}

void Trial::clear(Choices&)
{
    tell();
    graphScene.clear();
    model.clear();
}

void Trial::setPos(Choices& choices)
{
    const std::optional<Serial> node = choices.oneOf(model.nodesById);
    if (!node)
        return;
    const int x = choices.coordinate();
    const int y = choices.coordinate();
    const int form = choices.below(4);
    tell(number(*node), "to", x, y);

    GraphNode& handle = created.nodeHandles[*node];
    if (form == 0)
        handle.setPos(x, y);
    else if (form == 1)
        handle.setPos(QPoint(x, y));
    else if (form == 2)
        handle.setPosGraph(x, -y);
    else
        handle.setPosGraph(QPoint(x, -y));
    model.moveNode(*node, {static_cast<float>(x), static_cast<float>(y)});
}

void Trial::setNodeSize(Choices& choices)
{
    if (const std::optional<Serial> node = choices.oneOf(model.nodesById)) {
        const float size = 0.07f * static_cast<float>(choices.below(40)); // to odd widths, too
        tell(number(*node), size);
        created.nodeHandles[*node].setSize(size);
        model.resizeNode(*node, size);
    }
}

void Trial::setCircleSize(Choices& choices)
{
    if (const std::optional<Serial> node = choices.oneOf(model.nodesById)) {
        const float size = choices.eighths(4, 20);
        tell(number(*node), size);
        created.nodeHandles[*node].setCircleSize(size);
        model.nodes[*node].circleSize = std::max(size, 1.0f);
    }
}

void Trial::setCircleColor(Choices& choices)
{
    if (const std::optional<Serial> node = choices.oneOf(model.nodesById)) {
        const QColor color = choices.color();
        tell(number(*node), qPrintable(color.name()));
        created.nodeHandles[*node].setCircleColor(color);
        model.nodes[*node].circleColor = fractionsOf(color);
    }
}

/// By hand: the members that carry text draw on the text atlas.
void Trial::giveNodeLabel(Choices& choices)
{
    if (const std::optional<Serial> node = choices.oneOf(model.nodesById)) {
        tell(number(*node));
        NodeData* record = created.nodes[*node];
        record->labelWidth = textSize.width();
        record->labelHeight = textSize.height();
        record->setNumWidth = setNumbersSize.width();
        record->setNumHeight = setNumbersSize.height();
        scene.labelNodes.insert(record->id, record);
        scene.setNumNodes.insert(record->id, record);
        model.nodes[*node].hasLabel = true;
    }
}

template <auto setter, auto flag>
void Trial::setNodeFlag(Choices& choices)
{
    if (const std::optional<Serial> node = choices.oneOf(model.nodesById)) {
        const bool value = choices.flag();
        tell(number(*node), value);
        (created.nodeHandles[*node].*setter)(value);
        model.nodes[*node].*flag = value;
    }
}

void Trial::setRightAngle(Choices& choices)
{
    if (const std::optional<Serial> serial = choices.oneOf(model.edgesById)) {
        const bool value = choices.flag();
        tell(number(*serial), value);
        created.edgeHandles[*serial].setRightAngle(value);
        ModelEdge& edge = model.edges[*serial];
        if (edge.rightAngle == value)
            return;
        edge.rightAngle = value;
        model.rebuildShape(edge);
    }
}

void Trial::setEdgeWidth(Choices& choices)
{
    if (const std::optional<Serial> serial = choices.oneOf(model.edgesById)) {
        const int width = choices.below(24);
        tell(number(*serial), width);
        created.edgeHandles[*serial].setEdgeWidth(width);
        ModelEdge& edge = model.edges[*serial];
        if (edge.width == std::max(width, 8))
            return;
        edge.width = std::max(width, 8);
        model.rebuildShape(edge);
    }
}

void Trial::setZoomSpan(Choices& choices)
{
    if (const std::optional<Serial> edge = choices.oneOf(model.edgesById)) {
        const float span = choices.eighths(-8, 24);
        tell(number(*edge), span);
        created.edgeHandles[*edge].setZoomSpan(span);
        model.edges[*edge].zoomSpan = span;
        model.rebuildShape(model.edges[*edge]);
    }
}

void Trial::setEdgeColor(Choices& choices)
{
    if (const std::optional<Serial> edge = choices.oneOf(model.edgesById)) {
        const QColor color = choices.color();
        tell(number(*edge), qPrintable(color.name()));
        created.edgeHandles[*edge].setEdgeColor(color);
        model.edges[*edge].color = fractionsOf(color);
    }
}

/// By hand: the members that carry text draw on the text atlas.
void Trial::giveEdgeLabel(Choices& choices)
{
    if (const std::optional<Serial> edge = choices.oneOf(model.edgesById)) {
        tell(number(*edge));
        scene.labelEdges.insert(model.edges[*edge].id, created.edges[*edge]);
        model.edges[*edge].hasLabel = true;
    }
}

template <auto setter, auto flag>
void Trial::setEdgeFlag(Choices& choices)
{
    if (const std::optional<Serial> edge = choices.oneOf(model.edgesById)) {
        const bool value = choices.flag();
        tell(number(*edge), value);
        (created.edgeHandles[*edge].*setter)(value);
        model.edges[*edge].*flag = value;
    }
}

void Trial::setSceneSize(Choices& choices)
{
    const int width = 1000 * choices.below(16);
    const int height = 1000 * choices.below(10);
    tell(width, height);
    graphScene.setSize(width, height);
    model.width = std::max(width, 8000);
    model.height = std::max(height, 4800);
    expectedOfGraphScene = QStringList{SignalLog::sizeChanged()};
}

template <auto setter, auto flag>
void Trial::setTextShow(Choices& choices)
{
    const bool show = choices.flag();
    tell(show);
    (graphScene.*setter)(show);
    model.*flag = show;
}

void Trial::elementsAlignToCenter(Choices&)
{
    tell();
    graphScene.elementsAlignToCenter();
    model.alignToCenter();
}

/// Around some node, some edge or the origin.
QVector2D Trial::anyPoint(Choices& choices) const
{
    QVector2D point;
    const int kind = choices.below(5);
    if (kind < 2) {
        if (const std::optional<Serial> node = choices.oneOf(model.nodesById))
            point = model.nodes.at(*node).center();
    } else if (kind < 4) {
        if (const std::optional<Serial> edge = choices.oneOf(model.edgesById))
            point = model.edges.at(*edge).centerPos;
    }
    const float right = choices.eighths(-20, 20);
    return point + 64.0f * QVector2D(right, choices.eighths(-20, 20));
}

void Trial::selectAtPoint(Choices& choices)
{
    const QVector2D point = anyPoint(choices);
    const SelectMode mode = choices.mode();
    const int tolerance = choices.below(50);
    tell(point.x(), point.y(), "mode", mode, "tolerance", tolerance);

    // What lies at a point is a matter of other tests; here it is asked for to see what becomes of it.
    std::optional<Serial> nodeHit;
    for (NodeData* node : scene.nodes.values()) { // the last one is on top
        const Serial serial = model.nodesById.at(node->id);
        if (Model::isPickable(model.nodes[serial]) && nodeAtPoint(point, *node, model.nodeTextShow))
            nodeHit = serial;
    }
    std::optional<Serial> edgeHit;
    for (EdgeData* edge : qAsConst(scene.edges)) {
        if (!nodeHit && !edgeHit && edge->show && edgeNearPoint(point, *edge, tolerance))
            edgeHit = model.edgesById.at(edge->id);
    }
    const bool anyChange =
        selectInModel([&](Serial node) { return node == nodeHit; }, [&](Serial edge) { return edge == edgeHit; },
                      [&](bool selected, bool hit) {
                          if (mode == SELECT_REPLACE)
                              return hit;
                          return hit ? mode == SELECT_ADD && !selected : selected;
                      });

    bool changed = false;
    same("selectAtPoint", "result", scene.selectAtPoint(point, mode, &changed, tolerance), nodeHit.has_value());
    same("selectAtPoint", "changed", changed, anyChange);
}

void Trial::selectInFrame(Choices& choices)
{
    const QVector2D leftTop = anyPoint(choices);
    const float width = 64.0f * choices.eighths(0, 80);
    const QVector2D rightBottom = leftTop + QVector2D(width, -64.0f * choices.eighths(0, 80));
    const SelectMode mode = choices.mode();
    tell(leftTop.x(), leftTop.y(), "to", rightBottom.x(), rightBottom.y(), "mode", mode);

    selectInModel(
        [&](Serial node) { return nodeInFrame(leftTop, rightBottom, *created.nodes[node], model.nodeTextShow); },
        [&](Serial edge) { return edgeInFrame(leftTop, rightBottom, *created.edges[edge]); },
        [&](bool selected, bool hit) {
            if (mode == SELECT_REPLACE)
                return hit;
            return hit ? mode == SELECT_ADD : selected;
        });
    scene.selectInFrame(leftTop, rightBottom, mode);
}

/// Gives all that can be picked its new state, and expects the signals for that. Answers whether anything changed.
template <typename NodeHit, typename EdgeHit, typename StateAfter>
bool Trial::selectInModel(NodeHit nodeHit, EdgeHit edgeHit, StateAfter stateAfter)
{
    bool anyChange = false;
    Ids selectedNodes;
    Ids selectedEdges;
    const auto update = [&](auto& element, bool pickable, bool hit, Ids& selected) {
        const bool after = pickable ? stateAfter(element.select, hit) : element.select;
        anyChange = anyChange || after != element.select;
        element.select = after;
        if (after)
            selected.append(element.id);
    };
    for (const auto& [id, serial] : model.nodesById) {
        ModelNode& node = model.nodes[serial];
        update(node, Model::isPickable(node), nodeHit(serial), selectedNodes);
    }
    for (const auto& [id, serial] : model.edgesById) {
        ModelEdge& edge = model.edges[serial];
        update(edge, edge.show, edgeHit(serial), selectedEdges);
    }
    if (anyChange) {
        expectedOfScene = SignalLog::selectionChangedTo(selectedNodes, selectedEdges);
        expectedOfGraphScene = expectedOfScene;
    }
    return anyChange;
}

void Trial::moveSelected(Choices& choices)
{
    const float right = 8.0f * choices.eighths(-80, 80);
    const QVector2D delta(right, 8.0f * choices.eighths(-80, 80));
    tell("by", delta.x(), delta.y());
    scene.moveSelected(delta);
    for (const auto& [id, serial] : model.nodesById) {
        const ModelNode& node = model.nodes[serial];
        if (node.show && node.select && !node.lock)
            model.moveNode(serial, node.center() + delta);
    }
    expectedOfScene = QStringList{SignalLog::elementsMoved(), SignalLog::changed()};
    expectedOfGraphScene = QStringList{SignalLog::changed()};
}

void showValue(const Step& step, std::ostream& stream)
{
    stream << step.operation->name;
}

rc::Gen<Step> anyStep()
{
    std::vector<const Operation*> byWeight;
    for (const Operation& operation : operations)
        byWeight.insert(byWeight.end(), static_cast<std::size_t>(operation.weight), &operation);
    return rc::gen::apply(
        [](const Operation* operation, const Choices::Numbers& numbers) {
            return Step{operation, numbers};
        },
        rc::gen::elementOf(byWeight), rc::gen::container<Choices::Numbers>(rc::gen::inRange(0, 10000)));
}

rc::Gen<std::vector<Step>> anySteps()
{
    constexpr int mostSteps = 100;
    // Only the number of steps follows the size.
    return rc::gen::resize(mostSteps,
                           rc::gen::container<std::vector<Step>>(rc::gen::resize(rc::kNominalSize, anyStep())));
}

} // namespace

void ScenePropertiesTest::initTestCase()
{
    // The same sequences in each run, unless the environment asks for others.
    if (!qEnvironmentVariableIsSet("RC_PARAMS"))
        qputenv("RC_PARAMS", "seed=1 max_success=1000");
}

void ScenePropertiesTest::behavesLikeItsModel()
{
    QVERIFY(rc::check("a scene behaves like its model", [] {
        const std::vector<Step> steps = *anySteps();
        RC_LOG() << "The calls, with nodes and edges numbered by their creation:\n";
        Trial trial;
        for (const Step& step : steps)
            trial.take(step);
    }));
}

QTEST_APPLESS_MAIN(ScenePropertiesTest)

#include "ScenePropertiesTest.moc"
