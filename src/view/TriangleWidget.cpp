#include "view/TriangleWidget.h"

#include <QEvent>
#include <QPainter>

namespace NELK
{

TriangleWidget::TriangleWidget(QWidget* parent)
    : QWidget(parent, Qt::FramelessWindowHint),
      m_expand(":/icon/toolkits/ic_expand.png"),
      m_expandHover(":/icon/toolkits/ic_expand_hover.png"),
      m_fold(":/icon/toolkits/ic_fold.png"),
      m_foldHover(":/icon/toolkits/ic_fold_hover.png")
{
    setAttribute(Qt::WA_TranslucentBackground);
    setMouseTracking(true);
}

void TriangleWidget::setOn(bool on)
{
    m_on = on;
    m_hover = false;
    shape();
    update();
    Q_EMIT signalOn(m_on);
}

bool TriangleWidget::event(QEvent* event)
{
    if (event->type() == QEvent::Enter)
        setHover(true);
    else if (event->type() == QEvent::Leave)
        setHover(false);
    return QWidget::event(event);
}

void TriangleWidget::setHover(bool hover)
{
    m_hover = hover;
    update();
}

void TriangleWidget::mousePressEvent(QMouseEvent* /*event*/)
{
    setOn(!m_on);
}

void TriangleWidget::resizeEvent(QResizeEvent* /*event*/)
{
    shape();
}

/// On, the upper left half, in the corner of the overview; off, the lower right half, in the corner of the view.
void TriangleWidget::shape()
{
    m_polygon = QPolygon({QPoint(0, width()), QPoint(height(), 0), m_on ? QPoint(0, 0) : QPoint(width(), height())});
    setMask(QRegion(m_polygon));
}

void TriangleWidget::paintEvent(QPaintEvent* /*event*/)
{
    const QImage& fold = m_hover ? m_foldHover : m_fold;
    const QImage& expand = m_hover ? m_expandHover : m_expand;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(m_on ? fold : expand));
    painter.drawConvexPolygon(m_polygon);
}

} // namespace NELK
