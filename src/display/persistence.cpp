#include "display/persistence.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/whole_numbers.h"
#include "display/display_canvas.h"

namespace zorvik {

const std::array<uint32_t, 10> kGradeColors = {0xFF0000, 0xC04000, 0x808000, 0x40C000, 0x00FF00,
                                               0x00C040, 0x008080, 0x0040C0, 0x800080, 0x0000FF};
const std::array<uint32_t, 10> kGradeColorsInverted = {0x800080, 0x0000FF, 0x0040C0, 0x008080, 0x00C040,
                                                       0x00FF00, 0x40C000, 0x808000, 0xC04000, 0xFF0000};

namespace {

constexpr int kStride = Persistence::kColumns;
constexpr int kBreakStride = 12;  // a column's breakpoints, one at a time

int32_t saturatedAdd(int32_t a, int32_t b) {
  const int64_t s = static_cast<int64_t>(a) + b;
  return static_cast<int32_t>(std::clamp<int64_t>(s, INT32_MIN, INT32_MAX));
}

// The colour grading's thresholds 2 ^ (k i), k = e / 5, as the 32-bit floats they are kept in, for each
// emphasis e: made once, not at every pass.
const std::array<double, 9>& thresholds(int e) {
  static const auto table = [] {
    std::array<std::array<double, 9>, 6> t{};
    for (int k = 0; k < 6; ++k)
      for (int i = 0; i < 9; ++i)
        t[static_cast<size_t>(k)][static_cast<size_t>(i)] = static_cast<float>(std::pow(2.0, k / 5.0 * i));
    return t;
  }();
  return table[static_cast<size_t>(e)];
}

// The grading of one pass: gain and offset of the brightness, the thresholds of the colours.
class Grader {
 public:
  explicit Grader(const GradeStyle& s) : s_(s), table_(s.inverted ? kGradeColorsInverted : kGradeColors) {
    const int e = std::clamp(s.emphasis, 0, 5);
    gain_ = static_cast<int>(roundHalfEven((s.inverted ? -230.0 : 230.0) * e / 5));
    offset_ = (s.inverted ? 25 : 255) - gain_;
    t_ = thresholds(e);
  }
  uint32_t colour(int32_t count, int32_t max) const {
    if (!s_.colour) {
      const double v = max > 0 ? roundHalfEven(static_cast<double>(count) * gain_ / max + offset_) : offset_;
      const uint32_t level = static_cast<uint32_t>(std::clamp(v, 0.0, 255.0));
      const int item = s_.colorItem;
      return ((item & 1) ? level << 16 : 0) | ((item & 2) ? level << 8 : 0) | ((item & 4) ? level : 0);
    }
    if (count < 2) return kSingleHitColor;
    // The thresholds rise, so the first one not below the ratio is the number of those below it.
    const double ratio = static_cast<double>(max) / count;
    size_t below = 0;
    for (size_t i = 0; i < t_.size(); ++i) below += t_[i] < ratio;
    return table_[below];
  }

  // For a column's largest count m: b[i] is the least count c with T[i] x c >= m, so that a count c has
  // T[i] below m / c exactly when c < b[i]. Below 2^22 the products are exact and this is the same test
  // as on the quotient; false above, where the quotient is used.
  bool breakpoints(int32_t m, int32_t* b) const {
    if (m <= 0 || m >= (1 << 22)) return false;
    for (size_t i = 0; i < t_.size(); ++i) {
      const double t = t_[i];
      int64_t e = std::max<int64_t>(1, static_cast<int64_t>(std::ceil(m / t)));
      while (e > 1 && t * static_cast<double>(e - 1) >= m) --e;
      while (t * static_cast<double>(e) < m) ++e;
      b[i] = static_cast<int32_t>(e);
    }
    return true;
  }
  int gain() const { return gain_; }
  int offset() const { return offset_; }
  // The colour of a count with `below` thresholds under its ratio.
  uint32_t colourOfBelow(int32_t count, int below) const {
    return count < 2 ? kSingleHitColor : table_[static_cast<size_t>(below)];
  }

