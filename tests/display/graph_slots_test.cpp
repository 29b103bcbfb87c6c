#include "display/graph_slots.h"

#include "display/display_state.h"
#include "support/state.h"

namespace penlog {
namespace {

using Slots = std::array<std::int16_t, 5>;

TEST(GraphSlots, ToggleGivesUpOrTakesTheFirstFreeOne) {
  const struct {
    Slots before;
    int channel;
    Slots after;
  } rows[] = {
      {{0, 1, 0, 0, 0}, 3, {0, 1, 3, 0, 0}},     // the first slot that is 0
      {{0, 1, 3, 0, 0}, 2, {0, 1, 3, 2, 0}},     //
      {{0, 1, 3, 2, 0}, 20, {0, 1, 3, 2, 20}},   // the last one
      {{0, 1, 3, 2, 20}, 3, {0, 1, 2, 20, 0}},   // given up, those behind move forward
      {{0, 1, 3, 2, 20}, 2, {0, 1, 3, 20, 0}},   //
      {{0, 1, 3, 2, 20}, 20, {0, 1, 3, 2, 0}},   // slot 4 becomes 0
      {{0, 1, 3, 0, 0}, 3, {0, 1, 0, 0, 0}},     //
      {{0, 1, 3, 2, 20}, 21, {0, 1, 3, 2, 20}},  // a fifth channel takes none
      {{0, 1, 0, 0, 0}, 1, {0, 1, 0, 0, 0}},     // channel 1 has its slot
  };
  const ClearedWorld world;
  for (const auto& row : rows) {
    display.GraphChannel = row.before;
    ToggleGraphSlot(row.channel);
    EXPECT_EQ(display.GraphChannel, row.after) << row.channel;
  }
}

TEST(GraphSlots, AreCountedAndSearchedWithoutTheFirst) {
  const ClearedWorld world;
  display.GraphChannel = {0, 1, 3, 22, 0};
  EXPECT_EQ(FilledSlots(), 2);
  EXPECT_TRUE(SlotHolds(22));
  EXPECT_FALSE(SlotHolds(1));
  EXPECT_FALSE(SlotHolds(2));
}

TEST(GraphSlots, KeepEachChannelOnceAndLeaveNoGap) {
  const struct {
    Slots before;
    Slots after;  // without channel 9
  } rows[] = {
      {{0, 1, 0, 3, 0}, {0, 1, 3, 0, 0}},
      {{0, 1, 3, 3, 2}, {0, 1, 3, 2, 0}},
      {{0, 1, 9, 3, 9}, {0, 1, 3, 0, 0}},
      {{0, 1, 4, 3, 2}, {0, 1, 4, 3, 2}},
  };
  const ClearedWorld world;
  for (const auto& row : rows) {
    display.GraphChannel = row.before;
    KeepGraphSlots([](int channel) { return channel != 9; });
    EXPECT_EQ(display.GraphChannel, row.after);
  }
}

}  // namespace
}  // namespace penlog
