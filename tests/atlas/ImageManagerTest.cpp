#include "atlas/ImageManager.h"
#include "atlas/TextImageManagerThread.h"
#include "support/ColorAtlas.h"
#include "support/Gate.h"

#include <QtTest>

namespace
{

const QString anyName = QStringLiteral("any");

/// A manager with an atlas of colours.
struct Desk
{
    explicit Desk(const QVector<qint32>& firstIds) { atlas.firstIds = firstIds; }
    /// A test that fails while a run is held is to end all the same.
    ~Desk() { gate.open(); }

    /// Builds the atlas and takes it in.
    void build()
    {
        manager.startInitial();
        takeResult();
        forgetThePast();
    }

    void tick() { QMetaObject::invokeMethod(&manager, "slotUpdateTimerEvent"); }

    /// Lets the run that is under way end, if there is one, and its result arrive.
    void takeResult()
    {
        manager.waitForRun();
        QCoreApplication::sendPostedEvents(&manager);
    }

    /// Starts a repaint, which is held where it paints the cell.
    void tickHeldAt(qint32 id)
    {
        atlas.whenPainting = [this, id](qint32 paintedId) {
            if (paintedId == id)
                gate.pass();
        };
        tick();
        gate.awaitArrival();
    }

    void openGate()
    {
        gate.open();
        takeResult();
    }

    /// What the atlas has been told to do, once it has been done.
    QStringList builds()
    {
        manager.waitForRun();
        return atlas.takeBuilds();
    }

    void forgetThePast()
    {
        builds();
        atlas.takeAdded();
        atlas.takePaintedIds();
        changes.clear();
    }

    Gate gate;
    // The manager's child.
    ColorAtlas& atlas = *new ColorAtlas;
    ImageManager manager{&atlas};
    QSignalSpy changes{&manager, SIGNAL(signalImageChanged())};
};

const QStringList noBuild;
const QStringList initial{"initial", "repaint"};
const QStringList repaint{"repaint"};
const QStringList reload{"reload", "repaint"};

/// A cell as text: `painted` is left out, since it tells of the moment in which the cell was copied.
QString described(const SImageCell& cell)
{
    return QStringLiteral("%1 at row %2, column %3%4")
        .arg(cell.id)
        .arg(cell.texRowIdx)
        .arg(cell.texColIdx)
        .arg(cell.payload ? QStringLiteral(" with a payload") : QString());
}

bool isAllZero(const SImageCell& cell)
{
    return cell.id == 0 && cell.texColIdx == 0 && cell.texRowIdx == 0 && !cell.payload && !cell.painted;
}

} // namespace

class ImageManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTwoManagersForTheProcess();
    void ticksEverySecond();
    void ownsItsThread();

    void isEmptyUntilTheFirstResultArrives();
    void doesTheFirstBuildOnce();
    void startsNoFirstBuildDuringARun();
    void doesTheFirstBuildAfterATickThatCameTooEarly();

    void reloadsAndWaits();
    void refusesToReloadWhileARequestWaits();
    void refusesToReloadDuringARun();

    void givesAWordThatItHas();
    void takesAnUnknownWordForAMiss();
    void takesABuiltWordForAMissBeforeItArrives();
    void givesTheCellOfAKnownName_data();
    void givesTheCellOfAKnownName();
    void marksAKnownFileForRepaint();
    void givesAnAllZeroCellWhereTheAtlasHasNotArrived();
    void addsACellForAnUnknownName_data();
    void addsACellForAnUnknownName();

    void startsNothingWithoutARequest();
    void paintsAllRequestsOfATickInOneRun();
    void losesNoRequestDuringARun();
    void emitsNothingBeforeTheFirstBuild();

    void replacesItsMapByThatOfTheRun();
    void givesASecondCellForAKeyThatTheRunDidNotSee();
    void tellsOfEachRunOnce();

    void staysWholeUnderRequestsBesideRuns();
    void staysWholeUnderWordsBesideRuns();
};

void ImageManagerTest::hasTwoManagersForTheProcess()
{
    ImageManager* const entities = ImageManager::instance(0);
    ImageManager* const words = ImageManager::instance(1);
    QVERIFY(entities != words);
    QCOMPARE(ImageManager::instance(0), entities);
    for (const qint32 index : {1, 2, -1, 1000})
        QCOMPARE(ImageManager::instance(index), words);
    QVERIFY(entities->findChild<ImageManagerThread*>()->inherits("EntityImageManagerThread"));
    QVERIFY(words->findChild<ImageManagerThread*>()->inherits("TextImageManagerThread"));
}

