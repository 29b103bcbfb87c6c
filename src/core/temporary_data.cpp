#include "core/temporary_data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>

#include "core/channel_table.h"
#include "core/row_order.h"
#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

namespace {

constexpr std::size_t kHeaderLines = 17;
constexpr std::size_t kMostDamageTold = 100;
constexpr std::size_t kTextLines = 13;  ///< the first of them
constexpr std::string_view kDateForm = "0000-00-00 00:00:00";
constexpr std::size_t kHead = 13;
constexpr std::size_t kField = 20;
constexpr std::size_t kDepthPlaces = 2;  ///< of depth and speed
constexpr std::size_t kValuePlaces = 5;
constexpr float kHundredth = 0.01f;  ///< m; the last digit of a depth
constexpr float kDeepest = 12000;    ///< m; no hole is as deep

using Lines = std::vector<std::string_view>;

/// The lines without their ends; the last one may have none.
Lines SplitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::optional<std::string_view> Unquoted(std::string_view line) {
  if (line.size() < 2 || !line.starts_with('"') || !line.ends_with('"')) return std::nullopt;
  return line.substr(1, line.size() - 2);
}

std::vector<std::string_view> Fields(std::string_view text) {
  std::vector<std::string_view> fields;
  for (std::size_t at = 0; at < text.size(); at += kField) {
    fields.push_back(text.substr(at, kField));
  }
  return fields;
}

/// A channel that a header column may name, above `last`; 0 for anything else.
int ColumnOf(std::string_view field, int last) {
  const double number = WholeNumberText(field).value_or(0);
  const bool fits = number > last && number <= kChannels && number == std::floor(number);
  const int channel = fits ? static_cast<int>(number) : 0;
  return channel == 19 || channel == 20 ? 0 : channel;
}

/// A character of a date by that of its form, 0 for a digit.
bool FitsForm(char letter, char form) {
  return form == '0' ? letter >= '0' && letter <= '9' : letter == form;
}

/// The channels of the column line; none where the line is not one.
std::vector<int> Columns(std::string_view line) {
  const auto text = Unquoted(line);
  if (!text || text->size() <= kHead || (text->size() - kHead) % kField != 0) return {};
  std::vector<int> columns;
  for (const std::string_view field : Fields(text->substr(kHead))) {
    const int channel = ColumnOf(field, columns.empty() ? 0 : columns.back());
    if (channel == 0) return {};
    columns.push_back(channel);
  }
  return columns;
}

std::vector<std::optional<float>> Zeros(std::string_view line, std::size_t count) {
  std::vector<std::optional<float>> zeros(count);
  const auto text = Unquoted(line);
  if (!text || text->size() != kHead + count * kField) return zeros;
  const auto fields = Fields(text->substr(kHead));
  std::transform(fields.begin(), fields.end(), zeros.begin(), WholeSingleText);
  return zeros;
}

/// The items that stand on the line; one that is no channel counts as none.
std::array<std::int16_t, 3> Graphs(std::string_view line) {
  std::array<std::int16_t, 3> graphs{};
  for (std::int16_t& graph : graphs) {
    const std::size_t comma = line.find(',');
    const double number = WholeNumberText(line.substr(0, comma)).value_or(0);
    if (number >= 1 && number <= kChannels && number == std::floor(number)) {
      graph = static_cast<std::int16_t>(number);
    }
    if (comma == std::string_view::npos) break;
    line.remove_prefix(comma + 1);
  }
  return graphs;
}

/// A number as the writer of rows prints it. Numbers wider than their field touch each other: one
/// ends behind its decimal places.
std::string_view TakeNumber(std::string_view& text, std::size_t places) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  std::size_t end = std::min(text.find(' '), text.size());
  const std::size_t point = text.substr(0, end).find('.');
  if (point != std::string_view::npos) end = std::min(end, point + 1 + places);
  const std::string_view number = text.substr(0, end);
  text.remove_prefix(end);
  return number;
}

/// The same for a value. What has no decimal places fills its field and may touch a wide number.
std::string_view TakeValue(std::string_view& text) {
  static constexpr std::array<std::string_view, 4> kWithoutPlaces = {"-32768", "nan", "inf",
                                                                     "-inf"};
  std::string_view field = text.substr(0, kField);
  field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));
  if (std::find(kWithoutPlaces.begin(), kWithoutPlaces.end(), field) == kWithoutPlaces.end()) {
    return TakeNumber(text, kValuePlaces);
  }
  text.remove_prefix(std::min(kField, text.size()));
  return field;
}

