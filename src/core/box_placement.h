#pragma once
#include <cstddef>
#include <vector>

namespace zorvik {

// A box's top-left corner on the screen, in pixels.
struct BoxPosition {
  int left = 0;
  int top = 0;
  bool operator==(const BoxPosition&) const = default;
};

// How many other open information boxes the cascade looks at; the rest are not considered.
constexpr std::size_t kMaxCascadeBoxes = 1001;

// Where a new information box stands, so that boxes shown one after another step down and right.
// `centred` is its place centred on the main window, `otherLefts` the lefts of the information boxes
// already open. The first test is made with the centred top, not the left: a second box steps aside only
// when a box stands with its left at that top, and each further step tests the left the box had before it.
BoxPosition cascadeInfoBox(BoxPosition centred, const std::vector<int>& otherLefts);

// A question box asked while an information box is open stands one own height lower, so that it does
// not cover the information.
BoxPosition placeQuestionBox(BoxPosition centred, int height, bool infoBoxOpen);

}  // namespace zorvik