void ImageManagerTest::ticksEverySecond()
{
    Desk desk({1});
    desk.build();
    QCOMPARE(desk.manager.findChildren<QTimer*>().size(), 1);
    QTimer* const timer = desk.manager.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(timer);
    QVERIFY(timer->isActive());
    QVERIFY(!timer->isSingleShot());
    QCOMPARE(timer->interval(), 1000);

    desk.manager.requestWord(2);
    QMetaObject::invokeMethod(timer, "timeout");
    QCOMPARE(desk.builds(), repaint);
}

void ImageManagerTest::ownsItsThread()
{
    auto* const manager = new ImageManager(new ColorAtlas);
    const QPointer<QThread> thread = manager->findChild<QThread*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(thread);
    delete manager;
    QVERIFY(!thread);
}

void ImageManagerTest::isEmptyUntilTheFirstResultArrives()
{
    Desk desk({1, 2});
    desk.manager.startInitial();
    QVERIFY(!desk.atlas.isRunning());
    QCOMPARE(desk.atlas.takeBuilds(), initial);
    QVERIFY(desk.manager.image().isNull());
    QCOMPARE(desk.manager.texRowNum(), 0);
    QCOMPARE(desk.manager.texColNum(), 0);
    QCOMPARE(desk.changes.count(), 0);

    desk.takeResult();
    QCOMPARE(desk.changes.count(), 1);
    QCOMPARE(desk.manager.image(), desk.atlas.output);
    QCOMPARE(desk.manager.image().size(), QSize(4, 4));
    QCOMPARE(desk.manager.texRowNum(), 2);
    QCOMPARE(desk.manager.texColNum(), 2);
}

void ImageManagerTest::doesTheFirstBuildOnce()
{
    Desk desk({1, 2});
    desk.manager.startInitial();
    desk.manager.startInitial();
    desk.takeResult();
    desk.manager.startInitial();
    desk.takeResult();
    QCOMPARE(desk.builds(), initial);
    QCOMPARE(desk.changes.count(), 1);
}

void ImageManagerTest::startsNoFirstBuildDuringARun()
{
    Desk desk({1, 2});
    desk.build();
    desk.manager.requestWord(9);
    desk.tickHeldAt(9);
    // Were this to wait, it would wait for ever.
    desk.manager.startInitial();
    QVERIFY(desk.atlas.isRunning());
    desk.openGate();
    QCOMPARE(desk.builds(), repaint);
}

void ImageManagerTest::doesTheFirstBuildAfterATickThatCameTooEarly()
{
    for (int time = 0; time < 50; ++time) {
        Desk desk({1});
        desk.manager.requestWord(2);
        desk.tick();
        desk.manager.startInitial();
        desk.takeResult();
        QCOMPARE(desk.builds(), initial);
        QCOMPARE(desk.changes.count(), 1);
    }
}

void ImageManagerTest::reloadsAndWaits()
{
    Desk desk({1});
    QVERIFY(desk.manager.startReload());
    desk.takeResult();
    QCOMPARE(desk.builds(), noBuild);
    QCOMPARE(desk.changes.count(), 0);

    desk.build();
    QVERIFY(desk.manager.startReload());
    QVERIFY(!desk.atlas.isRunning());
    QCOMPARE(desk.atlas.takeBuilds(), reload);
    desk.takeResult();
    QCOMPARE(desk.changes.count(), 1);
}

void ImageManagerTest::refusesToReloadWhileARequestWaits()
{
    Desk desk({1});
    desk.build();
    desk.manager.requestWord(2);
    QVERIFY(!desk.manager.startReload());
    QCOMPARE(desk.builds(), noBuild);
    desk.tick();
    desk.takeResult();
    QVERIFY(desk.manager.startReload());
    QCOMPARE(desk.builds(), repaint + reload);
}

void ImageManagerTest::refusesToReloadDuringARun()
{
    Desk desk({1});
    desk.build();
    desk.manager.requestWord(2);
    desk.tickHeldAt(2);
    QVERIFY(!desk.manager.startReload());
    desk.openGate();
    QCOMPARE(desk.builds(), repaint);
    QVERIFY(desk.manager.startReload());
}

void ImageManagerTest::givesAWordThatItHas()
{
    Desk desk({5, 6, 7});
    desk.build();
    QCOMPARE(described(desk.manager.requestWord(6)), QStringLiteral("6 at row 0, column 1"));
    QVERIFY(desk.manager.requestWord(6).painted);
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
    // Nothing waits for a repaint.
    QVERIFY(desk.manager.startReload());
}

