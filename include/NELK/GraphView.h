#pragma once

#include <NELK/ElementsType.h>
#include <NELK/Export.h>
#include <NELK/OperateMode.h>

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QWidget>

class QGridLayout;
class QPushButton;
class QScrollBar;

namespace NELK
{

class GraphScene;
class SelectArea;
class TriangleWidget;
class View;
class ViewEye;

/// The widget that shows a GraphScene: the network itself and, as asked for, an overview of the whole scene in the
/// lower right corner, a button that folds the overview away, and scroll bars.
///
/// The mouse selects and moves nodes, pans and zooms, as setOperateMode() says; the arrow and page keys pan. What the
/// host changes in the scene shows after NelkUpdate().
///
/// Positions are in one of two planes. Scene: scene units, y up, the origin in the middle of the scene. Widget: pixels,
/// device-independent, from the upper left corner of this widget, y down. The scale is in pixels a scene unit.
///
/// With the left button the user clicks nodes and edges to select them, with control held to add or take away, drags
/// selected nodes, or spans a frame; a way of up to eight pixels is a click. The wheel zooms at the cursor. In the
/// overview a drag of the rectangle moves what is in sight, a click elsewhere jumps there, and the wheel zooms.
///
/// All members belong to the user interface thread. The scene must outlive the view. A slot that a signal of this class
/// or of the scene is connected to may delete the view with deleteLater(). It may also delete it at once, but not while
/// the view is being resized, while a scroll bar is clicked, or on a right click: there Qt itself is not done with it.
class NELK_EXPORT GraphView : public QWidget
{
    Q_OBJECT

public:
    /// Shows `scene`. `hasEye` asks for the overview, `hasEyeButton` for its button, which a view without an overview
    /// does not have. Without an overview the scroll bars do not follow the camera, keys pan by the steps of when the
    /// size of the scene last changed, or not at all, and signalZoomRatioChanged() comes only at such a change.
    explicit GraphView(const GraphScene* scene, QWidget* parent = nullptr, bool hasEye = true, bool hasScrollBar = true,
                       bool hasEyeButton = true);
    ~GraphView() override;

    /// Takes up all that the host has changed in the scene, and repaints. Its cost grows with the whole scene: call it
    /// once after many changes.
    void NelkUpdate();

    /// @name The camera
    /// Out-of-range scales and positions are clamped: the least scale shows the whole scene, the greatest is 1, or ten
    /// times the least where the view is wider or higher than the scene. Before the view is first shown there is no
    /// range, and the scale stays at 1.
    /// @{

    /// Shows all shown nodes with a margin of 512 units; without any, the middle of the scene as large as may be. So do
    /// the other fits.
    void fitToView();
    /// Shows the height of all shown nodes with a margin; the horizontal position stays.
    void fitHeight();
    /// Shows the whole scene.
    void fitOriginalSize();
    /// Shows the whole scene.
    void showFullEye();
    /// Shows all nodes that are shown and selected, with a margin.
    void selectedViewMax();
    /// Shows the width of `rect`, in the scene plane with its greatest y as its top; its height may not fit. Without a
    /// width it takes the greatest scale, with a negative one the least.
    void fitInView(const QRectF& rect);
    /// One step of 1.05, in or out.
    void zoom(bool in);
    /// How many times what the view shows would have to grow to show the whole scene, along its tighter axis: the
    /// reciprocal of what signalZoomRatioChanged() carries.
    double getZoomRatio() const;
    /// The least width in scene units that the view can show; the greatest int before it is first shown.
    int minFitWidth() const;
    /// The scene point in the middle of the view, times the scale, cut toward zero; y up.
    int cameraX() const;
    int cameraY() const;
    /// Moves the middle of the view to a scene point that is told times the scale; y up.
    void setCameraX(int x);
    void setCameraY(int y);
    /// In pixels a scene unit.
    float cameraScale() const;
    /// Sets the scale. Shows with the next other change of the camera, and tells nobody.
    void setCameraScale(float scale);
    /// Whether the camera stays near the scene, which it does at first. Takes effect with its next change.
    void setCameraLimit(bool on);
    /// What the view shows, in the scene plane: left, greatest y, width and height. Its bottom() means nothing.
    QRect viewRect() const;
    /// From the widget plane to the scene plane, in whole units.
    QPoint viewToScene(const QPoint& point) const;
    /// @}

