// Which routine serves which event of which screen: all of it stands here.
#pragma once

namespace penlog {

/// Connects every event. Called once, before the first screen is shown.
void WireScreens();

}  // namespace penlog
