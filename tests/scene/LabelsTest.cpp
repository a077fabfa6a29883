#include "atlas/ImageManager.h"
#include "scene/EdgeData.h"
#include "scene/NodeData.h"
#include "support/LabelText.h"
#include "support/ReferenceFace.h"
#include "support/SceneOf.h"

#include <NELK/GraphScene.h>

#include <QColor>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace NELK;

class LabelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void nodeLabelMakesRows_data();
    void nodeLabelMakesRows();
    void edgeLabelMakesRows_data();
    void edgeLabelMakesRows();
    void rowHasTheCellsOfItsCharacters();
    void surrogatePairHasTwoCells();
    void widthIsThatOfFreeType();
    void rowsAreCentredEachByItself_data();
    void rowsAreCentredEachByItself();
    void emptyRowIsBlankOnANodeAndAbsentOnAnEdge();

    void setNumbersStandSideBySide_data();
    void setNumbersStandSideBySide();
    void oneSetNumberHasTwoSpacesAtEachSide();
    void lineFeedDoesNotEndASetNumber();
    void newSetNumbersReplaceTheOld();

    void blankRowIsKeptByTheLabelAlone();
    void textBlockIsMeasured_data();
    void textBlockIsMeasured();
    void settersMeasure();
    void labelSizeIsAtLeastOne_data();
    void labelSizeIsAtLeastOne();
    void labelSizeOfANodeScalesItsMeasuresAlone();
    void labelOutlivesOtherChanges();
    void colorsAreKeptAsFractions();

    void labelledElementsAreInTheSets();
    void setNumbersAndLabelsAreInSetsOfTheirOwn();
    void removedElementsLeaveTheSets();
    void elementUnderATakenIdHasNoLabel();

    void rectangleHoldsTheLabel();
    void nodeIsHitAtItsLabel_data();
    void nodeIsHitAtItsLabel();
    void edgeIsNotHitAtItsLabel();
};

namespace
{

constexpr QChar lineFeed(10);

/// A scene with a node, and the node's record.
struct OneNode
{
    GraphScene graphScene;
    Scene& scene = sceneOf(graphScene);
    GraphNode node = graphScene.createNode(1);
    NodeData& record = *scene.getNode(1);
};

/// A scene with two nodes far apart and an edge between them.
struct OneEdge
{
    OneEdge() { end.setPos(2000, 0); }

    GraphScene graphScene;
    Scene& scene = sceneOf(graphScene);
    GraphNode start = graphScene.createNode(1);
    GraphNode end = graphScene.createNode(2);
    GraphEdge edge = graphScene.createEdge(7, start, end);
    EdgeData& record = *scene.getEdge(7);
};

} // namespace

void LabelsTest::initTestCase()
{
    ImageManager* words = ImageManager::instance(1);
    words->startInitial();
    QCoreApplication::sendPostedEvents(words, QEvent::MetaCall);
    QVERIFY(widthOf(QStringLiteral("A")) > 0);
}

