#include "atlas/ImageManager.h"
#include "atlas/SEntityPayload.h"
#include "startup/AtlasStart.h"

#include <NELK/InitNelk.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QOpenGLWidget>
#include <QProcess>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThread>
#include <QWindow>
#include <QtTest>

#include <cstdio>
#include <functional>
#include <map>

using namespace NELK;

/// What the library knows of its start belongs to the process, so each history runs in one of its own: this executable
/// again, with the name of the history. It tells what it sees, one line after the other.
class InitNelkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyHistoryRunsAsToldBefore_data();
    void everyHistoryRunsAsToldBefore();
};

namespace
{

/// One history, as it is lived in a process of its own.
class History
{
public:
    History()
    {
        m_entities = ImageManager::instance(0);
        m_words = ImageManager::instance(1);
        QObject::connect(m_entities, &ImageManager::signalImageChanged, [this] { ++m_entityImages; });
        QObject::connect(m_words, &ImageManager::signalImageChanged, [this] { ++m_wordImages; });
    }

    ImageManager& entities() { return *m_entities; }
    QThread& entityThread() { return *m_entities->findChild<QThread*>(); }
    QThread& wordThread() { return *m_words->findChild<QThread*>(); }

    void tell(const QString& line)
    {
        std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
        std::fflush(stdout);
    }

    void callInit() { tell(QStringLiteral("INIT_NELK: %1").arg(INIT_NELK())); }

    /// Handles what runs have left, and tells what arrived.
    void receive()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        tell(QStringLiteral("images: %1 of icons, %2 of characters").arg(m_entityImages).arg(m_wordImages));
        m_entityImages = 0;
        m_wordImages = 0;
    }

    /// Tells which file an icon shows.
    void look(const QString& name)
    {
        const SImageCell cell = m_entities->requestCell(IMAGE_ENTITY, name);
        const auto* payload = static_cast<const SEntityPayload*>(cell.payload);
        tell(QStringLiteral("%1 shows %2").arg(name, payload ? payload->path.section('/', -1) : QString()));
    }

    void startTick() { QMetaObject::invokeMethod(m_entities, "slotUpdateTimerEvent", Qt::DirectConnection); }

private:
    ImageManager* m_entities = nullptr;
    ImageManager* m_words = nullptr;
    int m_entityImages = 0;
    int m_wordImages = 0;
};

/// Sees which OpenGL widgets the process shows.
class WidgetWatch : public QObject
{
public:
    WidgetWatch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QOpenGLWidget*>(watched))
            ++shown;
        return false;
    }

    int shown = 0;
};

void addIcon(const QString& name)
{
    const QString directory = QStringLiteral("entity/zh/256");
    QDir().mkpath(directory);
    QImage icon(256, 256, QImage::Format_RGBA8888);
    icon.fill(Qt::blue);
    icon.save(QStringLiteral("%1/%2.png").arg(directory, name));
}

void onlyStarts(History& history)
{
    history.tell(QStringLiteral("started"));
}

/// First call; then a later one with a new icon on disk.
void callsTwice(History& history)
{
    history.callInit();
    history.receive();
    history.look(QStringLiteral("late"));
    addIcon(QStringLiteral("late"));
    history.callInit();
    history.receive();
    history.look(QStringLiteral("late"));
    history.callInit();
    history.receive();
}

void callsWhileAFileWaits(History& history)
{
    history.callInit();
    history.receive();
    history.entities().requestCell(IMAGE_FILE, QStringLiteral("entity/zh/256/early.png"));
    addIcon(QStringLiteral("late"));
    history.callInit();
    history.receive();
    history.look(QStringLiteral("late"));

    history.startTick();
    history.entities().waitForRun();
    history.receive();
    history.callInit();
    history.receive();
    history.look(QStringLiteral("late"));
}

void callsDuringARun(History& history)
{
    history.callInit();
    history.receive();
    addIcon(QStringLiteral("late"));

    QSemaphore mayRun;
    const auto hold = QObject::connect(&history.entityThread(), &QThread::started, [&mayRun] { mayRun.acquire(); });
    history.entities().requestCell(IMAGE_FILE, QStringLiteral("entity/zh/256/early.png"));
    history.startTick(); // nothing is requested any more, but the run goes on until it may end
    history.callInit();
    mayRun.release();
    history.entities().waitForRun();
    QObject::disconnect(hold);
    history.receive();
    history.look(QStringLiteral("late"));
    history.callInit();
    history.receive();
    history.look(QStringLiteral("late"));
}

