#include "Engine/Tip.h"
#include "Engine/TipMagFactory.h"
#include "Engine/TipManager.h"
#include "support/TestDoubles.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace
{

using namespace KesraEngine;
using Coord = std::array<double, 3>;

static_assert(std::is_abstract_v<CKesraTipManager> && std::is_abstract_v<IKesraTipMagFactory>,
              "the backend supplies the drawing and the making");
static_assert(!std::has_virtual_destructor_v<CKesraTipManager>, "the destructor is not virtual");
static_assert(std::has_virtual_destructor_v<IKesraTipMagFactory>, "deleted through the interface");
static_assert(sizeof(eTipFontType) == 4 && sizeof(eTipLinkDirection) == 4, "32-bit enumerations");

// Reads what the manager keeps for the backend only: texts and alpha values.
class ProbedTipManager : public KesraTest::TestTipManager
{
public:
    std::string Text(int index) const { return GetTip(index)->GetContext(); }
    const CKesraTip* Record(int index) const { return GetTip(index); }
    // Text, background and linking line colour, alpha included.
    std::array<Color, 3> Colors() const
    {
        return {m_textColor, m_backgroundColor, m_linkingLineColor};
    }
    std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        for (int i = 0; i < GetTipsNum(); ++i)
        {
            texts.push_back(Text(i));
        }
        return texts;
    }
};

using Texts = std::vector<std::string>;

using Colors = std::array<CKesraTipManager::Color, 3>;

Coord Original(const CKesraTipManager& manager, int index)
{
    Coord c{};
    EXPECT_TRUE(manager.GetOrgCoord(index, c.data()));
    return c;
}

Coord Effect(const CKesraTipManager& manager, int index)
{
    Coord c{};
    EXPECT_TRUE(manager.GetEffectCoord(index, c.data()));
    return c;
}

// Tips "t0", "t1", ... at original (i, 2i, 3i) and effect (-i, -i, -i).
void InsertNumbered(CKesraTipManager& manager, int count)
{
    for (int i = 0; i < count; ++i)
    {
        const Coord original{double(i), 2.0 * i, 3.0 * i};
        const Coord effect{-double(i), -double(i), -double(i)};
        EXPECT_EQ(manager.InsertTip("t" + std::to_string(i), original.data(), effect.data()), i);
    }
}

// Everything a host can read of the tips, and the settings.
auto State(const ProbedTipManager& m)
{
    std::vector<std::array<Coord, 2>> coords;
    for (int i = 0; i < m.GetTipsNum(); ++i)
    {
        coords.push_back({Original(m, i), Effect(m, i)});
    }
    return std::make_tuple(m.Texts(), coords, m.Colors(), m.GetTipFontType());
}

TEST(TipTest, CreateCutsAtZeroAndCopiesCarryEverything)
{
    CKesraTip tip;
    EXPECT_STREQ(tip.GetContext(), "");
    const Coord original{1, 2, 3};
    const Coord effect{4, 5, 6};
    EXPECT_TRUE(tip.Create(std::string("ab\0cd", 5), original.data(), effect.data()));
    EXPECT_EQ(std::string(tip.GetContext()), "ab");

    CKesraTip copy(tip);
    tip.SetContext("changed");
    Coord o{}, e{};
    copy.GetOriginalCoord(o.data());
    copy.GetEffectCoord(e.data());
    EXPECT_STREQ(copy.GetContext(), "ab");
    EXPECT_EQ(o, original);
    EXPECT_EQ(e, effect);

    copy = tip;
    EXPECT_STREQ(copy.GetContext(), "changed");
    copy.SetContext(nullptr);
    EXPECT_STREQ(copy.GetContext(), "");
}

TEST(TipManagerTest, IndicesArePositionsThroughInsertionRemovalAndClearing)
{
    ProbedTipManager manager;
    EXPECT_TRUE(manager.ClearTips()) << "nothing to clear";
    EXPECT_EQ(manager.GetTipsNum(), 0);
    InsertNumbered(manager, 4);
    EXPECT_EQ(manager.GetTipsNum(), 4);
    EXPECT_EQ(Original(manager, 2), (Coord{2, 4, 6}));
    EXPECT_EQ(Effect(manager, 2), (Coord{-2, -2, -2}));

    // Removal closes the gap in order.
    EXPECT_TRUE(manager.RemoveTip(1));
    EXPECT_EQ(manager.Texts(), (Texts{"t0", "t2", "t3"}));
    EXPECT_EQ(Original(manager, 1), (Coord{2, 4, 6}));
    EXPECT_TRUE(manager.RemoveTip(2));
    EXPECT_TRUE(manager.RemoveTip(0));
    EXPECT_EQ(manager.Texts(), (Texts{"t2"}));
    const Coord zero{};
    EXPECT_EQ(manager.InsertTip("new", zero.data(), zero.data()), 1) << "the first free one";

    EXPECT_TRUE(manager.ClearTips());
    EXPECT_EQ(manager.GetTipsNum(), 0);
    manager.UpdateEffect(eTipLinkRadial, 1.0, zero.data(), 1.0); // nothing to place
    InsertNumbered(manager, 1);
}

