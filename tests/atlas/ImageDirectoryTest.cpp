#include "atlas/ImageDirectory.h"
#include "support/IconFolder.h"

#include <QTextCodec>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace NELK;

class ImageDirectoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void imagesGoByTheirLeafNames_data();
    void imagesGoByTheirLeafNames();
    void pathsStartWithTheDirectoryAsItWasGiven_data();
    void pathsStartWithTheDirectoryAsItWasGiven();
    void anyDepthIsScanned();
    void linksArePassedOver();
    void whatIsNeitherFileNorDirectoryIsPassedOver();
    void whatCannotBeListedIsEmpty_data();
    void whatCannotBeListedIsEmpty();
    void anUnreadableDirectoryIsEmpty();

    void colorsGoByTheNameBeforeTheComma_data();
    void colorsGoByTheNameBeforeTheComma();
    void linesWithOtherThanTwoPartsArePassedOver_data();
    void linesWithOtherThanTwoPartsArePassedOver();
    void aColorThatDoesNotParseReadsAsOpaqueBlack_data();
    void aColorThatDoesNotParseReadsAsOpaqueBlack();
    void colorFilesAreInTheEncodingOfTheLocale_data();
    void colorFilesAreInTheEncodingOfTheLocale();
    void aLineMayBeOfAnyLength();
    void aFileThatCannotBeReadIsAnEmptyTable();
};

namespace
{

using Names = QMap<QString, QString>;

/// Takes the rights of an administrator from the process for a while, since to those every file is readable.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_switched(geteuid() == 0 && seteuid(65534) == 0) {}
    ~OrdinaryUser()
    {
        if (m_switched && seteuid(0) != 0)
            qFatal("Cannot become the user again that started this");
    }
    Q_DISABLE_COPY(OrdinaryUser)

    bool isOrdinary() const { return geteuid() != 0; }

private:
    bool m_switched;
};

/// The table that a file of this content makes: names and colours as #aarrggbb, or nothing where they do not parse.
Names colorTable(const QByteArray& content)
{
    const IconFolder folder;
    folder.write("colors.txt", content);
    Names table;
    const QMap<QString, QColor> colors = loadColors("colors.txt");
    for (auto color = colors.cbegin(); color != colors.cend(); ++color)
        table.insert(color.key(), color->isValid() ? color->name(QColor::HexArgb) : QString());
    return table;
}

} // namespace

void ImageDirectoryTest::imagesGoByTheirLeafNames_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<Names>("expected");
    const auto row = [](const char* name, const QStringList& files, const Names& expected) {
        QTest::newRow(name) << files << expected;
    };

    row("sub-directories", {"a.png", "one/b.png", "one/two/three/c.png"},
        {{"a", "icons//a.png"}, {"b", "icons//one/b.png"}, {"c", "icons//one/two/three/c.png"}});
    row("the later directory wins", {"one/x.png", "two/x.png"}, {{"x", "icons//two/x.png"}});
    row("capitals do not come first", {"a/x.png", "B/x.png"}, {{"x", "icons//B/x.png"}});
    row("a directory after the file wins", {"m.png", "n/m.png"}, {{"m", "icons//n/m.png"}});
    row("a file after the directory wins", {"l/m.png", "m.png"}, {{"m", "icons//m.png"}});
    row("a file comes after the directory of its name", {"m/m.png", "m.png"}, {{"m", "icons//m.png"}});
    row("depth does not count", {"a/z/x.png", "b/x.png", "b/a/x.png"}, {{"x", "icons//b/x.png"}});

    row("a dot in the name", {"a.b.png"}, {{"a.b", "icons//a.b.png"}});
    row("a dot at the end of the name", {"a..png"}, {{"a.", "icons//a..png"}});
    row("the ending twice", {"a.png.png"}, {{"a.png", "icons//a.png.png"}});
    row("spaces stay", {" a b .png"}, {{" a b ", "icons// a b .png"}});
    row("a line feed inside", {"a\nb.png"}, {{"a\nb", "icons//a\nb.png"}});
    row("names in both cases", {"a.png", "A.png"}, {{"a", "icons//a.png"}, {"A", "icons//A.png"}});

    row("capital ending", {"a.PNG"}, {{"", "icons//a.PNG"}});
    row("mixed ending", {"a.Png"}, {{"", "icons//a.Png"}});
    row("longer ending", {"a.pngs"}, {{"", "icons//a.pngs"}});
    row("a line feed at the end", {"a.png\n"}, {{"", "icons//a.png\n"}});
    row("no dot", {"apng"}, {{"", "icons//apng"}});
    row("nothing but the ending", {"png"}, {{"", "icons//png"}});
    row("the last without a name wins", {"a.PNG", "C", "b.txt"}, {{"", "icons//C"}});
    row("nor does depth count there", {"a/z.txt", "b.txt", "c/d/y.jpg"}, {{"", "icons//c/d/y.jpg"}});

    row("a directory with the name of an image", {"a.png/b.png"}, {{"b", "icons//a.png/b.png"}});
    row("hidden ones", {".a.png", ".png", ".hidden/b.png", "c.png"}, {{"c", "icons//c.png"}});
}

