#pragma once

#include <QVector2D>

#include <random>

namespace NELK
{

/// Random numbers and points for tests, the same in every run. To get several in one expression, list them in braces:
/// only there their order is fixed.
class RandomPlane
{
public:
    explicit RandomPlane(unsigned seed) : m_engine(seed) {}

    /// From `low` up to `high`, both of them included.
    int whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    double number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }
    float floatNumber(double low, double high) { return static_cast<float>(number(low, high)); }
    bool coin() { return whole(0, 1) == 1; }
    /// 1 or -1.
    double sign() { return coin() ? 1.0 : -1.0; }

    /// No coordinate is farther than `reach` from the origin.
    QVector2D point(double reach)
    {
        const float x = floatNumber(-reach, reach);
        const float y = floatNumber(-reach, reach);
        return {x, y};
    }

private:
    std::mt19937 m_engine;
};

} // namespace NELK
