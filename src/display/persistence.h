#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zorvik {

class DisplayCanvas;

// How the counts become colours.
struct GradeStyle {
  bool colour = false;    // Rainbow1, else Brightness1
  int emphasis = 4;       // Emphasize1: 0 to 5
  bool inverted = false;  // InvertColorIntenc1
  int colorItem = 6;      // ColorPset1 (ColorPeak1 for peaks): the 0-or-1 bits of the brightness grading
  bool byBitmap = false;  // BitmapPlot1 at ZoomIndex 1: straight into the pixels
};

// The colours of the colour grading, 0xRRGGBB; row 9 is the one for ratios past every threshold. Row 8 of
// the normal table and row 0 of the inverted one do not mirror each other.
extern const std::array<uint32_t, 10> kGradeColors;
extern const std::array<uint32_t, 10> kGradeColorsInverted;
constexpr uint32_t kSingleHitColor = 0x505050;

// IntensBuf and IntensMax: the hit counts of the memory mode, as wide as the wide screen (columns 0 to
// 480), and the largest count of each column.
class Persistence {
 public:
  static constexpr int kColumns = 481;
  static constexpr int kRows = 256;
  static constexpr int kWords = (kColumns + 63) / 64;  // 64-bit words of a row's cell bits
  using RowBits = std::array<uint64_t, kWords>;

  Persistence();
  void clear();
  void addHit(int x, int y, int weight);
  // Every row from lo to hi of a column.
  void addSpan(int x, int lo, int hi, int weight);
  int32_t count(int x, int y) const;
  int32_t max(int x) const { return x >= 0 && x < kColumns ? max_[static_cast<size_t>(x)] : 0; }

  // Draws the cells of rows 1 to 254 that hold a count, for the columns from first to last by step.
  void render(DisplayCanvas& canvas, int first, int last, int step, const GradeStyle& style);
  // One packet's decay for a depth above 1: k = (depth - 1) / depth; with leaveSingle a count is
  // rounded (so 1 stays), else cut (1 dies). The column maxima are rounded in both cases.
  void decay(int first, int last, int step, int depth, bool leaveSingle);
  // render and then decay, row by row while a row is at hand: the same counts and pixels as the two apart.
  void renderAndDecay(DisplayCanvas& canvas, int first, int last, int step, const GradeStyle& style,
                      int depth, bool leaveSingle);

  // The colour of a count in a column whose largest count is `max` (0xRRGGBB).
  static uint32_t colourOf(int32_t count, int32_t max, const GradeStyle& style);

 private:
  struct DecayPlan {
    int first = 0, last = 0, step = 1, depth = 1, shift = 0;
    bool power = false, leaveSingle = false;
    RowBits columns{};  // first to last by step
  };
  static DecayPlan decayPlan(int first, int last, int step, int depth, bool leaveSingle);
  // The decay of the lit cells `cells` of one word of a row, from column `base`.
  void fadeWord(const DecayPlan& plan, int32_t* line, uint64_t& bits, uint64_t cells, int base);
  void decayMaxima(const DecayPlan& plan);
  void makeBreakpoints(const GradeStyle& style, int first, int last, int step);
  void renderRows(DisplayCanvas& canvas, int first, int last, int step, const GradeStyle& style,
                  const DecayPlan* decay);

  std::vector<int32_t> buf_;  // IntensBuf, index x + 481 y
  // A bit for each cell that may hold a count other than 0 (kWords a row): the passes visit those and no
  // others, since a row of a moving trace holds counts in a tenth of its cells. Set by the hits, taken
  // away by the decay when a count reaches 0.
  std::vector<uint64_t> lit_;
  std::array<int32_t, kColumns> max_{};
  // Rows that may hold a count: the passes leave the others alone.
  int rowLow_ = kRows, rowHigh_ = -1;
  // Per column of a colour render: the count from which each threshold is no longer below the ratio,
  // threshold by threshold for four columns together (threshold i of column x at 9 (x - x mod 4) + 4 i +
  // x mod 4), and whether the column has them.
  std::vector<int32_t> breaks_;
  // The same breakpoints column by column (12 a column, the last three below every count), for one cell
  // at a time.
  std::vector<int32_t> columnBreaks_;
  std::array<uint8_t, kColumns> exact_{};
  // Breakpoints made for the largest counts below kMemoMax (9 a count), and which of them are made.
  static constexpr int kMemoMax = 4096;
  std::vector<int32_t> memoBreaks_;
  std::vector<uint8_t> memoKnown_;
  int memoEmphasis_ = -1;
};

}  // namespace zorvik
