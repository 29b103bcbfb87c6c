#include "fieldio/paced_output.h"

#include <gtest/gtest.h>

#include <utility>

#include "platform/clock.h"
#include "support/world.h"

namespace penlog {
namespace {

constexpr Micros kPause = 110 * kMillisecond;

class PacedOutputTest : public testing::Test {
 protected:
  PacedOutputTest() {
    world.ports.Wire(5).OnBytes = [this](std::string_view bytes) {
      heard.emplace_back(Now(), bytes);
    };
    port.SetCommPort(5);
    port.Open();
  }

  World world;
  SerialPort port{"trial"};
  PacedOutput output{"trial output"};
  std::vector<std::pair<Micros, std::string>> heard;
};

TEST_F(PacedOutputTest, SendsTextsWithTheirPausesBehindThem) {
  output.Send(port, {{"a", 0}, {"b", 10}, {"c", 1}, {"d", 0}});
  World::RunFor(3 * kSecond);
  const std::vector<std::pair<Micros, std::string>> expected = {
      {0, "a"}, {0, "b"}, {10 * kPause, "c"}, {11 * kPause, "d"}};
  EXPECT_EQ(heard, expected);
}

TEST_F(PacedOutputTest, ReturnsAtOnceAndIsBusyUntilItsLastPauseIsOver) {
  output.Send(port, {{"a", 1}});
  EXPECT_EQ(Now(), 0);
  EXPECT_TRUE(output.Busy());
  World::RunFor(kPause - kMillisecond);
  EXPECT_TRUE(output.Busy());
  World::RunFor(2 * kMillisecond);
  EXPECT_FALSE(output.Busy());
}

TEST_F(PacedOutputTest, IsNotBusyBehindTextsWithoutPauses) {
  output.Send(port, {{"a", 0}, {"b", 0}});
  EXPECT_FALSE(output.Busy());
  output.Send(port, {});
  EXPECT_FALSE(output.Busy());
}

TEST_F(PacedOutputTest, NewTextsTakeThePlaceOfThoseUnderWay) {
  output.Send(port, {{"a", 1}, {"never", 0}});
  output.Send(port, {{"b", 1}, {"c", 0}});
  World::RunFor(kSecond);
  ASSERT_EQ(heard.size(), 3U);
  EXPECT_EQ(heard[1].second, "b");
  EXPECT_EQ(heard[2], std::make_pair(kPause, std::string("c")));
}

TEST_F(PacedOutputTest, DropForgetsTheRest) {
  output.Send(port, {{"a", 1}, {"never", 0}});
  output.Drop();
  EXPECT_FALSE(output.Busy());
  World::RunFor(kSecond);
  EXPECT_EQ(heard.size(), 1U);
}

TEST_F(PacedOutputTest, APortThatIsClosedMeanwhileTakesNothingMore) {
  output.Send(port, {{"a", 1}, {"b", 1}});
  port.Close();
  World::RunFor(kSecond);
  EXPECT_EQ(heard.size(), 1U);
  EXPECT_FALSE(output.Busy());
}

}  // namespace
}  // namespace penlog
