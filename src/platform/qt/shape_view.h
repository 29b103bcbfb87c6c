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
  // A lamp says its state in words too; each in the operator's language.
  Q_PROPERTY(QString wordOn MEMBER word_on_)
  Q_PROPERTY(QString wordOff MEMBER word_off_)
  Q_PROPERTY(QString wordRed MEMBER word_red_)      ///< lit in red; empty: the word for on
  Q_PROPERTY(QString wordGreen MEMBER word_green_)  ///< lit in green; empty: the word for on

 public:
  explicit ShapeView(QWidget* parent = nullptr) : QWidget(parent) {}

  void SetFill(FillStyle fill, Colour colour);
  bool IsSolid() const { return fill_ == FillStyle::Solid; }
  /// The word that the program itself gives a lamp; empty: the one for its fill and colour.
  void SetWord(const QString& word);
  /// The state that a lamp shows now, in words; empty for the other figures.
  QString Word() const;
  /// The font that it is written with, and the room for it.
  QFont WordFont() const;
  QRect WordRect() const;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool IsLamp() const { return figure_ == "lamp"; }
  int WidestWord(const QFont& font) const;
  QColor FillColour() const;
  void PaintLamp(QPainter& painter) const;
  void PaintKey(QPainter& painter) const;
  void PaintLevel(QPainter& painter) const;
  void PaintBubble(QPainter& painter) const;
  void PaintGround(QPainter& painter) const;

  QString figure_ = "lamp";
  QString word_;
  QString word_on_ = "ON";
  QString word_off_ = "OFF";
  QString word_red_;
  QString word_green_;
  FillStyle fill_ = FillStyle::Hollow;
  Colour colour_;
};

}  // namespace penlog
