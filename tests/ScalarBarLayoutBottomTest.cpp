// The lowest row of the layout's free part: the start row for direction 0,
// at least 25 rows up for any other, and the same row that divides the
// layout units.
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <iterator>

namespace
{

using KesraTest::TestScalarBar;

// A legend whose direction a backend stored as it liked.
class RawDirectionBar : public TestScalarBar
{
public:
    void StoreDirection(int direction) { m_direction = direction; }
};

TEST(ScalarBarLayoutBottomTest, StartRowOrAtLeast25)
{
    RawDirectionBar bar;
    ASSERT_TRUE(bar.Create(800, 600, 700, 100));
    const int rows[] = {100, 25, 24, INT_MIN, INT_MAX};
    const int kept[] = {100, 25, 25, 25, INT_MAX};
    for (std::size_t k = 0; k < std::size(rows); ++k)
    {
        bar.SetStartPosition(700, rows[k]);
        bar.StoreDirection(0);
        EXPECT_EQ(rows[k], bar.GetLayoutBottom()) << "direction 0, start row " << rows[k];
        for (const int direction : {1, INT_MIN})
        {
            bar.StoreDirection(direction);
            EXPECT_EQ(kept[k], bar.GetLayoutBottom())
                << "direction " << direction << ", start row " << rows[k];
        }
    }
}

TEST(ScalarBarLayoutBottomTest, DividesTheLayoutUnitsIn32BitsOnceTheDirectionTakesEffect)
{
    TestScalarBar bar;
    ASSERT_TRUE(bar.Create(800, 600, 700, 10));
    bar.SetDirection(1);
    EXPECT_EQ(25, bar.GetLayoutBottom());
    EXPECT_EQ(590.0f / 10.0f, bar.EqualPartY()) << "units still of direction 0";
    bar.SetStartPosition(700, 11);
    EXPECT_EQ(575.0f / 45.0f, bar.EqualPartY());
    // The free height is the window height less the bottom row, wrapped
    // around in 32 bits.
    bar.SetWindowSize(800, INT_MIN);
    EXPECT_EQ(static_cast<float>(INT_MAX - 24) / 45.0f, bar.EqualPartY());
    bar.SetDirection(0);
    bar.SetWindowSize(800, 600);
    bar.SetStartPosition(0, INT_MIN);
    EXPECT_EQ(INT_MIN, bar.GetLayoutBottom());
    EXPECT_EQ(static_cast<float>(INT_MIN + 600) / 10.0f, bar.EqualPartY());
}

} // namespace