void LabelsTest::nodeLabelMakesRows_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("text2");
    QTest::addColumn<QStringList>("numbers");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<int>("rowsOfFirstText");
    QTest::addColumn<bool>("labelled");

    const QStringList none;
    const QStringList some{"1"};
    using Rows = QStringList;
    QTest::addRow("nothing") << ""
                             << "" << none << Rows{} << 0 << false;
    QTest::addRow("first text") << "A"
                                << "" << none << Rows{"A"} << 1 << true;
    QTest::addRow("second text") << ""
                                 << "B" << none << Rows{"B"} << 0 << true;
    QTest::addRow("both texts") << "A"
                                << "B" << none << Rows{"A", "B"} << 1 << true;
    QTest::addRow("many rows") << "A\nB\nC"
                               << "D\nE" << none << Rows{"A", "B", "C", "D", "E"} << 3 << true;

    QTest::addRow("a line feed") << "\n"
                                 << "" << none << Rows{} << 0 << true;
    QTest::addRow("a line feed below") << ""
                                       << "\n"
                                       << none << Rows{} << 0 << true;
    QTest::addRow("two line feeds between") << "A\n\nB"
                                            << "" << none << Rows{"A", "B"} << 2 << true;
    QTest::addRow("line feeds around") << "\nA\n"
                                       << "\n\nB\n"
                                       << none << Rows{"A", "B"} << 1 << true;
    QTest::addRow("carriage return") << "A\r\nB"
                                     << "C\rD" << none << Rows{"A\r", "B", "C\rD"} << 2 << true;
    QTest::addRow("other separators") << "A\tB\vC\f" << u8"D\u2028E\u0085" << none
                                      << Rows{"A\tB\vC\f", u8"D\u2028E\u0085"} << 1 << true;
    QTest::addRow("spaces") << " \n  "
                            << " " << none << Rows{" ", "  ", " "} << 2 << true;

    QTest::addRow("numbers alone") << ""
                                   << "" << some << Rows{""} << 0 << false;
    QTest::addRow("numbers below a text") << "A"
                                          << "" << some << Rows{"A", ""} << 1 << true;
    QTest::addRow("numbers over a text") << ""
                                         << "B" << some << Rows{"", "B"} << 0 << true;
    QTest::addRow("numbers between") << "A"
                                     << "B" << some << Rows{"A", "", "B"} << 1 << true;
    QTest::addRow("more between") << "A\nB"
                                  << "C\nD" << Rows{"1", "2"} << Rows{"A", "B", "", "C", "D"} << 2 << true;
    QTest::addRow("an empty number") << "A"
                                     << "B" << Rows{""} << Rows{"A", "", "B"} << 1 << true;
}

void LabelsTest::nodeLabelMakesRows()
{
    QFETCH(QString, text);
    QFETCH(QString, text2);
    QFETCH(QStringList, numbers);
    QFETCH(QStringList, rows);
    QFETCH(bool, labelled);
    OneNode one;
    one.node.setLabel(QStringLiteral("what was\nthere before"), QStringLiteral("x"));
    one.node.setSetNum(numbers);
    one.node.setLabel(text, text2);
    QCOMPARE(textsOf(one.record.labelLines), rows);
    QTEST(one.record.labelLineCount, "rowsOfFirstText");
    QCOMPARE(one.scene.labelNodes.value(1), labelled ? &one.record : nullptr);
    QCOMPARE(one.scene.labelNodes.size(), labelled ? 1 : 0);
    QCOMPARE(one.record.labelHeight, 76 * rows.size());
}

void LabelsTest::edgeLabelMakesRows_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<bool>("labelled");
    using Rows = QStringList;
    QTest::addRow("nothing") << "" << Rows{} << false;
    QTest::addRow("one row") << "A" << Rows{"A"} << true;
    QTest::addRow("two rows") << "A\nB" << Rows{"A", "B"} << true;
    QTest::addRow("a line feed") << "\n" << Rows{} << true;
    QTest::addRow("empty rows") << "\n\nA\n\n\nB\n" << Rows{"A", "B"} << true;
    QTest::addRow("carriage return") << "A\r\nB\r" << Rows{"A\r", "B\r"} << true;
    QTest::addRow("spaces") << " \n " << Rows{" ", " "} << true;
}

void LabelsTest::edgeLabelMakesRows()
{
    QFETCH(QString, text);
    QFETCH(bool, labelled);
    OneEdge one;
    one.edge.setLabel(QStringLiteral("what was\nthere before"));
    QCOMPARE(one.record.labelLines.size(), 2);
    one.edge.setLabel(text);
    QTEST(textsOf(one.record.labelLines), "rows");
    QCOMPARE(one.scene.labelEdges.value(7), labelled ? &one.record : nullptr);
    QCOMPARE(one.scene.labelEdges.size(), labelled ? 1 : 0);
}

