#include "core/resume.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/feet.h"
#include "core/header_columns.h"
#include "core/message.h"
#include "core/resumed_copy.h"
#include "core/resumed_zeros.h"
#include "core/row_spacing.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "core/start_up_buttons.h"
#include "core/start_up_cone.h"
#include "core/start_up_ports.h"
#include "core/temporary_data.h"
#include "forms/start_up_form.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/small_file.h"
#include "platform/texts.h"
#include "screens/typed_depth.h"
#include "sounding/depth_count.h"
#include "sounding/found_cpt.h"
#include "sounding/reached.h"
#include "sounding/resumed_header.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr std::int16_t kReadingsAveraged = 4;
constexpr float kDeepest = 12'000;  ///< m; as deep as a sounding's start may lie
constexpr std::size_t kMostLinesTold = 5;
constexpr float kUnlikelyJump = 5;  ///< m; told where the last row lies so far below the others

void TakeHeader(const StoredSounding& stored) {
  TakeSoundingPaths(stored.main_file);
  session.SoundingName = stored.sounding_name;
  session.ResumeCompanyName = stored.company_name;
  session.OperatorName = stored.operator_name;
  session.ResumeConeId = stored.cone_id;
  session.SoundingLocation = stored.location;
  session.JobNumber = stored.job_number;
  session.HoleNumber = stored.hole_number;
  session.SoundingDateTime = stored.date_time;
  session.HeaderNote = stored.header_note;
  session.FooterNote1 = stored.footer_note1;
  session.FooterNote2 = stored.footer_note2;
  session.GPSPosition = stored.gps_position;
  session.WaterTable = stored.water_table;
}

void TakeBaselines(const StoredSounding& stored) {
  for (std::size_t i = 0; i < stored.columns.size(); ++i) {
    if (!stored.zeros[i]) continue;
    channels.Baselines(stored.columns[i]) = *stored.zeros[i];
    resumed_zeros.Restored(stored.columns[i]) = kTrue;
    sounding.Rows(0, stored.columns[i]) = *stored.zeros[i];
  }
}

/// A row's speed stands where the step before it had put it.
void TakeRows(const StoredSounding& stored) {
  sounding.RowCount = 0;
  for (const StoredRow& row : stored.rows) {
    sounding.RowSpeed(sounding.RowCount) = row.speed;
    ++sounding.RowCount;
    ForgetReadings(sounding.RowCount);
    sounding.Rows(sounding.RowCount, 0) = row.depth;
    for (std::size_t i = 0; i < stored.row_channels.size(); ++i) {
      sounding.Rows(sounding.RowCount, stored.row_channels[i]) = row.values[i];
    }
  }
}

/// Rows stand whole counts apart, each `DepthStepCounts` of them.
void PlaceStart() {
  sounding.Rows(0, 0) = sounding.Rows(1, 0) - settings.DepthStep;  // without rows row 1 is all 0
  session.StartDepth = sounding.Rows(0, 0);
  sounding.DepthCounts = static_cast<float>(settings.DepthStepCounts * sounding.RowCount);
}

void UseDepthStep(float step) {
  ReplaceSetting(settings.DepthStep, step);
  settings.DepthStepCounts = ToInteger16(settings.DepthStep / settings.DepthResolution);
}

std::string InMetres(float length) {
  return Format(length, "0.0##") + " m";
}

/// The rows that are aligned already can't be aligned again: the sounding goes on with the step it
/// was begun with, while the settings file keeps its own. One or two distances of more than a step
/// may be rows that a lost link left out.
void KeepStepOfRows() {
  const RowSpacing spacing = SpacingOfRows();
  const std::string apart = InMetres(static_cast<float>(spacing.metres)) + " APART";
  if (spacing.is_uneven) {
    Tell("THE ROWS OF THE LAST SOUNDING STAND UNEVENLY, " + apart +
         " ON THE MEAN, THE SETTINGS SAY " + InMetres(settings.DepthStep) +
         ".  THE SOUNDING GOES ON WITH " + InMetres(settings.DepthStep) +
         ".  IF IT WAS BEGUN WITH ANOTHER STEP, PRESS CANCEL AND SET THAT FIRST.");
  }
  if (!spacing.step) return;
  const float before = settings.DepthStep;
  if (!spacing.is_of_too_few) {
    session.DepthStepOfSettings = before;
    UseDepthStep(*spacing.step);
    PlaceStart();
  }
  Tell("THE ROWS OF THE LAST SOUNDING STAND " + apart + ", THE SETTINGS SAY " + InMetres(before) +
       ".  THE SOUNDING GOES ON WITH " + InMetres(settings.DepthStep) + ".");
}

