#include "display/label_painter.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPolygon>
#include <array>
#include <cmath>

#include "display/display_geometry.h"
#include "display/display_labels.h"
#include "display/display_settings.h"

namespace zorvik {

namespace {

const QColor kLabelColour(200, 200, 200);
const QColor kRisColour(255, 255, 0);
const QColor kNoTriggerColour(255, 0, 0);

QColor fromBgr(uint32_t bgr) {
  return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}
QColor fromItem(int item, int level) {
  return QColor::fromRgb(itemColor(item, level));
}

// Text with its anchor: 0 left, 1 centre, 2 right of x; the baseline below `top`.
void text(QPainter& p, const std::string& s, int x, int top, int align, const QColor& colour) {
  if (s.empty()) return;
  const QString t = QString::fromStdString(s);
  const QFontMetrics m(p.font());
  const int w = m.horizontalAdvance(t);
  const int left = align == 0 ? x : align == 1 ? x - w / 2 : x - w;
  p.setPen(colour);
  p.drawText(QPoint(left, top + m.ascent()), t);
}

// Text drawn into its band rectangle, condensed across when it wants more room than it got.
void bandText(QPainter& p, const QString& t, int wanted, const LabelRect& r, const QColor& colour) {
  if (t.isEmpty() || r.width <= 0) return;
  const QFontMetrics m(p.font());
  p.save();
  p.setPen(colour);
  p.translate(r.left, r.top + m.ascent());
  if (wanted > r.width) p.scale(static_cast<double>(r.width) / wanted, 1);
  p.drawText(QPoint(0, 0), t);
  p.restore();
}

const QColor kTrigIndHorColour(Qt::darkYellow);

}  // namespace

void paintMarkers(QPainter& p, const DisplayLabels& l, const DisplaySettings& s, const DisplayGeometry& g) {
  const int w = g.plotWidth();
  const int left = g.pixelX(0), right = g.pixelX(w), top = g.pixelY(kTraceRows), bottom = g.pixelY(0);
  p.save();
  if (s.nullLine && l.nullRow) {
    p.setPen(QPen(fromItem(s.lineColor, 128), 1, Qt::DashLine));
    p.drawLine(left, g.pixelY(*l.nullRow), right, g.pixelY(*l.nullRow));
  }
  if (s.syncroLine && l.triggerLevelRow) {
    p.setPen(QPen(QColor(255, 255, 0), 1, Qt::DotLine));
    p.drawLine(left, g.pixelY(*l.triggerLevelRow), right, g.pixelY(*l.triggerLevelRow));
  }
  if (l.triggerX) {
    p.setPen(QPen(QColor(160, 160, 160), 1, Qt::DotLine));
    p.drawLine(g.pixelX(*l.triggerX), top, g.pixelX(*l.triggerX), bottom);
  }
  if (const std::optional<LabelRect> r = trigIndHorRect(g, l.triggerX)) {
    // Laid out in window pixels: at a higher ratio it grows about its tip, which stays on the column.
    const int k = g.ratio, tipX = r->left + r->width / 2, tipY = r->bottom() - 1;
    const QPolygon triangle({QPoint(tipX - (tipX - r->left) * k, tipY - (tipY - r->top) * k),
                             QPoint(tipX + (r->right() - 1 - tipX) * k, tipY - (tipY - r->top) * k),
                             QPoint(tipX, tipY)});
    p.setPen(kTrigIndHorColour);
    p.setBrush(kTrigIndHorColour);
    p.drawPolygon(triangle);
  }
  p.restore();
}

int labelPixelSize(int storedSize, int zoomIndex) {
  return std::max(6, storedSize + 4 + 2 * zoomIndex);
}

int labelPixelSize(int storedSize, const DisplayGeometry& g) {
  if (g.zoomIndex != kScreenZoom) return labelPixelSize(storedSize, g.zoomIndex);
  // The stored zooms' sizes grow by 2 from scale 1 to 2 and then by the scale: 0, 2, 4, 6 for 1, 2, 4, 6
  // pixels per two units. A screen's scale is counted in window pixels, and the text drawn at its ratio.
  const double scale = static_cast<double>(g.halfScale()) / g.ratio;
  const double grow = scale >= 2 ? scale : 2 * (scale - 1);
  return static_cast<int>(std::lround(std::max(6.0, storedSize + 4 + grow) * g.ratio));
}

void paintLabels(QPainter& p, const DisplayLabels& l, const DisplaySettings& s, const DisplayGeometry& g) {
  const int w = g.plotWidth();
  const int left = g.pixelX(0), right = g.pixelX(w), top = g.pixelY(kTraceRows), bottom = g.pixelY(0);
  const int picture = g.pictureWidth();
  // Marker lines first, so the texts stay readable over them.
  paintMarkers(p, l, s, g);
  p.save();

  QFont font = p.font();
  font.setPixelSize(labelPixelSize(s.horLabelSize, g));
  p.setFont(font);
  const QFontMetrics metrics(font);
  const int lineHeight = metrics.height();
  const int bandTop = top + 1;
  // Blanks around a text (" 1:1 ") only pad it: the layout keeps its own gaps.
  const std::array<QString, kBandTexts> band = {QString::fromStdString(l.TimeDivTransparant).trimmed(),
                                                QString::fromStdString(l.RISmodeTransparant).trimmed(),
                                                QString::fromStdString(l.ModeTransparant).trimmed(),
                                                QString::fromStdString(l.Ch1Transparant).trimmed(),
                                                QString::fromStdString(l.Ch1InterpTransparant).trimmed(),
                                                QString::fromStdString(l.Ch1VdivTransparant).trimmed()};
  std::array<int, kBandTexts> wanted{};
  for (int i = 0; i < kBandTexts; ++i) wanted[i] = band[i].isEmpty() ? 0 : metrics.horizontalAdvance(band[i]);
  const std::array<LabelRect, kBandTexts> places = bandLayout(picture, bandTop, lineHeight, wanted);
  const std::array<QColor, kBandTexts> colours = {kLabelColour,         kRisColour,
                                                  fromBgr(l.modeColor), fromItem(s.lineColor, 255),
                                                  kLabelColour,         fromItem(s.lineColor, 255)};
  for (int i = 0; i < kBandTexts; ++i) bandText(p, band[i], wanted[i], places[i], colours[i]);
  if (l.noTrigger) text(p, "NO TRIGGER!", picture / 2, g.pixelY(kTraceRows * 3 / 4), 1, kNoTriggerColour);

  if (s.horLabels) {
    const int y = bottom - lineHeight - 1;
    text(p, l.HorLeft, left + 2, y, 0, kLabelColour);
    text(p, l.HorRight, right - 2, y, 2, kLabelColour);
    if (s.wide) {
      text(p, l.HorCenter, g.pixelX(w / 3), y, 1, kLabelColour);
      text(p, l.HorCenterW, g.pixelX(2 * w / 3), y, 1, kLabelColour);
    } else {
      text(p, l.HorCenter, g.pixelX(w / 2), y, 1, kLabelColour);
    }
  }
  if (s.vertLabels) {
    font.setPixelSize(labelPixelSize(s.vertLabelSize, g));
    p.setFont(font);
    const int h = QFontMetrics(font).height();
    text(p, l.VertTop1, left + 2, bandTop + lineHeight, 0, kLabelColour);
    text(p, l.VertCenter1, left + 2, g.pixelY(kTraceRows / 2) - h - 1, 0, kLabelColour);
    text(p, l.VertDown1, left + 2, bottom - lineHeight - h - 2, 0, kLabelColour);
  }
  p.restore();
}

}  // namespace zorvik
