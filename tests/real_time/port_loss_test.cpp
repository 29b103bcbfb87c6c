// Links that are lost and come back in real time while rows are recorded, the cone and the outputs
// on pseudo terminals or on the network, the truck interface on the network, among eight ports that
// are present: the console is there again without a touch within 30 s of the return.
//
// PENLOG_LOSSES=all plays each test with both kinds of wires, and the longest loss for a minute.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "app/real_session.h"
#include "core/channels.h"
#include "fieldio/ascii_out.h"
#include "forms/main_form.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "real_time/loss_watch.h"
#include "real_time/played.h"
#include "real_time/sounding_lines.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr int kFirstIdlePort = 11;
constexpr int kIdlePorts = 6;           // with the cone's and the truck interface's: eight
constexpr double kCentimetre = 0.0051;  // m: the working copy gives depths in whole ones
constexpr double kRounding = 0.06;      // steps
constexpr double kCount = 0.005;        // m of a counted step
constexpr double kOnGrid = 0.0011;      // m
constexpr double kMostOfThem = 0.6;
constexpr Micros kLongestRecovery = 30 * kSecond;
constexpr std::size_t kHeldBack = 5;    // rows
constexpr double kRod = 10.0;           // m
constexpr double kTipAtRest = 0.25;     // V
constexpr int kQuietReadings = 12;      // ten, behind two that show that the cone lives
constexpr int kAskedAgain = 2;          // for what came damaged
constexpr std::size_t kASCIIPort = 54;  // line of the settings, from 0

const char* const kConeLost = R"(expect frmWarning.frmSerialWarning visible 10
expect frmWarning.frmModuleWarning visible
expect Main.lblState "~^LINKS? LOST$"
)";
const char* const kConeSilent = R"(expect Main.lblState "LINK LOST"
expect frmWarning.frmModuleWarning visible
expect frmWarning.frmSerialWarning hidden
)";
const std::string kConePanelsWell = R"(expect frmWarning.frmSerialConnected visible
expect frmWarning.frmSerialWarning hidden
expect frmWarning.frmModulesConnected visible
expect frmWarning.frmModuleWarning hidden
)";
const std::string kConeWell = kConePanelsWell + "expect Main.lblState \"RECORDING\"\n";
const char* const kTruckLost = "expect frmWarning.frmEncoderWarning visible 10\n";
const char* const kTruckWell = R"(expect frmWarning.frmEncoderConnected visible
expect frmWarning.frmEncoderWarning hidden
expect frmWarning.frmSteps "DEPTH STEPS MAY BE MISSING"
)";

/// The script of one loss, that waits until the rows behind it are there.
std::string LossText(const std::string& name, const std::string& away, const std::string& back,
                     const std::string& after, const char* how = "") {
  return "rig test lost " + name + "\n" + away + back + "rig test back" + how +
         "\nexpect LossWatch.lblOver \"" + name + "\" 40\n" + after;
}

/// Without it, what costs time is played in part.
bool PlaysAll() {
  const char* losses = std::getenv("PENLOG_LOSSES");
  return losses != nullptr && losses == std::string("all");
}

std::string LongestLoss() {
  return PlaysAll() ? "60" : "20";
}

struct PortLossInRealTime : testing::TestWithParam<bool> {
  PortLossInRealTime() {
    plan.script = "recording.txt";
    plan.settings = {{41, "3"}, {42, "4"}};
    plan.idle_ports = kIdlePorts;
    // A rod that outlasts the slowest recovery: no rod break holds up the rows behind it.
    plan.change_rig = [](RigSetup& rig) { rig.truck.rod_length = kRod; };
    plan.begin = [this](RealSession& its) { Begin(its); };
    plan.test = [this](const std::string& words) { Test(words); };
  }

  void Begin(RealSession& its) {
    session = &its;
    its.TheRig().log.on_added = [this](const RigRecord& record) {
      if (record.kind == RigLogKind::Command) HearCone(record.text);
    };
    for (int port = kFirstIdlePort; port < kFirstIdlePort + kIdlePorts; ++port) {
      WireEnd& wire = its.IdleWire(port);
      wire.OnBytes = [this, port](std::string_view bytes) { heard[port] += bytes; };
      wire.OnOpened = [this, port](const PortSettings& settings) {
        opened.insert(port);
        bauds[port] = settings.baud;
      };
      wire.OnClosed = [this, port] { opened.erase(port); };
    }
  }

