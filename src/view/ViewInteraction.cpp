#include "view/ViewInteraction.h"

#include "scene/Rectangles.h"
#include "view/View.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QWheelEvent>

namespace NELK
{

namespace
{

/// Within this time, in milliseconds, a second press makes a double one.
constexpr int doublePressTime = 200;

/// As the keyboard is now: the key events that this view has seen may not tell the whole story.
bool isControlHeld()
{
    return QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
}

} // namespace

ViewInteraction::ViewInteraction(View* watchedView) : QObject(watchedView), m_view(watchedView) {}

bool ViewInteraction::eventFilter(QObject* watched, QEvent* event)
{
    if (m_enabled) {
        const QPointer<View> view(m_view);
        handleEvent(*event);
        // With the view this object went too, and there is nobody left to take the event.
        if (!view)
            return true;
    }
    return QObject::eventFilter(watched, event);
}

void ViewInteraction::handleEvent(QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        return press(static_cast<const QMouseEvent&>(event));
    case QEvent::MouseButtonRelease:
        return release(static_cast<const QMouseEvent&>(event));
    case QEvent::MouseButtonDblClick:
        m_ctrlDown = false;
        return m_view->doubleClick(static_cast<const QMouseEvent&>(event).pos());
    case QEvent::MouseMove:
        return move(static_cast<const QMouseEvent&>(event));
    case QEvent::KeyPress:
        return key(static_cast<const QKeyEvent&>(event), true);
    case QEvent::KeyRelease:
        return key(static_cast<const QKeyEvent&>(event), false);
    case QEvent::Wheel:
        return wheel(static_cast<const QWheelEvent&>(event));
    case QEvent::WindowBlocked:
        // The modal window will get the release of the key.
        m_ctrlDown = false;
        return;
    default:
        return;
    }
}

void ViewInteraction::setMode(E_OP_MODE mode)
{
    m_mode = mode;
    m_view->setMode(mode);
}

void ViewInteraction::handleKey(int key)
{
    switch (key) {
    case Qt::Key_1:
        return setMode(OP_LINE);
    case Qt::Key_2:
        return setMode(OP_NORMAL);
    case Qt::Key_3:
        return setMode(OP_ZOOM_FRAME);
    case Qt::Key_A:
        if (++m_pressCount == 1)
            QTimer::singleShot(doublePressTime, this, SLOT(slotEatSpacePress()));
        return;
    case Qt::Key_Left:
        return m_view->setCameraX(m_view->cameraX(true) - m_view->width(), true);
    case Qt::Key_Right:
        return m_view->setCameraX(m_view->cameraX(true) + m_view->width(), true);
    default:
        return;
    }
}

void ViewInteraction::slotEatSpacePress()
{
    const int presses = m_pressCount;
    m_pressCount = 0;
    if (presses == 1)
        setMode(OP_HAND);
    else if (presses == 2)
        m_view->showFullEye();
}

void ViewInteraction::press(const QMouseEvent& event)
{
    if (event.button() == Qt::LeftButton) {
        pressLeft(event.pos());
    } else if (event.button() == Qt::RightButton) {
        m_leftDown = false;
        m_rightDown = true;
        m_view->rightPress(event.pos());
    }
}

void ViewInteraction::pressLeft(QPoint position)
{
    m_pressPos = position;
    m_currentPos = position;
    m_lastPos = position;
    m_leftDown = true;
    m_rightDown = false;
    if (m_mode != OP_NORMAL)
        return;
    // A press on what is selected keeps the selection, to drag all of it.
    m_onSelected = m_view->hitNode(position, nullptr, true);
    if (m_onSelected)
        return;
    const QPointer<View> view(m_view);
    const bool onNode = m_view->pressSelect(position, isControlHeld());
    if (view)
        m_onNode = onNode;
}

void ViewInteraction::move(const QMouseEvent& event)
{
    const QPoint position = event.pos();
    const QPoint step = position - m_lastPos;
    // From the left pixel column on a drag starts anew, as it does after a release.
    const bool isFirst = m_lastPos.x() < 1;
    m_lastPos = position;
    switch (m_mode) {
    case OP_NORMAL:
        if (m_onSelected || m_onNode)
            dragElements(step);
        else
            stretchFrame(position);
        return;
    case OP_LINE:
    case OP_ZOOM_FRAME:
        return stretchFrame(position);
    case OP_HAND:
        return dragPicture(step, isFirst);
    }
}

void ViewInteraction::dragElements(QPoint step)
{
    m_dragged = true;
    m_view->moveSelected(step);
}

void ViewInteraction::stretchFrame(QPoint position)
{
    // A line is no frame, and what it leaves behind ends with its own release.
    if (m_mode != OP_LINE)
        m_frameActive = m_leftDown;
    if (!m_leftDown)
        return;
    m_currentPos = position;
    m_frame = rectFromCorners(m_pressPos, m_currentPos);
    m_view->frameChanged(true, m_pressPos, m_currentPos);
}

void ViewInteraction::dragPicture(QPoint step, bool isFirst)
{
    if (isFirst)
        return;
    if (m_leftDown)
        m_view->panBy(-step.x(), step.y());
    else if (m_rightDown)
        m_view->rotateBy(5);
}

void ViewInteraction::release(const QMouseEvent& event)
{
    if (event.button() == Qt::LeftButton)
        return releaseLeft(event.pos());
    if (event.button() == Qt::RightButton)
        m_rightDown = false;
    m_lastPos.setX(-1);
    m_dragged = false;
}

void ViewInteraction::releaseLeft(QPoint position)
{
    const bool isClick = !m_dragged && !m_onNode;
    m_leftDown = false;
    m_onSelected = false;
    m_onNode = false;
    m_dragged = false;
    m_lastPos.setX(-1);
    switch (m_mode) {
    case OP_NORMAL:
        if (m_frameActive)
            finishSelectFrame();
        else if (isClick)
            m_view->clickSelect(position, isControlHeld(), View::clickRadius);
        return;
    case OP_LINE:
        return m_view->frameChanged(false, m_pressPos, m_currentPos);
    case OP_ZOOM_FRAME:
        return finishZoomFrame();
    case OP_HAND:
        return;
    }
}

void ViewInteraction::finishSelectFrame()
{
    m_frameActive = false;
    const QPointer<View> view(m_view);
    m_view->frameSelect(m_frame, isControlHeld());
    if (view)
        m_view->frameChanged(false, m_pressPos, m_currentPos);
}

/// A click without a drag leaves the mode too.
void ViewInteraction::finishZoomFrame()
{
    const QPointer<View> view(m_view);
    if (m_frameActive) {
        m_frameActive = false;
        m_view->frameChanged(false, m_pressPos, m_currentPos);
        if (view)
            m_view->zoomToFrame(m_frame);
    }
    if (view)
        setMode(OP_NORMAL);
}

void ViewInteraction::wheel(const QWheelEvent& event)
{
    if (!m_ctrlDown)
        m_view->zoomAt(event.angleDelta().y() >= 1, true);
}

void ViewInteraction::key(const QKeyEvent& event, bool down)
{
    if (event.key() == Qt::Key_Control)
        m_ctrlDown = down;
}

} // namespace NELK