 private:
  const GradeStyle& s_;
  const std::array<uint32_t, 10>& table_;
  int gain_ = 0, offset_ = 0;
  std::array<double, 9> t_{};
};

// Count = k x count with k = (depth - 1) / depth, in exact rational arithmetic: rounded half to even
// (leave single) or cut.
int32_t decayed(int32_t count, int64_t depth, bool round) {
  const int64_t q = static_cast<int64_t>(count) * (depth - 1);
  int64_t base = q / depth;
  if (!round) return static_cast<int32_t>(base);
  const int64_t rest = 2 * (q % depth);
  if (rest > depth || (rest == depth && (base & 1))) ++base;
  return static_cast<int32_t>(base);
}

// The same for a depth of 2 ^ shift, as the depths of the menu are: k x c = c - c / D = A - r / D with
// A = c - (c >> shift) and r = c mod D; cut is A - (r > 0), rounding half to even takes A - 1 above a half
// and at a half when A is odd. A count of 0 stays 0, without a branch.
template <bool Round>
inline int32_t decayedPow2(int32_t c, int shift) {
  const int32_t d = int32_t{1} << shift, half = d >> 1;
  const int32_t a = c - (c >> shift), r = c & (d - 1);
  if (Round) return a - ((r > half) | ((r == half) & (a & 1)));
  return a - (r != 0);
}

// Four counts at once; the comparisons give -1 where they hold.
using Int4 = int32_t __attribute__((vector_size(16)));
template <bool Round>
inline Int4 decayedPow2(Int4 c, int shift) {
  const int32_t d = int32_t{1} << shift, half = d >> 1;
  const Int4 a = c - (c >> shift), r = c & (d - 1);
  if (Round) return a + ((r > half) | ((r == half) & ((a & 1) != 0)));
  return a + (r != 0);
}

// How a pass's decay goes: none, a power-of-two depth rounded or cut, any other depth.
enum class Fade { None, Round, Cut, Ratio };

struct Fader {
  int shift = 0;
  int64_t depth = 1;
  bool round = false;
  template <Fade F>
  int32_t apply(int32_t c) const {
    if constexpr (F == Fade::Round) return decayedPow2<true>(c, shift);
    if constexpr (F == Fade::Cut) return decayedPow2<false>(c, shift);
    if constexpr (F == Fade::Ratio) return c > 0 ? decayed(c, depth, round) : c;
    return c;
  }
};

inline uint64_t cellBit(int x) {
  return uint64_t{1} << (x & 63);
}

// The lit cells of a word, without the population-count instruction the baseline lacks.
inline int bitCount(uint64_t v) {
  v -= (v >> 1) & 0x5555555555555555u;
  v = (v & 0x3333333333333333u) + ((v >> 2) & 0x3333333333333333u);
  v = (v + (v >> 4)) & 0x0F0F0F0F0F0F0F0Fu;
  return static_cast<int>((v * 0x0101010101010101u) >> 56);
}

// A word of a row with as many lit cells as this is done four cells at a time, every cell from its first
// to its last; one with fewer, a lit cell at a time.
constexpr int kDenseCells = 20;

// The decay of cells x0 to x1 of a word, four at a time, a power-of-two depth. In a word this full a count
// seldom reaches 0, so the bits are looked at only when one did.
template <bool Round>
void fadeSpan(int32_t* line, uint64_t& bits, int x0, int x1, int shift) {
  Int4 zeros = {0, 0, 0, 0};
  int x = x0;
  for (; x + 3 <= x1; x += 4) {
    Int4 c;
    std::memcpy(&c, line + x, sizeof c);
    c = decayedPow2<Round>(c, shift);
    std::memcpy(line + x, &c, sizeof c);
    zeros |= c == 0;
  }
  bool anyZero = (zeros[0] | zeros[1] | zeros[2] | zeros[3]) != 0;
  for (; x <= x1; ++x) {
    line[x] = decayedPow2<Round>(line[x], shift);
    anyZero |= line[x] == 0;
  }
  if (anyZero)
    for (int i = x0; i <= x1; ++i)
      if (line[i] == 0) bits &= ~cellBit(i);
}

// The decay of the lit cells `cells` of a word: a cell whose count reaches 0 is no longer lit.
template <Fade F>
void fadeCells(int32_t* line, uint64_t& bits, uint64_t cells, int base, const Fader& fade) {
  for (; cells; cells &= cells - 1) {
    const int x = base + std::countr_zero(cells);
    const int32_t c = fade.apply<F>(line[x]);
    line[x] = c;
    if (c == 0) bits &= ~cellBit(x);
  }
}

// The colour grading's colour of a count above 0 from its column's breakpoints (kBreakStride of them, the
// last three below every count). The breakpoints fall as the thresholds rise, so the count is below the
// first `below` of them and no others.
inline uint32_t colourByBreaks(const Grader& grader, int32_t c, const int32_t* b) {
#if defined(__SSE2__)
  const __m128i cv = _mm_set1_epi32(c);
  auto under = [&](int i) {
    const __m128i bv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
    return static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(_mm_cmplt_epi32(cv, bv))));
  };
  return grader.colourOfBelow(c, std::countr_one(under(0) | under(4) << 4 | under(8) << 8));
#else
  int below = 0;
  for (int i = 0; i < 9; ++i) below += c < b[i];
  return grader.colourOfBelow(c, below);
#endif
}