void LabelsTest::rowHasTheCellsOfItsCharacters()
{
    const QString text = u8"Graph 图 \u0416\u0416 \r";
    OneNode oneNode;
    OneEdge oneEdge;
    oneNode.node.setLabel(text, QString());
    oneEdge.edge.setLabel(text);
    for (const LabelLine& row : {oneNode.record.labelLines.first(), oneEdge.record.labelLines.first()}) {
        QCOMPARE(row.cells.size(), text.size());
        for (int i = 0; i < text.size(); ++i) {
            const SImageCell cell = row.cells.at(i);
            const SImageCell expected = cellOf(text.at(i));
            QCOMPARE(cell.id, qint32{text.at(i).unicode()});
            QCOMPARE(QPoint(cell.texColIdx, cell.texRowIdx), QPoint(expected.texColIdx, expected.texRowIdx));
            QCOMPARE(cell.payload, expected.payload);
        }
        QCOMPARE(row.lineWidth, widthOf(text));
    }
}

void LabelsTest::surrogatePairHasTwoCells()
{
    OneNode one;
    one.node.setLabel(u8"\U0001f600", QString());
    const QList<SImageCell>& cells = one.record.labelLines.first().cells;
    QCOMPARE(cells.size(), 2);
    QCOMPARE(cells.at(0).id, 0xd83d);
    QCOMPARE(cells.at(1).id, 0xde00);
    QCOMPARE(one.record.labelLines.first().lineWidth, advanceOf(cells.at(0)) + advanceOf(cells.at(1)));
}

void LabelsTest::widthIsThatOfFreeType()
{
    const ReferenceFace reference(fontIn(dataHome()));
    const QString text = u8"Wide, narrow: 图画 \u0416\u3042 \U0001f600!";
    int expected = 0;
    for (const QChar character : text)
        expected += reference.glyph(character.unicode()).metrics.advance;
    OneNode one;
    one.node.setLabel(text, QString());
    QVERIFY(expected > 0);
    QCOMPARE(one.record.labelLines.first().lineWidth, expected);
    QCOMPARE(one.record.labelWidth, expected);
}

void LabelsTest::rowsAreCentredEachByItself_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("startOffset");
    QTest::addRow("hundred") << 100 << 12;
    QTest::addRow("odd") << 101 << 12;
    QTest::addRow("even") << 102 << 13;
    QTest::addRow("a cell") << 76 << 0;
    QTest::addRow("more than a cell") << 77 << 0;
    QTest::addRow("less than a cell") << 75 << -1;
    QTest::addRow("less yet") << 71 << -3;
}

void LabelsTest::rowsAreCentredEachByItself()
{
    QFETCH(int, width);
    const QString text = textOfWidth(width);
    QVERIFY(!text.isEmpty());
    OneNode oneNode;
    OneEdge oneEdge;
    oneNode.node.setLabel(text + lineFeed + text + text, text);
    oneEdge.edge.setLabel(text + text + lineFeed + text);
    for (const LabelLine& row :
         {oneNode.record.labelLines.at(0), oneNode.record.labelLines.at(2), oneEdge.record.labelLines.at(1)}) {
        QCOMPARE(row.lineWidth, width);
        QTEST(row.startOffset, "startOffset");
    }
    for (const LabelLine& row : {oneNode.record.labelLines.at(1), oneEdge.record.labelLines.at(0)}) {
        QCOMPARE(row.lineWidth, 2 * width);
        QCOMPARE(row.startOffset, width - 38);
    }
}

void LabelsTest::emptyRowIsBlankOnANodeAndAbsentOnAnEdge()
{
    OneEdge one;
    one.scene.getNode(1)->appendLabelLine(QString());
    one.record.appendLabelLine(QString());
    const QList<LabelLine>& rows = one.scene.getNode(1)->labelLines;
    QCOMPARE(rows.size(), 1);
    QVERIFY(rows.first().cells.isEmpty());
    QCOMPARE(rows.first().lineWidth, 0);
    QCOMPARE(rows.first().startOffset, -38);
    QVERIFY(one.record.labelLines.isEmpty());
}

void LabelsTest::setNumbersStandSideBySide_data()
{
    QTest::addColumn<QStringList>("numbers");
    QTest::addRow("none") << QStringList{};
    QTest::addRow("one") << QStringList{"7"};
    QTest::addRow("two") << QStringList{"1", "23"};
    QTest::addRow("three of different widths") << QStringList{"1", u8"图画", "...."};
    QTest::addRow("without text") << QStringList{"", ""};
    QTest::addRow("alike") << QStringList{"5", "5", "5", "5"};
}

