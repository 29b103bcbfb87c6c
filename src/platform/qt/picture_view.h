// Shows a picture's drawing steps on a backing store: only new steps are drawn.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>

#include "forms/control.h"

namespace penlog {

class PictureView : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  /// Draws what `picture` has gained since the last call; all of it after a clearing.
  void Follow(const Picture& picture);
  /// Steps drawn so far, for tests.
  std::size_t StepsDrawn() const { return drawn_; }

  /// Place in fractions of the picture, and whether it was clicked.
  std::function<void(double x, double y, bool clicked)> on_point;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void Clear();
  void Point(const QPointF& place, bool clicked) const;

  QPixmap store_;
  std::size_t drawn_ = 0;
  std::uint32_t clearings_ = 0;
};

}  // namespace penlog
