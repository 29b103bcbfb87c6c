// A second crash, while the console takes a sounding up again and mends its files: mending can be
// cut off anywhere and is done once more at the next start. And a disk that refuses in the midst of
// it, once: the operator is told, tries again, and the sounding goes on.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "attacks/crash_judge.h"
#include "attacks/stick.h"
#include "platform/clock.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

/// How the first life ended.
struct FirstCrash {
  const char* name;
  const char* operation;
  const char* file;  ///< "temporary", "cpt", "tim", or "data" for its directory
  int nth;
  Fate stop;
  Loss loss;
  bool without_cpt = false;  ///< and the sounding's file was removed afterwards
  CrewTask resume = CrewTask::Resume;
};
constexpr CrewTask kFromSurface = CrewTask::ResumeFromSurface;

const FirstCrash kFirstCrashes[] = {
    {"NameNotSynced", "sync folder", "data", -2, Fate::StopBefore, Loss::Nothing},
    {"NothingToMend", "append", "tim", 14, Fate::StopBefore, Loss::ContentsAndNames},
    {"TornRow", "write", "temporary", 14, Fate::StopAmid, Loss::Nothing},
    {"HalfASyncedRow", "sync", "temporary", 14, Fate::StopAmid, Loss::Contents},
    {"RowInTheCopyAlone", "append", "cpt", 9, Fate::StopBefore, Loss::ContentsAndNames},
    {"TornAlignedRow", "write", "cpt", 10, Fate::StopAmid, Loss::Nothing},
    {"TornMark", "write", "tim", 14, Fate::StopAmid, Loss::HalfTail},
    {"NoRowYet", "append", "tim", 1, Fate::StopBefore, Loss::Nothing},
    {"HalfTheEnd", "write", "cpt", -1, Fate::StopAmid, Loss::Nothing},
    {"WholeEndNotDone", "close", "cpt", -1, Fate::StopBefore, Loss::ContentsAndNames},
    {"NoSoundingFile", "append", "cpt", 9, Fate::StopBefore, Loss::ContentsAndNames, true},
    {"NoRowYetAndNoSoundingFile", "append", "tim", 1, Fate::StopBefore, Loss::Contents, true},
    {"FromTheSurface", "append", "tim", 14, Fate::StopBefore, Loss::ContentsAndNames, false,
     kFromSurface},
    {"FromTheSurfaceWithoutARow", "append", "tim", 1, Fate::StopBefore, Loss::Nothing, false,
     kFromSurface},
    {"FromTheSurfaceBehindTheLastRow", "write", "cpt", -1, Fate::StopAmid, Loss::Nothing, false,
     kFromSurface}};

void PrintTo(const FirstCrash& crash, std::ostream* out) {
  *out << crash.name;
}

DiskWork WorkOf(const FirstCrash& crash) {
  const std::string file = crash.file;
  if (file == "data") return {crash.operation, VirtualSession::DataDirectory()};
  const std::string& path = file == "tim"   ? CrashTim()
                            : file == "cpt" ? CrashCpt()
                                            : CrashTemporary();
  return {crash.operation, path};
}

/// What the first life left.
struct FirstLife {
  MemoryDisk disk;
  std::vector<std::string> synced;
  std::size_t rows = 0;
  AllowedDifferences allowed;
};

FirstLife Live(const FirstCrash& crash, const WholeSounding& whole) {
  const DiskWork work = WorkOf(crash);
  LeftBehind left =
      DieAt(whole.before, CrewTask::Record, {whole.StepOf(work, crash.nth), crash.stop, work}, {});
  FirstLife life;
  for (std::size_t i = 0; i < kLosses.size(); ++i) {
    if (kLosses[i].loss == crash.loss) life.disk = left.disks[i];
  }
  life.synced = left.synced;
  if (crash.without_cpt) {
    life.disk.Remove(CrashCpt());
    life.disk.SyncFolder("/soundings");
    life.disk = life.disk.After(Loss::ContentsAndNames);
    life.allowed.no_file = true;
  }
  life.allowed.ways_down = crash.resume == kFromSurface ? 1 : 0;
  life.rows = StoredRows(life.disk.Files().at(CrashTemporary())).size();
  life.allowed.resumed_at.insert(static_cast<int>(life.rows));
  return life;
}

