#include "Tour.h"

#include "MainWindow.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QTextStream>

#include <functional>

namespace
{

struct Step
{
    QString name;
    std::function<void()> play;
};

bool writePicture(MainWindow& window, const QString& file)
{
    // Twice: what one step changes may ask for a repaint with the events of the next.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    if (window.grab().save(file)) {
        QTextStream(stdout) << file << '\n';
        return true;
    }
    QTextStream(stderr) << "nelk-explorer: cannot write " << QDir::toNativeSeparators(file) << '\n';
    return false;
}

/// As if somebody pressed the button with that text.
void press(const MainWindow& window, const QString& text)
{
    for (QAction* action : window.findChildren<QAction*>()) {
        if (action->text() == text)
            action->trigger();
    }
}

QList<Step> stepsThrough(MainWindow& window)
{
    const auto pressing = [&window](const QStringList& texts) {
        return [&window, texts] {
            for (const QString& text : texts)
                press(window, text);
        };
    };
    return {{QStringLiteral("whole-scene"), pressing({"Whole scene"})},
            {QStringLiteral("fitted"), pressing({"Fit"})},
            {QStringLiteral("selection"), pressing({"Fit selection"})},
            {QStringLiteral("near"),
             [&window] {
                 window.view().setCameraScale(1.0f);
                 window.view().setCameraX(1400);
                 window.view().setCameraY(-100);
             }},
            {QStringLiteral("without-overview-and-bars"), pressing({"Overview", "Scroll bars", "Fit"})},
            {QStringLiteral("without-node-text"), pressing({"Overview", "Scroll bars", "Node text", "Fit height"})}};
}

} // namespace

bool playTour(MainWindow& window, const QString& directory)
{
    if (!QDir().mkpath(directory)) {
        QTextStream(stderr) << "nelk-explorer: cannot make " << QDir::toNativeSeparators(directory) << '\n';
        return false;
    }
    int number = 0;
    for (const Step& step : stepsThrough(window)) {
        step.play();
        ++number;
        if (!writePicture(window,
                          QDir(directory).filePath(QStringLiteral("tour-%1-%2.png").arg(number).arg(step.name))))
            return false;
    }
    return true;
}
