#include "atlas/ImageManagerThread.h"

#include "atlas/DoTogether.h"

#include <QMutexLocker>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>
#include <utility>

namespace
{

/// No cell has this id.
constexpr qint32 lowestId = std::numeric_limits<qint32>::min();

} // namespace

ImageManagerThread::ImageManagerThread(QObject* parent) : QThread(parent)
{
    qRegisterMetaType<SImageConfig>("SImageConfig");
}

ImageManagerThread::~ImageManagerThread()
{
    wait();
}

qint32 ImageManagerThread::imageId(E_IMAGE_KIND /*kind*/, const QString& /*name*/)
{
    return 0;
}

void ImageManagerThread::markForRepaint(qint32 id)
{
    const QMutexLocker currentLocker(&currentMutex);
    const QMutexLocker locker(&mutex);
    for (SImageConfig* grid : {&pending, &current}) {
        const auto cell = grid->cells.find(id);
        if (cell != grid->cells.end())
            cell->painted = false;
    }
}

void ImageManagerThread::run()
{
    if (mode == BUILD_INITIAL)
        buildInitial();
    else if (!initialized)
        return;
    else if (mode == BUILD_REPAINT)
        repaint();
    else
        buildReload();
    Q_EMIT signalFinished(output, currentGrid());
}

/// A copy of the grid that shares nothing with it: were they to share, the next mark would have to copy all cells.
SImageConfig ImageManagerThread::currentGrid()
{
    const QMutexLocker locker(&currentMutex);
    SImageConfig grid = current;
    grid.cells.detach();
    return grid;
}

SImageCell& ImageManagerThread::allocateCell(qint32 key)
{
    const bool shellIsFull = pending.texRowNum == 0 || pending.shellIndex >= pending.texRowNum - 1 + pending.texColNum;
    if (shellIsFull) {
        ++pending.texRowNum;
        ++pending.texColNum;
        pending.shellIndex = 0;
    }

    SImageCell cell;
    cell.id = key;
    const bool inNewColumn = pending.shellIndex < pending.texRowNum;
    cell.texRowIdx = inNewColumn ? pending.shellIndex : pending.texRowNum - 1;
    cell.texColIdx = inNewColumn ? pending.texColNum - 1 : pending.shellIndex - pending.texRowNum;
    ++pending.shellIndex;
    return *pending.cells.insert(key, cell);
}

void ImageManagerThread::publishPending()
{
    const QMutexLocker currentLocker(&currentMutex);
    QMap<qint32, SImageCell> newCells;
    {
        const QMutexLocker locker(&mutex);
        current.texRowNum = pending.texRowNum;
        current.texColNum = pending.texColNum;
        current.shellIndex = pending.shellIndex;
        newCells.swap(pending.cells);
    }
    for (auto cell = newCells.cbegin(); cell != newCells.cend(); ++cell) {
        if (!current.cells.contains(cell.key()))
            current.cells.insert(cell.key(), cell.value());
    }
}

void ImageManagerThread::beginRepaint(int cellEdge, QImage::Format format)
{
    publishPending();
    lastTakenId = lowestId;

    const QSize size = QSize(current.texColNum, current.texRowNum) * cellEdge;
    if (canvas.size() == size)
        return;
    // Where there is no memory for the canvas it becomes a null image. Its cells count as painted all the same.
    const bool isFirst = canvas.isNull();
    canvas = isFirst ? QImage(size, format) : canvas.copy(QRect({0, 0}, size));
    if (isFirst)
        canvas.fill(Qt::transparent);
}

bool ImageManagerThread::takeUnpaintedCell(SImageCell& cell)
{
    const QMutexLocker locker(&currentMutex);
    auto next = current.cells.upperBound(lastTakenId);
    while (next != current.cells.end() && next->painted)
        ++next;
    if (next == current.cells.end())
        return false;
    next->painted = true;
    cell = *next;
    lastTakenId = cell.id;
    return true;
}

QImage ImageManagerThread::canvasUpsideDown(QImage::Format format) const
{
    QImage turned(canvas.size(), format);
    if (turned.isNull())
        return turned;
    const int rows = canvas.height();
    const auto rowBytes = static_cast<std::size_t>(canvas.bytesPerLine());
    const uchar* const top = canvas.constBits();
    uchar* const turnedTop = turned.bits();

    constexpr int bandRows = 64; // so that threads stay clear of each other's pages
    std::atomic<int> nextBand{0};
    doTogether([&] {
        for (int first = bandRows * nextBand++; first < rows; first = bandRows * nextBand++) {
            for (int row = first; row < std::min(first + bandRows, rows); ++row) {
                const auto turnedRow = static_cast<std::size_t>(rows - 1 - row);
                std::memcpy(turnedTop + turnedRow * rowBytes, top + static_cast<std::size_t>(row) * rowBytes, rowBytes);
            }
        }
    });
    return turned;
}
