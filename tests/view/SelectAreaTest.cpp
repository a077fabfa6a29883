#include "view/SelectArea.h"
#include "support/Pixels.h"

#include <QImage>
#include <QPainter>
#include <QtMath>
#include <QtTest>

#include <array>
#include <vector>

using namespace NELK;

namespace
{

constexpr QRgb black = 0xff000000;
/// Where the smoothed side of a black shape meets its outline, a trace of the ground shines through.
constexpr int almostBlack = 16;
constexpr QRgb white = 0xffffffff;

/// What the overlay paints, on white.
QImage paintedOnWhite(SelectArea& area)
{
    QImage picture(area.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(white);
    area.render(&picture, {}, {}, QWidget::DrawChildren);
    return picture.convertToFormat(QImage::Format_RGB32);
}

bool isAll(const QImage& picture, QRgb color)
{
    QImage plain(picture.size(), picture.format());
    plain.fill(color);
    return picture == plain;
}

/// A straight way between two points, with what else there is to it.
struct Way
{
    QPointF from;
    QPointF to;

    double length() const { return std::hypot(to.x() - from.x(), to.y() - from.y()); }
    QPointF forward() const { return (to - from) / length(); }
    QPointF sideward() const { return {-forward().y(), forward().x()}; }
};

double distanceToSegment(QPointF point, const Way& segment)
{
    const double along = qBound(0.0, QPointF::dotProduct(point - segment.from, segment.forward()), segment.length());
    const QPointF off = point - (segment.from + along * segment.forward());
    return std::hypot(off.x(), off.y());
}

/// A narrow triangle behind its apex: the sides stand 1.23 radians off the way across, and are 12 long.
struct Head
{
    Head(QPointF tip, QPointF forward)
    {
        const double depth = 12.0 * std::sin(1.23);
        const QPointF across = 12.0 * std::cos(1.23) * QPointF(-forward.y(), forward.x());
        const QPointF apex = tip - depth * forward;
        const QPointF base = apex - depth * forward;
        corners = {apex, base + across, base - across};
    }

    /// Negative inside.
    double distance(QPointF point) const
    {
        bool isInside = true;
        double least = 1e9;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Way side{corners[i], corners[(i + 1) % corners.size()]};
            const Way toOpposite{corners[i], corners[(i + 2) % corners.size()]};
            const double turn = QPointF::dotProduct(point - side.from, side.sideward());
            isInside = isInside && turn * QPointF::dotProduct(toOpposite.forward(), side.sideward()) > 0.0;
            least = std::min(least, distanceToSegment(point, side));
        }
        return isInside ? -least : least;
    }

    std::array<QPointF, 3> corners;
};

/// What a line with its heads must look like. Between black and white a band stays open, since edges are smoothed.
class Arrow
{
public:
    Arrow(const Way& line, int arrowMode) : m_line(line)
    {
        const QPointF start = line.from + 20.0 * line.forward();
        const QPointF end = line.to - 20.0 * line.forward();
        // Where the line is short, the two have passed each other, and the heads look the other way.
        const QPointF direction = line.length() < 40.0 ? -line.forward() : line.forward();
        if (arrowMode == 1 || arrowMode == 3)
            m_heads.emplace_back(end, direction);
        if (arrowMode == 2 || arrowMode == 3)
            m_heads.emplace_back(start, -direction);
    }

    /// The first pixel that is wrong, as text; empty where there is none.
    QString fault(const QImage& picture) const
    {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QPointF point(x + 0.5, y + 0.5);
                const QRgb color = picture.pixel(x, y);
                if ((isPainted(point) && qGray(color) > almostBlack) || (isLeftOut(point) && color != white))
                    return QStringLiteral("%1 at %2,%3").arg(nameOf(color)).arg(x).arg(y);
            }
        }
        return {};
    }

private:
    bool isPainted(QPointF point) const
    {
        return std::any_of(m_heads.begin(), m_heads.end(),
                           [point](const Head& head) { return head.distance(point) < -1.0; });
    }

    bool isLeftOut(QPointF point) const
    {
        return distanceToSegment(point, m_line) > 2.0 &&
               std::all_of(m_heads.begin(), m_heads.end(),
                           [point](const Head& head) { return head.distance(point) > 2.0; });
    }

    Way m_line;
    std::vector<Head> m_heads;
};

} // namespace

