#pragma once

#include <NELK/GraphScene.h>
#include <NELK/GraphView.h>

#include <QMainWindow>

class QActionGroup;
class QLabel;
class QToolBar;

/// A window on one network, with what a view and its elements can do in its tool bars.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    NELK::GraphScene& scene() { return m_scene; }
    NELK::GraphView& view() { return *m_view; }

public Q_SLOTS:
    /// Takes these for what is selected. The user's own selection comes here by itself.
    void showSelection(const QList<qint64>& nodes, const QList<qint64>& edges);

private Q_SLOTS:
    void showZoom(double ratio);
    void showRightClick(NELK::E_ELEMENTS_TYPE type, qint64 id);
    void centreOn(NELK::E_ELEMENTS_TYPE type, qint64 id);
    void joinByLine(const QPoint& from, const QPoint& to);

private:
    template <typename Call>
    QAction* addCall(QToolBar& bar, const QString& text, const QString& toolTip, const QKeySequence& shortcut,
                     Call call);
    template <typename Call>
    QAction* addSwitch(QToolBar& bar, const QString& text, const QString& toolTip, bool on, Call call);
    template <typename Change>
    void changeSelectedNodes(Change change);
    template <typename Change>
    void changeSelectedEdges(Change change);

    void fillCameraBar(QToolBar& bar);
    void fillModeBar(QToolBar& bar);
    void fillShowBar(QToolBar& bar);
    void fillNodeBar(QToolBar& bar);
    void fillEdgeBar(QToolBar& bar);
    void savePicture(const QImage& picture);
    void addNode();
    void removeSelected();

    // The scene outlives the view, which is deleted first.
    NELK::GraphScene m_scene;
    NELK::GraphView* m_view;
    QActionGroup* m_modes;
    QList<qint64> m_selectedNodes;
    QList<qint64> m_selectedEdges;
    QLabel* m_zoomLabel;
};
