#include "support/TextAtlas.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QtTest>

using namespace NELK;

class TextAtlasFontlessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cellsAreHandedOutWithoutMetrics();
    void newCharactersHaveNoMetricsEither();
    void imageIsBlank();
    void gridGrowsAllTheSame();
    void fileThatIsNoFontIsNoFont();
    void nothingIsLogged();
};

namespace
{

/// What the metrics of a character that cannot be had read as.
QString noMetrics()
{
    return QStringLiteral("character 0: 0 by 0 pixels at (0, 0), advance 0, trim 38");
}

int messages = 0;

void countMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/)
{
    ++messages;
}

} // namespace

void TextAtlasFontlessTest::initTestCase()
{
    const QDir fonts(dataHome() + QStringLiteral("/fonts"));
    for (const char* name : {"msyh.ttf", "msyh.ttc", "simsun.ttc"})
        QVERIFY(!fonts.exists(QLatin1String(name)));
}

void TextAtlasFontlessTest::cellsAreHandedOutWithoutMetrics()
{
    TextAtlas atlas;
    atlas.build();
    QCOMPARE(atlas.grid().cells.size(), 3595);
    QCOMPARE(atlas.manager().texRowNum(), 60);
    QCOMPARE(atlas.manager().texColNum(), 60);
    QCOMPARE(atlas.grid().shellIndex, 114);
    for (const quint16 code : firstCharacters()) {
        const SImageCell cell = atlas.request(code);
        QCOMPARE(cell.id, qint32{code});
        QCOMPARE(metricsOf(cell), noMetrics());
        QVERIFY(cell.painted);
    }
    const SImageCell last = atlas.request(0x77d7);
    QCOMPARE(last.texRowIdx, 59);
    QCOMPARE(last.texColIdx, 53);
}

void TextAtlasFontlessTest::newCharactersHaveNoMetricsEither()
{
    TextAtlas atlas;
    atlas.build();
    const SImageCell cell = atlas.request(0x3042);
    QCOMPARE(cell.id, 0x3042);
    QCOMPARE(cell.texRowIdx, 59);
    QCOMPARE(cell.texColIdx, 54);
    QCOMPARE(metricsOf(cell), noMetrics());
    atlas.tick();
    QCOMPARE(atlas.request(0x3042).payload, cell.payload);
    QCOMPARE(metricsOf(cell), noMetrics());
}

void TextAtlasFontlessTest::imageIsBlank()
{
    TextAtlas atlas;
    atlas.build();
    QCOMPARE(atlas.image().size(), QSize(4560, 4560));
    QCOMPARE(atlas.image().format(), QImage::Format_Grayscale8);
    QVERIFY(isBlank(atlas.image()));
}

void TextAtlasFontlessTest::gridGrowsAllTheSame()
{
    TextAtlas atlas;
    atlas.build();
    for (int i = 0; i < 6; ++i)
        atlas.request(0xac00 + i);
    const SImageCell sixth = atlas.request(0xac05);
    QCOMPARE(sixth.texRowIdx, 0);
    QCOMPARE(sixth.texColIdx, 60);
    atlas.tick();
    QCOMPARE(atlas.manager().texRowNum(), 61);
    QCOMPARE(atlas.manager().texColNum(), 61);
    QCOMPARE(atlas.image().size(), QSize(4636, 4636));
    QVERIFY(isBlank(atlas.image()));
}

void TextAtlasFontlessTest::fileThatIsNoFontIsNoFont()
{
    const QTemporaryDir home;
    QVERIFY(QDir(home.path()).mkpath(QStringLiteral("fonts")));
    QFile text(home.filePath(QStringLiteral("fonts/msyh.ttf")));
    QVERIFY(text.open(QIODevice::WriteOnly));
    QVERIFY(text.write("Not a font, but a text about fonts.\n") > 0);
    text.close();

    const QByteArray givenHome = qgetenv("XDG_DATA_HOME");
    const auto restoreHome = qScopeGuard([&givenHome] { qputenv("XDG_DATA_HOME", givenHome); });
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    TextAtlas atlas;
    atlas.build();
    QCOMPARE(atlas.manager().texRowNum(), 60);
    QCOMPARE(metricsOf(atlas.request('A')), noMetrics());
    QVERIFY(isBlank(atlas.image()));
}

void TextAtlasFontlessTest::nothingIsLogged()
{
    const QtMessageHandler formerHandler = qInstallMessageHandler(countMessage);
    const auto restoreHandler = qScopeGuard([formerHandler] { qInstallMessageHandler(formerHandler); });
    messages = 0;
    {
        TextAtlas atlas;
        atlas.build();
        for (const int code : {0x3042, 0xd83d, 0xffff, 0})
            atlas.request(code);
        atlas.tick();
        QCOMPARE(atlas.grid().cells.size(), 3599);
    }
    QCOMPARE(messages, 0);
}

QTEST_GUILESS_MAIN(TextAtlasFontlessTest)

#include "TextAtlasFontlessTest.moc"