// The brightness grading's colour of a level: its 0-or-1 bits of ColorPset1.
inline uint32_t levelColour(int item, uint32_t level) {
  return ((item & 1) ? level << 16 : 0) | ((item & 2) ? level << 8 : 0) | ((item & 4) ? level : 0);
}

// The colour grading of cells x0 to x1 of a row (x0 a multiple of 4), four at a time, where every column
// has its breakpoints (kept four columns together: index 9 x + 4 i for the quad from x): the first cell
// not done. The count is below a column's first `below` breakpoints
// (they fall as the thresholds rise), so its colour is the first one with the changes from each colour
// to the next up to there.
template <bool Merge>
int colourQuads(const int32_t* line, uint32_t* pixels, const int32_t* breaks, const uint8_t* exact,
                const Grader& grader, int x0, int x1) {
  constexpr int32_t kOpaque = static_cast<int32_t>(0xFF000000);
  const Int4 opaque = {kOpaque, kOpaque, kOpaque, kOpaque};
  const Int4 grey = opaque | static_cast<int32_t>(kSingleHitColor);
  Int4 changes[9];
  for (int i = 0; i < 9; ++i) {
    const int32_t d = static_cast<int32_t>(grader.colourOfBelow(2, i) ^ grader.colourOfBelow(2, i + 1));
    changes[i] = Int4{d, d, d, d};
  }
  const Int4 firstColour = Int4{0, 0, 0, 0} + static_cast<int32_t>(grader.colourOfBelow(2, 0));
  int x = x0;
  for (; x + 3 <= x1; x += 4) {
    uint32_t exact4;
    std::memcpy(&exact4, exact + x, sizeof exact4);
    if (exact4 != 0x01010101u) break;  // a column past the breakpoints' range: cell by cell from here
    Int4 c;
    std::memcpy(&c, line + x, sizeof c);
    Int4 colour = firstColour;
    for (int i = 0; i < 9; ++i) {
      Int4 b;
      std::memcpy(&b, breaks + 9 * x + 4 * i, sizeof b);
      colour ^= (c < b) & changes[i];
    }
    const Int4 single = c < 2;
    const Int4 lit = c > 0;
    colour = ((colour & ~single) | (grey & single) | opaque) & lit;
    Int4 old;
    std::memcpy(&old, pixels + x + kPictureMargin, sizeof old);
    const Int4 out = Merge ? old | colour : (old & ~lit) | colour;
    std::memcpy(pixels + x + kPictureMargin, &out, sizeof out);
  }
  return x;
}

