#include "render/InstanceBuilders.h"

#include "support/MadeScene.h"
#include "support/RecordText.h"
#include "support/SceneBuilders.h"
#include "support/SceneLists.h"

#include <QtTest>

using namespace NELK;

class InstanceBuildersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void circleReachesToTheMiddleOfItsRing_data();
    void circleReachesToTheMiddleOfItsRing();
    void iconAndBadges_data();
    void iconAndBadges();
    void allBadgesOfANewNode();
    void overviewShowsEveryNodeInItsOwnColor();
    void frameEnclosesBodyAndText_data();
    void frameEnclosesBodyAndText();
    void nodeGoesToTheListsOfItsSelection_data();
    void nodeGoesToTheListsOfItsSelection();

    void edgeIsOnePieceOrThree_data();
    void edgeIsOnePieceOrThree();
    void baseEdgeKeepsItsOnePieceBesideDerivedOnes();
    void arrowHeadsOfStartsComeFirst();
    void arrowHeadOfARingIsAUnitTriangleAtTheOrigin();
    void ringIsAsThickAsItsEdge_data();
    void ringIsAsThickAsItsEdge();
    void selectedEdgesTakeTheColorOfTheScene();

    void hiddenElementsAreInNoList();
    void buildersFillTheirOwnListsAlone();
    void recordsFollowTheOrderOfTheSetHoweverFarApart();
};

namespace
{

/// A matrix of sixteen different numbers, the first of them given.
Mat4 markedMatrix(float mark)
{
    Mat4 matrix;
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 4; ++row)
            matrix.columns[column][row] = mark + static_cast<float>(4 * column + row);
    }
    return matrix;
}

/// Gives each piece of an edge a matrix of its own, from `mark` on in steps of a hundred.
void markPieces(EdgeData& edge, float mark)
{
    for (Mat4* piece : {&edge.lineMatrix, &edge.segmentMatrix0, &edge.segmentMatrix1, &edge.segmentMatrix2,
                        &edge.startArrowMatrix, &edge.endArrowMatrix}) {
        *piece = markedMatrix(mark);
        mark += 100.0f;
    }
}

QString markedRecord(float mark, Four para1, Four para2 = {})
{
    return recordWith(markedMatrix(mark).data(), para1, para2);
}

constexpr Four selectedColor{0.196f, 0.557f, 1.0f, 0.0f};

} // namespace

void InstanceBuildersTest::circleReachesToTheMiddleOfItsRing_data()
{
    QTest::addColumn<int>("diameter");
    QTest::addColumn<int>("ringWidth");
    QTest::addColumn<float>("fill");
    QTest::addColumn<float>("divisor");
    QTest::newRow("as it is at first") << 362 << 32 << 330.0f << 5.65625f;
    QTest::newRow("odd numbers") << 361 << 33 << 328.0f << 5.46969697f;
    QTest::newRow("a wide ring") << 100 << 30 << 70.0f << 1.66666667f;
    QTest::newRow("less than two rings wide") << 40 << 32 << 8.0f << 0.625f;
}

void InstanceBuildersTest::circleReachesToTheMiddleOfItsRing()
{
    QFETCH(int, diameter);
    QFETCH(int, ringWidth);
    QFETCH(float, fill);
    QFETCH(float, divisor);
    Scene scene;
    addNode(scene, 2, {0.0f, 0.0f});
    NodeData& node = addNode(scene, 1, {-120.5f, 77.25f});
    node.circleRingWidth = ringWidth;
    node.circleColor = {0.25f, 0.5f, 0.75f};
    showCircle(scene, node, diameter);

    const auto full = static_cast<float>(diameter);
    buildCircles(scene);
    QCOMPARE(recordsOf(scene.circleItems),
             QStringList{placedRecord(-120.5f, 77.25f, fill, fill, {0.25f, 0.5f, 0.75f, 0.0f})});
    buildRings(scene);
    QCOMPARE(recordsOf(scene.ringItems),
             QStringList{placedRecord(-120.5f, 77.25f, full, full, {0.25f, 0.5f, 0.75f, divisor})});
}

