#include "atlas/ImageManager.h"
#include "atlas/ImageManagerThread.h"
#include "support/Gate.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

#include <unistd.h>

// The test runs its own executable as a child, with the way in which it is to leave as the argument. What a child
// writes: one line as it leaves, and one for each run that has come to its end.

namespace
{

/// Both runs are held until the process leaves, so that they are certainly under way then. Lives as long as they do.
Gate& departure()
{
    static Gate& gate = *new Gate;
    return gate;
}

void say(const char* line)
{
    if (::write(STDOUT_FILENO, line, std::strlen(line)) < 0)
        std::abort();
}

void buildAtlases()
{
    for (const int index : {0, 1})
        ImageManager::instance(index)->startInitial();
}

/// Has a run of each atlas under way: pictures to be read, and glyphs to be rendered.
void startRuns()
{
    const QStringList pictures = QDir(QStringLiteral("pictures")).entryList(QDir::Files);
    for (const QString& picture : pictures)
        ImageManager::instance(0)->requestCell(IMAGE_FILE, QStringLiteral("pictures/") + picture);
    for (qint32 code = 0xac00; code < 0xac00 + 500; ++code)
        ImageManager::instance(1)->requestWord(code);
    for (const int index : {0, 1}) {
        ImageManager* const manager = ImageManager::instance(index);
        auto* const thread = manager->findChild<ImageManagerThread*>();
        QObject::connect(thread, &QThread::started, [] { departure().pass(); });
        QObject::connect(thread, &ImageManagerThread::signalFinished, [] { say("a run ended\n"); });
        QMetaObject::invokeMethod(manager, "slotUpdateTimerEvent");
        if (!thread->isRunning())
            std::abort();
    }
    departure().awaitArrival();
}

void beginToLeave()
{
    say("leaving\n");
    departure().open();
}

using Application = std::unique_ptr<QApplication>;

struct Way
{
    const char* name;
    int (*leave)(Application application);
};

const Way ways[] = {
    {"return-without-event-loop",
     [](Application) {
         buildAtlases();
         startRuns();
         beginToLeave();
         return 0;
     }},
    {"return-after-event-loop",
     [](Application) {
         QTimer::singleShot(0, [] {
             buildAtlases();
             startRuns();
             QCoreApplication::quit();
         });
         QCoreApplication::exec();
         beginToLeave();
         return 0;
     }},
    {"exit-without-event-loop",
     [](Application) -> int {
         buildAtlases();
         startRuns();
         beginToLeave();
         std::exit(0);
     }},
    {"exit-within-event-loop",
     [](Application) {
         QTimer::singleShot(0, [] {
             buildAtlases();
             startRuns();
             beginToLeave();
             std::exit(0);
         });
         return QCoreApplication::exec();
     }},
    {"application-destroyed-then-exit",
     [](Application application) -> int {
         buildAtlases();
         startRuns();
         beginToLeave();
         application.reset();
         std::exit(0);
     }},
    {"run-started-after-the-application",
     [](Application application) {
         buildAtlases();
         application.reset();
         startRuns();
         beginToLeave();
         return 0;
     }},
    {"second-application",
     [](Application application) {
         buildAtlases();
         application.reset();
         static int argumentCount = 0;
         application = std::make_unique<QApplication>(argumentCount, nullptr);
         startRuns();
         beginToLeave();
         return 0;
     }},
};

/// A picture that takes a while to read.
QImage noise()
{
    QImage picture(700, 700, QImage::Format_RGB32);
    std::mt19937 random(7);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(0, 0, 0) | static_cast<QRgb>(random()));
    }
    return picture;
}

} // namespace

class ProcessExitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cutsOffNoRun_data();
    void cutsOffNoRun();

private:
    QTemporaryDir folder;
};

void ProcessExitTest::initTestCase()
{
    const QDir pictures(folder.filePath(QStringLiteral("pictures")));
    QVERIFY(pictures.mkpath(QStringLiteral(".")));
    const QImage picture = noise();
    for (const char* name : {"1.png", "2.jpg", "3.bmp", "4.ppm", "5.png"})
        QVERIFY(picture.save(pictures.filePath(QLatin1String(name))));
}

void ProcessExitTest::cutsOffNoRun_data()
{
    QTest::addColumn<QString>("way");
    for (const Way& way : ways)
        QTest::newRow(way.name) << QString::fromLatin1(way.name);
}

void ProcessExitTest::cutsOffNoRun()
{
    QFETCH(QString, way);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path());
    // An application that was never destroyed leaves things of Qt's behind.
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    for (int time = 0; time < 5; ++time) {
        QProcess child;
        child.setWorkingDirectory(folder.path());
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {way});
        QVERIFY2(child.waitForFinished(60000), "the child hangs");
        QCOMPARE(QString::fromLocal8Bit(child.readAllStandardError()), QString());
        QCOMPARE(QString::fromLocal8Bit(child.readAllStandardOutput()),
                 QStringLiteral("leaving\na run ended\na run ended\n"));
        QCOMPARE(int{child.exitStatus()}, int{QProcess::NormalExit});
        QCOMPARE(child.exitCode(), 0);
    }
}

int main(int argc, char** argv)
{
    for (const Way& way : ways) {
        if (argc == 2 && std::strcmp(argv[1], way.name) == 0)
            return way.leave(std::make_unique<QApplication>(argc, argv));
    }
    const QCoreApplication application(argc, argv);
    ProcessExitTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ProcessExitTest.moc"
