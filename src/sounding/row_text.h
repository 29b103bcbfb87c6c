// The texts of a sounding's files, from the global tables: headers, rows, closing lines. Each ends
// with CR LF. Nothing is written here.
//
// The three kinds of `.cpt` lines list different channels: the header those that are recorded, the
// rows only those with a value in the reply, the flush rows all but by an old quirk. Readers go by
// the column numbers of the header. All of it must stay as it is.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace penlog {

/// Header columns: 1 to 30 but 19 and 20, present or kept by a resume, with a `RecordMode` above 0.
std::vector<int> HeaderChannels();
/// Columns of rows: 1 to 30 but 19 to 22, present, with a `RecordMode` above 0 and not 3.
std::vector<int> RowChannels();
/// Columns of flush rows and of the final baseline: as the rows, with 21 and 22, and with 19 and 20
/// where `with_derived`.
std::vector<int> FlushChannels(bool with_derived);

/// The short label; with a ball tip that of channel 1 holds the ball's diameter in mm.
std::string ColumnTitle(int channel);
/// The field of a channel in a row, raw, 20 characters; "-32768" in a row that was recorded without
/// it, also once the channel is back: lines that stand in the files are never formed otherwise.
std::string RowValue(std::int32_t row, int channel);

/// The first lines of the `.cpt` file; `DepthSignificantDigits` above 2 selects the new form.
std::string CptHeader();
/// The first 17 lines of "TemporaryData.txt"; `cpt_path` is the sounding's main file.
std::string TemporaryHeader(const std::string& cpt_path);
/// The two lines of the `.tim` file; `seconds` since midnight.
std::string TimHeader(float seconds);

/// The `.cpt` row that becomes complete with row `newest`: row `newest` - `DelayRows`, each channel
/// from the row in which its sensor passed that depth, the speed of the newest step.
std::string AlignedRow(std::int32_t newest);
/// A row that alignment held back, `newest` being the last of the sounding: no shift, and -32768
/// for a sensor that has not reached this depth. Rows 19 and 20 hold no channel at all.
std::string FlushRow(std::int32_t row, std::int32_t newest);
/// The current readings as the last line of the `.cpt` file.
std::string FinalBaselineLine();
/// A row as it was read, in double quotes, for "TemporaryData.txt".
std::string TemporaryRow(std::int32_t row);
/// The mark of a drilled gap for "TemporaryData.txt": without quotes, a field of asterisks for each
/// channel that is there and recorded, the computed ones too.
std::string GapRow();
/// A mark of the camera, 0.75 m behind the tip: `depth` of the tip in metres.
std::string PictureMarkLine(float depth, float seconds);

}  // namespace penlog
