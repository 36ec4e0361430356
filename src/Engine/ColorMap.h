// Colour mapping: how a result value becomes 8-bit red, green and blue on a
// palette of five stops, smoothly or in equal blocks, and where the blocks'
// edges lie. CKesraScalarBar keeps the settings and maps through
// CKesraColorMap; a backend's legend takes its labels' and swatches' edges
// from ColorBlockEdges, so that they fall where the colours change.
//
// The single query (CKesraColorMap::ColorOf) and the batch
// (CKesraColorMap::ColorsOf) answer alike: for every value and every setting
// the batch writes exactly the red, green and blue bytes and the code that
// the single query gives for that value, bit for bit, with alpha 255. The
// single query is the reference; the batch may reorder its work in any way
// that keeps this.
//
// Conventions:
// - A position on the palette runs from 0 (stop 0) to 1 (stop 4); inverse
//   walks the palette backwards. The smooth and banded colours place values
//   between the minimum and the colour-scale top, which is the maximum, or
//   lies above it when the legend's range is degenerate.
// - Ranges are inclusive: a value is below the range when the minimum is
//   greater than it, above when it is greater than the maximum. A value that
//   is not a number lies inside.
// - Channel bytes are the double channel converted to float, times 255.0f in
//   float, truncated, so that colours match the host's own arithmetic to the
//   last bit.
// - Every option added to the first five-stop mapping is off by default and,
//   while off, changes no byte and no code: many-stop palettes (ColorStops),
//   the log scale, the NaN colour and the below- and above-range colours.
//
// Codes. -1 below the range, 1 above and 0 inside stay what they always were.
// Two more come only with the options that need them, outside -1 ... 1 so
// that a host testing the sign or the range of the old codes is not misled:
// - kColorCodeNotANumber (2): a NaN while the NaN colour is on, and always
//   on the log scale. A NaN has no side; a positive code beyond "above"
//   keeps it apart from every ordered value. (With the NaN colour off on a
//   linear scale a NaN stays what it always was: inside, at stop 0.)
// - kColorCodeNotPositive (-2): a value <= 0 on the log scale, which has no
//   logarithm. It lies below every decade, hence negative, but is not an
//   ordinary below-range value: the range may well include it.
// Both take the NaN colour, before fill all range and the single colour:
// neither can be clamped into the range or stands for a value of it, and the
// minimum's colour would pass missing or invalid data off as the smallest
// value.
#pragma once

