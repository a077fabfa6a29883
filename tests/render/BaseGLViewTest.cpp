#include "support/LoggingView.h"

#include <QElapsedTimer>
#include <QtTest>

#include <array>
#include <memory>

using namespace NELK;

/// The frame that BaseGLView gives to what subclasses draw.
class BaseGLViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void asksForTenSamples();
    void setsUpThenDrawsEdgesThenNodes();
    void resizesWhatIsReady();
    void blendsOverWhatIsThere();
    void clearsColorsAlone();
    void measuresItsRepaints();
    void savesAndAppliesPixelTransfer();
    void destroysItsObjectsOnce();

private:
    std::unique_ptr<GraphScene> m_graph;
    std::unique_ptr<LoggingView> m_view;
};

namespace
{

constexpr std::array<GLenum, 8> unpackNames{GL_UNPACK_ALIGNMENT,   GL_UNPACK_SKIP_IMAGES,  GL_UNPACK_SKIP_ROWS,
                                            GL_UNPACK_SKIP_PIXELS, GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_ROW_LENGTH,
                                            GL_UNPACK_LSB_FIRST,   GL_UNPACK_SWAP_BYTES};

QVector<GLint> unpackValues(LoggingView& view)
{
    QVector<GLint> values;
    for (const GLenum name : unpackNames)
        values.append(integer(view, name));
    return values;
}

} // namespace

void BaseGLViewTest::init()
{
    m_graph = std::make_unique<GraphScene>();
    m_view = std::make_unique<LoggingView>(*m_graph);
}

void BaseGLViewTest::cleanup()
{
    if (m_view->context())
        QCOMPARE(m_view->allErrors(), {});
    m_view.reset();
    m_graph.reset();
}

void BaseGLViewTest::asksForTenSamples()
{
    QCOMPARE(m_view->askedSamples, 10);
}

void BaseGLViewTest::setsUpThenDrawsEdgesThenNodes()
{
    m_view->start();
    m_view->log.removeDuplicates(); // it may be resized more often than needed
    const QStringList calls{"initShaders", "initGLObjects, blending", "resizeView 40 30", "paintEdges", "paintNodes"};
    QCOMPARE(m_view->log, calls);

    m_view->log.clear();
    m_view->paintGL();
    QCOMPARE(m_view->log, (QStringList{"paintEdges", "paintNodes"}));
}

void BaseGLViewTest::resizesWhatIsReady()
{
    QVERIFY(!m_view->glReady);
    m_view->resizeGL(11, 12);
    m_view->paintGL();
    QCOMPARE(m_view->log, QStringList());

    m_view->start();
    QVERIFY(m_view->glReady);
    m_view->log.clear();
    m_view->resizeGL(13, 14);
    QCOMPARE(m_view->log, QStringList{"resizeView 13 14"});
}

void BaseGLViewTest::blendsOverWhatIsThere()
{
    m_view->start();
    QVERIFY(m_view->glIsEnabled(GL_BLEND));
    QCOMPARE(integer(*m_view, GL_BLEND_SRC_RGB), GL_SRC_ALPHA);
    QCOMPARE(integer(*m_view, GL_BLEND_SRC_ALPHA), GL_SRC_ALPHA);
    QCOMPARE(integer(*m_view, GL_BLEND_DST_RGB), GL_ONE_MINUS_SRC_ALPHA);
    QCOMPARE(integer(*m_view, GL_BLEND_DST_ALPHA), GL_ONE_MINUS_SRC_ALPHA);
    QVERIFY(!m_view->glIsEnabled(GL_DEPTH_TEST));
    QVERIFY(!m_view->glIsEnabled(GL_CULL_FACE));
    QVERIFY(!m_view->glIsEnabled(GL_STENCIL_TEST));
}

void BaseGLViewTest::clearsColorsAlone()
{
    m_view->start();
    m_view->glClearStencil(5);
    m_view->glClear(GL_STENCIL_BUFFER_BIT);
    m_view->glClearStencil(0);
    m_view->glClearColor(0, 1, 0, 1);
    m_view->paintGL();

    std::array<quint8, 4> color{};
    m_view->glReadPixels(3, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, color.data());
    QVERIFY((color == std::array<quint8, 4>{0, 255, 0, 255}));
    quint8 stencil = 0;
    m_view->glReadPixels(3, 4, 1, 1, GL_STENCIL_INDEX, GL_UNSIGNED_BYTE, &stencil);
    QCOMPARE(stencil, quint8(5));
}

