// The camera calls of GraphView, which all go to the view inside.

#include <NELK/GraphView.h>

#include "view/View.h"

namespace NELK
{

void GraphView::fitToView()
{
    m_view->fitToView();
}

void GraphView::fitHeight()
{
    m_view->fitHeight();
}

void GraphView::fitOriginalSize()
{
    m_view->fitOriginalSize();
}

void GraphView::showFullEye()
{
    m_view->showFullEye();
}

void GraphView::selectedViewMax()
{
    m_view->selectedViewMax();
}

void GraphView::fitInView(const QRectF& rect)
{
    m_view->fitInView(rect);
}

void GraphView::zoom(bool in)
{
    m_view->zoom(in);
}

double GraphView::getZoomRatio() const
{
    return m_view->getZoomRatio();
}

int GraphView::minFitWidth() const
{
    return m_view->minFitWidth();
}

int GraphView::cameraX() const
{
    return m_view->cameraX(true);
}

int GraphView::cameraY() const
{
    return m_view->cameraY(true);
}

void GraphView::setCameraX(int x)
{
    m_view->setCameraX(x, true);
}

void GraphView::setCameraY(int y)
{
    m_view->setCameraY(y, true);
}

float GraphView::cameraScale() const
{
    return m_view->cameraScale();
}

void GraphView::setCameraScale(float scale)
{
    m_view->setCameraScale(scale);
}

void GraphView::setCameraLimit(bool on)
{
    m_view->setCameraLimit(on);
}

QRect GraphView::viewRect() const
{
    return m_view->viewRect();
}

QPoint GraphView::viewToScene(const QPoint& point) const
{
    return m_view->viewToScene(point);
}

} // namespace NELK
