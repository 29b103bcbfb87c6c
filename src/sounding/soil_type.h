// Soil behaviour type and SPT N from corrected tip resistance and sleeve friction.
#pragma once

#include "core/soil_tables.h"

namespace penlog {

struct SoilTypeAndN {
  float zone = 0;  ///< zone number of the chart; 0 none
  float n = 0;     ///< SPT N, blows for 30 cm
};

/// Zone and N by the chart of `tables` (Robertson, Campanella, Gillespie, Greig 1986): `qt` the
/// corrected tip resistance, `fs` the sleeve friction, both in the base unit, kPa. Both results are
/// 0 for a tip that isn't above 0, a negative friction, and a friction ratio beyond the table.
SoilTypeAndN SoilType(float qt, float fs, const SoilTables& tables);

}  // namespace penlog
