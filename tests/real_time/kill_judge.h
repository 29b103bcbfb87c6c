// What a killed console leaves, against the rows that it had told: pure functions of the files'
// texts, so that the judge can be tried on files that lack something.
#pragma once

#include <string>
#include <vector>

namespace penlog {

/// Lines that have their end; what stands behind the last one is left out.
std::vector<std::string> KilledLines(const std::string& text);
/// What a recovery copy holds behind its head: rows, and marks of drilled gaps.
std::vector<std::string> LinesOfCopy(const std::string& temporary);
bool IsGapMark(const std::string& line);
/// Without the marks.
std::vector<std::string> RowsOnly(const std::vector<std::string>& lines);
/// Metres, of a row of the recovery copy.
double DepthOfRow(const std::string& row);

struct KillFindings {
  int rows_lost = 0;                ///< promised, and not there or not so
  std::vector<std::string> faults;  ///< each of these, and others
};

/// A sounding that can be resumed: each promised line stands in its place, each mark is whole.
KillFindings JudgeCopy(const std::vector<std::string>& promised, const std::string& temporary);
/// An ended one: its file holds each row, shifted by its sensors' places, and a final baseline.
KillFindings JudgeEnded(const std::vector<std::string>& promised, const std::string& cpt);
/// The depths of rows grow, by more than `drilled` metres across a mark, and no row stands twice.
/// Empty, or what is wrong. A row that was taken late stands beside the grid of the steps, and the
/// next one may have the same hundredth.
std::string DepthFault(const std::vector<std::string>& lines, double drilled);

/// The text without its line `number`, from 0.
std::string WithoutLine(const std::string& text, std::size_t number);

constexpr std::size_t kCopyHead = 17;  ///< lines
constexpr std::size_t kCptHead = 23;
constexpr std::size_t kCptLag = 5;  ///< rows that the `.cpt` file lags behind

}  // namespace penlog
