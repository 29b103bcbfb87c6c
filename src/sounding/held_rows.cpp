#include "sounding/held_rows.h"

#include <algorithm>
#include <exception>

#include "conelink/cone_state.h"
#include "core/session.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/work_time.h"
#include "sounding/sounding_state.h"
#include "sounding/tell_once.h"

namespace penlog {

const std::string& PathOf(SoundingFile file) {
  return session.SoundingFiles[static_cast<std::size_t>(file)];
}

namespace {

const std::string kHeldMessage =
    "THE SOUNDING COULD NOT BE WRITTEN TO THE DISK.  THE ROWS ARE KEPT IN MEMORY AND WRITTEN AS "
    "SOON AS THE DISK TAKES THEM.  FREE SOME ROOM OR PUT THE MEDIUM BACK, AND DO NOT END THE "
    "PROGRAM.  ";

const std::string kUnfitMessage =
    "THE SOUNDING FILE TAKES NO ROWS BEFORE THE NEXT RESUME HAS MENDED IT.  THE ROWS ARE KEPT IN "
    "THE TEMPORARY DATA.  ";

const std::string kLaggingMessage =
    "THE SOUNDING COULD NOT BE WRITTEN TO THE DISK OF ITS FILE.  ITS ROWS STAND IN THE TEMPORARY "
    "DATA, AND THE FILE IS COMPLETED AS SOON AS ITS DISK TAKES THEM.  FREE SOME ROOM THERE OR PUT "
    "THE MEDIUM BACK.  ";

constexpr Micros kSlow = 500 * kMillisecond;  ///< for one append and its sync

const std::string kChangedMessage =
    "THE SOUNDING FILE HAS CHANGED.  IT TAKES NO ROWS BEFORE IT IS AS IT WAS, OR A RESUME HAS "
    "MENDED IT.  THE ROWS ARE KEPT IN THE TEMPORARY DATA.  ";

/// Of the recovery copy. Neither room nor, where it stands there, its medium helps.
const std::string kCopyGoneMessage =
    "THE TEMPORARY DATA IS GONE.  ITS ROWS ARE KEPT IN MEMORY AND WRITTEN WHEN IT IS BACK: PUT ITS "
    "MEDIUM BACK IF THAT WAS PULLED OUT.  ";
const std::string kCopyChangedMessage =
    "THE TEMPORARY DATA HAS CHANGED.  IT TAKES NO ROWS BEFORE IT IS AS IT WAS: THEY ARE KEPT IN "
    "MEMORY.  ";

const std::string kShorter = ": shorter than what was written to it";
const std::string kLonger = ": longer than what was written to it";

/// Bytes that no file has.
constexpr std::int64_t kUnfit = std::int64_t{1} << 60;

HeldText& HeldFor(SoundingFile file) {
  return sounding.Held[static_cast<std::size_t>(file)];
}

std::string ContentOnDisk(const std::string& path) {
  return TheDisk().FileExists(path) ? ReadFile(path) : std::string();
}

std::int64_t LengthOnDisk(const std::string& path) {
  return std::max<std::int64_t>(TheDisk().SizeOf(path), 0);
}

constexpr std::uint64_t kPrintOfNothing = 14695981039346656037U;

/// FNV-1a, 64 bits, of all bytes in order: those of before and then these.
std::uint64_t PrintBehind(std::uint64_t print, std::string_view bytes) {
  for (const char byte : bytes) {
    print = (print ^ static_cast<unsigned char>(byte)) * 1099511628211U;
  }
  return print;
}

void TakeAsWritten(HeldText& held, std::string_view bytes) {
  if (held.FileLength <= 0) held.Print = kPrintOfNothing;
  held.Print = PrintBehind(held.Print, bytes);
  held.FileLength =
      std::max<std::int64_t>(held.FileLength, 0) + static_cast<std::int64_t>(bytes.size());
}

/// A hole is what a medium may show for bytes that it was given and has lost.
bool IsOfText(std::string_view landed, std::string_view text) {
  return std::equal(landed.begin(), landed.end(), text.begin(),
                    [](char stands, char given) { return stands == given || stands == '\0'; });
}

/// What stands there is something else than what was written and, in part, what is held: it must
/// neither be gone on with nor replaced. Empty if it is not.
std::string WhyChanged(const HeldText& held, std::string_view content) {
  const auto safe = static_cast<std::size_t>(held.FileLength);
  if (content.size() < safe) return kShorter;
  const std::string_view landed = content.substr(safe);
  if (landed.size() > held.Text.size()) return kLonger;
  const bool is_same =
      safe == 0 || PrintBehind(kPrintOfNothing, content.substr(0, safe)) == held.Print;
  return is_same && IsOfText(landed, held.Text) ? "" : ": not what was written to it";
}

/// Raised instead of a write that would add to something else, or destroy it.
struct ChangedFault : RuntimeFault {
  using RuntimeFault::RuntimeFault;
};
struct GoneFault : RuntimeFault {
  using RuntimeFault::RuntimeFault;
};

/// A file that is gone has taken its place along (a medium pulled out): appending would begin a
/// new one without head and rows somewhere else. It may come back.
void RequireStillThere(const HeldText& held, const std::string& path) {
  if (held.FileLength > 0 && !TheDisk().FileExists(path)) {
    throw GoneFault(path + " is no longer there");
  }
}

/// The cheap look before each append: behind a failure `WriteAgain` looks at the content.
void RequireSameLength(const HeldText& held, const std::string& path) {
  const std::int64_t size = LengthOnDisk(path);
  if (size == held.FileLength) return;
  throw ChangedFault(path + (size < held.FileLength ? kShorter : kLonger));
}

std::int32_t RowsIn(const std::string& text) {
  return static_cast<std::int32_t>(std::count(text.begin(), text.end(), '\n'));
}

/// Behind a failure: what landed is left out. Behind a failed sync, and where a hole stands there,
/// the file is replaced by its safe part and the text.
void WriteAgain(HeldText& held, const std::string& path) {
  const std::string content = ContentOnDisk(path);
  if (const std::string why = WhyChanged(held, content); !why.empty()) {
    throw ChangedFault(path + why);
  }
  const auto safe = static_cast<std::size_t>(held.FileLength);
  const std::string landed = content.substr(safe);
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

/// The one thread waits for a row's sync. Told once in a sounding.
void TellIfSlow(const std::string& path, Micros took) {
  if (took <= kSlow || !sounding.Told.insert("slow medium").second) return;
  const double seconds = static_cast<double>(took) / static_cast<double>(kSecond);
  PostBox("THE MEDIUM OF " + path + " IS SLOW: " + Format(seconds, "0.0") +
          " s FOR A ROW.  DEPTH IS COUNTED ON, BUT QUITS AND STOP ARE SERVED ONLY BEHIND IT.");
}

void Append(HeldText& held, const std::string& path) {
  RequireSameLength(held, path);
  held.Failed = true;  // until the append has returned
  const Micros begun = WorkTime();
  AppendToFile(path, held.Text);
  TellIfSlow(path, WorkTime() - begun);
}

void Write(HeldText& held, const std::string& path) {
  if (held.FileLength == kUnfit) throw RuntimeFault(WhyUnfit(path));
  RequireStillThere(held, path);
  if (held.FileLength < 0) TakeAsWritten(held, ContentOnDisk(path));
  if (held.Failed) {
    WriteAgain(held, path);
  } else {
    Append(held, path);
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

std::set<std::string>& ToldOf(SoundingFile file) {
  return held_reasons.Told[static_cast<std::size_t>(file)];
}

/// Nothing is left for the file: its next refusal is news again, whatever the others do.
void ForgetTold(SoundingFile file) {
  for (const std::string& told : ToldOf(file)) sounding.Told.erase(told);
  ToldOf(file).clear();
}

/// Whether the recovery copy holds all that the `.cpt` file lacks.
bool LagsAlone(SoundingFile file) {
  const HeldText& copy = HeldFor(kTemporaryFile);
  return file == kCptFile && !copy.Failed && copy.Text.empty();
}

void NoteFailed(SoundingFile file, const std::string& message, const std::exception& fault) {
  HeldText& held = HeldFor(file);
  held.Failed = true;
  held.SyncFailed = held.SyncFailed || HasLanded(held, PathOf(file));
  CountHeldRows();
  held_reasons.Why[static_cast<std::size_t>(file)] = fault.what();
  const std::string text = (held.FileLength == kUnfit ? kUnfitMessage : message) + fault.what();
  ToldOf(file).insert(text);
  TellOnce(text);
}

/// What is open without the recovery copy. A stop can't be taken back: it is named where it works.
std::string WithoutCopy() {
  const bool can_be_closed = cone.DelayRows <= sounding.RowCount && WhyNotWhole(kCptFile).empty();
  return std::string("DO NOT END THE PROGRAM.  UNTIL THEN THE SOUNDING CANNOT BE SUSPENDED") +
         (can_be_closed ? ", BUT STOPPED AND CLOSED: THAT NEEDS THE SOUNDING FILE ALONE.  "
                        : ".  ");
}

std::string MessageOfChanged(SoundingFile file) {
  if (file == kTemporaryFile) return kCopyChangedMessage + WithoutCopy();
  return file == kCptFile ? kChangedMessage : kHeldMessage;
}

std::string MessageOfRefused(SoundingFile file) {
  return LagsAlone(file) ? kLaggingMessage : kHeldMessage;
}

}  // namespace

bool WriteHeld(SoundingFile file) {
  HeldText& held = HeldFor(file);
  if (held.Text.empty() && !held.Failed) return true;
  const bool had_failed = held.Failed;
  try {
    Write(held, PathOf(file));
  } catch (const ChangedFault& fault) {
    NoteFailed(file, MessageOfChanged(file), fault);
    return false;
  } catch (const GoneFault& fault) {
    const bool is_copy = file == kTemporaryFile;
    NoteFailed(file, is_copy ? kCopyGoneMessage + WithoutCopy() : MessageOfRefused(file), fault);
    return false;
  } catch (const std::exception& fault) {  // of any kind: the next file must get its line too
    NoteFailed(file, MessageOfRefused(file), fault);
    return false;
  }
  TakeAsWritten(held, held.Text);
  held.Text.clear();
  held.Failed = held.SyncFailed = false;
  if (sounding.RowsHeldBack > 0) CountHeldRows();
  if (had_failed) ForgetTold(file);
  return true;
}

bool AppendOrHold(SoundingFile file, std::string_view text) {
  HeldText& held = HeldFor(file);
  if (held.GivenUp) return true;
  held.Text += text;
  return WriteHeld(file);
}

bool WriteAllHeld() {
  for (const SoundingFile file : {kTemporaryFile, kCptFile, kTimFile}) WriteHeld(file);
  return NothingFailed();
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
    const std::string why = WhyChanged(held, ReadFile(path));
    return why.empty() ? "" : path + why;
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
    const bool is_changed = IsBegun(file) && !WhyChanged(held, ReadFile(path)).empty();
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

void StartFile(SoundingFile file, std::string_view content) {
  HeldFor(file) = {};
  TakeAsWritten(HeldFor(file), content);
  CountHeldRows();
}

void StartUnfitFile(SoundingFile file) {
  ForgetFile(file);
  HeldFor(file).FileLength = kUnfit;
  HeldFor(file).Failed = true;
  held_reasons.Why[static_cast<std::size_t>(file)] = WhyUnfit(PathOf(file));
}

void ForgetFile(SoundingFile file) {
  HeldFor(file) = {};
  CountHeldRows();
}

void GiveUpFile(SoundingFile file) {
  ForgetFile(file);
  HeldFor(file).GivenUp = true;
}

}  // namespace penlog