std::optional<float> RowNumber(std::string_view text) {
  if (text == "nan") return std::numeric_limits<float>::quiet_NaN();
  if (text == "inf") return std::numeric_limits<float>::infinity();
  if (text == "-inf") return -std::numeric_limits<float>::infinity();
  return WholeSingleText(text);
}

/// The numbers of a row; none if the line holds anything else. Taken one by one, not by their
/// places: an elevation of 100 m and more pushes all that follows to the right.
std::optional<StoredRow> Row(std::string_view text) {
  StoredRow row;
  const auto depth = WholeSingleText(TakeNumber(text, kDepthPlaces));
  const auto speed = RowNumber(TakeNumber(text, kDepthPlaces));
  if (!depth || !speed) return std::nullopt;
  row.depth = *depth;
  row.speed = *speed;
  auto values = RowValues(text);
  if (!values) return std::nullopt;
  row.values = std::move(*values);
  return row;
}

/// The row of a whole line; none for anything else.
std::optional<StoredRow> RowOf(std::string_view line) {
  const auto text = Unquoted(line);
  return text ? Row(*text) : std::nullopt;
}

/// A mark that was torn as it was written has a part of a field.
bool IsGap(std::string_view line) {
  return line.starts_with(kGapMark) && line.find_first_not_of('*', kGapMark.size()) == line.npos &&
         (line.size() - kGapMark.size()) % kField == 0;
}

/// What is left of a mark that was torn as it was written, or damaged since.
bool IsTornGap(std::string_view line) {
  const bool is_begin = !line.empty() && kGapMark.starts_with(line);
  return !IsGap(line) && (is_begin || line.starts_with("DRILLOUT"));
}

void TellLine(StoredSounding& stored, std::size_t number, const std::string& why) {
  if (stored.damage.size() >= kMostDamageTold) {
    ++stored.damage_untold;
    return;
  }
  stored.damage.push_back("LINE " + PlainNumber(static_cast<int>(number)) + ": " + why);
}

void TakeWaterTable(StoredSounding& stored, std::string_view line) {
  const auto depth = WholeSingleText(line);
  stored.water_table = depth.value_or(0.0f);
  stored.loses_water_table = !depth;
  if (!depth) TellLine(stored, 14, "THE WATER TABLE IS NO NUMBER AND COUNTS AS 0");
}

void TakeZeros(StoredSounding& stored, std::string_view line) {
  stored.zeros = Zeros(line, stored.columns.size());
  for (std::size_t i = 0; i < stored.zeros.size(); ++i) {
    if (stored.zeros[i]) continue;
    TellLine(stored, 17,
             "THE BASELINE OF CHANNEL " + PlainNumber(stored.columns[i]) + " IS NO NUMBER");
  }
}

/// No text of a header holds control characters; a tab may have been pasted into one.
bool IsUnreadable(char letter, std::size_t line) {
  const auto code = static_cast<unsigned char>(letter);
  const bool is_number = line == kStoredConeLine || line == kStoredDateLine;
  return (code < 0x20 && (is_number || letter != '\t')) || code == 0x7F ||
         (line == kStoredDateLine && code > 0x7F);
}

void TakeText(StoredSounding& stored, std::string_view bytes, std::size_t line) {
  std::string readable(bytes);
  for (char& letter : readable) {
    if (IsUnreadable(letter, line)) letter = '?';
  }
  std::string& text = stored.HeaderText(line) = FromFileBytes(readable);
  const bool is_empty = Trim(text).empty();
  const bool is_damaged = readable != bytes || (line == kStoredConeLine && is_empty) ||
                          (line == kStoredDateLine && !is_empty && !IsStoredDate(text));
  if (!is_damaged) return;
  stored.lost_texts.push_back(line);
  TellLine(stored, line,
           is_empty ? "IT NAMES NO CONE" : "IT IS DAMAGED AND READS \"" + Left(text, 40) + "\"");
}

void TakeHeader(StoredSounding& stored, const Lines& lines) {
  stored.main_file = FromFileBytes(lines[0]);
  for (std::size_t line = 2; line <= kTextLines; ++line) TakeText(stored, lines[line - 1], line);
  TakeWaterTable(stored, lines[13]);
  stored.graphs = Graphs(lines[14]);
  stored.columns = Columns(lines[15]);
  TakeZeros(stored, lines[16]);
}