  void HearCone(const std::string& command) {
    if (command == "D") passes.NoteReading();
    if (sounding.QuitState != 0) return;
    readings_without_quit = command == "D" ? readings_without_quit + 1 : 0;
    if (readings_without_quit <= kQuietReadings) {
      EXPECT_FALSE(Main.frmQuitWarning.Visible) << readings_without_quit;
    }
  }

  void Test(const std::string& words) {
    if (words.starts_with("lost ")) KeepRows();
    if (watch.Take(words)) return;
    const auto act = acts.find(words);
    if (act == acts.end()) {
      ADD_FAILURE() << "the test knows no \"" << words << "\"";
    } else {
      act->second();
    }
  }

  /// What the recovery copy holds at a loss must stand in it at the end.
  void KeepRows() {
    const std::string path = JoinPath(session->DataFolder(), "TemporaryData.txt");
    kept.push_back(TheDisk().FileExists(path) ? ReadFile(path) : "");
  }

  void Plug(std::initializer_list<int> ports, bool present) {
    for (const int port : ports) session->IdleWire(port).SetPresent(present);
  }

  /// Plays `body`, and judges the losses and the rows.
  void Play(const std::string& body) {
    plan.body = body + "rig stop\nwait 1\n";
    run = PlayReal(plan, GetParam());
    std::cout << watch.Table(GetParam() ? "network" : "pseudo terminal");
    ASSERT_EQ(run.exit_code, 0) << run.report << "\n" << body;
    for (const Loss& loss : watch.Losses()) {
      EXPECT_GE(loss.over, loss.back) << loss.name;
      EXPECT_LE(loss.over, loss.back + kLongestRecovery) << loss.name;
    }
    file = TakeApart(run.cpt);
    file.rows.push_back(file.last);  // no final baseline was taken
    const auto taken = TemporaryRows(run.temporary);
    ASSERT_GE(file.rows.size(), taken.size());
    for (std::size_t row = 0; row < taken.size(); ++row) {
      EXPECT_NEAR(LeadingNumber(file.rows[row]), LeadingNumber(taken[row]), kCentimetre)
          << "row " << row + 1;
    }
    ExpectRows();
    std::cout << "rows up to " << Format(1000 * deepest_below_grid, "#0") << " mm below the grid, "
              << "two passes took up to " << Format(longest_wait, "#0.00") << " s\n";
    for (std::size_t loss = 0; loss < kept.size(); ++loss) {
      EXPECT_TRUE(run.temporary.starts_with(kept[loss])) << watch.Losses()[loss].name;
    }
    EXPECT_EQ(run.temporary_end, "DONE\r\n");
  }

  /// Each row stands at its depth on the grid or as far below it as the rods went until its pass,
  /// and none is missing but where the cone was away.
  void ExpectRows() {
    int gaps = 0;
    double before = 0;
    for (std::size_t row = 0; row < file.rows.size(); ++row) {
      EXPECT_EQ(FieldsOf(file.rows[row]).size(), FieldsDue(row)) << file.rows[row];
      const double number = NumberOf(row);
      EXPECT_GE(number, before + 1) << "twice: " << file.rows[row];
      if (!ConeWasAwayAt(row)) {
        EXPECT_EQ(number, before + 1) << "above " << file.rows[row];
        ExpectBelowGridBy(LeadingNumber(file.rows[row]) - number * step, row);
      } else if (number > before + 1) {
        ++gaps;
      }
      before = number;
    }
    int expected = 0;
    for (const Loss& loss : watch.Losses()) {
      if (!loss.cone_was_lost || loss.held) continue;
      // Where the truck interface was found behind the cone no step was counted meanwhile.
      const int least = loss.truck_was_lost ? 0 : 1;
      const int found = GapRowsOf(loss);
      EXPECT_GE(found, least) << loss.name;
      EXPECT_LE(found, 1) << loss.name;
      expected += found;
    }
    EXPECT_EQ(gaps, expected) << "none where the rods stood";
    ExpectGridBehindEachLoss();
  }

