#include "support/EntityAtlas.h"
#include "atlas/ImageDirectory.h"
#include "support/IconFolder.h"
#include "support/PngFile.h"

#include <QBuffer>
#include <QDirIterator>
#include <QImageReader>
#include <QProcess>
#include <QtTest>

using namespace NELK;

class EntityAtlasTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBadgesHaveTheFirstThreeCells();
    void theImageIsBottomRowFirst();
    void iconsFollowInTheOrderOfTheirNames();
    void theFirstIconHasId10();
    void anUnknownNameShowsTheFirstIcon();
    void withoutIconsTheFourthCellIsFree_data();
    void withoutIconsTheFourthCellIsFree();
    void equalNamesTakeOneCell();
    void filesWithoutANameShareACell();
    void colorsComeFromTheTableOfTheIcon();
    void otherKindsHaveNoId();

    void aPictureFillsItsCell_data();
    void aPictureFillsItsCell();
    void theContentTellsTheFormat();
    void whatIsNoPictureLeavesItsCellBlank_data();
    void whatIsNoPictureLeavesItsCellBlank();
    void aPictureHasAtMost64MebiPixels();
    void eachOfManyPicturesIsInItsPlace();
    void paintedPixelsStayAsTheyAre();

    void aNewFileHasItsCellAtOnce();
    void aFileAskedForAgainIsPaintedOverItsOldPicture();
    void aFileIsReadOnlyWhenAskedFor();
    void filesGoByThePathAsItWasGiven();
    void anUnreadablePathIsABlankCell_data();
    void anUnreadablePathIsABlankCell();

    void aReloadAddsNewIconsAndMovesNone();
    void aReloadReadsPicturesAndColorsAgain();
    void aReloadPaintsOverTheOldPicture();
    void aVanishedIconStays();
    void aReloadLeavesFilesAlone();
    void aReloadIsRefusedWhileAFileWaits();

    void theIconsOfTheRepositoryAreComplete();
};

namespace
{

const QString entities = "entity/zh/256/";
const QString entityColors = "entity/zh/EntityColor.txt";
const QString floats = "Floats/";
const QString floatColors = "Floats/FloatColor.txt";

const QImage blank = plainPicture(Qt::transparent);

bool isFreshProcess()
{
    return qEnvironmentVariableIsSet("NELK_FRESH_PROCESS");
}

/// Runs the present test function again, in a process in which no image has an id yet.
void runInFreshProcess()
{
    QString function = QTest::currentTestFunction();
    if (QTest::currentDataTag())
        function += QString(":") + QTest::currentDataTag();

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("NELK_FRESH_PROCESS", "1");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(), {function});
    QVERIFY(process.waitForFinished(-1));
    const QByteArray output = process.readAll();
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QVERIFY2(process.exitCode() == 0 && !output.contains("QWARN"), output);
}

QByteArray encoded(const QImage& picture, const char* format)
{
    QBuffer buffer;
    if (!picture.save(&buffer, format))
        qFatal("Cannot write %s", format);
    return buffer.data();
}

} // namespace

