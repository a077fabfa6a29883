#include "support/Playground.h"

using namespace NELK;

/// Whole gestures, with their thresholds and exceptions.
class ViewGesturesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsInTheNormalMode();
    void showsTheCursorOfTheMode_data();
    void showsTheCursorOfTheMode();
    void letsEveryEventGoOn_data();
    void letsEveryEventGoOn();

    void selectsByClicks_data();
    void selectsByClicks();
    void dragsElements_data();
    void dragsElements();
    void selectsByFrames_data();
    void selectsByFrames();
    void zoomsToFrames_data();
    void zoomsToFrames();
    void pansByHand_data();
    void pansByHand();
    void turnsTheWheel_data();
    void turnsTheWheel();
    void zoomsAroundTheCursor();
    void isSwitchedOff_data();
    void isSwitchedOff();

    void handlesKeysOfTheHost_data();
    void handlesKeysOfTheHost();
    void countsPressesForAWhile();
};

namespace
{

void addColumns()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("account");
}

void addRow(const QString& script, const QString& account)
{
    QTest::newRow(qPrintable(script)) << script << account;
}

void playRow()
{
    QFETCH(QString, script);

    Playground playground;
    QVERIFY(playground.show());
    QTEST(playground.play(script), "account");
}

QString selected(const char* ids)
{
    return QStringLiteral("selected %1; changed; rebuilt; painted").arg(QLatin1String(ids));
}

QString movedBy(const char* way)
{
    return QStringLiteral("moved; changed; 1 by %1; 2 by %1; rebuilt all; painted").arg(QLatin1String(way));
}

QString watchedFrom(const char* camera)
{
    return QStringLiteral("watched; changed; camera %1; painted").arg(QLatin1String(camera));
}

const QString nothingSelected = QStringLiteral("selected; changed; rebuilt; painted");

} // namespace

void ViewGesturesTest::startsInTheNormalMode()
{
    Playground playground;
    QVERIFY(playground.show());
    QCOMPARE(playground.view->focusPolicy(), Qt::StrongFocus);
    QVERIFY(!playground.view->hasMouseTracking());
    QVERIFY(!playground.view->testAttribute(Qt::WA_SetCursor));
    QCOMPARE(playground.play("press node3 | move +1,0 | release"),
             selected("3") + " | moved; changed; 3 by 2,0; rebuilt all; painted | -");
}

void ViewGesturesTest::showsTheCursorOfTheMode_data()
{
    QTest::addColumn<E_OP_MODE>("mode");
    QTest::addColumn<Qt::CursorShape>("cursor");
    QTest::newRow("normal") << OP_NORMAL << Qt::ArrowCursor;
    QTest::newRow("hand") << OP_HAND << Qt::OpenHandCursor;
    QTest::newRow("line") << OP_LINE << Qt::CrossCursor;
    QTest::newRow("zoom frame") << OP_ZOOM_FRAME << Qt::CrossCursor;
}

void ViewGesturesTest::showsTheCursorOfTheMode()
{
    QFETCH(E_OP_MODE, mode);
    Playground playground;
    playground.view->setCursor(Qt::WaitCursor);
    Qt::CursorShape shapeAtSignal = Qt::BlankCursor;
    connect(playground.view, &View::signalFrameModeChanged, [&] { shapeAtSignal = playground.view->cursor().shape(); });
    QCOMPARE(playground.play(QStringLiteral("mode %1").arg(mode)), QStringLiteral("mode %1").arg(mode));
    QTEST(playground.view->cursor().shape(), "cursor");
    QTEST(shapeAtSignal, "cursor");
}

void ViewGesturesTest::letsEveryEventGoOn_data()
{
    QTest::addColumn<QString>("before");
    for (const char* before : {"mode 0", "mode 1", "mode 2", "mode 3", "off"})
        QTest::newRow(before) << before;
}

