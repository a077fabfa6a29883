#pragma once

#include "support/LookAt.h"
#include "support/OpenView.h"
#include "support/SceneLists.h"
#include "view/ViewInteraction.h"

#include <NELK/NELK>

#include <QCursor>
#include <QMap>
#include <QMetaEnum>
#include <QPointer>
#include <QWheelEvent>
#include <QtTest>

#include <algorithm>

namespace NELK
{

/// A view that sees what arrives at it, as a host's own view would. It counts its repaints instead of
/// drawing, for which it has nothing.
class PlayedView : public OpenView
{
public:
    using OpenView::OpenView;

    void paintGL() override { ++paints; }

    int paints = 0;
    QList<QEvent::Type> arrived;

protected:
    void initGLObjects() override {}

    bool event(QEvent* event) override
    {
        arrived.append(event->type());
        return OpenView::event(event);
    }
};

/// A view at half size on three nodes and an edge, for a test to play with. A script says what mouse and keys do, step
/// by step; the account of it says what came of each step.
///
/// Steps: "press", "release" and the same after "right-" or "middle-", "double-click" and "move", each with a place
/// unless the mouse is there already; "wheel x,y"; "key-down Control" and "key-up Control"; "blocked" by a modal
/// window; "mode 2"; "off" and "on"; "handle-key A", "await" for what it leads to, and "time-up" for its timer.
/// "ctrl+" before a step holds control, as far as the step's own event tells.
///
/// Places: pixels as "80,230"; "+10,5" from where the mouse is; node1 to node3, of which the first two are selected;
/// edge, between these two; and empty, where the mouse is at first.
///
/// The account of a step, or "-": the signals of view and scene in their order, the nodes that moved, the camera if it
/// changed, whether lists were rebuilt, all or without the overview's, and whether the view was painted.
class Playground
{
public:
    Playground()
    {
        const QList<QPoint> places{{-200, 100}, {200, 100}, {200, -100}};
        for (int id = 1; id <= places.size(); ++id) {
            GraphNode node = graph.createNode(id);
            node.setPos(places[id - 1]);
            node.setSize(80.0f / 256.0f);
            node.setSelect(id != 3);
        }
        graph.createEdge(12, graph.getNode(1), graph.getNode(2));
        view->setParent(&window);
        window.resize(view->size());
        lookAt(*view, {0.0, 0.0}, 0.5f);
        tellOfSignals();
    }

    Q_DISABLE_COPY(Playground)

    /// Brings the view to the screen, and the cursor to the middle of it.
    bool show()
    {
        window.show();
        if (!QTest::qWaitForWindowExposed(&window))
            return false;
        QCursor::setPos(view->mapToGlobal({200, 150}));
        for (int paints = -1; paints != view->paints;) {
            paints = view->paints;
            QCoreApplication::processEvents();
        }
        return view->paints > 0;
    }

    QString play(const QString& script)
    {
        QStringList accounts;
        for (const QString& step : script.split(QStringLiteral(" | "), Qt::SkipEmptyParts)) {
            begin();
            if (view)
                act(step);
            QCoreApplication::processEvents();
            accounts.append(account());
        }
        return accounts.join(QStringLiteral(" | "));
    }

