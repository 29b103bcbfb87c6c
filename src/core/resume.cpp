#include "core/resume.h"

#include <algorithm>
#include <array>
#include <cmath>
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
#include "core/message.h"
#include "core/resumed_copy.h"
#include "core/resumed_zeros.h"
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

constexpr double kHundredth = 0.01;        ///< m; the last digit of the recovery copy's depths
constexpr double kFloatNoise = 1e-4;       ///< m; of depths and their differences
constexpr double kAlike = kHundredth / 2;  ///< m
constexpr double kAlikeRounded = 1.5 * kHundredth;  ///< m; of one step that is no whole hundredths
constexpr std::size_t kEnoughDistances = 3;
constexpr std::size_t kOrigins = 5;         ///< rows that are tried for the origin of a grid
constexpr double kLeastGrid = 0.02 - 1e-6;  ///< m; the hundredths tell no finer one
constexpr double kOffGrid = 0.3;            ///< steps; few enough that hundredths may be off it
constexpr double kOnGrid = 0.7;             ///< of the rows
constexpr double kMostOfThem = 0.8;
constexpr double kMostStep = 10;       ///< m; rows further apart tell no step
constexpr double kFewSteps = 3;        ///< as many may fall together
constexpr double kFellTogether = 1.8;  ///< steps that rows which fell together stand apart at most

bool HasHeaderColumnOnly(int channel) {
  return channels.RecordMode(channel) == 3;
}

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

/// From a row to the next one.
struct RowDistance {
  double metres = 0;
  bool begins_part = false;  ///< behind a drilled gap: the errors before it don't cancel out here
};

/// Those between neighbouring rows, none across the mark of a drilled gap.
std::vector<RowDistance> DistancesOfRows() {
  const auto gaps = ReadTemporaryData(resumed_copy.Text, HasHeaderColumnOnly, kMostRows).gaps;
  std::vector<RowDistance> distances;
  bool begins_part = false;
  for (std::int32_t row = 2; row <= sounding.RowCount; ++row) {
    const bool across = std::find(gaps.begin(), gaps.end(), row - 1) != gaps.end();
    const float metres = sounding.Rows(row, 0) - sounding.Rows(row - 1, 0);
    if (!across) distances.push_back({static_cast<double>(metres), begins_part});
    begins_part = across;
  }
  return distances;
}

/// How far apart rows are counted: another length than the step where that is no whole counts.
double DistanceOfSettings() {
  return static_cast<double>(settings.DepthStepCounts) *
         static_cast<double>(settings.DepthResolution);
}

/// What the distances are in steps of the settings.
enum class StepsOfSettings {
  None,      ///< most are no whole steps, or shorter
  Whole,     ///< most may be: passes that are too slow leave out rows
  AboutOne,  ///< and so few are several steps that rows fell together now and then
};

/// How much less than this a distance is off that is rounded at both ends. Depths that lie between
/// two hundredths may be rounded either way.
double Rounding(double step) {
  const bool is_whole_hundredths = std::abs(std::remainder(step, kHundredth)) < kFloatNoise;
  return is_whole_hundredths ? kHundredth - kFloatNoise : kHundredth + kFloatNoise;
}

/// Two depth steps between two passes give one row. A distance that the hundredths leave open
/// counts as any of its numbers of steps.
StepsOfSettings StepsOf(const std::vector<RowDistance>& distances) {
  const double step = DistanceOfSettings();
  const double rounding = Rounding(step);
  double open = kHundredth;  // what the hundredths leave open at the ends of each part
  double sum = 0;
  double least = 0;
  double most = 0;
  double sum_of_few = 0;
  double few = 0;
  double whole = 0;
  for (const RowDistance& distance : distances) {
    const double from = std::max(std::ceil((distance.metres - rounding) / step), 0.0);
    const double to = std::floor((distance.metres + rounding) / step);
    const bool is_whole = from <= to;
    const bool is_few = is_whole && from <= kFewSteps;
    if (!is_few) open += kHundredth;
    if (!is_whole) continue;
    ++whole;
    sum += distance.metres;
    least += from * step;
    most += to * step;
    sum_of_few += is_few ? distance.metres : 0;
    few += is_few ? 1 : 0;
  }
  const auto count = static_cast<double>(distances.size());
  if (whole < kMostOfThem * count || sum < least - open || sum > most + open ||
      sum_of_few < few * step - open) {
    return StepsOfSettings::None;
  }
  const bool is_about_one = 2 * few >= count && sum_of_few <= kFellTogether * few * step;
  return is_about_one ? StepsOfSettings::AboutOne : StepsOfSettings::Whole;
}

/// How far apart the rows stand, and how exactly that is known.
struct RowSpacing {
  double metres = 0;
  double error = 0;         ///< what the hundredths of the recovery copy leave open
  bool is_regular = false;  ///< most distances agree: rows around a loss tell no step
};

/// The mean of the usual distances: those `reach` metres from the middle one at most. Rows that a
/// lost link left out stand apart.
RowSpacing SpacingOf(const std::vector<RowDistance>& distances, double reach) {
  std::vector<double> sorted(distances.size());
  std::transform(distances.begin(), distances.end(), sorted.begin(),
                 [](const RowDistance& distance) { return distance.metres; });
  const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
  std::nth_element(sorted.begin(), middle, sorted.end());
  double sum = 0;
  double usual = 0;
  double parts = 1;  // the errors of neighbouring distances cancel out but for the ends of a part
  for (const RowDistance& distance : distances) {
    const bool is_usual = std::abs(distance.metres - *middle) <= reach;
    sum += is_usual ? distance.metres : 0;
    usual += is_usual ? 1 : 0;
    parts += is_usual && !distance.begins_part ? 0 : 1;
  }
  return {sum / usual, kHundredth * parts / usual + kFloatNoise,
          usual >= kMostOfThem * static_cast<double>(distances.size())};
}

