#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QResource>
#include <QSet>
#include <QtEndian>
#include <QtTest>

class ResourcesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingButTheTreeIsThere_data();
    void nothingButTheTreeIsThere();
    void entriesAreStoredUncompressed_data();
    void entriesAreStoredUncompressed();
    void iconsAreOfTheirSizes_data();
    void iconsAreOfTheirSizes();
    void iconsDiffer();

    void everyLineOfAShaderEndsWithBothCharacters_data();
    void everyLineOfAShaderEndsWithBothCharacters();

    void theWordListIsPlainUtf8();
    void theWordListHolds3500DifferentCharacters();
    void theWordListIsInTheOrderOfTheTwoLists();
    void theWordListIsSeparatedBySpacesAndLineEnds();
};

namespace
{

const QString wordList = QStringLiteral(":/imagetag/tools/resource-gen/simpleword_3500.txt");

const QStringList& buttonIcons()
{
    static const QStringList paths{":/icon/toolkits/ic_expand.png", ":/icon/toolkits/ic_expand_hover.png",
                                   ":/icon/toolkits/ic_fold.png", ":/icon/toolkits/ic_fold_hover.png"};
    return paths;
}

const QStringList& badges()
{
    static const QStringList paths{":/imagetag/tools/resource-gen/icon/ic_256_combine.png",
                                   ":/imagetag/tools/resource-gen/icon/smallFocus.png",
                                   ":/imagetag/tools/resource-gen/icon/smallLock.png"};
    return paths;
}

const QStringList& shaders()
{
    static const QStringList paths{":/shader/shader/shader.eye.fs", ":/shader/shader/shader.eye.vs",
                                   ":/shader/shader/shader.view.fs", ":/shader/shader/shader.view.vs"};
    return paths;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList words()
{
    return QString::fromUtf8(contentOf(wordList)).split(QRegularExpression("\\s+"), Qt::SkipEmptyParts);
}

} // namespace

void ResourcesTest::nothingButTheTreeIsThere_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("icons") << ":/icon" << buttonIcons();
    QTest::newRow("shaders") << ":/shader" << shaders();
    QTest::newRow("images and words") << ":/imagetag" << badges() + QStringList{wordList};
}

void ResourcesTest::nothingButTheTreeIsThere()
{
    QFETCH(QString, root);
    QStringList files;
    QDirIterator entries(root, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files.append(entries.next());
    files.sort();
    QTEST(files, "expected");
}

void ResourcesTest::entriesAreStoredUncompressed_data()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : shaders() + buttonIcons() + badges() + QStringList{wordList})
        QTest::newRow(qPrintable(path)) << path;
}

void ResourcesTest::entriesAreStoredUncompressed()
{
    QFETCH(QString, path);
    const QResource resource(path);
    QVERIFY(resource.isValid());
    QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
    QVERIFY(resource.size() > 0);
    QCOMPARE(contentOf(path), QByteArray(reinterpret_cast<const char*>(resource.data()), int(resource.size())));
    // No language has one of its own.
    QVERIFY(QResource(path, QLocale(QLocale::Chinese)).data() == resource.data());
    QVERIFY(QResource(path, QLocale(QLocale::English)).data() == resource.data());
}

void ResourcesTest::iconsAreOfTheirSizes_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("edge");
    for (const QString& path : buttonIcons())
        QTest::newRow(qPrintable(path)) << path << 28;
    for (const QString& path : badges())
        QTest::newRow(qPrintable(path)) << path << 256;
}

void ResourcesTest::iconsAreOfTheirSizes()
{
    QFETCH(QString, path);
    QFETCH(int, edge);
    const QByteArray png = contentOf(path);
    QVERIFY(png.startsWith("\x89PNG\r\n\x1a\n"));
    QCOMPARE(png.mid(12, 4), QByteArray("IHDR"));
    QCOMPARE(qFromBigEndian<qint32>(png.constData() + 16), edge);
    QCOMPARE(qFromBigEndian<qint32>(png.constData() + 20), edge);
    QCOMPARE(int(png.at(24)), 8); // bits per channel
    QCOMPARE(int(png.at(25)), 6); // red, green, blue and alpha

    const QImage image(path);
    QCOMPARE(image.size(), QSize(edge, edge));
    QVERIFY(image.hasAlphaChannel());
}

void ResourcesTest::iconsDiffer()
{
    QList<QImage> seen;
    for (const QString& path : buttonIcons() + badges()) {
        const QImage image = QImage(path).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QImage nothing(image.size(), image.format());
        nothing.fill(Qt::transparent);
        QVERIFY2(image != nothing, qPrintable(path));
        QVERIFY2(!seen.contains(image), qPrintable(path));
        seen.append(image);
    }
}

void ResourcesTest::everyLineOfAShaderEndsWithBothCharacters_data()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : shaders())
        QTest::newRow(qPrintable(path)) << path;
}

void ResourcesTest::everyLineOfAShaderEndsWithBothCharacters()
{
    QFETCH(QString, path);
    const QByteArray bytes = contentOf(path);
    QVERIFY(bytes.startsWith("#version 330 core\r\n"));
    QVERIFY(bytes.endsWith("\r\n"));
    QCOMPARE(bytes.count('\r'), bytes.count("\r\n"));
    QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));
}

void ResourcesTest::theWordListIsPlainUtf8()
{
    const QByteArray bytes = contentOf(wordList);
    QVERIFY(!bytes.isEmpty());
    QVERIFY(!bytes.startsWith("\xef\xbb\xbf"));
    const QString text = QString::fromUtf8(bytes);
    QVERIFY(!text.contains(QChar::ReplacementCharacter));
    QCOMPARE(text.toUtf8(), bytes);
}

void ResourcesTest::theWordListHolds3500DifferentCharacters()
{
    const QStringList list = words();
    QCOMPARE(list.size(), 3500);
    for (const QString& word : list) {
        QCOMPARE(word.size(), 1);
        QVERIFY2(word.at(0) >= QChar(0x4e00) && word.at(0) <= QChar(0x9f9f), qPrintable(word));
    }
    QCOMPARE(QSet<QString>(list.cbegin(), list.cend()).size(), 3500);
}

void ResourcesTest::theWordListIsInTheOrderOfTheTwoLists()
{
    const QStringList list = words();
    QCOMPARE(list.size(), 3500);
    QCOMPARE(list.first(), QString(QChar(0x4e00)));
    QCOMPARE(list.at(2500), QString(QChar(0x5315)));
    QCOMPARE(list.last(), QString(QChar(0x77d7)));
}

void ResourcesTest::theWordListIsSeparatedBySpacesAndLineEnds()
{
    const QByteArray bytes = contentOf(wordList);
    QCOMPARE(bytes.count("\r\n"), 181);
    QCOMPARE(bytes.count('\r'), 181);
    QCOMPARE(bytes.count('\n'), 181);
    QVERIFY(bytes.contains("\r\n\r\n"));
    QVERIFY(bytes.endsWith(' '));

    const QString text = QString::fromUtf8(bytes);
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character == ' ' || character == '\r' || character == '\n')
            continue;
        QVERIFY(!character.isSpace());
        QVERIFY2(i + 1 < text.size() && (text.at(i + 1) == ' ' || text.at(i + 1) == '\r'), qPrintable(text.mid(i, 2)));
    }
}

QTEST_GUILESS_MAIN(ResourcesTest)

#include "ResourcesTest.moc"
