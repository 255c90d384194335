#include "display/sample_resampler.h"

#include <algorithm>
#include <cmath>

#include "core/whole_numbers.h"

namespace zorvik {

namespace {

const char* labelOf(Interpolation kind) {
  switch (kind) {
    case Interpolation::None:
      return "None";
    case Interpolation::Line:
      return "Line";
    case Interpolation::SinX:
      return "SinX/X";
    case Interpolation::Lanczos:
      return "Lancz";
    case Interpolation::Lagrange:
      return "Lagrn";
  }
  return "";
}

// The value between two samples on the straight line through them.
int32_t lineAt(const SampleBuf& s, float p) {
  const int64_t i = floorToInt64Saturating(p);
  const double f = static_cast<double>(p) - static_cast<double>(i);
  if (f == 0) return s.at(i);
  return static_cast<int32_t>(roundHalfEven((1 - f) * s.at(i) + f * s.at(i + 1)));
}

}  // namespace

uint8_t SampleResampler::row(int32_t value, double vZoom, double pan, int64_t ceil) {
  const double f = vZoom * (value - 0x8000) + pan;
  if (f > static_cast<double>(ceil)) return 255;
  if (f < 0) return 0;
  return static_cast<uint8_t>(std::min<int64_t>(roundToInt64Saturating(f) / 256, 255));
}

void SampleResampler::run(SampleBuf& s, const ResampleRequest& r, TraceColumns& out) {
  const int64_t len = s.length();
  const int pw = std::clamp(r.plotWidth, 1, kMaxColumns - 1);
  const double ratio = r.ratio;
  out.ratio = r.ratio;
  out.label = "";
  if (!(ratio > 0) || len < 1) {
    out.xFirst = 0;
    out.xLast = -1;
    return;
  }
  out.xStep = std::max(1, r.xStep);
  out.fanCount = 0;
  // The middle of the record lies at the middle of the screen at the view's middle position.
  const double rounded = static_cast<double>(len / 32 * 32);
  out.start = roundToPositionSaturating(static_cast<double>(len) / 2 -
                                        r.hViewFrac * (rounded - pw / ratio) / 2 - (pw / 2) / ratio);
  const bool narrower = ratio * static_cast<double>(len) < pw;
  if (!narrower) {
    out.xFirst = 0;
    out.xLast = pw - 1;
  } else {
    const double span = ratio * static_cast<double>(len);
    out.xFirst = static_cast<int>(std::clamp<int64_t>(wholeDivSaturating(pw - span, 2), 0, pw));
    out.xLast = static_cast<int>(std::clamp<int64_t>(wholeDivSaturating(span + pw, 2) - 1, -1, pw - 1));
  }
  if (r.ratio < 1) {
    out.label = "Overs";
    oversample(s, r, narrower, out);
  } else if (r.ratio == 1) {
    out.label = " 1:1 ";
    for (int x = out.xFirst; x <= out.xLast; ++x) out.Out[static_cast<size_t>(x)] = s.at(out.start + x);
  } else {
    out.label = labelOf(r.interp);
    interpolate(s, r, out);
  }
  mapRows(s, r, out);
}

void SampleResampler::oversample(const SampleBuf& s, const ResampleRequest& r, bool narrower,
                                 TraceColumns& out) {
  const double perColumn = 1.0 / r.ratio;
  const int64_t m = std::max<int64_t>(1, roundToInt64Saturating(perColumn));
  // A column of a whole number of samples is their sum times Ratio; otherwise (zoom 5 on a long record)
  // the nearest whole count is averaged, which keeps the trace on its scale.
  const bool whole = perColumn == static_cast<double>(m);
  const int64_t len = s.length();
  const int32_t* d = s.data();
  const double ratioD = static_cast<double>(r.ratio);
  for (int x = out.xFirst; x <= out.xLast; ++x) {
    const int64_t p = narrower ? roundToPositionSaturating((x - out.xFirst) / ratioD)
                               : roundToPositionSaturating(x / ratioD + static_cast<double>(out.start));
    int64_t sum = 0;
    if (p >= 0 && p + m <= len) {
      for (int64_t j = 0; j < m; ++j) sum += d[p + j];
    } else {
      for (int64_t j = 0; j < m; ++j) sum += s.at(p + j);
    }
    out.fanStart[static_cast<size_t>(x)] = p;
    out.Out[static_cast<size_t>(x)] = static_cast<int32_t>(
        whole ? roundToInt64Saturating(static_cast<double>(r.ratio) * static_cast<double>(sum))
              : roundToInt64Saturating(static_cast<double>(sum) / m));
  }
  if (r.keepFan) out.fanCount = static_cast<int>(std::min<int64_t>(m, 1 << 16));
}

void SampleResampler::interpolate(SampleBuf& s, const ResampleRequest& r, TraceColumns& out) {
  const double ratio = r.ratio;
  const double start = static_cast<double>(out.start);
  auto pointOf = [&](int x) { return static_cast<float>(x / ratio + start); };
  switch (r.interp) {
    case Interpolation::SinX:
      for (int x = out.xFirst; x <= out.xLast; x += out.xStep) points_[static_cast<size_t>(x)] = pointOf(x);
      interpolator_.sinxColumns(s, r.taps, points_.data(), out.xFirst, out.xLast, out.xStep, out.Out.data());
      return;
    case Interpolation::Lanczos:
    case Interpolation::Lagrange:
      for (int x = out.xFirst; x <= out.xLast; x += out.xStep)
        out.Out[static_cast<size_t>(x)] = interpolator_.at(r.interp, s, pointOf(x), r.taps, x);
      return;
    case Interpolation::None:
      // Only the columns of samples are drawn; a column between samples (Ratio not whole) takes the line.
      out.xStep = static_cast<int>(
          std::clamp<int64_t>(std::max<int64_t>(out.xStep, roundToInt64Saturating(ratio)), 1, kMaxColumns));
      [[fallthrough]];
    case Interpolation::Line:
      s.repeatLast();
      // Every column gets its value, so that the drawn columns (multiples of the step) all have one.
      for (int x = out.xFirst; x <= out.xLast; ++x) out.Out[static_cast<size_t>(x)] = lineAt(s, pointOf(x));
      return;
  }
}

void SampleResampler::mapRows(const SampleBuf& s, const ResampleRequest& r, TraceColumns& out) {
  const double vz = r.vZoom;
  const double pan = 32768 - (vz - 1) * 65536 * r.vViewFrac;
  const int64_t ceil = roundToInt64Saturating(65535 - vz * 256);
  for (int x = out.xFirst; x <= out.xLast; ++x)
    out.Y[static_cast<size_t>(x)] = row(out.Out[static_cast<size_t>(x)], vz, pan, ceil);
  if (out.fanCount == 0) return;
  const size_t need = static_cast<size_t>(out.xLast + 1) * static_cast<size_t>(out.fanCount);
  if (out.fan.size() < need) out.fan.resize(need);
  for (int x = out.xFirst; x <= out.xLast; ++x) {
    uint8_t* rows = out.fan.data() + static_cast<size_t>(x) * static_cast<size_t>(out.fanCount);
    const int64_t p = out.fanStart[static_cast<size_t>(x)];
    for (int j = 0; j < out.fanCount; ++j) rows[j] = row(s.at(p + j), vz, pan, ceil);
  }
}

}  // namespace zorvik
