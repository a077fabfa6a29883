#include "atlas/TextImageManagerThread.h"

#include "atlas/TextCell.h"

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QRegExp>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <cctype>

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

/// The product of two coverages, rounded.
int coverageProduct(int one, int other)
{
    const int product = one * other;
    return (product + (product >> 8) + 0x80) >> 8;
}

/// Lays a glyph over what is there, cut off at the border. What QPainter does too, but it takes as long to begin as a
/// glyph takes to render.
void addCoverage(const QImage& glyph, QPoint topLeft, QImage& canvas)
{
    const QRect target = QRect(topLeft, glyph.size()) & canvas.rect();
    for (int y = target.top(); y <= target.bottom(); ++y) {
        const uchar* from = glyph.constScanLine(y - topLeft.y()) + (target.left() - topLeft.x());
        uchar* to = canvas.scanLine(y) + target.left();
        for (int x = 0; x < target.width(); ++x) {
            const int covered = from[x] + coverageProduct(to[x], 255 - from[x]);
            to[x] = static_cast<uchar>(covered);
        }
    }
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
    beginRepaint(textCellEdge, QImage::Format_Alpha8);
    for (SImageCell cell; takeUnpaintedCell(cell);) {
        if (!canvas.isNull())
            paintGlyph(cell);
    }
    // The bytes as they are: a conversion by colour would not keep coverage.
    output = canvasUpsideDown(QImage::Format_Grayscale8);
}

void TextImageManagerThread::paintGlyph(const SImageCell& cell)
{
    const auto& measured = *static_cast<const SGlyphMetrics*>(cell.payload);
    const QImage glyph = paintFace.glyphImage(static_cast<quint16>(cell.id));
    if (glyph.isNull())
        return;
    const QPoint topLeft = QPoint(cell.texColIdx, cell.texRowIdx) * textCellEdge;
    // What hangs far below the baseline still starts within its own cell.
    const int down = std::min(baseline - measured.top, baseline);
    addCoverage(glyph, topLeft + QPoint(measured.left, down), canvas);
}
