#include "platform/qt/form_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/qt/arrangements.h"
#include "platform/qt/look.h"
#include "platform/qt/widget_inputs.h"
#include "platform/view.h"

namespace penlog {

namespace {

const QSize kDrawnFor(800, 600);
constexpr double kShareOfDisplay = 0.9;

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
  const bool anew = translation_ != TranslationGeneration();
  translation_ = TranslationGeneration();
  const QString caption = QString::fromStdString(ShownText(form_.Caption));
  if (windowTitle() != caption) setWindowTitle(caption);
  if (centralWidget()->isEnabled() != form_.Enabled) centralWidget()->setEnabled(form_.Enabled);
  for (const auto& mirror : mirrors_) mirror->Follow(anew);
  stamp_ = StampOf(form_, nullptr);
  if (form_.Visible && isHidden()) Opened();
  if (!form_.Visible && !isHidden()) hide();
}

void FormWindow::Opened() {
  const QScreen* display = screen();
  if (!placed_ && display != nullptr) {
    const QRect room = display->availableGeometry();
    const QSize size = SizeOn(room.size() * kShareOfDisplay);
    resize(size);
    move(room.center() - QPoint(size.width() / 2, size.height() / 2));
    placed_ = true;
  }
  show();
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
  setStyleSheet(StyleSheet(scale));
  ScaleGaps();
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
