#include "render/ShaderProgram.h"

#include "support/OffscreenGL.h"

#include <QtTest>

#include <array>
#include <iostream>
#include <memory>
#include <sstream>

using namespace NELK;

using Setter = void (*)(const ShaderProgram&);
Q_DECLARE_METATYPE(Setter)

class ShaderProgramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isNothingBeforeItIsBuilt();
    void buildsWithoutAWord();
    void takesTheGeometryText();
    void freesItsStagesOnceLinked();
    void reportsWhatDoesNotCompile_data();
    void reportsWhatDoesNotCompile();
    void reportsWhatDoesNotLink();
    void cutsALongLog();
    void flushesEachReport();

    void setsWhatItIsGiven_data();
    void setsWhatItIsGiven();
    void setsIntegers();
    void setsOnlyTheNameTold();
    void passesOverUnknownNames();
    void findsNamesAnewAfterAnotherBuild();

private:
    QByteArray logOf(GLenum stage, const char* text);
    QByteArray logOfLink(GLuint program);
    QVector<float> floatsOf(const ShaderProgram& program, const char* name, int count);
    GLint integerOf(const ShaderProgram& program, const char* name);

    std::unique_ptr<OffscreenGL> m_gl;
};

namespace
{

const char* const vertexText = "#version 330 core\n"
                               "layout (location = 0) in vec2 place;\n"
                               "void main() { gl_Position = vec4(place, 0.0, 1.0); }\n";
const char* const fragmentText = "#version 330 core\n"
                                 "out vec4 color;\n"
                                 "void main() { color = vec4(1.0); }\n";
const char* const geometryText = "#version 330 core\n"
                                 "layout (points) in;\n"
                                 "layout (triangle_strip, max_vertices = 5) out;\n"
                                 "void main() { gl_Position = gl_in[0].gl_Position; EmitVertex(); EndPrimitive(); }\n";
const char* const brokenText = "#version 330 core\nvoid main() { oops = 1; }\n";
/// Compiles, but lacks the function that it calls.
const char* const unlinkableText = "#version 330 core\n"
                                   "out vec4 color;\n"
                                   "vec4 missing();\n"
                                   "void main() { color = missing(); }\n";

/// Reads one uniform of each type, so that none is dropped.
const char* const uniformsText =
    "#version 330 core\n"
    "uniform bool flag; uniform int number; uniform float one;\n"
    "uniform vec2 two; uniform vec3 three; uniform vec4 four;\n"
    "uniform mat2 matrix2; uniform mat3 matrix3; uniform mat4 matrix4;\n"
    "out vec4 color;\n"
    "void main()\n"
    "{\n"
    "    color = matrix4 * four + vec4(matrix3 * three, one) + vec4(matrix2 * two, float(number), flag ? 1.0 : 0.5);\n"
    "}\n";

constexpr std::array<float, 16> sixteen{1.5f, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, -16};

/// Takes what the process writes through the standard stream, and counts the flushes.
class OutputCapture : private std::stringbuf
{
public:
    OutputCapture() : m_previous(std::cout.rdbuf(this)) {}
    ~OutputCapture() override { std::cout.rdbuf(m_previous); }
    Q_DISABLE_COPY(OutputCapture)

    QByteArray text() const { return QByteArray::fromStdString(str()); }
    int flushes() const { return m_flushes; }

private:
    int sync() override
    {
        ++m_flushes;
        return 0;
    }

    std::streambuf* m_previous;
    int m_flushes = 0;
};

QByteArray compilationReport(const char* type, const QByteArray& log)
{
    return QByteArray("ERROR::SHADER_COMPILATION_ERROR of type: ") + type + "\n" + log +
           "\n -- --------------------------------------------------- -- \n";
}

QByteArray linkReport(const QByteArray& log)
{
    return "ERROR::PROGRAM_LINKING_ERROR of type: PROGRAM\n" + log +
           "\n -- --------------------------------------------------- -- \n";
}

} // namespace

void ShaderProgramTest::init()
{
    m_gl = std::make_unique<OffscreenGL>();
}

void ShaderProgramTest::cleanup()
{
    QCOMPARE(m_gl->takeErrors(), {});
    m_gl.reset();
}

/// What the compiler says of a text, whole.
QByteArray ShaderProgramTest::logOf(GLenum stage, const char* text)
{
    const GLuint shader = m_gl->glCreateShader(stage);
    m_gl->glShaderSource(shader, 1, &text, nullptr);
    m_gl->glCompileShader(shader);
    QByteArray log(100000, '\0');
    GLsizei length = 0;
    m_gl->glGetShaderInfoLog(shader, log.size(), &length, log.data());
    m_gl->glDeleteShader(shader);
    return log.left(length);
}

QByteArray ShaderProgramTest::logOfLink(GLuint program)
{
    QByteArray log(100000, '\0');
    GLsizei length = 0;
    m_gl->glGetProgramInfoLog(program, log.size(), &length, log.data());
    return log.left(length);
}

