#include "sounding/resumed_files.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/header_columns.h"
#include "core/message.h"
#include "core/resume.h"
#include "core/resume_waits.h"
#include "core/resumed_copy.h"
#include "core/resumed_zeros.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "core/temporary_data.h"
#include "display/display_state.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/small_file.h"
#include "platform/texts.h"
#include "platform/yield.h"
#include "sounding/depth_count.h"
#include "sounding/found_cpt.h"
#include "sounding/held_rows.h"
#include "sounding/moved_files.h"
#include "sounding/recovered_rows.h"
#include "sounding/resume_depth.h"
#include "sounding/resume_rebuild.h"
#include "sounding/resumed_columns.h"
#include "sounding/resumed_header.h"
#include "sounding/resumed_marks.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"

namespace penlog {

namespace {

CptForm FormOfSettings() {
  return settings.DepthSignificantDigits > 2 ? CptForm::New : CptForm::Old;
}

std::string WordOf(CptForm form) {
  return form == CptForm::New ? "NEW" : "OLD";
}

// The recovery copy.

/// Tries until it works or the operator ends the program; the sounding stays resumable.
template <class Work>
void Insist(const std::string& what, Work work) {
  for (;;) {
    try {
      return work();
    } catch (const RuntimeFault& fault) {
      if (MsgBox(what +
                     "  FREE SOME ROOM OR PLUG IN THE MEDIUM AND PRESS OK TO TRY AGAIN, OR "
                     "CANCEL TO END THE PROGRAM.  " +
                     fault.what(),
                 BoxButtons::OkCancel) == BoxAnswer::Cancel) {
        EndProgram();
      }
    }
  }
}

/// The damaged file is copied beside before the sound part takes its place. Behind a refusal a
/// sound one is written anew as well: no later sync tells of what a failed one forgot.
void MendTemporary(const std::string& text, const StoredSounding& stored) {
  const std::string& path = PathOf(kTemporaryFile);
  bool is_kept = !stored.loses_lines;
  bool settles = text == stored.sound_text;
  Insist("THE TEMPORARY DATA CANNOT BE WRITTEN.", [&] {
    if (std::exchange(settles, false)) return SettleFile(path);
    if (!is_kept) CopyFile(path, FreeNameBeside(path));
    is_kept = true;
    ReplaceFile(path, stored.sound_text);
  });
  StartFile(kTemporaryFile, stored.sound_text);
  resumed_copy.Text = stored.sound_text;
}

/// Behind the first mending; what it changes is copied beside where `keeps`.
void WriteCopyAnew(const StoredSounding& stored, bool keeps) {
  const std::string& path = PathOf(kTemporaryFile);
  bool is_kept = !keeps;
  Insist("THE TEMPORARY DATA CANNOT BE WRITTEN.", [&] {
    if (!is_kept) CopyFile(path, FreeNameBeside(path));
    is_kept = true;
    ReplaceFile(path, stored.sound_text);
  });
  StartFile(kTemporaryFile, stored.sound_text);
  resumed_copy.Text = stored.sound_text;
}

// The `.cpt` file.

void TellOfHead(const FoundCpt& found) {
  if (found.form != FormOfSettings()) {
    Tell("THE SOUNDING FILE HAS ROWS OF THE " + WordOf(found.form) +
         " FORM, THE SETTINGS ASK FOR "
         "THE " +
         WordOf(FormOfSettings()) + " ONE.  THE FILE KEEPS ITS FORM.");
  }
  const std::string tip(Trim(ColumnTitle(1)));
  if (channels.ChannelPresent(1) == kTrue && found.tip != tip) {
    Tell("THE SOUNDING WAS BEGUN WITH THE TIP \"" + found.tip + "\", THE SETTINGS SAY \"" + tip +
         "\".");
  }
}

/// The file does not say whether it holds elevations: the sign of its first row does.
void KeepSignOfRows(const FoundCpt& found) {
  const bool is_elevation = settings.DepthFormat == 1;
  const bool elevations = HoldsElevations(found).value_or(is_elevation);
  if (elevations == is_elevation) return;
  ReplaceSetting(settings.DepthFormat, static_cast<std::int16_t>(elevations ? 1 : 0));
  if (ResumeWaits()) {
    sounding.CurrentDepth = elevations ? session.StartDepth : 0.0f;
  }
  Tell(elevations ? "THE SOUNDING WAS BEGUN IN ELEVATIONS, THE SETTINGS SAY DEPTHS.  IT GOES ON IN "
                    "ELEVATIONS."
                  : "THE SOUNDING WAS BEGUN IN DEPTHS, THE SETTINGS SAY ELEVATIONS.  IT GOES ON IN "
                    "DEPTHS.");
}

/// Damaged lines of the copy's header would be told at each resume.
void MendHeaderLines(const FoundCpt& found, bool is_written, StoredSounding& stored) {
  if (!TakeLostHeaderLines(found, is_written, stored)) return;
  WriteCopyAnew(stored, true);
  Tell(
      "DAMAGED LINES OF THE TEMPORARY DATA WERE WRITTEN ANEW, FROM THE SOUNDING FILE WHERE IT "
      "HOLDS THEM, ELSE FROM THE CONE'S CALIBRATION.");
}

std::string DepthText(float depth) {
  return MakeStartTexts(depth, settings.DepthUnits, settings.DepthFormat).depth;
}

const std::string kCompare = "  COMPARE THE DEPTH WITH THE RODS BEFORE YOU PUSH.";

std::string Mended(const CptMending& mending, const FoundCpt& found, const std::string& why_not) {
  std::string text = "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.";
  if (!why_not.empty()) text += "  IT COULD NOT BE READ: " + why_not + ".";
  if (found.is_of_before) text += "  IT STANDS AT " + PathOf(kCptFile) + " NOW.";
  if (!found.has_head) text += "  ITS HEAD WAS WRITTEN ANEW.";
  if (found.is_torn) text += "  AN UNFINISHED LINE WAS TAKEN OUT.";
  if (mending.added > 0) text += "  ROWS ADDED: " + PlainNumber(mending.added) + ".";
  if (mending.changed > 0) text += "  ROWS CHANGED: " + PlainNumber(mending.changed) + ".";
  if (mending.taken_out > 0) {
    const LinesBehind lines = JudgeLinesBehind(found);
    text += (lines.is_end ? "  LINES OF AN UNFINISHED END TAKEN OUT: "
                          : "  LINES THAT THE TEMPORARY DATA DOES NOT HOLD TAKEN OUT: ") +
            PlainNumber(mending.taken_out) + ".";
    if (lines.depth) text += "  THE FILE GOES DOWN TO " + DepthText(*lines.depth) + ".";
    if (!lines.is_end) text += kCompare;
  }
  return text;
}

struct CptOnDisk {
  bool exists = false;
  std::string text;  ///< empty for a file that can't be read
  bool is_read = false;
  std::string why_not;  ///< it can't be read
};

CptOnDisk LookAtCpt() {
  CptOnDisk cpt;
  try {
    cpt.exists = TheDisk().FileExists(PathOf(kCptFile));
    if (cpt.exists) cpt.text = ReadSmallFile(PathOf(kCptFile));
    cpt.is_read = cpt.exists;
  } catch (const RuntimeFault& fault) {
    cpt.why_not = fault.what();
  }
  return cpt;
}

/// What the operator does about a folder that refuses.
enum class WayOn { Again, Hold, Back };

/// Another folder that he chooses becomes the place of the sounding's files.
WayOn AskFolder() {
  const auto chosen = AskFile("SOUNDING FILE", FolderOf(PathOf(kCptFile)), "*.cpt", true);
  if (chosen) {
    TakeSoundingPaths(EndsWithNoCase(*chosen, ".cpt") ? *chosen : *chosen + ".cpt");
    return WayOn::Again;
  }
  return MsgBox(
             "NO OTHER FOLDER WAS CHOSEN.  PRESS OK TO TRY AGAIN, OR CANCEL TO GO BACK TO THE "
             "START SCREEN.  THE LAST SOUNDING CAN BE RESUMED LATER.",
             BoxButtons::OkCancel) == BoxAnswer::Cancel
             ? WayOn::Back
             : WayOn::Again;
}

WayOn AskWayOn(const std::string& why) {
  if (MsgBox("THE SOUNDING FILE CANNOT BE WRITTEN.  " + why +
                 "  DO YOU WANT TO CHOOSE ANOTHER "
                 "FOLDER?  IF ITS MEDIUM IS NOT PLUGGED IN, PLUG IT IN, PRESS YES AND CANCEL THE "
                 "CHOICE: IT CAN BE TRIED AGAIN.  IF 'NO', ITS ROWS ARE KEPT IN THE TEMPORARY DATA "
                 "ALONE.",
             BoxButtons::YesNo) == BoxAnswer::No) {
    return WayOn::Hold;
  }
  return AskFolder();
}

/// A medium that was pulled out may have left its folder behind.
enum class WayWithout { WriteAnew, LookAgain, Back };

WayWithout AskWithoutFile() {
  if (MsgBox("THE SOUNDING FILE " + PathOf(kCptFile) +
                 " IS MISSING.  IF IT STANDS ON A MEDIUM THAT IS NOT PLUGGED IN, PLUG IT IN AND "
                 "PRESS NO.  DO YOU WANT TO WRITE IT ANEW FROM THE TEMPORARY DATA?",
             BoxButtons::YesNo) == BoxAnswer::Yes) {
    return WayWithout::WriteAnew;
  }
  if (MsgBox("PRESS OK TO LOOK FOR THE SOUNDING FILE AGAIN, OR CANCEL TO CHOOSE ANOTHER FOLDER.",
             BoxButtons::OkCancel) == BoxAnswer::Ok) {
    return WayWithout::LookAgain;
  }
  return AskFolder() == WayOn::Back ? WayWithout::Back : WayWithout::LookAgain;
}

/// The folder is there without the file, which holds rows.
bool IsMissingAlone(const CptOnDisk& cpt, const StoredSounding& stored) {
  const bool holds_rows = sounding.RowCount > 0 || stored.loses_lines;
  return !cpt.exists && holds_rows && TheDisk().FolderExists(FolderOf(PathOf(kCptFile)));
}

/// Where the recovery copy says that the sounding's files stand.
struct Home {
  SoundingPaths paths = session.SoundingFiles;
  bool has_dissipation_file = session.HasDissipationFile == kTrue;
  bool has_seismic_file = session.HasSeismicFile == kTrue;
  bool IsHere() const { return paths[kCptFile] == PathOf(kCptFile); }
};

/// The sounding file stands in its new place: the others follow, and then the recovery copy names
/// it. Cut off on the way, the sounding is still at home.
void MoveFrom(const Home& home, bool is_its_place, StoredSounding& stored) {
  const SideFiles anothers = MoveSideFiles(home.paths, session.SoundingFiles, is_its_place,
                                           home.has_dissipation_file, home.has_seismic_file);
  stored.main_file = PathOf(kCptFile);
  stored.sound_text = stored.main_file + stored.sound_text.substr(stored.sound_text.find("\r\n"));
  TakeSoundingPaths(stored.main_file);
  if (anothers[kDissipationFile]) session.HasDissipationFile = 0;
  if (anothers[kSeismicFile]) session.HasSeismicFile = 0;
  WriteCopyAnew(stored, false);
  if (anothers[kTimFile]) GiveUpFile(kTimFile);
}

/// The last file that was kept beside, and where.
struct KeptCpt {
  std::string path;
  std::string beside;
};

/// A file that loses lines or is no sounding's is kept beside, once under each of its names.
void KeepCpt(const CptOnDisk& cpt, const FoundCpt& found, const CptMending& mending,
             KeptCpt& kept) {
  const std::string& path = PathOf(kCptFile);
  const bool loses = found.is_of_before
                         ? !mending.text.starts_with(cpt.text)
                         : !found.has_head || mending.changed > 0 || mending.taken_out > 0;
  if (!cpt.exists || !loses || kept.path == path) return;
  const std::string beside = FreeNameBeside(path);
  if (cpt.is_read) {
    CopyFile(path, beside);
  } else {
    TheDisk().Rename(path, beside);
  }
  kept = {path, beside};
}

std::string WhereKept(const KeptCpt& kept) {
  if (kept.path != PathOf(kCptFile)) return {};
  return "  THE FILE OF BEFORE IS KEPT AS " + kept.beside + ".";
}

/// Lines that only go on behind what stands there are held like refused rows. A file that would
/// have to be changed takes nothing until the next resume mends it. `is_unsure`: a sync of what
/// stands there failed.
void HoldMended(const CptOnDisk& cpt, const std::string& mended, bool is_unsure) {
  const bool goes_on = cpt.is_read == cpt.exists && mended.starts_with(cpt.text);
  if (!goes_on) return StartUnfitFile(kCptFile);
  StartFile(kCptFile, cpt.text);
  sounding.Held[kCptFile].Failed = sounding.Held[kCptFile].SyncFailed = is_unsure;
  AppendOrHold(kCptFile, mended.substr(cpt.text.size()));
}

/// Rows that the recovery copy lost are put back into it before the first file is changed by it.
void TakeRowsOfFile(const FoundCpt& found, StoredSounding& stored) {
  const auto taken = RecoverRows(found, stored);
  if (!taken) return;
  WriteCopyAnew(stored, false);
  std::string text = "ROWS TAKEN FROM THE SOUNDING'S FILE: " + PlainNumber(taken->count) + ", AT " +
                     DepthText(taken->first) + " TO " + DepthText(taken->last) + ".";
  if (taken->incomplete > 0) {
    text += "  PART OF THEIR CHANNELS STANDS NOWHERE AND HOLDS -32768: " +
            PlainNumber(taken->incomplete) + ".";
  }
  if (taken->behind_copy > 0) {
    text += "  THE SOUNDING WENT ON BEHIND THE TEMPORARY DATA, TO ABOUT " +
            DepthText(sounding.Rows(sounding.RowCount, 0)) + "." + kCompare;
  }
  Tell(text);
}

/// What the file's head and rows say of the session, for a file that stands.
void TakeFoundCpt(const FoundCpt& found, StoredSounding& stored) {
  sounding.RowForm = found.has_head ? found.form : FormOfSettings();
  KeepSignOfRows(found);
  MendHeaderLines(found, false, stored);
  FormDelays(found);
  TakeRowsOfFile(found, stored);
}

/// Head and rows that were read where the sounding stood count, wherever it goes on.
struct CptOfHome {
  const Home& home;
  FoundCpt last;