#if defined(__SSE2__)
// The brightness grading four cells at a time: count x gain / max + offset rounded half to even (by adding
// and taking away 1.5 x 2^52, exact far beyond these values) and clamped, in pairs of doubles.
class Levels {
 public:
  explicit Levels(const Grader& g)
      : gain_(_mm_set1_pd(g.gain())),
        offset_(_mm_set1_pd(g.offset())),
        magic_(_mm_set1_pd(6755399441055744.0)),
        top_(_mm_set1_pd(255.0)) {}
  __m128i four(__m128i c, __m128i m) const {
    return _mm_unpacklo_epi64(two(c, m), two(_mm_shuffle_epi32(c, 0xEE), _mm_shuffle_epi32(m, 0xEE)));
  }
  // Cells x0 to x1 of a row: the first cell not done.
  template <bool Merge>
  int quads(const int32_t* line, uint32_t* pixels, const int32_t* max, int item, int x0, int x1) const {
    const __m128i opaque = _mm_set1_epi32(static_cast<int32_t>(0xFF000000));
    int x = x0;
    for (; x + 3 <= x1; x += 4) {
      const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + x));
      const __m128i lit = _mm_cmpgt_epi32(c, _mm_setzero_si128());
      if (_mm_movemask_epi8(lit) == 0) continue;
      const __m128i lv = four(c, _mm_loadu_si128(reinterpret_cast<const __m128i*>(max + x)));
      __m128i rgb = opaque;
      if (item & 1) rgb = _mm_or_si128(rgb, _mm_slli_epi32(lv, 16));
      if (item & 2) rgb = _mm_or_si128(rgb, _mm_slli_epi32(lv, 8));
      if (item & 4) rgb = _mm_or_si128(rgb, lv);
      const __m128i colour = _mm_and_si128(rgb, lit);
      __m128i* at = reinterpret_cast<__m128i*>(pixels + x + kPictureMargin);
      const __m128i old = _mm_loadu_si128(at);
      _mm_storeu_si128(at,
                       Merge ? _mm_or_si128(old, colour) : _mm_or_si128(_mm_andnot_si128(lit, old), colour));
    }
    return x;
  }

 private:
  __m128i two(__m128i c, __m128i m) const {
    const __m128d cd = _mm_cvtepi32_pd(c), md = _mm_cvtepi32_pd(m), zero = _mm_setzero_pd();
    const __m128d scaled = _mm_add_pd(_mm_div_pd(_mm_mul_pd(cd, gain_), md), offset_);
    const __m128d positive = _mm_cmpgt_pd(md, zero);  // no largest count: the offset
    __m128d v = _mm_or_pd(_mm_and_pd(positive, scaled), _mm_andnot_pd(positive, offset_));
    v = _mm_sub_pd(_mm_add_pd(v, magic_), magic_);
    v = _mm_max_pd(_mm_min_pd(v, top_), zero);
    return _mm_cvttpd_epi32(v);
  }
  __m128d gain_, offset_, magic_, top_;
};
#endif

// What the drawing of one row's cells into its pixels takes.
struct RowCells {
  int32_t* line;
  uint32_t* pixels;  // cell x at x + kPictureMargin
  const int32_t* max;
  const int32_t* columnBreaks;
  const uint8_t* exact;
  const Grader* grader;
  // The brightness grading lists its lit cells, to take them four at a time after the row.
  int32_t* listX;
  int32_t* listCount;
  int* listed;
};

