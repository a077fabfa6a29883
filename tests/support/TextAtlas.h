#pragma once

#include "atlas/ImageManager.h"
#include "atlas/TextImageManagerThread.h"
#include "support/ReferenceFace.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QList>
#include <QMetaObject>
#include <QString>

#include <algorithm>

namespace NELK
{

/// The thread of the text atlas, with the worker's side open to look at. Not while a run is under way.
class OpenTextThread : public TextImageManagerThread
{
public:
    using TextImageManagerThread::canvas;
    using TextImageManagerThread::current;
};

/// A text atlas of a test's own. Only the test moves it on: its timer never ticks, as no event loop runs.
class TextAtlas
{
public:
    ImageManager& manager() { return m_manager; }
    const QImage& image() const { return m_manager.image(); }
    const SImageConfig& grid() const { return m_thread->current; }
    const QImage& canvas() const { return m_thread->canvas; }
    OpenTextThread& thread() { return *m_thread; }

    SImageCell request(int code) { return m_manager.requestWord(code); }

    /// Does the first build and receives it.
    void build()
    {
        m_manager.startInitial();
        receive();
    }
    /// Starts a repaint if there is something to paint.
    void startTick() { QMetaObject::invokeMethod(&m_manager, "slotUpdateTimerEvent", Qt::DirectConnection); }
    /// Does a repaint if there is something to paint, and receives it.
    void tick()
    {
        startTick();
        m_manager.waitForRun();
        receive();
    }
    /// Handles the events that runs have left.
    void receive() { QCoreApplication::sendPostedEvents(&m_manager, QEvent::MetaCall); }

private:
    OpenTextThread* m_thread = new OpenTextThread;
    ImageManager m_manager{m_thread};
};

inline QString metricsOf(const SImageCell& cell)
{
    return metricsText(*static_cast<const SGlyphMetrics*>(cell.payload));
}

/// Whether no pixel of a gray image has any ink.
inline bool isBlank(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        const uchar* line = image.constScanLine(y);
        if (!std::all_of(line, line + image.width(), [](uchar pixel) { return pixel == 0; }))
            return false;
    }
    return true;
}

/// The characters of the first build, in the order of their cells.
inline QList<quint16> firstCharacters()
{
    QList<quint16> codes;
    for (quint16 code = ' '; code <= '~'; ++code)
        codes.append(code);
    QFile list(QStringLiteral(":/imagetag/tools/resource-gen/simpleword_3500.txt"));
    list.open(QIODevice::ReadOnly);
    const QString text = QString::fromUtf8(list.readAll());
    for (const QChar character : text) {
        if (!character.isSpace())
            codes.append(character.unicode());
    }
    return codes;
}

} // namespace NELK
