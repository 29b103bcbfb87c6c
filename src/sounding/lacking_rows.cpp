#include "sounding/lacking_rows.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/settings.h"
#include "sounding/row_text.h"

namespace penlog {

namespace {

using Counts = std::vector<std::ptrdiff_t>;

constexpr float kNoWay = std::numeric_limits<float>::infinity();
constexpr float kOutOfStep = 0.75f;  ///< depth steps that a distance may be off the rows in it
constexpr float kRounding = 0.005f;  ///< m; of the copy's depths
constexpr float kOfALine = 0.5f;  ///< what a row without a lost line costs, or a line without one

std::ptrdiff_t Count(const auto& list) {
  return static_cast<std::ptrdiff_t>(list.size());
}

/// The depth steps that a distance may be off the rows in it. Steps of whole hundredths are not
/// rounded in the copy.
float MostOutOfStep() {
  const float hundredths = settings.DepthStep * 100;
  const bool is_rounded = std::abs(hundredths - std::round(hundredths)) > 0.01f;
  return kOutOfStep + (is_rounded ? kRounding / settings.DepthStep : 0.0f);
}

/// Between two rows, or behind the last one.
struct Hole {
  StoredRow above;
  StoredRow below;  ///< empty behind the last row
  std::int32_t marks_above = 0;
  std::int32_t marks_below = 0;
  bool is_end = false;
  float steps = 0;                ///< from row to row
  std::ptrdiff_t lost_above = 0;  ///< lines of the copy, above the first mark in it
  std::ptrdiff_t lost_below = 0;

  bool HasMark() const { return marks_below > marks_above; }
  float OutOfStep(std::ptrdiff_t rows) const {
    return std::abs(steps - static_cast<float>(rows + 1));
  }
  std::ptrdiff_t MostRows() const {
    if (HasMark()) return lost_above + (is_end ? 0 : lost_below);
    return is_end ? kMostRows
                  : static_cast<std::ptrdiff_t>(std::max(steps + MostOutOfStep() - 1, 0.0f));
  }
  bool Takes(std::ptrdiff_t rows) const {
    if (rows == 0 || is_end) return rows <= MostRows();
    if (!HasMark()) return OutOfStep(rows) <= MostOutOfStep();
    const bool is_one_sided = lost_above == 0 || lost_below == 0;
    return rows <= MostRows() && (is_one_sided || rows == MostRows());
  }
  float Cost(std::ptrdiff_t rows) const {
    const float lines = static_cast<float>(std::abs(rows - lost_above - lost_below)) * kOfALine;
    return lines + (is_end || HasMark() ? 0.0f : OutOfStep(rows));
  }
  void Add(std::ptrdiff_t rows, Slots& slots) const {
    const std::ptrdiff_t first = HasMark() ? std::min(rows, lost_above) : rows;
    const bool is_even = !is_end && !HasMark();
    const float step =
        is_even ? (below.depth - above.depth) / static_cast<float>(rows + 1) : settings.DepthStep;
    for (std::ptrdiff_t i = 1; i <= rows; ++i) {
      const float depth = i <= first ? above.depth + step * static_cast<float>(i)
                                     : below.depth - step * static_cast<float>(rows + 1 - i);
      slots.push_back({{depth, 0, {}}, -1, -1, i <= first ? marks_above : marks_below});
    }
  }
};

/// The holes before each row of the copy behind slot `last`, and behind all.
std::vector<Hole> HolesOf(const StoredSounding& stored, const Slots& slots, std::ptrdiff_t last) {
  std::vector<Hole> holes;
  for (std::ptrdiff_t place = last + 1; place <= Count(slots); ++place) {
    const Slot& above = slots[static_cast<std::size_t>(place - 1)];
    Hole hole{above.row, {}, above.marks, above.marks, place == Count(slots), 0, 0, 0};
    std::ptrdiff_t rows = Count(stored.rows);
    if (hole.is_end) {
      hole.marks_below = static_cast<std::int32_t>(RowsBeforeMarks(stored).size());
    } else {
      const Slot& below = slots[static_cast<std::size_t>(place)];
      hole.below = below.row;
      hole.marks_below = below.marks;
      hole.steps = (below.row.depth - above.row.depth) / settings.DepthStep;
      rows = below.copy;
    }
    hole.lost_above = LinesLost(stored, rows, hole.marks_above);
    if (hole.HasMark()) hole.lost_below = LinesLost(stored, rows, hole.marks_below);
    for (auto i = place - 1; i >= 0 && slots[static_cast<std::size_t>(i)].copy < 0; --i) {
      const bool is_above = slots[static_cast<std::size_t>(i)].marks == hole.marks_above;
      hole.lost_above -= is_above && hole.lost_above > 0 ? 1 : 0;
    }
    holes.push_back(std::move(hole));
  }
  return holes;
}

/// Ways to place the rows of the copy behind the file's last row.
class Ways {
 public:
  Ways(const StoredSounding& stored, const Slots& slots, const std::vector<StoredRow>& cpt,
       std::ptrdiff_t last)
      : slots_(slots), cpt_(cpt), last_(last), holes_(HolesOf(stored, slots, last)) {}

  /// The rows to be added in each hole; empty where there is no way.
  Counts Best() {
    Begin();
    for (std::ptrdiff_t row = 1; row <= Count(ways_) - 1; ++row) Place(row);
    Close();
    return best_;
  }
  const std::vector<Hole>& Holes() const { return holes_; }

