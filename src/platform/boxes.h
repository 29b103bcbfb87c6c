// Message boxes and file dialogs. They are data here; the view shows the one in front, and its
// answer comes in as an event.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/event_queue.h"

namespace penlog {

enum class BoxButtons {
  Ok,
  OkCancel,
  YesNo,
  YesNoCareful,  ///< the same, where a yes costs something: Enter alone is a no
};
enum class BoxAnswer { Ok, Cancel, Yes, No };

struct MessageBox {
  int id = 0;
  std::string text;
  BoxButtons buttons = BoxButtons::Ok;
  std::function<void(BoxAnswer)> answered;  ///< runs in a yield, after the box is gone
};

/// Queues a box and returns. While another is open it waits behind that one. A text of more than
/// 3000 characters is cut.
void PostBox(const std::string& text, BoxButtons buttons = BoxButtons::Ok,
             std::function<void(BoxAnswer)> answered = {});
/// Shows a box and waits for its answer in a yield loop. Not for handlers that run while rows are
/// recorded: those post.
BoxAnswer MsgBox(const std::string& text, BoxButtons buttons = BoxButtons::Ok);
/// The box that is shown now; none if no box is open.
const MessageBox* FrontBox();
/// Every box that is open, the one in front first.
const std::deque<MessageBox>& OpenBoxes();
/// The operator's answer, from the view or the player: queued; ignored when box `id` is gone or has
/// no such button.
void AnswerBox(int id, BoxAnswer answer);
/// True when the box offers that answer.
bool Offers(BoxButtons buttons, BoxAnswer answer);

struct FileDialog {
  int id = 0;
  std::string title;
  std::string folder;
  std::string pattern;  ///< "*.cal"
  bool for_saving = false;
};

/// Shows a file dialog and waits for its answer in a yield loop; none when it was cancelled. Raises
/// a `RuntimeFault` while another is open.
std::optional<std::string> AskFile(const std::string& title, const std::string& folder,
                                   const std::string& pattern, bool for_saving);
const FileDialog* OpenFileDialog();
/// The operator's answer: queued; an empty path cancels.
void AnswerFileDialog(int id, const std::string& path);

/// True while a box or a dialog is open: nothing below it takes an action.
bool BoxIsOpen();
/// Drops all boxes and dialogs; for tests and for the end of the program.
void ResetBoxes();

}  // namespace penlog
