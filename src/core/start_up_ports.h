// The serial ports are proved one after the other before the cone is looked for.
#pragma once

namespace penlog {

/// Keeps the four port numbers. Whether cone and truck interface share a port is judged by them for
/// the rest of the session, so they are kept again when a port changed.
void KeepStartPorts();

/// Undoes what a resume did that was given up: its cone answered under the number of the truck
/// interface, and both have their numbers of before again. `KeepStartPorts` does so, too.
void GiveBackTrucksNumber();

/// Asks for each port that was set and isn't there; saves the settings if one changed. False when
/// the start can't go on: the operator was told, and the buttons that lead on are enabled.
bool ProveStartPorts();

/// The part of it for a truck interface on a port of its own. After a change of the cone's port the
/// operator chooses anew in any case: what plugged in elsewhere may have moved both. `changed`
/// becomes true if a port was chosen. False when the start can't go on.
bool ProveTruckPort(bool cone_port_changed, bool& changed);

/// Scans all ports for a cone and takes the one that answers; false if none did. The operator is
/// told either way.
bool FindConePort();

}  // namespace penlog
