#include "sounding/merged_rows.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/settings.h"

namespace penlog {

namespace {

constexpr float kCoarse = 0.0099f;    ///< m; in such steps each row has a hundredth of its own
constexpr float kMostOfAStep = 1.5f;  ///< depth steps; rows further apart may have lost some

using Rows = std::vector<StoredRow>;

bool IsNear(const StoredRow& one, const StoredRow& other) {
  return std::abs(one.depth - other.depth) <= kSameDepth;
}

/// A part of the copy and what stands for it in the file, which rises between two of these.
struct Run {
  std::size_t copy = 0;
  std::size_t copy_end = 0;
  std::size_t cpt = 0;
  std::size_t cpt_end = 0;
  std::int32_t least_marks = 0;
  std::int32_t most_marks = 0;
};

/// Whether the file may rise at row `place` since there is the mark behind `rows` rows.
bool Explains(std::size_t rows, const Rows& copy, const Rows& cpt, std::size_t place) {
  const bool is_above = rows == 0 || copy[rows - 1].depth <= cpt[place - 1].depth + kSameDepth;
  const bool is_below = rows >= copy.size() || copy[rows].depth >= cpt[place].depth - kSameDepth;
  return is_above && is_below;
}

/// Cuts the last run in two where the copy rises behind one of its marks, from number `mark` on:
/// what stands below has no row in the file.
void CutLast(std::vector<Run>& runs, const Rows& copy, const std::vector<std::int32_t>& marks,
             std::size_t mark) {
  for (; mark < marks.size(); ++mark) {
    const auto rows = static_cast<std::size_t>(marks[mark]);
    if (rows <= runs.back().copy || rows >= copy.size()) continue;
    if (copy[rows].depth >= copy[rows - 1].depth) continue;
    Run below = runs.back();
    below.copy = runs.back().copy_end = rows;
    below.cpt = below.cpt_end;
    below.least_marks = static_cast<std::int32_t>(mark) + 1;
    runs.back().most_marks = static_cast<std::int32_t>(mark);
    runs.push_back(below);
    return;
  }
}

std::vector<Run> RunsOf(const Rows& copy, const std::vector<std::int32_t>& marks, Rows& cpt) {
  std::vector<Run> runs(1);
  std::size_t mark = 0;
  for (std::size_t place = 1; place < cpt.size(); ++place) {
    if (cpt[place].depth >= cpt[place - 1].depth) continue;
    while (mark < marks.size() &&
           !Explains(static_cast<std::size_t>(marks[mark]), copy, cpt, place)) {
      ++mark;
    }
    if (mark == marks.size()) {
      cpt.resize(place);
      break;
    }
    runs.back().copy_end = static_cast<std::size_t>(marks[mark]);
    runs.back().cpt_end = place;
    runs.back().most_marks = static_cast<std::int32_t>(mark);
    ++mark;
    const auto above = static_cast<std::int32_t>(mark);
    runs.push_back({runs.back().copy_end, 0, place, 0, above, above});
  }
  runs.back().copy_end = copy.size();
  runs.back().cpt_end = cpt.size();
  runs.back().most_marks = static_cast<std::int32_t>(marks.size());
  CutLast(runs, copy, marks, mark);
  return runs;
}

/// Puts the rows of both together, run by run.
class Merger {
 public:
  Merger(const StoredSounding& stored, Rows& cpt, const std::vector<std::size_t>& own)
      : stored_(stored), copy_(stored.rows), cpt_(cpt), own_(own) {}

  Slots Merged() {
    for (const Run& run : RunsOf(copy_, marks_, cpt_)) Merge(run);
    return std::move(slots_);
  }