void LabelsTest::setNumbersStandSideBySide()
{
    QFETCH(QStringList, numbers);
    OneNode one;
    one.node.setSetNum(numbers);
    const QList<LabelLine>& boxes = one.record.setNumLines;
    QCOMPARE(boxes.size(), numbers.size());

    int full = 0;
    for (const QString& number : qAsConst(numbers))
        full += (full == 0 ? 0 : 76) + widthOf(number) + 4 * widthOf(QStringLiteral(" "));
    int left = 0; // from the left side of the whole row to that of the box
    for (int i = 0; i < boxes.size(); ++i) {
        QCOMPARE(textOf(boxes.at(i)), QStringLiteral("  %1  ").arg(numbers.at(i)));
        QCOMPARE(boxes.at(i).lineWidth, widthOf(textOf(boxes.at(i))));
        QCOMPARE(boxes.at(i).startOffset, full / 2 - left - 38);
        left += boxes.at(i).lineWidth + 76;
    }
    QCOMPARE(one.record.setNumWidth, full);
    QCOMPARE(one.record.setNumHeight, numbers.isEmpty() ? 0 : 76);
    QCOMPARE(one.record.labelWidth, full);
    QCOMPARE(one.record.labelHeight, 0);
    QCOMPARE(one.scene.setNumNodes.value(1), numbers.isEmpty() ? nullptr : &one.record);
}

void LabelsTest::oneSetNumberHasTwoSpacesAtEachSide()
{
    OneNode one;
    one.node.setSetNum({"7"});
    const int space = advanceOf(cellOf(' '));
    const int digit = advanceOf(cellOf('7'));
    QCOMPARE(one.record.setNumLines.size(), 1);
    QCOMPARE(one.record.setNumLines.first().lineWidth, 4 * space + digit);
    QCOMPARE(one.record.setNumLines.first().startOffset, (4 * space + digit) / 2 - 38);
    QCOMPARE(one.record.setNumLines.first().cells.size(), 5);
}

void LabelsTest::lineFeedDoesNotEndASetNumber()
{
    OneNode one;
    one.node.setSetNum({"1\n2"});
    QCOMPARE(textsOf(one.record.setNumLines), QStringList{"  1\n2  "});
}

void LabelsTest::newSetNumbersReplaceTheOld()
{
    OneNode one;
    one.node.setSetNum({"1", "2", "3"});
    one.node.setSetNum({"4"});
    QCOMPARE(textsOf(one.record.setNumLines), QStringList{"  4  "});
    QCOMPARE(one.record.setNumWidth, one.record.setNumLines.first().lineWidth);
    one.node.setSetNum({});
    QVERIFY(one.record.setNumLines.isEmpty());
    QCOMPARE(measuresOf(one.record), QStringLiteral("label 0 by 0, set numbers 0 by 0, bound 64"));
    QVERIFY(one.scene.setNumNodes.isEmpty());
}

void LabelsTest::blankRowIsKeptByTheLabelAlone()
{
    OneNode one;
    one.node.setLabel(QStringLiteral("A"), QStringLiteral("B"));
    one.node.setSetNum({"1"});
    QCOMPARE(textsOf(one.record.labelLines), (QStringList{"A", "B"})); // the boxes lie over B
    QCOMPARE(one.record.labelHeight, 152);
    one.node.setLabel(QStringLiteral("A"), QStringLiteral("B"));
    QCOMPARE(textsOf(one.record.labelLines), (QStringList{"A", "", "B"}));
    QCOMPARE(one.record.labelLineCount, 1);
    QCOMPARE(one.record.labelHeight, 228);
    one.node.setSetNum({});
    QCOMPARE(textsOf(one.record.labelLines), (QStringList{"A", "", "B"}));
    QCOMPARE(one.record.labelHeight, 228);
    one.node.setLabel(QStringLiteral("A"), QStringLiteral("B"));
    QCOMPARE(textsOf(one.record.labelLines), (QStringList{"A", "B"}));
    QCOMPARE(one.record.labelHeight, 152);
}

