#include "measure/sig_calc.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zorvik {

namespace {

// The samples of a record as codes: one a character, or two characters a sample high byte first (an odd
// last character is no sample).
inline int32_t code16(const uint8_t* p, size_t i) {
  return static_cast<int32_t>(p[2 * i]) * 256 + p[2 * i + 1];
}
inline const uint8_t* bytesOf(std::string_view s) {
  return reinterpret_cast<const uint8_t*>(s.data());
}

float volts8(float fullScale, int32_t code, float zero) {
  return fullScale * static_cast<float>(code - 128) / 256 + zero;
}
float volts16(float fullScale, int32_t code, float zero) {
  return fullScale * static_cast<float>(code - 32768) / 65536 + zero;
}

// A 32-bit float sum kept through a 64-bit fixed-point addition with four decimals: the float is rounded
// to the fixed point, the square added exactly, and the total rounded back to a float.
float addFixedPoint(float sum, int64_t square) {
  const int64_t fixed = std::llrint(static_cast<double>(sum) * 10000.0) + square * 10000;
  return static_cast<float>(static_cast<double>(fixed) / 10000.0);
}

// The sum of squared distances from the mean, step by step as addFixedPoint rounds it, without its
// divisions. The codes and the mean are whole numbers, so every square is; and while the sum is a whole
// number below 2^38, sum x 10000 is exact in a double, so are the new fixed point and its quotient by
// 10000, and addFixedPoint returns sum + square rounded once to a float: again a whole number. From 0
// the sum thus stays a whole number S, each step S <- float(S + square). Up to 2^24 no step rounds.
constexpr int64_t kNoRounding = int64_t{1} << 24;
// From 2^38 on the fixed point outgrows a double's 53 bits, but its rounding moves the quotient by less
// than 0.2 while the floats are 2^15 apart, so only a sum exactly halfway between two floats (a tie)
// could round the other way. A tie has few significant bits: odd x 2^(k-1) with the odd part below 2^25,
// and its fixed point odd x 625 x 2^(k+3) has at most 35, which a double holds exactly; so a tie, too,
// rounds to even as the float does. Below 2^49 the fixed point stays inside 64 bits.
constexpr int64_t kWholeBelow = int64_t{1} << 49;
constexpr size_t kBlock = 64, kQuarter = 16;

// One step on whole numbers: S + square rounded to 24 significant bits, ties to even.
inline int64_t exactStep(int64_t sum, uint32_t square) {
  const int64_t total = sum + square;
  if (total <= kNoRounding) return total;
  const int k = 63 - __builtin_clzll(static_cast<uint64_t>(total)) - 23;
  const int64_t unit = int64_t{1} << k, half = unit / 2, rest = total & (unit - 1);
  const int64_t down = total - rest;
  return rest > half || (rest == half && ((down >> k) & 1)) ? down + unit : down;
}

// Within one binade, with floats 2^k apart and s = S / 2^k, a square q adds a = q / 2^k rounded to the
// nearest; only a tie (a remainder of exactly half a unit) depends on s: it rounds s + a to even, adding
// 1 when s + a is odd and leaving s even. A block of 64 squares is therefore told by a (the sum of the
// a rounded down at ties), the bit of each a that is odd, and the bit of each tie.
struct BlockSteps {
  int64_t steps = 0;
  uint64_t odd = 0, ties = 0;
};

// The squares of a block side by side, four to a vector, sixteen a round from squaresAt(g, q); every
// square / 2^k must be below 2^28, so that a 32-bit lane adds sixteen of them.
template <typename SquaresAt>
BlockSteps blockSteps(size_t len, int k, SquaresAt&& squaresAt) {
  BlockSteps b;
  const uint32_t unit = uint32_t{1} << k, half = unit / 2;
#if defined(__SSE2__)
  const __m128i mask = _mm_set1_epi32(static_cast<int32_t>(unit - 1));
  const __m128i halfv = _mm_set1_epi32(static_cast<int32_t>(half));
  const __m128i shift = _mm_cvtsi32_si128(k);
  __m128i whole = _mm_setzero_si128(), up = _mm_setzero_si128();
  for (size_t g = 0; g < len; g += 16) {
    __m128i q[4], odd[4], tie[4];
    squaresAt(g, q);
    for (size_t v = 0; v < 4; ++v) {
      const __m128i rest = _mm_and_si128(q[v], mask);  // below 2^25: compared as signed
      const __m128i above = _mm_cmpgt_epi32(rest, halfv);
      const __m128i steps = _mm_srl_epi32(q[v], shift);
      whole = _mm_add_epi32(whole, steps);
      up = _mm_sub_epi32(up, above);
      odd[v] = _mm_slli_epi32(_mm_xor_si128(steps, above), 31);  // the low bit of steps + (rest > half)
      tie[v] = _mm_cmpeq_epi32(rest, halfv);
    }
    // Sign bits packed down to bytes keep their order.
    const __m128i o = _mm_packs_epi16(_mm_packs_epi32(odd[0], odd[1]), _mm_packs_epi32(odd[2], odd[3]));
    const __m128i t = _mm_packs_epi16(_mm_packs_epi32(tie[0], tie[1]), _mm_packs_epi32(tie[2], tie[3]));
    b.odd |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(o))) << g;
    b.ties |= static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(t))) << g;
  }
  alignas(16) uint32_t w[4], u[4];
  _mm_store_si128(reinterpret_cast<__m128i*>(w), whole);
  _mm_store_si128(reinterpret_cast<__m128i*>(u), up);
  for (int l = 0; l < 4; ++l) b.steps += int64_t{w[l]} + u[l];
