// The console killed in real time, again and again, at moments that are drawn by lot: the rig is a
// program of its own (cone on a pseudo terminal, truck interface on the network), and so is the
// console. One sounding after the other is recorded, killed, resumed, killed and ended.
//
// PENLOG_KILLS tells how often (5), PENLOG_KILL_SEED repeats the lots of a run.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "app/programs.h"
#include "core/first_run_data.h"
#include "platform/numbers.h"
#include "platform/posix/line_server.h"
#include "platform/texts.h"
#include "real_time/sounding_lines.h"

namespace penlog {
namespace {

constexpr std::size_t kTemporaryHead = 17;
constexpr std::size_t kCptHead = 23;
constexpr std::size_t kDelay = 5;  // rows that the `.cpt` file lags behind
constexpr double kLongestLife = 150;
const std::map<int, int> kDelays = {{1, 0}, {2, 5}, {3, 2}, {6, 3}, {7, 4}};

/// A part of a life: from the turn of a script's line on, for `span` seconds.
struct Stage {
  const char* name;
  const char* line;  ///< the beginning of the line
  double span;
  int rows = 0;  ///< if more than 0, from one of so many told rows on
};

const std::vector<Stage> kRecordStages = {{"start", "screen StartUp", 1},
                                          {"search for the cone", "click StartUp.cmdStart", 8},
                                          {"report page", "click frmConeSettings.cmdClose", 0.5},
                                          {"beginning of a sounding", "click Main.cmdStart", 0.5},
                                          {"row on its way", "rig push", 0.004, 8},
                                          {"stop question", "expect Main.frmLocalWarning", 0.5},
                                          {"end", "click Main.Command2", 0.3},
                                          {"recording", "rig push", 8}};
const std::vector<Stage> kResumeStages = {{"start", "screen StartUp", 1},
                                          {"search for the cone", "click StartUp.cmdResumeAt", 8},
                                          {"files taken up", "click frmConeSettings.cmdClose", 0.5},
                                          {"resume", "expect Main.cmdStart \"STOP\"", 2},
                                          {"row on its way", "rig push", 0.004, 8},
                                          {"recording", "rig push", 8},
                                          {"stop question", "expect Main.frmLocalWarning", 0.5},
                                          {"end", "click Main.Command2", 0.3}};

/// Stages in an order by lot, all of them once before one comes again.
class Deck {
 public:
  explicit Deck(const std::vector<Stage>& stages) : stages_(stages), ahead_(stages) {}
  Stage Draw(std::mt19937& lots) {
    if (ahead_.empty()) {
      ahead_ = stages_;
      std::shuffle(ahead_.begin(), ahead_.end(), lots);
    }
    const Stage stage = ahead_.back();
    ahead_.pop_back();
    if (first_) std::shuffle(ahead_.begin(), ahead_.end(), lots);
    first_ = false;
    return stage;
  }

 private:
  const std::vector<Stage>& stages_;
  std::vector<Stage> ahead_;
  bool first_ = true;  // the last of the list: a recording, so that there is something to resume
};

const char* const kLook = "wait 0.5\n";
const std::string kRecordAndEnd = std::string(kLook) + R"(rig speed 4
rig push 0.3
wait 9
click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible
click Main.Command2
screen frmZOLRestart
click frmZOLRestart.cmdNo
)";

std::string RecordScript(const std::string& folder, int number) {
  return R"(screen StartUp
click StartUp.cmdStart
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen SetupSounding
select SetupSounding.Dir1 ")" +
         folder + "\"\ntype SetupSounding.txtFileName KILL" + std::to_string(number) + R"(
click SetupSounding.Command2
screen SetupDisplay
click SetupDisplay.cmdDone
screen Main
wait 2
click Main.cmdTakeBaseline
expect Main.cmdStart enabled
click Main.cmdStart
expect Main.cmdStart "STOP"
)" + kRecordAndEnd;
}

std::string ResumeScript() {
  return R"(screen StartUp
click StartUp.cmdResume
click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen Main
expect Main.cmdStart "STOP" 20
)" + kRecordAndEnd;
}

/// The line of the script, from 1, that begins so; 0 if there is none.
int LineThatBegins(const std::string& script, const std::string& beginning) {
  int number = 1;
  for (std::size_t at = 0; at < script.size(); at = script.find('\n', at) + 1, ++number) {
    if (script.compare(at, beginning.size(), beginning) == 0) return number;
  }
  return 0;
}

/// Lines that have their end; what stands behind the last one is left out.
std::vector<std::string> WholeLines(const std::string& text) {
  return LinesOf(text.substr(0, text.rfind("\r\n") == text.npos ? 0 : text.rfind("\r\n") + 2));
}

