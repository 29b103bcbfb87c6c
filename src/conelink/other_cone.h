// The cone whose records this sounding goes by, and whether another one answers in its place.
#pragma once

#include <string>

namespace penlog {

struct KnownConeState {
  std::string Number;    ///< of the cone whose memory was read; empty before
  std::string Answered;  ///< the number told last as another one's; empty while the right one is on
};

inline KnownConeState known_cone;

/// Keeps the number of the cone whose records were read just now.
void NoteKnownCone();
/// The number under which the sounding is recorded: of the cone whose records its rows go by.
std::string RecordedConeNumber();
/// Whether a number that a cone gives is another than that of the cone that was there last.
bool IsOtherThanKnown(const std::string& number);
/// True while another cone answers in its place.
bool IsOtherCone();
/// Looks at the number that a resynchronised cone gave. Another than the known one is told, once:
/// its values are formed with the factors and zeros of the known one. So is that one's return.
void TellOtherCone();

}  // namespace penlog