void InstanceBuildersTest::iconAndBadges_data()
{
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("lock");
    QTest::addColumn<bool>("focus");
    QTest::addColumn<bool>("combined");
    for (int flags = 0; flags < 16; ++flags) {
        const bool hidden = flags & 1, lock = flags & 2, focus = flags & 4, combined = flags & 8;
        QTest::addRow("%s%s%s%s", hidden ? "no icon" : "icon", lock ? ", lock" : "", focus ? ", focus" : "",
                      combined ? ", combined" : "")
            << hidden << lock << focus << combined;
    }
}

void InstanceBuildersTest::iconAndBadges()
{
    QFETCH(bool, hidden);
    QFETCH(bool, lock);
    QFETCH(bool, focus);
    QFETCH(bool, combined);
    Scene scene;
    NodeData& node = addNode(scene, 1, {1000.0f, -500.0f});
    node.width = 200;
    node.height = 300;
    node.imageRow = 3;
    node.imageCol = 7;
    node.lockBadgePos = {-90.0f, 80.0f};
    node.cornerBadgePos = {100.0f, 70.0f};
    node.badgeSize = 51;
    node.imageHidden = hidden;
    node.lock = lock;
    node.focus = focus;
    node.combined = combined;

    QStringList expected;
    if (!hidden)
        expected += placedRecord(1000.0f, -500.0f, 200.0f, 200.0f, {3.0f, 7.0f, 0.0f, 0.0f});
    if (lock)
        expected += placedRecord(910.0f, -420.0f, 51.0f, 51.0f, {0.0f, 1.0f, 0.0f, 0.0f});
    if (focus)
        expected += placedRecord(1100.0f, -430.0f, 51.0f, 51.0f, {0.0f, 0.0f, 0.0f, 0.0f});
    if (combined)
        expected += placedRecord(1100.0f, focus ? -500.0f : -430.0f, 51.0f, 51.0f, {1.0f, 1.0f, 0.0f, 0.0f});
    buildImages(scene);
    QCOMPARE(recordsOf(scene.imageItems), expected);
}

void InstanceBuildersTest::allBadgesOfANewNode()
{
    Scene scene;
    NodeData& node = addNode(scene, 1, {10.0f, 20.0f});
    node.lock = node.focus = node.combined = true;
    buildImages(scene);
    const QStringList expected{
        placedRecord(10.0f, 20.0f, 256.0f, 256.0f),
        placedRecord(-86.0f, 116.0f, 64.0f, 64.0f, {0.0f, 1.0f}),
        placedRecord(106.0f, 116.0f, 64.0f, 64.0f),
        placedRecord(106.0f, 20.0f, 64.0f, 64.0f, {1.0f, 1.0f}),
    };
    QCOMPARE(recordsOf(scene.imageItems), expected);
}

void InstanceBuildersTest::overviewShowsEveryNodeInItsOwnColor()
{
    Scene scene;
    NodeData& plain = addNode(scene, 1, {-5.5f, 6.5f});
    NodeData& other = addNode(scene, 2, {900.0f, -800.0f});
    other.width = 100;
    other.height = 120;
    other.imageRow = 4;
    other.imageCol = 9;
    other.imageHidden = true;
    other.entityColor = {0.1f, 0.2f, 0.3f, 0.4f};
    select(scene, other);
    showCircle(scene, plain);

    buildEyeNodes(scene);
    const QStringList expected{
        placedRecord(-5.5f, 6.5f, 256.0f, 256.0f, {}, {0.349f, 0.722f, 0.271f, 1.0f}),
        placedRecord(900.0f, -800.0f, 100.0f, 100.0f, {4.0f, 9.0f}, {0.1f, 0.2f, 0.3f, 0.4f}),
    };
    QCOMPARE(sorted(recordsOf(scene.eyeItems)), sorted(expected));
}

