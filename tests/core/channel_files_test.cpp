#include "core/channel_files.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

/// 14 values and two unit options.
std::vector<std::string> ChannelValues() {
  return {"\"Channel 5, a title\"",
          "\"Qc\"",
          "\"Tip Resistance\"",
          "1",
          "\"T\"",
          "2",
          "3",
          "4",
          "2",
          "6",
          "0.8",
          "0.9",
          "0.25",
          "2",
          "\"kPa\"",
          "\"#####0\"",
          "1",
          "\"MPa\"",
          "\"##0.00\"",
          "0.001"};
}

class ChannelFiles : public ::testing::Test {
 protected:
  void Put(int channel, const std::vector<std::string>& values) {
    world.disk.Put("/data/Channel" + std::to_string(channel) + ".txt",
                   Lines(values, values.size()));
  }
  std::string Told() const {
    std::string all;
    for (const auto& text : world.boxes.texts) all += text + "\n";
    return all;
  }
  SettingsWorld world;
};

TEST_F(ChannelFiles, GiveEveryValueItsPlace) {
  Put(5, ChannelValues());
  EXPECT_EQ(LoadChannelFiles(), 1);
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(channels.ChannelPresent(5), kTrue);
  EXPECT_EQ(channels.ChannelLabel(0, 5), "Qc");
  EXPECT_EQ(channels.ChannelLabel(1, 5), "Tip Resistance");
  EXPECT_EQ(channels.ChannelComputed(5), 1);
  EXPECT_EQ(channels.ChannelLetter(5), "T");
  EXPECT_EQ(channels.SubtractChannel(5), 2);
  EXPECT_EQ(channels.ChannelKeepZero(5), 3);
  EXPECT_EQ(channels.ChannelHasArea(5), 4);
  EXPECT_EQ(channels.RecordMode(5), 2);
  EXPECT_EQ(channels.ChannelGraphDefault(5), 6);
  EXPECT_EQ(channels.QuitLimitShallow(5), 0.8F);
  EXPECT_EQ(channels.QuitLimitDeep(5), 0.9F);
  EXPECT_EQ(channels.QuitRateLimit(5), 0.25F);
  EXPECT_EQ(channels.UnitCount(5), 2);
  EXPECT_EQ(channels.UnitLabel(1, 5), "kPa");
  EXPECT_EQ(channels.UnitFormat(1, 5), "#####0");
  EXPECT_EQ(channels.UnitFactor(1, 5), 1.0F);
  EXPECT_EQ(channels.UnitLabel(2, 5), "MPa");
  EXPECT_EQ(channels.UnitFormat(2, 5), "##0.00");
  EXPECT_EQ(channels.UnitFactor(2, 5), 0.001F);
}

TEST_F(ChannelFiles, DecideWhichChannelsArePresent) {
  for (const int channel : {1, 2, 30}) Put(channel, ChannelValues());
  world.disk.Put("/data/Channel31.txt", "no channel");
  channels.ChannelPresent(7) = kTrue;
  EXPECT_EQ(LoadChannelFiles(), 3);
  for (int channel = 1; channel <= 30; ++channel) {
    const bool present = channel == 1 || channel == 2 || channel == 30;
    EXPECT_EQ(channels.ChannelPresent(channel), present ? kTrue : kFalse) << channel;
  }
}

TEST_F(ChannelFiles, OfChannel3AlsoNameThePorePressureSelection) {
  Put(2, ChannelValues());
  auto values = ChannelValues();
  values[1] = "\"U2\"";
  values[2] = "\"Pore Pressure\"";
  Put(3, values);
  LoadChannelFiles();
  for (const int entry : {1, 2}) {
    EXPECT_EQ(channels.PPChannelLabel[entry][0], "U2");
    EXPECT_EQ(channels.PPChannelLabel[entry][1], "Pore Pressure");
  }
}

TEST_F(ChannelFiles, MissingLeaveEmptyLabelsAndAFactorOfOne) {
  EXPECT_EQ(LoadChannelFiles(), 0);
  EXPECT_EQ(channels.ChannelLabel(0, 12), "");
  EXPECT_EQ(channels.ChannelLabel(1, 12), "");
  EXPECT_EQ(channels.UnitLabel(1, 12), "");
  EXPECT_EQ(channels.UnitFactor(0, 12), 1.0F);
  EXPECT_EQ(channels.UnitFactor(1, 12), 1.0F);
}

TEST_F(ChannelFiles, CutShortAreToldAtEveryLengthAndTheChannelStays) {
  const auto values = ChannelValues();
  for (std::size_t count = 0; count < values.size(); ++count) {
    world.boxes.texts.clear();
    world.disk.Put("/data/Channel5.txt", Lines(values, count));
    EXPECT_EQ(LoadChannelFiles(), 1);
    ASSERT_EQ(world.boxes.texts.size(), 1U) << count;
    EXPECT_EQ(world.boxes.texts[0].find("Channel5.txt ends too early at line " +
                                        std::to_string(count + 1)),
              0U)
        << world.boxes.texts[0];
    EXPECT_EQ(channels.ChannelPresent(5), kTrue) << count;
    EXPECT_EQ(channels.UnitCount(5), 1) << count;
    EXPECT_EQ(channels.UnitFactor(1, 5), 1.0F) << count;
    EXPECT_EQ(channels.ChannelLabel(0, 5), count >= 2 ? "Qc" : "") << count;
  }
}

