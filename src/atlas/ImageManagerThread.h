#pragma once

#include "atlas/ImageKind.h"
#include "atlas/SImageConfig.h"

#include <QImage>
#include <QMutex>
#include <QString>
#include <QThread>

/// What the next run of an atlas thread does.
enum E_BUILD_MODE
{
    /// Fills the atlas for the first time.
    BUILD_INITIAL = 0,
    /// Paints the cells that were asked for since.
    BUILD_REPAINT = 1,
    /// Reads the atlas's sources again.
    BUILD_RELOAD = 2
};

/// Paints one atlas beside the user interface thread: an image cut into a grid of equal square cells.
///
/// Each run is a fresh start of the thread, without an event loop; at most one is under way. A cell is handed out on
/// the user interface thread at once, and gets its picture in a later run. Two locks guard what both threads touch. The
/// one for new cells is never held for long, whatever the size of the atlas; neither is held for the time that pixels
/// take.
class ImageManagerThread : public QThread
{
    Q_OBJECT

public:
    explicit ImageManagerThread(QObject* parent = nullptr);
    /// Waits for a run that is under way.
    ~ImageManagerThread() override;

    /// The id under which the image is known; 0 if it is not.
    virtual qint32 imageId(E_IMAGE_KIND kind, const QString& name);
    /// Hands out a cell for an image that has none. Its picture follows with the next repaint.
    virtual SImageCell addCell(qint32 key, const QString& name) = 0;

    /// Says what the next run does. Not while a run is under way.
    void setMode(E_BUILD_MODE nextMode) { mode = nextMode; }
    /// Whether the first build has been done. Only builds change it, and these are waited for.
    bool isInitialized() const { return initialized; }
    /// Has the picture of a cell painted again by the next repaint.
    void markForRepaint(qint32 id);

Q_SIGNALS:
    /// A run has ended: the atlas, bottom row first, and its grid.
    void signalFinished(QImage img, SImageConfig config);

protected:
    void run() override;
    virtual void buildInitial() = 0;
    virtual void buildReload() = 0;
    /// Paints all cells whose picture is not yet on the canvas.
    virtual void repaint() = 0;

    void setInitialized() { initialized = true; }
    /// Hands out the next place of the grid, in place of what the key had. While a run may be under way, only with
    /// `mutex` held.
    SImageCell& allocateCell(qint32 key);
    /// Makes the cells handed out so far known to the worker.
    void publishPending();
    /// What each repaint begins with: publishes, and gives the canvas the present size of the grid.
    void beginRepaint(int cellEdge, QImage::Format format);
    /// Finds the next cell, in the order of ids, that is not painted, and takes it for painted. In one repaint it comes
    /// to no cell twice, also when several threads ask.
    bool takeUnpaintedCell(SImageCell& cell);
    /// The bytes of the canvas, bottom row first, as an image of a format with pixels of the same size.
    QImage canvasUpsideDown(QImage::Format format) const;

private:
    SImageConfig currentGrid();

    bool initialized = false;
    E_BUILD_MODE mode = BUILD_INITIAL;
    /// Guards the cells of `current` and how far a repaint has come in them. Taken before `mutex` where both are
    /// needed.
    QMutex currentMutex;
    qint32 lastTakenId = 0;

protected:
    /// Guards `pending`. A request for a new cell waits for this one.
    QMutex mutex;
    /// The working image, top row first. The only place where painted cells live on between runs.
    QImage canvas;
    /// The image as it is handed out: the canvas upside down.
    QImage output;
    /// The grid as the worker paints it.
    SImageConfig current;
    /// The grid with the cells that the worker does not know yet.
    SImageConfig pending;
};
