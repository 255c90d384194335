#pragma once
#include <vector>

#include "display/view_zoom.h"

namespace zorvik {

// The mouse wheel over the display, as the zoom keys and scrolls take it.
//
// The factor after `notches` turned away from the user (positive: in) from `present` (1 with every key
// off), one key a notch along the keys' factors in ascending order: past the largest it stays there, and
// below the smallest every key is off.
int wheelZoomFactor(const std::vector<int>& factors, int present, int notches);

// The scroll's value after `notches` (positive: towards later times horizontally, towards the top
// vertically), `step` a notch, kept within the scroll's range.
int wheelScrollValue(ZoomAxis axis, int value, int notches, int step);

// Whole notches of the wheel (120 eighths of a degree each) from an accumulated angle: the rest stays
// for the next turn, so a fine-grained wheel or touchpad steps once a notch, not once an event.
int takeWheelNotches(int& accumulated, int delta);

}  // namespace zorvik
