// Turns readings of a port's lines and of its edge counters into edges, one after another.
//
// Fault model. An adapter counts each edge that it sees, but a program that wakes up late finds
// more than one counted: of one line's edges the order is certain, of several lines' it is not.
// Two edges within the time in which the adapter looks at the line are counted once or not at all.
// Lines and counters are read one after the other, and on USB the counters come up to 16 ms
// behind the lines.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/event_queue.h"
#include "platform/port_driver.h"

namespace penlog {

/// Edges that the adapter has counted on each line; they wrap around.
struct EdgeCounts {
  std::uint32_t cts = 0;
  std::uint32_t dsr = 0;
  std::uint32_t cd = 0;
  bool operator==(const EdgeCounts&) const = default;
};

struct EdgeReport {
  std::vector<ModemLines> edges;  ///< the lines after each edge, in order
  std::int64_t lost = 0;          ///< further edges that must have been, order or place unknown
};

class EdgeTracker {
 public:
  /// `counts` none: the adapter has no counters, the lines alone tell.
  EdgeTracker(ModemLines lines, std::optional<EdgeCounts> counts);

  /// The edges since the last call; `now` is any steady time. With counters these decide, and the
  /// lines only when they have differed from the count for `kDisagreementLimit`.
  EdgeReport Take(ModemLines lines, std::optional<EdgeCounts> counts, Micros now);

  /// True when lines changed and no counter ever did: the adapter has none that work.
  bool CountersAreDead() const { return counters_are_dead_; }

  static constexpr Micros kDisagreementLimit = 50 * kMillisecond;
  /// More edges of one line at once are noise: they are not played one by one.
  static constexpr std::uint32_t kMostEdgesAtOnce = 64;

 private:
  EdgeReport ByLines(ModemLines lines);
  EdgeReport ByCounts(const EdgeCounts& counts);
  EdgeReport Agree(ModemLines lines, Micros now);

  ModemLines lines_;
  std::optional<EdgeCounts> counts_;
  std::optional<Micros> disagreed_since_;
  bool counters_moved_ = false;
  bool counters_are_dead_ = false;
};

}  // namespace penlog
