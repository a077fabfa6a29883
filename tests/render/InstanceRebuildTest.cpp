#include "render/InstanceRebuild.h"

#include "support/EmissionCounter.h"
#include "support/MadeScene.h"
#include "support/RandomScene.h"
#include "support/SceneBuilders.h"
#include "support/SceneLists.h"

#include <QtTest>

#include <array>
#include <atomic>
#include <cstdlib>
#include <new>

using namespace NELK;

namespace
{

std::atomic<int> allocations{0};

} // namespace

// All memory of this program that is taken by `new` is counted.

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

class InstanceRebuildTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fillsEveryList();
    void doesWhatTheBuildersDo();
    void emitsNothing();
    void emptySceneGivesEmptyLists_data();
    void emptySceneGivesEmptyLists();
    void replacesWhatTheListsHeld_data();
    void replacesWhatTheListsHeld();
    void keepsTheMemoryOfWhatIsGone_data();
    void keepsTheMemoryOfWhatIsGone();
    void allocatesNothingForAnUnchangedScene_data();
    void allocatesNothingForAnUnchangedScene();
    void teamDoesWhatOneThreadDoes_data();
    void teamDoesWhatOneThreadDoes();
    void teamLeavesTheOverviewAlone();
    void selectionDoesNotAlterTheOverview();
    void listsStayUntilTheNextRebuild();
};

namespace
{

constexpr qint32 textCols = 60;

/// Rows for both forms of a rebuild.
void addBothForms()
{
    QTest::addColumn<bool>("byTeam");
    QTest::newRow("on one thread") << false;
    QTest::newRow("by a team") << true;
}

void rebuild(Scene& scene, bool byTeam)
{
    if (byTeam)
        rebuildParallel(scene, textCols);
    else
        rebuildAll(scene, textCols);
}

/// What a rebuild by that form leaves as it is.
QStringList listsLeftAlone(bool byTeam)
{
    return byTeam ? QStringList{"eyeItems"} : QStringList();
}

/// All lists of a scene, with count, bit for bit.
using ListBits = std::array<QByteArray, sceneLists.size()>;

ListBits bitsOf(const Scene& scene)
{
    ListBits bits;
    for (std::size_t i = 0; i < sceneLists.size(); ++i) {
        const InstanceList& list = scene.*sceneLists[i].list;
        const std::size_t size = list.records.size() * sizeof(InstanceRecord);
        bits[i] = QByteArray(reinterpret_cast<const char*>(list.records.data()), static_cast<int>(size));
        bits[i] += "count " + QByteArray::number(list.count);
    }
    return bits;
}

/// The names of the lists that are not the same in both.
QStringList differences(const ListBits& one, const ListBits& other)
{
    QStringList names;
    for (std::size_t i = 0; i < sceneLists.size(); ++i) {
        if (one[i] != other[i])
            names.append(QLatin1String(sceneLists[i].name));
    }
    return names;
}

QList<std::size_t> capacitiesOf(const Scene& scene)
{
    QList<std::size_t> capacities;
    for (const SceneList& each : sceneLists)
        capacities.append((scene.*each.list).records.capacity());
    return capacities;
}

} // namespace

void InstanceRebuildTest::fillsEveryList()
{
    Scene scene;
    fillWithOneOfEach(scene);
    rebuildAll(scene, textCols);
    QCOMPARE(filledLists(scene).size(), 15);
}

void InstanceRebuildTest::doesWhatTheBuildersDo()
{
    Scene scene;
    fillWithOneOfEach(scene);
    rebuildAll(scene, textCols);
    const ListBits bits = bitsOf(scene);
    rebuildAll(scene, textCols + 1);
    QCOMPARE(differences(bitsOf(scene), bits), (QStringList{"textItems", "selTextItems", "edgeTextItems"}));
    buildEverything(scene);
    QCOMPARE(differences(bitsOf(scene), bits), QStringList());
}

void InstanceRebuildTest::emitsNothing()
{
    Scene scene;
    fillWithOneOfEach(scene);
    const EmissionCounter emissions(scene);
    QVERIFY(emissions.signalsWatched() > 0);
    for (const bool byTeam : {false, true})
        rebuild(scene, byTeam);
    QCOMPARE(emissions.count(), 0);
}

void InstanceRebuildTest::emptySceneGivesEmptyLists_data()
{
    addBothForms();
}

void InstanceRebuildTest::emptySceneGivesEmptyLists()
{
    QFETCH(bool, byTeam);
    Scene scene;
    rebuild(scene, byTeam);
    QCOMPARE(filledLists(scene), QStringList());
}

void InstanceRebuildTest::replacesWhatTheListsHeld_data()
{
    addBothForms();
}

