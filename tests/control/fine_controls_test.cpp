#include "control/fine_controls.h"

#include <gtest/gtest.h>

#include "config/settings.h"
#include "core/recording_sink.h"
#include "link/fake_obex.h"
#include "session/main_controller.h"

using namespace zorvik;

namespace {

TEST(FineControls, TypedNumbersInTheirUnits) {
  EXPECT_DOUBLE_EQ(fine::timePerDiv("3", fine::TimeUnit::UsPerDiv), 3e-6);
  EXPECT_DOUBLE_EQ(fine::timePerDiv("1,5", fine::TimeUnit::MsPerDiv), 1.5e-3);
  EXPECT_DOUBLE_EQ(fine::timePerDiv("250", fine::TimeUnit::NsPerDiv), 250e-9);
  EXPECT_DOUBLE_EQ(fine::timePerDiv("2", fine::TimeUnit::SPerDiv), 2);
  EXPECT_EQ(fine::timePerDiv("fast", fine::TimeUnit::UsPerDiv), 0);

  EXPECT_EQ(fine::whole("-7.9"), -7);  // cut toward 0
  EXPECT_EQ(fine::whole("1e12"), 2147483647);
  EXPECT_EQ(fine::whole("-1e12"), -2147483647 - 1);
  EXPECT_EQ(fine::triggerLevel("300"), 255);
  EXPECT_EQ(fine::triggerLevel("-4"), 0);
  EXPECT_EQ(fine::triggerLevel("128.7"), 128);
}

TEST(FineControls, SamplingTrimWritesTypedValuesAndAsksForEmptyOnes) {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  test::FakeObex link;
  MainController main{settings, sink, view};
  main.attachLink(&link);
  link.calls.clear();
  fine::trimSampling(main, "1,5", "12345");
  EXPECT_EQ(link.calls, (std::vector<std::string>{"Put4 TS=384", "Put2 MC=1234"}));
  link.calls.clear();
  fine::trimSampling(main, "  ", "");
  EXPECT_EQ(link.calls, (std::vector<std::string>{"GetRegister TS", "GetRegister MC"}));
  main.attachLink(nullptr);
}

}  // namespace
