#include "support/TextAtlas.h"

#include <QDir>
#include <QMap>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace NELK;

class TextAtlasTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void firstBuildMakesThePrintableAndTheCommonCharacters();
    void cellsStandInShells();
    void metricsAreThoseOfFreeType();
    void imageHoldsTheCoverageOfAllGlyphsUpsideDown();
    void topRowOfCellsIsTheLastOfTheTexture();
    void fiveMoreCharactersFitBeforeTheGridGrows();
    void newCharacterIsMeasuredAtOnceAndPaintedByTheNextTick();
    void sameCodeHasTheSameCell();
    void spaceIsMeasuredButNotPainted();
    void halvesOfASurrogatePairAreCharacters();
    void glyphsBelowTheLineStartInTheirCell_data();
    void glyphsBelowTheLineStartInTheirCell();
    void glyphsReachIntoOtherCellsAndBlend();
    void glyphsAreCutOffAtTheEdgeOfTheImage();
    void requestBeforeTheFirstEventsLeavesABlankCell();
    void requestsDuringARepaintAreMeasuredAndPaintedLater();
    void reloadChangesNothing();
    void fontIsChosenByName_data();
    void fontIsChosenByName();

private:
    /// As it is after the first build. Nothing is asked of it that is new to it.
    TextAtlas m_built;
};

namespace
{

constexpr int cellEdge = 76;
constexpr int baseline = 60;
constexpr int firstCells = 95 + 3500;

/// The cell that is handed out as the `index`-th, counted from 0: its column and row.
QPoint cellPlace(int index)
{
    const int edge = static_cast<int>(std::ceil(std::sqrt(index + 1)));
    const int inShell = index - (edge - 1) * (edge - 1);
    return inShell < edge ? QPoint(edge - 1, inShell) : QPoint(inShell - edge, edge - 1);
}

QPoint placeOf(const SImageCell& cell)
{
    return {cell.texColIdx, cell.texRowIdx};
}

/// The font that the library is to choose.
const ReferenceFace& reference()
{
    static const ReferenceFace face(fontIn(dataHome()));
    return face;
}

/// What the atlas has to look like, painted pixel by pixel.
class ExpectedAtlas
{
public:
    static ExpectedAtlas afterTheFirstBuild()
    {
        static const ExpectedAtlas painted = [] {
            ExpectedAtlas atlas;
            const QList<quint16> codes = firstCharacters();
            atlas.m_cells = codes.size();
            for (int i = 0; i < codes.size(); ++i)
                atlas.paint(codes.at(i), cellPlace(i));
            return atlas;
        }();
        return painted;
    }

    /// The place of the next cell.
    QPoint nextPlace() { return cellPlace(m_cells++); }

    /// Paints a character into a cell. The image first grows to hold all cells that there are.
    void paint(quint16 code, QPoint cell)
    {
        const QPoint lastPlace = cellPlace(m_cells - 1);
        grow((std::max(lastPlace.x(), lastPlace.y()) + 1) * cellEdge);
        const ReferenceFace::Glyph glyph = reference().glyph(code);
        const int left = cell.x() * cellEdge + glyph.metrics.left;
        const int top = cell.y() * cellEdge + std::min(baseline - glyph.metrics.top, baseline);
        for (int i = 0; i < glyph.coverage.size(); ++i) {
            const int x = left + i % glyph.metrics.width;
            const int y = top + i / glyph.metrics.width;
            if (x >= 0 && y >= 0 && x < m_edge && y < m_edge)
                blend(m_coverage[static_cast<std::size_t>(y * m_edge + x)], static_cast<quint8>(glyph.coverage.at(i)));
        }
    }

    /// Where the image, which is upside down, first differs; null where nowhere.
    QString differenceTo(const QImage& image) const
    {
        if (image.format() != QImage::Format_Grayscale8 || image.size() != QSize(m_edge, m_edge))
            return QStringLiteral("format or size");
        for (int y = 0; y < m_edge; ++y) {
            const quint8* actual = image.constScanLine(m_edge - 1 - y);
            const quint8* expected = m_coverage.data() + y * m_edge;
            const int x = static_cast<int>(std::mismatch(expected, expected + m_edge, actual).first - expected);
            if (x < m_edge) {
                return QStringLiteral("%1 instead of %2 in cell (row %3, column %4) at (%5, %6)")
                    .arg(actual[x])
                    .arg(expected[x])
                    .arg(y / cellEdge)
                    .arg(x / cellEdge)
                    .arg(x % cellEdge)
                    .arg(y % cellEdge);
            }
        }
        return {};
    }