#else
  for (size_t j = 0; j < len; ++j) {
    const uint32_t sq = squaresAt(j), rest = sq & (unit - 1);
    const uint32_t a = (sq >> k) + (rest > half);
    b.steps += a;
    b.odd |= uint64_t{a & 1} << j;
    b.ties |= uint64_t{rest == half} << j;
  }
#endif
  return b;
}

// The 1s the ties of a block add, s starting with parity startOdd. The parity of s + a at a tie is the
// XOR of the odd bits since the tie before it (which left s even), or since the start and startOdd.
int tieCarries(uint64_t odd, uint64_t ties, bool startOdd) {
  uint64_t prefix = odd;  // bit j: XOR of the odd bits 0 to j
  for (int s = 1; s < 64; s *= 2) prefix ^= prefix << s;
  // last: bit j holds the prefix at the latest tie at or before j, or startOdd before the first tie.
  uint64_t last = prefix & ties, known = ties;
  for (int s = 1; s < 64; s *= 2) {
    last |= (last << s) & ~known;
    known |= known << s;
  }
  if (startOdd) last |= ~known;
  const uint64_t before = (last << 1) | uint64_t{startOdd};
  return __builtin_popcountll((prefix ^ before) & ties);
}

// The squares of a byte record, block by block from the codes: a distance of up to 255 squares below
// 2^16, so eight squares go to a vector. A block that runs past the record reads `tail`: its last codes,
// then the mean, whose square is 0 and changes nothing.
struct ByteSquares {
  const uint8_t* p;
  size_t n;
  int32_t mean;         // a code: 0 to 255
  const uint8_t* tail;  // the codes from tailStart on, padded to a block
  size_t tailStart;

  uint32_t at(size_t i) const {
    const int32_t d = p[i] - mean;
    return static_cast<uint32_t>(d * d);
  }
  const uint8_t* codes(size_t i, size_t len) const { return i + len <= n ? p + i : tail + (i - tailStart); }
  // len: a multiple of 16.
  int64_t total(size_t i, size_t len) const {
    const uint8_t* c = codes(i, len);
    int64_t sum = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128(), m = _mm_set1_epi16(static_cast<int16_t>(mean));
    __m128i acc = _mm_setzero_si128();  // pairs of squares, at most 2 x 16 x 130050 a lane
    for (size_t g = 0; g < len; g += 16) {
      const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(c + g));
      const __m128i lo = _mm_sub_epi16(_mm_unpacklo_epi8(x, zero), m);
      const __m128i hi = _mm_sub_epi16(_mm_unpackhi_epi8(x, zero), m);
      acc = _mm_add_epi32(acc, _mm_add_epi32(_mm_madd_epi16(lo, lo), _mm_madd_epi16(hi, hi)));
      if ((g / 16) % 16 == 15) {
        alignas(16) int32_t parts[4];
        _mm_store_si128(reinterpret_cast<__m128i*>(parts), acc);
        sum += int64_t{parts[0]} + parts[1] + parts[2] + parts[3];
        acc = _mm_setzero_si128();
      }
    }
    alignas(16) int32_t parts[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(parts), acc);
    sum += int64_t{parts[0]} + parts[1] + parts[2] + parts[3];
#else
    for (size_t j = 0; j < len; ++j) sum += (c[j] - mean) * (c[j] - mean);
#endif
    return sum;
  }
  // On 16-bit lanes, for floats up to 2^15 apart; farther apart (a record of millions of codes) the steps
  // go one by one.
  bool steps(size_t i, size_t len, int k, BlockSteps& b) const {
    if (k > 15) return false;
    const uint8_t* c = codes(i, len);
    const int32_t unit = int32_t{1} << k, half = unit / 2;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128(), m = _mm_set1_epi16(static_cast<int16_t>(mean));
    const __m128i mask = _mm_set1_epi16(static_cast<int16_t>(unit - 1));
    const __m128i halfv = _mm_set1_epi16(static_cast<int16_t>(half)), ones = _mm_set1_epi16(1);
    const __m128i shift = _mm_cvtsi32_si128(k);
    __m128i whole = _mm_setzero_si128(), up = _mm_setzero_si128();
    for (size_t g = 0; g < len; g += 16) {
      const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(c + g));
      __m128i odd[2], tie[2];
      for (int h = 0; h < 2; ++h) {
        const __m128i d = _mm_sub_epi16(h ? _mm_unpackhi_epi8(x, zero) : _mm_unpacklo_epi8(x, zero), m);
        const __m128i q = _mm_mullo_epi16(d, d);      // below 2^16 unsigned
        const __m128i rest = _mm_and_si128(q, mask);  // below 2^15: compared as signed
        const __m128i above = _mm_cmpgt_epi16(rest, halfv);
        const __m128i steps = _mm_srl_epi16(q, shift);  // below 2^15
        whole = _mm_add_epi32(whole, _mm_madd_epi16(steps, ones));
        up = _mm_sub_epi16(up, above);  // at most 8 a lane
        odd[h] = _mm_slli_epi16(_mm_xor_si128(steps, above), 15);
        tie[h] = _mm_cmpeq_epi16(rest, halfv);
      }
      b.odd |=
          static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(odd[0], odd[1]))))
          << g;
      b.ties |=
          static_cast<uint64_t>(static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(tie[0], tie[1]))))
          << g;
    }
    alignas(16) int32_t w[4];
    alignas(16) int16_t u[8];
    _mm_store_si128(reinterpret_cast<__m128i*>(w), whole);
    _mm_store_si128(reinterpret_cast<__m128i*>(u), up);
    b.steps = int64_t{w[0]} + w[1] + w[2] + w[3];
    for (int l = 0; l < 8; ++l) b.steps += u[l];
