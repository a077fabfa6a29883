#include "support/ColorAtlas.h"
#include "support/Gate.h"

#include <QtTest>

#include <QDeadlineTimer>

#include <algorithm>
#include <limits>
#include <random>
#include <thread>
#include <vector>

namespace
{

constexpr QRgb nothing = 0;

QVector<qint32> idsFrom(qint32 first, qint32 last)
{
    QVector<qint32> ids;
    for (qint32 id = first; id <= last; ++id)
        ids.append(id);
    return ids;
}

/// An atlas after its first build.
struct BuiltAtlas : ColorAtlas
{
    using ImageManagerThread::beginRepaint;
    using ImageManagerThread::canvasUpsideDown;
    using ImageManagerThread::takeUnpaintedCell;

    explicit BuiltAtlas(const QVector<qint32>& ids)
    {
        firstIds = ids;
        run();
        takePaintedIds();
        takeBuilds();
    }

    QVector<qint32> paintedByRepaint()
    {
        setMode(BUILD_REPAINT);
        run();
        return takePaintedIds();
    }

    /// Starts a repaint on the worker, which is held where it paints the cell.
    void startHeldAt(qint32 id, Gate& gate)
    {
        whenPainting = [id, &gate](qint32 paintedId) {
            if (paintedId == id)
                gate.pass();
        };
        setMode(BUILD_REPAINT);
        start();
        gate.awaitArrival();
    }

    QVector<qint32> paintedUntilEndOf(Gate& gate)
    {
        gate.open();
        wait();
        whenPainting = nullptr;
        return takePaintedIds();
    }
};

/// What the canvas is to show by the places and ids of the cells, top row first.
QImage pictureOfCells(const ColorAtlas& atlas)
{
    const QSize cellSize(atlas.cellEdge, atlas.cellEdge);
    QImage picture(cellSize * atlas.current.texRowNum, QImage::Format_RGBA8888);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (const SImageCell& cell : atlas.current.cells)
        painter.fillRect(QRect(ColorAtlas::placeOf(cell) * atlas.cellEdge, cellSize),
                         QColor(ColorAtlas::colorOf(cell.id)));
    return picture;
}

struct Finish
{
    QImage image;
    SImageConfig config;
    QThread* emitter;
};

/// What a thread emits, as it emits it.
class FinishLog
{
public:
    explicit FinishLog(const ImageManagerThread& thread)
    {
        QObject::connect(&thread, &ImageManagerThread::signalFinished, [this](QImage img, SImageConfig config) {
            finishes.append({img, config, QThread::currentThread()});
        });
    }
    Q_DISABLE_COPY(FinishLog)

    QVector<Finish> finishes;
};

} // namespace

class ImageManagerThreadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesItsConfigKnownToQueuedSignals();

    void handsOutTheFirstNineCellsInShells();
    void handsOutTenThousandCellsInShells();
    void givesANewCellNothingButItsPlace();
    void putsASecondCellOfAKeyInPlaceOfTheFirst();

    void publishesNewCellsAndNumbers();
    void keepsTheCellOfAKeyThatIsCurrent();

    void doesWhatItsModeSays_data();
    void doesWhatItsModeSays();
    void emitsFromTheWorker();
    void emitsTheOutputAndTheCurrentGrid();
    void emitsWhenNothingNewWasDrawn();
    void emitsANullImageOfAnEmptyGrid();

    void paintsInTheOrderOfKeys();
    void takesEachCellForPaintedOnce();
    void keepsCellsAndPixelsInPlaceOverGrowths();
    void losesItsPixelsWithACanvasThatCannotBeMade();
    void turnsTheBytesOfItsCanvas_data();
    void turnsTheBytesOfItsCanvas();

    void marksPendingAndCurrentCells();
    void marksNothingUnderAnUnknownKey();
    void paintsAMarkedCellAgain();
    void losesNoMarkDuringARun_data();
    void losesNoMarkDuringARun();
    void leavesRequestsDuringARunToTheNext();
    void needsTheLockOfNewCellsOnlyToPublish();
    void givesACellToOneOfSeveralThreads();
    void staysWholeUnderRequestsAndMarksBesideRuns();
};

