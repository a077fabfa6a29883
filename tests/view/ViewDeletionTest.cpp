#include "support/Playground.h"
#include "support/SceneInvariants.h"

using namespace NELK;

/// What slots of a host may do to the view and the scene from within any signal that an event leads to.
class ViewDeletionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outlivesTheViewInASlot_data();
    void outlivesTheViewInASlot();
    void outlivesTheViewInATimer();
    void outlivesElementsInASlot_data();
    void outlivesElementsInASlot();
};

namespace
{

/// A host that does one thing when it is told of something.
class Host : public QObject
{
    Q_OBJECT

public:
    explicit Host(Playground& playground) : m_playground(playground) {}

    bool listenTo(const QByteArray& signal, const char* slot)
    {
        const QObject* view = m_playground.view;
        const QByteArray name = QMetaObject::normalizedSignature(signal.data() + 1);
        const bool isOfView = view->metaObject()->indexOfSignal(name) >= 0;
        return connect(isOfView ? view : &m_playground.scene, signal, this, slot);
    }

public Q_SLOTS:
    void deleteView() { delete m_playground.view; }
    void clearScene() { m_playground.graph.clear(); }
    void removeNodes()
    {
        for (const qint64 id : {1, 3}) {
            if (m_playground.scene.getNode(id))
                m_playground.graph.removeNode(id);
        }
    }

private:
    Playground& m_playground;
};

const QByteArray selectChanged = SIGNAL(signalSelectChanged(QList<qint64>, QList<qint64>));
const QByteArray elementsMoved = SIGNAL(signalElementsMoved());
const QByteArray changed = SIGNAL(signalChanged(QList<QRectF>));
const QByteArray modeChanged = SIGNAL(signalFrameModeChanged(E_OP_MODE));
const QByteArray frameChanged = SIGNAL(signalFrameSizeChanged(bool, QPoint, QPoint));
const QByteArray watchedChanged = SIGNAL(signalViewWatchedChanged(QRect, float));
const QByteArray rightClicked = SIGNAL(signalRightMouseButtonClicked(E_ELEMENTS_TYPE, qint64));
const QByteArray doubleClicked = SIGNAL(signalLeftMouseButtonDblClicked(E_ELEMENTS_TYPE, qint64));

struct Step
{
    const char* before;
    const char* step;
    /// All that it emits.
    QList<QByteArray> signalsOfIt;
};

/// A step for each way that leads to signals.
QList<Step> tellingSteps()
{
    return {
        {"", "press node3", {selectChanged, changed}},
        {"", "ctrl+press node3", {selectChanged, changed}},
        {"press node1", "release", {selectChanged, changed}},
        {"press edge", "release", {selectChanged, changed}},
        {"press node1", "move +10,5", {elementsMoved, changed}},
        {"press node1 | move +10,5", "move +10,5", {elementsMoved, changed}},
        {"press node3", "move +10,5", {elementsMoved, changed}},
        {"press empty", "move +10,5", {frameChanged}},
        {"press 60,60 | move 330,230", "release", {selectChanged, changed, frameChanged}},
        {"", "right-press node3", {rightClicked}},
        {"", "right-press empty", {rightClicked}},
        {"", "double-click node3", {doubleClicked}},
        {"", "double-click edge", {doubleClicked}},
        {"", "wheel 0,120", {watchedChanged, changed}},
        {"press node1 | move +10,5", "wheel 0,-120", {watchedChanged, changed}},
        {"mode 1 | press empty", "move +10,5", {watchedChanged, changed}},
        {"mode 1 | right-press empty | move +1,1", "move +1,1", {watchedChanged, changed}},
        {"mode 2 | press node3", "move +10,5", {frameChanged}},
        {"mode 2 | press node3 | move +10,5", "release", {frameChanged}},
        {"mode 3 | press node3", "move +10,5", {frameChanged}},
        {"mode 3 | press node3 | move +10,5", "release", {frameChanged, watchedChanged, changed, modeChanged}},
        {"mode 3 | press node3", "release", {modeChanged}},
        {"", "mode 1", {modeChanged}},
        {"", "handle-key 3", {modeChanged}},
        {"", "handle-key Left", {watchedChanged, changed}},
    };
}

void addRows(const QList<QByteArray>& slotsOfHost)
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("step");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("slot");
    for (const Step& step : tellingSteps()) {
        for (const QByteArray& signal : step.signalsOfIt) {
            for (const QByteArray& slot : slotsOfHost)
                QTest::addRow("%s in %s of: %s | %s", slot.data() + 1, signal.data() + 1, step.before, step.step)
                    << step.before << step.step << signal << slot;
        }
    }
}

} // namespace

void ViewDeletionTest::outlivesTheViewInASlot_data()
{
    addRows({SLOT(deleteView())});
}

void ViewDeletionTest::outlivesTheViewInASlot()
{
    QFETCH(QString, before);
    QFETCH(QString, step);
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);

    Playground playground;
    QVERIFY(playground.show());
    playground.play(before);
    Host host(playground);
    QVERIFY(host.listenTo(signal, slot));
    playground.play(step);
    QVERIFY(!playground.view);
    QCOMPARE(brokenInvariant(playground.scene), QString());
}

void ViewDeletionTest::outlivesTheViewInATimer()
{
    Playground playground;
    Host host(playground);
    playground.play("handle-key A");
    QVERIFY(host.listenTo(modeChanged, SLOT(deleteView())));
    QTRY_VERIFY(!playground.view);
}

void ViewDeletionTest::outlivesElementsInASlot_data()
{
    addRows({SLOT(removeNodes()), SLOT(clearScene())});
}

void ViewDeletionTest::outlivesElementsInASlot()
{
    QFETCH(QString, before);
    QFETCH(QString, step);
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);

    Playground playground;
    playground.play(before);
    Host host(playground);
    QVERIFY(host.listenTo(signal, slot));
    playground.play(step);
    QVERIFY(!playground.scene.getNode(1));
    QVERIFY(!playground.scene.getNode(3));

    // The gesture goes on, and another one begins.
    playground.play("move +10,5 | release | mode 0 | press node1 | move +10,5 | release | press edge | release | "
                    "right-press node3 | double-click node3 | press 20,20 | move 380,280 | release | wheel 0,120");
    QCOMPARE(brokenInvariant(playground.scene), QString());
    QCOMPARE(playground.scene.nodes.keys(), slot == SLOT(clearScene()) ? QList<qint64>{} : QList<qint64>{2});
}

QTEST_MAIN(ViewDeletionTest)

#include "ViewDeletionTest.moc"
