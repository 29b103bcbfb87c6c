// A printed page: lines of columns that stand below each other.
#pragma once

#include <QStringList>
#include <QWidget>
#include <vector>

namespace penlog {

class ReportView : public QWidget {
  Q_OBJECT

 public:
  explicit ReportView(QWidget* parent = nullptr) : QWidget(parent) {}

  const QString& Text() const { return text_; }
  /// Columns are apart by at least two blanks in the text of a line.
  void SetText(const QString& text);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

  /// The columns of one line.
  static QStringList Columns(const QString& line);
  const std::vector<QStringList>& Lines() const { return lines_; }
  /// Left edges of the columns of lines with `count` columns, for a page `width` wide.
  std::vector<int> LeftEdges(qsizetype count, int width) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool IsHeading(const QString& line) const;

  QString text_;
  std::vector<QStringList> lines_;
};

}  // namespace penlog
