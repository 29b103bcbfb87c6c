// The window of one screen: its arrangement, scaled to the window, and a mirror for each control.
#pragma once

#include <QMainWindow>
#include <memory>
#include <string>
#include <vector>

#include "forms/form.h"
#include "platform/qt/control_mirror.h"

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
  /// How many times as large as its arrangement the window stands.
  double Scale() const { return scale_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void AddMirrors();
  void AddMirror(Control& control);
  void CheckContainer(const Control& control, const QWidget& widget);
  void CheckWidgets();
  void Opened();
  void Rescale();
  void KeepGaps();
  void ScaleGaps() const;

  Form& form_;
  QSize base_;  // of the arrangement, on the display of 800 by 600 that it was drawn for
  double scale_ = 0;
  int translation_ = -1;
  ActionStamp stamp_;  // of the form itself, as it was shown last
  bool placed_ = false;
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
};

}  // namespace penlog