// The lit cells of a word drawn one at a time, each decayed while at hand. The row's pointers are taken
// into locals, which the stores to the counts and pixels cannot change: read once, not at every cell.
template <bool Colour, bool Merge, Fade F>
void drawCells(const RowCells& r, uint64_t& wordBits, uint64_t cells, int base, const Fader& fader) {
  int32_t* const line = r.line;
  uint32_t* const pixels = r.pixels + kPictureMargin;
  const int32_t* const breaks = r.columnBreaks;
  const uint8_t* const exact = r.exact;
  const Fader fade = fader;
  uint64_t bits = wordBits;
  int listed = *r.listed;
  for (; cells; cells &= cells - 1) {
    const int x = base + std::countr_zero(cells);
    const int32_t c = line[x];
    if (c > 0) {
      if constexpr (Colour) {
        const uint32_t rgb = exact[x] ? colourByBreaks(*r.grader, c, breaks + kBreakStride * x)
                                      : r.grader->colour(c, r.max[x]);
        uint32_t& p = pixels[x];
        p = Merge ? p | 0xFF000000 | rgb : 0xFF000000 | rgb;
      } else {
        r.listX[listed] = x;
        r.listCount[listed] = c;
        ++listed;
      }
    }
    if constexpr (F != Fade::None) {
      const int32_t d = fade.apply<F>(c);
      line[x] = d;
      if (d == 0) bits &= ~cellBit(x);
    }
  }
  wordBits = bits;
  *r.listed = listed;
}

using DrawCells = void (*)(const RowCells&, uint64_t&, uint64_t, int, const Fader&);

template <bool Colour, bool Merge>
DrawCells drawCellsFor(Fade f) {
  switch (f) {
    case Fade::Round:
      return drawCells<Colour, Merge, Fade::Round>;
    case Fade::Cut:
      return drawCells<Colour, Merge, Fade::Cut>;
    case Fade::Ratio:
      return drawCells<Colour, Merge, Fade::Ratio>;
    case Fade::None:
      break;
  }
  return drawCells<Colour, Merge, Fade::None>;
}

DrawCells drawCellsFor(bool colour, bool merge, Fade f) {
  if (colour) return merge ? drawCellsFor<true, true>(f) : drawCellsFor<true, false>(f);
  return merge ? drawCellsFor<false, true>(f) : drawCellsFor<false, false>(f);
}

}  // namespace

Persistence::Persistence()
    : buf_(static_cast<size_t>(kColumns) * kRows, 0), lit_(static_cast<size_t>(kWords) * kRows, 0) {}

void Persistence::clear() {
  if (rowHigh_ >= rowLow_) {
    std::fill(buf_.begin() + static_cast<ptrdiff_t>(kStride) * rowLow_,
              buf_.begin() + static_cast<ptrdiff_t>(kStride) * (rowHigh_ + 1), 0);
    std::fill(lit_.begin() + static_cast<ptrdiff_t>(kWords) * rowLow_,
              lit_.begin() + static_cast<ptrdiff_t>(kWords) * (rowHigh_ + 1), 0);
  }
  max_.fill(0);
  rowLow_ = kRows;
  rowHigh_ = -1;
}

void Persistence::addHit(int x, int y, int weight) {
  if (x < 0 || x >= kColumns || y < 0 || y >= kRows) return;
  int32_t& c = buf_[static_cast<size_t>(x + kStride * y)];
  c = saturatedAdd(c, weight);
  lit_[static_cast<size_t>(kWords * y + (x >> 6))] |= cellBit(x);
  rowLow_ = std::min(rowLow_, y);
  rowHigh_ = std::max(rowHigh_, y);
  if (c > max_[static_cast<size_t>(x)]) max_[static_cast<size_t>(x)] = c;
}

void Persistence::addSpan(int x, int lo, int hi, int weight) {
  if (lo > hi) std::swap(lo, hi);
  lo = std::max(lo, 0);
  hi = std::min(hi, kRows - 1);
  if (x < 0 || x >= kColumns || lo > hi) return;
  int32_t top = max_[static_cast<size_t>(x)];
  for (int y = lo; y <= hi; ++y) {
    int32_t& c = buf_[static_cast<size_t>(x + kStride * y)];
    c = saturatedAdd(c, weight);
    lit_[static_cast<size_t>(kWords * y + (x >> 6))] |= cellBit(x);
    top = std::max(top, c);
  }
  max_[static_cast<size_t>(x)] = top;
  rowLow_ = std::min(rowLow_, lo);
  rowHigh_ = std::max(rowHigh_, hi);
}

int32_t Persistence::count(int x, int y) const {
  if (x < 0 || x >= kColumns || y < 0 || y >= kRows) return 0;
  return buf_[static_cast<size_t>(x + kStride * y)];
}

