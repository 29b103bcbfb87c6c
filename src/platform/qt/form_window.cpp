#include "platform/qt/form_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/qt/arrangements.h"
#include "platform/qt/look.h"
#include "platform/qt/mnemonics.h"
#include "platform/qt/screen_room.h"
#include "platform/qt/text_view.h"
#include "platform/qt/widget_inputs.h"
#include "platform/qt/window_keys.h"
#include "platform/qt/window_shape.h"
#include "platform/qt/window_texts.h"
#include "platform/view.h"

namespace penlog {

namespace {

const QSize kDrawnFor(800, 600);
constexpr double kShareOfDisplay = 0.9;
constexpr int kSettlingFrames = 3;

/// The parts of which Qt itself builds a list, a box or a scroll bar.
bool IsInside(const QObject& object) {
  return object.objectName().startsWith("qt_") || object.inherits("QScrollBar") ||
         object.inherits("QAbstractItemView") || object.inherits("QComboBoxPrivateContainer") ||
         object.inherits("QMainWindowLayout") || object.inherits("QToolButton");
}

/// The nearest widget above that mirrors a control of the form.
std::string NearestControl(const Form& form, const QWidget& widget) {
  for (const QWidget* up = widget.parentWidget(); up != nullptr; up = up->parentWidget()) {
    const std::string name = up->objectName().toStdString();
    if (form.Find(name) != nullptr) return name;
  }
  return {};
}

}  // namespace

FormWindow::FormWindow(Form& form) : form_(form) {
  if (!SetUpWindow(form.Name(), *this)) {
    mismatches_.push_back(form.Name() + " has no arrangement");
  }
  if (centralWidget() == nullptr) {
    setCentralWidget(new QWidget(this));
    centralWidget()->setObjectName("areaCentral");
  }
  base_ = size();
  setMinimumSize(1, 1);
  layout()->setSizeConstraint(QLayout::SetNoConstraint);
  KeepGaps();
  KeepPlaces(*this);
  AddMirrors();
  CheckWidgets();
  resize(SizeOn(kDrawnFor));
  Rescale();
}

void FormWindow::AddMirrors() {
  for (Control* control : form_.Controls()) AddMirror(*control);
}

void FormWindow::AddMirror(Control& control) {
  const QString name = QString::fromStdString(control.Name());
  if (control.Kind() == ControlKind::Menu) {
    auto* entry = findChild<QAction*>(name);
    if (entry != nullptr) {
      mirrors_.push_back(std::make_unique<ControlMirror>(control, entry));
      JoinInputs(*mirrors_.back());
      return;
    }
  } else if (auto* widget = findChild<QWidget*>(name)) {
    CheckContainer(control, *widget);
    mirrors_.push_back(std::make_unique<ControlMirror>(control, widget));
    JoinInputs(*mirrors_.back());
    return;
  }
  mismatches_.push_back(form_.Name() + "." + control.Name() + " has no widget");
}

void FormWindow::CheckContainer(const Control& control, const QWidget& widget) {
  const std::string wanted = control.Container == nullptr ? "" : control.Container->Name();
  const std::string found = NearestControl(form_, widget);
  if (wanted == found) return;
  mismatches_.push_back(form_.Name() + "." + control.Name() + " lies in \"" + found +
                        "\" and belongs into \"" + wanted + "\"");
}

void FormWindow::CheckWidgets() {
  for (const QWidget* widget : findChildren<QWidget*>()) {
    const QString name = widget->objectName();
    if (name.startsWith("area") || form_.Find(name.toStdString()) != nullptr) continue;
    const QWidget* parent = widget->parentWidget();
    const bool inside = parent != this && parent->objectName().startsWith("area") == false;
    if (inside || IsInside(*widget)) continue;
    mismatches_.push_back(form_.Name() + ": the widget \"" + name.toStdString() + "\" of class " +
                          widget->metaObject()->className() + " has no control");
  }
  for (const QAction* entry : findChildren<QAction*>()) {
    const QString name = entry->objectName();
    if (name.isEmpty() || name.startsWith("_q") || entry->menu() != nullptr) continue;
    if (form_.Find(name.toStdString()) != nullptr) continue;
    mismatches_.push_back(form_.Name() + ": the menu entry \"" + name.toStdString() +
                          "\" has no control");
  }
}

ControlMirror* FormWindow::MirrorOf(const Control& control) const {
  for (const auto& mirror : mirrors_) {
    if (&mirror->Mirrored() == &control) return mirror.get();
  }
  return nullptr;
}

void FormWindow::Follow() {
  const bool other_look = look_ != ChosenLook();
  const bool anew = translation_ != TranslationGeneration() || other_look;
  translation_ = TranslationGeneration();
  if (other_look) Style();
  const QString caption = QString::fromStdString(ShownText(form_.Caption));
  if (windowTitle() != caption) setWindowTitle(caption);
  if (centralWidget()->isEnabled() != form_.Enabled) centralWidget()->setEnabled(form_.Enabled);
  for (const auto& mirror : mirrors_) mirror->Follow(anew);
  stamp_ = StampOf(form_, nullptr);
  if (form_.Visible && isHidden()) Opened();
  if (!form_.Visible && !isHidden()) hide();
  if (!form_.Visible) return;
  FollowHeight();
  FollowMove();
  TellPlace();
  FollowTexts();
}

void FormWindow::Opened() {
  const QScreen* display = screen();
  if (!placed_ && display != nullptr) {
    const QRect room = PlaceRoom(*display);
    const QSize size = SizeOn(room.size() * kShareOfDisplay);
    resize(size);
    move(room.center() - QPoint(size.width() / 2, size.height() / 2));
    placed_ = true;
  }
  show();
}

/// The screen's own height takes the place of its arrangement's.
void FormWindow::FollowHeight() {
  if (form_.DesignHeight <= 0 || form_.DesignHeight == base_.height()) return;
  const int height = static_cast<int>(std::lround(scale_ * form_.DesignHeight));
  base_.setHeight(form_.DesignHeight);
  resize(width(), height);
  Rescale();
}

/// The frame that the window manager adds counts to the place.
void FormWindow::FollowMove() {
  if (form_.Moves() == moves_) return;
  moves_ = form_.Moves();
  if (form_.Window.width <= 0) return;  // of before a reset
  const WindowPlace wanted = form_.Window;
  const QSize frame = frameGeometry().size() - size();
  const bool held = std::exchange(for_picture_, true);  // half of the way is no place to tell
  resize(QSize(wanted.width, wanted.height) - frame);
  move(wanted.left, wanted.top);
  for_picture_ = held;
  TellPlace();  // what was told before the move is still to be served
}

/// Where the operator or the window manager has put the window.
void FormWindow::TellPlace() {
  if (!isVisible() || for_picture_) return;
  const QRect frame = frameGeometry();
  const WindowPlace place{frame.left(), frame.top(), frame.width(), frame.height()};
  if (place == place_) return;
  place_ = place;
  OperatorAction moved;
  moved.kind = ActionKind::Move;
  moved.form = &form_;
  moved.text = WindowPlaceText(place);
  moved.stamp = stamp_;
  PostAction(moved);
}

QSize FormWindow::SizeOn(const QSize& display) const {
  const double across = static_cast<double>(display.width()) / kDrawnFor.width();
  const double down = static_cast<double>(display.height()) / kDrawnFor.height();
  return {static_cast<int>(std::lround(base_.width() * across)),
          static_cast<int>(std::lround(base_.height() * down))};
}

void FormWindow::Rescale() {
  const double across = static_cast<double>(width()) / base_.width();
  const double down = static_cast<double>(height()) / base_.height();
  // In steps, so that dragging the window's edge does not style it anew at each pixel.
  const double scale = std::max(0.5, std::floor(std::min(across, down) * 20) / 20);
  if (scale == scale_) return;
  scale_ = scale;
  Style();
  ScaleGaps();
}

void FormWindow::Style() {
  look_ = ChosenLook();
  setStyleSheet(StyleSheet(scale_));
  ForgetFits(mirrors_);
  texts_due_ = true;
}

/// Only where a text, its room or what is in sight has changed.
void FormWindow::FollowTexts() {
  for (const auto& mirror : mirrors_) texts_due_ = mirror->TakeChange() || texts_due_;
  if (settling_ > 0) --settling_;
  if (!std::exchange(texts_due_, settling_ > 0)) return;
  QString taken;
  if (auto* menus = findChild<QMenuBar*>()) {
    for (const QAction* menu : menus->actions()) taken += MnemonicOf(menu->text());
  }
  MarkButtons(mirrors_, taken);
  NameWidgets(mirrors_);
  FitTexts(mirrors_);
}

QPushButton* FormWindow::StopButton() const {
  for (const auto& mirror : mirrors_) {
    auto* button = qobject_cast<QPushButton*>(mirror->Widget());
    if (button != nullptr && mirror->Mirrored().Caption == "STOP") return button;
  }
  return nullptr;
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (event->isAutoRepeat() || !PressedByKey(*this, event->key())) {
    QMainWindow::keyPressEvent(event);
  }
}

void FormWindow::KeepGaps() {
  for (QLayout* layout : centralWidget()->findChildren<QLayout*>()) {
    const auto* grid = qobject_cast<QGridLayout*>(layout);
    const int across = grid != nullptr ? grid->horizontalSpacing() : layout->spacing();
    const int down = grid != nullptr ? grid->verticalSpacing() : layout->spacing();
    gaps_.push_back({layout, layout->contentsMargins(), across, down});
  }
}

void FormWindow::ScaleGaps() const {
  for (const Gaps& gaps : gaps_) {
    gaps.layout->setContentsMargins(
        Scaled(gaps.margins.left(), scale_), Scaled(gaps.margins.top(), scale_),
        Scaled(gaps.margins.right(), scale_), Scaled(gaps.margins.bottom(), scale_));
    if (auto* grid = qobject_cast<QGridLayout*>(gaps.layout)) {
      grid->setHorizontalSpacing(Scaled(gaps.across, scale_));
      grid->setVerticalSpacing(Scaled(gaps.down, scale_));
    } else {
      gaps.layout->setSpacing(Scaled(gaps.down, scale_));
    }
  }
}

void FormWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  Rescale();
  TurnAreas(*this);
  for (QWidget* tall : findChildren<TextView*>()) tall->updateGeometry();
  texts_due_ = true;
  settling_ = kSettlingFrames;
  TellPlace();
}

void FormWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  TellPlace();
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  OperatorAction close;
  close.kind = ActionKind::Close;
  close.form = &form_;
  close.stamp = stamp_;
  PostAction(close);
}

}  // namespace penlog
