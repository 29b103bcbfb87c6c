// The console's exchange with the cone: port supervision, one command, its reply, and what a
// failure means for the link.
//
// Fault model of the link: no reply, half a reply, a late line end, trailing characters; there is
// no checksum, so any text is accepted.
#pragma once

#include <string>

namespace penlog {

/// Sends `command` and returns the reply without its line end; for `D` with one blank behind it,
/// for `B` "SEISDATA" and the block in `SeismicBlock`. Empty if there is no reply, and at once if
/// the cone's port is lost. After a failure `CommFailed` is -1, `lblCommError` counts it, and the
/// link is down, unless the command was `Y` or `ConsoleMode` is 9, when silence is expected.
std::string Main_CommStringCheck(const std::string& command);

/// The console's exchange while the link is down: no supervision, the link's state untouched; the
/// reply is returned with its line end.
std::string ReconnectCommStringCheck(const std::string& command);

/// Takes the link down as a `D` without an answer does: modules, panel, `ConeLinkUp` 0.
void LoseReading();

/// As many pauses of 55 to 110 ms.
void Main_CommPause(int times = 1);

/// Compares the fields of a reading with `ChannelCount`: "COMM ERR: nchans" and `CommFailed` when
/// they differ. Nothing calls it: readings are not checked for their number of fields.
void CountReplyFields(const std::string& reply);

}  // namespace penlog