uint32_t Persistence::colourOf(int32_t count, int32_t max, const GradeStyle& s) {
  return Grader(s).colour(count, max);
}

void Persistence::render(DisplayCanvas& canvas, int first, int last, int step, const GradeStyle& s) {
  renderRows(canvas, first, last, step, s, nullptr);
}

void Persistence::renderAndDecay(DisplayCanvas& canvas, int first, int last, int step, const GradeStyle& s,
                                 int depth, bool leaveSingle) {
  if (depth <= 1) return render(canvas, first, last, step, s);
  const DecayPlan plan = decayPlan(first, last, step, depth, leaveSingle);
  renderRows(canvas, first, last, step, s, &plan);
  decayMaxima(plan);
}

void Persistence::makeBreakpoints(const GradeStyle& s, int first, int last, int step) {
  const Grader grader(s);
  const int emphasis = std::clamp(s.emphasis, 0, 5);
  breaks_.resize(static_cast<size_t>(9 * (kColumns + 3)));
  columnBreaks_.resize(static_cast<size_t>(kBreakStride * kColumns));
  // The breakpoints of a largest count are kept once made, for the emphasis they were made with: the
  // columns' maxima take few values, and the same ones packet after packet.
  if (memoEmphasis_ != emphasis) {
    memoBreaks_.resize(static_cast<size_t>(9 * kMemoMax));
    memoKnown_.assign(static_cast<size_t>(kMemoMax), 0);
    memoEmphasis_ = emphasis;
  }
  for (int x = first; x <= last; x += step) {
    const int32_t m = max_[static_cast<size_t>(x)];
    int32_t* b = columnBreaks_.data() + static_cast<ptrdiff_t>(kBreakStride) * x;
    bool exact;
    if (m > 0 && m < kMemoMax) {
      int32_t* kept = memoBreaks_.data() + static_cast<ptrdiff_t>(9) * m;
      if (!memoKnown_[static_cast<size_t>(m)]) {
        grader.breakpoints(m, kept);
        memoKnown_[static_cast<size_t>(m)] = 1;
      }
      std::copy(kept, kept + 9, b);
      exact = true;
    } else {
      exact = grader.breakpoints(m, b);
    }
    exact_[static_cast<size_t>(x)] = exact;
    if (!exact) continue;
    std::fill(b + 9, b + kBreakStride, INT32_MIN);
    for (int i = 0; i < 9; ++i) breaks_[static_cast<size_t>(9 * (x & ~3) + 4 * i + (x & 3))] = b[i];
  }
}

