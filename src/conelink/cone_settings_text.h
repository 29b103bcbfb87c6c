// What the cone and its modules say of themselves, as the lines of the report page.
#pragma once

#include <string>

namespace penlog {

/// The page as text: the cone's header in two columns, a line for each of its channels in five,
/// then the same for each module. Lines end in LF; columns stand at fractions of a page of 110
/// characters, or further right where an entry is longer, two blanks apart at least.
std::string ConeSettingsReport();

}  // namespace penlog
