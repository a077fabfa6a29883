// render-icons SOURCE_DIR OUTPUT_DIR SIZE
//
// Renders every SVG file below SOURCE_DIR to a PNG file of SIZE x SIZE pixels at the same place below OUTPUT_DIR.

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>

constexpr int maxSize = 4096;

/// 72 dots per inch. Qt would otherwise write the resolution of the machine into the file.
constexpr int dotsPerMeter = 2835;

[[noreturn]] static void fail(const QString& message)
{
    throw std::runtime_error(message.toStdString());
}

static int parseSize(const QString& text)
{
    bool ok = false;
    const int size = text.toInt(&ok);
    if (!ok || size < 1 || size > maxSize)
        fail(QStringLiteral("SIZE must be a whole number from 1 to %1, not \"%2\"").arg(maxSize).arg(text));
    return size;
}

/// The paths of all SVG files below `directory`, relative to it, in an order that does not depend on the file system.
static QStringList findSources(const QDir& directory)
{
    const QFileInfo info(directory.path());
    if (!info.isDir() || !info.isReadable())
        fail(QStringLiteral("%1 is not a readable directory").arg(directory.path()));

    QStringList sources;
    QDirIterator entries(directory.path(), {QStringLiteral("*.svg")}, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        sources.append(directory.relativeFilePath(entries.next()));
    if (sources.isEmpty())
        fail(QStringLiteral("there are no SVG files below %1").arg(directory.path()));
    sources.sort();
    return sources;
}

static QImage renderImage(const QString& source, int size)
{
    QSvgRenderer renderer(source);
    if (!renderer.isValid())
        fail(QStringLiteral("%1 cannot be read as SVG").arg(source));
    const QRectF box = renderer.viewBoxF();
    if (!qFuzzyCompare(box.width(), box.height()))
        fail(QStringLiteral("%1 is not square, so it would be stretched").arg(source));

    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();

    QImage straight = image.convertToFormat(QImage::Format_ARGB32);
    straight.setDotsPerMeterX(dotsPerMeter);
    straight.setDotsPerMeterY(dotsPerMeter);
    return straight;
}

static void writeImage(const QImage& image, const QString& target)
{
    const QString directory = QFileInfo(target).path();
    if (!QDir().mkpath(directory))
        fail(QStringLiteral("%1 cannot be created").arg(directory));

    QImageWriter writer(target, "png");
    writer.setCompression(100);
    if (!writer.write(image))
        fail(QStringLiteral("%1 cannot be written: %2").arg(target, writer.errorString()));
}

static QString targetName(QString source)
{
    source.chop(QFileInfo(source).suffix().size());
    return source + QStringLiteral("png");
}

static void renderTree(const QStringList& arguments)
{
    if (arguments.size() != 4)
        fail(QStringLiteral("usage: render-icons SOURCE_DIR OUTPUT_DIR SIZE"));

    const QDir sourceDirectory(QDir(arguments.at(1)).absolutePath());
    const QDir outputDirectory(QDir(arguments.at(2)).absolutePath());
    const int size = parseSize(arguments.at(3));

    const QStringList sources = findSources(sourceDirectory);
    for (const QString& source : sources)
        writeImage(renderImage(sourceDirectory.filePath(source), size), outputDirectory.filePath(targetName(source)));

    std::cout << sources.size() << " icons of " << size << " pixels in " << outputDirectory.path().toStdString()
              << '\n';
}

int main(int argc, char* argv[])
{
    // No QGuiApplication: painting shapes into an image needs no display, and the sources hold no text.
    const QCoreApplication application(argc, argv);
    try {
        renderTree(QCoreApplication::arguments());
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "render-icons: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