#else
    for (size_t j = 0; j < len; ++j) {
      const int32_t q = (c[j] - mean) * (c[j] - mean), rest = q & (unit - 1);
      const int32_t a = (q >> k) + (rest > half);
      b.steps += a;
      b.odd |= uint64_t(a & 1) << j;
      b.ties |= uint64_t{rest == half} << j;
    }
#endif
    return true;
  }
};

// The squares of a hi-res record, block by block from the codes: distances below 2^16 taken both ways
// with saturating subtractions, their squares (below 2^32) from the low and high halves of the products.
// A block past the record's end reads `tail` as ByteSquares does.
struct WordSquares {
  const uint8_t* p;
  size_t n;
  int32_t mean;         // a code: 0 to 65535
  const uint8_t* tail;  // the codes from tailStart on, padded to a block, high byte first
  size_t tailStart;

  uint32_t at(size_t i) const {
    const uint32_t d = static_cast<uint32_t>(code16(p, i) - mean);
    return d * d;  // (-d) x (-d) modulo 2^32 is d x d
  }
  const uint8_t* codes(size_t i, size_t len) const {
    return i + len <= n ? p + 2 * i : tail + 2 * (i - tailStart);
  }
  int64_t total(size_t i, size_t len) const {
    const uint8_t* c = codes(i, len);
    uint64_t sum = 0;
    for (size_t j = 0; j < len; ++j) {
      const uint32_t d = static_cast<uint32_t>(code16(c, j) - mean);
      sum += d * d;
    }
    return static_cast<int64_t>(sum);
  }
  // Sixteen steps of up to 2^(32 - k) each fit a 32-bit lane from k = 4 on.
  bool steps(size_t i, size_t len, int k, BlockSteps& b) const {
    if (k < 4) return false;
    const uint8_t* c = codes(i, len);
#if defined(__SSE2__)
    const __m128i m = _mm_set1_epi16(static_cast<int16_t>(static_cast<uint16_t>(mean)));
    b = blockSteps(len, k, [&](size_t g, __m128i* q) {
      for (size_t h = 0; h < 2; ++h) {
        const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(c + 2 * (g + 8 * h)));
        const __m128i v = _mm_or_si128(_mm_slli_epi16(raw, 8), _mm_srli_epi16(raw, 8));
        const __m128i d = _mm_or_si128(_mm_subs_epu16(v, m), _mm_subs_epu16(m, v));
        const __m128i lo = _mm_mullo_epi16(d, d), hi = _mm_mulhi_epu16(d, d);
        q[2 * h] = _mm_unpacklo_epi16(lo, hi);
        q[2 * h + 1] = _mm_unpackhi_epi16(lo, hi);
      }
    });
#else
    b = blockSteps(len, k, [&](size_t j) {
      const uint32_t d = static_cast<uint32_t>(code16(c, j) - mean);
      return d * d;
    });
#endif
    return true;
  }
};

