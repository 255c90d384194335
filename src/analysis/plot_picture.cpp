#include "analysis/plot_picture.h"

#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "display/persistence.h"
#include "spectrum/plot_columns.h"

namespace zorvik {

namespace {

using G = PlotGeometry;
constexpr QRgb kGridColour = 0xFF7F7F00;  // the main display's olive
constexpr QRgb kLabelColour = 0xFFC0C0C0;
constexpr QRgb kMarkerColour = 0xFFFFFFFF;

QColor colourOf(int index) {
  return QColor::fromRgb(0xFF000000u | styleColour(index));
}

// The row of each column for the fill and the bars: a bar holds its row across its bin's width; a curve
// is joined straight between its columns.
std::vector<float> filledRows(const std::vector<float>& columns, bool bars, double barWidthPx) {
  std::vector<float> rows(columns.size(), kEmptyColumn);
  int last = -1;
  for (int x = 0; x < static_cast<int>(columns.size()); ++x) {
    const float r = columns[static_cast<size_t>(x)];
    if (r != kEmptyColumn) {
      if (!bars && last >= 0)
        for (int k = last + 1; k < x; ++k)
          rows[static_cast<size_t>(k)] = columns[static_cast<size_t>(last)] +
                                         (r - columns[static_cast<size_t>(last)]) *
                                             static_cast<float>(k - last) / static_cast<float>(x - last);
      rows[static_cast<size_t>(x)] = r;
      last = x;
    } else if (bars && last >= 0 && x - last < barWidthPx) {
      rows[static_cast<size_t>(x)] = columns[static_cast<size_t>(last)];
    }
  }
  return rows;
}

double clampedRow(float row) {
  return std::clamp<double>(row, 0, G::kHeight);
}

void drawGrid(QPainter& p, const PlotFrame& frame, const PlotLook& look, const PlotTexts& texts) {
  const PlotRange& r = look.range;
  p.setPen(QPen(QColor::fromRgb(kGridColour), 0));  // one device pixel at any screen scale
  p.drawRect(G::kMargin, G::kMargin, G::kWidth - 1, G::kHeight);
  const double xStep = tidyStep(r.span, G::kWidth / (2 * G::kDivision));
  for (double t : tidyTicks(r.left, r.left + r.span, xStep)) {
    const int x = static_cast<int>(std::lround(plotX(r, t)));
    p.drawLine(x, G::kMargin, x, G::kMargin + G::kHeight);
  }
  const double scale = texts.yLabelScale > 0 ? texts.yLabelScale : 1;
  const double yStep = tidyStep((r.top - r.bottom) * scale, gridRows(G::kHeight, G::kDivision) - 1) / scale;
  for (double t : tidyTicks(r.bottom, r.top, yStep)) {
    const int y = static_cast<int>(std::lround(plotY(r, t)));
    p.drawLine(G::kMargin, y, G::kMargin + G::kWidth - 1, y);
  }
  (void)frame;
}

void drawLabels(QPainter& p, const PlotFrame& frame, const PlotLook& look, const PlotTexts& texts) {
  const PlotRange& r = look.range;
  QFont font = p.font();
  font.setPixelSize(10);
  p.setFont(font);
  p.setPen(QColor::fromRgb(kLabelColour));
  const QFontMetrics m(font);
  // Fewer labels than grid lines, so that the texts of neighbours never meet.
  const double xStep = tidyStep(r.span, 4);
  int freeFrom = 0;
  for (double t : tidyTicks(r.left, r.left + r.span, xStep)) {
    const QString text = QString::fromStdString(texts.x ? texts.x(frame.origin + t) : std::string());
    const int w = m.horizontalAdvance(text);
    const int x = std::clamp(static_cast<int>(std::lround(plotX(r, t))) - w / 2, G::kMargin + 1,
                             G::kMargin + G::kWidth - w - 1);
    if (x < freeFrom) continue;
    // On a dark ground: a filled plot must not swallow its labels.
    const int base = G::kMargin + G::kHeight - 3;
    p.fillRect(QRect(x - 1, base - m.ascent(), w + 2, m.height()), Qt::black);
    p.drawText(x, base, text);
    freeFrom = x + w + 6;
  }
  const double scale = texts.yLabelScale > 0 ? texts.yLabelScale : 1;
  const double yStep = tidyStep((r.top - r.bottom) * scale, 4) / scale;
  for (double t : tidyTicks(r.bottom, r.top, yStep)) {
    const int y = static_cast<int>(std::lround(plotY(r, t)));
    if (y > G::kMargin + G::kHeight - 16) continue;  // the frequency labels' row
    const QString text = QString::fromStdString(texts.y ? texts.y(t) : std::string());
    const int base = std::max(y - 2, G::kMargin + m.ascent());
    p.fillRect(QRect(G::kMargin + 1, base - m.ascent(), m.horizontalAdvance(text) + 2, m.height()),
               Qt::black);
    p.drawText(G::kMargin + 2, base, text);
  }
}

void drawTrace(QPainter& p, const PlotFrame& frame, const std::vector<float>& columns, const PlotLook& look,
               const PlotStyle& style) {
  const double barWidthPx = frame.binWidth * (G::kWidth - 1) / std::max(look.range.span, 1e-300);
  const bool interpolated = style[StyleKey::Interpolation] != kNoInterpolation;
  if (style.on(StyleKey::Fill)) {
    const std::vector<float> rows = filledRows(columns, frame.bars && !interpolated, barWidthPx);
    p.setPen(QPen(colourOf(style[StyleKey::FillColor]), 1));
    for (size_t x = 0; x < rows.size(); ++x)
      if (rows[x] != kEmptyColumn)
        p.drawLine(QPointF(G::kMargin + x + 0.5, G::kMargin + clampedRow(rows[x])),
                   QPointF(G::kMargin + x + 0.5, G::kMargin + G::kHeight));
  }
  if (style.on(StyleKey::Line)) {
    QPolygonF line;
    const std::vector<float> rows =
        frame.bars && !interpolated ? filledRows(columns, true, barWidthPx) : columns;
    for (size_t x = 0; x < rows.size(); ++x)
      if (rows[x] != kEmptyColumn) line << QPointF(G::kMargin + x + 0.5, G::kMargin + clampedRow(rows[x]));
    p.setPen(QPen(colourOf(style[StyleKey::LineColor]), style[StyleKey::LineWidth]));
    p.drawPolyline(line);
  }
  if (style.on(StyleKey::Pixel)) {
    p.setPen(QPen(colourOf(style[StyleKey::PixelColor]), std::max(2, style[StyleKey::LineWidth] + 1)));
    // Interpolated columns get their points only when asked; the bins themselves always do.
    const bool every = !interpolated || style.on(StyleKey::InterpPixel);
    for (size_t x = 0; x < columns.size(); ++x) {
      if (columns[x] == kEmptyColumn) continue;
      if (!every) {
        const double bin = axisX(look.range, G::kMargin + static_cast<double>(x)) / frame.binWidth;
        const double nearest = std::round(bin);
        if (std::abs(plotX(look.range, nearest * frame.binWidth) - (G::kMargin + static_cast<double>(x))) >=
            0.5)
          continue;
      }
      p.drawPoint(QPointF(G::kMargin + x + 0.5, G::kMargin + clampedRow(columns[x])));
    }
  }
}

void drawMemory(QImage& image, int scale, const Persistence& memory, const PlotStyle& style) {
  GradeStyle grade;
  grade.colour = style.colourGrading();
  grade.emphasis = style.emphasis();
  grade.inverted = style.on(StyleKey::EmphasizeInvert);
  grade.colorItem = style[StyleKey::PixelColor];
  const bool graded = style.grading();
  const QRgb plain = 0xFF000000u | styleColour(style[StyleKey::PixelColor]);
  for (int x = 0; x < G::kWidth; ++x) {
    const int32_t max = memory.max(x);
    if (max <= 0) continue;
    for (int y = 1; y < Persistence::kRows - 1; ++y) {
      const int32_t count = memory.count(x, y);
      if (count <= 0) continue;
      const QRgb colour = graded ? 0xFF000000u | Persistence::colourOf(count, max, grade) : plain;
      // A cell is a whole picture pixel, scale by scale device pixels.
      const int px = (G::kMargin + x) * scale, py = (G::kMargin + (Persistence::kRows - 1 - y)) * scale;
      for (int dy = 0; dy < scale; ++dy)
        for (int dx = 0; dx < scale; ++dx) image.setPixel(px + dx, py + dy, colour);
    }
  }
}

void drawMarkers(QPainter& p, const PlotLook& look) {
  const PlotMarkers& mk = look.markers;
  p.setPen(QPen(QColor::fromRgb(kMarkerColour), 0, Qt::DashLine));
  const int left = G::kMargin, right = G::kMargin + G::kWidth - 1, top = G::kMargin,
            bottom = G::kMargin + G::kHeight;
  if (mk.vertical)
    for (double x : {mk.x1, mk.x2}) {
      const double px = plotX(look.range, x);
      if (px >= left && px <= right) p.drawLine(QPointF(px, top), QPointF(px, bottom));
    }
  if (mk.horizontal)
    for (double y : {mk.y1, mk.y2}) {
      const double py = plotY(look.range, y);
      if (py >= top && py <= bottom) p.drawLine(QPointF(left, py), QPointF(right, py));
    }
}

// Each distance beside the second marker, on the side away from the first.
void drawMarkerTexts(QPainter& p, const PlotLook& look) {
  const PlotMarkers& mk = look.markers;
  QFont font = p.font();
  font.setPixelSize(10);
  p.setFont(font);
  p.setPen(QColor::fromRgb(kMarkerColour));
  const QFontMetrics m(font);
  const int left = G::kMargin, right = G::kMargin + G::kWidth - 1, top = G::kMargin,
            bottom = G::kMargin + G::kHeight;
  if (mk.vertical) {
    const QString text = QString::fromStdString(look.markerHorText);
    const int w = m.horizontalAdvance(text);
    const double px = plotX(look.range, mk.x2);
    const int x =
        std::clamp(static_cast<int>(mk.x2 >= mk.x1 ? px + 3 : px - w - 3), left, std::max(left, right - w));
    p.drawText(x, top + m.ascent() + 2, text);
  }
  if (mk.horizontal) {
    const QString text = QString::fromStdString(look.markerVertText);
    const int w = m.horizontalAdvance(text);
    const double py = plotY(look.range, mk.y2);
    const int y = std::clamp(static_cast<int>(mk.y2 >= mk.y1 ? py - 3 : py + m.ascent() + 3),
                             top + m.ascent(), bottom - 2);
    p.drawText(right - w - 2, y, text);
  }
}

}  // namespace

double plotX(const PlotRange& r, double x) {
  return r.span > 0 ? G::kMargin + (x - r.left) * (G::kWidth - 1) / r.span : G::kMargin;
}
double plotY(const PlotRange& r, double y) {
  const double d = r.top - r.bottom;
  return d != 0 ? G::kMargin + (r.top - y) * G::kHeight / d : G::kMargin + G::kHeight;
}
double axisX(const PlotRange& r, double px) {
  return r.left + (px - G::kMargin) * r.span / (G::kWidth - 1);
}
double axisY(const PlotRange& r, double py) {
  return r.top - (py - G::kMargin) * (r.top - r.bottom) / G::kHeight;
}

std::vector<float> frameColumns(const PlotFrame& frame, const PlotRange& range, const PlotStyle& style) {
  if (!frame.valid) return std::vector<float>(G::kWidth, kEmptyColumn);
  return plotColumns(
      frame.values, frame.bins, {frame.binWidth, range.span, range.top, range.bottom, range.left}, frame.dB,
      style[StyleKey::Interpolation], style[StyleKey::InterpolationPoints], G::kWidth, G::kHeight);
}

QImage drawPlot(const PlotFrame& frame, const std::vector<float>& columns, const PlotLook& look,
                const PlotStyle& style, const PlotTexts& texts, const Persistence* memory) {
  const int scale = std::clamp(look.scale, 1, 8);
  QImage image(G::imageWidth() * scale, G::imageHeight() * scale, QImage::Format_RGB32);
  image.fill(Qt::black);
  if (memory) drawMemory(image, scale, *memory, style);
  // The painter works in picture pixels; at a screen scale above 1 it draws into the finer device pixels.
  image.setDevicePixelRatio(scale);
  QPainter p(&image);
  if (look.grid) drawGrid(p, frame, look, texts);
  if (frame.valid && !memory) drawTrace(p, frame, columns, look, style);
  // Texts need the GUI application's fonts; without one (a core test) the picture goes without them.
  const bool fonts = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
  if (look.labels && frame.valid && fonts) drawLabels(p, frame, look, texts);
  if (frame.valid) drawMarkers(p, look);
  if (frame.valid && fonts) drawMarkerTexts(p, look);
  return image;
}

}  // namespace zorvik
