#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>

#include "display/display_labels.h"
#include "display/display_settings.h"
#include "display/label_painter.h"
#include "export/zrv_file.h"

using namespace zorvik;

namespace {

// A pessimistic width for a text of the labels' font: wider than the usual sans-serif letters.
int textWidth(const std::string& text, int zoomIndex) {
  const double perChar = 0.7 * labelPixelSize(5, zoomIndex);
  return static_cast<int>(std::ceil(perChar * static_cast<double>(text.size())));
}

std::array<int, kBandTexts> widths(const std::array<std::string, kBandTexts>& texts, int zoomIndex) {
  std::array<int, kBandTexts> w{};
  for (size_t i = 0; i < texts.size(); ++i) w[i] = textWidth(texts[i], zoomIndex);
  return w;
}

void expectApartAndInside(const std::array<LabelRect, kBandTexts>& r, int pictureWidth,
                          const std::string& what) {
  for (size_t i = 0; i < r.size(); ++i) {
    if (r[i].width == 0) continue;
    EXPECT_GE(r[i].left, 0) << what << " text " << i;
    EXPECT_LE(r[i].right(), pictureWidth) << what << " text " << i;
    for (size_t j = i + 1; j < r.size(); ++j)
      EXPECT_FALSE(r[i].intersects(r[j])) << what << " texts " << i << " and " << j;
  }
}

}  // namespace

// The longest texts each slot shows, with the RIS caption on: they stand side by side at zoom 0 and 1,
// normal and wide; at zoom 1 every one keeps its full width.
TEST(LabelBand, LongestTextsNeverMeetAtTheSmallZooms) {
  const std::array<std::string, kBandTexts> shortTexts = {"-500uS/", "PsRIS", "Progress",
                                                          "iPkDt",   "Lagrn", "200mV/"};
  const std::array<std::string, kBandTexts> longTexts = {"-500uS/",   "PsRIS", "Progress",
                                                         "S.Average", "Lagrn", "200mV/"};
  for (int zoom : {0, 1}) {
    for (bool wide : {false, true}) {
      const DisplayGeometry g = DisplayGeometry::make(zoom, wide);
      // The narrow small screen shows the short mode names; every other screen the long ones.
      const auto& texts = zoom == 0 && !wide ? shortTexts : longTexts;
      const std::array<int, kBandTexts> want = widths(texts, zoom);
      const auto r = bandLayout(g.pictureWidth(), 11, 12, want);
      const std::string what = "zoom " + std::to_string(zoom) + (wide ? " wide" : "");
      expectApartAndInside(r, g.pictureWidth(), what);
      if (zoom == 1) {
        for (int i = 0; i < kBandTexts; ++i) EXPECT_EQ(r[i].width, want[i]) << what << " text " << i;
      }
    }
  }
}

// What collided before: "Ready", "Smpl", " 1:1 " and "200mV/" on the 181-pixel screen.
TEST(LabelBand, TheReadyScreenOfZoomZero) {
  const DisplayGeometry g = DisplayGeometry::make(0, false);
  const auto r =
      bandLayout(g.pictureWidth(), 11, 10, widths({"100uS/", "", "Ready", "Smpl", "1:1", "200mV/"}, 0));
  expectApartAndInside(r, g.pictureWidth(), "zoom 0");
  EXPECT_EQ(r[kBandRis].width, 0);  // an empty text takes no room
  for (int i = 0; i + 1 < kBandTexts; ++i) {
    if (r[i].width > 0 && r[i + 1].width > 0) {
      EXPECT_LE(r[i].right() + kBandGap, r[i + 1].left);
    }
  }
}

TEST(LabelBand, ATextWithRoomStandsOnItsEighthAndTheRestShareTheWidth) {
  const auto alone = bandLayout(341, 11, 12, {40, 0, 0, 0, 0, 0});
  EXPECT_EQ(alone[kBandTimeDiv].left + alone[kBandTimeDiv].width / 2, 341 / 8);
  // Far too much for the width: narrowed by one factor, still apart and inside.
  const auto crowded = bandLayout(181, 11, 10, {100, 100, 200, 100, 100, 100});
  expectApartAndInside(crowded, 181, "crowded");
  EXPECT_EQ(crowded[kBandMode].width / 2, crowded[kBandCh1].width) << "one factor for all";
  // A picture too narrow for anything leaves nothing to draw rather than rectangles that meet.
  expectApartAndInside(bandLayout(10, 0, 10, {5, 5, 5, 5, 5, 5}), 10, "tiny");
}

