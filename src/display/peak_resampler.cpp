#include "display/peak_resampler.h"

#include <algorithm>
#include <cstring>

#include "core/whole_numbers.h"

namespace zorvik {

namespace {
constexpr int64_t kMinPairs = 8193;

uint8_t zoomed(int byte, double vZoom, double pan) {
  const double b = (byte - 0x80) * vZoom + pan;
  if (b > 255) return 255;
  if (b < 0) return 0;
  return static_cast<uint8_t>(std::min<int64_t>(roundToInt64Saturating(b), 255));
}
}  // namespace

bool PeakResampler::run(std::string_view segment, const PeakRequest& r, PeakColumns& out) {
  if (segment.size() < 16 || r.samplesPerDiv <= 0) return false;
  int64_t pairs = static_cast<int64_t>(segment.size() / 2);
  const size_t need = static_cast<size_t>(2 * std::max(pairs + 1, kMinPairs));
  if (buf_.size() < need) buf_.resize(need, 0);
  uint8_t* b = buf_.data();
  std::memcpy(b, segment.data(), static_cast<size_t>(2 * pairs));
  if (dirty_ > 2 * pairs) std::fill(b + 2 * pairs, b + dirty_, 0);
  dirty_ = 2 * pairs;

  const int hz = std::max(1, r.hZoom);
  double ratio = (r.halfRatePairs ? 32.0 / (r.samplesPerDiv / 2.0) : 32.0 / r.samplesPerDiv) * hz;
  ratio = static_cast<float>(ratio);
  // Two neighbouring pairs become one until a pair is at least a column wide (an odd last pair goes).
  while (ratio < 1 && pairs >= 2) {
    for (int64_t j = 0; j < pairs / 2; ++j) {
      b[2 * j] = std::min(b[4 * j], b[4 * j + 2]);
      b[2 * j + 1] = std::max(b[4 * j + 1], b[4 * j + 3]);
    }
    const int64_t was = pairs;
    pairs /= 2;
    std::fill(b + 2 * pairs, b + 2 * was, 0);
    ratio *= 2;
  }
  if (ratio < 1) return false;

  const int pw = std::clamp(r.plotWidth, 1, kMaxColumns - 1);
  out.ratio = ratio;
  out.xStep = std::max(1, r.xStep);
  const double rounded = static_cast<double>(pairs / 16 * 16);
  out.start = roundToPositionSaturating(static_cast<double>(pairs) / 2 -
                                        r.hViewFrac * (rounded - pw / ratio) / 2 - (pw / 2) / ratio);
  if (ratio * static_cast<double>(pairs) >= pw) {
    out.xFirst = 0;
    out.xLast = pw - 1;
  } else {
    const double span = ratio * static_cast<double>(pairs);
    out.xFirst = static_cast<int>(std::clamp<int64_t>(wholeDivSaturating(pw - span, 2), 0, pw));
    out.xLast = static_cast<int>(std::clamp<int64_t>(wholeDivSaturating(span + pw, 2) - 1, -1, pw - 1));
  }

  if (ratio == 1) {
    for (int x = out.xFirst; x <= out.xLast; ++x) {
      const int64_t k = 2 * (out.start + x);
      out.lo[static_cast<size_t>(x)] = at(k);
      out.hi[static_cast<size_t>(x)] = at(k + 1);
    }
  } else {
    // The pair after the last repeats it, for the columns between the last two positions.
    b[2 * pairs] = b[2 * pairs - 2];
    b[2 * pairs + 1] = b[2 * pairs - 1];
    dirty_ = 2 * pairs + 2;
    for (int x = out.xFirst; x <= out.xLast; ++x) {
      const double p = x / ratio + static_cast<double>(out.start);
      const int64_t i = std::clamp(floorToInt64Saturating(p), -kFarPosition, kFarPosition);
      const int64_t k = 2 * i;
      uint8_t lo = at(k), hi = at(k + 1);
      if (static_cast<double>(i) != p) {
        const uint8_t lo2 = at(k + 2), hi2 = at(k + 3);
        if (r.lineMax) {
          lo = std::min(lo, lo2);
          hi = std::max(hi, hi2);
        } else if (hi2 - lo2 <= hi - lo) {  // the smaller span; on a tie the later pair
          lo = lo2;
          hi = hi2;
        }
      }
      out.lo[static_cast<size_t>(x)] = lo;
      out.hi[static_cast<size_t>(x)] = hi;
    }
  }

  if (r.vZoom > 1) {
    const double pan = 128 - (1 - 1 / static_cast<double>(r.vZoom)) * 256 * r.vZoom * r.vViewFrac;
    for (int x = out.xFirst; x <= out.xLast; ++x) {
      out.lo[static_cast<size_t>(x)] = zoomed(out.lo[static_cast<size_t>(x)], r.vZoom, pan);
      out.hi[static_cast<size_t>(x)] = zoomed(out.hi[static_cast<size_t>(x)], r.vZoom, pan);
    }
  }
  return true;
}

}  // namespace zorvik
