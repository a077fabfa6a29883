// The meshes and textures of BaseGLView.

#include "render/BaseGLView.h"
#include "render/CircleMeshData.h"
#include "render/RingMeshData.h"

#include <array>

namespace NELK
{

namespace
{

constexpr GLsizei floatsPerVertex = 4;
constexpr GLsizei vertexStride = floatsPerVertex * sizeof(float);
constexpr GLsizei columnSize = 4 * sizeof(float);
constexpr GLuint instanceColumns = sizeof(InstanceRecord) / columnSize;

/// Where in a buffer an attribute starts, in the form that OpenGL takes it.
const void* bufferOffset(GLsizei bytes)
{
    return reinterpret_cast<const void*>(static_cast<quintptr>(bytes)); // NOLINT(performance-no-int-to-ptr)
}

// Each vertex is x, y, para.x, para.y.

/// The unit square as two triangles; para runs from the lower left to the upper right corner.
constexpr std::array<float, 24> quadVertices{-0.5f, 0.5f,  0.0f, 1.0f, //
                                             0.5f,  0.5f,  1.0f, 1.0f, //
                                             0.5f,  -0.5f, 1.0f, 0.0f, //
                                             -0.5f, 0.5f,  0.0f, 1.0f, //
                                             0.5f,  -0.5f, 1.0f, 0.0f, //
                                             -0.5f, -0.5f, 0.0f, 0.0f};

/// The four sides of the unit square as lines.
constexpr std::array<float, 32> frameVertices{-0.5f, 0.5f,  1.0f, 1.0f, //
                                              0.5f,  0.5f,  1.0f, 1.0f, //
                                              0.5f,  0.5f,  1.0f, 1.0f, //
                                              0.5f,  -0.5f, 1.0f, 1.0f, //
                                              0.5f,  -0.5f, 1.0f, 1.0f, //
                                              -0.5f, -0.5f, 0.0f, 1.0f, //
                                              -0.5f, -0.5f, 1.0f, 1.0f, //
                                              -0.5f, 0.5f,  1.0f, 1.0f};

/// A triangle that points to the right.
constexpr std::array<float, 12> arrowVertices{-0.5f, 0.4f,  0.0f, 0.0f, //
                                              -0.5f, -0.4f, 0.0f, 0.0f, //
                                              0.5f,  0.0f,  0.0f, 0.0f};

} // namespace

/// Leaves the vertex array bound.
template <typename Floats>
void BaseGLView::createMesh(InstancedMesh& mesh, const Floats& vertices)
{
    mesh.vertexCount = static_cast<GLsizei>(vertices.size()) / floatsPerVertex;
    glGenVertexArrays(1, &mesh.vao);
    glGenBuffers(1, &mesh.vbo);
    glBindVertexArray(mesh.vao);
    glBindBuffer(GL_ARRAY_BUFFER, mesh.vbo);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(float)), vertices.data(),
                 GL_STATIC_DRAW);
    constexpr GLsizei pairSize = 2 * sizeof(float);
    GLsizei offset = 0;
    for (const GLuint location : {0u, 1u}) {
        glEnableVertexAttribArray(location);
        glVertexAttribPointer(location, 2, GL_FLOAT, GL_FALSE, vertexStride, bufferOffset(offset));
        offset += pairSize;
    }
}

template <typename Floats>
void BaseGLView::createInstancedMesh(InstancedMesh& mesh, const Floats& vertices)
{
    createMesh(mesh, vertices);
    glGenBuffers(1, &mesh.instances);
    bindInstanceAttributes(mesh.instances, 2);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindVertexArray(0);
}

void BaseGLView::createQuadMesh()
{
    createMesh(quadMesh, quadVertices);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindVertexArray(0);
}

void BaseGLView::createImageMesh()
{
    createInstancedMesh(imageMesh, quadVertices);
}

void BaseGLView::createTextMesh()
{
    createInstancedMesh(textMesh, quadVertices);
}

void BaseGLView::createEdgeLineMesh()
{
    createInstancedMesh(edgeLineMesh, quadVertices);
}

void BaseGLView::createEdgeCurveMesh()
{
    createInstancedMesh(edgeCurveMesh, quadVertices);
}

void BaseGLView::createCircleMesh()
{
    createInstancedMesh(circleMesh, CircleMeshData(40).vertices());
}

void BaseGLView::createRingMesh()
{
    createInstancedMesh(ringMesh, RingMeshData(80).vertices());
}

void BaseGLView::createFrameMesh()
{
    createInstancedMesh(frameMesh, frameVertices);
}

void BaseGLView::createArrowMesh()
{
    createInstancedMesh(arrowMesh, arrowVertices);
}

void BaseGLView::createEntityTexture()
{
    createTexture(entityTexture);
}

void BaseGLView::createTextTexture()
{
    createTexture(textTexture);
}

void BaseGLView::bindInstanceAttributes(GLuint buffer, GLuint firstLocation)
{
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    for (GLuint column = 0; column < instanceColumns; ++column) {
        const GLuint location = firstLocation + column;
        glEnableVertexAttribArray(location);
        glVertexAttribPointer(location, 4, GL_FLOAT, GL_FALSE, sizeof(InstanceRecord),
                              bufferOffset(static_cast<GLsizei>(column) * columnSize));
        glVertexAttribDivisor(location, 1);
    }
}

void BaseGLView::createTexture(GLuint& texture)
{
    shader.use();
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

/// OpenGL passes over the name 0.
void BaseGLView::destroyMesh(InstancedMesh& mesh)
{
    glDeleteBuffers(1, &mesh.instances);
    glDeleteBuffers(1, &mesh.vbo);
    glDeleteVertexArrays(1, &mesh.vao);
    mesh = {};
}

} // namespace NELK
