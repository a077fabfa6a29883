#include "atlas/EntityImageManagerThread.h"

#include "atlas/DoTogether.h"
#include "atlas/ImageDirectory.h"

#include <QFileInfo>
#include <QImageReader>
#include <QMutexLocker>
#include <QPainter>

namespace
{

constexpr int cellEdge = 256;

/// The id of the first icon that the first build finds: what an unknown name shows.
constexpr qint32 firstIconId = 10;

/// Ids only ever go up, for as long as the process runs.
qint32 nextImageId = firstIconId;

const QColor& fallbackColor()
{
    static const QColor red("red");
    return red;
}

/// Whether a picture of this size can be painted, and its memory be had without bringing the process down.
bool isSizeOfPicture(const QSize& size)
{
    constexpr int longestSide = 32767; // as far as the painter's coordinates go
    constexpr qint64 mostPixels = qint64{64} * 1024 * 1024;
    return size.width() <= longestSide && size.height() <= longestSide &&
           qint64{size.width()} * size.height() <= mostPixels;
}

/// The picture in a file, whatever the file's name says of its format, or a null image. What is no regular file is not
/// opened: a pipe would hold the worker for ever.
QImage loadPicture(const QString& path)
{
    if (path.contains(QChar::Null) || !QFileInfo(path).isFile())
        return {};
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    return isSizeOfPicture(reader.size()) ? reader.read() : QImage();
}

/// Paints the picture of a cell over what `place`, which is of the size of a cell, shows.
void paintPicture(const SImageCell& cell, QImage& place)
{
    QImage picture = loadPicture(static_cast<const SEntityPayload*>(cell.payload)->path);
    if (picture.isNull())
        return;
    if (picture.size() != place.size())
        picture = picture.scaled(place.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    QPainter(&place).drawImage(0, 0, picture);
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
    fileIds.insert(name, nextImageId);
    return addImage(nextImageId++, name, QColor("Green"));
}

void EntityImageManagerThread::buildInitial()
{
    // Views find the badges by their place in the grid, which follows from this order.
    addImage(focusId, QStringLiteral(":/imagetag/tools/resource-gen/icon/smallFocus.png"), fallbackColor());
    addImage(lockId, QStringLiteral(":/imagetag/tools/resource-gen/icon/smallLock.png"), fallbackColor());
    addImage(combineId, QStringLiteral(":/imagetag/tools/resource-gen/icon/ic_256_combine.png"), fallbackColor());
    buildReload();
}

void EntityImageManagerThread::buildReload()
{
    addIcons(entityIds, QStringLiteral("entity/zh/256/"), QStringLiteral("entity/zh/EntityColor.txt"));
    addIcons(floatIds, QStringLiteral("Floats/"), QStringLiteral("Floats/FloatColor.txt"));
    setInitialized();
    repaint();
}

SImageCell EntityImageManagerThread::addImage(qint32 id, const QString& path, const QColor& color)
{
    payloads.push_back({path, color});
    SImageCell& cell = allocateCell(id);
    cell.payload = &payloads.back();
    return cell;
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
            ids.insert(image.key(), nextImageId);
            addImage(nextImageId++, image.value(), color);
            continue;
        }
        SImageCell& cell = current.cells[*known];
        cell.painted = false;
        *static_cast<SEntityPayload*>(cell.payload) = {image.value(), color};
    }
}

/// Reading the pictures takes most of a repaint, and no cell reaches into another.
void EntityImageManagerThread::repaint()
{
    constexpr QImage::Format format = QImage::Format_RGBA8888;
    constexpr int pixelBytes = 4;
    beginRepaint(cellEdge, format);
    uchar* const topLeft = canvas.bits();
    const int rowBytes = canvas.bytesPerLine();
    doTogether([this, topLeft, rowBytes] {
        for (SImageCell cell; takeUnpaintedCell(cell);) {
            if (!topLeft)
                continue;
            const qptrdiff offset =
                qptrdiff{rowBytes} * cellEdge * cell.texRowIdx + qptrdiff{pixelBytes} * cellEdge * cell.texColIdx;
            QImage place(topLeft + offset, cellEdge, cellEdge, rowBytes, format);
            paintPicture(cell, place);
        }
    });
    output = canvasUpsideDown(format);
}