    /// How many pixels of a cell are not blank.
    int inkIn(QPoint cell) const
    {
        int ink = 0;
        for (int y = cell.y() * cellEdge; y < (cell.y() + 1) * cellEdge; ++y) {
            const quint8* row = m_coverage.data() + y * m_edge + cell.x() * cellEdge;
            ink += static_cast<int>(std::count_if(row, row + cellEdge, [](quint8 pixel) { return pixel != 0; }));
        }
        return ink;
    }

private:
    void grow(int edge)
    {
        if (edge <= m_edge)
            return;
        const std::vector<quint8> former = m_coverage;
        m_coverage.assign(static_cast<std::size_t>(edge * edge), 0);
        for (int y = 0; y < m_edge; ++y)
            std::copy_n(former.data() + y * m_edge, m_edge, m_coverage.data() + y * edge);
        m_edge = edge;
    }

    /// One coverage over the other, rounded.
    static void blend(quint8& pixel, quint8 over)
    {
        pixel = static_cast<quint8>(over + (2 * pixel * (255 - over) + 255) / 510);
    }

    int m_cells = 0;
    int m_edge = 0;
    std::vector<quint8> m_coverage;
};

/// Characters that the first build does not have.
QList<quint16> hangul(int first, int count)
{
    QList<quint16> codes;
    for (int i = first; i < first + count; ++i)
        codes.append(static_cast<quint16>(0xac00 + i));
    return codes;
}

/// Asks for characters that are to take the next cells, and paints them as one repaint has to: in the order of codes.
void requestAll(TextAtlas& atlas, ExpectedAtlas& expected, const QList<quint16>& codes)
{
    QMap<quint16, QPoint> places;
    for (const quint16 code : codes)
        places.insert(code, expected.nextPlace());
    for (const quint16 code : codes)
        QCOMPARE(placeOf(atlas.request(code)), places.value(code));
    for (auto place = places.cbegin(); place != places.cend(); ++place)
        expected.paint(place.key(), place.value());
}

/// Lays a font of that kind, or what is none, at a path.
void putFont(const QString& path, const QString& kind)
{
    if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkpath(path));
    } else if (kind == QLatin1String("text")) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("no font") > 0);
    } else {
        QVERIFY(QFile::link(QFileInfo(fontIn(dataHome(kind))).canonicalFilePath(), path));
    }
}

/// The pixels of a cell, as the image, upside down, holds them.
QImage pixelsOf(const QImage& image, QPoint cell)
{
    return image.copy(cell.x() * cellEdge, image.height() - (cell.y() + 1) * cellEdge, cellEdge, cellEdge);
}

} // namespace

void TextAtlasTest::initTestCase()
{
    m_built.build();
}

void TextAtlasTest::firstBuildMakesThePrintableAndTheCommonCharacters()
{
    TextAtlas atlas;
    QVERIFY(atlas.image().isNull());
    const QSignalSpy changes(&atlas.manager(), SIGNAL(signalImageChanged()));
    atlas.build();
    QCOMPARE(changes.size(), 1);

    QCOMPARE(atlas.grid().cells.size(), 3595);
    QCOMPARE(atlas.grid().texRowNum, 60);
    QCOMPARE(atlas.grid().texColNum, 60);
    QCOMPARE(atlas.grid().shellIndex, 114);
    QCOMPARE(atlas.manager().texRowNum(), 60);
    QCOMPARE(atlas.manager().texColNum(), 60);
    QCOMPARE(atlas.image().size(), QSize(4560, 4560));
    QCOMPARE(atlas.image().format(), QImage::Format_Grayscale8);
    QCOMPARE(atlas.image().bytesPerLine(), 4560);
    QCOMPARE(atlas.canvas().format(), QImage::Format_Alpha8);
}

void TextAtlasTest::cellsStandInShells()
{
    const QList<quint16> codes = firstCharacters();
    QCOMPARE(codes.size(), firstCells);
    for (int i = 0; i < codes.size(); ++i) {
        const SImageCell cell = m_built.request(codes.at(i));
        QCOMPARE(cell.id, qint32{codes.at(i)});
        QCOMPARE(placeOf(cell), cellPlace(i));
        QVERIFY(cell.painted);
    }
    // The corner by hand: row and column.
    const auto isAt = [this](char character, int row, int column) {
        return placeOf(m_built.request(character)) == QPoint(column, row);
    };
    QVERIFY(isAt(' ', 0, 0) && isAt('!', 0, 1) && isAt('"', 1, 1) && isAt('#', 1, 0));
    QVERIFY(isAt('$', 0, 2) && isAt('%', 1, 2) && isAt('&', 2, 2) && isAt('\'', 2, 0) && isAt('(', 2, 1));
    QCOMPARE(m_built.grid().cells.size(), firstCells);
}

