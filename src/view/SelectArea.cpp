#include "view/SelectArea.h"

#include "scene/Rectangles.h"

#include <QPainter>

namespace NELK
{

SelectArea::SelectArea(QWidget* parent) : QLabel(parent)
{
    // A line that came back under the drag threshold stays in sight; it must not stand in the way of the next press.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setMode(OP_NORMAL);
}

void SelectArea::setMode(E_OP_MODE mode)
{
    m_mode = mode;
    setStyleSheet(mode == OP_NORMAL
                      ? "QLabel{border: 1px solid rgb(42, 127, 212);background-color: rgba(42, 127, 212, 72);}"
                      : "");
}

void SelectArea::paintEvent(QPaintEvent* event)
{
    switch (m_mode) {
    case OP_NORMAL:
        return QLabel::paintEvent(event); // the style sheet has the rubber band
    case OP_LINE:
        return paintLine();
    case OP_ZOOM_FRAME:
        return paintZoomFrame();
    case OP_HAND:
        return;
    }
}

/// Half of the wide pen falls outside, which leaves the dots that a zoom frame is known by.
void SelectArea::paintZoomFrame()
{
    QPainter painter(this);
    painter.setPen(QPen(QBrush(Qt::black), 8.0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
    painter.drawRect(rectFromCorners(mapFromParent(m_p1), mapFromParent(m_p2)));
}

void SelectArea::paintLine()
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    m_arrowLine.paint(painter, QLineF(mapFromParent(m_p1), mapFromParent(m_p2)));
}

} // namespace NELK
