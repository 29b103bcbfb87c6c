#include "conelink/identification.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "conelink/link_world.h"
#include "conelink/memory_image.h"
#include "conelink/reply_order.h"
#include "core/settings_replaced.h"
#include "platform/runtime_fault.h"

namespace penlog {
namespace {

RecordImage Image(int number, const std::string& letter, int flags = 0, int millimetres = 0) {
  RecordImage image;
  image.number = number;
  image.letter = letter;
  image.flags = flags;
  image.millimetres = millimetres;
  return image;
}

class Identification : public ::testing::Test {
 protected:
  Identification() {
    settings.DepthStep = 0.02f;
    settings.CombinePPPlots = 1;
    LinkWorld::Open(StartUp.ConeComm, 3);
  }

  /// A cone with these records, one behind the other.
  void SetCone(const std::string& records, const std::string& id = "DCS0042") {
    far.SetUnit(HeaderImage(id) + records + EndOfList());
  }
  void SetModule(int m, const std::string& records, const std::string& number) {
    far.SetUnit(HeaderImage(number, 77, "M1") + records + EndOfList(), " " + std::to_string(m),
                "1.50");
  }
  /// Tip with area, sleeve that subtracts the tip with area, pore pressure.
  static std::string TipSleevePore() {
    return Image(1, "T", 2).Text() + Coded(1000, 3) +                                     //
           Image(2, "F", 3, 85).Text() + Coded(1, 1) + Decimal(9, 0) + Coded(15000, 3) +  //
           Image(3, "P", 0, 35).Text();
  }

  /// From command `first` on: two pauses behind the first three, which prove the unit, and one
  /// behind each other, the selection included. Each pause lasts two ticks.
  void ExpectPauses(std::size_t first) {
    far.heard_at.push_back(Now());
    for (std::size_t i = first; i < far.heard.size(); ++i) {
      const int pauses = i < first + 3 ? 2 : 1;
      EXPECT_EQ(far.heard_at[i + 1] - far.heard_at[i], pauses * 2 * kTick) << far.heard[i];
    }
    far.heard_at.pop_back();
  }

