// Messages to the operator that are right in each mode of the console: while rows are recorded a
// box is only posted, so that no row waits behind a question.
#pragma once

#include <functional>
#include <string>

#include "platform/boxes.h"

namespace penlog {

/// Tells the operator. Waits for OK while nothing is recorded; else posts and returns at once.
void Tell(const std::string& text);
/// Asks Yes or No; `answered` runs with true for Yes, before this returns while nothing is
/// recorded, else as an event of its own later.
void AskYesNo(const std::string& text, std::function<void(bool)> answered);

}  // namespace penlog
