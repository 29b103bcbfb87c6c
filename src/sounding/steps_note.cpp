#include "sounding/steps_note.h"

#include <array>
#include <optional>
#include <string_view>

#include "core/channels.h"
#include "core/error_trap.h"
#include "core/resume_waits.h"
#include "core/session.h"
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
    if (end == lines.npos || !number) return std::nullopt;
    value = *number;
    lines.remove_prefix(end + 2);
  }
  return values;
}

}  // namespace

void KeepMissingSteps() {
  if (!MayMiss() || !IsUnderWay()) return;
  const std::string note = NoteNow();
  if (note == steps_note.Kept || steps_note.RetrySecond == sounding.SecondsCounter) return;
  try {
    ReplaceFile(PathOfNote(), note);
    steps_note.Kept = note;
    steps_note.RetrySecond = -1;
  } catch (const RuntimeFault& fault) {
    steps_note.RetrySecond = sounding.SecondsCounter;
    TellOnce(
        "THAT DEPTH STEPS MAY BE MISSING COULD NOT BE NOTED YET.  IF THE SOUNDING IS RESUMED "
        "BEFORE IT IS, NOTHING TELLS IT THERE.  " +
        std::string(fault.what()));
  }
}

void TakeUpMissingSteps() {
  if (session.ResumeConeId.empty()) return;
  const std::string note = NoteOnDisk();
  if (note.empty()) return;
  const auto values = ValuesOf(std::string_view(note).substr(HeadOfNote().size()));
  if (!values) return;
  const auto& [times, first, last, edges] = *values;
  sounding.StepsMayBeMissing = times > 0 ? kTrue : kFalse;
  sounding.StepsMayBeMissingDepth = static_cast<float>(last);
  missing_steps.TimesAway = ToInteger32(times);
  missing_steps.FirstDepth = static_cast<float>(first);
  missing_steps.EdgesLostBefore = RoundHalfEven(edges);
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
