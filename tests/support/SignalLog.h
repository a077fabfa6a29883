#pragma once

#include "scene/Scene.h"

#include <NELK/GraphScene.h>

#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>

namespace NELK
{

using Ids = QList<qint64>;

/// The signals of a scene in the order of their emission, as text. A selection tells its ids in numerical order.
class SignalLog
{
public:
    explicit SignalLog(const Scene& scene)
    {
        QObject::connect(&scene, &Scene::signalSelectChanged, [this, &scene](const Ids& ns, const Ids& es) {
            m_signals.append(selection(ns, es));
            if (selection(scene.selectedNodes.keys(), scene.selectedEdges.keys()) != m_signals.last())
                m_signals.append(QStringLiteral("while the sets hold something else"));
        });
        QObject::connect(&scene, &Scene::signalElementsMoved, [this] { m_signals.append(elementsMoved()); });
        QObject::connect(&scene, &Scene::signalChanged, [this](const QList<QRectF>& region) { logChanged(region); });
    }

    explicit SignalLog(const GraphScene& scene)
    {
        QObject::connect(&scene, &GraphScene::signalSelectChanged,
                         [this](const Ids& ns, const Ids& es) { m_signals.append(selection(ns, es)); });
        QObject::connect(&scene, &GraphScene::changed, [this](const QList<QRectF>& region) { logChanged(region); });
        QObject::connect(&scene, &GraphScene::signalSizeChanged, [this] { m_signals.append(sizeChanged()); });
    }

    Q_DISABLE_COPY(SignalLog)

    /// All signals since the last call.
    QStringList take()
    {
        QStringList taken;
        taken.swap(m_signals);
        return taken;
    }

    static QString selection(const Ids& nodes, const Ids& edges)
    {
        return QStringLiteral("selected nodes:%1, edges:%2").arg(joined(nodes), joined(edges));
    }
    static QString elementsMoved() { return QStringLiteral("elements moved"); }
    static QString changed() { return QStringLiteral("changed"); }
    static QString sizeChanged() { return QStringLiteral("size changed"); }

    /// What a click or frame emits that leaves these selected.
    static QStringList selectionChangedTo(const Ids& nodes, const Ids& edges)
    {
        return {selection(nodes, edges), changed()};
    }

private:
    static QString joined(Ids ids)
    {
        std::sort(ids.begin(), ids.end());
        QString text;
        for (const qint64 id : qAsConst(ids))
            text += QStringLiteral(" %1").arg(id);
        return text;
    }

    void logChanged(const QList<QRectF>& region)
    {
        m_signals.append(region.isEmpty() ? changed() : QStringLiteral("changed in a region"));
    }

    QStringList m_signals;
};

} // namespace NELK
