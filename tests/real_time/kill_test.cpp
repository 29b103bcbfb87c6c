// The console killed in real time, again and again, at moments that are drawn by lot: the rig is a
// program of its own (cone on a pseudo terminal, truck interface on the network), and so is the
// console. One sounding after the other is recorded, killed, resumed at its last depth or from the
// surface, killed and ended. A console that ends in any other way than by its script or our kill
// fails the test.
//
// PENLOG_KILLS tells how often (5), PENLOG_KILL_SEED repeats the lots of a run.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "app/programs.h"
#include "core/first_run_data.h"
#include "platform/numbers.h"
#include "platform/posix/line_server.h"
#include "platform/texts.h"
#include "real_time/kill_judge.h"
#include "real_time/sounding_lines.h"
#include "support/sounding_lines.h"

namespace penlog {
namespace {

constexpr double kLongestLife = 200;
constexpr double kDrilled = 0.1;         // m below the last depth
constexpr double kDeepestWayDown = 1.2;  // m; deeper ones take too long
constexpr std::size_t kTailTold = 6000;  // characters of what the console printed

/// A part of a life: from the turn of a script's line on, for `span` seconds.
struct Stage {
  const char* name = "";
  const char* line = "";  ///< the beginning of the line
  double span = 0;
  int rows = 0;   ///< if more than 0, from one of so many told lines on
  int least = 1;  ///< of these
};

const std::vector<Stage> kRecordStages = {{"start", "screen StartUp", 1},
                                          {"search for the cone", "click StartUp.cmdStart", 8},
                                          {"report page", "click frmConeSettings.cmdClose", 0.5},
                                          {"beginning of a sounding", "click Main.cmdStart", 0.5},
                                          {"row on its way", "rig speed 4", 0.004, 8},
                                          {"stop question", "expect Main.frmLocalWarning", 0.5},
                                          {"end", "click Main.Command2", 0.3},
                                          {"recording with rows", "rig speed 4", 5, 5, 3}};
const std::vector<Stage> kResumeStages = {{"start", "screen StartUp", 1},
                                          {"search for the cone", "click StartUp.cmdResumeAt", 8},
                                          {"files taken up", "click frmConeSettings.cmdClose", 0.5},
                                          {"resume", "expect Main.cmdStart \"STOP\"", 2},
                                          {"row on its way", "rig speed 4", 0.004, 8},
                                          {"recording", "rig speed 4", 8},
                                          {"stop question", "expect Main.frmLocalWarning", 0.5},
                                          {"end", "click Main.Command2", 0.3}};

const std::vector<Stage> kSurfaceStages = {
    {"files taken up", "click frmConeSettings.cmdClose", 0.5},
    {"way down", "rig speed 20", 4},
    {"gap row", "click frmResumeDepthStatus.lblDepthReached", 0.1},
    {"gap row on its way", "click frmResumeDepthStatus.lblDepthReached", 0.004, 1},
    {"behind the gap row", "rig speed 4", 0.5},
    {"recording", "rig speed 4", 8},
    {"end", "click Main.Command2", 0.3},
    {"rows behind the gap row", "rig speed 4", 0.004, 3}};

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
  bool first_ = true;  // the last of the list: with rows, so that there is something to resume
};

const char* const kLook = "wait 0.5\n";
const std::string kRecordAndEnd = std::string(kLook) + R"(rig speed 4
rig push 0.3
wait 9
click Main.cmdStart
expect Main.frmLocalWarning visible 30
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible 30
click Main.Command2
screen frmZOLRestart 30
click frmZOLRestart.cmdNo
)";

std::string RecordScript(const std::string& folder, int number) {
  return R"(screen StartUp 30
click StartUp.cmdStart
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen SetupSounding 30
select SetupSounding.Dir1 ")" +
         folder + "\"\ntype SetupSounding.txtFileName KILL" + std::to_string(number) + R"(
click SetupSounding.Command2
screen SetupDisplay 30
click SetupDisplay.cmdDone
screen Main 30
wait 2
click Main.cmdTakeBaseline
expect Main.cmdStart enabled 30
click Main.cmdStart
expect Main.cmdStart "STOP" 30
)" + kRecordAndEnd;
}

std::string ResumeScript() {
  return R"(screen StartUp 30
click StartUp.cmdResume
click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen Main 30
expect Main.cmdStart "STOP" 30
)" + kRecordAndEnd;
}

