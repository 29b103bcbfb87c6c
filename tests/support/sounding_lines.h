// The lines of a sounding's files as they lie on a disk, for judges of what a crash, a refusal or a
// kill has left. Plain functions of the texts: nothing is expected here.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "core/temporary_data.h"

namespace penlog {

constexpr std::size_t kTemporaryHead = 17;  ///< lines
constexpr std::size_t kCptHead = 23;
constexpr std::size_t kTimHead = 2;

/// Whole lines, without their ends; what stands behind the last line end is left out.
inline std::vector<std::string> WholeLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n', at)) {
    const bool has_return = end > at && text[end - 1] == '\r';
    lines.push_back(text.substr(at, end - at - (has_return ? 1 : 0)));
    at = end + 1;
  }
  return lines;
}

/// Behind the last line end.
inline std::string UnfinishedLine(const std::string& text) {
  return text.substr(text.rfind('\n') + 1);
}

/// A line that ends in something else than CR LF, or has one of the two within; empty if each ends
/// so.
inline std::string LineEndFault(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find("\r\n", at), text.size());
    const std::string line = text.substr(at, end - at);
    if (end == text.size() || line.find_first_of("\r\n") != line.npos) {
      return "not a line that ends in CR LF: " + line;
    }
    at = end + 2;
  }
  return {};
}

/// A mark of a drilled gap. One that was cut off behind its word is one, too.
inline bool IsGapMark(const std::string& line) {
  return line.starts_with(kGapMark) && line.find_first_not_of('*', kGapMark.size()) == line.npos;
}

/// What a recovery copy holds behind its header, whole lines: rows, and marks of drilled gaps.
inline std::vector<std::string> StoredLines(const std::string& temporary) {
  std::vector<std::string> lines = WholeLines(temporary);
  const std::size_t head = std::min(lines.size(), kTemporaryHead);
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(head));
  return lines;
}

/// Without the marks.
inline std::vector<std::string> RowsOnly(std::vector<std::string> lines) {
  std::erase_if(lines, IsGapMark);
  return lines;
}

/// The rows of a recovery copy.
inline std::vector<std::string> StoredRows(const std::string& temporary) {
  return RowsOnly(StoredLines(temporary));
}

}  // namespace penlog
