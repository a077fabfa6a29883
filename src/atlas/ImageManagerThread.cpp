#include "atlas/ImageManagerThread.h"

#include <QMutexLocker>
#include <QPainter>

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

/// A copy of the grid that shares nothing with it, since the one is changed on the user interface thread and the other
/// on the worker.
SImageConfig ImageManagerThread::currentGrid()
{
    const QMutexLocker locker(&mutex);
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
    const QMutexLocker locker(&mutex);
    current.texRowNum = pending.texRowNum;
    current.texColNum = pending.texColNum;
    current.shellIndex = pending.shellIndex;
    for (auto cell = pending.cells.cbegin(); cell != pending.cells.cend(); ++cell) {
        if (!current.cells.contains(cell.key()))
            current.cells.insert(cell.key(), cell.value());
    }
    pending.cells.clear();
}

void ImageManagerThread::repaintCanvas(int cellEdge, QImage::Format format, const PaintCell& paintCell)
{
    publishPending();

    // Where there is no memory for the canvas it becomes a null image. Its cells count as painted all the same.
    QImage grown(current.texColNum * cellEdge, current.texRowNum * cellEdge, format);
    QPainter painter;
    if (!grown.isNull()) {
        grown.fill(Qt::transparent);
        painter.begin(&grown);
        painter.drawImage(0, 0, canvas);
    }
    SImageCell cell;
    for (qint32 lastId = lowestId; takeUnpaintedCell(lastId, cell); lastId = cell.id) {
        if (painter.isActive())
            paintCell(painter, cell, {cell.texColIdx * cellEdge, cell.texRowIdx * cellEdge});
    }
    if (painter.isActive())
        painter.end();
    canvas = std::move(grown);
}

/// Finds the next unpainted cell after an id, in the order of ids, and takes it for painted. The lock is held for one
/// cell at a time, so that a request never waits for pixels.
bool ImageManagerThread::takeUnpaintedCell(qint32 lastId, SImageCell& cell)
{
    const QMutexLocker locker(&mutex);
    auto next = current.cells.upperBound(lastId);
    while (next != current.cells.end() && next->painted)
        ++next;
    if (next == current.cells.end())
        return false;
    next->painted = true;
    cell = *next;
    return true;
}