void EntityAtlasTest::theBadgesHaveTheFirstThreeCells()
{
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const QRgb red = qRgb(255, 0, 0);
    const QString icons = ":/imagetag/tools/resource-gen/icon/";
    const auto resource = [&icons](const QString& name) {
        return QImage(icons + name).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    const auto painted = [&atlas](Place place) {
        return atlas.pictureAt(place).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    QCOMPARE(painted({0, 0}), resource("smallFocus.png"));
    QCOMPARE(painted({0, 1}), resource("smallLock.png"));
    QCOMPARE(painted({1, 1}), resource("ic_256_combine.png"));

    const QList<E_IMAGE_KIND> kinds{IMAGE_FOCUS, IMAGE_LOCK, IMAGE_COMBINE};
    const QList<Place> places{{0, 0}, {0, 1}, {1, 1}};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(atlas.cell(kinds[i], "a").id, i + 1);
        QCOMPARE(atlas.place(kinds[i], "a"), places[i]);
        QCOMPARE(atlas.color(kinds[i]), red);
        QVERIFY(atlas.cell(kinds[i]).painted);
    }
}

void EntityAtlasTest::theImageIsBottomRowFirst()
{
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write(entities + "b.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.manager().image().isNull());
    QVERIFY(atlas.build());
    const QImage& image = atlas.manager().image();
    QCOMPARE(image.format(), QImage::Format_RGBA8888);
    QCOMPARE(image.size(), QSize(768, 768));
    QCOMPARE(atlas.manager().texRowNum(), 3);
    QCOMPARE(atlas.manager().texColNum(), 3);

    // Row 1, column 0 and row 0, column 2, each of them upside down.
    QCOMPARE(image.copy(0, 256, 256, 256), opaquePicture(1).mirrored());
    QCOMPARE(image.copy(512, 512, 256, 256), opaquePicture(2).mirrored());
    // The bottom row of the grid, which is the first of the image, is not taken yet.
    QCOMPARE(image.copy(0, 0, 768, 256), plainPicture(Qt::transparent, {768, 256}));
    QCOMPARE(image.copy(512, 256, 256, 256), blank);
}

void EntityAtlasTest::iconsFollowInTheOrderOfTheirNames()
{
    const IconFolder folder;
    // Capitals sort first, and directories do not matter.
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write(entities + "z/B.png", opaquePicture(2));
    folder.write(entities + "b/a.b.png", opaquePicture(3));
    folder.write(floats + "a.png", opaquePicture(4));
    folder.write(floats + "one/A.png", opaquePicture(5));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const SImageCell first = atlas.cell(IMAGE_ENTITY, "B");
    const auto check = [&atlas, &first](E_IMAGE_KIND kind, const char* name, int index, Place place, int seed) {
        QCOMPARE(atlas.cell(kind, name).id, first.id + index);
        QCOMPARE(atlas.place(kind, name), place);
        QCOMPARE(atlas.picture(kind, name), opaquePicture(seed));
        QVERIFY(atlas.cell(kind, name).painted);
    };
    check(IMAGE_ENTITY, "B", 0, {1, 0}, 2);
    check(IMAGE_ENTITY, "a", 1, {0, 2}, 1);
    check(IMAGE_ENTITY, "a.b", 2, {1, 2}, 3);
    check(IMAGE_FLOAT, "A", 3, {2, 2}, 5);
    check(IMAGE_FLOAT, "a", 4, {2, 0}, 4);
    QCOMPARE(atlas.manager().texRowNum(), 3);
    QCOMPARE(atlas.pictureAt({2, 1}), blank);
}

void EntityAtlasTest::theFirstIconHasId10()
{
    if (!isFreshProcess())
        return runInFreshProcess();
    const IconFolder folder;
    folder.write(entities + "d.png", opaquePicture(1));
    folder.write(entities + "c.png", opaquePicture(2));
    folder.write(floats + "a.png", opaquePicture(3));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QCOMPARE(atlas.cell(IMAGE_ENTITY, "c").id, 10);
    QCOMPARE(atlas.place(IMAGE_ENTITY, "c"), Place(1, 0));
    QCOMPARE(atlas.cell(IMAGE_ENTITY, "d").id, 11);
    QCOMPARE(atlas.cell(IMAGE_FLOAT, "a").id, 12);
    QCOMPARE(atlas.cell(IMAGE_FILE, "host.png").id, 13);

    // One running number serves all atlases.
    EntityAtlas other;
    QVERIFY(other.build());
    QCOMPARE(other.cell(IMAGE_ENTITY, "c").id, 14);
    QCOMPARE(other.place(IMAGE_ENTITY, "c"), Place(1, 0));
    QCOMPARE(other.cell(IMAGE_FOCUS).id, 1);
}

void EntityAtlasTest::anUnknownNameShowsTheFirstIcon()
{
    if (!isFreshProcess())
        return runInFreshProcess();
    const IconFolder folder;
    folder.write(entities + "c.png", opaquePicture(1));
    folder.write(entities + "d.png", opaquePicture(2));
    folder.write(entityColors, "c,#80123456\n");
    folder.write(floats + "f.png", opaquePicture(3));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const QList<QPair<E_IMAGE_KIND, QString>> unknown{{IMAGE_ENTITY, "f"},     {IMAGE_ENTITY, "C"}, {IMAGE_ENTITY, ""},
                                                      {IMAGE_ENTITY, "c.png"}, {IMAGE_FLOAT, "d"},  {IMAGE_FLOAT, "c"},
                                                      {IMAGE_ENTITY, "c "}};
    for (const auto& [kind, name] : unknown) {
        QCOMPARE(atlas.cell(kind, name).id, 10);
        QCOMPARE(atlas.place(kind, name), Place(1, 0));
        QCOMPARE(atlas.color(kind, name), qRgba(0x12, 0x34, 0x56, 0x80));
    }
    QCOMPARE(atlas.place(IMAGE_FLOAT, "f"), Place(1, 2));
    QCOMPARE(atlas.manager().texRowNum(), 3);
}

void EntityAtlasTest::withoutIconsTheFourthCellIsFree_data()
{
    QTest::addColumn<bool>("present");
    QTest::newRow("missing") << false;
    QTest::newRow("empty") << true;
}

void EntityAtlasTest::withoutIconsTheFourthCellIsFree()
{
    if (!isFreshProcess())
        return runInFreshProcess();
    QFETCH(bool, present);
    const IconFolder folder;
    for (const QString& directory : {entities, floats})
        QVERIFY(!present || QDir().mkpath(directory));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QCOMPARE(atlas.manager().texRowNum(), 2);
    QCOMPARE(atlas.manager().texColNum(), 2);
    QCOMPARE(atlas.manager().image().size(), QSize(512, 512));
    QCOMPARE(atlas.pictureAt({1, 0}), blank);
    QVERIFY(atlas.pictureAt({1, 1}) != blank);
    QCOMPARE(atlas.place(IMAGE_COMBINE), Place(1, 1));

    for (const E_IMAGE_KIND kind : {IMAGE_ENTITY, IMAGE_FLOAT}) {
        const SImageCell none = atlas.cell(kind, "anything");
        QCOMPARE(none.id, 0);
        QCOMPARE(EntityAtlas::placeOf(none), Place(0, 0));
        QVERIFY(!none.payload);
        QVERIFY(!none.painted);
    }

    folder.write(entities + "a.png", opaquePicture(1));
    QVERIFY(atlas.reload()); // the requests above have left nothing to paint
    QCOMPARE(atlas.place(IMAGE_ENTITY, "anything"), Place(1, 0));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a"), opaquePicture(1));
}

void EntityAtlasTest::equalNamesTakeOneCell()
{
    const IconFolder folder;
    folder.write(entities + "one/x.png", opaquePicture(1));
    folder.write(entities + "two/x.png", opaquePicture(2));
    folder.write(floats + "x.png", opaquePicture(3));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QCOMPARE(atlas.place(IMAGE_ENTITY, "x"), Place(1, 0));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "x"), opaquePicture(2));
    // The other table is one of its own.
    QCOMPARE(atlas.place(IMAGE_FLOAT, "x"), Place(0, 2));
    QCOMPARE(atlas.picture(IMAGE_FLOAT, "x"), opaquePicture(3));
    QCOMPARE(atlas.pictureAt({1, 2}), blank);
}

