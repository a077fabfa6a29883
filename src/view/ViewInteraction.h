#pragma once

#include <NELK/OperateMode.h>

#include <QObject>
#include <QPoint>
#include <QRect>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace NELK
{

class View;

/// Turns the mouse, wheel and key events of a view into clicks, drags, frames and zooms. It watches events and lets
/// every one of them go on to the view.
///
/// A slot of the host may delete the view from within any signal that an event leads to. So each step here changes its
/// own state first and calls the view last, or looks whether the view is still there.
class ViewInteraction : public QObject
{
    Q_OBJECT

public:
    /// A child of `watchedView`, which it is to be installed on.
    explicit ViewInteraction(View* watchedView);

    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Off, events pass unseen.
    void setEnabled(bool on) { m_enabled = on; }
    void setMode(E_OP_MODE mode);
    /// A keyboard control of its own, which no event is connected to: 1, 2 and 3 choose modes, A pressed once the hand
    /// and twice the whole scene, left and right pan by a view's width.
    void handleKey(int key);

protected Q_SLOTS:
    void slotEatSpacePress();

private:
    void handleEvent(QEvent& event);
    void press(const QMouseEvent& event);
    void pressLeft(QPoint position);
    void move(const QMouseEvent& event);
    void dragElements(QPoint step);
    void stretchFrame(QPoint position);
    void dragPicture(QPoint step, bool isFirst);
    void release(const QMouseEvent& event);
    void releaseLeft(QPoint position);
    void finishSelectFrame();
    void finishZoomFrame();
    void wheel(const QWheelEvent& event);
    void key(const QKeyEvent& event, bool down);

    View* m_view;
    QPoint m_lastPos{-1, -1};
    E_OP_MODE m_mode = OP_NORMAL;
    bool m_leftDown = false;
    bool m_rightDown = false;
    bool m_ctrlDown = false;
    /// The left press was on a node that was selected already.
    bool m_onSelected = false;
    /// The left press selected a node.
    bool m_onNode = false;
    int m_pressCount = 0;
    QPoint m_pressPos;
    QPoint m_currentPos;
    /// Spanned by these two.
    QRect m_frame;
    bool m_frameActive = false;
    /// Elements were moved since the press.
    bool m_dragged = false;
    bool m_enabled = true;
};

} // namespace NELK
