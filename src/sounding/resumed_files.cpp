#include "sounding/resumed_files.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/message.h"
#include "core/resume.h"
#include "core/resumed_zeros.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "core/temporary_data.h"
#include "display/display_state.h"
#include "display/graph_slots.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "platform/yield.h"
#include "screens/last_sounding_parameters.h"
#include "sounding/depth_count.h"
#include "sounding/found_cpt.h"
#include "sounding/held_rows.h"
#include "sounding/moved_files.h"
#include "sounding/reached.h"
#include "sounding/recovered_rows.h"
#include "sounding/resume_depth.h"
#include "sounding/resume_rebuild.h"
#include "sounding/resumed_header.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"

namespace penlog {

namespace {

const std::string& PathOf(SoundingFile file) {
  return session.SoundingFiles[static_cast<std::size_t>(file)];
}

CptForm FormOfSettings() {
  return settings.DepthSignificantDigits > 2 ? CptForm::New : CptForm::Old;
}

std::string WordOf(CptForm form) {
  return form == CptForm::New ? "NEW" : "OLD";
}

// What the sounding records.

bool IsRecorded(const StoredSounding& stored, int channel) {
  return std::binary_search(stored.columns.begin(), stored.columns.end(), channel);
}

bool HasField(const StoredSounding& stored, int channel) {
  return std::find(stored.row_channels.begin(), stored.row_channels.end(), channel) !=
         stored.row_channels.end();
}

/// A channel that is no column is not recorded any more, one that is stays; one without a field in
/// the rows keeps its header column alone.
std::int16_t ModeOf(const StoredSounding& stored, int channel) {
  if (!IsRecorded(stored, channel)) return 0;
  const std::int16_t mode = channels.RecordMode(channel);
  if (channel == 21 || channel == 22) return mode > 0 ? mode : std::int16_t{1};
  if (!HasField(stored, channel)) return 3;
  return mode == 2 ? mode : std::int16_t{1};
}

std::string NameOf(int channel) {
  const std::string& label = channels.ChannelLabel(1, channel);
  return PlainNumber(channel) + (label.empty() ? "" : " (" + label + ")");
}

void TakeColumns(const StoredSounding& stored) {
  std::string lacking;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == 19 || channel == 20) continue;
    channels.RecordMode(channel) = ModeOf(stored, channel);
    const bool lacks = IsRecorded(stored, channel) && channels.ChannelPresent(channel) != kTrue;
    sounding.KeptColumn(channel) = lacks ? kTrue : kFalse;
    if (lacks) lacking += (lacking.empty() ? "" : ", ") + NameOf(channel);
  }
  if (lacking.empty()) return;
  Tell(
      "RECORDED CHANNELS ARE MISSING NOW.  THEIR COLUMNS STAY IN THE FILE, AND NEW ROWS HOLD "
      "-32768 THERE: " +
      lacking);
}

void TakeGraphs(const StoredSounding& stored) {
  display.GraphChannel = {};
  display.GraphChannel[1] = 1;
  std::copy(stored.graphs.begin(), stored.graphs.end(), display.GraphChannel.begin() + 2);
  KeepGraphSlots([](int channel) { return channels.ChannelPresent(channel) == kTrue; });
  display.GraphCount = static_cast<std::int16_t>(1 + FilledSlots());
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
  if (session.ResumeDepthStatus != 0) {
    sounding.CurrentDepth = elevations ? session.StartDepth : 0.0f;
  }
  Tell(elevations ? "THE SOUNDING WAS BEGUN IN ELEVATIONS, THE SETTINGS SAY DEPTHS.  IT GOES ON IN "
                    "ELEVATIONS."
                  : "THE SOUNDING WAS BEGUN IN DEPTHS, THE SETTINGS SAY ELEVATIONS.  IT GOES ON IN "
                    "DEPTHS.");
}

/// Damaged lines of the copy's header would be told at each resume.
void MendHeaderLines(const FoundCpt& found, StoredSounding& stored) {
  if (!TakeLostHeaderLines(found, stored)) return;
  WriteCopyAnew(stored, true);
  Tell(
      "DAMAGED LINES OF THE TEMPORARY DATA WERE WRITTEN ANEW, FROM THE SOUNDING FILE WHERE IT "
      "HOLDS THEM, ELSE FROM THE CONE'S CALIBRATION.");
}

