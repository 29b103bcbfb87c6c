// A line of text whose size does not depend on the text: a value that changes ten times a second
// costs a repaint of its own ground and no pass of the layout. A text that is too long is drawn
// smaller, never cut.
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace penlog {

class TextView : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString sample MEMBER sample_)  ///< the longest text that is expected
  Q_PROPERTY(bool fill MEMBER fill_)         ///< as large as the ground allows
  Q_PROPERTY(bool tall MEMBER tall_)         ///< digits of a twelfth of the window's height
  Q_PROPERTY(bool plain MEMBER plain_)       ///< without a ground of its own
  Q_PROPERTY(bool leading MEMBER leading_)   ///< at the left, not at the right
  Q_PROPERTY(bool centred MEMBER centred_)

 public:
  explicit TextView(QWidget* parent = nullptr);

  const QString& Text() const { return text_; }
  void SetText(const QString& text);
  void SetColours(const QColor& text, const QColor& ground);
  void SetBold(bool bold);
  /// Its ground is painted although it is plain: an alarm, a state.
  void SetFilled(bool filled);
  /// The font that the present text is drawn with.
  QFont FittingFont() const;
  /// Room for the text.
  QRect TextRect() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int Gap() const;
  QSize TallSize() const;
  int Alignment() const;

  QString text_;
  QString sample_;
  bool fill_ = false;
  bool tall_ = false;
  bool plain_ = false;
  bool bold_ = false;
  bool filled_ = false;
  bool leading_ = false;
  bool centred_ = false;
  QColor text_colour_;
  QColor ground_colour_;
};

}  // namespace penlog
