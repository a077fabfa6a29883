#include "view/View.h"

#include "atlas/ImageManager.h"
#include "render/InstanceRebuild.h"
#include "render/OrthographicProjection.h"
#include "scene/Scene.h"
#include "view/ViewInteraction.h"

#include <algorithm>

namespace NELK
{

namespace
{

/// Asked of the atlas itself: the lists are those of all views on the scene, and this one may not have drawn yet.
qint32 atlasColumns(const ImageManager& atlas)
{
    return std::max(atlas.texColNum(), 1);
}

} // namespace

View::View(Scene* shownScene, QWidget* parent)
    : BaseGLView(shownScene, parent), m_interaction(new ViewInteraction(this))
{
    setFocusPolicy(Qt::StrongFocus);
    installEventFilter(m_interaction);
    entityImages = ImageManager::instance(ImageManager::entityIndex);
    textImages = ImageManager::instance(ImageManager::wordIndex);
    connect(entityImages, SIGNAL(signalImageChanged()), this, SLOT(slotImageChanged()));
    connect(textImages, SIGNAL(signalImageChanged()), this, SLOT(slotWordChanged()));
}

View::~View()
{
    // Events still reach what is left of the widget while it is hidden and taken down.
    removeEventFilter(m_interaction);
    View::destroyGLObjects();
}

void View::rebuildAll()
{
    NELK::rebuildAll(*scene, atlasColumns(*textImages));
}

void View::rebuildParallel()
{
    NELK::rebuildParallel(*scene, atlasColumns(*textImages));
}

void View::initShaders()
{
    if (!buildProgram(":/shader/shader/shader.view.vs", ":/shader/shader/shader.view.fs"))
        return;
    shader.setVec3("simpleColor", 0.0f, 0.0f, 0.0f);
    shader.setInt("modelType", 0);
    shader.setBool("simplemodel", false);
    shader.setFloat("ringIdx", 0.0f);
}

void View::initGLObjects()
{
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    GLint contextFlags = 0;
    glGetIntegerv(GL_CONTEXT_FLAGS, &contextFlags);
    wideLines = (contextFlags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT) == 0;
    shader.use();
    view = camera.viewMatrix();
    createEntityTexture();
    uploadEntityAtlas();
    createTextTexture();
    uploadTextAtlas();
    createQuadMesh();
    createCircleMesh();
    createRingMesh();
    createImageMesh();
    createTextMesh();
    createEdgeLineMesh();
    createEdgeCurveMesh();
    createFrameMesh();
    createArrowMesh();
    rebuildAll();
}

void View::resizeView(int width, int height)
{
    shader.use();
    const Mat4 projection = orthographicProjection(static_cast<float>(width), static_cast<float>(height));
    shader.setMat4("projection", projection.data());
}

} // namespace NELK