 private:
  bool HoldsSame(std::size_t copy, std::size_t cpt) const {
    return std::all_of(own_.begin(), own_.end(), [&](std::size_t column) {
      return IsSameValue(copy_[copy].values[column], cpt_[cpt].values[column]);
    });
  }
  /// Whether a later row of the file is row `i_` of the copy, or would be where it ends before.
  bool StandsFurtherDown(const Run& run) const {
    std::size_t k = k_ + 1;
    for (; k < run.cpt_end && IsNear(copy_[i_], cpt_[k]); ++k) {
      if (HoldsSame(i_, k)) return true;
    }
    return k == run.cpt_end && settings.DepthStep < kCoarse;
  }
  /// Whether a later row of the copy is row `k_` of the file.
  bool IsLater(const Run& run) const {
    for (std::size_t i = i_ + 1; i < run.copy_end && IsNear(copy_[i], cpt_[k_]); ++i) {
      if (HoldsSame(i, k_)) return true;
    }
    return false;
  }
  void Merge(const Run& run) {
    k_ = run.cpt;
    for (i_ = run.copy; i_ < run.copy_end || k_ < run.cpt_end;) {
      if (i_ == run.copy_end) {
        TakeCpt(run);
      } else if (k_ == run.cpt_end) {
        TakeCopy();
      } else if (IsLostAboveMark(run)) {
        TakeCpt(run);
      } else if (!IsNear(copy_[i_], cpt_[k_])) {
        copy_[i_].depth < cpt_[k_].depth ? TakeCopy() : TakeCpt(run);
      } else if (HoldsSame(i_, k_)) {
        TakeBoth();
      } else if (StandsFurtherDown(run)) {
        TakeCpt(run);
      } else {
        IsLater(run) ? TakeCopy() : TakeBoth();
      }
    }
  }
  std::int32_t MarksAbove(std::size_t copy) const {
    const auto rows = static_cast<std::int32_t>(copy);
    return static_cast<std::int32_t>(std::upper_bound(marks_.begin(), marks_.end(), rows) -
                                     marks_.begin());
  }
  void TakeCopy() {
    slots_.push_back({copy_[i_], static_cast<std::ptrdiff_t>(i_), -1, MarksAbove(i_)});
    ++i_;
  }
  void TakeBoth() {
    TakeCopy();
    slots_.back().cpt = static_cast<std::ptrdiff_t>(k_++);
  }
  void TakeCpt(const Run& run) {
    const std::int32_t marks = MarksOfCpt(run);
    slots_.push_back({{cpt_[k_].depth, 0, {}}, -1, static_cast<std::ptrdiff_t>(k_), marks});
    ++k_;
  }
  /// Above the next row of either.
  std::int32_t MarksSoFar(const Run& run) const {
    return std::max(slots_.empty() ? 0 : slots_.back().marks, run.least_marks);
  }
  /// Lines of the copy in this place, `marks` being above, without those that are found already.
  std::ptrdiff_t LinesToFind(std::int32_t marks) const {
    std::ptrdiff_t lost = LinesLost(stored_, static_cast<std::ptrdiff_t>(i_), marks);
    for (auto slot = slots_.rbegin(); slot != slots_.rend() && slot->copy < 0; ++slot) {
      lost -= slot->marks == marks ? 1 : 0;
    }
    return lost;
  }
  /// The copy goes on behind a mark, and lines of it were lost above.
  bool IsLostAboveMark(const Run& run) const {
    const std::int32_t above = MarksSoFar(run);
    const bool is_same = IsNear(copy_[i_], cpt_[k_]) && HoldsSame(i_, k_);
    return MarksAbove(i_) > above && !is_same && LinesToFind(above) > 0;
  }
  /// The side of a mark on which row `k_` of the file stands, where one is near: the lines that the
  /// copy lost there tell, else its depth. Behind the copy's end no line was lost but by its disk.
  std::int32_t MarksOfCpt(const Run& run) const {
    const std::int32_t above = MarksSoFar(run);
    const std::int32_t below = std::max(above, i_ < run.copy_end ? MarksAbove(i_) : run.most_marks);
    if (above == below) return above;
    const bool lost_above = LinesToFind(above) > 0;
    const bool lost_below = LinesToFind(below) > 0 || i_ == copy_.size();
    const bool follows = !slots_.empty() && cpt_[k_].depth - slots_.back().row.depth <=
                                                kMostOfAStep * settings.DepthStep;
    return (lost_above != lost_below ? lost_above : follows) ? above : below;
  }

  const StoredSounding& stored_;
  const Rows& copy_;
  Rows& cpt_;
  const std::vector<std::size_t>& own_;
  std::vector<std::int32_t> marks_ = RowsBeforeMarks(stored_);
  Slots slots_;
  std::size_t i_ = 0;  ///< the next row of the copy
  std::size_t k_ = 0;  ///< and of the file
};

}  // namespace

std::vector<std::int32_t> RowsBeforeMarks(const StoredSounding& stored) {
  std::vector<std::int32_t> marks = stored.gaps;
  if (stored.torn_gap >= 0) {
    marks.insert(std::upper_bound(marks.begin(), marks.end(), stored.torn_gap), stored.torn_gap);
  }
  return marks;
}

std::ptrdiff_t LinesLost(const StoredSounding& stored, std::ptrdiff_t rows, std::int32_t marks) {
  return std::count_if(stored.lost.begin(), stored.lost.end(), [&](const LostLine& line) {
    return line.rows == rows && line.marks == marks;
  });
}

bool IsSameValue(float one, float other) {
  return one == other || (std::isnan(one) && std::isnan(other));
}

std::vector<StoredRow> CptRows(const FoundCpt& found) {
  std::vector<StoredRow> rows;
  for (std::size_t place = 0; place < found.rows.size(); ++place) {
    auto row = ReadCptRow(found, place);
    if (!row) break;
    rows.push_back(std::move(*row));
  }
  return rows;
}

Slots MergeRows(const StoredSounding& stored, std::vector<StoredRow>& cpt,
                const std::vector<std::size_t>& own) {
  return Merger(stored, cpt, own).Merged();
}

}  // namespace penlog
