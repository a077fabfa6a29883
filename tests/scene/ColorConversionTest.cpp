#include "scene/ColorConversion.h"

#include <QColor>
#include <QtTest>

using namespace NELK;

class ColorConversionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void channelsKeepTheirOrder();
    void everyChannelIsDividedBy255InSinglePrecision();
    void colorsOfOtherModelsAreReadAsRgb();
    void deepColorsAreReadInEightBits();
    void anInvalidColorIsOpaqueBlack();
};

void ColorConversionTest::channelsKeepTheirOrder()
{
    // 51, 102, 153 and 204 are fifths of 255.
    const QColor color(51, 102, 153, 204);
    QCOMPARE(colorToRgb(color), (Rgb{0.2f, 0.4f, 0.6f}));
    QCOMPARE(colorToRgba(color), (Rgba{0.2f, 0.4f, 0.6f, 0.8f}));
    QCOMPARE(colorToRgba(QColor(255, 0, 255, 0)), (Rgba{1.0f, 0.0f, 1.0f, 0.0f}));
}

void ColorConversionTest::everyChannelIsDividedBy255InSinglePrecision()
{
    for (int channel = 0; channel <= 255; ++channel) {
        // A quotient of two small integers comes out the same whether rounded to float at once or by way of double.
        const auto expected = static_cast<float>(channel / 255.0);
        QCOMPARE(colorToRgb(QColor(channel, channel, channel)), (Rgb{expected, expected, expected}));
        QCOMPARE(colorToRgba(QColor(channel, channel, channel, channel)),
                 (Rgba{expected, expected, expected, expected}));
    }
}

void ColorConversionTest::colorsOfOtherModelsAreReadAsRgb()
{
    const QColor blue = QColor::fromHsv(240, 255, 255);
    QCOMPARE(colorToRgb(blue), (Rgb{0.0f, 0.0f, 1.0f}));
    const QColor yellow = QColor::fromCmyk(0, 0, 255, 0, 51);
    QCOMPARE(colorToRgba(yellow), (Rgba{1.0f, 1.0f, 0.0f, 0.2f}));
}

void ColorConversionTest::deepColorsAreReadInEightBits()
{
    const QColor color = QColor::fromRgba64(0x3340, 0x6660, 0x99a0, 0xccc0);
    QCOMPARE(colorToRgba(color), (Rgba{0.2f, 0.4f, 0.6f, 0.8f}));
}

void ColorConversionTest::anInvalidColorIsOpaqueBlack()
{
    QCOMPARE(colorToRgba(QColor()), (Rgba{0.0f, 0.0f, 0.0f, 1.0f}));
}

QTEST_APPLESS_MAIN(ColorConversionTest)

#include "ColorConversionTest.moc"