void InstanceBuildersTest::frameEnclosesBodyAndText_data()
{
    QTest::addColumn<bool>("textShow");
    QTest::addColumn<bool>("circleShow");
    QTest::addColumn<QSize>("label");
    QTest::addColumn<QSize>("numbers");
    QTest::addColumn<float>("y");
    QTest::addColumn<QSize>("frame");
    const QSize none(0, 0);
    QTest::newRow("icon alone") << true << false << none << none << 20.0f << QSize(256, 256);
    QTest::newRow("narrow text") << true << false << QSize(100, 76) << none << -18.0f << QSize(256, 332);
    QTest::newRow("odd height") << true << false << QSize(255, 77) << none << -18.0f << QSize(256, 333);
    QTest::newRow("text one wider") << true << false << QSize(257, 79) << none << -19.0f << QSize(257, 335);
    QTest::newRow("circle alone") << true << true << none << none << 20.0f << QSize(362, 362);
    QTest::newRow("circle and text") << true << true << QSize(300, 228) << none << -94.0f << QSize(362, 590);
    QTest::newRow("circle, wide text") << true << true << QSize(400, 76) << none << -18.0f << QSize(400, 438);
    QTest::newRow("text, not numbers") << true << false << QSize(300, 228) << QSize(310, 99) << -94.0f
                                       << QSize(300, 484);
    QTest::newRow("numbers alone") << false << false << QSize(300, 228) << QSize(310, 99) << -29.0f << QSize(310, 355);
    QTest::newRow("circle and numbers") << false << true << QSize(500, 228) << QSize(99, 77) << -18.0f
                                        << QSize(362, 439);
    QTest::newRow("hidden text") << false << false << QSize(300, 228) << none << 20.0f << QSize(256, 256);
}

void InstanceBuildersTest::frameEnclosesBodyAndText()
{
    QFETCH(bool, textShow);
    QFETCH(bool, circleShow);
    QFETCH(QSize, label);
    QFETCH(QSize, numbers);
    QFETCH(float, y);
    QFETCH(QSize, frame);
    Scene scene;
    scene.nodeTextShow = textShow;
    NodeData& node = addNode(scene, 1, {10.5f, 20.0f});
    addNode(scene, 2, {50.0f, 60.0f});
    node.height = 999; // does not count
    node.labelWidth = label.width();
    node.labelHeight = label.height();
    node.setNumWidth = numbers.width();
    node.setNumHeight = numbers.height();
    if (circleShow)
        showCircle(scene, node);
    select(scene, node);

    buildFrames(scene);
    QCOMPARE(recordsOf(scene.frameItems), QStringList{placedRecord(10.5f, y, static_cast<float>(frame.width()),
                                                                   static_cast<float>(frame.height()))});
}

void InstanceBuildersTest::nodeGoesToTheListsOfItsSelection_data()
{
    QTest::addColumn<bool>("selected");
    QTest::addColumn<QStringList>("lists");
    QTest::newRow("selected") << true << QStringList{"eyeItems",      "selCircleItems", "selRingItems",
                                                     "selImageItems", "frameItems",     "selTextItems"};
    QTest::newRow("not selected") << false
                                  << QStringList{"circleItems", "ringItems", "imageItems", "eyeItems", "textItems"};
}

void InstanceBuildersTest::nodeGoesToTheListsOfItsSelection()
{
    QFETCH(bool, selected);
    Scene scene;
    NodeData& node = addNode(scene, 1, {0.0f, 0.0f});
    dressUp(scene, node);
    if (selected)
        select(scene, node);
    buildEverything(scene);
    QTEST(filledLists(scene), "lists");
}

void InstanceBuildersTest::edgeIsOnePieceOrThree_data()
{
    QTest::addColumn<bool>("rightAngle");
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("onePiece");
    QTest::newRow("line") << false << 0 << false << true;
    QTest::newRow("selected line") << false << 0 << true << true;
    QTest::newRow("right-angled") << true << 0 << false << false;
    QTest::newRow("selected right-angled") << true << 0 << true << false;
    QTest::newRow("parallel") << false << 1 << false << false;
    QTest::newRow("selected parallel") << false << 1 << true << false;
    QTest::newRow("farther parallel") << false << 4 << false << false;
    QTest::newRow("right-angled parallel") << true << 2 << false << false;
}