    GraphScene graph;
    Scene& scene = sceneOf(graph);
    QWidget window;
    /// Null once it was deleted.
    QPointer<PlayedView> view = new PlayedView(graph);

private:
    void tellOfSignals()
    {
        QObject::connect(view, &View::signalFrameModeChanged,
                         [this](E_OP_MODE mode) { tell(QStringLiteral("mode %1").arg(int(mode))); });
        QObject::connect(view, &View::signalFrameSizeChanged, [this](bool show, const QPoint& p1, const QPoint& p2) {
            tell(QStringLiteral("frame %1 %2,%3 %4,%5")
                     .arg(show ? QStringLiteral("on") : QStringLiteral("off"))
                     .arg(p1.x())
                     .arg(p1.y())
                     .arg(p2.x())
                     .arg(p2.y()));
        });
        QObject::connect(view, &View::signalViewWatchedChanged, [this] { tell(QStringLiteral("watched")); });
        QObject::connect(view, &View::signalRightMouseButtonClicked, [this](E_ELEMENTS_TYPE type, qint64 id) {
            tell(QStringLiteral("right-clicked %1 %2").arg(int(type)).arg(id));
        });
        QObject::connect(view, &View::signalLeftMouseButtonDblClicked, [this](E_ELEMENTS_TYPE type, qint64 id) {
            tell(QStringLiteral("double-clicked %1 %2").arg(int(type)).arg(id));
        });
        QObject::connect(&scene, &Scene::signalSelectChanged,
                         [this](const QList<qint64>& ns, const QList<qint64>& es) { tell(selection(ns + es)); });
        QObject::connect(&scene, &Scene::signalElementsMoved, [this] { tell(QStringLiteral("moved")); });
        QObject::connect(&scene, &Scene::signalChanged, [this] { tell(QStringLiteral("changed")); });
    }

    void tell(const QString& what) { m_told.append(what); }

    void act(const QString& step)
    {
        const bool isControlHeld = step.startsWith(QLatin1String("ctrl+"));
        const Qt::KeyboardModifiers modifiers = isControlHeld ? Qt::ControlModifier : Qt::NoModifier;
        const QString verb = step.mid(isControlHeld ? 5 : 0).section(QLatin1Char(' '), 0, 0);
        const QString object = step.section(QLatin1Char(' '), 1);
        if (verb == QLatin1String("wheel"))
            send(QWheelEvent(m_mouse, view->mapToGlobal(m_mouse), {}, pointFrom(object), m_buttons, modifiers,
                             Qt::NoScrollPhase, false));
        else if (verb == QLatin1String("key-down"))
            QTest::keyPress(view, keyNamed(object), modifiers);
        else if (verb == QLatin1String("key-up"))
            QTest::keyRelease(view, keyNamed(object), modifiers);
        else if (verb == QLatin1String("mode"))
            view->interaction().setMode(E_OP_MODE(object.toInt()));
        else if (verb == QLatin1String("on") || verb == QLatin1String("off"))
            view->interaction().setEnabled(verb == QLatin1String("on"));
        else if (verb == QLatin1String("handle-key"))
            view->interaction().handleKey(keyNamed(object));
        else if (verb == QLatin1String("await"))
            static_cast<void>(QTest::qWaitFor([this] { return !m_told.isEmpty(); }, 1000));
        else if (verb == QLatin1String("time-up"))
            QMetaObject::invokeMethod(&view->interaction(), "slotEatSpacePress");
        else if (verb == QLatin1String("blocked"))
            send(QEvent(QEvent::WindowBlocked));
        else
            useMouse(verb, object, modifiers);
    }

    void useMouse(const QString& verb, const QString& place, Qt::KeyboardModifiers modifiers)
    {
        goTo(place);
        if (verb == QLatin1String("move")) {
            send(QMouseEvent(QEvent::MouseMove, m_mouse, view->mapToGlobal(m_mouse), Qt::NoButton, m_buttons,
                             modifiers));
            return;
        }
        const Qt::MouseButton button = verb.startsWith(QLatin1String("right-"))    ? Qt::RightButton
                                       : verb.startsWith(QLatin1String("middle-")) ? Qt::MiddleButton
                                                                                   : Qt::LeftButton;
        const QTest::MouseAction action = verb.endsWith(QLatin1String("press"))     ? QTest::MousePress
                                          : verb.endsWith(QLatin1String("release")) ? QTest::MouseRelease
                                                                                    : QTest::MouseDClick;
        m_buttons.setFlag(button, action != QTest::MouseRelease);
        QTest::mouseEvent(action, view, button, modifiers, m_mouse);
    }

    /// Spontaneous, as what comes from the window system is.
    template <typename Event>
    void send(Event event)
    {
        QSpontaneKeyEvent::setSpontaneous(&event);
        QCoreApplication::sendEvent(view, &event);
    }