TEST(LabelBand, EmptyRectanglesMeetNothing) {
  const LabelRect a{10, 0, 20, 10};
  EXPECT_TRUE(a.intersects(LabelRect{29, 9, 5, 5}));
  EXPECT_FALSE(a.intersects(LabelRect{30, 0, 5, 10}));  // touching edges only
  EXPECT_FALSE(a.intersects(LabelRect{15, 0, 0, 10}));
}

// TrigIndHor: a marker over the screen at the trigger position's column, in the margin, never on the
// grid; none while the trigger position line is not shown.
TEST(TrigIndHor, DrawnInTheMarginAtTheTriggerColumn) {
  for (int zoom : {0, 1, 3}) {
    const DisplayGeometry g = DisplayGeometry::make(zoom, false);
    DisplayLabels labels;
    DisplaySettings settings;
    QImage picture(g.pictureWidth(), g.pictureHeight(), QImage::Format_RGB32);
    picture.fill(Qt::black);
    {
      QPainter p(&picture);
      paintMarkers(p, labels, settings, g);
    }
    int lit = 0;
    for (int y = 0; y < g.pixelY(kTraceRows); ++y)
      for (int x = 0; x < picture.width(); ++x) lit += (picture.pixel(x, y) & 0xFFFFFF) != 0;
    EXPECT_EQ(lit, 0) << "no trigger position, no marker";

    labels.triggerX = g.plotWidth() / 2;
    {
      QPainter p(&picture);
      paintMarkers(p, labels, settings, g);
    }
    const std::optional<LabelRect> r = trigIndHorRect(g, labels.triggerX);
    ASSERT_TRUE(r);
    EXPECT_LT(r->bottom(), g.pixelY(kTraceRows)) << "above the grid's top line";
    EXPECT_GE(r->top, 0);
    const int x = g.pixelX(*labels.triggerX);
    EXPECT_EQ(r->left + r->width / 2, x);
    EXPECT_NE(picture.pixel(x, r->bottom() - 1) & 0xFFFFFF, 0u) << "the point at the column";
    EXPECT_NE(picture.pixel(x - 3, r->top) & 0xFFFFFF, 0u);
    EXPECT_EQ(picture.pixel(x - 3, r->bottom() - 1) & 0xFFFFFF, 0u) << "a triangle, not a box";
  }
  EXPECT_FALSE(trigIndHorRect(DisplayGeometry::make(1, false), std::nullopt));
}

// zorvik-cli render scales the vertical labels with --vzoom as the window does. Run as the user runs it,
// when this build made the tool beside the tests.
TEST(RenderLabels, VerticalZoomScalesTheVerticalLabels) {
  const QString cli = QCoreApplication::applicationDirPath() + "/zorvik-cli";
  if (!QFileInfo::exists(cli)) GTEST_SKIP() << "no zorvik-cli in this build";
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  // A flat trace at mid-screen stands on the same row at every vertical zoom: only the labels differ.
  const std::string packet =
      std::string{char(0x10), char(0), char(0x04), char(0)} + std::string(330, char(128));
  const QString zrv = dir.filePath("flat.zrv");
  {
    QFile f(zrv);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    const std::string bytes = makeZrv(packet, 16);
    f.write(bytes.data(), static_cast<qint64>(bytes.size()));
  }
  auto render = [&](const QString& name, const QStringList& options) {
    QProcess p;
    p.start(cli, QStringList{"render", zrv, "--png", dir.filePath(name)} + options);
    EXPECT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    return QImage(dir.filePath(name)).convertToFormat(QImage::Format_RGB32);
  };
  const QImage plain1 = render("p1.png", {"--vzoom", "1"});
  const QImage plain2 = render("p2.png", {"--vzoom", "2"});
  ASSERT_FALSE(plain1.isNull());
  EXPECT_EQ(plain1, plain2) << "the trace alone does not move";
  const QImage labels1 = render("l1.png", {"--vzoom", "1", "--labels"});
  const QImage labels2 = render("l2.png", {"--vzoom", "2", "--labels"});
  EXPECT_NE(labels1, labels2) << "100mV/ and its volts, not 200mV/ again";
  // Only the vertical labels (left) and the V/div text (the band's right) change.
  const DisplayGeometry g = DisplayGeometry::make(1, false);
  for (int y = 0; y < labels1.height(); ++y)
    for (int x = g.pictureWidth() / 4; x < g.pictureWidth() * 3 / 4; ++x)
      ASSERT_EQ(labels1.pixel(x, y), labels2.pixel(x, y)) << x << "," << y;
}