void InstanceBuildersTest::edgeIsOnePieceOrThree()
{
    QFETCH(bool, rightAngle);
    QFETCH(int, index);
    QFETCH(bool, selected);
    QFETCH(bool, onePiece);
    OneEdge one;
    one.edge.rightAngle = rightAngle;
    one.edge.index = index;
    one.edge.edgeColor = {0.25f, 0.5f, 0.75f};
    markPieces(one.edge, 1000.0f);
    if (selected)
        select(one.scene, one.edge);

    const Four para1 = selected ? selectedColor : Four{0.25f, 0.5f, 0.75f, 0.0f};
    const Four para2{0.25f, 0.5f, 0.75f, 1.0f};
    const QStringList line{markedRecord(1000.0f, para1, para2)};
    const QStringList pieces{markedRecord(1100.0f, para1, para2), markedRecord(1200.0f, para1, para2),
                             markedRecord(1300.0f, para1, para2)};
    buildEdges(one.scene);
    QCOMPARE(recordsOf(one.scene.edgeLineItems), onePiece ? line : QStringList());
    QCOMPARE(recordsOf(one.scene.edgeCurveItems), onePiece ? QStringList() : pieces);
}

void InstanceBuildersTest::baseEdgeKeepsItsOnePieceBesideDerivedOnes()
{
    OneEdge one;
    EdgeData& near = *one.scene.createEdge(12, &one.edge, 1);
    EdgeData& far = *one.scene.createEdge(13, &one.edge, 4);
    one.scene.createEdge(14, &one.start, &one.start); // a ring has no place among them
    buildEdges(one.scene);
    const auto blackWith = [](const Mat4& matrix) { return recordWith(matrix.data(), {}, {0.0f, 0.0f, 0.0f, 1.0f}); };
    QCOMPARE(recordsOf(one.scene.edgeLineItems), QStringList{blackWith(one.edge.lineMatrix)});
    QStringList pieces;
    for (const EdgeData* edge : {&near, &far})
        pieces += {blackWith(edge->segmentMatrix0), blackWith(edge->segmentMatrix1), blackWith(edge->segmentMatrix2)};
    QCOMPARE(sorted(recordsOf(one.scene.edgeCurveItems)), sorted(pieces));
}

void InstanceBuildersTest::arrowHeadsOfStartsComeFirst()
{
    OneEdge one;
    EdgeData& other = *one.scene.createEdge(12, &one.end, &one.start);
    one.edge.edgeColor = {0.25f, 0.5f, 0.75f};
    markPieces(one.edge, 1000.0f);
    markPieces(other, 2000.0f);
    for (EdgeData* edge : {&one.edge, &other})
        showEndArrow(one.scene, *edge);
    showStartArrow(one.scene, other);
    showStartArrow(one.scene, one.edge);
    select(one.scene, other);

    const Four own{0.25f, 0.5f, 0.75f, 0.0f};
    buildArrows(one.scene);
    const QStringList heads = recordsOf(one.scene.arrowItems);
    QCOMPARE(heads.size(), 4);
    QCOMPARE(sorted(heads.mid(0, 2)), sorted({markedRecord(1400.0f, own), markedRecord(2400.0f, selectedColor)}));
    QCOMPARE(sorted(heads.mid(2)), sorted({markedRecord(1500.0f, own), markedRecord(2500.0f, selectedColor)}));
}

void InstanceBuildersTest::arrowHeadOfARingIsAUnitTriangleAtTheOrigin()
{
    Scene scene;
    NodeData& node = addNode(scene, 1, {5000.0f, 5000.0f});
    EdgeData& ring = *scene.createEdge(11, &node, &node);
    ring.edgeColor = {1.0f, 0.5f, 0.0f};
    showStartArrow(scene, ring);
    showEndArrow(scene, ring);
    buildArrows(scene);
    const QString atTheOrigin = placedRecord(0.0f, 0.0f, 1.0f, 1.0f, {1.0f, 0.5f, 0.0f, 0.0f});
    QCOMPARE(recordsOf(scene.arrowItems), (QStringList{atTheOrigin, atTheOrigin}));
}

