// The window of one screen: its arrangement, scaled to the window, and a mirror for each control.
#pragma once

#include <QMainWindow>
#include <QPushButton>
#include <memory>
#include <string>
#include <vector>

#include "forms/form.h"
#include "platform/qt/control_mirror.h"
#include "platform/view.h"

namespace penlog {

class FormWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit FormWindow(Form& form);

  Form& Mirrored() const { return form_; }
  /// Brings window and widgets to what the form holds; opens or closes the window with it.
  void Follow();
  /// The mirror of a control; null if it has no widget.
  ControlMirror* MirrorOf(const Control& control) const;

  /// What is wrong between controls and widgets: one without the other, a widget without a name, a
  /// frame that does not hold what its control holds. Names of mere arrangement begin with "area".
  const std::vector<std::string>& Mismatches() const { return mismatches_; }

  /// The size of this window on a display of that size.
  QSize SizeOn(const QSize& display) const;
  /// Stands at another size for a picture: that is no place to tell.
  void StandForPicture(bool on) { for_picture_ = on; }
  /// The button that stops a sounding now; null for none.
  QPushButton* StopButton() const;
  /// How many times as large as its arrangement the window stands.
  double Scale() const { return scale_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void moveEvent(QMoveEvent* event) override;

 private:
  void AddMirrors();
  void AddMirror(Control& control);
  void CheckContainer(const Control& control, const QWidget& widget);
  void CheckWidgets();
  void Opened();
  void FollowHeight();
  void FollowMove();
  void TellPlace();
  void Rescale();
  void KeepGaps();
  void Style();
  void FollowTexts();
  void ScaleGaps() const;

  Form& form_;
  QSize base_;  // of the arrangement, on the display of 800 by 600 that it was drawn for
  double scale_ = 0;
  int translation_ = -1;
  LookSet look_ = LookSet::Day;
  bool texts_due_ = true;  // their room or they themselves have changed
  ActionStamp stamp_;      // of the form itself, as it was shown last
  bool placed_ = false;
  std::uint32_t moves_ = 0;  // of the form, as far as the window has followed
  WindowPlace place_;        // as last told to the form, or set by it
  bool for_picture_ = false;
  /// Margins and gaps of the arrangement as they were drawn.
  struct Gaps {
    QLayout* layout;
    QMargins margins;
    int across;
    int down;
  };
  std::vector<Gaps> gaps_;
  std::vector<std::unique_ptr<ControlMirror>> mirrors_;
  std::vector<std::string> mismatches_;
  int settling_ = 0;  // frames in which places in fractions may still follow a new size
};

}  // namespace penlog