  FoundCpt Choose(FoundCpt here) {
    if (home.IsHere() && here.has_head) last = here;
    if (!last.has_head || (home.IsHere() && here.has_head)) return here;
    FoundCpt found = last;
    found.is_of_before = true;
    return found;
  }
};

/// The `.cpt` file on its way to being whole, where it stood or where the operator wants it.
class CptAtWork {
 public:
  explicit CptAtWork(StoredSounding& stored) : stored_(stored) {}

  /// Looks once more behind each question: its medium may be there by then. False where the
  /// operator goes back.
  bool LookForFile() {
    for (;;) {
      cpt_ = LookAtCpt();
      if (!home_.IsHere() || has_asked_ || !IsMissingAlone(cpt_, stored_)) return true;
      const WayWithout chosen = AskWithoutFile();
      if (chosen == WayWithout::Back) return false;
      has_asked_ = chosen == WayWithout::WriteAnew;
    }
  }

  void Read() {
    const FoundCpt here = ReadCpt(cpt_.text, stored_);
    found_ = cpt_of_home_.Choose(here);
    TakeFoundCpt(found_, stored_);
    mending_ = MendCpt(found_);
    if (!WasRefused()) is_its_place_ = here.has_head;
  }

  /// Why it can't be written; none where it is whole and in its place.
  std::optional<std::string> Write() {
    try {
      WriteFile();
      if (!home_.IsHere()) MoveFrom(home_, is_its_place_, stored_);
    } catch (const RuntimeFault& fault) {
      refused_ = PathOf(kCptFile);
      return fault.what();
    }
    MendHeaderLines(found_, true, stored_);
    if (!told_.empty()) Tell(told_ + WhereKept(kept_));
    return std::nullopt;
  }

