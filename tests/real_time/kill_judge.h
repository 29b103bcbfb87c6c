// What a killed console leaves, against the rows that it had told: functions of the files' texts
// alone, so that the judge can be tried on files that lack something.
#pragma once

#include <string>
#include <vector>

namespace penlog {

/// Metres, of a row of the recovery copy.
double DepthOfRow(const std::string& row);

struct KillFindings {
  int rows_lost = 0;                ///< promised, and not there or not so
  std::vector<std::string> faults;  ///< each of these, and others
};

/// A sounding that can be resumed: each promised line stands in its place, each line is whole, up
/// to the last line end.
KillFindings JudgeCopy(const std::vector<std::string>& promised, const std::string& temporary);
/// An ended one: its file holds each row, shifted by its sensors' places, and a final baseline, in
/// whole lines.
KillFindings JudgeEnded(const std::vector<std::string>& promised, const std::string& cpt);
/// The depths of rows grow, by more than `drilled` metres across a mark, and no row stands twice.
/// Empty, or what is wrong. A row that was taken late stands beside the grid of the steps, and the
/// next one may have the same hundredth.
std::string DepthFault(const std::vector<std::string>& lines, double drilled);

/// The text without its line `number`, from 0.
std::string WithoutLine(const std::string& text, std::size_t number);

constexpr std::size_t kCptLag = 5;  ///< rows that the `.cpt` file lags behind

}  // namespace penlog