/// Nothing of the sounding is left: another may be begun.
void ForgetSounding() {
  TakeHeader({});
  GiveBackTrucksNumber();
  resumed_zeros = {};
  session.StartDepth = 0;
  session.ResumeDepthStatus = 0;
  session.ResumeTargetDepth = 0;
  sounding.Rows = {};
  sounding.RowSpeed = {};
  sounding.RowCount = 0;
  sounding.CurrentDepth = 0;
  sounding.DepthCounts = 0;
  if (session.DepthStepOfSettings > 0) UseDepthStep(session.DepthStepOfSettings);
  session.DepthStepOfSettings = 0;
}

void SetResumeButtons(bool enabled) {
  StartUp.cmdResumeAtLastDepth.Enabled = enabled;
  StartUp.cmdResumeAtSurface.Enabled = enabled;
  StartUp.txtDistanceDrilled.Enabled = enabled;
}

/// While the panel stands, the operator goes on from it or leaves the program.
void LeaveOnlyPanelAndExit() {
  DisableEveryButton();
  StartUp.cmdExit.Enabled = true;
  StartUp.cmdCancel.Enabled = true;
}

/// 1 where the rows of the sounding's file are elevations; that of the settings where the file
/// doesn't tell.
std::int16_t DepthFormatOf(const StoredSounding& stored) {
  std::optional<bool> elevations;
  try {
    elevations = HoldsElevations(ReadCpt(ReadSmallFile(stored.main_file), stored));
  } catch (const std::exception&) {
    // Why it can't be read is told when it is taken up.
  }
  return elevations ? static_cast<std::int16_t>(*elevations ? 1 : 0) : settings.DepthFormat;
}

std::string LastDepth(std::int16_t format) {
  return MakeStartTexts(sounding.Rows(sounding.RowCount, 0), settings.DepthUnits, format).depth;
}

void ShowPanel(std::int16_t format) {
  StartUp.lblLastSoundingCone.Caption = session.ResumeConeId;
  StartUp.lblLastSoundingDepth.Caption = LastDepth(format);
  StartUp.txtDistanceDrilled.Text.clear();
  LeaveOnlyPanelAndExit();
  SetResumeButtons(true);
  StartUp.frmResume.Visible = true;
}

std::string Few(const StoredSounding& stored) {
  const std::vector<std::string>& lines = stored.damage;
  std::string text;
  for (std::size_t i = 0; i < std::min(lines.size(), kMostLinesTold); ++i) text += "  " + lines[i];
  if (lines.size() > kMostLinesTold) {
    const std::size_t more = lines.size() - kMostLinesTold + stored.damage_untold;
    text += "  AND " + PlainNumber(static_cast<int>(more)) + " MORE";
  }
  return text;
}

/// The mark doesn't say how deep the cone went: the operator does.
void TellOpenGap(const StoredSounding& stored, std::int16_t format) {
  if (!stored.EndsInGap() && !stored.EndsInTornGap()) return;
  const std::string last =
      stored.rows.empty() ? "" : "  ITS LAST ROW STANDS AT " + LastDepth(format) + ".";
  Tell("THE LAST SOUNDING WAS RESUMED FROM THE SURFACE, AND NO ROW WAS TAKEN AFTER THAT." + last +
       "  IF THE CONE STANDS AT ANOTHER DEPTH NOW, RESUME FROM THE SURFACE AGAIN.");
}

