#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdlib>

namespace NELK
{

/// A virtual display with a window manager, for one program alone: neither a developer's pointer nor another test gets
/// in its way, nor it in theirs.
class OwnDesktop
{
public:
    OwnDesktop() = default;
    ~OwnDesktop()
    {
        stop(m_windowManager);
        stop(m_display);
    }

    Q_DISABLE_COPY(OwnDesktop)

    /// Whether this program was started on such a desktop.
    static bool isHere() { return qEnvironmentVariableIsSet(mark); }

    bool start() { return startDisplay() && startWindowManager(); }

    /// Runs a program on this desktop, and returns what it returns.
    int run(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(program, arguments);
        process.waitForFinished(-1);
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : EXIT_FAILURE;
    }

private:
    bool startDisplay()
    {
        // Keys do not repeat, however late their release is taken up.
        if (!startServer(m_display, QStringLiteral("Xvfb"),
                         {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                          QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                          QStringLiteral("tcp"), QStringLiteral("-noreset"), QStringLiteral("-r")}))
            return false;
        const QByteArray number = m_display.readLine().trimmed();
        m_environment.insert(QStringLiteral("DISPLAY"), QLatin1Char(':') + QString::fromLatin1(number));
        m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        m_environment.insert(QLatin1String(mark), QStringLiteral("1"));
        return true;
    }

    bool startWindowManager()
    {
        // Nobody's settings.
        QProcessEnvironment environment = m_environment;
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), m_home.path());
        m_windowManager.setProcessEnvironment(environment);
        return startServer(m_windowManager, QStringLiteral("openbox"),
                           {QStringLiteral("--sm-disable"), QStringLiteral("--startup"), QStringLiteral("echo ready")});
    }

    /// Starts a server that writes to its standard output when it is ready, and waits until it does.
    static bool startServer(QProcess& server, const QString& program, const QStringList& arguments)
    {
        server.setStandardErrorFile(QProcess::nullDevice());
        server.start(program, arguments);
        if (server.waitForReadyRead(patience))
            return true;
        qWarning("%s did not start: %s", qPrintable(program), qPrintable(server.errorString()));
        return false;
    }

    static void stop(QProcess& server)
    {
        server.terminate();
        if (!server.waitForFinished(patience))
            server.kill();
    }

    static constexpr const char* mark = "NELK_OWN_DESKTOP";
    static constexpr int patience = 30000; // ms

    QTemporaryDir m_home;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    QProcess m_display;
    QProcess m_windowManager;
};

/// Runs this program again, on a desktop of its own, and returns what it returns.
inline int runOnOwnDesktop(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    OwnDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    return desktop.run(QCoreApplication::applicationFilePath(), QCoreApplication::arguments().mid(1));
}

} // namespace NELK
