// A sounding whose cone comes back without a channel, and then with it, all through the screens.
#include <gtest/gtest.h>

#include <string>

#include "scenarios/resume_scripts.h"

namespace penlog {
namespace {

constexpr std::size_t kRecordedChannels = 5;  // 1, 2, 3, 6, 7
constexpr std::size_t kColumnOfSleeve = 1;
constexpr int kDelayOfSleeve = 5;  // 100 mm

/// The cone's memory names its sleeve as another channel: 2 is coded "B", 12 "L".
void RenameSleeve(Scenario& scenario, const std::string& from, const std::string& to) {
  const std::string memory = scenario.rig.cone.Memory().Read(31, 100);
  const std::size_t place = memory.find(from + "F");
  ASSERT_NE(place, std::string::npos);
  scenario.rig.cone.Answer("W " + PlainNumber(31 + static_cast<int>(place)) + " 1 " + to);
  ASSERT_EQ(scenario.rig.cone.Memory().Read(31 + static_cast<int>(place), 1), to);
}

TEST(ChannelBack, IsOneFileWithItsColumnEmptyWhereItWasMissing) {
  Scenario scenario;
  std::string cpt_without;
  scenario.At("away", [&] { RenameSleeve(scenario, "B", "L"); });
  scenario.At("back", [&] {
    cpt_without = scenario.File(kCpt);
    RenameSleeve(scenario, "L", "B");
  });
  scenario.At("taken_up", [&] { EXPECT_EQ(scenario.File(kCpt), cpt_without); });
  scenario.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() +
                "rig test away\n" + kRestart + ScriptToPanel() +
                R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "RECORDED CHANNELS ARE MISSING NOW."
screen Main
expect Main.cmdStart "STOP"
wait 5
)" + Push("0.1", "0.500 m") +
                ScriptToSuspend() + "rig test back\n" + kRestart + ScriptToResume() +
                "rig test taken_up\n" + Push("0.2", "0.700 m") + ScriptToEnd());
  const Texts rows = RowsOf(scenario.File(kCpt), kCptHeader);
  ASSERT_EQ(rows.size(), 35U);
  const std::string nothing = std::string(14, ' ') + "-32768";
  for (int n = 1; n <= 35; ++n) {
    const std::string& row = rows[static_cast<std::size_t>(n - 1)];
    ASSERT_EQ(row.size(), 13 + 20 * kRecordedChannels) << row;
    const int read = n <= 35 - kDelay ? n + kDelayOfSleeve : n;  // the last ones are not moved
    const bool missing = (read > 20 && read <= 25) || n > 35 - kDelayOfSleeve;
    EXPECT_EQ(row.substr(13 + 20 * kColumnOfSleeve, 20) == nothing, missing) << n;
    EXPECT_EQ(row.find("-32768."), std::string::npos) << row;
  }
  EXPECT_EQ(FilesLike(scenario, "(2)"), 0U) << "nothing had to be mended";
}

}  // namespace
}  // namespace penlog