  LinkWorld world;
  ScriptedCone far{world.ports.Wire(3)};
};

TEST_F(Identification, ReadsBannerHeaderAndRecordsInOrder) {
  SetCone(TipSleevePore());
  ReadConeSettings();
  EXPECT_EQ(far.heard,
            (std::vector<std::string>{"Y", "X", "X", "C 1 2", "C 3 7", "C 10 6", "C 16 6", "C 22 3",
                                      "C 25 3", "C 28 3", "C 31 17", "C 48 3", "C 51 17", "C 68 5",
                                      "C 73 3", "C 76 17", "C 93 17", "Z TFP"}));
  EXPECT_EQ(cone.FirmwareVersion, 3.2f);
  EXPECT_EQ(cone.MemoryField1, "AB");
  EXPECT_EQ(cone.ConeId, "DCS0042");
  EXPECT_EQ(cone.CreationDate, "150119");
  EXPECT_EQ(cone.LastCalibrationDate, "200319");
  EXPECT_EQ(cone.DistancePushed, 1234);
  EXPECT_EQ(cone.MemorySize, 128);
  EXPECT_EQ(cone.ClockFrequency, 19200);
  EXPECT_EQ(cone.ChannelCount, 3);
  EXPECT_EQ(cone.DelayRows, 4);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_EQ(cone.ModulePresent[0], kTrue);
  EXPECT_EQ(StartUp.lblLoad.Caption, "Cone Found");
}

TEST_F(Identification, TakesAreaAndSubtractionOfTheRecords) {
  SetCone(TipSleevePore());
  ReadConeSettings();
  EXPECT_EQ(channels.ChannelArea(1), 1000);
  EXPECT_EQ(channels.ChannelHasArea(1), 1);
  EXPECT_EQ(channels.ChannelArea(2), 15000);
  EXPECT_EQ(channels.SubtractChannel(2), 1);
  EXPECT_EQ(channels.SubtractFactor(2), 2) << "9 over the tip's sensitivity of 4.5";
  EXPECT_EQ(channels.ChannelHasArea(3), 0);
}

TEST_F(Identification, SubtractionOfALaterRecordUsesThatRecordsSensitivity) {
  channels.ChannelSensitivity(5) = 1000;  // of an earlier cone
  RecordImage fifth = Image(5, "E");
  fifth.output_full = Decimal(35, 1);
  SetCone(Image(2, "F", 1).Text() + Coded(5, 1) + Decimal(6) + fifth.Text());
  ReadConeSettings();
  EXPECT_EQ(channels.SubtractFactor(2), 2);
}

TEST_F(Identification, PausesStandBehindEachCommand) {
  SetCone(TipSleevePore());
  ReadConeSettings();
  ExpectPauses(0);
}

TEST_F(Identification, SilentConeChangesNeitherModeNorLink) {
  far.silent = true;
  ReadConeSettings();
  EXPECT_EQ(far.heard, (std::vector<std::string>{"Y", "X", "X"}));
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_EQ(sounding.ConsoleMode, 0);
  EXPECT_EQ(cone.ModulePresent[0], kFalse);
  EXPECT_EQ(FrontBox(), nullptr);
}

TEST_F(Identification, OnlyTheSecondXCounts) {
  SetCone(TipSleevePore());
  far.Once("X", "");
  ReadConeSettings();
  EXPECT_EQ(cone.ConeLinkUp, kTrue);

  far.heard.clear();
  cone.ConeLinkUp = kFalse;
  far.Once("X", "OK\r\n");
  far.Once("X", "");
  ReadConeSettings();
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
}

TEST_F(Identification, FirmwareVersionIsFourCharactersBehindVInTheBanner) {
  const struct {
    std::string banner;
    float version;
  } rows[] = {{"COPYRIGHT 2009 V3.1 \r\n", 3.1f},
              {"A V2.75X\r\n", 2.75f},
              {"A V12.345\r\n", 12.3f},
              {"COPYRIGHT\r\n", 0},
              {"", 0},
              {"A V\r\n", 0}};
  SetCone("");
  for (const auto& row : rows) {
    far.On("Y", row.banner);
    ReadConeSettings();
    EXPECT_EQ(cone.FirmwareVersion, row.version) << row.banner;
  }
}

TEST_F(Identification, VersionsThatMakeNoSenseAreNumbersAllTheSame) {
  const struct {
    std::string banner;
    float version;
  } rows[] = {{"COPYRIGHT V9999\r\n", 9999},
              {"COPYRIGHT V9E99\r\n", std::numeric_limits<float>::max()},
              {"COPYRIGHT VERSION V3.1\r\n", 0},  // the first mark counts
              {"COPYRIGHT V-1.5\r\n", -1.5f},
              {"COPYRIGHT Vnan \r\n", 0},
              {std::string("COPYRIGHT V\0\xff\0\xff\r\n", 17), 0}};
  SetCone("");
  for (const auto& row : rows) {
    far.On("Y", row.banner);
    ReadConeSettings();
    EXPECT_EQ(cone.FirmwareVersion, row.version) << row.banner;
    EXPECT_EQ(cone.ConeLinkUp, kTrue);
  }
}

TEST_F(Identification, HeaderTextsHoldNoControlCharacters) {
  SetCone("", std::string("D\0S\n\x7f\xe9\"", 7));
  ReadConeSettings();
  EXPECT_EQ(cone.ConeId, "D S  \xc3\xa9\"");
}

TEST_F(Identification, HalfARecordIsTakenAsFarAsItGoes) {
  SetCone(TipSleevePore());
  far.On("C 31 17", "AT" + Decimal(500) + "\r\n");
  far.On("C 48 17", "@\r\n");
  std::string text;
  world.AnswerNextBox(text);
  ReadConeSettings();
  EXPECT_EQ(cone.ChannelCount, 1);
  EXPECT_EQ(channels.ChannelFullScale(1), 500);
  EXPECT_EQ(channels.ChannelFlags(1), "000000");
  EXPECT_EQ(text.substr(0, 24), "CHANNEL 1 HAS NO SPAN: I");
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
}

TEST_F(Identification, OldChannelsAreClearedButForTheComputedTwo) {
  for (int channel = 0; channel <= 30; ++channel) channels.ChannelPresent(channel) = kTrue;
  SetCone(TipSleevePore());
  ReadConeSettings();
  for (int channel = 0; channel <= 30; ++channel) {
    const bool stays = (channel >= 1 && channel <= 3) || channel == 19 || channel == 20;
    EXPECT_EQ(channels.ChannelPresent(channel), stays ? kTrue : kFalse) << channel;
  }
}

TEST_F(Identification, ChannelWithAFileAndNoRecordIsNotPresentApartFromNineteenAndTwenty) {
  for (const int channel : {4, 19, 20, 24}) channels.ChannelPresent(channel) = kTrue;
  SetCone(TipSleevePore());
  ReadConeSettings();
  EXPECT_EQ(channels.ChannelPresent(4), kFalse);
  EXPECT_EQ(channels.ChannelPresent(24), kFalse);
  EXPECT_EQ(channels.ChannelPresent(19), kTrue);
  EXPECT_EQ(channels.ChannelPresent(20), kTrue);
}

TEST_F(Identification, ChannelWithARecordAndNoFileIsPresentWithEmptyLabels) {
  SetCone(Image(12, "K").Text());
  ReadConeSettings();
  EXPECT_EQ(channels.ChannelPresent(12), kTrue);
  EXPECT_EQ(channels.ChannelLabel(0, 12), "");
  EXPECT_EQ(channels.ChannelLabel(1, 12), "");
}

TEST_F(Identification, RecordWithCode64EndsTheList) {
  SetCone(Image(1, "T").Text() + "@" + Image(2, "F").Text());
  ReadConeSettings();
  EXPECT_EQ(cone.ChannelCount, 1);
  EXPECT_EQ(channels.ChannelPresent(2), kFalse);
}

TEST_F(Identification, EmptyReplyToARecordEndsAModulesList) {
  SetCone(TipSleevePore());
  ReadConeSettings();
  SetModule(1, Image(10, "K").Text() + Image(11, "L").Text(), "MOD0001");
  far.On(" 1C 48 17", "");
  ReadModuleSettings(1);
  EXPECT_EQ(channels.ChannelPresent(10), kTrue);
  EXPECT_EQ(channels.ChannelPresent(11), kFalse);
  EXPECT_EQ(cone.ModulePresent[1], kTrue);
}

TEST_F(Identification, ConeWithoutChannel14LeavesItsFlagAtZero) {
  cone.Channel14Present = kTrue;
  SetCone(TipSleevePore());
  ReadConeSettings();
  EXPECT_EQ(cone.Channel14Present, kFalse);
}

TEST_F(Identification, AreaOfTheRecordIsKeptInCalibrationMode) {
  session.CalibrationMode = kTrue;
  SetCone(Image(1, "T", 2).Text() + Coded(500, 3) + Image(2, "F", 2).Text() + Coded(7500, 3));
  ReadConeSettings();
  EXPECT_EQ(channels.ChannelArea(1), 500);
  EXPECT_EQ(channels.ChannelArea(2), 7500);
}

TEST_F(Identification, MissingAreaIsFilledInCalibrationModeOnly) {
  for (const std::int16_t mode : {kTrue, kFalse}) {
    session.CalibrationMode = mode;
    SetCone(Image(1, "T").Text() + Image(2, "F").Text());
    ReadConeSettings();
    EXPECT_EQ(channels.ChannelArea(1), mode == kTrue ? 1000 : 0);
    EXPECT_EQ(channels.ChannelArea(2), mode == kTrue ? 15000 : 0);
  }
}

TEST_F(Identification, SleeveBeforeTheTipTakesTheRuleForAnythingElse) {
  session.CalibrationMode = kTrue;
  SetCone(Image(2, "F").Text() + Image(1, "T").Text());
  ReadConeSettings();
  EXPECT_EQ(channels.ChannelArea(2), 22500) << "record by record";
}

TEST_F(Identification, SelectionWithoutChannelsIsStillSent) {
  SetCone("");
  ReadConeSettings();
  EXPECT_EQ(far.heard.back(), "Z ");
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
}

TEST_F(Identification, CombinedPlotsNeedChannelsFourAndFive) {
  const struct {
    std::string records;
    int combined;
  } rows[] = {{Image(4, "P").Text() + Image(5, "E").Text(), 1},
              {Image(4, "P").Text(), 0},
              {Image(5, "E").Text(), 0},
              {"", 0}};
  for (const auto& row : rows) {
    settings.CombinePPPlots = 1;
    replaced_settings.List.clear();
    SetCone(row.records);
    ReadConeSettings();
    EXPECT_EQ(settings.CombinePPPlots, row.combined) << row.records;
    EXPECT_EQ(replaced_settings.List.size(), row.combined == 0 ? 1u : 0u) << "kept in the file";
  }
}

TEST_F(Identification, ComputedChannelsAreSetUpBehindTheList) {
  RecordImage tilt = Image(6, "I");
  tilt.full_scale = Decimal(20);
  SetCone(TipSleevePore() + tilt.Text());
  ReadConeSettings();
  EXPECT_EQ(channels.ChannelFullScale(19), 20);
  EXPECT_EQ(channels.ChannelSensitivity(19), 15);
  EXPECT_EQ(channels.ChannelDelayRows(20), channels.ChannelDelayRows(2));
}

TEST_F(Identification, ResumeRecomputesTheInclinationOfTheStoredRows) {
  session.ResumeConeId = "DCS0042";
  sounding.RowCount = 1;
  sounding.Rows(1, 6) = sounding.Rows(1, 7) = 5;  // each at full scale
  SetCone(Image(6, "I").Text() + Image(7, "J").Text());
  ReadConeSettings();
  EXPECT_FLOAT_EQ(sounding.Rows(1, 19), std::sqrt(2.0f));
}

TEST_F(Identification, ChannelNumber31IsAFaultThatLeavesTheLinkDownAndTheConsoleAlive) {
  SetCone(Image(1, "T").Text() + Image(31, "Q").Text());
  try {
    ReadConeSettings();
    FAIL() << "no fault was raised";
  } catch (const RuntimeFault& fault) {
    EXPECT_STREQ(fault.what(), "A record names channel 31 of 30.");
  }
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_EQ(StartUp.CommTick, 0);
  SetCone(TipSleevePore());
  ReadConeSettings();
  EXPECT_EQ(cone.ConeLinkUp, kTrue) << "a good cone is read next";
}

TEST_F(Identification, ListWithoutAnEndIsAFault) {
  std::string records;
  for (int i = 0; i < 40; ++i) records += Image(1, "T").Text();
  SetCone(records);
  EXPECT_THROW(ReadConeSettings(), RuntimeFault);
  EXPECT_LE(far.heard.size(), 50u);
}

TEST_F(Identification, ConeThatIsReadAgainForgetsItsModules) {
  SetCone(TipSleevePore());
  ReadConeSettings();
  SetModule(4, Image(23, "R").Text(), "MOD0004");
  ReadModuleSettings(4);
  ReadConeSettings();
  EXPECT_EQ(cone.ModuleCount, 0);
  EXPECT_EQ(cone.ModulePresent[4], kFalse);
  EXPECT_EQ(channels.ChannelPresent(23), kFalse);
}

TEST_F(Identification, ConeThatFallsSilentInItsMemoryEndsTheProgramWithTheMessage) {
  SetCone(TipSleevePore());
  far.On("C 25 3", "");
  std::string text;
  world.AnswerNextBox(text);
  EXPECT_THROW(ReadConeSettings(), ProgramEnd);
  EXPECT_EQ(text, "Cone not detected.  Plug in a cone and restart the program.");
  EXPECT_EQ(far.Count("C 25 3"), 10);
  ResetYield();
}

TEST_F(Identification, ChannelWithoutSpanIsToldAndTheSessionGoesOn) {
  RecordImage bad = Image(3, "P");
  bad.output_full = bad.output_zero;
  SetCone(Image(1, "T").Text() + bad.Text());
  std::string text;
  world.AnswerNextBox(text);
  ReadConeSettings();
  EXPECT_EQ(text,
            "CHANNEL 3 HAS NO SPAN: ITS OUTPUT AT FULL SCALE IS ITS OUTPUT AT ZERO.\n"
            "CHECK THE CALIBRATION DATA OF THE INSTRUMENT.");
  EXPECT_EQ(channels.ChannelGain(3), 0);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
}

class Modules : public Identification {
 protected:
  Modules() {
    session.ReadingsAveraged = 4;
    SetCone(TipSleevePore());
    ReadConeSettings();
    far.heard.clear();
  }
  std::string ReadAndTakeBox(int m) {
    std::string text;
    world.AnswerNextBox(text);
    ReadModuleSettings(m);
    return text;
  }
};

TEST_F(Modules, ModuleIsReadWithItsNumberInFrontOfEachCommand) {
  SetModule(3, Image(23, "R", 0, 900).Text() + Image(10, "K").Text(), "MOD0003");
  ReadModuleSettings(3);
  EXPECT_EQ(far.heard,
            (std::vector<std::string>{" 3Y", " 3X", " 3X", " 3C 1 2", " 3C 3 7", " 3C 10 6",
                                      " 3C 16 6", " 3C 22 3", " 3C 25 3", " 3C 28 3", " 3C 31 17",
                                      " 3C 48 17", " 3C 65 17", " 3Z KR"}));
  EXPECT_EQ(cone.ModulePresent[3], kTrue);
  EXPECT_EQ(cone.ModuleCount, 1);
  EXPECT_EQ(cone.ModuleFirmware[3], "M1");
  EXPECT_EQ(cone.ModuleNumber[3], "MOD0003");
  EXPECT_EQ(cone.ModuleCreationDate[3], "150119");
  EXPECT_EQ(cone.ModuleCalibrationDate[3], "200319");
  EXPECT_EQ(cone.ModuleDistancePushed[3], 77);
  EXPECT_EQ(cone.ModuleMemorySize[3], 128);
  EXPECT_EQ(cone.ModuleClockFrequency[3], 19200);
  EXPECT_EQ(cone.ModuleVersion[3], 1.5f);
  EXPECT_EQ(cone.ModuleSelectCommand[3], " 3Z KR");
  EXPECT_EQ(channels.ChannelModule(23), 3);
  EXPECT_EQ(cone.ChannelCount, 5);
  EXPECT_EQ(cone.DelayRows, 45);
  EXPECT_EQ(StartUp.lblLoad.Caption, "Module ( 3) found");
}

TEST_F(Modules, PausesStandBehindEachCommandOfAModule) {
  SetModule(3, Image(23, "R", 3).Text() + Coded(1, 1) + Decimal(9) + Coded(500, 3), "MOD0003");
  far.heard_at.clear();
  ReadModuleSettings(3);
  EXPECT_EQ(far.heard.back(), " 3Z R");
  ExpectPauses(0);
}

TEST_F(Modules, ModuleNineIsTheHighest) {
  SetModule(9, Image(23, "R").Text(), "MOD0009");
  ReadModuleSettings(9);
  EXPECT_EQ(cone.ModulePresent[9], kTrue);
  EXPECT_EQ(cone.ModuleSelectCommand[9], " 9Z R");
}

TEST_F(Modules, NineOfThemFillAllThirtyChannels) {
  for (int m = 1; m <= 9; ++m) {
    const int first = 3 * m + 1;
    SetModule(
        m, Image(first, "U").Text() + Image(first + 1, "K").Text() + Image(first + 2, "E").Text(),
        "MOD000" + std::to_string(m));
    ReadModuleSettings(m);
  }
  AssignReplyPositions();
  EXPECT_EQ(cone.ModuleCount, 9);
  EXPECT_EQ(cone.ChannelCount, 30);
  for (int m = 1; m <= 9; ++m) {
    const int first = 3 * m + 1;  // as place too: the cone has the first three
    EXPECT_EQ(channels.ReplyField(first + 2), first) << "E comes first";
    EXPECT_EQ(channels.ReplyField(first + 1), first + 1);
    EXPECT_EQ(channels.ReplyField(first), first + 2);
  }
}

TEST_F(Modules, ListWithoutAnEndIsToldAndLeavesTheTablesAsTheyWere) {
  std::string records;
  for (int number = 4; number <= 30; ++number) {
    if (number != 19 && number != 20) records += Image(number, "K").Text();
  }
  for (int i = 0; i < 10; ++i) records += Image(40 + i, "K").Text();
  SetModule(2, records, "MOD0002");
  EXPECT_EQ(ReadAndTakeBox(2).substr(0, 24), "MODULE 2 CANNOT BE USED.");
  EXPECT_EQ(cone.ChannelCount, 3);
  EXPECT_EQ(channels.ChannelPresent(4), kFalse);
}

TEST_F(Modules, MemoryReadOfAModuleGetsOneAttempt) {
  SetModule(2, Image(23, "R").Text(), "MOD0002");
  far.Once(" 2C 3 7", "");
  ReadModuleSettings(2);
  EXPECT_EQ(far.Count(" 2C 3 7"), 1) << "the command does not begin with C";
  EXPECT_EQ(cone.ModuleNumber[2], "");
  EXPECT_EQ(cone.ModulePresent[2], kTrue);
}

TEST_F(Modules, SilentModuleChangesNothingAndSaysNothing) {
  ReadModuleSettings(2);
  EXPECT_EQ(far.heard, std::vector<std::string>{" 2Y"});
  EXPECT_EQ(cone.ModuleCount, 0);
  EXPECT_EQ(session.ReadingsAveraged, 4);
  EXPECT_EQ(FrontBox(), nullptr);
}

TEST_F(Modules, ModuleWithoutASecondXIsNotUsed) {
  SetModule(2, Image(23, "R").Text(), "MOD0002");
  far.On(" 2X", "");
  ReadModuleSettings(2);
  EXPECT_EQ(cone.ModuleCount, 0);
  EXPECT_EQ(cone.ModulePresent[2], kFalse);
}

TEST_F(Modules, ModuleOnTheLineEndsTheAveraging) {
  SetModule(1, Image(23, "R").Text(), "MOD0001");
  ReadModuleSettings(1);
  EXPECT_EQ(session.ReadingsAveraged, 1);
}

TEST_F(Modules, DuplicateOfAChannelOfTheConeIsReportedAndTheModuleNotUsed) {
  SetModule(3, Image(23, "R").Text() + Image(1, "T").Text(), "MOD0003");
  EXPECT_EQ(ReadAndTakeBox(3),
            "Duplicate channels found on modules: DCS0042 MOD0003. Program cannot continue.  "
            "Please remove module MOD0003 and restart the program.");
  EXPECT_EQ(cone.ModulePresent[3], kFalse);
  EXPECT_EQ(channels.ChannelPresent(23), kFalse) << "the list stays as it was";
  EXPECT_EQ(channels.ChannelModule(1), 0);
  EXPECT_EQ(cone.ChannelCount, 3);
  EXPECT_EQ(far.Count(" 3Z "), 0);
}

TEST_F(Modules, DuplicateOfAnotherModulesChannelNamesBoth) {
  SetModule(1, Image(23, "R").Text(), "MOD0001");
  ReadModuleSettings(1);
  SetModule(4, Image(23, "R").Text(), "MOD0004");
  EXPECT_EQ(ReadAndTakeBox(4),
            "Duplicate channels found on modules: MOD0001 MOD0004. Program cannot continue.  "
            "Please remove one of the modules and restart the program.");
  EXPECT_EQ(channels.ChannelModule(23), 1);
  EXPECT_EQ(cone.ModulePresent[1], kTrue);
  EXPECT_EQ(cone.ModulePresent[4], kFalse);
}

TEST_F(Modules, UnusableModuleListIsToldAndLeavesTheTablesAsTheyWere) {
  SetModule(3, Image(14, "K").Text() + Image(31, "R").Text(), "MOD0003");
  EXPECT_EQ(ReadAndTakeBox(3), "MODULE 3 CANNOT BE USED.  A record names channel 31 of 30.");
  EXPECT_EQ(channels.ChannelPresent(14), kFalse);
  EXPECT_EQ(cone.Channel14Present, kFalse);
  EXPECT_EQ(cone.ModulePresent[3], kFalse);
}

TEST_F(Modules, SubtractionFromAChannelOfTheConeUsesItsSensitivity) {
  SetModule(3, Image(23, "R", 1).Text() + Coded(1, 1) + Decimal(9), "MOD0003");
  ReadModuleSettings(3);
  EXPECT_EQ(channels.SubtractFactor(23), 2);
  EXPECT_EQ(channels.SubtractFactor(2), 2) << "the cone's factors are not divided again";
}

TEST_F(Modules, ReplyPositionsJoinConeAndModules) {
  SetModule(3, Image(23, "R").Text() + Image(24, "F").Text(), "MOD0003");
  ReadModuleSettings(3);
  AssignReplyPositions();
  EXPECT_EQ(channels.ReplyField(1), 1);
  EXPECT_EQ(channels.ReplyField(2), 2);
  EXPECT_EQ(channels.ReplyField(3), 3);
  EXPECT_EQ(channels.ReplyField(24), 4);
  EXPECT_EQ(channels.ReplyField(23), 5);
}

}  // namespace
}  // namespace penlog