    /// How long it took to issue the last repaint, in milliseconds; 10 before the first.
    int getRenderT() const;

    /// What the mouse does: 1 selects and moves nodes, 2 pans, 3 spans a frame to zoom to and then falls back to 1, and
    /// 5 draws a line, of which signalProcessLine() tells. Any other `mode` counts as 1. `arrow` says which ends of the
    /// line have an arrow head: 0 neither, 1 the end, 2 the start, 3 both. These are not the numbers of E_OP_MODE.
    void setOperateMode(int mode, int arrow);
    /// Blocks mouse, wheel and keys over the network. Overview, scroll bars and all calls stay as they are.
    void blockInteraction(bool block);

    /// What the view shows, in pixels of the screen.
    QImage saveImage() const;
    /// What the overview shows; null without an overview.
    QImage saveEyeImage() const;

    /// Whether the overview is not folded away. True without an overview too.
    bool isViewEyeVisible() const;
    /// Shows or hides the scroll bars of a view that was made with them.
    void setScrollBarShow(bool show);

    // String connections spell the enumeration as it stands here, without its namespace.

Q_SIGNALS:
    /// The right button was pressed, in any mode. `id` is that of the node or edge, -1 for the background.
    void signalRightMouseButtonClicked(E_ELEMENTS_TYPE type, qint64 id);
    /// A node or an edge was clicked twice; never the background.
    void signalLeftMouseButtonDblClicked(E_ELEMENTS_TYPE type, qint64 id);
    /// A line of more than eight pixels was drawn from `p1` to `p2`, in the widget plane.
    void signalProcessLine(const QPoint& p1, const QPoint& p2);
    /// The share of the scene that the view shows, along its tighter axis, with each change of the camera; 0 when the
    /// size of the scene has changed.
    void signalZoomRatioChanged(double rRatio);

public Q_SLOTS:
    /// Unfolds the overview or folds it away. Only for a view that was made with one; a debug build asserts this. The
    /// button is not told, so its next press may ask for what is already so.
    void slotViewEyeOn(bool on);

protected:
    void create();
    void createView();
    void createEye();
    void createScrollBar();

    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

protected Q_SLOTS:
    void slotFrameModeChanged(E_OP_MODE mode);
    void slotFrameSizeChanged(bool show, const QPoint& p1, const QPoint& p2);
    void slotSceneSizeChanged();
    void slotUpdateScrollBarConfig(const QRect& rect, float rRatio);
    void slotHScrollBarValueChanged(int value);
    void slotVScrollBarValueChanged(int value);

private:
    void panByKey(int key);
    void layOut();
    void placeEyeButton(int x, int y);
    void placeEyeButtonInCorner();
    void updateScrollBars();

    /// Thickness of the scroll bars in pixels.
    static const int m_barSize = 16;

    const GraphScene* m_scene;
    QGridLayout* m_layout = nullptr;
    View* m_view = nullptr;
    bool m_hasEye;
    bool m_eyeHidden = false;
    ViewEye* m_eye = nullptr;
    int m_areaWidth = 0;
    int m_areaHeight = 0;
    float m_eyeWidth = 0.0f;
    float m_eyeHeight = 0.0f;
    TriangleWidget* m_eyeButton = nullptr;
    bool m_hasEyeButton;
    SelectArea* m_selectArea = nullptr;
    bool m_hasScrollBar;
    bool m_scrollBarShown;
    QScrollBar* m_hBar = nullptr;
    QScrollBar* m_vBar = nullptr;
    int m_hStep = 0;
    int m_hPage = 0;
    int m_vStep = 0;
    int m_vPage = 0;
    QPushButton* m_corner = nullptr;
    bool m_blocked = false;
};

} // namespace NELK
