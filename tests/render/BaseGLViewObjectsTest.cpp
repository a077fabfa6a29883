#include "support/LoggingView.h"

#include <QtTest>

#include <array>
#include <cmath>
#include <memory>

using namespace NELK;

/// What BaseGLView has in OpenGL.
class BaseGLViewObjectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void buildsAProgramFromResources();
    void buildsNoProgramFromWhatIsMissing_data();
    void buildsNoProgramFromWhatIsMissing();
    void uploadsEachMesh_data();
    void uploadsEachMesh();
    void feedsMeshesAndInstances_data();
    void feedsMeshesAndInstances();
    void countsTheVerticesOfEachMesh();
    void smoothsItsTextures();
    void handsOverWhatAListCounts();

private:
    std::unique_ptr<GraphScene> m_graph;
    std::unique_ptr<LoggingView> m_view;
};

namespace
{

const QString vertexPath = QStringLiteral(":/shader/shader/shader.view.vs");
const QString fragmentPath = QStringLiteral(":/shader/shader/shader.view.fs");

/// How an attribute of the vertex array in use is fed, in words.
QString feedOf(LoggingView& view, GLuint location)
{
    const auto parameter = [&view, location](GLenum name) {
        GLint value = -1;
        view.glGetVertexAttribiv(location, name, &value);
        return value;
    };
    if (!parameter(GL_VERTEX_ATTRIB_ARRAY_ENABLED))
        return QStringLiteral("nothing");
    void* offset = nullptr;
    view.glGetVertexAttribPointerv(location, GL_VERTEX_ATTRIB_ARRAY_POINTER, &offset);
    const bool plainFloats =
        parameter(GL_VERTEX_ATTRIB_ARRAY_TYPE) == GL_FLOAT && !parameter(GL_VERTEX_ATTRIB_ARRAY_NORMALIZED);
    return QStringLiteral("%1 %2 at %3 of %4, divisor %5, buffer %6")
        .arg(parameter(GL_VERTEX_ATTRIB_ARRAY_SIZE))
        .arg(plainFloats ? QStringLiteral("floats") : QStringLiteral("of something"))
        .arg(reinterpret_cast<quintptr>(offset))
        .arg(parameter(GL_VERTEX_ATTRIB_ARRAY_STRIDE))
        .arg(parameter(GL_VERTEX_ATTRIB_ARRAY_DIVISOR))
        .arg(parameter(GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING));
}

QVector<float> contentOf(LoggingView& view, GLuint buffer)
{
    view.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    GLint bytes = 0;
    view.glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &bytes);
    QVector<float> content(bytes / int{sizeof(float)});
    if (!content.isEmpty())
        view.glGetBufferSubData(GL_ARRAY_BUFFER, 0, bytes, content.data());
    view.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return content;
}

using Floats = QVector<float>;

const Floats quad{-0.5f, 0.5f, 0, 1, 0.5f, 0.5f,  1, 1, 0.5f,  -0.5f, 1, 0,
                  -0.5f, 0.5f, 0, 1, 0.5f, -0.5f, 1, 0, -0.5f, -0.5f, 0, 0};
const Floats frame{-0.5f, 0.5f,  1, 1, 0.5f,  0.5f,  1, 1, 0.5f,  0.5f,  1, 1, 0.5f,  -0.5f, 1, 1,
                   0.5f,  -0.5f, 1, 1, -0.5f, -0.5f, 0, 1, -0.5f, -0.5f, 1, 1, -0.5f, 0.5f,  1, 1};
const Floats arrow{-0.5f, 0.4f, 0, 0, -0.5f, -0.4f, 0, 0, 0.5f, 0, 0, 0};

/// The point of a circle of diameter 1 after so many of `segments` steps.
std::array<float, 2> rim(int step, int segments)
{
    const double angle = 2 * M_PI * step / segments;
    return {static_cast<float>(std::cos(angle) / 2), static_cast<float>(std::sin(angle) / 2)};
}

Floats circle(int segments)
{
    Floats all;
    for (int i = 0; i < segments; ++i) {
        all << Floats{0, 0, 0, 0};
        for (const auto [x, y] : {rim(i, segments), rim(i + 1, segments)})
            all << Floats{x, y, 1, 0};
    }
    return all;
}

Floats ring(int segments)
{
    Floats all;
    for (int i = 0; i < segments; ++i) {
        const auto [ax, ay] = rim(i, segments);
        const auto [bx, by] = rim(i + 1, segments);
        all << Floats{ax, ay, -ax, -ay} << Floats{ax, ay, 0, 0} << Floats{bx, by, 0, 0};
        all << Floats{bx, by, -bx, -by} << Floats{ax, ay, -ax, -ay} << Floats{bx, by, 0, 0};
    }
    return all;
}

} // namespace

void BaseGLViewObjectsTest::init()
{
    m_graph = std::make_unique<GraphScene>();
    m_view = std::make_unique<LoggingView>(*m_graph);
}

void BaseGLViewObjectsTest::cleanup()
{
    if (m_view->context())
        QCOMPARE(m_view->allErrors(), {});
    m_view.reset();
    m_graph.reset();
}

void BaseGLViewObjectsTest::buildsAProgramFromResources()
{
    m_view->start();
    const GLuint first = m_view->shader.id;
    QVERIFY(m_view->buildProgram(vertexPath, fragmentPath));
    QVERIFY(m_view->shader.id != first);
    QCOMPARE(integer(*m_view, GL_CURRENT_PROGRAM), static_cast<GLint>(m_view->shader.id));
    m_view->glDeleteProgram(first);
}