void ViewGesturesTest::letsEveryEventGoOn()
{
    QFETCH(QString, before);
    Playground playground;
    playground.play(before);
    const QList<std::pair<QString, QEvent::Type>> steps{
        {"press node3", QEvent::MouseButtonPress},
        {"move +10,5", QEvent::MouseMove},
        {"wheel 0,120", QEvent::Wheel},
        {"release", QEvent::MouseButtonRelease},
        {"right-press", QEvent::MouseButtonPress},
        {"right-release", QEvent::MouseButtonRelease},
        {"middle-press", QEvent::MouseButtonPress},
        {"middle-release", QEvent::MouseButtonRelease},
        {"double-click edge", QEvent::MouseButtonDblClick},
        {"key-down Control", QEvent::KeyPress},
        {"wheel 0,120", QEvent::Wheel},
        {"key-up Control", QEvent::KeyRelease},
        {"key-down Shift", QEvent::KeyPress},
        {"key-up Shift", QEvent::KeyRelease},
        {"blocked", QEvent::WindowBlocked},
    };
    for (const auto& [step, type] : steps) {
        playground.view->arrived.clear();
        playground.play(step);
        QVERIFY2(playground.view->arrived.count(type) == 1, qPrintable(step));
    }
}

void ViewGesturesTest::selectsByClicks_data()
{
    addColumns();
    addRow("press empty | release", "- | " + nothingSelected);
    addRow("press empty | release | press | release", "- | " + nothingSelected + " | - | -");
    addRow("ctrl+press empty | ctrl+release", "- | -");

    addRow("press edge | release", "- | " + selected("12"));
    addRow("press edge | release | press | release", "- | " + selected("12") + " | - | -");
    addRow("ctrl+press edge | ctrl+release", "- | " + selected("1 2 12"));
    addRow("ctrl+press edge | ctrl+release | ctrl+press | ctrl+release",
           "- | " + selected("1 2 12") + " | - | " + selected("1 2"));

    addRow("press node3 | release", selected("3") + " | -");
    addRow("ctrl+press node3 | ctrl+release", selected("1 2 3") + " | -");
    addRow("press node1 | release", "- | " + selected("1"));
    addRow("press node1 | release | press | release", "- | " + selected("1") + " | - | -");
    addRow("ctrl+press node1 | ctrl+release", "- | " + selected("2"));

    // Press and release each look at the keyboard as it is then, and not at the keys that the view has seen.
    addRow("ctrl+press edge | release", "- | " + selected("12"));
    addRow("press edge | ctrl+release", "- | " + selected("1 2 12"));
    addRow("ctrl+press node3 | release", selected("1 2 3") + " | -");
    addRow("key-down Control | press edge | release", "- | - | " + selected("12"));
    addRow("key-down Control | press node3 | release", "- | " + selected("3") + " | -");

    // 4 pixels are 8 units here, and half of a line counts too.
    addRow("press 200,107 | release", "- | " + selected("12"));
    addRow("press 200,109 | release", "- | " + nothingSelected);
}

void ViewGesturesTest::selectsByClicks()
{
    playRow();
}

void ViewGesturesTest::dragsElements_data()
{
    addColumns();
    addRow("press node1 | move +1,0 | release", "- | " + movedBy("2,0") + " | -");
    addRow("press node1 | move +0,0 | release", "- | moved; changed; rebuilt all; painted | -");
    addRow("press node2 | move +3,0 | move +0,7 | release",
           "- | " + movedBy("6,0") + " | " + movedBy("0,-14") + " | -");
    addRow("press node1 | move 20,250 | move 100,100 | release",
           "- | " + movedBy("-160,-300") + " | " + movedBy("160,300") + " | -");
    addRow("ctrl+press node1 | move +1,0 | ctrl+release", "- | " + movedBy("2,0") + " | -");
    addRow("ctrl+press node3 | move +1,0 | ctrl+release",
           selected("1 2 3") + " | moved; changed; 1 by 2,0; 2 by 2,0; 3 by 2,0; rebuilt all; painted | -");
    // A drag is forgotten with its release.
    addRow("press node1 | move +2,0 | release | press | release",
           "- | " + movedBy("4,0") + " | - | - | " + selected("1"));
    addRow("press node1 | move +2,0 | release | press empty | move +9,0",
           "- | " + movedBy("4,0") + " | - | - | frame on 80,230 89,230");
}

void ViewGesturesTest::dragsElements()
{
    playRow();
}

