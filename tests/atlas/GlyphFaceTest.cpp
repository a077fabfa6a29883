#include "atlas/GlyphFace.h"

#include "support/ReferenceFace.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

using namespace NELK;

class GlyphFaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void measuresAsFreeTypeDoes_data();
    void measuresAsFreeTypeDoes();
    void rendersAsFreeTypeDoes_data();
    void rendersAsFreeTypeDoes();
    void takesTheFirstFaceOfACollection();
    void measuresASpaceAndDrawsNothingForIt_data();
    void measuresASpaceAndDrawsNothingForIt();
    void showsTheMissingGlyphForWhatTheFontLacks_data();
    void showsTheMissingGlyphForWhatTheFontLacks();
    void hasNoGlyphsWithoutAFont_data();
    void hasNoGlyphsWithoutAFont();
    void canBeOpenedAfterAFailure();
    void hasNoGlyphWhereTheFontIsBroken();
    void drawsNothingForBitsInsteadOfCoverage();
};

namespace
{

struct Font
{
    const char* name;
    QString file;
};

QList<Font> fonts()
{
    return {{"collection", fontIn(dataHome(QStringLiteral("collection")))},
            {"plain font", fontIn(dataHome(QStringLiteral("plain")))}};
}

/// Characters with every oddity that the fonts know, and some from everywhere.
QList<quint16> sampleCodes()
{
    // Reaching far to the left, above and below the line; without an advance; very high; halves of surrogate pairs.
    QList<quint16> codes{'J', 'j', '_', 0x1eaa, 0x1e00, 0x0323, 0xff3f, 0xfe4e, 0x2592, 0xd83d, 0xde00, 0xe000, 0xffff};
    for (quint16 code = 0; code < 0x100; ++code)
        codes.append(code);
    for (int code = 0x100; code < 0x10000; code += 89)
        codes.append(static_cast<quint16>(code));
    return codes;
}

void addFontsAndSizes()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<unsigned>("width");
    QTest::addColumn<unsigned>("height");
    for (const Font& font : fonts()) {
        QTest::addRow("%s", font.name) << font.file << 60u << 60u;
        QTest::addRow("%s, wide", font.name) << font.file << 45u << 20u;
    }
}

void addFonts()
{
    QTest::addColumn<QString>("file");
    for (const Font& font : fonts())
        QTest::addRow("%s", font.name) << font.file;
}

void openFile(GlyphFace& face, const QString& file, unsigned width = 60, unsigned height = 60)
{
    face.open(QFile::encodeName(file).constData(), width, height);
}

SGlyphMetrics measured(GlyphFace& face, quint16 code)
{
    SGlyphMetrics metrics;
    face.glyphMetrics(code, metrics);
    return metrics;
}

QByteArray coverage(const QImage& image)
{
    QByteArray bytes;
    for (int row = 0; row < image.height(); ++row)
        bytes.append(reinterpret_cast<const char*>(image.constScanLine(row)), image.width());
    return bytes;
}

/// Metrics unlike those of any glyph.
SGlyphMetrics impossibleMetrics()
{
    return {1234567u, -1, -2, 777, 888, -3, 0.123f};
}

/// How the face answers where there is no glyph: it leaves metrics alone and gives no picture.
bool hasNoGlyph(GlyphFace& face, quint16 code)
{
    SGlyphMetrics metrics = impossibleMetrics();
    face.glyphMetrics(code, metrics);
    return metricsText(metrics) == metricsText(impossibleMetrics()) && face.glyphImage(code).isNull();
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64{content.size()});
}

/// A TrueType font in which the outline of every glyph is nonsense. Glyphs without an outline stay as they are.
QByteArray withBrokenOutlines(QByteArray font)
{
    constexpr int headerSize = 12;
    constexpr int entrySize = 16;
    const int tables = qFromBigEndian<quint16>(font.constData() + 4);
    for (int table = 0; table < tables; ++table) {
        const char* entry = font.constData() + headerSize + table * entrySize;
        if (qstrncmp(entry, "glyf", 4) != 0)
            continue;
        const auto start = static_cast<int>(qFromBigEndian<quint32>(entry + 8));
        const auto length = static_cast<int>(qFromBigEndian<quint32>(entry + 12));
        font.replace(start, length, QByteArray(length, '\x7f'));
        break;
    }
    return font;
}

/// A font of bitmaps, one bit a pixel, with the letter A alone.
const char* const bitmapFont = R"(STARTFONT 2.1
FONT -misc-bits-medium-r-normal--60-600-72-72-c-100-iso10646-1
SIZE 60 72 72
FONTBOUNDINGBOX 10 60 0 0
STARTPROPERTIES 5
PIXEL_SIZE 60
FONT_ASCENT 60
FONT_DESCENT 0
CHARSET_REGISTRY "ISO10646"
CHARSET_ENCODING "1"
ENDPROPERTIES
CHARS 1
STARTCHAR A
ENCODING 65
SWIDTH 600 0
DWIDTH 10 0
BBX 9 2 1 3
BITMAP
FF80
8180
ENDCHAR
ENDFONT
)";

} // namespace

void GlyphFaceTest::measuresAsFreeTypeDoes_data()
{
    addFontsAndSizes();
}

void GlyphFaceTest::measuresAsFreeTypeDoes()
{
    QFETCH(QString, file);
    QFETCH(unsigned, width);
    QFETCH(unsigned, height);
    GlyphFace face;
    openFile(face, file, width, height);
    const ReferenceFace reference(file, width, height);
    for (const quint16 code : sampleCodes())
        QCOMPARE(metricsText(measured(face, code)), metricsText(reference.glyph(code).metrics));
}

