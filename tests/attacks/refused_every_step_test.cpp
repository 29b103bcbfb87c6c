// Each single operation of a whole sounding on its disk is refused once: by an input-output error
// that comes with nothing, a half or all of it done, or by a disk that is full from there on until
// there is room again. At each row the stick with the soundings is pulled and comes back. The
// operator is told at once, the rows stay in memory, and the sounding ends as without it. All
// along, what the console doesn't say to be held is on the medium.
//
// And with a crash behind the refusal, at an operation drawn by lot: PENLOG_CRASH_SEED draws
// others.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include "attacks/crash_judge.h"
#include "attacks/hands.h"
#include "attacks/stick.h"
#include "core/session.h"
#include "platform/clock.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr int kParts = 6;
constexpr Micros kAwayFor = 8 * kSecond;

enum class Refusal { Nothing, Half, All, Forgotten, Full, Pulled };

struct NamedRefusal {
  Refusal refusal;
  const char* name;
  const char* reason;
};
constexpr std::array kRefusals = {
    NamedRefusal{Refusal::Nothing, "error, nothing done", "Input/output error"},
    NamedRefusal{Refusal::Half, "error, half done", "Input/output error"},
    NamedRefusal{Refusal::All, "error, all done", "Input/output error"},
    NamedRefusal{Refusal::Forgotten, "error, and forgotten", "Input/output error"},
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
    case Refusal::Forgotten:
      return operation == "sync";
    case Refusal::Full:
      return operation == "write";
    case Refusal::Pulled:
      return operation == "append" && work.path == CrashTim();
  }
  return false;
}

/// Where the process dies behind a refusal.
struct Stop {
  std::int64_t step = 0;
  Fate fate = Fate::Done;
};

/// A life with the refusal at one step.
struct RefusedLife {
  RefusedLife(std::int64_t step, Refusal refusal, const WholeSounding& whole_sounding,
              const Stop& stop = {})
      : whole(whole_sounding), crew(whole.before, CrewTask::Record) {
    synced.Watch(crew.disk);
    crew.disk.fate = [=, this](std::string_view, const std::string&, std::int64_t number) {
      if (number > step) LookAtDone();
      if (number == stop.step) return stop.fate;
      return number == step ? Refuse(refusal) : Fate::Done;
    };
    PostGlance(this, [this] { Look(); });
    crew.Live();
    DropCalls(this);
    for (const std::string& mark : WholeLines(sounding.Held[kTimFile].Text)) {
      allowed.marks_held.insert(mark.substr(0, mark.find(' ')));
    }
  }
  ~RefusedLife() { DropCalls(this); }
  RefusedLife(const RefusedLife&) = delete;
  RefusedLife& operator=(const RefusedLife&) = delete;

  Fate Refuse(Refusal refusal) {
    refused = Now();
    allowed.date = session.SoundingFiles[kCptFile].empty();
    allowed.refused_at = sounding.RowCount;
    if (refusal == Refusal::Nothing) return Fate::Refused;
    if (refusal == Refusal::Half) return Fate::RefusedHalf;
    if (refusal == Refusal::All) return Fate::RefusedAfter;
    if (refusal == Refusal::Forgotten) return Fate::RefusedAndForgotten;
    if (refusal == Refusal::Pulled) {
      PostCall(refused, &crew, [this] { stick.Pull(Loss::Nothing); });
    } else {
      crew.disk.SetRoom(0);
    }
    PostCall(refused + kAwayFor, &crew, [this] {
      LookWhileAway();
      crew.disk.SetRoom(-1);
      stick.PutBack();
    });
    PostCall(refused + kAwayFor + 3 * kSecond, &crew, [this] { LookWithRoom(); });
    return Fate::Done;
  }

