#include "Engine/StreamlineData.h"

#include <gtest/gtest.h>

#include <array>

namespace
{

using KesraEngine::CKesraStreamlineData;
using Triple = std::array<double, 3>;

constexpr Triple kUntouched = {-7.0, -7.0, -7.0};
constexpr Triple kZero = {0.0, 0.0, 0.0};

Triple Marked(int index) { return {1.0 * index, 10.0 * index, 100.0 * index}; }

// Vertex and normal of index, or kUntouched for both when refused.
std::array<Triple, 2> Read(const CKesraStreamlineData& record, int index)
{
    std::array<Triple, 2> read = {kUntouched, kUntouched};
    const bool vertexRead = record.GetSliceNodeCoord(index, read[0].data());
    EXPECT_EQ(vertexRead, record.GetSliceNodeNormal(index, read[1].data()));
    return read;
}

void WriteMarked(CKesraStreamlineData& record, int index)
{
    const Triple m = Marked(index);
    EXPECT_TRUE(record.SetSliceNodeCoord(index, m[0], m[1], m[2]));
    EXPECT_TRUE(record.SetSliceNodeNormal(index, -m[0], -m[1], -m[2]));
}

void ExpectMarked(const CKesraStreamlineData& record, int index)
{
    const Triple m = Marked(index);
    EXPECT_EQ((std::array<Triple, 2>{m, Triple{-m[0], -m[1], -m[2]}}), Read(record, index)) << index;
}

void ExpectEntry(const CKesraStreamlineData& record, int index, const Triple& both)
{
    EXPECT_EQ((std::array<Triple, 2>{both, both}), Read(record, index)) << index;
}

TEST(StreamlineDataTest, DefaultRecordOffersTwelveZeroEntries)
{
    const CKesraStreamlineData record;
    EXPECT_EQ(12, record.GetSliceCount());
    EXPECT_EQ(kZero, (Triple{record.GetCoord()[0], record.GetCoord()[1], record.GetCoord()[2]}));
    EXPECT_EQ(0, record.GetColor()[3]);
    ExpectEntry(record, 11, kZero);
    ExpectEntry(record, 12, kUntouched);
    ExpectEntry(record, -1, kUntouched);
    EXPECT_FALSE(record.GetSliceNodeCoord(0, nullptr));
}

TEST(StreamlineDataTest, CountNeverShrinksTheArrays)
{
    CKesraStreamlineData record;
    record.SetSliceCount(8);
    for (int index = 0; index < 8; ++index)
    {
        WriteMarked(record, index);
    }
    record.SetSliceCount(4);
    ExpectEntry(record, 4, kUntouched);
    EXPECT_FALSE(record.SetSliceNodeCoord(7, 0, 0, 0));
    EXPECT_FALSE(record.SetSliceNodeNormal(4, 0, 0, 0));
    for (const int count : {0, -3})
    {
        record.SetSliceCount(count);
        EXPECT_EQ(count, record.GetSliceCount());
        ExpectEntry(record, 0, kUntouched);
    }
    record.SetSliceCount(15);
    for (int index = 0; index < 8; ++index)
    {
        ExpectMarked(record, index);
    }
    ExpectEntry(record, 14, kZero);
    ExpectEntry(record, 15, kUntouched);
}

TEST(StreamlineDataTest, PointersAreTheRecordsOwnAndCopiesAreDeep)
{
    CKesraStreamlineData source;
    source.SetCoord(1.0, 2.0, 3.0);
    source.GetCoord()[1] = 5.0;
    source.SetColor(10, 20, 30, 40);
    EXPECT_EQ(5.0, source.GetCoord()[1]);
    EXPECT_EQ(40, source.GetColor()[3]);
    source.SetSliceCount(8);
    WriteMarked(source, 6);
    source.SetSliceCount(4);

    CKesraStreamlineData constructed(source);
    CKesraStreamlineData assigned;
    assigned.SetSliceCount(30);
    WriteMarked(assigned, 20);
    assigned = source;
    for (CKesraStreamlineData* copy : {&constructed, &assigned})
    {
        EXPECT_EQ(4, copy->GetSliceCount());
        EXPECT_EQ(5.0, copy->GetCoord()[1]);
        EXPECT_EQ(30, copy->GetColor()[2]);
        copy->SetSliceCount(30);
        ExpectMarked(*copy, 6);
        ExpectEntry(*copy, 20, kZero);
        copy->GetCoord()[1] = 9.0;
        EXPECT_TRUE(copy->SetSliceNodeCoord(6, 9, 9, 9));
    }
    EXPECT_EQ(5.0, source.GetCoord()[1]);
    source.SetSliceCount(8);
    ExpectMarked(source, 6);
}

} // namespace
