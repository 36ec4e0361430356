// Tips and the tip manager against a plain list kept beside it: insertions,
// removals, texts, coordinates, colours and label layout with any numbers and
// indices. After every step the manager holds the list's tips at the list's
// dense indices 0 ... count - 1 and refuses every other index; a copy equals
// its original.
#include "FuzzInput.h"

#include "Engine/Tip.h"
#include "support/TestDoubles.h"

#include <array>
#include <string>
#include <vector>

namespace
{

using KesraEngine::eTipFontType;
using KesraEngine::eTipLinkDirection;
using KesraFuzz::FuzzInput;
using KesraFuzz::OperationClock;
using KesraFuzz::Require;
using Coord = std::array<double, 3>;

using Manager = KesraTest::ProbedTipManager;

struct Model
{
    std::string text;
    Coord original;
    Coord effect;
};

// A text as the record keeps it: up to its first zero character.
std::string Stored(const std::string& text) { return text.substr(0, text.find('\0')); }

Coord ReadCoord(FuzzInput& in)
{
    const double x = in.Double();
    const double y = in.Double();
    return {x, y, in.Double()};
}

void CheckAgainst(const Manager& manager, const std::vector<Model>& model)
{
    const int count = static_cast<int>(model.size());
    Require(manager.GetTipsNum() == count, "the manager holds as many tips as were kept");
    for (int i = 0; i < count; ++i)
    {
        Coord original{}, effect{};
        Require(manager.GetOrgCoord(i, original.data()) && manager.GetEffectCoord(i, effect.data()),
                "every index below the count answers");
        Require(manager.Text(i) == model[i].text, "tip texts stay at their indices");
        Require(std::memcmp(original.data(), model[i].original.data(), sizeof(Coord)) == 0 &&
                    std::memcmp(effect.data(), model[i].effect.data(), sizeof(Coord)) == 0,
                "tip coordinates stay at their indices");
    }
    Coord untouched{-7, -7, -7};
    Require(!manager.GetOrgCoord(count, untouched.data()) && !manager.GetOrgCoord(-1, untouched.data()) &&
                untouched == Coord{-7, -7, -7},
            "indices outside the list are refused");
}

bool InRange(int index, const std::vector<Model>& model)
{
    return index >= 0 && index < static_cast<int>(model.size());
}

void Step(Manager& manager, std::vector<Model>& model, FuzzInput& in)
{
    const int count = static_cast<int>(model.size());
    switch (in.Choice(12))
    {
    case 0:
    case 1:
    {
        const std::string text = in.Text(48);
        const Coord original = ReadCoord(in);
        const Coord effect = ReadCoord(in);
        Require(manager.InsertTip(text, original.data(), effect.data()) == count,
                "a new tip takes the next index");
        model.push_back({Stored(text), original, effect});
        break;
    }
    case 2:
    {
        const int index = in.Index(count);
        Require(manager.RemoveTip(index) == InRange(index, model), "RemoveTip answers as the index is");
        if (InRange(index, model))
        {
            model.erase(model.begin() + index);
        }
        break;
    }
    case 3:
        if (in.Byte() < 32)
        {
            Require(manager.ClearTips(), "ClearTips answers true");
            model.clear();
        }
        break;
    case 4:
    {
        const int index = in.Index(count);
        const std::string text = in.Text(48);
        Require(manager.SetTipContext(index, text) == InRange(index, model), "SetTipContext answers as the index is");
        if (InRange(index, model))
        {
            model[index].text = Stored(text);
        }
        break;
    }
    case 5:
    case 6:
    {
        const int index = in.Index(count);
        const Coord coord = ReadCoord(in);
        const bool original = in.Bool();
        const bool answer = original ? manager.SetOrgCoord(index, coord.data())
                                     : manager.SetEffectCoord(index, coord.data());
        Require(answer == InRange(index, model), "coordinate setters answer as the index is");
        if (answer)
        {
            (original ? model[index].original : model[index].effect) = coord;
        }
        break;
    }
    case 7:
    {
        const auto direction = static_cast<eTipLinkDirection>(in.Byte() < 224 ? in.Byte() % 4 : in.Int());
        const double offset = in.Double();
        const Coord centre = ReadCoord(in);
        manager.UpdateEffect(direction, offset, centre.data(), in.Double());
        for (int i = 0; i < count; ++i)
        {
            Coord effect{};
            manager.GetEffectCoord(i, effect.data());
            if (direction >= KesraEngine::eTipLinkX && direction <= KesraEngine::eTipLinkZ)
            {
                Coord expected = model[i].original;
                expected[direction] += offset;
                // Which NaN a sum of two NaNs gives is the compiler's choice.
                Require(KesraFuzz::SameNumber(effect[0], expected[0]) &&
                            KesraFuzz::SameNumber(effect[1], expected[1]) &&
                            KesraFuzz::SameNumber(effect[2], expected[2]),
                        "an axis link moves the label by the offset along its axis");
            }
            model[i].effect = effect;
        }
        break;
    }
    case 8:
    {
        const unsigned char r = in.Channel();
        const unsigned char g = in.Channel();
        const unsigned char b = in.Channel();
        const int which = in.Choice(3);
        which == 0 ? manager.SetTextColor(r, g, b)
        : which == 1 ? manager.SetBackgroundColor(r, g, b)
                     : manager.SetLinkingLineColor(r, g, b);
        break;
    }
    case 9:
        manager.SetTipFontType(static_cast<eTipFontType>(in.Int()));
        break;
    case 10:
    {
        // A record alone: created, retexted and copied.
        KesraEngine::CKesraTip tip;
        const Coord original = ReadCoord(in);
        const Coord effect = ReadCoord(in);
        const std::string text = in.Text(48);
        tip.Create(text, original.data(), effect.data());
        const KesraEngine::CKesraTip copy(tip);
        Require(std::string(copy.GetContext()) == Stored(text), "a record keeps its text to the first zero");
        tip.SetContext(in.Bool() ? nullptr : "x");
        break;
    }
    default:
    {
        Manager assigned;
        assigned.InsertTip(in.Text(8), Coord{}.data(), Coord{}.data());
        KesraFuzz::RequireCopiesEqual(manager, assigned, "copies of a manager equal their original");
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput in(data, size);
    Manager manager;
    std::vector<Model> model;
    while (!in.Empty())
    {
        {
            OperationClock clock("tip manager operation");
            Step(manager, model, in);
        }
        CheckAgainst(manager, model);
    }
    return 0;
}
