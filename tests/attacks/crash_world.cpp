#include "attacks/crash_world.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <utility>

#include "app/console.h"
#include "core/first_run_data.h"
#include "core/reset_state.h"
#include "forms/main_form.h"
#include "forms/operator_actions.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/start_up_form.h"
#include "operator/run_hash.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/yield.h"
#include "rig/rig_setups.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr Micros kGlance = 100 * kMillisecond;
constexpr Micros kPressAgain = 2 * kSecond;
constexpr Micros kLongestLife = 10 * 60 * kSecond;
constexpr std::size_t kTemporaryHead = 17;
constexpr std::size_t kCptHead = 23;
constexpr std::size_t kTimHead = 2;
constexpr double kStepMetres = 0.02;

std::string DataFile(std::string_view name) {
  return JoinPath(VirtualSession::DataDirectory(), name);
}

/// Prints nothing but what the ground says, so that two runs can be compared to the last digit.
RigSetup SteadyRig() {
  RigSetup rig = MakeRigSetup("proximity");
  rig.cone.steady = true;
  rig.cone.decimals = 5;  // as many as the files hold
  rig.truck.push_speed = 5.0;
  return rig;
}

VirtualSessionSetup TimeOf(CrewTask task) {
  VirtualSessionSetup setup;
  if (task != CrewTask::Record) setup.start.hour += 1;
  return setup;
}

const std::string& ContentOf(const MemoryDisk& disk, const std::string& path) {
  static const std::string none;
  const auto found = disk.Files().find(path);
  return found == disk.Files().end() ? none : found->second;
}

/// The first-run settings for this rig, as an older version left them: without the last value.
std::string OlderSettings(std::string_view first_run) {
  std::vector<std::string> lines = WholeLines(std::string(first_run));
  lines.at(19) = lines.at(20) = "0.02";  // resolution and step
  for (const int line : {22, 23, 24, 25}) lines.at(static_cast<std::size_t>(line) - 1) = "1";
  lines.at(40) = "3";
  lines.at(41) = "0";  // the truck interface is to be found
  lines.at(55) = "6";
  lines.pop_back();
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

int EntryOf(const Control& list, const std::string& text) {
  const auto found = std::find(list.List.begin(), list.List.end(), text);
  return found == list.List.end() ? 0 : static_cast<int>(found - list.List.begin());
}

bool IsOfSounding(const std::string& path) {
  return path.starts_with("/soundings/") || path.starts_with(DataFile("TemporaryData"));
}

/// Left over by an operation that was cut off, and of no use.
bool IsLeftOver(const std::string& path) {
  return path.ends_with(".new") || path.ends_with("PENLOG Write Test.tmp");
}

std::uint64_t HashOf(const MemoryDisk& disk) {
  RunHash hash;
  hash.AddFiles(disk);
  return hash.Value();
}

/// Without the soundings.
MemoryDisk DataOf(const MemoryDisk& disk) {
  MemoryDisk data;
  for (const auto& [path, content] : disk.Files()) {
    if (!path.starts_with("/soundings/")) data.Put(path, content);
  }
  return data;
}

}  // namespace

// The crew.

CrashCrew::CrashCrew(const MemoryDisk& from, CrewTask task)
    : session(SteadyRig(), TimeOf(task)), task_(task) {
  disk = from;
  session.ports.Wire(6);
  if (task != CrewTask::Resume) return;
  const auto rows = static_cast<double>(StoredRows(ContentOf(disk, CrashTemporary())).size());
  Order("at " + Format(rows * kStepMetres, "0.00") + " 0");
}

CrashCrew::~CrashCrew() {
  DropCalls(this);
}

void CrashCrew::Live() {
  ForgetEnd();
  ResetBoxes();
  ResetActions();
  ResetState();
  begun_ = Now();
  PostLook();
  RunConsole();
  DropCalls(this);
}

bool CrashCrew::WasTold(const std::string& part) const {
  return WasTold(part, 0, Now());
}

bool CrashCrew::WasTold(const std::string& part, Micros from, Micros limit) const {
  return std::any_of(told.begin(), told.end(), [&](const Told& one) {
    return one.time >= from && one.time <= from + limit && one.text.find(part) != part.npos;
  });
}

std::string CrashCrew::AllTold() const {
  std::string text;
  for (const Told& one : told) text += "  " + one.text.substr(0, 200) + "\n";
  return text;
}

void CrashCrew::PostLook() {
  PostCall(
      Now() + kGlance, this, [this] { Look(); }, EventKind::RepeatingCall);
}

