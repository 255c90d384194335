#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/fault.h"
#include "export/csv_text.h"
#include "export/zrv_file.h"
#include "link/device_context.h"

using namespace zorvik;
using namespace std::string_literals;

TEST(ZrvFormat, WrittenLayoutIsMagicExtraLengthOneSamplesPerDivThenThePacket) {
  std::string packet = "\x10\x00\x00\x00\xff\x80\x00\x7f"s;
  EXPECT_EQ(makeZrv(packet, 128), "zorvik\x01\x80"s + packet);
  EXPECT_EQ(makeZrv("", 255), "zorvik\x01\xff"s);
  EXPECT_THROW(makeZrv("x", 256), Fault);
  EXPECT_THROW(makeZrv("x", -1), Fault);
}

TEST(ZrvFormat, ExtraLengthIsTakenFromTheFile) {
  auto none = parseZrv("zorvik\x00\x10\x00\x00\x00\x41"s);
  ASSERT_TRUE(none);
  EXPECT_FALSE(none->samplesPerDiv);
  EXPECT_EQ(none->packet, "\x10\x00\x00\x00\x41"s);

  auto three = parseZrv("zorvik\x03\x20\xAA\xBB\x10\x00\x00\x00\x41"s);
  ASSERT_TRUE(three);
  EXPECT_EQ(three->samplesPerDiv, 32);
  EXPECT_EQ(three->packet, "\x10\x00\x00\x00\x41"s);
}

TEST(ZrvFormat, ShortFilesGiveAnEmptyPacket) {
  for (std::string bytes : {"zorvik\x00"s, "zorvik"s, "zorvik\x05"s, "zorvik\xff\x08\x01"s}) {
    auto z = parseZrv(bytes);
    ASSERT_TRUE(z);
    EXPECT_TRUE(z->packet.empty());
    // No SamplesPerDiv without its byte.
    EXPECT_EQ(z->samplesPerDiv.has_value(), bytes.size() >= 8 && bytes[6] != 0);
  }
}

TEST(ZrvFormat, MagicIsComparedWithCase) {
  EXPECT_FALSE(parseZrv("Zorvik\x01\x10\x10\x00\x00\x00"s));
  EXPECT_FALSE(parseZrv("ZORVIK\x01\x10"s));
  EXPECT_FALSE(parseZrv("zorvi"));
}

TEST(PacketCsv, BytesFromTheFifthOnWithTheirSignBlankAndACarriageReturn) {
  // Later segment words are written as they lie.
  EXPECT_EQ(packetCsvText("\x20\x00\x00\x00\x89\x00\xff\x05"s), " 137\r 0\r 255\r 5\r");
  EXPECT_EQ(packetCsvText("\x10\x00\x00\x00"s), "");
  EXPECT_EQ(packetCsvText("\x10"s), "");
  std::string negative;
  appendCsvInteger(negative, -7);
  EXPECT_EQ(negative, "-7\r");
}

namespace {

RecordScale scaleOf(float fullScale, float zero, float period) {
  RecordScale s;
  s.FullScaleVolts = fullScale;
  s.ZeroVolts = zero;
  s.SamplePeriod = period;
  return s;
}

}  // namespace

TEST(ScaledCsv, ByteRecordIsOneRowASampleFromTheFirstSampleOn) {
  // Mid code is ZeroVolts; the rails are 128 codes away; the code above mid is 1/256 of full scale.
  const std::string packet = "\x10\x00\x00\x00\x80\xc0\x40\x00\xff\x81"s;
  EXPECT_EQ(scaledCsvText(packet, scaleOf(1.6f, 0.1f, 1e-6f)),
            "time_s,volts\n"
            "0,0.1\n"
            "1e-06,0.5\n"
            "2e-06,-0.3\n"
            "3e-06,-0.7\n"
            "4e-06,0.89375\n"
            "5e-06,0.10625\n");
}

TEST(ScaledCsv, SixteenBitRecordReadsHighByteFirst) {
  const std::string packet = "\x10\x00\x01\x00\x80\x00\xc0\x00\x40\x01"s;
  EXPECT_EQ(scaledCsvText(packet, scaleOf(1.6f, 0, 2e-6f)),
            "time_s,volts\n"
            "0,0\n"
            "2e-06,0.4\n"
            "4e-06,-0.3999756\n");
}

TEST(ScaledCsv, PeakRecordGivesOrderedPairsAndOneCharacterPairsSpanTwoPeriods) {
  const std::string pairs = "\x40\xc0\xc0\x40\x80\x80"s;
  EXPECT_EQ(scaledCsvText("\x10\x00\x02\x00"s + pairs, scaleOf(1.6f, 0, 1e-6f)),
            "time_s,min_v,max_v\n"
            "0,-0.4,0.4\n"
            "2e-06,-0.4,0.4\n"
            "4e-06,0,0\n");
  // Two-byte peak samples: a pair a period; an odd last character is no pair.
  EXPECT_EQ(scaledCsvText("\x10\x00\x03\x00"s + pairs + "\x10", scaleOf(1.6f, 0, 1e-6f)),
            "time_s,min_v,max_v\n"
            "0,-0.4,0.4\n"
            "1e-06,-0.4,0.4\n"
            "2e-06,0,0\n");
}

TEST(ScaledCsv, LongRecordHasOnlyLfEndsAndExactTimes) {
  const std::string packet = "\x10\x00\x00\x00"s + std::string(100000, '\x80');
  const std::string text = scaledCsvText(packet, scaleOf(1.6f, 0, 1e-8f));
  EXPECT_EQ(text.find('\r'), std::string::npos);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 100001);
  EXPECT_EQ(text.substr(text.size() - 14), "\n0.00099999,0\n");
}

TEST(ScaledCsv, NoPacketOrSeveralSegmentsAreRefused) {
  EXPECT_THROW(scaledCsvText("", RecordScale{}), Fault);
  EXPECT_THROW(scaledCsvText("\x10\x00\x00\x00\x80\x80\x80\x80\x80"s, RecordScale{}), Fault);
  EXPECT_THROW(scaledCsvText("\x40\x00\x00\x00\x00\x00\x80\x80\x80\x80"s, RecordScale{}), Fault);
}