void GlyphFaceTest::rendersAsFreeTypeDoes_data()
{
    addFontsAndSizes();
}

void GlyphFaceTest::rendersAsFreeTypeDoes()
{
    QFETCH(QString, file);
    QFETCH(unsigned, width);
    QFETCH(unsigned, height);
    GlyphFace face;
    openFile(face, file, width, height);
    const ReferenceFace reference(file, width, height);
    for (const quint16 code : sampleCodes()) {
        const ReferenceFace::Glyph expected = reference.glyph(code);
        const QImage image = face.glyphImage(code);
        QCOMPARE(image.isNull(), expected.coverage.isEmpty());
        if (image.isNull())
            continue;
        QCOMPARE(image.format(), QImage::Format_Alpha8);
        QCOMPARE(image.size(), QSize(expected.metrics.width, expected.metrics.rows));
        QCOMPARE(image.bytesPerLine(), expected.metrics.width);
        QCOMPARE(coverage(image), expected.coverage);
    }
}

void GlyphFaceTest::takesTheFirstFaceOfACollection()
{
    const QString file = fontIn(dataHome(QStringLiteral("collection")));
    GlyphFace face;
    openFile(face, file);
    const QString first = metricsText(ReferenceFace(file, 60, 60, 0).glyph('m').metrics);
    const QString second = metricsText(ReferenceFace(file, 60, 60, 1).glyph('m').metrics);
    QVERIFY(first != second);
    QCOMPARE(metricsText(measured(face, 'm')), first);
}

void GlyphFaceTest::measuresASpaceAndDrawsNothingForIt_data()
{
    addFonts();
}

void GlyphFaceTest::measuresASpaceAndDrawsNothingForIt()
{
    QFETCH(QString, file);
    GlyphFace face;
    openFile(face, file);
    const SGlyphMetrics space = measured(face, ' ');
    QCOMPARE(space.code, 32u);
    QCOMPARE(space.width, 0);
    QCOMPARE(space.rows, 0);
    QVERIFY(space.advance > 0);
    QVERIFY(face.glyphImage(' ').isNull());
}

void GlyphFaceTest::showsTheMissingGlyphForWhatTheFontLacks_data()
{
    addFonts();
}

void GlyphFaceTest::showsTheMissingGlyphForWhatTheFontLacks()
{
    QFETCH(QString, file);
    GlyphFace face;
    openFile(face, file);
    const ReferenceFace reference(file);
    constexpr quint16 privateUse = 0xe000;
    constexpr quint16 highSurrogate = 0xd83d;
    for (const quint16 code : {privateUse, highSurrogate}) {
        QVERIFY(!reference.has(code));
        const ReferenceFace::Glyph expected = reference.missingGlyph(code);
        QCOMPARE(metricsText(measured(face, code)), metricsText(expected.metrics));
        QVERIFY(!expected.coverage.isEmpty());
        QCOMPARE(coverage(face.glyphImage(code)), expected.coverage);
    }
}

void GlyphFaceTest::hasNoGlyphsWithoutAFont_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("content");
    QTest::addRow("no file") << "missing.ttf" << QByteArray();
    QTest::addRow("a file of text") << "text.ttf" << QByteArray("Not a font, but a text about fonts.\n");
    QTest::addRow("an empty file") << "empty.ttf" << QByteArray("");
    QTest::addRow("a directory") << "." << QByteArray();
    QTest::addRow("the head of a font") << "head.ttf" << QByteArray("\x00\x01\x00\x00\x00\x10", 6);
}

void GlyphFaceTest::hasNoGlyphsWithoutAFont()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString path = folder.filePath(fileName);
    if (!content.isNull())
        writeFile(path, content);
    GlyphFace face;
    QVERIFY(hasNoGlyph(face, 'A')); // never opened
    openFile(face, path);
    for (const quint16 code : {u'A', u' ', u'\0'})
        QVERIFY(hasNoGlyph(face, code));
}

void GlyphFaceTest::canBeOpenedAfterAFailure()
{
    const QString file = fontIn(dataHome(QStringLiteral("plain")));
    GlyphFace face;
    openFile(face, file + QStringLiteral(".missing"));
    openFile(face, file);
    QCOMPARE(metricsText(measured(face, 'A')), metricsText(ReferenceFace(file).glyph('A').metrics));
}

void GlyphFaceTest::hasNoGlyphWhereTheFontIsBroken()
{
    QFile intact(fontIn(dataHome(QStringLiteral("plain"))));
    QVERIFY(intact.open(QIODevice::ReadOnly));
    const QTemporaryDir folder;
    const QString broken = folder.filePath(QStringLiteral("broken.ttf"));
    writeFile(broken, withBrokenOutlines(intact.readAll()));

    GlyphFace face;
    openFile(face, broken);
    const QString space = metricsText(ReferenceFace(intact.fileName()).glyph(' ').metrics);
    QCOMPARE(metricsText(measured(face, ' ')), space);
    QVERIFY(hasNoGlyph(face, 'A'));
    QVERIFY(hasNoGlyph(face, 0x4e00));
    QCOMPARE(metricsText(measured(face, ' ')), space); // the face works on
}

void GlyphFaceTest::drawsNothingForBitsInsteadOfCoverage()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("bits.bdf"));
    writeFile(path, bitmapFont);
    GlyphFace face;
    openFile(face, path);
    QCOMPARE(metricsText(measured(face, 'A')), metricsText({65u, 9, 2, 1, 5, 10, 33.0f}));
    QVERIFY(face.glyphImage('A').isNull());
}

QTEST_APPLESS_MAIN(GlyphFaceTest)

#include "GlyphFaceTest.moc"
