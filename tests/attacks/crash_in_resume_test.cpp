// A second crash, while the console takes a sounding up again and mends its files: mending can be
// cut off anywhere and is done once more at the next start. And a disk that refuses in the midst of
// it, once: the operator is told, tries again, and the sounding goes on.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "attacks/crash_judge.h"
#include "platform/clock.h"

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
  life.allowed.way_down = crash.resume == kFromSurface;
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
  CrashCrew crew(from, resume);
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
  }
  struct Total {
    std::size_t operations = 0;
    CrashCount count;
  };
  static inline std::map<CrewTask, Total> totals;
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
constexpr Micros kFullFor = 8 * kSecond;

/// A forgotten refusal is one of a sync; a full disk is met by a write.
bool Differs(const NamedRefusal& refusal, const DiskWork& work) {
  if (refusal.fate == Fate::RefusedAndForgotten) return work.operation == "sync";
  return refusal.fate != Fate::Done || work.operation == "write";
}

/// The operator is told of a refusal at `step` of the resume, and the sounding ends as without.
void ExpectGoesOn(const FirstCrash& crash, const FirstLife& first, const WholeSounding& whole,
                  const NamedRefusal& refusal, std::int64_t step, const DiskWork& work) {
  const bool fills = refusal.fate == Fate::Done;
  CrashCrew crew(first.disk, crash.resume);
  SyncedRows synced{first.synced};
  synced.Watch(crew.disk);
  Micros refused = 0;
  crew.disk.fate = [&](std::string_view, const std::string&, std::int64_t number) {
    if (number != step) return Fate::Done;
    refused = Now();
    if (fills) {
      crew.disk.SetRoom(0);
      PostCall(refused + kFullFor, &crew, [&crew] { crew.disk.SetRoom(-1); });
    }
    return refusal.fate;
  };
  crew.Live();
  EXPECT_TRUE(crew.ended);
  EXPECT_TRUE(NeedsNoWord(work) || crew.WasTold(refusal.reason, refused, kToldAtOnce));
  EXPECT_EQ(crew.files_at_resume, "");
  AllowedDifferences allowed = first.allowed;
  allowed.speeds_nearly = fills;
  EXPECT_EQ(CptDifference(ContentOf(crew.disk, CrashCpt()), whole, allowed), "");
  EXPECT_EQ(TimDifference(ContentOf(crew.disk, CrashTim()), whole, allowed), "");
  EXPECT_EQ(ContentOf(crew.disk, CrashTemporary()), "DONE\r\n");
  CrashJudge judge(whole);
  judge.LookAt(crew.disk.After(Loss::ContentsAndNames), synced.rows, allowed);
  // Rows that were held up to the end of the sounding stand in its file alone.
  if (!fills) {
    EXPECT_EQ(synced.rows.size(), std::size_t{kCrashRows} + MarksIn(synced.rows).size());
  }
  if (!fills && crash.resume == kFromSurface) {
    EXPECT_EQ(MarksIn(synced.rows), std::vector<std::size_t>{first.rows});
  }
  if (testing::Test::HasFailure()) ADD_FAILURE() << crew.AllTold();
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
      ExpectGoesOn(crash, first, whole, refusal, step, work);
      if (HasFailure()) return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(First, CrashInResume, testing::ValuesIn(kFirstCrashes),
                         [](const auto& crash) { return crash.param.name; });

}  // namespace
}  // namespace penlog