void CrashCrew::Look() {
  PostLook();
  if (at_glance) at_glance();
  if (Now() - begun_ > kLongestLife) return RequestEnd();
  if (const FileDialog* dialog = OpenFileDialog()) AnswerFileDialog(dialog->id, CrashCpt());
  if (BoxIsOpen()) return Answer();
  for (auto form = ShownForms().rbegin(); form != ShownForms().rend(); ++form) {
    if ((*form)->Name() != "frmWarning") return ActOn((*form)->Name());
  }
}

void CrashCrew::Answer() {
  const MessageBox* box = FrontBox();
  if (box == nullptr) return;
  told.push_back({Now(), box->text});
  const bool asks = Offers(box->buttons, BoxAnswer::Yes);
  AnswerBox(box->id, asks ? BoxAnswer::Yes : BoxAnswer::Ok);
}

void CrashCrew::Order(const std::string& words) {
  std::string reply;
  EXPECT_TRUE(session.rig.Command(words, reply)) << words << ": " << reply;
}

void CrashCrew::Do(const std::string& control, ActionKind kind, const std::string& text,
                   int number) {
  OperatorAction action;
  action.form = FindForm(control.substr(0, control.find('.')));
  action.control = action.form->Find(control.substr(control.find('.') + 1));
  action.kind = kind;
  action.text = text;
  action.number = number;
  PostActionNow(std::move(action));
}

void CrashCrew::DoAgain(const std::string& control) {
  const auto [pressed, is_first] = pressed_.emplace(control, Now());
  if (!is_first && Now() - pressed->second < kPressAgain) return;
  pressed->second = Now();
  Do(control);
}

void CrashCrew::ActOn(const std::string& screen) {
  if (screen == "StartUp") return ActOnStart();
  if (screen == "frmSpecifyTruckInterface") return SpecifyTruck();
  if (screen == "frmConeSettings") return DoAgain("frmConeSettings.cmdClose");
  if (screen == "SetupSounding") return SetUpSounding();
  if (screen == "SetupDisplay") {
    const bool asks = SetupDisplay.frmSelectPPType.IsShown();
    return DoAgain(asks ? "SetupDisplay.cmdU2PPFilter" : "SetupDisplay.cmdDone");
  }
  if (screen == "frmZOLRestart") {
    ended = true;
    return Do("frmZOLRestart.cmdNo");
  }
  if (screen == "Main") ActOnMain();
}

void CrashCrew::ActOnStart() {
  if (task_ == CrewTask::Record) return DoAgain("StartUp.cmdStart");
  if (StartUp.frmResume.IsShown()) return DoAgain("StartUp.cmdResumeAtLastDepth");
  if (task_ == CrewTask::Resume && !std::exchange(asked_to_resume_, true)) {
    return Do("StartUp.cmdResume");
  }
  left = true;
  Do("StartUp.cmdExit");
}

void CrashCrew::SpecifyTruck() {
  const Control& ports = frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort;
  if (ports.ListIndex >= 0) return DoAgain("frmSpecifyTruckInterface.cmdSavePort");
  Do("frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort", ActionKind::Select, "",
     EntryOf(ports, "4"));
}

void CrashCrew::SetUpSounding() {
  if (SetupSounding.Dir1.Text != "/soundings") {
    return Do("SetupSounding.Dir1", ActionKind::Type, "/soundings");
  }
  if (SetupSounding.txtFileName.Text != "S1") {
    return Do("SetupSounding.txtFileName", ActionKind::Type, "S1");
  }
  if (SetupSounding.txtStartDepth.Text != "12.34") {
    return Do("SetupSounding.txtStartDepth", ActionKind::Type, "12.34");
  }
  DoAgain("SetupSounding.Command2");
}

void CrashCrew::LookAtResumedFiles() {
  rows_taken_up = sounding.RowCount;
  const auto rows = static_cast<std::size_t>(rows_taken_up);
  const std::size_t aligned = rows > kCrashDelay ? rows - kCrashDelay : 0;
  const struct {
    const std::string& path;
    std::size_t lines;
  } files[] = {{CrashTemporary(), kTemporaryHead + rows}, {CrashCpt(), kCptHead + aligned}};
  for (const auto& [path, lines] : files) {
    const std::string& text = ContentOf(disk, path);
    const std::size_t whole = WholeLines(text).size();
    if (whole != lines || !text.ends_with("\r\n")) {
      files_at_resume += path + " has " + std::to_string(whole) + " whole lines, not " +
                         std::to_string(lines) + ".  ";
    }
  }
  if (!ContentOf(disk, CrashTim()).ends_with("\r\n")) files_at_resume += "torn marks.  ";
}