TEST(TipManagerTest, IndexedOperationsRefuseOutOfRangeAndChangeOnlyTheirPart)
{
    ProbedTipManager manager;
    InsertNumbered(manager, 2);
    const auto before = State(manager);
    const Coord value{9, 9, 9};
    for (const int index : {-1, 2, 3, INT_MIN, INT_MAX})
    {
        Coord out{7, 7, 7};
        EXPECT_FALSE(manager.SetOrgCoord(index, value.data()));
        EXPECT_FALSE(manager.GetOrgCoord(index, out.data()));
        EXPECT_FALSE(manager.SetEffectCoord(index, value.data()));
        EXPECT_FALSE(manager.GetEffectCoord(index, out.data()));
        EXPECT_FALSE(manager.SetTipContext(index, "x"));
        EXPECT_FALSE(manager.RemoveTip(index));
        EXPECT_EQ(out, (Coord{7, 7, 7})) << "getters leave their output alone";
    }
    EXPECT_EQ(State(manager), before);

    // Within range each setter changes its own part only.
    const Coord moved{10, 20, 30};
    EXPECT_TRUE(manager.SetOrgCoord(1, moved.data()));
    EXPECT_EQ(Original(manager, 1), moved);
    EXPECT_EQ(Effect(manager, 1), (Coord{-1, -1, -1})) << "waits for UpdateEffect";
    EXPECT_TRUE(manager.SetEffectCoord(0, moved.data()));
    EXPECT_EQ(Effect(manager, 0), moved);
    EXPECT_EQ(Original(manager, 0), (Coord{0, 0, 0}));

    // Texts end at their first zero character.
    const std::string withZero("ab\0cd", 5);
    ASSERT_EQ(manager.InsertTip(withZero, moved.data(), moved.data()), 2);
    EXPECT_EQ(manager.Text(2), "ab");
    EXPECT_TRUE(manager.SetTipContext(2, "a much longer replacement text"));
    EXPECT_EQ(manager.Text(2), "a much longer replacement text");
    EXPECT_TRUE(manager.SetTipContext(2, withZero));
    EXPECT_EQ(manager.Text(2), "ab");
    EXPECT_TRUE(manager.SetTipContext(2, std::string("\0tail", 5)));
    EXPECT_EQ(manager.Texts(), (Texts{"t0", "t1", ""}));
}

TEST(TipManagerTest, DefaultsAndSettings)
{
    ProbedTipManager manager;
    EXPECT_EQ(manager.GetTipFontType(), eTipFontType(2));
    EXPECT_EQ(manager.Colors(),
              (Colors{{{0, 0, 0, 255}, {255, 255, 225, 255}, {198, 198, 198, 255}}}));

    manager.SetTextColor(10, 20, 30);
    manager.SetBackgroundColor(1, 2, 3);
    manager.SetLinkingLineColor(250, 0, 5);
    unsigned char c[9] = {};
    manager.GetTextColor(c[0], c[1], c[2]);
    manager.GetBackgroundColor(c[3], c[4], c[5]);
    manager.GetLinkingLineColor(c[6], c[7], c[8]);
    EXPECT_EQ(std::vector<int>(c, c + 9), (std::vector<int>{10, 20, 30, 1, 2, 3, 250, 0, 5}));
    EXPECT_EQ(manager.Colors(), (Colors{{{10, 20, 30, 255}, {1, 2, 3, 255}, {250, 0, 5, 255}}}))
        << "alpha is always 255";

    // Stored unchecked: the value means something to the backend only.
    manager.SetTipFontType(eTipFontType(77));
    EXPECT_EQ(manager.GetTipFontType(), eTipFontType(77));
}

