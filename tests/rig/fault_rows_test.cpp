#include "rig/fault_rows.h"

#include <set>

#include "rig/rig_world.h"

namespace penlog {
namespace {

struct FaultWorld : RigWorld {
  explicit FaultWorld(const char* setup = "dcs") : RigWorld(setup) {
    rig.on_renumber = [this](RigWire which, int number) {
      (which == RigWire::Cone ? numbers.cone : numbers.truck) = number;
    };
  }

  RigState State() const { return StateOf(rig, watch, numbers, RigNumbers{3, 4}); }

  /// Switches the row as the window does.
  void Switch(const FaultRow& row) { Do(FaultOrder(row, State())); }

  ConsoleWatch watch;
  RigNumbers numbers{3, 4};
};

TEST(FaultRows, NameEveryFaultOfTheRig) {
  for (const bool shared : {false, true}) {
    std::set<FaultName> names;
    std::set<std::string> texts;
    for (const FaultRow& row : FaultRows(shared)) {
      names.insert(row.name);
      texts.insert(FaultRowText(row));
      EXPECT_EQ(FaultRowText(row).find(FaultText(row.name)), 0u);
      EXPECT_FALSE(FaultRowHint(row).empty());
    }
    EXPECT_EQ(names.size(), static_cast<std::size_t>(kFaultCount));
    EXPECT_EQ(texts.size(), shared ? 10u : 12u) << "each text once; of a shared port none twice";
  }
}

TEST(FaultRows, EachIsSwitchedOnAndOffByItsOrders) {
  for (const FaultRow& row : FaultRows(false)) {
    if (row.name == FaultName::EdgeBurst) continue;
    SCOPED_TRACE(FaultRowText(row));
    FaultWorld world;
    EXPECT_FALSE(FaultIsOn(row, world.State()));
    world.Switch(row);
    World::RunFor(2 * kSecond);
    EXPECT_TRUE(FaultIsOn(row, world.State()));
    for (const FaultRow& other : FaultRows(false)) {
      if (FaultRowText(other) != FaultRowText(row)) {
        EXPECT_FALSE(FaultIsOn(other, world.State())) << FaultRowText(other);
      }
    }
    world.Switch(row);
    World::RunFor(2 * kSecond);
    EXPECT_FALSE(FaultIsOn(row, world.State()));
  }
}

TEST(FaultRows, EdgeBurstStrikesAtOnceAndIsNeverOn) {
  FaultWorld world;
  const FaultRow row{FaultName::EdgeBurst, std::nullopt};
  const std::size_t before = world.edges.size();
  world.Switch(row);
  EXPECT_FALSE(FaultIsOn(row, world.State()));
  World::RunFor(kSecond);
  EXPECT_EQ(world.edges.size() - before, 20u);
}

TEST(FaultRows, OneThatStrikesOnceIsOffAfterwards) {
  FaultWorld world;
  const FaultRow row{FaultName::EdgeLost, std::nullopt};
  world.Switch(row);
  EXPECT_TRUE(FaultIsOn(row, world.State()));
  world.Do("push 0.01");
  world.RunUntilStanding();
  EXPECT_FALSE(FaultIsOn(row, world.State()));
}

TEST(FaultRows, ReplugTakesANumberThatNoPortHas) {
  FaultWorld world;
  const FaultRow cone{FaultName::Replugged, RigWire::Cone};
  const FaultRow truck{FaultName::Replugged, RigWire::Truck};
  EXPECT_EQ(FaultOrder(cone, world.State()), "fault replugged cone 5");
  world.Switch(cone);
  EXPECT_FALSE(FaultCanSwitch(cone, world.State())) << "it is out for a second";
  World::RunFor(2 * kSecond);
  EXPECT_TRUE(FaultCanSwitch(cone, world.State()));
  EXPECT_EQ(world.numbers.cone, 5);
  EXPECT_EQ(FaultOrder(truck, world.State()), "fault replugged truck 6");
  EXPECT_EQ(FaultOrder(cone, world.State()), "fault replugged cone 3");
}

TEST(FaultRows, FreeNumberPassesOverThoseOfTheStart) {
  RigState state;
  state.cone = {true, true, 3, 5};
  state.truck = {true, true, 7, 6};
  EXPECT_EQ(FreeNumber(state), 8);
}

TEST(FaultRows, WithASharedPortTheConesWireIsTheOnlyOne) {
  FaultWorld world("dcs-shared");
  const FaultRow row{FaultName::Unplugged, RigWire::Cone};
  world.Switch(row);
  EXPECT_FALSE(world.State().Wire(RigWire::Truck).present);
}

}  // namespace
}  // namespace penlog