void CrashCrew::ActOnMain() {
  if (Main.frmTakeFinalBaseline.IsShown()) return DoAgain("Main.Command2");
  if (Main.frmLocalWarning.IsShown()) return DoAgain("Main.cmdWarningOK1");
  if (Main.cmdStart.Caption != "STOP") {
    return DoAgain(Main.cmdStart.Enabled ? "Main.cmdStart" : "Main.cmdTakeBaseline");
  }
  if (task_ == CrewTask::Resume && rows_taken_up < 0) LookAtResumedFiles();
  if (sounding.ReadingsTaken < 10) return;
  if (!std::exchange(holds_, true) && sounding.RowCount < kCrashRows) {
    Order("hold " + std::to_string(kCrashRows - sounding.RowCount) + " 6");
  }
  if (session.rig.truck.Busy() || sounding.RowCount < kCrashRows) return;
  DoAgain("Main.cmdStart");
}

// The disk and its files.

const std::string& CrashTemporary() {
  static const std::string path = DataFile("TemporaryData.txt");
  return path;
}

const std::string& CrashCpt() {
  static const std::string path = "/soundings/S1.cpt";
  return path;
}

const std::string& CrashTim() {
  static const std::string path = "/soundings/S1.tim";
  return path;
}

const std::string& OldSounding() {
  static const std::string text = "/soundings/OLD.cpt\r\nOLD\r\nrows of another day\r\n";
  return text;
}

MemoryDisk DiskBeforeCrash() {
  MemoryDisk disk;
  for (const FirstRunFile& file : FirstRunFiles()) {
    const bool is_setup = file.name == "System Setup Values.txt";
    disk.Put(DataFile(file.name),
             is_setup ? OlderSettings(file.content) : std::string(file.content));
  }
  disk.Put(CrashTemporary(), OldSounding());
  disk.PutFolder("/soundings");
  return disk;
}

std::vector<std::string> WholeLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n', at)) {
    const bool has_return = end > at && text[end - 1] == '\r';
    lines.push_back(text.substr(at, end - at - (has_return ? 1 : 0)));
    at = end + 1;
  }
  return lines;
}

std::vector<std::string> StoredRows(const std::string& temporary) {
  std::vector<std::string> lines = WholeLines(temporary);
  const std::size_t head = std::min(lines.size(), kTemporaryHead);
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(head));
  return lines;
}

void SyncedRows::Watch(MemoryDisk& disk) {
  disk.after = [this, &disk](std::string_view operation, const std::string& path) {
    if (operation == "sync" && path == CrashTemporary()) rows = StoredRows(disk.Files().at(path));
  };
}

// The whole sounding.

WholeSounding::WholeSounding() : before(DiskBeforeCrash()) {
  for (const auto& [path, content] : before.Files()) versions[path] = {content};
  CrashCrew crew(before, CrewTask::Record);
  crew.disk.fate = [this](std::string_view operation, const std::string& path, std::int64_t) {
    works.push_back({std::string(operation), path});
    return Fate::Done;
  };
  crew.disk.after = [&](std::string_view operation, const std::string& path) {
    if (operation != "rename" || IsOfSounding(path)) return;
    versions[path].insert(crew.disk.Files().at(path));
  };
  crew.Live();
  cpt = ContentOf(crew.disk, CrashCpt());
  tim = ContentOf(crew.disk, CrashTim());
  EXPECT_TRUE(crew.ended) << crew.AllTold();
  EXPECT_EQ(ContentOf(crew.disk, CrashTemporary()), "DONE\r\n");
  EXPECT_EQ(WholeLines(cpt).size(), kCptHead + kCrashRows + 1) << "rows and a final baseline";
  EXPECT_EQ(WholeLines(tim).size(), kTimHead + kCrashRows) << "a mark a row";
  EXPECT_EQ(versions[DataFile("System Setup Values.txt")].size(), 3U) << "rewritten and saved";
}

