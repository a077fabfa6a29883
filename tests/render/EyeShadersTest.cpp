#include "support/ElementBoard.h"

#include <QtTest>

#include <memory>

/// The program of the overview: every element is a flat shape in one colour.
class EyeShadersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void readsTheAttributesAtTheirPlaces();
    void putsCornersThroughModelThenViewThenProjection();
    void shiftsNoCorner();
    void drawsInTheSecondParameter_data();
    void drawsInTheSecondParameter();
    void drawsOnlyWhereTheElementIs();

private:
    std::unique_ptr<ElementBoard> m_board;
};

void EyeShadersTest::init()
{
    m_board = std::make_unique<ElementBoard>(QStringLiteral(":/shader/shader/shader.eye.vs"),
                                             QStringLiteral(":/shader/shader/shader.eye.fs"));
    QVERIFY(m_board->isLinked());
    m_board->program.setMat4("view", identity.data());
    m_board->program.setMat4("projection", identity.data());
}

void EyeShadersTest::cleanup()
{
    QCOMPARE(m_board->takeErrors(), {});
    m_board.reset();
}

void EyeShadersTest::readsTheAttributesAtTheirPlaces()
{
    const QStringList attributes{"0: aPos vec2", "2: nmodel0 vec4", "3: nmodel1 vec4", "5: nmodel3 vec4",
                                 "7: para2 vec4"};
    // What makes no difference to the picture, the compiler may drop; the depth of flat meshes makes none.
    QCOMPARE(m_board->attributes({"1: aTexCoord vec2", "4: nmodel2 vec4", "6: para1 vec4"}), attributes);
}

void EyeShadersTest::putsCornersThroughModelThenViewThenProjection()
{
    const Matrix projection{2, 0.5f, 0, 0, 0, 3, 0.25f, 0, 0, 0, -1, 0, 0.5f, -0.25f, 0.125f, 1};
    const Matrix view{1, 2, 0, 0, -2, 1, 0, 0, 0, 0, 1, 0, 7, -3, 0, 1};
    Element element;
    element.model = {0.5f, 1, 0, 0, -1.5f, 0.75f, 0, 0, 0, 0, 1, 0, 4, 9, 2, 1};
    m_board->program.setMat4("projection", projection.data());
    m_board->program.setMat4("view", view.data());

    const std::vector<Four> places = m_board->positions(element, unitSquare);
    for (std::size_t i = 0; i < unitSquare.size(); ++i) {
        const Corner& corner = unitSquare[i];
        const Four expected = transformed({projection, view, element.model}, {corner.x, corner.y, 0, 1});
        QVERIFY2(near(places[i], expected), qPrintable(text(places[i]) + " is not " + text(expected)));
    }
}

/// The first parameter is no ring divisor here.
void EyeShadersTest::shiftsNoCorner()
{
    Element element;
    element.para1 = {1, 2, 3, 4};
    const Mesh mesh{{0.5f, 0.25f, -0.5f, -0.25f}, {1, 2, 3, 4}, {-1, 0.5f, 1, -0.5f}};
    const std::vector<Four> places = m_board->positions(element, mesh);
    for (std::size_t i = 0; i < mesh.size(); ++i)
        QCOMPARE(text(places[i]), text({mesh[i].x, mesh[i].y, 0, 1}));
}

void EyeShadersTest::drawsInTheSecondParameter_data()
{
    QTest::addColumn<float>("alpha");
    for (const float alpha : {1.0f, 0.5f, 0.0f})
        QTest::addRow("alpha %g", double(alpha)) << alpha;
}

void EyeShadersTest::drawsInTheSecondParameter()
{
    QFETCH(float, alpha);
    Element element;
    element.model = {4, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    element.para1 = {0.9f, 0.8f, 0.7f, 0.6f};
    element.para2 = {0.25f, 0.5f, 0.75f, alpha};
    element.para3 = {0.6f, 0.7f, 0.8f, 0.9f};
    m_board->clear({1, 1, 1, 1});
    m_board->draw(element);
    QCOMPARE(text(m_board->middle()), text(element.para2));
}

void EyeShadersTest::drawsOnlyWhereTheElementIs()
{
    // The right upper quarter of the board.
    Element element;
    element.model[12] = 0.5f;
    element.model[13] = 0.5f;
    element.para2 = {0, 0, 1, 1};
    const Four white{1, 1, 1, 1};
    m_board->clear(white);
    m_board->draw(element);
    for (int y = 0; y < ElementBoard::edge; ++y) {
        for (int x = 0; x < ElementBoard::edge; ++x) {
            const bool inside = x >= ElementBoard::edge / 2 && y >= ElementBoard::edge / 2;
            QCOMPARE(text(m_board->pixel(x, y)), text(inside ? element.para2 : white));
        }
    }
}

QTEST_MAIN(EyeShadersTest)

#include "EyeShadersTest.moc"