  /// The step that was due counts to the last one that came before the row was taken. With readings
  /// of a tenth of a second this is none or one more; a machine that is held up takes longer.
  void ExpectBelowGridBy(double below, std::size_t row) {
    const double wait = passes.LongestWait(row);
    EXPECT_GE(wait, 0) << "not seen: " << file.rows[row];
    EXPECT_GE(below, -kOnGrid) << file.rows[row];
    EXPECT_LE(below, kCount + speed * wait + kOnGrid) << file.rows[row] << ", " << wait << " s";
    deepest_below_grid = std::max(deepest_below_grid, below);
    longest_wait = std::max(longest_wait, wait);
  }

  /// At the end the rows that were held back go out, and rows 19 and 20 lack their channels then.
  std::size_t FieldsDue(std::size_t row) const {
    const bool held_back = row + kHeldBack >= file.rows.size();
    return held_back && (row == 18 || row == 19) ? 0 : file.channels.size();
  }

  /// Rows with one missing above them, up to the second behind the return.
  int GapRowsOf(const Loss& loss) const {
    const auto end = std::min(file.rows.size(), static_cast<std::size_t>(loss.rows_at_return) + 2);
    int gaps = 0;
    for (auto row = static_cast<std::size_t>(loss.rows_at_loss); row < end; ++row) {
      gaps += NumberOf(row) > (row == 0 ? 0 : NumberOf(row - 1)) + 1 ? 1 : 0;
    }
    return gaps;
  }

  /// Of the depth on the grid at or above the row, from 1.
  double NumberOf(std::size_t row) const {
    return std::floor(LeadingNumber(file.rows[row]) / step + kRounding);
  }

  /// A pass may find a row some counted steps late, but a grid that the loss had shifted would hold
  /// none of the rows up to the next loss.
  void ExpectGridBehindEachLoss() const {
    const auto& losses = watch.Losses();
    for (std::size_t loss = 0; loss < losses.size(); ++loss) {
      if (losses[loss].held) continue;
      const auto first = static_cast<std::size_t>(LossWatch::FirstRowToJudge(losses[loss]));
      const auto end = loss + 1 < losses.size()
                           ? static_cast<std::size_t>(losses[loss + 1].rows_at_loss)
                           : file.rows.size();
      int rows = 0;
      int on_grid = 0;
      for (std::size_t row = first; row < end; ++row, ++rows) {
        const double depth = LeadingNumber(file.rows[row]);
        on_grid += std::abs(depth - std::round(depth / step) * step) < kOnGrid ? 1 : 0;
      }
      EXPECT_GE(rows, kRowsToJudge) << "behind " << losses[loss].name;
      EXPECT_GE(on_grid, kMostOfThem * rows) << "behind " << losses[loss].name;
    }
  }

  /// A row that was due in the loss is taken with the first reading behind it.
  bool ConeWasAwayAt(std::size_t row) const {
    const auto number = static_cast<std::int32_t>(row);
    for (const Loss& loss : watch.Losses()) {
      if (!loss.cone_was_lost) continue;
      if (number >= loss.rows_at_loss && number <= loss.rows_at_return + 1) return true;
    }
    return false;
  }

  SoundingPlan plan;
  double step = 0.02;   ///< m between rows
  double speed = 0.02;  ///< m/s of the push
  LossWatch watch;
  RowPasses passes;
  int readings_without_quit = 0;  ///< since the last other command: the cone was selected anew
  double deepest_below_grid = 0;  ///< m, of a row
  double longest_wait = 0;        ///< s, of two passes before a row
  std::map<std::string, std::function<void()>> acts;  ///< by their words
  RealSession* session = nullptr;
  std::map<int, std::string> heard;
  std::map<int, int> bauds;
  std::set<int> opened;
  std::vector<std::string> kept;  ///< the recovery copy at each loss
  Played run;
  CptFile file;
};

/// Those that are played on one kind of wires, unless all are asked for.
struct LossOnTheNetwork : PortLossInRealTime {};
struct LossOnAPseudoTerminal : PortLossInRealTime {};

