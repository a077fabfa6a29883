// Builds both atlases as a host's start-up does, asks for some characters beyond the first ones, and writes the atlases
// as PNG files, upright: atlas-pictures OUTPUT_DIR

#include "atlas/ImageManager.h"
#include "startup/AtlasStart.h"

#include <QDir>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTextStream>

#include <cstdlib>

namespace
{

/// Text that the first build has no cells for: its pixels must come with a later run.
const QString laterText = QStringLiteral("äöüßéñΩДЖ€→★");

void waitForNextImage(ImageManager& manager)
{
    QEventLoop loop;
    QObject::connect(&manager, SIGNAL(signalImageChanged()), &loop, SLOT(quit()));
    loop.exec();
}

bool writePicture(const ImageManager& manager, const QString& file)
{
    QTextStream out(stdout);
    const QImage upright = manager.image().mirrored();
    if (!upright.save(file)) {
        QTextStream(stderr) << "atlas-pictures: cannot write " << QDir::toNativeSeparators(file) << '\n';
        return false;
    }
    out << file << ": " << manager.texRowNum() << " by " << manager.texColNum() << " cells, " << upright.width()
        << " by " << upright.height() << " pixels\n";
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 2 || !QDir().mkpath(arguments.at(1))) {
        QTextStream(stderr) << "usage: atlas-pictures OUTPUT_DIR\n";
        return EXIT_FAILURE;
    }
    const QDir output(arguments.at(1));

    NELK::startAtlases();
    ImageManager& icons = *ImageManager::instance(0);
    ImageManager& words = *ImageManager::instance(1);
    QCoreApplication::processEvents(); // the first build arrives
    for (const QChar character : laterText)
        words.requestWord(character.unicode());
    waitForNextImage(words);

    const bool written = writePicture(icons, output.filePath(QStringLiteral("entity-atlas.png"))) &&
                         writePicture(words, output.filePath(QStringLiteral("text-atlas.png")));
    return written ? EXIT_SUCCESS : EXIT_FAILURE;
}