QVector<float> ShaderProgramTest::floatsOf(const ShaderProgram& program, const char* name, int count)
{
    QVector<float> values(count);
    m_gl->glGetUniformfv(program.id, m_gl->glGetUniformLocation(program.id, name), values.data());
    return values;
}

GLint ShaderProgramTest::integerOf(const ShaderProgram& program, const char* name)
{
    GLint value = -1;
    m_gl->glGetUniformiv(program.id, m_gl->glGetUniformLocation(program.id, name), &value);
    return value;
}

void ShaderProgramTest::isNothingBeforeItIsBuilt()
{
    const ShaderProgram program(m_gl.get());
    QCOMPARE(program.id, 0u);
}

void ShaderProgramTest::buildsWithoutAWord()
{
    ShaderProgram program(m_gl.get());
    const OutputCapture output;
    program.build(vertexText, fragmentText, nullptr);
    QCOMPARE(output.text(), QByteArray());
    QVERIFY(m_gl->glIsProgram(program.id));

    program.use();
    GLint inUse = 0;
    m_gl->glGetIntegerv(GL_CURRENT_PROGRAM, &inUse);
    QCOMPARE(static_cast<GLuint>(inUse), program.id);
}

void ShaderProgramTest::takesTheGeometryText()
{
    ShaderProgram program(m_gl.get());
    const OutputCapture output;
    program.build(vertexText, fragmentText, geometryText);
    QCOMPARE(output.text(), QByteArray());
    GLint vertices = 0;
    m_gl->glGetProgramiv(program.id, GL_GEOMETRY_VERTICES_OUT, &vertices);
    QCOMPARE(vertices, 5);
}

void ShaderProgramTest::freesItsStagesOnceLinked()
{
    for (const char* geometry : {static_cast<const char*>(nullptr), geometryText}) {
        ShaderProgram program(m_gl.get());
        program.build(vertexText, fragmentText, geometry);
        std::array<GLuint, 4> stages{};
        GLsizei count = 0;
        m_gl->glGetAttachedShaders(program.id, stages.size(), &count, stages.data());
        QCOMPARE(count, geometry ? 3 : 2);

        // They last as long as the program that they are attached to.
        m_gl->glDeleteProgram(program.id);
        for (const GLuint stage : stages)
            QVERIFY(!m_gl->glIsShader(stage));
    }
}

void ShaderProgramTest::reportsWhatDoesNotCompile_data()
{
    QTest::addColumn<QByteArrayList>("texts");
    QTest::addColumn<int>("broken");

    QTest::newRow("VERTEX") << QByteArrayList{brokenText, fragmentText, geometryText} << 0;
    QTest::newRow("FRAGMENT") << QByteArrayList{vertexText, brokenText, geometryText} << 1;
    QTest::newRow("GEOMETRY") << QByteArrayList{vertexText, fragmentText, brokenText} << 2;
}

void ShaderProgramTest::reportsWhatDoesNotCompile()
{
    QFETCH(QByteArrayList, texts);
    QFETCH(int, broken);
    constexpr std::array<GLenum, 3> stages{GL_VERTEX_SHADER, GL_FRAGMENT_SHADER, GL_GEOMETRY_SHADER};
    const QByteArray log = logOf(stages.at(static_cast<std::size_t>(broken)), brokenText);
    QVERIFY(log.contains("oops"));

    ShaderProgram program(m_gl.get());
    const OutputCapture output;
    program.build(texts[0], texts[1], texts[2]);
    // The sequence goes on: the program is there, and does not link.
    QVERIFY(m_gl->glIsProgram(program.id));
    QCOMPARE(output.text(), compilationReport(QTest::currentDataTag(), log) + linkReport(logOfLink(program.id)));
}

void ShaderProgramTest::reportsWhatDoesNotLink()
{
    ShaderProgram program(m_gl.get());
    const OutputCapture output;
    program.build(vertexText, unlinkableText, nullptr);
    QVERIFY(m_gl->glIsProgram(program.id));
    const QByteArray log = logOfLink(program.id);
    QVERIFY(log.contains("missing"));
    QCOMPARE(output.text(), linkReport(log));
}

void ShaderProgramTest::cutsALongLog()
{
    QByteArray text = "#version 330 core\nvoid main()\n{\n";
    for (int i = 0; i < 100; ++i)
        text += "    unknown" + QByteArray::number(i) + " = 1;\n";
    text += "}\n";
    const QByteArray log = logOf(GL_FRAGMENT_SHADER, text);
    QVERIFY(log.size() > 1023);

    ShaderProgram program(m_gl.get());
    const OutputCapture output;
    program.build(vertexText, text, nullptr);
    QCOMPARE(output.text(), compilationReport("FRAGMENT", log.left(1023)) + linkReport(logOfLink(program.id)));
}

void ShaderProgramTest::flushesEachReport()
{
    ShaderProgram program(m_gl.get());
    const OutputCapture output;
    program.build(brokenText, brokenText, nullptr);
    QCOMPARE(output.text().count("ERROR::"), 3);
    QVERIFY(output.flushes() >= 3);
}

