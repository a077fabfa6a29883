#include "scene/Truncation.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace NELK;

class TruncationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsTowardZero();
    void holdsWhatIsBeyondIntToItsRange();
    void makesZeroOfNaN();
};

void TruncationTest::cutsTowardZero()
{
    QCOMPARE(truncated(2.9f), 2);
    QCOMPARE(truncated(-2.9f), -2);
    QCOMPARE(truncated(0.99999994f), 0);
    QCOMPARE(truncated(-0.0f), 0);
    QCOMPARE(truncated(16777216.0f), 16777216);
}

void TruncationTest::holdsWhatIsBeyondIntToItsRange()
{
    constexpr float beyondInt = 2147483648.0f;
    const float lastInt = std::nextafter(beyondInt, 0.0f);
    QCOMPARE(truncated(lastInt), 2147483520);
    QCOMPARE(truncated(-lastInt), -2147483520);
    QCOMPARE(truncated(beyondInt), std::numeric_limits<int>::max());
    QCOMPARE(truncated(-beyondInt), std::numeric_limits<int>::min());
    QCOMPARE(truncated(std::numeric_limits<float>::infinity()), std::numeric_limits<int>::max());
    QCOMPARE(truncated(-std::numeric_limits<float>::infinity()), std::numeric_limits<int>::min());
}

void TruncationTest::makesZeroOfNaN()
{
    QCOMPARE(truncated(std::numeric_limits<float>::quiet_NaN()), 0);
}

QTEST_APPLESS_MAIN(TruncationTest)

#include "TruncationTest.moc"
