#include "Tour.h"

#include "MainWindow.h"

#include <NELK/GraphNode.h>

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

QList<Step> stepsThrough(MainWindow& window)
{
    NELK::GraphView& view = window.view();
    NELK::GraphScene& scene = window.scene();
    return {{QStringLiteral("whole-scene"), [&view] { view.showFullEye(); }},
            {QStringLiteral("fitted"), [&view] { view.fitToView(); }},
            {QStringLiteral("selection"), [&view] { view.selectedViewMax(); }},
            {QStringLiteral("near"),
             [&view] {
                 view.setCameraScale(1.0f);
                 view.setCameraX(1400);
                 view.setCameraY(-100);
             }},
            {QStringLiteral("without-overview-and-bars"),
             [&view] {
                 view.slotViewEyeOn(false);
                 view.setScrollBarShow(false);
                 view.fitToView();
             }},
            {QStringLiteral("without-node-text"), [&view, &scene] {
                 view.slotViewEyeOn(true);
                 view.setScrollBarShow(true);
                 scene.setNodeTextShow(false);
                 view.NelkUpdate();
                 view.fitHeight();
             }}};
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
