#include "support/ElementBoard.h"

#include <QRegularExpression>
#include <QtTest>

#include <cmath>
#include <memory>

/// The program of the view.
class ViewShadersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void readsTheAttributesAtTheirPlaces();
    void knowsEachUniformThatIsSet_data();
    void knowsEachUniformThatIsSet();
    void readsTheFirstTextureUnit();

    void putsCornersThroughModelThenViewThenProjection();
    void mayTakeItsModelFromAUniform();
    void movesTheInnerRimOfARing_data();
    void movesTheInnerRimOfARing();
    void movesNoCornerWithoutADivisor_data();
    void movesNoCornerWithoutADivisor();

    void showsACellOfTheAtlas_data();
    void showsACellOfTheAtlas();
    void showsTheTextureAsItIsToASimpleModel();
    void showsColors_data();
    void showsColors();
    void blendsText_data();
    void blendsText();
    void showsNothingOfNothing();

private:
    void createTexture(int width, int height, const std::vector<Four>& texels);
    void useModelType(int type) { m_board->program.setInt("modelType", type); }

    std::unique_ptr<ElementBoard> m_board;
};

namespace
{

const QString vertexPath = QStringLiteral(":/shader/shader/shader.view.vs");
const QString fragmentPath = QStringLiteral(":/shader/shader/shader.view.fs");

/// Makes the unit square cover the board.
constexpr Matrix wholeBoard{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

constexpr Matrix skewedProjection{2, 0.5f, 0, 0, 0, 3, 0.25f, 0, 0, 0, -1, 0, 0.5f, -0.25f, 0.125f, 1};
constexpr Matrix turnedView{1, 2, 0, 0, -2, 1, 0, 0, 0, 0, 1, 0, 7, -3, 0, 1};
constexpr Matrix someModel{0.5f, 1, 0, 0, -1.5f, 0.75f, 0, 0, 0, 0, 1, 0, 4, 9, 2, 1};

/// What is wrong with the places of a mesh; empty if nothing is.
QString complaint(const std::vector<Four>& places, const std::vector<Matrix>& matrices, const Mesh& mesh)
{
    QString text;
    for (std::size_t i = 0; i < mesh.size(); ++i) {
        const Four expected = transformed(matrices, {mesh[i].x, mesh[i].y, 0, 1});
        if (!near(places[i], expected))
            text += QStringLiteral("%1 is not %2; ").arg(::text(places[i]), ::text(expected));
    }
    return text;
}

/// An atlas of 3 rows and 4 columns whose cells are 8 by 8 texels, each of a colour of its own.
namespace atlas
{

constexpr int rows = 3;
constexpr int columns = 4;
constexpr int cell = 8;
constexpr int width = columns * cell;
constexpr int height = rows * cell;

/// Of the texel at a place counted from the lower left.
Four colorAt(int x, int y)
{
    return {static_cast<float>(x), static_cast<float>(y), 0.25f, 0.5f};
}

std::vector<Four> texels()
{
    std::vector<Four> all;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            all.push_back(colorAt(x, y));
    }
    return all;
}

} // namespace atlas

} // namespace

void ViewShadersTest::init()
{
    m_board = std::make_unique<ElementBoard>(vertexPath, fragmentPath);
    QVERIFY(m_board->isLinked());
    m_board->program.setMat4("view", identity.data());
    m_board->program.setMat4("projection", identity.data());
    m_board->program.setFloat("texRowNum", 1.0f);
    m_board->program.setFloat("texColNum", 1.0f);
    m_board->clear({1, 1, 1, 1});
}

void ViewShadersTest::cleanup()
{
    QCOMPARE(m_board->takeErrors(), {});
    m_board.reset();
}

/// Puts a texture in use. Rows go from the lowest to the highest.
void ViewShadersTest::createTexture(int width, int height, const std::vector<Four>& texels)
{
    GLuint texture = 0;
    m_board->glGenTextures(1, &texture);
    m_board->glActiveTexture(GL_TEXTURE0);
    m_board->glBindTexture(GL_TEXTURE_2D, texture);
    m_board->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA32F, width, height, 0, GL_RGBA, GL_FLOAT, texels.data());
    m_board->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    m_board->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
}