 private:
  /// The cheapest way to a row's place, and the place of the row before it.
  struct Way {
    float cost = kNoWay;
    std::ptrdiff_t before = 0;
  };

  std::ptrdiff_t Rows() const { return Count(holes_) - 1; }
  const Hole& HoleBefore(std::ptrdiff_t row) const {
    return holes_[static_cast<std::size_t>(row - 1)];
  }
  Way& WayTo(std::ptrdiff_t row, std::ptrdiff_t place) {
    return ways_[static_cast<std::size_t>(row)][static_cast<std::size_t>(place)];
  }
  /// Row 0 is the file's last one, at place 0.
  void Begin() {
    const auto rows = static_cast<std::size_t>(std::min<std::ptrdiff_t>(Rows(), cone.DelayRows));
    ways_.assign(rows + 1, std::vector<Way>(static_cast<std::size_t>(cone.DelayRows) + 1));
    WayTo(0, 0).cost = 0;
    rest_.assign(holes_.size() + 1, 0.0f);
    for (std::size_t i = holes_.size() - 1; i > 0; --i) {
      rest_[i] = rest_[i + 1] + holes_[i].Cost(0);
    }
  }
  const StoredRow* CptRow(std::ptrdiff_t place) const {
    if (place > last_ || place < 0) return nullptr;
    const std::ptrdiff_t row = slots_[static_cast<std::size_t>(place)].cpt;
    return row < 0 ? nullptr : &cpt_[static_cast<std::size_t>(row)];
  }
  /// Whether a row of the copy holds what the file holds of the row at `place` behind its last one.
  bool Fits(std::ptrdiff_t row, std::ptrdiff_t place) const {
    const StoredRow& copy = slots_[static_cast<std::size_t>(last_ + row)].row;
    const StoredRow* speed = CptRow(last_ + place - cone.DelayRows);
    if (speed != nullptr && !IsSameValue(speed->speed, copy.speed)) return false;
    for (std::size_t j = 0; j < columns_.size(); ++j) {
      const StoredRow* cpt = CptRow(last_ + place - channels.ChannelDelayRows(columns_[j]));
      if (cpt != nullptr && !IsSameValue(cpt->values[j], copy.values[j])) return false;
    }
    return true;
  }
  void Place(std::ptrdiff_t row) {
    const Hole& hole = HoleBefore(row);
    const std::ptrdiff_t most = std::min<std::ptrdiff_t>(hole.MostRows(), cone.DelayRows);
    for (std::ptrdiff_t place = 1; place <= cone.DelayRows; ++place) {
      if (!Fits(row, place)) continue;
      for (std::ptrdiff_t rows = 0; rows <= std::min(most, place - 1); ++rows) {
        const float cost = WayTo(row - 1, place - 1 - rows).cost + hole.Cost(rows);
        if (!hole.Takes(rows) || cost >= WayTo(row, place).cost) continue;
        WayTo(row, place) = {cost, place - 1 - rows};
      }
    }
  }
  /// All rows are placed, or those up to `row`, and the others lie behind what the file tells of.
  void Close() {
    float least = kNoWay;
    for (std::ptrdiff_t row = 0; row < Count(ways_); ++row) {
      const Hole& next = holes_[static_cast<std::size_t>(row)];
      for (std::ptrdiff_t place = 0; place <= cone.DelayRows; ++place) {
        const float begin = WayTo(row, place).cost;
        const std::ptrdiff_t needed = cone.DelayRows - place;
        const std::ptrdiff_t most = row == Rows() || needed == 0 ? needed : next.MostRows();
        for (std::ptrdiff_t rows = needed; rows <= most; ++rows) {
          const float cost = begin + next.Cost(rows) + rest_[static_cast<std::size_t>(row) + 1];
          if (!next.Takes(rows) || cost >= least) continue;
          least = cost;
          Keep(row, place, rows);
        }
      }
    }
  }
  void Keep(std::ptrdiff_t row, std::ptrdiff_t place, std::ptrdiff_t rows) {
    best_.assign(holes_.size(), 0);
    best_[static_cast<std::size_t>(row)] = rows;
    for (; row > 0; --row) {
      const std::ptrdiff_t before = WayTo(row, place).before;
      best_[static_cast<std::size_t>(row - 1)] = place - 1 - before;
      place = before;
    }
  }

  const Slots& slots_;
  const std::vector<StoredRow>& cpt_;
  std::ptrdiff_t last_;
  std::vector<Hole> holes_;
  std::vector<int> columns_ = RowChannels();
  std::vector<std::vector<Way>> ways_;
  std::vector<float> rest_;  ///< what the holes from one on cost with no row in them
  Counts best_;
};

}  // namespace

std::optional<Slots> WithLackingRows(const StoredSounding& stored, const Slots& slots,
                                     const std::vector<StoredRow>& cpt, std::ptrdiff_t last) {
  Ways ways(stored, slots, cpt, last);
  const Counts rows = ways.Best();
  if (rows.empty()) return std::nullopt;
  Slots all(slots.begin(), slots.begin() + last + 1);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ways.Holes()[i].Add(rows[i], all);
    const std::size_t next = static_cast<std::size_t>(last) + 1 + i;
    if (next < slots.size()) all.push_back(slots[next]);
  }
  return all;
}

}  // namespace penlog
