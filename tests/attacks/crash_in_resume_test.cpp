// A second crash, while the console takes a sounding up again and mends its files: mending can be
// cut off anywhere and is done once more at the next start. And a disk that refuses in the midst of
// it, once: the operator is told, tries again, and the sounding goes on.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
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
};

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
    {"NoRowYetAndNoSoundingFile", "append", "tim", 1, Fate::StopBefore, Loss::Contents, true}};

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
  const auto rows = StoredRows(life.disk.Files().at(CrashTemporary())).size();
  life.allowed.resumed_at.insert(static_cast<int>(rows));
  return life;
}

/// The works of a resume up to its third new row, or up to its end without one.
std::vector<DiskWork> WorksOfResume(const MemoryDisk& from) {
  CrashCrew crew(from, CrewTask::Resume);
  std::vector<DiskWork> works;
  const DiskWork row = {"write", CrashTemporary()};
  crew.disk.fate = [&](std::string_view operation, const std::string& path, std::int64_t) {
    const bool goes_on = std::count(works.begin(), works.end(), row) < 3;
    if (goes_on) works.push_back({std::string(operation), path});
    return Fate::Done;
  };
  crew.Live();
  EXPECT_TRUE(crew.ended) << crew.AllTold();
  return works;
}

struct CrashInResume : testing::TestWithParam<FirstCrash> {
  static void TearDownTestSuite() {
    std::cout << "crash within a resume: " << operations << " operations x "
              << kStops.size() * kLosses.size() << " faults, " << total.Text() << "\n";
  }
  static inline std::size_t operations = 0;
  static inline CrashCount total;
};

TEST_P(CrashInResume, IsTakenUpByTheNextStart) {
  const WholeSounding whole;
  const FirstLife first = Live(GetParam(), whole);
  const std::vector<DiskWork> works = WorksOfResume(first.disk);
  ASSERT_FALSE(HasFailure());
  CrashJudge judge(whole);
  for (const std::int64_t step : StepsOfPart(static_cast<std::int64_t>(works.size()), 0, 1)) {
    const DiskWork& work = works[static_cast<std::size_t>(step - 1)];
    for (const NamedStop& stop : kStops) {
      const LeftBehind left =
          DieAt(first.disk, CrewTask::Resume, {step, stop.fate, work}, first.synced);
      for (std::size_t i = 0; i < kLosses.size(); ++i) {
        SCOPED_TRACE(std::string(stop.name) + " operation " + std::to_string(step) +
                     " of the resume, " + work.Text() + ", " + kLosses[i].name);
        judge.Judge(left.disks[i], left.synced, first.allowed);
      }
      if (HasFailure()) return;
    }
    ++operations;
  }
  total.Add(judge.count);
  EXPECT_EQ(judge.count.rows_lost, 0);
  EXPECT_GT(works.size(), 5U);
}

TEST_P(CrashInResume, ADiskThatRefusesOnceIsToldAndTheResumeGoesOn) {
  const WholeSounding whole;
  const FirstLife first = Live(GetParam(), whole);
  const std::vector<DiskWork> works = WorksOfResume(first.disk);
  ASSERT_FALSE(HasFailure());
  for (const std::int64_t step : StepsOfPart(static_cast<std::int64_t>(works.size()), 0, 1)) {
    for (const Fate refusal : {Fate::Refused, Fate::RefusedHalf, Fate::RefusedAfter}) {
      SCOPED_TRACE("refusal " + std::to_string(static_cast<int>(refusal)) + " of operation " +
                   std::to_string(step) + ", " + works[static_cast<std::size_t>(step - 1)].Text());
      CrashCrew crew(first.disk, CrewTask::Resume);
      SyncedRows synced{first.synced};
      synced.Watch(crew.disk);
      Micros refused = 0;
      crew.disk.fate = [&](std::string_view, const std::string&, std::int64_t number) {
        if (number != step) return Fate::Done;
        refused = Now();
        return refusal;
      };
      crew.Live();
      EXPECT_TRUE(crew.ended) << crew.AllTold();
      EXPECT_TRUE(NeedsNoWord(works[static_cast<std::size_t>(step - 1)]) ||
                  crew.WasTold("Input/output error", refused, kToldAtOnce));
      EXPECT_EQ(crew.files_at_resume, "");
      EXPECT_EQ(CptDifference(crew.disk.Files().at(CrashCpt()), whole, first.allowed), "");
      EXPECT_EQ(TimDifference(crew.disk.Files().at(CrashTim()), whole, first.allowed), "");
      CrashJudge judge(whole);
      judge.LookAt(crew.disk.After(Loss::ContentsAndNames), synced.rows, first.allowed);
      if (HasFailure()) {
        ADD_FAILURE() << crew.AllTold();
        return;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(First, CrashInResume, testing::ValuesIn(kFirstCrashes),
                         [](const auto& crash) { return crash.param.name; });

}  // namespace
}  // namespace penlog
