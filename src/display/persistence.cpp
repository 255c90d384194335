#include "display/persistence.h"

#include <algorithm>
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

int32_t saturatedAdd(int32_t a, int32_t b) {
  const int64_t s = static_cast<int64_t>(a) + b;
  return static_cast<int32_t>(std::clamp<int64_t>(s, INT32_MIN, INT32_MAX));
}

// The grading of one pass: gain and offset of the brightness, the thresholds of the colours.
class Grader {
 public:
  explicit Grader(const GradeStyle& s) : s_(s), table_(s.inverted ? kGradeColorsInverted : kGradeColors) {
    const int e = std::clamp(s.emphasis, 0, 5);
    gain_ = static_cast<int>(roundHalfEven((s.inverted ? -230.0 : 230.0) * e / 5));
    offset_ = (s.inverted ? 25 : 255) - gain_;
    // 2 ^ (k i), k = e / 5, as the 32-bit floats they are kept in.
    for (int i = 0; i < 9; ++i) t_[static_cast<size_t>(i)] = static_cast<float>(std::pow(2.0, e / 5.0 * i));
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

// Sixteen cells from `cells` on, none holding a count above 0.
inline bool emptyRun(const int32_t* cells) {
  Int4 c[4];
  std::memcpy(c, cells, sizeof c);
  const Int4 any = (c[0] > 0) | (c[1] > 0) | (c[2] > 0) | (c[3] > 0);
  uint64_t bits[2];
  std::memcpy(bits, &any, sizeof bits);
  return (bits[0] | bits[1]) == 0;
}

template <bool Round>
void decayLine(int32_t* line, int first, int last, int step, int shift) {
  int x = first;
  if (step == 1) {
    // Sixteen cells at a time, passed over where all are 0 (a count of 0 stays 0): most of a row is empty.
    for (; x + 15 <= last; x += 16) {
      Int4 c[4];
      std::memcpy(c, line + x, sizeof c);
      const Int4 any = c[0] | c[1] | c[2] | c[3];
      uint64_t bits[2];
      std::memcpy(bits, &any, sizeof bits);
      if ((bits[0] | bits[1]) == 0) continue;
      for (Int4& q : c) q = decayedPow2<Round>(q, shift);
      std::memcpy(line + x, c, sizeof c);
    }
    for (; x + 3 <= last; x += 4) {
      Int4 c;
      std::memcpy(&c, line + x, sizeof c);
      c = decayedPow2<Round>(c, shift);
      std::memcpy(line + x, &c, sizeof c);
    }
  }
  for (; x <= last; x += step) line[x] = decayedPow2<Round>(line[x], shift);
}

}  // namespace

Persistence::Persistence() : buf_(static_cast<size_t>(kColumns) * kRows, 0) {}

void Persistence::clear() {
  if (rowHigh_ >= rowLow_)
    std::fill(buf_.begin() + static_cast<ptrdiff_t>(kStride) * rowLow_,
              buf_.begin() + static_cast<ptrdiff_t>(kStride) * (rowHigh_ + 1), 0);
  max_.fill(0);
  rowLow_ = kRows;
  rowHigh_ = -1;
}

void Persistence::addHit(int x, int y, int weight) {
  if (x < 0 || x >= kColumns || y < 0 || y >= kRows) return;
  int32_t& c = buf_[static_cast<size_t>(x + kStride * y)];
  c = saturatedAdd(c, weight);
  rowLow_ = std::min(rowLow_, y);
  rowHigh_ = std::max(rowHigh_, y);
  if (c > max_[static_cast<size_t>(x)]) max_[static_cast<size_t>(x)] = c;
}

void Persistence::addSpan(int x, int lo, int hi, int weight) {
  if (lo > hi) std::swap(lo, hi);
  for (int y = std::max(lo, 0); y <= std::min(hi, kRows - 1); ++y) addHit(x, y, weight);
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
  // The colour grading compares counts with each column's breakpoints instead of dividing per cell.
  if (s.colour) {
    breaks_.resize(static_cast<size_t>(9 * kColumns));
    // The breakpoints of a largest count are kept once made, for the emphasis they were made with: the
    // columns' maxima take few values, and the same ones packet after packet.
    const int emphasis = std::clamp(s.emphasis, 0, 5);
    if (memoEmphasis_ != emphasis) {
      memoBreaks_.resize(static_cast<size_t>(9 * kMemoMax));
      memoKnown_.assign(static_cast<size_t>(kMemoMax), 0);
      memoEmphasis_ = emphasis;
    }
    for (int x = first; x <= last; x += step) {
      const int32_t m = max_[static_cast<size_t>(x)];
      int32_t b[9] = {};
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
      for (int i = 0; i < 9; ++i) breaks_[static_cast<size_t>(i * kColumns + x)] = b[i];
    }
  }
  const Int4 opaque = {static_cast<int32_t>(0xFF000000), static_cast<int32_t>(0xFF000000),
                       static_cast<int32_t>(0xFF000000), static_cast<int32_t>(0xFF000000)};
  const Int4 grey = opaque | static_cast<int32_t>(kSingleHitColor);
  for (int y = std::max(rowLow_, 1); y <= std::min(rowHigh_, kRows - 2); ++y) {
    const int32_t* line = buf_.data() + static_cast<ptrdiff_t>(kStride) * y;
    uint32_t* pixels = rowWise ? canvas.row(kTraceRows + kPictureMargin - y) : nullptr;
    auto put = [&](int x, uint32_t rgb) {
      if (!pixels) return canvas.point(x, y, 0xFF000000 | rgb);
      uint32_t& p = pixels[x + kPictureMargin];
      p = merge ? p | 0xFF000000 | rgb : 0xFF000000 | rgb;
    };
    int x = first;
#if defined(__SSE2__)
    if (!s.colour && step == 1 && pixels) {
      // Brightness, four cells at a time in two pairs of doubles: count x gain / max + offset rounded
      // half to even (by adding and taking away 1.5 x 2^52, exact far beyond these values), clamped.
      const __m128d gain = _mm_set1_pd(grader.gain()), offset = _mm_set1_pd(grader.offset());
      const __m128d magic = _mm_set1_pd(6755399441055744.0), top = _mm_set1_pd(255.0),
                    zero = _mm_setzero_pd();
      const int item = s.colorItem;
      auto level = [&](__m128i c, __m128i m) {
        const __m128d cd = _mm_cvtepi32_pd(c), md = _mm_cvtepi32_pd(m);
        const __m128d scaled = _mm_add_pd(_mm_div_pd(_mm_mul_pd(cd, gain), md), offset);
        const __m128d positive = _mm_cmpgt_pd(md, zero);  // no largest count: the offset
        __m128d v = _mm_or_pd(_mm_and_pd(positive, scaled), _mm_andnot_pd(positive, offset));
        v = _mm_sub_pd(_mm_add_pd(v, magic), magic);
        v = _mm_max_pd(_mm_min_pd(v, top), zero);
        return _mm_cvttpd_epi32(v);
      };
      const __m128i opaque4 = _mm_set1_epi32(static_cast<int32_t>(0xFF000000));
      for (; x + 3 <= last; x += 4) {
        if (x + 15 <= last && emptyRun(line + x)) {
          x += 12;  // sixteen empty cells
          continue;
        }
        const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + x));
        const __m128i lit = _mm_cmpgt_epi32(c, _mm_setzero_si128());
        if (_mm_movemask_epi8(lit) == 0) continue;
        const __m128i m = _mm_loadu_si128(reinterpret_cast<const __m128i*>(max_.data() + x));
        const __m128i low = level(c, m);
        const __m128i high = level(_mm_shuffle_epi32(c, 0xEE), _mm_shuffle_epi32(m, 0xEE));
        const __m128i lv = _mm_unpacklo_epi64(low, high);
        __m128i rgb = _mm_setzero_si128();
        if (item & 1) rgb = _mm_or_si128(rgb, _mm_slli_epi32(lv, 16));
        if (item & 2) rgb = _mm_or_si128(rgb, _mm_slli_epi32(lv, 8));
        if (item & 4) rgb = _mm_or_si128(rgb, lv);
        const __m128i colour = _mm_or_si128(rgb, opaque4);
        __m128i* at = reinterpret_cast<__m128i*>(pixels + x + kPictureMargin);
        const __m128i old = _mm_loadu_si128(at);
        const __m128i out = merge ? _mm_or_si128(old, _mm_and_si128(colour, lit))
                                  : _mm_or_si128(_mm_andnot_si128(lit, old), _mm_and_si128(colour, lit));
        _mm_storeu_si128(at, out);
      }
    }
#endif
    if (s.colour && step == 1 && pixels) {
      // Four cells at a time: the thresholds under each ratio counted lane by lane, the colours laid in
      // where a cell holds a count.
      for (; x + 3 <= last; x += 4) {
        if (x + 15 <= last && emptyRun(line + x)) {
          x += 12;  // sixteen empty cells
          continue;
        }
        Int4 c;
        std::memcpy(&c, line + x, sizeof c);
        const Int4 lit = c > 0;
        uint64_t litBits[2];
        std::memcpy(litBits, &lit, sizeof litBits);
        if ((litBits[0] | litBits[1]) == 0) continue;
        uint32_t exact4;
        std::memcpy(&exact4, exact_.data() + x, sizeof exact4);
        if (exact4 != 0x01010101u) break;  // a column past the breakpoints' range: cell by cell from here
        Int4 below = {0, 0, 0, 0};
        for (int i = 0; i < 9; ++i) {
          Int4 b;
          std::memcpy(&b, breaks_.data() + i * kColumns + x, sizeof b);
          below -= c < b;
        }
        const Int4 single = c < 2;
        const Int4 table = {static_cast<int32_t>(grader.colourOfBelow(2, below[0])),
                            static_cast<int32_t>(grader.colourOfBelow(2, below[1])),
                            static_cast<int32_t>(grader.colourOfBelow(2, below[2])),
                            static_cast<int32_t>(grader.colourOfBelow(2, below[3]))};
        const Int4 colour = (table & ~single) | (grey & single) | opaque;
        Int4 old;
        std::memcpy(&old, pixels + x + kPictureMargin, sizeof old);
        const Int4 out = merge ? old | (colour & lit) : (old & ~lit) | (colour & lit);
        std::memcpy(pixels + x + kPictureMargin, &out, sizeof out);
      }
    }
    for (; x <= last; x += step) {
      const int32_t c = line[x];
      if (c <= 0) continue;
      const size_t xi = static_cast<size_t>(x);
      if (!s.colour || !exact_[xi]) {
        put(x, grader.colour(c, max_[xi]));
        continue;
      }
      int below = 0;
      for (int i = 0; i < 9; ++i) below += c < breaks_[static_cast<size_t>(i * kColumns) + xi];
      put(x, grader.colourOfBelow(c, below));
    }
    if (decay) decayRow(*decay, y);
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
  return p;
}

