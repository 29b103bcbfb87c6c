// A frame: a ground with a border and, when it has a caption, a head line.
#pragma once

#include <QColor>
#include <QFont>
#include <QWidget>

namespace penlog {

class FrameView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(bool plain MEMBER plain_)  ///< only holds its widgets

 public:
  explicit FrameView(QWidget* parent = nullptr) : QWidget(parent) {}

  const QString& Caption() const { return caption_; }
  void SetCaption(const QString& caption);
  /// Colour of the border and the head line.
  void SetTone(const QColor& tone);
  QFont HeadFont() const;
  /// Room for the caption.
  QRect HeadRect() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int HeadHeight() const;
  void SetMargins();

  QString caption_;
  QColor tone_;
  bool plain_ = false;
};

}  // namespace penlog