    static QPoint pointFrom(const QString& text)
    {
        return {text.section(QLatin1Char(','), 0, 0).toInt(), text.section(QLatin1Char(','), 1).toInt()};
    }

    static Qt::Key keyNamed(const QString& name)
    {
        const QMetaEnum keys = QMetaEnum::fromType<Qt::Key>();
        return Qt::Key(keys.keyToValue(qPrintable(QStringLiteral("Key_") + name)));
    }

    void goTo(const QString& place)
    {
        static const QMap<QString, QPoint> places{{QStringLiteral("node1"), {100, 100}},
                                                  {QStringLiteral("node2"), {300, 100}},
                                                  {QStringLiteral("node3"), {300, 200}},
                                                  {QStringLiteral("edge"), {200, 100}},
                                                  {QStringLiteral("empty"), {80, 230}}};
        if (place.startsWith(QLatin1Char('+')))
            m_mouse += pointFrom(place);
        else if (!place.isEmpty())
            m_mouse = places.value(place, pointFrom(place));
    }

    /// Remembers how all is, and empties the lists, so that it is seen who fills them.
    void begin()
    {
        m_told.clear();
        m_selection = selection();
        m_places = places();
        m_camera = camera();
        m_paints = paints();
        for (const SceneList& list : sceneLists)
            scene.*list.list = InstanceList();
    }

    QString account() const
    {
        QStringList all = m_told;
        const QStringList toldSelections = m_told.filter(QRegularExpression(QStringLiteral("^selected")));
        if (selection() != (toldSelections.isEmpty() ? m_selection : toldSelections.last()))
            all.append(QStringLiteral("untold: ") + selection());
        const QMap<qint64, QVector2D> placesNow = places();
        for (auto now = placesNow.begin(); now != placesNow.end(); ++now) {
            const QVector2D way = now.value() - m_places.value(now.key(), now.value());
            if (!way.isNull())
                all.append(QStringLiteral("%1 by %2,%3").arg(now.key()).arg(way.x()).arg(way.y()));
        }
        if (camera() != m_camera)
            all.append(camera());
        if (scene.eyeItems.count > 0)
            all.append(QStringLiteral("rebuilt all"));
        else if (!filledLists(scene).isEmpty())
            all.append(QStringLiteral("rebuilt"));
        if (paints() != m_paints)
            all.append(QStringLiteral("painted"));
        return all.isEmpty() ? QStringLiteral("-") : all.join(QStringLiteral("; "));
    }

    static QString selection(QList<qint64> ids)
    {
        std::sort(ids.begin(), ids.end());
        QString text = QStringLiteral("selected");
        for (const qint64 id : qAsConst(ids))
            text += QStringLiteral(" %1").arg(id);
        return text;
    }

    QString selection() const
    {
        QList<qint64> flagged;
        for (const NodeData* node : qAsConst(scene.nodes))
            flagged += node->select ? QList<qint64>{node->id} : QList<qint64>{};
        for (const EdgeData* edge : qAsConst(scene.edges))
            flagged += edge->select ? QList<qint64>{edge->id} : QList<qint64>{};
        return selection(flagged);
    }

    QMap<qint64, QVector2D> places() const
    {
        QMap<qint64, QVector2D> all;
        for (const NodeData* node : qAsConst(scene.nodes))
            all.insert(node->id, node->center());
        return all;
    }

    QString camera() const
    {
        if (!view)
            return {};
        return QStringLiteral("camera %1,%2 x%3")
            .arg(view->cameraX(false))
            .arg(view->cameraY(false))
            .arg(double(view->cameraScale()), 0, 'g', 4);
    }

    int paints() const { return view ? view->paints : m_paints; }

    // As of the beginning of a step.
    QStringList m_told;
    QString m_selection;
    QMap<qint64, QVector2D> m_places;
    QString m_camera;
    int m_paints = 0;

    QPoint m_mouse{80, 230};
    Qt::MouseButtons m_buttons;
};

} // namespace NELK
