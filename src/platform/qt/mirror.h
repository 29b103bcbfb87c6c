// Mirrors the forms onto windows: each control's values go to the widget of its name. The windows
// follow at most 30 times a second; what did not change costs a compare.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/qt/box_windows.h"
#include "platform/qt/form_window.h"
#include "platform/qt/stop_key.h"
#include "platform/view.h"

namespace penlog {

/// At most 30 frames a second.
constexpr int kFrameMs = 33;

class WindowMirror : public View {
 public:
  WindowMirror();

  void Frame() override;
  bool Shot(const std::string& form_name, const std::string& file, int width, int height) override;
  bool Act(const OperatorAction& action, std::string& why) override;
  bool PressBoxButton(BoxAnswer answer, std::string& why) override;

  /// Lets the windows follow at once.
  void Follow();
  /// Frames so far.
  std::int64_t Frames() const { return frames_; }
  /// How often the windows were put into their order.
  std::int64_t Raised() const { return raised_; }
  /// The front window still waits for the keys: a button is held.
  bool WaitsForKeys() const { return activation_due_; }
  /// The window of a form; made when it is first asked for.
  FormWindow& WindowOf(Form& form);

 private:
  void FollowOrder();
  void ActivateFront();
  void StandAbove(FormWindow& window);
  FormWindow* FrontWindow();
  std::vector<FormWindow*> ShownWindows();

  std::map<std::string, std::unique_ptr<FormWindow>> windows_;
  std::vector<Form*> order_;  // of the shown windows, the front one last
  std::uint32_t raises_ = 0;  // of the forms, as far as the windows have followed
  std::int64_t raised_ = 0;
  bool activation_due_ = false;
  BoxWindows boxes_;
  StopKey stop_key_;
  QElapsedTimer since_frame_;
  QTimer later_;  // the frame that was too early to be drawn at once
  std::int64_t frames_ = 0;
};

/// What is wrong between the controls of all forms and the widgets of their windows.
std::vector<std::string> MirrorMismatches();

}  // namespace penlog
