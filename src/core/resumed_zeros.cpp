#include "core/resumed_zeros.h"

#include <string>

#include "core/channels.h"
#include "core/message.h"
#include "platform/numbers.h"

namespace penlog {

namespace {

bool HasZeroOfRecord(int channel) {
  return channels.ChannelKeepZero(channel) != 0 && channels.ChannelPresent(channel) == kTrue &&
         channels.ChannelComputed(channel) == 0 && resumed_zeros.Restored(channel) != kTrue;
}

}  // namespace

void TellZerosOfRecord() {
  std::string list;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (!HasZeroOfRecord(channel)) continue;
    const std::string& label = channels.ChannelLabel(1, channel);
    list += (list.empty() ? "" : ", ") + PlainNumber(channel);
    if (!label.empty()) list += " (" + label + ")";
  }
  if (list.empty()) return;
  Tell(
      "THE LAST SOUNDING SAVED NO BASELINE OF THESE CHANNELS.  THEY GO ON WITH THE ZERO OF THE "
      "CONE'S CALIBRATION: " +
      list);
}

}  // namespace penlog