void EntityAtlasTest::filesWithoutANameShareACell()
{
    const IconFolder folder;
    folder.write(entities + "a.PNG", opaquePicture(1));
    folder.write(entities + "b.png", opaquePicture(2));
    folder.write(floats + "a.png", opaquePicture(3));
    folder.write(floatColors, "a,blue\n");
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QCOMPARE(atlas.place(IMAGE_ENTITY, ""), Place(1, 0));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, ""), opaquePicture(1));
    QCOMPARE(atlas.place(IMAGE_ENTITY, "b"), Place(0, 2));
    // The colour table is a file among the float icons, but no picture.
    QCOMPARE(atlas.place(IMAGE_FLOAT, ""), Place(1, 2));
    QCOMPARE(atlas.picture(IMAGE_FLOAT, ""), blank);
    QCOMPARE(atlas.place(IMAGE_FLOAT, "a"), Place(2, 2));
    QCOMPARE(atlas.color(IMAGE_FLOAT, "a"), qRgb(0, 0, 255));
    QCOMPARE(atlas.color(IMAGE_FLOAT, ""), qRgb(255, 0, 0));
}

void EntityAtlasTest::colorsComeFromTheTableOfTheIcon()
{
    const IconFolder folder;
    for (const char* name : {"both", "broken", "Capital", "one/deep", "plain"})
        folder.write(entities + name + ".png", opaquePicture(1));
    folder.write(entityColors, "both,#80123456\nbroken,nonsense\ncapital,blue\ndeep,lime\none/deep,blue\ngone,blue\n");
    folder.write(floats + "both.png", opaquePicture(2));
    folder.write(floats + "plain.png", opaquePicture(2));
    folder.write(floatColors, "both,LightBlue\n");
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const QRgb red = qRgb(255, 0, 0);
    QCOMPARE(atlas.color(IMAGE_ENTITY, "both"), qRgba(0x12, 0x34, 0x56, 0x80));
    QCOMPARE(atlas.color(IMAGE_FLOAT, "both"), qRgb(173, 216, 230));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "deep"), qRgb(0, 255, 0));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "Capital"), red);
    QCOMPARE(atlas.color(IMAGE_ENTITY, "plain"), red);
    QCOMPARE(atlas.color(IMAGE_FLOAT, "plain"), red);
    QVERIFY(!EntityAtlas::colorOf(atlas.cell(IMAGE_ENTITY, "broken")).isValid());
    QCOMPARE(atlas.color(IMAGE_ENTITY, "broken"), qRgb(0, 0, 0));
}