void ImageDirectoryTest::imagesGoByTheirLeafNames()
{
    QFETCH(QStringList, files);
    const IconFolder folder;
    for (const QString& file : qAsConst(files))
        folder.write("icons/" + file, QByteArray());
    QTEST(scanImages("icons/"), "expected");
}

void ImageDirectoryTest::pathsStartWithTheDirectoryAsItWasGiven_data()
{
    QTest::addColumn<QString>("directory");
    QTest::newRow("no slash") << "icons";
    QTest::newRow("a slash") << "icons/";
    QTest::newRow("two slashes") << "icons//";
    QTest::newRow("not in its shortest form") << "./icons/../icons";
}

void ImageDirectoryTest::pathsStartWithTheDirectoryAsItWasGiven()
{
    QFETCH(QString, directory);
    const IconFolder folder;
    folder.write("icons/a.png", QByteArray());
    folder.write("icons/one/b.png", QByteArray());
    QCOMPARE(scanImages(directory), Names({{"a", directory + "/a.png"}, {"b", directory + "/one/b.png"}}));
    const QString absolute = folder.path() + '/' + directory;
    QCOMPARE(scanImages(absolute), Names({{"a", absolute + "/a.png"}, {"b", absolute + "/one/b.png"}}));
}

void ImageDirectoryTest::anyDepthIsScanned()
{
    const IconFolder folder;
    const QString deep = "icons" + QString("/d").repeated(500) + "/a.png";
    folder.write(deep, QByteArray());
    QCOMPARE(scanImages("icons"), Names({{"a", deep}}));
}

void ImageDirectoryTest::linksArePassedOver()
{
    const IconFolder folder;
    folder.write("icons/real.png", QByteArray());
    folder.write("icons/one/deep.png", QByteArray());
    folder.write("elsewhere/other.png", QByteArray());
    QVERIFY(QFile::link(folder.path() + "/icons/real.png", "icons/toFile.png"));
    QVERIFY(QFile::link(folder.path() + "/elsewhere", "icons/toDirectory"));
    QVERIFY(QFile::link(folder.path() + "/icons", "icons/one/loop"));
    QVERIFY(QFile::link(folder.path() + "/nothing.png", "icons/toNothing.png"));
    QCOMPARE(scanImages("icons"), Names({{"real", "icons/real.png"}, {"deep", "icons/one/deep.png"}}));

    // The directory itself may be one.
    QVERIFY(QFile::link(folder.path() + "/elsewhere", "link"));
    QCOMPARE(scanImages("link/"), Names({{"other", "link//other.png"}}));
}

void ImageDirectoryTest::whatIsNeitherFileNorDirectoryIsPassedOver()
{
    const IconFolder folder;
    folder.write("icons/a.png", QByteArray());
    QVERIFY(mkfifo("icons/pipe.png", 0600) == 0);
    QCOMPARE(scanImages("icons"), Names({{"a", "icons/a.png"}}));
}

void ImageDirectoryTest::whatCannotBeListedIsEmpty_data()
{
    QTest::addColumn<QString>("directory");
    QTest::newRow("missing") << "missing/";
    QTest::newRow("a file") << "file.png";
    QTest::newRow("below a file") << "file.png/icons";
    QTest::newRow("without entries") << "empty/";
}

