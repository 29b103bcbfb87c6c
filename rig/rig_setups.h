// Ready-made rigs, by name:
//
//   dcs          tip, sleeve that subtracts the tip, u2, two inclinometers; encoder
//   dcs-swapped  the same with encoder direction 1
//   dcs-shared   the same with the truck's lines on the cone's own port
//   dcs-modules  the same with modules 2 (hydrophone) and 5 (resistivity, fluorescence)
//   dcs-plain    tip and sleeve, nothing else, all sensors at the tip
//   proximity    as dcs with a proximity counter of 2 cm, clamp and pressure switch
//   prox-shared  the same on the cone's own port
//   dse, dde     seismic cones: geophones on channels 8 and 9, and a temperature
//   dpg          seismic cone with one shear and one pressure geophone, older firmware
//
// The sensors of "dcs" lie 0, 100, 40, 60 and 80 mm above the tip: with rows each 2 cm the files
// lag 5 rows.
#pragma once

#include <string>
#include <vector>

#include "rig/rig.h"

namespace penlog {

/// Raises a `RuntimeFault` that lists the names for an unknown one.
RigSetup MakeRigSetup(const std::string& name);
std::vector<std::string> RigSetupNames();

}  // namespace penlog