// count squares; blocks may read on to a whole number of blocks.
template <typename Squares>
float sumOfSquares(const Squares& squares, size_t count) {
  int64_t sum = 0;
  size_t i = 0;
  // Long stretches below 2^24 in one sum of whole numbers each.
  constexpr size_t kStretch = 256;
  while (i + kStretch <= count) {
    const int64_t total = squares.total(i, kStretch);
    if (sum + total > kNoRounding) break;
    sum += total;
    i += kStretch;
  }
  // The next len squares (64 or 16) at once, unless they pass 2^24 or a power of two on the way.
  auto block = [&](size_t len) {
    if (sum < kNoRounding) {
      const int64_t total = squares.total(i, len);
      if (sum + total > kNoRounding) return false;
      sum += total;
    } else {
      const int k = 63 - __builtin_clzll(static_cast<uint64_t>(sum)) - 23;  // floats 2^k apart here
      BlockSteps b;
      if (!squares.steps(i, len, k, b)) return false;
      const int64_t s = sum >> k;
      if (s + b.steps + static_cast<int64_t>(len) >= kNoRounding) return false;  // a tie adds at most 1
      sum = (s + b.steps + (b.ties ? tieCarries(b.odd, b.ties, s & 1) : 0)) << k;
    }
    i += len;
    return true;
  };
  while (i < count && sum < kWholeBelow) {
    if (block(kBlock)) continue;
    // The quarter that passes a power of two step by step.
    for (int quarter = 0; quarter < 4 && i < count && sum < kWholeBelow; ++quarter) {
      if (block(kQuarter)) continue;
      const size_t end = std::min(i + kQuarter, count);
      for (; i < end && sum < kWholeBelow; ++i) sum = exactStep(sum, squares.at(i));
    }
  }
  // Beyond 2^49 (a record longer than any packet) the steps as they are written.
  float rest = static_cast<float>(sum);
  for (; i < count; ++i) rest = addFixedPoint(rest, squares.at(i));
  return rest;
}

// Codes of 8 bits: their sum, lowest, highest, and whether one touches a rail (0 or 255).
struct ByteScan {
  int64_t sum = 0;
  int32_t lo = 255, hi = 0;
  bool clipped = false;
};
ByteScan scanBytes(const uint8_t* p, size_t n) {
  ByteScan r;
  size_t i = 0;
  uint8_t lo = 255, hi = 0;
  bool clipped = false;
#if defined(__SSE2__)
  // Sixteen codes at a time: sums of absolute differences from 0 give the sums.
  __m128i sum = _mm_setzero_si128(), vlo = _mm_set1_epi8(-1), vhi = _mm_setzero_si128();
  __m128i rail = _mm_setzero_si128();
  const __m128i zero = _mm_setzero_si128(), top = _mm_set1_epi8(-1);
  for (; i + 16 <= n; i += 16) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
    sum = _mm_add_epi64(sum, _mm_sad_epu8(v, zero));
    vlo = _mm_min_epu8(vlo, v);
    vhi = _mm_max_epu8(vhi, v);
    rail = _mm_or_si128(rail, _mm_or_si128(_mm_cmpeq_epi8(v, zero), _mm_cmpeq_epi8(v, top)));
  }
  alignas(16) uint8_t los[16], his[16];
  alignas(16) int64_t sums[2];
  _mm_store_si128(reinterpret_cast<__m128i*>(los), vlo);
  _mm_store_si128(reinterpret_cast<__m128i*>(his), vhi);
  _mm_store_si128(reinterpret_cast<__m128i*>(sums), sum);
  r.sum = sums[0] + sums[1];
  for (int k = 0; k < 16; ++k) {
    lo = std::min(lo, los[k]);
    hi = std::max(hi, his[k]);
  }
  clipped = _mm_movemask_epi8(rail) != 0;
#endif
  for (; i < n; ++i) {
    const uint8_t c = p[i];
    r.sum += c;
    lo = std::min(lo, c);
    hi = std::max(hi, c);
    clipped |= c == 0 || c == 255;
  }
  r.lo = lo;
  r.hi = hi;
  r.clipped = clipped;
  return r;
}

