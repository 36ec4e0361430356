#include "Engine/ColorMap.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

namespace KesraEngine
{

namespace
{

// ---- A value's place on the palette ----------------------------------------------

// Position of value between minimum and maximum, before inversion and
// clamping; any double, NaN and infinities included.
double LinearPosition(double value, double minimum, double maximum)
{
    return (value - minimum) / (maximum - minimum);
}

double PalettePosition(double value, double minimum, double maximum, int logarithmic)
{
    if (logarithmic == 0)
    {
        return LinearPosition(value, minimum, maximum);
    }
    // Logarithms need positive bounds: a top that is not positive becomes 1,
    // a bottom that is not positive four decades below the top.
    const double top = maximum > 0.0 ? maximum : 1.0;
    const double bottom = minimum > 0.0 ? minimum : top * 0.0001;
    return (std::log(std::fabs(value)) - std::log(bottom)) / (std::log(top) - std::log(bottom));
}

// Clamps to [0, 1]. A position that is not a number (a value that is not a
// number, or a range with no width) counts as 0, so that the palette index
// stays within the five stops.
double ClampedPosition(double p)
{
    // Written as selects between comparisons that are always made, so that
    // a batch's loop needs no branch: p >= 0 is false exactly for the
    // negative positions and NaN; -0.0 stays -0.0.
    const bool above = p > 1.0;
    const bool nonNegative = p >= 0.0;
    return above ? 1.0 : (nonNegative ? p : 0.0);
}

// channel is in [0, 1] (a convex mix of stops in [0, 1]), so the truncated
// product lies in [0, 255].
unsigned char ChannelByte(double channel)
{
    return static_cast<unsigned char>(static_cast<float>(channel) * 255.0f);
}

// The stops a map colours with: its many-stop palette when it has one, else
// its five stops.
ColorStops StopsOf(const CKesraColorMap& map)
{
    if (map.stops.rgb != nullptr && map.stops.count >= 2)
    {
        return map.stops;
    }
    return ColorStops{*map.palette, 5};
}

// Where a clamped position lies on a palette whose last stop is last:
// segment i from 0 to last and the fraction f along it. For the five stops
// x is p * 4.0, as it always was.
void Locate(double clamped, int last, int& i, double& f)
{
    const double x = clamped * static_cast<double>(last);
    i = static_cast<int>(x);
    f = x - i;
}

// The stop at the high end of segment i. At the top of the scale (i = last)
// there is no segment; both ends are then the last stop, so that every index
// stays within the stops.
int HighStop(int i, int last)
{
    return i < last ? i + 1 : last;
}

// One channel at fraction f between the ends of a segment, in double.
double Mix(double f, double low, double high)
{
    return (1.0 - f) * low + f * high;
}

// The channel at fraction f of segment i. At the top of the scale (i =
// last) it is the last stop itself, not a mix.
double MixedChannel(int i, int last, double f, double low, double high)
{
    return i == last ? low : Mix(f, low, high);
}

// ---- Range tests --------------------------------------------------------------------

// The helpers below make every comparison unconditionally and then select,
// so that the batch loops built from them need no branch (a comparison made
// only on one path could not be moved ahead of the choice).

// -1 below [minimum, maximum], 1 above, 0 inside; NaN lies inside.
int SideOfRange(double value, double minimum, double maximum)
{
    const bool below = minimum > value;
    const bool above = value > maximum;
    return below ? -1 : (above ? 1 : 0);
}

// value raised to minimum, then lowered to maximum; NaN stays NaN.
double ClampedValue(double value, double minimum, double maximum)
{
    const double raised = minimum > value ? minimum : value;
    return raised > maximum ? maximum : raised;
}

// ---- Block edges ------------------------------------------------------------------

// The one rule of the block edges, for the single walk, the batch's table and
// ColorBlockEdges alike: each edge is the one before plus the step, except
// that the last of two or more blocks ends at the maximum itself.
class BlockEdgeRule
{
public:
    BlockEdgeRule(double minimum, double maximum, int blocks)
        : m_maximum(maximum), m_step((maximum - minimum) / blocks), m_blocks(blocks)
    {
    }

    // Edge k + 1 from edge k, for 0 <= k < blocks.
    double Next(int k, double edge) const
    {
        return k > 0 && k == m_blocks - 1 ? m_maximum : edge + m_step;
    }

private:
    double m_maximum;
    double m_step;
    int m_blocks;
};

// Writes the blocks + 1 edges (blocks >= 0) into edges.
void FillBlockEdges(double minimum, double maximum, int blocks, double* edges)
{
    const BlockEdgeRule rule(minimum, maximum, blocks);
    edges[0] = minimum;
    for (int k = 0; k < blocks; ++k)
    {
        edges[k + 1] = rule.Next(k, edges[k]);
    }
}

// The lower edge of value's block, walked edge by edge without storing them;
// the last edge for a value in no block (the maximum, one outside the range
// or not a number).
double LowerEdge(double minimum, double maximum, int blocks, double value)
{
    const BlockEdgeRule rule(minimum, maximum, blocks);
    double lower = minimum;
    for (int k = 0; k < blocks; ++k)
    {
        const double upper = rule.Next(k, lower);
        if (upper > value && value >= lower)
        {
            break;
        }
        lower = upper;
    }
    return lower;
}

constexpr int kMaxTabledBlocks = 30;

// Values a batch query takes at a time: its work arrays stay on the stack
// and in the first-level cache.
constexpr std::size_t kBatchBlock = 256;

// Adds 1 to counts[v] for every value at or above edge.
void CountAtOrAbove(double edge, const double* values, std::size_t n, double* counts)
{
    for (std::size_t v = 0; v < n; ++v)
    {
        counts[v] += edge <= values[v] ? 1.0 : 0.0;
    }
}

// The batch's copy of the block edges, for up to kMaxTabledBlocks blocks:
// the lower edge of a value's block by index, without walking per value.
struct BlockEdgeTable
{
    BlockEdgeTable(double minimum, double maximum, int n) : count(n)
    {
        FillBlockEdges(minimum, maximum, n, edge);
        for (int k = 0; k < n; ++k)
        {
            // Not a number, or an edge below the one before (edges of an
            // infinite range): only the literal walk finds the block.
            sorted = sorted && edge[k] <= edge[k + 1];
        }
    }

