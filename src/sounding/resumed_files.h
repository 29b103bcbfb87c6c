// The files of a suspended sounding are made whole and taken up again: what a crash or a damage
// left is mended from the recovery copy before the first new row, and the operator is told.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sounding/sounding_state.h"

namespace penlog {

/// A `.cpt` file as found.
struct FoundCpt {
  bool has_head = false;  ///< all lines of the head are there, and its columns are the sounding's
  CptForm form = CptForm::OfSettings;
  std::string head;               ///< as it stands, with its line ends
  std::string tip;                ///< the title of the first column, without blanks at its ends
  std::vector<std::string> rows;  ///< the whole lines behind the head, with their line ends
  bool is_torn = false;           ///< text without a line end stands at the end
};

/// `columns`: the channels that the sounding records, rising.
FoundCpt ReadCpt(std::string_view text, const std::vector<int>& columns);

/// What was done to the rows of a `.cpt` file.
struct CptMending {
  std::string text;   ///< the whole file as it should be
  int added = 0;      ///< rows that were missing at its end
  int changed = 0;    ///< rows that disagreed with the recovery copy
  int taken_out = 0;  ///< lines behind the last aligned row: those of an end that was cut off
};

/// The rows that stand in memory, aligned, behind the head as found or, without one, a new head. A
/// row that agrees with them but for the last digit of its depth stays as it is: the recovery copy
/// has hundredths of a metre.
CptMending MendCpt(const FoundCpt& found);

/// The recorded columns of the sounding become this session's: record choices, charts, columns of
/// channels that are missing now, and the alignment. Then its files are made whole. Asks and tells:
/// not to be called while the rods are counted.
void TakeUpSounding();

}  // namespace penlog