std::ptrdiff_t WritesOfCopy(const std::vector<DiskWork>& works) {
  return std::count(works.begin(), works.end(), DiskWork{"write", CrashTemporary()});
}

/// The works of a resume up to its third new row, or up to its end without one or if `to_end`. From
/// the surface the mark of the gap is written before these.
std::vector<DiskWork> WorksOfResume(const MemoryDisk& from, CrewTask resume, bool to_end = false) {
  CrashCrew crew(from, resume, 1);
  const int last = resume == kFromSurface ? 4 : 3;
  std::vector<DiskWork> works;
  crew.disk.fate = [&](std::string_view operation, const std::string& path, std::int64_t) {
    if (to_end || WritesOfCopy(works) < last) works.push_back({std::string(operation), path});
    return Fate::Done;
  };
  crew.Live();
  EXPECT_TRUE(crew.ended) << crew.AllTold();
  return works;
}

struct CrashInResume : testing::TestWithParam<FirstCrash> {
  static void TearDownTestSuite() {
    for (const auto& [resume, one] : totals) {
      std::cout << "crash within a resume "
                << (resume == kFromSurface ? "from the surface: " : "at the last depth: ")
                << one.operations << " operations x " << kStops.size() * kLosses.size()
                << " faults, " << one.count.Text() << "\n";
    }
    if (pulled.cases == 0) return;
    std::cout << "stick pulled within a resume: " << pulled.cases << " cases, "
              << pulled.rows_synced << " rows promised, " << pulled.rows_lost << " lost\n";
  }
  struct Total {
    std::size_t operations = 0;
    CrashCount count;
  };
  static inline std::map<CrewTask, Total> totals;
  static inline CrashCount pulled;
};

/// The rows before each mark of a drilled gap.
std::vector<std::size_t> MarksIn(const std::vector<std::string>& lines) {
  std::vector<std::size_t> rows_before;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (IsGapMark(lines[i])) rows_before.push_back(i - rows_before.size());
  }
  return rows_before;
}

/// Whether there is one. A row has quote marks, a mark of a gap has none.
bool ExpectWholeMarkOrNone(const MemoryDisk& left, std::size_t rows_before) {
  const std::vector<std::string> lines = StoredLines(ContentOf(left, CrashTemporary()));
  const std::vector<std::size_t> marks = MarksIn(lines);
  if (marks.empty()) return false;
  EXPECT_EQ(marks, std::vector<std::size_t>{rows_before});
  if (rows_before > 0) {
    EXPECT_EQ(lines[rows_before].size(), lines[0].size() - 2);
  }
  return true;
}

TEST_P(CrashInResume, IsTakenUpByTheNextStart) {
  const WholeSounding whole;
  const FirstLife first = Live(GetParam(), whole);
  const std::vector<DiskWork> works = WorksOfResume(first.disk, GetParam().resume);
  ASSERT_FALSE(HasFailure());
  CrashJudge judge(whole);
  const CrewTask resume = GetParam().resume;
  int turn = 0;
  int marks = 0;
  for (const std::int64_t step : StepsOfPart(static_cast<std::int64_t>(works.size()), 0, 1)) {
    const DiskWork& work = works[static_cast<std::size_t>(step - 1)];
    for (const NamedStop& stop : kStops) {
      const LeftBehind left = DieAt(first.disk, resume, {step, stop.fate, work}, first.synced);
      for (std::size_t i = 0; i < kLosses.size(); ++i) {
        SCOPED_TRACE(std::string(stop.name) + " operation " + std::to_string(step) +
                     " of the resume, " + work.Text() + ", " + kLosses[i].name);
        if (resume == kFromSurface) marks += ExpectWholeMarkOrNone(left.disks[i], first.rows);
        // A sounding that is taken up from the surface may be so once more.
        const bool again = resume == kFromSurface && ++turn % 2 == 0;
        judge.Judge(left.disks[i], left.synced, first.allowed,
                    again ? kFromSurface : CrewTask::Resume);
      }
      if (HasFailure()) return;
    }
    ++totals[resume].operations;
  }
  totals[resume].count.Add(judge.count);
  EXPECT_EQ(judge.count.rows_lost, 0);
  EXPECT_GT(works.size(), 5U);
  if (resume != kFromSurface) return;
  EXPECT_EQ(WritesOfCopy(works), first.rows < std::size_t{kCrashRows} ? 4 : 1) << "mark and rows";
  EXPECT_GT(marks, 0);
}

