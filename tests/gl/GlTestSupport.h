// Shared pieces of the OpenGL tests: a headless renderer on Mesa's llvmpipe
// and pixel comparison.
#pragma once

#include "gl/EglContext.h"
#include "gl/GlRenderer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace KesraTest
{

using KesraGl::Color;

// The bytes at window pixel (x, y), y up.
inline Color PixelAt(KesraGl::CGlRenderer& renderer, int x, int y)
{
    unsigned char rgba[4] = {0, 0, 0, 0};
    EXPECT_TRUE(renderer.ReadPixels(x, y, 1, 1, rgba)) << "pixel " << x << ", " << y;
    return Color{rgba[0], rgba[1], rgba[2], rgba[3]};
}

// The largest difference of red, green and blue.
inline int ColorDistance(const Color& a, const Color& b)
{
    return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

inline ::testing::AssertionResult ColorNear(const Color& actual, const Color& expected, int tolerance)
{
    if (ColorDistance(actual, expected) <= tolerance)
    {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "(" << int(actual.red) << ", " << int(actual.green) << ", " << int(actual.blue)
           << ") is not within " << tolerance << " of (" << int(expected.red) << ", "
           << int(expected.green) << ", " << int(expected.blue) << ")";
}

// A headless surface and a renderer of width x height on it, with a context.
struct HeadlessRenderer
{
    HeadlessRenderer(int width, int height) : renderer(width, height, context)
    {
        created = renderer.CreateContext();
        EXPECT_TRUE(created) << renderer.LastError();
        renderer.SetBackgroundColor({255, 255, 255, 255});
    }

    KesraGl::CEglContext context;
    KesraGl::CGlRenderer renderer;
    bool created = false;
};

} // namespace KesraTest
