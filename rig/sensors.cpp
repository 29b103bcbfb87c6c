#include "rig/sensors.h"

#include <cmath>

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

/// `units` of the last of `decimals` places as a number: -1205 with three places is "-1.205".
std::string WithPoint(long long units, std::size_t decimals) {
  std::string text = std::to_string(std::abs(units));
  if (text.size() <= decimals) text.insert(0, decimals + 1 - text.size(), '0');
  text.insert(text.size() - decimals, 1, '.');
  if (units < 0) text.insert(0, 1, '-');
  return text;
}

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

Readout::Readout(int decimals, std::uint32_t seed, bool steady)
    : decimals_(static_cast<std::size_t>(decimals)),
      unit_(std::pow(10.0, -decimals)),
      steady_(steady),
      random_(seed) {}

double Readout::Uniform() {
  return static_cast<double>(random_()) / 4294967296.0;
}

std::string Readout::Print(int channel, double output, bool must_change) {
  const double places = output / unit_;
  if (steady_) return WithPoint(std::llround(places), decimals_);
  const double below = std::floor(places);
  double chosen = Uniform() < places - below ? below + 1.0 : below;
  const auto last = last_.find(channel);
  if (must_change && last != last_.end() && last->second == chosen) {
    chosen = chosen > below ? below : below + 1.0;
  }
  last_[channel] = chosen;
  return WithPoint(std::llround(chosen), decimals_);
}

}  // namespace penlog
