#include "platform/qt/folder_view.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include "platform/qt/look.h"

namespace penlog {

FolderView::FolderView(QWidget* parent)
    : QWidget(parent), path_(new QLineEdit(this)), folders_(new QListWidget(this)) {
  path_->setObjectName("areaPath");
  folders_->setObjectName("areaFolders");
  setFocusProxy(folders_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kLookJoint);
  column->addWidget(path_);
  column->addWidget(folders_, 1);
}

void FolderView::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  event->setAccepted(enter);
}

}  // namespace penlog
