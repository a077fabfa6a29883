#include "atlas/ImageManager.h"
#include "startup/AtlasStart.h"
#include "support/DrawCalls.h"
#include "support/EveryKind.h"
#include "support/LookAt.h"
#include "support/OpenView.h"

#include <NELK/GraphScene.h>

#include <QByteArray>
#include <QStringList>
#include <QtTest>

#include <array>
#include <cmath>

using namespace NELK;

namespace
{

constexpr int recordSize = 112;

/// One draw call of a repaint.
struct Pass
{
    const char* list;
    InstanceList Scene::*items;
    GLenum primitive;
    GLsizei vertexCount;
    GLint modelType;
};

const std::array<Pass, 14> passes{{
    {"edge lines", &Scene::edgeLineItems, GL_TRIANGLES, 6, 1},
    {"edge pieces", &Scene::edgeCurveItems, GL_TRIANGLES, 6, 1},
    {"arrows", &Scene::arrowItems, GL_TRIANGLES, 3, 1},
    {"edge rings", &Scene::edgeRingItems, GL_TRIANGLES, 480, 1},
    {"edge text", &Scene::edgeTextItems, GL_TRIANGLES, 6, 4},
    {"circles", &Scene::circleItems, GL_TRIANGLES, 120, 2},
    {"rings", &Scene::ringItems, GL_TRIANGLES, 480, 1},
    {"images", &Scene::imageItems, GL_TRIANGLES, 6, 0},
    {"text", &Scene::textItems, GL_TRIANGLES, 6, 4},
    {"selected circles", &Scene::selCircleItems, GL_TRIANGLES, 120, 2},
    {"selected rings", &Scene::selRingItems, GL_TRIANGLES, 480, 1},
    {"selected images", &Scene::selImageItems, GL_TRIANGLES, 6, 0},
    {"selected text", &Scene::selTextItems, GL_TRIANGLES, 6, 4},
    {"frames", &Scene::frameItems, GL_LINES, 8, 3},
}};

constexpr GLint textType = 4;

const std::array<InstanceList Scene::*, 15> allLists{
    &Scene::circleItems, &Scene::ringItems,      &Scene::imageItems,    &Scene::eyeItems,
    &Scene::textItems,   &Scene::selCircleItems, &Scene::selRingItems,  &Scene::selImageItems,
    &Scene::frameItems,  &Scene::selTextItems,   &Scene::edgeLineItems, &Scene::edgeCurveItems,
    &Scene::arrowItems,  &Scene::edgeRingItems,  &Scene::edgeTextItems};

QByteArray bytesOf(const InstanceList& list)
{
    return {reinterpret_cast<const char*>(list.records.data()), list.count * recordSize};
}

/// Content and address of all lists.
QList<QPair<const void*, QByteArray>> snapshot(const Scene& scene)
{
    QList<QPair<const void*, QByteArray>> lists;
    for (const auto items : allLists)
        lists.append({(scene.*items).records.data(), bytesOf(scene.*items)});
    return lists;
}

QString textOf(const Pass& pass, int instances)
{
    return QStringLiteral("%1 instances of %2 vertices, primitive %3, model type %4")
        .arg(instances)
        .arg(pass.vertexCount)
        .arg(pass.primitive)
        .arg(pass.modelType);
}

/// A view that looks into OpenGL while it is painted.
class InspectedView : public OpenView
{
public:
    explicit InspectedView(GraphScene& graph) : OpenView(graph, {800, 600}), shown(sceneOf(graph)) { picture(); }

    struct State
    {
        QString draw;
        QByteArray instances;
        GLuint texture = 0;
        QSize atlas;
        std::array<float, 16> matrix{};
        std::array<float, 3> simpleColor{};
        float lineWidth = 0.0f;
    };

