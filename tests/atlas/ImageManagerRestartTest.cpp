#include "atlas/ImageManager.h"
#include "atlas/ImageManagerThread.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>

// Each test has an application of its own, after those of the tests before it, in the one process.

namespace
{

constexpr int patience = 60 * 1000;
const QString file = ":/icon/toolkits/ic_fold.png";

class Application
{
    int m_argumentCount = 0;
    QApplication m_application{m_argumentCount, nullptr};
};

ImageManager& entities()
{
    return *ImageManager::instance(ImageManager::entityIndex);
}

ImageManager& words()
{
    return *ImageManager::instance(ImageManager::wordIndex);
}

bool paintsByATick(ImageManager& manager)
{
    return QSignalSpy(&manager, SIGNAL(signalImageChanged())).wait(patience);
}

} // namespace

class ImageManagerRestartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void paintsANewWord();
    void paintsANewFile();
    void paintsAKnownFileAgain();
    void paintsWhatWasAskedForWithoutAnApplicationAfterAStart();
    void letsARunEndWithTheApplication();

private:
    QTemporaryDir folder;
};

void ImageManagerRestartTest::initTestCase()
{
    qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
    const Application first;
    for (ImageManager* manager : {&entities(), &words()}) {
        manager->startInitial();
        QVERIFY(manager->isStarted());
    }
    QCoreApplication::processEvents();
    QVERIFY(!words().image().isNull());
}

void ImageManagerRestartTest::paintsANewWord()
{
    const Application next;
    QVERIFY(!words().requestWord(0xac00).painted);
    QVERIFY(paintsByATick(words()));
    QVERIFY(words().requestWord(0xac00).painted);
}

void ImageManagerRestartTest::paintsANewFile()
{
    const Application next;
    QVERIFY(!entities().requestCell(IMAGE_FILE, file).painted);
    QVERIFY(paintsByATick(entities()));
    QVERIFY(entities().requestCell(IMAGE_FILE, file).painted);
}

void ImageManagerRestartTest::paintsAKnownFileAgain()
{
    const Application next;
    QVERIFY(entities().requestCell(IMAGE_FILE, file).painted);
    QVERIFY(paintsByATick(entities()));
}

void ImageManagerRestartTest::paintsWhatWasAskedForWithoutAnApplicationAfterAStart()
{
    words().requestWord(0xac01);
    const Application next;
    words().startInitial();
    QVERIFY(paintsByATick(words()));
    QVERIFY(words().requestWord(0xac01).painted);
}

void ImageManagerRestartTest::letsARunEndWithTheApplication()
{
    const auto* const thread = words().findChild<ImageManagerThread*>();
    for (int time = 0; time < 3; ++time) {
        {
            const Application next;
            for (qint32 code = 0; code < 500; ++code)
                words().requestWord(0xad00 + 500 * time + code);
            QMetaObject::invokeMethod(&words(), "slotUpdateTimerEvent");
            QVERIFY(thread->isRunning());
        }
        QVERIFY(!thread->isRunning());
    }
}

QTEST_APPLESS_MAIN(ImageManagerRestartTest)

#include "ImageManagerRestartTest.moc"
