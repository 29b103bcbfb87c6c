#include "sounding/sounding_files.h"

#include <vector>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/session.h"
#include "core/settings.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "platform/small_file.h"
#include "platform/texts.h"
#include "sounding/held_rows.h"
#include "sounding/reading_values.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

/// A file that a start makes, and how to undo it.
struct NewFile {
  SoundingFile file;
  std::string beside;  ///< a free name for what stands there; empty if that may be replaced
  bool is_ours = false;
};

void Make(NewFile& made, const std::string& text) {
  const std::string& path = PathOf(made.file);
  if (!made.beside.empty() && TheDisk().FileExists(path)) {
    TheDisk().Rename(path, made.beside);
    TheDisk().SyncFolder(FolderOf(path));  // its new name, before another file takes the old one
  }
  made.is_ours = true;
  ReplaceFile(path, text);
  StartFile(made.file, text);
}

void TakeBack(const NewFile& made) {
  const std::string& path = PathOf(made.file);
  const bool has_moved = !made.beside.empty() && made.beside != path;
  Trapped([&] {
    if (has_moved && TheDisk().FileExists(made.beside)) {
      TheDisk().Rename(made.beside, path);
    } else if (made.is_ours && TheDisk().FileExists(path) && !IsMarkedDone(path)) {
      TheDisk().Remove(path);
    }
    TheDisk().SyncFolder(FolderOf(path));
  });
  ForgetFile(made.file);
}

std::string HeaderOf(SoundingFile file) {
  if (file == kCptFile) return CptHeader();
  if (file == kTemporaryFile) return TemporaryHeader(PathOf(kCptFile));
  return TimHeader(static_cast<float>(SecondsSinceMidnight(TheClock().Wall())));
}

/// The recovery copy comes last: one that names a missing file could not be resumed.
void MakeFiles(std::vector<NewFile>& made) {
  for (const SoundingFile file : {kTimFile, kCptFile, kTemporaryFile}) {
    if (file == kTimFile && !HasTimFile()) continue;
    const std::string& path = PathOf(file);
    const bool may_be_replaced = file == kTemporaryFile && IsMarkedDone(path);
    made.push_back({file, may_be_replaced ? "" : FreeNameBeside(path)});
    Make(made.back(), HeaderOf(file));
  }
}

void TakeRow(std::int32_t row) {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channels.ChannelPresent(channel) == kTrue) {
      sounding.Rows(row, channel) = sounding.Readings(channel);
    } else if (sounding.KeptColumn(channel) == kTrue) {
      sounding.Rows(row, channel) = kNotReached;
    }
  }
  sounding.Rows(row, 0) = sounding.CurrentDepth;
  sounding.RowQt(row) = QtOfRow(row);
}

std::string DelayedRows() {
  std::string text;
  const std::int32_t newest = sounding.RowCount;
  for (std::int32_t row = newest - cone.DelayRows + 1; row <= newest; ++row) {
    text += FlushRow(row, newest);
  }
  return text;
}

/// What of the closing lines was not made yet: a call that the disk refused is repeated.
std::string ClosingText() {
  std::string text;
  if (sounding.CloseRowsMade != kTrue) text += DelayedRows();
  sounding.CloseRowsMade = kTrue;
  if (sounding.CloseWithFinalBaseline == kTrue && sounding.FinalBaselineMade != kTrue) {
    text += FinalBaselineLine();
    sounding.FinalBaselineMade = kTrue;
  }
  return text;
}

}  // namespace

bool HasTimFile() {
  return settings.LumenProbePresent == 1 || settings.LumenProbePresent == 2;
}

bool IsMarkedDone(const std::string& path) {
  if (!TheDisk().FileExists(path) || TheDisk().SizeOf(path) > kMostOfSmallFile) return false;
  const std::string text = ReadFile(path);
  return Trim(std::string_view(text).substr(0, text.find('\n'))) == "DONE";
}

void CreateSoundingFiles() {
  std::vector<NewFile> made;
  try {
    MakeFiles(made);
  } catch (const RuntimeFault&) {
    for (auto file = made.rbegin(); file != made.rend(); ++file) TakeBack(*file);
    throw;
  }
  for (const int channel : HeaderChannels()) {
    sounding.Rows(0, channel) = channels.Baselines(channel);
  }
}

void RecordRow() {
  const std::int32_t row = sounding.RowCount;
  TakeRow(row);
  AppendOrHold(kTemporaryFile, TemporaryRow(row));
  // The ASCII sentence of the row is filled along with it here, and the depth on the overlay
  // updated, once they stand.
  if (row > cone.DelayRows) AppendOrHold(kCptFile, AlignedRow(row));
}

bool WriteClosingRows() {
  return AppendOrHold(kCptFile, ClosingText());
}

void MarkSoundingDone() {
  const std::string_view done = "DONE\r\n";
  ReplaceFile(PathOf(kTemporaryFile), done);
  StartFile(kTemporaryFile, done);
}

}  // namespace penlog
