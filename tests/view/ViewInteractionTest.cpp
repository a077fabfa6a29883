#include "support/Playground.h"

#include <array>

using namespace NELK;

/// What each event leads to, in every mode, from every state that a gesture can be in. A state is brought about in the
/// mode that has it and, as a host may change modes at any time, carried into all others.
class ViewInteractionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drags_data();
    void drags();
    void presses_data();
    void presses();
    void releases_data();
    void releases();
    void turnsToTheRightButton_data();
    void turnsToTheRightButton();
    void letsGoOfAnotherButton_data();
    void letsGoOfAnotherButton();
    void clicksAlikeInAllModes_data();
    void clicksAlikeInAllModes();
    void zoomsAlikeInAllModes_data();
    void zoomsAlikeInAllModes();
};

namespace
{

struct State
{
    const char* name;
    const char* way;
};

constexpr std::array<State, 6> states{{
    {"idle", "mode 0"},
    {"pressed on selected", "press node1"},
    {"pressed on node", "press node3"},
    {"dragging", "press node1 | move +2,0"},
    {"framing", "press empty | move +16,-6"},
    {"panning", "mode 1 | press empty | move +16,-6"},
}};

void addColumns()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("account");
}

/// What comes of a script in one mode, from each of the states in their order.
void addRows(int mode, const QString& script, const std::array<QString, states.size()>& accounts)
{
    for (std::size_t i = 0; i < states.size(); ++i) {
        const QString before = QStringLiteral("%1 | mode %2").arg(QLatin1String(states[i].way)).arg(mode);
        QTest::addRow("%s, in mode %d: %s", states[i].name, mode, qPrintable(script))
            << before << script << accounts[i];
    }
}

void addRows(int mode, const QString& script, const QString& account)
{
    addRows(mode, script, {account, account, account, account, account, account});
}

void playRow()
{
    QFETCH(QString, before);
    QFETCH(QString, script);

    Playground playground;
    QVERIFY(playground.show());
    playground.play(before);
    QTEST(playground.play(script), "account");
}

// Scripts move the mouse by 10 pixels to the right and 5 down: 20 and -10 in the scene. The frames are small enough to
// be zoomed to at full size. The one of the state "framing" has its middle (-111, 78) pixels off that of the view and
// 0.0425 of its width, which takes the camera to (-2612, -1835); the other one leads beyond the limits of the scene.

const QString nothing = QStringLiteral("-");
const QString bothNodesMove = QStringLiteral("moved; changed; 1 by 20,-10; 2 by 20,-10; rebuilt all; painted");
const QString node3Moves = QStringLiteral("moved; changed; 3 by 20,-10; rebuilt all; painted");
const QString node1IsSelected = QStringLiteral("selected 1; changed; rebuilt; painted");
const QString node3IsSelected = QStringLiteral("selected 3; changed; rebuilt; painted");
const QString nothingIsSelected = QStringLiteral("selected; changed; rebuilt; painted");
const QString refreshed = QStringLiteral("watched; changed; painted");

QString pannedTo(const char* position)
{
    return QStringLiteral("watched; changed; camera %1 x0.5; painted").arg(QLatin1String(position));
}

} // namespace

void ViewInteractionTest::drags_data()
{
    addColumns();
    const QString frame = QStringLiteral("frame on 80,230 106,229");
    addRows(0, "move +10,5", {nothing, bothNodesMove, node3Moves, bothNodesMove, frame, frame});
    const QString pan = pannedTo("-20,10");
    addRows(1, "move +10,5", {nothing, pan, pan, pan, pan, pannedTo("-52,-2")});
    for (const int mode : {2, 3})
        addRows(mode, "move +10,5",
                {nothing, "frame on 100,100 110,105", "frame on 300,200 310,205", "frame on 100,100 112,105", frame,
                 frame});
}

void ViewInteractionTest::drags()
{
    playRow();
}

