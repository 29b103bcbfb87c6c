// Which screen asked for a message box or a file dialog: the view puts it over that one.
#pragma once

#include <string>

namespace penlog {

/// While it lives, boxes and dialogs are asked for by that screen; the one made last counts.
class BoxAsker {
 public:
  explicit BoxAsker(std::string screen);
  BoxAsker(const BoxAsker&) = delete;
  BoxAsker& operator=(const BoxAsker&) = delete;
  ~BoxAsker();
};

/// The screen that asked for the box or dialog of that number; empty: none did.
std::string AskerOfBox(int id);

/// For the boxes themselves: one comes, one is gone, all are.
void KeepAskerOfBox(int id);
void ForgetAskerOfBox(int id);
void ForgetAskers();

}  // namespace penlog
