#include "atlas/ImageManager.h"

#include "atlas/EntityImageManagerThread.h"
#include "atlas/TextImageManagerThread.h"

#include <QCoreApplication>
#include <QImageReader>
#include <QTimer>

namespace
{

constexpr int repaintInterval = 1000;

/// The two managers. They are never deleted, since labels and views may ask for cells until the very end; but no run is
/// cut off: one that is under way when the application object or the process goes is waited for.
class ManagerPair
{
public:
    static ManagerPair& instance()
    {
        static ManagerPair pair;
        return pair;
    }

    ImageManager* entities = nullptr;
    ImageManager* words = nullptr;

private:
    ManagerPair()
    {
        // What a run relies on inside Qt is set up before this object is complete, and so goes after it.
        QImageReader::supportedImageFormats();
        qAddPostRoutine([] { instance().waitForRuns(); });
    }
    ~ManagerPair() { waitForRuns(); }
    Q_DISABLE_COPY(ManagerPair)

    void waitForRuns() const
    {
        for (ImageManager* manager : {entities, words}) {
            if (manager)
                manager->waitForRun();
        }
    }
};

} // namespace

ImageManager* ImageManager::instance(qint32 index)
{
    ManagerPair& pair = ManagerPair::instance();
    if (index == 0) {
        if (!pair.entities)
            pair.entities = new ImageManager(new EntityImageManagerThread);
        return pair.entities;
    }
    if (!pair.words)
        pair.words = new ImageManager(new TextImageManagerThread);
    return pair.words;
}

ImageManager::ImageManager(ImageManagerThread* ownThread) : timer(new QTimer(this)), thread(ownThread)
{
    thread->setParent(this);
    connect(thread, SIGNAL(signalFinished(QImage, SImageConfig)), this, SLOT(slotThreadFinished(QImage, SImageConfig)));
    connect(timer, SIGNAL(timeout()), this, SLOT(slotUpdateTimerEvent()));
    timer->start(repaintInterval);
}

ImageManager::~ImageManager() = default;

void ImageManager::waitForRun()
{
    thread->wait();
}

void ImageManager::startInitial()
{
    if (thread->isRunning() || thread->isInitialized())
        return;
    thread->setMode(BUILD_INITIAL);
    thread->start(QThread::InheritPriority);
    thread->wait();
}

bool ImageManager::startReload()
{
    if (requestCount != 0 || thread->isRunning())
        return false;
    thread->setMode(BUILD_RELOAD);
    thread->start(QThread::InheritPriority);
    thread->wait();
    return true;
}

SImageCell ImageManager::requestCell(E_IMAGE_KIND kind, const QString& name)
{
    const qint32 id = thread->imageId(kind, name);
    if (id <= 0)
        return takeNewCell(thread->addCell(0, name));
    if (kind == IMAGE_FILE) {
        thread->markForRepaint(id);
        ++requestCount;
    }
    return config.cells.value(id);
}

SImageCell ImageManager::requestWord(qint32 code)
{
    const auto known = config.cells.constFind(code);
    if (known != config.cells.constEnd())
        return *known;
    return takeNewCell(thread->addCell(code, QString()));
}

SImageCell ImageManager::takeNewCell(const SImageCell& cell)
{
    config.cells.insert(cell.id, cell);
    ++requestCount;
    return cell;
}

void ImageManager::slotUpdateTimerEvent()
{
    if (requestCount == 0 || thread->isRunning())
        return;
    requestCount = 0;
    thread->setMode(BUILD_REPAINT);
    thread->start(QThread::InheritPriority);
}

void ImageManager::slotThreadFinished(QImage img, SImageConfig newConfig)
{
    finishedImage = img;
    // Cells handed out since the worker took stock are dropped here; the thread still has them pending.
    config = newConfig;
    Q_EMIT signalImageChanged();
}