void ViewGesturesTest::selectsByFrames_data()
{
    addColumns();
    addRow("press 60,60 | move 330,130 | release",
           "- | frame on 60,60 330,130 | selected 1 2 12; changed; frame off 60,60 330,130; rebuilt; painted");
    addRow("press 270,170 | move 330,230 | ctrl+release",
           "- | frame on 270,170 330,230 | selected 1 2 3; changed; frame off 270,170 330,230; rebuilt; painted");
    addRow("ctrl+press 270,170 | move 330,230 | release",
           "- | frame on 270,170 330,230 | selected 3; changed; frame off 270,170 330,230; rebuilt; painted");
    // No more is selected than was already: nobody is told, but the lists are made anew.
    addRow("press 60,60 | move 90,130 | ctrl+release",
           "- | frame on 60,60 90,130 | frame off 60,60 90,130; rebuilt; painted");
    for (const char* way : {"330,170 270,230", "270,230 330,170", "330,230 270,170"}) {
        const QStringList ends = QString(way).split(' ');
        addRow(QStringLiteral("press %1 | move %2 | release").arg(ends[0], ends[1]),
               QStringLiteral("- | frame on %1 | selected 3; changed; frame off %1; rebuilt; painted").arg(way));
    }

    // The frame is over with its release, and a line never was one.
    addRow("press 270,170 | move 330,230 | release | press edge | release",
           "- | frame on 270,170 330,230 | selected 3; changed; frame off 270,170 330,230; rebuilt; painted | - | " +
               selected("12"));
    addRow("mode 2 | press 270,170 | move 330,230 | release | mode 0 | press empty | release",
           "mode 2 | - | frame on 270,170 330,230 | frame off 270,170 330,230 | mode 0 | - | " + nothingSelected);

    // Up to 8 pixels, both ways together, no frame is shown. It selects all the same.
    addRow("press 276,200 | move +8,0 | release", "- | - | " + selected("3"));
    addRow("press 276,200 | move +9,0 | release",
           "- | frame on 276,200 285,200 | selected 3; changed; frame off 276,200 285,200; rebuilt; painted");
    addRow("press 276,200 | move +5,3 | release", "- | - | " + selected("3"));
    addRow("press 276,200 | move 281,196 | release",
           "- | frame on 276,200 281,196 | selected 3; changed; frame off 276,200 281,196; rebuilt; painted");
    addRow("press empty | move +0,0 | release", "- | - | " + nothingSelected);
    addRow("press empty | move 100,230 | move 84,230 | release",
           "- | frame on 80,230 100,230 | - | " + nothingSelected);

    addRow("mode 2 | press empty | move +8,0 | release", "mode 2 | - | - | -");
    addRow("mode 2 | press empty | move +9,0 | release",
           "mode 2 | - | frame on 80,230 89,230 | frame off 80,230 89,230");
    addRow("mode 2 | press empty | move 100,230 | move 84,230 | release",
           "mode 2 | - | frame on 80,230 100,230 | - | -");
    addRow("mode 2 | press empty | right-press | move +20,0", "mode 2 | - | right-clicked 0 -1 | -");
    addRow("mode 2 | press node3 | move +20,0 | release",
           "mode 2 | - | frame on 300,200 320,200 | frame off 300,200 320,200");
}

void ViewGesturesTest::selectsByFrames()
{
    playRow();
}

void ViewGesturesTest::zoomsToFrames_data()
{
    addColumns();
    addRow("mode 3 | press empty | release", "mode 3 | - | mode 0");
    addRow("mode 3 | press empty | release | press node3", "mode 3 | - | mode 0 | " + selected("3"));
    // 300 by 225 pixels, three quarters of the view; its middle is off the view's by (50, 13).
    addRow("mode 3 | press 100,50 | move 399,274 | release",
           "mode 3 | - | frame on 100,50 399,274 | "
           "frame off 100,50 399,274; watched; changed; mode 0; camera 100,-25 x0.6667; painted");
    // Nearly all of the view; and the frame is over.
    addRow("mode 3 | press 1,1 | move 398,298 | release | press empty | release",
           "mode 3 | - | frame on 1,1 398,298 | frame off 1,1 398,298; mode 0; camera 0,0 x0.5025 | - | " +
               nothingSelected);
    // 300 by 75 and 100 by 225: the longer side counts.
    addRow("mode 3 | press 100,125 | move 399,199 | release",
           "mode 3 | - | frame on 100,125 399,199 | "
           "frame off 100,125 399,199; watched; changed; mode 0; camera 100,-25 x0.6667; painted");
    addRow("mode 3 | press 200,50 | move 299,274 | release",
           "mode 3 | - | frame on 200,50 299,274 | "
           "frame off 200,50 299,274; watched; changed; mode 0; camera 100,-25 x0.6667; painted");
    // Too small to be shown, but large enough to zoom. In the middle it is only seen with the next refresh.
    addRow("mode 3 | press 197,148 | move 201,150 | release", "mode 3 | - | - | mode 0; camera 0,0 x1");
    addRow("mode 3 | press 207,148 | move 211,150 | release",
           "mode 3 | - | - | watched; changed; mode 0; camera 800,0 x1; painted");
}

