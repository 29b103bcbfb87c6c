#include "rig/window/rig_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLayout>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/numbers.h"
#include "platform/qt/screen_room.h"
#include "rig/window/rig_look.h"

namespace penlog {

namespace {

const QSize kDrawnFor(400, 760);
constexpr std::size_t kFactsBesideThePicture = 6;
constexpr int kAcross = 3;
constexpr int kFirstWay = 2;  // 1 m of the ways

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

/// The key that presses a button together with Alt, told by an underline.
QString WithKey(PanelButton button, const std::string& caption) {
  constexpr char kKeys[] = {'P', 'S', 'R', 'L', 'C', 'E', 'K'};
  QString text = Text(caption);
  const auto at = text.indexOf(QChar::fromLatin1(kKeys[static_cast<int>(button)]));
  return at < 0 ? text : text.insert(at, '&');
}

void SetText(QLabel* label, const std::string& text) {
  const QString shown = Text(text);
  if (label->text() != shown) label->setText(shown);
}

/// A text that may be longer than its room: the tip tells all of it.
void SetShortened(QLabel* label, const std::string& text) {
  const QString full = Text(text);
  const QString shown = label->fontMetrics().elidedText(full, Qt::ElideRight, label->width());
  if (label->text() == shown) return;
  label->setText(shown);
  label->setToolTip(shown == full ? QString() : full);
}

/// A role of the look; the widget is styled anew only if it is another.
void SetRole(QWidget* widget, const char* role) {
  if (widget->property("role").toString() == role) return;
  widget->setProperty("role", role);
  // A widget that follows its own style sheet's roles is polished by setting it again.
  widget->setStyleSheet(widget->styleSheet());
}

/// Several lines in a room that stays the same whatever the text is: the style sheet gives it.
void Wrap(QLabel* label) {
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void Tighten(QLayout* layout, int across = kRigCellGap, int down = kRigCellGap) {
  layout->setContentsMargins(0, 0, 0, 0);
  SetGaps(*layout, 0, across, down);
}

}  // namespace

RigWindow::RigWindow(const RigState& state, RigWindowHands hands) : hands_(std::move(hands)) {
  setWindowTitle("PENLOG rig");
  auto* all = new QWidget(this);
  setCentralWidget(all);
  auto* column = new QVBoxLayout(all);
  SetGaps(*column, kRigMargin, kRigGap, kRigGap);
  column->addWidget(MakeHead());
  const auto facts = penlog::Facts(state);
  column->addWidget(MakePicture(state), 1);
  column->addWidget(MakeFacts(facts, kFactsBesideThePicture, facts.size()));
  column->addWidget(MakeOrders(state));
  column->addWidget(MakeFaults(state));
  hint_ = AddLabel("lblHint", "hint", all);
  Wrap(hint_);
  column->addWidget(hint_);
  told_ = AddLabel("lblTold", "caption", all);
  Wrap(told_);
  column->addWidget(told_);
  setMinimumSize(1, 1);
  layout()->setSizeConstraint(QLayout::SetNoConstraint);
  resize(kDrawnFor);
  Rescale();
  Follow(state);
}

QLabel* RigWindow::AddLabel(const char* name, const char* role, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setProperty("role", role);
  label->setTextFormat(Qt::PlainText);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return label;
}

QWidget* RigWindow::MakeHead() {
  auto* area = new QWidget(centralWidget());
  auto* row = new QHBoxLayout(area);
  Tighten(row);
  headline_ = AddLabel("lblHeadline", "headline", area);
  headline_->setAlignment(Qt::AlignCenter);
  row->addWidget(headline_, 5);
  QPushButton* look = MakeLookButton(area);
  look->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  row->addWidget(look, 1);
  return area;
}

QWidget* RigWindow::MakePicture(const RigState& state) {
  auto* area = new QWidget(centralWidget());
  auto* row = new QHBoxLayout(area);
  Tighten(row, kRigMargin, kRigMargin);
  profile_ = new ProfileView(area);
  row->addWidget(profile_, 9);
  auto* side = new QWidget(area);
  auto* column = new QVBoxLayout(side);
  Tighten(column);
  depth_ = AddLabel("lblDepth", "depth", side);
  column->addWidget(depth_);
  column->addWidget(MakeFacts(penlog::Facts(state), 0, kFactsBesideThePicture));
  column->addStretch(1);
  for (std::size_t i = 0; i < Lines(state).size(); ++i) {
    lamps_.push_back(new LineLamp(side));
    column->addWidget(lamps_.back());
  }
  row->addWidget(side, 10);
  return area;
}

QWidget* RigWindow::MakeFacts(const std::vector<PanelFact>& facts, std::size_t first,
                              std::size_t last) {
  auto* area = new QWidget(centralWidget());
  auto* grid = new QGridLayout(area);
  Tighten(grid, kRigCellGap, kRigLineGap);
  grid->setColumnStretch(1, 1);
  for (std::size_t i = first; i < last; ++i) {
    const int row = static_cast<int>(i - first);
    auto* name = AddLabel("lblFactName", "caption", area);
    name->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    name->setText(Text(facts[i].name));
    auto* value = AddLabel("lblFact", "fact", area);
    value->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    grid->addWidget(name, row, 0);
    grid->addWidget(value, row, 1);
    facts_.push_back({name, value});
  }
  return area;
}

QPushButton* RigWindow::MakeOrder(PanelButton kind, QWidget* parent) {
  auto* button = new QPushButton(parent);
  button->setProperty("role", kind == PanelButton::Push   ? "main"
                              : kind == PanelButton::Stop ? "halt"
                                                          : "");
  button->setToolTip(Text(ButtonHint(kind)));
  connect(button, &QPushButton::clicked, this,
          [this, kind] { hands_.order(ButtonOrder(kind, shown_, Way())); });
  orders_.push_back({kind, button});
  return button;
}

QWidget* RigWindow::MakeOrders(const RigState& state) {
  auto* area = new QWidget(centralWidget());
  auto* grid = new QGridLayout(area);
  Tighten(grid);
  way_ = new QComboBox(area);
  way_->setObjectName("cmbWay");
  way_->setAccessibleName("way of push and lift");
  for (const double way : PanelWays()) way_->addItem(Text(WayText(way)));
  way_->setCurrentIndex(kFirstWay);
  way_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  grid->addWidget(way_, 0, 0);
  std::vector<QPushButton*> buttons;
  for (const PanelButton kind : PanelButtons(state)) buttons.push_back(MakeOrder(kind, area));
  for (QPushButton* button : MakeGroundButtons(area)) buttons.push_back(button);
  int place = 1;
  for (QPushButton* button : buttons) {
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    grid->addWidget(button, place / kAcross, place % kAcross);
    ++place;
  }
  for (int across = 0; across < kAcross; ++across) grid->setColumnStretch(across, 1);
  return area;
}

std::vector<QPushButton*> RigWindow::MakeGroundButtons(QWidget* parent) {
  auto* layered = new QPushButton("LA&YERED", parent);
  layered->setObjectName("cmdLayered");
  layered->setToolTip("the usual ground of made ground, clay, silt and sand");
  connect(layered, &QPushButton::clicked, this, [this] { hands_.order(LayeredOrder()); });
  auto* file = new QPushButton("&FILE...", parent);
  file->setObjectName("cmdFile");
  file->setToolTip("the ground of a real sounding in GEF or CSV");
  connect(file, &QPushButton::clicked, this, [this] { AskForFile(); });
  return {layered, file};
}

/// The colours of this window alone: the console has its own choice.
QPushButton* RigWindow::MakeLookButton(QWidget* parent) {
  night_ = new QPushButton(parent);
  night_->setObjectName("cmdLook");
  night_->setProperty("role", "small");
  night_->setToolTip("the colours of this window, for the sun or for the dark");
  connect(night_, &QPushButton::clicked, this, [this] {
    ChooseLook(look_ == LookSet::Day ? LookSet::Night : LookSet::Day);
    Follow(shown_);
  });
  return night_;
}

QWidget* RigWindow::MakeFaults(const RigState& state) {
  auto* area = new QWidget(centralWidget());
  auto* grid = new QGridLayout(area);
  Tighten(grid);
  fault_rows_ = FaultRows(state.shared_port);
  int place = 0;
  for (const FaultRow& row : fault_rows_) {
    auto* button = new QPushButton(area);
    button->setProperty("role", "fault");
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    button->setToolTip(Text(FaultRowHint(row)));
    connect(button, &QPushButton::clicked, this,
            [this, row] { hands_.order(FaultOrder(row, shown_)); });
    grid->addWidget(button, place / kAcross, place % kAcross);
    faults_.push_back({row, button});
    ++place;
  }
  for (int across = 0; across < kAcross; ++across) grid->setColumnStretch(across, 1);
  return area;
}

double RigWindow::Way() const {
  const auto& ways = PanelWays();
  const auto index = static_cast<std::size_t>(std::max(0, way_->currentIndex()));
  return ways[std::min(index, ways.size() - 1)];
}

QPushButton* RigWindow::ButtonFor(PanelButton button) const {
  for (const auto& order : orders_) {
    if (order.kind == button) return order.button;
  }
  return nullptr;
}

std::string RigWindow::Fact(const std::string& name) const {
  for (const auto& [caption, value] : facts_) {
    if (caption->text() != Text(name)) continue;
    return (value->toolTip().isEmpty() ? value->text() : value->toolTip()).toStdString();
  }
  return "";
}

// Following.

void RigWindow::Follow(const RigState& state) {
  shown_ = state;
  if (look_ != ChosenLook()) Style();
  FollowHead(state);
  const auto facts = penlog::Facts(state);
  for (std::size_t i = 0; i < facts_.size(); ++i) {
    SetShortened(facts_[i].value, facts[i].value);
  }
  const auto lines = Lines(state);
  for (std::size_t i = 0; i < lamps_.size(); ++i) lamps_[i]->Show(lines[i]);
  for (const auto& [kind, button] : orders_) {
    const QString caption = WithKey(kind, ButtonCaption(kind, state));
    if (button->text() != caption) button->setText(caption);
    const bool can = ButtonCanPress(kind, state);
    if (button->isEnabled() != can) button->setEnabled(can);
  }
  FollowFaults(state);
  profile_->SetDepth(state.depth, state.rod_length);
}

void RigWindow::FollowHead(const RigState& state) {
  SetText(headline_, Headline(state));
  SetRole(headline_, state.rts ? "held" : "headline");
  SetText(depth_, Format(state.depth, "0.000") + " m");
  SetText(hint_, Hint(state));
}

void RigWindow::FollowFaults(const RigState& state) {
  for (const auto& [row, button] : faults_) {
    const bool on = FaultIsOn(row, state);
    const QString caption = Text(FaultRowText(row) + (on ? " ON" : ""));
    if (button->text() != caption) button->setText(caption);
    SetRole(button, on ? "fault-on" : "fault");
    const bool can = FaultCanSwitch(row, state);
    if (button->isEnabled() != can) button->setEnabled(can);
  }
}

void RigWindow::Tell(const std::string& text, bool refused) {
  SetText(told_, text);
  told_->setToolTip(told_->text());
  SetRole(told_, refused ? "refused" : "caption");
}

// The window itself.

void RigWindow::AskForFile() {
  if (dialog_ == nullptr) {
    dialog_ = std::make_unique<QFileDialog>(this);
    // No box of Qt's own may open: it would wait in a loop of its own. A file that isn't there is
    // refused by the rig.
    dialog_->setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::ReadOnly |
                        QFileDialog::DontConfirmOverwrite);
    dialog_->setFileMode(QFileDialog::AnyFile);
    dialog_->setWindowTitle("Ground from a sounding");
    dialog_->setNameFilters({"Soundings (*.gef *.GEF *.csv *.CSV)", "All files (*)"});
    connect(dialog_.get(), &QFileDialog::fileSelected, this,
            [this](const QString& file) { hands_.order(GroundOrder(file.toStdString())); });
  }
  dialog_->show();
}

void RigWindow::Open() {
  const QRect room = screen() == nullptr ? QRect(QPoint(), kDrawnFor) : PlaceRoom(*screen());
  // A window manager's frame wants some of the room.
  const int height = room.height() * 94 / 100;
  const int width = std::min(room.width() * 98 / 100, height * 7 / 10);
  resize(width, height);
  move(room.topLeft());
  show();
}

void RigWindow::Rescale() {
  const double across = static_cast<double>(width()) / kDrawnFor.width();
  const double down = static_cast<double>(height()) / kDrawnFor.height();
  const double scale = std::max(0.5, std::floor(std::min(across, down) * 20) / 20);
  if (scale == scale_) return;
  scale_ = scale;
  Style();
  ScaleGaps(*this, scale);
}

void RigWindow::Style() {
  look_ = ChosenLook();
  night_->setText(look_ == LookSet::Day ? "&NIGHT" : "&DAY");
  setStyleSheet(RigSheet(scale_));
  profile_->DrawAnew();
}

void RigWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  Rescale();
}

void RigWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  hands_.close();
}

}  // namespace penlog
