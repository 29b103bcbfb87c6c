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
#include "core/resume_waits.h"
#include "core/session.h"
#include "core/settings.h"
#include "sounding/lacking_rows.h"
#include "sounding/merged_rows.h"
#include "sounding/reached.h"
#include "sounding/resume_depth.h"
#include "sounding/resumed_columns.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr float kSameSpeed = 0.0051f;  ///< cm/s; the recovery copy's last digit, and its rounding
constexpr std::size_t kHeaderLines = 17;

std::ptrdiff_t Count(const auto& list) {
  return static_cast<std::ptrdiff_t>(list.size());
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

/// Whether a line of the file may belong to an end that begins behind `real` rows. There each value
/// stands in its own row, as it stood further up where it was aligned, and -32768 for a sensor that
/// did not get there.
bool FitsEnd(const std::vector<StoredRow>& cpt, std::ptrdiff_t real, std::ptrdiff_t place,
             const std::vector<int>& columns) {
  const auto line_at = [&](std::ptrdiff_t at) -> const StoredRow& {
    return cpt[static_cast<std::size_t>(at)];
  };
  const StoredRow& line = line_at(place);
  const std::ptrdiff_t number = place - real + 1;
  const std::ptrdiff_t lag = cone.DelayRows;
  if (place >= lag && std::abs(line.speed - line_at(place - lag).speed) >= kSameSpeed) return false;
  for (std::size_t j = 0; j < columns.size(); ++j) {
    const std::ptrdiff_t delay = channels.ChannelDelayRows(columns[j]);
    if (number > lag - delay) {
      if (IsReached(line.values[j])) return false;
    } else if (number <= delay && place >= delay) {
      if (!IsSameValue(line.values[j], line_at(place - delay).values[j])) return false;
    }
  }
  return true;
}

/// How many of the file's rows are none of an unfinished end, which has `DelayRows` at most. A
/// channel that is missing since a resume holds -32768 in real rows as well: all must fit, but for
/// one line in several that is damaged.
std::ptrdiff_t CountRealRows(const std::vector<StoredRow>& cpt, const std::vector<int>& columns) {
  const std::ptrdiff_t all = Count(cpt);
  for (auto real = std::max<std::ptrdiff_t>(all - cone.DelayRows, 0); real < all; ++real) {
    if (!FitsEnd(cpt, real, real, columns)) continue;
    std::ptrdiff_t fit = 1;
    for (auto place = real + 1; place < all; ++place) {
      fit += FitsEnd(cpt, real, place, columns) ? 1 : 0;
    }
    if (fit + (fit > 1 ? 1 : 0) >= all - real) return real;
  }
  return all;
}

/// How many speeds of the file are others than those in memory `lag` rows further on, as far as
/// slot `last`.
int SpeedsApart(const Slots& slots, const std::vector<StoredRow>& cpt, std::size_t lag,
                std::size_t last) {
  int apart = 0;
  for (std::size_t place = 0; place + lag <= last; ++place) {
    const std::ptrdiff_t row = slots[place].cpt;
    if (row < 0 || slots[place + lag].copy < 0) continue;
    const float speed = cpt[static_cast<std::size_t>(row)].speed;
    apart += std::abs(speed - slots[place + lag].row.speed) < kSameSpeed ? 0 : 1;
  }
  return apart;
}

/// The slot of the file's last row; -1 where it has none.
std::ptrdiff_t LastOfFile(const Slots& slots, std::ptrdiff_t rows) {
  std::ptrdiff_t last = rows == 0 ? -1 : Count(slots) - 1;
  while (last >= 0 && slots[static_cast<std::size_t>(last)].cpt != rows - 1) --last;
  return last;
}

/// A file that was begun without a channel that lags more is aligned otherwise than it should be.
/// Rows may be lacking behind its last one: where it is long enough they are not compared.
bool IsAlignedOtherwise(const Slots& slots, const std::vector<StoredRow>& cpt) {
  if (slots.empty()) return false;
  const auto lag = static_cast<std::size_t>(cone.DelayRows);
  const std::ptrdiff_t of_file = LastOfFile(slots, Count(cpt));
  const std::size_t last =
      of_file < cone.DelayRows ? slots.size() - 1 : static_cast<std::size_t>(of_file);
  const int wanted = SpeedsApart(slots, cpt, lag, last);
  for (std::size_t other = 0; other < lag; ++other) {
    if (SpeedsApart(slots, cpt, other, last) < wanted) return true;
  }
  return false;
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

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return lines;
}

/// The marks of the copy in their new places.
void MoveMarks(const Slots& slots, StoredSounding& stored) {
  const std::vector<std::int32_t> before = RowsBeforeMarks(stored);
  const auto moved = [&](std::int32_t rows) {
    const auto mark = std::find(before.begin(), before.end(), rows) - before.begin();
    return static_cast<std::int32_t>(std::count_if(
        slots.begin(), slots.end(),
        [&](const Slot& slot) { return slot.marks <= static_cast<std::int32_t>(mark); }));
  };
  std::transform(stored.gaps.begin(), stored.gaps.end(), stored.gaps.begin(), moved);
  if (stored.torn_gap >= 0) stored.torn_gap = moved(stored.torn_gap);
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
  MoveMarks(slots, stored);
  stored.lost.clear();
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
  sounding.DepthCounts = static_cast<float>(settings.DepthStepCounts * sounding.RowCount);
  if (!ResumeWaits()) {
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

/// What is to be recovered, and what with.
struct Recovery {
  const FoundCpt& found;
  const StoredSounding& stored;
  std::vector<StoredRow> cpt;  ///< real rows of the file
  std::vector<int> columns = RowChannels();
};

/// Whether each row of the file agrees that holds values from behind slot `last`, its last one.
bool EndAgrees(const FoundCpt& found, const Slots& slots, std::ptrdiff_t last) {
  for (auto at = std::max<std::ptrdiff_t>(last + 1 - cone.DelayRows, 0); at <= last; ++at) {
    const std::ptrdiff_t row = slots[static_cast<std::size_t>(at)].cpt;
    const auto newest = static_cast<std::int32_t>(at) + 1 + cone.DelayRows;
    if (row >= 0 &&
        (newest > sounding.RowCount || !RowAgrees(found, static_cast<std::size_t>(row), newest))) {
      return false;
    }
  }
  return true;
}

/// Loads the rows and tells how many of the file disagree.
int Try(const Recovery& recovery, Slots& slots) {
  Fill(slots, recovery.cpt, recovery.columns);
  Load(slots);
  return Disagreements(recovery.found);
}

/// The rows with which fewest of the file disagree, fewer than `most`. Those that are lacking
/// behind the file's last row are added where all of it agrees then.
std::optional<Slots> Best(const Recovery& recovery, Slots slots, int most) {
  if (slots.size() > static_cast<std::size_t>(kMostRows)) return std::nullopt;
  std::optional<Slots> best;
  const int disagree = Try(recovery, slots);
  if (disagree < most) best = slots;
  most = std::min(most, disagree);
  const std::ptrdiff_t last = LastOfFile(slots, Count(recovery.cpt));
  if (last < 0 || EndAgrees(recovery.found, slots, last)) return best;
  auto whole = WithLackingRows(recovery.stored, slots, recovery.cpt, last);
  if (!whole || whole->size() > static_cast<std::size_t>(kMostRows)) return best;
  const bool is_better = Try(recovery, *whole) < most && EndAgrees(recovery.found, *whole, last);
  return is_better ? whole : best;
}

/// The places of the columns that stand in their own rows in the file.
std::vector<std::size_t> OwnColumns(const std::vector<int>& columns) {
  std::vector<std::size_t> own;
  for (std::size_t j = 0; j < columns.size(); ++j) {
    if (channels.ChannelDelayRows(columns[j]) == 0) own.push_back(j);
  }
  return own;
}

/// Lines of an unfinished end hold what stands nowhere else of rows that the copy lost.
void TakeClosing(Slots& slots, const std::vector<StoredRow>& closing) {
  for (Slot& slot : slots) {
    if (slot.copy >= 0 || slot.cpt >= 0) continue;
    for (const StoredRow& line : closing) {
      if (std::abs(line.depth - slot.row.depth) > kSameDepth) continue;
      for (std::size_t j = 0; j < line.values.size(); ++j) {
        if (!IsReached(slot.row.values[j])) slot.row.values[j] = line.values[j];
      }
    }
  }
}

/// The rows of copy and file together; none of a file that is aligned otherwise.
std::optional<Slots> Recovered(const FoundCpt& found, const StoredSounding& stored, int most) {
  Recovery recovery{found, stored, CptRows(found)};
  Slots slots = MergeRows(stored, recovery.cpt, OwnColumns(recovery.columns));
  if (slots.size() > static_cast<std::size_t>(kMostRows)) return std::nullopt;
  Load(slots);
  FormDelays(found);
  if (IsAlignedOtherwise(slots, recovery.cpt)) return std::nullopt;
  const std::ptrdiff_t real = CountRealRows(recovery.cpt, recovery.columns);
  const std::vector<StoredRow> closing(recovery.cpt.begin() + real, recovery.cpt.end());
  recovery.cpt.resize(static_cast<std::size_t>(real));
  std::erase_if(slots, [&](const Slot& slot) { return slot.copy < 0 && slot.cpt >= real; });
  for (Slot& slot : slots) slot.cpt = slot.cpt < real ? slot.cpt : -1;
  auto best = Best(recovery, std::move(slots), most);
  if (best) TakeClosing(*best, closing);
  return best;
}

}  // namespace

std::optional<RecoveredRows> RecoverRows(const FoundCpt& found, StoredSounding& stored) {
  const bool is_same = stored.row_channels == RowChannels() &&
                       Count(stored.rows) == static_cast<std::ptrdiff_t>(sounding.RowCount);
  const int most = Disagreements(found);
  if (!found.has_head || !is_same || most == 0) return std::nullopt;
  const RowsBefore before;
  const float last_before = sounding.Rows(sounding.RowCount, 0);
  const auto recovered = Recovered(found, stored, most);
  if (!recovered) {
    before.Restore();
    FormDelays(found);
    return std::nullopt;
  }
  Load(*recovered);
  Store(*recovered, stored);
  PlaceDepths(last_before);
  return Told(*recovered, RowChannels(), last_before);
}

LinesBehind JudgeLinesBehind(const FoundCpt& found) {
  LinesBehind lines{true, std::nullopt};
  const std::int32_t aligned = std::max(sounding.RowCount - cone.DelayRows, 0);
  for (auto place = static_cast<std::size_t>(aligned); place < found.rows.size(); ++place) {
    lines.is_end = lines.is_end && IsClosingLine(found, place);
    const auto row = ReadCptRow(found, place);
    if (row) lines.depth = std::max(lines.depth.value_or(row->depth), row->depth);
  }
  const float last = sounding.Rows(sounding.RowCount, 0);
  if (lines.is_end || lines.depth.value_or(last) <= last + kSameDepth) lines.depth.reset();
  return lines;
}

}  // namespace penlog
