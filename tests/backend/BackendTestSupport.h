// Shared pieces of the tests of the backends' common rules: a text measure
// with round numbers, and concrete classes over the common bases that draw
// nothing (or only say that they were asked to).
#pragma once

#include "common/LegendLayout.h"
#include "common/NavigatedCamera.h"
#include "common/OverlayText.h"
#include "common/RulerLayout.h"
#include "common/TipLayout.h"

#include <functional>
#include <string>

namespace KesraTest
{

// 7 pixels a byte; a line is as high as its size, 14 changed by sizeChange.
class FixedMeasure : public KesraBackend::ITextMeasure
{
public:
    double TextWidth(const std::string& text, int) const override { return 7.0 * text.size(); }
    double TextHeight(int sizeChange) const override { return 14.0 + sizeChange; }
};

class NavigatedTestCamera : public KesraBackend::CNavigatedCamera
{
public:
    NavigatedTestCamera(int width, int height) : CNavigatedCamera(width, height) {}

    void ApplyViewport() override { Note("viewport"); }
    void ApplyProjection() override { Note("projection"); }
    void ApplyModelView() override { Note("model-view"); }

    // Told of every Apply, when set.
    std::function<void(const char*)> note;

private:
    void Note(const char* what)
    {
        if (note)
        {
            note(what);
        }
    }
};

// A legend, ruler and tip manager whose drawing only calls drawn, when set.
class TestLegend : public KesraBackend::CLegendBar
{
public:
    using CLegendBar::Input;

    void Draw(KesraEngine::CKesraRenderer&) override
    {
        if (drawn)
        {
            drawn();
        }
    }

    std::function<void()> drawn;
};

class TestScaleRuler : public KesraBackend::CScaleRuler
{
public:
    void Draw(KesraEngine::CKesraRenderer&) override
    {
        if (drawn)
        {
            drawn();
        }
    }

    std::function<void()> drawn;
};

class TestTipLabels : public KesraBackend::CTipLabels
{
public:
    void DrawTips(KesraEngine::CKesraRenderer&) override
    {
        if (drawn)
        {
            drawn();
        }
    }

    std::function<void()> drawn;
};

} // namespace KesraTest
