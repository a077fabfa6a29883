#include "support/EveryKind.h"
#include "support/LookAt.h"
#include "support/OpenView.h"
#include "support/Pixels.h"
#include "support/PlainIcons.h"
#include "support/ReferenceFace.h"

#include <NELK/GraphScene.h>

#include <QPainter>
#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace NELK;

namespace
{

const QString white = QStringLiteral("#ffffff");
const QString red = QStringLiteral("#ff0000");
const QString green = QStringLiteral("#008000");
const QString selectionBlue = QStringLiteral("#328eff");

/// How many pixels of a row, or of a column, have a color.
int countInRow(const QImage& picture, int y, const QString& color)
{
    int count = 0;
    for (int x = 0; x < picture.width(); ++x)
        count += nameOf(picture.pixel(x, y)) == color ? 1 : 0;
    return count;
}

int countInColumn(const QImage& picture, int x, const QString& color)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        count += nameOf(picture.pixel(x, y)) == color ? 1 : 0;
    return count;
}

/// What a badge, or none, looks like at 64 by 64 pixels on a ground of one color.
QImage badgeOn(const QString& name, const QColor& ground)
{
    QImage picture(64, 64, QImage::Format_RGB32);
    picture.fill(ground);
    if (name.isEmpty())
        return picture;
    const QImage badge(QStringLiteral(":/imagetag/tools/resource-gen/icon/%1.png").arg(name));
    QPainter painter(&picture);
    painter.drawImage(0, 0, badge.scaled(64, 64, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    return picture;
}

/// The rows of a text cell as the font itself fills them, as far as the character takes them.
double coverageAt(const ReferenceFace::Glyph& glyph, int column, int row)
{
    const SGlyphMetrics& metrics = glyph.metrics;
    const int x = column - metrics.left;
    const int y = row - (60 - metrics.top);
    if (x < 0 || y < 0 || x >= metrics.width || y >= metrics.rows)
        return 0.0;
    return static_cast<uchar>(glyph.coverage.at(y * metrics.width + x)) / 255.0;
}

} // namespace

class ViewShapesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void drawsIconsAroundTheirNode();
    void putsBadgesInTheirPlaces_data();
    void putsBadgesInTheirPlaces();
    void drawsCirclesWithTheirRing();
    void drawsRingEdgesAboveTheirNode();
    void drawsArrowHeads();
    void drawsRightAnglesInThreePieces();
    void drawsParallelEdgesOnTheirTracks();
    void scalesEdgesWithTheZoom_data();
    void scalesEdgesWithTheZoom();
    void drawsFramesOfTwoPixelsAtAnyZoom_data();
    void drawsFramesOfTwoPixelsAtAnyZoom();
    void drawsThePartOfTheCellThatACharacterTakes_data();
    void drawsThePartOfTheCellThatACharacterTakes();
    void looksWhereTheCameraWentBeforeTheSetUp();

private:
    QString colorAt(double right, double up) const { return nameOf(picture.pixel(pixelAt(picture, right, up))); }

    QScopedPointer<PlainIcons> icons;
    QScopedPointer<GraphScene> graph;
    QScopedPointer<OpenView> view;
    QImage picture;
};

void ViewShapesTest::initTestCase()
{
    icons.reset(new PlainIcons({green, white}));
    graph.reset(new GraphScene);
    view.reset(new OpenView(*graph, {1000, 800}));
}

/// At scale 1 around the middle of the scene, a unit is a pixel.
void ViewShapesTest::init()
{
    lookAt(*view, {0.0, 0.0}, 1.0f);
}

