#include "view/TriangleWidget.h"

#include <QImage>
#include <QSignalSpy>
#include <QtTest>

#include <array>

using namespace NELK;

namespace
{

enum class Side
{
    Inside,
    Outside,
    OnTheEdge
};

using Corners = std::array<QPointF, 3>;

/// Positive on one side of the line through two points, negative on the other.
double sideOfLine(QPointF a, QPointF b, QPointF point)
{
    return (b.x() - a.x()) * (point.y() - a.y()) - (b.y() - a.y()) * (point.x() - a.x());
}

/// Where a whole pixel lies.
Side sideOf(QPoint pixel, const Corners& corners)
{
    bool isInside = true;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const QPointF a = corners[i];
        const QPointF b = corners[(i + 1) % 3];
        const double inward = sideOfLine(a, b, corners[(i + 2) % 3]);
        double least = 0.0;
        double greatest = 0.0;
        for (const QPoint corner : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
            const double side = inward * sideOfLine(a, b, pixel + corner);
            least = std::min(least, side);
            greatest = std::max(greatest, side);
        }
        if (greatest == 0.0)
            return Side::Outside;
        isInside = isInside && least == 0.0;
    }
    return isInside ? Side::Inside : Side::OnTheEdge;
}

Corners cornersOf(QSize size, bool on)
{
    const QPointF third = on ? QPointF(0, 0) : QPointF(size.width(), size.height());
    return {QPointF(0, size.width()), QPointF(size.height(), 0), third};
}

QString pathOf(bool on, bool hover)
{
    return QStringLiteral(":/icon/toolkits/ic_%1%2.png")
        .arg(on ? QStringLiteral("fold") : QStringLiteral("expand"), hover ? QStringLiteral("_hover") : QString());
}

QImage picture(bool on, bool hover)
{
    return QImage(pathOf(on, hover)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QString nameOf(QRgb color)
{
    return QColor::fromRgba(color).name(QColor::HexArgb);
}

QImage paintedBy(TriangleWidget& button)
{
    QImage picture(button.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    // The corner of what is painted goes to the point that is told.
    button.render(&picture, button.mask().intersected(button.rect()).boundingRect().topLeft(), {},
                  QWidget::DrawChildren);
    return picture;
}

} // namespace

class TriangleWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsOn();
    void wantsItsSquare();
    void takesHalfOfItsSquare_data();
    void takesHalfOfItsSquare();
    void letsTheMouseThroughInTheOtherHalf();
    void hasFourPictures();
    void showsItsPicture_data();
    void showsItsPicture();
    void turnsOverWithEachPress_data();
    void turnsOverWithEachPress();
    void showsThePlainPictureAfterAPress();
    void isSetOnAndOff();

private:
    QString shownPicture();
    void send(QEvent::Type type);

    QScopedPointer<QWidget> parent;
    TriangleWidget* button = nullptr;
};

void TriangleWidgetTest::init()
{
    parent.reset(new QWidget);
    parent->resize(200, 200);
    button = new TriangleWidget(parent.data());
    button->setGeometry(50, 60, 28, 28);
    parent->show();
    QVERIFY(QTest::qWaitForWindowExposed(parent.data()));
    send(QEvent::Leave); // wherever the cursor is
}

void TriangleWidgetTest::cleanup()
{
    parent.reset();
}

/// The path of the picture that fills the button; empty if it is none of the four.
QString TriangleWidgetTest::shownPicture()
{
    const QImage painted = paintedBy(*button);
    for (const bool on : {false, true}) {
        for (const bool hover : {false, true}) {
            const QImage expected = picture(on, hover);
            bool isSame = true;
            for (int y = 0; y < 28; ++y) {
                for (int x = 0; x < 28; ++x) {
                    if (sideOf({x, y}, cornersOf({28, 28}, on)) == Side::Inside)
                        isSame = isSame && painted.pixel(x, y) == expected.pixel(x, y);
                }
            }
            if (isSame)
                return pathOf(on, hover);
        }
    }
    return {};
}

void TriangleWidgetTest::send(QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(button, &event);
}

void TriangleWidgetTest::startsOn()
{
    QCOMPARE(shownPicture(), pathOf(true, false));
    QVERIFY(button->hasMouseTracking());
    QVERIFY(button->testAttribute(Qt::WA_TranslucentBackground));
}

void TriangleWidgetTest::wantsItsSquare()
{
    QCOMPARE(button->sizeHint(), QSize(28, 28));
}

void TriangleWidgetTest::takesHalfOfItsSquare_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("on");
    for (const QSize size : {QSize(28, 28), QSize(10, 10), QSize(61, 61), QSize(40, 20), QSize(20, 40)}) {
        for (const bool on : {true, false})
            QTest::addRow("%d by %d, %s", size.width(), size.height(), on ? "on" : "off") << size << on;
    }
}

