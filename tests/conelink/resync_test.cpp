#include "conelink/resync.h"

#include <gtest/gtest.h>

#include "conelink/link_world.h"
#include "conelink/other_cone.h"
#include "platform/boxes.h"
#include "sounding/held_rows.h"

namespace penlog {
namespace {

class Resync : public ::testing::Test {
 protected:
  Resync() {
    settings.ConeSerialPort = settings.TruckInterfaceSerialPort = 3;
    cone.ConeId = "DCS0001";
    cone.ChannelSelectCommand = "Z TF";
    LinkWorld::Open(Main.ConeComm, 3);
    far.On("Y", "COPYRIGHT V3.20\r\n");
    far.On("X", "OK\r\n");
    far.On("C 3 7", "DSE0042\r\n");
    far.On("Z TF", "\r\n");
    far.On("D", " 1.234567 2.345678\r\n");
  }

  LinkWorld world;
  ScriptedCone far{world.ports.Wire(3)};
};

TEST_F(Resync, WakesSelectsTwiceAndReadsUntilTwoReadingsDiffer) {
  far.Once("D", " 1.234567 2.345678\r\n");
  far.Once("D", " 1.234568 2.345678\r\n");
  ResyncConeData();
  EXPECT_EQ(far.heard,
            (std::vector<std::string>{"Y", "X", "X", "C 3 7", "Z TF", "Z TF", "D", "D"}));
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  EXPECT_EQ(cone.ConeId, "DSE0042");
  EXPECT_EQ(Main.lblCommError.Caption, "");
}

TEST_F(Resync, PausesStandBetweenTheCommands) {
  far.Once("D", "1 2 3 4 5\r\n");
  ResyncConeData();
  const std::vector<int> pauses = {1, 1, 1, 3, 2, 2, 2};  // before each command from the second
  for (std::size_t i = 0; i < pauses.size(); ++i) {
    const Micros gap = far.heard_at[i + 1] - far.heard_at[i];
    EXPECT_EQ(gap, (1 + 2 * pauses[i]) * kTick) << far.heard[i + 1];  // one for the reply's tail
  }
}

TEST_F(Resync, RepeatedReadingsGoRoundAgainAndSaySo) {
  for (int i = 0; i < 5; ++i) far.Once("D", " 1.234567 2.345678\r\n");
  far.Once("D", " 9.234567 2.345678\r\n");
  ResyncConeData();
  EXPECT_EQ(far.Count("D"), 6);
  EXPECT_EQ(far.Count("Y"), 3);
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: duplicate");
}

TEST_F(Resync, OnlyTheFirst15CharactersAreCompared) {
  far.Once("D", " 1.234567 2.3456 7\r\n");
  far.Once("D", " 1.234567 2.3456 8\r\n");
  far.Once("D", " 1.234567 2.3 1\r\n");
  far.Once("D", " 1.234567 2.4 1\r\n");
  ResyncConeData();
  EXPECT_EQ(far.Count("D"), 4);
}

TEST_F(Resync, SecondReadingOfFewerThanSixCharactersEndsIt) {
  const struct {
    std::string reply;
    int readings;
  } rows[] = {{"?\r\n", 2}, {"1234\r\n", 2}};
  for (const auto& row : rows) {
    far.heard.clear();
    far.On("D", row.reply);
    ResyncConeData();
    EXPECT_EQ(far.Count("D"), row.readings) << row.reply;
  }
  far.heard.clear();
  far.Once("D", "12345\r\n");  // six with the blank behind it
  far.Once("D", "12345\r\n");
  far.On("D", "1\r\n");
  ResyncConeData();
  EXPECT_EQ(far.Count("D"), 4);
}

TEST_F(Resync, SilentConeEndsWithTheLinkDown) {
  far.silent = true;
  cone.ConeLinkUp = kTrue;
  ResyncConeData();
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_EQ(far.Count("C 3 7"), 0);
  EXPECT_EQ(far.Count("Z TF"), 0);
  EXPECT_EQ(far.Count("D"), 2);
}

TEST_F(Resync, NumberThatGetsLostLeavesTheOldOne) {
  far.On("C 3 7", "");
  far.Once("D", "1 2 3 4 5\r\n");
  ResyncConeData();
  EXPECT_EQ(cone.ConeId, "DCS0001");
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
}

TEST_F(Resync, HalfOfANumberLeavesTheOldOne) {
  far.On("C 3 7", "DSE");
  far.Once("D", "1 2 3 4 5\r\n");
  ResyncConeData();
  EXPECT_EQ(cone.ConeId, "DCS0001");
}

TEST_F(Resync, AnotherConeThanTheOneThatWasReadIsToldOnceAndSoIsItsReturn) {
  cone.ConeId = "DCS0001";
  NoteKnownCone();
  Main.lblCommStatus.Caption = "Cone # DCS0001 Found";
  const struct {
    std::string answers;
    std::string told;  // begins so; empty: no box
    std::string shown;
  } rows[] = {
      {"DCS0001", "", "Cone # DCS0001 Found"},
      {"DCS0002", "ANOTHER CONE ANSWERS: #DCS0002 IN PLACE OF #DCS0001.", "Cone # DCS0002 Found"},
      {"DCS0002", "", "Cone # DCS0002 Found"},
      {"DSE0042", "ANOTHER CONE ANSWERS: #DSE0042 IN PLACE OF #DCS0001.", "Cone # DSE0042 Found"},
      {"DCS0001", "CONE #DCS0001 IS BACK.", "Cone # DCS0001 Found"},
      {"DCS0001", "", "Cone # DCS0001 Found"},
      {"DCS0002", "ANOTHER CONE ANSWERS: #DCS0002 IN PLACE OF #DCS0001.", "Cone # DCS0002 Found"},
  };
  Main.cmdStart.Caption = "STOP";
  for (const auto& row : rows) {
    SCOPED_TRACE(row.answers);
    far.On("C 3 7", row.answers + "\r\n");
    far.Once("D", "1 2 3 4 5\r\n");
    ResyncConeData();
    EXPECT_EQ(cone.ConeId, row.answers);
    EXPECT_EQ(Main.lblCommStatus.Caption, row.shown);
    ASSERT_EQ(OpenBoxes().size(), row.told.empty() ? 0U : 1U);
    const std::string told = row.told.empty() ? "" : OpenBoxes()[0].text;
    EXPECT_EQ(told.find(row.told), 0U) << told;
    ResetBoxes();
  }
}

TEST_F(Resync, AnotherNumberIsBelievedWhenItWasGivenTwice) {
  NoteKnownCone();
  far.Once("C 3 7", "DCS0O01\r\n");
  far.On("C 3 7", "DCS0001\r\n");
  far.Once("D", "1 2 3 4 5\r\n");
  ResyncConeData();
  EXPECT_EQ(far.Count("C 3 7"), 2);
  EXPECT_EQ(cone.ConeId, "DCS0001");
  EXPECT_FALSE(IsOtherCone());
  EXPECT_TRUE(OpenBoxes().empty());
}

TEST_F(Resync, BlanksAreNoOtherCone) {
  NoteKnownCone();
  far.On("C 3 7", "   \r\n");
  far.Once("D", "1 2 3 4 5\r\n");
  ResyncConeData();
  EXPECT_FALSE(IsOtherCone());
  EXPECT_TRUE(OpenBoxes().empty());
}

TEST_F(Resync, BeforeTheStartAnotherConeIsToldWithTheWayOut) {
  NoteKnownCone();
  Main.cmdStart.Caption = "START";
  far.On("C 3 7", "DCS0002\r\n");
  far.Once("D", "1 2 3 4 5\r\n");
  ResyncConeData();
  EXPECT_TRUE(IsOtherCone());
  EXPECT_EQ(RecordedConeNumber(), "DCS0001");
  ASSERT_EQ(OpenBoxes().size(), 1U);
  EXPECT_NE(OpenBoxes()[0].text.find("EXIT AND START WITH THE OTHER ONE"), std::string::npos);
}

TEST_F(Resync, CharactersOfAReadingAreBytesWhateverTheyHold) {
  const std::string same = std::string(12, '\x81') + "1 2";
  far.Once("D", same + "3\r\n");
  far.Once("D", same + "4\r\n");
  far.On("D", "1\r\n");
  ResyncConeData();
  EXPECT_EQ(far.Count("D"), 4) << "the first 15 are equal";
}

TEST_F(Resync, HidesTheStopDialogAndStartsTheSettlingOfTheQuitsAnew) {
  Main.frmLocalWarning.Visible = true;
  sounding.QuitSettleCount = 10;
  far.Once("D", "1 2 3 4 5\r\n");
  ResyncConeData();
  EXPECT_FALSE(Main.frmLocalWarning.Visible);
  EXPECT_EQ(sounding.QuitSettleCount, 0);
}

TEST_F(Resync, FrozenConeKeepsTheConsoleAliveForHours) {
  int ticks = 0;
  Main.Timer1.OnTick = [&ticks] {
    CountCommTick(Main.CommTick);
    ++ticks;
  };
  PostCall(Now() + 2 * 3600 * kSecond, this, [this] { far.On("D", "1\r\n"); });
  ResyncConeData();
  EXPECT_GE(ticks, 2 * 3600 * 1000 / 55 - 1);
}

TEST_F(Resync, FrozenConeKeepsNeitherRowsInMemoryNorANewPortWaiting) {
  session.SoundingFiles[kTemporaryFile] = "/data/TemporaryData.txt";
  StartFile(kTemporaryFile, "");
  world.disk.Put("/data/TemporaryData.txt", "");
  world.disk.SetRoom(0);
  EXPECT_FALSE(AppendOrHold(kTemporaryFile, "a row\r\n"));
  ResetBoxes();
  world.disk.SetRoom(-1);
  sounding.HeldRetrySecond = -1;
  sounding.ASCIIPortRequest = {kTrue, 7};
  std::int32_t held = -1;
  std::int16_t requested = kTrue;
  PostCall(Now() + 60 * kSecond, this, [&] {
    held = LinesHeld(kTemporaryFile);
    requested = sounding.ASCIIPortRequest.Requested;
    far.On("D", "1\r\n");
  });
  ResyncConeData();
  EXPECT_EQ(held, 0);
  EXPECT_EQ(requested, 0);
  EXPECT_EQ(settings.ASCIIOutSerialPort, 7);
}

}  // namespace
}  // namespace penlog
