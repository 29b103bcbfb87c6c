#include "rig/table_text.h"

#include <array>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

std::vector<std::string_view> TextLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of("\r\n");
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
    text.remove_prefix(end + (pair ? 2 : 1));
  }
  return lines;
}

std::vector<std::string_view> Cells(std::string_view line, char separator) {
  std::vector<std::string_view> cells;
  if (separator == ' ') {
    constexpr std::string_view kBlanks = " \t";
    for (std::size_t at = line.find_first_not_of(kBlanks); at != std::string_view::npos;) {
      const std::size_t end = line.find_first_of(kBlanks, at);
      cells.push_back(line.substr(at, end == std::string_view::npos ? end : end - at));
      at = end == std::string_view::npos ? end : line.find_first_not_of(kBlanks, end);
    }
    return cells;
  }
  for (;;) {
    const std::size_t end = line.find(separator);
    cells.push_back(Trim(line.substr(0, end)));
    if (end == std::string_view::npos) return cells;
    line.remove_prefix(end + 1);
  }
}

double UnitSize(std::string_view unit, Measure measure) {
  struct Unit {
    std::string_view name;
    Measure measure;
    double size;
  };
  static constexpr std::array<Unit, 11> kUnits = {{
      {"M", Measure::Length, 1.0},
      {"CM", Measure::Length, 0.01},
      {"MM", Measure::Length, 0.001},
      {"PA", Measure::Pressure, 0.001},
      {"KPA", Measure::Pressure, 1.0},
      {"KN/M2", Measure::Pressure, 1.0},
      {"MPA", Measure::Pressure, 1000.0},
      {"MN/M2", Measure::Pressure, 1000.0},
      {"N/MM2", Measure::Pressure, 1000.0},
      {"BAR", Measure::Pressure, 100.0},
      {"KG/CM2", Measure::Pressure, 98.0665},
  }};
  const std::string_view trimmed = Trim(unit);
  const std::string word = ToUpper(trimmed.substr(0, trimmed.find_first_of(" (\t")));
  for (const auto& known : kUnits) {
    if (word == known.name && measure == known.measure) return known.size;
  }
  return 0.0;
}

double CellNumber(std::string_view cell, const std::string& file, std::size_t line) {
  const auto number = WholeNumberText(cell);
  if (!number) BadFile(file, line, "\"" + std::string(cell) + "\" is no number");
  return *number;
}

void BadFile(const std::string& file, std::size_t line, std::string_view what) {
  std::string text = file;
  if (line > 0) text += ", line " + PlainNumber(static_cast<long long>(line));
  throw RuntimeFault(text + ": " + std::string(what));
}

}  // namespace penlog
