#include "scene/Mat4.h"

#include "support/MatrixText.h"
#include "support/RandomPlane.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <type_traits>

using namespace NELK;

namespace
{

using Numbers = std::array<double, 16>;

/// No two elements alike and no row or column trivial, so that nothing can hide behind an identity.
const Mat4 counting{
    glm::mat4(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 9.0f, 10.0f, 11.0f, 12.0f, 13.0f, 14.0f, 15.0f, 16.0f)};

/// The product of `left` with `right`, both column after column.
Numbers product(const Mat4& left, const Numbers& right)
{
    Numbers result{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t i = 0; i < 4; ++i)
                result[column * 4 + row] += double{left.data()[i * 4 + row]} * right[column * 4 + i];
        }
    }
    return result;
}

/// The turn by `angle` about an axis of length 1, after Rodrigues: where it takes each of the three axes of space.
Numbers turn(double angle, const std::array<double, 3>& axis)
{
    Numbers result{};
    result[15] = 1.0;
    for (std::size_t column = 0; column < 3; ++column) {
        const std::size_t next = (column + 1) % 3;
        const std::size_t last = (column + 2) % 3;
        for (std::size_t row = 0; row < 3; ++row)
            result[column * 4 + row] = axis[row] * axis[column] * (1.0 - std::cos(angle));
        result[column * 4 + column] += std::cos(angle);
        result[column * 4 + next] += axis[last] * std::sin(angle);
        result[column * 4 + last] -= axis[next] * std::sin(angle);
    }
    return result;
}

double largestDifference(const Mat4& actual, const Numbers& expected)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < expected.size(); ++i)
        largest = std::max(largest, std::abs(double{actual.data()[i]} - expected[i]));
    return largest;
}

/// Whether a column of `matrix` is, but for rounding, a column of `counting` times `sign`.
bool columnIs(const Mat4& matrix, int column, int source, float sign)
{
    for (int row = 0; row < 4; ++row) {
        const float expected = sign * counting.data()[source * 4 + row];
        if (!(std::abs(matrix.data()[column * 4 + row] - expected) < 1e-5f))
            return false;
    }
    return true;
}

} // namespace

class Mat4Test : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isTheIdentityUnlessToldOtherwise();
    void storesSixteenFloatsColumnAfterColumn();
    void translatesOnTheRight();
    void scalesOnTheRight();
    void rotatesOnTheRight_data();
    void rotatesOnTheRight();
    void takesAnAxisOfAnyLength();
    void rotatesLikeRodriguesAboutAnyAxis();
    void readsSequencesInTheOrderWritten();
    void leavesItsArgumentAlone();
    void tellsMatricesApartByEveryElement();
};

void Mat4Test::isTheIdentityUnlessToldOtherwise()
{
    const Mat4 matrix;
    for (int i = 0; i < 16; ++i)
        QVERIFY(matrix.data()[i] == (i % 5 == 0 ? 1.0f : 0.0f));
}

void Mat4Test::storesSixteenFloatsColumnAfterColumn()
{
    // Instance records are uploaded as they lie in memory.
    static_assert(sizeof(Mat4) == 16 * sizeof(float));
    static_assert(std::is_trivially_copyable_v<Mat4>);

    QCOMPARE(static_cast<const void*>(counting.data()), static_cast<const void*>(&counting));
    for (int i = 0; i < 16; ++i)
        QVERIFY(counting.data()[i] == static_cast<float>(i + 1));

    const Mat4 moved = translate({}, {5.0f, 6.0f, 7.0f});
    QVERIFY(moved.data()[12] == 5.0f);
    QVERIFY(moved.data()[13] == 6.0f);
    QVERIFY(moved.data()[14] == 7.0f);
    QVERIFY(moved.data()[3] == 0.0f);
}

void Mat4Test::translatesOnTheRight()
{
    // The last column becomes 2 x first + 3 x second + 5 x third + last.
    const Mat4 expected{glm::mat4(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 9.0f, 10.0f, 11.0f, 12.0f, 75.0f,
                                  86.0f, 97.0f, 108.0f)};
    QCOMPARE(translate(counting, {2.0f, 3.0f, 5.0f}), expected);
    QCOMPARE(translate(counting, {0.0f, 0.0f, 0.0f}), counting);
}

