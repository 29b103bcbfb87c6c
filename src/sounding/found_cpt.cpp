#include "sounding/found_cpt.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/settings.h"
#include "platform/numbers.h"
#include "platform/texts.h"
#include "sounding/reached.h"
#include "sounding/row_text.h"

namespace penlog {

namespace {

// Lines of the head, from 0.
constexpr std::size_t kConeLine = 3;
constexpr std::size_t kDateLine = 7;
constexpr std::size_t kWaterLine = 12;
constexpr std::size_t kNumberLine = 15;
constexpr std::size_t kTitleLine = 16;
constexpr std::size_t kBaselineLine = 18;
constexpr std::size_t kHeadLines = 23;

constexpr std::size_t kBlanks = 13;  ///< characters of depth and speed
constexpr std::size_t kColumn = 20;
constexpr std::int32_t kRowsMatched = 200;  ///< enough to know a delay by
constexpr std::int32_t kMostDelay = 1000;   ///< rows

/// Whole lines with their ends; what stands behind the last line end is left in `text`.
std::vector<std::string> TakeLines(std::string_view& text) {
  std::vector<std::string> lines;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    lines.emplace_back(text.substr(0, end + 1));
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::string_view WithoutEnd(std::string_view line) {
  return line.substr(0, line.find_last_not_of("\r\n") + 1);
}

CptForm FormOf(std::string_view first_line) {
  if (first_line.starts_with("KQ Sounding File")) return CptForm::New;
  return first_line == "Dravenholtz Sounding File" ? CptForm::Old : CptForm::OfSettings;
}

std::string NumberLineOf(const std::vector<int>& columns) {
  std::string line(kBlanks, ' ');
  for (const int channel : columns) {
    line += RightField(PlainNumber(channel), static_cast<int>(kColumn));
  }
  return line;
}

bool IsText(const std::string& line, const std::string& text) {
  return Trim(FromFileBytes(WithoutEnd(line))) == Trim(text);
}

bool IsHeadOf(const std::vector<std::string>& lines, const StoredSounding& stored) {
  return FormOf(WithoutEnd(lines[0])) != CptForm::OfSettings &&
         IsText(lines[kConeLine], stored.cone_id) &&
         stored.FitsDate(FromFileBytes(WithoutEnd(lines[kDateLine]))) &&
         WithoutEnd(lines[kNumberLine]) == NumberLineOf(stored.columns);
}

/// Depth and speed of a row end behind their decimals: a long depth pushes the row to the right.
struct RowStart {
  std::size_t depth_end = 0;
  std::size_t speed_end = 0;
};

std::optional<RowStart> StartOf(std::string_view row, CptForm form) {
  const std::size_t depth_places = form == CptForm::New ? 3 : 2;
  const std::size_t first = row.find('.');
  const std::size_t second = first == row.npos ? row.npos : row.find('.', first + 1);
  if (second == row.npos || second + 2 >= row.size()) return std::nullopt;
  return RowStart{first + 1 + depth_places, second + 3};
}

std::optional<float> DepthOf(const std::string& row, CptForm form) {
  const auto start = StartOf(row, form);
  return start ? WholeSingleText(std::string_view(row).substr(0, start->depth_end)) : std::nullopt;
}

bool AgreesButForLastDigit(const std::string& row, const std::string& expected, CptForm form) {
  if (row == expected) return true;
  const auto depth = DepthOf(row, form);
  const auto wanted = DepthOf(expected, form);
  if (!depth || !wanted || std::abs(*depth - *wanted) > kSameDepth) return false;
  return row.substr(StartOf(row, form)->depth_end) ==
         expected.substr(StartOf(expected, form)->depth_end);
}

/// A text of a row of the file.
struct PlacedText {
  std::size_t place = 0;  ///< of the row, from 0
  std::string text;
};

/// The shift from `least` on with which most of `some` equal the later entries of `all`; none where
/// nothing is equal.
std::optional<std::int16_t> ShiftOf(const std::vector<PlacedText>& some,
                                    const std::vector<std::string>& all, std::int16_t least) {
  std::optional<std::int16_t> best;
  int most = 0;
  for (std::int32_t shift = least; shift <= least + kMostDelay; ++shift) {
    int equal = 0;
    for (const PlacedText& one : some) {
      const std::size_t place = one.place + static_cast<std::size_t>(shift);
      equal += place < all.size() && one.text == all[place] ? 1 : 0;
    }
    if (equal <= most) continue;
    most = equal;
    best = static_cast<std::int16_t>(shift);
  }
  return best;
}

std::int32_t LastRowMatched(const std::vector<PlacedText>& some, std::int16_t least) {
  const std::size_t rows = some.empty() ? 0 : some.back().place + 1;
  return std::min(sounding.RowCount, static_cast<std::int32_t>(rows) + least + kMostDelay);
}

/// The field of a row's channel, counted from the end: a long depth pushes it to the right.
std::string FieldOf(std::string_view row, std::size_t column, std::size_t columns) {
  const std::string_view text = WithoutEnd(row);
  const std::size_t behind = (columns - column) * kColumn;
  return text.size() < behind ? "" : std::string(text.substr(text.size() - behind, kColumn));
}

/// The first fields with a reading of the channel and the first without one, as many as are matched
/// of each: a sounding may have gone on without the channel from near its begin.
std::vector<PlacedText> FirstFields(const FoundCpt& found, std::size_t column,
                                    std::size_t columns) {
  const std::string none = RightField(PlainNumber(kNotReached), static_cast<int>(kColumn));
  std::vector<PlacedText> fields;
  std::array<std::int32_t, 2> taken{};
  for (std::size_t i = 0; i < found.rows.size(); ++i) {
    std::string text = FieldOf(found.rows[i], column, columns);
    if (++taken[text == none ? 0 : 1] <= kRowsMatched) fields.push_back({i, std::move(text)});
  }
  return fields;
}

std::string SpeedText(float speed) {
  return Format(speed, "##0.00");
}

/// 1 for a row that is negated, -1 for one that is not, 0 for one that is 0 but for its rounding.
int SignVote(float depth, float stored) {
  const float apart = std::abs(depth - stored) - std::abs(depth + stored);
  return apart > kSameDepth ? 1 : apart < -kSameDepth ? -1 : 0;
}

/// A row that stands in the line as the end writes it.
bool IsHeldBack(const StoredRow& line, std::int32_t row) {
  if (SpeedText(line.speed) != SpeedText(sounding.RowSpeed(row - 1))) return false;
  const std::vector<int> columns = RowChannels();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const bool got_there = row <= sounding.RowCount - channels.ChannelDelayRows(columns[i]);
    const float value = got_there ? sounding.Rows(row, columns[i]) : kNoReading;
    if (Format(line.values[i], "####0.00000") != Format(value, "####0.00000")) return false;
  }
  return true;
}

}  // namespace

FoundCpt ReadCpt(std::string_view text, const StoredSounding& stored) {
  FoundCpt found;
  std::vector<std::string> lines = TakeLines(text);
  found.is_torn = !text.empty();
  if (lines.size() < kHeadLines || !IsHeadOf(lines, stored)) return found;
  found.has_head = true;
  found.form = FormOf(WithoutEnd(lines[0]));
  const std::string titles(WithoutEnd(lines[kTitleLine]));
  if (titles.size() > kBlanks) found.tip = Trim(Mid(titles, kBlanks + 1, kColumn));
  for (std::size_t i = 0; i < kHeadLines; ++i) found.head += lines[i];
  found.rows.assign(lines.begin() + kHeadLines, lines.end());
  return found;
}

std::optional<StoredRow> ReadCptRow(const FoundCpt& found, std::size_t place) {
  const std::string row(WithoutEnd(found.rows[place]));
  const auto start = StartOf(row, found.form);
  const auto depth = DepthOf(row, found.form);
  if (!start || !depth || Trim(row.substr(0, kBlanks)).empty()) return std::nullopt;
  const auto speed =
      WholeSingleText(row.substr(start->depth_end, start->speed_end - start->depth_end));
  const std::size_t columns = RowChannels().size();
  if (!speed || row.size() < start->speed_end + columns * kColumn) return std::nullopt;
  auto values = RowValues(std::string_view(row).substr(start->speed_end));
  if (!values || values->size() != columns) return std::nullopt;
  return StoredRow{settings.DepthFormat == 1 ? -*depth : *depth, *speed, std::move(*values)};
}

bool IsClosingLine(const FoundCpt& found, std::size_t place) {
  const std::string_view line = WithoutEnd(found.rows[place]);
  if (Trim(line.substr(0, kBlanks)).empty()) return true;
  auto depth = DepthOf(std::string(line), found.form);
  if (!depth) return false;
  if (settings.DepthFormat == 1) depth = -*depth;
  const auto read = ReadCptRow(found, place);
  const std::int32_t aligned = std::max(sounding.RowCount - cone.DelayRows, 0);
  for (std::int32_t row = aligned + 1; row <= sounding.RowCount; ++row) {
    if (std::abs(*depth - sounding.Rows(row, 0)) > kSameDepth) continue;
    if (!read || IsHeldBack(*read, row)) return true;
  }
  return false;
}

std::optional<float> WaterTableInHead(const FoundCpt& found) {
  if (!found.has_head) return std::nullopt;
  std::string_view head = found.head;
  return WholeSingleText(WithoutEnd(TakeLines(head)[kWaterLine]));
}

std::optional<float> BaselineInHead(const FoundCpt& found, int channel) {
  if (!found.has_head) return std::nullopt;
  std::string_view head = found.head;
  const std::vector<std::string> lines = TakeLines(head);
  const std::string numbers(WithoutEnd(lines[kNumberLine]));
  const std::string zeros(WithoutEnd(lines[kBaselineLine]));
  for (std::size_t at = kBlanks; at + kColumn <= std::min(numbers.size(), zeros.size());
       at += kColumn) {
    if (WholeNumberText(numbers.substr(at, kColumn)) != channel) continue;
    return WholeSingleText(zeros.substr(at, kColumn));
  }
  return std::nullopt;
}

std::optional<bool> HoldsElevations(const FoundCpt& found) {
  if (!found.has_head) return std::nullopt;
  int votes = 0;
  const std::size_t rows = std::min(found.rows.size(), static_cast<std::size_t>(sounding.RowCount));
  for (std::size_t i = 0; i < rows; ++i) {
    const auto depth = DepthOf(found.rows[i], found.form);
    if (depth) votes += SignVote(*depth, sounding.Rows(static_cast<std::int32_t>(i) + 1, 0));
  }
  return votes == 0 ? std::nullopt : std::optional(votes > 0);
}

std::optional<std::int16_t> DelayInFile(const FoundCpt& found, int channel) {
  const std::vector<int> columns = RowChannels();
  const auto place = std::find(columns.begin(), columns.end(), channel);
  if (place == columns.end()) return std::nullopt;
  const auto fields =
      FirstFields(found, static_cast<std::size_t>(place - columns.begin()), columns.size());
  std::vector<std::string> values;
  for (std::int32_t row = 1; row <= LastRowMatched(fields, 0); ++row) {
    values.push_back(RowValue(row, channel));
  }
  return ShiftOf(fields, values, 0);
}

std::int16_t LagOfFile(const FoundCpt& found, std::int16_t least) {
  std::vector<PlacedText> speeds;
  for (const std::string& row : found.rows) {
    if (speeds.size() == static_cast<std::size_t>(kRowsMatched)) break;
    const auto start = StartOf(row, found.form);
    const std::string text =
        start ? row.substr(start->depth_end, start->speed_end - start->depth_end) : "";
    speeds.push_back({speeds.size(), std::string(Trim(text))});
  }
  std::vector<std::string> recorded;
  for (std::int32_t row = 1; row <= LastRowMatched(speeds, least); ++row) {
    recorded.push_back(SpeedText(sounding.RowSpeed(row - 1)));
  }
  return ShiftOf(speeds, recorded, least).value_or(least);
}

bool RowAgrees(const FoundCpt& found, std::size_t place, std::int32_t newest) {
  return place < found.rows.size() &&
         AgreesButForLastDigit(found.rows[place], AlignedRow(newest), sounding.RowForm);
}

CptMending MendCpt(const FoundCpt& found) {
  CptMending mending;
  mending.text = found.has_head ? found.head : CptHeader();
  std::size_t place = 0;
  for (std::int32_t newest = cone.DelayRows + 1; newest <= sounding.RowCount; ++newest, ++place) {
    const std::string expected = AlignedRow(newest);
    const bool stands = place < found.rows.size();
    if (stands && AgreesButForLastDigit(found.rows[place], expected, sounding.RowForm)) {
      mending.text += found.rows[place];
      continue;
    }
    mending.text += expected;
    ++(stands ? mending.changed : mending.added);
  }
  if (found.rows.size() > place) mending.taken_out = static_cast<int>(found.rows.size() - place);
  return mending;
}

}  // namespace penlog
