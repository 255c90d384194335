#include "measure/meter_state.h"

#include <gtest/gtest.h>

#include "measure/meter_text.h"

using namespace zorvik;

TEST(MeterText, RowsPicturesAndTheZeroText) {
  using D = MeterDigits;
  EXPECT_EQ(meterEngineeringText(1.234, 0, "V", true, D::Three), "1.23 V");
  EXPECT_EQ(meterEngineeringText(-0.0123, 0, "V", true, D::Three), "-12.3mV");
  EXPECT_EQ(meterEngineeringText(0.000123, 0, "s", true, D::Three), "123 µs");
  EXPECT_EQ(meterEngineeringText(5.5, 0, "V", true, D::Three), "5.50 V");
  EXPECT_EQ(meterEngineeringText(9.96, 0, "V", true, D::Three), "10.0 V");  // past 9.95: the next row
  EXPECT_EQ(meterEngineeringText(9.96, 0, "V", true, D::Four), "9.960 V");  // the four-digit edge is 9.995
  EXPECT_EQ(meterEngineeringText(12345.6, 0, "Hz", true, D::Five), "12.346kHz");
  EXPECT_EQ(meterEngineeringText(2.5e9, 0, "Hz", true, D::Three), "2.5GHz");
  EXPECT_EQ(meterEngineeringText(0.05, 0, "V", false, D::Three), "50.0mV");
  // Below the resolution: zero, with blanks for the unit in a fixed width.
  EXPECT_EQ(meterEngineeringText(0.001, 0.1, "V", true, D::Three), " 000  ");
  EXPECT_EQ(meterEngineeringText(0.001, 0.1, "V", false, D::Three), "0");
  // Exactly 0 at resolution 0 is no row's: it falls to the last one.
  EXPECT_EQ(meterEngineeringText(0, 0, "V", true, D::Three), "0.0GV");
  EXPECT_EQ(formatPicture(-3.14159, "00.00"), "-03.14");
  EXPECT_EQ(formatPicture(7, "##0.0#"), "7.0");
}

TEST(MeterState, StatusesLeaveMinMaxAndTheAverageClocksAlone) {
  MeterState m;
  m.Ind(false, "V", 1.0f, 0, "", 1000);
  EXPECT_EQ(m.CurVal, "1.00 V");
  EXPECT_EQ(m.MinVal, "1.00 V");
  EXPECT_EQ(m.MaxVal, "1.00 V");
  EXPECT_EQ(m.AvgVal, "1.000 V");  // one digit more

  m.CurVal = "touched";
  m.Ind(false, "V", 1.0f, 0, "", 1100);  // the same value is not drawn again
  EXPECT_EQ(m.CurVal, "touched");

  m.Ind(false, "V", 9.0f, 0, "Limit!", 1200);
  EXPECT_EQ(m.CurVal, "Limit!");
  EXPECT_EQ(m.MaxVal, "1.00 V");
  m.Ind(false, "V", 1.0f, 0, "", 1300);  // after a status the equal value is drawn
  EXPECT_EQ(m.CurVal, "1.00 V");

  m.stopped = true;
  m.Ind(false, "V", 3.0f, 0, "", 1400);
  EXPECT_EQ(m.CurVal, "1.00 V");
}

TEST(MeterState, TheAverageIsAMeanWhileYoungAndAFilterAfter) {
  MeterState m;
  m.AvgTimeMs = 1000;
  m.Ind(false, "V", 2.0f, 0, "", 0);  // the first value sets the average
  EXPECT_FLOAT_EQ(m.AvgValue, 2.0f);
  m.Ind(false, "V", 4.0f, 0, "", 100);  // T = dt: k = 1
  EXPECT_FLOAT_EQ(m.AvgValue, 4.0f);
  for (int t = 200; t <= 3000; t += 100)
    m.Ind(false, "V", t % 200 ? 4.0f : 2.0f, 0, "", static_cast<uint32_t>(t));
  // Past a second k stays at 0.1: a first-order filter of a value that toggles between 2 and 4.
  EXPECT_GT(m.AvgValue, 2.5f);
  EXPECT_LT(m.AvgValue, 3.5f);

  m.ResetMeter();
  EXPECT_TRUE(m.MinVal.empty() && m.MaxVal.empty() && m.AvgVal.empty());
  m.IndF("%", 12.345f, "00.0", "", 5000);
  EXPECT_EQ(m.CurVal, "12.3%");
  EXPECT_EQ(m.AvgVal, "12.3%");
  EXPECT_FLOAT_EQ(m.AvgValue, 12.345f);
}
