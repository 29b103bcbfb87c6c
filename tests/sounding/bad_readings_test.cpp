// What can come in place of a reading while a sounding is recorded: each pass ends, no number that
// isn't finite gets into a reading, rows so far stand, and good readings are taken on behind it.

#include <cmath>
#include <functional>

#include "sounding/fake_cone.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"

namespace penlog {
namespace {

struct BadReadings : FakeCone {
  BadReadings() {
    CreateSoundingFiles();
    sounding.ConsoleMode = 2;
    sounding.NextRecordCount = 2;
    settings.DepthStepCounts = 2;
    ResetBoxes();
  }

  /// Passes until the link is up and a reading of the cone's own has been taken.
  void Recover() {
    for (int pass = 0; pass < 10 && cone.ConeLinkUp != -1; ++pass) MainloopPass();
    for (int pass = 0; pass < 2; ++pass) MainloopPass();
  }
  void RecordARow() {
    EncoderDown(2);
    MainloopPass();
  }
};

struct BadReading {
  const char* what;
  std::string reply;
};

TEST(BadReading, OfAnyKindLeavesTheConsoleAliveAndTheRowsWhole) {
  const BadReading rows[] = {
      {"nothing but a line end", ""},
      {"blanks", "      "},
      {"one field of three", "1.5"},
      {"half a field", "1.5 2."},
      {"fifty fields", std::string(100, ' ') + "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 "
                                               "20 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35"},
      {"letters", "ABC DEF GHI"},
      {"end of range", "+? -? +?"},
      {"too large", "1E999 -1E999 1E40"},
      {"not a number", "nan inf -inf"},
      {"signs", "--1 +-2 .-3"},
      {"a number of a thousand digits", std::string(1000, '9') + " 2 3"},
      {"zero bytes", std::string("1\0.5 \0\0 3", 9)},
      {"bytes 255", std::string(60, '\xff')},
      {"a line end inside", "1.5 2.5\r3.5"},
      {"another reply behind it", "1.5 2.5 3.5\r\n1.5 2.5 3.5"},
      {"a megabyte", std::string(1 << 20, '7')},
      {"a megabyte of fields", [] {
         std::string fields;
         while (fields.size() < 1 << 20) fields += "1.5 ";
         return fields;
       }()}};
  for (const auto& row : rows) {
    BadReadings bad;
    session.ReadingsAveraged = 2;
    bad.RecordARow();
    ASSERT_EQ(sounding.RowCount, 1);
    const std::string before = bad.disk.Read("/data/TemporaryData.txt");
    bad.readings = {row.reply, row.reply};
    MainloopPass();
    MainloopPass();
    for (int channel = 1; channel <= 22; ++channel) {
      if (channel == 19) continue;  // this cone has no tilts
      EXPECT_TRUE(std::isfinite(sounding.Readings(channel))) << row.what << " " << channel;
    }
    bad.RecordARow();
    bad.Recover();
    EXPECT_EQ(cone.ConeLinkUp, -1) << row.what;
    EXPECT_EQ(sounding.RowCount, 2) << row.what;
    EXPECT_EQ(bad.disk.Read("/data/TemporaryData.txt").substr(0, before.size()), before);
    EXPECT_NEAR(sounding.Readings(1), 1.0f, 0.2f) << row.what << ": good readings again";
    EXPECT_LE(OpenBoxes().size(), 1u) << row.what;
    EXPECT_EQ(sounding.ConsoleMode, 2);
  }
}

TEST(BadReading, ThatIsDamagedForeverKeepsTheLastReadingsAndTheConsoleAlive) {
  BadReadings bad;
  MainloopPass();
  const float last = sounding.Readings(1);
  for (int i = 0; i < 40; ++i) bad.readings.push_back("9.5 9.5\r9.5");
  for (int pass = 0; pass < 3; ++pass) {
    bad.EncoderDown(2);
    MainloopPass();
  }
  EXPECT_EQ(sounding.Readings(1), last);
  EXPECT_EQ(sounding.RowCount, 3) << "depth is recorded on";
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, 0.06f);
}

TEST(BadReading, OfALineThatChattersLosesTheLinkAndTheConeIsFoundAgain) {
  BadReadings bad;
  bad.RecordARow();
  std::function<void()> chatter = [&] {
    bad.ports.Wire(Console::kConePort).Send("~");
    PostCall(Now() + 200 * kMillisecond, &chatter, chatter);
  };
  bad.silent = true;
  chatter();
  MainloopPass();
  EXPECT_EQ(cone.ConeLinkUp, 0);
  EXPECT_EQ(Main.lblCommError.Caption, "COMM ERR: timeout 1");
  EXPECT_TRUE(frmWarning.frmModuleWarning.Visible);
  DropCalls(&chatter);
  bad.silent = false;
  bad.Recover();
  EXPECT_EQ(cone.ConeLinkUp, -1);
  EXPECT_FALSE(frmWarning.frmModuleWarning.Visible);
  bad.RecordARow();
  EXPECT_EQ(sounding.RowCount, 2);
}

}  // namespace
}  // namespace penlog
