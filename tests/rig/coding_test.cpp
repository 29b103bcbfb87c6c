#include "rig/coding.h"

#include <gtest/gtest.h>

#include "platform/runtime_fault.h"

namespace penlog {
namespace {

TEST(EncodePlain, TakesSixBitsACharacter) {
  struct Row {
    std::int32_t value;
    int characters;
    const char* text;
  };
  for (const Row& row : {Row{0, 3, "@@@"}, Row{1, 1, "A"}, Row{63, 1, "\x7F"}, Row{100, 2, "Ad"},
                         Row{4095, 2, "\x7F\x7F"}, Row{262143, 3, "\x7F\x7F\x7F"}}) {
    EXPECT_EQ(EncodePlain(row.value, row.characters), row.text) << row.value;
    EXPECT_EQ(DecodePlain(row.text), row.value);
  }
}

TEST(EncodePlain, RefusesWhatDoesNotFit) {
  EXPECT_THROW(EncodePlain(64, 1), RuntimeFault);
  EXPECT_THROW(EncodePlain(4096, 2), RuntimeFault);
  EXPECT_THROW(EncodePlain(262144, 3), RuntimeFault);
  EXPECT_THROW(EncodePlain(-1, 3), RuntimeFault);
}

TEST(EncodeDecimal, TakesTheFewestPlaces) {
  EXPECT_EQ(EncodeDecimal(12.5), "D@A}");
  EXPECT_EQ(EncodeDecimal(1000.0), "@@Oh");
  EXPECT_EQ(EncodeDecimal(-3.0), "`@@C");
  EXPECT_EQ(EncodeDecimal(0.0), "@@@@");
  EXPECT_EQ(EncodeDecimal(1048575.0), "C\x7F\x7F\x7F");
}

TEST(EncodeDecimal, KeepsAsManyPlacesAsTheMagnitudeAllows) {
  EXPECT_DOUBLE_EQ(StoredDecimal(3.14159265), 3.14159);
  EXPECT_DOUBLE_EQ(StoredDecimal(-0.123456789), -0.123457);  // seven places pass 2^20
  EXPECT_DOUBLE_EQ(StoredDecimal(0.012345678), 0.0123457);
}

TEST(EncodeDecimal, RefusesWhatDoesNotFit) {
  EXPECT_THROW(EncodeDecimal(1048576.0), RuntimeFault);
  EXPECT_THROW(EncodeDecimal(-2e6), RuntimeFault);
}

}  // namespace
}  // namespace penlog