void LabelsTest::textBlockIsMeasured_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<QList<int>>("boxes");
    QTest::addColumn<float>("size");
    QTest::addColumn<QString>("measures");
    using Widths = QList<int>;
    const auto add = [](const char* name, const Widths& rows, const Widths& boxes, float size, const char* measures) {
        QTest::newRow(name) << rows << boxes << size << measures;
    };
    add("nothing", {}, {}, 1.0f, "label 0 by 0, set numbers 0 by 0, bound 64");
    add("one row, larger", {100}, {}, 1.5f, "label 150 by 114, set numbers 0 by 0, bound 150");
    add("widest row", {100, 250, 150}, {}, 1.0f, "label 250 by 228, set numbers 0 by 0, bound 250");
    add("narrower than a badge", {63}, {}, 1.0f, "label 63 by 76, set numbers 0 by 0, bound 64");
    add("wider than a badge", {65}, {}, 1.0f, "label 65 by 76, set numbers 0 by 0, bound 65");
    add("badge against the scaled width", {50}, {}, 1.5f, "label 75 by 114, set numbers 0 by 0, bound 75");
    add("no advance", {0}, {}, 1.0f, "label 0 by 76, set numbers 0 by 0, bound 64");
    add("one box", {}, {120}, 1.0f, "label 120 by 0, set numbers 120 by 76, bound 120");
    add("boxes wider", {100, 0, 90}, {30, 50}, 1.0f, "label 156 by 228, set numbers 156 by 76, bound 156");
    add("row wider", {300}, {30, 50}, 1.0f, "label 300 by 76, set numbers 156 by 76, bound 300");
    add("three boxes", {}, {1, 2, 4}, 1.0f, "label 159 by 0, set numbers 159 by 76, bound 159");
    add("cut toward zero", {101, 1}, {1}, 1.25f, "label 126 by 190, set numbers 1 by 95, bound 126");
    // In doubles these products would end just below the whole numbers, since 1.3f is less than 1.3 and so on.
    add("rounded as floats", {10}, {10}, 1.3f, "label 13 by 98, set numbers 13 by 98, bound 64");
    add("heights rounded as floats", {1}, {1}, 77 / 76.0f, "label 1 by 77, set numbers 1 by 77, bound 64");
}

void LabelsTest::textBlockIsMeasured()
{
    QFETCH(QList<int>, rows);
    QFETCH(QList<int>, boxes);
    QFETCH(float, size);
    NodeData node;
    node.labelLines = rowsOfWidths(rows);
    node.setNumLines = rowsOfWidths(boxes);
    node.labelSize = size;
    node.updateLabelSize();
    QTEST(measuresOf(node), "measures");
}

void LabelsTest::settersMeasure()
{
    OneNode one;
    const QString wide = textOfWidth(100);
    one.node.setLabelSize(1.5f);
    one.node.setLabel(wide, QString());
    QCOMPARE(measuresOf(one.record), QStringLiteral("label 150 by 114, set numbers 0 by 0, bound 150"));
    one.node.setLabelSize(2.0f);
    QCOMPARE(measuresOf(one.record), QStringLiteral("label 200 by 152, set numbers 0 by 0, bound 200"));
    one.node.setLabel(QString(), QString());
    QCOMPARE(measuresOf(one.record), QStringLiteral("label 0 by 0, set numbers 0 by 0, bound 64"));

    one.node.setSetNum({"1", "22"});
    const QList<LabelLine>& boxes = one.record.setNumLines;
    const int boxRow = boxes.at(0).lineWidth + boxes.at(1).lineWidth + 76;
    QCOMPARE(one.record.setNumWidth, 2 * boxRow);
    QCOMPARE(one.record.setNumHeight, 152);
    one.node.setLabelSize(1.0f);
    QCOMPARE(one.record.setNumWidth, boxRow);
    QCOMPARE(boxes.at(1).startOffset, boxes.at(0).startOffset - boxes.at(0).lineWidth - 76);
}

