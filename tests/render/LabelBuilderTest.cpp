#include "atlas/ImageManager.h"
#include "render/InstanceBuilders.h"
#include "support/GlyphText.h"
#include "support/MadeScene.h"
#include "support/RecordText.h"
#include "support/SceneLists.h"
#include "support/SceneOf.h"

#include <NELK/GraphScene.h>

#include <QColor>
#include <QtTest>

using namespace NELK;

class LabelBuilderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void glyphIsAQuadHalfAPixelWiderThanItsAdvance();
    void cropIsThePartOfTheAtlasThatACellLeavesFree_data();
    void cropIsThePartOfTheAtlasThatACellLeavesFree();
    void newColumnCountChangesTheCropAlone();
    void penIsCutAfterEachCharacter_data();
    void penIsCutAfterEachCharacter();

    void nodeRowsHangBelowTheBody_data();
    void nodeRowsHangBelowTheBody();
    void setNumbersStandBelowTheFirstText_data();
    void setNumbersStandBelowTheFirstText();
    void setNumbersHaveTheColorsOfTheScene();
    void boxesStandSideBySide();
    void edgeRowsAreCentredOnTheEdge_data();
    void edgeRowsAreCentredOnTheEdge();

    void textGoesToTheListOfItsElement_data();
    void textGoesToTheListOfItsElement();
    void elementWithoutRowsHasNoGlyphs();

    void nodeTextHasTheCellsOfTheAtlas();
    void edgeTextHasTheCellsOfTheAtlas();
    void newCharacterHasItsCellAtOnce();
};

namespace
{

using Numbers = QList<int>;

constexpr Four purple{0.5f, 0.125f, 0.625f, 0.75f};
constexpr Four cream{1.0f, 0.9375f, 0.875f, 0.25f};

/// Rows of one character, but the second one of three, which is blank.
QList<LabelLine> rowsOfOne(int howMany)
{
    QList<LabelLine> rows;
    for (int i = 0; i < howMany; ++i)
        rows.append(madeLine(howMany == 3 && i == 1 ? Numbers{} : Numbers{76}));
    return rows;
}

/// What should come of `rowsOfOne` around x 0, which is where the pen of such a row starts.
QStringList recordsOfOne(const Numbers& rowPositions, const GlyphLook& look)
{
    QStringList records;
    for (int i = 0; i < rowPositions.size(); ++i) {
        if (rowPositions.size() != 3 || i != 1)
            records += rowRecords(madeLine({76}).cells, 0, rowPositions.at(i), look);
    }
    return records;
}

} // namespace

void LabelBuilderTest::initTestCase()
{
    ImageManager* words = ImageManager::instance(1);
    words->startInitial();
    QCoreApplication::sendPostedEvents(words, QEvent::MetaCall);
    QVERIFY(widthOf(QStringLiteral("A")) > 0);
}

void LabelBuilderTest::glyphIsAQuadHalfAPixelWiderThanItsAdvance()
{
    OneNode one;
    one.node.x = 300.0f;
    one.node.y = 400.0f;
    one.node.labelSize = 2.0f;
    one.node.labelColor = purple;
    one.node.labelBackColor = cream;
    setLabel(one.scene, one.node, {madeLine({40})});
    buildLabels(one.scene, 1);
    // Half the advance less half a cell to the left: 300 + 18 * 2. From there back by the free space: 18 * 2.
    const float crop = 36.0f / 76.0f;
    QCOMPARE(recordsOf(one.scene.textItems),
             QStringList{placedRecord(300.0f, 196.0f, 81.0f, 152.0f, {5.0f, 20.0f, crop, 0.0f}, purple, cream)});
}

void LabelBuilderTest::cropIsThePartOfTheAtlasThatACellLeavesFree_data()
{
    QTest::addColumn<int>("advance");
    QTest::addColumn<int>("textCols");
    QTest::addColumn<float>("crop");
    QTest::newRow("one column") << 38 << 1 << 0.5f;
    QTest::newRow("eight columns") << 57 << 8 << 0.03125f;
    QTest::newRow("as many as at first") << 19 << 60 << 0.0125f;
    QTest::newRow("one more") << 15 << 61 << 61.0f / 76.0f / 61.0f;
    QTest::newRow("nothing free") << 76 << 60 << 0.0f;
    QTest::newRow("wider than a cell") << 95 << 8 << -0.03125f;
    QTest::newRow("no advance") << 0 << 64 << 0.015625f;
}