    // The index of the lower edge of value's block; n for a value in no
    // block (the maximum, outside the range, not a number).
    int LowerIndex(double value) const
    {
        for (int k = 1; k <= count; ++k)
        {
            if (edge[k] > value && value >= edge[k - 1])
            {
                return k - 1;
            }
        }
        return count;
    }

    // LowerIndex of n values at once; counts is work space for n doubles.
    void LowerIndices(const double* values, std::size_t n, double* counts, int* index) const
    {
        if (!sorted)
        {
            std::transform(values, values + n, index,
                           [this](double value) { return LowerIndex(value); });
            return;
        }
        // With rising edges the first block whose upper edge lies above a
        // value is found by counting the edges at or below it: edge by edge
        // over all values, and in doubles, as wide as the values, so that
        // the count runs on vectors.
        const double none = count;
        const double minimum = edge[0];
        for (std::size_t v = 0; v < n; ++v)
        {
            counts[v] = values[v] >= minimum ? 0.0 : none;
        }
        // A value below the minimum or not a number lies at or above no
        // rising edge: its count stays n.
        for (int k = 1; k <= count; ++k)
        {
            CountAtOrAbove(edge[k], values, n, counts);
        }
        for (std::size_t v = 0; v < n; ++v)
        {
            index[v] = static_cast<int>(counts[v]);
        }
    }