void EntityAtlasTest::otherKindsHaveNoId()
{
    EntityImageManagerThread thread;
    QCOMPARE(thread.imageId(IMAGE_ENTITY, "any"), 10);
    QCOMPARE(thread.imageId(IMAGE_FOCUS, "any"), 1);
    QCOMPARE(thread.imageId(IMAGE_LOCK, "any"), 2);
    QCOMPARE(thread.imageId(IMAGE_COMBINE, "any"), 3);
    QCOMPARE(thread.imageId(IMAGE_FLOAT, "any"), 10);
    QCOMPARE(thread.imageId(IMAGE_FILE, "any"), 0);
    QCOMPARE(thread.imageId(static_cast<E_IMAGE_KIND>(6), "any"), 0);
}

void EntityAtlasTest::aPictureFillsItsCell_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(256, 256), QSize(128, 64), QSize(1, 1), QSize(255, 256), QSize(256, 257),
                             QSize(600, 300), QSize(1, 1000)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void EntityAtlasTest::aPictureFillsItsCell()
{
    QFETCH(QSize, size);
    const IconFolder folder;
    const QImage picture = opaquePicture(1, size);
    folder.write(entities + "a.png", picture);
    folder.write(entities + "b.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a"), picture.scaled(256, 256, Qt::IgnoreAspectRatio, Qt::FastTransformation));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "b"), opaquePicture(2));
    if (256 % size.width() != 0 || 256 % size.height() != 0)
        return;
    const QImage stretched = atlas.picture(IMAGE_ENTITY, "a");
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x)
            QCOMPARE(stretched.pixel(x, y), picture.pixel(x * size.width() / 256, y * size.height() / 256));
    }
}

void EntityAtlasTest::theContentTellsTheFormat()
{
    const IconFolder folder;
    folder.write(entities + "bitmap.png", opaquePicture(1), "BMP");
    folder.write(entities + "pixels.png", opaquePicture(2), "PPM");
    folder.write("host.jpg", opaquePicture(3), "PNG");
    const bool readsJpeg = QImageReader::supportedImageFormats().contains("jpeg");
    const QByteArray jpeg = readsJpeg ? encoded(opaquePicture(4), "JPEG") : QByteArray();
    if (readsJpeg)
        folder.write(entities + "photo.png", jpeg);
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    atlas.cell(IMAGE_FILE, "host.jpg");
    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "bitmap"), opaquePicture(1));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "pixels"), opaquePicture(2));
    QCOMPARE(atlas.picture(IMAGE_FILE, "host.jpg"), opaquePicture(3));
    if (!readsJpeg)
        QSKIP("This Qt does not read JPEG.");
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "photo"), QImage::fromData(jpeg).convertToFormat(QImage::Format_RGBA8888));
}

void EntityAtlasTest::whatIsNoPictureLeavesItsCellBlank_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("warnings");
    const QByteArray png = encoded(opaquePicture(1), "PNG");
    QTest::newRow("empty") << QByteArray() << QStringList();
    QTest::newRow("text") << QByteArray("This is no picture.\n") << QStringList();
    QTest::newRow("nothing but the signature") << png.left(8) << QStringList();
    QTest::newRow("the header alone") << png.left(33) << QStringList();
    QTest::newRow("zeros") << QByteArray(4096, '\0') << QStringList();
    QTest::newRow("no size") << pngClaiming(0, 0)
                             << QStringList{"libpng warning: Image width is zero in IHDR",
                                            "libpng warning: Image height is zero in IHDR"};
    QTest::newRow("much larger than its data") << pngClaiming(4000, 4000) << QStringList();
    QTest::newRow("as large as can be") << pngClaiming(0x7fffffff, 0x7fffffff)
                                        << QStringList{"libpng warning: Image width exceeds user limit in IHDR",
                                                       "libpng warning: Image height exceeds user limit in IHDR"};
    QTest::newRow("larger than can be") << pngClaiming(0xffffffff, 0xffffffff) << QStringList();
    QTest::newRow("40 gigabytes") << pngClaiming(100000, 100000) << QStringList();
    QTest::newRow("40 gigabytes of PPM") << QByteArray("P6 100000 100000 255\n") << QStringList();
    QTest::newRow("4 gigabytes of PPM") << QByteArray("P6 32768 32768 255\n") << QStringList();
}

