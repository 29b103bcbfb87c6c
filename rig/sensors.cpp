#include "rig/sensors.h"

#include <cmath>

#include "platform/numbers.h"
#include "rig/coding.h"

namespace penlog {

namespace {

constexpr int kTemperatureChannel = 14;

double ValueOf(const UnitRecord& record, const Surroundings& surroundings) {
  return surroundings.Value(record.channel, record.distance_mm / 1000.0, record.full_scale);
}

}  // namespace

UnitRecord AsStored(UnitRecord record) {
  record.full_scale = StoredDecimal(record.full_scale);
  record.at_full_scale = StoredDecimal(record.at_full_scale);
  record.at_zero = StoredDecimal(record.at_zero);
  record.subtract_factor = StoredDecimal(record.subtract_factor);
  return record;
}

namespace {

double TemperatureOutput(const UnitRecord& record, double degrees) {
  const double a = record.at_full_scale;
  const double b = record.at_zero;
  const double x = std::pow(degrees / a, 1.0 / b);
  return 0.05 + 5000.0 / (x + 2000.0);
}

double LoadOfSubtracted(const UnitRecord& record, const std::vector<UnitRecord>& all,
                        const Surroundings& surroundings) {
  for (const auto& other : all) {
    if (other.channel != record.subtract) continue;
    return record.subtract_factor * ValueOf(other, surroundings) / other.full_scale;
  }
  return 0.0;
}

}  // namespace

double SensorOutput(const UnitRecord& record, const std::vector<UnitRecord>& all,
                    const Surroundings& surroundings, double shift) {
  const double value = ValueOf(record, surroundings);
  if (record.channel == kTemperatureChannel) return TemperatureOutput(record, value) + shift;
  const double zero = record.at_zero;
  const double span = record.at_full_scale - zero;
  double output = zero + shift + span * value / record.full_scale;
  if (record.subtract > 0) output += LoadOfSubtracted(record, all, surroundings);
  return output;
}

Readout::Readout(int decimals, std::uint32_t seed)
    : decimals_(decimals), pattern_("0."), random_(seed) {
  pattern_ += std::string(static_cast<std::size_t>(decimals_), '0');
  unit_ = std::pow(10.0, -decimals_);
}

double Readout::Uniform() {
  return static_cast<double>(random_()) / 4294967296.0;
}

std::string Readout::Print(int channel, double output, bool must_change) {
  const double places = output / unit_;
  const double below = std::floor(places);
  double chosen = Uniform() < places - below ? below + 1.0 : below;
  const auto last = last_.find(channel);
  if (must_change && last != last_.end() && last->second == chosen) {
    chosen = chosen > below ? below : below + 1.0;
  }
  last_[channel] = chosen;
  return Format(chosen * unit_, pattern_);
}

}  // namespace penlog
