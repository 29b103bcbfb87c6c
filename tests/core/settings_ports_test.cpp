// The numbers of ports that were changed under a running console, kept in the settings file.
#include <gtest/gtest.h>

#include "core/settings_file.h"
#include "platform/runtime_fault.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

struct PortNumbers : SettingsWorld {
  PortNumbers() {
    settings.TruckInterfaceSerialPort = 21;
    settings.ASCIIOutSerialPort = 22;
    settings.VideoOverlaySerialPort = 0;
    settings.ConeSerialPort = 99;  // of a scan: not to be kept
    settings.DualAxisSeismic = 2;  // settled by the cone in use: not to be kept
  }
};

std::vector<std::string> SampleWithPorts() {
  auto values = SampleValues();
  values[41] = "21";
  values[54] = "22";
  values[55] = "0";
  return values;
}

TEST(SavedPorts, ChangeTheirThreeLinesAndNothingElse) {
  for (const std::size_t layout : {62U, 61U, 56U}) {
    PortNumbers world;
    world.PutSetup(Lines(SampleValues(), layout));
    SavePortNumbers();
    EXPECT_EQ(world.Setup(), Lines(SampleWithPorts(), layout)) << layout;
  }
}

TEST(SavedPorts, OfATruckInterfaceOnTheConesOldNumberTakeTheConesNewOneWithThem) {
  struct Case {
    int truck;
    int cone;
    const char* truck_saved;
    const char* cone_saved;
  };
  // The file has the cone on 3. On one port the two stay together, which line 41 tells already.
  for (const Case& row : {Case{3, 4, "3", "4"}, Case{3, 3, "3", "3"}, Case{9, 4, "9", "3"}}) {
    PortNumbers world;
    settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(row.truck);
    settings.ConeSerialPort = static_cast<std::int16_t>(row.cone);
    world.PutSetup(Lines(SampleValues(), 62));
    SavePortNumbers();
    EXPECT_EQ(SetupLine(world.Setup(), 42), row.truck_saved) << row.truck;
    EXPECT_EQ(SetupLine(world.Setup(), 41), row.cone_saved) << row.truck;
  }
}

TEST(SavedPorts, KeepLineEndsOfEitherKind) {
  PortNumbers world;
  std::string text = Lines(SampleValues(), 62);
  std::erase(text, '\r');
  world.PutSetup(text);
  SavePortNumbers();
  std::string expected = Lines(SampleWithPorts(), 62);
  std::erase(expected, '\r');
  EXPECT_EQ(world.Setup(), expected);
}

TEST(SavedPorts, LeaveAFileAloneThatHasNoSuchLines) {
  PortNumbers world;
  world.PutSetup(Lines(SampleValues(), 40));
  SavePortNumbers();
  EXPECT_EQ(world.Setup(), Lines(SampleValues(), 40));
}

TEST(SavedPorts, LeaveADamagedFileAloneAndMakeNone) {
  PortNumbers world;
  SavePortNumbers();
  EXPECT_TRUE(world.disk.Files().empty());
  world.PutSetup(Lines(SampleValues(), 62));
  settings.SettingsDamaged = kTrue;
  SavePortNumbers();
  EXPECT_EQ(world.Setup(), Lines(SampleValues(), 62));
}

TEST(SavedPorts, ThatTheDiskRefusesAreTold) {
  PortNumbers world;
  world.PutSetup(Lines(SampleValues(), 62));
  world.disk.before = [](std::string_view work, const std::string& path) {
    if (work == "write") throw RuntimeFault(path + ": no room");
  };
  SavePortNumbers();
  world.disk.before = nullptr;
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_EQ(world.boxes.texts[0].find("THE PORT NUMBERS COULD NOT BE SAVED.  "), 0U);
  EXPECT_EQ(world.Setup(), Lines(SampleValues(), 62));
}

}  // namespace
}  // namespace penlog