void Persistence::renderRows(DisplayCanvas& canvas, int first, int last, int step, const GradeStyle& s,
                             const DecayPlan* decay) {
  first = std::max(first, 0);
  last = std::min(last, kColumns - 1);
  step = std::max(step, 1);
  const Grader grader(s);
  // At zoom 1 a cell is the pixel (x + 10, 266 - y): the bitmap path copies into it, and a point of width
  // 1 is that pixel too, merged or copied by the draw mode. Elsewhere each cell is a point call.
  const bool zoomOne = canvas.geometry().zoomIndex == 1;
  const bool direct = s.byBitmap && zoomOne;
  const bool rowWise = direct || (zoomOne && canvas.drawWidth() == 1);
  const bool merge = !direct && canvas.drawMode() == DrawMode::MergePen;
  if (rowWise) last = std::min(last, canvas.width() - 1 - kPictureMargin);
  RowBits drawn{};
  for (int x = first; x <= last; x += step) drawn[static_cast<size_t>(x >> 6)] |= cellBit(x);
  // The colour grading compares counts with each column's breakpoints instead of dividing per cell.
  if (s.colour) makeBreakpoints(s, first, last, step);

  Fader fader;
  Fade fade = Fade::None;
  if (decay) {
    fader.shift = decay->shift;
    fader.depth = decay->depth;
    fader.round = decay->leaveSingle;
    fade = !decay->power ? Fade::Ratio : decay->leaveSingle ? Fade::Round : Fade::Cut;
  }
  const DrawCells drawSparse = drawCellsFor(s.colour, merge, fade);

#if defined(__SSE2__)
  const Levels levels(grader);
#endif
  const int item = s.colorItem;
  // The brightness grading's lit cells of a row, drawn four at a time after it.
  int32_t listX[kColumns + 3], listCount[kColumns + 3];
  const int lowRow = std::max(rowLow_, 1), highRow = std::min(rowHigh_, kRows - 2);
  for (int y = lowRow; y <= highRow; ++y) {
    int32_t* line = buf_.data() + static_cast<ptrdiff_t>(kStride) * y;
    uint64_t* bits = lit_.data() + static_cast<ptrdiff_t>(kWords) * y;
    uint64_t any = 0;
    for (int w = 0; w < kWords; ++w) any |= bits[w] & drawn[static_cast<size_t>(w)];
    uint32_t* pixels = any && rowWise ? canvas.row(kTraceRows + kPictureMargin - y) : nullptr;
    auto put = [&](int x, uint32_t rgb) {
      if (!pixels) return canvas.point(x, y, 0xFF000000 | rgb);
      uint32_t& p = pixels[x + kPictureMargin];
      p = merge ? p | 0xFF000000 | rgb : 0xFF000000 | rgb;
    };
    // One cell on its own: the quotient where a column is past the breakpoints' range.
    auto cell = [&](int x) {
      const int32_t c = line[x];
      if (c <= 0) return;
      const size_t xi = static_cast<size_t>(x);
      if (!s.colour || !exact_[xi]) return put(x, grader.colour(c, max_[xi]));
      put(x, colourByBreaks(grader, c, columnBreaks_.data() + static_cast<ptrdiff_t>(kBreakStride) * x));
    };
    int listed = 0;
    const RowCells row{line,  pixels,    max_.data(), columnBreaks_.data(), exact_.data(), &grader,
                       listX, listCount, &listed};
    for (int w = 0; w < kWords; ++w) {
      const size_t wi = static_cast<size_t>(w);
      const uint64_t shown = bits[w] & drawn[wi];
      const uint64_t fading = decay ? bits[w] & decay->columns[wi] : 0;
      if (!(shown | fading)) continue;
      const int base = w * 64;
      const bool dense = bitCount(shown) >= kDenseCells;
      if (pixels && shown == fading && !(dense && step == 1)) {
        drawSparse(row, bits[w], shown, base, fader);  // drawn and decayed a cell at a time
        continue;
      }
      if (dense && step == 1 && pixels) {
        const int x0 = std::max(base, first), x1 = std::min(base + 63, last);
        int x = x0;
        for (; x & 3 && x <= x1; ++x) cell(x);  // the breakpoints are kept by quads from a multiple of 4
        if (s.colour)
          x = merge ? colourQuads<true>(line, pixels, breaks_.data(), exact_.data(), grader, x0, x1)
                    : colourQuads<false>(line, pixels, breaks_.data(), exact_.data(), grader, x0, x1);
#if defined(__SSE2__)
        else
          x = merge ? levels.quads<true>(line, pixels, max_.data(), item, x0, x1)
                    : levels.quads<false>(line, pixels, max_.data(), item, x0, x1);
#endif
        for (; x <= x1; ++x) cell(x);
      } else {
        for (uint64_t m = shown; m; m &= m - 1) cell(base + std::countr_zero(m));
      }
      if (fading) fadeWord(*decay, line, bits[w], fading, base);
    }
#if defined(__SSE2__)
    if (listed > 0) {
      // Padded to four with the last cell, drawn again to the same colour.
      for (int i = listed; i % 4; ++i) {
        listX[i] = listX[listed - 1];
        listCount[i] = listCount[listed - 1];
      }
      for (int i = 0; i < listed; i += 4) {
        const int32_t* xs = listX + i;
        const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(listCount + i));
        const __m128i m = _mm_setr_epi32(max_[static_cast<size_t>(xs[0])], max_[static_cast<size_t>(xs[1])],
                                         max_[static_cast<size_t>(xs[2])], max_[static_cast<size_t>(xs[3])]);
        alignas(16) uint32_t four[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(four), levels.four(c, m));
        for (int k = 0; k < 4; ++k) put(xs[k], levelColour(item, four[k]));
      }
    }
#else
    for (int i = 0; i < listed; ++i)
      put(listX[i], grader.colour(listCount[i], max_[static_cast<size_t>(listX[i])]));
#endif
  }
}

