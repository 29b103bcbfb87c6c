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
#include "platform/view.h"

namespace penlog {

/// Where a box of that size stands on a window of that size: in the middle of what lies below
/// `kept` (the depth; empty: nothing), and never higher. A box that is too large for the room has
/// been made smaller before.
QRect BoxPlace(const QSize& box, const QSize& window, const QRect& kept);

/// A message box. It is gone when its answer has been served, not when it was pressed.
class BoxWindow : public QDialog {
  Q_OBJECT

 public:
  BoxWindow(const MessageBox& box, QWidget* over);
  int Id() const { return id_; }
  double Scale() const { return scale_; }
  /// Takes its place over the window; a text that is too long for the room there can be scrolled.
  void StandOver(const QWidget& over);
  /// The button for that answer; null if the box has none.
  QPushButton* ButtonFor(BoxAnswer answer) const;

 protected:
  /// The window's own close button and Escape: Cancel where it is offered, OK where nothing else
  /// is; a question of Yes and No stays.
  void reject() override;

 private:
  void AddButton(BoxAnswer answer, QWidget& row);
  void StandIn(int width, const QSize& room);

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
  /// Where it stands on the window that it concerns.
  QRect PlaceOver(const QWidget& over) const;
  /// Presses a button of the box in front.
  bool Press(BoxAnswer answer, std::string& why);

 private:
  void FollowBox(QWidget* over);
  void FollowDialog(QWidget* over);
  void FollowPlace(QWidget* over);

  std::unique_ptr<BoxWindow> box_;
  std::unique_ptr<QFileDialog> dialog_;
  int dialog_id_ = 0;
  QRect over_;  // the window and its depth as the box was placed
  QRect kept_;
  LookSet look_ = LookSet::Day;
};

}  // namespace penlog
