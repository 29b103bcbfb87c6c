// The files that a first run lays down in the data directory.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "platform/numbers.h"
#include "platform/texts.h"
#include "platform/value_reader.h"
#include "tests/support/project_file.h"

namespace penlog {
namespace {

struct ChannelFile {
  std::string labels[2];
  int computed = 0;
  std::string letter;
  int subtract = 0, keep_zero = 0, has_area = 0, record_mode = 0, graph = 0;
  float limits[3] = {};
  std::vector<std::string> units, formats;
  std::vector<float> factors;
};

ChannelFile ReadChannel(int channel) {
  const std::string name = "Channel" + PlainNumber(channel) + ".txt";
  ValueReader file(name, ProjectFile("data/" + name));
  ChannelFile read;
  file.ReadString();
  for (std::string& label : read.labels) label = file.ReadString();
  read.computed = file.ReadInteger();
  read.letter = file.ReadString();
  for (int* value :
       {&read.subtract, &read.keep_zero, &read.has_area, &read.record_mode, &read.graph}) {
    *value = file.ReadInteger();
  }
  for (float& limit : read.limits) limit = file.ReadSingle();
  const int units = file.ReadInteger();
  for (int unit = 1; unit <= units; ++unit) {
    read.units.push_back(file.ReadString());
    read.formats.push_back(file.ReadString());
    read.factors.push_back(file.ReadSingle());
  }
  EXPECT_TRUE(file.AtEnd()) << name;
  return read;
}

bool IsPlainAscii(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void ExpectCarriageReturns(const std::string& name) {
  const std::string text = ProjectFile("data/" + name);
  EXPECT_TRUE(text.ends_with("\r\n")) << name;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), std::count(text.begin(), text.end(), '\n'))
      << name;
}

TEST(FirstRunFiles, EndTheirLinesWithCrLf) {
  for (int channel = 1; channel <= 30; ++channel) {
    ExpectCarriageReturns("Channel" + PlainNumber(channel) + ".txt");
  }
  for (const char* name : {"System Setup Values.txt", "AvailableLanguages.txt", "Deutsch.txt"}) {
    ExpectCarriageReturns(name);
  }
}

TEST(FirstRunFiles, NameEveryChannelInPlainAscii) {
  std::vector<std::string> seen;
  for (int channel = 1; channel <= 30; ++channel) {
    const ChannelFile file = ReadChannel(channel);
    for (const std::string& label : file.labels) {
      EXPECT_TRUE(!label.empty() && IsPlainAscii(label)) << channel;
      EXPECT_LE(label.size(), 20u) << channel << ": wider than a column of the sounding file";
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), file.labels[0]), 0) << channel;
    seen.push_back(file.labels[0]);
    ASSERT_TRUE(!file.units.empty() && file.units.size() <= 10) << channel;
    for (const std::string& unit : file.units) {
      EXPECT_TRUE(!unit.empty() && IsPlainAscii(unit)) << channel;
    }
  }
}

TEST(FirstRunFiles, GiveEachChannelItsBaseUnitFirst) {
  for (int channel = 1; channel <= 30; ++channel) {
    const ChannelFile file = ReadChannel(channel);
    EXPECT_EQ(file.factors[0], 1.0f) << channel;
    for (const float factor : file.factors) EXPECT_GT(factor, 0.0f) << channel;
    if (channel <= 5) {
      EXPECT_EQ(file.units[0], "kPa") << channel;
    }
  }
}

TEST(FirstRunFiles, ConvertAtmospheresAlikeInEveryUnit) {
  struct Row {
    const char *unit, *shown;
  };
  constexpr Row rows[] = {{"kPa", "101.325"}, {"MPa", "0.101"},    {"bar", "1.013"},
                          {"tsf", "1.058"},   {"psi", "14.696"},   {"kg/cm2", "1.033"},
                          {"ksf", "2.116"},   {"m H2O", "10.321"}, {"ft H2O", "33.862"}};
  for (int channel = 1; channel <= 5; ++channel) {
    const ChannelFile file = ReadChannel(channel);
    for (std::size_t unit = 0; unit < file.units.size(); ++unit) {
      const auto row = std::find_if(std::begin(rows), std::end(rows),
                                    [&](const Row& r) { return file.units[unit] == r.unit; });
      ASSERT_NE(row, std::end(rows)) << file.units[unit];
      EXPECT_EQ(Format(101.325f * file.factors[unit], "0.000"), row->shown) << row->unit;
    }
  }
}