void ImageDirectoryTest::whatCannotBeListedIsEmpty()
{
    QFETCH(QString, directory);
    const IconFolder folder;
    folder.write("file.png", QByteArray());
    QVERIFY(QDir().mkpath("empty/one/two"));
    QCOMPARE(scanImages(directory), Names());
}

void ImageDirectoryTest::anUnreadableDirectoryIsEmpty()
{
    const IconFolder folder;
    folder.write("icons/a.png", QByteArray());
    folder.write("icons/closed/b.png", QByteArray());
    folder.write("icons/open/c.png", QByteArray());
    QVERIFY(chmod(".", 0755) == 0);
    QVERIFY(chmod("icons/closed", 0) == 0);
    {
        const OrdinaryUser user;
        if (!user.isOrdinary())
            QSKIP("Every directory is readable to this user.");
        QCOMPARE(scanImages("icons"), Names({{"a", "icons/a.png"}, {"c", "icons/open/c.png"}}));
        QCOMPARE(scanImages("icons/closed"), Names());
    }
    QVERIFY(chmod("icons/closed", 0755) == 0);
    QCOMPARE(scanImages("icons/closed"), Names({{"b", "icons/closed/b.png"}}));
}

void ImageDirectoryTest::colorsGoByTheNameBeforeTheComma_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Names>("expected");
    const auto row = [](const char* name, const QByteArray& content, const Names& expected) {
        QTest::newRow(name) << content << expected;
    };

    row("colour name", "a,red\n", {{"a", "#ffff0000"}});
    row("colour name in capitals", "a,LightBlue\n", {{"a", "#ffadd8e6"}});
    row("no colour at all", "a,transparent\n", {{"a", "#00000000"}});
    row("#rgb", "a,#f80\n", {{"a", "#ffff8800"}});
    row("#rrggbb", "a,#12ab9F\n", {{"a", "#ff12ab9f"}});
    row("#aarrggbb", "a,#80123456\n", {{"a", "#80123456"}});
    row("#rrrgggbbb", "a,#fff000888\n", {{"a", "#ffff0088"}});
    row("#rrrrggggbbbb", "a,#ffff00008888\n", {{"a", "#ffff0088"}});

    row("several lines", "a,red\nb,lime\nc,blue\n", {{"a", "#ffff0000"}, {"b", "#ff00ff00"}, {"c", "#ff0000ff"}});
    row("carriage returns", "a,red\r\nb,blue\r\n", {{"a", "#ffff0000"}, {"b", "#ff0000ff"}});
    row("no line end at the end", "a,red\nb,blue", {{"a", "#ffff0000"}, {"b", "#ff0000ff"}});
    row("spaces and tabs around", " \ta b\t , \tblue \t\n", {{"a b", "#ff0000ff"}});
    row("empty parts", ",,a,,,red\n", {{"a", "#ffff0000"}});
    row("a comma at the end of the file", "a,red,", {{"a", "#ffff0000"}});
    row("name of white space", " \t,red\n", {{"", "#ffff0000"}});
    row("names in both cases", "a,red\nA,blue\n", {{"a", "#ffff0000"}, {"A", "#ff0000ff"}});
    row("an ending is part of the name", "a.png,red\n", {{"a.png", "#ffff0000"}});
    row("there are no comments", "# a,red\n", {{"# a", "#ffff0000"}});

    row("a later line wins", "a,red\nb,lime\na,blue\n", {{"a", "#ff0000ff"}, {"b", "#ff00ff00"}});
    row("so does one that does not parse", "a,red\na,nonsense\n", {{"a", ""}});
    row("but not one of three parts", "a,red\na,blue,lime\n", {{"a", "#ffff0000"}});
    row("lines after a bad one count", "\n,\na\na,b,c\na,red\n", {{"a", "#ffff0000"}});
}

void ImageDirectoryTest::colorsGoByTheNameBeforeTheComma()
{
    QFETCH(QByteArray, content);
    QTEST(colorTable(content), "expected");
}