/// The step next to a length, as its text reads: 5 steps of 0.02 m are 0.1 m.
float WholeSteps(double length) {
  const auto resolution = static_cast<double>(settings.DepthResolution);
  const auto counts = static_cast<double>(RoundHalfEven(length / resolution));
  return ParseSingle(Format(std::max(counts, 1.0) * resolution, "0.00####"));
}

/// How many of the rows of a part stand on a grid of `step` metres, by the row of the first few
/// that is best taken for its origin. One late count and what is rounded are allowed.
double OnGrid(const std::vector<double>& depths, double step) {
  const double reach =
      std::min(static_cast<double>(settings.DepthResolution) + kHundredth, kOffGrid * step);
  std::ptrdiff_t most = 0;
  for (std::size_t origin = 0; origin < std::min(depths.size(), kOrigins); ++origin) {
    most = std::max(most, std::count_if(depths.begin(), depths.end(), [&](double depth) {
                      return std::abs(std::remainder(depth - depths[origin], step)) < reach;
                    }));
  }
  return static_cast<double>(most);
}

/// That of rows of which some were taken a count late, so that their distances differ: on the whole
/// they stand on its grid. Rows that fell together don't stand on one.
RowSpacing SpacingOfLateRows(const std::vector<RowDistance>& distances) {
  RowSpacing spacing = SpacingOf(distances, kAlikeRounded);
  const auto step = static_cast<double>(WholeSteps(spacing.metres));
  double on_grid = 0;
  double rows = 0;
  std::vector<double> part;
  const auto end_part = [&] {
    on_grid += OnGrid(part, step);
    rows += static_cast<double>(part.size());
    part = {0};
  };
  for (const RowDistance& distance : distances) {
    if (distance.begins_part || part.empty()) end_part();
    part.push_back(part.back() + distance.metres);
  }
  end_part();
  spacing.is_regular = spacing.is_regular && step >= kLeastGrid && on_grid >= kOnGrid * rows;
  return spacing;
}

void UseDepthStep(float step) {
  ReplaceSetting(settings.DepthStep, step);
  settings.DepthStepCounts = ToInteger16(settings.DepthStep / settings.DepthResolution);
}

std::string InMetres(float length) {
  return Format(length, "0.0##") + " m";
}

/// The step that the rows tell, in whole counts; none where it is that of the settings or can't be
/// told. Whole steps of the settings must be alike: rows that fell together are not.
std::optional<float> OtherStep(StepsOfSettings steps, const RowSpacing& spacing) {
  const double own = DistanceOfSettings();
  if (steps == StepsOfSettings::AboutOne || !spacing.is_regular) return std::nullopt;
  if (spacing.metres <= 0 || spacing.metres > kMostStep) return std::nullopt;
  if (std::abs(spacing.metres - own) <= spacing.error) return std::nullopt;
  const float step = WholeSteps(spacing.metres);
  const double apart = std::abs(static_cast<double>(step) - own);
  if (apart < static_cast<double>(settings.DepthResolution) / 2) return std::nullopt;
  return step;
}

/// The rows that are aligned already can't be aligned again: the sounding goes on with the step it
/// was begun with, while the settings file keeps its own. One or two distances of more than a step
/// may be rows that a lost link left out.
void KeepStepOfRows() {
  const std::vector<RowDistance> distances = DistancesOfRows();
  const double own = DistanceOfSettings();
  if (distances.empty() || !(own > 0)) return;
  const StepsOfSettings steps = StepsOf(distances);
  const bool are_whole = steps == StepsOfSettings::Whole;
  RowSpacing spacing = SpacingOf(distances, are_whole ? kAlike : kAlikeRounded);
  if (are_whole && !spacing.is_regular) spacing = SpacingOfLateRows(distances);
  const std::optional<float> step = OtherStep(steps, spacing);
  if (!step && are_whole && !spacing.is_regular) {
    Tell("THE ROWS OF THE LAST SOUNDING STAND UNEVENLY, " +
         InMetres(static_cast<float>(spacing.metres)) + " APART ON THE MEAN, THE SETTINGS SAY " +
         InMetres(settings.DepthStep) + ".  THE SOUNDING GOES ON WITH " +
         InMetres(settings.DepthStep) +
         ".  IF IT WAS BEGUN WITH ANOTHER STEP, PRESS CANCEL AND SET THAT FIRST.");
  }
  if (!step) return;
  const float before = settings.DepthStep;
  const bool is_longer = static_cast<double>(*step) > own;
  const bool may_be_loss = is_longer && distances.size() < kEnoughDistances;
  if (may_be_loss && std::abs(std::remainder(spacing.metres, own)) <= spacing.error) return;
  if (!may_be_loss) {
    session.DepthStepOfSettings = before;
    UseDepthStep(*step);
    PlaceStart();
  }
  Tell("THE ROWS OF THE LAST SOUNDING STAND " + InMetres(static_cast<float>(spacing.metres)) +
       " APART, THE SETTINGS SAY " + InMetres(before) + ".  THE SOUNDING GOES ON WITH " +
       InMetres(settings.DepthStep) + ".");
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