TEST(FirstRunFiles, ShowEveryUnitWithAFormatThatPrintsDigits) {
  for (int channel = 1; channel <= 30; ++channel) {
    for (const std::string& format : ReadChannel(channel).formats) {
      EXPECT_NE(format.find('0'), std::string::npos) << channel;
      EXPECT_EQ(format.find_first_not_of("#0."), std::string::npos) << channel;
    }
  }
}

TEST(FirstRunFiles, ComputeOnlyChannelsNineteenToTwentyTwo) {
  const std::string letters = "TFPEIJKLRVUG";
  for (int channel = 1; channel <= 30; ++channel) {
    const ChannelFile file = ReadChannel(channel);
    const bool computed = channel >= 19 && channel <= 22;
    EXPECT_EQ(file.computed, computed ? 1 : 0) << channel;
    if (computed) {
      // Listed in the header of a sounding file but not in its rows: must not be recorded.
      EXPECT_EQ(file.record_mode, 0) << channel;
    } else {
      EXPECT_EQ(file.letter.size(), 1u) << channel;
      EXPECT_NE(letters.find(file.letter), std::string::npos) << channel;
    }
  }
}

TEST(FirstRunFiles, LimitInclinationAboveZeroAndAllAsFractionsOfTheSpan) {
  const ChannelFile axis = ReadChannel(6);
  for (const float limit : axis.limits) EXPECT_GT(limit, 0.0f);
  EXPECT_LE(axis.limits[0], axis.limits[1]);
  EXPECT_GT(ReadChannel(1).limits[1], 0.0f);
  for (int channel = 1; channel <= 30; ++channel) {
    for (const float limit : ReadChannel(channel).limits) {
      EXPECT_TRUE(limit >= 0.0f && limit <= 1.0f) << channel;
    }
  }
}

TEST(FirstRunFiles, RecordWhatAResumeNeeds) {
  for (const int channel : {1, 2, 6, 7}) EXPECT_EQ(ReadChannel(channel).record_mode, 2) << channel;
  for (const int channel : {8, 9}) EXPECT_EQ(ReadChannel(channel).record_mode, 3) << channel;
  for (const int channel : {1, 2, 3}) EXPECT_EQ(ReadChannel(channel).keep_zero, 1) << channel;
}

TEST(FirstRunFiles, HoldSixtyTwoSettingsAndNoPort) {
  ValueReader file("System Setup Values.txt", ProjectFile("data/System Setup Values.txt"));
  std::vector<float> values(1, 0.0f);  // from 1
  for (int position = 1; position <= 62; ++position) {
    if (position == 19) {
      file.ReadString();
      values.push_back(0);
    } else {
      values.push_back(file.ReadSingle());
    }
  }
  EXPECT_TRUE(file.AtEnd());
  for (const std::size_t port : {41u, 42u, 43u, 55u, 56u, 60u}) EXPECT_EQ(values[port], 0.0f);
  EXPECT_EQ(values[20], 0.005f);
  EXPECT_EQ(values[21], 0.02f);
  const float counts = values[21] / values[20];
  EXPECT_NEAR(counts, std::round(counts), 1e-5f) << "the step is a multiple of the resolution";
  for (int channel = 1; channel <= 18; ++channel) {
    const float unit = values[static_cast<std::size_t>(channel)];
    EXPECT_GE(unit, 1.0f) << channel;
    EXPECT_LE(unit, static_cast<float>(ReadChannel(channel).units.size())) << channel;
  }
  for (std::size_t position = 44; position <= 53; ++position) EXPECT_EQ(values[position], 1.0f);
}

TEST(FirstRunFiles, HaveAWordTableForEachLanguageButEnglish) {
  ValueReader languages("AvailableLanguages.txt", ProjectFile("data/AvailableLanguages.txt"));
  const int count = languages.ReadInteger();
  ASSERT_EQ(count, 2);
  EXPECT_EQ(languages.ReadString(), "English");
  const std::string name = languages.ReadString() + ".txt";
  EXPECT_TRUE(languages.AtEnd());

  ValueReader table(name, ProjectFile("data/" + name));
  const int words = table.ReadInteger();
  EXPECT_GE(words, 60);
  EXPECT_LE(words, 1000);
  std::vector<std::string> english;
  for (int word = 0; word < words; ++word) {
    english.push_back(table.ReadString());
    EXPECT_TRUE(IsPlainAscii(english.back())) << english.back();
    EXPECT_FALSE(table.ReadString().empty()) << english.back();
  }
  EXPECT_TRUE(table.AtEnd());
  std::sort(english.begin(), english.end());
  EXPECT_EQ(std::adjacent_find(english.begin(), english.end()), english.end());
}

}  // namespace
}  // namespace penlog