    /// The draw calls of one repaint.
    QList<State> repaint()
    {
        QList<State> states;
        uploads.clear();
        makeCurrent();
        {
            const DrawCalls calls([&](const DrawCall& call) { states.append(stateAt(call)); },
                                  [this](const Upload& upload) { uploads.append(upload); });
            paintGL();
        }
        doneCurrent();
        return states;
    }

    static QStringList drawsOf(const QList<State>& states)
    {
        QStringList draws;
        for (const State& state : states)
            draws.append(state.draw);
        return draws;
    }

    /// The calls that the lists ask for.
    QStringList expectedDraws(bool withText = true) const
    {
        QStringList draws;
        for (const Pass& pass : passes) {
            if (withText || pass.modelType != textType)
                draws.append(textOf(pass, (shown.*pass.items).count));
        }
        return draws;
    }

    const Scene& shown;
    QList<Upload> uploads;

private:
    State stateAt(const DrawCall& call)
    {
        State state;
        const Pass asPass{"", nullptr, call.primitive, call.vertexCount, integer("modelType")};
        state.draw = textOf(asPass, call.instanceCount);
        if (call.first != 0)
            state.draw += QStringLiteral(" from %1").arg(call.first);
        state.instances = instancesInBuffer();
        GLint texture = 0;
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
        state.texture = static_cast<GLuint>(texture);
        state.atlas = {static_cast<int>(number("texColNum")), static_cast<int>(number("texRowNum"))};
        glGetUniformfv(shader.id, glGetUniformLocation(shader.id, "view"), state.matrix.data());
        glGetUniformfv(shader.id, glGetUniformLocation(shader.id, "simpleColor"), state.simpleColor.data());
        glGetFloatv(GL_LINE_WIDTH, &state.lineWidth);
        return state;
    }

    GLint integer(const char* uniform)
    {
        GLint value = -1;
        glGetUniformiv(shader.id, glGetUniformLocation(shader.id, uniform), &value);
        return value;
    }

    float number(const char* uniform)
    {
        float value = -1.0f;
        glGetUniformfv(shader.id, glGetUniformLocation(shader.id, uniform), &value);
        return value;
    }

    /// What is in the buffer that the first column of the model matrix comes from.
    QByteArray instancesInBuffer()
    {
        GLint buffer = 0;
        glGetVertexAttribiv(2, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &buffer);
        glBindBuffer(GL_COPY_READ_BUFFER, static_cast<GLuint>(buffer));
        GLint size = 0;
        glGetBufferParameteriv(GL_COPY_READ_BUFFER, GL_BUFFER_SIZE, &size);
        QByteArray bytes(size, '\0');
        glGetBufferSubData(GL_COPY_READ_BUFFER, 0, size, bytes.data());
        glBindBuffer(GL_COPY_READ_BUFFER, 0);
        return bytes;
    }
};

} // namespace

class ViewPassesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void drawsFourteenTimesInOrder();
    void drawsAsOftenForAnyNetwork();
    void drawsSelectedKindsWhenNothingIsSelected();
    void handsOverEachListRightBeforeItIsDrawn();
    void handsOverWhatIsCountedAndNothingElse();
    void drawsIconsAndTextFromTheirAtlases();
    void drawsEverythingThroughTheStoredCamera();
    void drawsFramesInTheColorOfTheSelection();
    void drawsTheSameEachTime();
    void leavesOutTextWhereItIsTooSmall_data();
    void leavesOutTextWhereItIsTooSmall();
    void asksForNothingMoreOfACameraChange();

private:
    QScopedPointer<GraphScene> graph;
    QScopedPointer<InspectedView> view;
};

void ViewPassesTest::initTestCase()
{
    startAtlases();
    QCoreApplication::processEvents();
    graph.reset(new GraphScene);
    graph->setSize(80000, 48000);
    view.reset(new InspectedView(*graph));
    QVERIFY(view->glReady);
}

