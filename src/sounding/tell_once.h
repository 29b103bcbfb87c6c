// Messages that come once for a cause, however often it comes up: a fault in each pass must not
// bury the console in boxes.
#pragma once

#include <string>

namespace penlog {

/// Posts a box with `text` unless it was told already. Never waits.
void TellOnce(const std::string& text);
/// The cause is gone: the next time it is told again.
void ForgetTold(const std::string& text);

}  // namespace penlog
