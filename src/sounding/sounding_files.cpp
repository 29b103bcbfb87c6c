#include "sounding/sounding_files.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/session.h"
#include "core/settings.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "sounding/held_rows.h"
#include "sounding/reading_values.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

const std::string& PathOf(SoundingFile file) {
  return session.SoundingFiles[static_cast<std::size_t>(file)];
}

void MakeFile(SoundingFile file, const std::string& text) {
  ReplaceFile(PathOf(file), text);
  StartFile(file, text.size());
}

/// What stands there is not ours: it is renamed to a free name beside, which is returned.
std::string MoveBeside(const std::string& path) {
  if (!TheDisk().FileExists(path)) return {};
  const std::string beside = FreeNameBeside(path);
  TheDisk().Rename(path, beside);
  return beside;
}

void MakeTemporaryFile() {
  const std::string& path = PathOf(kTemporaryFile);
  const std::string kept = IsMarkedDone(path) ? std::string() : MoveBeside(path);
  try {
    MakeFile(kTemporaryFile, TemporaryHeader(PathOf(kCptFile)));
  } catch (const RuntimeFault&) {
    if (!kept.empty()) Trapped([&] { TheDisk().Rename(kept, path); });
    throw;
  }
}

/// The `.cpt` file comes first: a recovery copy that names a missing file could not be resumed.
void MakeBothFiles() {
  MoveBeside(PathOf(kCptFile));
  MakeFile(kCptFile, CptHeader());
  try {
    MakeTemporaryFile();
  } catch (const RuntimeFault&) {
    Trapped([] { TheDisk().Remove(PathOf(kCptFile)); });
    throw;
  }
}

void MakeTimFile() {
  if (settings.LumenProbePresent != 1 && settings.LumenProbePresent != 2) return;
  const auto seconds = static_cast<float>(SecondsSinceMidnight(TheClock().Wall()));
  MoveBeside(PathOf(kTimFile));  // marks of another sounding, or of rods moved before this one
  MakeFile(kTimFile, TimHeader(seconds));
}

void TakeRow(std::int32_t row) {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channels.ChannelPresent(channel) == kTrue) {
      sounding.Rows(row, channel) = sounding.Readings(channel);
    }
  }
  sounding.Rows(row, 0) = sounding.CurrentDepth;
  sounding.RowQt(row) = QtOfRow(row);
}

std::string ClosingText() {
  std::string text;
  const std::int32_t newest = sounding.RowCount;
  for (std::int32_t row = newest - cone.DelayRows + 1; row <= newest; ++row) {
    text += FlushRow(row, newest);
  }
  if (sounding.CloseWithFinalBaseline == kTrue) text += FinalBaselineLine();
  return text;
}

}  // namespace

bool IsMarkedDone(const std::string& path) {
  if (!TheDisk().FileExists(path)) return false;
  const std::string text = ReadFile(path);
  return Trim(std::string_view(text).substr(0, text.find('\n'))) == "DONE";
}

void CreateSoundingFiles() {
  MakeTimFile();
  MakeBothFiles();
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
  if (sounding.CloseRowsMade == kTrue) return WriteHeld(kCptFile);
  const std::string text = ClosingText();
  sounding.CloseRowsMade = kTrue;
  return AppendOrHold(kCptFile, text);
}

void MarkSoundingDone() {
  ReplaceFile(PathOf(kTemporaryFile), "DONE\r\n");
  StartFile(kTemporaryFile, 0);
}

}  // namespace penlog
