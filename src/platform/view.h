// The windows as the rest of the program sees them. Without one (a test, a run without pictures)
// everything else works all the same: the forms hold all that is shown.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/boxes.h"

namespace penlog {

struct OperatorAction;

class View {
 public:
  virtual ~View() = default;

  /// Lets the windows follow the forms. The real clock calls it whenever it has collected; the
  /// windows are touched at most 30 times a second, and only where something differs.
  virtual void Frame() = 0;

  /// Brings the windows up to date and writes a picture of one screen to a PNG file, with the box
  /// or dialog that lies over it; an empty name takes the front screen. `width` and `height` are
  /// the size of the display that the picture stands for; 0 takes the window as it is. False when
  /// the screen is not visible or the file can't be written. Works in virtual time too.
  virtual bool Shot(const std::string& form_name, const std::string& file, int width,
                    int height) = 0;

  /// Does with the widgets what a hand does: the control's action comes in through the queue, with
  /// the stamp of what was shown. False with the reason in `why` when the hand would fail: the
  /// widget is hidden, disabled, covered or smaller than 8 pixels. Typing the text that stands
  /// there already, or checking what is checked, queues nothing.
  virtual bool Act(const OperatorAction& action, std::string& why) = 0;

  /// Presses a button of the message box in front.
  virtual bool PressBoxButton(BoxAnswer answer, std::string& why) = 0;
};

/// The view in use; null when there is none.
View* TheView();
void UseView(View* view);

/// The sets of colours of the windows: bright for the sun, toned for the night.
enum class LookSet { Day, Night };
LookSet ChosenLook();
/// The windows change with their next frame.
void ChooseLook(LookSet set);

/// How a text of the program is shown in the operator's language. Controls keep the program's own
/// text, so that what is compared is never a translated one.
std::string ShownText(std::string_view text);
/// Sets that translation; an empty function shows texts as they are.
void UseTranslation(std::function<std::string(std::string_view)> translation);
/// Counts the calls of `UseTranslation`: what was shown before is shown anew.
int TranslationGeneration();

}  // namespace penlog
