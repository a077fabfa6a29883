// The first build of each atlas beside the work that no build can do without: rendering the glyphs, decoding the files,
// and one pass over the bytes of the picture. Run it in the folder that holds entity/ and Floats/, with a font where
// the library looks for it.

#include "atlas/EntityImageManagerThread.h"
#include "atlas/GlyphFace.h"
#include "atlas/ImageDirectory.h"
#include "atlas/ImageManager.h"
#include "atlas/TextImageManagerThread.h"
#include "support/ProcessMemory.h"
#include "support/RunBenchmarks.h"
#include "support/Timing.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

#include <benchmark/benchmark.h>

#include <vector>

using namespace NELK;

namespace
{

/// What a first build leaves behind once its result has arrived.
struct Build
{
    std::vector<qint32> ids;
    qint64 pictureBytes = 0;
    double seconds = 0.0;
};

template <typename Thread>
Build buildAtlas()
{
    auto* thread = new Thread;
    ImageManager manager(thread);
    Build build;
    QObject::connect(thread, &ImageManagerThread::signalFinished, &manager,
                     [&build](const QImage& image, const SImageConfig& config) {
                         build.pictureBytes = image.sizeInBytes();
                         for (const SImageCell& cell : config.cells)
                             build.ids.push_back(cell.id);
                     });
    build.seconds = secondsOf([&manager] { manager.startInitial(); });
    QCoreApplication::processEvents();
    return build;
}

void passOverBytes(qint64 bytes)
{
    const std::vector<char> from(static_cast<std::size_t>(bytes), 1);
    std::vector<char> to(from.size());
    std::copy(from.begin(), from.end(), to.begin());
    benchmark::DoNotOptimize(to.data());
}

void renderGlyphsTwice(const std::vector<qint32>& codes)
{
    const QString font = QStandardPaths::writableLocation(QStandardPaths::FontsLocation) + QStringLiteral("/msyh.ttc");
    GlyphFace face;
    face.open(font.toLocal8Bit().constData(), 60, 60);
    for (const qint32 code : codes) {
        SGlyphMetrics metrics;
        face.glyphMetrics(static_cast<quint16>(code), metrics);
        benchmark::DoNotOptimize(face.glyphImage(static_cast<quint16>(code)));
    }
}

void decodeFiles()
{
    for (const char* directory : {"entity/zh/256/", "Floats/"}) {
        const QMap<QString, QString> images = scanImages(QLatin1String(directory));
        for (const QString& image : images)
            benchmark::DoNotOptimize(QImage(image));
    }
}

/// Takes a first build and the bare work in turns. The time told is that of the build.
template <typename Thread, typename BareWork>
void besideBareWork(benchmark::State& state, BareWork bareWork)
{
    double bareSeconds = 0.0;
    double buildSeconds = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        const double before = residentBytes();
        const Build build = buildAtlas<Thread>();
        state.counters["peak_bytes"] = peakResidentBytes() - before;
        state.counters["canvas_and_output_bytes"] = static_cast<double>(2 * build.pictureBytes);
        state.counters["cells"] = static_cast<double>(build.ids.size());
        state.SetIterationTime(build.seconds);
        buildSeconds += build.seconds;
        bareSeconds += secondsOf([&] { bareWork(build); });
    }
    state.counters["ratio_to_bare"] = buildSeconds / bareSeconds;
}

void textAtlas(benchmark::State& state)
{
    besideBareWork<TextImageManagerThread>(state, [](const Build& build) {
        renderGlyphsTwice(build.ids);
        passOverBytes(build.pictureBytes);
    });
}

void entityAtlas(benchmark::State& state)
{
    besideBareWork<EntityImageManagerThread>(state, [](const Build&) { decodeFiles(); });
}

BENCHMARK(textAtlas)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(entityAtlas)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
