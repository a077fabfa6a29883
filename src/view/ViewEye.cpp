#include "view/ViewEye.h"

#include "view/ViewEyePrivate.h"

#include <QHBoxLayout>
#include <QLabel>

namespace NELK
{

ViewEye::ViewEye(Scene* shownScene, QWidget* parent) : QWidget(parent), m_private(new ViewEyePrivate(shownScene, this))
{
    resize(300, 300);
    setCursor(Qt::PointingHandCursor);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_private);

    // Made after the surface, so that it lies over it.
    m_watched = new QLabel(this);
    m_watched->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_watched->setStyleSheet("QLabel{background-color: #4cc8e4ff;border: 1px solid #26508f;}");

    connect(m_private, SIGNAL(signalEyeWatchedMoved(QPoint)), this, SIGNAL(signalEyeWatchedMoved(QPoint)));
    connect(m_private, SIGNAL(signalEyeWatchedCenterChanged(QPointF)), this,
            SIGNAL(signalEyeWatchedCenterChanged(QPointF)));
    connect(m_private, SIGNAL(signalEyeWatchedScaleChanged(float)), this, SIGNAL(signalEyeWatchedScaleChanged(float)));
}

void ViewEye::placeEye(int x, int y, int width, int height)
{
    setGeometry(x, y, width, height);
    m_private->setEyeSize(width, height);
}

void ViewEye::refreshEye()
{
    m_private->setupProjection();
    m_private->update();
}

void ViewEye::updateEye()
{
    m_private->update();
}

QImage ViewEye::grabEye() const
{
    return m_private->grabFramebuffer();
}

void ViewEye::slotViewWatchedChanged(const QRect& rect, float percentage)
{
    m_private->setWatched(rect, percentage);
    m_watched->setGeometry(m_private->watchedRect().toRect());
}

} // namespace NELK
