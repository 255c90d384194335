#include <gtest/gtest.h>

#include "display/display_labels.h"
#include "display/mode_label.h"
#include "display/time_view.h"
#include "display_test_util.h"

using namespace zorvik;
using namespace zorvik::test;

TEST(ModeLabel, CodesAndTexts) {
  struct Row {
    uint32_t mode;
    bool multi;
    int code;
    const char* longText;
    const char* shortText;
  };
  for (const Row& r : {Row{0x000, false, 1, "S.Average", "sAvg"}, Row{0x000, true, 2, "M.Average", "mAvg"},
                       Row{0x100, false, 3, "S.HiRes", "sHiRe"}, Row{0x100, true, 4, "M.HiRes", "mHiRe"},
                       Row{0x200, false, 5, "iPeakDet", "iPkDt"}, Row{0x200, true, 6, "iEnvelop", "iEnvl"},
                       Row{0x300, false, 7, "nPeakDet", "nPkDt"}, Row{0x300, true, 8, "nEnvelop", "nEnvl"},
                       Row{0x400, false, 9, "Sample", "Smpl"}, Row{0x400, true, 10, "Average", "Avg"}}) {
    EXPECT_EQ(modeCode(r.mode, r.multi), r.code);
    EXPECT_STREQ(modeLongText(r.code), r.longText);
    EXPECT_STREQ(modeShortText(r.code), r.shortText);
  }
  EXPECT_EQ(modeCode(0x500, false), 0);
  EXPECT_EQ(modeCode(0x700, true), 0);
}

TEST(ModeLabel, UnknownModeKeepsTheStoredCodeAndOnlySegmentOneShows) {
  ModeLabel m;
  EXPECT_TRUE(m.SetModeLabel(0x400, false, 1, true));
  EXPECT_EQ(m.text(), "Sample");
  EXPECT_FALSE(m.SetModeLabel(0x500, false, 1, true));
  EXPECT_EQ(m.text(), "Sample");
  EXPECT_FALSE(m.SetModeLabel(0x100, false, 2, true));
  EXPECT_EQ(m.code(2), 3);
  EXPECT_EQ(m.text(), "Sample");
  EXPECT_FALSE(m.SetModeLabel(0x400, false, 9, true));  // no such segment: nothing happens
}

TEST(ModeLabel, NarrowSmallScreenShowsShortTextsAndWideTurnsThemLong) {
  DisplayRig rig([](DisplaySettings& s) { s.zoom = 0; });
  rig.d().SetModeLabel(0x400, false, 1);
  EXPECT_EQ(rig.d().labels().Ch1Transparant, "Smpl");
  rig.d().settings().wide = true;
  rig.d().SetupDisplay();
  EXPECT_EQ(rig.d().labels().Ch1Transparant, "Sample");
  EXPECT_EQ(rig.d().plotWidth(), 480);
}

TEST(TimeView, CentreTimeAndTimeBase) {
  PlotInputs in;
  TimeView v;
  UpdateCentreTime(v, 330, 30, in, 1e-6f);
  EXPECT_FLOAT_EQ(v.CentreOffset, 135e-6f);
  in.DelayTime = 1e-3f;
  UpdateCentreTime(v, 330, 30, in, 1e-6f);
  EXPECT_FLOAT_EQ(v.CentreOffset, 165e-6f + 1e-3f);
  // No sample count yet: the record length of HScrollCenter.
  in.DelayTime = 0;
  in.hScrollCenterMax = 1000;
  UpdateCentreTime(v, 0, 0, in, 1e-6f);
  EXPECT_FLOAT_EQ(v.CentreOffset, 500e-6f);

  in.hZoom = 2;
  in.hViewFrac = 0.5;
  UpdateTimeBase(v, in, 1e-6f, 16, 320);
  EXPECT_FLOAT_EQ(v.TimePerDiv, 8e-6f);
  // 0.5 x (2 - 1) x 8 us x 10 / 2 to the left of the record's middle.
  EXPECT_NEAR(v.ViewCentre, 500e-6 - 20e-6, 1e-9);
}