void TellDamage(const StoredSounding& stored) {
  const std::string kept = "  WHEN THE SOUNDING IS RESUMED, THE DAMAGED FILE IS KEPT BESIDE.";
  if (!stored.damage.empty()) {
    Tell("PART OF THE LAST SOUNDING'S TEMPORARY DATA CANNOT BE READ AND IS LEFT OUT." +
         (stored.loses_lines ? kept : "") + Few(stored));
  }
  const std::size_t rows = stored.rows.size();
  const bool is_behind_gap =
      std::find(stored.gaps.begin(), stored.gaps.end(), rows - 1) != stored.gaps.end();
  if (rows > 1 && !is_behind_gap &&
      stored.rows[rows - 1].depth - stored.rows[rows - 2].depth > kUnlikelyJump) {
    Tell("THE LAST ROW OF THE LAST SOUNDING STANDS " +
         InMetres(stored.rows[rows - 1].depth - stored.rows[rows - 2].depth) +
         " BELOW THE ROW BEFORE IT.  COMPARE ITS DEPTH WITH THE RODS.");
  }
  if (stored.rows.empty() && stored.loses_lines) {
    Tell(
        "NO ROW OF THE LAST SOUNDING'S TEMPORARY DATA CAN BE READ.  WHAT ITS FILE HOLDS IS TAKEN "
        "WHEN "
        "IT IS RESUMED; WITHOUT THAT ITS DEPTH GOES ON ONE DEPTH STEP ABOVE 0.");
  } else if (stored.rows.empty()) {
    Tell("THE LAST SOUNDING HOLDS NO ROWS.  ITS DEPTH GOES ON ONE DEPTH STEP ABOVE 0.");
  }
}

/// A sounding that was put beside "TemporaryData.txt" and never ended.
struct KeptSounding {
  std::string date_time;
  std::size_t rows = 0;
  int number = 0;  ///< of its name; the first free one was taken
  std::string path;
  auto operator<=>(const KeptSounding&) const = default;  // NOLINT: no pointer is compared
};

constexpr std::string_view kKeptHead = "TemporaryData (";

std::optional<KeptSounding> KeptSoundingOf(const std::string& path, const std::string& name) {
  std::optional<KeptSounding> kept;
  Trapped([&] {
    const auto stored = ReadTemporaryData(ReadSmallFile(path), HasHeaderColumnOnly, kMostRows);
    if (stored.done || !stored.unreadable.empty()) return;
    const int number = ToInteger16(LeadingNumber(name.substr(kKeptHead.size())));
    kept = {stored.date_time, stored.rows.size(), number, path};
  });
  return kept;
}

/// The newest one: what was begun last and holds the most rows.
std::optional<KeptSounding> NewestKeptSounding(const std::string& folder) {
  std::optional<KeptSounding> newest;
  for (const DirectoryEntry& entry : TheDisk().List(folder)) {
    if (entry.is_folder || !entry.name.starts_with(kKeptHead)) continue;
    newest = std::max(newest, KeptSoundingOf(JoinPath(folder, entry.name), entry.name));
  }
  return newest;
}

/// What the operator can do with a sounding that stands beside the missing or empty file.
std::string WhatStandsBeside(const std::string& path) {
  const auto kept = NewestKeptSounding(FolderOf(path));
  if (!kept) return {};
  return "  AN UNFINISHED SOUNDING OF " + Left(kept->date_time, 40) +
         " STANDS BESIDE: " + kept->path +
         ".  TO GO ON WITH IT, RENAME THAT FILE TO \"TemporaryData.txt\" AND PRESS RESUME LAST "
         "SOUNDING AGAIN.";
}

/// The stored sounding; none when there is nothing to resume, which is told.
std::optional<StoredSounding> ReadLastSounding() {
  const std::string start = "THE LAST SOUNDING CANNOT BE RESUMED.  ";
  const std::string& path = session.SoundingFiles[0];
  try {
    if (!TheDisk().FileExists(path)) {
      Tell("THERE IS NO SOUNDING TO RESUME.  " + path + " IS MISSING." + WhatStandsBeside(path));
      return std::nullopt;
    }
    const std::string text = ReadSmallFile(path);
    StoredSounding stored = ReadTemporaryData(text, HasHeaderColumnOnly, kMostRows);
    if (!stored.done && stored.unreadable.empty()) TakeConeOfHead(stored);
    if (stored.done) Tell(session.LastSoundingCompletedMessage);
    if (!stored.unreadable.empty()) {
      Tell(start + path + ": " + stored.unreadable + "." +
           (Trim(text).empty() ? WhatStandsBeside(path) : ""));
    }
    if (!stored.done && stored.unreadable.empty()) {
      resumed_copy.Text = text;
      return stored;
    }
  } catch (const std::bad_alloc&) {
    Tell(start + "THERE IS NOT ENOUGH MEMORY.");
  } catch (const std::exception& fault) {
    Tell(start + fault.what());
  }
  return std::nullopt;
}