  std::int32_t RowsOnDisk() const {
    return static_cast<std::int32_t>(StoredRows(crew.disk.Files().at(CrashTemporary())).size());
  }
  static bool Records() { return sounding.ConsoleMode == 2 && sounding.RowCount > 0; }
  void LookWhileAway() const {
    if (!Records()) return;
    EXPECT_EQ(RowsOnDisk() + RowsHeld(kTemporaryFile), sounding.RowCount) << "kept in memory";
    EXPECT_GT(sounding.RowsHeldBack, 0) << "and the operator sees that they are";
  }
  void LookWithRoom() const {
    if (!Records()) return;
    EXPECT_EQ(RowsOnDisk(), sounding.RowCount) << "written as soon as there is room";
    EXPECT_EQ(sounding.RowsHeldBack, 0);
  }

  void Look() {
    PostGlance(this, [this] { Look(); });
    LookAtMedium();
  }
  static std::int32_t RowsHeld(SoundingFile file) {
    const HeldText& held = sounding.Held[static_cast<std::size_t>(file)];
    return static_cast<std::int32_t>(WholeLines(held.Text).size());
  }
  /// A crash at this moment would leave each row that the console doesn't say to be held.
  void LookAtMedium() {
    if (crew.disk.OperationCount() == looked_at || !Records()) return;
    looked_at = crew.disk.OperationCount();
    const std::string& seen = ContentOf(crew.disk, CrashTemporary());
    if (!seen.starts_with(CrashCpt())) return;  // closed
    const MemoryDisk left = crew.disk.After(Loss::ContentsAndNames);
    const std::vector<std::string> rows = StoredRows(ContentOf(left, CrashTemporary()));
    const std::vector<std::string> all = StoredRows(seen);
    const auto stand = static_cast<std::int32_t>(rows.size());
    const std::int32_t promised = sounding.RowCount - RowsHeld(kTemporaryFile);
    looks += 1;
    EXPECT_GE(stand, promised) << "rows of the recovery copy on the medium";
    EXPECT_TRUE(std::mismatch(rows.begin(), rows.end(), all.begin(), all.end()).first ==
                rows.end());
    EXPECT_TRUE(promised == sounding.RowCount || sounding.RowsHeldBack > 0) << "not told";
    if (stick.IsAway()) return;
    const std::size_t cpt_lines = WholeLines(ContentOf(left, CrashCpt())).size();
    EXPECT_GE(static_cast<std::int32_t>(cpt_lines) - static_cast<std::int32_t>(kCptHead),
              sounding.RowCount - kCrashDelay - RowsHeld(kCptFile))
        << "rows of the sounding's file on the medium";
  }
  /// "DONE" stands nowhere without the whole sounding's file.
  void LookAtDone() {
    if (ContentOf(crew.disk, CrashTemporary()) != "DONE\r\n") return;
    for (const NamedLoss& loss : kLosses) {
      const MemoryDisk left = crew.disk.After(loss.loss);
      if (ContentOf(left, CrashTemporary()) != "DONE\r\n") continue;
      EXPECT_EQ(CptDifference(ContentOf(left, CrashCpt()), whole, allowed), "") << loss.name;
    }
  }

  const WholeSounding& whole;
  CrashCrew crew;
  SyncedRows synced;
  std::int64_t looked_at = 0;
  AllowedDifferences allowed;  ///< what the refusal may change: it takes time
  int looks = 0;
  Stick stick{crew.disk};
  Micros refused = -1;
};