void InstanceBuildersTest::ringIsAsThickAsItsEdge_data()
{
    QTest::addColumn<int>("diameter");
    QTest::addColumn<int>("edgeWidth");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<float>("divisor");
    QTest::newRow("thin") << 362 << 8 << false << 22.625f;
    QTest::newRow("thick") << 543 << 10 << false << 27.15f;
    QTest::newRow("odd") << 651 << 33 << false << 9.86363636f;
    QTest::newRow("selected") << 362 << 8 << true << 22.625f;
}

void InstanceBuildersTest::ringIsAsThickAsItsEdge()
{
    QFETCH(int, diameter);
    QFETCH(int, edgeWidth);
    QFETCH(bool, selected);
    QFETCH(float, divisor);
    OneEdge one; // whose line is no ring
    EdgeData& ring = *one.scene.createEdge(12, &one.start, &one.start);
    ring.startPos = {12.5f, 400.25f};
    ring.endPos = ring.centerPos = {0.0f, 0.0f};
    ring.ringDiameter = diameter;
    ring.edgeWidth = edgeWidth;
    ring.edgeColor = {0.25f, 0.5f, 0.75f};
    if (selected)
        select(one.scene, ring);

    Four para1 = selected ? selectedColor : Four{0.25f, 0.5f, 0.75f, 0.0f};
    para1[3] = divisor;
    const auto full = static_cast<float>(diameter);
    buildEdgeRings(one.scene);
    QCOMPARE(recordsOf(one.scene.edgeRingItems), QStringList{placedRecord(12.5f, 400.25f, full, full, para1)});
}

void InstanceBuildersTest::selectedEdgesTakeTheColorOfTheScene()
{
    OneEdge one;
    EdgeData& ring = *one.scene.createEdge(12, &one.start, &one.start);
    one.scene.selectColor = {0.5f, 0.25f, 0.125f};
    showEndArrow(one.scene, one.edge);
    select(one.scene, one.edge);
    select(one.scene, ring);
    buildEverything(one.scene);
    for (const InstanceList* list : {&one.scene.edgeLineItems, &one.scene.arrowItems, &one.scene.edgeRingItems}) {
        QCOMPARE(list->count, 1);
        const Four& para1 = list->records.front().para1;
        QCOMPARE((Rgb{para1[0], para1[1], para1[2]}), (Rgb{0.5f, 0.25f, 0.125f}));
    }
}

void InstanceBuildersTest::hiddenElementsAreInNoList()
{
    Scene scene;
    fillWithOneOfEach(scene);
    for (EdgeData* edge : qAsConst(scene.edges)) {
        edge->show = false;
        select(scene, *edge);
    }
    for (NodeData* node : qAsConst(scene.nodes))
        node->show = false;
    buildEverything(scene);
    QCOMPARE(filledLists(scene), QStringList());
}

void InstanceBuildersTest::buildersFillTheirOwnListsAlone()
{
    for (const SceneBuilder& builder : sceneBuilders()) {
        Scene scene;
        fillWithOneOfEach(scene);
        builder.build(scene);
        QCOMPARE(filledLists(scene), builder.lists);
    }
}

void InstanceBuildersTest::recordsFollowTheOrderOfTheSetHoweverFarApart()
{
    Scene scene;
    for (int id = 1; id <= 200; ++id)
        addNode(scene, id, {static_cast<float>(id) * 1.0e6f, 0.0f});
    QStringList expected;
    for (const qint64 id : scene.nodes.keys())
        expected += placedRecord(static_cast<float>(id) * 1.0e6f, 0.0f, 256.0f, 256.0f);
    buildImages(scene);
    QCOMPARE(recordsOf(scene.imageItems), expected);
}

QTEST_GUILESS_MAIN(InstanceBuildersTest)

#include "InstanceBuildersTest.moc"