ByteScan scanWords(const uint8_t* p, size_t words) {
  ByteScan r;
  int32_t lo = 65536, hi = 0;
  bool clipped = false;
  size_t i = 0;
#if defined(__SSE2__)
  // Eight codes at a time, turned to little-endian and offset by 32768 to compare as signed.
  const __m128i flip = _mm_set1_epi16(static_cast<int16_t>(0x8000)), ones = _mm_set1_epi16(1);
  const __m128i zero = _mm_setzero_si128(), top = _mm_set1_epi16(-1);
  __m128i vlo = _mm_set1_epi16(0x7FFF), vhi = _mm_set1_epi16(static_cast<int16_t>(0x8000));
  __m128i rail = _mm_setzero_si128();
  int64_t total = 0;
  while (i + 8 <= words) {
    // Pairs of signed codes summed into 32-bit lanes: 8192 rounds stay far inside 32 bits.
    __m128i part = _mm_setzero_si128();
    const size_t end = std::min(words, i + 8 * 8192);
    for (; i + 8 <= end; i += 8) {
      const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 2 * i));
      const __m128i v = _mm_or_si128(_mm_slli_epi16(raw, 8), _mm_srli_epi16(raw, 8));
      rail = _mm_or_si128(rail, _mm_or_si128(_mm_cmpeq_epi16(v, zero), _mm_cmpeq_epi16(v, top)));
      const __m128i sv = _mm_xor_si128(v, flip);
      vlo = _mm_min_epi16(vlo, sv);
      vhi = _mm_max_epi16(vhi, sv);
      part = _mm_add_epi32(part, _mm_madd_epi16(sv, ones));
    }
    alignas(16) int32_t parts[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(parts), part);
    total += static_cast<int64_t>(parts[0]) + parts[1] + parts[2] + parts[3];
  }
  r.sum = total + static_cast<int64_t>(i) * 32768;
  alignas(16) int16_t los[8], his[8];
  _mm_store_si128(reinterpret_cast<__m128i*>(los), vlo);
  _mm_store_si128(reinterpret_cast<__m128i*>(his), vhi);
  if (i > 0) {
    for (int k = 0; k < 8; ++k) {
      lo = std::min(lo, los[k] + 32768);
      hi = std::max(hi, his[k] + 32768);
    }
  }
  clipped = _mm_movemask_epi8(rail) != 0;
#endif
  for (; i < words; ++i) {
    const int32_t c = code16(p, i);
    r.sum += c;
    lo = std::min(lo, c);
    hi = std::max(hi, c);
    clipped |= c == 0 || c == 65535;
  }
  r.lo = lo;
  r.hi = hi;
  r.clipped = clipped;
  return r;
}

}  // namespace

void SigCalc::CalcDC(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts) {
  if (samples.empty()) {
    DCValid = false;
    return;
  }
  const ByteScan scan =
      IsHiRes ? scanWords(bytesOf(samples), samples.size() / 2) : scanBytes(bytesOf(samples), samples.size());
  takeDC(scan.sum, scan.clipped, samples.size(), IsHiRes, FullScaleVolts, ZeroVolts);
}

void SigCalc::takeDC(int64_t sum, bool clipped, size_t chars, bool IsHiRes, float FullScaleVolts,
                     float ZeroVolts) {
  if (clipped) {
    DCValid = false;
    return;
  }
  const int64_t n = static_cast<int64_t>(chars);
  if (!IsHiRes) {
    MeanCode8 = static_cast<int32_t>(sum / n);
    DCVolts = volts8(FullScaleVolts, MeanCode8, ZeroVolts);
    MeanCode16 = MeanCode8 * 256;
  } else {
    MeanCode16 = static_cast<int32_t>(2 * sum / n);
    DCVolts = volts16(FullScaleVolts, MeanCode16, ZeroVolts);
    MeanCode8 = MeanCode16 / 256;
  }
  DCValid = true;
}

void SigCalc::CalcPeaks(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts) {
  if (samples.empty()) {
    PeakHighValid = PeakLowValid = false;
    return;
  }
  const ByteScan scan =
      IsHiRes ? scanWords(bytesOf(samples), samples.size() / 2) : scanBytes(bytesOf(samples), samples.size());
  takePeaks(scan.lo, scan.hi, IsHiRes, FullScaleVolts, ZeroVolts);
}

void SigCalc::CalcDCAndPeaks(std::string_view samples, bool IsHiRes, float FullScaleVolts, float ZeroVolts) {
  if (samples.empty()) {
    DCValid = PeakHighValid = PeakLowValid = false;
    return;
  }
  const ByteScan scan =
      IsHiRes ? scanWords(bytesOf(samples), samples.size() / 2) : scanBytes(bytesOf(samples), samples.size());
  takeDC(scan.sum, scan.clipped, samples.size(), IsHiRes, FullScaleVolts, ZeroVolts);
  takePeaks(scan.lo, scan.hi, IsHiRes, FullScaleVolts, ZeroVolts);
}

void SigCalc::takePeaks(int32_t lo, int32_t hi, bool IsHiRes, float FullScaleVolts, float ZeroVolts) {
  if (!IsHiRes) {
    MinCode8 = lo;
    MaxCode8 = hi;
    PeakHighValid = hi < 255;
    PeakLowValid = lo > 0;
    PeakLowVolts = volts8(FullScaleVolts, lo, ZeroVolts);
    PeakHighVolts = volts8(FullScaleVolts, hi, ZeroVolts);
    PeakToPeakVolts = FullScaleVolts * static_cast<float>(hi - lo) / 256;
  } else {
    MinCode16 = lo;
    MaxCode16 = hi;
    PeakHighValid = hi < 65535;
    PeakLowValid = lo > 0;
    PeakLowVolts = volts16(FullScaleVolts, lo, ZeroVolts);
    PeakHighVolts = volts16(FullScaleVolts, hi, ZeroVolts);
    PeakToPeakVolts = FullScaleVolts * static_cast<float>(hi - lo) / 65536;
  }
}