std::vector<std::string> StoredRows(const std::string& temporary) {
  std::vector<std::string> rows = WholeLines(temporary);
  const auto head = std::min(rows.size(), kTemporaryHead);
  rows.erase(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(head));
  return rows;
}

double DepthOf(const std::string& row) {
  return LeadingNumber(row.substr(1));
}

unsigned NumberTold(const char* name, unsigned otherwise) {
  const char* told = std::getenv(name);
  return told == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(told, nullptr, 10));
}

struct RealKills : Programs {
  RealKills() : seed(NumberTold("PENLOG_KILL_SEED", std::random_device()())), lots(seed) {
    std::cout << "PENLOG_KILL_SEED=" << seed << "\n";
    for (const FirstRunFile& file : FirstRunFiles()) {
      std::string text(file.content);
      if (file.name == "System Setup Values.txt") text = WithPorts(text);
      std::ofstream(data + "/" + std::string(file.name), std::ios::binary) << text;
    }
  }

  static std::string WithPorts(const std::string& first_run) {
    auto lines = LinesOf(first_run);
    lines.at(40) = "3";
    lines.at(41) = "4";
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
  }

  void StartRig() {
    rig = std::make_unique<Program>(
        "penlog-rig",
        std::vector<std::string>{"--control", "0", "--window", "no", "--links", folder.Path(),
                                 "--ports-file", data + "/Serial Ports.txt"});
    ASSERT_TRUE(Until([this] { return rig->Printed().find("truck COM4") != std::string::npos; }));
    const std::string told = "control 127.0.0.1:";
    const auto at = rig->Printed().find(told);
    ASSERT_NE(at, std::string::npos) << rig->Printed();
    control = std::stoi(rig->Printed().substr(at + told.size()));
  }

  void Order(const std::string& words) const {
    EXPECT_EQ(AskLineServer(control, words).substr(0, 2), "ok") << words;
  }

  double Lot(double to) { return std::uniform_real_distribution<double>(0, to)(lots); }
  /// Half of the lots fall into the first tenth, in which files are made and mended.
  double Delay(double span) { return Lot(1) < 0.5 ? Lot(span) : Lot(span / 10); }

  std::string Temporary() const { return Content(data + "/TemporaryData.txt"); }
  static bool IsOpen(const std::string& temporary) {
    return !temporary.empty() && !temporary.starts_with("DONE");
  }

  void Live();
  void TakeOutput(const std::string& text);
  void LookAtFilesTakenUp();
  void Judge();
  void JudgeEnded(const std::vector<std::string>& rows);

  unsigned seed;
  std::mt19937 lots;
  std::unique_ptr<Program> rig;
  int control = 0;
  int kills = 0;
  int lives = 0;
  Deck record_stages{kRecordStages};
  Deck resume_stages{kResumeStages};
  std::map<std::string, int> done;  ///< kills by stage
  std::set<int> turns;              ///< lines of the script that have had their turn
  std::vector<std::string> known;   ///< rows of the sounding that must stand
  std::vector<std::string> told;    ///< and of this life
  std::string cpt;                  ///< path of the sounding's file
  std::size_t read = 0;             ///< of what the console has printed
  int soundings = 0;
  int rows_told = 0;
  int rows_lost = 0;
  int torn = 0;
};

void RealKills::TakeOutput(const std::string& text) {
  for (auto end = text.find('\n', read); end != text.npos; end = text.find('\n', read)) {
    const std::string line = text.substr(read, end - read);
    read = end + 1;
    if (line.starts_with("row ")) told.push_back(line.substr(4));
    if (line.starts_with("at ")) turns.insert(std::stoi(line.substr(3)));
  }
}

/// Before the first new row: every line is whole, and the `.cpt` file has the rows that it should.
void RealKills::LookAtFilesTakenUp() {
  const std::string temporary = Temporary();
  const std::string sounding = Content(WholeLines(temporary).at(0));
  for (const std::string& text : {temporary, sounding}) {
    const bool whole = text.ends_with("\r\n");
    torn += whole ? 0 : 1;
    EXPECT_TRUE(whole) << text.substr(text.rfind('\n') + 1);
  }
  const std::size_t rows = StoredRows(temporary).size();
  const std::size_t aligned = rows > kDelay ? rows - kDelay : 0;
  EXPECT_EQ(WholeLines(sounding).size(), kCptHead + aligned) << sounding;
}

