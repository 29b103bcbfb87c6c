#include "rig/gef_text.h"

#include <map>

#include "platform/numbers.h"
#include "platform/texts.h"
#include "rig/table_text.h"

namespace penlog {

namespace {

constexpr int kLength = 1;
constexpr int kTip = 2;
constexpr int kFriction = 3;
constexpr int kPoreU2 = 6;
constexpr int kDepth = 11;

struct GefColumn {
  double unit = 0.0;
  std::string unit_text;
  std::size_t place = 0;  // from 0
};

struct GefHeader {
  std::map<int, GefColumn> columns;  // by quantity
  std::map<std::size_t, double> voids;
  char separator = ' ';
  std::string record_end;
  std::size_t first_row = 0;  // index of the first line behind the header
};

using Lines = std::vector<std::string_view>;

/// 1-based, as lines are counted in an editor.
std::size_t LineNumber(std::size_t index) {
  return index + 1;
}

std::size_t ColumnPlace(std::string_view cell, const std::string& name, std::size_t line) {
  const double number = CellNumber(cell, name, line);
  if (number < 1.0 || number > 1000.0) BadFile(name, line, "no such column");
  return static_cast<std::size_t>(number) - 1;
}

int QuantityIn(std::string_view cell, const std::string& name, std::size_t line) {
  const double number = CellNumber(cell, name, line);
  if (number < 0.0 || number > 1000.0) BadFile(name, line, "no such quantity");
  return static_cast<int>(number);
}

void TakeColumnInfo(GefHeader& header, const Lines& values, const std::string& name,
                    std::size_t line) {
  if (values.size() < 4) BadFile(name, line, "COLUMNINFO needs four values");
  GefColumn column;
  column.place = ColumnPlace(values[0], name, line);
  column.unit_text = std::string(values[1]);
  // A name may hold commas; the quantity is the last value.
  const int quantity = QuantityIn(values.back(), name, line);
  const bool length = quantity == kLength || quantity == kDepth;
  column.unit = UnitSize(values[1], length ? Measure::Length : Measure::Pressure);
  header.columns.emplace(quantity, column);
}

/// `separator` as written behind "=": the first character that isn't a blank.
char FirstCharacter(std::string_view value) {
  const std::string_view trimmed = Trim(value);
  return trimmed.empty() ? ' ' : trimmed.front();
}

void TakeHeaderLine(GefHeader& header, std::string_view line, const std::string& name,
                    std::size_t number) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) BadFile(name, number, "a header line without \"=\"");
  const std::string key = ToUpper(Trim(line.substr(1, equals - 1)));
  const std::string_view value = line.substr(equals + 1);
  const Lines values = Cells(value, ',');
  if (key == "COLUMNINFO") {
    TakeColumnInfo(header, values, name, number);
  } else if (key == "COLUMNVOID" && values.size() >= 2) {
    header.voids[ColumnPlace(values[0], name, number)] = CellNumber(values[1], name, number);
  } else if (key == "COLUMNSEPARATOR") {
    header.separator = FirstCharacter(value);
  } else if (key == "RECORDSEPARATOR") {
    header.record_end = std::string(Trim(value));
  } else if (key == "REPORTCODE" || key == "PROCEDURECODE") {
    const std::string code = ToUpper(values.front());
    if (code.find("DISS") != std::string::npos) {
      BadFile(name, number, "this is a dissipation, not a sounding");
    }
  }
}

GefHeader ReadHeader(const Lines& lines, const std::string& name) {
  GefHeader header;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string_view line = Trim(lines[i]);
    if (line.empty()) continue;
    if (line.front() != '#') {
      BadFile(name, LineNumber(i), "a row before the end of the header (#EOH=)");
    }
    if (StartsWith(ToUpper(line), "#EOH")) {
      header.first_row = i + 1;
      return header;
    }
    TakeHeaderLine(header, line, name, LineNumber(i));
  }
  BadFile(name, 0, "no end of the header (#EOH=)");
}

void CheckColumns(GefHeader& header, const std::string& name) {
  if (header.columns.count(kLength) == 0 && header.columns.count(kDepth) > 0) {
    header.columns[kLength] = header.columns[kDepth];
  }
  if (header.columns.count(kLength) == 0) {
    BadFile(name, 0, "no column of penetration length (quantity 1) or depth (11)");
  }
  if (header.columns.count(kTip) == 0) {
    BadFile(name, 0, "no column of tip resistance (quantity 2)");
  }
  for (const int quantity : {kLength, kTip, kFriction, kPoreU2}) {
    const auto column = header.columns.find(quantity);
    if (column != header.columns.end() && column->second.unit <= 0.0) {
      BadFile(name, 0, "unknown unit \"" + column->second.unit_text + "\"");
    }
  }
}

Lines RowCells(const GefHeader& header, std::string_view line) {
  std::string_view row = Trim(line);
  if (!header.record_end.empty()) {
    const std::size_t end = row.rfind(header.record_end);
    if (end != std::string_view::npos) row = Trim(row.substr(0, end));
  }
  Lines cells = Cells(row, header.separator);
  if (cells.back().empty()) cells.pop_back();  // a separator ends the row too
  return cells;
}

std::optional<double> RowValue(const GefHeader& header, const Lines& cells, int quantity,
                               const std::string& name, std::size_t line) {
  const auto column = header.columns.find(quantity);
  if (column == header.columns.end()) return std::nullopt;
  const std::size_t place = column->second.place;
  if (place >= cells.size()) {
    BadFile(name, line,
            "the row ends before column " + PlainNumber(static_cast<long long>(place) + 1));
  }
  const double value = CellNumber(cells[place], name, line);
  const auto nothing = header.voids.find(place);
  if (nothing != header.voids.end() && value == nothing->second) return std::nullopt;
  return value * column->second.unit;
}

}  // namespace

std::vector<GroundSample> ParseGef(std::string_view text, const std::string& name) {
  const Lines lines = TextLines(text);
  GefHeader header = ReadHeader(lines, name);
  CheckColumns(header, name);
  std::vector<GroundSample> samples;
  for (std::size_t i = header.first_row; i < lines.size(); ++i) {
    if (Trim(lines[i]).empty()) continue;
    const Lines cells = RowCells(header, lines[i]);
    const std::size_t line = LineNumber(i);
    const auto depth = RowValue(header, cells, kLength, name, line);
    if (!depth) continue;
    samples.push_back({*depth, RowValue(header, cells, kTip, name, line),
                       RowValue(header, cells, kFriction, name, line),
                       RowValue(header, cells, kPoreU2, name, line)});
  }
  if (samples.empty()) BadFile(name, 0, "no rows behind the header");
  return samples;
}

}  // namespace penlog
