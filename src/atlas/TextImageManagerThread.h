#pragma once

#include "atlas/GlyphFace.h"
#include "atlas/ImageManagerThread.h"
#include "atlas/SGlyphMetrics.h"

#include <deque>

/// Paints the atlas of characters, in cells of 76 pixels: at first the printable ASCII characters and the common
/// Chinese ones, later any that a label needs. A character is one UTF-16 code unit; there is no shaping and no kerning.
///
/// The font is looked for in the directory of fonts under the names of two that are common for Chinese. Where there is
/// none every glyph is blank, and cells are handed out all the same.
class TextImageManagerThread : public ImageManagerThread
{
    Q_OBJECT

public:
    explicit TextImageManagerThread(QObject* parent = nullptr);
    ~TextImageManagerThread() override;

    /// Hands out a cell for the character `key`; `name` does not matter. The measures in its payload are final at once.
    SImageCell addCell(qint32 key, const QString& name) override;

protected:
    void buildInitial() override;
    /// Does nothing: characters come from the font and need no second reading.
    void buildReload() override {}
    void repaint() override;

private:
    SImageCell addCharacter(qint32 code);
    void paintGlyph(const SImageCell& cell);

    /// For measures: on the user interface thread, and on the worker in the first build, while the former waits.
    GlyphFace face;
    /// For pixels, on the worker. A face of its own, so that a request never waits for a repaint.
    GlyphFace paintFace;
    /// What the cells point to. Kept as long as the thread, since copies of cells are in all labels.
    std::deque<SGlyphMetrics> metrics;
};