void ImageManagerThreadTest::makesItsConfigKnownToQueuedSignals()
{
    // The first of all, since this can be seen once in a process only.
    QCOMPARE(QMetaType::type("SImageConfig"), int{QMetaType::UnknownType});
    ColorAtlas atlas;
    QVERIFY(QMetaType::type("SImageConfig") != QMetaType::UnknownType);
}

void ImageManagerThreadTest::handsOutTheFirstNineCellsInShells()
{
    const struct
    {
        int row, column, gridEdge, takenOfShell;
    } expected[] = {
        {0, 0, 1, 1},                             //
        {0, 1, 2, 1}, {1, 1, 2, 2}, {1, 0, 2, 3}, //
        {0, 2, 3, 1}, {1, 2, 3, 2}, {2, 2, 3, 3}, {2, 0, 3, 4}, {2, 1, 3, 5},
    };
    ColorAtlas atlas;
    QCOMPARE(atlas.pending.texRowNum, 0);
    for (const auto& step : expected) {
        const SImageCell cell = atlas.allocateCell(7);
        QCOMPARE(cell.texRowIdx, step.row);
        QCOMPARE(cell.texColIdx, step.column);
        QCOMPARE(atlas.pending.texRowNum, step.gridEdge);
        QCOMPARE(atlas.pending.texColNum, step.gridEdge);
        QCOMPARE(atlas.pending.shellIndex, step.takenOfShell);
    }
}

/// A shell of edge n begins when (n - 1) squared cells are taken: n places down its column, then n - 1 along its row.
void ImageManagerThreadTest::handsOutTenThousandCellsInShells()
{
    ColorAtlas atlas;
    qint32 taken = 0;
    for (int edge = 1; edge <= 100; ++edge) {
        QCOMPARE(taken, (edge - 1) * (edge - 1));
        const int last = edge - 1;
        for (int row = 0; row <= last; ++row)
            QCOMPARE(ColorAtlas::placeOf(atlas.allocateCell(taken++)), QPoint(last, row));
        for (int column = 0; column < last; ++column)
            QCOMPARE(ColorAtlas::placeOf(atlas.allocateCell(taken++)), QPoint(column, last));
        QCOMPARE(atlas.pending.texRowNum, edge);
        QCOMPARE(atlas.pending.texColNum, edge);
        QCOMPARE(atlas.pending.shellIndex, 2 * edge - 1);
    }
    QCOMPARE(atlas.pending.cells.size(), 10000);
}

void ImageManagerThreadTest::givesANewCellNothingButItsPlace()
{
    ColorAtlas atlas;
    SImageCell& cell = atlas.allocateCell(-5);
    QCOMPARE(cell.id, -5);
    QVERIFY(!cell.payload);
    QVERIFY(!cell.painted);

    cell.payload = &atlas;
    QCOMPARE(atlas.pending.cells.value(-5).payload, static_cast<void*>(&atlas));
}

void ImageManagerThreadTest::putsASecondCellOfAKeyInPlaceOfTheFirst()
{
    ColorAtlas atlas;
    SImageCell& first = atlas.allocateCell(5);
    first.payload = &atlas;
    first.painted = true;
    atlas.allocateCell(5);

    QCOMPARE(atlas.pending.cells.size(), 1);
    const SImageCell second = atlas.pending.cells.value(5);
    QCOMPARE(ColorAtlas::placeOf(second), QPoint(1, 0));
    QVERIFY(!second.payload);
    QVERIFY(!second.painted);
    QCOMPARE(ColorAtlas::placeOf(atlas.allocateCell(6)), QPoint(1, 1));
}

void ImageManagerThreadTest::publishesNewCellsAndNumbers()
{
    ColorAtlas atlas;
    atlas.allocateCell(8).payload = &atlas;
    atlas.allocateCell(3);
    atlas.publishPending();

    QCOMPARE(atlas.current.texRowNum, 2);
    QCOMPARE(atlas.current.texColNum, 2);
    QCOMPARE(atlas.current.shellIndex, 1);
    QCOMPARE(atlas.current.cells.keys(), QList<qint32>({3, 8}));
    QCOMPARE(atlas.current.cells[8].payload, static_cast<void*>(&atlas));
    QCOMPARE(ColorAtlas::placeOf(atlas.current.cells[3]), QPoint(1, 0));

    QVERIFY(atlas.pending.cells.isEmpty());
    QCOMPARE(atlas.pending.texRowNum, 2);
    QCOMPARE(atlas.pending.texColNum, 2);
    QCOMPARE(atlas.pending.shellIndex, 1);
    QCOMPARE(ColorAtlas::placeOf(atlas.allocateCell(9)), QPoint(1, 1));
}

