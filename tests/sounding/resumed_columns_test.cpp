// What a resumed sounding records: its columns, the form, tip and sign of its file.
#include <gtest/gtest.h>

#include <optional>

#include "sounding/found_cpt.h"
#include "sounding/resumed_world.h"
#include "sounding/sounding_end.h"

namespace penlog {
namespace {

TEST(TakeUp, TheColumnsSayWhatIsRecordedAndTheGraphsWhatIsDrawn) {
  TakenUp taken;
  Console::AddChannel(6);
  Console::AddChannel(20);
  channels.RecordMode(6) = 2;
  display.GraphChannel = {0, 1, 20, 6, 0};
  TextLines lines = StoredLines(kRows);
  lines[14] = "3,23,2";
  taken.disk.Put(kTemporary, JoinedLines(lines));
  taken.TakeUp();
  for (const int channel : {1, 2, 3}) EXPECT_EQ(channels.RecordMode(channel), 1);
  EXPECT_EQ(channels.RecordMode(6), 0) << "no column: it would shift those behind it";
  EXPECT_EQ(channels.RecordMode(20), 1) << "not a column at any time";
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 3, 2, 0}))
      << "23 is not there; no gap stays";
  EXPECT_EQ(display.GraphCount, 3);
}

TEST(TakeUp, TheDelayIsFormedFromTheRecordedColumnsAlone) {
  TakenUp taken;
  Console::AddChannel(6);
  channels.ChannelDelayRows(6) = 40;
  taken.TakeUp();
  EXPECT_EQ(cone.DelayRows, kLag);
}

TEST(TakeUp, AChannelThatIsMissingNowKeepsItsColumnAndItsDelay) {
  struct Case {
    int channel;
    int delay;
  };
  for (const Case& row : {Case{2, kLag}, Case{3, 1}}) {
    for (const int stands : {kAligned, kAligned - 1, 5}) {
      SCOPED_TRACE(row.channel * 100 + stands);
      TakenUp taken;
      taken.disk.Put(kCpt, Head(true) + CptRows(stands));
      taken.ReadBack();
      channels.ChannelPresent(row.channel) = 0;
      channels.ChannelDelayRows(row.channel) = 0;  // its record was not read
      TakeUpSounding();
      ASSERT_FALSE(taken.boxes.texts.empty());
      EXPECT_EQ(taken.boxes.texts[0],
                "RECORDED CHANNELS ARE MISSING NOW.  THEIR COLUMNS STAY IN THE FILE, AND NEW ROWS "
                "HOLD -32768 THERE: " +
                    std::to_string(row.channel) + " (Channel " + std::to_string(row.channel) + ")");
      EXPECT_EQ(taken.File(kCpt), WholeCpt());
      EXPECT_EQ(channels.ChannelDelayRows(row.channel), row.delay);
      EXPECT_EQ(cone.DelayRows, kLag);
      for (int i = 0; i < 6; ++i) TakenUp::Row();
      std::string expected = WholeCpt();
      for (int n = kAligned + 1; n <= kAligned + 6; ++n) {
        std::string line = CptRow(n);
        const auto at = 13 + 20 * static_cast<std::size_t>(row.channel - 1);
        if (n + row.delay > kRows) line.replace(at, 20, StoredField("-32768"));
        expected += line;
      }
      EXPECT_EQ(taken.File(kCpt), expected);
      const std::string temporary = taken.File(kTemporary);
      EXPECT_NE(temporary.find(StoredField("-32768"), temporary.size() - 80), std::string::npos);
    }
  }
}

TEST(TakeUp, AMissingChannelKeepsItsColumnInTheEndTooAndInANewHead) {
  TakenUp taken;
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  channels.ChannelPresent(3) = 0;
  TakeUpSounding();
  const std::string head = taken.File(kCpt).substr(0, Head(true).size());
  EXPECT_NE(head.find(Column({"1", "2", "3"})), std::string::npos);
  EXPECT_NE(head.find(Column({"0.25310", "0.29880", "0.50070"})), std::string::npos);
  sounding.CloseWithFinalBaseline = kTrue;
  sounding.Readings(3) = 7;
  EXPECT_TRUE(CloseSounding());
  const std::string cpt = taken.File(kCpt);
  const std::string last = cpt.substr(cpt.rfind('\n', cpt.size() - 2) + 1);
  EXPECT_EQ(last.size(), 13 + 3 * 20 + 2U);
  EXPECT_EQ(last.substr(13 + 40, 20), StoredField("-32768"));
}

