// Arranges what it shows of its widgets in columns of ten, from the top left.
#pragma once

#include <QWidget>
#include <vector>

namespace penlog {

class ColumnsView : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kRows = 10;

  explicit ColumnsView(QWidget* parent = nullptr) : QWidget(parent) {}
  void Arrange();
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void childEvent(QChildEvent* event) override;

 private:
  std::vector<QWidget*> ShownWidgets() const;
};

}  // namespace penlog