bool AnyIsMissing() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (sounding.KeptColumn(channel) == kTrue) return true;
  }
  return false;
}

/// A channel that is missing now does not tell its delay any more; the rows of the file do.
void FormDelays(const FoundCpt& found) {
  for (const int channel : RowChannels()) {
    if (sounding.KeptColumn(channel) != kTrue) continue;
    channels.ChannelDelayRows(channel) = DelayInFile(found, channel).value_or(std::int16_t{0});
  }
  FormDelayRows();
  if (AnyIsMissing()) cone.DelayRows = LagOfFile(found, cone.DelayRows);
}

/// Its record is not read, and nothing stands in the file: the values stay in their own rows.
bool IsDelayUnknown(const FoundCpt& found, int channel) {
  if (sounding.KeptColumn(channel) != kTrue || DelayInFile(found, channel)) return false;
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) {
    if (IsReached(sounding.Rows(row, channel))) return true;
  }
  return false;
}

void TellUnknownDelays(const FoundCpt& found) {
  std::string unknown;
  for (const int channel : RowChannels()) {
    if (IsDelayUnknown(found, channel)) unknown += (unknown.empty() ? "" : ", ") + NameOf(channel);
  }
  if (unknown.empty()) return;
  Tell(
      "NOTHING TELLS HOW FAR THE SENSORS OF MISSING CHANNELS SIT FROM THE TIP.  THEIR VALUES STAND "
      "IN THE ROWS IN WHICH THEY WERE READ, NOT MOVED TO THEIR DEPTHS: " +
      unknown);
}

std::string DepthText(float depth) {
  return MakeStartTexts(depth, settings.DepthUnits, settings.DepthFormat).depth;
}

const std::string kCompare = "  COMPARE THE DEPTH WITH THE RODS BEFORE YOU PUSH.";

std::string Mended(const CptMending& mending, const FoundCpt& found) {
  std::string text = "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.";
  if (found.is_of_before) text += "  IT STANDS AT " + PathOf(kCptFile) + " NOW.";
  if (!found.has_head) text += "  ITS HEAD WAS WRITTEN ANEW.";
  if (found.is_torn) text += "  AN UNFINISHED LINE WAS TAKEN OUT.";
  if (mending.added > 0) text += "  ROWS ADDED: " + PlainNumber(mending.added) + ".";
  if (mending.changed > 0) text += "  ROWS CHANGED: " + PlainNumber(mending.changed) + ".";
  if (mending.taken_out > 0) {
    const auto depth = DepthBehindRows(found);
    text += (depth ? "  LINES THAT THE TEMPORARY DATA DOES NOT HOLD TAKEN OUT: "
                   : "  LINES OF AN UNFINISHED END TAKEN OUT: ") +
            PlainNumber(mending.taken_out) + ".";
    if (depth) text += "  THE FILE GOES DOWN TO " + DepthText(*depth) + "." + kCompare;
  }
  return text;
}

struct CptOnDisk {
  bool exists = false;
  std::string text;  ///< empty for a file that can't be read
  bool is_read = false;
};