/// Returns when the cone could not be used, or when the operator gave up.
void LookForLastCone() {
  session.ReadingsAveraged = kReadingsAveraged;
  session.CalibrationMode = kFalse;
  session.CalibrationPlaybackOnly = kFalse;
  sounding.ConsoleMode = 0;
  cone.ConeLinkUp = kFalse;
  KeepStartPorts();
  ProbeAllPorts();  // the overlay's presence is looked up in the table
  BeginStatus("");
  LeaveOnlyPanelAndExit();
  SetResumeButtons(false);
  LookForCone();
  EndStatus();
  if (session.ResumeConeId.empty()) return EnableEveryButton();
  LeaveOnlyPanelAndExit();
  SetResumeButtons(true);
}

std::string WhyNoDistance(const std::string& text) {
  const std::string shown = "\"" + Left(text, 60) + "\"";
  if (!IsNumberOrEmpty(text)) return shown + " is not a number.";
  const double distance = LocaleNumber(text, session.CommaDecimal == 1);
  if (distance < 0 || distance > static_cast<double>(kDeepest)) return shown + " is no distance.";
  return {};
}

/// A distance that is typed means the surface: the last depth has no use for it.
bool IsDistanceTyped() {
  const std::string& text = StartUp.txtDistanceDrilled.Text;
  return !IsNumberOrEmpty(text) || LocaleNumber(text, session.CommaDecimal == 1) != 0;
}

/// What was drilled below the last depth, in metres.
float DistanceDrilled() {
  const auto typed =
      static_cast<float>(LocaleNumber(StartUp.txtDistanceDrilled.Text, session.CommaDecimal == 1));
  return settings.DepthUnits == 1 ? typed / kFeetPerMetre : typed;
}

}  // namespace

void TakeSoundingPaths(const std::string& main_file) {
  constexpr std::array<const char*, 5> kExtensions = {"dis", "smc", "tim", "res", "mp4"};
  session.SoundingFiles[1] = main_file;
  const std::string stem =
      main_file.substr(0, main_file.size() - std::min<std::size_t>(main_file.size(), 3));
  for (std::size_t i = 0; i < kExtensions.size(); ++i) {
    session.SoundingFiles[i + 2] = main_file.empty() ? "" : stem + kExtensions[i];
  }
  const auto stands = [](const std::string& path) {
    return !path.empty() && TheDisk().FileExists(path) ? kTrue : kFalse;
  };
  session.HasDissipationFile = stands(session.SoundingFiles[2]);
  session.HasSeismicFile = stands(session.SoundingFiles[3]);
}

void StartUp_cmdResume_Click() {
  const auto stored = ReadLastSounding();
  if (!stored) return;
  ForgetSounding();
  TakeHeader(*stored);
  TakeBaselines(*stored);
  TakeRows(*stored);
  PlaceStart();
  TellDamage(*stored);
  const std::int16_t format = DepthFormatOf(*stored);
  TellOpenGap(*stored, format);
  ShowPanel(format);
}

void StartUp_cmdResumeAtLastDepth_Click() {
  if (IsDistanceTyped()) {
    Tell(
        "RESUME AT LAST DEPTH GOES ON WHERE THE LAST ROW STANDS AND USES NO DISTANCE DRILLED.  "
        "PRESS RESUME AT SURFACE, OR TAKE THE DISTANCE OUT AND PRESS RESUME AT LAST DEPTH AGAIN.");
    return;
  }
  KeepStepOfRows();
  session.ResumeDepthStatus = 0.0f;
  sounding.CurrentDepth = sounding.Rows(sounding.RowCount, 0);
  LookForLastCone();
}

void StartUp_cmdResumeAtSurface_Click() {
  const std::string why_not = WhyNoDistance(StartUp.txtDistanceDrilled.Text);
  if (!why_not.empty()) {
    Tell(why_not);
    return;
  }
  KeepStepOfRows();  // it moves the start depth
  session.ResumeDepthStatus = 1.0f;
  session.ResumeTargetDepth = sounding.Rows(sounding.RowCount, 0) + DistanceDrilled();
  sounding.CurrentDepth = settings.DepthFormat == 1 ? session.StartDepth : 0.0f;
  LookForLastCone();
}

void StartUp_cmdCancel_Click() {
  StartUp.frmResume.Visible = false;
  ForgetSounding();
  if (!StartUp.frLoad.Visible) EnableEveryButton();
}

}  // namespace penlog