/// Down to a gap that was drilled below the last depth.
std::string SurfaceScript(double last_depth) {
  const std::string depth = Format(last_depth + kDrilled, "0.00");
  return R"(screen StartUp 30
click StartUp.cmdResume
type StartUp.txtDistanceDrilled )" +
         Format(kDrilled, "0.0") + R"(
click StartUp.cmdResumeAtSurface
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen frmResumeDepthStatus 30
expect Main.cmdStart "STOP" 30
)" + kLook +
         "rig speed 20\nrig push " + depth +
         "\nexpect frmResumeDepthStatus.lblCurrentResumeDepth \"" + depth + R"(" 60
click frmResumeDepthStatus.lblDepthReached
expect Main.lblState "RECORDING" 60
)" + kRecordAndEnd.substr(std::string(kLook).size());
}

/// The line of the script, from 1, that begins so; 0 if there is none.
int LineThatBegins(const std::string& script, const std::string& beginning) {
  int number = 1;
  for (std::size_t at = 0; at < script.size(); at = script.find('\n', at) + 1, ++number) {
    if (script.compare(at, beginning.size(), beginning) == 0) return number;
  }
  return 0;
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

  /// What one life is to do, and when it is killed.
  struct Life {
    int number = 0;
    bool resumes = false;
    bool from_surface = false;
    double begins_at = 0;  ///< m: the tip
    std::string script;
    Stage stage;
    int aim = 0;           ///< the line of the script from which the kill counts
    std::size_t rows = 0;  ///< told lines that it waits for, too
    double delay = 0;      ///< s behind these
    int look = 0;          ///< the line at which the files that were taken up are looked at; 0 none
    std::string NameOfStage() const {
      const char* kind = from_surface ? "from the surface: "
                         : resumes    ? "at the last depth: "
                                      : "first life: ";
      return std::string(kind) + stage.name;
    }
  };

  void Live();
  Life ChooseLife();
  bool WatchAndKill(const Life& life, Program& console);
  std::string Report(const Life& life, Program& console) const;
  void TakeOutput(const std::string& text);
  void LookAtFilesTakenUp();
  void ExpectEnd(const Program& console, bool sent) const;
  void ExpectMark();
  void Judge();
  void JudgeOpen(const std::vector<std::string>& promised, const std::string& temporary);
  void JudgeClosed(const std::vector<std::string>& promised);
  void Take(const KillFindings& findings);
  std::size_t LotOf(std::size_t count) { return static_cast<std::size_t>(lots()) % count; }

  unsigned seed;
  std::mt19937 lots;
  std::unique_ptr<Program> rig;
  int control = 0;
  int kills = 0;
  int lives = 0;
  Deck record_stages{kRecordStages};
  Deck resume_stages{kResumeStages};
  Deck surface_stages{kSurfaceStages};
  bool from_surface = false;        ///< the last resume; they take turns
  std::map<std::string, int> done;  ///< kills by stage
  std::set<int> turns;              ///< lines of the script that have had their turn
  std::vector<std::string> known;   ///< lines of the sounding that must stand: rows and marks
  std::vector<std::string> told;    ///< and of this life
  std::string cpt;                  ///< path of the sounding's file
  std::size_t read = 0;             ///< of what the console has printed
  int soundings = 0;
  int rows_told = 0;
  int rows_lost = 0;
  int looks = 0;  ///< for torn lines, one a resume
  int torn = 0;
  int marks = 0;            ///< of gaps, told
  int behind_marks = 0;     ///< lives from the surface that came to rows
  int taken_out = 0;        ///< lines that were taken out of copies of the files
  int taken_out_found = 0;  ///< and found to be lost
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
  ++looks;
  const std::string temporary = Temporary();
  const std::string sounding = Content(WholeLines(temporary).at(0));
  for (const std::string& text : {temporary, sounding}) {
    const bool whole = text.ends_with("\r\n");
    torn += whole ? 0 : 1;
    EXPECT_TRUE(whole) << text.substr(text.rfind('\n') + 1);
  }
  const std::size_t rows = StoredRows(temporary).size();
  const std::size_t aligned = rows > kCptLag ? rows - kCptLag : 0;
  EXPECT_EQ(WholeLines(sounding).size(), kCptHead + aligned) << sounding;
}

