#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace
{

using KesraTest::TestDraggedArea;
using KesraTest::TestFont;
using KesraTest::TestLight;
using Color = KesraMathKit::TKesraGenColor<unsigned char>;
using Vector = KesraMathKit::TKesraVector3<double>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// ---- Light ----------------------------------------------------------------------

TEST(LightTest, Defaults)
{
    const TestLight light;
    EXPECT_EQ(light.GetName(), "Default");
    EXPECT_EQ(light.GetIntensity(), 1.0f);
    EXPECT_EQ(light.GetExponent(), 1.0f);
    EXPECT_EQ(light.GetConeAngle(), 180.0f);
    EXPECT_EQ(light.GetSwitch(), 1);
    EXPECT_EQ(light.GetLightType(), 0);
    EXPECT_EQ(light.GetPosition(), Vector(0, 0, 0));
    EXPECT_EQ(light.GetFocalPoint(), Vector(0, 0, -1));
    EXPECT_EQ(light.GetAttenuationValues(), Vector(1, 0, 0));
    EXPECT_EQ(light.GetColor(), Color(255, 255, 255, 0));
    EXPECT_EQ(light.BackendSlot(), -1);
}

TEST(LightTest, IntensityOutsideZeroToOneIsIgnored)
{
    TestLight light;
    light.SetIntensity(0.0f);
    EXPECT_EQ(light.GetIntensity(), 0.0f);
    light.SetIntensity(0.4f);
    EXPECT_EQ(light.GetIntensity(), 0.4f);
    const float refused[] = {1.5f, -0.1f, 1.0000001f, -0.0000001f, kNaN,
                             std::numeric_limits<float>::infinity()};
    for (const float value : refused)
    {
        light.SetIntensity(value);
        EXPECT_EQ(light.GetIntensity(), 0.4f) << value;
    }
    light.SetIntensity(1.0f);
    EXPECT_EQ(light.GetIntensity(), 1.0f);
}

TEST(LightTest, ExponentAndConeAngleAreClampedAtInclusiveBounds)
{
    struct Case
    {
        float in;
        float exponent;
        float coneAngle;
    };
    const Case cases[] = {
        {-3.0f, 0.0f, 0.0f},       {0.0f, 0.0f, 0.0f},       {45.0f, 45.0f, 45.0f},
        {128.0f, 128.0f, 128.0f},  {150.0f, 128.0f, 150.0f}, {180.0f, 128.0f, 180.0f},
        {270.0f, 128.0f, 180.0f},  {-std::numeric_limits<float>::infinity(), 0.0f, 0.0f},
    };
    for (const Case& c : cases)
    {
        TestLight light;
        light.SetExponent(c.in);
        light.SetConeAngle(c.in);
        EXPECT_EQ(light.GetExponent(), c.exponent) << c.in;
        EXPECT_EQ(light.GetConeAngle(), c.coneAngle) << c.in;
    }

    TestLight light;
    light.SetExponent(64.0f);
    light.SetConeAngle(30.0f);
    light.SetExponent(kNaN);
    light.SetConeAngle(kNaN);
    EXPECT_EQ(light.GetExponent(), 64.0f);
    EXPECT_EQ(light.GetConeAngle(), 30.0f);
}

TEST(LightTest, SwitchAndTypeAreNormalised)
{
    TestLight light;
    light.SetSwitch(-5);
    EXPECT_EQ(light.GetSwitch(), 1);
    light.SetSwitch(0);
    EXPECT_EQ(light.GetSwitch(), 0);
    light.SetLightType(2);
    EXPECT_EQ(light.GetLightType(), 2);
    light.SetLightType(3);
    EXPECT_EQ(light.GetLightType(), 0);
    light.SetLightType(1);
    light.SetLightType(-1);
    EXPECT_EQ(light.GetLightType(), 0);
}

TEST(LightTest, StoresVectorsColourAndNameAsGiven)
{
    TestLight light;
    light.SetAttenuationValues(0.5f, 0.25f, 0.125f);
    EXPECT_EQ(light.GetAttenuationValues(), Vector(0.5, 0.25, 0.125));
    light.SetAttenuationValues(0.1f, 0.0f, 0.0f); // widened, not re-rounded
    EXPECT_EQ(light.GetAttenuationValues().x, static_cast<double>(0.1f));
    light.SetAttenuationValues(Vector(0.1, -2.0, 3.0));
    EXPECT_EQ(light.GetAttenuationValues(), Vector(0.1, -2.0, 3.0));

    light.SetPosition(Vector(1, 2, 3));
    light.SetFocalPoint(Vector(-4, 5, -6));
    light.SetColor(Color(1, 2, 3, 4));
    light.SetName("");
    EXPECT_EQ(light.GetPosition(), Vector(1, 2, 3));
    EXPECT_EQ(light.GetFocalPoint(), Vector(-4, 5, -6));
    EXPECT_EQ(light.GetColor(), Color(1, 2, 3, 4));
    EXPECT_EQ(light.GetName(), "");
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
    source.SetIntensity(0.25f);
    source.SetConeAngle(30.0f);
    source.SetColor(Color(9, 8, 7, 6));

    SlottedLight copy(source);
    source.SetName("Fill");
    source.SetIntensity(0.75f);
    EXPECT_EQ(copy.GetName(), "Key");
    EXPECT_EQ(copy.GetIntensity(), 0.25f);
    EXPECT_EQ(copy.GetConeAngle(), 30.0f);
    EXPECT_EQ(copy.GetColor(), Color(9, 8, 7, 6));
    EXPECT_EQ(copy.BackendSlot(), 3);

    SlottedLight assigned(0);
    assigned = source;
    EXPECT_EQ(assigned.GetName(), "Fill");
    EXPECT_EQ(assigned.BackendSlot(), 3);
}

// ---- Font -----------------------------------------------------------------------

TEST(FontTest, StoresValuesUnchanged)
{
    TestFont font;
    EXPECT_EQ(font.GetFace(), "Arial");
    EXPECT_EQ(font.GetSize(), 14);
    EXPECT_EQ(font.GetBold(), 0);
    EXPECT_EQ(font.GetItalic(), 0);

    font.SetBold(3);
    font.SetItalic(-1);
    font.SetSize(-2);
    font.SetFace("");
    EXPECT_EQ(font.GetBold(), 3);
    EXPECT_EQ(font.GetItalic(), -1);
    EXPECT_EQ(font.GetSize(), -2);
    EXPECT_EQ(font.GetFace(), "");
}

TEST(FontTest, CopiesAreIndependent)
{
    TestFont source;
    source.SetFace("Courier");
    source.SetSize(9);
    source.SetItalic(1);
    TestFont copy(source);
    source.SetFace("Times");
    EXPECT_EQ(copy.GetFace(), "Courier");
    EXPECT_EQ(copy.GetSize(), 9);
    EXPECT_EQ(copy.GetItalic(), 1);

    TestFont assigned;
    assigned = source;
    EXPECT_EQ(assigned.GetFace(), "Times");
}

// ---- Dragged area -----------------------------------------------------------------

void ExpectMouse(const TestDraggedArea& area, int x0, int y0, int x1, int y1)
{
    int x = -1;
    int y = -1;
    area.GetMouseStart(x, y);
    EXPECT_EQ(x, x0);
    EXPECT_EQ(y, y0);
    area.GetMouseEnd(x, y);
    EXPECT_EQ(x, x1);
    EXPECT_EQ(y, y1);
}

TEST(DraggedAreaTest, Defaults)
{
    const TestDraggedArea area(800, 600);
    EXPECT_FALSE(area.IsEnable());
    EXPECT_FALSE(area.IsDragged());
    int width = 0;
    int height = 0;
    area.GetWindowSize(width, height);
    EXPECT_EQ(width, 800);
    EXPECT_EQ(height, 600);
    Color color;
    area.GetColor(color);
    EXPECT_EQ(color, Color(30, 40, 50, 255));
    ExpectMouse(area, 0, 0, 0, 0);
}

TEST(DraggedAreaTest, EnablingOrDisablingEndsADrag)
{
    TestDraggedArea area(800, 600);
    area.SetEanble(true);
    EXPECT_TRUE(area.IsEnable());
    EXPECT_FALSE(area.IsDragged());

    area.SimulateDrag(10, 20, 300, 400);
    EXPECT_TRUE(area.IsDragged());
    ExpectMouse(area, 10, 20, 300, 400);
    area.SetEanble(true);
    EXPECT_FALSE(area.IsDragged());
    ExpectMouse(area, 10, 20, 300, 400); // the rectangle stays readable

    area.SimulateDrag(1, 2, 3, 4);
    area.SetEanble(false);
    EXPECT_FALSE(area.IsEnable());
    EXPECT_FALSE(area.IsDragged());
}

TEST(DraggedAreaTest, StoresSizeAndColourWithoutChecks)
{
    TestDraggedArea area(800, 600);
    area.SetWindowSize(0, -5);
    int width = 1;
    int height = 1;
    area.GetWindowSize(width, height);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, -5);
    area.SetColor(Color(1, 2, 3, 0));
    Color color;
    area.GetColor(color);
    EXPECT_EQ(color, Color(1, 2, 3, 0));
}

TEST(DraggedAreaTest, CopiesAreIndependent)
{
    TestDraggedArea source(800, 600);
    source.SetEanble(true);
    source.SetColor(Color(5, 6, 7, 8));
    source.SimulateDrag(1, 2, 3, 4);
    TestDraggedArea copy(source);
    source.SetEanble(false);
    source.SimulateDrag(9, 9, 9, 9);

    EXPECT_TRUE(copy.IsEnable());
    EXPECT_TRUE(copy.IsDragged());
    ExpectMouse(copy, 1, 2, 3, 4);
    Color color;
    copy.GetColor(color);
    EXPECT_EQ(color, Color(5, 6, 7, 8));

    TestDraggedArea assigned(1, 1);
    assigned = source;
    EXPECT_FALSE(assigned.IsEnable());
    ExpectMouse(assigned, 9, 9, 9, 9);
}

} // namespace
