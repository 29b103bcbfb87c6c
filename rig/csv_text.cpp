#include "rig/csv_text.h"

#include <array>
#include <optional>

#include "platform/texts.h"
#include "rig/table_text.h"

namespace penlog {

namespace {

enum Quantity { kDepthCell, kTipCell, kFrictionCell, kPoreCell, kQuantities };

constexpr std::array<std::string_view, kQuantities> kNames = {"DEPTH", "QC", "FS", "U2"};

struct CsvColumn {
  bool present = false;
  std::size_t place = 0;
  double unit = 1.0;
};

struct CsvHeading {
  std::array<CsvColumn, kQuantities> columns;
  char separator = ',';
  std::size_t line = 0;  // index of the heading
};

using Lines = std::vector<std::string_view>;

double HeadingUnit(std::string_view cell, Measure measure, const std::string& name,
                   std::size_t line) {
  const std::size_t open = cell.find_first_of("([");
  if (open == std::string_view::npos) return measure == Measure::Length ? 1.0 : 1000.0;
  const std::size_t close = cell.find_first_of(")]", open);
  const std::string_view unit = cell.substr(open + 1, close - open - 1);
  const double size = UnitSize(unit, measure);
  if (size <= 0.0) BadFile(name, line, "unknown unit \"" + std::string(unit) + "\"");
  return size;
}

/// The columns of a line taken as heading; those it doesn't name stay absent.
CsvHeading TakeHeading(std::string_view line, char separator, const std::string& name,
                       std::size_t number) {
  CsvHeading heading;
  heading.separator = separator;
  const Lines cells = Cells(line, separator);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string upper = ToUpper(cells[i]);
    for (std::size_t q = 0; q < kNames.size(); ++q) {
      if (heading.columns[q].present || !StartsWith(upper, kNames[q])) continue;
      const Measure measure = q == kDepthCell ? Measure::Length : Measure::Pressure;
      heading.columns[q] = {true, i, HeadingUnit(cells[i], measure, name, number)};
    }
  }
  return heading;
}

bool NamesDepthAndTip(std::string_view line, char separator) {
  bool depth = false;
  bool tip = false;
  for (const auto cell : Cells(line, separator)) {
    depth = depth || StartsWith(ToUpper(cell), kNames[kDepthCell]);
    tip = tip || StartsWith(ToUpper(cell), kNames[kTipCell]);
  }
  return depth && tip;
}

CsvHeading FindHeading(const Lines& lines, const std::string& name) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    for (const char separator : {',', ';', '\t'}) {
      if (!NamesDepthAndTip(lines[i], separator)) continue;
      CsvHeading heading = TakeHeading(lines[i], separator, name, i + 1);
      heading.line = i;
      return heading;
    }
  }
  BadFile(name, 0, "no heading with depth and qc");
}

std::optional<double> CellValue(const CsvColumn& column, const Lines& cells,
                                const std::string& name, std::size_t line) {
  if (!column.present || column.place >= cells.size()) return std::nullopt;
  if (cells[column.place].empty()) return std::nullopt;
  return CellNumber(cells[column.place], name, line) * column.unit;
}

}  // namespace

std::vector<GroundSample> ParseGroundCsv(std::string_view text, const std::string& name) {
  const Lines lines = TextLines(text);
  const CsvHeading heading = FindHeading(lines, name);
  std::vector<GroundSample> samples;
  for (std::size_t i = heading.line + 1; i < lines.size(); ++i) {
    const Lines cells = Cells(lines[i], heading.separator);
    const auto depth = CellValue(heading.columns[kDepthCell], cells, name, i + 1);
    if (!depth) continue;
    samples.push_back({*depth, CellValue(heading.columns[kTipCell], cells, name, i + 1),
                       CellValue(heading.columns[kFrictionCell], cells, name, i + 1),
                       CellValue(heading.columns[kPoreCell], cells, name, i + 1)});
  }
  if (samples.empty()) BadFile(name, 0, "no rows behind the heading");
  return samples;
}

}  // namespace penlog
