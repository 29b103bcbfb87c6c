// What a notification of a modem state means for the one who counts edges.
#pragma once

#include <cstdint>

#include "platform/port_driver.h"

namespace penlog {

/// One notification, judged.
struct ModemNotice {
  bool known = false;      ///< the lines became known without an edge, as `known_lines`
  ModemLines known_lines;  ///< the lines before the edge, if there is one
  bool edge = false;       ///< the lines changed to `lines`
  ModemLines lines;
  int lost = 0;  ///< lines that are said to have changed and stand as before
};

/// Follows the notifications of one connection.
///
/// The first one tells the lines: its change bits, if any, tell what they were before. From then
/// on a notification is an edge if a line differs from the last one, changes flagged or not. A
/// flagged line that stands as before went there and back unseen.
class ModemNotices {
 public:
  ModemNotice Take(std::uint8_t modem_state);
  /// Takes a notification that came while the port was being opened: it only tells the lines.
  void TakeAtOpening(std::uint8_t modem_state);
  bool Known() const { return known_; }
  ModemLines Lines() const { return lines_; }

 private:
  bool known_ = false;
  ModemLines lines_;
};

}  // namespace penlog
