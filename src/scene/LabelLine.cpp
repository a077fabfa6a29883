#include "scene/LabelLine.h"

#include "atlas/ImageManager.h"
#include "atlas/SGlyphMetrics.h"
#include "atlas/TextCell.h"

#include <QStringList>

namespace NELK
{

LabelLine makeLabelLine(const QString& text)
{
    ImageManager* words = ImageManager::instance(ImageManager::wordIndex);
    LabelLine line;
    line.cells.reserve(text.size());
    for (const QChar character : text) {
        const SImageCell cell = words->requestWord(character.unicode());
        line.lineWidth += static_cast<const SGlyphMetrics*>(cell.payload)->advance;
        line.cells.append(cell);
    }
    line.startOffset = line.lineWidth / 2 - halfTextCell;
    return line;
}

QStringList labelRows(const QString& text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace NELK
