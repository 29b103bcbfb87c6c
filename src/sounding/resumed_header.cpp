#include "sounding/resumed_header.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/channels.h"
#include "core/resumed_zeros.h"
#include "core/session.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr std::size_t kWaterLine = 14;
constexpr std::size_t kBaselineLine = 17;

/// The others have the zero of the cone's record, which is not read for a missing channel.
bool KeepsSavedZero(int channel) {
  return channels.ChannelKeepZero(channel) != 0 || sounding.KeptColumn(channel) == kTrue;
}

/// Baselines that the recovery copy lost stand in the head, too. Where they stand nowhere the
/// record of the cone has them, which is not read for a missing channel.
void TakeLostBaselines(const FoundCpt& found, const StoredSounding& stored) {
  for (std::size_t i = 0; i < stored.columns.size(); ++i) {
    const int channel = stored.columns[i];
    const auto zero = BaselineInHead(found, channel);
    if (stored.zeros[i]) continue;
    if (zero || sounding.KeptColumn(channel) != kTrue) {
      sounding.Rows(0, channel) = zero.value_or(channels.Baselines(channel));
    }
    if (!zero || !KeepsSavedZero(channel)) continue;
    channels.Baselines(channel) = *zero;
    resumed_zeros.Restored(channel) = kTrue;
  }
}

bool KnowsBaselines(const FoundCpt& found, const StoredSounding& stored) {
  for (std::size_t i = 0; i < stored.columns.size(); ++i) {
    const int channel = stored.columns[i];
    const bool is_known =
        stored.zeros[i] || BaselineInHead(found, channel) || sounding.KeptColumn(channel) != kTrue;
    if (!is_known) return false;
  }
  return true;
}

/// Its end included.
std::size_t EndOfLine(std::string_view text, std::size_t number) {
  std::size_t end = 0;
  while (number-- > 0) end = text.find('\n', end) + 1;
  return end;
}

/// Line `number` of the copy's header, as it is written.
void WriteHeaderLine(StoredSounding& stored, std::size_t number) {
  const std::string header = TemporaryHeader(stored.main_file);
  const std::size_t from = EndOfLine(header, number - 1);
  const std::string line = header.substr(from, EndOfLine(header, number) - from);
  const std::size_t begin = EndOfLine(stored.sound_text, number - 1);
  stored.sound_text.replace(begin, EndOfLine(stored.sound_text, number) - begin, line);
}

bool TakeWaterTable(const FoundCpt& found, StoredSounding& stored) {
  const auto water_table = stored.loses_water_table ? WaterTableInHead(found) : std::nullopt;
  if (!water_table) return false;
  session.WaterTable = stored.water_table = *water_table;
  stored.loses_water_table = false;
  WriteHeaderLine(stored, kWaterLine);
  return true;
}

bool TakeBaselines(const FoundCpt& found, StoredSounding& stored) {
  TakeLostBaselines(found, stored);
  const bool loses = std::count(stored.zeros.begin(), stored.zeros.end(), std::nullopt) > 0;
  if (!loses || !KnowsBaselines(found, stored)) return false;
  for (std::size_t i = 0; i < stored.columns.size(); ++i) {
    stored.zeros[i] = sounding.Rows(0, stored.columns[i]);
  }
  WriteHeaderLine(stored, kBaselineLine);
  return true;
}

}  // namespace

bool TakeLostHeaderLines(const FoundCpt& found, StoredSounding& stored) {
  const bool takes_water_table = TakeWaterTable(found, stored);
  return TakeBaselines(found, stored) || takes_water_table;
}

}  // namespace penlog