void EntityAtlasTest::whatIsNoPictureLeavesItsCellBlank()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, warnings); // what Qt's reader of PNG files says for itself
    for (const QString& warning : qAsConst(warnings))
        QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write(entities + "broken.png", content);
    folder.write(entities + "c.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a"), opaquePicture(1));
    QCOMPARE(atlas.place(IMAGE_ENTITY, "broken"), Place(0, 2));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "broken"), blank);
    QCOMPARE(atlas.color(IMAGE_ENTITY, "broken"), qRgb(255, 0, 0));
    QVERIFY(atlas.cell(IMAGE_ENTITY, "broken").painted);
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "c"), opaquePicture(2));
}

void EntityAtlasTest::aPictureHasAtMost64MebiPixels()
{
    const IconFolder folder;
    QImage picture(8192, 8193, QImage::Format_Mono);
    picture.fill(1);
    folder.write(entities + "beyond.png", picture);
    folder.write(entities + "largest.png", picture.copy(0, 0, 8192, 8192));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "largest"), plainPicture(Qt::white));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "beyond"), blank);
}

void EntityAtlasTest::eachOfManyPicturesIsInItsPlace()
{
    const IconFolder folder;
    constexpr int count = 60;
    for (int i = 0; i < count; ++i)
        folder.write(QString("%1.png").arg(i), plainPicture(QColor(i, 2 * i, 255 - i)));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    // At first all of them new, then all of them again.
    for (int time = 0; time < 2; ++time) {
        for (int i = 0; i < count; ++i)
            atlas.cell(IMAGE_FILE, QString("%1.png").arg(i));
        QVERIFY(atlas.repaint());
        const QImage topRowFirst = atlas.manager().image().mirrored();
        for (int i = 0; i < count; ++i) {
            const Place place = EntityAtlas::placeOf(atlas.cell(IMAGE_FILE, QString("%1.png").arg(i)));
            QCOMPARE(topRowFirst.copy(place.second * 256, place.first * 256, 256, 256),
                     plainPicture(QColor(i, 2 * i, 255 - i)));
        }
        QVERIFY(atlas.repaint());
    }
}

void EntityAtlasTest::paintedPixelsStayAsTheyAre()
{
    const IconFolder folder;
    QImage picture(256, 256, QImage::Format_ARGB32);
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int x = 0; x < 256; ++x)
            picture.setPixel(x, alpha, qRgba(x, 255 - x, 7 * x % 256, alpha));
    }
    folder.write(entities + "a.png", picture);
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const QImage painted = atlas.pictureAt({1, 0});
    // With the grid as large as before, and with a larger one.
    for (const char* path : {":/icon/toolkits/ic_fold.png", ":/icon/toolkits/ic_fold.png", "missing.png"}) {
        atlas.cell(IMAGE_FILE, path);
        QVERIFY(atlas.repaint());
        QCOMPARE(atlas.pictureAt({1, 0}), painted);
    }
}

void EntityAtlasTest::aNewFileHasItsCellAtOnce()
{
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write("host.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const SImageCell cell = atlas.cell(IMAGE_FILE, "host.png");
    QCOMPARE(cell.id, atlas.cell(IMAGE_ENTITY, "a").id + 1);
    QCOMPARE(EntityAtlas::placeOf(cell), Place(0, 2));
    QCOMPARE(EntityAtlas::colorOf(cell).rgba(), qRgb(0, 128, 0));
    QVERIFY(!cell.painted);
    QCOMPARE(atlas.manager().image().size(), QSize(512, 512));

    const SImageCell again = atlas.cell(IMAGE_FILE, "host.png");
    QCOMPARE(again.id, cell.id);
    QCOMPARE(EntityAtlas::placeOf(again), Place(0, 2));
    QCOMPARE(again.payload, cell.payload);

    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.manager().image().size(), QSize(768, 768));
    QCOMPARE(atlas.pictureAt({0, 2}), opaquePicture(2));
    QCOMPARE(atlas.pictureAt({1, 0}), opaquePicture(1));
    QCOMPARE(atlas.place(IMAGE_FILE, "host.png"), Place(0, 2));
    QCOMPARE(atlas.color(IMAGE_FILE, "host.png"), qRgb(0, 128, 0));
}

