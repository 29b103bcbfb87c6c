#include "display/depth_word.h"

#include <gtest/gtest.h>

#include "core/reset_state.h"
#include "forms/main_form.h"
#include "sounding/main_loop.h"
#include "support/world.h"

namespace penlog {
namespace {

struct DepthWord : testing::Test {
  DepthWord() {
    ResetState();
    Main.Timer1.OnTick = Main_Timer1_Timer;
    Main.Timer1.Start();
  }
  ~DepthWord() override {
    Main.Timer1.Stop();
    Main.Timer1.OnTick = nullptr;
  }
  static const std::string& Word() { return Main.shpDepth.Caption; }
  World world;
};

TEST_F(DepthWord, IsStillBeforeTheFirstStep) {
  World::RunFor(kSecond);
  EXPECT_EQ(Word(), "STILL");
}

/// 5 mm a step at 2 cm/s, with three edges between two steps that are none.
TEST_F(DepthWord, StaysThroughAPushAndGoesHalfASecondAfterIt) {
  for (const auto& [step, word] : {std::pair{DepthStepKind::Down, "DOWN"},  //
                                   std::pair{DepthStepKind::Up, "UP"}}) {
    for (int edge = 0; edge < 40; ++edge) {
      NoteDepthStep(edge % 4 == 0 ? step : DepthStepKind::None);
      World::RunFor(kSecond / 16);
      EXPECT_EQ(Word(), word) << edge;
    }
    World::RunFor(kStillAfter);
    EXPECT_EQ(Word(), "STILL");
  }
}

}  // namespace
}  // namespace penlog