void LabelsTest::labelSizeIsAtLeastOne_data()
{
    QTest::addColumn<float>("size");
    QTest::addColumn<float>("kept");
    const float above = std::nextafter(1.0f, 2.0f);
    const float below = std::nextafter(1.0f, 0.0f);
    QTest::addRow("half") << 0.5f << 1.0f;
    QTest::addRow("one") << 1.0f << 1.0f;
    QTest::addRow("just above") << above << above;
    QTest::addRow("just below") << below << 1.0f;
    QTest::addRow("zero") << 0.0f << 1.0f;
    QTest::addRow("negative") << -2.0f << 1.0f;
    QTest::addRow("no number") << std::numeric_limits<float>::quiet_NaN() << 1.0f;
    QTest::addRow("large") << 40.25f << 40.25f;
}

void LabelsTest::labelSizeIsAtLeastOne()
{
    QFETCH(float, size);
    QFETCH(float, kept);
    OneEdge one;
    one.start.setLabelSize(3.0f);
    one.start.setLabelSize(size);
    one.edge.setLabelSize(3.0f);
    one.edge.setLabelSize(size);
    QVERIFY(one.scene.getNode(1)->labelSize == kept);
    QVERIFY(one.record.labelSize == kept);
}

void LabelsTest::labelSizeOfANodeScalesItsMeasuresAlone()
{
    OneNode one;
    one.node.setSetNum({"1"});
    one.node.setLabel(QStringLiteral("A"), QStringLiteral("B"));
    const QList<LabelLine> rows = one.record.labelLines + one.record.setNumLines;
    one.node.setLabelSize(2.5f);
    const QList<LabelLine> rowsAfter = one.record.labelLines + one.record.setNumLines;
    QCOMPARE(textsOf(rowsAfter), textsOf(rows));
    for (int i = 0; i < rows.size(); ++i) {
        QCOMPARE(rowsAfter.at(i).lineWidth, rows.at(i).lineWidth);
        QCOMPARE(rowsAfter.at(i).startOffset, rows.at(i).startOffset);
    }
    QCOMPARE(one.record.labelHeight, 570);
    QCOMPARE(one.record.setNumHeight, 190);
}

void LabelsTest::labelOutlivesOtherChanges()
{
    OneEdge one;
    one.start.setLabel(QStringLiteral("A"), QStringLiteral("B"));
    one.edge.setLabel(QStringLiteral("C"));
    const NodeData& node = *one.scene.getNode(1);
    const QString measures = measuresOf(node);
    one.start.setPos(500, 600);
    one.start.setSelect(true);
    one.start.setShow(false);
    one.start.setCircleShow(true);
    one.start.setSize(1.0f);
    one.edge.setSelect(true);
    one.edge.setRightAngle(true);
    QCOMPARE(textsOf(node.labelLines), (QStringList{"A", "B"}));
    QCOMPARE(measuresOf(node), measures);
    QCOMPARE(textsOf(one.record.labelLines), QStringList{"C"});
    QVERIFY(one.scene.labelNodes.contains(1) && one.scene.labelEdges.contains(7));
}

void LabelsTest::colorsAreKeptAsFractions()
{
    const auto fraction = [](int channel) { return static_cast<float>(channel / 255.0); };
    const Rgba text{fraction(51), fraction(1), fraction(254), fraction(128)};
    const Rgba back{fraction(255), fraction(0), fraction(77), fraction(3)};
    OneEdge one;
    one.start.setLabelColor(QColor(51, 1, 254, 128), QColor(255, 0, 77, 3));
    one.edge.setLabelColor(QColor(51, 1, 254, 128), QColor(255, 0, 77, 3));
    const NodeData& node = *one.scene.getNode(1);
    QVERIFY(node.labelColor == text && node.labelBackColor == back);
    QVERIFY(one.record.labelColor == text && one.record.labelBackColor == back);
    const NodeData& other = *one.scene.getNode(2);
    QVERIFY(other.labelColor == (Rgba{0.0f, 0.0f, 0.0f, 1.0f}));
    QVERIFY(other.labelBackColor == (Rgba{1.0f, 1.0f, 1.0f, 0.0f}));
}

