#include "atlas/ImageDirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace
{

/// The name of an image: its file name without ".png", or nothing for a file of another name.
QString imageName(const QString& fileName)
{
    const QLatin1String ending(".png");
    const bool isImage = fileName.size() > ending.size() && fileName.endsWith(ending);
    return isImage ? fileName.chopped(ending.size()) : QString();
}

/// Whether a file can be read to its end: it is no pipe, which would hold the worker for ever, and no larger than what
/// fits into memory with ease.
bool isReadableTable(const QFileInfo& file)
{
    constexpr qint64 largestTable = qint64{256} * 1024 * 1024;
    return file.isFile() && file.size() <= largestTable;
}

} // namespace

QMap<QString, QString> scanImages(const QString& directory)
{
    const QDir::Filters filters = QDir::Dirs | QDir::Files | QDir::NoSymLinks | QDir::NoDot | QDir::NoDotDot;
    QMap<QString, QString> images;
    const QFileInfoList entries = QDir(directory).entryInfoList(filters, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo& entry : entries) {
        const QString path = directory + QLatin1Char('/') + entry.fileName();
        if (entry.isFile()) {
            images.insert(imageName(entry.fileName()), path);
        } else if (entry.isDir()) {
            const QMap<QString, QString> nested = scanImages(path);
            for (auto image = nested.cbegin(); image != nested.cend(); ++image)
                images.insert(image.key(), image.value());
        }
    }
    return images;
}

QMap<QString, QColor> loadColors(const QString& file)
{
    QMap<QString, QColor> colors;
    QFile table(file);
    if (!isReadableTable(QFileInfo(file)) || !table.open(QIODevice::ReadOnly))
        return colors;
    while (!table.atEnd()) {
        const QStringList parts = QString::fromLocal8Bit(table.readLine()).split(QLatin1Char(','), Qt::SkipEmptyParts);
        if (parts.size() != 2)
            continue;
        QColor color;
        color.setNamedColor(parts.at(1).trimmed());
        colors.insert(parts.at(0).trimmed(), color);
    }
    return colors;
}
