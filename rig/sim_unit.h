// What a cone and a module have in common: memory, a selection of channels, answers to Y X C W Z D.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rig/cone_memory.h"
#include "rig/sensors.h"

namespace penlog {

struct UnitSetup {
  UnitHeader header;
  double firmware = 3.20;  ///< printed with two places behind " V" in the banner
  std::vector<UnitRecord> channels;
  int decimals = 6;                        ///< places of a reading, in V
  bool steady = false;                     ///< without noise; for two runs that are compared
  std::array<double, 31> zero_shift = {};  ///< V, by channel: drift since the calibration
};

class SimUnit {
 public:
  SimUnit(const UnitSetup& setup, const Surroundings& surroundings, std::uint32_t seed);
  virtual ~SimUnit() = default;

  /// The answer to a command without its carriage return, with its line end; empty for none.
  /// `command` has no module prefix. An unknown command is answered with "?".
  virtual std::string Answer(std::string_view command);
  /// As after power-up or a break on the line: no selection.
  virtual void Reset() { LoseSelection(); }
  void LoseSelection() { reported_.clear(); }

  /// Numbers of the selected channels, in the order of the fixed list of letters, then of the
  /// list of records. No selection: "?".
  std::string Reading();
  /// Channels that a reading reports now, in its order.
  const std::vector<int>& ReportedChannels() const { return reported_; }

  const ConeMemory& Memory() const { return memory_; }
  const UnitSetup& Setup() const { return setup_; }
  void ShiftZero(int channel, double volts);

 protected:
  std::string Banner() const;

 private:
  std::string ReadMemory(std::string_view arguments) const;
  std::string WriteMemory(std::string_view arguments);
  void Select(std::string_view letters);
  const UnitRecord* Record(int channel) const;

  UnitSetup setup_;
  const Surroundings& surroundings_;
  ConeMemory memory_;
  Readout readout_;
  std::vector<int> reported_;
};

/// The letters in the order in which selected channels are reported.
constexpr std::string_view kReportOrder = "TFPEIJKLRVUG";

}  // namespace penlog