void EntityAtlasTest::aFileAskedForAgainIsPaintedOverItsOldPicture()
{
    const IconFolder folder;
    folder.write("host.png", opaquePicture(1));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const SImageCell cell = atlas.cell(IMAGE_FILE, "host.png");
    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.pictureAt({1, 0}), opaquePicture(1));

    QImage rightHalf = plainPicture(Qt::transparent, {2, 1});
    rightHalf.setPixelColor(1, 0, Qt::blue);
    folder.write("host.png", rightHalf);
    const SImageCell again = atlas.cell(IMAGE_FILE, "host.png");
    QCOMPARE(again.id, cell.id);
    QCOMPARE(EntityAtlas::placeOf(again), Place(1, 0));
    QVERIFY(atlas.repaint());
    const QImage repainted = atlas.pictureAt({1, 0});
    QCOMPARE(repainted.copy(0, 0, 128, 256), opaquePicture(1, {128, 256}));
    QCOMPARE(repainted.copy(128, 0, 128, 256), plainPicture(Qt::blue, {128, 256}));
    QCOMPARE(atlas.manager().texRowNum(), 2);

    // A file that is gone leaves what was there.
    QVERIFY(QFile::remove("host.png"));
    QCOMPARE(EntityAtlas::placeOf(atlas.cell(IMAGE_FILE, "host.png")), Place(1, 0));
    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.pictureAt({1, 0}), repainted);
}

void EntityAtlasTest::aFileIsReadOnlyWhenAskedFor()
{
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write("one.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    atlas.cell(IMAGE_FILE, "one.png");
    atlas.cell(IMAGE_FILE, "late.png");
    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.pictureAt({1, 2}), blank);

    folder.write(entities + "a.png", opaquePicture(3));
    folder.write("one.png", opaquePicture(4));
    folder.write("late.png", opaquePicture(5));
    atlas.cell(IMAGE_ENTITY, "a");
    atlas.cell(IMAGE_FILE, "other.png");
    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.pictureAt({1, 0}), opaquePicture(1));
    QCOMPARE(atlas.pictureAt({0, 2}), opaquePicture(2));
    QCOMPARE(atlas.pictureAt({1, 2}), blank);

    QCOMPARE(atlas.place(IMAGE_FILE, "late.png"), Place(1, 2));
    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.pictureAt({1, 2}), opaquePicture(5));
    QCOMPARE(atlas.pictureAt({0, 2}), opaquePicture(2));
}

void EntityAtlasTest::filesGoByThePathAsItWasGiven()
{
    const IconFolder folder;
    folder.write("a.png", opaquePicture(1));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const QString absolute = folder.path() + "/a.png";
    QCOMPARE(atlas.place(IMAGE_FILE, "a.png"), Place(1, 0));
    QCOMPARE(atlas.place(IMAGE_FILE, "./a.png"), Place(0, 2));
    QCOMPARE(atlas.place(IMAGE_FILE, absolute), Place(1, 2));
    QCOMPARE(atlas.place(IMAGE_FILE, ":/icon/toolkits/ic_fold.png"), Place(2, 2));
    QVERIFY(atlas.repaint());
    for (const Place place : {Place(1, 0), Place(0, 2), Place(1, 2)})
        QCOMPARE(atlas.pictureAt(place), opaquePicture(1));
    QVERIFY(atlas.pictureAt({2, 2}) != blank);
}

void EntityAtlasTest::anUnreadablePathIsABlankCell_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << "missing.png";
    QTest::newRow("a directory") << ".";
    QTest::newRow("no path") << "";
    QTest::newRow("no file name can be as long") << QString(5000, 'x');
}

void EntityAtlasTest::anUnreadablePathIsABlankCell()
{
    QFETCH(QString, path);
    const IconFolder folder;
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const SImageCell cell = atlas.cell(IMAGE_FILE, path);
    QCOMPARE(EntityAtlas::placeOf(cell), Place(1, 0));
    QCOMPARE(EntityAtlas::colorOf(cell).rgba(), qRgb(0, 128, 0));
    QVERIFY(atlas.repaint());
    QCOMPARE(atlas.pictureAt({1, 0}), blank);
    QCOMPARE(atlas.cell(IMAGE_FILE, path).id, cell.id);
}

