// Shared pieces of the tests of the backends' common rules: a text measure
// with round numbers, and concrete classes over the common bases that draw
// nothing, only logging what they were asked to do.
#pragma once

#include "common/LegendLayout.h"
#include "common/NavigatedCamera.h"
#include "common/OverlayText.h"
#include "common/RulerLayout.h"
#include "common/TipLayout.h"

#include <string>
#include <vector>

namespace KesraTest
{

// 7 pixels a byte; a line is as high as its size, 14 changed by sizeChange.
class FixedMeasure : public KesraBackend::ITextMeasure
{
public:
    double TextWidth(const std::string& text, int) const override { return 7.0 * text.size(); }
    double TextHeight(int sizeChange) const override { return 14.0 + sizeChange; }
};

// Writes each call it is told of into log, when it has one; true, for the
// hooks that answer whether to go on.
struct Logged
{
    std::vector<std::string>* log = nullptr;

    bool LogCall(const char* what) const
    {
        if (log != nullptr)
        {
            log->push_back(what);
        }
        return true;
    }
};

class NavigatedTestCamera : public KesraBackend::CNavigatedCamera, public Logged
{
public:
    NavigatedTestCamera(int width, int height) : CNavigatedCamera(width, height) {}

    void ApplyViewport() override { LogCall("viewport"); }
    void ApplyProjection() override { LogCall("projection"); }
    void ApplyModelView() override { LogCall("model-view"); }
};

// A legend, ruler and tip manager whose drawing is only logged.
class TestLegend : public KesraBackend::CLegendBar, public Logged
{
public:
    using CLegendBar::Input;

    void Draw(KesraEngine::CKesraRenderer&) override { LogCall("legend"); }
};

class TestScaleRuler : public KesraBackend::CScaleRuler, public Logged
{
public:
    void Draw(KesraEngine::CKesraRenderer&) override { LogCall("ruler"); }
};

class TestTipLabels : public KesraBackend::CTipLabels, public Logged
{
public:
    void DrawTips(KesraEngine::CKesraRenderer&) override { LogCall("tips"); }
};

} // namespace KesraTest
