// What View draws, from the bottom to the top: edges, then unselected nodes, then selected ones with their frames.

#include "view/View.h"

#include "scene/Scene.h"
#include "scene/Truncation.h"

namespace NELK
{

namespace
{

// What the fragment shader does with an element.
constexpr qint32 atlasImage = 0;
constexpr qint32 plainColor = 1;
constexpr qint32 translucentColor = 2;
constexpr qint32 oneColor = 3;
constexpr qint32 glyph = 4;

/// From this many scene units a pixel on, text is a grey haze.
constexpr int unitsPerPixelWithoutText = 32;

} // namespace

void View::paintEdges()
{
    shader.use();
    shader.setMat4("view", view.data());
    paintKind(plainColor, edgeLineMesh, scene->edgeLineItems);
    paintKind(plainColor, edgeCurveMesh, scene->edgeCurveItems);
    paintKind(plainColor, arrowMesh, scene->arrowItems);
    paintKind(plainColor, ringMesh, scene->edgeRingItems);
    paintText(scene->edgeTextItems);
}

void View::paintNodes()
{
    shader.use();
    shader.setMat4("view", view.data());
    paintLayer(false);
    paintLayer(true);
}

void View::paintLayer(bool selected)
{
    paintKind(translucentColor, circleMesh, selected ? scene->selCircleItems : scene->circleItems);
    paintKind(plainColor, ringMesh, selected ? scene->selRingItems : scene->ringItems);
    useAtlas(entityTexture, entityRows, entityCols);
    paintKind(atlasImage, imageMesh, selected ? scene->selImageItems : scene->imageItems);
    paintText(selected ? scene->selTextItems : scene->textItems);
    if (!selected)
        return;

    if (wideLines)
        glLineWidth(2.0f);
    shader.setInt("modelType", oneColor);
    shader.setVec3("simpleColor", scene->selectColor.data());
    uploadInstances(frameMesh.instances, scene->frameItems);
    drawInstances(frameMesh, GL_LINES, scene->frameItems);
}

void View::paintKind(qint32 modelType, const InstancedMesh& mesh, const InstanceList& list)
{
    shader.setInt("modelType", modelType);
    uploadInstances(mesh.instances, list);
    drawInstances(mesh, GL_TRIANGLES, list);
}

void View::paintText(const InstanceList& list)
{
    if (!textVisible())
        return;
    useAtlas(textTexture, textRows, textCols);
    paintKind(glyph, textMesh, list);
}

/// Both atlases take turns in one texture unit.
void View::useAtlas(GLuint texture, qint32 rows, qint32 columns)
{
    shader.setFloat("texRowNum", static_cast<float>(rows));
    shader.setFloat("texColNum", static_cast<float>(columns));
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, texture);
}

bool View::textVisible() const
{
    if (W < 10)
        return false;
    return truncated(static_cast<float>(W) / camera.scale()) / W < unitsPerPixelWithoutText;
}

} // namespace NELK
