// Which baselines of a resumed sounding are its own: what its files don't hold is not kept over the
// cone's record.
#pragma once

#include <cstdint>

#include "core/channel_table.h"

namespace penlog {

struct ResumedZerosState {
  ChannelTable<std::int16_t> Restored;  ///< -1 `Baselines` holds what the sounding's files had
};

inline ResumedZerosState resumed_zeros;

/// Tells the channels that take a baseline, are there and have none of the sounding: they go on
/// with the zero of the cone's record.
void TellZerosOfRecord();

}  // namespace penlog
