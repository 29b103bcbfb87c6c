#include "sounding/depth_count.h"

#include <gtest/gtest.h>

#include <tuple>

namespace penlog {
namespace {

constexpr auto kDown = PhaseKind::Down;
constexpr auto kUp = PhaseKind::Up;

struct TransitionCase {
  EncoderPhases before;
  PhaseKind kind;
  bool held;
  EncoderPhases after;
  DepthStepKind step;
};

// A line that isn't held reads 1. The event sets its own register; a step is made when the event
// leaves both at 1, and its kind is that of the line which arrived last.
TEST(Encoder, EveryPairOfRegistersAndEventHasItsAnswer) {
  const TransitionCase cases[] = {
      {{0, 0}, kDown, true, {0, 0}, DepthStepKind::None},
      {{0, 0}, kDown, false, {1, 0}, DepthStepKind::None},
      {{0, 0}, kUp, true, {0, 0}, DepthStepKind::None},
      {{0, 0}, kUp, false, {0, 1}, DepthStepKind::None},
      {{1, 0}, kDown, true, {0, 0}, DepthStepKind::None},
      {{1, 0}, kDown, false, {1, 0}, DepthStepKind::None},
      {{1, 0}, kUp, true, {1, 0}, DepthStepKind::None},
      {{1, 0}, kUp, false, {1, 1}, DepthStepKind::Up},
      {{0, 1}, kDown, true, {0, 1}, DepthStepKind::None},
      {{0, 1}, kDown, false, {1, 1}, DepthStepKind::Down},
      {{0, 1}, kUp, true, {0, 0}, DepthStepKind::None},
      {{0, 1}, kUp, false, {0, 1}, DepthStepKind::None},
      {{1, 1}, kDown, true, {0, 1}, DepthStepKind::None},
      {{1, 1}, kDown, false, {1, 1}, DepthStepKind::Down},
      {{1, 1}, kUp, true, {1, 0}, DepthStepKind::None},
      {{1, 1}, kUp, false, {1, 1}, DepthStepKind::Up},
  };
  int index = 0;
  for (const auto& row : cases) {
    const EncoderStep got = DecodeEncoder(row.before, row.kind, row.held);
    EXPECT_EQ(got.phases, row.after) << "row " << index;
    EXPECT_EQ(got.step, row.step) << "row " << index;
    ++index;
  }
}

TEST(Encoder, AnEventOfAnotherLineChangesNothing) {
  for (const EncoderPhases before : {EncoderPhases{0, 0}, {1, 0}, {0, 1}, {1, 1}}) {
    for (const bool held : {false, true}) {
      const EncoderStep got = DecodeEncoder(before, PhaseKind::Other, held);
      EXPECT_EQ(got.phases, before);
      EXPECT_EQ(got.step, DepthStepKind::None);
    }
  }
}

TEST(Encoder, DirectionSwapsTheRolesOfTheTwoLines) {
  EXPECT_EQ(PhaseOf(5, 0), PhaseKind::Up);
  EXPECT_EQ(PhaseOf(3, 0), PhaseKind::Down);
  EXPECT_EQ(PhaseOf(5, 1), PhaseKind::Down);
  EXPECT_EQ(PhaseOf(3, 1), PhaseKind::Up);
  for (const int other : {2, 4, 6, 1000}) {
    EXPECT_EQ(PhaseOf(other, 0), PhaseKind::Other);
    EXPECT_EQ(PhaseOf(other, 1), PhaseKind::Other);
  }
}

TEST(Encoder, ChatterOnOneLineCountsBeforeTheOtherMoves) {
  EncoderPhases phases{0, 1};
  int down = 0;
  for (const bool held : {false, true, false, true, false}) {
    const EncoderStep got = DecodeEncoder(phases, kDown, held);
    phases = got.phases;
    down += got.step == DepthStepKind::Down ? 1 : 0;
  }
  EXPECT_EQ(down, 3);
}

TEST(Pulse, CountsWithTheLineHeldAndTheClampClosed) {
  struct Case {
    int count_line, clamp_line, pressure_line;
    DepthStepKind step;
  };
  const Case cases[] = {
      {0, 0, 0, DepthStepKind::Down}, {0, 0, 1, DepthStepKind::Up},
      {0, 1, 0, DepthStepKind::None}, {0, 1, 1, DepthStepKind::None},
      {1, 0, 0, DepthStepKind::None}, {1, 0, 1, DepthStepKind::None},
      {1, 1, 0, DepthStepKind::None}, {1, 1, 1, DepthStepKind::None},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(DecodePulse(row.count_line, row.clamp_line, row.pressure_line), row.step)
        << row.count_line << row.clamp_line << row.pressure_line;
  }
}

TEST(Rebound, DrainsToZeroAfterAsManyStepsAsItGrewAtAnyResolution) {
  for (const float resolution : {0.001f, 0.0025f, 0.005f, 0.01f, 0.02f, 0.0254f, 1.0f / 3.0f}) {
    for (const int steps : {1, 2, 3, 7, 100, 999}) {
      float rebound = 0;
      for (int i = 0; i < steps; ++i) rebound += resolution;
      for (int i = 0; i < steps - 1; ++i) rebound = DrainRebound(rebound, resolution);
      EXPECT_GT(rebound, 0.0f) << resolution << " " << steps;
      EXPECT_EQ(DrainRebound(rebound, resolution), 0.0f) << resolution << " " << steps;
    }
  }
}

TEST(PushSpeed, IsCentimetresPerSecondOfOneRecordedStep) {
  EXPECT_FLOAT_EQ(PushSpeed(0.02f, 1.0), 2.0f);
  EXPECT_FLOAT_EQ(PushSpeed(0.05f, 2.5), 2.0f);
  EXPECT_FLOAT_EQ(PushSpeed(0.02f, 0.04), 50.0f);
}

struct TextCase {
  float depth, rebound;
  int units, format;
  const char* depth_text;
  const char* big_text;
  const char* rebound_text;
};

TEST(DepthTexts, FollowUnitsAndFormat) {
  const TextCase cases[] = {
      {0.0f, 0.0f, 0, 0, "0.000 m", "0.00m", "0.000 m"},
      {12.345f, 0.03f, 0, 0, "12.345 m", "12.35m", "-0.030 m"},
      {12.345f, 0.03f, 0, 1, "-12.345 m", "-12.35m", "-0.030 m"},
      {-100.5f, 0.0f, 0, 1, "100.500 m", "100.50m", "0.000 m"},
      {10.0f, 0.5f, 1, 0, "32.810 ft", "32.81ft", "-1.641 ft"},
      {10.0f, 0.5f, 1, 1, "-32.810 ft", "-32.81ft", "-1.641 ft"},
      {1234.5f, 0.0f, 0, 0, "1234.500 m", "1234.50m", "0.000 m"},
  };
  for (const auto& row : cases) {
    const DepthTexts got = MakeDepthTexts(row.depth, row.rebound, row.units, row.format);
    EXPECT_EQ(got.depth, row.depth_text);
    EXPECT_EQ(got.big, row.big_text);
    EXPECT_EQ(got.rebound, row.rebound_text);
  }
}

TEST(DepthTexts, HaveTwoDecimalsAtTheStart) {
  EXPECT_EQ(MakeStartTexts(1.5f, 0, 0).depth, "1.50 m");
  EXPECT_EQ(MakeStartTexts(1.5f, 0, 0).big, "1.50m");
  EXPECT_EQ(MakeStartTexts(-100.0f, 0, 1).depth, "100.00 m");
  EXPECT_EQ(MakeStartTexts(10.0f, 1, 0).depth, "32.81 ft");
  EXPECT_EQ(MakeStartTexts(10.0f, 1, 0).big, "32.81ft");
}

}  // namespace
}  // namespace penlog
