#include "atlas/ImageManager.h"
#include "support/EmissionCounter.h"
#include "support/IconFolder.h"
#include "support/SceneOf.h"

#include <NELK/NELK>

#include <QTimer>
#include <QtTest>

#include <limits>

using namespace NELK;

class NodeImageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // This one comes first, since there is one atlas for the whole process.
    void nothingChangesBeforeTheAtlasHasArrived();

    void theIdTellsTheTable_data();
    void theIdTellsTheTable();
    void imagesGiveRowColumnAndColor_data();
    void imagesGiveRowColumnAndColor();
    void aFileIsGreenAtOnce();
    void aFileIsAFileWhateverTheId();
    void anImageByNumberDoesNothing();
    void nothingElseChangesAndNothingIsEmitted();

private:
    void buildAtlas();
    bool haveAtlas();

    IconFolder m_folder;
};

namespace
{

constexpr qint64 firstFloatId = 12345678900;

/// What an image sets in the record of a node.
struct Picture
{
    qint32 row;
    qint32 column;
    Rgba color;

    bool operator==(const Picture& other) const
    {
        return row == other.row && column == other.column && color == other.color;
    }
};

char* toString(const Picture& picture)
{
    QString text = QString("row %1, column %2, colour").arg(picture.row).arg(picture.column);
    for (const float channel : picture.color)
        text += QString(" %1").arg(double(channel), 0, 'g', 9);
    return qstrdup(qPrintable(text));
}

Rgba over255(int red, int green, int blue, int alpha)
{
    const auto channel = [](int value) { return static_cast<float>(value / 255.0); };
    return {channel(red), channel(green), channel(blue), channel(alpha)};
}

/// That of a new node.
const Picture noPicture{0, 0, {0.349f, 0.722f, 0.271f, 1.0f}};
const Rgba green = over255(0, 128, 0, 255);
/// That of the first icon.
const Picture ant{1, 0, over255(0x33, 0x66, 0x99, 0x80)};

struct OneNode
{
    explicit OneNode(qint64 id = 1) : node(scene.createNode(id)) {}

    NodeData& record() { return *sceneOf(scene).getNode(node.getId()); }
    Picture picture() { return {record().imageRow, record().imageCol, record().entityColor}; }
    void setPicture(const Picture& picture)
    {
        record().imageRow = picture.row;
        record().imageCol = picture.column;
        record().entityColor = picture.color;
    }

    GraphScene scene;
    GraphNode node;
};

ImageManager& icons()
{
    return *ImageManager::instance(0);
}

bool nextImageArrives()
{
    QSignalSpy arrivals(&icons(), SIGNAL(signalImageChanged()));
    const bool arrived = arrivals.wait(60 * 1000);
    icons().waitForRun();
    return arrived;
}

} // namespace

Q_DECLARE_METATYPE(Picture)

/// Three icons of each table, at (1,0), (0,2), (1,2) and (2,2), (2,0), (2,1). The first of the floats is the colour
/// table, which has the empty name. The next cell is (0,3).
void NodeImageTest::buildAtlas()
{
    icons().findChild<QTimer*>()->stop();
    for (const char* name : {"ant", "both", "cat"})
        m_folder.write(QString("entity/zh/256/%1.png").arg(name), opaquePicture(1));
    m_folder.write("entity/zh/EntityColor.txt", "ant,#80336699\nboth,#010203\n");
    for (const char* name : {"both", "fin"})
        m_folder.write(QString("Floats/zoo/%1.png").arg(name), opaquePicture(2));
    m_folder.write("Floats/FloatColor.txt", "both,#fdfe7f\nfin,nonsense\n");
    icons().startInitial();
}

bool NodeImageTest::haveAtlas()
{
    if (!icons().image().isNull())
        return true;
    buildAtlas();
    return nextImageArrives();
}

void NodeImageTest::nothingChangesBeforeTheAtlasHasArrived()
{
    QVERIFY(icons().image().isNull());
    OneNode entity;
    OneNode floating(firstFloatId);
    const auto setAll = [&entity, &floating] {
        for (const char* name : {"ant", "both", "fin", "nothing", ""}) {
            entity.node.setImage(name, false);
            floating.node.setImage(name, false);
        }
    };
    setAll();
    QCOMPARE(entity.picture(), noPicture);
    QCOMPARE(floating.picture(), noPicture);

    buildAtlas();
    const Picture earlier{7, 5, green};
    entity.setPicture(earlier);
    setAll(); // the atlas is there, but no event has told of it
    QCOMPARE(entity.picture(), earlier);
    QCOMPARE(floating.picture(), noPicture);

    QVERIFY(nextImageArrives());
    QCOMPARE(entity.picture(), earlier);
    entity.node.setImage("ant", false);
    QCOMPARE(entity.picture(), ant);
}

void NodeImageTest::theIdTellsTheTable_data()
{
    QTest::addColumn<qint64>("id");
    QTest::addColumn<bool>("isFloat");
    QTest::newRow("1") << qint64{1} << false;
    QTest::newRow("negative") << qint64{-1} << false;
    QTest::newRow("lowest") << std::numeric_limits<qint64>::min() << false;
    QTest::newRow("last of the entities") << qint64{12345678899} << false;
    QTest::newRow("first of the floats") << firstFloatId << true;
    QTest::newRow("second of the floats") << qint64{12345678901} << true;
    QTest::newRow("highest") << std::numeric_limits<qint64>::max() << true;
}

