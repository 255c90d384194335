#include "session/key_map.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace zorvik;

namespace {
struct Log : KeyActions {
  std::vector<std::string> done;
  void keyStart() override { done.push_back("start"); }
  void toggleWorkMode() override { done.push_back("workmode"); }
  void toggleFilterL() override { done.push_back("filterL"); }
  void toggleFilterH() override { done.push_back("filterH"); }
  void openMeter(char k) override { done.push_back(std::string("meter ") + k); }
  void openMeterFFT() override { done.push_back("fft"); }
  void savePicture(char k) override { done.push_back(std::string("picture ") + k); }
  void toggleHiRes() override { done.push_back("hires"); }
  void toggleGround() override { done.push_back("ground"); }
  void toggleZoom() override { done.push_back("zoom"); }
  void showDebugCommand() override { done.push_back("debug"); }
  void stepTimeDiv(int s) override { done.push_back("timediv " + std::to_string(s)); }
  void plotSpeedTest() override { done.push_back("speed"); }
};
}  // namespace

TEST(KeyMap, SingleKeysInEitherCase) {
  Log log;
  KeyMap keys(log);
  EXPECT_TRUE(keys.press("Backspace", 0));
  EXPECT_TRUE(keys.press("\\", 0));
  EXPECT_TRUE(keys.press("h", 0));
  EXPECT_TRUE(keys.press("Home", 0));
  EXPECT_TRUE(keys.press("z", 0));
  EXPECT_TRUE(keys.press("Z", 0, true, true));
  EXPECT_FALSE(keys.press("T", 0));  // the speed test needs the developer switch
  keys.devMode = true;
  EXPECT_TRUE(keys.press("t", 0));
  EXPECT_FALSE(keys.press("Y", 0));
  EXPECT_EQ(log.done,
            (std::vector<std::string>{"start", "workmode", "hires", "timediv 1", "zoom", "debug", "speed"}));
}

TEST(KeyMap, PrefixKeysCountWithinTheirWindow) {
  Log log;
  KeyMap keys(log);
  keys.press("F", 1000);
  EXPECT_EQ(keys.pendingPrefix(), 'F');
  keys.press("h", 1000 + KeyMap::kPrefixWindowMs);  // just in time
  keys.press("m", 6000);
  keys.press("s", 6001);
  keys.press("m", 7000);
  keys.press("'", 7001);
  keys.press("B", 8000);
  keys.press("j", 8001);
  // Too late: the prefix is forgotten and "G" is the single key.
  keys.press("F", 10000);
  keys.press("G", 10000 + KeyMap::kPrefixWindowMs + 1);
  // A key the level doesn't know is consumed with the prefix.
  keys.press("F", 20000);
  EXPECT_FALSE(keys.press("x", 20001));
  EXPECT_EQ(keys.pendingPrefix(), 0);
  EXPECT_EQ(log.done, (std::vector<std::string>{"filterH", "fft", "meter '", "picture J", "ground"}));
}
