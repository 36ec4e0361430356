// A scene's mouse and keys, one line each, as its help overlay and a host's
// help show them; CGlSceneInput does what they say.
#pragma once

#include <array>

namespace KesraGl
{

inline constexpr std::array<const char*, 17> kSceneControls = {
    "left drag          rotate",
    "middle/shift drag  pan",
    "right drag         zoom",
    "wheel              zoom at the cursor",
    "ctrl drag          zoom to the rectangle",
    "1-6 / 7            front back left right top bottom / iso",
    "i                  six-sides inspection on/off",
    "f                  zoom all",
    "p                  next palette",
    "b / v              banded / inverse on/off",
    "g                  log scale on/off",
    "r                  legend range back to the data's",
    "l                  tubes / plain lines",
    "c                  value of the node under the cursor",
    "s                  PNG snapshot",
    "h                  this help",
    "q / Esc            quit"};

} // namespace KesraGl
