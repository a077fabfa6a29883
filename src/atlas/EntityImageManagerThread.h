#pragma once

#include "atlas/ImageManagerThread.h"
#include "atlas/SEntityPayload.h"

#include <QMap>
#include <QString>

#include <deque>

/// Paints the atlas of node icons, in cells of 256 pixels: three badges from the resources, all icons of the entity and
/// the float directory, and any image file that is asked for by its path.
///
/// Icons go by name, which is the leaf name of their file. The directories and the colour tables beside them are
/// relative to the working directory of the process.
class EntityImageManagerThread : public ImageManagerThread
{
    Q_OBJECT

public:
    explicit EntityImageManagerThread(QObject* parent = nullptr);
    ~EntityImageManagerThread() override;

    /// The id of the image. An unknown icon has that of the first icon of all, an unknown file has 0.
    qint32 imageId(E_IMAGE_KIND kind, const QString& name) override;
    /// Hands out a cell for the image file `name`; `key` does not matter. The file is first read by the next repaint.
    SImageCell addCell(qint32 key, const QString& name) override;

protected:
    void buildInitial() override;
    /// Brings in new icons, and has all others read again in their places.
    void buildReload() override;
    void repaint() override;

private:
    SImageCell addImage(qint32 id, const QString& path, const QColor& color);
    void addIcons(QMap<QString, qint32>& ids, const QString& imageDirectory, const QString& colorFile);

    QMap<QString, qint32> entityIds;
    qint32 focusId = 1;
    qint32 lockId = 2;
    qint32 combineId = 3;
    QMap<QString, qint32> floatIds;
    QMap<QString, qint32> fileIds;
    /// What the cells point to. Kept as long as the thread, since copies of cells are anywhere.
    std::deque<SEntityPayload> payloads;
};
