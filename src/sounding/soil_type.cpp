#include "sounding/soil_type.h"

#include <cmath>
#include <cstddef>

#include "platform/numbers.h"

namespace penlog {
namespace {

enum Layer : std::size_t { kZone = 0, kBound = 1 };

// N to the nearest whole blow, a half upward. `tip` in bar.
float BlowCount(float tip, float zone, const SoilTables& tables) {
  const auto at = static_cast<std::size_t>(RoundHalfEven(zone));
  return static_cast<float>(IntPart(static_cast<double>(tip / tables.SptDivisor[at]) + 0.5));
}

// The last band of a column that holds the zone, 0 if none does. A column behind the end of the
// table holds none.
std::size_t LastBandOf(float zone, std::size_t column, const SoilTables& tables) {
  std::size_t found = 0;
  if (column >= tables.SbtTable.size()) return found;
  for (std::size_t band = 1; band <= kSoilBands; ++band) {
    if (tables.SbtTable[column][band][kZone] == zone) found = band;
  }
  return found;
}

// Lower bound of a band at `tenths` of a percent, log10 of bar: straight from its column to the
// next one, or a step if its zone ends with this column.
float BoundAt(float tenths, std::size_t column, std::size_t band, const SoilTables& tables) {
  const float limit = tables.SbtTable[column][band][kBound];
  const std::size_t next = LastBandOf(tables.SbtTable[column][band][kZone], column + 1, tables);
  if (next == 0) return limit;
  const float rise = tables.SbtTable[column + 1][next][kBound] - limit;
  return limit + (tenths - static_cast<float>(column)) * rise;
}

}  // namespace

SoilTypeAndN SoilType(float qt, float fs, const SoilTables& tables) {
  // Written so that a value that is no number gives no soil either.
  if (!(qt > 0.0f)) return {};
  const float ratio = fs * 100.0f / qt;
  const float tenths = 10.0f * ratio;
  if (!(ratio >= 0.0f) || !(tenths < static_cast<float>(tables.FrictionRatioMax))) return {};

  const float tip = qt * kTipToBar;
  const auto log_tip = static_cast<float>(std::log10(static_cast<double>(tip)));
  const auto column = static_cast<std::size_t>(tenths);
  float zone = kGroundZone;
  // No early exit: bands may cross between two columns, and the last one that matches holds.
  for (std::size_t band = 1; band <= kSoilBands; ++band) {
    const float bound = BoundAt(tenths, column, band, tables);
    if (bound > 0.0f && log_tip > bound) zone = tables.SbtTable[column][band][kZone];
  }
  return {zone, BlowCount(tip, zone, tables)};
}

}  // namespace penlog
