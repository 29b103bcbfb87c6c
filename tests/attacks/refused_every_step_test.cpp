// Each single operation of a whole sounding on its disk is refused once: by an input-output error
// that comes with nothing, a half or all of it done, or by a disk that is full from there on until
// there is room again. At each row the stick with the soundings is pulled and comes back. The
// operator is told at once, the rows stay in memory, and the sounding ends as without it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "attacks/crash_judge.h"
#include "platform/clock.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr int kParts = 6;
constexpr Micros kAwayFor = 8 * kSecond;

enum class Refusal { Nothing, Half, All, Full, Pulled };

struct NamedRefusal {
  Refusal refusal;
  const char* name;
  const char* reason;
};
constexpr std::array kRefusals = {
    NamedRefusal{Refusal::Nothing, "error, nothing done", "Input/output error"},
    NamedRefusal{Refusal::Half, "error, half done", "Input/output error"},
    NamedRefusal{Refusal::All, "error, all done", "Input/output error"},
    NamedRefusal{Refusal::Full, "full disk", "No space left on device"},
    NamedRefusal{Refusal::Pulled, "stick pulled", "is no longer there"}};

/// Where it is no other fault: a close, an opening and a name have no half, and a disk that is full
/// is met by the next write.
bool Differs(Refusal refusal, const DiskWork& work) {
  const std::string& operation = work.operation;
  const std::set<std::string> with_half = {"create", "write", "sync", "sync folder"};
  switch (refusal) {
    case Refusal::Nothing:
      return true;
    case Refusal::Half:
      return with_half.count(operation) > 0;
    case Refusal::All:
      return operation != "close" && operation != "append";
    case Refusal::Full:
      return operation == "write";
    case Refusal::Pulled:
      return operation == "append" && work.path == CrashTim();
  }
  return false;
}

/// A life with the refusal at one step.
struct RefusedLife {
  RefusedLife(std::int64_t step, Refusal refusal, const WholeSounding& whole)
      : crew(whole.before, CrewTask::Record) {
    synced.Watch(crew.disk);
    crew.disk.fate = [=, this](std::string_view, const std::string&, std::int64_t number) {
      return number == step ? Refuse(refusal) : Fate::Done;
    };
    crew.Live();
  }

  Fate Refuse(Refusal refusal) {
    refused = Now();
    if (refusal == Refusal::Nothing) return Fate::Refused;
    if (refusal == Refusal::Half) return Fate::RefusedHalf;
    if (refusal == Refusal::All) return Fate::RefusedAfter;
    const bool pulled = refusal == Refusal::Pulled;
    if (pulled) PostCall(refused, &crew, [this] { Pull(); });
    if (!pulled) crew.disk.SetRoom(0);
    PostCall(refused + kAwayFor, &crew, [this] {
      LookWhileAway();
      crew.disk.SetRoom(-1);
      for (const auto& [path, content] : stick) crew.disk.Put(path, content);
    });
    PostCall(refused + kAwayFor + 3 * kSecond, &crew, [this] { LookWithRoom(); });
    return Fate::Done;
  }

  std::int32_t RowsOnDisk() const {
    return static_cast<std::int32_t>(StoredRows(crew.disk.Files().at(CrashTemporary())).size());
  }
  static bool Records() { return sounding.ConsoleMode == 2 && sounding.RowCount > 0; }
  /// What stands on the stick goes with it; the folder in its place stays.
  void Pull() {
    for (const auto& [path, content] : crew.disk.Files()) {
      if (path.starts_with("/soundings/")) stick[path] = content;
    }
    for (const auto& [path, content] : stick) crew.disk.Remove(path);
  }
  void LookWhileAway() const {
    if (!Records()) return;
    const auto held = static_cast<std::int32_t>(WholeLines(sounding.Held[0].Text).size());
    EXPECT_EQ(RowsOnDisk() + held, sounding.RowCount) << "kept in memory";
    EXPECT_GT(sounding.RowsHeldBack, 0) << "and the operator sees that they are";
  }
  void LookWithRoom() const {
    if (!Records()) return;
    EXPECT_EQ(RowsOnDisk(), sounding.RowCount) << "written as soon as there is room";
    EXPECT_EQ(sounding.RowsHeldBack, 0);
  }

  CrashCrew crew;
  SyncedRows synced;
  std::map<std::string, std::string> stick;
  Micros refused = -1;
};

struct RefusedAtEveryStep : testing::TestWithParam<int> {
  static void TearDownTestSuite() {
    std::cout << "refused at every step: " << operations << " operations, " << cases
              << " different faults, " << rows << " rows promised, " << lost << " lost\n";
  }
  static inline std::int64_t operations = 0;
  static inline std::int64_t cases = 0;
  static inline std::int64_t rows = 0;
  static inline std::int64_t lost = 0;
};

void Judge(RefusedLife& life, const NamedRefusal& refusal, const DiskWork& work,
           const WholeSounding& whole) {
  const CrashCrew& crew = life.crew;
  ASSERT_TRUE(crew.ended) << crew.AllTold();
  ASSERT_GE(life.refused, 0);
  EXPECT_TRUE(NeedsNoWord(work) || crew.WasTold(refusal.reason, life.refused, kToldAtOnce))
      << "refused at " << life.refused / kMillisecond << " ms and not told at once\n"
      << crew.AllTold();
  AllowedDifferences allowed;
  allowed.date = true;
  allowed.speeds_nearly = true;
  EXPECT_EQ(CptDifference(crew.disk.Files().at(CrashCpt()), whole, allowed), "");
  EXPECT_EQ(TimDifference(crew.disk.Files().at(CrashTim()), whole, allowed), "");
  EXPECT_EQ(crew.disk.Files().at(CrashTemporary()), "DONE\r\n");
  CrashJudge judge(whole);
  for (const Loss loss : {Loss::Contents, Loss::ContentsAndNames}) {
    judge.LookAt(crew.disk.After(loss), life.synced.rows, allowed);
  }
  RefusedAtEveryStep::rows += judge.count.rows_synced;
  RefusedAtEveryStep::lost += judge.count.rows_lost;
}

TEST_P(RefusedAtEveryStep, IsToldAtOnceAndEndsTheSoundingAsWithoutIt) {
  const WholeSounding whole;
  ASSERT_FALSE(HasFailure());
  const auto count = static_cast<std::int64_t>(whole.works.size());
  const std::vector<std::int64_t> steps = StepsOfPart(count, GetParam(), kParts);
  for (const std::int64_t step : steps) {
    const DiskWork& work = whole.works[static_cast<std::size_t>(step - 1)];
    for (const NamedRefusal& refusal : kRefusals) {
      if (!Differs(refusal.refusal, work)) continue;
      SCOPED_TRACE("operation " + std::to_string(step) + ", " + work.Text() + ", " + refusal.name);
      RefusedLife life(step, refusal.refusal, whole);
      Judge(life, refusal, work, whole);
      ++cases;
      if (HasFailure()) return;
    }
  }
  operations += static_cast<std::int64_t>(steps.size());
  EXPECT_EQ(lost, 0);
}

INSTANTIATE_TEST_SUITE_P(Parts, RefusedAtEveryStep, testing::Range(0, kParts));

}  // namespace
}  // namespace penlog