void NodeImageTest::theIdTellsTheTable()
{
    QFETCH(qint64, id);
    QFETCH(bool, isFloat);
    QVERIFY(haveAtlas());
    OneNode one(id);
    one.node.setImage("both", false);
    const Picture entity{0, 2, over255(1, 2, 3, 255)};
    const Picture floating{2, 0, over255(253, 254, 127, 255)};
    QCOMPARE(one.picture(), isFloat ? floating : entity);
}

void NodeImageTest::imagesGiveRowColumnAndColor_data()
{
    QTest::addColumn<qint64>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<Picture>("expected");
    const Rgba red{1.0f, 0.0f, 0.0f, 1.0f};
    const Rgba black{0.0f, 0.0f, 0.0f, 1.0f};
    QTest::newRow("with alpha") << qint64{1} << "ant" << ant;
    QTest::newRow("without a colour") << qint64{1} << "cat" << Picture{1, 2, red};
    QTest::newRow("a colour that does not parse") << firstFloatId << "fin" << Picture{2, 1, black};
    QTest::newRow("the empty name") << firstFloatId << "" << Picture{2, 2, red};
    // The first icon of all stands for what is unknown.
    QTest::newRow("unknown") << qint64{1} << "nothing" << ant;
    QTest::newRow("unknown float") << firstFloatId << "nothing" << ant;
    QTest::newRow("known as a float only") << qint64{1} << "fin" << ant;
    QTest::newRow("known as an entity only") << firstFloatId << "cat" << ant;
    QTest::newRow("case counts") << qint64{1} << "CAT" << ant;
}

void NodeImageTest::imagesGiveRowColumnAndColor()
{
    QFETCH(qint64, id);
    QFETCH(QString, name);
    QVERIFY(haveAtlas());
    OneNode one(id);
    one.setPicture({7, 5, green});
    one.node.setImage(name, false);
    QTEST(one.picture(), "expected");
}

void NodeImageTest::aFileIsGreenAtOnce()
{
    QVERIFY(haveAtlas());
    m_folder.write("host.png", opaquePicture(3));
    const Picture file{0, 3, green};
    OneNode one;
    one.node.setImage("host.png", true);
    QCOMPARE(one.picture(), file);
    // So is one that cannot be read.
    one.node.setImage("missing.png", true);
    QCOMPARE(one.picture(), Picture({1, 3, green}));

    QVERIFY(QMetaObject::invokeMethod(&icons(), "slotUpdateTimerEvent"));
    QVERIFY(nextImageArrives());
    QCOMPARE(icons().image().mirrored().copy(3 * 256, 0, 256, 256), opaquePicture(3));
    one.node.setImage("host.png", true);
    QCOMPARE(one.picture(), file);
}

void NodeImageTest::aFileIsAFileWhateverTheId()
{
    QVERIFY(haveAtlas());
    const Picture file{0, 3, green};
    for (const qint64 id : {qint64{1}, firstFloatId}) {
        OneNode one(id);
        one.node.setImage("host.png", true);
        QCOMPARE(one.picture(), file);
        // The name of an icon is no path, and a path no name.
        one.node.setImage("ant", true);
        QCOMPARE(one.record().entityColor, green);
        QVERIFY(one.record().imageCol != ant.column);
        one.node.setImage("host.png", false);
        QCOMPARE(one.picture(), ant);
    }
}

void NodeImageTest::anImageByNumberDoesNothing()
{
    QVERIFY(haveAtlas());
    OneNode one;
    for (const int number : {0, 1, 10, -1, std::numeric_limits<int>::max()}) {
        one.node.setImage(number);
        QCOMPARE(one.picture(), noPicture);
    }
    one.node.setImage("ant", false);
    one.node.setImage(1);
    QCOMPARE(one.picture(), ant);
}

void NodeImageTest::nothingElseChangesAndNothingIsEmitted()
{
    QVERIFY(haveAtlas());
    OneNode one;
    one.scene.createNode(2);
    const EmissionCounter emissions(one.scene);
    const EmissionCounter innerEmissions(sceneOf(one.scene));
    one.record().imageHidden = true;
    one.node.setSize(2.0f);
    one.node.setImage("ant", false);
    QVERIFY(one.record().imageHidden);
    QVERIFY(one.record().imageName.isEmpty());
    QCOMPARE(one.record().width, 512);
    QCOMPARE(one.record().circleColor, Rgb({0.0f, 0.0f, 0.0f}));
    QCOMPARE(one.record().labelColor, Rgba({0.0f, 0.0f, 0.0f, 1.0f}));
    const NodeData& untouched = *sceneOf(one.scene).getNode(2);
    QCOMPARE(untouched.imageRow, 0);
    QCOMPARE(untouched.entityColor, noPicture.color);
    QCOMPARE(emissions.count() + innerEmissions.count(), 0);
}

QTEST_GUILESS_MAIN(NodeImageTest)

#include "NodeImageTest.moc"
