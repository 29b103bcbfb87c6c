// The start screen while it works: its status panel with the running dots, and which of its
// buttons give the operator a way on.
#pragma once

#include <string>

namespace penlog {

/// Disables every button, shows the panel with `status` and starts the timer behind the dots.
void BeginStatus(const std::string& status);
/// Stops the timer and hides the panel; the buttons stay as they are.
void EndStatus();

void DisableEveryButton();
void EnableEveryButton();
/// After a failure that needs other settings. The settings screen isn't built yet, so START leads
/// on in its place.
void OfferSetupOrExit();
/// After a failure that another try may mend.
void OfferAnotherTry();

}  // namespace penlog