void EntityAtlasTest::aReloadAddsNewIconsAndMovesNone()
{
    const IconFolder folder;
    folder.write(entities + "b.png", opaquePicture(1));
    folder.write(entities + "d.png", opaquePicture(2));
    folder.write(floats + "f.png", opaquePicture(3));
    folder.write("host.png", opaquePicture(4));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const qint32 hostId = atlas.cell(IMAGE_FILE, "host.png").id;
    QVERIFY(atlas.repaint());

    const auto checkOldOnes = [&atlas, hostId] {
        const QList<QPair<E_IMAGE_KIND, QString>> old{{IMAGE_ENTITY, "b"}, {IMAGE_ENTITY, "d"}, {IMAGE_FLOAT, "f"}};
        const QList<Place> places{{1, 0}, {0, 2}, {1, 2}};
        for (int i = 0; i < old.size(); ++i) {
            QCOMPARE(atlas.cell(old[i].first, old[i].second).id, hostId - 3 + i);
            QCOMPARE(atlas.place(old[i].first, old[i].second), places[i]);
            QCOMPARE(atlas.pictureAt(places[i]), opaquePicture(i + 1));
        }
        QCOMPARE(atlas.pictureAt({2, 2}), opaquePicture(4));
        QCOMPARE(atlas.place(IMAGE_COMBINE), Place(1, 1));
    };
    checkOldOnes();

    folder.write(entities + "new/a.png", opaquePicture(5));
    folder.write(entityColors, "a,blue\n");
    QVERIFY(atlas.reload());
    checkOldOnes();
    QCOMPARE(atlas.cell(IMAGE_ENTITY, "a").id, hostId + 1);
    QCOMPARE(atlas.place(IMAGE_ENTITY, "a"), Place(2, 0));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a"), opaquePicture(5));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "a"), qRgb(0, 0, 255));
    QCOMPARE(atlas.manager().texRowNum(), 3);

    // With nothing new there is nothing to add. Entities come before floats again.
    QVERIFY(atlas.reload());
    folder.write(floats + "e.png", opaquePicture(6));
    folder.write(entities + "z.png", opaquePicture(7));
    QVERIFY(atlas.reload());
    checkOldOnes();
    QCOMPARE(atlas.place(IMAGE_ENTITY, "z"), Place(2, 1));
    QCOMPARE(atlas.place(IMAGE_FLOAT, "e"), Place(0, 3));
    QCOMPARE(atlas.picture(IMAGE_FLOAT, "e"), opaquePicture(6));
    QCOMPARE(atlas.manager().texRowNum(), 4);
}

void EntityAtlasTest::aReloadReadsPicturesAndColorsAgain()
{
    const IconFolder folder;
    for (const char* name : {"a", "b", "c"})
        folder.write(entities + name + ".png", opaquePicture(1));
    folder.write(entityColors, "a,blue\nb,blue\n");
    folder.write(floats + "a.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const void* payload = atlas.cell(IMAGE_ENTITY, "a").payload;

    folder.write(entities + "a.png", opaquePicture(3));
    QVERIFY(QFile::remove(entities + "b.png"));
    folder.write(entities + "moved/b.png", opaquePicture(4));
    folder.write(entityColors, "a,lime\nc,#80123456\n");
    folder.write(floats + "a.png", opaquePicture(5));
    folder.write(floatColors, "a,nonsense");
    QVERIFY(atlas.reload());
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a"), opaquePicture(3));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "b"), opaquePicture(4));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "c"), opaquePicture(1));
    QCOMPARE(atlas.picture(IMAGE_FLOAT, "a"), opaquePicture(5));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "a"), qRgb(0, 255, 0));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "b"), qRgb(255, 0, 0));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "c"), qRgba(0x12, 0x34, 0x56, 0x80));
    QVERIFY(!EntityAtlas::colorOf(atlas.cell(IMAGE_FLOAT, "a")).isValid());
    QCOMPARE(atlas.cell(IMAGE_ENTITY, "a").payload, payload);
}

void EntityAtlasTest::aReloadPaintsOverTheOldPicture()
{
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write(entities + "b.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    QImage lowerHalf = plainPicture(Qt::transparent);
    for (int y = 128; y < 256; ++y) {
        for (int x = 0; x < 256; ++x)
            lowerHalf.setPixelColor(x, y, Qt::blue);
    }
    folder.write(entities + "a.png", lowerHalf);
    folder.write(entities + "b.png", "no picture any more");
    QVERIFY(atlas.reload());
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a").copy(0, 0, 256, 128), opaquePicture(1, {256, 128}));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a").copy(0, 128, 256, 128), plainPicture(Qt::blue, {256, 128}));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "b"), opaquePicture(2));
}

