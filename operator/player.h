// Plays an operator script on the forms: with windows it acts on their widgets, without them on
// the forms through the same dispatch check.
#pragma once

#include <functional>
#include <string>

#include "forms/operator_actions.h"
#include "operator/script.h"
#include "platform/boxes.h"
#include "platform/event_queue.h"

namespace penlog {

/// What the player reaches besides the forms.
struct PlayerHands {
  /// A command to the simulated rig; returns why it failed, empty if it was carried out.
  std::function<std::string(const std::string& words)> rig;
  /// "full": the console's disk takes nothing more; "free": it does again. Returns why it failed.
  std::function<std::string(const std::string& word)> disk;
  /// Takes a picture of a screen ("" for the front one); returns why it failed.
  std::function<std::string(const std::string& file, const std::string& screen)> shot;
  /// Acts on the widgets; returns why it can't yet, empty once it was done. Without it the player
  /// acts on the forms.
  std::function<std::string(const OperatorAction& action)> act;
  /// Presses a button of the box in front; returns why it can't yet. Without it the player gives
  /// the answer itself.
  std::function<std::string(BoxAnswer answer)> answer;
  /// Ends the process at once, as a crash does.
  std::function<void()> kill;
  /// Told each action as its turn comes.
  std::function<void(const ScriptAction& action)> turn;
  /// Boxes that the script does not answer are taken with YES or OK.
  bool takes_boxes = false;
  /// Told the text of each box that is taken so.
  std::function<void(const std::string& text)> took_box;
};

class Player {
 public:
  Player(Script script, PlayerHands hands);
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  /// Begins to play, inside the yields; ends the program behind the last action.
  void Start();
  bool Finished() const { return next_ >= script_.actions.size(); }
  /// Tells the player that the program has ended; returns the exit code: 0 played to its end, 1
  /// something was not as expected.
  int Close();
  /// "SCRIPT:LINE: expected ..., was ..."; empty if all was as expected.
  const std::string& Report() const { return report_; }

 private:
  /// Done, or not yet: then `expected_` and `was_` say what is awaited.
  bool Try(const ScriptAction& action);
  bool TryScreen(const ScriptAction& action);
  bool TryAct(const ScriptAction& action);
  bool TryAnswer(const ScriptAction& action);
  bool TryFile(const ScriptAction& action);
  bool TryExpect(const ScriptAction& action);
  bool TryOutside(const ScriptAction& action);
  bool TryEnd();
  bool TakeBox();
  void TellTurn() const;
  bool Asks(const ScriptAction& action, OperatorAction& act);
  /// True while the action that was posted decides: `done` once it was served.
  bool IsUnderWay(bool& done);
  bool FindControl(const std::string& name, Form*& form, Control*& control);
  /// Posts the action once it may be; false, since its turn is still to come.
  bool Perform(const OperatorAction& action);
  Micros Patience(const ScriptAction& action) const;
  void Step();
  void Wait(Micros time);
  void Next();
  void Fail();
  void PostStep();

  Script script_;
  PlayerHands hands_;
  std::size_t next_ = 0;
  Micros begun_ = 0;      // when the action under way was begun
  bool posted_ = false;   // an action is on its way to its control
  bool refused_ = false;  // and its turn came in vain
  bool tried_ = false;
  bool waits_ = false;  // a `wait` has posted its end
  bool failed_ = false;
  std::string expected_;
  std::string was_;
  std::string judged_;  // the text that an `expect` looked at last
  std::string report_;
};

/// The text of a control as `expect` compares it: the caption of labels and buttons, the content
/// of text fields and lists.
std::string ControlText(const Control& control);

}  // namespace penlog
