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

}  // namespace

bool IsLeftOut(int channel) {
  const bool seismic_family = StartsWith(cone.ConeId, "DSE") || StartsWith(cone.ConeId, "DDE");
  return seismic_family && (channel == 8 || channel == 9 || channel > 20);
}

void BuildSelectCommands() {
  const auto selected = [](int channel) { return !IsLeftOut(channel); };
  cone.ChannelSelectCommand = "Z " + Letters(1, 18, selected) + Letters(21, 30, selected);
  cone.ReducedSelectCommand = "Z " + Letters(1, 2, Any);
}

std::string ModuleSelection(int m) {
  const auto own = [m](int channel) { return channels.ChannelModule(channel) == m; };
  return LeadingBlankNumber(m) + "Z " + Letters(1, 18, own) + Letters(21, 30, Any);
}

}  // namespace penlog
