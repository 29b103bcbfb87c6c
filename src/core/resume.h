// The last sounding, suspended or cut off, is read back and taken up again: the start screen's
// resume panel.
#pragma once

#include <string>

namespace penlog {

/// The paths of a sounding's files: the main file's, and its name with the side files' extensions
/// of three letters. Notes which of the test files exist.
void TakeSoundingPaths(const std::string& main_file);

/// Reads "TemporaryData.txt" into the session and the rows, and shows the panel. A sounding that
/// closed normally, a missing file and one without a whole header are told, and the start screen
/// stays.
void StartUp_cmdResume_Click();

/// Goes on where the cone stands: looks for the cone until it answers and opens its report page.
/// Refused in words while a distance drilled is typed.
void StartUp_cmdResumeAtLastDepth_Click();

/// The rods go down again first, to the last depth and what was drilled below it.
void StartUp_cmdResumeAtSurface_Click();

/// Leaves the panel, also while the cone is looked for.
void StartUp_cmdCancel_Click();

}  // namespace penlog
