// Progress of long work: port n of how many, step n of how many, record n. It moves in words and as
// a bar, on the start screen and on the console.
#pragma once

#include <string>

namespace penlog {

/// Of a start: three ports that may be there, the overlay's, the cone.
constexpr int kStartSteps = 5;

/// "PORT 2 OF 5"; without `of` (not known beforehand) "RECORD 7".
std::string ProgressText(const std::string& what, int done, int of);

/// Shows it until the next one or the end. `of` 0: not known; the bar then wanders.
void ShowProgress(const std::string& what, int done, int of);
void EndProgress();

}  // namespace penlog
