// Lines of "TemporaryData.txt" written by hand, by the form in docs/files.md and not by the
// console's own writer.
#pragma once

#include <string>
#include <vector>

namespace penlog {

using TextLines = std::vector<std::string>;

/// A field of 20 characters.
inline std::string StoredField(const std::string& text) {
  return std::string(text.size() < 20 ? 20 - text.size() : 0, ' ') + text;
}

/// Column or baseline line: 13 blanks and a field each, in double quotes.
inline std::string StoredColumns(const TextLines& fields) {
  std::string line = "\"" + std::string(13, ' ');
  for (const std::string& field : fields) line += StoredField(field);
  return line + "\"";
}

/// A row: depth in 6 characters, speed in 7, and a field each, in double quotes. Longer texts push
/// the rest to the right.
inline std::string StoredRowLine(const std::string& depth, const std::string& speed,
                                 const TextLines& values) {
  const auto right = [](const std::string& text, std::size_t width) {
    return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
  };
  std::string line = "\"" + right(depth, 6) + right(speed, 7);
  for (const std::string& value : values) line += StoredField(value);
  return line + "\"";
}

/// The 17 lines of the header: channels 1, 2 and 3 of cone "DSE1234".
inline TextLines StoredHeader() {
  return {"/data/s.cpt",
          "NAME",
          "Company, Ltd.",
          "Oper",
          "DSE1234",
          "Loc",
          "Job",
          "Hole",
          "2026-06-15 09:30:00",
          "Head",
          "Foot1",
          "Foot2",
          "GPS",
          " 1.5 ",
          "3,2,0",
          StoredColumns({"1", "2", "3"}),
          StoredColumns({"0.25310", "0.29880", "0.50070"})};
}

/// What channel `channel` holds in row n, as text: 2.00015 in row 15.
inline std::string StoredValue(int channel, int n) {
  return std::to_string(channel) + "." + std::to_string(100000 + n).substr(1);
}

/// The speed of row n in cm/s, as text: 2.15 in row 15.
inline std::string StoredSpeed(int n) {
  return "2." + std::to_string(100 + n % 100).substr(1);
}

/// Row n, from 1 to 499, of a sounding in steps of 2 cm.
inline std::string StoredRowNumber(int n) {
  const std::string hundredths = std::to_string(1000 + 2 * n).substr(1);
  return StoredRowLine(hundredths.substr(0, 1) + "." + hundredths.substr(1), StoredSpeed(n),
                       {StoredValue(1, n), StoredValue(2, n), StoredValue(3, n)});
}

inline std::string JoinedLines(const TextLines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

/// A whole file with `rows` rows, at most 499.
inline TextLines StoredLines(int rows) {
  TextLines lines = StoredHeader();
  for (int n = 1; n <= rows; ++n) lines.push_back(StoredRowNumber(n));
  return lines;
}

}  // namespace penlog
