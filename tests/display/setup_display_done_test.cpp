// Leaving the display setup by DONE: what is asked, written and started.
#include "display/setup_display_world.h"
#include "platform/texts.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr const char* kParameters = "/data/Last Sounding Parameters.txt";
constexpr const char* kNoPorePressure =
    "PP channel is not selected for recording. Even when no filter is present, PP should be "
    "recorded for troubleshooting purposes. Are you sure you don't want to record PP?";

class SetupDisplayDone : public SetupDisplayTest {
 protected:
  SetupDisplayDone() {
    world.ports.Wire(3);
    world.ports.Wire(4);
  }

  /// Presses DONE; true if the console's loop was entered. The loop never returns: the program's
  /// end takes it down.
  bool Done() {
    sounding.ManualClampState = 0;  // the loop's entry sets it to 1
    bool entered = false;
    PostCall(Now() + 200 * kMillisecond, this, [&] {
      RequestEnd();
      entered = sounding.ManualClampState == 1 && Main.ConeComm.PortOpen();
      graphs_laid_out = entered && Main.pctGraph(display.GraphCount).Visible;
    });
    try {
      Press(SetupDisplay.cmdDone);
      World::RunFor(kSecond);
      ADD_FAILURE() << "the program did not end";
    } catch (const ProgramEnd&) {
    }
    return entered;
  }

  bool graphs_laid_out = false;
};

TEST_F(SetupDisplayDone, ShowsTheConsoleAndEntersItsLoop) {
  display.GraphChannel = {0, 1, 3, 0, 0};
  Open();
  EXPECT_TRUE(Done());
  EXPECT_TRUE(Main.Visible);
  EXPECT_FALSE(SetupDisplay.Loaded);
  EXPECT_TRUE(graphs_laid_out);
}

TEST_F(SetupDisplayDone, CountsTheFirstGraphToo) {
  const struct {
    Slots slots;
    int count;
  } rows[] = {{{0, 1, 0, 0, 0}, 1}, {{0, 1, 3, 0, 0}, 2}, {{0, 1, 3, 2, 20}, 4}};
  for (const auto& row : rows) {
    display.GraphChannel = row.slots;
    Open();
    EXPECT_TRUE(Done());
    EXPECT_EQ(display.GraphCount, row.count);
    ForgetEnd();
    Unload(Main);
  }
}

TEST_F(SetupDisplayDone, AsksOnlyWithoutPorePressureAndStaysOnNo) {
  Open();
  Tick(Record(3), false);
  boxes.answers = {BoxAnswer::No};
  EXPECT_FALSE(Done());
  EXPECT_EQ(boxes.texts, (std::vector<std::string>{kNoPorePressure}));
  EXPECT_TRUE(SetupDisplay.Visible);
  EXPECT_FALSE(Main.Visible);
  EXPECT_FALSE(world.disk.FileExists(kParameters));
  EXPECT_EQ(channels.RecordMode(3), 1);
}

TEST_F(SetupDisplayDone, GoesOnWithoutPorePressureOnYes) {
  Open();
  Tick(Record(3), false);
  boxes.answers = {BoxAnswer::Yes};
  EXPECT_TRUE(Done());
  EXPECT_EQ(boxes.texts.front(), kNoPorePressure);
  EXPECT_EQ(channels.RecordMode(3), 0);
}

TEST_F(SetupDisplayDone, WithPorePressureAsksNothing) {
  Open();
  EXPECT_TRUE(Done());
  EXPECT_TRUE(boxes.texts.empty()) << boxes.texts.front();
}

TEST_F(SetupDisplayDone, WithoutAnyChannelIsRefused) {
  Open();
  for (int channel = 1; channel <= 7; ++channel) Tick(Record(channel), false);
  EXPECT_FALSE(Done());
  EXPECT_EQ(boxes.texts, (std::vector<std::string>{"At least one channel must be selected."}));
  EXPECT_TRUE(SetupDisplay.Visible);
}