void ImageManagerTest::takesAnUnknownWordForAMiss()
{
    Desk desk({5});
    desk.build();
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(described(desk.manager.requestWord(0)), QStringLiteral("0 at row 0, column 1"));
        QCOMPARE(described(desk.manager.requestWord(0xffff)), QStringLiteral("65535 at row 1, column 1"));
    }
    QCOMPARE(desk.atlas.takeAdded(), QStringList({"0 ''", "65535 ''"}));
    QVERIFY(!desk.manager.requestWord(0).painted);
    QCOMPARE(desk.manager.texRowNum(), 1);

    desk.tick();
    desk.takeResult();
    QVERIFY(desk.manager.requestWord(0).painted);
    QCOMPARE(described(desk.manager.requestWord(0)), QStringLiteral("0 at row 0, column 1"));
    QCOMPARE(desk.manager.texRowNum(), 2);
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
}

void ImageManagerTest::takesABuiltWordForAMissBeforeItArrives()
{
    Desk desk({5});
    desk.manager.startInitial();
    QCOMPARE(described(desk.manager.requestWord(5)), QStringLiteral("5 at row 0, column 1"));
    QVERIFY(!desk.manager.startReload());
    desk.takeResult();
    QCOMPARE(described(desk.manager.requestWord(5)), QStringLiteral("5 at row 0, column 0"));

    // The second cell of a key that the worker has is dropped; its place stays empty.
    desk.tick();
    desk.takeResult();
    QCOMPARE(described(desk.manager.requestWord(5)), QStringLiteral("5 at row 0, column 0"));
    QVERIFY(desk.atlas.cellShows(desk.atlas.canvas, {0, 0}, ColorAtlas::colorOf(5)));
    QVERIFY(desk.atlas.cellShows(desk.atlas.canvas, {1, 0}, 0));
}

void ImageManagerTest::givesTheCellOfAKnownName_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("entity") << int{IMAGE_ENTITY};
    QTest::newRow("focus") << int{IMAGE_FOCUS};
    QTest::newRow("lock") << int{IMAGE_LOCK};
    QTest::newRow("combine") << int{IMAGE_COMBINE};
    QTest::newRow("float") << int{IMAGE_FLOAT};
}

void ImageManagerTest::givesTheCellOfAKnownName()
{
    QFETCH(int, kind);
    Desk desk({1, 2});
    desk.atlas.names = {{"first", 1}, {"second", 2}};
    desk.build();
    // 1 is the least id that counts as known.
    QCOMPARE(described(desk.manager.requestCell(static_cast<E_IMAGE_KIND>(kind), "first")),
             QStringLiteral("1 at row 0, column 0"));
    QCOMPARE(int{desk.atlas.lastKind}, kind);
    QCOMPARE(described(desk.manager.requestCell(static_cast<E_IMAGE_KIND>(kind), "second")),
             QStringLiteral("2 at row 0, column 1"));
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
    QVERIFY(desk.atlas.current.cells.value(2).painted);
    QVERIFY(desk.manager.startReload());
}

void ImageManagerTest::marksAKnownFileForRepaint()
{
    Desk desk({1, 2});
    desk.atlas.names = {{"second", 2}};
    desk.build();
    const SImageCell cell = desk.manager.requestCell(IMAGE_FILE, "second");
    QCOMPARE(described(cell), QStringLiteral("2 at row 0, column 1"));
    QVERIFY(cell.painted);
    QCOMPARE(int{desk.atlas.lastKind}, int{IMAGE_FILE});
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
    QVERIFY(!desk.manager.startReload());
    desk.tick();
    desk.takeResult();
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({2}));
}

void ImageManagerTest::givesAnAllZeroCellWhereTheAtlasHasNotArrived()
{
    Desk desk({1, 2});
    desk.atlas.names = {{"second", 2}};
    desk.manager.startInitial();
    QVERIFY(isAllZero(desk.manager.requestCell(IMAGE_ENTITY, "second")));
    QVERIFY(desk.manager.startReload());

    // A file is marked all the same.
    QVERIFY(isAllZero(desk.manager.requestCell(IMAGE_FILE, "second")));
    QVERIFY(!desk.manager.startReload());
    desk.takeResult();
    desk.forgetThePast();
    desk.tick();
    desk.takeResult();
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({2}));
    // No cell was made up for the name.
    QCOMPARE(described(desk.manager.requestCell(IMAGE_ENTITY, "second")), QStringLiteral("2 at row 0, column 1"));
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
}