void ViewGesturesTest::zoomsToFrames()
{
    playRow();
}

void ViewGesturesTest::pansByHand_data()
{
    addColumns();
    addRow("mode 1 | press node1 | move +10,5 | release", "mode 1 | - | " + watchedFrom("-20,10 x0.5") + " | -");
    addRow("mode 1 | press empty | move +1,0 | release", "mode 1 | - | " + watchedFrom("-2,0 x0.5") + " | -");
    addRow("mode 1 | press empty | move +0,0 | release", "mode 1 | - | - | -");
    // From the left pixel column on a drag starts anew.
    addRow("mode 1 | press 0,100 | move 10,100 | move 20,100", "mode 1 | - | - | " + watchedFrom("-20,0 x0.5"));
    addRow("mode 1 | press 1,100 | move 11,100", "mode 1 | - | " + watchedFrom("-20,0 x0.5"));
    addRow("mode 1 | press 10,100 | move 0,100 | move 10,100 | move 20,100",
           "mode 1 | - | " + watchedFrom("20,0 x0.5") + " | - | " + watchedFrom("0,0 x0.5"));
    // The right button refreshes, and changes nothing.
    addRow("mode 1 | right-press empty | move +1,1 | move +1,1 | right-release",
           "mode 1 | right-clicked 0 -1 | - | watched; changed; painted | -");
    addRow("mode 1 | right-press empty | right-release | middle-press | move +1,1 | move +1,1",
           "mode 1 | right-clicked 0 -1 | - | - | - | -");
    addRow("mode 1 | right-press empty | press | release | move +1,1 | move +1,1",
           "mode 1 | right-clicked 0 -1 | - | - | - | -");
    addRow("mode 1 | press empty | release | right-press | move +1,1 | move +1,1",
           "mode 1 | - | - | right-clicked 0 -1 | - | watched; changed; painted");
    addRow("mode 1 | middle-press empty | move +9,9 | move +9,9", "mode 1 | - | - | -");
}

void ViewGesturesTest::pansByHand()
{
    playRow();
}

void ViewGesturesTest::turnsTheWheel_data()
{
    addColumns();
    const QString in = watchedFrom("0,0 x0.525");
    const QString out = watchedFrom("0,0 x0.4762");
    addRow("wheel 0,120", in);
    addRow("wheel 0,1", in);
    addRow("wheel -120,120", in);
    addRow("wheel 0,0", out);
    addRow("wheel 120,0", out);
    addRow("wheel 0,-1", out);
    addRow("wheel 0,-120", out);

    // Only a control key whose press the view has seen blocks the wheel, and it does so until the view sees the end.
    addRow("ctrl+wheel 0,120", in);
    addRow("key-down Control | wheel 0,120", "- | -");
    addRow("key-down Control | wheel 0,-120", "- | -");
    addRow("key-down Control | key-down Shift | key-up Shift | ctrl+wheel 0,120", "- | - | - | -");
    addRow("key-down Control | press empty | release | wheel 0,120", "- | - | " + nothingSelected + " | -");
    addRow("key-down Control | key-up Control | wheel 0,120", "- | - | " + in);
    addRow("key-down Control | blocked | ctrl+wheel 0,120", "- | - | " + in);
    addRow("key-down Control | double-click empty | ctrl+wheel 0,120", "- | - | " + in);
    addRow("key-down Control | double-click node3 | ctrl+wheel 0,120", "- | double-clicked 1 3 | " + in);
    addRow("key-down Shift | wheel 0,120", "- | " + in);
    addRow("key-down Meta | wheel 0,120", "- | " + in);
    // At full size there is no way in.
    addRow("mode 3 | press 197,148 | move 201,150 | release | wheel 0,120",
           "mode 3 | - | - | mode 0; camera 0,0 x1 | -");
}

