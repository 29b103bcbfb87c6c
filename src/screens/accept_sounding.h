// The OK of the sounding's setup: the checks in their order, then the paths and the fields.
#pragma once

#include <string>

namespace penlog {

/// OK.
void SetupSounding_Command2_Click();

/// Why the sounding can't be accepted as the screen stands, as the operator is told; empty if it
/// can. A ".cpt" behind the name has been cut off before.
std::string WhyNotAccepted();

/// Whether soundings should not lie there: the root of a drive, or below "program files".
bool IsProtectedDirectory(const std::string& directory);

/// Takes paths and fields of the screen into the session.
void TakeSoundingFields();

}  // namespace penlog
