// The folder in which every file of the console lies.
#pragma once

#include <string>
#include <string_view>

namespace penlog {

/// Its path: on a system of a version below 6 the program's own folder; else "PENLOG(KQ)" below
/// the folder that "allusersprofile" names, and without that one below the user's data folder.
std::string FindDataDirectory();

/// Path of a file in `session.DataDirectory`.
std::string DataPath(std::string_view name);

/// Makes the folder if it is missing and tries to write in it. Empty, or why it can't be written.
std::string WhyNotWritable(const std::string& folder);

}  // namespace penlog
