// The host application: a window on a network, built through the public interface alone.

#include "MainWindow.h"
#include "SampleNetwork.h"
#include "Tour.h"

#include <NELK/InitNelk.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QTextStream>

#include <cstdlib>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("nelk-explorer"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows a network."));
    parser.addHelpOption();
    const QCommandLineOption tourOption(QStringLiteral("tour"),
                                        QStringLiteral("Plays a tour, leaves a picture of each step in DIR, and ends."),
                                        QStringLiteral("DIR"));
    parser.addOption(tourOption);
    parser.process(application);

    const bool usable = NELK::INIT_NELK() != NELK::GL_TEST_NO_GL;
    QCoreApplication::processEvents(); // the atlases arrive
    MainWindow window;
    const Selection selection = buildSampleNetwork(window.scene());
    window.showSelection(selection.nodes, selection.edges);
    window.resize(1280, 860);
    window.show();
    if (parser.isSet(tourOption)) {
        if (!usable)
            QTextStream(stderr) << "nelk-explorer: OpenGL 3.3 is not available, so there is nothing to show\n";
        return usable && playTour(window, parser.value(tourOption)) ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    if (!usable)
        QMessageBox::warning(&window, QApplication::applicationName(),
                             QStringLiteral("OpenGL 3.3 is not available, so the network cannot be drawn."));
    window.view().fitToView();
    return QApplication::exec();
}