void ImageManagerThreadTest::keepsTheCellOfAKeyThatIsCurrent()
{
    ColorAtlas atlas;
    atlas.allocateCell(5);
    atlas.publishPending();
    atlas.current.cells[5].painted = true;
    atlas.allocateCell(5);
    atlas.allocateCell(6);
    atlas.publishPending();

    QCOMPARE(ColorAtlas::placeOf(atlas.current.cells[5]), QPoint(0, 0));
    QVERIFY(atlas.current.cells[5].painted);
    QCOMPARE(ColorAtlas::placeOf(atlas.current.cells[6]), QPoint(1, 1));
    QVERIFY(atlas.pending.cells.isEmpty());
    // The place that was dropped stays empty.
    QCOMPARE(atlas.current.shellIndex, 2);
    QCOMPARE(ColorAtlas::placeOf(atlas.allocateCell(7)), QPoint(0, 1));
}

void ImageManagerThreadTest::doesWhatItsModeSays_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("isBuilt");
    QTest::addColumn<QStringList>("builds");
    const QStringList initial{"initial", "repaint"};
    const QStringList repaint{"repaint"};
    const QStringList reload{"reload", "repaint"};
    QTest::newRow("first build") << 0 << false << initial;
    QTest::newRow("repaint before the first build") << 1 << false << QStringList();
    QTest::newRow("reload before the first build") << 2 << false << QStringList();
    QTest::newRow("first build again") << 0 << true << initial;
    QTest::newRow("repaint") << 1 << true << repaint;
    QTest::newRow("reload") << 2 << true << reload;
}

void ImageManagerThreadTest::doesWhatItsModeSays()
{
    QFETCH(int, mode);
    QFETCH(bool, isBuilt);
    QFETCH(QStringList, builds);
    ColorAtlas atlas;
    atlas.firstIds = {1};
    atlas.addCell(2, QString());
    FinishLog log(atlas);
    if (isBuilt)
        atlas.setInitialized();
    QCOMPARE(atlas.isInitialized(), isBuilt);
    // A new thread does its first build without being told.
    if (mode != BUILD_INITIAL || isBuilt)
        atlas.setMode(static_cast<E_BUILD_MODE>(mode));
    atlas.run();
    QCOMPARE(atlas.takeBuilds(), builds);
    QCOMPARE(log.finishes.size(), builds.isEmpty() ? 0 : 1);
    QCOMPARE(atlas.isInitialized(), !builds.isEmpty());
}

void ImageManagerThreadTest::emitsFromTheWorker()
{
    ColorAtlas atlas;
    atlas.firstIds = {1};
    FinishLog log(atlas);
    atlas.start();
    atlas.wait();
    QCOMPARE(log.finishes.size(), 1);
    QCOMPARE(log.finishes.first().emitter, static_cast<QThread*>(&atlas));
}

void ImageManagerThreadTest::emitsTheOutputAndTheCurrentGrid()
{
    ColorAtlas atlas;
    atlas.firstIds = idsFrom(1, 3);
    FinishLog log(atlas);
    atlas.run();
    QCOMPARE(log.finishes.size(), 1);
    const Finish finish = log.finishes.first();
    QCOMPARE(finish.image, atlas.output);
    QCOMPARE(finish.config.texRowNum, 2);
    QCOMPARE(finish.config.texColNum, 2);
    QCOMPARE(finish.config.shellIndex, 2);
    QCOMPARE(finish.config.cells.keys(), QList<qint32>({1, 2, 3}));
    QVERIFY(finish.config.cells[2].painted);
    // Bottom row first: what is in the top row of the grid is in the last row of the image.
    QVERIFY(atlas.cellShows(finish.image, {0, 1}, ColorAtlas::colorOf(1)));
    QVERIFY(atlas.cellShows(finish.image, {1, 1}, ColorAtlas::colorOf(2)));
    QVERIFY(atlas.cellShows(finish.image, {1, 0}, ColorAtlas::colorOf(3)));

    // What was handed out does not change with the atlas.
    atlas.markForRepaint(2);
    QVERIFY(finish.config.cells[2].painted);
}

