#include "platform/qt/box_windows.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "platform/box_askers.h"
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

/// The window of the screen that asked. Where that is gone, or nobody asked, as for what the
/// recording itself tells, the console: the one with what is always in sight.
FormWindow* WindowFor(int id, const std::vector<FormWindow*>& shown) {
  if (shown.empty()) return nullptr;
  const std::string asker = AskerOfBox(id);
  FormWindow* console = nullptr;
  for (FormWindow* window : shown) {
    if (window->Mirrored().Name() == asker) return window;
    if (!AlwaysInSight(*window).empty()) console = window;
  }
  return console != nullptr ? console : shown.back();
}

BoxGround GroundFor(const FormWindow& over, const std::vector<FormWindow*>& shown) {
  BoxGround ground;
  ground.window = QRect(over.mapToGlobal(QPoint()), over.size());
  ground.display = over.screen()->availableGeometry();
  for (const FormWindow* window : shown) {
    const std::vector<QRect> kept = AlwaysInSight(*window);
    ground.kept.insert(ground.kept.end(), kept.begin(), kept.end());
  }
  return ground;
}

/// With the frame that the window manager adds above.
QSize Framed(const QSize& size) {
  return size + QSize(0, kLookBox.title);
}

void PlaceDialog(QWidget& dialog, const BoxGround& ground) {
  for (const QRect& room : {ground.window, ground.window.united(ground.display)}) {
    const auto place = BoxPlace(Framed(dialog.size()), room, ground.kept);
    if (!place) continue;
    dialog.move(place->topLeft());
    return;
  }
  const QRect free = LargestFree(ground.window, ground.kept);
  dialog.resize(dialog.size().boundedTo(free.size() - Framed(QSize(0, 0))));
  dialog.move(free.topLeft());
}

/// The window manager keeps it above the one that it belongs to.
void JoinTo(const QWidget& window, const QWidget* over) {
  if (window.windowHandle() == nullptr) return;
  window.windowHandle()->setTransientParent(over == nullptr ? nullptr : over->windowHandle());
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
  const int margin = Scaled(kLookBox.margin, scale);
  column->setContentsMargins(margin, margin, margin, margin);
  column->setSpacing(Scaled(kLookBox.gap, scale));
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
  places->setSpacing(Scaled(kLookBox.between, scale));
  places->addStretch();
  for (const BoxAnswer answer : {BoxAnswer::Ok, BoxAnswer::Yes, BoxAnswer::No, BoxAnswer::Cancel}) {
    if (Offers(buttons_, answer)) AddButton(answer, *row);
  }
  column->addWidget(row);
  text->ensurePolished();
  resize(SizeAt(Scaled(kLookBox.width, scale)));
}

/// As high as the text needs at that width.
QSize BoxWindow::SizeAt(int width) const {
  const auto* text = findChild<QLabel*>("lblBoxText");
  const QMargins margins = layout()->contentsMargins();
  const int text_height = text->heightForWidth(width - margins.left() - margins.right());
  const int buttons = Scaled(kLookBox.button, scale_) + layout()->spacing();
  return {width, text_height + buttons + margins.top() + margins.bottom() + 2};
}

/// In its own width, else as wide as the room allows.
bool BoxWindow::StandIn(const QRect& room, const std::vector<QRect>& kept) {
  for (const int width : {Scaled(kLookBox.width, scale_), room.width() * 9 / 10}) {
    const QSize size = SizeAt(width);
    const auto place = BoxPlace(Framed(size), room, kept);
    if (!place) continue;
    resize(size);
    move(place->topLeft());
    return true;
  }
  return false;
}

void BoxWindow::StandScrolled(const QRect& free) {
  const int width = free.width() * 9 / 10;
  resize(QSize(width, SizeAt(width).height()).boundedTo(free.size() - Framed(QSize(0, 0))));
  move(free.left() + (free.width() - width) / 2, free.top());
}

/// A small window has no room for a box beside what is kept: then the display has.
void BoxWindow::Stand(const BoxGround& ground) {
  if (StandIn(ground.window, ground.kept)) return;
  const QRect free = LargestFree(ground.window, ground.kept);
  const QSize least(Scaled(kLookBox.width, scale_), 3 * Scaled(kLookBox.button, scale_));
  const bool has_room = free.width() >= least.width() && free.height() >= Framed(least).height();
  const QRect all = ground.window.united(ground.display);
  if (!has_room && StandIn(all, ground.kept)) return;
  StandScrolled(has_room ? free : LargestFree(all, ground.kept));
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

void BoxWindows::Follow(const std::vector<FormWindow*>& shown) {
  concerned_ = nullptr;
  FollowDialog(shown);
  FollowBox(shown);
}

void BoxWindows::FollowBox(const std::vector<FormWindow*>& shown) {
  const MessageBox* front = FrontBox();
  FormWindow* over = front == nullptr ? nullptr : WindowFor(front->id, shown);
  if (front != nullptr) concerned_ = over;
  if (box_ != nullptr && front != nullptr && box_->Id() == front->id &&
      box_->Scale() == ScaleOf(over) && look_ == ChosenLook()) {
    FollowPlace(shown);
    return;
  }
  box_.reset();
  if (front == nullptr) return;
  box_ = std::make_unique<BoxWindow>(*front, over);
  look_ = ChosenLook();
  ground_ = {};
  FollowPlace(shown);
  box_->show();
  JoinTo(*box_, over);
  ground_ = {};  // once more in the next frame, when its texts have their sizes
  if (QGuiApplication::platformName() != "offscreen") box_->raise();
}

/// The box goes with its window.
void BoxWindows::FollowPlace(const std::vector<FormWindow*>& shown) {
  if (concerned_ == nullptr) return;
  const BoxGround ground = GroundFor(*concerned_, shown);
  if (ground == ground_) return;  // it may have been dragged away
  ground_ = ground;
  box_->Stand(ground);
  JoinTo(*box_, concerned_);
}

QRect BoxWindows::PlaceOver(const QWidget& over) const {
  const QWidget* front = Front();
  if (front == nullptr) return {};
  return {front->mapToGlobal(QPoint()) - over.mapToGlobal(QPoint()), front->size()};
}

void BoxWindows::FollowDialog(const std::vector<FormWindow*>& shown) {
  const FileDialog* asked = OpenFileDialog();
  FormWindow* over = asked == nullptr ? nullptr : WindowFor(asked->id, shown);
  if (asked != nullptr) concerned_ = over;
  if (dialog_ != nullptr && asked != nullptr && dialog_id_ == asked->id) return;
  if (dialog_ != nullptr) dialog_->disconnect();
  dialog_.reset();
  if (asked == nullptr) return;
  dialog_ = MakeDialog(*asked);
  dialog_id_ = asked->id;
  if (over != nullptr) PlaceDialog(*dialog_, GroundFor(*over, shown));
  dialog_->show();
  JoinTo(*dialog_, over);
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
