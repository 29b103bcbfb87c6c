#include "sounding/recovered_rows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "sounding/reached.h"
#include "sounding/resume_depth.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr float kSameDepth = 0.0051f;  ///< m; the recovery copy's last digit, and its rounding
constexpr float kSameSpeed = 0.0051f;  ///< cm/s; the same
constexpr float kMostOfAStep = 1.5f;   ///< depth steps; rows further apart may have lost some
constexpr std::size_t kHeaderLines = 17;

/// A row of the sounding, from where it is known.
struct Slot {
  StoredRow row;
  std::ptrdiff_t copy = -1;  ///< its place in the recovery copy, from 0
  std::ptrdiff_t cpt = -1;   ///< its place in the `.cpt` file, from 0
};
using Slots = std::vector<Slot>;

std::ptrdiff_t Count(const auto& list) {
  return static_cast<std::ptrdiff_t>(list.size());
}

bool Rise(const std::vector<StoredRow>& rows) {
  return std::adjacent_find(rows.begin(), rows.end(), [](const auto& above, const auto& below) {
           return above.depth >= below.depth;
         }) == rows.end();
}

/// The whole rows of the file, up to the first that is none or lies no deeper than the one before.
std::vector<StoredRow> RisingRows(const FoundCpt& found) {
  std::vector<StoredRow> rows;
  for (std::size_t place = 0; place < found.rows.size(); ++place) {
    auto row = ReadCptRow(found, place);
    if (!row || (!rows.empty() && row->depth <= rows.back().depth)) break;
    rows.push_back(std::move(*row));
  }
  return rows;
}

/// Both in the order of their depths; those of the file alone have its depth and no values yet.
Slots Merged(const std::vector<StoredRow>& copy, const std::vector<StoredRow>& cpt) {
  Slots slots;
  std::ptrdiff_t i = 0;
  std::ptrdiff_t k = 0;
  while (i < Count(copy) || k < Count(cpt)) {
    const bool has_copy = i < Count(copy);
    const bool has_cpt = k < Count(cpt);
    const float apart = !has_copy  ? -1.0f
                        : !has_cpt ? 1.0f
                                   : cpt[static_cast<std::size_t>(k)].depth -
                                         copy[static_cast<std::size_t>(i)].depth;
    const bool same = has_copy && has_cpt && std::abs(apart) <= kSameDepth;
    Slot slot;
    if (same || apart < 0) slot.cpt = k++;
    if (same || apart > 0) slot.copy = i++;
    slot.row = slot.copy >= 0 ? copy[static_cast<std::size_t>(slot.copy)]
                              : StoredRow{cpt[static_cast<std::size_t>(slot.cpt)].depth, 0, {}};
    slots.push_back(std::move(slot));
  }
  return slots;
}

/// The rows of the slots in memory; a value that is not known is none.
void Load(const Slots& slots) {
  const std::vector<int> columns = RowChannels();
  sounding.RowCount = 0;
  for (const Slot& slot : slots) {
    sounding.RowSpeed(sounding.RowCount) = slot.row.speed;
    ++sounding.RowCount;
    ForgetReadings(sounding.RowCount);
    sounding.Rows(sounding.RowCount, 0) = slot.row.depth;
    for (std::size_t j = 0; j < columns.size(); ++j) {
      sounding.Rows(sounding.RowCount, columns[j]) =
          j < slot.row.values.size() ? slot.row.values[j] : kNoReading;
    }
  }
}

/// Closing lines of an end that was cut off hold none of the channel that lags most.
bool LooksClosing(const StoredRow& row, const std::vector<int>& columns) {
  for (std::size_t j = 0; j < columns.size(); ++j) {
    if (channels.ChannelDelayRows(columns[j]) == cone.DelayRows && !IsReached(row.values[j])) {
      return true;
    }
  }
  return false;
}