TEST_P(PortLossInRealTime, OfTheConeUnderAnotherNumberAndOfTheTruckInterface) {
  Play("rig push 9\nwait 3\n" +
       LossText("cone's port away, back as COM20",
                std::string("rig unplug cone\n") + kConeLost + "wait 1\n",
                "rig replug cone 20 0.1s\nwait 0.2\n", kConeWell) +
       LossText("truck's port away, back",
                std::string("rig unplug truck\n") + kTruckLost +
                    "expect Main.lblState \"TRUCK LINK LOST\"\nwait 1\n",
                "rig plug truck\n", kTruckWell));
}

TEST_P(LossOnAPseudoTerminal, OfConeAndTruckInterfaceAtOnceAndOfTheConeForLong) {
  Play("rig push 9\nwait 3\n" +
       LossText(
           "cone's and truck's ports away, both back",
           std::string("rig unplug cone\nrig unplug truck\n") + kConeLost + kTruckLost + "wait 1\n",
           "rig plug truck\nrig plug cone\n", kConeWell + kTruckWell) +
       LossText("cone's port away for " + LongestLoss() + " s, back",
                std::string("rig unplug cone\n") + kConeLost + "rig stop\nwait " + LongestLoss() +
                    "\nrig push 5\n",
                "rig plug cone\n", kConeWell));
}

// What the cone says in vain is the same on both kinds of wires.
TEST_P(PortLossInRealTime, OfAConeThatIsGoneForAMomentSilentFrozenOrGarbled) {
  const std::string said_in_vain =
      LossText("cone frozen",
               "rig fault frozen\nexpect Main.lblCommError \"COMM ERR: cone repeats\"\n",
               "rig fault frozen off\n", kConeWell + "expect Main.lblCommError \"\"\n") +
      LossText("one reply garbled", "rig fault garbled 1\n", "wait 0.5\n", kConeWell);
  Play("rig push 9\nwait 3\n" +
       LossText("cone's port away for a moment", "rig unplug cone\nwait 0.1\n", "rig plug cone\n",
                kConeWell) +
       LossText("cone silent", std::string("rig fault silent\n") + kConeSilent + "wait 1\n",
                "rig fault silent off\n", kConeWell) +
       (PlaysAll() || !GetParam() ? said_in_vain : ""));
}

TEST_P(LossOnTheNetwork, OfTheConeInABaselineBehindTheStartAndAtTheStopQuestion) {
  plan.script = "waiting.txt";
  acts["the baseline is of whole readings"] = [] {
    EXPECT_GT(channels.Baselines(1), kTipAtRest);
    EXPECT_NEAR(channels.Baselines(1), sounding.Readings(1), 0.01);
  };
  Play("rig fault silent\nclick SetupDisplay.cmdDone\nscreen Main\n" +
       LossText("cone silent during a baseline",
                std::string("click Main.cmdTakeBaseline\n") + kConeSilent +
                    "wait 1\nexpect Main.cmdStart disabled\n",
                "rig fault silent off\n",
                kConePanelsWell +
                    "expect Main.lblState \"WAITING\"\nexpect Main.cmdStart enabled\n" +
                    "rig test the baseline is of whole readings\n",
                " held") +
       LossText("cone's port away right behind START",
                std::string("click Main.cmdStart\nrig unplug cone\nrig push 9\n"
                            "expect Main.cmdStart \"STOP\"\n") +
                    kConeLost + "wait 1\n",
                "rig plug cone\n", kConeWell) +
       LossText("cone silent at the stop question",
                std::string("click Main.cmdStart\nexpect Main.frmLocalWarning visible\n"
                            "expect Main.cmdWarningOK1 visible\nrig fault silent\n") +
                    kConeSilent +
                    "expect Main.cmdWarningOK1 hidden\nexpect Main.cmdWarningOK2 hidden\n"
                    "expect Main.cmdWarningCancel hidden\nwait 1\n",
                "rig fault silent off\n",
                "expect Main.frmLocalWarning hidden\nexpect Main.cmdStart \"STOP\"\n" + kConeWell));
}

