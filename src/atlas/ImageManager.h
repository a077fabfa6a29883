#pragma once

#include "atlas/ImageKind.h"
#include "atlas/SImageConfig.h"

#include <QImage>
#include <QObject>
#include <QString>

class ImageManagerThread;
class QTimer;

/// Hands out the cells of one atlas and holds the atlas as last painted.
///
/// There are two, one for entity icons and one for characters, both made on first use and living as long as the
/// process. All of it belongs to the user interface thread, and no request waits for pixels: a cell that was never
/// asked for gets its place at once, and a run of the thread that starts with a later tick of a timer paints it.
class ImageManager : public QObject
{
    Q_OBJECT

public:
    static constexpr qint32 entityIndex = 0;
    static constexpr qint32 wordIndex = 1;

    /// The manager of entity icons for index 0, that of characters for any other.
    static ImageManager* instance(qint32 index);

    /// Builds the atlas for the first time; returns when that is done. The result arrives with the next events. Does
    /// nothing when the atlas has been built before.
    void startInitial();
    /// Whether the atlas has been built for the first time.
    bool isStarted() const;
    /// Reads the atlas's sources again; returns when that is done. False, and nothing done, while a request waits for
    /// its repaint or a run is under way.
    bool startReload();

    /// The cell of an image. A name that is not known gets the cell of the first icon; a path that is not known gets a
    /// new cell. All zero if the atlas has not arrived.
    SImageCell requestCell(E_IMAGE_KIND kind, const QString& name);
    /// The cell of a UTF-16 code unit, a new one if it has none.
    SImageCell requestWord(qint32 code);

    /// The atlas as last painted, bottom row first; null until the first one has arrived.
    const QImage& image() const { return finishedImage; }
    qint32 texRowNum() const { return config.texRowNum; }
    qint32 texColNum() const { return config.texColNum; }

    /// Makes a manager with a thread of its own, which becomes its child. For tests; all others call instance().
    explicit ImageManager(ImageManagerThread* ownThread);
    ~ImageManager() override;

    /// Returns when no run is under way.
    void waitForRun();
    /// Nothing is painted from now on, until the next request or start while there is an application.
    void stopTicking();

Q_SIGNALS:
    /// A run has ended; image() is new.
    void signalImageChanged();

protected Q_SLOTS:
    void slotUpdateTimerEvent();
    void slotThreadFinished(QImage img, SImageConfig config);

private:
    const SImageCell* findCell(qint32 id) const;
    SImageCell takeNewCell(const SImageCell& cell);
    void countRequest();
    void keepTicking();

    /// Cells asked for or marked for repaint since the last repaint started.
    qint32 requestCount = 0;
    QTimer* timer;
    QImage finishedImage;
    /// The grid as of the last run that ended.
    SImageConfig config;
    /// The cells handed out since. Not in the grid, which is shared with the signal that brought it: with the first of
    /// them all of it would be copied.
    QMap<qint32, SImageCell> newCells;
    ImageManagerThread* thread;
};
