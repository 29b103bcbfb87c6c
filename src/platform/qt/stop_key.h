// The one key that stops a sounding, from whichever window is in front.
#pragma once

#include <QObject>

namespace penlog {

constexpr int kStopKey = Qt::Key_F12;

/// Watches the whole program for the stop's key, whichever window is in front.
class StopKey : public QObject {
  Q_OBJECT

 public:
  StopKey();
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace penlog
