// What the hands of each operator do in these attacks: he looks ten times a second, takes boxes
// with OK or YES, and acts on the screen in front.
#pragma once

#include <functional>
#include <string>

#include "forms/control.h"
#include "forms/operator_actions.h"
#include "platform/event_queue.h"

namespace penlog {

constexpr Micros kGlance = 100 * kMillisecond;

/// One look, `kGlance` from now; `owner` drops it.
void PostGlance(void* owner, std::function<void()> look);

/// The place of `text` in the list; 0 if it is not there.
int EntryOf(const Control& list, const std::string& text);

/// An action on "SCREEN.CONTROL", with the stamp of this moment.
void Do(const std::string& control, ActionKind kind = ActionKind::Click,
        const std::string& text = {}, int number = 0);

/// Takes the box in front, with YES if it asks, else with OK, and returns its text; empty where
/// none stands in front.
std::string TakeFrontBox();

/// The name of the screen in front, the warnings' own left out; empty for none.
std::string FrontScreen();

}  // namespace penlog
