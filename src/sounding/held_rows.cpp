#include "sounding/held_rows.h"

#include <algorithm>
#include <exception>

#include "core/session.h"
#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "sounding/sounding_state.h"
#include "sounding/tell_once.h"

namespace penlog {

namespace {

const std::string kHeldMessage =
    "THE SOUNDING COULD NOT BE WRITTEN TO THE DISK.  THE ROWS ARE KEPT IN MEMORY AND WRITTEN AS "
    "SOON AS THE DISK TAKES THEM.  FREE SOME ROOM AND DO NOT END THE PROGRAM.  ";

HeldText& HeldFor(SoundingFile file) {
  return sounding.Held[static_cast<std::size_t>(file)];
}

const std::string& PathOf(SoundingFile file) {
  return session.SoundingFiles[static_cast<std::size_t>(file)];
}

std::int64_t LengthOnDisk(const std::string& path) {
  return TheDisk().FileExists(path) ? static_cast<std::int64_t>(ReadFile(path).size()) : 0;
}

/// A file that is gone has taken its place along (a medium pulled out): appending would begin a
/// new one without head and rows somewhere else. It may come back.
void RequireStillThere(const HeldText& held, const std::string& path) {
  if (held.FileLength > 0 && !TheDisk().FileExists(path)) {
    throw RuntimeFault(path + " is no longer there");
  }
}

std::int32_t RowsIn(const std::string& text) {
  return static_cast<std::int32_t>(std::count(text.begin(), text.end(), '\n'));
}

/// Takes off the front of the held text what the failed attempt left in the file.
void DropLanded(HeldText& held, const std::string& path) {
  const std::int64_t length = LengthOnDisk(path);
  if (length < held.FileLength) throw RuntimeFault(path + ": shorter than what was written to it");
  if (held.FileLength >= 0) {
    const auto size = static_cast<std::int64_t>(held.Text.size());
    const std::int64_t landed = std::min(length - held.FileLength, size);
    held.UnsyncedRows += RowsIn(held.Text.substr(0, static_cast<std::size_t>(landed)));
    held.Text.erase(0, static_cast<std::size_t>(landed));
  }
  held.FileLength = length;
  held.Failed = false;
}

void CountHeldRows() {
  std::int32_t most = 0;
  for (const SoundingFile file : {kTemporaryFile, kCptFile}) {
    const HeldText& held = HeldFor(file);
    most = std::max(most, held.UnsyncedRows + RowsIn(held.Text));
  }
  sounding.RowsHeldBack = most;
}

bool NothingFailed() {
  return std::none_of(sounding.Held.begin(), sounding.Held.end(),
                      [](const HeldText& held) { return held.Failed || !held.Text.empty(); });
}

}  // namespace

bool WriteHeld(SoundingFile file) {
  HeldText& held = HeldFor(file);
  if (held.Text.empty() && !held.Failed) return true;
  const std::string& path = PathOf(file);
  try {
    RequireStillThere(held, path);
    if (held.Failed || held.FileLength < 0) DropLanded(held, path);
    held.Failed = true;  // until the append has returned
    AppendToFile(path, held.Text);
  } catch (const std::exception& fault) {  // of any kind: the next file must get its line too
    held.Failed = true;
    CountHeldRows();
    TellOnce(kHeldMessage + fault.what());
    return false;
  }
  held.FileLength += static_cast<std::int64_t>(held.Text.size());
  held.Text.clear();
  held.Failed = false;
  held.UnsyncedRows = 0;
  if (sounding.RowsHeldBack > 0) CountHeldRows();
  return true;
}

bool AppendOrHold(SoundingFile file, std::string_view text) {
  HeldFor(file).Text += text;
  return WriteHeld(file);
}

bool WriteAllHeld() {
  for (const SoundingFile file : {kTemporaryFile, kCptFile, kTimFile}) WriteHeld(file);
  if (!NothingFailed()) return false;
  std::erase_if(sounding.Told,
                [](const std::string& told) { return told.starts_with(kHeldMessage); });
  return true;
}

void RetryHeld() {
  if (NothingFailed() || sounding.HeldRetrySecond == sounding.SecondsCounter) return;
  sounding.HeldRetrySecond = sounding.SecondsCounter;
  WriteAllHeld();
}

void RequireWhole(SoundingFile file) {
  const std::string& path = PathOf(file);
  if (!TheDisk().FileExists(path)) throw RuntimeFault(path + " is no longer there");
  if (LengthOnDisk(path) < HeldFor(file).FileLength) {
    throw RuntimeFault(path + ": shorter than what was written to it");
  }
}

bool IsBegun(SoundingFile file) {
  return HeldFor(file).FileLength >= 0;
}

void StartFile(SoundingFile file, std::size_t length) {
  HeldFor(file) = {{}, static_cast<std::int64_t>(length), false, 0};
  CountHeldRows();
}

void ForgetFile(SoundingFile file) {
  HeldFor(file) = {};
  CountHeldRows();
}

}  // namespace penlog