/// With an extension of three letters, in whose place those of the side files go; not one of these,
/// nor one of the console's own files.
bool IsMainFile(const std::string& path) {
  if (path.size() < 5 || path[path.size() - 4] != '.' || path[path.size() - 5] == '/') return false;
  const bool is_plain = std::none_of(path.begin(), path.end(), [](char letter) {
    return static_cast<unsigned char>(letter) < 0x20;
  });
  const std::string extension = ToUpper(path.substr(path.size() - 3));
  const bool is_letters = std::all_of(extension.begin(), extension.end(),
                                      [](char letter) { return letter >= 'A' && letter <= 'Z'; });
  static constexpr std::array<std::string_view, 12> kOthers = {
      "TXT", "ASC", "OLD", "NEW", "TMP", "DIS", "SMC", "SEI", "TIM", "RES", "RST", "CAL"};
  return is_plain && is_letters &&
         std::find(kOthers.begin(), kOthers.end(), extension) == kOthers.end();
}

std::string WhyUnreadable(const StoredSounding& stored) {
  if (Trim(stored.main_file).empty()) return "LINE 1 NAMES NO FILE";
  if (!IsMainFile(stored.main_file)) return "LINE 1 NAMES NO FILE OF A SOUNDING";
  if (stored.columns.empty()) return "LINE 16 NAMES NO CHANNELS";
  return {};
}

void Keep(StoredSounding& stored, std::string_view line) {
  stored.sound_text += line;
  stored.sound_text += "\r\n";
}

void LeaveOut(StoredSounding& stored, std::size_t number, const std::string& why) {
  stored.loses_lines = true;
  TellLine(stored, number, why);
}

bool IsComputedLater(int channel) {
  return channel == 21 || channel == 22;
}

template <class Has>
std::vector<int> Without(const std::vector<int>& columns, Has has_no_field) {
  std::vector<int> list;
  std::copy_if(columns.begin(), columns.end(), std::back_inserter(list),
               [&](int channel) { return !has_no_field(channel); });
  return list;
}

/// The columns that the rows hold: a channel with a header column only may have been selected for
/// its rows too when the sounding was set up. What most of the lines have room for decides.
std::vector<int> RowChannelsOf(const std::vector<int>& columns, const Lines& lines,
                               bool (*header_only)(int channel)) {
  const auto no_field = [&](int channel) {
    return IsComputedLater(channel) || header_only(channel);
  };
  const std::array<std::vector<int>, 3> readings = {Without(columns, no_field),
                                                    Without(columns, IsComputedLater), columns};
  std::array<std::ptrdiff_t, 3> fits{};
  std::transform(readings.begin(), readings.end(), fits.begin(), [&](const auto& reading) {
    return std::count_if(lines.begin() + kHeaderLines, lines.end(), [&](std::string_view line) {
      const auto row = RowOf(line);
      return row && row->values.size() == reading.size();
    });
  });
  const auto most = std::max_element(fits.begin(), fits.end());
  return readings[static_cast<std::size_t>(most - fits.begin())];
}

/// A line behind the header: the mark of a gap, a row, or why it is neither.
struct LineRead {
  std::string_view line;
  bool is_gap = false;
  bool is_torn_gap = false;
  std::optional<StoredRow> row;
  std::string why;
};

LineRead ReadLine(std::string_view line, std::size_t columns) {
  LineRead read = {line, IsGap(line), IsTornGap(line), std::nullopt, ""};
  if (read.is_gap) return read;
  if (!Unquoted(line)) {
    read.why = "IT IS NO WHOLE ROW";
    return read;
  }
  auto row = RowOf(line);
  if (!row) {
    read.why = "IT HOLDS WHAT IS NO NUMBER";
  } else if (row->values.size() != columns) {
    read.why = "IT DOES NOT FIT THE COLUMNS";
  } else if (std::abs(row->depth) > kDeepest) {
    read.why = "ITS DEPTH CAN BE NONE";
  } else {
    read.row = std::move(row);
  }
  return read;
}

/// The rows of a part without a gap, `lines` by their places: those that stand above a row before
/// them, or twice, are none.
void JudgeOrder(std::vector<LineRead>& lines, const std::vector<std::size_t>& part) {
  std::vector<float> depths;
  depths.reserve(part.size());
  for (const std::size_t place : part) depths.push_back(lines[place].row->depth);
  const std::vector<bool> in_order = InOrder(depths);
  // Steps of less than a hundredth may well give the same line twice.
  const bool is_coarse =
      part.size() > 1 && std::abs(depths.back() - depths.front()) >=
                             0.75f * kHundredth * static_cast<float>(part.size());
  std::string_view before;
  for (std::size_t i = 0; i < part.size(); ++i) {
    LineRead& read = lines[part[i]];
    if (in_order[i] && !(is_coarse && read.line == before)) {
      before = read.line;
      continue;
    }
    read.why = in_order[i] ? "IT STANDS TWICE" : "ITS DEPTH IS OUT OF ORDER";
    read.row.reset();
  }
}

