#include "real_time/kill_judge.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "platform/numbers.h"
#include "real_time/sounding_lines.h"
#include "support/sounding_lines.h"

namespace penlog {

namespace {

const std::map<int, int> kDelays = {{1, 0}, {2, 5}, {3, 2}, {6, 3}, {7, 4}};
constexpr double kHalfAHundredth = 0.0051;

std::string Unquoted(const std::string& row) {
  return row.substr(1, row.size() - 2);
}

void AddLost(KillFindings& findings, std::size_t row, const std::string& promised,
             const std::string& stands) {
  ++findings.rows_lost;
  findings.faults.push_back("line " + PlainNumber(static_cast<int>(row) + 1) +
                            " is lost: " + promised + "\n  there stands: " + stands);
}

void AddLineEnds(KillFindings& findings, const std::string& text) {
  const std::string fault = LineEndFault(text);
  if (!fault.empty()) findings.faults.push_back(fault);
}

/// Rows 19 and 20 have no channels when they are written at the end.
bool IsSameRow(const std::string& row, const std::string& promised, const std::string& aligned) {
  return row.size() >= 13 &&
         std::abs(LeadingNumber(row) - DepthOfRow(promised)) < kHalfAHundredth &&
         row.substr(13) == aligned.substr(6);
}

}  // namespace

double DepthOfRow(const std::string& row) {
  return LeadingNumber(row.substr(1));
}

KillFindings JudgeCopy(const std::vector<std::string>& promised, const std::string& temporary) {
  KillFindings findings;
  AddLineEnds(findings, temporary.substr(0, temporary.rfind('\n') + 1));
  const std::vector<std::string> lines = StoredLines(temporary);
  for (std::size_t i = 0; i < promised.size(); ++i) {
    const std::string stands = i < lines.size() ? lines[i] : "nothing";
    if (stands != promised[i]) AddLost(findings, i, promised[i], stands);
  }
  const std::vector<std::string> rows = RowsOnly(lines);
  for (const std::string& line : lines) {
    // A row has quote marks, a mark none.
    const std::size_t size = rows.empty()      ? line.size()
                             : IsGapMark(line) ? rows.front().size() - 2
                                               : rows.front().size();
    if (line.size() != size) findings.faults.push_back("not a whole line: " + line);
  }
  return findings;
}

KillFindings JudgeEnded(const std::vector<std::string>& promised, const std::string& cpt) {
  KillFindings findings;
  AddLineEnds(findings, cpt);
  const std::vector<std::string> rows = RowsOnly(promised);
  const CptFile file = TakeApart(cpt);
  std::vector<std::string> plain;
  std::transform(rows.begin(), rows.end(), std::back_inserter(plain), Unquoted);
  const std::vector<std::string> aligned = AlignedRows(plain, file.channels, kDelays);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string stands = i < file.rows.size() ? file.rows[i] : "nothing";
    if (!IsSameRow(stands, rows[i], aligned[i])) AddLost(findings, i, rows[i], stands);
  }
  if (file.rows.size() > rows.size()) findings.faults.push_back("rows that nobody told");
  if (FieldsOf(file.last).size() != file.channels.size()) {
    findings.faults.push_back("no final baseline: " + file.last);
  }
  return findings;
}

std::string DepthFault(const std::vector<std::string>& lines, double drilled) {
  const std::string* last = nullptr;
  double least = 0;
  for (const std::string& line : lines) {
    if (IsGapMark(line)) {
      least = drilled;
      continue;
    }
    if (last != nullptr && (DepthOfRow(line) < DepthOfRow(*last) + least || line == *last)) {
      return line + " behind " + *last + (least > 0 ? " and a mark" : "");
    }
    last = &line;
    least = 0;
  }
  return {};
}

std::string WithoutLine(const std::string& text, std::size_t number) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < number; ++i) begin = text.find("\r\n", begin) + 2;
  return text.substr(0, begin) + text.substr(text.find("\r\n", begin) + 2);
}

}  // namespace penlog
