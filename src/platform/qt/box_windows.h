// The message box and the file dialog in front, as windows of their own that block nothing: the
// yields go on behind them, and what must stay usable below them does.
#pragma once

#include <QDialog>
#include <QFileDialog>
#include <QPointer>
#include <QPushButton>
#include <map>
#include <memory>
#include <string>

#include "platform/boxes.h"

namespace penlog {

/// A message box. It is gone when its answer has been served, not when it was pressed.
class BoxWindow : public QDialog {
  Q_OBJECT

 public:
  BoxWindow(const MessageBox& box, QWidget* over);
  int Id() const { return id_; }
  double Scale() const { return scale_; }
  /// The button for that answer; null if the box has none.
  QPushButton* ButtonFor(BoxAnswer answer) const;

 protected:
  /// The window's own close button and Escape: Cancel where it is offered, OK where nothing else
  /// is; a question of Yes and No stays.
  void reject() override;

 private:
  void AddButton(BoxAnswer answer, QWidget& row);

  int id_;
  BoxButtons buttons_;
  double scale_;
  std::map<BoxAnswer, QPushButton*> widgets_;
};

class BoxWindows {
 public:
  /// Brings the windows to the box and the dialog that are open now, over the window `over`.
  void Follow(QWidget* over);
  /// The window in front; null when nothing is open.
  QWidget* Front() const;
  /// Presses a button of the box in front.
  bool Press(BoxAnswer answer, std::string& why);

 private:
  void FollowBox(QWidget* over);
  void FollowDialog(QWidget* over);

  std::unique_ptr<BoxWindow> box_;
  std::unique_ptr<QFileDialog> dialog_;
  int dialog_id_ = 0;
};

}  // namespace penlog