void ViewGesturesTest::turnsTheWheel()
{
    playRow();
}

void ViewGesturesTest::zoomsAroundTheCursor()
{
    Playground playground;
    QVERIFY(playground.show());
    // 100 and 40 pixels off the middle are 200 and 80 units, and then 105 and 42 pixels: the camera makes up for 5 and
    // 2 of them. Where the event says that the mouse is does not count.
    QCursor::setPos(playground.view->mapToGlobal({300, 110}));
    QCOMPARE(playground.play("wheel 0,120"), watchedFrom("9,3 x0.525"));
}

void ViewGesturesTest::isSwitchedOff_data()
{
    addColumns();
    for (const int mode : {0, 1, 2, 3}) {
        addRow(QStringLiteral("mode %1 | off | press node3 | move +20,5 | release | wheel 0,120 | right-press node3 | "
                              "move +20,5 | right-release | double-click node3")
                   .arg(mode),
               QStringLiteral("mode %1 | - | - | - | - | - | - | - | - | -").arg(mode));
    }
    addRow("off | mode 1 | on | press empty | move +10,5", "- | mode 1 | - | - | " + watchedFrom("-20,10 x0.5"));
    addRow("off | key-down Control | on | wheel 0,120", "- | - | - | " + watchedFrom("0,0 x0.525"));
    addRow("key-down Control | off | key-up Control | on | wheel 0,120", "- | - | - | - | -");

    // What a gesture has set stays set until the next press.
    addRow("press node1 | off | move +50,50 | release | on | middle-press 110,105 | move 120,110",
           "- | - | - | - | - | - | " + movedBy("40,-20"));
    addRow("press node1 | off | release | on | press empty | move +9,0", "- | - | - | - | - | frame on 80,230 89,230");
    addRow("press empty | move +9,0 | off | release | on | middle-press | move +1,0",
           "- | frame on 80,230 89,230 | - | - | - | - | frame on 80,230 90,230");
    addRow("press empty | off | move +9,0 | on | release", "- | - | - | - | " + nothingSelected);
}

void ViewGesturesTest::isSwitchedOff()
{
    playRow();
}

void ViewGesturesTest::handlesKeysOfTheHost_data()
{
    addColumns();
    addRow("handle-key 1", "mode 2");
    addRow("handle-key 2", "mode 0");
    addRow("handle-key 3", "mode 3");
    addRow("handle-key Left | handle-key Left", watchedFrom("-800,0 x0.5") + " | " + watchedFrom("-1600,0 x0.5"));
    addRow("handle-key Right", watchedFrom("800,0 x0.5"));
    addRow("handle-key 1 | press empty | move +9,0", "mode 2 | - | frame on 80,230 89,230");
    addRow("handle-key Up | handle-key 4 | handle-key Space", "- | - | -");
    addRow("off | handle-key 1", "- | mode 2");
    // Pressed once the hand, twice the whole scene, more often nothing; and then the count starts anew.
    const QString wholeScene = watchedFrom("0,0 x0.05");
    addRow("handle-key A | await | handle-key A | await", "- | mode 1 | - | mode 1");
    addRow("handle-key A | handle-key A | await | handle-key A | await", "- | - | " + wholeScene + " | - | mode 1");
    addRow("handle-key A | handle-key A | handle-key A | time-up | handle-key A | time-up",
           "- | - | - | - | - | mode 1");
    addRow("time-up", "-");
    for (const char* key : {"1", "2", "3", "A", "Left", "Right"})
        addRow(QStringLiteral("key-down %1 | key-up %1").arg(key), "- | -");
}

void ViewGesturesTest::handlesKeysOfTheHost()
{
    playRow();
}

void ViewGesturesTest::countsPressesForAWhile()
{
    Playground playground;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(playground.play("handle-key A | await"), "- | mode 1");
    QVERIFY(timer.elapsed() >= 150); // 200, less what a coarse timer may lack
}

QTEST_MAIN(ViewGesturesTest)

#include "ViewGesturesTest.moc"