void ViewPassesTest::init()
{
    addEveryKind(*graph);
    view->setViewSize(800, 600);
    lookAt(*view, {0.0, 0.0}, 1.0f);
    view->rebuildAll();
}

void ViewPassesTest::cleanup()
{
    graph->clear();
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ViewPassesTest::cleanupTestCase()
{
    view.reset();
    graph.reset();
}

void ViewPassesTest::drawsFourteenTimesInOrder()
{
    for (const Pass& pass : passes)
        QVERIFY2((view->shown.*pass.items).count > 0, pass.list);
    QCOMPARE(view->drawsOf(view->repaint()), view->expectedDraws());
}

void ViewPassesTest::drawsAsOftenForAnyNetwork()
{
    for (int i = 0; i < 300; ++i) {
        addEveryKind(*graph);
        addNode(*graph, {i, i}, QStringLiteral("more")).setSelect(i % 2 == 0);
    }
    view->rebuildAll();
    const QList<InspectedView::State> many = view->repaint();
    QCOMPARE(many.size(), 14);
    QCOMPARE(view->drawsOf(many), view->expectedDraws());

    graph->clear();
    view->rebuildAll();
    const QList<InspectedView::State> none = view->repaint();
    QCOMPARE(none.size(), 14);
    QCOMPARE(view->drawsOf(none), view->expectedDraws());
    QVERIFY(none.last().draw.startsWith(QLatin1String("0 instances of 8 vertices")));
}

void ViewPassesTest::drawsSelectedKindsWhenNothingIsSelected()
{
    const QList<NodeData*> nodes = view->shown.nodes.values();
    for (const NodeData* node : nodes)
        graph->getNode(node->id).setSelect(false);
    view->rebuildParallel();
    const QList<InspectedView::State> states = view->repaint();
    QCOMPARE(states.size(), 14);
    for (int i = 9; i < 14; ++i) {
        QVERIFY(states.at(i).draw.startsWith(QLatin1String("0 instances")));
        QVERIFY(states.at(i).instances.isEmpty());
    }
    QVERIFY(states.last().lineWidth == 2.0f);
}

void ViewPassesTest::handsOverEachListRightBeforeItIsDrawn()
{
    const QList<InspectedView::State> states = view->repaint();
    QCOMPARE(states.size(), 14);
    QCOMPARE(view->uploads.size(), 14);
    for (std::size_t i = 0; i < passes.size(); ++i) {
        const InstanceList& list = view->shown.*passes[i].items;
        QVERIFY2(states.at(static_cast<int>(i)).instances == bytesOf(list), passes[i].list);
    }
    for (const Upload& upload : view->uploads) {
        QCOMPARE(upload.target, GLenum{GL_ARRAY_BUFFER});
        QCOMPARE(upload.usage, GLenum{GL_STATIC_DRAW});
    }
}

void ViewPassesTest::handsOverWhatIsCountedAndNothingElse()
{
    // The lists themselves are read, even while they are longer than what was completed.
    Scene& scene = sceneOf(*graph);
    QVERIFY(scene.imageItems.count > 2);
    scene.imageItems.count = 2;
    const QList<InspectedView::State> states = view->repaint();
    QVERIFY(states.at(7).draw.startsWith(QLatin1String("2 instances")));
    QCOMPARE(states.at(7).instances.size(), 2 * recordSize);

    int found = 0;
    for (const Upload& upload : qAsConst(view->uploads)) {
        if (upload.data == scene.imageItems.records.data()) {
            QCOMPARE(upload.size, GLsizeiptr{2 * recordSize});
            ++found;
        }
        QVERIFY(upload.data != scene.eyeItems.records.data());
    }
    QCOMPARE(found, 1);
}

void ViewPassesTest::drawsIconsAndTextFromTheirAtlases()
{
    const QList<InspectedView::State> states = view->repaint();
    QVERIFY(view->entityTexture != view->textTexture);
    for (std::size_t i = 0; i < passes.size(); ++i) {
        const InspectedView::State& state = states.at(static_cast<int>(i));
        if (passes[i].modelType == textType) {
            QCOMPARE(state.texture, view->textTexture);
            QCOMPARE(state.atlas, QSize(60, 60));
        } else if (passes[i].modelType == 0) {
            QCOMPARE(state.texture, view->entityTexture);
            QCOMPARE(state.atlas, QSize(2, 2));
        }
    }
}

void ViewPassesTest::drawsEverythingThroughTheStoredCamera()
{
    lookAt(*view, {40.0, -20.0}, 0.5f);
    const std::array<float, 16> expected{0.5f, 0.0f, 0.0f, 0.0f, 0.0f,   0.5f,  0.0f, 0.0f,
                                         0.0f, 0.0f, 0.0f, 0.0f, -20.0f, 10.0f, 0.0f, 1.0f};
    const QList<InspectedView::State> states = view->repaint();
    for (const InspectedView::State& state : states)
        QVERIFY(state.matrix == expected);

    view->setCameraScale(0.25f); // not refreshed
    const QList<InspectedView::State> later = view->repaint();
    for (const InspectedView::State& state : later)
        QVERIFY(state.matrix == expected);
}

void ViewPassesTest::drawsFramesInTheColorOfTheSelection()
{
    const QList<InspectedView::State> states = view->repaint();
    QVERIFY((states.last().simpleColor == std::array<float, 3>{0.196f, 0.557f, 1.0f}));
    QVERIFY(states.last().lineWidth == 2.0f);

    sceneOf(*graph).selectColor = {0.25f, 0.5f, 0.75f};
    QVERIFY((view->repaint().last().simpleColor == std::array<float, 3>{0.25f, 0.5f, 0.75f}));
}

void ViewPassesTest::drawsTheSameEachTime()
{
    const QImage first = view->picture();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(view->picture(), first);
}

void ViewPassesTest::leavesOutTextWhereItIsTooSmall_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<float>("scale");
    QTest::addColumn<bool>("visible");

    constexpr float end = 1.0f / 32.0f;
    const float beforeEnd = std::nextafter(end, 1.0f);
    QTest::newRow("near") << 800 << 1.0f << true;
    QTest::newRow("before the end") << 800 << beforeEnd << true;
    QTest::newRow("end") << 800 << end << false;
    QTest::newRow("beyond the end") << 800 << 0.03f << false;
    QTest::newRow("other width, before the end") << 801 << beforeEnd << true;
    QTest::newRow("other width, end") << 801 << end << false;
    QTest::newRow("least width, before the end") << 10 << beforeEnd << true;
    QTest::newRow("least width, end") << 10 << end << false;
    QTest::newRow("least width, near") << 10 << 1.0f << true;
    QTest::newRow("less width") << 9 << 1.0f << false;
}

void ViewPassesTest::leavesOutTextWhereItIsTooSmall()
{
    QFETCH(int, width);
    QFETCH(float, scale);
    QFETCH(bool, visible);

    view->setViewSize(width, 600);
    view->setCameraScale(scale);
    QVERIFY(view->cameraScale() == scale);
    QCOMPARE(view->drawsOf(view->repaint()), view->expectedDraws(visible));
    QCOMPARE(view->uploads.size(), visible ? 14 : 11);
    QVERIFY(view->shown.textItems.count > 0);
}

void ViewPassesTest::asksForNothingMoreOfACameraChange()
{
    const auto before = snapshot(view->shown);
    view->panBy(100, 50);
    view->zoom(false);
    view->fitToView();
    view->selectedViewMax();
    view->setCameraX(0, false);
    QCOMPARE(view->repaint().size(), 14);
    QCOMPARE(view->uploads.size(), 14);
    QVERIFY(snapshot(view->shown) == before);
}

QTEST_MAIN(ViewPassesTest)

#include "ViewPassesTest.moc"
