#include "Engine/StreamlineData.h"

#include <gtest/gtest.h>

#include <array>

namespace
{

using KesraEngine::CKesraStreamlineData;
using Triple = std::array<double, 3>;

constexpr Triple kUntouched = {-7.0, -7.0, -7.0};

Triple ReadCoord(const CKesraStreamlineData& record, int index, bool& ok)
{
    Triple xyz = kUntouched;
    ok = record.GetSliceNodeCoord(index, xyz.data());
    return xyz;
}

Triple ReadNormal(const CKesraStreamlineData& record, int index, bool& ok)
{
    Triple xyz = kUntouched;
    ok = record.GetSliceNodeNormal(index, xyz.data());
    return xyz;
}

// Writes a vertex and a normal that identify the index.
void WriteMarked(CKesraStreamlineData& record, int index)
{
    ASSERT_TRUE(record.SetSliceNodeCoord(index, index, 10.0 * index, 100.0 * index));
    ASSERT_TRUE(record.SetSliceNodeNormal(index, -index, -10.0 * index, -100.0 * index));
}

void ExpectMarked(const CKesraStreamlineData& record, int index)
{
    bool ok = false;
    EXPECT_EQ((Triple{1.0 * index, 10.0 * index, 100.0 * index}), ReadCoord(record, index, ok));
    EXPECT_TRUE(ok) << "index " << index;
    EXPECT_EQ((Triple{-1.0 * index, -10.0 * index, -100.0 * index}), ReadNormal(record, index, ok));
    EXPECT_TRUE(ok) << "index " << index;
}

void ExpectRefused(const CKesraStreamlineData& record, int index)
{
    bool ok = true;
    EXPECT_EQ(kUntouched, ReadCoord(record, index, ok));
    EXPECT_FALSE(ok) << "index " << index;
    EXPECT_EQ(kUntouched, ReadNormal(record, index, ok));
    EXPECT_FALSE(ok) << "index " << index;
}

void ExpectZeroEntry(const CKesraStreamlineData& record, int index)
{
    bool ok = false;
    EXPECT_EQ((Triple{0.0, 0.0, 0.0}), ReadCoord(record, index, ok));
    EXPECT_TRUE(ok) << "index " << index;
    EXPECT_EQ((Triple{0.0, 0.0, 0.0}), ReadNormal(record, index, ok));
    EXPECT_TRUE(ok) << "index " << index;
}

TEST(StreamlineDataTest, DefaultRecordOffersTwelveZeroEntries)
{
    const CKesraStreamlineData record;
    EXPECT_EQ(12, record.GetSliceCount());
    EXPECT_EQ(0.0, record.GetCoord()[0]);
    EXPECT_EQ(0.0, record.GetCoord()[1]);
    EXPECT_EQ(0.0, record.GetCoord()[2]);
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(0, record.GetColor()[i]);
    }
    for (int index = 0; index < 12; ++index)
    {
        ExpectZeroEntry(record, index);
    }
    ExpectRefused(record, 12);
    ExpectRefused(record, -1);
}

TEST(StreamlineDataTest, RangeFollowsTheSliceCount)
{
    CKesraStreamlineData record;
    record.SetSliceCount(5);
    EXPECT_EQ(5, record.GetSliceCount());
    ExpectZeroEntry(record, 4);
    ExpectRefused(record, 5);
    ExpectRefused(record, -1);
    EXPECT_FALSE(record.SetSliceNodeCoord(5, 1, 2, 3));
    EXPECT_FALSE(record.SetSliceNodeNormal(-1, 1, 2, 3));

    record.SetSliceCount(20);
    ExpectZeroEntry(record, 19);
    ExpectRefused(record, 20);
}

TEST(StreamlineDataTest, LoweredCountHidesEntriesThatReappearUnchanged)
{
    CKesraStreamlineData record;
    record.SetSliceCount(8);
    for (int index = 0; index < 8; ++index)
    {
        WriteMarked(record, index);
    }
    record.SetSliceCount(4);
    for (int index = 4; index < 8; ++index)
    {
        ExpectRefused(record, index);
        EXPECT_FALSE(record.SetSliceNodeCoord(index, 0, 0, 0));
        EXPECT_FALSE(record.SetSliceNodeNormal(index, 0, 0, 0));
    }
    record.SetSliceCount(8);
    for (int index = 0; index < 8; ++index)
    {
        ExpectMarked(record, index);
    }
}

