// What a data directory gets when it is used for the first time.
#pragma once

#include <string_view>

namespace penlog {

/// Lays the first-run files into `session.DataDirectory` if it holds none of them. Files that are
/// there are never touched, and a directory that has some and lacks others stays as it is: a
/// missing channel file says that the channel is not known. A laying down that was cut short is
/// finished by the next one. Raises a `RuntimeFault` if the directory can't be written.
void LayDownFirstRunFiles();

/// Content of one first-run file; empty if there is none of that name.
std::string_view FirstRunContent(std::string_view name);

}  // namespace penlog
