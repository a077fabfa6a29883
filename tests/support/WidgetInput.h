#pragma once

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QtTest>

namespace NELK
{

// What the mouse does to a widget, event by event. QTest has no wheel, and its moves tell of no button.

inline void press(QWidget* widget, QPoint position, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mousePress(widget, button, Qt::NoModifier, position);
}

inline void release(QWidget* widget, QPoint position, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseRelease(widget, button, Qt::NoModifier, position);
}

/// With the left button held.
inline void moveTo(QWidget* widget, QPoint position)
{
    QMouseEvent event(QEvent::MouseMove, position, widget->mapToGlobal(position), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

inline void drag(QWidget* widget, QPoint from, QPoint to)
{
    press(widget, from);
    moveTo(widget, to);
    release(widget, to);
}

inline void turnWheel(QWidget* widget, QPoint position, QPoint angle)
{
    QWheelEvent event(position, widget->mapToGlobal(position), {}, angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace NELK
