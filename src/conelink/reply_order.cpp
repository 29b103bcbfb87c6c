#include "conelink/reply_order.h"

#include <string>
#include <string_view>

#include "conelink/cone_state.h"
#include "conelink/select_commands.h"
#include "core/channels.h"

namespace penlog {

namespace {

/// The letters in the order of the instrument's report; "G" only for the seismic families.
std::string_view ReportOrder() {
  const std::string family = cone.ConeId.substr(0, 3);
  const bool with_geophones = family == "DSE" || family == "DDE" || family == "DCS";
  return with_geophones ? "TFPEIJKLRVUG" : "TFPEIJKLRVU";
}

bool IsReported(int channel, int unit, char letter) {
  if (unit == 0 && IsLeftOut(channel)) return false;
  return channels.ChannelPresent(channel) == kTrue && channels.ChannelModule(channel) == unit &&
         channels.ChannelLetter(channel) == std::string(1, letter);
}

}  // namespace

void AssignReplyPositions() {
  channels.ReplyField.Fill(0);
  std::int16_t place = 0;
  for (int unit = 0; unit <= 9; ++unit) {
    if (cone.ModulePresent[static_cast<std::size_t>(unit)] != kTrue) continue;
    for (const char letter : ReportOrder()) {
      for (int channel = 1; channel <= kChannels; ++channel) {
        if (IsReported(channel, unit, letter)) channels.ReplyField(channel) = ++place;
      }
    }
  }
}

}  // namespace penlog
