// The recovery copy of a sounding, "TemporaryData.txt", read back as far as it is sound. A plain
// function of its text: nothing is opened and no table is touched here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace penlog {

/// A recorded row as it was read: not aligned, its depth never negated.
struct StoredRow {
  float depth = 0;            ///< m
  float speed = 0;            ///< cm/s
  std::vector<float> values;  ///< raw, in the order of the channels that the line holds
};

/// Where a line that is left out stands.
struct LostLine {
  std::int32_t rows = 0;   ///< sound rows before it
  std::int32_t marks = 0;  ///< marks of gaps before it, a torn one too
};

struct StoredSounding {
  bool done = false;  ///< the first line is "DONE": the sounding closed normally
  /// Why nothing can be resumed; empty where header, column and baseline lines are there.
  std::string unreadable;

  std::string main_file;  ///< path of the `.cpt` file
  std::string sounding_name;
  std::string company_name;
  std::string operator_name;
  std::string cone_id;
  std::string location;
  std::string job_number;
  std::string hole_number;
  std::string date_time;
  std::string header_note;
  std::string footer_note1;
  std::string footer_note2;
  std::string gps_position;
  /// Lines from 2 to 13 that are damaged, rising; "?" stands in their texts for what can't be read.
  std::vector<std::size_t> lost_texts;
  bool LosesText(std::size_t line) const;
  /// The text of a line from 2 to 13.
  std::string& HeaderText(std::size_t line);
  /// Whether a date is that of line 9, as far as this can be read.
  bool FitsDate(std::string_view date) const;
  float water_table = 0;                    ///< m; the sounding's reference value
  bool loses_water_table = false;           ///< its line is no number
  std::array<std::int16_t, 3> graphs{};     ///< channels of graphs 2 to 4, 0 none
  std::vector<int> columns;                 ///< recorded channels, rising
  std::vector<std::optional<float>> zeros;  ///< baselines by column; none where it is no number
  std::vector<int> row_channels;            ///< those of `columns` that have a field in a row
  std::vector<StoredRow> rows;
  std::vector<std::int32_t> gaps;  ///< rows before each mark of a drilled gap
  std::int32_t torn_gap = -1;      ///< rows before the last mark that isn't whole; -1 there is none
  std::vector<LostLine> lost;      ///< lines that are no rows and no marks, in their order
  /// Whether a mark stands behind the last row: the depth was reached, and no row taken there.
  bool EndsInGap() const {
    return !gaps.empty() && gaps.back() == static_cast<std::int32_t>(rows.size());
  }
  /// The same, the mark being one that was torn or damaged and is left out.
  bool EndsInTornGap() const { return torn_gap == static_cast<std::int32_t>(rows.size()); }

  /// The lines that are sound, as they stand, each with its line end: what the file should hold.
  std::string sound_text;
  /// What can't be read, one entry for each: "LINE 23: ...".
  std::vector<std::string> damage;
  std::size_t damage_untold = 0;  ///< further ones behind the first hundred
  bool loses_lines = false;       ///< some of that are lines that `sound_text` leaves out
};

// Lines of the header, as they are told.
inline constexpr std::size_t kStoredConeLine = 5;
inline constexpr std::size_t kStoredDateLine = 9;

/// Whether a text is a date as the console writes it: "2026-06-15 09:30:00".
bool IsStoredDate(std::string_view text);

/// The values of a row, the text behind its depth and speed. Numbers wider than their field touch
/// what stands beside them. None where something else stands there.
std::optional<std::vector<float>> RowValues(std::string_view text);

/// The mark that stands at the head of a gap row.
inline constexpr std::string_view kGapMark = "DRILLOUT*****";

/// `header_only` tells for a channel 1 to 30 whether its file gives it a header column and no field
/// in rows. Rows behind number `most_rows` are left out. A line that is damaged is left out alone:
/// what stands behind it was measured too.
StoredSounding ReadTemporaryData(std::string_view text, bool (*header_only)(int channel),
                                 std::int32_t most_rows);

}  // namespace penlog