TEST_P(LossOnAPseudoTerminal, OfTheConeInTheSearchAndInTheFirstReadingsOfAResume) {
  acts["the readings fill"] = [] {
    EXPECT_LT(sounding.ReadingsTaken, 10);
    EXPECT_EQ(sounding.ConsoleMode, 2);
  };
  Play(R"(rig push 0.1
expect Main.lblDepth "0.100 m" 30
wait 2
click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK2
screen frmZOLRestart
click frmZOLRestart.cmdYes
screen StartUp
click StartUp.cmdResume
expect StartUp.frmResume visible
)" +
       LossText("cone's port away in the search of a resume",
                "rig unplug cone\nclick StartUp.cmdResumeAtLastDepth\n"
                "expect StartUp.frLoad visible\nwait 1\n",
                "rig plug cone\n", "screen frmConeSettings 30\n", " held") +
       "click frmConeSettings.cmdClose\nscreen Main\n" +
       LossText("cone's port away in the first readings of a resume",
                std::string("rig unplug cone\nrig test the readings fill\nrig push 9\n") +
                    kConeLost + "wait 1\n",
                "rig plug cone\n", kConeWell));
  const auto rows = TemporaryRows(run.temporary);
  EXPECT_GT(rows.size(), 8U);
  for (const std::string& row : rows) {
    EXPECT_GT(LeadingNumber(row.substr(13, 20)), kTipAtRest) << "a part of the truth: " << row;
  }
}

// The rods go past the first metre, below which limits count, with a way up between. What has
// raised the quit is over when the cone comes back: it stays latched. Then the cone leans while it
// is away: the quit waits for ten readings behind the return.
TEST_P(LossOnAPseudoTerminal, OfTheConeAndOfTheTruckInterfaceUnderAQuitHoldTheRig) {
  step = 0.1;
  speed = 0.1;
  plan.settings[21] = "0.1";
  float depth = 0;
  acts["keep the depth"] = [&] { depth = sounding.CurrentDepth; };
  acts["the depth is the same"] = [&] { EXPECT_EQ(sounding.CurrentDepth, depth); };
  acts["the quit holds the rig"] = [&] {
    EXPECT_EQ(sounding.QuitState, 1);
    EXPECT_TRUE(session->TheRig().truck.Rts());
  };
  acts["nothing holds the rig"] = [&] { EXPECT_FALSE(session->TheRig().truck.Rts()); };
  acts["the quit came behind ten readings"] = [&] {
    EXPECT_GE(readings_without_quit, kQuietReadings);
    EXPECT_LE(readings_without_quit, kQuietReadings + kAskedAgain);
  };
  const std::string leaning = "rig tilt 12 0\nwait 1\nexpect Main.frmQuitWarning hidden\n";
  const std::string quit_again = kConePanelsWell +
                                 "expect Main.frmQuitWarning visible 20\n"
                                 "rig test the quit came behind ten readings\nwait 0.5\n"
                                 "rig test the quit holds the rig\nrig tilt 0 0\nwait 1\n"
                                 "press Main.cmdResetQuits\nrelease Main.cmdResetQuits\n"
                                 "expect Main.frmQuitWarning hidden\n";
  acts["a push waits"] = [&] { EXPECT_TRUE(session->TheRig().truck.Held()); };
  Play(R"(rig speed 10
rig push 0.6
expect Main.lblDepth "0.600 m" 30
rig lift 0.05
expect Main.lblRebound "-0.050 m"
rig push 0.9
expect Main.lblDepth "~^1\.[1-9]" 30
rig tilt 12 0
expect Main.frmQuitWarning visible 20
wait 1
rig test the quit holds the rig
rig stop
rig test keep the depth
)" +
       LossText("cone's port away under a latched quit, back",
                std::string("rig unplug cone\n") + kConeLost +
                    "rig test the quit holds the rig\nrig tilt 0 0\nwait 2\n"
                    "rig test the quit holds the rig\n",
                "rig plug cone\n",
                kConePanelsWell + "rig test the quit holds the rig\n"
                                  "expect Main.frmQuitWarning visible\n"
                                  "rig test the depth is the same\n",
                " held") +
       LossText("truck's port away under a latched quit, back",
                std::string("rig unplug truck\n") + kTruckLost +
                    "rig test nothing holds the rig\nrig push 0.013\nwait 2\n",
                "rig plug truck\n", kTruckWell, " held") +
       R"(rig test the quit holds the rig
rig test the depth is the same
rig push 0.35
wait 1
rig test a push waits
rig test the depth is the same
expect Main.frmQuitWarning visible
press Main.cmdResetQuits
wait 1
rig test nothing holds the rig
release Main.cmdResetQuits
wait 4
rig stop
)" +
       LossText("cone silent, back and leaning",
                std::string("rig fault silent\n") + kConeSilent + leaning, "rig fault silent off\n",
                quit_again, " held") +
       LossText("cone's port away, back and leaning",
                std::string("rig unplug cone\n") + kConeLost + leaning, "rig plug cone\n",
                quit_again, " held"));
  ASSERT_EQ(watch.Losses().size(), 4U);
  const std::int32_t rows = watch.Losses()[0].rows_at_loss;
  for (const Loss& loss : watch.Losses()) {
    EXPECT_EQ(loss.cone_was_lost, !loss.name.starts_with("truck")) << loss.name;
    EXPECT_EQ(loss.rows_at_return, loss.rows_at_loss) << loss.name;
  }
  EXPECT_EQ(watch.Losses()[1].rows_at_loss, rows);
  EXPECT_GE(watch.Losses()[2].rows_at_loss, rows + 2) << "the override lets the rods go on";
}