void LabelsTest::labelledElementsAreInTheSets()
{
    OneEdge one;
    for (int repetition = 0; repetition < 2; ++repetition) {
        one.end.setLabel(QStringLiteral("A"), QString());
        one.edge.setLabel(QStringLiteral("B"));
        QCOMPARE(one.scene.labelNodes.keys(), QList<qint64>{2});
        QCOMPARE(one.scene.labelNodes.value(2), one.scene.getNode(2));
        QCOMPARE(one.scene.labelEdges.keys(), QList<qint64>{7});
        QCOMPARE(one.scene.labelEdges.value(7), &one.record);
    }
    one.start.setLabel(QString(), QString());
    QCOMPARE(one.scene.labelNodes.keys(), QList<qint64>{2});
    one.end.setLabel(QString(), QString());
    one.edge.setLabel(QString());
    QVERIFY(one.scene.labelNodes.isEmpty() && one.scene.labelEdges.isEmpty());
    QVERIFY(one.scene.getNode(2)->labelLines.isEmpty() && one.record.labelLines.isEmpty());
}

void LabelsTest::setNumbersAndLabelsAreInSetsOfTheirOwn()
{
    OneNode one;
    one.node.setSetNum({"1"});
    QVERIFY(one.scene.labelNodes.isEmpty());
    QCOMPARE(one.scene.setNumNodes.value(1), &one.record);
    one.node.setLabel(QStringLiteral("A"), QString());
    one.node.setSetNum({});
    QVERIFY(one.scene.setNumNodes.isEmpty());
    QCOMPARE(one.scene.labelNodes.value(1), &one.record);
    one.node.setSetNum({""});
    one.node.setLabel(QString(), QString());
    QCOMPARE(one.scene.setNumNodes.value(1), &one.record);
    QVERIFY(one.scene.labelNodes.isEmpty());
}

void LabelsTest::removedElementsLeaveTheSets()
{
    OneEdge one;
    const GraphEdge other = one.graphScene.createEdge(8, one.end, one.start);
    for (GraphNode node : {one.start, one.end}) {
        node.setSetNum({"1"});
        node.setLabel(QStringLiteral("A"), QString());
    }
    for (GraphEdge edge : {one.edge, other})
        edge.setLabel(QStringLiteral("B"));

    one.graphScene.removeEdge(7);
    QCOMPARE(one.scene.labelEdges.keys(), QList<qint64>{8});
    one.graphScene.removeNode(1);
    QVERIFY(one.scene.labelEdges.isEmpty());
    QCOMPARE(one.scene.labelNodes.keys(), QList<qint64>{2});
    QCOMPARE(one.scene.setNumNodes.keys(), QList<qint64>{2});
    one.graphScene.clear();
    QVERIFY(one.scene.labelNodes.isEmpty() && one.scene.setNumNodes.isEmpty());
}

void LabelsTest::elementUnderATakenIdHasNoLabel()
{
    OneEdge one;
    one.end.setSetNum({"1"});
    one.end.setLabel(QStringLiteral("A"), QString());
    one.edge.setLabel(QStringLiteral("B"));
    GraphEdge newEdge = one.graphScene.createEdge(7, one.start, one.end);
    GraphNode newNode = one.graphScene.createNode(2);
    QVERIFY(one.scene.labelNodes.isEmpty() && one.scene.setNumNodes.isEmpty() && one.scene.labelEdges.isEmpty());

    newNode.setLabel(QStringLiteral("A"), QString());
    newNode.setSetNum({"1"});
    newEdge.setLabel(QStringLiteral("B"));
    QCOMPARE(one.scene.labelNodes.value(2), one.scene.getNode(2));
    QCOMPARE(one.scene.setNumNodes.value(2), one.scene.getNode(2));
    QCOMPARE(one.scene.labelEdges.value(7), one.scene.getEdge(7));
    QVERIFY(one.scene.getEdge(7) != &one.record);
}