void LabelBuilderTest::cropIsThePartOfTheAtlasThatACellLeavesFree()
{
    QFETCH(int, advance);
    QFETCH(int, textCols);
    OneNode oneNode;
    oneNode.node.labelSize = 1.3f; // does not count
    setLabel(oneNode.scene, oneNode.node, {madeLine({advance})});
    OneEdge oneEdge;
    setLabel(oneEdge.scene, oneEdge.edge, {madeLine({advance})});
    for (Scene* scene : {&oneNode.scene, &oneEdge.scene})
        buildLabels(*scene, textCols);
    for (const InstanceList* glyphs : {&oneNode.scene.textItems, &oneEdge.scene.edgeTextItems}) {
        QCOMPARE(glyphs->count, 1);
        QTEST(glyphs->records.front().para1[2], "crop");
    }
}

void LabelBuilderTest::newColumnCountChangesTheCropAlone()
{
    OneNode one;
    const LabelLine row = madeLine({20, 31});
    setLabel(one.scene, one.node, {row});
    GlyphLook look;
    for (const int textCols : {60, 61}) {
        look.textCols = textCols;
        buildLabels(one.scene, textCols);
        // 38 to the right of the anchor, less half of 51.
        QCOMPARE(recordsOf(one.scene.textItems), rowRecords(row.cells, 13, -166, look));
    }
}

void LabelBuilderTest::penIsCutAfterEachCharacter_data()
{
    QTest::addColumn<float>("anchor");
    QTest::addColumn<float>("size");
    QTest::addColumn<Numbers>("advances");
    QTest::addColumn<Numbers>("pens");
    const Numbers alike{33, 33, 33, 33}; // which start 28 to the left of the anchor
    QTest::newRow("size 1") << 0.0f << 1.0f << alike << Numbers{-28, 5, 38, 71};
    QTest::newRow("between two units") << 0.75f << 1.0f << alike << Numbers{-27, 6, 39, 72};
    QTest::newRow("between two units, negative") << -0.75f << 1.0f << alike << Numbers{-28, 5, 38, 71};
    QTest::newRow("size 1.3: steps of 42.9 from -36.4") << 0.0f << 1.3f << alike << Numbers{-36, 6, 48, 90};
    QTest::newRow("size 1.3: from -136.9") << -100.5f << 1.3f << alike << Numbers{-136, -93, -50, -7};
    QTest::newRow("size 1.3: from -0.4") << 36.0f << 1.3f << alike << Numbers{0, 42, 84, 126};
    QTest::newRow("narrow row") << 0.5f << 1.0f << Numbers{10} << Numbers{33};
    QTest::newRow("narrow row, size 1.5") << -60.25f << 1.5f << Numbers{9, 2} << Numbers{-10, 3};
    QTest::newRow("odd width") << 0.0f << 1.0f << Numbers{33, 44} << Numbers{0, 33};
    QTest::newRow("without advance") << 0.0f << 1.3f << Numbers{0, 0} << Numbers{49, 49};
    QTest::newRow("products in single precision: 65") << -64.0f << 1.3f << Numbers{50, 20} << Numbers{-60, 5};
    QTest::newRow("sums in single precision")
        << 2.0e7f << 1.0f << alike << Numbers{19999972, 20000004, 20000036, 20000068};
}

void LabelBuilderTest::penIsCutAfterEachCharacter()
{
    QFETCH(float, anchor);
    QFETCH(float, size);
    QFETCH(Numbers, advances);
    QFETCH(Numbers, pens);
    const LabelLine row = madeLine(advances);
    OneNode oneNode;
    oneNode.node.x = anchor;
    oneNode.node.labelSize = size;
    oneNode.node.height = 0;
    oneNode.node.y = 38.0f * size;
    setLabel(oneNode.scene, oneNode.node, {row});
    OneEdge oneEdge;
    oneEdge.edge.centerPos.setX(anchor);
    oneEdge.edge.labelSize = size;
    setLabel(oneEdge.scene, oneEdge.edge, {row});

    GlyphLook look;
    look.size = size;
    QStringList expected;
    for (int i = 0; i < pens.size(); ++i)
        expected += glyphRecord(row.cells.at(i), pens.at(i), 0, look);
    buildLabels(oneNode.scene, 60);
    QCOMPARE(recordsOf(oneNode.scene.textItems), expected);
    buildLabels(oneEdge.scene, 60);
    QCOMPARE(recordsOf(oneEdge.scene.edgeTextItems), expected);
}

