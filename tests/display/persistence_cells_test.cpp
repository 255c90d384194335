// The persistence against a plain store that visits every cell: counts, maxima and pixels packet after
// packet of a trace that moves, flattens, leaves rows and comes back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "display/display_canvas.h"
#include "display/display_geometry.h"
#include "display/persistence.h"

using namespace zorvik;

namespace {

constexpr int kColumns = Persistence::kColumns, kRows = Persistence::kRows;

// Every cell, every pass; the decay in exact rational arithmetic.
struct PlainStore {
  std::vector<int32_t> counts = std::vector<int32_t>(static_cast<size_t>(kColumns) * kRows, 0);
  std::vector<int32_t> maxima = std::vector<int32_t>(kColumns, 0);

  int32_t& at(int x, int y) { return counts[static_cast<size_t>(x + kColumns * y)]; }
  void hit(int x, int y, int weight) {
    if (x < 0 || x >= kColumns || y < 0 || y >= kRows) return;
    const int64_t sum = static_cast<int64_t>(at(x, y)) + weight;
    at(x, y) = static_cast<int32_t>(std::min<int64_t>(sum, INT32_MAX));
    maxima[static_cast<size_t>(x)] = std::max(maxima[static_cast<size_t>(x)], at(x, y));
  }
  static int32_t decayed(int32_t c, int64_t depth, bool round) {
    const int64_t q = static_cast<int64_t>(c) * (depth - 1);
    int64_t kept = q / depth;
    const int64_t twice = 2 * (q % depth);
    if (round && (twice > depth || (twice == depth && kept % 2 == 1))) ++kept;
    return static_cast<int32_t>(kept);
  }
  void decay(int first, int last, int step, int depth, bool leaveSingle) {
    if (depth <= 1) return;
    for (int y = 1; y < kRows - 1; ++y)
      for (int x = first; x <= last; x += step) at(x, y) = decayed(at(x, y), depth, leaveSingle);
    for (int x = first; x <= last; x += step)
      maxima[static_cast<size_t>(x)] = decayed(maxima[static_cast<size_t>(x)], depth, true);
  }
  // The bitmap path copies into the cell's pixel at zoom 1; every other way is a point call.
  void render(DisplayCanvas& canvas, int first, int last, int step, const GradeStyle& g) {
    const bool direct = g.byBitmap && canvas.geometry().zoomIndex == 1;
    for (int y = 1; y < kRows - 1; ++y)
      for (int x = first; x <= last; x += step) {
        const int32_t c = at(x, y);
        if (c <= 0) continue;
        const uint32_t colour = 0xFF000000 | Persistence::colourOf(c, maxima[static_cast<size_t>(x)], g);
        if (direct)
          canvas.setPixel(x + kPictureMargin, kTraceRows + kPictureMargin - y, colour);
        else
          canvas.point(x, y, colour);
      }
  }
};

struct Setup {
  bool colour;
  int depth;
  bool leaveSingle;
  int step, first, last;
  int zoom;
  bool byBitmap, merge;
  int width;
};

void prepare(DisplayCanvas& canvas, const Setup& s) {
  canvas.setup(DisplayGeometry::make(s.zoom, true), 0xFF102030, true);
  canvas.setDrawMode(s.merge ? DrawMode::MergePen : DrawMode::CopyPen);
  canvas.setDrawWidth(s.width);
}

std::string describe(const Setup& s) {
  return (s.colour ? "colour" : "brightness") + std::string(" depth ") + std::to_string(s.depth) +
         (s.leaveSingle ? " leave single" : " cut") + " step " + std::to_string(s.step) + " from " +
         std::to_string(s.first) + " zoom " + std::to_string(s.zoom) + (s.byBitmap ? " bitmap" : "") +
         (s.merge ? " merge" : "") + " width " + std::to_string(s.width);
}

void run(const Setup& s) {
  SCOPED_TRACE(describe(s));
  Persistence fast;
  PlainStore plain;
  DisplayCanvas fastCanvas, plainCanvas;
  prepare(fastCanvas, s);
  prepare(plainCanvas, s);
  std::mt19937 rng(7);
  GradeStyle g;
  g.colour = s.colour;
  g.byBitmap = s.byBitmap;
  const int weight = std::max(s.depth, 1);
  for (int packet = 0; packet < 60; ++packet) {
    g.emphasis = packet % 6;
    g.inverted = packet % 5 == 1;
    g.colorItem = 1 + packet % 7;
    // Packets 16 to 43 put the trace in the top rows, where it clips to row 255, so that the rows it
    // left empty out (or keep their single counts) before it comes back; every fourth packet is nearly
    // flat, filling whole words of a row.
    const bool away = packet >= 16 && packet < 44;
    const double amplitude = packet % 4 == 3 ? 1.5 : 90;
    for (int x = s.first; x <= s.last; x += s.step) {
      const int noise = static_cast<int>(rng() % 5) - 2;
      const int y = away ? 250 + static_cast<int>(rng() % 12)
                         : 128 + static_cast<int>(amplitude * std::sin((x + 9 * packet) * 0.07)) + noise;
      // A few columns take huge counts, past the colour grading's breakpoints and up to saturation.
      const int w = x % 97 == 5 ? (packet % 3 == 0 ? 1 << 30 : 3'000'000) : weight;
      if (x % 11 == 0) {
        // A peak pair's span: a run of rows of one column.
        for (int r = y - 6; r <= y + 6; ++r) plain.hit(x, r, w);
        fast.addSpan(x, y + 6, y - 6, w);
      } else {
        plain.hit(x, y, w);
        fast.addHit(x, y, w);
      }
    }
    fastCanvas.clear();
    plainCanvas.clear();
    // Mostly drawn and decayed together; some packets only decay (not plotted), some only draw.
    const int way = packet % 7;
    if (way == 2) {
      fast.decay(s.first, s.last, s.step, s.depth, s.leaveSingle);
    } else if (way == 4) {
      fast.render(fastCanvas, s.first, s.last, s.step, g);
      plain.render(plainCanvas, s.first, s.last, s.step, g);
      fast.decay(s.first, s.last, s.step, s.depth, s.leaveSingle);
    } else {
      fast.renderAndDecay(fastCanvas, s.first, s.last, s.step, g, s.depth, s.leaveSingle);
      plain.render(plainCanvas, s.first, s.last, s.step, g);
    }
    plain.decay(s.first, s.last, s.step, s.depth, s.leaveSingle);

    for (int y = 0; y < kRows; ++y)
      for (int x = 0; x < kColumns; ++x)
        if (fast.count(x, y) != plain.at(x, y))
          FAIL() << "packet " << packet << " cell " << x << "," << y << ": " << fast.count(x, y) << " for "
                 << plain.at(x, y);
    for (int x = 0; x < kColumns; ++x)
      ASSERT_EQ(fast.max(x), plain.maxima[static_cast<size_t>(x)]) << "packet " << packet << " column " << x;
    if (fastCanvas.image() == plainCanvas.image()) continue;
    for (int y = 0; y < fastCanvas.height(); ++y)
      for (int x = 0; x < fastCanvas.width(); ++x)
        ASSERT_EQ(fastCanvas.pixel(x, y), plainCanvas.pixel(x, y))
            << "packet " << packet << " pixel " << x << "," << y;
  }
}

}  // namespace

TEST(PersistenceCells, SameCountsAndPixelsAsEveryCellVisited) {
  // Power-of-two depths rounded and cut, a depth of another kind, and none.
  for (int depth : {32, 8, 5, 1})
    for (bool leaveSingle : {true, false})
      for (bool colour : {true, false}) {
        if (depth == 1 && !leaveSingle) continue;
        run({colour, depth, leaveSingle, 1, 0, 480, 1, false, false, 1});
      }
}

TEST(PersistenceCells, StepsZoomsAndDrawModes) {
  for (bool colour : {true, false}) {
    // Every second and fourth column from an odd one, and a range that ends inside a word.
    run({colour, 32, false, 2, 3, 480, 1, false, false, 1});
    run({colour, 8, true, 4, 1, 301, 1, false, false, 1});
    // Merged into the grid, by bitmap (which copies even so), a wider pen, other zooms.
    run({colour, 32, false, 1, 0, 480, 1, false, true, 1});
    run({colour, 32, true, 1, 0, 480, 1, true, true, 1});
    run({colour, 8, false, 1, 0, 480, 1, false, false, 2});
    run({colour, 32, true, 1, 0, 480, 2, false, true, 1});
    run({colour, 32, false, 2, 0, 480, 0, true, false, 1});
  }
}
