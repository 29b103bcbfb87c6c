// The list of channel values: rows of a name and a value, as high as the place allows, and in
// two or three columns where one would be too small to read.
#pragma once

#include <QWidget>
#include <utility>
#include <vector>

namespace penlog {

class ValuesView : public QWidget {
  Q_OBJECT

 public:
  explicit ValuesView(QWidget* parent = nullptr) : QWidget(parent) {}
  /// Puts what is shown of its widgets, which come in pairs, into rows.
  void Arrange();
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void childEvent(QChildEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  std::vector<std::pair<QWidget*, QWidget*>> ShownRows() const;
};

}  // namespace penlog
