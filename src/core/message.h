// Messages to the operator that are right in each mode of the console: while rows are recorded a
// box is only posted, so that no row waits behind a question.
#pragma once

#include <string>

namespace penlog {

/// Tells the operator. Waits for OK while nothing is recorded; else posts and returns at once.
void Tell(const std::string& text);

}  // namespace penlog