void SigCalc::CalcAC(std::string_view samples, bool IsHiRes, float FullScaleVolts) {
  if (samples.empty()) {
    HasAC = false;
    return;
  }
  const int32_t mean = IsHiRes ? MeanCode16 : MeanCode8;
  // The rounding of a 32-bit sum is part of the measurement.
  const uint8_t* p = bytesOf(samples);
  float sum;
  if (IsHiRes) {
    const size_t count = samples.size() / 2, tailStart = count / kBlock * kBlock;
    std::array<uint8_t, 2 * kBlock> tail;
    for (size_t j = 0; j < kBlock; ++j) {
      tail[2 * j] = static_cast<uint8_t>(mean >> 8);
      tail[2 * j + 1] = static_cast<uint8_t>(mean);
    }
    std::copy(p + 2 * tailStart, p + 2 * count, tail.begin());
    sum = sumOfSquares(WordSquares{p, count, mean, tail.data(), tailStart}, count);
  } else {
    const size_t count = samples.size(), tailStart = count / kBlock * kBlock;
    std::array<uint8_t, kBlock> tail;
    tail.fill(static_cast<uint8_t>(mean));
    std::copy(p + tailStart, p + count, tail.begin());
    sum = sumOfSquares(ByteSquares{p, count, mean, tail.data(), tailStart}, count);
  }
  const float chars = static_cast<float>(samples.size());
  if (!IsHiRes)
    ACVolts = std::sqrt(sum / chars) * FullScaleVolts / 256;
  else
    ACVolts = std::sqrt(2 * sum / chars) * FullScaleVolts / 65536;
  ACDCVolts = std::fabs(DCVolts) + ACVolts;
  HasAC = ACVolts != 0;
  if (HasAC) LevelDBV = static_cast<float>(std::log(ACVolts) * 8.68588924407959);
}

void SigCalc::BuildLevelHistogram(std::string_view samples, bool IsHiRes, bool IsPeak) {
  // Only the bins the last record filled are cleared: the others are still 0.
  clearOccupied(LevelHistogram8.data(), occupied8_);
  clearOccupied(LevelHistogram12.data(), occupied12_);
  counted_ = 0;
  if (samples.size() < 20) return;
  counted_ = samples.size();
  const uint8_t* p = bytesOf(samples);
  const size_t n = samples.size();
  if (IsPeak || !IsHiRes) {
    // Four interleaved counters, so that a run of equal codes does not wait on its own last count.
    std::array<std::array<int32_t, 256>, 4> part{};
    size_t i = 0;
    if (IsPeak) {
      // A peak pair counts at its middle.
      const size_t pairs = n / 2;
      for (; i + 4 <= pairs; i += 4)
        for (size_t k = 0; k < 4; ++k) ++part[k][(p[2 * (i + k)] + p[2 * (i + k) + 1]) / 2];
      for (; i < pairs; ++i) ++part[0][(p[2 * i] + p[2 * i + 1]) / 2];
    } else {
      for (; i + 4 <= n; i += 4)
        for (size_t k = 0; k < 4; ++k) ++part[k][p[i + k]];
      for (; i < n; ++i) ++part[0][p[i]];
    }
    int lo = 256, hi = -1;
    for (int c = 0; c < 256; ++c) {
      const size_t k = static_cast<size_t>(c);
      const int32_t count = part[0][k] + part[1][k] + part[2][k] + part[3][k];
      LevelHistogram8[k + kGuard] = count;
      if (count) {
        lo = std::min(lo, c);
        hi = c;
      }
    }
    occupied8_ = {lo, hi};
  } else {
    int32_t* h = LevelHistogram12.data() + kGuard;
    size_t i = 0;
#if defined(__SSE2__)
    // The bins of eight samples side by side: a sample's 16-bit code shifted down by 4.
    for (; i + 16 <= n; i += 16) {
      const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
      const __m128i code = _mm_or_si128(_mm_slli_epi16(raw, 8), _mm_srli_epi16(raw, 8));
      alignas(16) uint16_t bins[8];
      _mm_store_si128(reinterpret_cast<__m128i*>(bins), _mm_srli_epi16(code, 4));
      for (uint16_t b : bins) ++h[b];
    }
#endif
    for (; i + 1 < n; i += 2) ++h[p[i] * 16 + p[i + 1] / 16];
    int lo = 0, hi = 4095;
    while (lo < 4096 && h[lo] == 0) ++lo;
    while (hi >= lo && h[hi] == 0) --hi;
    occupied12_ = {lo, hi};
  }
}