void ViewInteractionTest::presses_data()
{
    addColumns();
    const QString untilFrame = QStringLiteral("- | frame on 80,230 90,235 | ");
    const QString frameOff = QStringLiteral("frame off 80,230 90,235");
    const QString nothingAtLast = QStringLiteral("- | %1").arg(nothingIsSelected);
    const QString dragOfBoth = QStringLiteral("- | %1 | -").arg(bothNodesMove);
    const QString dragOf3 = QStringLiteral("%1 | %2 | -").arg(node3IsSelected, node3Moves);

    addRows(0, "press empty | move +10,5 | release",
            untilFrame + "selected; changed; " + frameOff + "; rebuilt; painted");
    addRows(0, "press empty | release",
            {nothingAtLast, nothingAtLast, nothingAtLast, "- | -", nothingAtLast, nothingAtLast});
    // A press leaves a frame in which nothing is. The release looks at it, whatever was dragged in the meantime.
    addRows(0, "press node1 | move +10,5 | release",
            {dragOfBoth, dragOfBoth, node1IsSelected + " | moved; changed; 1 by 20,-10; rebuilt all; painted | -",
             dragOfBoth, QStringLiteral("- | %1 | %2").arg(bothNodesMove, nothingIsSelected), dragOfBoth});
    addRows(0, "press node3 | move +10,5 | release",
            {dragOf3, dragOf3, QStringLiteral("- | %1 | -").arg(node3Moves), dragOf3,
             QStringLiteral("%1 | %2 | %3").arg(node3IsSelected, node3Moves, nothingIsSelected), dragOf3});

    const QString pan = QStringLiteral("- | %1 | -").arg(pannedTo("-20,10"));
    addRows(1, "press empty | move +10,5 | release",
            {pan, pan, pan, pan, pan, QStringLiteral("- | %1 | -").arg(pannedTo("-52,-2"))});
    addRows(1, "press node3 | release", "- | -");

    addRows(2, "press empty | move +10,5 | release", untilFrame + frameOff);
    addRows(2, "press node3 | release", "- | -");

    addRows(3, "press empty | move +10,5 | release",
            untilFrame + frameOff + "; watched; changed; mode 0; camera -3800,-2250 x1; painted");
    addRows(3, "press node3 | release",
            {"- | mode 0", "- | mode 0", "- | mode 0", "- | mode 0",
             "- | watched; changed; mode 0; camera -2612,-1835 x1; painted", "- | mode 0"});
}

void ViewInteractionTest::presses()
{
    playRow();
}

void ViewInteractionTest::releases_data()
{
    addColumns();
    // And then the gesture is over: in mode 0, which shows most, a mouse that moves moves nothing.
    const QString script = QStringLiteral("release | mode 0 | middle-press | move +10,5");
    const auto addReleases = [&script](int mode, std::array<QString, states.size()> accounts) {
        for (QString& account : accounts)
            account += QStringLiteral(" | mode 0 | - | -");
        addRows(mode, script, accounts);
    };
    addReleases(0, {nothingIsSelected, node1IsSelected, nothing, nothing,
                    "selected; changed; frame off 80,230 96,224; rebuilt; painted", nothingIsSelected});
    addReleases(1, {nothing, nothing, nothing, nothing, nothing, nothing});
    addReleases(2, {nothing, nothing, nothing, nothing, "frame off 80,230 96,224", nothing});
    addReleases(3, {"mode 0", "mode 0", "mode 0", "mode 0",
                    "frame off 80,230 96,224; watched; changed; mode 0; camera -2612,-1835 x1; painted", "mode 0"});
}

void ViewInteractionTest::releases()
{
    playRow();
}

