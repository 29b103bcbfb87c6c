#include "sounding/resumed_columns.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/message.h"
#include "display/display_state.h"
#include "display/graph_slots.h"
#include "platform/numbers.h"
#include "screens/last_sounding_parameters.h"
#include "sounding/reached.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

bool IsRecorded(const StoredSounding& stored, int channel) {
  return std::binary_search(stored.columns.begin(), stored.columns.end(), channel);
}

bool HasField(const StoredSounding& stored, int channel) {
  return std::find(stored.row_channels.begin(), stored.row_channels.end(), channel) !=
         stored.row_channels.end();
}

/// A channel that is no column is not recorded any more, one that is stays; one without a field in
/// the rows keeps its header column alone.
std::int16_t ModeOf(const StoredSounding& stored, int channel) {
  if (!IsRecorded(stored, channel)) return 0;
  const std::int16_t mode = channels.RecordMode(channel);
  if (channel == 21 || channel == 22) return mode > 0 ? mode : std::int16_t{1};
  if (!HasField(stored, channel)) return 3;
  return mode == 2 ? mode : std::int16_t{1};
}

std::string NameOf(int channel) {
  const std::string& label = channels.ChannelLabel(1, channel);
  return PlainNumber(channel) + (label.empty() ? "" : " (" + label + ")");
}

bool AnyIsMissing() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (sounding.KeptColumn(channel) == kTrue) return true;
  }
  return false;
}

/// Its record is not read, and nothing stands in the file: the values stay in their own rows.
bool IsDelayUnknown(const FoundCpt& found, int channel) {
  if (sounding.KeptColumn(channel) != kTrue || DelayInFile(found, channel)) return false;
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) {
    if (IsReached(sounding.Rows(row, channel))) return true;
  }
  return false;
}

}  // namespace

void TakeColumns(const StoredSounding& stored) {
  std::string lacking;
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == 19 || channel == 20) continue;
    channels.RecordMode(channel) = ModeOf(stored, channel);
    const bool lacks = IsRecorded(stored, channel) && channels.ChannelPresent(channel) != kTrue;
    sounding.KeptColumn(channel) = lacks ? kTrue : kFalse;
    if (lacks) lacking += (lacking.empty() ? "" : ", ") + NameOf(channel);
  }
  if (lacking.empty()) return;
  Tell(
      "RECORDED CHANNELS ARE MISSING NOW.  THEIR COLUMNS STAY IN THE FILE, AND NEW ROWS HOLD "
      "-32768 THERE: " +
      lacking);
}

void TakeGraphs(const StoredSounding& stored) {
  display.GraphChannel = {};
  display.GraphChannel[1] = 1;
  std::copy(stored.graphs.begin(), stored.graphs.end(), display.GraphChannel.begin() + 2);
  KeepGraphSlots([](int channel) { return channels.ChannelPresent(channel) == kTrue; });
  display.GraphCount = static_cast<std::int16_t>(1 + FilledSlots());
}

void FormDelays(const FoundCpt& found) {
  for (const int channel : RowChannels()) {
    if (sounding.KeptColumn(channel) != kTrue) continue;
    channels.ChannelDelayRows(channel) = DelayInFile(found, channel).value_or(std::int16_t{0});
  }
  FormDelayRows();
  if (AnyIsMissing()) cone.DelayRows = LagOfFile(found, cone.DelayRows);
}

void TellUnknownDelays(const FoundCpt& found) {
  std::string unknown;
  for (const int channel : RowChannels()) {
    if (IsDelayUnknown(found, channel)) unknown += (unknown.empty() ? "" : ", ") + NameOf(channel);
  }
  if (unknown.empty()) return;
  Tell(
      "NOTHING TELLS HOW FAR THE SENSORS OF MISSING CHANNELS SIT FROM THE TIP.  THEIR VALUES STAND "
      "IN THE ROWS IN WHICH THEY WERE READ, NOT MOVED TO THEIR DEPTHS: " +
      unknown);
}

}  // namespace penlog
