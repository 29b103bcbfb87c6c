#include "attacks/crash_judge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "operator/run_hash.h"
#include "platform/numbers.h"

namespace penlog {

namespace {

bool IsOfSounding(const std::string& path) {
  return path.starts_with("/soundings/") || path.starts_with(CrashData("TemporaryData"));
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
  const auto count = [this](const DiskWork& work) {
    return std::count(works.begin(), works.end(), work);
  };
  for (const char* operation : {"write", "sync"}) {
    EXPECT_EQ(count({operation, CrashTemporary()}), kCrashRows) << operation << " of a row";
    EXPECT_EQ(count({operation, CrashTim()}), kCrashRows) << operation << " of a mark";
    EXPECT_EQ(count({operation, CrashCpt()}), kCrashRows - kCrashDelay + 1)
        << operation << " of a row, and of the end";
  }
  for (const char* operation : {"create", "append", "sync", "rename", "close", "remove"}) {
    EXPECT_TRUE(
        std::any_of(works.begin(), works.end(),
                    [operation](const DiskWork& work) { return work.operation == operation; }))
        << "no " << operation << " to be tried";
  }
  EXPECT_EQ(versions[CrashData("System Setup Values.txt")].size(), 3U) << "rewritten and saved";
}

std::int64_t WholeSounding::StepOf(const DiskWork& work, int nth) const {
  std::vector<std::int64_t> steps;
  for (std::size_t i = 0; i < works.size(); ++i) {
    if (works[i] == work) steps.push_back(static_cast<std::int64_t>(i) + 1);
  }
  const auto count = static_cast<int>(steps.size());
  const int index = nth > 0 ? nth - 1 : count + nth;
  EXPECT_TRUE(index >= 0 && index < count) << work.Text() << " " << nth << " of " << count;
  return index >= 0 && index < count ? steps[static_cast<std::size_t>(index)] : 1;
}

LeftBehind DieAt(const MemoryDisk& from, CrewTask task, const CrashPoint& point,
                 std::vector<std::string> synced) {
  CrashCrew crew(from, task, task == CrewTask::Record ? 0 : 1);
  SyncedRows promised{std::move(synced)};
  promised.Watch(crew.disk);
  crew.disk.fate = [&](std::string_view operation, const std::string& path, std::int64_t number) {
    if (number != point.step) return Fate::Done;
    EXPECT_EQ(DiskWork({std::string(operation), path}).Text(), point.work.Text());
    return point.stop;
  };
  crew.Live();
  EXPECT_TRUE(crew.disk.Stopped()) << "the step was not reached";
  LeftBehind left;
  for (const NamedLoss& loss : kLosses) left.disks.push_back(crew.disk.After(loss.loss));
  left.synced = std::move(promised.rows);
  return left;
}

namespace {

/// Where the speed stands in a row of that file.
std::pair<std::size_t, std::size_t> SpeedPlace(const std::string& cpt) {
  return cpt.starts_with("KQ") ? std::pair{7U, 6U} : std::pair{6U, 7U};
}

/// The row whose speed the file's row `row`, from 0, shows.
int RowOfSpeed(std::size_t row) {
  const auto number = static_cast<int>(row) + 1;
  const int flushed_from = kCrashRows - kCrashDelay + 1;
  return number < flushed_from ? number + kCrashDelay : number;
}

constexpr double kStepMetres = 0.02;

/// Taken up without a row: metres of row `number`, from 1, where the first one is 0.
bool HasOwnDepths(const AllowedDifferences& allowed) {
  return allowed.resumed_at.count(0) > 0;
}
double OwnDepth(int number) {
  return kStepMetres * (number - 1);
}

/// Of the file, with the depths that its rows must have: elevations, in metres or millimetres.
std::vector<std::string> WantedLines(const WholeSounding& whole,
                                     const AllowedDifferences& allowed) {
  std::vector<std::string> lines = WholeLines(whole.cpt);
  if (!HasOwnDepths(allowed)) return lines;
  const std::size_t width = SpeedPlace(whole.cpt).first;
  for (int number = 1; number <= kCrashRows; ++number) {
    const std::string depth = Format(0.0 - OwnDepth(number), width == 7 ? "##0.000" : "##0.00");
    lines.at(kCptHead + static_cast<std::size_t>(number) - 1)
        .replace(0, width, RightField(depth, static_cast<int>(width)));
  }
  return lines;
}

/// Fields of rows that came from the file alone.
void TakeUnknown(std::string& row, const std::string& wanted, int number,
                 const AllowedDifferences& allowed) {
  const auto [first, last] = allowed.taken_from_file;
  if (first == 0 || number + kCrashDelay < first || number > last) return;
  constexpr std::size_t kWidth = 20;
  for (std::size_t at = 13; at + kWidth <= row.size(); at += kWidth) {
    const bool is_unknown = row.compare(at, kWidth, "              -32768") == 0;
    if (is_unknown) row.replace(at, kWidth, wanted, at, kWidth);
  }
}

bool SameRow(std::string row, const std::string& wanted, std::size_t index,
             std::pair<std::size_t, std::size_t> place, const AllowedDifferences& allowed) {
  if (row.size() != wanted.size()) return false;
  const auto [at, width] = place;
  if (row.size() < at + width) return row == wanted;
  const int shown = RowOfSpeed(index);
  const bool own_speed = allowed.resumed_at.count(shown - 1) > 0;
  const double speed = LeadingNumber(row.substr(at, width));
  const double usual = LeadingNumber(wanted.substr(at, width));
  const bool comes_later = allowed.refused_at && shown > *allowed.refused_at;
  const bool nearly = comes_later && std::abs(speed - usual) <= 0.05 * usual;
  if (own_speed || nearly) row.replace(at, width, wanted.substr(at, width));
  TakeUnknown(row, wanted, static_cast<int>(index) + 1, allowed);
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
  const auto place = SpeedPlace(whole.cpt);
  const std::vector<std::string> wanted = WantedLines(whole, allowed);
  for (std::size_t i = 0; i < std::min(lines.size(), wanted.size()); ++i) {
    const bool same = i >= kCptHead ? SameRow(lines[i], wanted[i], i - kCptHead, place, allowed)
                                    : lines[i] == wanted[i] || (allowed.date && i == kDateLine);
    if (!same) return LineDifference(i, lines[i], wanted[i]);
  }
  if (lines.size() != wanted.size()) {
    return std::to_string(lines.size()) + " lines, not " + std::to_string(wanted.size());
  }
  return cpt.ends_with("\r\n") ? "" : "an unfinished line at the end";
}

namespace {

struct Mark {
  std::string depth;
  double seconds;  ///< since midnight
};

Mark MarkOf(const std::string& line) {
  const std::size_t blank = std::min(line.find(' '), line.size());
  return {line.substr(0, blank), LeadingNumber(line.substr(blank))};
}

/// The marks of a file, walked from the first to the last.
class MarkWalk {
 public:
  MarkWalk(const WholeSounding& whole, const AllowedDifferences& allowed)
      : wanted_(WholeLines(whole.tim)), allowed_(allowed) {
    if (!allowed.resumed_at.empty()) exact_to_ = *allowed.resumed_at.begin();
    exact_to_ = std::min(exact_to_, allowed.refused_at.value_or(exact_to_));
  }

