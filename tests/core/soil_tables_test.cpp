#include "core/soil_tables.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/runtime_fault.h"
#include "tests/support/project_file.h"

namespace penlog {
namespace {

// Three indices, four classes; the grid starts on line 8.
constexpr std::string_view kSmall =
    "4,0,2,2,0.1,0,0.2,1,1000,2,0.01,5\r\n"
    "0.8,10,1986\r\n"
    "1,1,\"one\",\"I\",2\r\n"
    "2,2,\"two\",\"II\",1\r\n"
    "3,6,\"six\",\"VI\",2.5\r\n"
    "4,9,\"nine\",\"IX\",5\r\n"
    "\"a chart, 1986\"\r\n"
    "1,0.5,6,1.5\r\n"
    "1,0.6,9,1.7\r\n"
    "6,0.7,0,0\r\n";

void Load(std::string_view text) {
  ValueReader reader("intubc.asc", text);
  LoadSoilTables(reader);
}

std::string LoadFault(std::string_view text) {
  try {
    Load(text);
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
  return "";
}

std::string SmallWith(std::string_view old, std::string_view now) {
  std::string text(kSmall);
  const std::size_t at = text.find(old);
  EXPECT_NE(at, std::string::npos) << old;
  return text.replace(at, old.size(), now);
}

class SoilTablesFile : public testing::Test {
 protected:
  void SetUp() override { soil = {}; }
  void TearDown() override { soil = {}; }
};

TEST_F(SoilTablesFile, FillsTheTables) {
  Load(kSmall);
  EXPECT_EQ(soil.FrictionRatioMax, 3);
  EXPECT_EQ(soil.ClassNumber[6], 6);
  EXPECT_EQ(soil.ClassNumber[3], 0);
  EXPECT_EQ(soil.ClassName[6], "six");
  EXPECT_EQ(soil.ClassShortName[9], "IX");
  EXPECT_EQ(soil.SptDivisor[6], 2.5f);
  EXPECT_EQ(soil.SbtTable[1][2][0], 9.0f);
  EXPECT_EQ(soil.SbtTable[1][2][1], 1.7f);
  EXPECT_EQ(soil.SbtTable[2][2][0], 0.0f);
  EXPECT_EQ(soil.SbtTable[3][1][0], 0.0f);
  EXPECT_EQ(soil.SoilNote, "*Soil behavior type and SPT based on data from a chart, 1986");
}

TEST_F(SoilTablesFile, OfTheFirstRunHoldsTheTwelveZones) {
  Load(ProjectFile("data/intubc.asc"));
  EXPECT_EQ(soil.FrictionRatioMax, 81);
  constexpr float divisors[] = {2, 1, 1, 1.5f, 2, 2.5f, 3, 4, 5, 6, 1, 2};
  for (int zone = 1; zone <= 12; ++zone) {
    const auto at = static_cast<std::size_t>(zone);
    EXPECT_EQ(soil.ClassNumber[at], zone);
    EXPECT_EQ(soil.SptDivisor[at], divisors[at - 1]) << zone;
    EXPECT_FALSE(soil.ClassName[at].empty()) << zone;
  }
  EXPECT_EQ(soil.ClassName[5], "clayey silt to silty clay");
  EXPECT_NE(soil.SoilNote.find("Robertson"), std::string::npos);
  EXPECT_NE(soil.SoilNote.find("Use of piezometer cone data"), std::string::npos);
}

TEST_F(SoilTablesFile, OfTheFirstRunKeepsItsLineEnds) {
  const std::string text = ProjectFile("data/intubc.asc");
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    ASSERT_TRUE(at > 0 && text[at - 1] == '\r') << at;
  }
}

TEST_F(SoilTablesFile, ThatContradictsItselfIsRefused) {
  struct Row {
    std::string_view old, now, words;
  };
  constexpr Row rows[] = {
      {"4,0,2,2", "13,0,2,2", "number of classes"},
      {"4,0,2,2", "0,0,2,2", "number of classes"},
      {"4,0,2,2", "4,1,2,2", "first index"},
      {"4,0,2,2", "4,0,101,2", "last index"},
      {"4,0,2,2", "4,0,2,9", "number of columns"},
      {"0.1,0,0.2", "0.2,0,0.2", "friction ratio step"},
      {"0.1,0,0.2", "0.1,0.1,0.2", "first friction ratio"},
      {"0.1,0,0.2", "0.1,0,8", "last friction ratio"},
      {"1,1000,2", "1000,1,2", "lowest tip resistance"},
      {"1,1000,2", "0,1000,2", "lowest tip resistance"},
      {"1000,2,0.01", "1000,1,0.01", "zone below all bands"},
      {"2,0.01,5", "2,0.1,5", "factor to bar"},
      {"2,0.01,5", "2,0.01,6", "5 bands, its header says 6"},
      {"3,6,\"six\"", "3,1,\"six\"", "class 1 stands there twice"},
      {"3,6,\"six\"", "3,13,\"six\"", "a class number"},
      {"3,6,\"six\"", "3,7,\"six\"", "band of zone 6"},
      {"2,2,\"two\"", "2,3,\"two\"", "class 2"},
      {"\"VI\",2.5", "\"VI\",0", "over N of class 6"},
      {"\"VI\",2.5", "\"VI\",-1", "over N of class 6"},
      {"6,1.5", "2,1.5", "band of zone 2"},
      {"6,1.5", "6.5,1.5", "band of zone 6.5"},
      {"6,1.5", "-6,1.5", "band of zone -6"},
      {"6,1.5", "6,0", "zone 6 with bound 0"},
      {"6,1.5", "0,1.5", "zone 0 with bound 1.5"},
      {"6,1.5", "6,-1.5", "not on the chart"},
      {"6,1.5", "6,15000", "not on the chart"},
      {"6,0.7,0,0", "0,0,0,0", "index 2 has no band"},
      {"6,0.7,0,0", "6,0.7,0,0,9,1.2", "values follow"},
  };
  for (const Row& row : rows) {
    const std::string fault = LoadFault(SmallWith(row.old, row.now));
    EXPECT_NE(fault.find("intubc.asc contradicts itself"), std::string::npos) << row.now;
    EXPECT_NE(fault.find(row.words), std::string::npos) << row.now << ": " << fault;
  }
}

TEST_F(SoilTablesFile, ThatIsDamagedIsRefused) {
  EXPECT_NE(LoadFault("").find("intubc.asc"), std::string::npos);
  EXPECT_NE(LoadFault(SmallWith("6,0.7,0,0\r\n", "6,0.7,0")).find("ends too early"),
            std::string::npos);
  EXPECT_NE(LoadFault(SmallWith("6,1.5", "six,1.5")).find("line 8"), std::string::npos);
  EXPECT_NE(LoadFault(SmallWith("4,0,2,2", "4,0,2.5,2")).find("line 1"), std::string::npos);
  const std::string whole = ProjectFile("data/intubc.asc");
  for (const std::size_t length : {whole.size() / 10, whole.size() / 2, whole.size() - 20}) {
    EXPECT_NE(LoadFault(whole.substr(0, length)), "") << length;
  }
}

TEST_F(SoilTablesFile, ThatIsRefusedLeavesTheTablesInForce) {
  Load(kSmall);
  EXPECT_NE(LoadFault(SmallWith("6,0.7,0,0", "6,0.7,3,1")), "");
  EXPECT_EQ(soil.FrictionRatioMax, 3);
  EXPECT_EQ(soil.ClassName[1], "one");
}

TEST_F(SoilTablesFile, WithABandBehindTheSearchedOnesIsRefused) {
  const std::string header = "2,0,0,8,0.1,0,0,1,1000,2,0.01,1\r\n0,0,0\r\n";
  const std::string classes = "1,1,\"one\",\"I\",2\r\n2,2,\"two\",\"II\",1\r\n\"chart\"\r\n";
  const std::string empty = "0,0,0,0,0,0,0,0,0,0,0,0";
  EXPECT_NE(LoadFault(header + classes + empty + ",0,0,1,0.5").find("never searched"),
            std::string::npos);
  EXPECT_EQ(LoadFault(header + classes + empty + ",1,0.5,0,0"), "");
}

TEST_F(SoilTablesFile, MayHoldAllIndicesUpToTenPercent) {
  std::string text = "2,0,100,1,0.1,0,10,1,1000,2,0.01,101\r\n0,0,0\r\n1,1,\"one\",\"I\",2\r\n";
  text += "2,2,\"two\",\"II\",1\r\n\"chart\"\r\n";
  for (int index = 0; index <= 100; ++index) text += "1,0.5\r\n";
  EXPECT_EQ(LoadFault(text), "");
  EXPECT_EQ(soil.FrictionRatioMax, 101);
}

}  // namespace
}  // namespace penlog