/// How many of the file's rows are none of an unfinished end, which has `DelayRows` at most.
std::ptrdiff_t CountRealRows(const std::vector<StoredRow>& cpt, const std::vector<int>& columns) {
  std::ptrdiff_t real = Count(cpt);
  const std::ptrdiff_t least = std::max<std::ptrdiff_t>(real - cone.DelayRows, 0);
  while (real > least && LooksClosing(cpt[static_cast<std::size_t>(real - 1)], columns)) --real;
  return real;
}

bool AnyLagsAsTheFile(const std::vector<int>& columns) {
  return std::any_of(columns.begin(), columns.end(), [](int channel) {
    return channels.ChannelDelayRows(channel) == cone.DelayRows;
  });
}

/// How many speeds of the file are others than those in memory `lag` rows further on.
int SpeedsApart(const Slots& slots, const std::vector<StoredRow>& cpt, std::size_t lag) {
  int apart = 0;
  for (std::size_t place = 0; place + lag < slots.size(); ++place) {
    const std::ptrdiff_t row = slots[place].cpt;
    if (row < 0 || slots[place + lag].copy < 0) continue;
    const float speed = cpt[static_cast<std::size_t>(row)].speed;
    apart += std::abs(speed - slots[place + lag].row.speed) < kSameSpeed ? 0 : 1;
  }
  return apart;
}

/// A file that was begun without a channel that lags more is aligned otherwise than it should be.
bool IsAlignedOtherwise(const Slots& slots, const std::vector<StoredRow>& cpt) {
  const auto lag = static_cast<std::size_t>(cone.DelayRows);
  const int wanted = SpeedsApart(slots, cpt, lag);
  for (std::size_t other = 0; other < lag; ++other) {
    if (SpeedsApart(slots, cpt, other) < wanted) return true;
  }
  return false;
}

/// Rows whose depths stand nowhere, `count` of them before slot `place`, in depth steps or evenly.
Slots WithRows(const Slots& slots, std::size_t place, std::ptrdiff_t count) {
  const float above = slots[place - 1].row.depth;
  const float step = place < slots.size()
                         ? (slots[place].row.depth - above) / static_cast<float>(count + 1)
                         : settings.DepthStep;
  Slots all(slots.begin(), slots.begin() + static_cast<std::ptrdiff_t>(place));
  for (std::ptrdiff_t i = 1; i <= count; ++i) {
    all.push_back({{above + step * static_cast<float>(i), 0, {}}, -1, -1});
  }
  all.insert(all.end(), slots.begin() + static_cast<std::ptrdiff_t>(place), slots.end());
  return all;
}

/// The row of the file in which the value of slot `place` stands that lags `delay` rows.
const StoredRow* Source(const Slots& slots, const std::vector<StoredRow>& cpt, std::ptrdiff_t place,
                        std::int16_t delay) {
  const std::ptrdiff_t from = place - delay;
  if (from < 0) return nullptr;
  const std::ptrdiff_t row = slots[static_cast<std::size_t>(from)].cpt;
  return row < 0 || row >= Count(cpt) ? nullptr : &cpt[static_cast<std::size_t>(row)];
}

void Fill(Slots& slots, const std::vector<StoredRow>& cpt, const std::vector<int>& columns) {
  for (std::ptrdiff_t place = 0; place < Count(slots); ++place) {
    Slot& slot = slots[static_cast<std::size_t>(place)];
    if (slot.copy >= 0) continue;
    const StoredRow* speed = Source(slots, cpt, place, cone.DelayRows);
    slot.row.speed = speed == nullptr ? 0.0f : speed->speed;
    slot.row.values.assign(columns.size(), kNoReading);
    for (std::size_t j = 0; j < columns.size(); ++j) {
      const StoredRow* row = Source(slots, cpt, place, channels.ChannelDelayRows(columns[j]));
      if (row != nullptr) slot.row.values[j] = row->values[j];
    }
  }
}

/// The rows in memory, to be put back.
struct RowsBefore {
  std::int32_t count = sounding.RowCount;
  RowTable rows = sounding.Rows;
  RowColumn speeds = sounding.RowSpeed;
  void Restore() const {
    sounding.RowCount = count;
    sounding.Rows = rows;
    sounding.RowSpeed = speeds;
  }
};

