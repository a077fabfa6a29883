#include "atlas/GlyphFace.h"

#include "atlas/TextCell.h"

GlyphFace::~GlyphFace()
{
    if (!ready)
        return;
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}

void GlyphFace::open(const char* path, unsigned width, unsigned height)
{
    if (FT_Init_FreeType(&library) != FT_Err_Ok)
        return;
    if (FT_New_Face(library, path, 0, &face) != FT_Err_Ok) {
        FT_Done_FreeType(library);
        library = nullptr;
        return;
    }
    FT_Select_Charmap(face, FT_ENCODING_UNICODE);
    FT_Set_Pixel_Sizes(face, width, height);
    ready = true;
}

void GlyphFace::glyphMetrics(quint16 code, SGlyphMetrics& metrics)
{
    if (!render(code))
        return;
    const FT_GlyphSlotRec* slot = face->glyph;
    metrics.code = code;
    metrics.width = static_cast<qint32>(slot->bitmap.width);
    metrics.rows = static_cast<qint32>(slot->bitmap.rows);
    metrics.left = slot->bitmap_left;
    metrics.top = slot->bitmap_top;
    metrics.advance = static_cast<qint32>(slot->advance.x >> 6); // from 26.6 fixed point
    metrics.trim = (static_cast<float>(textCellEdge) - static_cast<float>(metrics.advance)) * 0.5f;
}

QImage GlyphFace::glyphImage(quint16 code)
{
    if (!render(code))
        return {};
    const FT_Bitmap& bitmap = face->glyph->bitmap;
    if (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY)
        return {}; // a bitmap of the font's own, with less than a byte for a pixel
    return {static_cast<const uchar*>(bitmap.buffer), static_cast<int>(bitmap.width), static_cast<int>(bitmap.rows),
            bitmap.pitch, QImage::Format_Alpha8};
}

bool GlyphFace::render(quint16 code)
{
    if (!ready || FT_Load_Char(face, code, FT_LOAD_RENDER) != FT_Err_Ok)
        return false;
    return FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL) == FT_Err_Ok;
}