void SigCalc::clearOccupied(int32_t* histogram, Occupied& occupied) {
  if (occupied.hi >= occupied.lo)
    std::fill(histogram + occupied.lo + kGuard, histogram + occupied.hi + kGuard + 1, 0);
  occupied = {};
}

void SigCalc::FindRails(bool IsHiRes, int n) {
  // Triangular windows around each candidate bin; the guard bins make the edges readable. With the
  // running sums P of the counts, a window of radius t is P[b + t + 1] - P[b - t], and the weights are
  // sums of such windows: 6, 5, ... 1 are the windows of radius 0 to 5; 12, 5, 5, 4, 4, ... 1, 1 are 7
  // counts of the bin itself and the windows of radius 2, 4, 6, 8 and 10. The scores are whole numbers,
  // as before.
  const int32_t* h = IsHiRes ? LevelHistogram12.data() + kGuard : LevelHistogram8.data() + kGuard;
  const int reach = IsHiRes ? 10 : 5;
  const int first = IsHiRes ? 10 : 6, last = IsHiRes ? 4085 : 249;
  const int distance = IsHiRes ? 64 : 8;
  // A bin with no count within reach scores 0, and a score of 0 never wins.
  const Occupied& occ = IsHiRes ? occupied12_ : occupied8_;
  if (counted_ > kMaxCounted32) {
    findRailsWide(IsHiRes, n);
    return;
  }
  const int from = std::max(first, occ.lo - reach), to = std::min(last, occ.hi + reach);
  if (from <= to) {
    // Running sums from bin from - reach on: sums_[k] holds the counts of bins from - reach to
    // from - reach + k - 1. The counts of a record fit 32 bits many times over (12 x every count).
    const int base = from - reach;
    const int span = to - from + 1 + 2 * reach;
    // The running total in a register: the histogram and the sums are members both, and the compiler
    // would read each sum back from memory for the next.
    int32_t running = 0;
    sums_[0] = 0;
    for (int k = 0; k < span; ++k) sums_[static_cast<size_t>(k + 1)] = running += h[base + k];
    const int32_t* P = sums_.data() - base;  // P[b] = counts of bins base to b - 1
    int32_t* out = scores_.data();
    if (IsHiRes) {
      for (int b = from; b <= to; ++b)
        out[b] = 7 * h[b] + (P[b + 3] - P[b - 2]) + (P[b + 5] - P[b - 4]) + (P[b + 7] - P[b - 6]) +
                 (P[b + 9] - P[b - 8]) + (P[b + 11] - P[b - 10]);
    } else {
      for (int b = from; b <= to; ++b)
        out[b] = (P[b + 1] - P[b]) + (P[b + 2] - P[b - 1]) + (P[b + 3] - P[b - 2]) + (P[b + 4] - P[b - 3]) +
                 (P[b + 5] - P[b - 4]) + (P[b + 6] - P[b - 5]);
    }
  }
  // The highest score of each block of 64 bins from `from` on, so that a search reads whole blocks at once.
  const int32_t* score = scores_.data();
  for (int b0 = from; b0 <= to; b0 += kRailBlock) {
    const int b1 = std::min(to, b0 + kRailBlock - 1);
    int32_t highest = score[b0];
    for (int b = b0 + 1; b <= b1; ++b) highest = std::max(highest, score[b]);
    blockHighest_[static_cast<size_t>((b0 - from) / kRailBlock)] = highest;
  }
  // The first bin of the highest score, where it beats top: as a strict comparison bin by bin finds it.
  auto best = [&](int lo, int hi, int& bin, int64_t& top) {
    lo = std::max(lo, from);
    hi = std::min(hi, to);
    if (lo > hi) return;
    // The bins up to the first whole block, the whole blocks, then the bins after them.
    const int whole = from + (lo - from + kRailBlock - 1) / kRailBlock * kRailBlock;
    auto block = [&](int b) { return blockHighest_[static_cast<size_t>((b - from) / kRailBlock)]; };
    int32_t highest = score[lo];
    int b = lo;
    for (; b <= hi && b < whole; ++b) highest = std::max(highest, score[b]);
    for (; b + kRailBlock - 1 <= hi; b += kRailBlock) highest = std::max(highest, block(b));
    for (; b <= hi; ++b) highest = std::max(highest, score[b]);
    if (highest <= top) return;
    b = lo;
    while (b < whole && score[b] != highest) ++b;
    if (b == whole) {
      while (b + kRailBlock - 1 <= hi && block(b) != highest) b += kRailBlock;
      while (score[b] != highest) ++b;
    }
    top = highest;
    bin = b;
  };
  int rail1 = 0, rail2 = 0;
  int64_t score1 = 0, score2 = 0;
  best(first, last, rail1, score1);
  best(first, rail1 - distance, rail2, score2);
  best(rail1 + distance, last, rail2, score2);

  takeRails(rail1, rail2, score1, score2, IsHiRes, n);
}