void LabelBuilderTest::nodeRowsHangBelowTheBody_data()
{
    QTest::addColumn<float>("y");
    QTest::addColumn<float>("size");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("diameter"); // 0 for no circle
    QTest::addColumn<Numbers>("rows");
    QTest::newRow("one row") << 0.0f << 1.0f << 256 << 0 << Numbers{-166};
    QTest::newRow("three rows") << 0.0f << 1.0f << 256 << 0 << Numbers{-166, -242, -318};
    QTest::newRow("odd height") << 0.0f << 1.0f << 255 << 0 << Numbers{-165, -241};
    QTest::newRow("51.1, -47.7, -146.5") << 100.5f << 1.3f << 255 << 0 << Numbers{-76, -174, -273};
    QTest::newRow("-149.65, -248.45, -347.25") << -100.25f << 1.3f << 256 << 0 << Numbers{-277, -376, -475};
    QTest::newRow("circle") << 10.75f << 1.0f << 256 << 362 << Numbers{-208, -284, -360};
    QTest::newRow("circle, odd") << 10.75f << 1.0f << 256 << 365 << Numbers{-209, -285};
    QTest::newRow("cut before the body is taken off: 0.6") << 50.0f << 1.3f << 3 << 0 << Numbers{-1};
    QTest::newRow("large text") << 0.0f << 4.0f << 256 << 0 << Numbers{-280, -584};
}

void LabelBuilderTest::nodeRowsHangBelowTheBody()
{
    QFETCH(float, y);
    QFETCH(float, size);
    QFETCH(int, height);
    QFETCH(int, diameter);
    QFETCH(Numbers, rows);
    OneNode one;
    one.node.y = y;
    one.node.labelSize = size;
    one.node.width = 100; // does not count
    one.node.height = height;
    if (diameter > 0)
        showCircle(one.scene, one.node, diameter);
    setLabel(one.scene, one.node, rowsOfOne(rows.size()));
    GlyphLook look;
    look.size = size;
    buildLabels(one.scene, 60);
    QCOMPARE(recordsOf(one.scene.textItems), recordsOfOne(rows, look));
}

void LabelBuilderTest::setNumbersStandBelowTheFirstText_data()
{
    QTest::addColumn<bool>("textShow");
    QTest::addColumn<int>("rowsOfFirstText");
    QTest::addColumn<float>("y");
    QTest::addColumn<float>("size");
    QTest::addColumn<int>("diameter"); // 0 for no circle
    QTest::addColumn<int>("row");
    QTest::newRow("no text") << true << 0 << 0.0f << 1.0f << 0 << -165;
    QTest::newRow("one row") << true << 1 << 0.0f << 1.0f << 0 << -241;
    QTest::newRow("three rows") << true << 3 << 0.0f << 1.0f << 0 << -393;
    QTest::newRow("hidden text") << false << 3 << 0.0f << 1.0f << 0 << -165;
    QTest::newRow("circle") << true << 1 << 0.0f << 1.0f << 363 << -295;
    QTest::newRow("circle, hidden text") << false << 1 << 0.0f << 1.0f << 363 << -219;
    QTest::newRow("above the origin: 451.1") << false << 2 << 500.5f << 1.3f << 0 << 324;
    QTest::newRow("above the origin: 126.4") << true << 2 << 500.5f << 1.3f << 0 << 126;
    QTest::newRow("below the origin: -149.65") << false << 2 << -100.25f << 1.3f << 0 << -276;
    QTest::newRow("cut twice: -149.65, -473.6") << true << 2 << -100.25f << 1.3f << 0 << -473;
}

void LabelBuilderTest::setNumbersStandBelowTheFirstText()
{
    QFETCH(bool, textShow);
    QFETCH(int, rowsOfFirstText);
    QFETCH(float, y);
    QFETCH(float, size);
    QFETCH(int, diameter);
    QFETCH(int, row);
    OneNode one;
    one.scene.nodeTextShow = textShow;
    one.node.y = y;
    one.node.labelSize = size;
    one.node.width = 100; // does not count
    one.node.height = 255;
    one.node.labelLineCount = rowsOfFirstText;
    if (diameter > 0)
        showCircle(one.scene, one.node, diameter);
    setNumbers(one.scene, one.node, {madeLine({76})});
    GlyphLook look;
    look.size = size;
    look.backColor = {1.0f, 1.0f, 0.0f, 1.0f};
    buildLabels(one.scene, 60);
    QCOMPARE(recordsOf(one.scene.textItems), recordsOfOne({row}, look));
}

