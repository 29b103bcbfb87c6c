// A frame: a ground with a border and, when it has a caption, a head line.
#pragma once

#include <QFont>
#include <QPainterPath>
#include <QWidget>

#include "forms/control.h"

namespace penlog {

class FrameView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(bool plain MEMBER plain_)  ///< only holds its widgets

 public:
  explicit FrameView(QWidget* parent = nullptr) : QWidget(parent) {}

  const QString& Caption() const { return caption_; }
  void SetCaption(const QString& caption);
  /// Grey is a plain frame; red fills all of it, any other colour its border and head line.
  void SetTone(Colour tone);
  QFont HeadFont() const;
  /// Room for the caption.
  QRect HeadRect() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int HeadHeight() const;
  void PaintHead(QPainter& painter, const QPainterPath& outline, const QColor& ground) const;
  void SetMargins();

  QString caption_;
  Colour tone_ = kGrey;
  bool plain_ = false;
};

}  // namespace penlog
