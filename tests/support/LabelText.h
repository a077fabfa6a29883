#pragma once

#include "atlas/ImageManager.h"
#include "atlas/SGlyphMetrics.h"
#include "scene/LabelLine.h"
#include "scene/NodeData.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace NELK
{

/// The cell that the text atlas has for a character.
inline SImageCell cellOf(QChar character)
{
    return ImageManager::instance(1)->requestWord(character.unicode());
}

inline int advanceOf(const SImageCell& cell)
{
    return static_cast<const SGlyphMetrics*>(cell.payload)->advance;
}

/// The sum of the advances.
inline int widthOf(const QString& text)
{
    int width = 0;
    for (const QChar character : text)
        width += advanceOf(cellOf(character));
    return width;
}

/// An ASCII text of that width, or an empty one where there is none.
inline QString textOfWidth(int width)
{
    for (char first = '!'; first <= '~'; ++first) {
        for (char second = '!'; second <= '~'; ++second) {
            for (const char* third : {"", "l", "A", "m", "@"}) {
                const QString text = QChar(first) + QString(QChar(second)) + QLatin1String(third);
                if (widthOf(text) == width)
                    return text;
            }
        }
    }
    return {};
}

/// The characters whose cells a row has.
inline QString textOf(const LabelLine& row)
{
    QString text;
    for (const SImageCell& cell : row.cells)
        text.append(QChar(static_cast<ushort>(cell.id)));
    return text;
}

inline QStringList textsOf(const QList<LabelLine>& rows)
{
    QStringList texts;
    for (const LabelLine& row : rows)
        texts.append(textOf(row));
    return texts;
}

/// Rows without cells.
inline QList<LabelLine> rowsOfWidths(const QList<int>& widths)
{
    QList<LabelLine> rows;
    for (const int width : widths) {
        rows.append(LabelLine());
        rows.last().lineWidth = width;
    }
    return rows;
}

/// For comparisons: all that a node keeps of the size of its text.
inline QString measuresOf(const NodeData& node)
{
    return QStringLiteral("label %1 by %2, set numbers %3 by %4, bound %5")
        .arg(node.labelWidth)
        .arg(node.labelHeight)
        .arg(node.setNumWidth)
        .arg(node.setNumHeight)
        .arg(node.labelBoundWidth);
}

} // namespace NELK