void RealKills::Judge() {
  rows_told += static_cast<int>(told.size());
  std::vector<std::string> promised = known;
  promised.insert(promised.end(), told.begin(), told.end());
  const std::string temporary = Temporary();
  if (!IsOpen(temporary)) {
    if (!promised.empty()) JudgeEnded(promised);
    known.clear();
    return;
  }
  EXPECT_EQ(WholeLines(temporary).at(0), cpt);
  const std::vector<std::string> rows = StoredRows(temporary);
  for (std::size_t row = 0; row < promised.size(); ++row) {
    const bool stands = row < rows.size() && rows[row] == promised[row];
    rows_lost += stands ? 0 : 1;
    EXPECT_TRUE(stands) << "row " << row + 1 << ": " << promised[row];
  }
  for (const std::string& row : rows) EXPECT_EQ(row.size(), rows.front().size()) << row;
  known = rows;
}

/// The file holds each row, shifted by its sensors' places, and the final baseline.
void RealKills::JudgeEnded(const std::vector<std::string>& rows) {
  ++soundings;
  const CptFile file = TakeApart(Content(cpt));
  std::vector<std::string> unquoted;
  for (const std::string& row : rows) unquoted.push_back(row.substr(1, row.size() - 2));
  const auto aligned = AlignedRows(unquoted, file.channels, kDelays);
  EXPECT_EQ(file.rows.size(), rows.size()) << cpt;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const bool stands = row < file.rows.size() &&
                        std::abs(LeadingNumber(file.rows[row]) - DepthOf(rows[row])) < 0.0051 &&
                        file.rows[row].substr(13) == aligned[row].substr(6);
    rows_lost += stands ? 0 : 1;
    EXPECT_TRUE(stands) << "row " << row + 1 << " of " << cpt << ": " << rows[row] << "\n"
                        << (row < file.rows.size() ? file.rows[row] : "none");
  }
}

/// One life of the console, to its kill, or to its end when that came first.
void RealKills::Live() {
  ++lives;
  const std::string temporary = Temporary();
  const bool resumes = IsOpen(temporary);
  Order("stop");
  const double depth = resumes && !known.empty() ? std::max(0.0, DepthOf(known.back())) : 0.0;
  Order("at " + Format(depth, "0.00") + " 0");
  const std::string script = resumes ? ResumeScript() : RecordScript(folder.Path(), lives);
  if (!resumes) cpt = folder / ("KILL" + std::to_string(lives) + ".cpt");
  const Stage stage = (resumes ? resume_stages : record_stages).Draw(lots);
  const int aim = LineThatBegins(script, stage.line);
  ASSERT_GT(aim, 0) << stage.line;
  const auto rows = static_cast<std::size_t>(Lot(stage.rows) + (stage.rows > 0 ? 1 : 0));
  const double delay = Delay(stage.span);
  const int look = resumes ? LineThatBegins(script, kLook) : 0;
  turns.clear();
  told.clear();
  read = 0;
  Program console("penlog-operator", {WriteScript(script), "--rig", std::to_string(control),
                                      "--out", folder.Path(), "--boxes", "--tell"});
  const auto start = Clock::now();
  Clock::time_point reached{};
  bool looked = look == 0;
  while (!console.Ended() && SecondsSince(start) < kLongestLife) {
    TakeOutput(console.Printed());
    if (!looked && turns.contains(look)) {
      looked = true;
      LookAtFilesTakenUp();
    }
    const bool now = turns.contains(aim) && told.size() >= rows;
    if (reached == Clock::time_point{} && now) reached = Clock::now();
    if (reached != Clock::time_point{} && SecondsSince(reached) >= delay) {
      console.Signal(SIGKILL);
      ++kills;
      ++done[stage.name];
      ASSERT_TRUE(Until([&console] { return console.Ended(); }));
      break;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  TakeOutput(console.Printed());
  const bool killed = console.ExitCode() == -1;
  ASSERT_TRUE(killed || console.ExitCode() == 0) << console.Printed() << "\n" << script;
  ASSERT_LT(SecondsSince(start), kLongestLife) << console.Printed() << "\n" << script;
  Judge();
}

TEST_F(RealKills, LoseNoRowWhoseSyncHadReturnedAndLeaveNoTornLine) {
  const auto wanted = static_cast<int>(NumberTold("PENLOG_KILLS", 5));
  StartRig();
  while (kills < wanted && !HasFailure()) Live();
  for (const auto& [stage, count] : done) std::cout << "| " << stage << " | " << count << " |\n";
  std::cout << kills << " kills in " << lives << " lives, " << soundings << " soundings ended, "
            << rows_told << " rows told, " << rows_lost << " lost, " << torn
            << " torn lines after a resume\n";
  EXPECT_EQ(rows_lost, 0);
  EXPECT_EQ(torn, 0);
}

}  // namespace
}  // namespace penlog
