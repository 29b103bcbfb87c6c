// Writing the files of a sounding: "TemporaryData.txt", the copy that survives a crash, and the
// `.cpt` file, the deliverable. Headers and the closing word replace a file as a whole; each row is
// one append to each file, with no yield between.
#pragma once

#include <string>

namespace penlog {

/// Makes both files with their headers, and the `.tim` file with a probe camera of kind 1 or 2. The
/// baselines go to row 0. What stands there under these names, as an unfinished sounding in
/// "TemporaryData.txt", is renamed beside itself. Raises a `RuntimeFault` where a file can't be
/// made; all names are then as they were.
void CreateSoundingFiles();

/// Copies the readings into row `RowCount` and writes it: as it was read to "TemporaryData.txt",
/// and the aligned row that it completes to the `.cpt` file.
void RecordRow();

/// The closing lines of the `.cpt` file: the rows that alignment held back, and with
/// `CloseWithFinalBaseline` the current readings. False while the disk refuses them.
bool WriteClosingRows();

/// "TemporaryData.txt" becomes the one line "DONE". Raises a `RuntimeFault`.
void MarkSoundingDone();

/// Whether the camera of a probe marks its depths in a `.tim` file.
bool HasTimFile();

/// Whether the file stands and its sounding was closed normally: its first line is "DONE".
bool IsMarkedDone(const std::string& path);

}  // namespace penlog