void ViewInteractionTest::turnsToTheRightButton_data()
{
    addColumns();
    const auto addTurns = [](int mode, std::array<QString, states.size()> accounts) {
        const std::array<const char*, states.size()> clicked{"0 -1", "1 1", "1 3", "1 1", "0 -1", "0 -1"};
        for (std::size_t i = 0; i < states.size(); ++i)
            accounts[i].prepend(QStringLiteral("right-clicked %1 | ").arg(QLatin1String(clicked[i])));
        addRows(mode, "right-press | move +10,5 | move +10,5 | right-release | release", accounts);
    };
    const QString dragOfBoth = QStringLiteral("%1 | %1 | - | %2").arg(bothNodesMove, node1IsSelected);
    const QString click = QStringLiteral("- | - | - | %1").arg(nothingIsSelected);
    addTurns(0, {click, dragOfBoth, QStringLiteral("%1 | %1 | - | -").arg(node3Moves), dragOfBoth, click, click});

    const QString rotation = QStringLiteral("%1 | %1 | - | -").arg(refreshed);
    addTurns(1, {QStringLiteral("- | %1 | - | -").arg(refreshed), rotation, rotation, rotation, rotation, rotation});

    const QString stillness = QStringLiteral("- | - | - | -");
    addTurns(2, {stillness, stillness, stillness, stillness, "- | - | - | frame off 80,230 96,224", stillness});

    const QString modeLeft = QStringLiteral("- | - | - | mode 0");
    addTurns(3, {modeLeft, modeLeft, modeLeft, modeLeft, modeLeft, modeLeft});
}

void ViewInteractionTest::turnsToTheRightButton()
{
    playRow();
}

void ViewInteractionTest::letsGoOfAnotherButton_data()
{
    addColumns();
    // Any release puts the last position to x = -1, so that a drag of elements leaps from there.
    const QString script = QStringLiteral("middle-press | middle-release | move +10,5");
    const QString leap = QStringLiteral("- | - | moved; changed; 1 by %1,-10; 2 by %1,-10; rebuilt all; painted");
    const QString frame = QStringLiteral("- | - | frame on 80,230 106,229");
    addRows(0, script,
            {"- | - | -", leap.arg(222), "- | - | moved; changed; 3 by 622,-10; rebuilt all; painted", leap.arg(226),
             frame, frame});
    addRows(1, script, "- | - | -");

    const QString click = QStringLiteral("- | - | %1").arg(nothingIsSelected);
    const QString clickOn1 = QStringLiteral("- | - | %1").arg(node1IsSelected);
    addRows(0, "middle-press | middle-release | release",
            {click, clickOn1, "- | - | -", clickOn1,
             "- | - | selected; changed; frame off 80,230 96,224; rebuilt; painted", click});
}

void ViewInteractionTest::letsGoOfAnotherButton()
{
    playRow();
}

void ViewInteractionTest::clicksAlikeInAllModes_data()
{
    addColumns();
    for (const int mode : {0, 1, 2, 3}) {
        addRows(mode, "right-press node3 | right-press edge | right-press 50,20",
                "right-clicked 1 3 | right-clicked 2 12 | right-clicked 0 -1");
        addRows(mode, "double-click node3 | double-click edge | double-click 50,20",
                "double-clicked 1 3 | double-clicked 2 12 | -");
    }
}

void ViewInteractionTest::clicksAlikeInAllModes()
{
    playRow();
}

void ViewInteractionTest::zoomsAlikeInAllModes_data()
{
    addColumns();
    const auto addZooms = [](int mode, const QString& script, const QString& account) {
        const QString from0 = account.arg(QStringLiteral("0,0"));
        addRows(mode, script, {from0, from0, from0, from0, from0, account.arg(QStringLiteral("-32,-12"))});
    };
    const QString in = QStringLiteral("watched; changed; camera %1 x0.525; painted");
    const QString out = QStringLiteral("watched; changed; camera %1 x0.4762; painted");
    for (const int mode : {0, 1, 2, 3}) {
        addZooms(mode, "wheel 0,120", in);
        addZooms(mode, "wheel 0,-120", out);
        addZooms(mode, "key-down Control | wheel 0,120 | wheel 0,-120 | key-up Control | wheel 0,120",
                 "- | - | - | - | " + in);
        addZooms(mode, "key-down Control | blocked | wheel 0,120", "- | - | " + in);
    }
}

void ViewInteractionTest::zoomsAlikeInAllModes()
{
    playRow();
}

QTEST_MAIN(ViewInteractionTest)

#include "ViewInteractionTest.moc"
