#pragma once

#include <QEvent>
#include <QHash>
#include <QMouseEvent>
#include <QPoint>
#include <QProcess>
#include <QStringList>
#include <QWidget>
#include <QtTest>

namespace NELK
{

/// Someone at the mouse and the keyboard of the display. What they do takes the way of all input, through the X server
/// and the window manager. Each act returns when the application has handled it, and fails the test if that never
/// happens. Positions are those of a window, which is on the screen.
class DesktopUser : public QObject
{
public:
    /// How long to wait for what must happen, in milliseconds.
    static constexpr int patience = 30000;

    explicit DesktopUser(QWidget& window) : m_window(window) { qApp->installEventFilter(this); }

    /// Lets go of what a test that failed has left held.
    ~DesktopUser() override
    {
        if (QTest::currentTestFailed())
            use({QStringLiteral("mouseup"), numberOf(Qt::LeftButton), QStringLiteral("keyup"),
                 QStringLiteral("Control_L")});
    }

    Q_DISABLE_COPY(DesktopUser)

    void moveTo(const QPoint& position)
    {
        const QPoint onScreen = m_window.mapToGlobal(position);
        use({QStringLiteral("mousemove"), QString::number(onScreen.x()), QString::number(onScreen.y())});
        QVERIFY2(QTest::qWaitFor([&] { return m_pointer == position; }, patience), "The pointer does not move.");
    }

    void press(Qt::MouseButton button = Qt::LeftButton)
    {
        act({QStringLiteral("mousedown"), numberOf(button)}, QEvent::MouseButtonPress);
    }

    void release(Qt::MouseButton button = Qt::LeftButton)
    {
        act({QStringLiteral("mouseup"), numberOf(button)}, QEvent::MouseButtonRelease);
    }

    void click(const QPoint& position, Qt::MouseButton button = Qt::LeftButton)
    {
        moveTo(position);
        act({QStringLiteral("click"), numberOf(button)}, QEvent::MouseButtonRelease);
    }

    void doubleClick(const QPoint& position)
    {
        moveTo(position);
        act({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"), numberOf(Qt::LeftButton)},
            QEvent::MouseButtonRelease, 2);
    }

    /// Drags by way of the middle, and keeps the button down.
    void startDrag(const QPoint& from, const QPoint& to)
    {
        moveTo(from);
        press();
        moveTo((from + to) / 2);
        moveTo(to);
    }

    void drag(const QPoint& from, const QPoint& to)
    {
        startDrag(from, to);
        release();
    }

    void turnWheelForward(const QPoint& position) { turnWheel(position, 4); }
    void turnWheelBackward(const QPoint& position) { turnWheel(position, 5); }

    /// A key goes by its X11 name.
    void holdKey(const QString& key) { act({QStringLiteral("keydown"), key}, QEvent::KeyPress); }
    void releaseKey(const QString& key) { act({QStringLiteral("keyup"), key}, QEvent::KeyRelease); }
    void strikeKey(const QString& key) { act({QStringLiteral("key"), key}, QEvent::KeyRelease); }

    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        if (receiver->isWindowType() && event->spontaneous()) {
            ++m_arrived[event->type()];
            if (event->type() == QEvent::MouseMove)
                m_pointer = static_cast<QMouseEvent*>(event)->pos();
            else if (event->type() == QEvent::Enter)
                m_pointer = static_cast<QEnterEvent*>(event)->pos();
        }
        return QObject::eventFilter(receiver, event);
    }

private:
    /// `last` is the event by which the act ends, once for each of its repetitions.
    void act(const QStringList& command, QEvent::Type last, int times = 1)
    {
        const int awaited = m_arrived.value(last) + times;
        use(command);
        QVERIFY2(QTest::qWaitFor([&] { return m_arrived.value(last) >= awaited; }, patience),
                 qPrintable(command.join(QLatin1Char(' ')) + QStringLiteral(" has no effect.")));
    }

    void turnWheel(const QPoint& position, int button)
    {
        moveTo(position);
        act({QStringLiteral("click"), QString::number(button)}, QEvent::Wheel);
    }

    static void use(const QStringList& command) { QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), command), 0); }

    static QString numberOf(Qt::MouseButton button)
    {
        return button == Qt::LeftButton ? QStringLiteral("1") : QStringLiteral("3");
    }

    QWidget& m_window;
    /// Where the window last saw the pointer.
    QPoint m_pointer{-1, -1};
    QHash<int, int> m_arrived;
};

} // namespace NELK
