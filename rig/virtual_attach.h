// Plugs a rig into ports in memory.
#pragma once

#include "platform/virtual_ports.h"
#include "rig/rig.h"

namespace penlog {

/// The cone on COM `cone_port`, the truck on COM `truck_port` (not used with a shared port). The
/// words "replug" and "fault replugged" give the wires other numbers.
void AttachToPorts(Rig& rig, VirtualPorts& ports, int cone_port, int truck_port);

}  // namespace penlog
