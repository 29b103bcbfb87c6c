// Lamps, the level with its bubble, bars: what the program calls shapes.
#pragma once

#include <QColor>
#include <QWidget>

#include "forms/control.h"

namespace penlog {

class ShapeView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString figure MEMBER figure_)  ///< "lamp", "key" (of a lamp's colours), "level",
                                             ///< "bubble", "ground", "bar"

 public:
  explicit ShapeView(QWidget* parent = nullptr) : QWidget(parent) {}

  void SetFill(FillStyle fill, Colour colour);
  bool IsSolid() const { return fill_ == FillStyle::Solid; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor FillColour() const;
  void PaintLamp(QPainter& painter) const;
  void PaintKey(QPainter& painter) const;
  void PaintLevel(QPainter& painter) const;
  void PaintBubble(QPainter& painter) const;
  void PaintGround(QPainter& painter) const;

  QString figure_ = "lamp";
  FillStyle fill_ = FillStyle::Hollow;
  Colour colour_;
};

}  // namespace penlog