    int count;
    bool sorted = true;
    double edge[kMaxTabledBlocks + 1] = {};
};

// The batch's work space for one block of values. The values and the edge
// counts lie side by side, exactly half of 4 KiB apart: a load of one then
// never shares the low twelve address bits with a recent store to the other,
// which the processor would otherwise make wait (4K aliasing), whatever the
// stack frame around them looks like.
struct BatchWork
{
    double filled[kBatchBlock];
    double counts[kBatchBlock];
    int index[kBatchBlock];
    std::uint32_t mapped[kBatchBlock];
};

// ---- Packed colours ------------------------------------------------------------

// Where byte b (0 red, 1 green, 2 blue, 3 alpha) of a colour lands in the
// 32 bits that PackedColor makes of it, whatever the byte order.
int ByteShift(int b)
{
    unsigned char bytes[4] = {0, 0, 0, 0};
    bytes[b] = 1;
    std::uint32_t packed = 0;
    std::memcpy(&packed, bytes, sizeof packed);
    int shift = 0;
    while ((packed >> shift) != 1)
    {
        shift += 8;
    }
    return shift;
}

// Red, green, blue and alpha 255 as four bytes in that order, held as one
// 32-bit value to be copied out whole.
std::uint32_t PackedColor(const unsigned char* rgb)
{
    const unsigned char rgba[4] = {rgb[0], rgb[1], rgb[2], 255};
    std::uint32_t packed = 0;
    std::memcpy(&packed, rgba, sizeof packed);
    return packed;
}

std::uint32_t PackedColor(unsigned char red, unsigned char green, unsigned char blue)
{
    const unsigned char rgb[3] = {red, green, blue};
    return PackedColor(rgb);
}

void CopyRgb(const unsigned char* rgb, unsigned char& red, unsigned char& green,
             unsigned char& blue)
{
    red = rgb[0];
    green = rgb[1];
    blue = rgb[2];
}

// The smooth colours of n values already clamped by fill all range, in steps
// over the whole block: position, segment, the segment's stops (looked up one
// value at a time), and the channels. Only the lookup is not run on vectors.
// index is work space for n ints. The log scale's positions take a
// logarithm each, which no vector step does; they stay exact all the same.
void SmoothBlock(const ColorStops& stops, double minimum, double top, bool inverse,
                 int logarithmic, const double* filled, std::size_t n, int* index,
                 std::uint32_t* mapped)
{
    const int last = stops.count - 1;
    double fraction[kBatchBlock];
    if (logarithmic == 0)
    {
        for (std::size_t k = 0; k < n; ++k)
        {
            const double p = LinearPosition(filled[k], minimum, top);
            const double inverted = 1.0 - p;
            fraction[k] = ClampedPosition(inverse ? inverted : p);
        }
    }
    else
    {
        for (std::size_t k = 0; k < n; ++k)
        {
            const double p = PalettePosition(filled[k], minimum, top, logarithmic);
            fraction[k] = ClampedPosition(inverse ? 1.0 - p : p);
        }
    }
    for (std::size_t k = 0; k < n; ++k)
    {
        Locate(fraction[k], last, index[k], fraction[k]);
    }
    double low[3][kBatchBlock];
    double high[3][kBatchBlock];
    for (std::size_t k = 0; k < n; ++k)
    {
        const double* const lowStop = stops.rgb[index[k]];
        const double* const highStop = stops.rgb[HighStop(index[k], last)];
        for (int c = 0; c < 3; ++c)
        {
            low[c][k] = lowStop[c];
            high[c][k] = highStop[c];
        }
    }
    // Channel bytes held in 32 bits, as wide as the packed colour, so that
    // packing runs on vectors too.
    std::uint32_t channel[3][kBatchBlock];
    for (int c = 0; c < 3; ++c)
    {
        for (std::size_t k = 0; k < n; ++k)
        {
            channel[c][k] = ChannelByte(Mix(fraction[k], low[c][k], high[c][k]));
        }
    }
    // At the top of the scale the colour is the last stop itself: chosen on
    // the bytes, after the mix that has no segment there.
    const double* const lastStop = stops.rgb[last];
    const std::uint32_t topColor =
        PackedColor(ChannelByte(lastStop[0]), ChannelByte(lastStop[1]), ChannelByte(lastStop[2]));
    const int red = ByteShift(0);
    const int green = ByteShift(1);
    const int blue = ByteShift(2);
    const std::uint32_t alpha = std::uint32_t{255} << ByteShift(3);
    for (std::size_t k = 0; k < n; ++k)
    {
        const std::uint32_t mixed =
            channel[0][k] << red | channel[1][k] << green | channel[2][k] << blue | alpha;
        mapped[k] = index[k] == last ? topColor : mixed;
    }
}

// ---- The single query -------------------------------------------------------------

// The rules of the single query, in this file's own functions, so that they
// are compiled into one another rather than called through the library's
// symbol table.

// The colour at a clamped position of stops whose last stop is last.
void PlaceClamped(const double (*stops)[3], int last, double clamped, unsigned char* rgb)
{
    int i = 0;
    double f = 0.0;
    Locate(clamped, last, i, f);
    const double* const lowStop = stops[i];
    const double* const highStop = stops[HighStop(i, last)];
    for (int c = 0; c < 3; ++c)
    {
        rgb[c] = ChannelByte(MixedChannel(i, last, f, lowStop[c], highStop[c]));
    }
}

// The colour at position p of the scale, inverted when inverse is set.
void PlacePosition(const CKesraColorMap& map, double p, unsigned char* rgb)
{
    if (map.inverse)
    {
        p = 1.0 - p;
    }
    const ColorStops stops = StopsOf(map);
    // The five stops with their count as a constant, as the single query has
    // always been compiled; the same steps either way.
    if (stops.rgb == *map.palette)
    {
        PlaceClamped(*map.palette, 4, ClampedPosition(p), rgb);
        return;
    }
    PlaceClamped(stops.rgb, stops.count - 1, ClampedPosition(p), rgb);
}

void Place(const CKesraColorMap& map, double value, double low, double high, int logarithmic,
           unsigned char* rgb)
{
    PlacePosition(map, PalettePosition(value, low, high, logarithmic), rgb);
}

int ScaleLogarithmic(const CKesraColorMap& map)
{
    return map.logScale ? 1 : 0;
}

// The log scale's block of a position p (before inverse): p clamped and cut
// into blocks equal parts; the lower end of its part, or 1 for the top of
// the scale, which lies in no part. Fewer than one block: every value at
// the bottom, as the linear walk gives the minimum then.
double LogBlockPosition(double p, int blocks)
{
    if (blocks < 1)
    {
        return 0.0;
    }
    const double n = static_cast<double>(blocks);
    const double part = std::floor(ClampedPosition(p) * n);
    return part >= n ? 1.0 : part / n;
}

// The NaN colour's code of value, or 0 when value takes no NaN colour: a
// NaN with the NaN colour on or on the log scale, a value <= 0 on the log
// scale. Comparisons always made, so that a batch's loop needs no branch.
int SpecialCode(const CKesraColorMap& map, double value)
{
    const bool notANumber = std::isnan(value) && (map.useNanColor || map.logScale);
    const bool notPositive = map.logScale && value <= 0.0;
    return notANumber ? kColorCodeNotANumber : (notPositive ? kColorCodeNotPositive : 0);
}

bool HasSpecialCodes(const CKesraColorMap& map)
{
    return map.useNanColor || map.logScale;
}

// The colour of the values on side (-1 below, 1 above) of the range without
// fill all range and single colour.
const unsigned char* OutsideColor(const CKesraColorMap& map, int side)
{
    if (side < 0 && map.useBelowColor)
    {
        return map.belowColor;
    }
    if (side > 0 && map.useAboveColor)
    {
        return map.aboveColor;
    }
    return map.overRangeColor;
}

// The value the colour is taken for: clamped into the range with fill all
// range, else unchanged.
double Filled(const CKesraColorMap& map, double value)
{
    return map.fillAllRange ? ClampedValue(value, map.minimum, map.maximum) : value;
}

// The position of value on the map's scale, before inverse and clamping.
// The log scale's is a function of its own, so that the common linear query
// compiles into its callers without the logarithms.
double LogScalePosition(const CKesraColorMap& map, double value)
{
    return PalettePosition(value, map.minimum, map.scaleTop, 1);
}

inline double ScalePositionOf(const CKesraColorMap& map, double value)
{
    return map.logScale ? LogScalePosition(map, value)
                        : LinearPosition(value, map.minimum, map.scaleTop);
}

inline void Smooth(const CKesraColorMap& map, double value, unsigned char* rgb)
{
    PlacePosition(map, ScalePositionOf(map, Filled(map, value)), rgb);
}

// The log scale's banded colour: the lower end of the value's part of the
// logarithmic position.
void LogBanded(const CKesraColorMap& map, double value, unsigned char* rgb)
{
    const double p = LogScalePosition(map, Filled(map, value));
    PlacePosition(map, LogBlockPosition(p, map.blocks), rgb);
}

inline void Banded(const CKesraColorMap& map, double value, unsigned char* rgb)
{
    if (map.logScale)
    {
        LogBanded(map, value, rgb);
        return;
    }
    const double lower = LowerEdge(map.minimum, map.maximum, map.blocks, Filled(map, value));
    Place(map, lower, map.minimum, map.scaleTop, 0, rgb);
}

int Single(const CKesraColorMap& map, double value, unsigned char* rgb)
{
    const int special = SpecialCode(map, value);
    if (special != 0)
    {
        CopyRgb(map.nanColor, rgb[0], rgb[1], rgb[2]);
        return special;
    }
    const int side = SideOfRange(value, map.minimum, map.maximum);
    if (map.useSingleColor)
    {
        CopyRgb(map.singleColor, rgb[0], rgb[1], rgb[2]);
        return map.fillAllRange ? 0 : side;
    }
    if (!map.fillAllRange && side != 0)
    {
        CopyRgb(OutsideColor(map, side), rgb[0], rgb[1], rgb[2]);
        return side;
    }
    if (map.banded)
    {
        Banded(map, value, rgb);
    }
    else
    {
        Smooth(map, value, rgb);
    }
    return 0;
}

// ---- The tables of a setting -----------------------------------------------------

// The words a table is keyed on: every bit of the setting that its colours
// depend on. Fill all range and the fixed colours are applied per value, so
// they are not part of it; neither is the block count of a smooth table.
// A many-stop palette adds its count here and every bit of its stops beside
// the key (CKesraColorTable::stopBits); the log scale is keyed too, although
// it builds no table, so that a table is never taken for a setting it was
// not made for.
constexpr int kKeyWords = 15 + 6 + 2;
using TableKey = std::uint64_t[kKeyWords];

std::uint64_t BitsOf(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

void KeyOf(const CKesraColorMap& map, std::uint64_t* key)
{
    int w = 0;
    for (const auto& stop : *map.palette)
    {
        for (const double channel : stop)
        {
            key[w++] = BitsOf(channel);
        }
    }
    key[w++] = BitsOf(map.minimum);
    key[w++] = BitsOf(map.maximum);
    key[w++] = BitsOf(map.scaleTop);
    key[w++] = static_cast<std::uint32_t>(map.banded ? map.blocks : 0);
    key[w++] = map.inverse ? 1 : 0;
    key[w++] = map.banded ? 1 : 0;
    key[w++] = static_cast<std::uint32_t>(StopsOf(map).count);
    key[w] = map.logScale ? 1 : 0;
}

// Whether bits holds every bit of the map's many stops, in order; none for
// the five stops, which the key holds.
bool SameStopBits(const CKesraColorMap& map, const std::vector<std::uint64_t>& bits)
{
    const ColorStops stops = StopsOf(map);
    if (stops.rgb == *map.palette)
    {
        return bits.empty();
    }
    if (bits.size() != static_cast<std::size_t>(stops.count) * 3)
    {
        return false;
    }
    for (std::size_t k = 0; k < bits.size(); ++k)
    {
        if (bits[k] != BitsOf(stops.rgb[k / 3][k % 3]))
        {
            return false;
        }
    }
    return true;
}

void StoreStopBits(const CKesraColorMap& map, std::vector<std::uint64_t>& bits)
{
    const ColorStops stops = StopsOf(map);
    if (stops.rgb == *map.palette)
    {
        return;
    }
    for (int k = 0; k < stops.count; ++k)
    {
        for (const double channel : stops.rgb[k])
        {
            bits.push_back(BitsOf(channel));
        }
    }
}

// Doubles in rising order as integers, one apart for neighbours; +0.0 and
// -0.0 (which every step of the mapping treats alike) share 0.
std::int64_t OrderOf(double value)
{
    const auto bits = static_cast<std::int64_t>(BitsOf(value));
    return bits < 0 ? -(bits & std::numeric_limits<std::int64_t>::max()) : bits;
}

double DoubleOfOrder(std::int64_t order)
{
    const std::uint64_t sign = std::uint64_t{1} << 63;
    const std::uint64_t bits =
        order < 0 ? (static_cast<std::uint64_t>(-order) | sign) : static_cast<std::uint64_t>(order);
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// Tables larger than this are not worth their building time: the setting
// is left to the blockwise batch.
constexpr std::size_t kMaxTableEdges = std::size_t{1} << 16;
constexpr int kMaxTableBlocks = 4096;
// Batches shorter than this go blockwise, without a table.
constexpr std::size_t kTabledBatch = 4096;

} // namespace

// The colour of every value as a step function, built from the colours
// inside the range: inner holds the values of [minimum, maximum] at which the
// colour changes, rising (a value may appear twice), and innerColor[j] is
// the colour of the values of the range with exactly j of them at or below.
// The buckets cut the range by a rounded, clamped, hence rising, function of
// the value, so the edges in buckets below a value's lie below it and those
// in buckets above it above: a value needs only the edges of its own bucket.
// Two more buckets take the values below and above the range, with colours
// that depend on fill all range and the over-range colour. Most buckets hold one edge or none, and their entry
// answers with one comparison; an entry of colour 0 (alpha 0, no colour of
// the map) sends its values to the search of the bucket's edges. Values that
// are not a number are the batch's to colour.
class CKesraColorTable
{
public:
    struct Entry
    {
        double edge;
        std::uint32_t below;
        std::uint32_t above;
    };

    TableKey key = {};
    // The many stops' bits, when the setting has them.
    std::vector<std::uint64_t> stopBits;
    // False: no exact table for this setting.
    bool usable = false;
    double minimum = 0.0;
    double maximum = 0.0;
    std::vector<double> inner;
    std::vector<std::uint32_t> innerColor;
    // The colour of a value that is not a number.
    std::uint32_t nanColor = 0;

    double scale = 1.0;
    double top = 0.0;
    std::uint32_t belowColor = 0;
    std::uint32_t aboveColor = 0;
    std::vector<std::int32_t> start;
    std::vector<double> edge;
    std::vector<std::uint32_t> color;
    std::vector<Entry> entry;

    static constexpr std::uint32_t kSearch = 0;

    // Bucket 0 takes the values below the range, top + 1 those above it and
    // top + 2 those that are not a number; buckets 1 to top cut the range
    // from the minimum up. Selects between comparisons always made, so that
    // a batch's loop runs on vectors.
    int Bucket(double value) const { return Buckets().Of(value); }

    // The bucket rule's numbers, as plain values that a loop keeps in
    // registers; every select's operands are ready before it, so that the
    // compiler needs no branch and runs the loop on vectors.
    struct BucketRule
    {
        double low;
        double high;
        double scale;
        double inner;
        double top;
        double notANumber;

        int Of(double value) const
        {
            const double s = (value - low) * scale;
            const double clamped = s < inner ? s : inner;
            // Negative only below the range, which the last select overrides.
            const double inside = s >= 0.0 ? clamped : notANumber;
            const double up = value > high ? top : inside;
            const double t = low > value ? -1.0 : up;
            return static_cast<int>(t) + 1;
        }
    };

    BucketRule Buckets() const
    {
        return {minimum, maximum, scale, top - 1.0, top, top + 1.0};
    }

    // The colour of value (not a number excepted) by its bucket's edges.
    std::uint32_t Search(double value) const
    {
        std::size_t j = static_cast<std::size_t>(start[static_cast<std::size_t>(Bucket(value))]);
        while (value >= edge[j])
        {
            ++j;
        }
        return color[j];
    }

    // The colour of value in [minimum, maximum].
    std::uint32_t InnerColor(double value) const
    {
        return innerColor[static_cast<std::size_t>(
            std::upper_bound(inner.begin(), inner.end(), value) - inner.begin())];
    }

    // Buckets and entries, with these colours below and above the range;
    // about eight buckets an edge.
    void Index(std::uint32_t below, std::uint32_t above)
    {
        belowColor = below;
        aboveColor = above;
        edge = inner;
        color = innerColor;
        const std::size_t edges = edge.size();
        std::size_t buckets = 64;
        while (buckets < 8 * edges && buckets < (std::size_t{1} << 15))
        {
            buckets *= 2;
        }
        top = static_cast<double>(buckets);
        const double width = maximum - minimum;
        const double perValue = width > 0.0 ? top / width : 1.0;
        // Any positive finite scale keeps the buckets rising; one that
        // overflowed (a width of a few denormals) would make 0 * inf.
        scale = std::min(perValue, DBL_MAX);
        const std::size_t all = buckets + 3;
        std::vector<std::int32_t> inBucket(all, 0);
        for (const double e : edge)
        {
            ++inBucket[static_cast<std::size_t>(Bucket(e))];
        }
        // Stops every search: no value is at or above it.
        edge.push_back(kNoEdge);
        start.assign(all, 0);
        entry.assign(all, Entry{kNoEdge, kSearch, kSearch});
        std::int32_t before = 0;
        for (std::size_t b = 1; b <= buckets; ++b)
        {
            start[b] = before;
            const auto j = static_cast<std::size_t>(before);
            if (inBucket[b] == 0)
            {
                entry[b] = {kNoEdge, color[j], color[j]};
            }
            else if (inBucket[b] == 1)
            {
                entry[b] = {edge[j], color[j], color[j + 1]};
            }
            before += inBucket[b];
        }
        entry[0] = {kNoEdge, below, below};
        entry[buckets + 1] = {kNoEdge, above, above};
        entry[buckets + 2] = {kNoEdge, nanColor, nanColor};
    }

private:
    static constexpr double kNoEdge = std::numeric_limits<double>::quiet_NaN();
};

namespace
{

std::uint32_t PlacedColor(const CKesraColorMap& map, double value)
{
    unsigned char rgb[3];
    Place(map, value, map.minimum, map.scaleTop, 0, rgb);
    return PackedColor(rgb);
}

// The clamped palette position of value, by the single query's steps.
double PositionOf(const CKesraColorMap& map, double value)
{
    const double p = LinearPosition(value, map.minimum, map.scaleTop);
    return ClampedPosition(map.inverse ? 1.0 - p : p);
}

bool FiniteRange(const CKesraColorMap& map)
{
    return std::isfinite(map.minimum) && std::isfinite(map.maximum) &&
           map.minimum <= map.maximum && std::isfinite(map.maximum - map.minimum);
}

// Finds every value of [minimum, maximum] at which the smooth colour
// changes. The position is a rounded, rising (falling with inverse) function
// of the value, so over an interval of values it lies between the positions
// of the ends; within one segment the fraction does too, and every rounded
// step of a channel's mix is monotone in each operand, so a channel lies
// between the mixes of the two ends' fractions taken crosswise. Where both
// bounds give one byte for every channel the interval has one colour:
// proved, not sampled, so that a mix that wobbles by an ulp near a byte's
// edge is still found. Other intervals are halved, down to neighbouring
// doubles, whose colours are the single query's.
class SmoothTableBuilder
{
public:
    SmoothTableBuilder(const CKesraColorMap& map, CKesraColorTable& table)
        : m_map(map), m_table(table)
    {
    }

    // False when the table outgrew its limit or the proof failed.
    bool Build()
    {
        const double low = m_map.minimum;
        const double high = m_map.maximum;
        m_table.innerColor.push_back(PlacedColor(m_map, low));
        // Any points split the range soundly; points evenly spaced in value
        // start each edge's halving close to it, where halving the doubles
        // from the whole range would first walk down through the exponents.
        double from = low;
        std::uint32_t fromColor = m_table.innerColor.back();
        for (int k = 1; k <= kFirstCuts && m_ok; ++k)
        {
            const double cut = k == kFirstCuts ? high : low + (high - low) * (k / double{kFirstCuts});
            if (!(cut > from && cut <= high))
            {
                continue;
            }
            const std::uint32_t cutColor = PlacedColor(m_map, cut);
            Walk(OrderOf(from), OrderOf(cut), PositionOf(m_map, from), PositionOf(m_map, cut),
                 fromColor, cutColor);
            from = cut;
            fromColor = cutColor;
        }
        return m_ok;
    }

    static bool Applies(const CKesraColorMap& map)
    {
        const double width = map.scaleTop - map.minimum;
        if (map.logScale || !FiniteRange(map) || !std::isfinite(width) || !(width > 0.0))
        {
            return false;
        }
        const ColorStops stops = StopsOf(map);
        for (int k = 0; k < stops.count; ++k)
        {
            for (const double channel : stops.rgb[k])
            {
                if (!(channel >= 0.0 && channel <= 1.0))
                {
                    return false;
                }
            }
        }
        return true;
    }

private:
    bool OneColor(double a, double b) const
    {
        const double low = std::min(a, b);
        const double high = std::max(a, b);
        if (low == high)
        {
            return true;
        }
        const ColorStops stops = StopsOf(m_map);
        const int last = stops.count - 1;
        int i = 0;
        int j = 0;
        double fLow = 0.0;
        double fHigh = 0.0;
        Locate(low, last, i, fLow);
        Locate(high, last, j, fHigh);
        if (i != j)
        {
            return false;
        }
        for (int c = 0; c < 3; ++c)
        {
            if (!OneByte(stops.rgb[i][c], stops.rgb[i + 1][c], fLow, fHigh))
            {
                return false;
            }
        }
        return true;
    }

    // Whether a channel mixed between stops l and h (both in [0, 1]) gives
    // one byte for every fraction in [fLow, fHigh]. Two proofs, each sound on
    // its own; byte is rising in the channel, so equal bytes at the ends of a
    // channel interval prove one byte in between.
    // - Crosswise: each rounded step of the mix is monotone in its operands,
    //   so the mix lies between the mixes taken with the two fractions
    //   crosswise. Tight on short intervals, where 1 - f rounds to one or
    //   two values; it finds where a mix that wobbles by an ulp near a
    //   byte's edge crosses it more than once.
    // - Bounded error: the rounded mix lies within 2^-51 of the exact
    //   (1 - f) l + f h (four roundings of numbers below 2, each at most half
    //   an ulp of 1), which is linear in f, and the ends computed here lie
    //   within as much of its ends; a margin of 2^-48 covers both. Tight on
    //   long intervals, where the crosswise mixes drift apart.
    static bool OneByte(double l, double h, double fLow, double fHigh)
    {
        const double crosswiseLeast = (1.0 - fHigh) * l + fLow * h;
        const double crosswiseMost = (1.0 - fLow) * l + fHigh * h;
        if (ChannelByte(crosswiseLeast) == ChannelByte(crosswiseMost))
        {
            return true;
        }
        constexpr double kMargin = 0x1p-48;
        const double atLow = l + fLow * (h - l);
        const double atHigh = l + fHigh * (h - l);
        const double least = std::max(std::min(atLow, atHigh) - kMargin, 0.0);
        const double most = std::min(std::max(atLow, atHigh) + kMargin, 1.0);
        return ChannelByte(least) == ChannelByte(most);
    }

    void Walk(std::int64_t a, std::int64_t b, double pa, double pb, std::uint32_t ca,
              std::uint32_t cb)
    {
        // A palette whose stops almost agree can leave a channel within its
        // rounding of a byte's edge over a long stretch; past this many
        // intervals the setting is left to the blockwise batch.
        m_ok = m_ok && ++m_intervals <= kMaxIntervals;
        if (!m_ok)
        {
            return;
        }
        if (OneColor(pa, pb))
        {
            // The proof and the single query cannot disagree; if they did,
            // the setting is left to the blockwise batch.
            m_ok = ca == cb;
            return;
        }
        const std::uint64_t apart = static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a);
        if (apart == 1)
        {
            if (ca != cb)
            {
                m_table.inner.push_back(DoubleOfOrder(b));
                m_table.innerColor.push_back(cb);
                m_ok = m_table.inner.size() <= kMaxTableEdges;
            }
            return;
        }
        const auto middle = static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + apart / 2);
        const double value = DoubleOfOrder(middle);
        const double pm = PositionOf(m_map, value);
        const std::uint32_t cm = PlacedColor(m_map, value);
        Walk(a, middle, pa, pm, ca, cm);
        Walk(middle, b, pm, pb, cm, cb);
    }

    const CKesraColorMap& m_map;
    CKesraColorTable& m_table;
    static constexpr long kMaxIntervals = 1L << 21;
    static constexpr int kFirstCuts = 1024;
    long m_intervals = 0;
    bool m_ok = true;
};

// The banded colour is the colour of the lower edge of a value's block: with
// rising block edges, edge k is the lower edge of the values that have k
// edges after the minimum at or below them.
bool BuildBandedTable(const CKesraColorMap& map, CKesraColorTable& table)
{
    if (map.logScale || !FiniteRange(map) || map.blocks > kMaxTableBlocks)
    {
        return false;
    }
    const int n = std::max(map.blocks, 0);
    std::vector<double> edges(static_cast<std::size_t>(n) + 1);
    FillBlockEdges(map.minimum, map.maximum, n, edges.data());
    for (std::size_t k = 0; k < edges.size(); ++k)
    {
        if (!std::isfinite(edges[k]) || (k > 0 && !(edges[k - 1] <= edges[k])))
        {
            return false;
        }
    }
    table.innerColor.push_back(PlacedColor(map, edges[0]));
    // An edge above the maximum (one block, rounded up) changes no colour
    // inside the range.
    for (std::size_t k = 1; k < edges.size() && edges[k] <= map.maximum; ++k)
    {
        table.inner.push_back(edges[k]);
        table.innerColor.push_back(PlacedColor(map, edges[k]));
    }
    return true;
}

void BuildTable(const CKesraColorMap& map, CKesraColorTable& table)
{
    KeyOf(map, table.key);
    StoreStopBits(map, table.stopBits);
    table.minimum = map.minimum;
    table.maximum = map.maximum;
    const bool built = map.banded
                           ? BuildBandedTable(map, table)
                           : SmoothTableBuilder::Applies(map) && SmoothTableBuilder(map, table).Build();
    if (!built)
    {
        table.inner.clear();
        table.innerColor.clear();
        return;
    }
    unsigned char rgb[3];
    if (map.banded)
    {
        Banded(map, std::numeric_limits<double>::quiet_NaN(), rgb);
    }
    else
    {
        Smooth(map, std::numeric_limits<double>::quiet_NaN(), rgb);
    }
    table.nanColor = PackedColor(rgb);
    table.usable = true;
}

// The table's colours of n values: each value's bucket, in steps that run
// on vectors, then one comparison with its entry's edge. The few values whose
// bucket holds several edges are searched afterwards.
void LookUp(const CKesraColorTable& table, const double* values, std::size_t n,
            std::uint32_t* mapped)
{
    std::int32_t which[kBatchBlock];
    const CKesraColorTable::BucketRule rule = table.Buckets();
    for (std::size_t k = 0; k < n; ++k)
    {
        which[k] = rule.Of(values[k]);
    }
    const CKesraColorTable::Entry* const entry = table.entry.data();
    std::uint32_t searched = ~std::uint32_t{0};
    for (std::size_t k = 0; k < n; ++k)
    {
        const CKesraColorTable::Entry& e = entry[which[k]];
        const std::uint32_t color = values[k] >= e.edge ? e.above : e.below;
        mapped[k] = color;
        searched &= color;
    }
    // Every colour has alpha 255; only a bucket of several edges leaves 0.
    if ((searched >> ByteShift(3) & 0xffu) == 0)
    {
        for (std::size_t k = 0; k < n; ++k)
        {
            if (mapped[k] == CKesraColorTable::kSearch)
            {
                mapped[k] = table.Search(values[k]);
            }
        }
    }
}

// The codes of n values by the range alone: 0 with fill all range, else the
// side. Nothing when codes is null.
void WriteCodes(const CKesraColorMap& map, const double* values, std::size_t n,
                signed char* codes)
{
    if (codes == nullptr)
    {
        return;
    }
    const double low = map.minimum;
    const double high = map.maximum;
    const bool fill = map.fillAllRange;
    for (std::size_t k = 0; k < n; ++k)
    {
        const int side = SideOfRange(values[k], low, high);
        codes[k] = static_cast<signed char>(fill ? 0 : side);
    }
}

// The NaN colour and its codes over whatever n values were given, where
// SpecialCode says so; nothing while no option asks for them. Codes are
// left alone when null.
void MarkSpecials(const CKesraColorMap& map, const double* values, std::size_t n,
                  unsigned char* rgba, signed char* codes)
{
    if (!HasSpecialCodes(map))
    {
        return;
    }
    const std::uint32_t nan = PackedColor(map.nanColor);
    for (std::size_t k = 0; k < n; ++k)
    {
        const int special = SpecialCode(map, values[k]);
        if (special == 0)
        {
            continue;
        }
        std::memcpy(rgba + 4 * k, &nan, sizeof nan);
        if (codes != nullptr)
        {
            codes[k] = static_cast<signed char>(special);
        }
    }
}

} // namespace

std::vector<double> ColorBlockEdges(double minimum, double maximum, int blocks)
{
    // Fewer than one block walks no edge beyond the minimum.
    const int n = std::max(blocks, 0);
    std::vector<double> edges(static_cast<std::size_t>(n) + 1);
    FillBlockEdges(minimum, maximum, n, edges.data());
    return edges;
}

std::vector<double> ColorDecades(double minimum, double maximum)
{
    const double top = maximum > 0.0 ? maximum : 1.0;
    const double bottom = minimum > 0.0 ? minimum : top * 0.0001;
    std::vector<double> decades;
    // A bottom four decades below a denormal top rounds to 0, which has no
    // decade; nor has an infinite end.
    if (!std::isfinite(top) || !std::isfinite(bottom) || !(bottom > 0.0))
    {
        return decades;
    }
    // The logarithm only finds where to start counting; the comparisons with
    // the ends decide, so that a logarithm rounded across a decade neither
    // loses nor adds one. Past the largest double, 10^k is infinite and stops.
    for (int k = static_cast<int>(std::floor(std::log10(bottom))) - 1;; ++k)
    {
        const double decade = std::pow(10.0, k);
        if (decade > top)
        {
            break;
        }
        if (decade >= bottom)
        {
            decades.push_back(decade);
        }
    }
    return decades;
}

double CKesraColorMap::ScalePosition(double value) const
{
    return ScalePositionOf(*this, value);
}

void CKesraColorMap::PaletteColor(unsigned char& red, unsigned char& green, unsigned char& blue,
                                  double value, double low, double high, int logarithmic) const
{
    unsigned char rgb[3];
    Place(*this, value, low, high, logarithmic, rgb);
    CopyRgb(rgb, red, green, blue);
}

void CKesraColorMap::SmoothColor(unsigned char& red, unsigned char& green, unsigned char& blue,
                                 double value) const
{
    unsigned char rgb[3];
    Smooth(*this, value, rgb);
    CopyRgb(rgb, red, green, blue);
}

void CKesraColorMap::BandedColor(unsigned char& red, unsigned char& green, unsigned char& blue,
                                 double value) const
{
    unsigned char rgb[3];
    Banded(*this, value, rgb);
    CopyRgb(rgb, red, green, blue);
}

int CKesraColorMap::ColorOf(unsigned char& red, unsigned char& green, unsigned char& blue,
                            double value) const
{
    unsigned char rgb[3];
    const int code = Single(*this, value, rgb);
    CopyRgb(rgb, red, green, blue);
    return code;
}

// ---- The batch --------------------------------------------------------------------

void CKesraColorMap::ColorsOf(const double* values, std::size_t count, unsigned char* rgba,
                              signed char* codes) const
{
    if (values == nullptr || rgba == nullptr)
    {
        return;
    }
    const double low = minimum;
    const double high = maximum;
    const double top = scaleTop;
    const bool fill = fillAllRange;
    const bool single = useSingleColor;
    const std::uint32_t singlePacked = PackedColor(singleColor);
    const std::uint32_t belowPacked = PackedColor(OutsideColor(*this, -1));
    const std::uint32_t abovePacked = PackedColor(OutsideColor(*this, 1));

    const bool inverted = inverse;
    const ColorStops stops = StopsOf(*this);

    // The banded colour takes only the colours of the n + 1 block edges (the
    // log scale's blocks have no such edges: walked).
    const bool tabled = banded && !logScale && blocks >= 1 && blocks <= kMaxTabledBlocks;
    // Too many blocks for the table, or none: walked value by value.
    const bool walked = banded && !tabled;
    const BlockEdgeTable edges(low, high, tabled ? blocks : 1);
    std::uint32_t edgeColor[kMaxTabledBlocks + 1] = {};
    for (int k = 0; tabled && k <= edges.count; ++k)
    {
        unsigned char rgb[3];
        Place(*this, edges.edge[k], low, top, 0, rgb);
        edgeColor[k] = PackedColor(rgb);
    }

    // Values go through in blocks, each step over a whole block at a time,
    // so that the compiler can run the arithmetic steps on vectors.
    BatchWork work;
    double* const filled = work.filled;
    int* const index = work.index;
    std::uint32_t* const mapped = work.mapped;
    for (std::size_t start = 0; start < count; start += kBatchBlock)
    {
        const std::size_t n = std::min(kBatchBlock, count - start);
        const double* const block = values + start;
        for (std::size_t k = 0; k < n; ++k)
        {
            const double clamped = ClampedValue(block[k], low, high);
            filled[k] = fill ? clamped : block[k];
        }
        if (tabled)
        {
            edges.LowerIndices(filled, n, work.counts, index);
            for (std::size_t k = 0; k < n; ++k)
            {
                mapped[k] = edgeColor[index[k]];
            }
        }
        else if (walked)
        {
            for (std::size_t k = 0; k < n; ++k)
            {
                unsigned char rgb[3];
                Banded(*this, block[k], rgb);
                mapped[k] = PackedColor(rgb);
            }
        }
        else
        {
            SmoothBlock(stops, low, top, inverted, ScaleLogarithmic(*this), filled, n, index,
                        mapped);
        }
        // Outside the range without fill, and always in single-colour mode,
        // the fixed colour replaces the mapped one.
        for (std::size_t k = 0; k < n; ++k)
        {
            const int side = SideOfRange(block[k], low, high);
            const bool fixed = single || (!fill && side != 0);
            const std::uint32_t outside = side < 0 ? belowPacked : abovePacked;
            const std::uint32_t fixedColor = single ? singlePacked : outside;
            const std::uint32_t color = fixed ? fixedColor : mapped[k];
            std::memcpy(rgba + 4 * (start + k), &color, sizeof color);
        }
        WriteCodes(*this, block, n, codes == nullptr ? nullptr : codes + start);
        MarkSpecials(*this, block, n, rgba + 4 * start, codes == nullptr ? nullptr : codes + start);
    }
}

CKesraColorTables::CKesraColorTables() noexcept = default;

namespace
{

// The table of map's setting in slot, built or re-indexed as needed; null
// when the setting has no exact table.
const CKesraColorTable* CurrentTable(const CKesraColorMap& map,
                                     std::unique_ptr<CKesraColorTable>& slot)
{
    TableKey key = {};
    KeyOf(map, key);
    if (!slot || std::memcmp(slot->key, key, sizeof key) != 0 || !SameStopBits(map, slot->stopBits))
    {
        // The old table goes first, so that a failed allocation leaves none.
        slot.reset();
        auto built = std::make_unique<CKesraColorTable>();
        BuildTable(map, *built);
        slot = std::move(built);
    }
    CKesraColorTable& table = *slot;
    if (!table.usable)
    {
        return nullptr;
    }
    // Outside the range with fill all range, the colour of the nearer end.
    const std::uint32_t below = map.fillAllRange ? table.InnerColor(map.minimum)
                                                 : PackedColor(OutsideColor(map, -1));
    const std::uint32_t above = map.fillAllRange ? table.InnerColor(map.maximum)
                                                 : PackedColor(OutsideColor(map, 1));
    if (table.entry.empty() || below != table.belowColor || above != table.aboveColor)
    {
        // Emptied first: a failed allocation leaves no half-made index.
        table.entry.clear();
        table.Index(below, above);
    }
    return &table;
}

} // namespace

CKesraColorTables::~CKesraColorTables() = default;

void CKesraColorMap::ColorsOf(const double* values, std::size_t count, unsigned char* rgba,
                              signed char* codes, CKesraColorTables& tables) const
{
    if (values == nullptr || rgba == nullptr)
    {
        return;
    }
    // In single-colour mode no value needs a table; a short batch is not
    // worth one, and works without allocating.
    if (!useSingleColor && count < kTabledBatch)
    {
        ColorsOf(values, count, rgba, codes);
        return;
    }
    std::unique_lock<std::mutex> hold(tables.m_lock, std::defer_lock);
    const CKesraColorTable* table = nullptr;
    if (!useSingleColor)
    {
        hold.lock();
        try
        {
            table = CurrentTable(*this, banded ? tables.m_banded : tables.m_smooth);
        }
        catch (const std::bad_alloc&)
        {
            // No table for want of memory: the blockwise batch needs none.
            (banded ? tables.m_banded : tables.m_smooth).reset();
        }
        if (table == nullptr)
        {
            hold.unlock();
            ColorsOf(values, count, rgba, codes);
            return;
        }
    }
    std::uint32_t mapped[kBatchBlock];
    std::fill(mapped, mapped + kBatchBlock, PackedColor(singleColor));
    for (std::size_t start = 0; start < count; start += kBatchBlock)
    {
        const std::size_t n = std::min(kBatchBlock, count - start);
        const double* const block = values + start;
        if (table != nullptr)
        {
            LookUp(*table, block, n, mapped);
        }
        std::memcpy(rgba + 4 * start, mapped, 4 * n);
        WriteCodes(*this, block, n, codes == nullptr ? nullptr : codes + start);
        MarkSpecials(*this, block, n, rgba + 4 * start, codes == nullptr ? nullptr : codes + start);
    }
}

} // namespace KesraEngine
