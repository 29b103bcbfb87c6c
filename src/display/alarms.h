// A new alarm sounds one tone, and the enlarged graph makes way for it: a quit has latched, a link
// was lost, rows stand in memory alone, the sounding file lags.
#pragma once

#include <array>
#include <cstddef>

namespace penlog {

enum class Alarm : std::size_t { Quit, ConeLink, TruckLink, RowsHeld, FileLags };
constexpr std::size_t kAlarms = 5;

/// What stands on at one time, by `Alarm`.
using AlarmSet = std::array<bool, kAlarms>;

/// How many stand on now that did not before: as many tones are sounded. A file that lags while
/// rows stand in memory alone has their cause, and counts for none.
int NewAlarms(const AlarmSet& before, const AlarmSet& now);

struct AlarmState {
  AlarmSet On{};
};

inline AlarmState alarms;

/// Part of the console's timer; never yields.
void FollowAlarms();

}  // namespace penlog
