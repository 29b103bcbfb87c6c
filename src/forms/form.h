// A screen as data. Screens open each other by `Show(form)`; which routine serves which event is
// written in the program's wiring.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "forms/control.h"

namespace penlog {

/// Where a window stands with its frame, in pixels of the display; no width: not known.
struct WindowPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const WindowPlace&) const = default;
};

class Form {
 public:
  Form(std::string name, std::string caption);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form();

  const std::string& Name() const { return name_; }
  const std::vector<Control*>& Controls() const { return controls_; }
  /// The control of that name ("lblChanValue_3"); null if there is none.
  Control* Find(const std::string& name) const;

  std::string Caption;
  Colour BackColor = kGrey;
  Flag Visible = false;
  Flag Enabled = true;
  bool Loaded = false;
  bool Modal = false;  ///< nothing below it takes an action while it is shown
  /// Height of the window on a display of 800 by 600 where the screen's content decides it; 0: as
  /// it is arranged.
  int DesignHeight = 0;
  WindowPlace Window;  ///< as the view last told it, or as `MoveWindow` set it
  /// Counts the places that the program gave: the view follows a new one.
  std::uint32_t Moves() const { return moves_; }
  /// Counts unloads: an action from before is stale.
  std::uint32_t Generation() const { return generation_; }

  std::function<void()> Load;         ///< runs when the screen is loaded
  std::function<void()> QueryUnload;  ///< runs when the operator closes the window; without one
                                      ///< the window stays, or the program ends
  bool ClosingEnds = false;  ///< closing its window ends the program: the screens on the main way

  /// Runs at `Unload`: stops the screen's timers and closes its ports.
  virtual void Released() {}

 protected:
  /// Last line of each screen's constructor: what the controls hold now are their first values.
  void KeepFirstValues();
  /// Puts controls into a frame.
  static void Hold(Frame& frame, const std::vector<Control*>& controls);

 private:
  friend struct Control;
  friend void Unload(Form& form);
  friend void MoveWindow(Form& form, const WindowPlace& place);
  void Add(Control* control) { controls_.push_back(control); }
  void BackToFirstValues();

  std::string name_;
  std::string first_caption_;
  Colour first_back_color_ = kGrey;
  std::vector<Control*> controls_;
  std::uint32_t generation_ = 0;
  std::uint32_t moves_ = 0;
};

/// Loads the screen (its `Load` event runs) without showing it; a loaded one stays as it is.
void LoadForm(Form& form);
/// Loads it if needed and brings it to the front.
void Show(Form& form);
/// Puts a visible screen behind all others.
void SendBehind(Form& form);
/// Shows it above all others, and waits in a yield loop until it is hidden or unloaded.
void ShowModal(Form& form);
void Hide(Form& form);
/// Hides it and puts its controls back to their first values; `Load` runs at the next showing.
void Unload(Form& form);

/// Puts the screen's window there: the view moves it in its next frame.
void MoveWindow(Form& form, const WindowPlace& place);

/// Every screen of the program, in order of names: the same in each build.
const std::vector<Form*>& AllForms();
/// Screens that are visible, the front one last.
const std::vector<Form*>& ShownForms();
Form* FindForm(const std::string& name);
/// Unloads all; for tests.
void ResetForms();

}  // namespace penlog
