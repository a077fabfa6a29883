#include "MainWindow.h"

#include <NELK/GraphEdge.h>
#include <NELK/GraphNode.h>

#include <QAction>
#include <QActionGroup>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

namespace
{

QString describe(NELK::E_ELEMENTS_TYPE type, qint64 id)
{
    switch (type) {
    case NELK::ELEMENT_NODE:
        return MainWindow::tr("node %1").arg(id);
    case NELK::ELEMENT_EDGE:
        return MainWindow::tr("edge %1").arg(id);
    case NELK::ELEMENT_NONE:
        return MainWindow::tr("the background");
    }
    return {};
}

} // namespace

MainWindow::MainWindow() : m_view(new NELK::GraphView(&m_scene, this)), m_modes(new QActionGroup(this))
{
    setWindowTitle(tr("NELK explorer"));
    setCentralWidget(m_view);
    fillCameraBar(*addToolBar(tr("Camera")));
    fillModeBar(*addToolBar(tr("Mouse")));
    addToolBarBreak();
    fillShowBar(*addToolBar(tr("Show")));
    addToolBarBreak();
    fillNodeBar(*addToolBar(tr("Nodes")));
    fillEdgeBar(*addToolBar(tr("Edges")));
    m_zoomLabel = new QLabel(this);
    statusBar()->addPermanentWidget(m_zoomLabel);

    connect(&m_scene, &NELK::GraphScene::signalSelectChanged, this, &MainWindow::showSelection);
    connect(m_view, &NELK::GraphView::signalZoomRatioChanged, this, &MainWindow::showZoom);
    connect(m_view, &NELK::GraphView::signalRightMouseButtonClicked, this, &MainWindow::showRightClick);
    connect(m_view, &NELK::GraphView::signalLeftMouseButtonDblClicked, this, &MainWindow::centreOn);
    connect(m_view, &NELK::GraphView::signalProcessLine, this, &MainWindow::joinByLine);
}

MainWindow::~MainWindow()
{
    delete m_view;
}

template <typename Call>
QAction* MainWindow::addCall(QToolBar& bar, const QString& text, const QString& toolTip, const QKeySequence& shortcut,
                             Call call)
{
    QAction* action = bar.addAction(text);
    action->setToolTip(shortcut.isEmpty() ? toolTip
                                          : tr("%1 (%2)").arg(toolTip, shortcut.toString(QKeySequence::NativeText)));
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, call);
    return action;
}

template <typename Call>
QAction* MainWindow::addSwitch(QToolBar& bar, const QString& text, const QString& toolTip, bool on, Call call)
{
    QAction* action = bar.addAction(text);
    action->setToolTip(toolTip);
    action->setCheckable(true);
    action->setChecked(on);
    connect(action, &QAction::toggled, this, call);
    return action;
}

void MainWindow::fillCameraBar(QToolBar& bar)
{
    addCall(bar, tr("Fit"), tr("Show all nodes"), QKeySequence("Ctrl+0"), [this] { m_view->fitToView(); });
    addCall(bar, tr("Fit height"), tr("Show the height of all nodes"), {}, [this] { m_view->fitHeight(); });
    addCall(bar, tr("Fit selection"), tr("Show the selected nodes"), QKeySequence("Ctrl+2"),
            [this] { m_view->selectedViewMax(); });
    addCall(bar, tr("Whole scene"), tr("Show the whole scene"), QKeySequence("Ctrl+9"),
            [this] { m_view->showFullEye(); });
    addCall(bar, tr("Zoom in"), tr("Show less, and larger"), QKeySequence::ZoomIn, [this] { m_view->zoom(true); });
    addCall(bar, tr("Zoom out"), tr("Show more, and smaller"), QKeySequence::ZoomOut, [this] { m_view->zoom(false); });
    addCall(bar, tr("Actual size"), tr("One pixel for each unit"), QKeySequence("Ctrl+1"), [this] {
        m_view->setCameraScale(1.0f);
        m_view->setCameraX(m_view->cameraX()); // shows the scale
    });
    addCall(bar, tr("Middle"), tr("Show 3000 units around the middle of the scene"), {}, [this] {
        m_view->fitInView({-1500.0, 1500.0, 3000.0, 3000.0});
    });
    addCall(bar, tr("Save picture..."), tr("Save what the view shows"), QKeySequence::Save,
            [this] { savePicture(m_view->saveImage()); });
    addCall(bar, tr("Save overview..."), tr("Save what the overview shows"), {},
            [this] { savePicture(m_view->saveEyeImage()); });
}

