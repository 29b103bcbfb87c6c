// A sounding goes on in another folder: the files that stood beside its main file go along.
#pragma once

#include <array>
#include <string>

namespace penlog {

/// Paths by the index of `SoundingFiles`.
using SoundingPaths = std::array<std::string, 7>;

/// By the same index.
using SideFiles = std::array<bool, 7>;

/// Copies the `.dis`, `.smc`, `.tim` and `.res` files to their new places; nothing of the old place
/// is touched. What stands there under their names is renamed beside; where the sounding's main
/// file stood there already (`is_its_place`), a file that the old place lacks stays. A file that
/// can't be copied is tried again or left, as the operator says; what stays where is told. The
/// flags are those of the test files that stood at the old place when it was last looked at.
/// Returns the files under whose new names another sounding's had to stay: none of them is ours.
SideFiles MoveSideFiles(const SoundingPaths& from, const SoundingPaths& to, bool is_its_place,
                        bool has_dissipation_file, bool has_seismic_file);

}  // namespace penlog