void ImageDirectoryTest::linesWithOtherThanTwoPartsArePassedOver_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray("");
    QTest::newRow("empty line") << QByteArray("\n");
    QTest::newRow("empty lines with carriage returns") << QByteArray("\r\n\r\n");
    QTest::newRow("white space") << QByteArray(" \t\n");
    QTest::newRow("no comma") << QByteArray("red\n");
    QTest::newRow("nothing but commas") << QByteArray(",,,");
    QTest::newRow("nothing before the comma") << QByteArray(",red\n");
    QTest::newRow("nothing after the comma") << QByteArray("a,");
    QTest::newRow("three parts") << QByteArray("a,red,blue\n");
    QTest::newRow("four parts") << QByteArray("a,rgb(1,2,3)\n");
    QTest::newRow("a part of white space") << QByteArray("a, ,red\n");
    // The line end is read with its line, and so follows the last comma as a part.
    QTest::newRow("a comma before the line end") << QByteArray("a,red,\n");
    QTest::newRow("a carriage return ends no line") << QByteArray("a,red\rb,blue\r");
}

void ImageDirectoryTest::linesWithOtherThanTwoPartsArePassedOver()
{
    QFETCH(QByteArray, content);
    QCOMPARE(colorTable(content), Names());
    QCOMPARE(colorTable("z,red\n" + content), Names({{"z", "#ffff0000"}}));
}

void ImageDirectoryTest::aColorThatDoesNotParseReadsAsOpaqueBlack_data()
{
    QTest::addColumn<QByteArray>("color");
    QTest::newRow("unknown name") << QByteArray("nonsense");
    QTest::newRow("too few digits") << QByteArray("#12");
    QTest::newRow("too many digits") << QByteArray("#12345678901234567");
    QTest::newRow("no digits") << QByteArray("#");
    QTest::newRow("other digits") << QByteArray("#12345g");
    QTest::newRow("digits without a hash sign") << QByteArray("123456");
    QTest::newRow("white space") << QByteArray(" ");
    QTest::newRow("nothing but the line end") << QByteArray("");
}

void ImageDirectoryTest::aColorThatDoesNotParseReadsAsOpaqueBlack()
{
    QFETCH(QByteArray, color);
    const IconFolder folder;
    folder.write("colors.txt", "a," + color + "\nb,red\n");
    const QMap<QString, QColor> colors = loadColors("colors.txt");
    QCOMPARE(colors.keys(), QStringList({"a", "b"}));
    const QColor broken = colors.value("a", Qt::red);
    QVERIFY(!broken.isValid());
    QCOMPARE(QList<int>({broken.red(), broken.green(), broken.blue(), broken.alpha()}), QList<int>({0, 0, 0, 255}));
}

void ImageDirectoryTest::colorFilesAreInTheEncodingOfTheLocale_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("Latin 1") << QByteArray("ISO-8859-1") << QByteArray("\xfc,red\n");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray("\xc3\xbc,red\n");
}

void ImageDirectoryTest::colorFilesAreInTheEncodingOfTheLocale()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QByteArray, content);
    QTextCodec* const before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(encoding));
    const Names table = colorTable(content);
    QTextCodec::setCodecForLocale(before);
    QCOMPARE(table, Names({{QString(QChar(0xfc)), "#ffff0000"}}));
}

void ImageDirectoryTest::aLineMayBeOfAnyLength()
{
    const QByteArray endless(20 * 1024 * 1024, 'x');
    QCOMPARE(colorTable("a,red\n" + endless), Names({{"a", "#ffff0000"}}));
    QCOMPARE(colorTable("a," + endless), Names({{"a", ""}}));
    const Names table = colorTable(endless + ",blue");
    QCOMPARE(table.size(), 1);
    QCOMPARE(table.firstKey().size(), endless.size());
    QCOMPARE(table.first(), "#ff0000ff");
}

void ImageDirectoryTest::aFileThatCannotBeReadIsAnEmptyTable()
{
    const IconFolder folder;
    QVERIFY(loadColors("missing.txt").isEmpty());
    QVERIFY(loadColors(".").isEmpty());

    folder.write("colors.txt", "a,red\n");
    QVERIFY(chmod(".", 0755) == 0);
    QVERIFY(chmod("colors.txt", 0) == 0);
    const OrdinaryUser user;
    if (!user.isOrdinary())
        QSKIP("Every file is readable to this user.");
    QVERIFY(loadColors("colors.txt").isEmpty());
}

QTEST_GUILESS_MAIN(ImageDirectoryTest)

#include "ImageDirectoryTest.moc"