#include "MathKit/Export.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace KesraEngine
{

// Five colour stops, red, green and blue each from 0.0 to 1.0: the colours at
// positions 0, 1/4, 2/4, 3/4 and 1.
using ColorPalette = double[5][3];

// The codes of the options above (see the opening comment).
inline constexpr int kColorCodeNotANumber = 2;
inline constexpr int kColorCodeNotPositive = -2;

// The legend's four palettes.
inline constexpr ColorPalette kColorPaletteRedBlue = {
    {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 1.0, 1.0}, {0.0, 0.0, 1.0}};
inline constexpr ColorPalette kColorPaletteBlueRed = {
    {0.0, 0.0, 1.0}, {0.0, 1.0, 1.0}, {0.0, 1.0, 0.0}, {1.0, 1.0, 0.0}, {1.0, 0.0, 0.0}};
inline constexpr ColorPalette kColorPaletteGrayScale = {
    {0.0, 0.0, 0.0}, {0.25, 0.25, 0.25}, {0.5, 0.5, 0.5}, {0.75, 0.75, 0.75}, {1.0, 1.0, 1.0}};
inline constexpr ColorPalette kColorPaletteGreenRed = {
    {1.0, 0.0, 0.0}, {0.945, 0.47, 0.0}, {0.882, 0.898, 0.0}, {0.58, 0.933, 0.0}, {0.0, 1.0, 0.0}};

// A palette of count stops (at least 2), evenly spaced: stop k is the colour
// at position k / (count - 1), and a position between two stops mixes them
// linearly, in the same double steps as the five-stop palettes. The stops
// are referred to, not copied: they must outlive whoever holds them. A
// batch's table compares every bit of them before it is used again, so
// stops changed in place are never served from an old table.
struct ColorStops
{
    const double (*rgb)[3] = nullptr;
    int count = 0;
};

// Published perceptually uniform colour maps, as their authors sampled them
// (the sources are cited beside the data): viridis and cividis (256 stops,
// dark blue to yellow; cividis also for red-green colour blindness), the
// diverging cool-to-warm (33 stops, blue through grey to red) and turbo (256
// stops, an even-lightness rainbow). Each answers the same static data.
KESRA_ENGINE_API ColorStops ColorStopsViridis();
KESRA_ENGINE_API ColorStops ColorStopsCividis();
KESRA_ENGINE_API ColorStops ColorStopsCoolWarm();
KESRA_ENGINE_API ColorStops ColorStopsTurbo();

// The decades 10^k of the log scale from minimum to maximum, rising: those
// between the scale's bottom and top as the log placing takes them (a top
// that is not positive counts as 1, a bottom that is not positive as top *
// 0.0001), ends included. Empty when an end is not finite or the bottom
// rounds to 0 (a top of a few denormals).
KESRA_ENGINE_API std::vector<double> ColorDecades(double minimum, double maximum);

// The edges of the banded mapping's blocks from minimum to maximum, exactly as
// the mapping walks them: edge[0] = minimum and edge[k] = edge[k - 1] + step,
// step = (maximum - minimum) / blocks, accumulated (not minimum + k * step),
// except that with two blocks or more the last edge is the maximum itself.
// Block k holds the values v with edge[k] <= v < edge[k + 1] and takes the
// colour of edge[k]; a value in no block (the maximum above all) takes the
// colour of the last edge.
// - One block: the walk never replaces an edge by the maximum, so edge[1] is
//   minimum + (maximum - minimum), which rounding may put a hair off the
//   maximum.
// - Fewer than one block (the legend's setter keeps 2 to 30; a derived class
//   may store any number): no block, and the single edge minimum, whose
//   colour the mapping then gives every value.
// An infinite or not-a-number range yields the edges its arithmetic gives.
KESRA_ENGINE_API std::vector<double> ColorBlockEdges(double minimum, double maximum, int blocks);

class CKesraColorTable;

// The lookup tables that a batch builds for one setting, kept between batches
// by their owner (the legend keeps one set per bar). A table remembers the
// setting it was built for and is rebuilt by the first batch that finds
// another, so that a setting changed by any means, a setter or a derived
// class writing a field, never meets a stale table. A copy starts empty and
// builds its own. Batches on one set from several threads take turns.
class KESRA_ENGINE_API CKesraColorTables
{
public:
    CKesraColorTables() noexcept;
    CKesraColorTables(const CKesraColorTables&) noexcept : CKesraColorTables() {}
    // Keeps this set's tables: they are checked against the setting anyway.
    CKesraColorTables& operator=(const CKesraColorTables&) noexcept { return *this; }
    ~CKesraColorTables();

private:
    friend class CKesraColorMap;
    std::mutex m_lock;
    std::unique_ptr<CKesraColorTable> m_smooth;
    std::unique_ptr<CKesraColorTable> m_banded;
};

// The settings of one mapping as plain values. The palette is referred to,
// not copied: it must outlive the map. The defaults are a new legend's.
class KESRA_ENGINE_API CKesraColorMap
{
public:
    // The colour of value: -1 below the range, 1 above, 0 inside; always 0
    // with fill all range. In single-colour mode the single colour, else
    // outside the range (without fill all range) the over-range colour (or
    // the below or above colour when on), else the banded or the smooth
    // colour as banded says. Before all of these, with the NaN colour on or
    // on the log scale, a NaN takes the NaN colour and code 2; on the log
    // scale a value <= 0 the NaN colour and code -2.
    int ColorOf(unsigned char& red, unsigned char& green, unsigned char& blue, double value) const;
    // ColorOf of count values: four bytes per value (red, green, blue, alpha
    // 255) into rgba and, unless codes is null, each value's code. Nothing is
    // written when values or rgba is null.
    void ColorsOf(const double* values, std::size_t count, unsigned char* rgba,
                  signed char* codes = nullptr) const;
    // The same bytes and codes, through the table of this setting kept in
    // tables: built (bisecting the single query's own steps) when tables
    // holds none for this setting, then one bucketed search per value. A
    // batch of fewer than 4096 values, a setting for which no exact table
    // can be built (an infinite, overflowing or reversed range, a palette
    // outside [0, 1], more than 4096 blocks, the log scale, whose logarithm
    // the table's proof cannot bound) and a table that cannot be allocated
    // take the ColorsOf above, which allocates nothing.
    void ColorsOf(const double* values, std::size_t count, unsigned char* rgba,
                  signed char* codes, CKesraColorTables& tables) const;

    // Smooth colour: value (clamped into the range with fill all range)
    // placed linearly (or on the log scale) between the minimum and the
    // colour-scale top.
    void SmoothColor(unsigned char& red, unsigned char& green, unsigned char& blue,
                     double value) const;
    // Banded colour: value (clamped as above) takes the colour of the lower
    // edge of its block, a value in no block that of the last edge (see
    // ColorBlockEdges), placed as a smooth colour. On the log scale the
    // blocks cut the logarithmic position into equal parts instead, and a
    // value takes the colour of its part's lower end (the top of the scale
    // lies in no part and takes the top's colour).
    void BandedColor(unsigned char& red, unsigned char& green, unsigned char& blue,
                     double value) const;
    // Places value on the palette between low and high, linearly, or by
    // natural logarithms of |value| when logarithmic is non-zero (a high that
    // is not positive counts as 1, a low that is not positive as high *
    // 0.0001), inverted when inverse is set. Positions are clamped to [0, 1];
    // a position that is not a number counts as 0.
    void PaletteColor(unsigned char& red, unsigned char& green, unsigned char& blue, double value,
                      double low, double high, int logarithmic) const;
    // Where value lies on the scale from the minimum (0) to the colour-scale
    // top (1), linearly or on the log scale as set, before inverse and
    // clamping: where a backend puts a label or a tick for it.
    double ScalePosition(double value) const;

    const ColorPalette* palette = &kColorPaletteRedBlue;
    double minimum = 0.0;
    double maximum = 1.0;
    // The value placed at stop 4 (stop 0 when inverse).
    double scaleTop = 1.0;
    // Any number: the mapping walks whatever it is given (see ColorBlockEdges).
    int blocks = 8;
    bool inverse = false;
    bool banded = false;
    // Values outside the range take the colour of the nearest end.
    bool fillAllRange = false;
    // Every value takes the single colour.
    bool useSingleColor = false;
    unsigned char singleColor[3] = {255, 96, 0};
    unsigned char overRangeColor[3] = {255, 255, 255};

    // Replaces palette while it has two stops or more.
    ColorStops stops;
    // Positions by the logarithm of the value between the minimum and the
    // colour-scale top (the placing PaletteColor does for logarithmic != 0);
    // banded, the blocks are equal steps of the logarithm. NaN and values
    // <= 0 take the NaN colour with their own codes.
    bool logScale = false;
    // A NaN takes the NaN colour and code kColorCodeNotANumber.
    bool useNanColor = false;
    // Below (above) the range, without fill all range and single colour,
    // values take the below (above) colour instead of the over-range colour.
    bool useBelowColor = false;
    bool useAboveColor = false;
    unsigned char nanColor[3] = {128, 128, 128};
    unsigned char belowColor[3] = {0, 0, 0};
    unsigned char aboveColor[3] = {255, 255, 255};
};

} // namespace KesraEngine
