#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

namespace
{

using KesraTest::TestDraggedArea;
using KesraTest::TestFont;
using KesraTest::TestLight;
using Color = KesraMathKit::TKesraGenColor<unsigned char>;
using Vector = KesraMathKit::TKesraVector3<double>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

// Every field of a light that its getters and the backend read.
auto State(const TestLight& l)
{
    return std::make_tuple(l.GetName(), l.GetIntensity(), l.GetExponent(), l.GetConeAngle(), l.GetSwitch(),
                           l.GetLightType(), l.GetPosition(), l.GetFocalPoint(), l.GetAttenuationValues(),
                           l.GetColor(), l.BackendSlot());
}

TEST(LightTest, Defaults)
{
    const TestLight light;
    EXPECT_EQ(State(light), std::make_tuple(std::string("Default"), 1.0f, 1.0f, 180.0f, 1, 0, Vector(0, 0, 0),
                                            Vector(0, 0, -1), Vector(1, 0, 0), Color(255, 255, 255, 0), -1));
}

TEST(LightTest, IntensityOutsideZeroToOneIsIgnored)
{
    TestLight light;
    light.SetIntensity(0.0f);
    EXPECT_EQ(light.GetIntensity(), 0.0f);
    light.SetIntensity(0.4f);
    for (const float refused : {1.5f, -0.1f, 1.0000001f, -1e-7f, kNaN, kInf})
    {
        light.SetIntensity(refused);
        EXPECT_EQ(light.GetIntensity(), 0.4f) << refused;
    }
    light.SetIntensity(1.0f);
    EXPECT_EQ(light.GetIntensity(), 1.0f);
}

TEST(LightTest, ExponentAndConeAngleAreClampedAtInclusiveBounds)
{
    // Each value in, and what the exponent and the cone angle become.
    const std::tuple<float, float, float> cases[] = {
        {-3.0f, 0.0f, 0.0f},      {0.0f, 0.0f, 0.0f},       {45.0f, 45.0f, 45.0f},
        {128.0f, 128.0f, 128.0f}, {150.0f, 128.0f, 150.0f}, {180.0f, 128.0f, 180.0f},
        {270.0f, 128.0f, 180.0f}, {-kInf, 0.0f, 0.0f},
        {kNaN, 1.0f, 180.0f}, // NaN lies in no range: ignored, the defaults stay
    };
    for (const auto& [in, exponent, coneAngle] : cases)
    {
        TestLight light;
        light.SetExponent(in);
        light.SetConeAngle(in);
        EXPECT_EQ(light.GetExponent(), exponent) << in;
        EXPECT_EQ(light.GetConeAngle(), coneAngle) << in;
    }
}

TEST(LightTest, SwitchTypeAndAttenuation)
{
    TestLight light;
    light.SetSwitch(-5);
    EXPECT_EQ(light.GetSwitch(), 1);
    light.SetLightType(2);
    EXPECT_EQ(light.GetLightType(), 2);
    light.SetLightType(3);
    EXPECT_EQ(light.GetLightType(), 0);
    light.SetLightType(1);
    light.SetLightType(-1);
    EXPECT_EQ(light.GetLightType(), 0);

    light.SetAttenuationValues(0.5f, 0.25f, 0.1f); // widened, not re-rounded
    EXPECT_EQ(light.GetAttenuationValues(), Vector(0.5, 0.25, static_cast<double>(0.1f)));
}

TEST(LightTest, CopiesCarryEveryFieldIncludingBackendSlot)
{
    // A backend that claims a slot, as a real one does for its light number.
    class SlottedLight : public TestLight
    {
    public:
        explicit SlottedLight(int slot) { m_backendSlot = slot; }
    };
    SlottedLight source(3);
    source.SetName("Key");
    source.SetConeAngle(30.0f);
    source.SetColor(Color(9, 8, 7, 6));
    const auto before = State(source);

    SlottedLight copy(source);
    source.SetName("Fill");
    EXPECT_EQ(State(copy), before);
    SlottedLight assigned(0);
    assigned = source;
    EXPECT_EQ(State(assigned), State(source));
}

TEST(FontTest, StoresValuesUnchangedAndCopies)
{
    const auto state = [](const TestFont& f) {
        return std::make_tuple(f.GetFace(), f.GetSize(), f.GetBold(), f.GetItalic());
    };
    TestFont font;
    EXPECT_EQ(state(font), std::make_tuple(std::string("Arial"), 14, 0, 0));
    font.SetBold(3);
    font.SetItalic(-1);
    font.SetSize(-2);
    font.SetFace("");
    TestFont copy(font);
    font.SetFace("Times");
    EXPECT_EQ(state(copy), std::make_tuple(std::string(), -2, 3, -1));
    copy = font;
    EXPECT_EQ(copy.GetFace(), "Times");
}

// The drag rectangle: start x, y, end x, y.
std::array<int, 4> Mouse(const TestDraggedArea& area)
{
    std::array<int, 4> m{-1, -1, -1, -1};
    area.GetMouseStart(m[0], m[1]);
    area.GetMouseEnd(m[2], m[3]);
    return m;
}

Color ColorOf(const TestDraggedArea& area)
{
    Color color;
    area.GetColor(color);
    return color;
}

TEST(DraggedAreaTest, StartsIdleAndEveryEnableEndsADrag)
{
    TestDraggedArea area(800, 600);
    EXPECT_FALSE(area.IsEnable());
    EXPECT_FALSE(area.IsDragged());
    int width = 0, height = 0;
    area.GetWindowSize(width, height);
    EXPECT_EQ(std::make_pair(width, height), std::make_pair(800, 600));
    EXPECT_EQ(ColorOf(area), Color(30, 40, 50, 255));
    EXPECT_EQ(Mouse(area), (std::array<int, 4>{0, 0, 0, 0}));

    area.SimulateDrag(10, 20, 300, 400);
    area.SetEanble(true);
    EXPECT_TRUE(area.IsEnable());
    EXPECT_FALSE(area.IsDragged());
    EXPECT_EQ(Mouse(area), (std::array<int, 4>{10, 20, 300, 400})) << "the rectangle stays";
    area.SimulateDrag(1, 2, 3, 4);
    area.SetEanble(false);
    EXPECT_FALSE(area.IsEnable());
    EXPECT_FALSE(area.IsDragged());
}

TEST(DraggedAreaTest, CopiesAreIndependent)
{
    TestDraggedArea source(800, 600);
    source.SetEanble(true);
    source.SetColor(Color(5, 6, 7, 0));
    source.SimulateDrag(1, 2, 3, 4);
    TestDraggedArea copy(source);
    source.SetEanble(false);
    source.SimulateDrag(9, 9, 9, 9);

    EXPECT_TRUE(copy.IsEnable());
    EXPECT_TRUE(copy.IsDragged());
    EXPECT_EQ(Mouse(copy), (std::array<int, 4>{1, 2, 3, 4}));
    EXPECT_EQ(ColorOf(copy), Color(5, 6, 7, 0));

    TestDraggedArea assigned(1, 1);
    assigned = source;
    EXPECT_FALSE(assigned.IsEnable());
    EXPECT_EQ(Mouse(assigned), (std::array<int, 4>{9, 9, 9, 9}));
}

} // namespace