TEST(TakeUp, ASecondTimeFindsTheEmptyColumnAgain) {
  TakenUp taken;
  taken.ReadBack();
  channels.ChannelPresent(2) = 0;
  TakeUpSounding();
  for (int i = 0; i < 6; ++i) TakenUp::Row();
  const std::string cpt = taken.File(kCpt);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), cpt);
  EXPECT_FALSE(taken.WasTold("MENDED"));
}

TEST(TakeUp, GoesOnInTheFormOfTheFile) {
  for (const bool new_form : {true, false}) {
    TakenUp taken;
    settings.DepthSignificantDigits = new_form ? 2 : 3;
    taken.disk.Put(kCpt, WholeCpt(new_form));
    taken.TakeUp();
    EXPECT_EQ(taken.boxes.texts,
              Texts{"THE SOUNDING FILE HAS ROWS OF THE " + std::string(new_form ? "NEW" : "OLD") +
                    " FORM, THE SETTINGS ASK FOR THE " + (new_form ? "OLD" : "NEW") +
                    " ONE.  THE FILE KEEPS ITS FORM."});
    TakenUp::Row();
    EXPECT_EQ(taken.File(kCpt), Head(new_form) + CptRows(kAligned + 1, new_form));
  }
}

TEST(TakeUp, TellsATipThatIsNotThatOfTheSettings) {
  for (const bool ball : {true, false}) {
    TakenUp taken;
    std::string cpt = WholeCpt();
    if (!ball) cpt.replace(cpt.find(StoredField("C1")), 20, StoredField("C1 BALL D mm  60"));
    settings.TipConfiguration = ball ? 1 : 0;
    settings.TipDiameter = ball ? 60 : 0;
    taken.disk.Put(kCpt, cpt);
    taken.TakeUp();
    EXPECT_EQ(taken.boxes.texts,
              Texts{ball ? "THE SOUNDING WAS BEGUN WITH THE TIP \"C1\", THE SETTINGS SAY \"C1 BALL "
                           "D mm  60\"."
                         : "THE SOUNDING WAS BEGUN WITH THE TIP \"C1 BALL D mm  60\", THE SETTINGS "
                           "SAY \"C1\"."});
    EXPECT_EQ(taken.File(kCpt), cpt);
  }
}

TEST(TakeUp, TheSameTipIsNotTold) {
  TakenUp taken;
  std::string cpt = WholeCpt();
  cpt.replace(cpt.find(StoredField("C1")), 20, StoredField("C1 BALL D mm  60"));
  settings.TipConfiguration = 1;
  settings.TipDiameter = 60;
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(TakeUp, GoesOnWithTheSignOfTheFileAndTheSettingsKeepTheirOwn) {
  for (const int sign : {1, -1}) {
    TakenUp taken;
    const std::string cpt = Head(true) + CptRows(kAligned, true, sign);
    settings.DepthFormat = sign == 1 ? 1 : 0;
    taken.disk.Put(kCpt, cpt);
    taken.ReadBack();
    session.ResumeDepthStatus = 1;
    TakeUpSounding();
    EXPECT_EQ(settings.DepthFormat, sign == 1 ? 0 : 1);
    EXPECT_EQ(sounding.CurrentDepth, 0.0F) << "at the surface, which is the start depth here";
    EXPECT_EQ(taken.boxes.texts.size(), 1U);
    EXPECT_TRUE(taken.WasTold(sign == 1 ? "BEGUN IN DEPTHS" : "BEGUN IN ELEVATIONS"));
    TakenUp::Row();
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 1, true, sign));
    ASSERT_EQ(replaced_settings.List.size(), 1U);
    EXPECT_EQ(replaced_settings.List[0].in_file,
              SettingValue(static_cast<std::int16_t>(sign == 1 ? 1 : 0)));
  }
}

