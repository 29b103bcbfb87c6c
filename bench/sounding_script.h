// The operator's way from the start to a recording console, as a script.
#pragma once

#include <string>

namespace penlog {

/// Finds the cone on port 3 and takes port 4 for the truck; the files go into a folder "soundings"
/// of the root that the setup screen shows, or of `folder` if one is named.
std::string ScriptToRecording(const std::string& folder = {});
/// Stops, without a final baseline, and ends.
std::string ScriptToEnd();

}  // namespace penlog