void callsAfterAView(History& history)
{
    const WidgetWatch watch;
    history.tell(startAtlases() ? QStringLiteral("atlases started") : QStringLiteral("refused"));
    history.tell(startAtlases() ? QStringLiteral("started again") : QStringLiteral("not again"));
    history.receive();
    history.callInit();
    history.tell(QStringLiteral("probes: %1").arg(watch.shown));
    addIcon(QStringLiteral("late"));
    history.callInit();
    history.receive();
    history.look(QStringLiteral("late"));
}

void looksForWhatTheProbeLeaves(History& history)
{
    const WidgetWatch watch;
    history.callInit();
    history.tell(QStringLiteral("probes: %1").arg(watch.shown));
    history.tell(QStringLiteral("widgets left: %1").arg(QApplication::allWidgets().size()));
    history.tell(QStringLiteral("windows left: %1").arg(QGuiApplication::allWindows().size()));
    history.callInit();
    history.tell(QStringLiteral("probes: %1").arg(watch.shown));
    history.tell(startAtlases() ? QStringLiteral("started again") : QStringLiteral("not again"));
}

/// The builds block, the icons come first, and what they made arrives with the next events.
void looksAtTheBuilds(History& history)
{
    QThread* threads[] = {&history.entityThread(), &history.wordThread()};
    for (QThread* thread : threads) {
        const QString name = thread == threads[0] ? QStringLiteral("icons") : QStringLiteral("characters");
        QObject::connect(thread, &QThread::started, [name, &history] { history.tell(name + " started"); });
        QObject::connect(
            thread, &QThread::finished, thread, [name, &history] { history.tell(name + " finished"); },
            Qt::DirectConnection);
    }
    history.callInit();
    history.look(QStringLiteral("early"));
    history.tell(history.entities().image().isNull() ? QStringLiteral("no image") : QStringLiteral("an image"));
    history.receive();
    history.look(QStringLiteral("early"));
    history.tell(QStringLiteral("%1 by %2").arg(history.entities().texRowNum()).arg(history.entities().texColNum()));
    history.tell(ImageManager::instance(1)->image().isNull() ? QStringLiteral("no text") : QStringLiteral("text"));
}

const std::map<QString, std::function<void(History&)>>& histories()
{
    static const std::map<QString, std::function<void(History&)>> all{
        {"onlyStarts", onlyStarts},
        {"callsTwice", callsTwice},
        {"callsWhileAFileWaits", callsWhileAFileWaits},
        {"callsDuringARun", callsDuringARun},
        {"callsAfterAView", callsAfterAView},
        {"looksForWhatTheProbeLeaves", looksForWhatTheProbeLeaves},
        {"looksAtTheBuilds", looksAtTheBuilds},
    };
    return all;
}

/// Runs a history in a folder with one icon. Environment variables are given as NAME=VALUE.
struct Child
{
    Child(const QString& history, const QStringList& environment)
    {
        QProcess process;
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        for (const QString& variable : environment)
            variables.insert(variable.section('=', 0, 0), variable.section('=', 1));
        // What the drivers and the platform plugin below Qt leak is not ours; other memory errors still end the child.
        variables.insert(QStringLiteral("ASAN_OPTIONS"), variables.value("ASAN_OPTIONS") + ":detect_leaks=0");
        process.setProcessEnvironment(variables);
        process.setWorkingDirectory(folder.path());
        process.start(QCoreApplication::applicationFilePath(), {history});
        process.waitForFinished(-1);
        ended = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
        lines = QString::fromLocal8Bit(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        errors = process.readAllStandardError();
    }

    QTemporaryDir folder;
    bool ended = false;
    QStringList lines;
    QByteArray errors;
};

int live(const QString& history)
{
    addIcon(QStringLiteral("early"));
    History lived;
    histories().at(history)(lived);
    return 0;
}

const QString firstImages = QStringLiteral("images: 1 of icons, 1 of characters");
const QString nothingNew = QStringLiteral("images: 0 of icons, 0 of characters");
const QString iconsRead = QStringLiteral("images: 1 of icons, 0 of characters");
const QString lateUnknown = QStringLiteral("late shows early.png");
const QString lateKnown = QStringLiteral("late shows late.png");

/// All calls but the first do nothing and return 0.
QStringList onlyTheFirstCallCounts(int code)
{
    return {QStringLiteral("INIT_NELK: %1").arg(code),
            firstImages,
            lateUnknown,
            QStringLiteral("INIT_NELK: 0"),
            nothingNew,
            lateUnknown,
            QStringLiteral("INIT_NELK: 0"),
            nothingNew};
}

/// Each later call reads the icons.
QStringList laterCallsReload()
{
    return {"INIT_NELK: 0", firstImages, lateUnknown, "INIT_NELK: 0", iconsRead, lateKnown, "INIT_NELK: 0", iconsRead};
}

} // namespace

