#include "screens/typed_depth.h"

#include "core/session.h"
#include "core/settings.h"
#include "support/state.h"

namespace penlog {
namespace {

TEST(TypedDepth, BecomesMetresAndBackInEachUnitAndFormat) {
  const struct {
    std::int16_t units;   // 1 feet
    std::int16_t format;  // 1 elevation
    const char* typed;
    float depth;
  } rows[] = {
      {0, 0, "0", 0},         {0, 0, "12.5", 12.5F}, {0, 0, "-0.5", -0.5F},
      {0, 1, "12.5", -12.5F}, {0, 1, "0", 0},        {1, 0, "32.81", 10},
      {1, 0, "7", 2.133496F}, {1, 1, "-3.281", 1},   {1, 1, "1000.125", -304.8232F},
  };
  const ClearedWorld world;
  for (const auto& row : rows) {
    settings.DepthUnits = row.units;
    settings.DepthFormat = row.format;
    EXPECT_FLOAT_EQ(DepthOfText(row.typed), row.depth) << row.typed;
    EXPECT_EQ(TextOfDepth(DepthOfText(row.typed)), row.typed);
  }
}

TEST(TypedDepth, TellsNumbersFromOtherTexts) {
  const struct {
    const char* text;
    bool number;  // in either locale
  } rows[] = {
      {"", true},      {"  ", true},   {"1", true},     {"-1.5", true},   {"1,5", true},
      {"+2", true},    {".5", true},   {"1.", true},    {" 3 ", true},    {"abc", false},
      {"1.5m", false}, {"--2", false}, {"1 2", false},  {"1.2.3", false}, {"-", false},
      {"nan", false},  {"inf", false}, {"1e39", false},
  };
  const ClearedWorld world;
  for (const std::int16_t comma : {std::int16_t{0}, std::int16_t{1}}) {
    session.CommaDecimal = comma;
    for (const auto& row : rows) {
      EXPECT_EQ(IsNumberOrEmpty(row.text), row.number) << row.text << comma;
    }
  }
}

}  // namespace
}  // namespace penlog
