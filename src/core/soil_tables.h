// The tables of soil behaviour type and SPT, as the file "intubc.asc" holds them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/value_reader.h"

namespace penlog {

constexpr int kSoilIndices = 101;   ///< tenths of a percent of friction ratio, 0 to 100
constexpr int kSoilColumns = 9;     ///< columns 1 to 8 of the file; entry 0 is unused
constexpr int kSoilBands = 7;       ///< columns 1 to 7 are searched
constexpr int kSoilClasses = 12;    ///< zones 1 to 12
constexpr int kGroundZone = 2;      ///< the zone below all bands
constexpr float kTipToBar = 0.01f;  ///< from the base unit of the tip, kPa

struct SoilTables {
  /// [friction ratio index][band][0 zone, 1 lower bound as log10 of corrected tip in bar]; a zone
  /// of 0 is no band. Chart: Robertson et al. (1986), 12 zones.
  std::array<std::array<std::array<float, 2>, kSoilColumns>, kSoilIndices> SbtTable{};
  std::int16_t FrictionRatioMax = 0;                 ///< indices of SbtTable that hold data
  std::array<float, kSoilClasses + 1> SptDivisor{};  ///< by zone: corrected tip in bar over N
  std::array<std::int16_t, kSoilClasses + 1> ClassNumber{};  ///< the zone itself; 0 is no class
  std::array<std::string, kSoilClasses + 1> ClassName;
  std::array<std::string, kSoilClasses + 1> ClassShortName;
  std::string SoilNote;  ///< the reference line for reports
};

inline SoilTables soil;

/// Reads "intubc.asc" into `soil`. A file that is damaged or contradicts itself raises RuntimeFault
/// with a text for the operator, and `soil` keeps what it held.
void LoadSoilTables(ValueReader& file);

}  // namespace penlog