/// Both halves of a repaint count.
void BaseGLViewTest::measuresItsRepaints()
{
    QCOMPARE(m_view->lastPaintTime(), 10);
    m_view->paintGL(); // nothing, as it is not ready
    QCOMPARE(m_view->lastPaintTime(), 10);

    m_view->start();
    constexpr int half = 40;
    m_view->whenPainting = [] {
        QElapsedTimer busy;
        busy.start();
        while (!busy.hasExpired(half)) {
        }
    };
    QElapsedTimer stopwatch;
    stopwatch.start();
    m_view->paintGL();
    const auto most = static_cast<qint32>(stopwatch.elapsed());
    QVERIFY(m_view->lastPaintTime() >= 2 * half);
    QVERIFY(m_view->lastPaintTime() <= most);
}

void BaseGLViewTest::savesAndAppliesPixelTransfer()
{
    m_view->start();
    const QVector<GLint> plain = unpackValues(*m_view);
    QCOMPARE(plain, (QVector<GLint>{4, 0, 0, 0, 0, 0, 0, 0}));
    const QVector<GLint> odd{2, 3, 5, 7, 11, 13, 1, 1};
    for (std::size_t i = 0; i < unpackNames.size(); ++i)
        m_view->glPixelStorei(unpackNames[i], odd[static_cast<int>(i)]);

    const QOpenGLPixelTransferOptions saved = m_view->savePixelTransfer();
    QCOMPARE(unpackValues(*m_view), odd);
    m_view->applyPixelTransfer(QOpenGLPixelTransferOptions());
    QCOMPARE(unpackValues(*m_view), plain);
    m_view->applyPixelTransfer(saved);
    QCOMPARE(unpackValues(*m_view), odd);

    // Each switch stands for itself.
    m_view->glPixelStorei(GL_UNPACK_SWAP_BYTES, GL_FALSE);
    const QOpenGLPixelTransferOptions oneSwitch = m_view->savePixelTransfer();
    m_view->applyPixelTransfer(saved);
    m_view->applyPixelTransfer(oneSwitch);
    QCOMPARE(unpackValues(*m_view), (QVector<GLint>{2, 3, 5, 7, 11, 13, 1, 0}));
}

/// Names are given out anew, so that to delete one twice would hit somebody else's object.
void BaseGLViewTest::destroysItsObjectsOnce()
{
    m_view->start();
    const QVector<GLuint> before{m_view->entityTexture, m_view->mesh("quad").vbo, m_view->mesh("text").instances};
    QVERIFY(!before.contains(0));
    m_view->destroyGLObjects();
    m_view->makeCurrent();
    QVERIFY(!m_view->glIsTexture(before[0]));
    QVERIFY(!m_view->glIsBuffer(before[1]));
    QVERIFY(!m_view->glIsBuffer(before[2]));
    QVERIFY(!m_view->glReady);
    QCOMPARE(m_view->entityTexture, 0u);
    QCOMPARE(m_view->textTexture, 0u);
    QCOMPARE(m_view->shader.id, 0u);
    for (const char* name : {"quad", "image", "text", "edge line", "edge curve", "circle", "ring", "frame", "arrow"}) {
        const InstancedMesh& mesh = m_view->mesh(name);
        QCOMPARE((QVector<GLuint>{mesh.vbo, mesh.vao, mesh.instances}), (QVector<GLuint>{0, 0, 0}));
    }

    std::array<GLuint, 50> buffers{};
    m_view->glGenBuffers(buffers.size(), buffers.data());
    for (const GLuint buffer : buffers)
        m_view->glBindBuffer(GL_ARRAY_BUFFER, buffer);
    m_view->destroyGLObjects();
    m_view->makeCurrent();
    for (const GLuint buffer : buffers)
        QVERIFY(m_view->glIsBuffer(buffer));
    m_view->glDeleteBuffers(buffers.size(), buffers.data());
}

QTEST_MAIN(BaseGLViewTest)

#include "BaseGLViewTest.moc"
