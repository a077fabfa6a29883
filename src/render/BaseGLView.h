#pragma once

#include "render/ShaderProgram.h"
#include "scene/InstanceList.h"

#include <QEvent>
#include <QOpenGLFunctions_3_3_Core>
#include <QOpenGLPixelTransferOptions>
#include <QOpenGLWidget>

class ImageManager;

namespace NELK
{

class Scene;

/// One mesh in OpenGL and, unless it is drawn by itself, the buffer for what differs between its instances.
/// 0 stands for what was not created.
struct InstancedMesh
{
    GLuint vbo = 0;
    GLuint vao = 0;
    GLuint instances = 0;
    GLsizei vertexCount = 0;
};

/// The widget that everything is drawn in: holds the program, the meshes, the textures and the frame of a repaint. What
/// is drawn, subclasses decide.
///
/// An element kind has one small mesh, uploaded once, and one buffer for a record per element, so that a kind costs one
/// draw call however many elements it has. There is no depth test: what is drawn later lies on top.
///
/// All objects belong to the context of the window in which the widget is. In another window it gets another context,
/// and makes them anew.
class BaseGLView : public QOpenGLWidget, public QOpenGLFunctions_3_3_Core
{
    Q_OBJECT

public:
    /// `shownScene` must outlive the widget.
    BaseGLView(Scene* shownScene, QWidget* parent);
    ~BaseGLView() override;

    /// How long the last repaint took to issue, in milliseconds.
    qint32 lastPaintTime() const { return lastPaintMs; }

protected:
    bool event(QEvent* event) override;
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;

    /// Loads the program and gives it its start values.
    virtual void initShaders() = 0;
    /// Creates the textures and meshes that the widget needs.
    virtual void initGLObjects() = 0;
    /// Frees all that belongs to the context. Harmless when there is nothing left.
    virtual void destroyGLObjects();
    /// Sets the projection. In device-independent pixels.
    virtual void resizeView(int width, int height) = 0;
    /// The first half of a repaint: edges lie under everything else.
    virtual void paintEdges() = 0;
    /// The second half of a repaint.
    virtual void paintNodes() = 0;

    /// Builds the program from two resources and puts it in use. False, and nothing done, if one cannot be opened.
    bool buildProgram(const QString& vertexPath, const QString& fragmentPath);

    void createQuadMesh();
    void createImageMesh();
    void createTextMesh();
    void createEdgeLineMesh();
    void createEdgeCurveMesh();
    void createCircleMesh();
    void createRingMesh();
    void createFrameMesh();
    void createArrowMesh();
    void createEntityTexture();
    void createTextTexture();

    QOpenGLPixelTransferOptions savePixelTransfer();
    void applyPixelTransfer(const QOpenGLPixelTransferOptions& options);

    /// Hands a list over. A buffer serves several lists in one repaint, so this comes right before the draw.
    void uploadInstances(GLuint buffer, const InstanceList& list);
    /// Draws the mesh once for each record of a list that was handed over.
    void drawInstances(const InstancedMesh& mesh, GLenum primitive, const InstanceList& list);

    GLuint entityTexture = 0;
    GLuint textTexture = 0;
    InstancedMesh quadMesh;
    InstancedMesh frameMesh;
    InstancedMesh circleMesh;
    InstancedMesh ringMesh;
    InstancedMesh imageMesh;
    InstancedMesh textMesh;
    InstancedMesh edgeLineMesh;
    InstancedMesh edgeCurveMesh;
    InstancedMesh arrowMesh;
    ShaderProgram shader;
    /// The context has all that a repaint needs.
    bool glReady = false;
    Scene* scene;
    qint32 lastPaintMs = 10;
    ImageManager* entityImages = nullptr;
    ImageManager* textImages = nullptr;

private Q_SLOTS:
    void slotContextDestroyed();

private:
    bool mayChangeContext(QEvent::Type event) const;
    template <typename Floats>
    void createMesh(InstancedMesh& mesh, const Floats& vertices);
    template <typename Floats>
    void createInstancedMesh(InstancedMesh& mesh, const Floats& vertices);
    void bindInstanceAttributes(GLuint buffer, GLuint firstLocation);
    void createTexture(GLuint& texture);
    void destroyMesh(InstancedMesh& mesh);

    /// It was made for a picture of a widget that is not in a window yet.
    bool m_hasContextWithoutWindow = false;
};

} // namespace NELK
