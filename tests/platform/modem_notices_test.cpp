#include "platform/modem_notices.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace penlog {
namespace {

std::string Text(ModemLines lines) {
  return std::string(lines.cts ? "C" : "") + (lines.dsr ? "S" : "") + (lines.cd ? "D" : "");
}

/// "known CS; edge C; lost 1"
std::string Text(const ModemNotice& notice) {
  std::string text;
  if (notice.known) text += "known " + Text(notice.known_lines) + ";";
  if (notice.edge) text += "edge " + Text(notice.lines) + ";";
  if (notice.lost > 0) text += "lost " + std::to_string(notice.lost) + ";";
  return text;
}

struct Row {
  const char* what;
  std::vector<int> states;
  std::string last;
};

TEST(ModemNotices, TableOfNotifications) {
  const Row rows[] = {
      {"first without changes", {0x10}, "known C;"},
      {"first, all lines off", {0x00}, "known ;"},
      {"first with a change", {0x32}, "known C;edge CS;"},
      {"first with a change to off", {0x01}, "known C;edge ;"},
      {"edge on", {0x00, 0x11}, "edge C;"},
      {"edge off", {0x10, 0x01}, "edge ;"},
      {"edge of the carrier", {0x10, 0x98}, "edge CD;"},
      {"two lines at once are one edge", {0x00, 0x33}, "edge CS;"},
      {"the same again", {0x10, 0x10}, ""},
      {"edge without a change bit", {0x00, 0x20}, "edge S;"},
      {"there and back unseen", {0x10, 0x11}, "lost 1;"},
      {"two lines there and back", {0x00, 0x03}, "lost 2;"},
      {"one seen and one unseen", {0x00, 0x13}, "edge C;lost 1;"},
      {"ring alone", {0x10, 0x54}, ""},
      {"edge after a lost one", {0x00, 0x01, 0x11}, "edge C;"},
  };
  for (const Row& row : rows) {
    ModemNotices notices;
    std::string last;
    for (const int state : row.states) {
      last = Text(notices.Take(static_cast<std::uint8_t>(state)));
    }
    EXPECT_EQ(last, row.last) << row.what;
  }
}

TEST(ModemNotices, ChangeBitsWhileOpeningAreNoEdge) {
  ModemNotices notices;
  EXPECT_FALSE(notices.Known());
  notices.TakeAtOpening(0x11);
  EXPECT_TRUE(notices.Known());
  EXPECT_EQ(Text(notices.Lines()), "C");
  EXPECT_EQ(Text(notices.Take(0x10)), "");
  EXPECT_EQ(Text(notices.Take(0x01)), "edge ;");
}

}  // namespace
}  // namespace penlog
