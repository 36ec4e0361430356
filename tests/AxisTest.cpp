#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

using KesraTest::TestAxis;
using Matrix = KesraEngine::CKesraAxis::Matrix;

Matrix Sample()
{
    Matrix m;
    for (int k = 0; k < 16; ++k)
    {
        m[k] = 0.5 * k - 3.0;
    }
    return m;
}

TEST(AxisTest, CreateSizesAndResetsMatrixToIdentity)
{
    TestAxis axis;
    EXPECT_EQ(axis.IsCreate(), 0);
    EXPECT_EQ(axis.GetDrawAxis(), 1);
    EXPECT_EQ(axis.GetRotateMatrix(), Matrix::ZERO);

    axis.SetRotateMatrix(Sample());
    EXPECT_FALSE(axis.Create(0, 400)); // refused, nothing changed
    EXPECT_FALSE(axis.Create(800, 0));
    EXPECT_EQ(axis.GetRotateMatrix(), Sample());
    EXPECT_EQ(axis.ScaleX(), 0.0f);

    ASSERT_TRUE(axis.Create(800, 400));
    EXPECT_EQ(axis.IsCreate(), 1);
    EXPECT_EQ(axis.ScaleX(), 0.1f);
    EXPECT_EQ(axis.ScaleY(), 0.2f);
    EXPECT_EQ(axis.GetRotateMatrix(), Matrix::IDENTITY);

    axis.SetRotateMatrix(Sample()); // again on a created triad: the same effect
    ASSERT_TRUE(axis.Create(160, 320));
    EXPECT_EQ(axis.ScaleX(), 0.5f);
    EXPECT_EQ(axis.ScaleY(), 0.25f);
    EXPECT_EQ(axis.GetRotateMatrix(), Matrix::IDENTITY);
}

TEST(AxisTest, DeleteClearsOnlyTheCreatedFlag)
{
    TestAxis axis;
    EXPECT_FALSE(axis.Delete());
    ASSERT_TRUE(axis.Create(800, 400));
    axis.SetRotateMatrix(Sample());
    EXPECT_TRUE(axis.Delete());
    EXPECT_FALSE(axis.Delete());
    EXPECT_EQ(axis.IsCreate(), 0);
    EXPECT_EQ(axis.GetRotateMatrix(), Sample());
    EXPECT_EQ(axis.ScaleX(), 0.1f);
}

TEST(AxisTest, WindowSizeRecomputesScalesWithoutCreating)
{
    TestAxis axis;
    axis.SetWindowSize(640, 480);
    EXPECT_EQ(axis.IsCreate(), 0);
    EXPECT_EQ(axis.ScaleX(), 80.0f / 640.0f);
    EXPECT_EQ(axis.ScaleY(), 80.0f / 480.0f);
    EXPECT_EQ(axis.GetRotateMatrix(), Matrix::ZERO);

    axis.SetWindowSize(0, 3); // not refused; the zero side has no finite scale
    EXPECT_TRUE(std::isinf(axis.ScaleX()));
    EXPECT_EQ(axis.ScaleY(), 80.0f / 3.0f);
    int width = -1;
    int height = -1;
    axis.GetWindowSize(width, height);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, 3);
}

TEST(AxisTest, CopiesAreIndependent)
{
    TestAxis source;
    ASSERT_TRUE(source.Create(800, 400));
    source.SetRotateMatrix(Sample());
    source.SetDrawAxis(5); // stored unchanged
    TestAxis copy(source);
    source.SetRotateMatrix(Matrix::IDENTITY);
    source.Delete();

    EXPECT_EQ(copy.IsCreate(), 1);
    EXPECT_EQ(copy.GetDrawAxis(), 5);
    EXPECT_EQ(copy.GetRotateMatrix(), Sample());
    EXPECT_EQ(copy.ScaleY(), 0.2f);

    TestAxis assigned;
    assigned = source;
    EXPECT_EQ(assigned.IsCreate(), 0);
    EXPECT_EQ(assigned.GetRotateMatrix(), Matrix::IDENTITY);
}

} // namespace
