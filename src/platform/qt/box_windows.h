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
#include <vector>

#include "platform/boxes.h"
#include "platform/qt/box_place.h"
#include "platform/qt/form_window.h"
#include "platform/view.h"

namespace penlog {

/// A message box. It is gone when its answer has been served, not when it was pressed.
class BoxWindow : public QDialog {
  Q_OBJECT

 public:
  BoxWindow(const MessageBox& box, QWidget* over);
  int Id() const { return id_; }
  double Scale() const { return scale_; }
  /// Takes its place; a text that is too long for the room there can be scrolled.
  void Stand(const BoxGround& ground);
  /// The button for that answer; null if the box has none.
  QPushButton* ButtonFor(BoxAnswer answer) const;

 protected:
  /// The window's own close button and Escape: Cancel where it is offered, OK where nothing else
  /// is; a question of Yes and No stays.
  void reject() override;

 private:
  void AddButton(BoxAnswer answer, QWidget& row);
  QSize SizeAt(int width) const;
  bool StandIn(const QRect& room, const std::vector<QRect>& kept);
  void StandScrolled(const QRect& free);

  int id_;
  BoxButtons buttons_;
  double scale_;
  std::map<BoxAnswer, QPushButton*> widgets_;
};

class BoxWindows {
 public:
  /// Brings the windows to the box and the dialog that are open now, each over the window of the
  /// screen that asked for it. `shown` are the windows in sight, the front one last.
  void Follow(const std::vector<FormWindow*>& shown);
  /// The window in front; null when nothing is open.
  QWidget* Front() const;
  /// The window that it concerns; null when nothing is open.
  FormWindow* Over() const { return concerned_; }
  /// Where it stands on that window.
  QRect PlaceOver(const QWidget& over) const;
  /// Presses a button of the box in front.
  bool Press(BoxAnswer answer, std::string& why);

 private:
  void FollowBox(const std::vector<FormWindow*>& shown);
  void FollowDialog(const std::vector<FormWindow*>& shown);
  void FollowPlace(const std::vector<FormWindow*>& shown);

  std::unique_ptr<BoxWindow> box_;
  std::unique_ptr<QFileDialog> dialog_;
  int dialog_id_ = 0;
  FormWindow* concerned_ = nullptr;
  BoxGround ground_;  // as the box was placed
  LookSet look_ = LookSet::Day;
};

}  // namespace penlog
