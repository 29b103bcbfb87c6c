#include "operator/script.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

TEST(Script, ReadsWordsQuotesAndComments) {
  const Script script = ParseScript("s",
                                    "# all of it\n\n  type A.txtName \"a \"\"b\"\" c\" # why\n"
                                    "select A.cmb #2\nrig push 2.5\n");
  ASSERT_EQ(script.actions.size(), 3u);
  EXPECT_EQ(script.actions[0].line, 3);
  EXPECT_EQ(script.actions[0].words[1], "a \"b\" c");
  EXPECT_EQ(script.actions[1].words[1], "#2");
  EXPECT_EQ(script.actions[2].rest, "push 2.5");
}

TEST(Script, CommentMayBeginWithADigit) {
  const struct {
    const char* line;
    std::size_t words;
  } rows[] = {
      {"click A.cmdGo #2nd try", 1},
      {"type A.txtName x #1 of 2", 2},
      {"wait 1 #3", 1},
      {"select A.cmb two #2nd entry", 2},
      {"select A.cmb #2 #3rd", 2},
      {"end #1", 0},
      {"expect A.lblSaid x 5 #10 is less", 3},
      {"rig push 1 #2", 2},
  };
  for (const auto& row : rows) {
    const Script script = ParseScript("s", row.line);
    ASSERT_EQ(script.actions.size(), 1u) << row.line;
    EXPECT_EQ(script.actions[0].words.size(), row.words) << row.line;
  }
  EXPECT_TRUE(ParseScript("s", "#1 begins here\n").actions.empty());
  EXPECT_EQ(ParseScript("s", "select A.cmb #12").actions.at(0).words[1], "#12");
}

TEST(Script, RigWordsKeepTheirQuotes) {
  const Script script = ParseScript("s", "rig ground  \"a b/c.gef\" # deep\n");
  EXPECT_EQ(script.actions.at(0).rest, "ground \"a b/c.gef\"");
}

TEST(Script, RefusesWhatItDoesNotKnow) {
  const struct {
    const char* line;
    const char* fault;
  } rows[] = {
      {"jump A.b", "s:1: unknown action \"jump\""},
      {"click", "s:1: \"click\" needs more words"},
      {"click A.b c", "s:1: \"click\" has too many words"},
      {"click b", "s:1: \"b\" is not SCREEN.CONTROL"},
      {"wait soon", "s:1: \"wait\" needs seconds"},
      {"wait -1", "s:1: \"wait\" needs seconds"},
      {"disk perhaps", "s:1: \"disk\" is \"full\" or \"free\""},
      {"answer maybe \"x\"", "s:1: \"maybe\" is no answer"},
      {"type A.b \"open", "s:1: a quote is not closed"},
      {"expect A.b ~[", "s:1: \"~[\" is no pattern"},
      {"expect A.b x soon", "s:1: \"expect\" needs seconds at its end"},
      {"screen A soon", "s:1: \"screen\" needs seconds behind the name"},
      {"point A.b 0.5 x", "s:1: \"point\" needs two fractions from 0 to 1"},
      {"point A.b 50 0.5", "s:1: \"point\" needs two fractions from 0 to 1"},
      {"expect A.b", "s:1: \"expect\" needs more words"},
      {"answer ok", "s:1: \"answer\" needs more words"},
      {"kill now", "s:1: \"kill\" has too many words"},
      {"menu mnuFile", "s:1: \"mnuFile\" is not SCREEN.CONTROL"},
      {"point A.b 0.5 0.5 hit", "s:1: \"point\" may end in \"click\" only"},
  };
  for (const auto& row : rows) {
    try {
      ParseScript("s", row.line);
      ADD_FAILURE() << row.line;
    } catch (const ScriptFault& fault) {
      EXPECT_STREQ(fault.what(), row.fault);
    }
  }
}

}  // namespace
}  // namespace penlog