TEST(TipManagerTest, UpdateEffectAlongAnAxisMovesFromTheOriginal)
{
    ProbedTipManager manager;
    const Coord original{1, 2, 3};
    const Coord zero{};
    manager.InsertTip("a", original.data(), zero.data());
    manager.InsertTip("b", zero.data(), original.data());

    // The centre is not read for the axis directions.
    manager.UpdateEffect(eTipLinkY, 5.0, nullptr, 0.0);
    EXPECT_EQ(Effect(manager, 0), (Coord{1, 7, 3}));
    EXPECT_EQ(Effect(manager, 1), (Coord{0, 5, 0}));
    EXPECT_EQ(Original(manager, 0), original);

    manager.UpdateEffect(eTipLinkX, -0.5, nullptr, 0.0);
    EXPECT_EQ(Effect(manager, 0), (Coord{0.5, 2, 3}));
    manager.UpdateEffect(eTipLinkZ, 0.25, nullptr, 0.0);
    EXPECT_EQ(Effect(manager, 0), (Coord{1, 2, 3.25}));

    manager.UpdateEffect(eTipLinkDirection(7), 5.0, nullptr, 5.0);
    EXPECT_EQ(Effect(manager, 0), original);
    EXPECT_EQ(Effect(manager, 1), zero);
}

TEST(TipManagerTest, RadialLayoutSkipsTheTipOnTheCentre)
{
    ProbedTipManager manager;
    const Coord centre{1, 1, 1};
    const Coord kept{-8, -8, -8};
    manager.InsertTip("out", Coord{4, 5, 1}.data(), kept.data());
    manager.InsertTip("on", centre.data(), kept.data());
    manager.InsertTip("near", Coord{1, 1, 1 + 1e-15}.data(), kept.data());
    manager.InsertTip("behind", Coord{1, 1, -2}.data(), kept.data());

    manager.UpdateEffect(eTipLinkRadial, 123.0, centre.data(), 10.0);
    const Coord out = Effect(manager, 0);
    EXPECT_DOUBLE_EQ(out[0], 7.0);
    EXPECT_DOUBLE_EQ(out[1], 9.0);
    EXPECT_EQ(out[2], 1.0);
    EXPECT_EQ(Effect(manager, 1), kept) << "a tip on the centre has no direction";
    EXPECT_EQ(Effect(manager, 2), (Coord{1, 1, 11})) << "tiny but nonzero distances count";
    EXPECT_EQ(Effect(manager, 3), (Coord{1, 1, -9}));

    // A negative distance puts the label on the far side of the centre.
    manager.UpdateEffect(eTipLinkRadial, 0.0, centre.data(), -2.0);
    EXPECT_EQ(Effect(manager, 3), (Coord{1, 1, 3}));
    EXPECT_EQ(Effect(manager, 1), kept);

    // The skip threshold is 1e-20 from the centre.
    ProbedTipManager tiny;
    tiny.InsertTip("skipped", Coord{0, 0, 1e-21}.data(), kept.data());
    tiny.InsertTip("placed", Coord{0, 0, 1e-19}.data(), kept.data());
    tiny.UpdateEffect(eTipLinkRadial, 0.0, Coord{}.data(), 10.0);
    EXPECT_EQ(Effect(tiny, 0), kept);
    EXPECT_EQ(Effect(tiny, 1), (Coord{0, 0, 10}));
}

TEST(TipManagerTest, CopiesOwnTheirOwnRecords)
{
    ProbedTipManager original;
    InsertNumbered(original, 3);
    original.SetTextColor(1, 2, 3);
    original.SetBackgroundColor(4, 5, 6);
    original.SetLinkingLineColor(7, 8, 9);
    original.SetTipFontType(eTipFontLarge);
    const auto before = State(original);
    EXPECT_EQ(std::get<2>(before), (Colors{{{1, 2, 3, 255}, {4, 5, 6, 255}, {7, 8, 9, 255}}}));

    ProbedTipManager copy(original);
    EXPECT_EQ(State(copy), before);
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_NE(copy.Record(i), original.Record(i));
    }
    copy.SetTipContext(0, "copy only");
    copy.RemoveTip(2);
    EXPECT_EQ(State(original), before);

    ProbedTipManager target;
    InsertNumbered(target, 5);
    target = copy;
    EXPECT_EQ(State(target), State(copy));
    EXPECT_EQ(target.Texts(), (Texts{"copy only", "t1"}));
    EXPECT_NE(target.Record(0), copy.Record(0));

    const ProbedTipManager& self = target;
    target = self;
    EXPECT_EQ(target.Texts(), (Texts{"copy only", "t1"}));
}

} // namespace