struct NamedRefusal {
  Fate fate;  ///< `Done`: the disk is full for a while
  const char* name;
  const char* reason;
};
constexpr NamedRefusal kRefusals[] = {
    {Fate::Refused, "error, nothing done", "Input/output error"},
    {Fate::RefusedHalf, "error, half done", "Input/output error"},
    {Fate::RefusedAfter, "error, all done", "Input/output error"},
    {Fate::RefusedAndForgotten, "error, and forgotten", "Input/output error"},
    {Fate::Done, "full disk", "No space left on device"}};
constexpr Micros kAwayFor = 8 * kSecond;

/// A forgotten refusal is one of a sync; a full disk is met by a write.
bool Differs(const NamedRefusal& refusal, const DiskWork& work) {
  if (refusal.fate == Fate::RefusedAndForgotten) return work.operation == "sync";
  return refusal.fate != Fate::Done || work.operation == "write";
}

/// A resume whose disk makes trouble once, judged behind its end.
struct TroubledResume {
  TroubledResume(const FirstCrash& first_crash, const FirstLife& first_life,
                 const WholeSounding& whole_sounding)
      : crash(first_crash), first(first_life), whole(whole_sounding) {
    synced.Watch(crew.disk);
  }
  ~TroubledResume() { DropCalls(this); }
  TroubledResume(const TroubledResume&) = delete;
  TroubledResume& operator=(const TroubledResume&) = delete;

  /// Now. `later` ends it.
  void Begin(std::function<void()> later = {}) {
    begun = Now();
    allowed.refused_at = std::max(sounding.RowCount, static_cast<std::int32_t>(first.rows));
    if (later) PostCall(begun + kAwayFor, this, std::move(later));
  }
  /// `holds_rows`: rows may be held up to the end of the sounding, and stand in its file alone.
  void Judge(bool holds_rows) {
    EXPECT_TRUE(crew.ended);
    EXPECT_EQ(CptDifference(ContentOf(crew.disk, CrashCpt()), whole, allowed), "");
    EXPECT_EQ(TimDifference(ContentOf(crew.disk, CrashTim()), whole, allowed), "");
    EXPECT_EQ(ContentOf(crew.disk, CrashTemporary()), "DONE\r\n");
    judge.LookAt(crew.disk.After(Loss::ContentsAndNames), synced.rows, allowed);
    if (!holds_rows) {
      EXPECT_EQ(RowsOnly(synced.rows).size(), std::size_t{kCrashRows});
    }
    if (!holds_rows && crash.resume == kFromSurface) {
      EXPECT_EQ(MarksIn(synced.rows), std::vector<std::size_t>{first.rows});
    }
    if (testing::Test::HasFailure()) ADD_FAILURE() << crew.AllTold();
  }

  const FirstCrash& crash;
  const FirstLife& first;
  const WholeSounding& whole;
  CrashCrew crew{first.disk, crash.resume, 1};
  SyncedRows synced{first.synced};
  AllowedDifferences allowed = first.allowed;
  CrashJudge judge{whole};
  Micros begun = 0;
};

/// The operator is told of a refusal at `step` of the resume, and the sounding ends as without.
void ExpectGoesOn(TroubledResume& resume, const NamedRefusal& refusal, std::int64_t step,
                  const DiskWork& work) {
  const bool fills = refusal.fate == Fate::Done;
  MemoryDisk& disk = resume.crew.disk;
  disk.fate = [&](std::string_view, const std::string&, std::int64_t number) {
    if (number != step) return Fate::Done;
    if (fills) {
      disk.SetRoom(0);
      resume.Begin([&disk] { disk.SetRoom(-1); });
    } else {
      resume.Begin();
    }
    return refusal.fate;
  };
  resume.crew.Live();
  disk.fate = {};
  EXPECT_EQ(resume.crew.files_at_resume, "");
  EXPECT_TRUE(NeedsNoWord(work) || resume.crew.WasTold(refusal.reason, resume.begun, kToldAtOnce));
  resume.Judge(fills);
}