TEST_F(SetupDisplayDone, RemembersTheFieldsTheChoicesAndTheGraphs) {
  session.LastDirectory = "/soundings/today";
  session.LastDrive = "/";
  session.SoundingName = "SITE(007)";
  session.OperatorName = "Anna";
  session.SoundingLocation = "Harbour";
  session.JobNumber = "J1";
  session.HoleNumber = "H2";
  session.HeaderNote = "head";
  session.FooterNote1 = "foot 1";
  session.FooterNote2 = "foot 2";
  channels.RecordMode(1) = 2;
  channels.RecordMode(22) = 2;
  display.GraphChannel = {0, 1, 3, 20, 0};
  world.disk.Put(kParameters, "of the sounding before");
  Open();
  Tick(Record(2), false);
  EXPECT_TRUE(Done());
  std::string expected =
      "/soundings/today\r\n/\r\nSITE(007)\r\nDCS0123\r\nAnna\r\nHarbour\r\nJ1\r\nH2\r\nhead\r\n"
      "foot 1\r\nfoot 2\r\n 2 \r\n 0 \r\n";
  for (int channel = 3; channel <= 7; ++channel) expected += " 1 \r\n";
  for (int channel = 8; channel <= 18; ++channel) expected += " 0 \r\n";
  expected += " 0 \r\n 2 \r\n";  // 21 and 22
  for (int channel = 23; channel <= 30; ++channel) expected += " 0 \r\n";
  EXPECT_EQ(world.disk.Read(kParameters), expected + " 1 \r\n 3 \r\n 20 \r\n 0 \r\n");
}

TEST_F(SetupDisplayDone, RecordModesFollowTheBoxes) {
  channels.RecordMode(1) = 2;
  channels.RecordMode(4) = 3;
  channels.RecordMode(19) = 3;  // 19 and 20 have no choice
  channels.RecordMode(20) = 1;
  channels.RecordMode(21) = 1;
  Open();
  Tick(Record(2), false);
  EXPECT_TRUE(Done());
  const std::pair<int, int> expected[] = {{1, 2},  {2, 0},  {3, 1}, {4, 0},
                                          {19, 3}, {20, 1}, {21, 0}};
  for (const auto& [channel, mode] : expected) EXPECT_EQ(channels.RecordMode(channel), mode);
}

TEST_F(SetupDisplayDone, DelayRowsAreTheLargestOfTheRecordedChannels) {
  const struct {
    std::int16_t always, ticked, unticked, nineteen, expected;
  } rows[] = {{4, 2, 9, 0, 4}, {2, 5, 9, 0, 5}, {0, 0, 9, 0, 0}, {1, 1, 0, 8, 1}};
  for (const auto& row : rows) {
    channels.RecordMode(1) = 2;
    channels.RecordMode(2) = 1;
    channels.RecordMode(5) = 0;
    channels.RecordMode(19) = 2;
    channels.ChannelDelayRows(1) = row.always;
    channels.ChannelDelayRows(2) = row.ticked;
    channels.ChannelDelayRows(5) = row.unticked;
    channels.ChannelDelayRows(19) = row.nineteen;
    cone.DelayRows = 30;  // what the channel list left: all channels counted
    Open();
    EXPECT_TRUE(Done());
    EXPECT_EQ(cone.DelayRows, row.expected);
    ForgetEnd();
    Unload(Main);
  }
}

TEST_F(SetupDisplayDone, GoesOnWhenTheParametersCannotBeSaved) {
  world.disk.SetReadOnly("/data");
  Open();
  Tick(Record(2), false);
  EXPECT_TRUE(Done());
  ASSERT_FALSE(boxes.texts.empty());
  EXPECT_TRUE(StartsWith(boxes.texts.front(), "LAST SOUNDING PARAMETERS COULD NOT BE SAVED: "));
  EXPECT_EQ(channels.RecordMode(2), 0);
}

}  // namespace
}  // namespace penlog
