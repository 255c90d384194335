#include "core/whole_numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "core/fault.h"

using namespace zorvik;

namespace {
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kTwo63 = 9223372036854775808.0;
}  // namespace

TEST(WholeNumbersOrFault, Int32TakesItsLimitsAndRefusesOneBeyond) {
  EXPECT_EQ(roundToInt32OrFault(2147483647.0, "x"), INT32_MAX);
  EXPECT_EQ(roundToInt32OrFault(-2147483648.0, "x"), INT32_MIN);
  // Half to even: .5 above the top rounds up out of range, .5 below the bottom rounds back in.
  EXPECT_THROW(roundToInt32OrFault(2147483647.5, "x"), Fault);
  EXPECT_EQ(roundToInt32OrFault(-2147483648.5, "x"), INT32_MIN);
  EXPECT_THROW(roundToInt32OrFault(-2147483649.0, "x"), Fault);

  EXPECT_EQ(truncToInt32OrFault(2147483647.9, "x"), INT32_MAX);
  EXPECT_EQ(truncToInt32OrFault(-2147483648.9, "x"), INT32_MIN);
  EXPECT_THROW(truncToInt32OrFault(2147483648.0, "x"), Fault);
  EXPECT_THROW(truncToInt32OrFault(-2147483649.0, "x"), Fault);
}

TEST(WholeNumbersOrFault, RoundsHalfToEvenAndCutsTowardZero) {
  EXPECT_EQ(roundToInt32OrFault(0.5, "x"), 0);
  EXPECT_EQ(roundToInt32OrFault(1.5, "x"), 2);
  EXPECT_EQ(roundToInt32OrFault(-2.5, "x"), -2);
  EXPECT_EQ(roundToInt32OrFault(-0.0, "x"), 0);
  EXPECT_EQ(truncToInt32OrFault(-1.9, "x"), -1);
  EXPECT_EQ(truncToInt32OrFault(-0.9, "x"), 0);
  EXPECT_EQ(truncToInt64OrFault(-1.9, "x"), -1);
}

TEST(WholeNumbersOrFault, Int64TakesItsLimitsAndRefuses2To63) {
  EXPECT_EQ(truncToInt64OrFault(-kTwo63, "x"), INT64_MIN);
  EXPECT_EQ(truncToInt64OrFault(std::nextafter(kTwo63, 0.0), "x"), INT64_MAX - 1023);
  EXPECT_THROW(truncToInt64OrFault(kTwo63, "x"), Fault);
  EXPECT_THROW(truncToInt64OrFault(std::nextafter(-kTwo63, -kInf), "x"), Fault);
}

TEST(WholeNumbersOrFault, NoNumberIsAFaultThatNamesTheValue) {
  for (double v : {kNaN, kInf, -kInf}) {
    EXPECT_THROW(roundToInt32OrFault(v, "x"), Fault);
    EXPECT_THROW(truncToInt32OrFault(v, "x"), Fault);
    EXPECT_THROW(truncToInt64OrFault(v, "x"), Fault);
  }
  try {
    roundToInt32OrFault(3e9, "MC");
    FAIL() << "no fault";
  } catch (const Fault& f) {
    EXPECT_STREQ(f.what(), "Overflow: MC = 3000000000 is out of range");
  }
}

TEST(WholeNumbersSaturating, StickAtTheLimitsAndTakeNoNumberAsZero) {
  EXPECT_EQ(roundToInt64Saturating(kInf), INT64_MAX);
  EXPECT_EQ(roundToInt64Saturating(-kInf), INT64_MIN);
  EXPECT_EQ(roundToInt64Saturating(kNaN), 0);
  EXPECT_EQ(roundToInt64Saturating(kSaturatingBound), INT64_MAX);
  EXPECT_EQ(roundToInt64Saturating(-kSaturatingBound), INT64_MIN);
  EXPECT_EQ(roundToInt64Saturating(std::nextafter(kSaturatingBound, 0.0)), 9199999999999998976);
  EXPECT_EQ(floorToInt64Saturating(1e300), INT64_MAX);
  EXPECT_EQ(floorToInt64Saturating(-kInf), INT64_MIN);
  EXPECT_EQ(floorToInt64Saturating(kNaN), 0);
  EXPECT_EQ(roundToPositionSaturating(1e300), kFarPosition);
  EXPECT_EQ(roundToPositionSaturating(-kInf), -kFarPosition);
  EXPECT_EQ(roundToPositionSaturating(kNaN), 0);
}

TEST(WholeNumbersSaturating, RoundHalfEvenFloorDownAndDivideTowardZero) {
  EXPECT_EQ(roundToInt64Saturating(2.5), 2);
  EXPECT_EQ(roundToInt64Saturating(-2.5), -2);
  EXPECT_EQ(roundToInt64Saturating(-0.0), 0);
  EXPECT_EQ(floorToInt64Saturating(-0.5), -1);
  EXPECT_EQ(floorToInt64Saturating(2.9), 2);
  EXPECT_EQ(roundToPositionSaturating(-12.5), -12);
  EXPECT_EQ(wholeDivSaturating(-7, 2), -3);
  EXPECT_EQ(wholeDivSaturating(7.5, 2), 4);  // 8 / 2: the operands are rounded first
  EXPECT_EQ(wholeDivSaturating(7, 0.4), 0);  // a divisor that rounds to 0
  EXPECT_EQ(wholeDivSaturating(0, -3), 0);
}

TEST(WholeNumbersSaturating, TheLowestQuotientByMinusOneSticksAtTheTop) {
  EXPECT_EQ(wholeDivSaturating(-kInf, -1), INT64_MAX);
  EXPECT_EQ(wholeDivSaturating(-kInf, -0.9), INT64_MAX);
  EXPECT_EQ(wholeDivSaturating(kInf, -1), -INT64_MAX);
}