// The scores bin by bin in 64 bits, for a histogram of more counts than the running sums can hold.
void SigCalc::findRailsWide(bool IsHiRes, int n) {
  static constexpr int kWeights8[6] = {6, 5, 4, 3, 2, 1};
  static constexpr int kWeights12[11] = {12, 5, 5, 4, 4, 3, 3, 2, 2, 1, 1};
  const int32_t* h = IsHiRes ? LevelHistogram12.data() + kGuard : LevelHistogram8.data() + kGuard;
  const int* weights = IsHiRes ? kWeights12 : kWeights8;
  const int reach = IsHiRes ? 10 : 5;
  const int first = IsHiRes ? 10 : 6, last = IsHiRes ? 4085 : 249;
  const int distance = IsHiRes ? 64 : 8;
  auto score = [&](int bin) {
    int64_t s = static_cast<int64_t>(weights[0]) * h[bin];
    for (int d = 1; d <= reach; ++d)
      s += static_cast<int64_t>(weights[d]) * (static_cast<int64_t>(h[bin - d]) + h[bin + d]);
    return s;
  };
  auto best = [&](int from, int to, int& bin, int64_t& top) {
    for (int b = std::max(from, first); b <= std::min(to, last); ++b) {
      const int64_t s = score(b);
      if (s > top) {
        top = s;
        bin = b;
      }
    }
  };
  int rail1 = 0, rail2 = 0;
  int64_t score1 = 0, score2 = 0;
  best(first, last, rail1, score1);
  best(first, rail1 - distance, rail2, score2);
  best(rail1 + distance, last, rail2, score2);
  takeRails(rail1, rail2, score1, score2, IsHiRes, n);
}

void SigCalc::takeRails(int rail1, int rail2, int64_t score1, int64_t score2, bool IsHiRes, int n) {
  const bool firstIsBase = rail1 <= rail2;
  const int base = firstIsBase ? rail1 : rail2, top = firstIsBase ? rail2 : rail1;
  const int64_t baseScore = firstIsBase ? score1 : score2, topScore = firstIsBase ? score2 : score1;
  if (!IsHiRes) {
    BaseCode8 = base;
    TopCode8 = top;
    BaseCode16 = base * 256;
    TopCode16 = top * 256;
  } else {
    BaseCode16 = base * 16;
    TopCode16 = top * 16;
    BaseCode8 = BaseCode16 / 256;
    TopCode8 = TopCode16 / 256;
  }
  BaseScore = static_cast<int32_t>(std::min<int64_t>(baseScore, INT32_MAX));
  TopScore = static_cast<int32_t>(std::min<int64_t>(topScore, INT32_MAX));
  const int64_t needed = IsHiRes ? n / 4 : n / 2;
  TopFound = topScore >= needed;
  BaseFound = baseScore >= needed;
}

float SigCalc::TopRailVoltage(bool IsHiRes, float FullScaleVolts, float ZeroVolts) const {
  return IsHiRes ? volts16(FullScaleVolts, TopCode16, ZeroVolts)
                 : volts8(FullScaleVolts, TopCode8, ZeroVolts);
}

float SigCalc::BaseRailVoltage(bool IsHiRes, float FullScaleVolts, float ZeroVolts) const {
  // The base rail of a 16-bit record is read against 65636: the two rails differ by that, as they always
  // have.
  if (IsHiRes) return static_cast<float>(FullScaleVolts * (BaseCode16 - 32768) / 65636.0 + ZeroVolts);
  return volts8(FullScaleVolts, BaseCode8, ZeroVolts);
}

float SigCalc::RailToRailVoltage(bool IsHiRes, float FullScaleVolts) const {
  return IsHiRes ? FullScaleVolts * static_cast<float>(TopCode16 - BaseCode16) / 65536
                 : FullScaleVolts * static_cast<float>(TopCode8 - BaseCode8) / 256;
}

float SigCalc::PositiveOvershoot(bool IsHiRes) const {
  const int32_t span = IsHiRes ? TopCode16 - BaseCode16 : TopCode8 - BaseCode8;
  if (span < 1) return 0;
  return static_cast<float>(IsHiRes ? MaxCode16 - TopCode16 : MaxCode8 - TopCode8) / static_cast<float>(span);
}

float SigCalc::NegativeOvershoot(bool IsHiRes) const {
  const int32_t span = IsHiRes ? TopCode16 - BaseCode16 : TopCode8 - BaseCode8;
  if (span < 1) return 0;
  return static_cast<float>(IsHiRes ? BaseCode16 - MinCode16 : BaseCode8 - MinCode8) /
         static_cast<float>(span);
}

}  // namespace zorvik