TEST(TakeUp, FromTheSurfaceTheSignOfTheFileSaysWhereThatIs) {
  TextLines lines = StoredHeader();
  std::string cpt = Head(true);
  for (int n = 1; n <= 5; ++n) {
    const int mm = -5000 + 20 * n;  // 5 m above datum, counted downward
    lines.push_back(StoredRowLine(MetresOf(mm, 2), StoredSpeed(n),
                                  {StoredValue(1, n), StoredValue(2, n), StoredValue(3, n)}));
    std::string row = CptRow(n);
    if (n <= 2) cpt += row.replace(0, 7, Aligned(MetresOf(-mm, 3), 7));
  }
  TakenUp taken(JoinedLines(lines));
  settings.DepthFormat = 0;
  taken.disk.Put(kCpt, cpt);
  taken.ReadBack();
  session.ResumeDepthStatus = 1;
  TakeUpSounding();
  EXPECT_EQ(settings.DepthFormat, 1);
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, -5.0F);
  EXPECT_EQ(taken.File(kCpt), cpt);
}

TEST(TakeUp, TakesBaselinesThatTheRecoveryCopyLostFromTheHead) {
  struct Case {
    const char* what;
    int keeps_zero;
    bool present;
    float baseline;
  };
  for (const Case& row : {Case{"keeps its zero", 1, true, 0.2988F},
                          Case{"has that of the cone's record", 0, true, 0.31F},
                          Case{"has no record now", 0, false, 0.2988F}}) {
    SCOPED_TRACE(row.what);
    TextLines lines = StoredLines(kRows);
    lines[16] = StoredColumns({"0.25310", "x", "0.50070"});
    TakenUp taken(JoinedLines(lines));
    taken.ReadBack();
    channels.ChannelKeepZero(2) = static_cast<std::int16_t>(row.keeps_zero);
    channels.ChannelPresent(2) = row.present ? kTrue : kFalse;
    channels.Baselines(2) = 0.31F;
    TakeUpSounding();
    EXPECT_FLOAT_EQ(channels.Baselines(2), row.baseline);
    EXPECT_FLOAT_EQ(sounding.Rows(0, 2), 0.2988F) << "for a head that is written anew";
    EXPECT_FLOAT_EQ(channels.Baselines(3), 0.5007F);
  }
}

// The sign of the rows.

TEST(SignOfTheFile, IsToldByTheRowsThatAreNot0) {
  struct Case {
    const char* what;
    Texts stands;
    std::vector<float> stored;
    std::optional<bool> elevations;
  };
  const std::optional<bool> none;
  const Case cases[] = {
      {"depths", {"0.020", "0.040"}, {0.02F, 0.04F}, false},
      {"elevations", {"-0.020", "-0.040"}, {0.02F, 0.04F}, true},
      {"elevations above datum", {"4.980", "4.960"}, {-4.98F, -4.96F}, true},
      {"depths from 0 on", {"0.000", "0.020"}, {0.0F, 0.02F}, false},
      {"elevations from 0 on", {"0.000", "-0.020", "-0.040"}, {0.0F, 0.02F, 0.04F}, true},
      {"from 5 mm on, rounded", {"-0.005", "-0.025"}, {0.0F, 0.03F}, true},
      {"through datum", {"0.020", "0.000", "-0.020", "-0.040"}, {-0.02F, 0.0F, 0.02F, 0.04F}, true},
      {"a first row of something else", {"0.500", "-0.020", "-0.040"}, {0.0F, 0.02F, 0.04F}, true},
      {"a first row that is lost", {"-0.040", "-0.060"}, {0.02F, 0.04F}, true},
      {"a line that is none", {"deep", "-0.020"}, {0.0F, 0.02F}, true},
      {"0 alone", {"0.000"}, {0.0F}, none},
      {"rows that the file alone has", {"0.000", "-0.020"}, {0.0F}, none},
      {"no rows", {}, {0.02F}, none},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    Console console;
    FoundCpt found;
    found.has_head = true;
    found.form = CptForm::New;
    for (const std::string& depth : row.stands) {
      found.rows.push_back(Aligned(depth, 7) + "  2.00" + StoredField("1.0") + "\r\n");
    }
    for (const float depth : row.stored) sounding.Rows(++sounding.RowCount, 0) = depth;
    EXPECT_EQ(HoldsElevations(found), row.elevations);
    found.has_head = false;
    EXPECT_EQ(HoldsElevations(found), none);
  }
}

}  // namespace
}  // namespace penlog