void TextAtlasTest::metricsAreThoseOfFreeType()
{
    for (const quint16 code : firstCharacters())
        QCOMPARE(metricsOf(m_built.request(code)), metricsText(reference().glyph(code).metrics));
}

void TextAtlasTest::imageHoldsTheCoverageOfAllGlyphsUpsideDown()
{
    QCOMPARE(ExpectedAtlas::afterTheFirstBuild().differenceTo(m_built.image()), QString());
    for (int y = 0; y < 4560; ++y)
        QVERIFY(std::equal(m_built.canvas().constScanLine(y), m_built.canvas().constScanLine(y) + 4560,
                           m_built.image().constScanLine(4559 - y)));
}

void TextAtlasTest::topRowOfCellsIsTheLastOfTheTexture()
{
    const SGlyphMetrics mark = reference().glyph('!').metrics;
    const QImage lastRows = m_built.image().copy(cellEdge, 4560 - 76, 76, 76); // of the exclamation mark's column
    const int lineAboveBottom = 75 - (baseline - mark.top);                    // where its upper end lies
    const uchar* upperEnd = lastRows.constScanLine(lineAboveBottom);
    QVERIFY(std::any_of(upperEnd, upperEnd + 76, [](uchar pixel) { return pixel != 0; }));
    QVERIFY(isBlank(lastRows.copy(0, lineAboveBottom + 1, 76, 75 - lineAboveBottom)));
}

void TextAtlasTest::fiveMoreCharactersFitBeforeTheGridGrows()
{
    TextAtlas atlas;
    atlas.build();
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    requestAll(atlas, expected, {0x00e9, 0x0416, 0x3042, 0x9f98, 0xff21});
    QCOMPARE(placeOf(atlas.request(0x00e9)), QPoint(54, 59));
    QCOMPARE(placeOf(atlas.request(0xff21)), QPoint(58, 59));
    atlas.tick();
    QCOMPARE(atlas.manager().texRowNum(), 60);
    QCOMPARE(atlas.grid().shellIndex, 119);
    QCOMPARE(expected.differenceTo(atlas.image()), QString());

    requestAll(atlas, expected, {0x03a9, 0x00df});
    QCOMPARE(placeOf(atlas.request(0x03a9)), QPoint(60, 0));
    QCOMPARE(placeOf(atlas.request(0x00df)), QPoint(60, 1));
    QCOMPARE(atlas.manager().texRowNum(), 60); // until the image is there
    atlas.tick();
    QCOMPARE(atlas.manager().texRowNum(), 61);
    QCOMPARE(atlas.manager().texColNum(), 61);
    QCOMPARE(atlas.grid().shellIndex, 2);
    QCOMPARE(atlas.image().size(), QSize(4636, 4636));
    QCOMPARE(expected.differenceTo(atlas.image()), QString());
}

void TextAtlasTest::newCharacterIsMeasuredAtOnceAndPaintedByTheNextTick()
{
    TextAtlas atlas;
    atlas.build();
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    const quint16 code = 0x3042;
    const QPoint place(54, 59);

    const SImageCell cell = atlas.request(code);
    QCOMPARE(placeOf(cell), place);
    QCOMPARE(metricsOf(cell), metricsText(reference().glyph(code).metrics));
    QVERIFY(!cell.painted);
    QVERIFY(isBlank(pixelsOf(atlas.image(), place)));

    atlas.tick();
    expected.paint(code, expected.nextPlace());
    QVERIFY(expected.inkIn(place) > 0);
    QCOMPARE(expected.differenceTo(atlas.image()), QString());
    const SImageCell painted = atlas.request(code);
    QVERIFY(painted.painted);
    QCOMPARE(placeOf(painted), place);
    QCOMPARE(painted.payload, cell.payload);
}

void TextAtlasTest::sameCodeHasTheSameCell()
{
    TextAtlas atlas;
    atlas.build();
    const SImageCell first = atlas.request(0x00e9);
    const SImageCell again = atlas.request(0x00e9);
    QCOMPARE(placeOf(again), placeOf(first));
    QCOMPARE(again.payload, first.payload);
    atlas.request(0x0416);
    atlas.tick();
    QCOMPARE(placeOf(atlas.request(0x00e9)), placeOf(first));
    QCOMPARE(atlas.request(0x00e9).payload, first.payload);
    QCOMPARE(atlas.grid().cells.size(), firstCells + 2);
}

