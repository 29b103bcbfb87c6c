// What is lost under a recording console and comes back, and how long it takes from the return
// until the console records again. The limits are the test's, not the watch's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "forms/control.h"
#include "forms/form.h"
#include "platform/event_queue.h"

namespace penlog {

constexpr std::int32_t kRowsToJudge = 3;  ///< behind each loss, at least

struct Loss {
  std::string name;
  Micros back = -1;  ///< time of the return
  Micros over = -1;  ///< and of the first row behind it, with all links up from then on
  std::int32_t rows_at_loss = 0;
  std::int32_t rows_at_return = 0;
  bool cone_was_lost = false;
  bool truck_was_lost = false;
  bool held = false;  ///< no row comes behind it
};

/// A screen that is never shown, so that a script can tell it what happens and wait for the end:
///
///     rig test lost NAME
///     rig test back                     or `back held`: a quit holds the rig, no row will come
///     expect LossWatch.lblOver NAME 40  over, and the rows are there by which it is judged
class LossWatch : public Form {
 public:
  LossWatch() : Form("LossWatch", "") { KeepFirstValues(); }
  ~LossWatch() override;

  /// Takes `words` behind `rig test`; false if they are none of the watch's.
  bool Take(const std::string& words);
  const std::vector<Loss>& Losses() const { return losses_; }
  /// Index of the first row behind the return that must be taken at a depth of the grid: behind the
  /// row of the gap, and one that was taken before the console had noticed the loss.
  static std::int32_t FirstRowToJudge(const Loss& loss);
  /// A line of a table for each loss: its name, the wires and the seconds from its return.
  std::string Table(const std::string& wires) const;

  Label lblOver{*this, "lblOver"};

 private:
  void Look();
  bool IsOver();
  bool HasRowsToJudge() const;

  std::vector<Loss> losses_;
  std::int32_t rows_before_ = 0;  // rows that say nothing of the return
  std::int32_t first_row_ = 0;    // behind it
  float reading_ = 0;             // of before it
};

/// Between which readings each row was taken. A step that makes a row due is counted while the
/// console waits for a reading or in the pause behind it, and the row is taken before the next one
/// is asked for.
class RowPasses {
 public:
  /// The cone is asked for a reading now.
  void NoteReading();
  /// s of the two passes before the first reading that was asked for behind the row, from 0: so
  /// long it can have been due at most. Below 0 for a row that was not seen.
  double LongestWait(std::size_t row) const;

 private:
  std::vector<Micros> asked_;
  std::vector<std::size_t> asked_behind_;  // row by row
};

}  // namespace penlog
