#pragma once

#include "render/BaseGLView.h"
#include "scene/Mat4.h"
#include "view/Camera.h"

#include <NELK/ElementsType.h>
#include <NELK/OperateMode.h>

#include <QHash>
#include <QOpenGLTexture>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSharedPointer>
#include <QString>

namespace NELK
{

class ViewInteraction;

/// The widget that shows the network.
///
/// Four planes meet here. Widget: pixels from the upper left corner, y down. Centred: pixels from the middle, y up.
/// Scene: scene units, y up, the origin in the middle of the scene. Eye: scene units from the upper left corner of the
/// scene, y down. Pixels are device-independent.
///
/// A camera change replaces one matrix and asks for a repaint. A rebuild, which takes up changes of the scene, is
/// always asked for.
class View : public BaseGLView
{
    Q_OBJECT

public:
    explicit View(Scene* shownScene, QWidget* parent = nullptr);
    ~View() override;

    // Drawing. A rebuild shows with the next repaint, for which the caller asks.

    void rebuildAll();
    /// After a change of the selection: all but the overview's list, on several threads.
    void rebuildParallel();
    /// The texture of an image file, at most 256 by 256; null if there is no image, or nothing to draw with yet. It
    /// lasts as long as the view and its window do.
    QOpenGLTexture* textureForPath(const QString& path);

    // What the mouse does, at points of the widget. Radii are in pixels. Nodes come before edges.

    /// How far from an edge a click may be.
    static constexpr int clickRadius = 4;

    ViewInteraction& interaction() { return *m_interaction; }
    /// Shows the cursor of the mode, and tells of the mode.
    void setMode(E_OP_MODE mode);
    bool hitNode(QPoint position, qint64* id, bool selectedOnly) const;
    bool hitEdge(QPoint position, qint64* id, int radius) const;
    /// Selects the node that is hit, and nothing where none is. `toggle` flips it and leaves all others. Answers
    /// whether a node was hit.
    bool pressSelect(QPoint position, bool toggle);
    /// Selects what is hit or, in the background, nothing. `toggle` flips it and leaves all others. Answers whether a
    /// node was hit.
    bool clickSelect(QPoint position, bool toggle, int radius);
    /// Selects all in a frame; `add` leaves all others.
    void frameSelect(const QRect& frame, bool add);
    /// Moves what is selected by a way in pixels, y down.
    void moveSelected(QPoint delta);
    /// Tells of a frame, once it is long enough to be meant as one.
    void frameChanged(bool show, const QPoint& p1, const QPoint& p2);
    void doubleClick(QPoint position);
    void rightPress(QPoint position);

    // Camera. Integers are cut toward zero. What moves the camera refreshes everything that shows it, unless told.

    /// The camera's position in scene units or, `scaled`, in pixels.
    int cameraX(bool scaled) const;
    int cameraY(bool scaled) const;
    void setCameraX(int value, bool scaled);
    void setCameraY(int value, bool scaled);
    float cameraScale() const { return camera.scale(); }
    /// Shows with the next other change of the camera.
    void setCameraScale(float scale) { camera.setScale(scale); }
    /// Takes effect with the next change of the camera.
    void setCameraLimit(bool on) { camera.setLimited(on); }
    /// How far the camera may stand off the middle of the scene, in scene units.
    float cameraLimitX() const { return camera.limitX(); }
    float cameraLimitY() const { return camera.limitY(); }
    /// By one step, in or out.
    void zoom(bool in);
    /// As zoom; `atCursor`, the point under the mouse cursor stays there.
    void zoomAt(bool in, bool atCursor);
    /// By pixels, to the right and upward.
    void panBy(int dx, int dy);
    void rotateBy(int angle);
    /// Shows all shown nodes with a margin.
    void fitToView();
    /// Shows the height of all shown nodes with a margin; x stays.
    void fitHeight();
    /// Shows all nodes that are shown and selected, with a margin.
    void selectedViewMax();
    /// Shows the width of `rect`, in the scene plane with the top as its greatest y.
    void fitInView(const QRectF& rect);
    void fitOriginalSize();
    void showFullEye();
    /// Shows what is in a frame of the widget. A frame around the middle of the view changes the scale alone, which
    /// shows with the next other change.
    void zoomToFrame(const QRect& frame);
    /// How many times more of the scene there is than the view shows, along its tighter axis.
    double getZoomRatio() const;
    /// The least width in scene units that the view can show.
    int minFitWidth() const;
    /// What the view shows, in the scene plane: left, greatest y, width and height.
    QRect viewRect() const;
    QPoint viewToScene(const QPoint& point) const;
    QPoint sceneToView(const QPoint& point) const;
    /// Takes the size of the view, at least 1 by 1, and the range of scales that follows from it. Nothing is refreshed.
    void setViewSize(int newWidth, int newHeight);

Q_SIGNALS:
    void signalFrameModeChanged(E_OP_MODE mode);
    /// A frame is spanned between two points of the widget, or has ended. The first is where the mouse was pressed.
    void signalFrameSizeChanged(bool show, const QPoint& p1, const QPoint& p2);
    /// The camera may have changed: what the view shows, in the eye plane, and its share of the scene.
    void signalViewWatchedChanged(const QRect& rect, float percentage);
    // The id is that of the node or edge, -1 for the background.
    void signalRightMouseButtonClicked(E_ELEMENTS_TYPE type, qint64 id);
    void signalLeftMouseButtonDblClicked(E_ELEMENTS_TYPE type, qint64 id);

protected:
    void initShaders() override;
    void initGLObjects() override;
    void destroyGLObjects() override;
    void resizeView(int width, int height) override;
    void paintEdges() override;
    void paintNodes() override;

protected Q_SLOTS:
    // The atlases are whole images, and cells stay where they are: nothing is rebuilt.
    void slotImageChanged();
    void slotWordChanged();

    // Wishes of the overview.
    void slotEyeWatchedMoved(const QPoint& delta);
    void slotEyeWatchedCenterChanged(const QPointF& viewOri);
    void slotEyeWatchedScaleChanged(float percentage);

private:
    void paintLayer(bool selected);
    void paintKind(qint32 modelType, const InstancedMesh& mesh, const InstanceList& list);
    void paintText(const InstanceList& list);
    void useAtlas(GLuint texture, qint32 rows, qint32 columns);
    bool textVisible() const;
    void uploadEntityAtlas();
    void uploadTextAtlas();

    QVector2D scenePoint(QPoint position) const;
    E_ELEMENTS_TYPE elementAt(QPoint position, qint64& id) const;
    int sceneRadius(int radius) const;

    void refreshCamera();
    float watchedShare() const;
    void fitNodes(bool selectedOnly);

    /// From the scene plane to pixels around the middle, as last refreshed.
    Mat4 view;
    Camera camera;
    ViewInteraction* m_interaction;
    /// Size in pixels.
    qint32 W = 100;
    qint32 H = 100;
    QHash<QString, QSharedPointer<QOpenGLTexture>> imageTextures;
    /// The context has lines of more than one pixel; in some, asking for one is an error.
    bool wideLines = false;
    // The shape of the atlases as last uploaded.
    qint32 entityRows = 1;
    qint32 entityCols = 1;
    qint32 textRows = 1;
    qint32 textCols = 1;
};

} // namespace NELK
