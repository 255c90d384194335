#include "app/trace_placeholder.h"

#include <QPainter>
#include <QPainterPath>

#include "signal/packet.h"

namespace zorvik {

TracePlaceholder::TracePlaceholder(QWidget* parent) : QWidget(parent) {
  setMinimumSize(320, 256);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void TracePlaceholder::showPacket(const std::string& packet) {
  packet_ = packet;
  update();
}

void TracePlaceholder::clear() {
  packet_.clear();
  update();
}

void TracePlaceholder::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.fillRect(rect(), Qt::black);
  const double sx = width() / 320.0, sy = height() / 256.0;
  p.setPen(QPen(QColor(128, 128, 0), 1));
  for (int i = 0; i <= 10; ++i) p.drawLine(QPointF(i * 32 * sx, 0), QPointF(i * 32 * sx, height()));
  for (int i = 0; i <= 8; ++i) p.drawLine(QPointF(0, i * 32 * sy), QPointF(width(), i * 32 * sy));

  PacketInfo info = decodePacket(packet_);
  if (info.ignored || info.segment1.empty()) return;
  const std::string_view seg = info.segment1;
  const uint32_t mode = segmentMode(info.segmentWords[0]);
  const bool pairs = mode == kModePeakPairs || mode == kModePeakPairsHalf;
  const size_t step = (mode == kModeHiRes || pairs) ? 2 : 1;
  const size_t count = seg.size() / step;
  if (count == 0) return;
  auto code = [&](size_t i, size_t k) { return static_cast<unsigned char>(seg[i * step + k]); };
  p.setRenderHint(QPainter::Antialiasing, true);
  p.setPen(QPen(QColor(255, 255, 0), 1.5));
  // The middle of the record sits at the middle of the screen, as on the instrument's own display.
  const double first = static_cast<double>(count) / 2 - 160;
  QPainterPath path;
  bool started = false;
  for (int x = 0; x < 320; ++x) {
    double pos = first + x;
    if (pos < 0 || pos >= static_cast<double>(count)) continue;
    size_t i = static_cast<size_t>(pos);
    if (pairs) {
      p.drawLine(QPointF(x * sx, (256 - code(i, 0)) * sy), QPointF(x * sx, (256 - code(i, 1)) * sy));
      continue;
    }
    QPointF pt(x * sx, (256 - code(i, 0)) * sy);
    if (!started) path.moveTo(pt), started = true;
    else path.lineTo(pt);
  }
  p.drawPath(path);
}

}  // namespace zorvik
