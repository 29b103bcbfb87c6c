// A place of the arrangement that takes what it is given, whatever it holds: nothing around it
// moves when it fills.
#pragma once

#include <QWidget>

namespace penlog {

class PlaceView : public QWidget {
  Q_OBJECT

 public:
  explicit PlaceView(QWidget* parent = nullptr) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  }
  bool hasHeightForWidth() const override { return false; }
  QSize sizeHint() const override { return {0, 0}; }
  QSize minimumSizeHint() const override { return {0, 0}; }
};

}  // namespace penlog
