// What the operator does reaches a form only through here: the view and the script player post
// actions, and each is checked again when its turn comes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "forms/form.h"
#include "platform/event_queue.h"

namespace penlog {

enum class ActionKind {
  Click,    ///< a button, a menu entry
  Press,    ///< a button goes down
  Release,  ///< and up again; never refused once its press was served
  Type,     ///< `text` is the new content of a text field
  Select,   ///< `number` is the entry of a list
  Check,    ///< `number` 1 or 0
  Point,    ///< pointer over a picture at `x`, `y`; `number` 1 for a click
  Close,    ///< the window's own close button; `control` is null
  Move,     ///< the window stands at `text`, "LEFT TOP WIDTH HEIGHT"; `control` is null. Never
            ///< refused, nor told to listeners: it has happened
};

/// How the control stood when the operator saw it; an action with another stamp is stale.
struct ActionStamp {
  std::uint32_t generation = 0;
  std::uint32_t falls = 0;  ///< of visible and enabled: the control, its frames and its screen
  bool operator==(const ActionStamp&) const = default;
};

struct OperatorAction {
  ActionKind kind = ActionKind::Click;
  Form* form = nullptr;
  Control* control = nullptr;
  std::string text;
  int number = 0;
  double x = 0;
  double y = 0;
  ActionStamp stamp;
};

/// The text of a `Move`.
std::string WindowPlaceText(const WindowPlace& place);

/// The stamp of a control as it stands now.
ActionStamp StampOf(const Form& form, const Control* control);

/// Queues an action. The stamp is the poster's: of the last frame that was shown.
void PostAction(const OperatorAction& action);
/// The same with the stamp of this moment.
void PostActionNow(OperatorAction action);

/// The whole action as an event of the queue. Its text is
/// "SCREEN.CONTROL GENERATION FALLS X Y TEXT", a screen alone for `Close`; `number` is the kind and
/// `lines` the action's number.
Event EventOfAction(const OperatorAction& action);
/// The action that an event of a journal holds, to be served as it was; none if it holds none, or
/// for a screen or a control that isn't there.
std::optional<OperatorAction> ActionFromEvent(const Event& event);
/// The program starts: the stamps in events are counted from here, so that the events of a run are
/// the same in a process that has seen other runs before. Comes when no action is under way.
void CountStampsFromHere();

/// Why the action can't be served now, for the player's report; empty if it can: its screen is
/// visible and loaded, its control visible and enabled since the stamp, and no box, dialog or modal
/// screen lies above.
std::string WhyRefused(const OperatorAction& action);

/// True while an action for this control waits in the queue: what its widget shows is then newer
/// than what the control holds.
bool ActionWaits(const Control& control);

/// Called as each action's turn comes, with whether it is served; for the player and for tests.
/// Before its handler runs: a handler may not return before the program ends.
void OnActionServed(std::function<void(const OperatorAction&, bool served)> listener);
/// Drops actions under way, and counts the stamps from here; for tests and sessions.
void ResetActions();

}  // namespace penlog