void RealKills::Take(const KillFindings& findings) {
  rows_lost += findings.rows_lost;
  for (const std::string& fault : findings.faults) ADD_FAILURE() << cpt << ": " << fault;
}

/// In a life from the surface: before its first row, and once. None where the life before was ended
/// behind its mark and before a row: that one stands.
void RealKills::ExpectMark() {
  const std::size_t rows = RowsOnly(told).size();
  if (rows == 0) return;
  ++behind_marks;
  if (!known.empty() && IsGapMark(known.back())) {
    EXPECT_EQ(told.size(), rows) << "the mark that stands";
    return;
  }
  EXPECT_EQ(told.size(), rows + 1) << "one gap row";
  EXPECT_TRUE(IsGapMark(told.front())) << told.front();
}

void RealKills::Judge() {
  rows_told += static_cast<int>(RowsOnly(told).size());
  marks += static_cast<int>(told.size() - RowsOnly(told).size());
  std::vector<std::string> promised = known;
  // Of this life: one that took up a sounding whose last line is a mark went on above it.
  std::vector<std::string> rows_of_life = RowsOnly(known);
  if (rows_of_life.size() > 1) rows_of_life.erase(rows_of_life.begin(), rows_of_life.end() - 1);
  rows_of_life.insert(rows_of_life.end(), told.begin(), told.end());
  EXPECT_EQ(DepthFault(rows_of_life, kDrilled), "");
  promised.insert(promised.end(), told.begin(), told.end());
  const std::string temporary = Temporary();
  if (IsOpen(temporary)) return JudgeOpen(promised, temporary);
  if (!promised.empty()) JudgeClosed(promised);
  known.clear();
}

/// And the judge must find out when a line is gone that was promised.
void RealKills::JudgeOpen(const std::vector<std::string>& promised, const std::string& temporary) {
  EXPECT_EQ(WholeLines(temporary).at(0), cpt);
  Take(JudgeCopy(promised, temporary));
  known = StoredLines(temporary);
  EXPECT_EQ(DepthFault(known, 0), "");
  if (promised.empty()) return;
  ++taken_out;
  const std::string less = WithoutLine(temporary, kTemporaryHead + LotOf(promised.size()));
  taken_out_found += JudgeCopy(promised, less).rows_lost > 0 ? 1 : 0;
}

void RealKills::JudgeClosed(const std::vector<std::string>& promised) {
  ++soundings;
  const std::string text = Content(cpt);
  Take(JudgeEnded(promised, text));
  EXPECT_EQ(DepthFault(promised, 0), "");
  ++taken_out;
  const std::string less = WithoutLine(text, kCptHead + LotOf(RowsOnly(promised).size()));
  taken_out_found += JudgeEnded(promised, less).rows_lost > 0 ? 1 : 0;
}

/// By our kill, or by the last line of its script.
void RealKills::ExpectEnd(const Program& console, bool sent) const {
  const bool killed = sent && console.EndSignal() == SIGKILL;
  const bool done = console.EndSignal() == 0 && console.ExitCode() == 0;
  EXPECT_TRUE(killed || done) << "ended by signal " << console.EndSignal() << ", exit code "
                              << console.ExitCode() << (sent ? ", killed" : ", not killed");
  // A loaded machine may take fewer rows than the sensors lie apart: these are not closed.
  const std::string temporary = Temporary();
  const bool closed = !IsOpen(temporary) || StoredRows(temporary).size() < kCptLag;
  EXPECT_TRUE(killed || closed) << "ended before the sounding's end";
}

/// By lot: how the sounding is begun or taken up, and the moment of the kill.
RealKills::Life RealKills::ChooseLife() {
  Life life;
  life.number = ++lives;
  life.resumes = IsOpen(Temporary());
  const std::vector<std::string> rows_known = RowsOnly(known);
  const bool has_rows = life.resumes && !rows_known.empty();
  const double depth = has_rows ? std::max(0.0, DepthOfRow(rows_known.back())) : 0.0;
  life.from_surface = has_rows && !from_surface && depth <= kDeepestWayDown;
  if (life.resumes) from_surface = life.from_surface;
  life.begins_at = life.from_surface ? 0.0 : depth;
  life.script = life.from_surface ? SurfaceScript(depth)
                : life.resumes    ? ResumeScript()
                                  : RecordScript(folder.Path(), lives);
  Deck& deck = life.from_surface ? surface_stages : life.resumes ? resume_stages : record_stages;
  life.stage = deck.Draw(lots);
  life.aim = LineThatBegins(life.script, life.stage.line);
  life.look = life.resumes ? LineThatBegins(life.script, kLook) : 0;
  // The mark of the gap is told before the first row.
  const bool behind_mark = life.from_surface && std::string(life.stage.line) == "rig speed 4";
  const int least = life.stage.least;
  const double rows = life.stage.rows > 0 ? least + Lot(life.stage.rows + 1 - least) : 0;
  life.rows = static_cast<std::size_t>(rows) + (behind_mark ? 1 : 0);
  life.delay = Delay(life.stage.span);
  return life;
}