void JudgeOrder(std::vector<LineRead>& lines) {
  std::vector<std::size_t> part;
  for (std::size_t place = 0; place < lines.size(); ++place) {
    if (lines[place].row) part.push_back(place);
    if (lines[place].is_gap || lines[place].is_torn_gap || place + 1 == lines.size()) {
      JudgeOrder(lines, part);
      part.clear();
    }
  }
}

void TakeLine(StoredSounding& stored, LineRead& read, std::size_t number, std::int32_t most_rows) {
  if (read.is_gap) {
    stored.gaps.push_back(static_cast<std::int32_t>(stored.rows.size()));
    return Keep(stored, read.line);
  }
  if (read.is_torn_gap) stored.torn_gap = static_cast<std::int32_t>(stored.rows.size());
  if (!read.row && !read.is_torn_gap) {
    const std::size_t marks = stored.gaps.size() + (stored.torn_gap >= 0 ? 1 : 0);
    stored.lost.push_back(
        {static_cast<std::int32_t>(stored.rows.size()), static_cast<std::int32_t>(marks)});
  }
  if (!read.row) return LeaveOut(stored, number, read.why);
  if (static_cast<std::int32_t>(stored.rows.size()) >= most_rows) {
    return LeaveOut(stored, number, "THERE IS ROOM FOR " + PlainNumber(most_rows) + " ROWS");
  }
  stored.rows.push_back(std::move(*read.row));
  Keep(stored, read.line);
}

}  // namespace

bool IsStoredDate(std::string_view text) {
  text = Trim(text);
  return std::equal(text.begin(), text.end(), kDateForm.begin(), kDateForm.end(), FitsForm);
}

std::optional<std::vector<float>> RowValues(std::string_view text) {
  std::vector<float> values;
  while (!text.empty()) {
    const auto value = RowNumber(TakeValue(text));
    if (!value) return std::nullopt;
    values.push_back(*value);
  }
  return values;
}

bool StoredSounding::LosesText(std::size_t line) const {
  return std::find(lost_texts.begin(), lost_texts.end(), line) != lost_texts.end();
}

std::string& StoredSounding::HeaderText(std::size_t line) {
  const std::array<std::string*, 12> texts = {
      &sounding_name, &company_name, &operator_name, &cone_id,      &location,     &job_number,
      &hole_number,   &date_time,    &header_note,   &footer_note1, &footer_note2, &gps_position};
  return *texts[line - 2];
}

bool StoredSounding::FitsDate(std::string_view date) const {
  const std::string_view mine = Trim(date_time);
  date = Trim(date);
  if (date == mine) return true;
  if (!IsStoredDate(date) || mine.size() != date.size()) return false;
  for (std::size_t i = 0; i < mine.size(); ++i) {
    if (FitsForm(mine[i], kDateForm[i]) && mine[i] != date[i]) return false;
  }
  return true;
}

StoredSounding ReadTemporaryData(std::string_view text, bool (*header_only)(int channel),
                                 std::int32_t most_rows) {
  StoredSounding stored;
  const Lines lines = SplitLines(text);
  stored.done = !lines.empty() && Trim(lines[0]) == "DONE";
  if (stored.done) return stored;
  if (lines.size() < kHeaderLines) {
    stored.unreadable = lines.empty() ? "IT IS EMPTY" : "ITS HEADER IS NOT WHOLE";
    return stored;
  }
  TakeHeader(stored, lines);
  stored.unreadable = WhyUnreadable(stored);
  if (!stored.unreadable.empty()) return stored;
  stored.row_channels = RowChannelsOf(stored.columns, lines, header_only);
  for (std::size_t i = 0; i < kHeaderLines; ++i) Keep(stored, lines[i]);
  std::vector<LineRead> reads;
  for (std::size_t i = kHeaderLines; i < lines.size(); ++i) {
    reads.push_back(ReadLine(lines[i], stored.row_channels.size()));
  }
  JudgeOrder(reads);
  for (std::size_t i = 0; i < reads.size(); ++i) {
    TakeLine(stored, reads[i], kHeaderLines + i + 1, most_rows);
  }
  return stored;
}

}  // namespace penlog