void ShaderProgramTest::setsWhatItIsGiven_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVector<float>>("values");

    const auto add = [](const char* row, const char* name, Setter set, const QVector<float>& values) {
        QTest::newRow(row) << set << QByteArray(name) << values;
    };
    const auto first = [](int count) { return QVector<float>(sixteen.begin(), sixteen.begin() + count); };
    add("true", "flag", [](const ShaderProgram& p) { p.setBool("flag", true); }, {1});
    add("false", "flag", [](const ShaderProgram& p) { p.setBool("flag", false); }, {0});
    add("float", "one", [](const ShaderProgram& p) { p.setFloat("one", -0.1f); }, {-0.1f});
    add("vec2", "two", [](const ShaderProgram& p) { p.setVec2("two", 3.5f, -4); }, {3.5f, -4});
    add("vec3", "three", [](const ShaderProgram& p) { p.setVec3("three", 3.5f, -4, 5); }, {3.5f, -4, 5});
    add("vec4", "four", [](const ShaderProgram& p) { p.setVec4("four", 3.5f, -4, 5, 6); }, {3.5f, -4, 5, 6});
    add(
        "two floats", "two", [](const ShaderProgram& p) { p.setVec2("two", sixteen.data()); }, first(2));
    add(
        "three floats", "three", [](const ShaderProgram& p) { p.setVec3("three", sixteen.data()); }, first(3));
    add(
        "four floats", "four", [](const ShaderProgram& p) { p.setVec4("four", sixteen.data()); }, first(4));
    add(
        "mat2", "matrix2", [](const ShaderProgram& p) { p.setMat2("matrix2", sixteen.data()); }, first(4));
    add(
        "mat3", "matrix3", [](const ShaderProgram& p) { p.setMat3("matrix3", sixteen.data()); }, first(9));
    add(
        "mat4", "matrix4", [](const ShaderProgram& p) { p.setMat4("matrix4", sixteen.data()); }, first(16));
}

void ShaderProgramTest::setsWhatItIsGiven()
{
    QFETCH(Setter, set);
    QFETCH(QByteArray, name);
    QFETCH(QVector<float>, values);

    ShaderProgram program(m_gl.get());
    program.build(vertexText, uniformsText, nullptr);
    program.use();
    program.setBool("flag", values == QVector<float>{0}); // uniforms start with zeros
    set(program);
    QCOMPARE(floatsOf(program, name, values.size()), values);
}

void ShaderProgramTest::setsIntegers()
{
    ShaderProgram program(m_gl.get());
    program.build(vertexText, uniformsText, nullptr);
    program.use();
    for (const qint32 value : {4, -7, 2147483647}) {
        program.setInt("number", value);
        QCOMPARE(integerOf(program, "number"), value);
    }
}

void ShaderProgramTest::setsOnlyTheNameTold()
{
    ShaderProgram program(m_gl.get());
    program.build(vertexText, uniformsText, nullptr);
    program.use();
    program.setVec2("two", 1.0f, 2.0f);
    program.setVec3("three", 3.0f, 4.0f, 5.0f);
    program.setFloat("one", 6.0f);
    QCOMPARE(floatsOf(program, "two", 2), (QVector<float>{1, 2}));
    QCOMPARE(floatsOf(program, "three", 3), (QVector<float>{3, 4, 5}));
    QCOMPARE(floatsOf(program, "four", 4), QVector<float>(4, 0.0f));
    QCOMPARE(floatsOf(program, "one", 1), QVector<float>{6});
}

void ShaderProgramTest::passesOverUnknownNames()
{
    ShaderProgram program(m_gl.get());
    program.build(vertexText, uniformsText, nullptr);
    program.use();
    const OutputCapture output;
    program.setBool("", true);
    program.setInt("nobody", 1);
    program.setFloat("nobody", 1.0f);
    program.setVec2("nobody", 1.0f, 2.0f);
    program.setVec4("fourth", sixteen.data());
    program.setMat4("Matrix4", sixteen.data());
    QCOMPARE(output.text(), QByteArray());
    QCOMPARE(integerOf(program, "number"), 0);
    QCOMPARE(floatsOf(program, "four", 4), QVector<float>(4, 0.0f));
    QCOMPARE(floatsOf(program, "matrix4", 16), QVector<float>(16, 0.0f));
}

void ShaderProgramTest::findsNamesAnewAfterAnotherBuild()
{
    ShaderProgram program(m_gl.get());
    program.build(vertexText, uniformsText, nullptr);
    program.use();
    program.setFloat("one", 1.0f);

    program.build(vertexText,
                  "#version 330 core\nuniform float zero; uniform float one; out vec4 color;\n"
                  "void main() { color = vec4(one, zero, 0.0, 1.0); }\n",
                  nullptr);
    program.use();
    program.setFloat("one", 2.0f);
    program.setFloat("zero", 3.0f);
    QCOMPARE(floatsOf(program, "one", 1), QVector<float>{2});
    QCOMPARE(floatsOf(program, "zero", 1), QVector<float>{3});
}

QTEST_MAIN(ShaderProgramTest)

#include "ShaderProgramTest.moc"
