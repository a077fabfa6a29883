#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

namespace NELK
{

/// A folder of its own for a test, which is the working directory as long as the object lives. Paths are relative to
/// it, and folders are made as they are needed.
class IconFolder
{
public:
    IconFolder() { QDir::setCurrent(m_folder.path()); }
    ~IconFolder() { QDir::setCurrent(m_directoryBefore); }
    Q_DISABLE_COPY(IconFolder)

    QString path() const { return m_folder.path(); }

    static void write(const QString& path, const QByteArray& content)
    {
        makeFolderOf(path);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("Cannot write %s", qPrintable(path));
    }

    static void write(const QString& path, const QImage& picture, const char* format = "PNG")
    {
        makeFolderOf(path);
        if (!picture.save(path, format))
            qFatal("Cannot write %s", qPrintable(path));
    }

private:
    static void makeFolderOf(const QString& path)
    {
        if (!QDir().mkpath(QFileInfo(path).path()))
            qFatal("Cannot make the folder of %s", qPrintable(path));
    }

    QString m_directoryBefore = QDir::currentPath();
    QTemporaryDir m_folder;
};

/// An opaque picture in which all pixels nearby differ; one of another seed differs from it in every pixel.
inline QImage opaquePicture(int seed, QSize size = {256, 256})
{
    QImage picture(size, QImage::Format_RGBA8888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, qRgb((x + 40 * seed) % 256, (y + 80 * seed) % 256, (3 * x + 7 * y) % 256));
    }
    return picture;
}

/// A picture of one colour.
inline QImage plainPicture(const QColor& color, QSize size = {256, 256})
{
    QImage picture(size, QImage::Format_RGBA8888);
    picture.fill(color);
    return picture;
}

} // namespace NELK