TEST(DisplayLabels, TimeAndVoltTextsAndTheMarkerLines) {
  DisplayLabels l;
  TimeView v;
  v.TimePerDiv = 16e-6f;
  v.ViewCentre = 165e-6f;
  UpdateTimeLabels(l, v, 320, false);
  EXPECT_EQ(l.TimeDivTransparant, "16\xC2\xB5S/");
  EXPECT_EQ(l.HorLeft, "85\xC2\xB5S");
  EXPECT_EQ(l.HorCenter, "165\xC2\xB5S");
  EXPECT_EQ(l.HorRight, "245\xC2\xB5S");
  UpdateTimeLabels(l, v, 480, true);
  EXPECT_EQ(l.HorLeft, "45\xC2\xB5S");
  EXPECT_EQ(l.HorCenter, "125\xC2\xB5S");
  EXPECT_EQ(l.HorCenterW, "205\xC2\xB5S");

  PlotInputs in;
  in.voltPerDiv = 0.2f;
  in.voltOffset = 0.1f;
  UpdateVertLabels(l, in);
  EXPECT_EQ(l.Ch1VdivTransparant, "200mV/");
  EXPECT_EQ(l.VertTop1, "900mV");
  EXPECT_EQ(l.VertCenter1, "100mV");
  EXPECT_EQ(l.VertDown1, "-700mV");
  EXPECT_EQ(nullLineRow(in), 112);  // half a division below the middle
  in.voltOffset = 1.0f;
  EXPECT_FALSE(nullLineRow(in));  // five divisions: off the screen
  in.voltPerDiv = 0;
  EXPECT_FALSE(nullLineRow(in));

  PlotInputs t;
  v.ViewCentre = 80e-6f;  // the trigger 5 divisions left of the view's middle
  EXPECT_EQ(triggerLineX(v, t, 320), 0);
  v.ViewCentre = -1e-6f;
  EXPECT_EQ(triggerLineX(v, t, 320), 162);
  v.ViewCentre = 1.0f;
  EXPECT_FALSE(triggerLineX(v, t, 320));
  v.ViewCentre = 0;
  t.DelayTime = 1e-3f;
  EXPECT_FALSE(triggerLineX(v, t, 320));
}

TEST(DisplaySettings, CatalogueDefaultsRangesAndNames) {
  MemorySettings store;
  DisplaySettings fast, slow;
  fast.load(store, 1000);
  slow.load(store, 200);
  EXPECT_EQ(fast.interpolation, 3);
  EXPECT_EQ(slow.interpolation, 0);
  EXPECT_EQ(fast.xStep(), 1);
  EXPECT_EQ(slow.xStep(), 2);
  EXPECT_EQ(fast.acqPerPlotCount(), 1);
  EXPECT_EQ(slow.acqPerPlotCount(), 5);
  EXPECT_EQ(fast.lineWidth[2], 2);
  EXPECT_EQ(slow.lineWidth[2], 1);
  EXPECT_EQ(fast.lineWidth[0], 1);
  EXPECT_EQ(fast.persistDepth(), 32);
  EXPECT_EQ(fast.taps(), 32);
  EXPECT_TRUE(fast.gridFore);
  EXPECT_FALSE(slow.gridFore);

  store.SaveSettingValue("Plot1", "Interpolation", "9");
  store.SaveSettingValue("Plot1", "Memory Depth", "-3");
  store.SaveSettingValue("Plot1", " 1LineWidth", "1e12");
  store.SaveSettingValue("Plot1", "InterpolationPoints", "nonsense");
  DisplaySettings odd;
  odd.load(store, 1000);
  EXPECT_EQ(odd.interpolation, 4);
  EXPECT_EQ(odd.persistDepth(), 1);
  EXPECT_EQ(odd.lineWidth[1], 16);
  EXPECT_EQ(odd.interpolationPoints, 5);

  // Per-zoom values go under the present zoom's name.
  odd.zoom = 2;
  odd.speed[2] = 1;
  odd.save(store, "Speed");
  EXPECT_EQ(store.GetSettingValue("Plot1", " 2Speed", ""), "1");
  odd.save(store, "Leave Single");
  EXPECT_EQ(store.GetSettingValue("Plot1", "Leave Single", ""), "True");
  EXPECT_TRUE(odd.assign("Plot1", " 0PeakWidth", "3"));
  EXPECT_EQ(odd.peakWidth[0], 3);
  EXPECT_TRUE(odd.assign("View", "GridVisible", "False"));
  EXPECT_FALSE(odd.gridVisible);
  EXPECT_FALSE(odd.assign("Plot1", "NoSuchValue", "1"));
}