/// Kills the console at that moment, or sees it end. Whether it was killed.
bool RealKills::WatchAndKill(const Life& life, Program& console) {
  const auto start = Clock::now();
  std::optional<Clock::time_point> reached;
  bool looked = life.look == 0;
  while (!console.Ended() && SecondsSince(start) < kLongestLife) {
    TakeOutput(console.Printed());
    if (!looked && turns.contains(life.look)) {
      looked = true;
      LookAtFilesTakenUp();
    }
    const bool now = turns.contains(life.aim) && told.size() >= life.rows;
    if (!reached && now) reached = Clock::now();
    if (reached && SecondsSince(*reached) >= life.delay) {
      console.Signal(SIGKILL);
      EXPECT_TRUE(Until([&console] { return console.Ended(); }));
      return true;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  EXPECT_TRUE(console.Ended()) << "it lives longer than " << kLongestLife << " s";
  return false;
}

/// What is known of a life that failed: the lines, rows and boxes that it told last, and its
/// script.
std::string RealKills::Report(const Life& life, Program& console) const {
  const std::string& printed = console.Printed();
  const std::string tail = printed.substr(printed.size() - std::min(kTailTold, printed.size()));
  return "PENLOG_KILL_SEED=" + std::to_string(seed) + ", life " + std::to_string(life.number) +
         ", stage \"" + life.NameOfStage() + "\"\n..." + tail + "\n" + life.script;
}

/// One life of the console, to its kill, or to its end when that came first.
void RealKills::Live() {
  Order("stop");
  const Life life = ChooseLife();
  ASSERT_GT(life.aim, 0) << life.stage.line;
  Order("at " + Format(life.begins_at, "0.00") + " 0");
  if (!life.resumes) cpt = folder / ("KILL" + std::to_string(life.number) + ".cpt");
  turns.clear();
  told.clear();
  read = 0;
  Program console("penlog-operator", {WriteScript(life.script), "--rig", std::to_string(control),
                                      "--out", folder.Path(), "--boxes", "--tell"});
  const bool sent = WatchAndKill(life, console);
  TakeOutput(console.Printed());
  ExpectEnd(console, sent);
  if (console.EndSignal() == SIGKILL && sent) {
    ++kills;
    ++done[life.NameOfStage()];
  }
  if (life.from_surface) ExpectMark();
  Judge();
  if (HasFailure()) ADD_FAILURE() << Report(life, console);
}

TEST_F(RealKills, LoseNoRowWhoseSyncHadReturnedAndLeaveNoTornLine) {
  const auto wanted = static_cast<int>(NumberTold("PENLOG_KILLS", 5));
  StartRig();
  while (kills < wanted && !HasFailure()) Live();
  for (const auto& [stage, count] : done) std::cout << "| " << stage << " | " << count << " |\n";
  std::cout << kills << " kills in " << lives << " lives, " << soundings << " soundings ended, "
            << rows_told << " rows and " << marks << " gap rows told, " << rows_lost << " lost, "
            << torn << " torn lines in " << looks << " looks behind a resume; " << taken_out_found
            << " of " << taken_out
            << " lines that were taken out for a trial were found to be lost\n";
  EXPECT_EQ(rows_lost, 0);
  EXPECT_EQ(torn, 0);
  EXPECT_EQ(taken_out_found, taken_out) << "the judge doesn't see what is lost";
  if (wanted < 2) return;  // a recording, and behind it a resume
  EXPECT_GT(rows_told, 0);
  EXPECT_GT(looks, 0);
  EXPECT_GT(behind_marks, 0) << "the second life goes down from the surface";
  EXPECT_GT(marks, 0);
  EXPECT_GT(taken_out, 0);
}

}  // namespace
}  // namespace penlog
