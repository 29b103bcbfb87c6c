#include "platform/qt/box_windows.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/form_window.h"
#include "platform/qt/look.h"
#include "platform/qt/widget_inputs.h"
#include "platform/view.h"

namespace penlog {

namespace {

const char* Caption(BoxAnswer answer) {
  switch (answer) {
    case BoxAnswer::Ok:
      return "OK";
    case BoxAnswer::Cancel:
      return "CANCEL";
    case BoxAnswer::Yes:
      return "YES";
    case BoxAnswer::No:
      return "NO";
  }
  return "";
}

double ScaleOf(const QWidget* over) {
  const auto* window = qobject_cast<const FormWindow*>(over);
  return window == nullptr ? 1.0 : window->Scale();
}

QString BoxText(const std::string& text) {
  QString shown = QString::fromStdString(ShownText(text));
  return shown.replace("\r\n", "\n").replace('\r', '\n');  // a line may end in either way
}

void CentreOver(QWidget& window, const QWidget* over) {
  if (over == nullptr) return;
  const QRect place = over->frameGeometry();
  window.move(place.center() - QPoint(window.width() / 2, window.height() / 2));
}

/// A window above its like. One that comes up while the override is held down leaves the focus
/// where it is, and so does not take the button out of the operator's hand.
void AsBox(QWidget& window) {
  window.setWindowFlag(Qt::WindowStaysOnTopHint);
  window.setWindowModality(Qt::NonModal);
  window.setAttribute(Qt::WA_ShowWithoutActivating, AnyButtonHeld());
}

std::unique_ptr<QFileDialog> MakeDialog(const FileDialog& asked) {
  auto dialog = std::make_unique<QFileDialog>();
  AsBox(*dialog);
  dialog->setStyleSheet(StyleSheet(1.0));
  dialog->setWindowTitle(QString::fromStdString(ShownText(asked.title)));
  // Read only and without a question before overwriting: those would open boxes of Qt's own,
  // which wait in a loop of their own. Whoever asked for the file asks about overwriting.
  dialog->setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::ReadOnly |
                     QFileDialog::DontConfirmOverwrite);
  dialog->setFileMode(QFileDialog::AnyFile);
  dialog->setAcceptMode(asked.for_saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setDirectory(QString::fromStdString(asked.folder));
  dialog->setNameFilter(QString::fromStdString(asked.pattern));
  const int id = asked.id;
  QFileDialog* raw = dialog.get();
  QObject::connect(raw, &QDialog::finished, raw, [id, raw](int result) {
    const bool chosen = result == QDialog::Accepted && !raw->selectedFiles().isEmpty();
    AnswerFileDialog(id, chosen ? raw->selectedFiles().first().toStdString() : std::string());
  });
  return dialog;
}

}  // namespace

BoxWindow::BoxWindow(const MessageBox& box, QWidget* over)
    : id_(box.id), buttons_(box.buttons), scale_(ScaleOf(over)) {
  const double scale = scale_;
  AsBox(*this);
  setWindowTitle("PENLOG");
  setStyleSheet(StyleSheet(scale));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(Scaled(20, scale), Scaled(20, scale), Scaled(20, scale),
                             Scaled(16, scale));
  column->setSpacing(Scaled(18, scale));
  auto* text = new QLabel(BoxText(box.text), this);
  text->setObjectName("lblBoxText");
  text->setProperty("role", "question");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setMinimumWidth(Scaled(360, scale));
  column->addWidget(text);
  auto* row = new QWidget(this);
  auto* places = new QHBoxLayout(row);
  places->setContentsMargins(0, 0, 0, 0);
  places->setSpacing(Scaled(14, scale));
  places->addStretch();
  for (const BoxAnswer answer : {BoxAnswer::Ok, BoxAnswer::Yes, BoxAnswer::No, BoxAnswer::Cancel}) {
    if (Offers(buttons_, answer)) AddButton(answer, *row);
  }
  column->addWidget(row);
  resize(Scaled(440, scale), std::max(sizeHint().height(), heightForWidth(Scaled(440, scale))));
}

void BoxWindow::AddButton(BoxAnswer answer, QWidget& row) {
  auto* button = new QPushButton(QString::fromStdString(ShownText(Caption(answer))), &row);
  button->setAutoDefault(false);
  row.layout()->addWidget(button);
  button->setMinimumWidth(button->fontMetrics().averageCharWidth() * 16);
  widgets_[answer] = button;
  const int id = id_;
  connect(button, &QPushButton::clicked, this, [id, answer] { AnswerBox(id, answer); });
}

QPushButton* BoxWindow::ButtonFor(BoxAnswer answer) const {
  const auto found = widgets_.find(answer);
  return found == widgets_.end() ? nullptr : found->second;
}

void BoxWindow::reject() {
  if (Offers(buttons_, BoxAnswer::Cancel)) {
    AnswerBox(id_, BoxAnswer::Cancel);
  } else if (Offers(buttons_, BoxAnswer::Ok)) {
    AnswerBox(id_, BoxAnswer::Ok);
  }
}

void BoxWindows::Follow(QWidget* over) {
  FollowBox(over);
  FollowDialog(over);
}

void BoxWindows::FollowBox(QWidget* over) {
  const MessageBox* front = FrontBox();
  if (box_ != nullptr && front != nullptr && box_->Id() == front->id &&
      box_->Scale() == ScaleOf(over)) {
    return;
  }
  box_.reset();
  if (front == nullptr) return;
  box_ = std::make_unique<BoxWindow>(*front, over);
  CentreOver(*box_, over);
  box_->show();
  if (QGuiApplication::platformName() != "offscreen") box_->raise();
}

void BoxWindows::FollowDialog(QWidget* over) {
  const FileDialog* asked = OpenFileDialog();
  if (dialog_ != nullptr && asked != nullptr && dialog_id_ == asked->id) return;
  if (dialog_ != nullptr) dialog_->disconnect();
  dialog_.reset();
  if (asked == nullptr) return;
  dialog_ = MakeDialog(*asked);
  dialog_id_ = asked->id;
  CentreOver(*dialog_, over);
  dialog_->show();
  if (QGuiApplication::platformName() != "offscreen") dialog_->raise();
}

QWidget* BoxWindows::Front() const {
  if (box_ != nullptr) return box_.get();
  return dialog_.get();
}

bool BoxWindows::Press(BoxAnswer answer, std::string& why) {
  QPushButton* button = box_ == nullptr ? nullptr : box_->ButtonFor(answer);
  if (button == nullptr) {
    why = box_ == nullptr ? "no message box is open" : "the message box has no such button";
    return false;
  }
  button->click();
  return true;
}

}  // namespace penlog
