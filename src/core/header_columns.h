// Channels of which the files hold the column of the header and no field in the rows.
#pragma once

#include "core/channels.h"

namespace penlog {

/// Of a recorded channel whose own file says so, by its record mode.
inline bool HasHeaderColumnOnly(int channel) {
  return channels.RecordMode(channel) == 3;
}

}  // namespace penlog