void ViewShadersTest::readsTheAttributesAtTheirPlaces()
{
    const QStringList attributes{"0: aPos vec2",    "1: para vec2",  "2: nmodel0 vec4", "3: nmodel1 vec4",
                                 "5: nmodel3 vec4", "6: para1 vec4", "7: para2 vec4",   "8: para3 vec4"};
    // What makes no difference to the picture, the compiler may drop; the depth of flat meshes makes none.
    QCOMPARE(m_board->attributes({"4: nmodel2 vec4"}), attributes);
}

void ViewShadersTest::knowsEachUniformThatIsSet_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("declaration");

    for (const char* uniform : {"mat4 view", "mat4 projection", "mat4 model", "float texRowNum", "float texColNum",
                                "bool simplemodel", "float ringIdx"})
        QTest::newRow(uniform) << vertexPath << uniform;
    for (const char* uniform : {"sampler2D texture0", "int modelType", "vec3 simpleColor"})
        QTest::newRow(uniform) << fragmentPath << uniform;
}

void ViewShadersTest::knowsEachUniformThatIsSet()
{
    QFETCH(QString, path);
    QFETCH(QString, declaration);
    const QRegularExpression line(QStringLiteral("^uniform %1;").arg(declaration), QRegularExpression::MultilineOption);
    QVERIFY(line.match(QString::fromLatin1(ElementBoard::read(path))).hasMatch());

    const QByteArray name = declaration.section(' ', 1).toLatin1();
    if (name != "ringIdx") // set, but read by nobody
        QVERIFY(m_board->glGetUniformLocation(m_board->program.id, name) >= 0);
}

void ViewShadersTest::readsTheFirstTextureUnit()
{
    GLint unit = -1;
    const GLint location = m_board->glGetUniformLocation(m_board->program.id, "texture0");
    m_board->glGetUniformiv(m_board->program.id, location, &unit);
    QCOMPARE(unit, 0);
}

