#include "atlas/ImageManager.h"

#include "atlas/EntityImageManagerThread.h"
#include "atlas/TextImageManagerThread.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdlib>
#include <utility>

namespace
{

constexpr int repaintInterval = 1000;

// Made on first use and never deleted, since labels and views may ask for cells until the very end.
ImageManager* entityImages = nullptr;
ImageManager* wordImages = nullptr;

/// No run is cut off: what ends first, the application object or the process, waits for one that is under way.
void waitForRuns()
{
    for (ImageManager* manager : {entityImages, wordImages}) {
        if (manager)
            manager->waitForRun();
    }
}

} // namespace

ImageManager* ImageManager::instance(qint32 index)
{
    if (index == entityIndex) {
        if (!entityImages)
            entityImages = new ImageManager(new EntityImageManagerThread);
        return entityImages;
    }
    if (!wordImages)
        wordImages = new ImageManager(new TextImageManagerThread);
    return wordImages;
}

ImageManager::ImageManager(ImageManagerThread* ownThread) : timer(new QTimer(this)), thread(ownThread)
{
    thread->setParent(this);
    connect(thread, SIGNAL(signalFinished(QImage, SImageConfig)), this, SLOT(slotThreadFinished(QImage, SImageConfig)));
    connect(timer, SIGNAL(timeout()), this, SLOT(slotUpdateTimerEvent()));
    keepTicking();
}

ImageManager::~ImageManager() = default;

void ImageManager::waitForRun()
{
    thread->wait();
}

bool ImageManager::isStarted() const
{
    return thread->isInitialized();
}

/// Starts the timer as soon as there is an application that it can run in.
void ImageManager::keepTicking()
{
    if (!timer->isActive() && QCoreApplication::instance()) {
        timer->start(repaintInterval);
        qAddPostRoutine(waitForRuns);
    }
}

void ImageManager::startInitial()
{
    if (isStarted())
        return;
    keepTicking();
    thread->wait(); // a run before the first build ends at once
    thread->setMode(BUILD_INITIAL);
    thread->start(QThread::InheritPriority);
    thread->wait();
    // Whatever a run relies on inside Qt is set up by now, and so goes after this has been called.
    std::atexit(waitForRuns);
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
    keepTicking();
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
    finishedImage = std::move(img);
    // Cells handed out since the worker took stock are dropped here; the thread still has them pending.
    config = std::move(newConfig);
    Q_EMIT signalImageChanged();
}