  /// At home, without another attempt.
  void Hold() { HoldMended(cpt_, mending_.text, WasRefused() && cpt_.text == mending_.text); }

  void GoHome() const { TakeSoundingPaths(home_.paths[kCptFile]); }

  void TellOfFound() const {
    if (found_.has_head) TellOfHead(found_);
    TellUnknownDelays(found_);
  }

 private:
  bool WasRefused() const { return refused_ == PathOf(kCptFile); }

  /// Makes the file whole, or sees that what stands there is on its medium.
  void WriteFile() {
    const bool is_whole = cpt_.is_read && cpt_.text == mending_.text;
    if (is_whole && !WasRefused()) {
      SettleFile(PathOf(kCptFile));
    } else {
      KeepCpt(cpt_, found_, mending_, kept_);
      if (!is_whole) told_ = Mended(mending_, found_, cpt_.why_not);
      ReplaceFile(PathOf(kCptFile), mending_.text);
    }
    StartFile(kCptFile, mending_.text);
  }

  StoredSounding& stored_;
  const Home home_;
  CptOfHome cpt_of_home_{home_, {}};
  CptOnDisk cpt_;
  FoundCpt found_;
  CptMending mending_;
  KeptCpt kept_;
  std::string told_;
  std::string refused_;  ///< the file that took nothing last
  bool is_its_place_ = false;
  bool has_asked_ = false;
};

/// Tries until the file is whole, or held back as the operator wants it; false when he goes back.
bool MendCptFile(StoredSounding& stored) {
  CptAtWork work(stored);
  for (bool holds = false;;) {
    if (!work.LookForFile()) return false;
    work.Read();
    if (holds) {
      work.Hold();
      break;
    }
    const auto why_not = work.Write();
    if (!why_not) break;
    const WayOn way = AskWayOn(*why_not);
    if (way == WayOn::Back) return false;
    holds = way == WayOn::Hold;
    if (holds) work.GoHome();
  }
  work.TellOfFound();
  return true;
}

/// What an attempt that was given up must not leave changed: another sounding may be begun.
struct SessionBefore {
  ChannelState tables = channels;
  DisplayState charts = display;
  ReplacedSettingsState replaced = replaced_settings;
  std::int16_t depth_format = settings.DepthFormat;
  std::int16_t delay_rows = cone.DelayRows;

