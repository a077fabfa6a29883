#include "support/OpenView.h"
#include "support/SmallNetwork.h"

#include <QtTest>

#include <cmath>
#include <memory>

using namespace NELK;

/// A view on a display with more pixels than Qt counts; how many, the environment tells.
class DeviceRatioTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void hasAPixelForEachOfTheDisplay();
    void putsElementsWhereTheySat_data();
    void putsElementsWhereTheySat();
    void drawsSharpEdges();
    void mapsPixelsOfTheWidget();

private:
    QColor shownAt(QPointF scenePoint) const;

    double m_ratio = 1.0;
    std::unique_ptr<SmallNetwork> m_network;
    std::unique_ptr<OpenView> m_view;
    QImage m_picture;
};

namespace
{

const QSize size(400, 300);
const QPointF middle(200, 150);

} // namespace

void DeviceRatioTest::initTestCase()
{
    const QByteArray told = qgetenv("QT_SCALE_FACTOR");
    m_ratio = told.isEmpty() ? 1.0 : told.toDouble();
    m_network = std::make_unique<SmallNetwork>();
    m_view = std::make_unique<OpenView>(m_network->graph, size);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QCOMPARE(m_view->devicePixelRatioF(), m_ratio);
    m_picture = m_view->picture();
}

void DeviceRatioTest::cleanup()
{
    QCOMPARE(m_view->takeErrors(), {});
}

void DeviceRatioTest::cleanupTestCase()
{
    m_view.reset();
    m_network.reset();
}

/// The colour of the display's pixel on which a scene point lies.
QColor DeviceRatioTest::shownAt(QPointF scenePoint) const
{
    const double x = (middle.x() + scenePoint.x()) * m_ratio;
    const double y = (middle.y() - scenePoint.y()) * m_ratio;
    return m_picture.pixelColor(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
}

void DeviceRatioTest::hasAPixelForEachOfTheDisplay()
{
    QCOMPARE(m_view->size(), size);
    QCOMPARE(m_picture.size(), QSize(qRound(size.width() * m_ratio), qRound(size.height() * m_ratio)));
}

void DeviceRatioTest::putsElementsWhereTheySat_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QColor>("color");

    const QColor white(Qt::white);
    const QColor red(Qt::red);
    const QColor frame(50, 142, 255);
    const double half = SmallNetwork::frameHalf;
    const double x = SmallNetwork::nodeX;
    QTest::newRow("middle of the edge") << QPointF(0, 0) << red;
    QTest::newRow("upper side of the edge") << QPointF(0, SmallNetwork::edgeHalf - 1) << red;
    QTest::newRow("lower side of the edge") << QPointF(0, 1 - SmallNetwork::edgeHalf) << red;
    QTest::newRow("above the edge") << QPointF(0, SmallNetwork::edgeHalf + 2) << white;
    QTest::newRow("below the edge") << QPointF(0, -2 - SmallNetwork::edgeHalf) << white;
    QTest::newRow("left side of the frame") << QPointF(x - half, 20) << frame;
    QTest::newRow("right side of the frame") << QPointF(x + half, 20) << frame;
    QTest::newRow("upper side of the frame") << QPointF(x, half) << frame;
    QTest::newRow("lower side of the frame") << QPointF(x, -half) << frame;
    QTest::newRow("left of the frame") << QPointF(x - half - 3, 20) << white;
    QTest::newRow("in the frame") << QPointF(x + half - 3, 20) << white;
    QTest::newRow("disc") << QPointF(-x, 40) << QColor(Qt::blue);
    QTest::newRow("corner") << QPointF(-199, 149) << white;
    QTest::newRow("other corner") << QPointF(199, -149) << white;
}

void DeviceRatioTest::putsElementsWhereTheySat()
{
    QFETCH(QPointF, point);
    QTEST(shownAt(point), "color");
}

/// The edge is as many pixels of the display high as it should be, with nothing between red and white.
void DeviceRatioTest::drawsSharpEdges()
{
    int red = 0;
    int other = 0;
    for (int y = 0; y < m_picture.height(); ++y) {
        const QColor color = m_picture.pixelColor(m_picture.width() / 2, y);
        red += color == QColor(Qt::red) ? 1 : 0;
        other += color == QColor(Qt::red) || color == QColor(Qt::white) ? 0 : 1;
    }
    QCOMPARE(red, qRound(2 * SmallNetwork::edgeHalf * m_ratio));
    QCOMPARE(other, 0);
}

void DeviceRatioTest::mapsPixelsOfTheWidget()
{
    QCOMPARE(m_view->sceneToView(QPoint(SmallNetwork::nodeX, 0)), QPoint(300, 150));
    QCOMPARE(m_view->viewToScene(QPoint(100, 110)), QPoint(-SmallNetwork::nodeX, 40));
}

QTEST_MAIN(DeviceRatioTest)

#include "DeviceRatioTest.moc"