  std::string Head(const std::string& title, const std::string& start) {
    if (title != wanted_[0]) return "no title";
    seconds_ = LeadingNumber(start);
    const bool is_later = exact_to_ == 0 && seconds_ >= LeadingNumber(wanted_[1]);
    return start == wanted_[1] || is_later ? "" : LineDifference(1, start, wanted_[1]);
  }

  /// Empty, or why it can't stand behind those before.
  std::string Step(const std::string& line) {
    const bool is_of_lost_row = HasOwnDepths(allowed_) && last_ == 0 && line == wanted_[kTimHead];
    if (is_of_lost_row && !std::exchange(has_lost_row_, true)) return {};
    const Mark mark = MarkOf(line);
    if (mark.depth.empty()) return "no mark: " + line;
    SkipHeld(mark.depth);
    const int number = mark.depth == DepthOf(next_) ? next_ : NumberBefore(mark.depth);
    const bool is_next = number == next_;
    // A way down begins at the first depth, and a life behind it may go on at the last one.
    const bool goes_down = number == 1 && firsts_++ <= allowed_.ways_down;
    const bool follows = number == last_ + 1 || (is_next && firsts_ > 1);
    // Below the last row that stood they were marked in the life before, too.
    const bool is_marked_again = number <= last_ && allowed_.resumed_at.count(number - 1) > 0;
    if (number == 0 || !(goes_down || follows || is_marked_again))
      return "a mark out of its order: " + line;
    if (mark.seconds < seconds_) return "a mark before its time: " + line;
    const std::string& exact = wanted_[kTimHead + static_cast<std::size_t>(number) - 1];
    if (is_next && number <= exact_to_ && line != exact) return line + " is not " + exact;
    seconds_ = mark.seconds;
    last_ = number;
    if (is_next) ++next_;
    return {};
  }

