// The folders to choose from, below the path of the chosen one, which can be typed as well.
#pragma once

#include <QLineEdit>
#include <QListWidget>
#include <QWidget>

namespace penlog {

class FolderView : public QWidget {
  Q_OBJECT

 public:
  explicit FolderView(QWidget* parent = nullptr);

  QLineEdit& Path() const { return *path_; }
  QListWidget& Folders() const { return *folders_; }

 protected:
  /// Enter completes the path or chooses a folder: the window's own key stays out of it.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QLineEdit* path_;
  QListWidget* folders_;
};

}  // namespace penlog