/// In what it paints and in where it takes the mouse, both after a resize and after it was turned over.
void TriangleWidgetTest::takesHalfOfItsSquare()
{
    QFETCH(QSize, size);
    QFETCH(bool, on);

    button->setOn(!on);
    button->resize(size);
    button->setOn(on);
    const QImage tile = picture(on, false);
    for (int resizes = 0; resizes < 2; ++resizes) {
        const QImage painted = paintedBy(*button);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const Side side = sideOf({x, y}, cornersOf(size, on));
                if (side == Side::OnTheEdge)
                    continue;
                QCOMPARE(button->mask().contains({x, y}), side == Side::Inside);
                const QRgb expected = side == Side::Inside ? tile.pixel(x % 28, y % 28) : 0;
                QCOMPARE(nameOf(painted.pixel(x, y)), nameOf(expected));
            }
        }
        button->resize(1, 1);
        button->resize(size);
    }
}

void TriangleWidgetTest::letsTheMouseThroughInTheOtherHalf()
{
    QCOMPARE(parent->childAt(50 + 5, 60 + 5), button);
    QCOMPARE(parent->childAt(50 + 23, 60 + 23), nullptr);
    button->setOn(false);
    QCOMPARE(parent->childAt(50 + 5, 60 + 5), nullptr);
    QCOMPARE(parent->childAt(50 + 23, 60 + 23), button);
}

void TriangleWidgetTest::hasFourPictures()
{
    QList<QImage> pictures;
    for (const bool on : {false, true}) {
        for (const bool hover : {false, true}) {
            QCOMPARE(picture(on, hover).size(), QSize(28, 28));
            QVERIFY(!pictures.contains(picture(on, hover)));
            pictures.append(picture(on, hover));
        }
    }
}

void TriangleWidgetTest::showsItsPicture_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("hover");
    QTest::newRow("on") << true << false;
    QTest::newRow("on, under the cursor") << true << true;
    QTest::newRow("off") << false << false;
    QTest::newRow("off, under the cursor") << false << true;
}

void TriangleWidgetTest::showsItsPicture()
{
    QFETCH(bool, on);
    QFETCH(bool, hover);

    button->setOn(on);
    send(QEvent::Enter);
    QCOMPARE(shownPicture(), pathOf(on, true));
    if (!hover)
        send(QEvent::Leave);
    QCOMPARE(shownPicture(), pathOf(on, hover));
}

void TriangleWidgetTest::turnsOverWithEachPress_data()
{
    QTest::addColumn<int>("mouseButton");
    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
}

void TriangleWidgetTest::turnsOverWithEachPress()
{
    QFETCH(int, mouseButton);
    const auto pressed = Qt::MouseButton(mouseButton);

    QSignalSpy states(button, SIGNAL(signalOn(bool)));
    for (const bool on : {false, true, false}) {
        QTest::mousePress(button, pressed);
        QCOMPARE(states.count(), 1);
        QCOMPARE(states.takeFirst().first().toBool(), on);
        QCOMPARE(shownPicture(), pathOf(on, false));
        QCOMPARE(button->mask().contains({2, 2}), on);
        QTest::mouseRelease(button, pressed);
        QVERIFY(states.isEmpty());
    }
}

void TriangleWidgetTest::showsThePlainPictureAfterAPress()
{
    send(QEvent::Enter);
    QTest::mousePress(button, Qt::LeftButton);
    QCOMPARE(shownPicture(), pathOf(false, false));
    QTest::mouseRelease(button, Qt::LeftButton);
    QCOMPARE(shownPicture(), pathOf(false, false));
    send(QEvent::Leave);
    send(QEvent::Enter);
    QCOMPARE(shownPicture(), pathOf(false, true));
}

void TriangleWidgetTest::isSetOnAndOff()
{
    QSignalSpy states(button, SIGNAL(signalOn(bool)));
    for (const bool on : {true, false, false, true}) {
        send(QEvent::Enter);
        button->setOn(on);
        QCOMPARE(states.count(), 1);
        QCOMPARE(states.takeFirst().first().toBool(), on);
        QCOMPARE(shownPicture(), pathOf(on, false));
    }
}

QTEST_MAIN(TriangleWidgetTest)

#include "TriangleWidgetTest.moc"
