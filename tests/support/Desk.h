#pragma once

#include "support/DesktopUser.h"

#include <NELK/NELK>

#include <QApplication>
#include <QColor>
#include <QList>
#include <QScreen>
#include <QScrollBar>
#include <QString>
#include <QStringList>
#include <QtTest>

#include <algorithm>

namespace NELK
{

using Ids = QList<qint64>;

inline QString joinedIds(Ids ids)
{
    std::sort(ids.begin(), ids.end());
    QString all;
    for (const qint64 id : qAsConst(ids))
        all += QStringLiteral(" %1").arg(id);
    return all;
}

// The signals that tell of what the user did, as text.

inline QString selected(const Ids& nodes, const Ids& edges)
{
    return QStringLiteral("selected nodes:%1, edges:%2").arg(joinedIds(nodes), joinedIds(edges));
}

inline QString rightClicked(E_ELEMENTS_TYPE type, qint64 id)
{
    return QStringLiteral("right-clicked type %1, id %2").arg(type).arg(id);
}

inline QString doubleClicked(E_ELEMENTS_TYPE type, qint64 id)
{
    return QStringLiteral("double-clicked type %1, id %2").arg(type).arg(id);
}

inline QString lineDrawn(const QPoint& p1, const QPoint& p2)
{
    return QStringLiteral("line from %1,%2 to %3,%4").arg(p1.x()).arg(p1.y()).arg(p2.x()).arg(p2.y());
}

/// A view of 800 by 600 pixels, bars apart, on a scene of 8000 by 4800 units: it starts in the middle of the scene at
/// half the width of it, a fifth of a pixel a unit, with an eye of 160 by 96 pixels in its corner. Three nodes show as
/// blue discs of 36 pixels; the upper two are joined.
class Desk
{
public:
    Desk()
    {
        const QList<QPoint> places{{-1000, 500}, {1000, 500}, {-1000, -500}};
        for (int id = 1; id <= places.size(); ++id) {
            GraphNode node = graph.createNode(id);
            node.setPos(places[id - 1]);
            node.setCircleShow(true);
            node.setCircleColor(Qt::blue);
        }
        graph.createEdge(12, node(1), node(2));
        logSignals();
        view.resize(816, 616);
    }

    Q_DISABLE_COPY(Desk)

    bool show()
    {
        // Clicks that follow each other fast are not meant as double clicks.
        QApplication::setDoubleClickInterval(0);
        view.show();
        const auto isFramed = [this] { return view.frameGeometry().top() < view.geometry().top(); };
        return QTest::qWaitForWindowActive(&view, DesktopUser::patience) &&
               QTest::qWaitFor(isFramed, DesktopUser::patience) && view.size() == QSize(816, 616) && showsNetwork();
    }

    GraphNode node(qint64 id) const { return graph.getNode(id); }
    GraphEdge edge() const { return graph.getEdge(12); }

    /// The signals since the last call.
    QStringList takeTold()
    {
        QStringList taken;
        taken.swap(m_told);
        return taken;
    }

    /// The scene point in the middle of the view.
    QPoint middle() const
    {
        const QRect shown = view.viewRect();
        return {shown.left() + shown.width() / 2, shown.top() - shown.height() / 2};
    }

    bool hasScale(float scale) const { return qFuzzyCompare(view.cameraScale(), scale); }

    /// What is on the screen at a point of the view.
    QColor colorAt(const QPoint& point) const
    {
        const QPoint onScreen = view.mapToGlobal(point);
        return view.screen()->grabWindow(0, onScreen.x(), onScreen.y(), 1, 1).toImage().pixelColor(0, 0);
    }
    QString colorNameAt(const QPoint& point) const { return colorAt(point).name(); }
    bool isDarkAt(const QPoint& point) const { return colorAt(point).lightness() < 128; }

    QScrollBar& bar(Qt::Orientation orientation) const
    {
        const QList<QScrollBar*> bars = view.findChildren<QScrollBar*>();
        return **std::find_if(bars.begin(), bars.end(),
                              [=](const QScrollBar* bar) { return bar->orientation() == orientation; });
    }

    GraphScene graph;
    GraphView view{&graph};
    DesktopUser user{view};
    /// As last told.
    double zoomRatio = 0.0;

private:
    bool showsNetwork()
    {
        // A node and the background of the eye.
        const auto isPainted = [this] {
            return colorAt({200, 169}) == QColor(Qt::blue) && colorAt({690, 510}) == QColor(242, 242, 242);
        };
        return QTest::qWaitFor(isPainted, DesktopUser::patience);
    }

    void logSignals()
    {
        QObject::connect(&graph, &GraphScene::signalSelectChanged,
                         [this](const Ids& ns, const Ids& es) { m_told.append(selected(ns, es)); });
        QObject::connect(&view, &GraphView::signalRightMouseButtonClicked,
                         [this](E_ELEMENTS_TYPE type, qint64 id) { m_told.append(rightClicked(type, id)); });
        QObject::connect(&view, &GraphView::signalLeftMouseButtonDblClicked,
                         [this](E_ELEMENTS_TYPE type, qint64 id) { m_told.append(doubleClicked(type, id)); });
        QObject::connect(&view, &GraphView::signalProcessLine,
                         [this](const QPoint& p1, const QPoint& p2) { m_told.append(lineDrawn(p1, p2)); });
        QObject::connect(&view, &GraphView::signalZoomRatioChanged, [this](double ratio) { zoomRatio = ratio; });
    }

    QStringList m_told;
};

} // namespace NELK
