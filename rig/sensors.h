// From engineering values to what the instrument prints: outputs in volts with zero, span and the
// load of a subtracted channel on them, printed with a noise that stays below one unit of the last
// place.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "rig/cone_memory.h"
#include "rig/surroundings.h"

namespace penlog {

/// The record with its numbers as four characters of memory hold them.
UnitRecord AsStored(UnitRecord record);

/// Output in V of the channel of `record`: zero + span * value / full scale, with the output at
/// full scale and at zero as the memory holds them; for a channel that subtracts another, plus its
/// factor * that channel's value / full scale. Channel 14 is the divider of a resistor whose
/// temperature is A * x^B: 0.05 + 5000 / (x + 2000). `shift` is a drift of the zero, in V.
double SensorOutput(const UnitRecord& record, const std::vector<UnitRecord>& all,
                    const Surroundings& surroundings, double shift);

/// Prints outputs. Each print is one of the two neighbouring numbers of `decimals` places around
/// the output, the nearer one more often, so that the mean of many is the output; the first number
/// of a reading never repeats, so that two readings always differ. A steady one always prints the
/// nearest number: readings of one place are then the same in two runs, however many there were.
class Readout {
 public:
  Readout(int decimals, std::uint32_t seed, bool steady = false);
  /// `channel` tells whose last print it must not repeat when `must_change`.
  std::string Print(int channel, double output, bool must_change);

 private:
  double Uniform();

  std::size_t decimals_;
  double unit_ = 1e-6;
  bool steady_ = false;
  std::mt19937 random_;
  std::map<int, double> last_;
};

}  // namespace penlog