void LabelBuilderTest::setNumbersHaveTheColorsOfTheScene()
{
    OneNode one;
    one.scene.setNumColor = purple;
    one.scene.setNumBackColor = cream;
    const LabelLine box = madeLine({76, 30, 46});
    setNumbers(one.scene, one.node, {box});
    GlyphLook look;
    look.color = purple;
    look.backColor = cream;
    buildLabels(one.scene, 60);
    QCOMPARE(recordsOf(one.scene.textItems), rowRecords(box.cells, -38, -166, look));
}

void LabelBuilderTest::boxesStandSideBySide()
{
    OneNode one;
    one.node.x = 10.5f;
    one.node.labelSize = 1.5f;
    const LabelLine text = madeLine({76});
    LabelLine left = madeLine({17, 33, 17});
    LabelLine right = madeLine({20, 21});
    left.startOffset = 100;
    right.startOffset = -43;
    setLabel(one.scene, one.node, {text});
    setNumbers(one.scene, one.node, {left, right});
    GlyphLook look;
    look.size = 1.5f;
    QStringList expected = rowRecords(text.cells, 10, -185, look);
    look.backColor = {1.0f, 1.0f, 0.0f, 1.0f};
    expected += rowRecords(left.cells, -139, -299, look);
    expected += rowRecords(right.cells, 75, -299, look);
    buildLabels(one.scene, 60);
    QCOMPARE(recordsOf(one.scene.textItems), expected);
}

void LabelBuilderTest::edgeRowsAreCentredOnTheEdge_data()
{
    QTest::addColumn<float>("y");
    QTest::addColumn<float>("size");
    QTest::addColumn<Numbers>("rows");
    QTest::newRow("one row") << 0.0f << 1.0f << Numbers{0};
    QTest::newRow("one row, cut") << 10.7f << 1.0f << Numbers{10};
    QTest::newRow("one row, cut, negative") << -10.7f << 1.3f << Numbers{-10};
    QTest::newRow("two rows") << 0.0f << 1.0f << Numbers{38, -38};
    QTest::newRow("49.65, -49.15") << 0.25f << 1.3f << Numbers{49, -49};
    QTest::newRow("three rows") << 0.0f << 1.0f << Numbers{76, 0, -76};
    QTest::newRow("-1.7, -100.5, -199.3") << -100.5f << 1.3f << Numbers{-1, -100, -199};
    QTest::newRow("four rows") << 5.0f << 2.0f << Numbers{233, 81, -71, -223};
}

void LabelBuilderTest::edgeRowsAreCentredOnTheEdge()
{
    QFETCH(float, y);
    QFETCH(float, size);
    QFETCH(Numbers, rows);
    OneEdge one;
    one.edge.centerPos.setY(y);
    one.edge.labelSize = size;
    one.edge.labelColor = purple;
    one.edge.labelBackColor = cream;
    setLabel(one.scene, one.edge, rowsOfOne(rows.size()));
    const GlyphLook look{size, purple, cream, 60};
    buildLabels(one.scene, 60);
    QCOMPARE(recordsOf(one.scene.edgeTextItems), recordsOfOne(rows, look));
}

void LabelBuilderTest::textGoesToTheListOfItsElement_data()
{
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("nodeTextShow");
    QTest::addColumn<bool>("edgeTextShow");
    QTest::addColumn<bool>("show");
    QTest::addColumn<Numbers>("counts"); // of the glyphs of nodes, of selected nodes, and of edges
    QTest::newRow("not selected") << false << true << true << true << Numbers{6, 0, 2};
    QTest::newRow("selected") << true << true << true << true << Numbers{0, 6, 2};
    QTest::newRow("numbers alone") << false << false << true << true << Numbers{3, 0, 2};
    QTest::newRow("numbers alone, selected") << true << false << true << true << Numbers{0, 3, 2};
    QTest::newRow("no text of edges") << false << true << false << true << Numbers{6, 0, 0};
    QTest::newRow("numbers are left") << true << false << false << true << Numbers{0, 3, 0};
    QTest::newRow("hidden") << false << true << true << false << Numbers{0, 0, 0};
    QTest::newRow("hidden, selected") << true << true << true << false << Numbers{0, 0, 0};
}

void LabelBuilderTest::textGoesToTheListOfItsElement()
{
    QFETCH(bool, selected);
    QFETCH(bool, show);
    QFETCH(bool, nodeTextShow);
    QFETCH(bool, edgeTextShow);
    OneEdge one;
    dressUp(one.scene, one.start); // three glyphs of text and three of numbers
    dressUp(one.scene, one.edge);
    if (selected) {
        select(one.scene, one.start);
        select(one.scene, one.edge);
    }
    one.start.show = one.edge.show = show;
    one.scene.nodeTextShow = nodeTextShow;
    one.scene.edgeTextShow = edgeTextShow;
    buildLabels(one.scene, 60);
    QTEST((Numbers{one.scene.textItems.count, one.scene.selTextItems.count, one.scene.edgeTextItems.count}), "counts");
}

