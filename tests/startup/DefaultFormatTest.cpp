#include "startup/ContextFormat.h"
#include "support/OpenView.h"
#include "support/SmallNetwork.h"

#include <QApplication>
#include <QSet>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace NELK;

/// A view in a process whose host has set a default format before it made its application; which one, the environment
/// tells.
class DefaultFormatTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void isServed();
    void drawsWhatTheSceneHolds();
    void drawsFramesOfTheirWidth();
    void smoothsRims();
    void servesASecondView();

private:
    std::unique_ptr<SmallNetwork> m_network;
    std::unique_ptr<OpenView> m_view;
};

namespace
{

const QSize size(400, 300);
constexpr int middleX = 200;
constexpr int middleY = 150;

/// "core 3.3", say, or "samples 0", "sharing", "debug"; any number of them with commas between.
void setDefaultFormat(const QString& description)
{
    QSurfaceFormat format;
    for (const QString& part : description.split(QStringLiteral(", "), Qt::SkipEmptyParts)) {
        const QString key = part.section(' ', 0, 0);
        const QString value = part.section(' ', 1);
        if (key == "sharing") {
            QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
        } else if (key == "debug") {
            format.setOption(QSurfaceFormat::DebugContext);
        } else if (key == "samples") {
            format.setSamples(value.toInt());
        } else {
            format.setProfile(key == "core" ? QSurfaceFormat::CoreProfile : QSurfaceFormat::CompatibilityProfile);
            format.setVersion(value.section('.', 0, 0).toInt(), value.section('.', 1).toInt());
        }
    }
    QSurfaceFormat::setDefaultFormat(format);
}

/// Whether the environment says that the driver forbids wide lines.
bool allowsWideLines()
{
    return !qgetenv("MESA_GL_VERSION_OVERRIDE").endsWith("FC");
}

/// How many pixels of a line of pixels are covered by the frame, parts of them included.
double frameCoverage(const QList<QColor>& pixels)
{
    const QColor frame(50, 142, 255); // 0.196, 0.557 and 1
    double covered = 0.0;
    for (const QColor& pixel : pixels)
        covered += double(255 - pixel.red()) / (255 - frame.red());
    return covered;
}

} // namespace

void DefaultFormatTest::initTestCase()
{
    m_network = std::make_unique<SmallNetwork>();
    m_view = std::make_unique<OpenView>(m_network->graph, size);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void DefaultFormatTest::cleanup()
{
    QCOMPARE(m_view->takeErrors(), {});
}

void DefaultFormatTest::cleanupTestCase()
{
    m_view.reset();
    m_network.reset();
}

void DefaultFormatTest::isServed()
{
    QVERIFY(m_view->glReady);
    m_view->picture();
    QVERIFY(hasCoreFunctions(m_view->format()));
    QVERIFY((m_view->context()->format().version() >= qMakePair(3, 3)));
}

void DefaultFormatTest::drawsWhatTheSceneHolds()
{
    const QImage picture = m_view->picture();
    QCOMPARE(picture.size(), size);
    QCOMPARE(picture.pixelColor(middleX, middleY), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(middleX, middleY + 20), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(5, 5), QColor(Qt::white));
    // In the ring of the disc.
    QCOMPARE(picture.pixelColor(middleX - SmallNetwork::nodeX - 40, middleY), QColor(Qt::blue));
}

void DefaultFormatTest::drawsFramesOfTheirWidth()
{
    const QImage picture = m_view->picture();
    const double width = allowsWideLines() ? 2.0 : 1.0;
    const int frameX = middleX + SmallNetwork::nodeX;
    QList<QColor> left;
    QList<QColor> top;
    for (int away = -5; away < 5; ++away) {
        left.append(picture.pixelColor(frameX - SmallNetwork::frameHalf + away, middleY - 16));
        top.append(picture.pixelColor(frameX + 10, middleY - SmallNetwork::frameHalf + away));
    }
    QVERIFY2(std::abs(frameCoverage(left) - width) < 0.1, qPrintable(QString::number(frameCoverage(left))));
    QVERIFY2(std::abs(frameCoverage(top) - width) < 0.1, qPrintable(QString::number(frameCoverage(top))));
}

/// The host's own samples make no difference.
void DefaultFormatTest::smoothsRims()
{
    const QImage picture = m_view->picture();
    QSet<QRgb> blues;
    for (int y = 0; y < size.height(); ++y) {
        // Right of the disc's middle is the edge.
        for (int x = 0; x < middleX - SmallNetwork::nodeX; ++x)
            blues.insert(picture.pixel(x, y));
    }
    QVERIFY2(blues.size() > 4, qPrintable(QString::number(blues.size())));
}

void DefaultFormatTest::servesASecondView()
{
    const QImage picture = m_view->picture();
    OpenView second(m_network->graph, size);
    second.show();
    QVERIFY(QTest::qWaitForWindowExposed(&second));
    QCOMPARE(second.picture(), picture);
    QCOMPARE(second.takeErrors(), {});
    QCOMPARE(m_view->picture(), picture);
}

int main(int argc, char* argv[])
{
    setDefaultFormat(qEnvironmentVariable("NELK_TEST_DEFAULT_FORMAT"));
    const QApplication application(argc, argv);
    DefaultFormatTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "DefaultFormatTest.moc"
