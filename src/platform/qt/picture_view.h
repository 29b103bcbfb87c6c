// Shows a picture of the program at the full resolution of its display.
#pragma once

#include <QWidget>
#include <functional>

#include "forms/control.h"
#include "platform/qt/picture_canvas.h"

namespace penlog {

class PictureView : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  /// Draws what `picture` has gained since the last call; all of it after a clearing. The picture
  /// is drawn again from its data when the size changes, so it must live as long as the view.
  void Follow(const Picture& picture);
  /// Steps drawn so far, for tests.
  std::size_t StepsDrawn() const { return canvas_.StepsDrawn(); }
  /// What is shown, in pixels of the display.
  const QImage& Shown() const { return canvas_.Image(); }

  /// Place in fractions of the picture, and whether it was clicked.
  std::function<void(double x, double y, bool clicked)> on_point;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void Point(const QPointF& place, bool clicked) const;

  PictureCanvas canvas_;
  const Picture* picture_ = nullptr;
};

}  // namespace penlog