void LabelBuilderTest::elementWithoutRowsHasNoGlyphs()
{
    OneEdge one;
    setLabel(one.scene, one.start, {});
    setLabel(one.scene, one.edge, {});
    setNumbers(one.scene, one.end, {});
    buildLabels(one.scene, 60);
    QCOMPARE(filledLists(one.scene), QStringList());
}

void LabelBuilderTest::nodeTextHasTheCellsOfTheAtlas()
{
    const QString text = u8"Ag 图";
    const QString text2 = u8"画!";
    const QStringList boxes{"  7  ", "  42  "};
    GraphScene graph;
    GraphNode node = graph.createNode(1);
    node.setPos(33, -101);
    node.setLabelSize(1.25f);
    node.setLabelColor(QColor(255, 0, 51), QColor(0, 51, 255, 102));
    node.setSetNum({"7", "42"});
    node.setLabel(text, text2);
    Scene& scene = sceneOf(graph);

    GlyphLook look{1.25f, {1.0f, 0.0f, 0.2f, 1.0f}, {0.0f, 0.2f, 1.0f, 0.4f}, 60};
    QStringList expected = rowRecords(cellsOf(text), firstPen(text, 33.0f, 1.25f), -276, look);
    expected += rowRecords(cellsOf(text2), firstPen(text2, 33.0f, 1.25f), -466, look);
    look.color = {0.0f, 0.0f, 0.0f, 1.0f};
    look.backColor = {1.0f, 1.0f, 0.0f, 1.0f};
    int offset = (widthOf(boxes.at(0)) + 76 + widthOf(boxes.at(1))) / 2 - 38;
    for (const QString& box : boxes) {
        const auto pen = static_cast<int>(33.0f - static_cast<float>(offset) * 1.25f);
        expected += rowRecords(cellsOf(box), pen, -371, look);
        offset -= widthOf(box) + 76;
    }
    buildLabels(scene, 60);
    QCOMPARE(recordsOf(scene.textItems), expected);
}

void LabelBuilderTest::edgeTextHasTheCellsOfTheAtlas()
{
    const QString first = u8"Aj, 图";
    const QString second = u8"iiiWWW";
    GraphScene graph;
    GraphEdge edge = graph.createEdge(11, graph.createNode(1), graph.createNode(2));
    edge.setLabelSize(1.25f);
    edge.setLabelColor(QColor(255, 0, 51), QColor(0, 51, 255, 102));
    edge.setLabel(first + QStringLiteral("\n") + second);
    Scene& scene = sceneOf(graph);
    scene.getEdge(11)->centerPos = {-50.5f, 20.25f};

    const GlyphLook look{1.25f, {1.0f, 0.0f, 0.2f, 1.0f}, {0.0f, 0.2f, 1.0f, 0.4f}, 60};
    const QStringList expected = rowRecords(cellsOf(first), firstPen(first, -50.5f, 1.25f), 67, look) +
                                 rowRecords(cellsOf(second), firstPen(second, -50.5f, 1.25f), -27, look);
    buildLabels(scene, 60);
    QCOMPARE(recordsOf(scene.edgeTextItems), expected);
}

void LabelBuilderTest::newCharacterHasItsCellAtOnce()
{
    const QString text = u8"\u0416";
    GraphScene graph;
    graph.createNode(1).setLabel(text, QString());
    Scene& scene = sceneOf(graph);
    buildLabels(scene, 60);
    const QStringList drawn = recordsOf(scene.textItems);

    ImageManager* words = ImageManager::instance(1);
    const SImageCell reserved = words->requestWord(text.at(0).unicode());
    QVERIFY(!reserved.painted && QPoint(reserved.texColIdx, reserved.texRowIdx) != QPoint(0, 0));
    QCOMPARE(drawn, rowRecords({reserved}, firstPen(text, 0.0f, 1.0f), -166, GlyphLook()));
    QVERIFY(QMetaObject::invokeMethod(words, "slotUpdateTimerEvent", Qt::DirectConnection));
    words->waitForRun();
    QCoreApplication::sendPostedEvents(words, QEvent::MetaCall);
    QVERIFY(words->requestWord(text.at(0).unicode()).painted);
    buildLabels(scene, 60);
    QCOMPARE(recordsOf(scene.textItems), drawn);
}

QTEST_GUILESS_MAIN(LabelBuilderTest)

#include "LabelBuilderTest.moc"
