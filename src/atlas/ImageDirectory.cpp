#include "atlas/ImageDirectory.h"

#include <QDir>
#include <QFile>
#include <QRegExp>
#include <QStringList>

QMap<QString, QString> scanImages(const QString& directory)
{
    const QDir::Filters filters = QDir::Dirs | QDir::Files | QDir::NoSymLinks | QDir::NoDot | QDir::NoDotDot;
    const QRegExp imageName(QStringLiteral("(.+)\\.png$"));

    QMap<QString, QString> images;
    const QFileInfoList entries = QDir(directory).entryInfoList(filters, QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo& entry : entries) {
        const QString path = directory + QLatin1Char('/') + entry.fileName();
        if (entry.isFile()) {
            QRegExp matcher = imageName;
            images.insert(matcher.indexIn(entry.fileName()) >= 0 ? matcher.cap(1) : QString(), path);
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
    if (!table.open(QIODevice::ReadOnly))
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
