#include "conelink/select_commands.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

namespace {

/// Letters of the channels from `first` to `last` that are present and pass the test.
template <class Test>
std::string Letters(int first, int last, Test test) {
  std::string letters;
  for (int channel = first; channel <= last; ++channel) {
    const bool present = channels.ChannelPresent(channel) == kTrue;
    if (present && test(channel)) letters += channels.ChannelLetter(channel);
  }
  return letters;
}

bool Any(int) {
  return true;
}

bool IsNoGeophone(int channel) {
  return channel != 8 && channel != 9;
}

}  // namespace

void BuildSelectCommands() {
  const bool seismic_family = StartsWith(cone.ConeId, "DSE") || StartsWith(cone.ConeId, "DDE");
  cone.ChannelSelectCommand = "Z " + (seismic_family ? Letters(1, 18, IsNoGeophone)
                                                     : Letters(1, 18, Any) + Letters(21, 30, Any));
  cone.ReducedSelectCommand = "Z " + Letters(1, 2, Any);
}

std::string ModuleSelection(int m) {
  const auto own = [m](int channel) { return channels.ChannelModule(channel) == m; };
  return LeadingBlankNumber(m) + "Z " + Letters(1, 18, own) + Letters(21, 30, Any);
}

}  // namespace penlog