namespace {

/// Where the speed stands in a row of that file.
std::pair<std::size_t, std::size_t> SpeedPlace(const std::string& cpt) {
  return cpt.starts_with("KQ") ? std::pair{7U, 6U} : std::pair{6U, 7U};
}

/// The rows of the file, from 0, that show the speed behind row `stood`.
bool ShowsSpeedBehind(std::size_t row, int stood) {
  const auto number = static_cast<int>(row) + 1;
  const int flushed_from = kCrashRows - kCrashDelay + 1;
  return number < flushed_from ? number + kCrashDelay == stood + 1 : number == stood + 1;
}

/// A sounding that was resumed without a row goes on one step below 0, as it tells.
bool HasOwnDepths(const AllowedDifferences& allowed) {
  return allowed.resumed_at.count(0) > 0;
}

bool SameRow(std::string row, std::string wanted, std::size_t index,
             std::pair<std::size_t, std::size_t> place, const AllowedDifferences& allowed) {
  if (row.size() != wanted.size()) return false;
  const auto [at, width] = place;
  if (row.size() < at + width) return row == wanted;
  if (HasOwnDepths(allowed)) row.replace(0, at, wanted.substr(0, at));
  const bool own_speed = std::any_of(allowed.resumed_at.begin(), allowed.resumed_at.end(),
                                     [&](int stood) { return ShowsSpeedBehind(index, stood); });
  const double speed = LeadingNumber(row.substr(at, width));
  const double usual = LeadingNumber(wanted.substr(at, width));
  const bool nearly = allowed.speeds_nearly && std::abs(speed - usual) <= 0.05 * usual;
  if (own_speed || nearly) row.replace(at, width, wanted.substr(at, width));
  return row == wanted;
}

std::string LineDifference(std::size_t line, const std::string& is, const std::string& wanted) {
  return "line " + std::to_string(line + 1) + " is \"" + is + "\", not \"" + wanted + "\"";
}

}  // namespace

std::string CptDifference(const std::string& cpt, const WholeSounding& whole,
                          const AllowedDifferences& allowed) {
  constexpr std::size_t kDateLine = 7;
  const std::vector<std::string> lines = WholeLines(cpt);
  const std::vector<std::string> wanted = WholeLines(whole.cpt);
  for (std::size_t i = 0; i < std::min(lines.size(), wanted.size()); ++i) {
    const bool same =
        i >= kCptHead ? SameRow(lines[i], wanted[i], i - kCptHead, SpeedPlace(whole.cpt), allowed)
                      : lines[i] == wanted[i] || (allowed.date && i == kDateLine);
    if (!same) return LineDifference(i, lines[i], wanted[i]);
  }
  if (lines.size() != wanted.size()) {
    return std::to_string(lines.size()) + " lines, not " + std::to_string(wanted.size());
  }
  return cpt.ends_with("\r\n") ? "" : "an unfinished line at the end";
}

std::string TimDifference(const std::string& tim, const WholeSounding& whole,
                          const AllowedDifferences& allowed) {
  std::vector<std::string> lines = WholeLines(tim);
  const std::vector<std::string> wanted = WholeLines(whole.tim);
  if (lines.empty() || lines[0] != wanted[0]) return "no title";
  if (!tim.ends_with("\r\n")) return "an unfinished line at the end";
  std::vector<std::string> depths;
  for (std::size_t i = kTimHead; i < lines.size(); ++i) {
    const std::string depth = lines[i].substr(0, lines[i].find(' '));
    if (depths.empty() || depths.back() != depth) depths.push_back(depth);
  }
  const bool own = HasOwnDepths(allowed);
  for (std::size_t i = kTimHead; i < wanted.size(); ++i) {
    const std::string depth = wanted[i].substr(0, wanted[i].find(' '));
    const auto found = std::find(depths.begin(), depths.end(), depth);
    if (found == depths.end() && !own) return "no mark at " + depth;
    if (found != depths.end()) depths.erase(depths.begin(), found + 1);
  }
  return depths.empty() || own ? "" : "marks out of their order";
}

// The judge.

void CrashCount::Add(const CrashCount& other) {
  cases += other.cases;
  played += other.played;
  rows_synced += other.rows_synced;
  rows_lost += other.rows_lost;
}

std::string CrashCount::Text() const {
  return std::to_string(cases) + " cases, " + std::to_string(played) +
         " of them different disks that were taken up and ended; " + std::to_string(rows_synced) +
         " rows promised, " + std::to_string(rows_lost) + " lost";
}

/// Old or new, never half.
std::string CrashJudge::FilesAreWhole(const MemoryDisk& left) const {
  std::string faults;
  for (const auto& [path, content] : left.Files()) {
    if (IsOfSounding(path) || IsLeftOver(path)) continue;
    const auto known = whole_.versions.find(path);
    if (known == whole_.versions.end()) {
      faults += path + " is not known.  ";
    } else if (known->second.count(content) == 0) {
      faults += path + " is neither old nor new.  ";
    }
  }
  for (const auto& [path, content] : whole_.before.Files()) {
    if (!IsOfSounding(path) && left.Files().count(path) == 0) faults += path + " is gone.  ";
  }
  const bool has_old = std::any_of(left.Files().begin(), left.Files().end(),
                                   [](const auto& file) { return file.second == OldSounding(); });
  return has_old ? faults : faults + "the suspended sounding is gone.  ";
}