void TextAtlasTest::spaceIsMeasuredButNotPainted()
{
    const SImageCell cell = m_built.request(' ');
    const auto& space = *static_cast<const SGlyphMetrics*>(cell.payload);
    QCOMPARE(space.code, 32u);
    QCOMPARE(QSize(space.width, space.rows), QSize(0, 0));
    QVERIFY(space.advance > 0);
    QCOMPARE(space.trim, (76.0f - static_cast<float>(space.advance)) * 0.5f);
    QVERIFY(isBlank(pixelsOf(m_built.image(), placeOf(cell))));
}

void TextAtlasTest::halvesOfASurrogatePairAreCharacters()
{
    TextAtlas atlas;
    atlas.build();
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    requestAll(atlas, expected, {0xd83d, 0xde00});
    for (const quint16 code : {quint16{0xd83d}, quint16{0xde00}})
        QCOMPARE(metricsOf(atlas.request(code)), metricsText(reference().missingGlyph(code).metrics));
    QVERIFY(placeOf(atlas.request(0xd83d)) != placeOf(atlas.request(0xde00)));
    atlas.tick();
    QCOMPARE(expected.differenceTo(atlas.image()), QString());
}

void TextAtlasTest::glyphsBelowTheLineStartInTheirCell_data()
{
    QTest::addColumn<quint16>("code");
    QTest::addRow("low line") << quint16{0xff3f};
    QTest::addRow("dashed low line") << quint16{0xfe4d};
    QTest::addRow("centreline low line") << quint16{0xfe4e};
}

void TextAtlasTest::glyphsBelowTheLineStartInTheirCell()
{
    QFETCH(quint16, code);
    TextAtlas atlas;
    atlas.build();
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    const SGlyphMetrics metrics = reference().glyph(code).metrics;
    QVERIFY(metrics.top < 0);
    requestAll(atlas, expected, {code});
    atlas.tick();
    QCOMPARE(expected.differenceTo(atlas.image()), QString());

    // By hand: the first line of the glyph is line 60 of the cell.
    const QImage pixels = pixelsOf(atlas.image(), {54, 59}).mirrored();
    QVERIFY(isBlank(pixels.copy(0, 0, 76, 60)));
    QVERIFY(!isBlank(pixels.copy(0, 60, 76, 1)));
    QVERIFY(!isBlank(pixels.copy(0, 59 + metrics.rows, 76, 1)));
    QVERIFY(isBlank(pixels.copy(0, 60 + metrics.rows, 76, 16 - metrics.rows)));
}

/// The collection has a shade that is higher than a cell, and a dot that stands wholly in the column to the left of its
/// own, where it lies over a low line.
void TextAtlasTest::glyphsReachIntoOtherCellsAndBlend()
{
    TextAtlas atlas;
    atlas.build();
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    requestAll(atlas, expected, {0x2592, 0xff3f, 0x0323, 0x1eaa});
    if (dataHome().endsWith(QLatin1String("collection"))) {
        QVERIFY(reference().glyph(0x2592).metrics.top > baseline);
        QVERIFY(reference().glyph(0x0323).metrics.left < -14);
        QCOMPARE(expected.inkIn({56, 59}), 0);
    }
    atlas.tick();
    QCOMPARE(expected.differenceTo(atlas.image()), QString());
}

void TextAtlasTest::glyphsAreCutOffAtTheEdgeOfTheImage()
{
    TextAtlas atlas;
    atlas.build();
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    QList<quint16> codes = hangul(0, 66);
    codes[0] = 0x1e00;      // deeper than its cell, in the last row
    codes[5] = 0x1eaa;      // higher than its cell, in the first row
    codes[66 - 1] = 0x0323; // left of its cell, in the first column
    requestAll(atlas, expected, codes);
    QCOMPARE(placeOf(atlas.request(0x1e00)), QPoint(54, 59));
    QCOMPARE(placeOf(atlas.request(0x1eaa)), QPoint(60, 0));
    QCOMPARE(placeOf(atlas.request(0x0323)), QPoint(60, 60));
    atlas.tick();
    QCOMPARE(expected.differenceTo(atlas.image()), QString());
}