void Mat4Test::scalesOnTheRight()
{
    const Mat4 expected{glm::mat4(2.0f, 4.0f, 6.0f, 8.0f, 15.0f, 18.0f, 21.0f, 24.0f, -45.0f, -50.0f, -55.0f, -60.0f,
                                  13.0f, 14.0f, 15.0f, 16.0f)};
    QCOMPARE(scale(counting, {2.0f, 3.0f, -5.0f}), expected);
    QCOMPARE(scale(counting, {1.0f, 1.0f, 1.0f}), counting);
}

void Mat4Test::rotatesOnTheRight_data()
{
    QTest::addColumn<int>("axis");
    // A quarter turn takes the first of these axes to the second, and the second to the first's negative.
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");

    QTest::newRow("about x, from y to z") << 0 << 1 << 2;
    QTest::newRow("about y, from z to x") << 1 << 2 << 0;
    QTest::newRow("about z, from x to y") << 2 << 0 << 1;
}

void Mat4Test::rotatesOnTheRight()
{
    QFETCH(int, axis);
    QFETCH(int, from);
    QFETCH(int, to);

    glm::vec3 axisVector(0.0f);
    axisVector[axis] = 1.0f;
    const Mat4 turned = rotate(counting, 1.5707964f, axisVector);

    QVERIFY(columnIs(turned, from, to, 1.0f));
    QVERIFY(columnIs(turned, to, from, -1.0f));
    QVERIFY(columnIs(turned, axis, axis, 1.0f));
    QVERIFY(columnIs(turned, 3, 3, 1.0f));
}

void Mat4Test::takesAnAxisOfAnyLength()
{
    const Mat4 expected = rotate(counting, 0.75f, {0.0f, 0.0f, 1.0f});
    QCOMPARE(rotate(counting, 0.75f, {0.0f, 0.0f, 4.0f}), expected);
    QCOMPARE(rotate(counting, 0.75f, {0.0f, 0.0f, 0.25f}), expected);
}

void Mat4Test::rotatesLikeRodriguesAboutAnyAxis()
{
    RandomPlane random(20);
    for (int i = 0; i < 2000; ++i) {
        const float angle = random.floatNumber(-7.0, 7.0);
        const QVector2D xy = random.point(9.0);
        const float z = random.floatNumber(0.1, 9.0);
        const double length = std::hypot(double{xy.x()}, double{xy.y()}, double{z});
        const Numbers expected = product(counting, turn(angle, {xy.x() / length, xy.y() / length, z / length}));

        // Three products with elements up to 12, each a few float steps off.
        QVERIFY(largestDifference(rotate(counting, angle, {xy.x(), xy.y(), z}), expected) < 1e-5);
    }
}

void Mat4Test::readsSequencesInTheOrderWritten()
{
    const Mat4 translatedFirst = scale(translate({}, {10.0f, 20.0f, 0.0f}), {2.0f, 3.0f, 1.0f});
    QCOMPARE(translatedFirst, (Mat4{glm::mat4(2.0f, 0.0f, 0.0f, 0.0f, 0.0f, 3.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f,
                                              10.0f, 20.0f, 0.0f, 1.0f)}));

    const Mat4 scaledFirst = translate(scale({}, {2.0f, 3.0f, 1.0f}), {10.0f, 20.0f, 0.0f});
    QCOMPARE(scaledFirst, (Mat4{glm::mat4(2.0f, 0.0f, 0.0f, 0.0f, 0.0f, 3.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 20.0f,
                                          60.0f, 0.0f, 1.0f)}));
}

void Mat4Test::leavesItsArgumentAlone()
{
    const Mat4 before = counting;
    translate(counting, {1.0f, 2.0f, 3.0f});
    scale(counting, {4.0f, 5.0f, 6.0f});
    rotate(counting, 1.0f, {0.0f, 0.0f, 1.0f});
    QCOMPARE(counting, before);
}

void Mat4Test::tellsMatricesApartByEveryElement()
{
    QVERIFY(counting == Mat4{counting});
    QVERIFY(!(counting != Mat4{counting}));
    for (int i = 0; i < 16; ++i) {
        Mat4 other = counting;
        other.columns[i / 4][i % 4] += 0.5f;
        QVERIFY(!(counting == other));
        QVERIFY(counting != other);
    }
}

QTEST_APPLESS_MAIN(Mat4Test)

#include "Mat4Test.moc"
