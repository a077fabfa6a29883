#pragma once

#include "atlas/EntityImageManagerThread.h"
#include "atlas/ImageManager.h"

#include <QPair>
#include <QTimer>
#include <QtTest>

namespace NELK
{

/// Row and column.
using Place = QPair<qint32, qint32>;

/// An atlas of its own, painted when the test says so and not by the clock.
class EntityAtlas
{
public:
    EntityAtlas() { m_manager.findChild<QTimer*>()->stop(); }

    bool build()
    {
        m_manager.startInitial();
        return arrives();
    }
    bool repaint() { return QMetaObject::invokeMethod(&m_manager, "slotUpdateTimerEvent") && arrives(); }
    bool reload() { return m_manager.startReload() && arrives(); }

    ImageManager& manager() { return m_manager; }
    SImageCell cell(E_IMAGE_KIND kind, const QString& name = {}) { return m_manager.requestCell(kind, name); }
    Place place(E_IMAGE_KIND kind, const QString& name = {}) { return placeOf(cell(kind, name)); }
    QRgb color(E_IMAGE_KIND kind, const QString& name = {}) { return colorOf(cell(kind, name)).rgba(); }
    QImage picture(E_IMAGE_KIND kind, const QString& name = {}) { return pictureAt(place(kind, name)); }

    static Place placeOf(const SImageCell& cell) { return {cell.texRowIdx, cell.texColIdx}; }
    static QColor colorOf(const SImageCell& cell) { return static_cast<const SEntityPayload*>(cell.payload)->color; }
    QImage pictureAt(Place place) const
    {
        return m_manager.image().mirrored().copy(place.second * 256, place.first * 256, 256, 256);
    }

private:
    bool arrives()
    {
        constexpr int patience = 60 * 1000;
        const bool arrived = m_arrivals.wait(patience);
        m_manager.waitForRun(); // the image comes a moment before the end of the run
        return arrived;
    }

    ImageManager m_manager{new EntityImageManagerThread};
    QSignalSpy m_arrivals{&m_manager, SIGNAL(signalImageChanged())};
};

} // namespace NELK