TEST(StreamlineDataTest, ZeroOrNegativeCountRefusesEverythingThenGrowsAfterStoredEntries)
{
    CKesraStreamlineData record;
    WriteMarked(record, 11);
    for (const int count : {0, -3})
    {
        record.SetSliceCount(count);
        EXPECT_EQ(count, record.GetSliceCount());
        ExpectRefused(record, 0);
        ExpectRefused(record, -1);
        EXPECT_FALSE(record.SetSliceNodeCoord(0, 1, 1, 1));
    }
    record.SetSliceCount(15);
    ExpectMarked(record, 11);
    for (int index = 12; index < 15; ++index)
    {
        ExpectZeroEntry(record, index);
    }
}

TEST(StreamlineDataTest, VerticesAndNormalsAreSeparateArrays)
{
    CKesraStreamlineData record;
    ASSERT_TRUE(record.SetSliceNodeCoord(2, 1.5, 2.5, 3.5));
    bool ok = false;
    EXPECT_EQ((Triple{1.5, 2.5, 3.5}), ReadCoord(record, 2, ok));
    EXPECT_EQ((Triple{0.0, 0.0, 0.0}), ReadNormal(record, 2, ok));
}

TEST(StreamlineDataTest, NullBufferIsRefused)
{
    const CKesraStreamlineData record;
    EXPECT_FALSE(record.GetSliceNodeCoord(0, nullptr));
    EXPECT_FALSE(record.GetSliceNodeNormal(0, nullptr));
}

TEST(StreamlineDataTest, CoordAndColorPointersAreTheRecordsOwn)
{
    CKesraStreamlineData record;
    record.SetCoord(1.0, 2.0, 3.0);
    record.GetCoord()[1] = 5.0;
    EXPECT_EQ(1.0, record.GetCoord()[0]);
    EXPECT_EQ(5.0, record.GetCoord()[1]);
    EXPECT_EQ(3.0, record.GetCoord()[2]);

    record.SetColor(10, 20, 30, 40);
    const unsigned char* color = record.GetColor();
    EXPECT_EQ(10, color[0]);
    EXPECT_EQ(20, color[1]);
    EXPECT_EQ(30, color[2]);
    EXPECT_EQ(40, color[3]);
}

TEST(StreamlineDataTest, CopiesAreDeepAndKeepHiddenEntries)
{
    CKesraStreamlineData source;
    source.SetCoord(1.0, 2.0, 3.0);
    source.SetColor(1, 2, 3, 4);
    source.SetSliceCount(8);
    for (int index = 0; index < 8; ++index)
    {
        WriteMarked(source, index);
    }
    source.SetSliceCount(4);

    CKesraStreamlineData constructed(source);
    CKesraStreamlineData assigned;
    assigned.SetSliceCount(30);
    assigned = source;
    for (CKesraStreamlineData* copy : {&constructed, &assigned})
    {
        EXPECT_EQ(4, copy->GetSliceCount());
        EXPECT_EQ(2.0, copy->GetCoord()[1]);
        EXPECT_EQ(4, copy->GetColor()[3]);
        ExpectRefused(*copy, 4);
        copy->SetSliceCount(8);
        for (int index = 0; index < 8; ++index)
        {
            ExpectMarked(*copy, index);
        }
        // Assignment replaced the longer array as well.
        copy->SetSliceCount(9);
        ExpectZeroEntry(*copy, 8);

        ASSERT_TRUE(copy->SetSliceNodeCoord(0, 9, 9, 9));
        ASSERT_TRUE(copy->SetSliceNodeNormal(1, 9, 9, 9));
        copy->GetCoord()[0] = 9.0;
        copy->GetColor()[0] = 9;
    }
    ExpectMarked(source, 0);
    ExpectMarked(source, 1);
    EXPECT_EQ(1.0, source.GetCoord()[0]);
    EXPECT_EQ(1, source.GetColor()[0]);
}

} // namespace