void ImageManagerThreadTest::emitsWhenNothingNewWasDrawn()
{
    BuiltAtlas atlas(idsFrom(1, 3));
    FinishLog log(atlas);
    const QImage before = atlas.output.copy();
    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>());
    QCOMPARE(log.finishes.size(), 1);
    QCOMPARE(log.finishes.first().image, before);
}

void ImageManagerThreadTest::emitsANullImageOfAnEmptyGrid()
{
    ColorAtlas atlas;
    FinishLog log(atlas);
    atlas.run();
    QCOMPARE(log.finishes.size(), 1);
    QVERIFY(log.finishes.first().image.isNull());
    QCOMPARE(log.finishes.first().config.texRowNum, 0);

    atlas.allocateCell(1);
    atlas.setMode(BUILD_REPAINT);
    atlas.run();
    QVERIFY(atlas.cellShows(atlas.canvas, {0, 0}, ColorAtlas::colorOf(1)));
}

void ImageManagerThreadTest::paintsInTheOrderOfKeys()
{
    // The very lowest number is no id.
    constexpr qint32 least = std::numeric_limits<qint32>::min() + 1;
    constexpr qint32 greatest = std::numeric_limits<qint32>::max();
    ColorAtlas atlas;
    atlas.firstIds = {300, 7, greatest, 0, -5, least, 42, greatest - 1, least + 1};
    atlas.run();
    QCOMPARE(atlas.takePaintedIds(), QVector<qint32>({least, least + 1, -5, 0, 7, 42, 300, greatest - 1, greatest}));
}

void ImageManagerThreadTest::takesEachCellForPaintedOnce()
{
    BuiltAtlas atlas(idsFrom(1, 4));
    for (const SImageCell& cell : qAsConst(atlas.current.cells))
        QVERIFY(cell.painted);
    atlas.addCell(9, QString());
    QVERIFY(!atlas.pending.cells.value(9).painted);
    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>({9}));
    QVERIFY(atlas.current.cells.value(9).painted);
    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>());
}

void ImageManagerThreadTest::keepsCellsAndPixelsInPlaceOverGrowths()
{
    BuiltAtlas atlas({0});
    for (int edge = 2; edge <= 41; ++edge) {
        // The new shell is full after one round, and has its first place taken after the next.
        const qint32 firstNew = atlas.current.cells.size();
        const QMap<qint32, SImageCell> before = atlas.current.cells;
        while (atlas.pending.texRowNum < edge || (edge % 2 == 0 && atlas.pending.shellIndex < 2 * edge - 1))
            atlas.addCell(firstNew + atlas.pending.cells.size(), QString());
        const qint32 lastNew = firstNew + atlas.pending.cells.size() - 1;

        // Only the new cells are painted; all others come from the canvas before.
        QCOMPARE(atlas.paintedByRepaint(), idsFrom(firstNew, lastNew));
        QCOMPARE(atlas.canvas.size(), QSize(edge, edge) * atlas.cellEdge);
        for (const SImageCell& cell : before)
            QCOMPARE(ColorAtlas::placeOf(atlas.current.cells[cell.id]), ColorAtlas::placeOf(cell));
        QCOMPARE(atlas.canvas, pictureOfCells(atlas));
    }
}

void ImageManagerThreadTest::losesItsPixelsWithACanvasThatCannotBeMade()
{
    BuiltAtlas atlas({1});
    FinishLog log(atlas);
    const int cellEdge = std::exchange(atlas.cellEdge, 1 << 30);
    atlas.markForRepaint(1);
    atlas.paintedByRepaint();
    QVERIFY(atlas.canvas.isNull());
    QCOMPARE(log.finishes.size(), 1);
    QVERIFY(log.finishes.first().image.isNull());
    QVERIFY(atlas.current.cells.value(1).painted);

    // With memory again the atlas goes on; the pixels of before are gone until they are asked for.
    atlas.cellEdge = cellEdge;
    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>());
    QVERIFY(atlas.cellShows(atlas.canvas, {0, 0}, nothing));
    atlas.markForRepaint(1);
    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>({1}));
    QVERIFY(atlas.cellShows(atlas.canvas, {0, 0}, ColorAtlas::colorOf(1)));
}