void MainWindow::fillModeBar(QToolBar& bar)
{
    struct Mode
    {
        QString text;
        QString toolTip;
        int code;
        int arrow;
    };
    const Mode modes[] = {{tr("Select"), tr("Select and move nodes"), 1, 0},
                          {tr("Hand"), tr("Move the picture"), 2, 0},
                          {tr("Line"), tr("Draw a relation from one node to another"), 5, 0},
                          {tr("Line \u2192"), tr("The same with an arrow head at the end"), 5, 1},
                          {tr("\u2190 Line"), tr("The same with an arrow head at the start"), 5, 2},
                          {tr("\u2190 Line \u2192"), tr("The same with an arrow head at either end"), 5, 3}};
    for (const Mode& mode : modes) {
        QAction* action =
            addCall(bar, mode.text, mode.toolTip, {}, [this, mode] { m_view->setOperateMode(mode.code, mode.arrow); });
        action->setCheckable(true);
        m_modes->addAction(action);
    }
    QAction* const select = m_modes->actions().constFirst();
    select->setChecked(true);
    // The view falls back to selecting by itself.
    addCall(bar, tr("Zoom frame"), tr("Span a frame to zoom to"), {}, [this, select] {
        m_view->setOperateMode(3, 0);
        select->setChecked(true);
    });
}

void MainWindow::fillShowBar(QToolBar& bar)
{
    // No switch: the overview has a button of its own.
    addCall(bar, tr("Overview"), tr("Fold the overview away, or unfold it"), {},
            [this] { m_view->slotViewEyeOn(!m_view->isViewEyeVisible()); });
    addSwitch(bar, tr("Scroll bars"), tr("Show scroll bars"), true, [this](bool on) { m_view->setScrollBarShow(on); });
    addSwitch(bar, tr("Node text"), tr("Show the text of nodes"), true, [this](bool on) {
        m_scene.setNodeTextShow(on);
        m_view->NelkUpdate();
    });
    addSwitch(bar, tr("Edge text"), tr("Show the text of edges"), true, [this](bool on) {
        m_scene.setEdgeTextShow(on);
        m_view->NelkUpdate();
    });
    addSwitch(bar, tr("Camera limit"), tr("Keep the camera near the scene"), true,
              [this](bool on) { m_view->setCameraLimit(on); });
    addSwitch(bar, tr("Large scene"), tr("Make the scene twice as wide and high"), false,
              [this](bool on) { m_scene.setSize(on ? 16000 : 8000, on ? 9600 : 4800); });
    addSwitch(bar, tr("Block"), tr("Block mouse and keys over the network"), false,
              [this](bool on) { m_view->blockInteraction(on); });
}

void MainWindow::fillNodeBar(QToolBar& bar)
{
    addCall(bar, tr("Add node"), tr("Put a node into the middle of the view"), QKeySequence::New,
            [this] { addNode(); });
    addCall(bar, tr("Remove"), tr("Remove what is selected"), QKeySequence::Delete, [this] { removeSelected(); });
    addCall(bar, tr("Larger"), tr("Draw the selected nodes larger"), {},
            [this] { changeSelectedNodes([](NELK::GraphNode& node) { node.setSize(1.5f); }); });
    addCall(bar, tr("Lock"), tr("Lock the selected nodes"), {},
            [this] { changeSelectedNodes([](NELK::GraphNode& node) { node.setLock(true); }); });
    addCall(bar, tr("Unlock"), tr("Let the selected nodes be moved again"), {},
            [this] { changeSelectedNodes([](NELK::GraphNode& node) { node.setLock(false); }); });
    addCall(bar, tr("Focus"), tr("Mark the selected nodes"), {},
            [this] { changeSelectedNodes([](NELK::GraphNode& node) { node.setFocus(true); }); });
    addCall(bar, tr("Combine"), tr("Mark the selected nodes as standing for several"), {},
            [this] { changeSelectedNodes([](NELK::GraphNode& node) { node.setCombined(true); }); });
    addCall(bar, tr("Circle"), tr("Draw a circle around the selected nodes"), {},
            [this] { changeSelectedNodes([](NELK::GraphNode& node) { node.setCircleShow(true); }); });
    addCall(bar, tr("Hide"), tr("Hide the selected nodes"), {},
            [this] { changeSelectedNodes([](NELK::GraphNode& node) { node.setShow(false); }); });
    addCall(bar, tr("Centre all"), tr("Move all nodes around the middle of the scene"), {}, [this] {
        m_scene.elementsAlignToCenter();
        m_view->NelkUpdate();
    });
}