void ViewShadersTest::putsCornersThroughModelThenViewThenProjection()
{
    m_board->program.setMat4("projection", skewedProjection.data());
    m_board->program.setMat4("view", turnedView.data());
    m_board->program.setMat4("model", wholeBoard.data());
    Element element;
    element.model = someModel;
    const QString wrong =
        complaint(m_board->positions(element, unitSquare), {skewedProjection, turnedView, someModel}, unitSquare);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

/// Such a model is no ring either.
void ViewShadersTest::mayTakeItsModelFromAUniform()
{
    m_board->program.setMat4("projection", skewedProjection.data());
    m_board->program.setMat4("view", turnedView.data());
    m_board->program.setMat4("model", someModel.data());
    m_board->program.setBool("simplemodel", true);
    Element element;
    element.model = wholeBoard;
    element.para1 = {0, 0, 0, 2};
    const QString wrong =
        complaint(m_board->positions(element, unitSquare), {skewedProjection, turnedView, someModel}, unitSquare);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void ViewShadersTest::movesTheInnerRimOfARing_data()
{
    QTest::addColumn<float>("size");
    QTest::addColumn<float>("ringWidth");

    QTest::newRow("thin") << 256.0f << 4.0f;
    QTest::newRow("thick") << 256.0f << 100.0f;
    QTest::newRow("filled") << 256.0f << 128.0f;
    QTest::newRow("small") << 3.0f << 0.25f;
    QTest::newRow("wider than it is") << 10.0f << 8.0f; // comes out on the other side
}

void ViewShadersTest::movesTheInnerRimOfARing()
{
    QFETCH(float, size);
    QFETCH(float, ringWidth);
    Element element;
    element.model = {size, 0, 0, 0, 0, size, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    element.para1 = {0.1f, 0.2f, 0.3f, size / (2 * ringWidth)};

    for (const double angle : {0.0, 1.0, M_PI / 2, M_PI, 4.0}) {
        const double x = std::cos(angle);
        const double y = std::sin(angle);
        const auto rimX = static_cast<float>(x / 2);
        const auto rimY = static_cast<float>(y / 2);
        const Mesh mesh{{rimX, rimY, 0, 0}, {rimX, rimY, -rimX, -rimY}, {0, 0, 0, 0}};
        const std::vector<Four> places = m_board->positions(element, mesh);

        const double outer = double{size} / 2;
        const double inner = outer - double{ringWidth};
        const Four onOuter{static_cast<float>(x * outer), static_cast<float>(y * outer), 0, 1};
        const Four onInner{static_cast<float>(x * inner), static_cast<float>(y * inner), 0, 1};
        QVERIFY2(near(places[0], onOuter, size * 1e-6f), qPrintable(text(places[0])));
        QVERIFY2(near(places[1], onInner, size * 1e-6f), qPrintable(text(places[1])));
    }
}

void ViewShadersTest::movesNoCornerWithoutADivisor_data()
{
    QTest::addColumn<float>("divisor");
    for (const float divisor : {0.0f, -0.0f, -1.0f})
        QTest::addRow("%g", double(divisor)) << divisor;
}

void ViewShadersTest::movesNoCornerWithoutADivisor()
{
    QFETCH(float, divisor);
    Element element;
    element.para1 = {1, 2, 3, divisor};
    const Mesh mesh{{0.5f, 0.25f, -0.5f, -0.25f}, {1, 2, 3, -3}, {-1, 0.5f, 1000, 0}};
    const QString wrong = complaint(m_board->positions(element, mesh), {}, mesh);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void ViewShadersTest::showsACellOfTheAtlas_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("cropped");

    for (int row = 0; row < atlas::rows; ++row) {
        for (int column = 0; column < atlas::columns; ++column) {
            for (const int cropped : {0, 2, 4})
                QTest::addRow("row %d, column %d, %d cropped", row, column, cropped) << row << column << cropped;
        }
    }
}

/// The board shows one cell, but for the texels cropped from its right side, stretched to the whole.
void ViewShadersTest::showsACellOfTheAtlas()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, cropped);
    createTexture(atlas::width, atlas::height, atlas::texels());
    m_board->program.setFloat("texRowNum", atlas::rows);
    m_board->program.setFloat("texColNum", atlas::columns);
    useModelType(0);

    Element element;
    element.model = wholeBoard;
    const float crop = static_cast<float>(cropped) / static_cast<float>(atlas::width);
    element.para1 = {static_cast<float>(row), static_cast<float>(column), crop, 0};
    m_board->draw(element);
    for (int y = 0; y < ElementBoard::edge; ++y) {
        for (int x = 0; x < ElementBoard::edge; ++x) {
            // Row 0 is the uppermost. Pixels are sampled in their middles.
            const int texelX = column * atlas::cell + (2 * x + 1) * (atlas::cell - cropped) / (2 * ElementBoard::edge);
            const int texelY = (atlas::rows - 1 - row) * atlas::cell + y * atlas::cell / ElementBoard::edge;
            QCOMPARE(text(m_board->pixel(x, y)), text(atlas::colorAt(texelX, texelY)));
        }
    }
}

void ViewShadersTest::showsTheTextureAsItIsToASimpleModel()
{
    createTexture(2, 1, {{1, 0, 0, 1}, {0, 1, 0, 1}});
    useModelType(0);
    m_board->program.setBool("simplemodel", true);
    m_board->program.setMat4("model", wholeBoard.data());
    m_board->program.setFloat("texColNum", 5.0f);
    Element element;
    element.para1 = {3, 2, 0.5f, 0};
    m_board->draw(element);
    QCOMPARE(text(m_board->pixel(7, 8)), text({1, 0, 0, 1}));
    QCOMPARE(text(m_board->pixel(8, 8)), text({0, 1, 0, 1}));
}

void ViewShadersTest::showsColors_data()
{
    QTest::addColumn<int>("modelType");
    QTest::addColumn<float>("rim");
    QTest::addColumn<QString>("shown");

    for (const float rim : {0.0f, 0.5f, 1.0f}) {
        QTest::addRow("shape, %g to the rim", double(rim)) << 1 << rim << text({0.25f, 0.5f, 0.75f, 1});
        QTest::addRow("circle, %g to the rim", double(rim)) << 2 << rim << text({0.25f, 0.5f, 0.75f, 0.7f});
        QTest::addRow("frame, %g to the rim", double(rim)) << 3 << rim << text({0.125f, 0.625f, 0.875f, 1});
    }
}

void ViewShadersTest::showsColors()
{
    QFETCH(int, modelType);
    QFETCH(float, rim);
    useModelType(modelType);
    m_board->program.setVec3("simpleColor", 0.125f, 0.625f, 0.875f);
    Element element;
    element.para1 = {0.25f, 0.5f, 0.75f, 0};
    element.para2 = {0.1f, 0.2f, 0.3f, 0.4f};
    element.para3 = {0.6f, 0.7f, 0.8f, 0.9f};
    const Mesh mesh{{-1, -1, rim, 0}, {3, -1, rim, 0}, {-1, 3, rim, 0}};
    m_board->draw(element, mesh);
    QTEST(text(m_board->middle()), "shown");
}

void ViewShadersTest::blendsText_data()
{
    QTest::addColumn<float>("ink");
    QTest::addColumn<float>("textAlpha");
    QTest::addColumn<float>("backgroundAlpha");

    for (const float ink : {0.0f, 0.5f, 1.0f}) {
        for (const float textAlpha : {0.0f, 0.5f, 1.0f}) {
            for (const float backgroundAlpha : {0.0f, 0.5f, 1.0f}) {
                QTest::addRow("ink %g, text %g, background %g", double(ink), double(textAlpha), double(backgroundAlpha))
                    << ink << textAlpha << backgroundAlpha;
            }
        }
    }
}

void ViewShadersTest::blendsText()
{
    QFETCH(float, ink);
    QFETCH(float, textAlpha);
    QFETCH(float, backgroundAlpha);
    const Four color{0.25f, 0.5f, 1.0f, textAlpha};
    const Four background{0.75f, 0.125f, 0.0f, backgroundAlpha};
    createTexture(1, 1, {{ink, 0.3f, 0.6f, 0.9f}}); // only red counts
    useModelType(4);
    Element element;
    element.model = wholeBoard;
    element.para2 = color;
    element.para3 = background;
    m_board->draw(element);

    const double cover = double{ink} * double{textAlpha};
    const double alpha = cover + double{backgroundAlpha} - cover * double{backgroundAlpha};
    Four expected{0, 0, 0, static_cast<float>(alpha)};
    if (alpha == 0.0) { // of no colour; that it does not show is held elsewhere
        QCOMPARE(m_board->middle()[3], 0.0f);
        return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const double mixed = double{background[i]} + (double{color[i]} - double{background[i]}) * cover;
        expected[i] = static_cast<float>(mixed / alpha);
    }
    const Four shown = m_board->middle();
    QVERIFY2(near(shown, expected), qPrintable(text(shown) + " is not " + text(expected)));
}

void ViewShadersTest::showsNothingOfNothing()
{
    createTexture(1, 1, {{0, 0, 0, 1}});
    useModelType(4);
    m_board->glEnable(GL_BLEND);
    m_board->glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    const Four under{0.25f, 0.5f, 0.75f, 1};
    m_board->clear(under);
    Element element;
    element.model = wholeBoard;
    element.para2 = {1, 0, 0, 1};
    for (const Four& background : {Four{0, 0, 0, 0}, Four{1, 1, 1, 0}}) {
        element.para3 = background;
        m_board->draw(element);
        QCOMPARE(text(m_board->middle()), text(under));
    }
}

QTEST_MAIN(ViewShadersTest)

#include "ViewShadersTest.moc"