/// What the overlay paints in each mode, checked against colours and shapes worked out here.
class SelectAreaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsAsARubberBand();
    void hasAStyleOnlyAsARubberBand();
    void paintsARubberBand();
    void paintsNothingForTheHand();
    void paintsADottedFrame_data();
    void paintsADottedFrame();

    void paintsALineWithItsHeads_data();
    void paintsALineWithItsHeads();
    void paintsTheMiddleOfALine();
    void paintsNoHeadsWhereTheTipsMeet();
    void paintsNoLineWithoutALength();
    void cutsTheHeadsOfALevelLine();
    void letsTheMouseThrough();

private:
    void span(QPoint from, QPoint to);

    QScopedPointer<QWidget> parent;
    SelectArea* area = nullptr;
};

void SelectAreaTest::init()
{
    parent.reset(new QWidget);
    parent->resize(400, 300);
    area = new SelectArea(parent.data());
}

void SelectAreaTest::cleanup()
{
    parent.reset();
}

/// As the view does it.
void SelectAreaTest::span(QPoint from, QPoint to)
{
    area->setP1(from);
    area->setP2(to);
    area->setGeometry(QRect(from, to).normalized());
}

void SelectAreaTest::startsAsARubberBand()
{
    QCOMPARE(area->mode(), OP_NORMAL);
    QVERIFY(!area->styleSheet().isEmpty());
}

void SelectAreaTest::hasAStyleOnlyAsARubberBand()
{
    const QString rubberBand =
        QStringLiteral("QLabel{border: 1px solid rgb(42, 127, 212);background-color: rgba(42, 127, 212, 72);}");
    for (const E_OP_MODE mode : {OP_HAND, OP_NORMAL, OP_LINE, OP_NORMAL, OP_ZOOM_FRAME, OP_NORMAL}) {
        area->setMode(mode);
        QCOMPARE(area->mode(), mode);
        QCOMPARE(area->styleSheet(), mode == OP_NORMAL ? rubberBand : QString());
    }
}

void SelectAreaTest::paintsARubberBand()
{
    // After a line, which has no style.
    area->setMode(OP_LINE);
    area->setMode(OP_NORMAL);
    span({20, 30}, {99, 79});
    const QImage picture = paintedOnWhite(*area);
    QCOMPARE(picture.size(), QSize(80, 50));

    const QRect inside(1, 1, 78, 48);
    // 72 / 255 of the colour over white.
    const QRgb fill = qRgb(195, 219, 243);
    for (int y = 0; y < 50; ++y) {
        for (int x = 0; x < 80; ++x) {
            const QRgb expected = inside.contains(x, y) ? fill : qRgb(42, 127, 212);
            QVERIFY2(difference(picture.pixel(x, y), expected) <= 1,
                     qPrintable(QStringLiteral("%1 at %2,%3").arg(nameOf(picture.pixel(x, y))).arg(x).arg(y)));
        }
    }
}

void SelectAreaTest::paintsNothingForTheHand()
{
    area->setMode(OP_HAND);
    span({20, 30}, {99, 79});
    QVERIFY(isAll(paintedOnWhite(*area), white));
}

void SelectAreaTest::paintsADottedFrame_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::newRow("down to the right") << QPoint(50, 40) << QPoint(289, 231);
    QTest::newRow("up to the right") << QPoint(50, 231) << QPoint(289, 40);
    QTest::newRow("down to the left") << QPoint(289, 40) << QPoint(50, 231);
    QTest::newRow("up to the left") << QPoint(289, 231) << QPoint(50, 40);
}

/// A dot of one pen's width, a gap of two, and both ends of the dot longer by half a pen's width. The pen is 8 wide, of
/// which 4 are inside.
void SelectAreaTest::paintsADottedFrame()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);

    area->setMode(OP_ZOOM_FRAME);
    span(from, to);
    const QImage picture = paintedOnWhite(*area);
    QCOMPARE(picture.size(), QSize(240, 192));
    for (int start = 0; start < 216; start += 24) {
        for (const int y : {0, 3}) {
            for (const int x : {0, 11, 20, 23})
                QCOMPARE(nameOf(picture.pixel(start + x, y)), nameOf(black));
            for (const int x : {12, 19})
                QCOMPARE(nameOf(picture.pixel(start + x, y)), nameOf(white));
        }
    }
    // 240 pixels later the dots start as at the other corner, downward.
    for (int start = 24; start < 168; start += 24) {
        QCOMPARE(nameOf(picture.pixel(238, start + 4)), nameOf(black));
        QCOMPARE(nameOf(picture.pixel(238, start + 16)), nameOf(white));
    }
    QVERIFY(isAll(picture.copy(5, 5, 230, 182), white));
}

