// The `.cpt` file of a sounding that is taken up again: taken apart, and made to agree with the
// rows that stand in memory. Texts alone: nothing is opened or written here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/temporary_data.h"
#include "sounding/sounding_state.h"

namespace penlog {

/// m; two depths are the same: the recovery copy's last digit, and its rounding.
inline constexpr float kSameDepth = 0.0051f;

/// A `.cpt` file as found.
struct FoundCpt {
  bool has_head = false;  ///< all lines of the head are there, and they are the sounding's
  CptForm form = CptForm::OfSettings;
  std::string head;               ///< as it stands, with its line ends
  std::string tip;                ///< the title of the first column, without blanks at its ends
  std::vector<std::string> rows;  ///< the whole lines behind the head, with their line ends
  bool is_torn = false;           ///< text without a line end stands at the end
  bool is_of_before = false;      ///< it was read at another place than that it is written to
};

/// The head counts as the sounding's where cone, date and columns are the same.
FoundCpt ReadCpt(std::string_view text, const StoredSounding& stored);

/// A row of the file as it stands there: aligned, its depth not negated. None for a closing line
/// and for one that is not whole.
std::optional<StoredRow> ReadCptRow(const FoundCpt& found, std::size_t place);

/// Whether a line of the file may be one of an end that was cut off: a row in memory that alignment
/// held back, each value in its own row and -32768 for a sensor that did not get there, or the
/// final baseline. Of a line with other columns than a row has the depth alone tells.
bool IsClosingLine(const FoundCpt& found, std::size_t place);

/// Line 12 of the head. None where it is no number.
std::optional<float> WaterTableInHead(const FoundCpt& found);

/// The baseline of a recorded channel, as the head of the file has it.
std::optional<float> BaselineInHead(const FoundCpt& found, int channel);

/// Whether the rows of the file are negated depths: each row that lies on one side of 0 tells, and
/// most of them decide. None where they don't tell.
std::optional<bool> HoldsElevations(const FoundCpt& found);

/// The rows that a channel lags in the file: those with which most of its first rows hold what
/// stands in memory. A channel that is missing now does not tell its delay any more. None where no
/// row of the file does.
std::optional<std::int16_t> DelayInFile(const FoundCpt& found, int channel);

/// The rows that the file lags, `least` at least: the speed of a row is that of the newest one.
std::int16_t LagOfFile(const FoundCpt& found, std::int16_t least);

/// What was done to the rows of a `.cpt` file.
struct CptMending {
  std::string text;   ///< the whole file as it should be
  int added = 0;      ///< rows that were missing at its end
  int changed = 0;    ///< rows that disagreed with the recovery copy
  int taken_out = 0;  ///< lines behind the last aligned row: those of an end that was cut off
};

/// Whether the row of the file at `place` is the one that becomes complete with row `newest` in
/// memory, as below.
bool RowAgrees(const FoundCpt& found, std::size_t place, std::int32_t newest);

/// The rows that stand in memory, aligned, behind the head as found or, without one, a new head. A
/// row that agrees with them but for the last digit of its depth stays as it is: the recovery copy
/// has hundredths of a metre.
CptMending MendCpt(const FoundCpt& found);

}  // namespace penlog