void LabelsTest::rectangleHoldsTheLabel()
{
    OneNode one;
    one.node.setPos(1000, 500);
    one.node.setSetNum({"1", "2"});
    one.node.setLabel(textOfWidth(100).repeated(4), QString());
    QCOMPARE(one.record.labelWidth, 400);
    QCOMPARE(one.node.rect(), QRect(872, 628, 400, 256 + 152));
    QCOMPARE(one.node.rectGraph(), QRect(872, -628, 400, 256 + 152));
    one.node.setLabel(QStringLiteral("i"), QString());
    one.node.setSetNum({"1"});
    QCOMPARE(one.node.rect(), QRect(872, 628, 256, 256 + 152));

    one.graphScene.setNodeTextShow(false);
    QCOMPARE(one.node.rect(), QRect(872, 628, 256, 256 + 76));
    one.node.setSetNum({"1", "22222", "3"});
    QVERIFY(one.record.setNumWidth > 256);
    QCOMPARE(one.node.rect(), QRect(872, 628, one.record.setNumWidth, 256 + 76));
    one.node.setSetNum({});
    QCOMPARE(one.node.rect(), QRect(872, 628, 256, 256));
}

void LabelsTest::nodeIsHitAtItsLabel_data()
{
    QTest::addColumn<bool>("textShown");
    QTest::addColumn<bool>("numbers");
    QTest::addColumn<float>("x");
    QTest::addColumn<float>("y");
    QTest::addColumn<bool>("hit");
    // The icon ends at -128. With text there follow two rows of a width of 300; without, one row of boxes.
    const float below = std::nextafter(-280.0f, -1000.0f);
    const float above = std::nextafter(-280.0f, 0.0f);
    QTest::addRow("in the text") << true << false << 0.0f << -200.0f << true;
    QTest::addRow("beside the icon, in the text") << true << false << -140.0f << -200.0f << true;
    QTest::addRow("left of it") << true << false << -150.0f << -200.0f << false;
    QTest::addRow("just inside") << true << false << std::nextafter(150.0f, 0.0f) << -200.0f << true;
    QTest::addRow("right of it") << true << false << 150.0f << -200.0f << false;
    QTest::addRow("the last of it") << true << false << 0.0f << above << true;
    QTest::addRow("its lower side") << true << false << 0.0f << -280.0f << false;
    QTest::addRow("below it") << true << false << 0.0f << below << false;
    QTest::addRow("between icon and text") << true << false << 0.0f << -128.0f << false;
    QTest::addRow("blank row below the text") << true << true << 0.0f << -290.0f << true;
    QTest::addRow("text not shown") << false << false << 0.0f << -200.0f << false;
    QTest::addRow("in the boxes") << false << true << 0.0f << -200.0f << true;
    QTest::addRow("below the boxes") << false << true << 0.0f << -204.0f << false;
    QTest::addRow("beside the boxes") << false << true << -140.0f << -200.0f << false;
}

void LabelsTest::nodeIsHitAtItsLabel()
{
    QFETCH(bool, textShown);
    QFETCH(bool, numbers);
    QFETCH(float, x);
    QFETCH(float, y);
    QFETCH(bool, hit);
    OneNode one;
    if (numbers)
        one.node.setSetNum({"1"});
    one.node.setLabel(textOfWidth(100).repeated(3) + lineFeed + QStringLiteral("i"), QString());
    one.graphScene.setNodeTextShow(textShown);
    QCOMPARE(one.scene.testNodeAt({x, y}, nullptr, false), hit);
    if (!hit)
        return;
    // So does a frame around the place, which holds nothing of the icon.
    one.scene.selectInFrame({x - 0.5f, std::min(y + 0.5f, -130.0f)}, {x + 0.5f, y - 0.5f}, SELECT_REPLACE);
    QVERIFY(one.node.select());
}

void LabelsTest::edgeIsNotHitAtItsLabel()
{
    OneEdge one;
    one.edge.setLabel(QStringLiteral("AAAA\nBBBB\nCCCC"));
    QVERIFY(one.scene.testEdgeAt({1000.0f, 0.0f}, 4, nullptr));
    QVERIFY(!one.scene.testEdgeAt({1000.0f, 60.0f}, 4, nullptr));
    QVERIFY(!one.scene.testEdgeAt({1000.0f, -60.0f}, 4, nullptr));
}

QTEST_GUILESS_MAIN(LabelsTest)

#include "LabelsTest.moc"
