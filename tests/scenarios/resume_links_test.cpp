// A resume whose links, zeros or averages are not as they were: what it goes on with, and what it
// says of it.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/channels.h"
#include "core/session.h"
#include "forms/main_form.h"
#include "scenarios/resume_scripts.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

/// A suspended sounding of 20 rows, and its start screen.
std::string ScriptToSuspended() {
  return ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart;
}

std::string ScriptToSurface() {
  return ScriptToSuspended() + "rig at 0\n" + ScriptToPanel() + ScriptBy("cmdResumeAtSurface") +
         "screen frmResumeDepthStatus\n";
}

// Ports.

TEST(ResumedPorts, OfAConeUnderTheTrucksNumberStayApartAndTheTruckIsLostUntilItIsGivenItsOwn) {
  Scenario scenario;
  const auto port_line = [&](int line) {
    return LinesOf(
        scenario.DataFile("System Setup Values.txt"))[static_cast<std::size_t>(line) - 1];
  };
  Texts saved;
  scenario.At("look", [&] {
    saved.push_back(port_line(setting::kConeSerialPort));
    saved.push_back(port_line(setting::kTruckInterfaceSerialPort));
  });
  scenario.Play(ScriptToSuspended() + R"(rig replug truck 9 1s
wait 2
rig replug cone 4 1s
wait 2
rig replug truck 3 1s
wait 2
)" + ScriptToPanel() +
                R"(click StartUp.cmdResumeAtLastDepth
expect StartUp.lblLoad "~CHECKING FOR CONE ON PORT 4" 200
answer ok "THE CONE WAS FOUND ON PORT 4, THE TRUCK INTERFACE'S PORT OF BEFORE."
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen Main
expect frmWarning.frmEncoderWarning visible 5
expect frmWarning.frmEncoderConnected hidden
expect Main.lblState "TRUCK LINK LOST"
rig test look
rig push 0.04
wait 5
expect Main.lblDepth "0.400 m"
click Main.cmdResetPorts
expect frmResetComms.lblTruckInterfaceSerialPort "4, LOST"
select frmResetComms.cmbTruckInterfaceSerialPort 3
click frmResetComms.cmdOK
expect frmWarning.frmEncoderConnected visible 5
expect frmWarning.frmEncoderWarning hidden
expect Main.lblState "RECORDING"
rig test look
)" + Push("0.2", "0.600 m") +
                ScriptToEnd());
  EXPECT_EQ(saved, (Texts{"3", "4", "4", "3"})) << "never a pair that reads as one shared port";
  ExpectCptDepths(scenario, 20, 30);
}

// Zeros.

TEST(ResumedZeros, OfAChannelThatIsNotRecordedAreThoseOfItsRecordAndThatIsTold) {
  Scenario scenario;
  std::vector<float> zeros;
  scenario.At("look", [&] { zeros.push_back(channels.Baselines(3)); });
  std::string script = ScriptToRecording();
  script.replace(script.find("click SetupDisplay.cmdDone"), 26,
                 "uncheck SetupDisplay.chkRecordChan_3\nclick SetupDisplay.cmdDone\n"
                 "answer yes \"PP channel is not selected for recording.\"");
  const auto baseline = script.find("click Main.cmdTakeBaseline");
  script.insert(baseline, "rig test look\n");
  scenario.Play(script + "rig test look\n" + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
                ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "THE LAST SOUNDING SAVED NO BASELINE OF THESE CHANNELS."
screen Main
wait 5
rig test look
)" + ScriptToEnd());
  ASSERT_EQ(zeros.size(), 3U);
  EXPECT_NE(zeros[1], zeros[0]) << "taken in the air";
  EXPECT_EQ(zeros[2], zeros[0]) << "of the cone's record, and not 0";
  EXPECT_NE(zeros[2], 0.0F);
}

TEST(ResumedZeros, AreWhatTheQuitLimitsStandOn) {
  Scenario scenario;
  std::vector<float> limits;
  std::vector<float> zeros;
  scenario.At("look", [&] {
    limits.push_back(channels.QuitLimitDeep(1));
    zeros.push_back(channels.Baselines(1));
  });
  std::string script = ScriptToRecording();
  script.insert(script.find("click Main.cmdTakeBaseline"), "rig test look\n");
  scenario.Play(script + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart + ScriptToResume() +
                "rig test look\n" + ScriptToEnd());
  ASSERT_EQ(limits.size(), 2U);
  ASSERT_NE(limits[0], 0.0F);
  EXPECT_GT(std::abs(zeros[1] - zeros[0]), 0.002F) << "taken in the air, and the record's";
  EXPECT_NEAR(limits[1] - zeros[1], limits[0] - zeros[0], 1e-5F);
}

