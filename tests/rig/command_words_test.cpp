#include "rig/command_words.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

TEST(SplitWords, PartsAtBlanksAndKeepsQuotedOnes) {
  EXPECT_EQ(SplitWords("  push\t 1.5 "), (Words{"push", "1.5"}));
  EXPECT_EQ(SplitWords("ground \"/my holes/a b.gef\" x"),
            (Words{"ground", "/my holes/a b.gef", "x"}));
  EXPECT_EQ(SplitWords("ground \"open"), (Words{"ground", "\"open"}));
  EXPECT_EQ(SplitWords("a \"\" b"), (Words{"a", "", "b"}));
  EXPECT_TRUE(SplitWords("").empty());
}

TEST(SecondsWord, IsANumberWithAnS) {
  const Words words = {"5s", "0.25s", "5", "s", "-1s", ""};
  EXPECT_EQ(SecondsWord(words, 0), 5 * kSecond);
  EXPECT_EQ(SecondsWord(words, 1), kSecond / 4);
  for (std::size_t i = 2; i < 7; ++i) EXPECT_FALSE(SecondsWord(words, i)) << i;
}

TEST(NumberWord, RefusesWhatIsMissingOrOutside) {
  const Words words = {"2.5", "x", "11"};
  EXPECT_EQ(NumberWord(words, 0, 0.0, 10.0), 2.5);
  EXPECT_THROW(NumberWord(words, 1, 0.0, 10.0), BadWords);
  EXPECT_THROW(NumberWord(words, 2, 0.0, 10.0), BadWords);
  EXPECT_THROW(NumberWord(words, 3, 0.0, 10.0), BadWords);
  EXPECT_THROW(WholeWord(words, 0, 0, 10), BadWords);
}

}  // namespace
}  // namespace penlog