void ViewShapesTest::cleanup()
{
    graph->clear();
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ViewShapesTest::cleanupTestCase()
{
    view.reset();
    graph.reset();
}

void ViewShapesTest::drawsIconsAroundTheirNode()
{
    GraphNode node = addNode(*graph, {100, -50});
    node.setImage(green, false);
    node.setSize(0.5f);
    picture = view->rebuiltPicture();
    for (const double inside : {-63.0, 0.0, 63.0}) {
        QCOMPARE(colorAt(100.0 + inside, -50.0), green);
        QCOMPARE(colorAt(100.0, -50.0 + inside), green);
    }
    for (const double outside : {-65.0, 65.0}) {
        QCOMPARE(colorAt(100.0 + outside, -50.0), white);
        QCOMPARE(colorAt(100.0, -50.0 + outside), white);
    }
}

void ViewShapesTest::putsBadgesInTheirPlaces_data()
{
    QTest::addColumn<bool>("lock");
    QTest::addColumn<bool>("focus");
    QTest::addColumn<bool>("combined");

    QTest::newRow("none") << false << false << false;
    QTest::newRow("lock") << true << false << false;
    QTest::newRow("focus") << false << true << false;
    QTest::newRow("combined") << false << false << true;
    QTest::newRow("focus and combined") << false << true << true;
    QTest::newRow("all") << true << true << true;
}

void ViewShapesTest::putsBadgesInTheirPlaces()
{
    QFETCH(bool, lock);
    QFETCH(bool, focus);
    QFETCH(bool, combined);

    GraphNode node = addNode(*graph, {0, 0});
    node.setImage(green, false);
    node.setLock(lock);
    node.setFocus(focus);
    node.setCombined(combined);
    picture = view->rebuiltPicture();

    const QString none;
    const QString inCorner = focus ? QStringLiteral("smallFocus") : combined ? QStringLiteral("ic_256_combine") : none;
    const QList<QPair<QPoint, QString>> places{
        {{-96, 96}, lock ? QStringLiteral("smallLock") : none},
        {{96, 96}, inCorner},
        {{96, 0}, focus && combined ? QStringLiteral("ic_256_combine") : none},
        {{-96, 0}, none},
        {{96, -96}, none},
    };
    for (const auto& [center, badge] : places) {
        const QPoint corner = pixelAt(picture, center.x() - 32, center.y() + 32) + QPoint(0, 1);
        const double off = meanDifference(picture.copy({corner, QSize(64, 64)}), badgeOn(badge, QColor(green)));
        // Mipmaps are not scaled as Qt scales; two badges differ by more than 30.
        QVERIFY2(
            off < 4.0,
            qPrintable(
                QStringLiteral("\"%1\" at (%2, %3) is off by %4").arg(badge).arg(center.x()).arg(center.y()).arg(off)));
    }
}

void ViewShapesTest::drawsCirclesWithTheirRing()
{
    GraphNode node = addNode(*graph, {0, 0});
    node.setImage(white, false);
    node.setCircleShow(true);
    node.setCircleColor(Qt::red);
    picture = view->rebuiltPicture();
    // The outer diameter is 362 and the ring 32 wide; within it the color shows at seven tenths.
    for (const double side : {-1.0, 1.0}) {
        QCOMPARE(colorAt(side * 183.0, 0.0), white);
        QCOMPARE(colorAt(side * 179.0, 0.0), red);
        QCOMPARE(colorAt(0.0, side * 151.0), red);
        QVERIFY(difference(QColor(colorAt(side * 147.0, 0.0)).rgb(), qRgb(255, 77, 77)) <= 1);
        QCOMPARE(colorAt(0.0, side * 120.0), white);
    }
}

void ViewShapesTest::drawsRingEdgesAboveTheirNode()
{
    const GraphNode node = addNode(*graph, {0, -200});
    GraphEdge edge = addEdge(*graph, node, node, Qt::red);
    edge.setEdgeWidth(20);
    picture = view->rebuiltPicture();
    // Of diameter 362 from the middle of the node up.
    const double middle = -200.0 + 181.0;
    QCOMPARE(colorAt(0.0, middle), white);
    for (const double side : {-1.0, 1.0}) {
        QCOMPARE(colorAt(side * 183.0, middle), white);
        QCOMPARE(colorAt(side * 179.0, middle), red);
        QCOMPARE(colorAt(side * 163.0, middle), red);
        QCOMPARE(colorAt(side * 159.0, middle), white);
    }
    QCOMPARE(colorAt(0.0, middle + 179.0), red);
    QCOMPARE(colorAt(0.0, middle + 159.0), white);
}

void ViewShapesTest::drawsArrowHeads()
{
    const GraphNode left = addNode(*graph, {-450, 0});
    const GraphNode right = addNode(*graph, {450, 0});
    GraphEdge edge = addEdge(*graph, left, right, Qt::red);
    edge.setStartArrowShow(true);
    edge.setEndArrowShow(true);
    picture = view->rebuiltPicture();
    // 98 units long around a point 179.2 units from the node, and 78.4 wide at its base; the line is 8 wide.
    const double tip = 450.0 - 179.2 + 49.0;
    for (const double side : {-1.0, 1.0}) {
        for (const double up : {-1.0, 1.0}) {
            QCOMPARE(colorAt(side * (tip - 97.0), up * 37.0), red);
            QCOMPARE(colorAt(side * (tip - 97.0), up * 41.0), white);
            QCOMPARE(colorAt(side * (tip - 100.0), up * 6.0), white);
            QCOMPARE(colorAt(side * (tip - 49.0), up * 17.0), red);
            QCOMPARE(colorAt(side * (tip - 49.0), up * 22.0), white);
            QCOMPARE(colorAt(side * tip, up * 6.0), white);
        }
    }
    edge.setStartArrowShow(false);
    picture = view->rebuiltPicture();
    QCOMPARE(colorAt(-tip + 90.0, 20.0), white);
    QCOMPARE(colorAt(tip - 90.0, 20.0), red);
}

void ViewShapesTest::drawsRightAnglesInThreePieces()
{
    GraphNode upper = addNode(*graph, {-300, 300});
    GraphNode lower = addNode(*graph, {300, -300});
    upper.setSize(0.1f);
    lower.setSize(0.1f);
    GraphEdge edge = addEdge(*graph, upper, lower, Qt::red);
    edge.setEdgeWidth(20);
    edge.setRightAngle(true);
    picture = view->rebuiltPicture();
    // Down a quarter of the way, across, and down the rest; the bends are closed.
    for (const double off : {-9.0, 0.0, 9.0}) {
        QCOMPARE(colorAt(-300.0 + off, 250.0), red);
        QCOMPARE(colorAt(0.0, 150.0 + off), red);
        QCOMPARE(colorAt(300.0 + off, 0.0), red);
    }
    QCOMPARE(colorAt(-304.0, 146.0), red);
    QCOMPARE(colorAt(304.0, 154.0), red);
    for (const double off : {-12.0, 12.0}) {
        QCOMPARE(colorAt(-300.0 + off, 250.0), white);
        QCOMPARE(colorAt(0.0, 150.0 + off), white);
        QCOMPARE(colorAt(300.0 + off, 0.0), white);
    }
    QCOMPARE(colorAt(0.0, 0.0), white);
}

void ViewShapesTest::drawsParallelEdgesOnTheirTracks()
{
    GraphNode left = addNode(*graph, {-450, 0});
    left.setSize(0.1f);
    const GraphNode right = addNode(*graph, {450, 0});
    GraphEdge edge = addEdge(*graph, left, right, Qt::red);
    GraphEdge below = graph->createEdge(edge, 1);
    below.setEdgeColor(QColor(green));
    GraphEdge above = graph->createEdge(edge, 4);
    above.setSelect(true);
    picture = view->rebuiltPicture();
    QCOMPARE(colorAt(0.0, 0.0), red);
    QCOMPARE(colorAt(0.0, -128.0), green);
    QCOMPARE(colorAt(0.0, 128.0), white);
    QCOMPARE(colorAt(0.0, 256.0), selectionBlue);
    // On the way out, half of the first 128 units.
    QCOMPARE(colorAt(-450.0 + 64.0, -64.0), green);
}

void ViewShapesTest::scalesEdgesWithTheZoom_data()
{
    QTest::addColumn<float>("scale");
    QTest::newRow("a pixel a unit") << 1.0f;
    QTest::newRow("half a pixel") << 0.5f;
    QTest::newRow("a quarter of a pixel") << 0.25f;
}

void ViewShapesTest::scalesEdgesWithTheZoom()
{
    QFETCH(float, scale);

    const GraphNode left = addNode(*graph, {-2100, 0});
    const GraphNode right = addNode(*graph, {2100, 0});
    addEdge(*graph, left, right, Qt::red).setEdgeWidth(48);
    lookAt(*view, {0.0, 0.0}, scale);
    picture = view->rebuiltPicture();
    QCOMPARE(countInColumn(picture, 500, red), qRound(48.0f * scale));
}

void ViewShapesTest::drawsFramesOfTwoPixelsAtAnyZoom_data()
{
    scalesEdgesWithTheZoom_data();
}

void ViewShapesTest::drawsFramesOfTwoPixelsAtAnyZoom()
{
    QFETCH(float, scale);

    GraphNode node = addNode(*graph, {0, 0});
    node.setImage(white, false);
    node.setSelect(true);
    lookAt(*view, {0.0, 0.0}, scale);
    picture = view->rebuiltPicture();
    // Two sides of two pixels each.
    QCOMPARE(countInRow(picture, 400, selectionBlue), 4);
    QCOMPARE(countInColumn(picture, 500, selectionBlue), 4);
    const double side = 128.0 * double{scale};
    for (const double off : {-1.0, 0.0}) {
        QCOMPARE(colorAt(side + off, 0.0), selectionBlue);
        QCOMPARE(colorAt(0.0, -side + off), selectionBlue);
    }
}

void ViewShapesTest::drawsThePartOfTheCellThatACharacterTakes_data()
{
    QTest::addColumn<QChar>("character");
    for (const char character : {'A', 'g', 'i', '@', 'M', '.', 'j'})
        QTest::addRow("%c", character) << QChar(character);
    QTest::newRow("first of the common characters") << QChar(0x4e00);
    QTest::newRow("wide") << QChar(0x8b66);
}

void ViewShapesTest::drawsThePartOfTheCellThatACharacterTakes()
{
    QFETCH(QChar, character);

    GraphNode node = addNode(*graph, {0, 0});
    node.setImage(white, false);
    node.setLabel(QString(character), {});
    node.setLabelColor(Qt::black, Qt::white);
    picture = view->rebuiltPicture();

    const ReferenceFace face(fontIn(dataHome()));
    const ReferenceFace::Glyph glyph = face.glyph(character.unicode());
    const int advance = glyph.metrics.advance;
    // The quad is half a pixel wider than the advance, and reaches a quarter of a pixel beyond it on both sides.
    const int left = 500 - advance / 2;
    const int top = 400 + 128;
    for (int row = 0; row < 76; ++row) {
        for (int column = 0; column < advance; ++column) {
            const double texel = (column + 0.75) * advance / (advance + 0.5) - 0.5;
            const int first = static_cast<int>(std::floor(texel));
            const double share = texel - first;
            const double coverage =
                (1.0 - share) * coverageAt(glyph, std::max(first, 0), row) + share * coverageAt(glyph, first + 1, row);
            const int expected = qRound(255.0 * (1.0 - coverage));
            const int seen = qGray(picture.pixel(left + column, top + row));
            QVERIFY2(
                std::abs(seen - expected) <= 3,
                qPrintable(QStringLiteral("(%1, %2): %3 instead of %4").arg(column).arg(row).arg(seen).arg(expected)));
        }
    }
    QVERIFY(countInColumn(picture, left - 2, white) == picture.height());
    QVERIFY(countInColumn(picture, left + advance + 1, white) == picture.height());
}

void ViewShapesTest::looksWhereTheCameraWentBeforeTheSetUp()
{
    GraphNode node = addNode(*graph, {1000, 500});
    node.setImage(green, false);
    OpenView newView(*graph, {400, 300});
    newView.setCameraScale(0.5f);
    newView.setCameraX(1100, false);
    newView.setCameraY(500, false);
    QVERIFY(!newView.glReady);
    picture = newView.picture();
    QCOMPARE(colorAt(-50.0, 0.0), green);
    QCOMPARE(colorAt(-50.0 - 63.0, 0.0), green);
    QCOMPARE(colorAt(-50.0 + 65.0, 0.0), white);
}

QTEST_MAIN(ViewShapesTest)

#include "ViewShapesTest.moc"
