// The arrangements: one .ui file a screen, found by the screen's name.
#pragma once

#include <QMainWindow>
#include <string>

namespace penlog {

/// Fills a window with the arrangement of that screen; false when there is none.
bool SetUpWindow(const std::string& form_name, QMainWindow& window);

}  // namespace penlog