  void Restore() const {
    channels = tables;
    display = charts;
    replaced_settings = replaced;
    settings.DepthFormat = depth_format;
    cone.DelayRows = delay_rows;
    sounding.KeptColumn = {};
    sounding.RowForm = CptForm::OfSettings;
    for (const SoundingFile file : {kTemporaryFile, kCptFile, kTimFile}) ForgetFile(file);
  }
};

bool TakeUp() {
  const std::string text = ReadSmallFile(PathOf(kTemporaryFile));
  if (text != resumed_copy.Text) {
    throw RuntimeFault("TemporaryData.txt HAS CHANGED SINCE IT WAS READ.");
  }
  StoredSounding stored = ReadTemporaryData(text, HasHeaderColumnOnly, kMostRows);
  KeepConeOfSession(stored);
  resume_depth.RowsAtGap = stored.gaps.empty() ? -1 : stored.gaps.back();
  MarkComputedChannels();
  TakeColumns(stored);
  TakeGraphs(stored);
  MendTemporary(text, stored);
  if (!MendCptFile(stored)) return false;
  TellZerosOfRecord();
  MendTimFile();
  return true;
}

}  // namespace

bool TakeUpSounding() {
  const SessionBefore before;
  try {
    if (TakeUp()) return true;
  } catch (const std::exception&) {
    before.Restore();
    throw;
  }
  before.Restore();
  return false;
}

}  // namespace penlog
