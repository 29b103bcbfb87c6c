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
    "SOON AS THE DISK TAKES THEM.  FREE SOME ROOM OR PUT THE MEDIUM BACK, AND DO NOT END THE "
    "PROGRAM.  ";

const std::string kUnfitMessage =
    "THE SOUNDING FILE TAKES NO ROWS BEFORE THE NEXT RESUME HAS MENDED IT.  THE ROWS ARE KEPT IN "
    "THE TEMPORARY DATA.  ";

/// Bytes that no file has.
constexpr std::int64_t kUnfit = std::int64_t{1} << 60;

HeldText& HeldFor(SoundingFile file) {
  return sounding.Held[static_cast<std::size_t>(file)];
}

const std::string& PathOf(SoundingFile file) {
  return session.SoundingFiles[static_cast<std::size_t>(file)];
}

std::string ContentOnDisk(const std::string& path) {
  return TheDisk().FileExists(path) ? ReadFile(path) : std::string();
}

std::int64_t LengthOnDisk(const std::string& path) {
  return static_cast<std::int64_t>(ContentOnDisk(path).size());
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

/// Behind a failure: what landed is left out. Behind a failed sync, and where something else than
/// the text stands there, the file is replaced by its safe part and the text.
void WriteAgain(HeldText& held, const std::string& path) {
  const std::string content = ContentOnDisk(path);
  const auto safe = static_cast<std::size_t>(held.FileLength);
  if (content.size() < safe) throw RuntimeFault(path + ": shorter than what was written to it");
  const std::string landed = content.substr(safe);
  if (landed.size() > held.Text.size()) {
    throw RuntimeFault(path + ": longer than what was written to it");
  }
  // Until the replacing has returned: its last step may fail, too.
  held.SyncFailed = held.SyncFailed || !held.Text.starts_with(landed);
  if (held.SyncFailed) {
    ReplaceFile(path, content.substr(0, safe) + held.Text);
  } else {
    AppendToFile(path, std::string_view(held.Text).substr(landed.size()));
  }
}

std::string WhyUnfit(const std::string& path) {
  return path + ": only a resume can mend it";
}

void Write(HeldText& held, const std::string& path) {
  if (held.FileLength == kUnfit) throw RuntimeFault(WhyUnfit(path));
  RequireStillThere(held, path);
  if (held.FileLength < 0) held.FileLength = LengthOnDisk(path);
  if (held.Failed) {
    WriteAgain(held, path);
  } else {
    held.Failed = true;  // until the append has returned
    AppendToFile(path, held.Text);
  }
  RequireStillThere(held, path);  // what is appended to a file that was removed lands nowhere
}

/// Whether all of the text landed, so that it was the sync that failed. Unknown counts as yes.
bool HasLanded(const HeldText& held, const std::string& path) {
  if (held.FileLength < 0) return false;
  try {
    return LengthOnDisk(path) >= held.FileLength + static_cast<std::int64_t>(held.Text.size());
  } catch (const RuntimeFault&) {
    return true;
  }
}

void CountHeldRows() {
  std::int32_t most = 0;
  for (const SoundingFile file : {kTemporaryFile, kCptFile}) {
    most = std::max(most, RowsIn(HeldFor(file).Text));
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
    Write(held, path);
  } catch (const std::exception& fault) {  // of any kind: the next file must get its line too
    held.Failed = true;
    held.SyncFailed = held.SyncFailed || HasLanded(held, path);
    CountHeldRows();
    held_reasons.Why[static_cast<std::size_t>(file)] = fault.what();
    TellOnce((held.FileLength == kUnfit ? kUnfitMessage : kHeldMessage) + fault.what());
    return false;
  }
  held.FileLength += static_cast<std::int64_t>(held.Text.size());
  held.Text.clear();
  held.Failed = held.SyncFailed = false;
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

std::string WhyNotWhole(SoundingFile file) {
  const HeldText& held = HeldFor(file);
  const std::string& path = PathOf(file);
  if (held.Failed || !held.Text.empty()) {
    const std::string& why = held_reasons.Why[static_cast<std::size_t>(file)];
    return why.empty() ? path + " is not written yet" : why;
  }
  if (!IsBegun(file)) return {};
  if (!TheDisk().FileExists(path)) return path + " is no longer there";
  try {
    const bool is_shorter = LengthOnDisk(path) < held.FileLength;
    return is_shorter ? path + ": shorter than what was written to it" : "";
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
}

Remedy RemedyFor(SoundingFile file) {
  const HeldText& held = HeldFor(file);
  if (held.FileLength == kUnfit) return Remedy::Resume;
  const std::string& path = PathOf(file);
  if (!TheDisk().FileExists(path)) return Remedy::Medium;
  try {
    const std::int64_t length = LengthOnDisk(path);
    const auto most = held.FileLength + static_cast<std::int64_t>(held.Text.size());
    const bool is_changed = IsBegun(file) && (length < held.FileLength || length > most);
    return is_changed ? Remedy::Resume : Remedy::Disk;
  } catch (const RuntimeFault&) {
    return Remedy::Disk;
  }
}

std::int32_t LinesHeld(SoundingFile file) {
  return RowsIn(HeldFor(file).Text);
}

bool IsBegun(SoundingFile file) {
  return HeldFor(file).FileLength >= 0;
}

void StartFile(SoundingFile file, std::size_t length) {
  HeldFor(file) = {{}, static_cast<std::int64_t>(length), false, false};
  CountHeldRows();
}

void StartUnfitFile(SoundingFile file) {
  HeldFor(file) = {{}, kUnfit, true, false};
  held_reasons.Why[static_cast<std::size_t>(file)] = WhyUnfit(PathOf(file));
  CountHeldRows();
}

void ForgetFile(SoundingFile file) {
  HeldFor(file) = {};
  CountHeldRows();
}

}  // namespace penlog
