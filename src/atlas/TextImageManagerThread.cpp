#include "atlas/TextImageManagerThread.h"

#include "atlas/TextCell.h"

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QPainter>
#include <QRegExp>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace
{

constexpr unsigned glyphSize = 60;
/// From the top of a cell down to the baseline.
constexpr int baseline = 60;

QString fontFile()
{
    const QString fonts = QStandardPaths::writableLocation(QStandardPaths::FontsLocation);
    for (const char* preferred : {"/msyh.ttf", "/msyh.ttc"}) {
        QString file = fonts + QLatin1String(preferred);
        if (QFileInfo(file).isFile())
            return file;
    }
    return fonts + QStringLiteral("/simsun.ttc");
}

QStringList commonCharacters()
{
    QFile list(QStringLiteral(":/imagetag/tools/resource-gen/simpleword_3500.txt"));
    if (!list.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(list.readAll()).split(QRegExp(QStringLiteral("\\s")), Qt::SkipEmptyParts);
}

/// The bytes of an alpha image as a gray image, bottom row first. A conversion by colour would not keep coverage.
QImage coverageUpsideDown(const QImage& alpha)
{
    QImage gray(alpha.size(), QImage::Format_Grayscale8);
    if (gray.isNull())
        return gray;
    const auto rowBytes = static_cast<std::size_t>(alpha.width());
    for (int row = 0; row < alpha.height(); ++row)
        std::memcpy(gray.scanLine(alpha.height() - 1 - row), alpha.constScanLine(row), rowBytes);
    return gray;
}

} // namespace

TextImageManagerThread::TextImageManagerThread(QObject* parent) : ImageManagerThread(parent)
{
    const QByteArray file = fontFile().toLocal8Bit();
    face.open(file.constData(), glyphSize, glyphSize);
    paintFace.open(file.constData(), glyphSize, glyphSize);
}

TextImageManagerThread::~TextImageManagerThread()
{
    wait();
}

SImageCell TextImageManagerThread::addCell(qint32 key, const QString& /*name*/)
{
    const QMutexLocker locker(&mutex);
    return addCharacter(key);
}

void TextImageManagerThread::buildInitial()
{
    for (int code = 0; code < 128; ++code) {
        if (std::isprint(code))
            addCharacter(code);
    }
    const QStringList characters = commonCharacters();
    for (const QString& character : characters)
        addCharacter(character.at(0).unicode());
    setInitialized();
    repaint();
}

SImageCell TextImageManagerThread::addCharacter(qint32 code)
{
    SImageCell& cell = allocateCell(code);
    SGlyphMetrics& measured = metrics.emplace_back();
    face.glyphMetrics(static_cast<quint16>(code), measured);
    cell.payload = &measured;
    return cell;
}

void TextImageManagerThread::repaint()
{
    repaintCanvas(
        textCellEdge, QImage::Format_Alpha8,
        [this](QPainter& painter, const SImageCell& cell, QPoint topLeft) { paintGlyph(painter, cell, topLeft); });
    output = coverageUpsideDown(canvas);
}

void TextImageManagerThread::paintGlyph(QPainter& painter, const SImageCell& cell, QPoint topLeft)
{
    const auto& measured = *static_cast<const SGlyphMetrics*>(cell.payload);
    const QImage glyph = paintFace.glyphImage(static_cast<quint16>(cell.id));
    if (glyph.isNull())
        return;
    // What hangs far below the baseline still starts within its own cell.
    const int down = std::min(baseline - measured.top, baseline);
    painter.drawImage(topLeft + QPoint(measured.left, down), glyph);
}
