#include "startup/ContextFormat.h"

#include <QSurfaceFormat>
#include <QtTest>

using namespace NELK;

/// What a view asks for, with a driver of the test's own.
class ContextFormatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatTheHostHasSetWhereItServes_data();
    void keepsWhatTheHostHasSetWhereItServes();
    void turnsToTheCoreProfileWhereItMust_data();
    void turnsToTheCoreProfileWhereItMust();
    void keepsWhatTheHostHasSetWhereNothingServes();
    void takesTheDefaultOfTheProcess();
};

namespace
{

constexpr auto noProfile = QSurfaceFormat::NoProfile;
constexpr auto core = QSurfaceFormat::CoreProfile;
constexpr auto compatibility = QSurfaceFormat::CompatibilityProfile;

QSurfaceFormat format(int major, int minor, QSurfaceFormat::OpenGLContextProfile profile, int samples = -1)
{
    QSurfaceFormat format;
    format.setVersion(major, minor);
    format.setProfile(profile);
    format.setSamples(samples);
    return format;
}

/// Answers for a driver, and keeps a log of the questions.
class Driver
{
public:
    using Answer = bool (*)(const QSurfaceFormat&);

    explicit Driver(Answer serves) : m_serves(serves) {}

    QSurfaceFormat chosenFor(const QSurfaceFormat& host)
    {
        return contextFormat(host, [this](const QSurfaceFormat& asked) {
            questions.append(asked);
            return m_serves(asked);
        });
    }

    QList<QSurfaceFormat> questions;

private:
    Answer m_serves;
};

bool servesAll(const QSurfaceFormat&)
{
    return true;
}

bool servesCoreOnly(const QSurfaceFormat& asked)
{
    return asked.profile() == core && asked.version() == qMakePair(3, 3);
}

bool servesNone(const QSurfaceFormat&)
{
    return false;
}

} // namespace

void ContextFormatTest::keepsWhatTheHostHasSetWhereItServes_data()
{
    QTest::addColumn<QSurfaceFormat>("host");
    QTest::addColumn<bool>("deprecatedToo");

    // Before 3.0 nothing was deprecated.
    QTest::newRow("nothing") << QSurfaceFormat() << false;
    QTest::newRow("2.1") << format(2, 1, noProfile) << false;
    QTest::newRow("3.0") << format(3, 0, noProfile) << true;
    QTest::newRow("core 3.3") << format(3, 3, core) << true;
    QTest::newRow("core 4.5") << format(4, 5, core) << true;
    QTest::newRow("compatibility 3.3") << format(3, 3, compatibility) << true;
    QTest::newRow("no samples") << format(3, 3, core, 0) << true;
    QTest::newRow("16 samples") << format(2, 0, noProfile, 16) << false;
    QSurfaceFormat particular = format(4, 3, core, 4);
    particular.setDepthBufferSize(16);
    particular.setStencilBufferSize(2);
    particular.setSwapInterval(0);
    particular.setAlphaBufferSize(8);
    particular.setOption(QSurfaceFormat::DebugContext);
    QTest::newRow("particular") << particular << true;
}

void ContextFormatTest::keepsWhatTheHostHasSetWhereItServes()
{
    QFETCH(QSurfaceFormat, host);
    QFETCH(bool, deprecatedToo);
    QSurfaceFormat expected = host;
    expected.setSamples(10);
    if (deprecatedToo)
        expected.setOption(QSurfaceFormat::DeprecatedFunctions);

    Driver driver(servesAll);
    QCOMPARE(driver.chosenFor(host), expected);
    QCOMPARE(driver.questions, QList<QSurfaceFormat>{expected});
}

void ContextFormatTest::turnsToTheCoreProfileWhereItMust_data()
{
    QTest::addColumn<QSurfaceFormat>("host");

    QTest::newRow("nothing") << QSurfaceFormat();
    QTest::newRow("2.1") << format(2, 1, noProfile);
    QTest::newRow("compatibility 4.5") << format(4, 5, compatibility);
    QTest::newRow("core 3.2") << format(3, 2, core);
    QTest::newRow("core 4.6") << format(4, 6, core, 2);
    QSurfaceFormat particular = format(2, 0, noProfile);
    particular.setSwapInterval(0);
    particular.setDepthBufferSize(16);
    QTest::newRow("particular") << particular;
}

void ContextFormatTest::turnsToTheCoreProfileWhereItMust()
{
    QFETCH(QSurfaceFormat, host);
    QSurfaceFormat expected = host;
    expected.setSamples(10);
    expected.setVersion(3, 3);
    expected.setProfile(core);
    expected.setOption(QSurfaceFormat::DeprecatedFunctions);

    Driver driver(servesCoreOnly);
    QCOMPARE(driver.chosenFor(host), expected);
    QCOMPARE(driver.questions.size(), 2);
    QCOMPARE(driver.questions[0].version(), host.version());
    QCOMPARE(driver.questions[0].profile(), host.profile());
    QCOMPARE(driver.questions[1], expected);
}

void ContextFormatTest::keepsWhatTheHostHasSetWhereNothingServes()
{
    QSurfaceFormat expected;
    expected.setSamples(10);
    Driver driver(servesNone);
    QCOMPARE(driver.chosenFor(QSurfaceFormat()), expected);
    QCOMPARE(driver.questions.size(), 2);
}

/// Whatever the driver of this machine.
void ContextFormatTest::takesTheDefaultOfTheProcess()
{
    QSurfaceFormat host;
    host.setSwapInterval(7);
    QSurfaceFormat::setDefaultFormat(host);
    const QSurfaceFormat chosen = contextFormat();
    QCOMPARE(chosen.swapInterval(), 7);
    QCOMPARE(chosen.samples(), 10);
    QCOMPARE(chosen, contextFormat(host, hasCoreFunctions));
}

QTEST_MAIN(ContextFormatTest)

#include "ContextFormatTest.moc"
