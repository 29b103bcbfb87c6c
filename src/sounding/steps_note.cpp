#include "sounding/steps_note.h"

#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

#include "core/channels.h"
#include "core/error_trap.h"
#include "core/resume_waits.h"
#include "core/session.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "sounding/missing_steps.h"
#include "sounding/sounding_state.h"
#include "sounding/tell_once.h"

namespace penlog {

namespace {

constexpr const char* kLineEnd = "\r\n";
constexpr double kMostNoted = 1e9;       ///< beyond is damage
constexpr Micros kPause = 10 * kSecond;  ///< behind an attempt: a slow medium must not hold up rows

/// Times away, depth of the first and of the last return, edges lost.
using NotedValues = std::array<double, 4>;

std::string PathOfNote() {
  return JoinPath(FolderOf(session.SoundingFiles[0]), "Missing Steps.txt");
}

/// The lines that tell whose steps they are.
std::string HeadOfNote() {
  return std::string(Trim(session.SoundingDateTime)) + kLineEnd +
         std::string(Trim(session.SoundingName)) + kLineEnd;
}

std::int64_t EdgesLost() {
  return missing_steps.EdgesLostBefore + missing_steps.EdgesLost;
}

bool MayMiss() {
  return sounding.StepsMayBeMissing == kTrue || EdgesLost() > 0;
}

/// A sounding that has its recovery copy, and whose depth counts.
bool IsUnderWay() {
  return (IsRecording() || ResumeWaits()) && sounding.Held[0].FileLength >= 0;
}

std::string NoteNow() {
  std::string text = HeadOfNote();
  for (const std::string& value :
       {PlainNumber(missing_steps.TimesAway), Format(missing_steps.FirstDepth, "0.000"),
        Format(sounding.StepsMayBeMissingDepth, "0.000"), PlainNumber(EdgesLost())}) {
    text += value + kLineEnd;
  }
  return text;
}

/// The note on the disk; empty where there is none of this sounding.
std::string NoteOnDisk() {
  std::string text;
  Trapped([&] {
    if (TheDisk().FileExists(PathOfNote())) text = ReadFile(PathOfNote());
  });
  return text.starts_with(HeadOfNote()) ? text : std::string();
}

std::optional<NotedValues> ValuesOf(std::string_view lines) {
  NotedValues values{};
  for (double& value : values) {
    const std::size_t end = lines.find(kLineEnd);
    const auto number = WholeNumberText(lines.substr(0, end));
    if (end == lines.npos || !number || std::abs(*number) > kMostNoted) return std::nullopt;
    value = *number;
    lines.remove_prefix(end + 2);
  }
  return values;
}

}  // namespace

void KeepMissingSteps() {
  // The first tick behind an attempt, for the clock stands still in it.
  if (std::exchange(steps_note.HasTried, false)) steps_note.NotBefore = Now() + kPause;
  if (!MayMiss() || !IsUnderWay() || Now() < steps_note.NotBefore) return;
  if (sounding.Held[0].Failed) return;  // the rows come first
  const std::string note = NoteNow();
  if (note == steps_note.Kept) return;
  try {
    ReplaceFile(PathOfNote(), note);
    steps_note.Kept = note;
  } catch (const RuntimeFault& fault) {
    TellOnce(
        "THAT DEPTH STEPS MAY BE MISSING COULD NOT BE NOTED YET.  IF THE SOUNDING IS RESUMED "
        "BEFORE IT IS, NOTHING TELLS IT THERE.  " +
        std::string(fault.what()));
  }
  steps_note.HasTried = true;
}

void TakeUpMissingSteps() {
  if (session.ResumeConeId.empty()) return;
  const std::string note = NoteOnDisk();
  if (note.empty()) return;
  const auto values = ValuesOf(std::string_view(note).substr(HeadOfNote().size()));
  if (!values) return;
  const auto& [times, first, last, edges] = *values;
  const std::int32_t times_away = ToInteger32(times);
  missing_steps.EdgesLostBefore = ToInteger32(edges);
  sounding.StepsMayBeMissing = times_away > 0 ? kTrue : kFalse;
  sounding.StepsMayBeMissingDepth = static_cast<float>(last);
  missing_steps.TimesAway = missing_steps.TimesAwayBefore = times_away;
  missing_steps.FirstDepth = static_cast<float>(first);
  steps_note.Kept = note;
}

void RemoveMissingSteps() {
  if (NoteOnDisk().empty()) return;
  Trapped([] {
    TheDisk().Remove(PathOfNote());
    TheDisk().SyncFolder(FolderOf(PathOfNote()));
  });
}

}  // namespace penlog