void MainWindow::fillEdgeBar(QToolBar& bar)
{
    addCall(bar, tr("Right angle"), tr("Lead the selected edges around a corner"), {},
            [this] { changeSelectedEdges([](NELK::GraphEdge& edge) { edge.setRightAngle(true); }); });
    addCall(bar, tr("Straight"), tr("Lead the selected edges straight"), {},
            [this] { changeSelectedEdges([](NELK::GraphEdge& edge) { edge.setRightAngle(false); }); });
    addCall(bar, tr("Wider"), tr("Draw the selected edges wider"), {},
            [this] { changeSelectedEdges([](NELK::GraphEdge& edge) { edge.setEdgeWidth(24); }); });
    addCall(bar, tr("Arrows"), tr("Give the selected edges an arrow head at either end"), {}, [this] {
        changeSelectedEdges([](NELK::GraphEdge& edge) {
            edge.setStartArrowShow(true);
            edge.setEndArrowShow(true);
        });
    });
    addCall(bar, tr("Colour..."), tr("Choose a colour for the selected edges"), {}, [this] {
        const QColor color = QColorDialog::getColor(Qt::black, this);
        if (color.isValid())
            changeSelectedEdges([&color](NELK::GraphEdge& edge) { edge.setEdgeColor(color); });
    });
    addCall(bar, tr("Hide edges"), tr("Hide the selected edges"), {},
            [this] { changeSelectedEdges([](NELK::GraphEdge& edge) { edge.setShow(false); }); });
}

template <typename Change>
void MainWindow::changeSelectedEdges(Change change)
{
    for (const qint64 id : qAsConst(m_selectedEdges)) {
        NELK::GraphEdge edge = m_scene.getEdge(id);
        if (edge.valid())
            change(edge);
    }
    m_view->NelkUpdate();
}

template <typename Change>
void MainWindow::changeSelectedNodes(Change change)
{
    for (const qint64 id : qAsConst(m_selectedNodes)) {
        NELK::GraphNode node = m_scene.getNode(id);
        if (node.valid())
            change(node);
    }
    m_view->NelkUpdate();
}

void MainWindow::addNode()
{
    NELK::GraphNode node = m_scene.createNode();
    node.setImage(QStringLiteral("question"), false);
    node.setPos(m_view->viewToScene(m_view->rect().center()));
    node.setLabel(tr("Node %1").arg(node.getId()), {});
    m_view->NelkUpdate();
}

void MainWindow::removeSelected()
{
    for (const qint64 id : qAsConst(m_selectedEdges)) {
        if (m_scene.getEdge(id).valid())
            m_scene.removeEdge(id);
    }
    for (const qint64 id : qAsConst(m_selectedNodes)) {
        if (m_scene.getNode(id).valid())
            m_scene.removeNode(id);
    }
    showSelection({}, {});
    m_view->NelkUpdate();
}

void MainWindow::showSelection(const QList<qint64>& nodes, const QList<qint64>& edges)
{
    m_selectedNodes = nodes;
    m_selectedEdges = edges;
    statusBar()->showMessage(tr("%1 nodes and %2 edges selected").arg(nodes.size()).arg(edges.size()));
}

void MainWindow::showZoom(double ratio)
{
    m_zoomLabel->setText(
        tr("%1 % of the scene, drawn in %2 ms").arg(ratio * 100.0, 0, 'f', 1).arg(m_view->getRenderT()));
}

void MainWindow::showRightClick(NELK::E_ELEMENTS_TYPE type, qint64 id)
{
    statusBar()->showMessage(tr("Right click on %1").arg(describe(type, id)));
}

void MainWindow::centreOn(NELK::E_ELEMENTS_TYPE type, qint64 id)
{
    if (type != NELK::ELEMENT_NODE)
        return;
    const QPointF position = QPointF(m_scene.getNode(id).pos()) * qreal{m_view->cameraScale()};
    m_view->setCameraX(qRound(position.x()));
    m_view->setCameraY(qRound(position.y()));
}

void MainWindow::joinByLine(const QPoint& from, const QPoint& to)
{
    const QList<NELK::GraphNode> starts = m_scene.testNodeAtPoint(m_view->viewToScene(from));
    const QList<NELK::GraphNode> ends = m_scene.testNodeAtPoint(m_view->viewToScene(to));
    if (starts.isEmpty() || ends.isEmpty()) {
        statusBar()->showMessage(tr("A relation goes from one node to another."));
        return;
    }
    NELK::GraphEdge edge = m_scene.createEdge(starts.first(), ends.first());
    edge.setEndArrowShow(true);
    m_view->NelkUpdate();
}

void MainWindow::savePicture(const QImage& picture)
{
    const QString file =
        QFileDialog::getSaveFileName(this, tr("Save picture"), QStringLiteral("network.png"), tr("Pictures (*.png)"));
    if (!file.isEmpty() && !picture.save(file))
        QMessageBox::warning(this, tr("Save picture"),
                             tr("The picture could not be written to\n%1\nIs there room, and may you write there?")
                                 .arg(QDir::toNativeSeparators(file)));
}