std::string CrashJudge::RowsAreHeld(const MemoryDisk& left, const std::vector<std::string>& synced,
                                    const AllowedDifferences& allowed) {
  const std::string& temporary = ContentOf(left, CrashTemporary());
  count.rows_synced += static_cast<std::int64_t>(synced.size());
  if (temporary == "DONE\r\n") {
    const std::string difference = CptDifference(ContentOf(left, CrashCpt()), whole_, allowed);
    if (difference.empty()) return {};
    count.rows_lost += static_cast<std::int64_t>(synced.size());
    return "DONE stands, and the sounding's file is not whole: " + difference;
  }
  const bool ours = temporary.starts_with(CrashCpt());
  const std::vector<std::string> rows = ours ? StoredRows(temporary) : std::vector<std::string>();
  const auto [lost, rest] = std::mismatch(synced.begin(), synced.end(), rows.begin(), rows.end());
  count.rows_lost += synced.end() - lost;
  if (lost != synced.end()) return "a promised row is lost: " + *lost;
  const auto head = static_cast<std::ptrdiff_t>(kCptHead);
  if (ours && static_cast<std::ptrdiff_t>(WholeLines(ContentOf(left, CrashCpt())).size()) < head) {
    return "the sounding's file has no whole head";
  }
  return {};
}

std::string CrashJudge::PlayResume(const MemoryDisk& left, AllowedDifferences allowed) const {
  const auto rows = static_cast<int>(StoredRows(ContentOf(left, CrashTemporary())).size());
  allowed.resumed_at.insert(rows);
  CrashCrew crew(left, CrewTask::Resume);
  crew.Live();
  std::string faults = crew.files_at_resume;
  if (crew.rows_taken_up != rows) {
    faults += std::to_string(crew.rows_taken_up) + " rows were taken up, not " +
              std::to_string(rows) + ".  ";
  }
  if (!crew.ended) faults += "the sounding did not end.  ";
  if (ContentOf(crew.disk, CrashTemporary()) != "DONE\r\n") faults += "it is not DONE.  ";
  faults += CptDifference(ContentOf(crew.disk, CrashCpt()), whole_, allowed);
  faults += TimDifference(ContentOf(crew.disk, CrashTim()), whole_, allowed);
  if (crew.WasTold("THOSE OF A FIRST RUN")) faults += "  The settings were damaged.";
  return faults.empty() ? faults : faults + "\n" + crew.AllTold();
}

std::string CrashJudge::PlayStart(const MemoryDisk& left) const {
  const bool old = ContentOf(left, CrashTemporary()) == OldSounding();
  CrashCrew crew(left, old ? CrewTask::Look : CrewTask::Resume);
  crew.Live();
  std::string faults;
  if (!crew.left) faults += "the start screen was not left.  ";
  if (crew.WasTold("THOSE OF A FIRST RUN")) faults += "the settings were damaged.  ";
  const bool done = ContentOf(left, CrashTemporary()) == "DONE\r\n";
  const char* why = done ? "LAST SOUNDING COMPLETED" : "THERE IS NO SOUNDING TO RESUME";
  if (!old && !crew.WasTold(why)) faults += std::string("not told: ") + why;
  return faults.empty() ? faults : faults + "\n" + crew.AllTold();
}

void CrashJudge::Judge(const MemoryDisk& left, const std::vector<std::string>& synced,
                       const AllowedDifferences& allowed) {
  ++count.cases;
  EXPECT_EQ(FilesAreWhole(left), "");
  EXPECT_EQ(RowsAreHeld(left, synced, allowed), "");
  const bool ours = ContentOf(left, CrashTemporary()).starts_with(CrashCpt());
  if (!played_.insert(ours ? HashOf(left) : HashOf(DataOf(left))).second) return;
  ++count.played;
  EXPECT_EQ(ours ? PlayResume(left, allowed) : PlayStart(left), "");
}

std::vector<std::int64_t> StepsOfPart(std::int64_t count, int part, int parts) {
#ifdef NDEBUG
  std::int64_t stride = 1;
#else
  std::int64_t stride = 7;
#endif
  if (const char* told = std::getenv("PENLOG_CRASH_STRIDE")) {
    stride = std::max<std::int64_t>(1, std::atoll(told));
  }
  std::vector<std::int64_t> steps;
  for (std::int64_t step = count * part / parts + 1; step <= count * (part + 1) / parts;
       step += stride) {
    steps.push_back(step);
  }
  return steps;
}

}  // namespace penlog