void InstanceRebuildTest::replacesWhatTheListsHeld()
{
    QFETCH(bool, byTeam);
    Scene scene;
    fillWithOneOfEach(scene);
    rebuildAll(scene, textCols);
    const ListBits expected = bitsOf(scene);
    for (const SceneList& each : sceneLists) {
        (scene.*each.list).records.assign(100, InstanceRecord());
        (scene.*each.list).count = 100;
    }
    rebuild(scene, byTeam);
    QCOMPARE(differences(bitsOf(scene), expected), listsLeftAlone(byTeam));
}

void InstanceRebuildTest::keepsTheMemoryOfWhatIsGone_data()
{
    addBothForms();
}

void InstanceRebuildTest::keepsTheMemoryOfWhatIsGone()
{
    QFETCH(bool, byTeam);
    Scene scene;
    fillWithOneOfEach(scene);
    rebuildAll(scene, textCols);
    const QList<std::size_t> capacities = capacitiesOf(scene);
    scene.clear();
    rebuild(scene, byTeam);
    QCOMPARE(filledLists(scene), listsLeftAlone(byTeam));
    QCOMPARE(capacitiesOf(scene), capacities);
}

void InstanceRebuildTest::allocatesNothingForAnUnchangedScene_data()
{
    addBothForms();
}

void InstanceRebuildTest::allocatesNothingForAnUnchangedScene()
{
    QFETCH(bool, byTeam);
    Scene scene;
    RandomPlane random(11);
    fillAtRandom(scene, random, 200, 300);
    const auto allocationsOfARebuild = [&scene, byTeam] {
        const int before = allocations;
        rebuild(scene, byTeam);
        return allocations - before;
    };
    QVERIFY(allocationsOfARebuild() > 0);
    QCOMPARE(allocationsOfARebuild(), 0);
}

void InstanceRebuildTest::teamDoesWhatOneThreadDoes_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 5; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void InstanceRebuildTest::teamDoesWhatOneThreadDoes()
{
    QFETCH(unsigned, seed);
    Scene scene;
    RandomPlane random(seed);
    fillAtRandom(scene, random, 1500, 2500);
    rebuildParallel(scene, textCols);
    const ListBits byTeam = bitsOf(scene);
    QCOMPARE(filledLists(scene).size(), 14);
    rebuildAll(scene, textCols);
    QCOMPARE(differences(bitsOf(scene), byTeam), QStringList{"eyeItems"});
    rebuildParallel(scene, textCols + 1);
    rebuildParallel(scene, textCols);
    QCOMPARE(differences(bitsOf(scene), byTeam), QStringList{"eyeItems"});
}

void InstanceRebuildTest::teamLeavesTheOverviewAlone()
{
    Scene scene;
    fillWithOneOfEach(scene);
    rebuildAll(scene, textCols);
    const ListBits before = bitsOf(scene);
    for (NodeData* node : qAsConst(scene.nodes)) {
        node->x += 1.0f;
        node->entityColor = {1.0f, 0.0f, 0.0f, 1.0f};
    }
    rebuildParallel(scene, textCols);
    const QStringList changed = differences(bitsOf(scene), before);
    QVERIFY(changed.contains("imageItems"));
    QVERIFY(!changed.contains("eyeItems"));
    rebuildAll(scene, textCols);
    QVERIFY(differences(bitsOf(scene), before).contains("eyeItems"));
}

void InstanceRebuildTest::selectionDoesNotAlterTheOverview()
{
    Scene scene;
    fillWithOneOfEach(scene);
    rebuildAll(scene, textCols);
    const ListBits before = bitsOf(scene);
    select(scene, *scene.getNode(1));
    select(scene, *scene.getEdge(11));
    rebuildAll(scene, textCols);
    const QStringList changed = differences(bitsOf(scene), before);
    QVERIFY(changed.contains("frameItems"));
    QVERIFY(!changed.contains("eyeItems"));
}

void InstanceRebuildTest::listsStayUntilTheNextRebuild()
{
    struct Change
    {
        const char* name;
        void (*make)(Scene&);
    };
    const Change changes[]{
        {"a node is hidden", [](Scene& scene) { scene.getNode(1)->show = false; }},
        {"an edge is hidden", [](Scene& scene) { scene.getEdge(11)->show = false; }},
        {"a node is selected", [](Scene& scene) { select(scene, *scene.getNode(1)); }},
        {"a node is new", [](Scene& scene) { scene.createNode(3); }},
        {"a node is removed", [](Scene& scene) { scene.removeNode(2); }},
        {"an edge is removed", [](Scene& scene) { scene.removeEdge(12); }},
        {"the scene is cleared", [](Scene& scene) { scene.clear(); }},
    };
    for (const Change& change : changes) {
        Scene scene;
        fillWithOneOfEach(scene);
        rebuildAll(scene, textCols);
        const ListBits before = bitsOf(scene);
        change.make(scene);
        QVERIFY2(bitsOf(scene) == before, change.name);
        rebuildAll(scene, textCols);
        QVERIFY2(bitsOf(scene) != before, change.name);
    }
}

QTEST_GUILESS_MAIN(InstanceRebuildTest)

#include "InstanceRebuildTest.moc"
