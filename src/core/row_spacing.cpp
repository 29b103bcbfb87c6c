#include "core/row_spacing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/header_columns.h"
#include "core/resumed_copy.h"
#include "core/settings.h"
#include "core/temporary_data.h"
#include "platform/numbers.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

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
struct Spacing {
  double metres = 0;
  double error = 0;         ///< what the hundredths of the recovery copy leave open
  bool is_regular = false;  ///< most distances agree: rows around a loss tell no step
};

/// The mean of the usual distances: those `reach` metres from the middle one at most. Rows that a
/// lost link left out stand apart.
Spacing SpacingOf(const std::vector<RowDistance>& distances, double reach) {
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
Spacing SpacingOfLateRows(const std::vector<RowDistance>& distances) {
  Spacing spacing = SpacingOf(distances, kAlikeRounded);
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

/// The step that the rows tell, in whole counts; none where it is that of the settings or can't be
/// told. Whole steps of the settings must be alike: rows that fell together are not.
std::optional<float> OtherStep(StepsOfSettings steps, const Spacing& spacing) {
  const double own = DistanceOfSettings();
  if (steps == StepsOfSettings::AboutOne || !spacing.is_regular) return std::nullopt;
  if (spacing.metres <= 0 || spacing.metres > kMostStep) return std::nullopt;
  if (std::abs(spacing.metres - own) <= spacing.error) return std::nullopt;
  const float step = WholeSteps(spacing.metres);
  const double apart = std::abs(static_cast<double>(step) - own);
  if (apart < static_cast<double>(settings.DepthResolution) / 2) return std::nullopt;
  return step;
}

}  // namespace

RowSpacing SpacingOfRows() {
  const std::vector<RowDistance> distances = DistancesOfRows();
  const double own = DistanceOfSettings();
  if (distances.empty() || !(own > 0)) return {};
  const StepsOfSettings steps = StepsOf(distances);
  const bool are_whole = steps == StepsOfSettings::Whole;
  Spacing spacing = SpacingOf(distances, are_whole ? kAlike : kAlikeRounded);
  if (are_whole && !spacing.is_regular) spacing = SpacingOfLateRows(distances);
  RowSpacing found;
  found.metres = spacing.metres;
  found.step = OtherStep(steps, spacing);
  found.is_uneven = !found.step && are_whole && !spacing.is_regular;
  const bool is_longer = found.step && static_cast<double>(*found.step) > own;
  found.is_of_too_few = is_longer && distances.size() < kEnoughDistances;
  const bool is_whole = std::abs(std::remainder(spacing.metres, own)) <= spacing.error;
  if (found.is_of_too_few && is_whole) found.step.reset();
  return found;
}

}  // namespace penlog