void ImageManagerTest::addsACellForAnUnknownName_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("knownId");
    QTest::newRow("unknown file") << int{IMAGE_FILE} << 0;
    QTest::newRow("unknown entity") << int{IMAGE_ENTITY} << 0;
    QTest::newRow("id below 0") << int{IMAGE_FILE} << -1;
    QTest::newRow("least id") << int{IMAGE_FLOAT} << -2147483647 - 1;
}

void ImageManagerTest::addsACellForAnUnknownName()
{
    QFETCH(int, kind);
    QFETCH(int, knownId);
    Desk desk({1});
    desk.atlas.names = {{anyName, knownId}};
    desk.build();
    const SImageCell added = desk.manager.requestCell(static_cast<E_IMAGE_KIND>(kind), anyName);
    QCOMPARE(described(added), QStringLiteral("1000 at row 0, column 1"));
    QCOMPARE(desk.atlas.takeAdded(), QStringList({"0 'any'"}));
    QVERIFY(!desk.manager.startReload());

    // From now on the name is known, before the repaint and after.
    QCOMPARE(described(desk.manager.requestCell(IMAGE_FILE, anyName)), described(added));
    desk.tick();
    desk.takeResult();
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({1000}));
    QCOMPARE(described(desk.manager.requestCell(IMAGE_ENTITY, anyName)), described(added));
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
}

void ImageManagerTest::startsNothingWithoutARequest()
{
    Desk desk({1});
    desk.build();
    desk.tick();
    QCOMPARE(desk.builds(), noBuild);
    desk.manager.requestWord(1);
    desk.tick();
    QCOMPARE(desk.builds(), noBuild);
}

void ImageManagerTest::paintsAllRequestsOfATickInOneRun()
{
    Desk desk({1});
    desk.atlas.names = {{anyName, 1}};
    desk.build();
    desk.manager.requestWord(2);
    desk.manager.requestCell(IMAGE_FILE, anyName);
    desk.manager.requestCell(IMAGE_FILE, "new");
    desk.tick();
    desk.takeResult();
    desk.tick();
    QCOMPARE(desk.builds(), repaint);
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({1, 2, 1000}));
}

void ImageManagerTest::losesNoRequestDuringARun()
{
    Desk desk({1});
    desk.build();
    desk.manager.requestWord(2);
    desk.tickHeldAt(2);
    desk.manager.requestWord(3);
    desk.tick();
    desk.openGate();
    QCOMPARE(desk.builds(), repaint);
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({2}));

    desk.tick();
    desk.takeResult();
    QCOMPARE(desk.builds(), repaint);
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({3}));
    desk.tick();
    QCOMPARE(desk.builds(), noBuild);
}

void ImageManagerTest::emitsNothingBeforeTheFirstBuild()
{
    Desk desk({1});
    desk.manager.requestWord(2);
    desk.tick();
    desk.takeResult();
    QCOMPARE(desk.builds(), noBuild);
    QCOMPARE(desk.changes.count(), 0);

    desk.manager.startInitial();
    desk.takeResult();
    QCOMPARE(desk.changes.count(), 1);
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({1, 2}));
}

void ImageManagerTest::replacesItsMapByThatOfTheRun()
{
    Desk desk({1});
    desk.build();
    SImageConfig config;
    config.texRowNum = 4;
    config.texColNum = 5;
    config.shellIndex = 6;
    SImageCell cell;
    cell.id = 7;
    cell.texRowIdx = 3;
    config.cells.insert(7, cell);
    QImage image(3, 2, QImage::Format_RGBA8888);
    image.fill(Qt::red);
    QMetaObject::invokeMethod(&desk.manager, "slotThreadFinished", Q_ARG(QImage, image), Q_ARG(SImageConfig, config));

    QCOMPARE(desk.manager.image(), image);
    QCOMPARE(desk.manager.texRowNum(), 4);
    QCOMPARE(desk.manager.texColNum(), 5);
    QCOMPARE(described(desk.manager.requestWord(7)), QStringLiteral("7 at row 3, column 0"));
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
    // What it had before is gone.
    desk.manager.requestWord(1);
    QCOMPARE(desk.atlas.takeAdded(), QStringList({"1 ''"}));
    QCOMPARE(desk.changes.count(), 1);
}