// On the network a port is remembered for five seconds after its server has gone.
TEST_P(LossOnTheNetwork, OfTheASCIIPortThatWasMovedAndWithNoPortFree) {
  plan.settings.insert({{22, "1"}, {55, "11"}, {56, "12"}});
  acts["a line goes out"] = [&] { Main.ASCIIOutComm.Output(ASCIIOutTestLine()); };
  acts["pull the ASCII port"] = [&] { Plug({16}, false); };
  acts["pull the free ports"] = [&] { Plug({11, 13, 14, 15}, false); };
  acts["plug the ASCII port"] = [&] { Plug({16}, true); };
  acts["only the new port is open"] = [&] {
    EXPECT_EQ(opened, (std::set<int>{12, 16}));
    EXPECT_EQ(bauds[16], 19200);
  };
  const std::string well =
      "expect frmWarning.frmASCIISerialConnected visible\n"
      "expect frmWarning.frmASCIIOutWarning hidden\nrig test a line goes out\n";
  Play("rig push 9\nwait 3\nrig test a line goes out\n" +
       LossText("ASCII port moved by the operator", R"(click Main.cmdResetPorts
screen frmResetComms
expect frmResetComms.lblASCIIOutSerialPort "11"
select frmResetComms.cmbASCIIOutSerialPort 16
click frmResetComms.cmdOK
)",
                "", well) +
       "wait 0.5\nrig test only the new port is open\n" +
       LossText("ASCII port away with no port free, back", R"(rig test pull the ASCII port
rig test pull the free ports
expect frmWarning.frmASCIIOutWarning visible 15
wait 7
click Main.cmdResetPorts
screen frmResetComms
expect frmResetComms.lblASCIIOutSerialPort "16, LOST"
select frmResetComms.cmbASCIIOutSerialPort 12
answer yes "Port 12 is currently being used for the video overlay output."
answer ok "No free ports. Cannot assign video overlay output port"
click frmResetComms.cmdOK
)",
                "rig test plug the ASCII port\n", well) +
       "wait 0.5\n");
  EXPECT_EQ(heard[11], ASCIIOutTestLine());
  EXPECT_EQ(heard[16], ASCIIOutTestLine() + ASCIIOutTestLine());
  EXPECT_EQ(heard[13] + heard[14] + heard[15], "");
  EXPECT_EQ(LinesOf(run.settings)[kASCIIPort], "16") << "for the next start";
}

std::vector<bool> Wires(bool network) {
  return PlaysAll() ? std::vector<bool>{false, true} : std::vector<bool>{network};
}

std::string NameOfWires(const testing::TestParamInfo<bool>& info) {
  return info.param ? "OnTheNetwork" : "OnAPseudoTerminal";
}

INSTANTIATE_TEST_SUITE_P(Cone, PortLossInRealTime, testing::Bool(), NameOfWires);
INSTANTIATE_TEST_SUITE_P(Cone, LossOnTheNetwork, testing::ValuesIn(Wires(true)), NameOfWires);
INSTANTIATE_TEST_SUITE_P(Cone, LossOnAPseudoTerminal, testing::ValuesIn(Wires(false)), NameOfWires);

}  // namespace
}  // namespace penlog
