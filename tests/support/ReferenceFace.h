#pragma once

#include "atlas/SGlyphMetrics.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QtGlobal>

#include <cmath>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace NELK
{

/// A font as FreeType itself renders it, for tests that look at what the library makes of it.
class ReferenceFace
{
public:
    struct Glyph
    {
        SGlyphMetrics metrics;
        /// One byte a pixel, without gaps between the rows.
        QByteArray coverage;
    };

    explicit ReferenceFace(const QString& file, FT_UInt width = 60, FT_UInt height = 60, FT_Long index = 0)
    {
        FT_Init_FreeType(&m_library);
        if (FT_New_Face(m_library, QFile::encodeName(file).constData(), index, &m_face) != FT_Err_Ok)
            qFatal("no font can be read from %s", qPrintable(file));
        FT_Select_Charmap(m_face, FT_ENCODING_UNICODE);
        FT_Set_Pixel_Sizes(m_face, width, height);
    }
    ~ReferenceFace()
    {
        FT_Done_Face(m_face);
        FT_Done_FreeType(m_library);
    }
    Q_DISABLE_COPY(ReferenceFace)

    bool has(quint16 code) const { return FT_Get_Char_Index(m_face, code) != 0; }
    Glyph glyph(quint16 code) const { return glyph(code, FT_Get_Char_Index(m_face, code)); }
    /// What the font shows for a character that it lacks.
    Glyph missingGlyph(quint16 code) const { return glyph(code, 0); }

private:
    Glyph glyph(quint16 code, FT_UInt index) const
    {
        FT_Load_Glyph(m_face, index, FT_LOAD_DEFAULT);
        const FT_GlyphSlot slot = m_face->glyph;
        FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL);
        Glyph glyph;
        glyph.metrics.code = code;
        glyph.metrics.width = static_cast<qint32>(slot->bitmap.width);
        glyph.metrics.rows = static_cast<qint32>(slot->bitmap.rows);
        glyph.metrics.left = slot->bitmap_left;
        glyph.metrics.top = slot->bitmap_top;
        glyph.metrics.advance = static_cast<qint32>(std::floor(static_cast<double>(slot->advance.x) / 64.0));
        glyph.metrics.trim = 38.0f - static_cast<float>(glyph.metrics.advance) / 2.0f;
        for (int row = 0; row < glyph.metrics.rows; ++row) {
            const unsigned char* line = slot->bitmap.buffer + qintptr{row} * slot->bitmap.pitch;
            glyph.coverage.append(reinterpret_cast<const char*>(line), glyph.metrics.width);
        }
        return glyph;
    }

    FT_Library m_library = nullptr;
    FT_Face m_face = nullptr;
};

/// The data home that the test was given, or one that lies beside it.
inline QString dataHome(const QString& name = QStringLiteral("."))
{
    const QString given = QFile::decodeName(qgetenv("XDG_DATA_HOME"));
    return name == QLatin1String(".") ? given : given + QStringLiteral("/../") + name;
}

/// The font in a data home.
inline QString fontIn(const QString& home)
{
    const QString plainFont = home + QStringLiteral("/fonts/msyh.ttf");
    return QFileInfo::exists(plainFont) ? plainFont : home + QStringLiteral("/fonts/msyh.ttc");
}

/// For comparisons: all fields, the float in all its digits.
inline QString metricsText(const SGlyphMetrics& metrics)
{
    return QStringLiteral("character %1: %2 by %3 pixels at (%4, %5), advance %6, trim %7")
        .arg(metrics.code)
        .arg(metrics.width)
        .arg(metrics.rows)
        .arg(metrics.left)
        .arg(metrics.top)
        .arg(metrics.advance)
        .arg(static_cast<double>(metrics.trim), 0, 'g', 9);
}

} // namespace NELK