  std::string End() {
    SkipHeld("");
    return next_ > kCrashRows ? "" : "no mark at " + DepthOf(next_);
  }

 private:
  std::string DepthOf(int number) const {
    if (number > kCrashRows) return {};
    if (HasOwnDepths(allowed_)) return Format(OwnDepth(number) - kCameraMetres, "000.000");
    return MarkOf(wanted_[kTimHead + static_cast<std::size_t>(number) - 1]).depth;
  }
  /// 0 if none of those before has that depth.
  int NumberBefore(const std::string& depth) const {
    int number = next_ - 1;
    while (number > 0 && DepthOf(number) != depth) --number;
    return number;
  }
  void SkipHeld(const std::string& depth) {
    while (next_ <= kCrashRows && DepthOf(next_) != depth &&
           allowed_.marks_held.count(DepthOf(next_)) > 0) {
      last_ = next_++;
    }
  }

  static constexpr double kCameraMetres = 0.75;  ///< above the tip

  std::vector<std::string> wanted_;
  const AllowedDifferences& allowed_;
  int exact_to_ = kCrashRows;  ///< up to this row nothing may differ
  int next_ = 1;
  int last_ = 0;
  int firsts_ = 0;
  bool has_lost_row_ = false;
  double seconds_ = 0;
};

}  // namespace

std::string TimDifference(const std::string& tim, const WholeSounding& whole,
                          const AllowedDifferences& allowed) {
  const std::vector<std::string> lines = WholeLines(tim);
  if (const std::string fault = LineEndFault(tim); !fault.empty()) return fault;
  if (lines.size() < kTimHead) return "no head of the marks";
  MarkWalk walk(whole, allowed);
  std::string fault = walk.Head(lines[0], lines[1]);
  for (std::size_t i = kTimHead; fault.empty() && i < lines.size(); ++i) {
    fault = walk.Step(lines[i]);
  }
  return fault.empty() ? walk.End() : fault;
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

/// Date and time of the sounding, its cone, and metres: a run that was held up has others.
bool IsWholeDistanceNote(const std::string& path, const std::string& content) {
  if (!path.ends_with("/Distance Pushed.txt") || !content.ends_with("\r\n")) return false;
  const std::vector<std::string> lines = WholeLines(content);
  return lines.size() == 3 && lines[0].size() == 19 && !lines[1].empty() &&
         lines[2].find_first_not_of("-0123456789.") == std::string::npos;
}

/// Old or new, never half.
std::string CrashJudge::FilesAreWhole(const MemoryDisk& left) const {
  std::string faults;
  for (const auto& [path, content] : left.Files()) {
    if (IsOfSounding(path) || IsLeftOver(path)) continue;
    // A start copies the settings as they are, which may be the new ones by then.
    const auto known = whole_.versions.find(
        path == CrashData("System Setup Values.old") ? CrashData("System Setup Values.txt") : path);
    if (known == whole_.versions.end()) {
      faults += path + " is not known.  ";
    } else if (known->second.count(content) == 0 && !IsWholeDistanceNote(path, content)) {
      faults += path + " is neither old nor new: " + content.substr(0, 100) + "  ";
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
  const std::vector<std::string> rows = ours ? StoredLines(temporary) : std::vector<std::string>();
  const auto [lost, rest] = std::mismatch(synced.begin(), synced.end(), rows.begin(), rows.end());
  count.rows_lost += synced.end() - lost;
  if (lost != synced.end()) return "a promised row is lost: " + *lost;
  const std::string& cpt = ContentOf(left, CrashCpt());
  const bool has_head = WholeLines(cpt).size() >= kCptHead || (cpt.empty() && allowed.no_file);
  if (ours && !has_head) return "the sounding's file has no whole head";
  return {};
}

constexpr int kHoursToLastLife = 2;

std::string CrashJudge::PlayResume(const MemoryDisk& left, AllowedDifferences allowed,
                                   CrewTask resume) const {
  const std::string& temporary = ContentOf(left, CrashTemporary());
  const auto copied = static_cast<int>(StoredRows(temporary).size());
  const auto rows = static_cast<int>(RowsStanding(left));
  allowed.resumed_at.insert(rows);
  if (rows > copied) allowed.taken_from_file = {copied + 1, rows};
  if (resume == CrewTask::ResumeFromSurface) ++allowed.ways_down;
  CrashCrew crew(left, resume, kHoursToLastLife);
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
  faults += FilesAreWhole(crew.disk);  // a resume saves what was set
  const std::string rest = UnfinishedLine(temporary);
  if (!rest.empty() && !IsGapMark(rest) && !crew.WasTold("LEFT OUT")) {
    faults += "  Not told what was left out: " + rest;
  }
  return faults.empty() ? faults : faults + "\n" + crew.AllTold();
}

std::string CrashJudge::PlayStart(const MemoryDisk& left) const {
  const bool old = ContentOf(left, CrashTemporary()) == OldSounding();
  CrashCrew crew(left, old ? CrewTask::Look : CrewTask::Resume, kHoursToLastLife);
  crew.Live();
  std::string faults;
  if (!crew.left) faults += "the start screen was not left.  ";
  if (crew.WasTold("THOSE OF A FIRST RUN")) faults += "the settings were damaged.  ";
  const bool done = ContentOf(left, CrashTemporary()) == "DONE\r\n";
  const char* why = done ? "LAST SOUNDING COMPLETED" : "THERE IS NO SOUNDING TO RESUME";
  if (!old && !crew.WasTold(why)) faults += std::string("not told: ") + why;
  return faults.empty() ? faults : faults + "\n" + crew.AllTold();
}

void CrashJudge::LookAt(const MemoryDisk& left, const std::vector<std::string>& synced,
                        const AllowedDifferences& allowed) {
  ++count.cases;
  EXPECT_EQ(FilesAreWhole(left), "");
  EXPECT_EQ(RowsAreHeld(left, synced, allowed), "");
}

void CrashJudge::Judge(const MemoryDisk& left, const std::vector<std::string>& synced,
                       const AllowedDifferences& allowed, CrewTask resume) {
  LookAt(left, synced, allowed);
  const bool ours = ContentOf(left, CrashTemporary()).starts_with(CrashCpt());
  if (!played_.insert(ours ? HashOf(left) : HashOf(DataOf(left))).second) return;
  ++count.played;
  EXPECT_EQ(ours ? PlayResume(left, allowed, resume) : PlayStart(left), "");
}

std::vector<std::int64_t> StepsOfPart(std::int64_t count, int part, int parts) {
#ifdef NDEBUG
  std::int64_t stride = 1;
#else
  std::int64_t stride = 5;
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
