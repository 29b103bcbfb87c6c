#include "platform/qt/mirror.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QWindow>

#include "forms/raises.h"
#include "platform/qt/widget_acts.h"
#include "platform/qt/widget_inputs.h"

namespace penlog {

namespace {

/// Lays out and paints what is due, without taking anything of the operator's.
void Settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                  QEventLoop::ExcludeSocketNotifiers);
}

bool OrdersNoWindows() {
  return QGuiApplication::platformName() == "offscreen";
}

/// Lays `above` over the picture, where it stands on the window.
void LayOver(QPixmap& picture, QWidget& above, const QRect& place) {
  const QPixmap top = above.grab();
  QPainter painter(&picture);
  painter.drawPixmap(place.topLeft(), top);
}

}  // namespace

WindowMirror::WindowMirror() {
  later_.setSingleShot(true);
  QObject::connect(&later_, &QTimer::timeout, &later_, [this] { Follow(); });
}

FormWindow& WindowMirror::WindowOf(Form& form) {
  auto& window = windows_[form.Name()];
  if (window == nullptr) window = std::make_unique<FormWindow>(form);
  return *window;
}

void WindowMirror::Frame() {
  const qint64 since = since_frame_.isValid() ? since_frame_.elapsed() : kFrameMs;
  if (since >= kFrameMs) {
    Follow();
  } else if (!later_.isActive()) {
    later_.start(static_cast<int>(kFrameMs - since));
  }
}

void WindowMirror::Follow() {
  later_.stop();
  since_frame_.start();
  ++frames_;
  for (Form* form : AllForms()) {
    const bool known = windows_.count(form->Name()) > 0;
    if (form->Visible || (known && !WindowOf(*form).isHidden())) WindowOf(*form).Follow();
  }
  FollowOrder();
  boxes_.Follow(ShownWindows());
}

/// A window that belongs to another stays above it also when that one is pressed.
void WindowMirror::StandAbove(FormWindow& window) {
  Form* below = FindForm(window.property("above").toString().toStdString());
  if (below == nullptr || !below->Visible || window.windowHandle() == nullptr) return;
  window.windowHandle()->setTransientParent(WindowOf(*below).windowHandle());
}

void WindowMirror::FollowOrder() {
  ActivateFront();
  if (ShownForms() == order_ && raises.Count == raises_) return;
  order_ = ShownForms();
  raises_ = raises.Count;
  ++raised_;
  activation_due_ = true;
  for (Form* form : order_) {
    if (!OrdersNoWindows()) WindowOf(*form).raise();
    StandAbove(WindowOf(*form));
  }
  ActivateFront();
}

/// A button that is held down stays in the operator's hand: another window gets the keys after it.
void WindowMirror::ActivateFront() {
  if (!activation_due_ || AnyButtonHeld()) return;
  activation_due_ = false;
  FormWindow* front = FrontWindow();
  if (front != nullptr && !OrdersNoWindows()) front->activateWindow();
}

FormWindow* WindowMirror::FrontWindow() {
  return ShownForms().empty() ? nullptr : &WindowOf(*ShownForms().back());
}

std::vector<FormWindow*> WindowMirror::ShownWindows() {
  std::vector<FormWindow*> shown;
  for (Form* form : ShownForms()) shown.push_back(&WindowOf(*form));
  return shown;
}

bool WindowMirror::Shot(const std::string& form_name, const std::string& file, int width,
                        int height) {
  Follow();
  Form* form = form_name.empty() ? nullptr : FindForm(form_name);
  if (form_name.empty() && !ShownForms().empty()) form = ShownForms().back();
  if (form == nullptr || !form->Visible) return false;
  FormWindow& window = WindowOf(*form);
  const QSize before = window.size();
  window.StandForPicture(true);
  if (width > 0 && height > 0) window.resize(window.SizeOn({width, height}));
  for (int round = 0; round < 2; ++round) {
    Settle();
    Follow();  // places in fractions follow the new size, and a box its texts
  }
  Settle();
  QPixmap picture = window.grab();
  QWidget* box = &window == boxes_.Over() ? boxes_.Front() : nullptr;
  if (box != nullptr) LayOver(picture, *box, boxes_.PlaceOver(window));
  window.resize(before);
  window.StandForPicture(false);
  return picture.save(QString::fromStdString(file), "PNG");
}

bool WindowMirror::Act(const OperatorAction& action, std::string& why) {
  Follow();
  Settle();
  if (!action.form->Visible) {
    why = "the screen is not visible";
    return false;
  }
  FormWindow& window = WindowOf(*action.form);
  if (action.kind == ActionKind::Close) {
    window.close();
    return true;
  }
  // A finger that is down comes up in any case.
  why = action.kind == ActionKind::Release ? std::string() : WhyRefused(action);
  ControlMirror* mirror = window.MirrorOf(*action.control);
  if (mirror == nullptr) why = "the control has no widget";
  return why.empty() && ActOnWidget(window, *mirror, action, why);
}

bool WindowMirror::PressBoxButton(BoxAnswer answer, std::string& why) {
  Follow();
  return boxes_.Press(answer, why);
}

std::vector<std::string> MirrorMismatches() {
  std::vector<std::string> all;
  for (Form* form : AllForms()) {
    const FormWindow window(*form);
    all.insert(all.end(), window.Mismatches().begin(), window.Mismatches().end());
  }
  return all;
}

}  // namespace penlog
