#pragma once

#include "atlas/SGlyphMetrics.h"

#include <QImage>

#include <ft2build.h>
#include FT_FREETYPE_H

/// One font face of FreeType, rendering glyphs of one size. Not to be used by two threads at one time.
class GlyphFace
{
public:
    GlyphFace() = default;
    ~GlyphFace();
    Q_DISABLE_COPY(GlyphFace)

    /// Opens the first face of a font file for glyphs of `width` by `height` pixels. Without success the object stays
    /// as it is: every glyph is missing.
    void open(const char* path, unsigned width, unsigned height);
    /// Measures a character. `metrics` is left alone if that cannot be done.
    void glyphMetrics(quint16 code, SGlyphMetrics& metrics);
    /// The coverage of a character, or a null image. It lies in memory of FreeType and is good until the next call.
    QImage glyphImage(quint16 code);

private:
    bool render(quint16 code);

    FT_Library library = nullptr;
    FT_Face face = nullptr;
    bool ready = false;
};
