#include "sim/sim_device.h"

#include <gtest/gtest.h>

namespace zorvik {
namespace {

std::string bytes(std::initializer_list<int> list) {
  std::string s;
  for (int b : list) s.push_back(static_cast<char>(b));
  return s;
}

TEST(SimDevice, CutsToWidthAndClampsWhatTheHardwareCannotDo) {
  SimDevice d{SimConfig{}};
  d.write("RS", 0x1FF);
  EXPECT_EQ(d.registerBytes("RS"), bytes({0xFF}));
  d.write("V1", 0x10000 + 300);
  EXPECT_EQ(d.registerBytes("V1"), bytes({0x01, 0x2C}));
  d.write("MC", 100);
  EXPECT_EQ(d.value("MC"), 800);
  d.write("MC", 60000);
  EXPECT_EQ(d.value("MC"), 50000);
  d.write("TS", 1);
  EXPECT_EQ(d.value("TS"), 8);
  d.write("QS", 20000);
  EXPECT_EQ(d.value("QS"), 16384);
  d.write("TC", 20000);
  EXPECT_EQ(d.value("TC"), 16368);
  d.write("M1", 0x0B);  // hi-res peaks: two bytes a sample, half the memory
  d.write("QS", 9000);
  EXPECT_EQ(d.value("QS"), 8192);
  d.write("P1", static_cast<uint16_t>(-1000));
  EXPECT_EQ(d.value("P1"), -768);
  EXPECT_FALSE(d.write("ts", 1));  // names are exact
  EXPECT_FALSE(d.registerBytes("XX").has_value());
}

// The input stage has 20 mV to 10 V a division; the fine setting may ask for anything between.
TEST(SimDevice, SensitivityStaysWithinTheInputStagesRange) {
  SimDevice d{SimConfig{}};
  EXPECT_EQ(d.value("V1"), 200);  // power-on: a sensitivity the device has, not 0
  d.write("V1", 0);
  EXPECT_EQ(d.value("V1"), 20);
  d.write("V1", 19);
  EXPECT_EQ(d.registerBytes("V1"), bytes({0, 20}));
  d.write("V1", 70);
  EXPECT_EQ(d.value("V1"), 70);
  d.write("V1", 10001);
  EXPECT_EQ(d.value("V1"), 10000);
  d.write("V1", 0x18000);  // 32768 on the link, far beyond the top
  EXPECT_EQ(d.registerBytes("V1"), bytes({0x27, 0x10}));
  EXPECT_DOUBLE_EQ(d.setup().voltsPerDiv(), 10.0);
}

TEST(SimDevice, PropertiesInTheirEncodings) {
  SimConfig c;
  c.faults.missing.insert("TPl");
  SimDevice d(c);
  EXPECT_EQ(d.propertyBytes("VNM"), "Zorvik ZV-1");
  EXPECT_EQ(d.propertyBytes("MCd"), bytes({0, 0, 0x03, 0xE8}));
  EXPECT_EQ(d.propertyBytes("TOv"), bytes({0, 0, 0, 7}));
  EXPECT_EQ(d.propertyBytes("P1l"), bytes({0xFD, 0x00}));
  EXPECT_EQ(d.propertyBytes("L_B"), bytes({0}));
  EXPECT_EQ(d.propertyBytes("QSh"), bytes({0, 0, 0x40, 0x00}));
  d.write("M1", 1);
  EXPECT_EQ(d.propertyBytes("QSh"), bytes({0, 0, 0x20, 0x00}));
  EXPECT_EQ(d.propertyBytes("TCh"), bytes({0, 0, 0x1F, 0xF0}));
  EXPECT_FALSE(d.propertyBytes("TPl").has_value());
  EXPECT_FALSE(d.propertyBytes("MC").has_value());  // a register, not a property
  EXPECT_EQ(d.identity(), "ZV-11.2 01231.00");
  EXPECT_EQ(d.setup().risFloor, 128u);  // TOv bit 0: half a clock a sample
}

}  // namespace
}  // namespace zorvik