void TextAtlasTest::requestBeforeTheFirstEventsLeavesABlankCell()
{
    TextAtlas atlas;
    atlas.manager().startInitial();
    QVERIFY(atlas.image().isNull());
    const SImageCell early = atlas.request('A');
    QCOMPARE(placeOf(early), QPoint(54, 59));
    QCOMPARE(metricsOf(early), metricsText(reference().glyph('A').metrics));

    atlas.receive();
    const SImageCell known = atlas.request('A');
    QCOMPARE(placeOf(known), cellPlace('A' - ' '));
    atlas.tick();
    atlas.request(0x00e9);
    atlas.tick();
    QCOMPARE(placeOf(atlas.request('A')), cellPlace('A' - ' '));
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    expected.paint(0x00e9, {55, 59});
    QCOMPARE(expected.differenceTo(atlas.image()), QString());
    QVERIFY(isBlank(pixelsOf(atlas.image(), {54, 59})));
}

/// Metrics are taken on one thread while the other renders: each has a face of its own.
void TextAtlasTest::requestsDuringARepaintAreMeasuredAndPaintedLater()
{
    TextAtlas atlas;
    atlas.build();
    ExpectedAtlas expected = ExpectedAtlas::afterTheFirstBuild();
    requestAll(atlas, expected, hangul(0, 1500));
    QList<SImageCell> later;
    atlas.startTick();
    for (const quint16 code : hangul(1500, 3000)) {
        if (later.size() >= 100 && atlas.thread().isFinished())
            break;
        later.append(atlas.request(code));
    }
    atlas.manager().waitForRun();
    atlas.receive();
    atlas.tick();

    for (const SImageCell& cell : qAsConst(later)) {
        QCOMPARE(placeOf(cell), expected.nextPlace());
        QCOMPARE(metricsOf(cell), metricsText(reference().glyph(static_cast<quint16>(cell.id)).metrics));
    }
    for (const SImageCell& cell : qAsConst(later))
        expected.paint(static_cast<quint16>(cell.id), placeOf(cell));
    QCOMPARE(expected.differenceTo(atlas.image()), QString());
}

void TextAtlasTest::reloadChangesNothing()
{
    TextAtlas atlas;
    atlas.build();
    const QImage before = atlas.image();
    QVERIFY(atlas.manager().startReload());
    atlas.receive();
    QCOMPARE(atlas.image(), before);
    QCOMPARE(atlas.grid().cells.size(), firstCells);
    QCOMPARE(atlas.manager().texRowNum(), 60);
}

void TextAtlasTest::fontIsChosenByName_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("chosen");
    using Files = QStringList;
    QTest::addRow("first") << Files{"msyh.ttf=plain", "msyh.ttc=collection", "simsun.ttc=collection"} << "plain";
    QTest::addRow("second") << Files{"msyh.ttc=collection", "simsun.ttc=plain"} << "collection";
    QTest::addRow("third") << Files{"simsun.ttc=plain"} << "plain";
    QTest::addRow("none") << Files{"simsun.ttf=plain", "MSYH.TTF=plain"} << "none";
    QTest::addRow("directory for the first") << Files{"msyh.ttf=directory", "msyh.ttc=collection"} << "collection";
    QTest::addRow("directories for the first two")
        << Files{"msyh.ttf=directory", "msyh.ttc=directory", "simsun.ttc=plain"} << "plain";
    QTest::addRow("text for the first") << Files{"msyh.ttf=text", "msyh.ttc=collection"} << "none";
}

void TextAtlasTest::fontIsChosenByName()
{
    QFETCH(QStringList, files);
    QFETCH(QString, chosen);
    const QTemporaryDir home;
    const QDir fonts(home.filePath(QStringLiteral("fonts")));
    QVERIFY(fonts.mkpath(QStringLiteral(".")));
    for (const QString& file : qAsConst(files))
        putFont(fonts.filePath(file.section('=', 0, 0)), file.section('=', 1));
    const QString expected = chosen == QLatin1String("none")
                                 ? metricsText(SGlyphMetrics())
                                 : metricsText(ReferenceFace(fontIn(dataHome(chosen))).glyph('m').metrics);

    const QByteArray givenHome = qgetenv("XDG_DATA_HOME");
    const auto restoreHome = qScopeGuard([&givenHome] { qputenv("XDG_DATA_HOME", givenHome); });
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    TextAtlas atlas;
    QCOMPARE(metricsOf(atlas.request('m')), expected);
}

QTEST_GUILESS_MAIN(TextAtlasTest)

#include "TextAtlasTest.moc"