void InitNelkTest::initTestCase()
{
    const Child child(QStringLiteral("onlyStarts"), {});
    if (!child.ended || child.lines != QStringList{"started"})
        QSKIP(qPrintable(QStringLiteral("no application starts here: %1").arg(QString::fromLocal8Bit(child.errors))));
}

void InitNelkTest::everyHistoryRunsAsToldBefore_data()
{
    QTest::addColumn<QString>("history");
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<QStringList>("lines");
    using List = QStringList;

    // Vendors and versions are those that Mesa is told to claim.
    QTest::addRow("OpenGL will do") << "callsTwice" << List{} << laterCallsReload();
    for (const char* vendor : {"Intel", "INTEL Open Source Technology Center", "a firm named xinTELx"}) {
        QTest::addRow("vendor is %s", vendor)
            << "callsTwice" << List{QStringLiteral("force_gl_vendor=%1").arg(vendor)} << onlyTheFirstCallCounts(3);
    }
    QTest::addRow("vendor is Inte l") << "callsTwice" << List{"force_gl_vendor=Inte l"} << laterCallsReload();
    QTest::addRow("vendor is nobody") << "callsTwice" << List{"force_gl_vendor="} << laterCallsReload();
    QTest::addRow("renderer is Intel") << "callsTwice" << List{"force_gl_renderer=Intel"} << laterCallsReload();
    QTest::addRow("OpenGL 3.2") << "callsTwice" << List{"MESA_GL_VERSION_OVERRIDE=3.2"} << onlyTheFirstCallCounts(2);
    QTest::addRow("OpenGL 2.1") << "callsTwice" << List{"MESA_GL_VERSION_OVERRIDE=2.1"} << onlyTheFirstCallCounts(2);
    QTest::addRow("old OpenGL of Intel") << "callsTwice"
                                         << List{"MESA_GL_VERSION_OVERRIDE=2.1", "force_gl_vendor=Intel"}
                                         << onlyTheFirstCallCounts(2);
    QTest::addRow("OpenGL 3.3") << "callsTwice" << List{"MESA_GL_VERSION_OVERRIDE=3.3"} << laterCallsReload();
    QTest::addRow("no OpenGL at all") << "callsTwice" << List{"QT_XCB_GL_INTEGRATION=none"} << laterCallsReload();

    const List refusedOnce{"INIT_NELK: 0", firstImages,    "INIT_NELK: 1", nothingNew, lateUnknown,
                           iconsRead,      "INIT_NELK: 0", iconsRead,      lateKnown};
    QTest::addRow("a file waits") << "callsWhileAFileWaits" << List{} << refusedOnce;
    QTest::addRow("a run is under way") << "callsDuringARun" << List{}
                                        << List{"INIT_NELK: 0", firstImages,    "INIT_NELK: 1", iconsRead,
                                                lateUnknown,    "INIT_NELK: 0", iconsRead,      lateKnown};
    QTest::addRow("a view was first") << "callsAfterAView" << List{}
                                      << List{"atlases started", "not again",    firstImages, "INIT_NELK: 1",
                                              "probes: 0",       "INIT_NELK: 0", nothingNew,  lateUnknown};
    QTest::addRow("after the probe") << "looksForWhatTheProbeLeaves" << List{}
                                     << List{"INIT_NELK: 0", "probes: 1", "widgets left: 0", "windows left: 0",
                                             "INIT_NELK: 0", "probes: 1", "not again"};
    QTest::addRow("builds")
        << "looksAtTheBuilds" << List{}
        << List{"icons started", "icons finished", "characters started", "characters finished",   "INIT_NELK: 0",
                "early shows ",  "no image",       firstImages,          "early shows early.png", "2 by 2",
                "text"};
}

void InitNelkTest::everyHistoryRunsAsToldBefore()
{
    QFETCH(QString, history);
    QFETCH(QStringList, environment);
    const Child child(history, environment);
    QVERIFY2(child.ended, child.errors.constData());
    QTEST(child.lines, "lines");
}

int main(int argc, char* argv[])
{
    const QString firstArgument = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    if (histories().count(firstArgument) == 1) {
        const QApplication application(argc, argv);
        return live(firstArgument);
    }
    const QCoreApplication application(argc, argv);
    InitNelkTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "InitNelkTest.moc"
