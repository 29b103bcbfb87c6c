#include "platform/qt/box_windows.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/form_window.h"
#include "platform/qt/look.h"
#include "platform/qt/mnemonics.h"
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

/// What no box may hide: the depth of the console, large and exact.
QRect DepthOn(const QWidget& over) {
  QRect kept;
  for (const char* name : {"lblBigDepth", "lblDepth"}) {
    const auto* depth = over.findChild<QWidget*>(name);
    if (depth == nullptr) continue;
    kept |= QRect(depth->mapTo(&over, QPoint()), depth->size());
  }
  return kept;
}

/// Room for a box below the depth.
QSize RoomOn(const QWidget& over) {
  constexpr int kTitle = 40;  // of the frame that the window manager adds
  const int top = DepthOn(over).isEmpty() ? 0 : DepthOn(over).bottom() + 1;
  return {over.width(), std::max(1, over.height() - top - kTitle)};
}

void PlaceOn(QWidget& window, const QWidget* over) {
  if (over == nullptr) return;
  const QSize size = window.size().boundedTo(RoomOn(*over));
  if (size != window.size()) window.resize(size);
  window.move(over->mapToGlobal(QPoint()) + BoxPlace(size, over->size(), DepthOn(*over)).topLeft());
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

QRect BoxPlace(const QSize& box, const QSize& window, const QRect& kept) {
  const int top = kept.isEmpty() ? 0 : kept.bottom() + 1;
  const int left = std::max(0, (window.width() - box.width()) / 2);
  return {QPoint(left, top + std::max(0, (window.height() - top - box.height()) / 2)), box};
}

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
  auto* page = new QScrollArea(this);
  page->setObjectName("areaBoxText");
  page->setWidgetResizable(true);
  page->setFrameShape(QFrame::NoFrame);
  page->setFocusPolicy(Qt::NoFocus);
  page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  page->setWidget(text);
  column->addWidget(page);
  auto* row = new QWidget(this);
  auto* places = new QHBoxLayout(row);
  places->setContentsMargins(0, 0, 0, 0);
  places->setSpacing(Scaled(14, scale));
  places->addStretch();
  for (const BoxAnswer answer : {BoxAnswer::Ok, BoxAnswer::Yes, BoxAnswer::No, BoxAnswer::Cancel}) {
    if (Offers(buttons_, answer)) AddButton(answer, *row);
  }
  column->addWidget(row);
  StandIn(Scaled(440, scale), over == nullptr ? QSize() : RoomOn(*over));
}

/// As high as the text needs at that width, or as the room allows; then wider first.
void BoxWindow::StandIn(int width, const QSize& room) {
  auto* text = findChild<QLabel*>("lblBoxText");
  const QMargins margins = layout()->contentsMargins();
  const auto height_at = [&](int wide) {
    const int text_width = wide - margins.left() - margins.right();
    const int buttons = Scaled(44, scale_) + layout()->spacing();
    return text->heightForWidth(text_width) + buttons + margins.top() + margins.bottom() + 2;
  };
  text->ensurePolished();
  if (!room.isEmpty() && height_at(width) > room.height()) width = room.width() * 9 / 10;
  const int height = height_at(width);
  resize(width, room.isEmpty() ? height : std::min(height, room.height()));
}

void BoxWindow::StandOver(const QWidget& over) {
  StandIn(Scaled(440, scale_), RoomOn(over));
  PlaceOn(*this, &over);
}

void BoxWindow::AddButton(BoxAnswer answer, QWidget& row) {
  const QString caption = QString::fromStdString(ShownText(Caption(answer)));
  auto* button = new QPushButton(WithMnemonics({caption}).front(), &row);
  button->setAccessibleName(caption);
  button->setAutoDefault(false);
  const BoxAnswer on_enter = buttons_ == BoxButtons::YesNoCareful ? BoxAnswer::No : BoxAnswer::Yes;
  button->setDefault(answer == BoxAnswer::Ok || answer == on_enter);
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
      box_->Scale() == ScaleOf(over) && look_ == ChosenLook()) {
    FollowPlace(over);
    return;
  }
  box_.reset();
  if (front == nullptr) return;
  box_ = std::make_unique<BoxWindow>(*front, over);
  look_ = ChosenLook();
  over_ = {};
  FollowPlace(over);
  box_->show();
  over_ = {};  // once more in the next frame, when its texts have their sizes
  if (QGuiApplication::platformName() != "offscreen") box_->raise();
}

/// The box goes with its window.
void BoxWindows::FollowPlace(QWidget* over) {
  if (over == nullptr) return;
  const QRect kept = DepthOn(*over).translated(over->mapToGlobal(QPoint()));
  if (over->geometry() == over_ && kept == kept_) return;  // it may have been dragged away
  over_ = over->geometry();
  kept_ = kept;
  box_->StandOver(*over);
}

QRect BoxWindows::PlaceOver(const QWidget& over) const {
  const QWidget* front = Front();
  if (front == nullptr) return {};
  return BoxPlace(front->size(), over.size(), DepthOn(over));
}

void BoxWindows::FollowDialog(QWidget* over) {
  const FileDialog* asked = OpenFileDialog();
  if (dialog_ != nullptr && asked != nullptr && dialog_id_ == asked->id) return;
  if (dialog_ != nullptr) dialog_->disconnect();
  dialog_.reset();
  if (asked == nullptr) return;
  dialog_ = MakeDialog(*asked);
  dialog_id_ = asked->id;
  PlaceOn(*dialog_, over);
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