int Disagreements(const FoundCpt& found) {
  const CptMending mending = MendCpt(found);
  return mending.changed + mending.taken_out;
}

/// Where the rows may be lacking that the file needs and that it does not place.
std::vector<Slots> Candidates(const Slots& slots, std::ptrdiff_t real) {
  std::ptrdiff_t last = Count(slots) - 1;  // the slot of the file's last row
  while (last >= 0 && slots[static_cast<std::size_t>(last)].cpt != real - 1) --last;
  const std::ptrdiff_t lacking = last + 1 + cone.DelayRows - Count(slots);
  if (last < 0 || lacking <= 0) return {slots};
  std::vector<Slots> all = {WithRows(slots, slots.size(), lacking)};
  for (auto place = static_cast<std::size_t>(last) + 1; place < slots.size(); ++place) {
    const float room = slots[place].row.depth - slots[place - 1].row.depth;
    const float least = static_cast<float>(lacking) - 1.0f + kMostOfAStep;
    if (room >= least * settings.DepthStep) all.push_back(WithRows(slots, place, lacking));
  }
  return all;
}

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return lines;
}

/// The rows before a mark of a gap: with those that follow in depth steps and were put back.
std::int32_t RowsBeforeGap(const Slots& slots, std::int32_t gap) {
  std::ptrdiff_t place = 0;
  while (place < Count(slots) && slots[static_cast<std::size_t>(place)].copy < gap - 1) ++place;
  if (gap == 0) return 0;
  for (++place; place < Count(slots); ++place) {
    const Slot& slot = slots[static_cast<std::size_t>(place)];
    const float above = slots[static_cast<std::size_t>(place - 1)].row.depth;
    if (slot.copy >= 0 || slot.row.depth - above > kMostOfAStep * settings.DepthStep) break;
  }
  return static_cast<std::int32_t>(place);
}

/// Lines that stand in the copy stay as they are.
void Store(const Slots& slots, StoredSounding& stored) {
  const std::string before = stored.sound_text;
  const std::vector<std::string_view> lines = LinesOf(before);
  std::vector<std::string_view> rows;
  std::vector<std::string_view> marks;
  for (std::size_t i = kHeaderLines; i < lines.size(); ++i) {
    (lines[i].starts_with(kGapMark) ? marks : rows).push_back(lines[i]);
  }
  std::transform(stored.gaps.begin(), stored.gaps.end(), stored.gaps.begin(),
                 [&](std::int32_t gap) { return RowsBeforeGap(slots, gap); });
  stored.sound_text.clear();
  for (std::size_t i = 0; i < kHeaderLines; ++i) stored.sound_text += lines[i];
  stored.rows.clear();
  std::size_t mark = 0;
  for (std::int32_t row = 0; row <= static_cast<std::int32_t>(slots.size()); ++row) {
    if (row > 0) {
      const Slot& slot = slots[static_cast<std::size_t>(row - 1)];
      stored.sound_text += slot.copy >= 0 ? std::string(rows[static_cast<std::size_t>(slot.copy)])
                                          : TemporaryRow(row);
      stored.rows.push_back(slot.row);
    }
    for (; mark < marks.size() && stored.gaps[mark] == row; ++mark) {
      stored.sound_text += marks[mark];
    }
  }
  if (!stored.gaps.empty()) resume_depth.RowsAtGap = stored.gaps.back();
}

/// As they are placed where the rows are read.
void PlaceDepths(float last_before) {
  sounding.Rows(0, 0) = sounding.Rows(1, 0) - settings.DepthStep;
  session.StartDepth = sounding.Rows(0, 0);
  sounding.DepthCounts =
      settings.DepthStep / settings.DepthResolution * static_cast<float>(sounding.RowCount);
  if (session.ResumeDepthStatus == 0.0f) {
    sounding.CurrentDepth = sounding.Rows(sounding.RowCount, 0);
    return;
  }
  session.ResumeTargetDepth += sounding.Rows(sounding.RowCount, 0) - last_before;
  sounding.CurrentDepth = settings.DepthFormat == 1 ? session.StartDepth : 0.0f;
}