void ImageManagerThreadTest::turnsTheBytesOfItsCanvas_data()
{
    QTest::addColumn<int>("height");
    for (const int height : {1, 2, 63, 64, 65, 128, 1000})
        QTest::addRow("%d rows", height) << height;
}

void ImageManagerThreadTest::turnsTheBytesOfItsCanvas()
{
    QFETCH(int, height);
    BuiltAtlas atlas({1});
    atlas.canvas = QImage(12, height, QImage::Format_Alpha8);
    std::mt19937 random(12);
    std::generate_n(atlas.canvas.bits(), atlas.canvas.sizeInBytes(),
                    [&random] { return static_cast<uchar>(random()); });

    const QImage turned = atlas.canvasUpsideDown(QImage::Format_Grayscale8);
    QCOMPARE(turned.format(), QImage::Format_Grayscale8);
    QCOMPARE(turned.size(), atlas.canvas.size());
    for (int row = 0; row < height; ++row) {
        const uchar* const bytes = atlas.canvas.constScanLine(row);
        QVERIFY(std::equal(bytes, bytes + 12, turned.constScanLine(height - 1 - row)));
    }
}

void ImageManagerThreadTest::marksPendingAndCurrentCells()
{
    BuiltAtlas atlas(idsFrom(1, 3));
    // In both grids, in the pending one only, in the current one only.
    atlas.allocateCell(1).painted = true;
    atlas.allocateCell(9).painted = true;
    atlas.allocateCell(8).painted = true;
    for (const qint32 id : {1, 9, 2})
        atlas.markForRepaint(id);
    QVERIFY(!atlas.pending.cells.value(1).painted);
    QVERIFY(!atlas.pending.cells.value(9).painted);
    QVERIFY(atlas.pending.cells.value(8).painted);
    QVERIFY(!atlas.current.cells.value(1).painted);
    QVERIFY(!atlas.current.cells.value(2).painted);
    QVERIFY(atlas.current.cells.value(3).painted);
}

void ImageManagerThreadTest::marksNothingUnderAnUnknownKey()
{
    BuiltAtlas atlas(idsFrom(1, 3));
    atlas.markForRepaint(77);
    QVERIFY(atlas.pending.cells.isEmpty());
    QCOMPARE(atlas.current.cells.size(), 3);
    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>());
}

void ImageManagerThreadTest::paintsAMarkedCellAgain()
{
    BuiltAtlas atlas(idsFrom(1, 3));
    atlas.canvas.fill(Qt::white);
    atlas.markForRepaint(2);
    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>({2}));
    QVERIFY(atlas.cellShows(atlas.canvas, {1, 0}, ColorAtlas::colorOf(2)));
    QVERIFY(atlas.cellShows(atlas.canvas, {0, 0}, qRgb(255, 255, 255)));
}

/// Of the cells 1 to 5 the second and the third are marked; while the run is held at the third, one more mark comes.
void ImageManagerThreadTest::losesNoMarkDuringARun_data()
{
    using Ids = QVector<qint32>;
    QTest::addColumn<qint32>("marked");
    QTest::addColumn<Ids>("inThisRun");
    QTest::addColumn<Ids>("inTheNextRun");
    QTest::newRow("passed over") << 1 << Ids{2, 3} << Ids{1};
    QTest::newRow("already painted") << 2 << Ids{2, 3} << Ids{2};
    QTest::newRow("being painted") << 3 << Ids{2, 3} << Ids{3};
    QTest::newRow("the next one") << 4 << Ids{2, 3, 4} << Ids{};
    QTest::newRow("not yet reached") << 5 << Ids{2, 3, 5} << Ids{};
}

void ImageManagerThreadTest::losesNoMarkDuringARun()
{
    QFETCH(qint32, marked);
    QFETCH(QVector<qint32>, inThisRun);
    QFETCH(QVector<qint32>, inTheNextRun);
    BuiltAtlas atlas(idsFrom(1, 5));
    atlas.markForRepaint(2);
    atlas.markForRepaint(3);
    Gate gate;
    atlas.startHeldAt(3, gate);
    const bool isFreeDuringPainting = atlas.mutex.tryLock();
    if (isFreeDuringPainting) {
        atlas.mutex.unlock();
        atlas.markForRepaint(marked);
    }
    QCOMPARE(atlas.paintedUntilEndOf(gate), inThisRun);
    QVERIFY(isFreeDuringPainting);
    QCOMPARE(atlas.paintedByRepaint(), inTheNextRun);
}

