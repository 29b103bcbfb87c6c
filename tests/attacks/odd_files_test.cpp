// Files of the data directory that are anything but what they should be: the operator is told, and
// can record a sounding all the same.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "attacks/calm_operator.h"
#include "platform/files.h"

namespace penlog {
namespace {

std::string RandomBytes(std::size_t count) {
  std::mt19937 random(4711);
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(random() & 0xFF);
  return bytes;
}

std::string Repeat(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// As an editor of another system saves a text.
std::string Utf16(const std::string& text) {
  std::string wide = "\xFF\xFE";
  for (const char c : text) {
    wide += c;
    wide += '\0';
  }
  return wide;
}

struct Odd {
  const char* what;
  std::string content;
};

std::vector<Odd> OddContents() {
  return {{"empty", ""},
          {"one line end", "\r\n"},
          {"blank lines", Repeat("\r\n", 500)},
          {"random bytes", RandomBytes(5000)},
          {"NUL bytes", std::string(3000, '\0')},
          {"UTF-16", Utf16("1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n")},
          {"huge numbers", Repeat("99999999999999999999\r\n", 80)},
          {"exponents", Repeat("1e999\r\n", 80)},
          {"not a number", Repeat("nan\r\ninf\r\n", 80)},
          {"negative counts", Repeat("-1\r\n", 80)},
          {"smallest integers", Repeat("-32768\r\n", 80)},
          {"largest integers", Repeat("32767\r\n", 80)},
          {"zeros", Repeat("0\r\n", 80)},
          {"quotes", Repeat("\"\r\n", 80)},
          {"commas", Repeat(",", 300)},
          {"texts", Repeat("\"abc\"\r\n", 80)},
          {"a line of 10 MB", std::string(10'000'000, 'x')},
          {"a number of 1 MB", std::string(1'000'000, '7')},
          {"a text of 10 MB", "\"" + std::string(10'000'000, 'x') + "\"\r\n"}};
}

constexpr const char* kFiles[] = {
    "System Setup Values.txt",         "Channel1.txt", "Channel3.txt",
    "AvailableLanguages.txt",          "intubc.asc",   "Last Sounding Parameters.txt",
    "Dissipation Restart Settings.txt"};

void ExpectASounding(const CalmOperator& calm, const std::string& what) {
  EXPECT_TRUE(calm.ended) << what << ": the operator came nowhere\n" << calm.Told();
  EXPECT_EQ(calm.standstill, "") << what;
  EXPECT_GE(calm.rows, 14) << what << "\n" << calm.Told();
  EXPECT_LT(calm.told.size(), 60U) << what << "\n" << calm.Told();
  for (const auto& text : calm.told) EXPECT_LT(text.size(), 3100U) << what;
  EXPECT_FALSE(calm.WasTold("RUN-TIME FAULT")) << what << "\n" << calm.Told();
}

class OddFiles : public testing::TestWithParam<const char*> {};

TEST_P(OddFiles, AreToldAndASoundingIsRecordedAllTheSame) {
  for (const Odd& odd : OddContents()) {
    CalmOperator calm;
    calm.disk.Put(calm.Data(GetParam()), odd.content);
    calm.LayDown();
    calm.Run();
    ExpectASounding(calm, std::string(GetParam()) + ", " + odd.what);
  }
}

TEST_P(OddFiles, AFolderInItsPlaceIsNoMoreInTheWay) {
  CalmOperator calm;
  calm.disk.MakeFolder(calm.Data(GetParam()));
  calm.LayDown();
  calm.Run();
  ExpectASounding(calm, std::string(GetParam()) + ", a folder");
}

TEST_P(OddFiles, ThatCannotBeReadAreTold) {
  CalmOperator calm;
  calm.LayDown();
  calm.disk.Put(calm.Data(GetParam()), "17\r\n");
  calm.disk.SetUnreadable(calm.Data(GetParam()));
  calm.Run();
  ExpectASounding(calm, std::string(GetParam()) + ", unreadable");
}

// The recovery copy can't be told from one that holds rows: no sounding is begun over it.
TEST(OddRecoveryCopy, InPlaceOfWhichAFolderStandsIsTold) {
  CalmOperator calm;
  calm.LayDown();
  calm.disk.MakeFolder(calm.Data("TemporaryData.txt"));
  calm.Run(5 * 60 * kSecond);
  EXPECT_TRUE(calm.WasTold("THE SOUNDING COULD NOT BE STARTED, ITS FILES CANNOT BE WRITTEN.  " +
                           calm.Data("TemporaryData.txt")));
}

TEST(OddRecoveryCopy, ThatCannotBeReadIsToldAndKept) {
  CalmOperator calm;
  calm.LayDown();
  calm.disk.Put(calm.Data("TemporaryData.txt"), "rows");
  calm.disk.SetUnreadable(calm.Data("TemporaryData.txt"));
  calm.Run(5 * 60 * kSecond);
  EXPECT_TRUE(calm.WasTold("THE SOUNDING COULD NOT BE STARTED, ITS FILES CANNOT BE WRITTEN.  " +
                           calm.Data("TemporaryData.txt")));
  EXPECT_EQ(calm.disk.Files().at(calm.Data("TemporaryData.txt")), "rows");
}

TEST(OddRecoveryCopy, OfAnyContentIsKeptBesideTheNewOne) {
  for (const Odd& odd : OddContents()) {
    CalmOperator calm;
    calm.LayDown();
    calm.disk.Put(calm.Data("TemporaryData.txt"), odd.content);
    calm.Run();
    ExpectASounding(calm, odd.what);
    EXPECT_EQ(calm.disk.Files().at(calm.Data("TemporaryData (2).txt")), odd.content) << odd.what;
  }
}

INSTANTIATE_TEST_SUITE_P(All, OddFiles, testing::ValuesIn(kFiles));

}  // namespace
}  // namespace penlog
