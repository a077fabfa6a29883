#pragma once

#include "atlas/ImageManagerThread.h"

#include <QMap>
#include <QMutexLocker>
#include <QPainter>
#include <QPoint>
#include <QStringList>
#include <QVector>

#include <functional>
#include <utility>

/// An atlas whose cells are plain colours, with its inside open to tests. It keeps a log of what it is told to do.
class ColorAtlas : public ImageManagerThread
{
public:
    ~ColorAtlas() override { wait(); }

    using ImageManagerThread::allocateCell;
    using ImageManagerThread::canvas;
    using ImageManagerThread::current;
    using ImageManagerThread::mutex;
    using ImageManagerThread::output;
    using ImageManagerThread::pending;
    using ImageManagerThread::publishPending;
    using ImageManagerThread::run;
    using ImageManagerThread::setInitialized;

    /// Each id has a colour of its own.
    static QRgb colorOf(qint32 id) { return qRgb(id & 0xff, (id >> 8) & 0xff, (id >> 16) & 0xff); }
    /// Column and row, as x and y.
    static QPoint placeOf(const SImageCell& cell) { return {cell.texColIdx, cell.texRowIdx}; }

    qint32 imageId(E_IMAGE_KIND kind, const QString& name) override
    {
        lastKind = kind;
        return names.value(name);
    }

    /// A name gets the next free id, a key without a name is the id itself.
    SImageCell addCell(qint32 key, const QString& name) override
    {
        const QMutexLocker locker(&mutex);
        added.append(QStringLiteral("%1 '%2'").arg(key).arg(name));
        if (name.isEmpty())
            return allocateCell(key);
        names.insert(name, nextNamedId);
        return allocateCell(nextNamedId++);
    }

    /// Whether the whole cell at this place of an image, top row first, has the colour.
    bool cellShows(const QImage& image, QPoint place, QRgb color) const
    {
        for (int y = 0; y < cellEdge; ++y) {
            for (int x = 0; x < cellEdge; ++x) {
                if (image.pixel(place.x() * cellEdge + x, place.y() * cellEdge + y) != color)
                    return false;
            }
        }
        return true;
    }

    QStringList takeBuilds() { return std::exchange(builds, {}); }
    QStringList takeAdded() { return std::exchange(added, {}); }
    QVector<qint32> takePaintedIds() { return std::exchange(paintedIds, {}); }

    int cellEdge = 2;
    /// What the first build puts into the atlas.
    QVector<qint32> firstIds;
    QMap<QString, qint32> names;
    qint32 nextNamedId = 1000;
    E_IMAGE_KIND lastKind = IMAGE_ENTITY;
    /// Called by the worker for each cell that it paints.
    std::function<void(qint32 id)> whenPainting;

protected:
    void buildInitial() override
    {
        builds.append(QStringLiteral("initial"));
        for (const qint32 id : qAsConst(firstIds))
            allocateCell(id);
        setInitialized();
        repaint();
    }

    void buildReload() override
    {
        builds.append(QStringLiteral("reload"));
        setInitialized();
        repaint();
    }

    void repaint() override
    {
        builds.append(QStringLiteral("repaint"));
        beginRepaint(cellEdge, QImage::Format_RGBA8888);
        for (SImageCell cell; takeUnpaintedCell(cell);) {
            paintedIds.append(cell.id);
            if (whenPainting)
                whenPainting(cell.id);
            if (canvas.isNull())
                continue;
            const QRect place(QPoint(cell.texColIdx, cell.texRowIdx) * cellEdge, QSize(cellEdge, cellEdge));
            QPainter(&canvas).fillRect(place, QColor(colorOf(cell.id)));
        }
        output = canvas.mirrored();
    }

private:
    QStringList builds;
    QStringList added;
    QVector<qint32> paintedIds;
};