TEST_F(ChannelFiles, WithABadValueNameFileAndPlace) {
  struct Row {
    std::size_t line;
    const char* value;
    const char* told;
  };
  for (const Row& row :
       {Row{4, "yes", "Channel5.txt, line 4: a whole number was expected, found \"yes\""},
        Row{11, "\"\"", "Channel5.txt, line 11: a number was expected"},
        Row{13, "1e99", "Channel5.txt, line 13: a number was expected, found \"1e99\""},
        Row{14, "x", "Channel5.txt, line 14: a whole number was expected, found \"x\""},
        Row{17, "one", "Channel5.txt, line 17: a number was expected, found \"one\""},
        Row{20, "0", "Channel5.txt: the factor of unit \"MPa\" is 0"},
        Row{3, "\"no end", "Channel5.txt, line 3: a closing double quote was expected"}}) {
    world.boxes.texts.clear();
    auto values = ChannelValues();
    values[row.line - 1] = row.value;
    Put(5, values);
    LoadChannelFiles();
    ASSERT_EQ(world.boxes.texts.size(), 1U) << row.told;
    EXPECT_EQ(world.boxes.texts[0].find(row.told), 0U) << world.boxes.texts[0];
    EXPECT_EQ(channels.ChannelPresent(5), kTrue);
    EXPECT_LE(channels.SubtractChannel(5), 30);
  }
}

TEST_F(ChannelFiles, WithAChannelToSubtractThatDoesNotExistAreToldAndReadOn) {
  for (const int subtract : {31, 32767}) {
    world.boxes.texts.clear();
    auto values = ChannelValues();
    values[5] = std::to_string(subtract);
    Put(5, values);
    LoadChannelFiles();
    EXPECT_EQ(Told(), "Channel5.txt: channel " + values[5] +
                          " to subtract does not exist.  NOTHING IS SUBTRACTED.\n");
    EXPECT_EQ(channels.SubtractChannel(5), 0);
    EXPECT_EQ(channels.RecordMode(5), 2);
    EXPECT_EQ(channels.QuitLimitShallow(5), 0.8F);
    EXPECT_EQ(channels.QuitLimitDeep(5), 0.9F);
    EXPECT_EQ(channels.QuitRateLimit(5), 0.25F);
    EXPECT_EQ(channels.UnitCount(5), 2);
    EXPECT_EQ(channels.UnitLabel(2, 5), "MPa");
  }
}

TEST_F(ChannelFiles, MayNameChannel30ToSubtract) {
  auto values = ChannelValues();
  values[5] = "30";
  Put(5, values);
  LoadChannelFiles();
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(channels.SubtractChannel(5), 30);
}

TEST_F(ChannelFiles, MayNameANegativeChannelToSubtract) {
  auto values = ChannelValues();
  values[5] = "-1";
  Put(5, values);
  LoadChannelFiles();
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(channels.SubtractChannel(5), -1);
}

TEST_F(ChannelFiles, WithElevenUnitsAreToldAndTheFirstTenKept) {
  auto values = ChannelValues();
  values.resize(13);
  values.emplace_back("11");
  for (int unit = 1; unit <= 11; ++unit) {
    values.insert(values.end(), {"\"unit " + std::to_string(unit) + "\"", "\"0\"", "2"});
  }
  Put(5, values);
  LoadChannelFiles();
  EXPECT_EQ(Told().find("Channel5.txt: 11 unit options, there can be 1 to 10"), 0U) << Told();
  EXPECT_EQ(channels.UnitCount(5), 10);
  EXPECT_EQ(channels.UnitLabel(10, 5), "unit 10");
}

TEST_F(ChannelFiles, WithANegativeOrZeroUnitCountAreToldAndHaveOneOptionOfFactorOne) {
  for (const char* count : {"-1", "0", "-32768"}) {
    world.boxes.texts.clear();
    auto values = ChannelValues();
    values[13] = count;
    Put(5, values);
    LoadChannelFiles();
    EXPECT_EQ(world.boxes.texts.size(), 1U) << count;
    EXPECT_EQ(channels.UnitCount(5), 1);
    EXPECT_EQ(channels.UnitFactor(1, 5), 1.0F);
  }
}

TEST_F(ChannelFiles, OfAnEarlierLoadDoNotShowThrough) {
  Put(5, ChannelValues());
  LoadChannelFiles();
  world.disk.Remove("/data/Channel5.txt");
  LoadChannelFiles();
  EXPECT_EQ(channels.ChannelPresent(5), kFalse);
  EXPECT_EQ(channels.ChannelLabel(0, 5), "");
  EXPECT_EQ(channels.ChannelComputed(5), 0);
}

TEST_F(ChannelFiles, OfTheFirstRunAreAllRead) {
  LayDownFirstRunFiles();
  EXPECT_EQ(LoadChannelFiles(), 30);
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(channels.UnitLabel(1, 1), "kPa");
  EXPECT_EQ(channels.ChannelLetter(2), "F");
  for (const int channel : {19, 20, 21, 22}) EXPECT_NE(channels.ChannelComputed(channel), 0);
  for (int channel = 1; channel <= 30; ++channel) {
    EXPECT_NE(channels.ChannelLabel(0, channel), "") << channel;
    EXPECT_EQ(channels.UnitFactor(1, channel), 1.0F) << channel;
  }
}

}  // namespace
}  // namespace penlog
