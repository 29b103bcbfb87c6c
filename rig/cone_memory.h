// The memory of a cone or a module: a header of 30 characters and the list of channel records.
// Addresses count characters from 1.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace penlog {

/// One row of the channel table, as the maker of the instrument knows it.
struct UnitRecord {
  int channel = 1;  ///< 1 to 30; others are laid down too, as a damaged memory holds them
  char letter = 'T';
  double full_scale = 1.0;       ///< engineering units (kPa, deg)
  double at_full_scale = 1.0;    ///< output there; for channel 14 factor A of its power law
  double at_zero = 0.0;          ///< output at zero; for channel 14 exponent B
  int distance_mm = 0;           ///< from the tip
  int subtract = 0;              ///< channel whose load acts on this one; 0 for none
  double subtract_factor = 0.0;  ///< output here at full scale of that channel
  std::int32_t area_mm2 = 0;     ///< active area; 0 for no area sub-record
};

struct UnitHeader {
  std::string field1 = "03";          ///< 2 characters
  std::string id = "DCS0001";         ///< 7 characters; the first three name the family
  std::string created = "120315";     ///< 6 characters
  std::string calibrated = "260302";  ///< 6 characters
  std::int32_t distance_pushed = 0;
  std::int32_t memory_size = 4096;
  std::int32_t clock_frequency = 14745;
};

class ConeMemory {
 public:
  ConeMemory(const UnitHeader& header, const std::vector<UnitRecord>& records);

  /// `length` characters from `address` on. What lies outside reads as "@", the code of nothing.
  std::string Read(int address, int length) const;
  /// False, and nothing written, when the place lies outside or `data` has another length.
  bool Write(int address, int length, std::string_view data);

  std::string Id() const { return Read(3, 7); }
  std::int32_t DistancePushed() const;

 private:
  std::string text_;
};

/// The record as it lies in memory: 17 characters, then 5 for a subtraction and 3 for an area.
std::string RecordText(const UnitRecord& record);

}  // namespace penlog