struct RefusedAtEveryStep : testing::TestWithParam<int> {
  static void TearDownTestSuite() {
    std::cout << "refused at every step: " << operations << " operations, " << cases
              << " different faults, " << looks << " looks at the medium, " << rows
              << " rows promised, " << lost << " lost\n";
  }
  static inline std::int64_t looks = 0;
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
  EXPECT_GE(life.looks, kCrashRows / 2) << "not looked at row by row";
  RefusedAtEveryStep::looks += life.looks;
  EXPECT_EQ(CptDifference(crew.disk.Files().at(CrashCpt()), whole, life.allowed), "");
  EXPECT_EQ(TimDifference(crew.disk.Files().at(CrashTim()), whole, life.allowed), "");
  EXPECT_EQ(crew.disk.Files().at(CrashTemporary()), "DONE\r\n");
  CrashJudge judge(whole);
  for (const Loss loss : {Loss::Contents, Loss::ContentsAndNames}) {
    judge.LookAt(crew.disk.After(loss), life.synced.rows, life.allowed);
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

// A crash behind a refusal.

unsigned CrashSeed() {
  const char* told = std::getenv("PENLOG_CRASH_SEED");
  return told == nullptr ? 1U : static_cast<unsigned>(std::strtoul(told, nullptr, 10));
}

/// The half of the lots falls into the next operations, in which the console tries again.
Stop DrawStop(std::int64_t step, Refusal refusal, std::int64_t count) {
  std::seed_seq seeds{CrashSeed(), static_cast<unsigned>(step), static_cast<unsigned>(refusal)};
  std::mt19937 lots(seeds);
  const std::int64_t near = 12;
  const std::int64_t span = lots() % 2 == 0 ? near : std::max(count - step, near);
  const std::int64_t behind = 1 + static_cast<std::int64_t>(lots()) % span;
  return {step + behind, kStops[lots() % kStops.size()].fate};
}

/// Settings that could not be saved, which was told, don't know the truck's port: the operator has
/// to choose it again, and this crew can't.
bool KnowsTruckPort(const MemoryDisk& left) {
  const auto lines = WholeLines(ContentOf(left, CrashData("System Setup Values.txt")));
  return lines.size() > 41 && lines[41] == "4";
}

struct CrashBehindARefusal : testing::TestWithParam<int> {
  static void TearDownTestSuite() {
    std::cout << "crash behind a refusal: PENLOG_CRASH_SEED=" << CrashSeed() << ", " << crashes
              << " crashes x 2 losses, " << total.Text() << "\n";
  }
  static inline std::int64_t crashes = 0;
  static inline CrashCount total;
};

TEST_P(CrashBehindARefusal, LosesNoPromisedRowAndEndsTheSoundingAsWithoutIt) {
  const WholeSounding whole;
  ASSERT_FALSE(HasFailure());
  const auto count = static_cast<std::int64_t>(whole.works.size());
  CrashJudge judge(whole);
  for (const std::int64_t step : StepsOfPart(count, GetParam(), kParts)) {
    const DiskWork& work = whole.works[static_cast<std::size_t>(step - 1)];
    for (const NamedRefusal& refusal : kRefusals) {
      if (refusal.refusal == Refusal::Pulled || !Differs(refusal.refusal, work)) continue;
      const Stop stop = DrawStop(step, refusal.refusal, count);
      SCOPED_TRACE("PENLOG_CRASH_SEED=" + std::to_string(CrashSeed()) + ", operation " +
                   std::to_string(step) + ", " + work.Text() + ", " + refusal.name +
                   ", crash at operation " + std::to_string(stop.step) + " by fate " +
                   std::to_string(static_cast<int>(stop.fate)));
      const RefusedLife life(step, refusal.refusal, whole, stop);
      if (!life.crew.disk.Stopped()) continue;  // it had ended
      ++crashes;
      for (const Loss loss : {Loss::Contents, Loss::ContentsAndNames}) {
        const MemoryDisk left = life.crew.disk.After(loss);
        const bool ours = ContentOf(left, CrashTemporary()).starts_with(CrashCpt());
        if (ours && !KnowsTruckPort(left)) {
          EXPECT_TRUE(life.crew.WasTold("THE SETTINGS COULD NOT BE SAVED"));
          judge.LookAt(left, life.synced.rows, life.allowed);
        } else {
          judge.Judge(left, life.synced.rows, life.allowed);
        }
      }
      if (HasFailure()) {
        ADD_FAILURE() << life.crew.AllTold();
        return;
      }
    }
  }
  total.Add(judge.count);
  EXPECT_EQ(judge.count.rows_lost, 0);
  EXPECT_GT(judge.count.cases, 0);
}

INSTANTIATE_TEST_SUITE_P(Parts, CrashBehindARefusal, testing::Range(0, kParts));

}  // namespace
}  // namespace penlog