bool IsIncomplete(const StoredRow& row, const std::vector<int>& columns) {
  for (std::size_t j = 0; j < columns.size(); ++j) {
    if (sounding.KeptColumn(columns[j]) != kTrue && !IsReached(row.values[j])) return true;
  }
  return false;
}

RecoveredRows Told(const Slots& slots, const std::vector<int>& columns, float last_before) {
  RecoveredRows told;
  for (const Slot& slot : slots) {
    if (slot.copy >= 0) continue;
    if (told.count++ == 0) told.first = slot.row.depth;
    told.last = slot.row.depth;
    told.incomplete += IsIncomplete(slot.row, columns) ? 1 : 0;
  }
  told.behind_copy = slots.back().row.depth - last_before;
  return told;
}

/// The candidate with fewest rows that disagree, fewer than `most`.
std::optional<Slots> Best(const FoundCpt& found, std::vector<Slots> candidates,
                          const std::vector<StoredRow>& cpt, int most) {
  const std::vector<int> columns = RowChannels();
  std::optional<Slots> best;
  for (Slots& slots : candidates) {
    if (slots.size() > static_cast<std::size_t>(kMostRows)) continue;
    Fill(slots, cpt, columns);
    Load(slots);
    const int disagree = Disagreements(found);
    if (disagree >= most) continue;
    most = disagree;
    best = std::move(slots);
  }
  return best;
}

/// The rows of the file, and those of both with what is known of their places.
std::vector<Slots> Places(const FoundCpt& found, const StoredSounding& stored,
                          std::vector<StoredRow>& cpt, void (*form_delays)(const FoundCpt&)) {
  Slots slots = Merged(stored.rows, cpt);
  if (slots.size() > static_cast<std::size_t>(kMostRows)) return {};
  Load(slots);
  form_delays(found);
  const std::vector<int> columns = RowChannels();
  if (!AnyLagsAsTheFile(columns) || IsAlignedOtherwise(slots, cpt)) return {};
  const std::ptrdiff_t real = CountRealRows(cpt, columns);
  cpt.resize(static_cast<std::size_t>(real));
  std::erase_if(slots, [&](const Slot& slot) { return slot.copy < 0 && slot.cpt >= real; });
  return Candidates(slots, real);
}

}  // namespace

std::optional<RecoveredRows> RecoverRows(const FoundCpt& found, StoredSounding& stored,
                                         void (*form_delays)(const FoundCpt&)) {
  const bool is_same = stored.row_channels == RowChannels() &&
                       Count(stored.rows) == static_cast<std::ptrdiff_t>(sounding.RowCount);
  const int most = Disagreements(found);
  if (!found.has_head || !is_same || most == 0 || !Rise(stored.rows)) return std::nullopt;
  const RowsBefore before;
  const float last_before = sounding.Rows(sounding.RowCount, 0);
  std::vector<StoredRow> cpt = RisingRows(found);
  const auto best = Best(found, Places(found, stored, cpt, form_delays), cpt, most);
  if (!best) {
    before.Restore();
    form_delays(found);
    return std::nullopt;
  }
  Load(*best);
  Store(*best, stored);
  PlaceDepths(last_before);
  return Told(*best, RowChannels(), last_before);
}

std::optional<float> DepthBehindRows(const FoundCpt& found) {
  std::optional<float> deepest;
  for (std::size_t place = 0; place < found.rows.size(); ++place) {
    const auto row = ReadCptRow(found, place);
    if (row) deepest = std::max(deepest.value_or(row->depth), row->depth);
  }
  const float last = sounding.Rows(sounding.RowCount, 0);
  return deepest && *deepest > last + kSameDepth ? deepest : std::nullopt;
}

}  // namespace penlog
