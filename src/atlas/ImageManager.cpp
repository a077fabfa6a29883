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

/// The timers go with the application's event loop. Stopped, they can start again with that of the next application.
void endWithApplication()
{
    waitForRuns();
    for (ImageManager* manager : {entityImages, wordImages}) {
        if (manager)
            manager->stopTicking();
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
        qAddPostRoutine(endWithApplication);
    }
}

void ImageManager::stopTicking()
{
    timer->stop();
}

void ImageManager::startInitial()
{
    keepTicking();
    if (isStarted())
        return;
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
        countRequest();
    }
    const SImageCell* const known = findCell(id);
    return known ? *known : SImageCell();
}

SImageCell ImageManager::requestWord(qint32 code)
{
    if (const SImageCell* const known = findCell(code))
        return *known;
    return takeNewCell(thread->addCell(code, QString()));
}

const SImageCell* ImageManager::findCell(qint32 id) const
{
    for (const QMap<qint32, SImageCell>* cells : {&config.cells, &newCells}) {
        const auto cell = cells->constFind(id);
        if (cell != cells->constEnd())
            return &*cell;
    }
    return nullptr;
}

SImageCell ImageManager::takeNewCell(const SImageCell& cell)
{
    newCells.insert(cell.id, cell);
    countRequest();
    return cell;
}

void ImageManager::countRequest()
{
    ++requestCount;
    keepTicking();
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
    config = std::move(newConfig);
    // Those handed out since the worker took stock are dropped as well; the thread still has them pending.
    newCells.clear();
    Q_EMIT signalImageChanged();
}
