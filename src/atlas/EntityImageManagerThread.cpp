#include "atlas/EntityImageManagerThread.h"

#include "atlas/ImageDirectory.h"

#include <QImageReader>
#include <QMutexLocker>
#include <QPainter>

namespace
{

constexpr int cellEdge = 256;

/// The id of the first icon that the first build finds: what an unknown name shows.
constexpr qint32 firstIconId = 10;

/// Ids are given once in the process, whatever atlas they are for.
qint32 nextImageId = firstIconId;

const QColor& fallbackColor()
{
    static const QColor red("red");
    return red;
}

/// The picture in a file, or a null image. A file that claims to be larger than any icon could be is not read, as the
/// memory for it might bring the process down.
QImage loadPicture(const QString& path)
{
    constexpr qint64 mostPixels = 64 * 1024 * 1024;
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.isValid() && qint64{size.width()} * size.height() > mostPixels)
        return {};
    return reader.read();
}

void paintPicture(QPainter& painter, const SImageCell& cell, QPoint topLeft)
{
    QImage picture = loadPicture(static_cast<const SEntityPayload*>(cell.payload)->path);
    if (picture.isNull())
        return;
    if (picture.size() != QSize(cellEdge, cellEdge))
        picture = picture.scaled(cellEdge, cellEdge, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    painter.drawImage(topLeft, picture);
}

} // namespace

EntityImageManagerThread::EntityImageManagerThread(QObject* parent) : ImageManagerThread(parent) {}

EntityImageManagerThread::~EntityImageManagerThread()
{
    wait();
}

qint32 EntityImageManagerThread::imageId(E_IMAGE_KIND kind, const QString& name)
{
    switch (kind) {
    case IMAGE_ENTITY:
        return entityIds.value(name, firstIconId);
    case IMAGE_FOCUS:
        return focusId;
    case IMAGE_LOCK:
        return lockId;
    case IMAGE_COMBINE:
        return combineId;
    case IMAGE_FLOAT:
        return floatIds.value(name, firstIconId);
    case IMAGE_FILE:
        return fileIds.value(name);
    }
    return 0;
}

SImageCell EntityImageManagerThread::addCell(qint32 /*key*/, const QString& name)
{
    const QMutexLocker locker(&mutex);
    const qint32 id = addImage(name, QColor("Green"));
    fileIds.insert(name, id);
    return pending.cells.value(id);
}

void EntityImageManagerThread::buildInitial()
{
    // Views find the badges by their place in the grid, which follows from this order.
    addBadge(focusId, QStringLiteral(":/imagetag/tools/resource-gen/icon/smallFocus.png"));
    addBadge(lockId, QStringLiteral(":/imagetag/tools/resource-gen/icon/smallLock.png"));
    addBadge(combineId, QStringLiteral(":/imagetag/tools/resource-gen/icon/ic_256_combine.png"));
    buildReload();
}

void EntityImageManagerThread::buildReload()
{
    addIcons(entityIds, QStringLiteral("entity/zh/256/"), QStringLiteral("entity/zh/EntityColor.txt"));
    addIcons(floatIds, QStringLiteral("Floats/"), QStringLiteral("Floats/FloatColor.txt"));
    setInitialized();
    repaint();
}

void EntityImageManagerThread::addBadge(qint32 id, const QString& resource)
{
    payloads.push_back({resource, fallbackColor()});
    allocateCell(id).payload = &payloads.back();
}

qint32 EntityImageManagerThread::addImage(const QString& path, const QColor& color)
{
    payloads.push_back({path, color});
    allocateCell(nextImageId).payload = &payloads.back();
    return nextImageId++;
}

/// Adds the icons of a directory that are new, and has those that are known read again.
void EntityImageManagerThread::addIcons(QMap<QString, qint32>& ids, const QString& imageDirectory,
                                        const QString& colorFile)
{
    const QMap<QString, QString> images = scanImages(imageDirectory);
    const QMap<QString, QColor> colors = loadColors(colorFile);
    for (auto image = images.cbegin(); image != images.cend(); ++image) {
        const QColor color = colors.value(image.key(), fallbackColor());
        const auto known = ids.constFind(image.key());
        if (known == ids.constEnd()) {
            ids.insert(image.key(), addImage(image.value(), color));
            continue;
        }
        SImageCell& cell = current.cells[*known];
        cell.painted = false;
        *static_cast<SEntityPayload*>(cell.payload) = {image.value(), color};
    }
}

void EntityImageManagerThread::repaint()
{
    repaintCanvas(cellEdge, QImage::Format_RGBA8888, paintPicture);
    output = canvas.mirrored();
}