void ImageManagerThreadTest::leavesRequestsDuringARunToTheNext()
{
    BuiltAtlas atlas(idsFrom(1, 4));
    FinishLog log(atlas);
    atlas.markForRepaint(3);
    Gate gate;
    atlas.startHeldAt(3, gate);
    const SImageCell requested = atlas.addCell(9, QString());
    QCOMPARE(atlas.paintedUntilEndOf(gate), QVector<qint32>({3}));

    QCOMPARE(ColorAtlas::placeOf(requested), QPoint(2, 0));
    QCOMPARE(log.finishes.first().config.texRowNum, 2);
    QVERIFY(!log.finishes.first().config.cells.contains(9));
    QCOMPARE(atlas.canvas.size(), QSize(2, 2) * atlas.cellEdge);

    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>({9}));
    QCOMPARE(log.finishes.last().config.texRowNum, 3);
    QVERIFY(atlas.cellShows(atlas.canvas, {2, 0}, ColorAtlas::colorOf(9)));
}

/// With thousands of cells, all else that a run does with them takes longer than a request may wait.
void ImageManagerThreadTest::needsTheLockOfNewCellsOnlyToPublish()
{
    BuiltAtlas atlas(idsFrom(1, 5));
    atlas.markForRepaint(3);
    atlas.markForRepaint(5);
    Gate gate;
    atlas.startHeldAt(3, gate);
    const bool isFree = atlas.mutex.tryLock();
    gate.open();
    const bool hasEnded = atlas.wait(QDeadlineTimer(10'000));
    if (isFree)
        atlas.mutex.unlock();
    QCOMPARE(atlas.paintedUntilEndOf(gate), QVector<qint32>({3, 5}));
    QVERIFY(isFree);
    QVERIFY(hasEnded);
}

/// Even where it is marked again at once. Worth running under ThreadSanitizer, like the one after it.
void ImageManagerThreadTest::givesACellToOneOfSeveralThreads()
{
    const QVector<qint32> ids = idsFrom(1, 2000);
    BuiltAtlas atlas(ids);
    for (const qint32 id : ids)
        atlas.markForRepaint(id);
    atlas.beginRepaint(atlas.cellEdge, QImage::Format_RGBA8888);

    QVector<qint32> taken[4];
    std::vector<std::thread> threads;
    for (QVector<qint32>& own : taken) {
        threads.emplace_back([&atlas, &own] {
            for (SImageCell cell; atlas.takeUnpaintedCell(cell);) {
                own.append(cell.id);
                atlas.markForRepaint(cell.id);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    QVector<qint32> all;
    for (const QVector<qint32>& own : taken)
        all += own;
    std::sort(all.begin(), all.end());
    QCOMPARE(all, ids);
}

void ImageManagerThreadTest::staysWholeUnderRequestsAndMarksBesideRuns()
{
    BuiltAtlas atlas(idsFrom(1, 20));
    std::mt19937 random(20);
    qint32 known = 20;
    for (int run = 0; run < 300; ++run) {
        atlas.setMode(BUILD_REPAINT);
        atlas.start();
        for (int request = 0; request < 20; ++request) {
            atlas.addCell(++known, QString());
            atlas.markForRepaint(1 + static_cast<qint32>(random() % static_cast<unsigned>(known)));
        }
        atlas.wait();
    }
    atlas.paintedByRepaint();

    QCOMPARE(atlas.paintedByRepaint(), QVector<qint32>());
    QVERIFY(atlas.pending.cells.isEmpty());
    QCOMPARE(atlas.current.cells.size(), known);
    ColorAtlas reference;
    for (qint32 id = 1; id <= known; ++id) {
        const QPoint place = ColorAtlas::placeOf(reference.allocateCell(id));
        QCOMPARE(ColorAtlas::placeOf(atlas.current.cells.value(id)), place);
        QVERIFY(atlas.cellShows(atlas.canvas, place, ColorAtlas::colorOf(id)));
    }
}

QTEST_GUILESS_MAIN(ImageManagerThreadTest)

#include "ImageManagerThreadTest.moc"