void EntityAtlasTest::aVanishedIconStays()
{
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write(entities + "b.png", opaquePicture(2));
    folder.write(entityColors, "a,blue\nb,blue\n");
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const qint32 id = atlas.cell(IMAGE_ENTITY, "a").id;
    QVERIFY(QFile::remove(entities + "a.png"));
    QVERIFY(QFile::remove(entityColors));
    QVERIFY(atlas.reload());
    QCOMPARE(atlas.cell(IMAGE_ENTITY, "a").id, id);
    QCOMPARE(atlas.place(IMAGE_ENTITY, "a"), Place(1, 0));
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a"), opaquePicture(1));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "a"), qRgb(0, 0, 255));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "b"), qRgb(255, 0, 0));

    // When it is back it has its old cell.
    folder.write(entities + "elsewhere/a.png", opaquePicture(3));
    QVERIFY(atlas.reload());
    QCOMPARE(atlas.cell(IMAGE_ENTITY, "a").id, id);
    QCOMPARE(atlas.picture(IMAGE_ENTITY, "a"), opaquePicture(3));
    QCOMPARE(atlas.color(IMAGE_ENTITY, "a"), qRgb(255, 0, 0));
}

void EntityAtlasTest::aReloadLeavesFilesAlone()
{
    const IconFolder folder;
    folder.write("host.png", opaquePicture(1));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    const SImageCell cell = atlas.cell(IMAGE_FILE, "host.png");
    QVERIFY(atlas.repaint());
    folder.write("host.png", opaquePicture(2));
    folder.write(entities + "host.png", opaquePicture(3));
    folder.write(entityColors, "host,blue\nhost.png,blue\n");
    QVERIFY(atlas.reload());
    QCOMPARE(atlas.pictureAt({1, 0}), opaquePicture(1));
    QCOMPARE(atlas.place(IMAGE_ENTITY, "host"), Place(0, 2));
    const SImageCell again = atlas.cell(IMAGE_FILE, "host.png");
    QCOMPARE(again.id, cell.id);
    QCOMPARE(EntityAtlas::colorOf(again).rgba(), qRgb(0, 128, 0));
}

void EntityAtlasTest::aReloadIsRefusedWhileAFileWaits()
{
    const IconFolder folder;
    folder.write(entities + "a.png", opaquePicture(1));
    folder.write("host.png", opaquePicture(2));
    EntityAtlas atlas;
    QVERIFY(atlas.build());
    folder.write(entityColors, "a,blue\n");
    for (const char* path : {"host.png", "other.png", "host.png"}) {
        atlas.cell(IMAGE_FILE, path);
        QVERIFY(!atlas.manager().startReload());
        QCOMPARE(atlas.color(IMAGE_ENTITY, "a"), qRgb(255, 0, 0));
        QVERIFY(atlas.repaint());
    }
    QVERIFY(atlas.reload());
    QCOMPARE(atlas.color(IMAGE_ENTITY, "a"), qRgb(0, 0, 255));
}

void EntityAtlasTest::theIconsOfTheRepositoryAreComplete()
{
    const auto check = [](const QString& directory, const QString& colorFile, const QString& colorFileInside) {
        const QMap<QString, QColor> colors = loadColors(colorFile);
        QStringList names;
        QDirIterator files(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            if (files.fileName() == colorFileInside)
                continue;
            const QString name = files.fileName().chopped(4);
            QVERIFY2(path.endsWith(".png"), qPrintable(path));
            QVERIFY2(QImage(path).size() == QSize(256, 256), qPrintable(path));
            QVERIFY2(colors.value(name).isValid(), qPrintable(path));
            QVERIFY2(!names.contains(name), qPrintable(path));
            names.append(name);
        }
        QVERIFY(!names.isEmpty());
        names.sort();
        QCOMPARE(colors.keys(), names);
    };
    const QString data = QStringLiteral(NELK_DATA_DIR "/");
    check(data + entities, data + entityColors, QString());
    check(data + floats, data + floatColors, "FloatColor.txt");
}

QTEST_GUILESS_MAIN(EntityAtlasTest)

#include "EntityAtlasTest.moc"
