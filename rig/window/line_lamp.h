// One line of the truck's port as a lamp: full while it is on, hollow otherwise, and its state in
// words.
#pragma once

#include <QWidget>

#include "rig/rig_panel.h"

namespace penlog {

class LineLamp : public QWidget {
  Q_OBJECT

 public:
  explicit LineLamp(QWidget* parent);

  /// Draws only if something changed.
  void Show(const PanelLine& line);
  const PanelLine& Shown() const { return line_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Width of the ring, and the gap around the lamp.
  int Edge() const;

  PanelLine line_;
};

}  // namespace penlog