TEST_P(CrashInResume, ADiskThatRefusesOnceIsToldAndTheResumeGoesOn) {
  const WholeSounding whole;
  const FirstCrash& crash = GetParam();
  const FirstLife first = Live(crash, whole);
  const bool to_end = std::string(crash.name) == "TornRow";
  const std::vector<DiskWork> works = WorksOfResume(first.disk, crash.resume, to_end);
  ASSERT_FALSE(HasFailure());
  if (to_end) {
    EXPECT_EQ(WritesOfCopy(works), kCrashRows - static_cast<int>(first.rows));
  }
  for (const std::int64_t step : StepsOfPart(static_cast<std::int64_t>(works.size()), 0, 1)) {
    const DiskWork& work = works[static_cast<std::size_t>(step - 1)];
    for (const NamedRefusal& refusal : kRefusals) {
      if (!Differs(refusal, work)) continue;
      SCOPED_TRACE(std::string(refusal.name) + " at operation " + std::to_string(step) + ", " +
                   work.Text());
      TroubledResume resume(crash, first, whole);
      ExpectGoesOn(resume, refusal, step, work);
      if (HasFailure()) return;
    }
  }
}

/// The stick is pulled right before that work, comes back with what was synced, and refuses each
/// work meanwhile.
void ExpectGoesOnWithStick(TroubledResume& resume, std::int64_t step) {
  MemoryDisk& disk = resume.crew.disk;
  Stick stick(disk);
  std::int64_t number = 0;
  Micros refused = -1;
  disk.before = [&](std::string_view operation, const std::string& path) {
    if (stick.IsBeingPulled()) return;
    if (++number == step) {
      stick.Pull(Loss::ContentsAndNames);
      resume.Begin([&stick] { stick.PutBack(); });
    }
    try {
      stick.RefuseWork(path);
    } catch (const RuntimeFault&) {
      if (refused < 0 && !NeedsNoWord({std::string(operation), path})) refused = Now();
      throw;
    }
  };
  resume.crew.Live();
  disk.before = {};
  if (stick.IsAway()) stick.PutBack();  // the console has ended meanwhile
  EXPECT_TRUE(refused < 0 || resume.crew.WasTold("/soundings", refused, kToldAtOnce));
  const bool away_then =
      resume.begun <= resume.crew.resumed && resume.crew.resumed < resume.begun + kAwayFor;
  EXPECT_TRUE(away_then || resume.crew.files_at_resume.empty()) << resume.crew.files_at_resume;
  resume.Judge(false);
}

/// Where the folder stands without the file, the operator may plug the stick in first or not.
TEST_P(CrashInResume, AStickThatIsPulledAndComesBackIsToldAndTheResumeGoesOn) {
  const WholeSounding whole;
  const FirstCrash& crash = GetParam();
  const FirstLife first = Live(crash, whole);
  const std::vector<DiskWork> works = WorksOfResume(first.disk, crash.resume);
  ASSERT_FALSE(HasFailure());
  for (const std::int64_t step : StepsOfPart(static_cast<std::int64_t>(works.size()), 0, 1)) {
    for (const bool waits : {true, false}) {
      if (waits && crash.without_cpt) continue;  // it never comes
      SCOPED_TRACE("pulled at operation " + std::to_string(step) + ", " +
                   works[static_cast<std::size_t>(step - 1)].Text() + (waits ? ", waits" : ""));
      TroubledResume resume(crash, first, whole);
      if (waits) resume.crew.says_no_to = "IS MISSING.  IF IT STANDS ON A MEDIUM";
      ExpectGoesOnWithStick(resume, step);
      pulled.Add(resume.judge.count);
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(First, CrashInResume, testing::ValuesIn(kFirstCrashes),
                         [](const auto& crash) { return crash.param.name; });

}  // namespace
}  // namespace penlog