// The way down.

TEST(ResumeFromTheSurface, ShowsTheDepthWithinASecondWhileItsConeIsAwayOrFrozen) {
  struct Case {
    const char* what;
    const char* lost;
  };
  const Case cases[] = {
      {"away", "rig unplug cone\nexpect frmWarning.frmSerialWarning visible 20\n"},
      {"silent", "rig fault silent\nexpect frmWarning.frmModuleWarning visible 20\n"},
      {"back and frozen",
       "rig fault frozen\nrig unplug cone\nexpect frmWarning.frmSerialWarning visible 20\n"
       "rig plug cone\nexpect Main.lblCommError \"COMM ERR: duplicate\" 120\n"}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    Scenario scenario;
    for (int port = 5; port <= 20; ++port) scenario.session.ports.Wire(port);  // a longer search
    scenario.Play(ScriptToSurface() + row.lost + R"(wait 3
rig push 0.1
expect Main.lblDepth "0.050 m" 60
expect frmResumeDepthStatus.lblCurrentResumeDepth "~0.0[56]" 1
expect Main.lblDepth "0.100 m" 60
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.10" 1
expect frmResumeDepthStatus.lblDifference "0.30 m"
end
)");
  }
}

TEST(ResumeFromTheSurface, BehindRowsThatAreMissingGoesOnOnTheGridFromTheSurface) {
  Scenario scenario;
  Texts stored;
  scenario.At("stored", [&] { stored = StoredDepths(scenario); });
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 10
rig unplug cone
wait 6
rig plug cone
expect Main.lblDepth "0.900 m" 90
wait 3
)" + ScriptToSuspend() +
                kRestart + "rig at 0\n" + ScriptToPanel() +
                "expect StartUp.lblLastSoundingDepth \"0.90 m\"\n" +
                ScriptBy("cmdResumeAtSurface") + R"(screen frmResumeDepthStatus
rig push 0.91
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.91" 90
wait 2
click frmResumeDepthStatus.lblDepthReached
)" + Push("0.09", "1.000 m") +
                "rig test stored\n" + ScriptToEnd());
  ASSERT_GT(stored.size(), 6U);
  ASSERT_LT(stored.size(), 51U - 3U) << "rows are missing";
  EXPECT_EQ(Texts(stored.end() - 7, stored.end()),
            (Texts{"0.90", "gap", "0.92", "0.94", "0.96", "0.98", "1.00"}));
}

// The final baseline.

TEST(FinalBaselineOfAResume, WaitsUntilTheAveragesAreFull) {
  Scenario scenario;
  std::string open;
  scenario.At("filling", [] { EXPECT_LT(sounding.ReadingsTaken, session.ReadingsAveraged); });
  scenario.At("refused", [&] {
    open = scenario.File(kCpt);
    EXPECT_NE(scenario.File(kTemporary), "DONE\r\n");
  });
  scenario.Play(ScriptToSuspended() + ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen Main
click Main.cmdStart
click Main.cmdWarningOK1
rig test filling
click Main.Command2
answer ok "FINAL BASELINE CANNOT BE TAKEN YET: THE AVERAGES ARE NOT FULL."
expect Main.frmTakeFinalBaseline visible
rig test refused
wait 5
click Main.Command2
screen frmZOLRestart
click frmZOLRestart.cmdNo
)");
  EXPECT_EQ(RowsOf(open, kCptHeader).size(), 20U - kDelay) << "nothing was written";
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  const Texts rows = RowsOf(scenario.File(kCpt), kCptHeader);
  ASSERT_EQ(rows.size(), 21U);
  EXPECT_TRUE(rows.back().starts_with(std::string(13, ' '))) << rows.back();
  EXPECT_GT(LeadingNumber(rows.back().substr(13, 20)), 0.25) << "the sensor gives 0.2531 V at rest";
}

}  // namespace
}  // namespace penlog