void SelectAreaTest::paintsALineWithItsHeads_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<int>("arrowMode");
    const std::vector<std::pair<const char*, QPoint>> ways{{"right and down", {120, 70}},
                                                           {"left and down", {-110, 80}},
                                                           {"left and up", {-100, -90}},
                                                           {"right and up", {90, -100}},
                                                           {"right", {130, 0}},
                                                           {"left", {-130, 0}},
                                                           {"down", {0, 110}},
                                                           {"up", {0, -110}},
                                                           {"short", {21, 28}},
                                                           {"short and up", {20, -15}},
                                                           {"shorter than a tip", {6, 8}}};
    for (const auto& [name, way] : ways) {
        for (int arrowMode = 0; arrowMode <= 4; ++arrowMode)
            QTest::addRow("%s, arrow %d", name, arrowMode) << QPoint(120, 110) << QPoint(120, 110) + way << arrowMode;
    }
}

void SelectAreaTest::paintsALineWithItsHeads()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(int, arrowMode);

    area->setMode(OP_LINE);
    area->setArrowMode(arrowMode);
    span(from, to);
    // With room around, so that nothing is cut.
    area->setGeometry(20, 30, 200, 160);
    const QPoint origin(20, 30);
    const Arrow expected({from - origin, to - origin}, arrowMode);
    QCOMPARE(expected.fault(paintedOnWhite(*area)), QString());
}

void SelectAreaTest::paintsTheMiddleOfALine()
{
    area->setMode(OP_LINE);
    span({30, 40}, {130, 140});
    const QImage picture = paintedOnWhite(*area);
    QCOMPARE(picture.size(), QSize(101, 101));
    // A pixel's worth of ink in each column, smoothed over the rows beside the line.
    for (int x = 1; x < 99; ++x) {
        int ink = 0;
        for (int y = x - 1; y <= x + 1; ++y)
            ink += 255 - qGray(picture.pixel(x, y));
        QVERIFY2(qAbs(ink - 255) <= 10, qPrintable(QStringLiteral("%1 at %2").arg(ink).arg(x)));
    }
}

/// The tips of a line of twice the inset fall together, and there is no direction for a head.
void SelectAreaTest::paintsNoHeadsWhereTheTipsMeet()
{
    area->setMode(OP_LINE);
    area->setArrowMode(3);
    for (const QPoint way : {QPoint(40, 0), QPoint(0, -40), QPoint(24, 32), QPoint(-32, 24)}) {
        span({200, 150}, QPoint(200, 150) + way);
        area->setGeometry(parent->rect());
        const Arrow expected({{200, 150}, QPoint(200, 150) + way}, 0);
        QCOMPARE(expected.fault(paintedOnWhite(*area)), QString());
    }
}

void SelectAreaTest::paintsNoLineWithoutALength()
{
    area->setMode(OP_LINE);
    area->setArrowMode(3);
    span({200, 150}, {200, 150});
    QCOMPARE(area->size(), QSize(1, 1));
    QVERIFY(isAll(paintedOnWhite(*area), white));
    area->setGeometry(parent->rect());
    QVERIFY(isAll(paintedOnWhite(*area), white));
}

void SelectAreaTest::cutsTheHeadsOfALevelLine()
{
    area->setMode(OP_LINE);
    area->setArrowMode(3);
    span({100, 150}, {250, 150});
    const QImage picture = paintedOnWhite(*area);
    QCOMPARE(picture.size(), QSize(151, 1));
    for (int x = 1; x < 150; ++x)
        QVERIFY2(qGray(picture.pixel(x, 0)) < 160, qPrintable(QStringLiteral("at %1").arg(x)));
}

void SelectAreaTest::letsTheMouseThrough()
{
    span({20, 30}, {99, 79});
    area->show();
    QVERIFY(area->isVisibleTo(parent.data()));
    QCOMPARE(parent->childAt(50, 50), nullptr);
}

QTEST_MAIN(SelectAreaTest)

#include "SelectAreaTest.moc"
