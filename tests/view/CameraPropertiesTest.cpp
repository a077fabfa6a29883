#include "view/Camera.h"

#include <rapidcheck.h>

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <ostream>
#include <vector>

using namespace NELK;

namespace
{

/// What a camera should do, in doubles. With powers of two for scales and quarters for distances the camera's floats
/// are exact, too.
class Model
{
public:
    void setPosition(double newX, double newY)
    {
        x = newX;
        y = newY;
        if (limited)
            clampBoth();
    }
    bool moveX(double distance)
    {
        if (isRefused(distance, x, limitX()))
            return false;
        x += distance / scale;
        if (limited)
            x = std::max(-limitX(), std::min(x, limitX()));
        return true;
    }
    bool moveY(double distance)
    {
        if (isRefused(distance, y, limitY()))
            return false;
        y = std::max(-limitY(), std::min(y + distance / scale, limitY()));
        return true;
    }
    void setScale(double newScale)
    {
        if (greatest > 0.0)
            scale = std::max(least, std::min(newScale, greatest));
        if (limited)
            clampBoth();
    }
    bool zoomStep(bool in, double factor)
    {
        if (scale == (in ? greatest : least))
            return false;
        setScale(in ? scale * factor : scale / factor);
        return true;
    }
    bool zoomToRatio(double ratio)
    {
        const double target = greatest - (greatest - least) * ratio;
        if (scale == target)
            return false;
        setScale(target);
        return true;
    }
    void reset()
    {
        setScale(least);
        x = 0.0;
        y = 0.0;
    }
    bool rotate(int /*angle*/) { return false; }
    void setLimited(bool on) { limited = on; }
    void setScreenSize(int width, int height) { screen = {width, height}; }
    void setSceneSize(int width, int height) { scene = {width, height}; }
    void setScaleRange(double newLeast, double newGreatest, double /*step*/)
    {
        least = newLeast;
        greatest = newGreatest;
    }

    double limitX() const { return std::abs(scene.width() - screen.width() / scale) / 2.0; }
    double limitY() const { return std::abs(scene.height() - screen.height() / scale) / 2.0; }

    bool limited = true;
    double scale = 1.0;
    double x = 0.0;
    double y = 0.0;
    double least = 0.0;
    double greatest = 0.0;
    QSize screen{0, 0};
    QSize scene{0, 0};

private:
    static bool isRefused(double distance, double position, double limit)
    {
        if (distance > -1.0 && distance < 1.0)
            return true;
        const double wall = distance > 0.0 ? limit : -limit;
        return position > wall - 1.0 && position < wall + 1.0;
    }
    void clampBoth()
    {
        x = std::max(-limitX(), std::min(x, limitX()));
        y = std::max(-limitY(), std::min(y, limitY()));
    }
};

/// A call that camera and model both take. Its numbers are drawn from -1000 to 1000.
struct Operation
{
    template <typename Call>
    Operation(const char* callName, Call call) : name(callName), onCamera(call), onModel(call)
    {
    }

    const char* name;
    std::function<bool(Camera&, int, int)> onCamera;
    std::function<bool(Model&, int, int)> onModel;
};

float powerOfTwo(int number, int most)
{
    return std::ldexp(1.0f, number % (most + 1));
}

float fraction(int number)
{
    return static_cast<float>(number) * 0.25f;
}

int sizeOf(int number)
{
    return 100 + std::abs(number) * 10;
}

const std::vector<Operation> operations{
    {"setPosition", [](auto& c, int a, int b) { return c.setPosition(fraction(a * 16), fraction(b * 16)), true; }},
    {"moveX", [](auto& c, int a, int) { return c.moveX(fraction(a)); }},
    {"moveY", [](auto& c, int a, int) { return c.moveY(fraction(a)); }},
    {"moveX by little", [](auto& c, int a, int) { return c.moveX(fraction(a % 5)); }},
    {"moveY by little", [](auto& c, int a, int) { return c.moveY(fraction(a % 5)); }},
    {"setScale", [](auto& c, int a, int) { return c.setScale(powerOfTwo(a, 4)), true; }},
    {"zoomStep", [](auto& c, int a, int) { return c.zoomStep(a > 0, 2.0f); }},
    {"zoomToRatio", [](auto& c, int a, int) { return c.zoomToRatio(a > 0 ? 1.0f : 0.0f); }},
    {"reset", [](auto& c, int, int) { return c.reset(), true; }},
    {"rotate", [](auto& c, int a, int) { return c.rotate(a); }},
    {"setLimited", [](auto& c, int a, int) { return c.setLimited(a > 0), true; }},
    {"setScreenSize", [](auto& c, int a, int b) { return c.setScreenSize(sizeOf(a), sizeOf(b)), true; }},
    {"setSceneSize", [](auto& c, int a, int b) { return c.setSceneSize(sizeOf(a), sizeOf(b)), true; }},
    {"setScaleRange",
     [](auto& c, int a, int b) {
         return c.setScaleRange(powerOfTwo(-std::abs(a), 3), powerOfTwo(std::abs(b), 3), 0.125f), true;
     }},
};

struct Step
{
    const Operation* operation;
    int a;
    int b;
};

std::ostream& operator<<(std::ostream& stream, const Step& step)
{
    return stream << step.operation->name << " with " << step.a << ", " << step.b;
}

rc::Gen<std::vector<Step>> anySteps()
{
    const auto number = rc::gen::inRange(-1000, 1001);
    const auto step = rc::gen::apply(
        [](std::size_t index, int a, int b) {
            return Step{&operations[index], a, b};
        },
        rc::gen::inRange(std::size_t{0}, operations.size()), number, number);
    constexpr int mostSteps = 50;
    // Only the number of steps follows the size.
    return rc::gen::resize(mostSteps, rc::gen::container<std::vector<Step>>(rc::gen::resize(rc::kNominalSize, step)));
}

void assertAlike(const Camera& camera, const Model& model)
{
    RC_ASSERT(double{camera.scale()} == model.scale);
    RC_ASSERT(double{camera.position().x()} == model.x);
    RC_ASSERT(double{camera.position().y()} == model.y);
    RC_ASSERT(double{camera.limitX()} == model.limitX());
    RC_ASSERT(double{camera.limitY()} == model.limitY());
    RC_ASSERT(double{camera.maxScale()} == model.greatest);
}

} // namespace

class CameraPropertiesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void behavesLikeItsModel();
};

void CameraPropertiesTest::initTestCase()
{
    // The same sequences in each run, unless the environment asks for others.
    if (!qEnvironmentVariableIsSet("RC_PARAMS"))
        qputenv("RC_PARAMS", "seed=1 max_success=2000");
}

void CameraPropertiesTest::behavesLikeItsModel()
{
    QVERIFY(rc::check("a camera behaves like its model", [] {
        const std::vector<Step> steps = *anySteps();
        Camera camera;
        Model model;
        for (const Step& step : steps) {
            RC_ASSERT(step.operation->onCamera(camera, step.a, step.b) ==
                      step.operation->onModel(model, step.a, step.b));
            assertAlike(camera, model);
        }
    }));
}

QTEST_APPLESS_MAIN(CameraPropertiesTest)

#include "CameraPropertiesTest.moc"