void Persistence::decayRow(const DecayPlan& p, int y) {
  int32_t* line = buf_.data() + static_cast<ptrdiff_t>(kStride) * y;
  if (p.power && p.leaveSingle)
    decayLine<true>(line, p.first, p.last, p.step, p.shift);
  else if (p.power)
    decayLine<false>(line, p.first, p.last, p.step, p.shift);
  else
    for (int x = p.first; x <= p.last; x += p.step)
      if (line[x] > 0) line[x] = decayed(line[x], p.depth, p.leaveSingle);
}

void Persistence::decayMaxima(const DecayPlan& p) {
  for (int x = p.first; x <= p.last; x += p.step)
    max_[static_cast<size_t>(x)] = decayed(max_[static_cast<size_t>(x)], p.depth, true);
  // Rows that emptied at the ends of the range drop out of it (rows 0 and 255 keep their counts).
  auto empty = [&](int y) {
    const int32_t* line = buf_.data() + static_cast<ptrdiff_t>(kStride) * y;
    return std::all_of(line, line + kColumns, [](int32_t c) { return c == 0; });
  };
  while (rowLow_ <= rowHigh_ && rowLow_ > 0 && rowLow_ < kRows - 1 && empty(rowLow_)) ++rowLow_;
  while (rowHigh_ >= rowLow_ && rowHigh_ < kRows - 1 && rowHigh_ > 0 && empty(rowHigh_)) --rowHigh_;
}

void Persistence::decay(int first, int last, int step, int depth, bool leaveSingle) {
  if (depth <= 1) return;
  const DecayPlan plan = decayPlan(first, last, step, depth, leaveSingle);
  for (int y = std::max(rowLow_, 1); y <= std::min(rowHigh_, kRows - 2); ++y) decayRow(plan, y);
  decayMaxima(plan);
}

}  // namespace zorvik