CptOnDisk LookAtCpt() {
  CptOnDisk cpt;
  Trapped([&] {
    cpt.exists = TheDisk().FileExists(PathOf(kCptFile));
    if (cpt.exists) cpt.text = ReadFile(PathOf(kCptFile));
    cpt.is_read = cpt.exists;
  });
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
                 "FOLDER?  IF 'NO', ITS ROWS ARE KEPT IN THE TEMPORARY DATA ALONE.",
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

/// The folder is there without the file, of which rows are known.
bool IsMissingAlone(const CptOnDisk& cpt) {
  return !cpt.exists && sounding.RowCount > 0 && TheDisk().FolderExists(FolderOf(PathOf(kCptFile)));
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
  const auto taken = RecoverRows(found, stored, FormDelays);
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
  MendHeaderLines(found, stored);
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

/// Makes the file whole, or sees that what stands there is on its medium.
void WriteCpt(const CptOnDisk& cpt, const FoundCpt& found, const CptMending& mending,
              bool was_refused, KeptCpt& kept, std::string& told) {
  const bool is_whole = cpt.is_read && cpt.text == mending.text;
  if (is_whole && !was_refused) {
    SettleFile(PathOf(kCptFile));
  } else {
    KeepCpt(cpt, found, mending, kept);
    if (!is_whole) told = Mended(mending, found);
    ReplaceFile(PathOf(kCptFile), mending.text);
  }
  StartFile(kCptFile, mending.text);
}

/// Tries until the file is whole, or held back as the operator wants it; false when he goes back.
bool MendCptFile(StoredSounding& stored) {
  const Home home;
  CptOfHome cpt_of_home{home, {}};
  KeptCpt kept;
  std::string told;
  std::string refused;  // the file that took nothing last
  bool is_its_place = false;
  bool has_asked = false;
  WayOn way = WayOn::Again;
  for (;;) {
    const CptOnDisk cpt = LookAtCpt();
    if (home.IsHere() && !has_asked && IsMissingAlone(cpt)) {
      const WayWithout chosen = AskWithoutFile();
      if (chosen == WayWithout::Back) return false;
      has_asked = chosen == WayWithout::WriteAnew;
      if (!has_asked) continue;
    }
    const FoundCpt here = ReadCpt(cpt.text, stored);
    const FoundCpt found = cpt_of_home.Choose(here);
    TakeFoundCpt(found, stored);
    const CptMending mending = MendCpt(found);
    const bool was_refused = refused == PathOf(kCptFile);
    if (!was_refused) is_its_place = here.has_head;
    if (way == WayOn::Hold) {
      HoldMended(cpt, mending.text, was_refused && cpt.text == mending.text);
      told.clear();
    } else {
      try {
        WriteCpt(cpt, found, mending, was_refused, kept, told);
        if (!home.IsHere()) MoveFrom(home, is_its_place, stored);
      } catch (const RuntimeFault& fault) {
        refused = PathOf(kCptFile);
        way = AskWayOn(fault.what());
        if (way == WayOn::Back) return false;
        if (way == WayOn::Hold) TakeSoundingPaths(home.paths[kCptFile]);
        continue;
      }
    }
    if (!told.empty()) Tell(told + WhereKept(kept));
    if (found.has_head) TellOfHead(found);
    TellUnknownDelays(found);
    return true;
  }
}

// The time marks.

constexpr std::ptrdiff_t kTimHeaderLines = 2;

float SecondsNow() {
  return static_cast<float>(SecondsSinceMidnight(TheClock().Wall()));
}

/// A file that was cut off as it was begun has no whole header.
void TakeUpTimFile(bool was_refused) {
  const std::string& path = PathOf(kTimFile);
  const bool stands = TheDisk().FileExists(path);
  if (!stands && !HasTimFile()) return;
  const std::string text = stands ? ReadFile(path) : "";
  std::string whole = text.substr(0, text.rfind('\n') + 1);
  const auto lines = std::count(whole.begin(), whole.end(), '\n');
  if (lines < kTimHeaderLines) whole = TimHeader(SecondsNow());
  if (whole == text && !was_refused) {
    SettleFile(path);
  } else {
    ReplaceFile(path, whole);
  }
  StartFile(kTimFile, whole);
}

/// The sounding can go on without the marks.
void MendTimFile() {
  if (sounding.Held[kTimFile].GivenUp) return;  // another sounding's stands under its name
  for (bool was_refused = false;; was_refused = true) {
    try {
      return TakeUpTimFile(was_refused);
    } catch (const RuntimeFault& fault) {
      if (MsgBox("THE FILE OF THE TIME MARKS CANNOT BE TAKEN UP AGAIN.  PRESS OK TO TRY AGAIN, OR "
                 "CANCEL TO GO ON WITHOUT IT: WHAT STANDS THERE STAYS, AND THE MARKS OF THIS "
                 "SESSION ARE NOT KEPT.  " +
                     std::string(fault.what()),
                 BoxButtons::OkCancel) == BoxAnswer::Cancel) {
        return GiveUpFile(kTimFile);
      }
    }
  }
}

bool HasHeaderColumnOnly(int channel) {
  return channels.RecordMode(channel) == 3;
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
  const std::string text = ReadFile(PathOf(kTemporaryFile));
  StoredSounding stored = ReadTemporaryData(text, HasHeaderColumnOnly, kMostRows);
  if (stored.done || !stored.unreadable.empty()) {
    throw RuntimeFault("TemporaryData.txt HAS CHANGED SINCE IT WAS READ.");
  }
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
  } catch (const RuntimeFault&) {
    before.Restore();
    throw;
  }
  before.Restore();
  return false;
}

}  // namespace penlog