void BaseGLViewObjectsTest::buildsNoProgramFromWhatIsMissing_data()
{
    QTest::addColumn<QString>("vertex");
    QTest::addColumn<QString>("fragment");
    const QString missing = QStringLiteral(":/shader/shader/nobody");
    QTest::newRow("vertex") << missing << fragmentPath;
    QTest::newRow("fragment") << vertexPath << missing;
    QTest::newRow("both") << missing << missing;
}

void BaseGLViewObjectsTest::buildsNoProgramFromWhatIsMissing()
{
    QFETCH(QString, vertex);
    QFETCH(QString, fragment);
    m_view->start();
    const GLuint before = m_view->shader.id;
    QVERIFY(!m_view->buildProgram(vertex, fragment));
    QCOMPARE(m_view->shader.id, before);
}

void BaseGLViewObjectsTest::uploadsEachMesh_data()
{
    QTest::addColumn<Floats>("vertices");
    for (const char* name : {"quad", "image", "text", "edge line", "edge curve"})
        QTest::newRow(name) << quad;
    QTest::newRow("circle") << circle(40);
    QTest::newRow("ring") << ring(80);
    QTest::newRow("frame") << frame;
    QTest::newRow("arrow") << arrow;
}

void BaseGLViewObjectsTest::uploadsEachMesh()
{
    QFETCH(Floats, vertices);
    m_view->start();
    const Floats uploaded = contentOf(*m_view, m_view->mesh(QTest::currentDataTag()).vbo);
    QCOMPARE(uploaded.size(), vertices.size());
    for (int i = 0; i < vertices.size(); ++i)
        QVERIFY(std::abs(uploaded[i] - vertices[i]) <= 2e-6f); // angles are floats up to 2 pi
}

void BaseGLViewObjectsTest::feedsMeshesAndInstances_data()
{
    QTest::addColumn<bool>("instanced");
    QTest::newRow("quad") << false;
    for (const char* name : {"image", "text", "edge line", "edge curve", "circle", "ring", "frame", "arrow"})
        QTest::newRow(name) << true;
}

void BaseGLViewObjectsTest::feedsMeshesAndInstances()
{
    QFETCH(bool, instanced);
    m_view->start();
    const InstancedMesh& mesh = m_view->mesh(QTest::currentDataTag());
    QCOMPARE(mesh.instances != 0, instanced);
    QStringList expected{QStringLiteral("2 floats at 0 of 16, divisor 0, buffer %1").arg(mesh.vbo),
                         QStringLiteral("2 floats at 8 of 16, divisor 0, buffer %1").arg(mesh.vbo)};
    for (const int offset : {0, 16, 32, 48, 64, 80, 96}) {
        expected.append(
            instanced ? QStringLiteral("4 floats at %1 of 112, divisor 1, buffer %2").arg(offset).arg(mesh.instances)
                      : QStringLiteral("nothing"));
    }

    m_view->glBindVertexArray(mesh.vao);
    QStringList feeds;
    for (GLuint location = 0; location <= 8; ++location)
        feeds.append(feedOf(*m_view, location));
    QCOMPARE(feeds, expected);
    QCOMPARE(feedOf(*m_view, 9), QStringLiteral("nothing"));
    if (instanced)
        QCOMPARE(contentOf(*m_view, mesh.instances), Floats()); // until something is drawn
}

void BaseGLViewObjectsTest::countsTheVerticesOfEachMesh()
{
    m_view->start();
    const QMap<QByteArray, GLsizei> counts{{"quad", 6},      {"image", 6},      {"text", 6},
                                           {"edge line", 6}, {"edge curve", 6}, {"circle", 120},
                                           {"ring", 480},    {"frame", 8},      {"arrow", 3}};
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        QCOMPARE(m_view->mesh(count.key()).vertexCount, count.value());
}

void BaseGLViewObjectsTest::smoothsItsTextures()
{
    m_view->start();
    QVERIFY(m_view->entityTexture != m_view->textTexture);
    for (const GLuint texture : {m_view->entityTexture, m_view->textTexture}) {
        m_view->glBindTexture(GL_TEXTURE_2D, texture);
        const auto parameter = [this](GLenum name) {
            GLint value = 0;
            m_view->glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
            return value;
        };
        QCOMPARE(parameter(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
        QCOMPARE(parameter(GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_LINEAR);
        QCOMPARE(parameter(GL_TEXTURE_WRAP_S), GL_CLAMP_TO_EDGE);
        QCOMPARE(parameter(GL_TEXTURE_WRAP_T), GL_CLAMP_TO_EDGE);
    }
}

/// `count` says how much, and not how many records there are.
void BaseGLViewObjectsTest::handsOverWhatAListCounts()
{
    m_view->start();
    const GLuint buffer = m_view->mesh("arrow").instances;
    InstanceList list;
    for (const float value : {1.0f, 2.0f, 3.0f}) {
        InstanceRecord record;
        record.para1 = {value, 0, 0, 0};
        record.para3 = {0, 0, 0, -value};
        if (value == 3.0f)
            list.complete();
        list.add(record);
    }
    m_view->uploadInstances(buffer, list);
    QCOMPARE(integer(*m_view, GL_ARRAY_BUFFER_BINDING), 0);
    const Floats content = contentOf(*m_view, buffer);
    QCOMPARE(content.size(), 2 * 28);
    QCOMPARE(content.mid(0, 5), (Floats{1, 0, 0, 0, 0}));
    QCOMPARE(content.mid(28 + 15, 2), (Floats{1, 2}));
    QCOMPARE(content.last(), -2.0f);

    m_view->uploadInstances(buffer, InstanceList());
    QCOMPARE(contentOf(*m_view, buffer), Floats());
}

QTEST_MAIN(BaseGLViewObjectsTest)

#include "BaseGLViewObjectsTest.moc"
