#include <NELK/GraphView.h>

#include "scene/Rectangles.h"
#include "scene/Scene.h"
#include "scene/Truncation.h"
#include "view/SelectArea.h"
#include "view/TriangleWidget.h"
#include "view/View.h"
#include "view/ViewEye.h"
#include "view/ViewInteraction.h"

#include <NELK/GraphScene.h>

#include <QGridLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>

#include <cmath>

namespace NELK
{

namespace
{

/// The user moves a bar: the camera change that follows leaves the bars alone, so that none is rewritten under the
/// user's hand. One for all views is enough, since it is set and cleared within one chain of signals; of a view without
/// an overview, which does not hear of its camera, with the next change of the scene's size.
bool scrollGuard = false;

/// Sets the guard for a move of a bar. A slot of the host may delete the view; then nobody else would clear it.
class GuardedScroll
{
public:
    explicit GuardedScroll(GraphView& view) : m_view(&view) { scrollGuard = true; }
    ~GuardedScroll()
    {
        if (!m_view)
            scrollGuard = false;
    }

    Q_DISABLE_COPY(GuardedScroll)

private:
    QPointer<GraphView> m_view;
};

/// So that the signals can be queued, under either way to spell the types.
void registerSignalTypes()
{
    qRegisterMetaType<E_ELEMENTS_TYPE>("E_ELEMENTS_TYPE");
    qRegisterMetaType<E_ELEMENTS_TYPE>("NELK::E_ELEMENTS_TYPE");
    qRegisterMetaType<E_OP_MODE>("E_OP_MODE");
    qRegisterMetaType<E_OP_MODE>("NELK::E_OP_MODE");
}

E_OP_MODE operateModeOf(int code)
{
    switch (code) {
    case 2:
        return OP_HAND;
    case 3:
        return OP_ZOOM_FRAME;
    case 5:
        return OP_LINE;
    default:
        return OP_NORMAL;
    }
}

void configure(QScrollBar& bar, float limit, int step, int page, int value)
{
    const QSignalBlocker blocker(bar);
    const int range = truncated(limit);
    bar.setRange(-range, range);
    bar.setSingleStep(step);
    bar.setPageStep(page);
    bar.setValue(value);
}

} // namespace

const int GraphView::m_barSize;

GraphView::GraphView(const GraphScene* scene, QWidget* parent, bool hasEye, bool hasScrollBar, bool hasEyeButton)
    : QWidget(parent),
      m_scene(scene),
      m_hasEye(hasEye),
      m_hasEyeButton(hasEyeButton),
      m_hasScrollBar(hasScrollBar),
      m_scrollBarShown(hasScrollBar)
{
    registerSignalTypes();
    create();
    connect(m_scene, SIGNAL(signalSizeChanged()), this, SLOT(slotSceneSizeChanged()));
    resize(800, 600);
}

GraphView::~GraphView() = default;

/// In the order in which the parts lie over each other.
void GraphView::create()
{
    m_layout = new QGridLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    createView();
    createEye();
    createScrollBar();
}

void GraphView::createView()
{
    m_view = new View(m_scene->scene, this);
    connect(m_view, SIGNAL(signalFrameModeChanged(E_OP_MODE)), this, SLOT(slotFrameModeChanged(E_OP_MODE)));
    connect(m_view, SIGNAL(signalFrameSizeChanged(bool, QPoint, QPoint)), this,
            SLOT(slotFrameSizeChanged(bool, QPoint, QPoint)));
    connect(m_view, SIGNAL(signalRightMouseButtonClicked(E_ELEMENTS_TYPE, qint64)), this,
            SIGNAL(signalRightMouseButtonClicked(E_ELEMENTS_TYPE, qint64)));
    connect(m_view, SIGNAL(signalLeftMouseButtonDblClicked(E_ELEMENTS_TYPE, qint64)), this,
            SIGNAL(signalLeftMouseButtonDblClicked(E_ELEMENTS_TYPE, qint64)));
    m_layout->addWidget(m_view, 0, 0);
    m_selectArea = new SelectArea(this);
    m_selectArea->hide();
}

void GraphView::createEye()
{
    if (!m_hasEye)
        return;
    m_eye = new ViewEye(m_scene->scene, this);
    connect(m_eye, SIGNAL(signalEyeWatchedMoved(QPoint)), m_view, SLOT(slotEyeWatchedMoved(QPoint)));
    connect(m_eye, SIGNAL(signalEyeWatchedCenterChanged(QPointF)), m_view, SLOT(slotEyeWatchedCenterChanged(QPointF)));
    connect(m_eye, SIGNAL(signalEyeWatchedScaleChanged(float)), m_view, SLOT(slotEyeWatchedScaleChanged(float)));
    connect(m_view, SIGNAL(signalViewWatchedChanged(QRect, float)), m_eye, SLOT(slotViewWatchedChanged(QRect, float)));
    connect(m_view, SIGNAL(signalViewWatchedChanged(QRect, float)), this,
            SLOT(slotUpdateScrollBarConfig(QRect, float)));

    m_eyeButton = new TriangleWidget(this);
    connect(m_eyeButton, SIGNAL(signalOn(bool)), this, SLOT(slotViewEyeOn(bool)));
    m_eyeButton->setVisible(m_hasEyeButton);
}

void GraphView::createScrollBar()
{
    if (!m_hasScrollBar)
        return;
    m_hBar = new QScrollBar(Qt::Horizontal, this);
    m_hBar->setFixedHeight(m_barSize);
    m_vBar = new QScrollBar(Qt::Vertical, this);
    m_vBar->setFixedWidth(m_barSize);
    connect(m_hBar, SIGNAL(valueChanged(int)), this, SLOT(slotHScrollBarValueChanged(int)));
    connect(m_vBar, SIGNAL(valueChanged(int)), this, SLOT(slotVScrollBarValueChanged(int)));

    m_corner = new QPushButton(this);
    m_corner->setStyleSheet("QPushButton{background-color: white; padding: 0px; border: none; }");
    m_corner->setFixedSize(m_barSize, m_barSize);
    m_corner->setEnabled(false);

    m_layout->addWidget(m_vBar, 0, 1);
    m_layout->addWidget(m_hBar, 1, 0);
    m_layout->addWidget(m_corner, 1, 1);
}

void GraphView::NelkUpdate()
{
    m_view->rebuildAll();
    m_view->update();
    if (m_hasEye)
        m_eye->updateEye();
}

int GraphView::getRenderT() const
{
    return m_view->lastPaintTime();
}

void GraphView::setOperateMode(int mode, int arrow)
{
    m_selectArea->setArrowMode(arrow);
    m_view->interaction().setMode(operateModeOf(mode));
}

void GraphView::blockInteraction(bool block)
{
    m_blocked = block;
    m_view->interaction().setEnabled(!block);
}

QImage GraphView::saveImage() const
{
    return m_view->grabFramebuffer();
}

QImage GraphView::saveEyeImage() const
{
    return m_hasEye ? m_eye->grabEye() : QImage();
}

bool GraphView::isViewEyeVisible() const
{
    return !m_eyeHidden;
}

void GraphView::setScrollBarShow(bool show)
{
    if (!m_hasScrollBar)
        return;
    m_scrollBarShown = show;
    m_hBar->setVisible(show);
    m_vBar->setVisible(show);
    m_corner->setVisible(show);
    m_layout->activate(); // now: the camera's share of the scene depends on the size of the view
    layOut();
}

void GraphView::slotViewEyeOn(bool on)
{
    Q_ASSERT(m_hasEye);
    m_eyeHidden = !on;
    m_eye->setVisible(on);
    if (!m_hasEyeButton)
        return;
    if (on)
        placeEyeButton(truncated(static_cast<float>(m_areaWidth) - m_eyeWidth),
                       truncated(static_cast<float>(m_areaHeight) - m_eyeHeight));
    else
        placeEyeButtonInCorner();
}

void GraphView::keyPressEvent(QKeyEvent* event)
{
    const QPointer<GraphView> self(this); // a slot of the host may delete the view
    if (!m_blocked)
        panByKey(event->key());
    if (self)
        QWidget::keyPressEvent(event);
}

void GraphView::panByKey(int key)
{
    const int x = m_view->cameraX(false);
    const int y = m_view->cameraY(false);
    switch (key) {
    case Qt::Key_Left:
        return m_view->setCameraX(x - m_hStep, false);
    case Qt::Key_Right:
        return m_view->setCameraX(x + m_hStep, false);
    case Qt::Key_Up:
        return m_view->setCameraY(y + m_vStep, false);
    case Qt::Key_Down:
        return m_view->setCameraY(y - m_vStep, false);
    case Qt::Key_PageUp:
        return m_view->setCameraY(y + m_vPage, false);
    case Qt::Key_PageDown:
        return m_view->setCameraY(y - m_vPage, false);
    default:
        return;
    }
}

void GraphView::resizeEvent(QResizeEvent* /*event*/)
{
    layOut();
}

/// Gives each part the place that follows from the size of this widget. The eye comes last, since it asks the view for
/// a scale, of which the host hears.
void GraphView::layOut()
{
    const int barSize = m_scrollBarShown ? m_barSize : 0;
    m_areaWidth = width() - barSize;
    m_areaHeight = height() - barSize;
    constexpr int leastArea = 16;
    if (m_areaWidth < leastArea || m_areaHeight < leastArea)
        return;

    // The eye has the shape of the scene and takes at most a fifth of the view either way.
    const float aspect = m_scene->scene->aspect;
    const double greatestHeight = m_areaHeight / 5.0;
    m_eyeWidth = static_cast<float>(m_areaWidth / 5.0);
    m_eyeHeight = m_eyeWidth * aspect;
    if (double{m_eyeHeight} > greatestHeight) {
        m_eyeHeight = static_cast<float>(greatestHeight);
        m_eyeWidth = m_eyeHeight / aspect;
    }
    m_view->setViewSize(m_areaWidth, m_areaHeight);
    if (!m_hasEye)
        return;

    const int eyeWidth = static_cast<int>(std::ceil(m_eyeWidth));
    const int eyeHeight = static_cast<int>(std::ceil(m_eyeHeight));
    const int x = m_areaWidth - eyeWidth;
    const int y = m_areaHeight - eyeHeight;
    if (m_eyeHidden)
        placeEyeButtonInCorner();
    else
        placeEyeButton(x, y);
    m_eye->placeEye(x, y, eyeWidth, eyeHeight);
}

void GraphView::placeEyeButton(int x, int y)
{
    m_eyeButton->setGeometry(x, y, TriangleWidget::edgeLength, TriangleWidget::edgeLength);
}

void GraphView::placeEyeButtonInCorner()
{
    placeEyeButton(m_areaWidth - TriangleWidget::edgeLength, m_areaHeight - TriangleWidget::edgeLength);
}

void GraphView::slotFrameModeChanged(E_OP_MODE mode)
{
    m_selectArea->setMode(mode);
}

void GraphView::slotFrameSizeChanged(bool show, const QPoint& p1, const QPoint& p2)
{
    m_selectArea->setP1(p1);
    m_selectArea->setP2(p2);
    m_selectArea->setGeometry(rectFromCorners(p1, p2));
    m_selectArea->setVisible(show);
    if (!show && m_selectArea->mode() == OP_LINE)
        Q_EMIT signalProcessLine(p1, p2);
}

void GraphView::slotSceneSizeChanged()
{
    const QPointer<GraphView> self(this); // a slot of the host may delete the view
    layOut();
    if (!self)
        return;
    if (m_hasEye)
        m_eye->refreshEye();
    slotUpdateScrollBarConfig(QRect(), 0.0f);
}

void GraphView::slotUpdateScrollBarConfig(const QRect& /*rect*/, float rRatio)
{
    const QPointer<GraphView> self(this); // a slot of the host may delete the view
    Q_EMIT signalZoomRatioChanged(double{rRatio});
    if (!self)
        return;
    // The keys need the steps too.
    const QSize shown = m_view->viewRect().size();
    m_hStep = shown.width() / 10;
    m_hPage = shown.width();
    m_vStep = shown.height() / 10;
    m_vPage = shown.height();
    if (m_hasScrollBar)
        updateScrollBars();
}

void GraphView::updateScrollBars()
{
    if (scrollGuard) {
        scrollGuard = false;
        return;
    }
    configure(*m_hBar, m_view->cameraLimitX(), m_hStep, m_hPage, m_view->cameraX(false));
    // Bars go down where the scene goes up.
    configure(*m_vBar, m_view->cameraLimitY(), m_vStep, m_vPage, -m_view->cameraY(false));
}

void GraphView::slotHScrollBarValueChanged(int value)
{
    const GuardedScroll guarded(*this);
    m_view->setCameraX(value, false);
}

void GraphView::slotVScrollBarValueChanged(int value)
{
    const GuardedScroll guarded(*this);
    m_view->setCameraY(-value, false);
}

} // namespace NELK