Persistence::DecayPlan Persistence::decayPlan(int first, int last, int step, int depth, bool leaveSingle) {
  DecayPlan p;
  p.first = std::max(first, 0);
  p.last = std::min(last, kColumns - 1);
  p.step = std::max(step, 1);
  p.depth = depth;
  p.leaveSingle = leaveSingle;
  while (p.shift < 30 && (1 << p.shift) < depth) ++p.shift;
  p.power = (1 << p.shift) == depth;
  for (int x = p.first; x <= p.last; x += p.step) p.columns[static_cast<size_t>(x >> 6)] |= cellBit(x);
  return p;
}

void Persistence::fadeWord(const DecayPlan& p, int32_t* line, uint64_t& bits, uint64_t cells, int base) {
  if (p.power && p.step == 1 && bitCount(cells) >= kDenseCells) {
    const int x0 = std::max(base, p.first), x1 = std::min(base + 63, p.last);
    if (p.leaveSingle)
      fadeSpan<true>(line, bits, x0, x1, p.shift);
    else
      fadeSpan<false>(line, bits, x0, x1, p.shift);
    return;
  }
  Fader f;
  f.shift = p.shift;
  f.depth = p.depth;
  f.round = p.leaveSingle;
  if (!p.power)
    fadeCells<Fade::Ratio>(line, bits, cells, base, f);
  else if (p.leaveSingle)
    fadeCells<Fade::Round>(line, bits, cells, base, f);
  else
    fadeCells<Fade::Cut>(line, bits, cells, base, f);
}

void Persistence::decayMaxima(const DecayPlan& p) {
  // A largest count is never below 0, where both ways of the decay agree.
  if (p.power)
    for (int x = p.first; x <= p.last; x += p.step)
      max_[static_cast<size_t>(x)] = decayedPow2<true>(max_[static_cast<size_t>(x)], p.shift);
  else
    for (int x = p.first; x <= p.last; x += p.step)
      max_[static_cast<size_t>(x)] = decayed(max_[static_cast<size_t>(x)], p.depth, true);
  // Rows that emptied at the ends of the range drop out of it (rows 0 and 255 keep their counts).
  auto empty = [&](int y) {
    const uint64_t* bits = lit_.data() + static_cast<ptrdiff_t>(kWords) * y;
    return std::all_of(bits, bits + kWords, [](uint64_t b) { return b == 0; });
  };
  while (rowLow_ <= rowHigh_ && rowLow_ > 0 && rowLow_ < kRows - 1 && empty(rowLow_)) ++rowLow_;
  while (rowHigh_ >= rowLow_ && rowHigh_ < kRows - 1 && rowHigh_ > 0 && empty(rowHigh_)) --rowHigh_;
}

void Persistence::decay(int first, int last, int step, int depth, bool leaveSingle) {
  if (depth <= 1) return;
  const DecayPlan plan = decayPlan(first, last, step, depth, leaveSingle);
  for (int y = std::max(rowLow_, 1); y <= std::min(rowHigh_, kRows - 2); ++y) {
    int32_t* line = buf_.data() + static_cast<ptrdiff_t>(kStride) * y;
    uint64_t* bits = lit_.data() + static_cast<ptrdiff_t>(kWords) * y;
    for (int w = 0; w < kWords; ++w) {
      const uint64_t cells = bits[w] & plan.columns[static_cast<size_t>(w)];
      if (cells) fadeWord(plan, line, bits[w], cells, w * 64);
    }
  }
  decayMaxima(plan);
}

}  // namespace zorvik