void ImageManagerTest::givesASecondCellForAKeyThatTheRunDidNotSee()
{
    Desk desk({1});
    desk.build();
    desk.manager.requestWord(2);
    desk.tickHeldAt(2);
    QCOMPARE(described(desk.manager.requestWord(3)), QStringLiteral("3 at row 1, column 1"));
    QCOMPARE(described(desk.manager.requestWord(3)), QStringLiteral("3 at row 1, column 1"));
    desk.openGate();
    QCOMPARE(described(desk.manager.requestWord(3)), QStringLiteral("3 at row 1, column 0"));
    QCOMPARE(desk.atlas.pending.cells.size(), 1);

    desk.tick();
    desk.takeResult();
    QCOMPARE(described(desk.manager.requestWord(3)), QStringLiteral("3 at row 1, column 0"));
    QVERIFY(desk.atlas.cellShows(desk.atlas.canvas, {0, 1}, ColorAtlas::colorOf(3)));
    QVERIFY(desk.atlas.cellShows(desk.atlas.canvas, {1, 1}, 0));
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>({2, 3}));
}

void ImageManagerTest::tellsOfEachRunOnce()
{
    Desk desk({1});
    desk.manager.startInitial();
    desk.manager.requestWord(1);
    desk.takeResult();
    desk.forgetThePast();

    // The request was for a cell that is there already, and the reload finds nothing new.
    desk.tick();
    desk.takeResult();
    QCOMPARE(desk.changes.count(), 1);
    desk.manager.startReload();
    desk.takeResult();
    QCOMPARE(desk.changes.count(), 2);
    QCOMPARE(desk.atlas.takePaintedIds(), QVector<qint32>());
    QCOMPARE(desk.builds(), repaint + reload);
}

/// Worth running under ThreadSanitizer, like the one after it.
void ImageManagerTest::staysWholeUnderRequestsBesideRuns()
{
    Desk desk({1, 2, 3});
    desk.atlas.names = {{anyName, 2}};
    desk.atlas.nextNamedId = 1 << 20;
    desk.build();
    qint32 lastWord = 3;
    QMap<qint32, QString> handedOut;
    for (int run = 0; run < 300; ++run) {
        desk.manager.requestCell(IMAGE_FILE, QString::number(run));
        desk.tick();
        for (int request = 0; request < 20; ++request) {
            const SImageCell cell = desk.manager.requestWord(++lastWord);
            handedOut[lastWord] = described(cell);
            desk.manager.requestCell(IMAGE_FILE, anyName);
        }
        desk.takeResult();
    }
    desk.tick();
    desk.takeResult();
    QCOMPARE(desk.changes.count(), 301);

    desk.atlas.takeAdded();
    const QImage topRowFirst = desk.manager.image().mirrored();
    for (qint32 word = 4; word <= lastWord; ++word) {
        const SImageCell cell = desk.manager.requestWord(word);
        QCOMPARE(described(cell), handedOut[word]);
        QVERIFY(desk.atlas.cellShows(topRowFirst, ColorAtlas::placeOf(cell), ColorAtlas::colorOf(word)));
    }
    QCOMPARE(desk.atlas.takeAdded(), QStringList());
}

void ImageManagerTest::staysWholeUnderWordsBesideRuns()
{
    ImageManager manager(new TextImageManagerThread);
    manager.startInitial();
    QCoreApplication::sendPostedEvents(&manager);
    qint32 lastWord = 0xac00;
    QMap<qint32, QString> handedOut;
    for (int run = 0; run < 20; ++run) {
        manager.requestWord(++lastWord);
        QMetaObject::invokeMethod(&manager, "slotUpdateTimerEvent");
        for (int request = 0; request < 50; ++request) {
            const SImageCell cell = manager.requestWord(++lastWord);
            QVERIFY(cell.payload);
            handedOut[lastWord] = described(cell);
        }
        manager.waitForRun();
        QCoreApplication::sendPostedEvents(&manager);
    }
    QMetaObject::invokeMethod(&manager, "slotUpdateTimerEvent");
    manager.waitForRun();
    QCoreApplication::sendPostedEvents(&manager);
    for (auto word = handedOut.cbegin(); word != handedOut.cend(); ++word) {
        const SImageCell cell = manager.requestWord(word.key());
        QVERIFY(cell.painted);
        QCOMPARE(described(cell), word.value());
    }
}

QTEST_GUILESS_MAIN(ImageManagerTest)

#include "ImageManagerTest.moc"
