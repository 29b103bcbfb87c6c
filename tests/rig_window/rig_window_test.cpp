// The rig's window on a rig in virtual time: what a hand does there, and what the eye finds.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QScreen>
#include <QTreeView>
#include <algorithm>
#include <memory>
#include <set>

#include "platform/files.h"
#include "platform/qt/look.h"
#include "platform/qt/mnemonics.h"
#include "platform/qt/screen_room.h"
#include "rig/rig_world.h"
#include "rig/window/rig_desk.h"
#include "rig/window/rig_look.h"

namespace penlog {
namespace {

struct DeskWorld : RigWorld {
  explicit DeskWorld(const char* setup = "dcs") : RigWorld(setup) {
    rig.on_renumber = [this](RigWire which, int number) {
      (which == RigWire::Cone ? numbers.cone : numbers.truck) = number;
    };
    desk = std::make_unique<RigDesk>(rig, [this] { return numbers; });
    Window().resize(420, 740);
    Window().show();
    Settle();
  }

  RigWindow& Window() const { return desk->Window(); }

  static void Settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::processEvents();
  }

  /// Presses the window at the middle of the button, so that a covered button fails.
  void Press(QPushButton* button) {
    ASSERT_NE(button, nullptr);
    Settle();
    const QPoint place = button->mapTo(&Window(), button->rect().center());
    QWidget* hit = Window().childAt(place);
    ASSERT_EQ(hit, button) << button->text().toStdString();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      const QPointF local = hit->mapFrom(&Window(), place);
      QMouseEvent event(type, local, Window().mapToGlobal(place), Qt::LeftButton,
                        type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                        Qt::NoModifier);
      QCoreApplication::sendEvent(hit, &event);
    }
    Yield();
  }
  void Press(PanelButton button) { Press(Window().ButtonFor(button)); }
  void Press(const char* name) { Press(Window().findChild<QPushButton*>(name)); }

  std::string Label(const char* name) const {
    return Window().findChild<QLabel*>(name)->text().toStdString();
  }
  std::string Role(const char* name) const {
    return Window().findChild<QLabel*>(name)->property("role").toString().toStdString();
  }
  /// The orders that the rig took or refused, by its own log.
  std::vector<std::string> Ordered() const {
    std::vector<std::string> orders;
    for (const auto& record : rig.log.Of(RigLogKind::Control)) orders.push_back(record.text);
    return orders;
  }

  RigNumbers numbers{3, 4};
  std::unique_ptr<RigDesk> desk;
};

using Orders = std::vector<std::string>;

TEST(RigWindow, ButtonsGiveTheirOrders) {
  DeskWorld world("proximity");
  world.Do("at 3");
  world.desk->Follow();
  for (const PanelButton button : {PanelButton::Push, PanelButton::RodBreak, PanelButton::Stop,
                                   PanelButton::Lift, PanelButton::Clamp, PanelButton::Pressure}) {
    world.Press(button);
  }
  EXPECT_EQ(world.Ordered(),
            (Orders{"at 3", "push 1", "rod-break", "stop", "lift 1", "clamp off", "pressure on"}));
}

TEST(RigWindow, WayIsTheOneThatIsChosen) {
  DeskWorld world;
  auto* way = world.Window().findChild<QComboBox*>("cmbWay");
  ASSERT_NE(way, nullptr);
  ASSERT_EQ(way->count(), static_cast<int>(PanelWays().size()));
  way->setCurrentIndex(way->count() - 1);
  world.Press(PanelButton::Push);
  EXPECT_EQ(world.Ordered(), Orders{"push 30"});
}

TEST(RigWindow, EveryFaultOfTheRigHasASwitch) {
  DeskWorld world;
  std::set<FaultName> names;
  for (const FaultRow& row : world.Window().Faults()) names.insert(row.name);
  EXPECT_EQ(names.size(), static_cast<std::size_t>(kFaultCount));
  for (std::size_t i = 0; i < world.Window().Faults().size(); ++i) {
    const QPushButton* button = world.Window().FaultButton(i);
    EXPECT_EQ(button->text().toStdString(), FaultRowText(world.Window().Faults()[i]));
  }
}

TEST(RigWindow, FaultGoesOnAndOffAndSaysSo) {
  DeskWorld world;
  QPushButton* silent = world.Window().FaultButton(0);
  world.Press(silent);
  EXPECT_TRUE(world.rig.faults.Active(FaultName::Silent, Now()));
  EXPECT_EQ(silent->text(), "silent ON");
  EXPECT_EQ(world.Label("lblHint").find("Fault silent."), 0u);
  world.Press(silent);
  EXPECT_FALSE(world.rig.faults.Active(FaultName::Silent, Now()));
  EXPECT_EQ(silent->text(), "silent");
}

TEST(RigWindow, ReplugWaitsUntilTheAdapterIsBack) {
  DeskWorld world;
  std::size_t index = 0;
  while (FaultRowText(world.Window().Faults()[index]) != "replugged cone") ++index;
  QPushButton* replug = world.Window().FaultButton(index);
  world.Press(replug);
  EXPECT_FALSE(replug->isEnabled());
  World::RunFor(2 * kSecond);
  EXPECT_TRUE(replug->isEnabled());
  EXPECT_EQ(replug->text(), "replugged cone ON");
  EXPECT_EQ(world.numbers.cone, 5);
  world.Press(replug);
  World::RunFor(2 * kSecond);
  EXPECT_EQ(world.numbers.cone, 3);
  EXPECT_EQ(replug->text(), "replugged cone");
}

TEST(RigWindow, RefusedOrderIsTold) {
  DeskWorld world;
  world.Press(PanelButton::Pressure);
  EXPECT_EQ(world.Label("lblTold"),
            "Refused. pressure: this truck has no pressure switch (pressure on|off)");
  EXPECT_EQ(world.Role("lblTold"), "refused");
  world.Press(PanelButton::Push);
  EXPECT_EQ(world.Label("lblTold"), "push 1");
  EXPECT_EQ(world.Role("lblTold"), "caption");
}

TEST(RigWindow, FollowsThePush) {
  DeskWorld world;
  EXPECT_EQ(world.Label("lblHeadline"), "STANDING");
  world.Press(PanelButton::Push);
  World::RunFor(10 * kSecond);
  EXPECT_EQ(world.Label("lblHeadline"), "PUSHING AT 2 cm/s");
  EXPECT_EQ(world.Label("lblDepth").substr(0, 4), "0.20");
  world.truck.SetRTSEnable(true);
  World::RunFor(kSecond);
  EXPECT_EQ(world.Label("lblHeadline"), "HELD BY THE CONSOLE");
  EXPECT_EQ(world.Role("lblHeadline"), "held");
}

TEST(RigWindow, LooksAtTheRigAtMostTwentyTimesASecond) {
  DeskWorld world;
  world.Do("speed 50");
  world.Press(PanelButton::Push);
  int changes = 0;
  std::string depth = world.Label("lblDepth");
  for (int ms = 0; ms < 1000; ++ms) {
    World::RunFor(kMillisecond);
    const std::string now = world.Label("lblDepth");
    changes += now == depth ? 0 : 1;
    depth = now;
  }
  EXPECT_LE(changes, 20);
  EXPECT_GE(changes, 18);
}

TEST(RigWindow, LeavesTheRigAsItWouldBeWithout) {
  const auto run = [](bool with_window) {
    RigWorld world("dcs");
    std::unique_ptr<RigDesk> desk;
    if (with_window) desk = std::make_unique<RigDesk>(world.rig, [] { return RigNumbers{}; });
    world.Do("push 1.5");
    for (int i = 0; i < 20; ++i) world.Exchange("D");
    world.RunUntilStanding();
    return world.rig.log.Hash();
  };
  EXPECT_EQ(run(true), run(false));
}

TEST(RigWindow, OthersGoOnHearingTheLog) {
  RigWorld world("dcs");
  int heard = 0;
  world.rig.log.on_added = [&heard](const RigRecord&) { ++heard; };
  const RigDesk desk(world.rig, [] { return RigNumbers{}; });
  world.Do("status");
  EXPECT_EQ(heard, 1);
}

TEST(RigWindow, GroundComesFromAFileOfTheDialog) {
  DeskWorld world;
  TheDisk().MakeFolder("/my holes");
  ReplaceFile("/my holes/a b.csv", "depth (m),qc (MPa)\n0,1\n5,7\n");
  world.Press("cmdFile");
  QFileDialog* dialog = world.Window().Dialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  emit dialog->fileSelected("/my holes/a b.csv");
  Yield();
  EXPECT_EQ(world.Window().Fact("Ground"), "a b.csv");
  EXPECT_NEAR(world.rig.surroundings.ground.At(5.0).qc, 7000.0, 1e-6);
  world.Press("cmdLayered");
  EXPECT_EQ(world.Window().Fact("Ground"), "layered");
}

TEST(RigWindow, TheDialogForAFileFollowsTheNight) {
  DeskWorld world;
  world.Press("cmdLook");
  world.Press("cmdFile");
  auto* files = world.Window().Dialog()->findChild<QTreeView*>();
  ASSERT_NE(files, nullptr);
  const QImage shown = files->viewport()->grab().toImage();
  EXPECT_EQ(shown.pixelColor(shown.width() - 3, shown.height() - 3), Look().field);
  EXPECT_EQ(files->palette().color(QPalette::Text), Look().text);
  ChooseLook(LookSet::Day);
}

TEST(RigWindow, BadFileIsToldAndTheGroundStays) {
  DeskWorld world;
  world.Press("cmdFile");
  ReplaceFile("/bad.csv", "depth (m),qc (MPa)\n0,x\n");
  for (const char* file : {"/bad.csv", "/none.gef"}) {
    emit world.Window().Dialog()->fileSelected(file);
    Yield();
    EXPECT_EQ(world.Label("lblTold").find("Refused. ground: "), 0u);
    EXPECT_NE(world.Label("lblTold").find(file), std::string::npos) << world.Label("lblTold");
    EXPECT_EQ(world.Role("lblTold"), "refused");
    EXPECT_EQ(world.Window().Fact("Ground"), "layered");
  }
}

TEST(RigWindow, FileThatIsNotThereOpensNoBoxOfTheToolkit) {
  DeskWorld world;
  world.Press("cmdFile");
  QFileDialog* dialog = world.Window().Dialog();
  dialog->selectFile("/there/is/no.gef");
  // A box of the toolkit would wait here in a loop of its own.
  QMetaObject::invokeMethod(dialog, "accept");
  Yield();
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_NE(world.Label("lblTold").find("no.gef"), std::string::npos) << world.Label("lblTold");
}

TEST(RigWindow, PictureFollowsGroundDepthAndPage) {
  DeskWorld world;
  const auto picture = [&world] {
    DeskWorld::Settle();
    return world.Window().findChild<ProfileView*>()->grab().toImage();
  };
  const QImage at_rest = picture();
  world.Do("at 2");
  world.desk->Follow();
  const QImage deeper = picture();
  EXPECT_NE(deeper, at_rest);
  world.Do("at 7");
  world.desk->Follow();
  const QImage next_page = picture();
  EXPECT_NE(next_page, deeper);
  ReplaceFile("/a.csv", "depth (m),qc (MPa),fs (MPa)\n0,20,0.1\n30,20,0.1\n");
  world.Do("ground /a.csv");
  world.desk->Follow();
  EXPECT_NE(picture(), next_page);
}

TEST(RigWindow, ClosingItAsksForTheEndAndKeepsItOpen) {
  DeskWorld world;
  EXPECT_FALSE(world.Window().close());
  EXPECT_TRUE(EndUnderWay());
  EXPECT_THROW(Yield(), ProgramEnd);
  ForgetEnd();
}

/// The grounds of the picture: those of the soils and that of what is none.
std::vector<std::string> Grounds() {
  std::vector<std::string> words = KnownSoils();
  words.push_back("");
  return words;
}

TEST(RigLook, TracesAndTextsStandOutFromEveryGround) {
  const struct {
    const char* name;
    QColor LookColours::*mark;
  } rows[] = {{"tip", &LookColours::lit},
              {"sleeve", &LookColours::good},
              {"pore pressure", &LookColours::blue_mark},
              {"depths and rods", &LookColours::caption},
              {"soils and cone", &LookColours::readout_text}};
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    ChooseLook(set);
    for (const std::string& word : Grounds()) {
      for (const auto& row : rows) {
        EXPECT_GE(Contrast(Look().*row.mark, SoilColour(word)), kLeastContrast)
            << (set == LookSet::Day ? "day: " : "night: ") << row.name << " on " << word;
      }
    }
    EXPECT_GE(Contrast(Look().ground, Look().lit), kLeastContrast) << "text of a fault";
    EXPECT_GE(Contrast(Look().readout_ground, Look().caption), kLeastContrast) << "joints";
  }
  ChooseLook(LookSet::Day);
}

TEST(RigLook, EverySoilOfTheGroundIsKnown) {
  const std::vector<std::string>& known = KnownSoils();
  for (double qc = 50.0; qc < 60000.0; qc *= 1.2) {
    for (double ratio = 0.001; ratio < 0.2; ratio *= 1.2) {
      GroundValues values;
      values.qc = qc;
      values.fs = qc * ratio;
      const std::string word = SoilWord(values);
      EXPECT_TRUE(std::find(known.begin(), known.end(), word) != known.end()) << word;
    }
  }
}

TEST(RigLook, GapsAreStepsOfTheLook) {
  for (const int gap : {kRigMargin, kRigGap, kRigCellGap, kRigLineGap}) {
    EXPECT_TRUE(std::find(LookGaps().begin(), LookGaps().end(), gap) != LookGaps().end()) << gap;
  }
}

TEST(RigLook, NoOtherFileOfTheWindowNamesAColourOrASize) {
  const QDir folder(QString(PENLOG_SOURCE_DIR) + "/rig/window");
  const QRegularExpression own(
      "QColor\\(|Qt::(?:black|white|red|green|blue)|#[0-9a-f]{6}|"
      "font-size|setSpacing\\(|setPixelSize\\(");
  const QStringList files = folder.entryList({"*.cpp", "*.h"});
  EXPECT_GE(files.size(), 8);
  for (const QString& name : files) {
    if (name.startsWith("rig_look.")) continue;
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto found = own.match(QString::fromUtf8(file.readAll()));
    EXPECT_FALSE(found.hasMatch()) << name.toStdString() << ": " << found.captured().toStdString();
  }
}

TEST(RigWindow, NightAndDayAreOneButton) {
  DeskWorld world;
  const auto ground = [&world] {
    DeskWorld::Settle();
    return world.Window().grab().toImage().pixelColor(1, world.Window().height() - 2);
  };
  EXPECT_EQ(ground(), LookOf(LookSet::Day).ground);
  world.Press("cmdLook");
  EXPECT_EQ(ground(), LookOf(LookSet::Night).ground);
  EXPECT_EQ(world.Window().findChild<QPushButton*>("cmdLook")->text(), "&DAY");
  const QImage picture = world.Window().findChild<ProfileView*>()->grab().toImage();
  EXPECT_EQ(picture.pixelColor(0, picture.height() - 1), LookOf(LookSet::Night).readout_ground);
  world.Press("cmdLook");
  EXPECT_EQ(ground(), LookOf(LookSet::Day).ground);
  EXPECT_EQ(world.Ordered(), Orders{});
}

TEST(RigWindow, EveryButtonOfTheTruckHasALetterOfItsOwn) {
  DeskWorld world("dse");
  std::set<QChar> letters;
  for (const QPushButton* button : world.Window().findChildren<QPushButton*>()) {
    if (button->property("role").toString() == "fault") continue;
    const QChar letter = MnemonicOf(button->text());
    EXPECT_FALSE(letter.isNull()) << button->text().toStdString();
    EXPECT_TRUE(letters.insert(letter).second) << button->text().toStdString();
  }
  EXPECT_GE(letters.size(), 10U);
}

struct SizeRow {
  int width;
  int height;
};

class EachRigSize : public testing::TestWithParam<SizeRow> {};

/// Text of labels and buttons that stands in less room than it needs.
std::string CutTexts(const QWidget& window) {
  std::string cut;
  for (const QPushButton* button : window.findChildren<QPushButton*>()) {
    const QString text = QString(button->text()).remove('&');
    if (button->fontMetrics().horizontalAdvance(text) + 6 > button->width() ||
        button->fontMetrics().height() > button->height()) {
      cut += text.toStdString() + "; ";
    }
  }
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    const QRect room = label->contentsRect();
    const int flags = label->wordWrap() ? Qt::TextWordWrap : 0;
    const QRect text =
        label->fontMetrics().boundingRect(QRect(0, 0, room.width(), 10000), flags, label->text());
    const bool shortened = label->text().endsWith(QChar(0x2026));
    if (text.width() > room.width() || text.height() > room.height() + 2 || shortened) {
      cut += label->text().toStdString() + "; ";
    }
  }
  return cut;
}

/// A state for each hint that there is.
std::vector<RigState> EachHint(const RigState& start) {
  std::vector<RigState> states = {start};
  const auto add = [&states](auto change) {
    states.push_back(states.back());
    change(states.back());
  };
  add([](RigState& s) { s.since_command = 7 * kSecond; });
  add([](RigState& s) { s.cone.open = s.truck.open = true; });
  add([](RigState& s) {
    s.readings_per_second = 18;
    s.last_reading = "0.253101 0.298800 0.500700 2.553333 2.460000";
  });
  add([](RigState& s) { s.lines.dsr = !s.lines.dsr; });
  for (const TruckWork work :
       {TruckWork::Push, TruckWork::RodBreak, TruckWork::Lift, TruckWork::Hold}) {
    add([work](RigState& s) { s.work = work; });
  }
  add([](RigState& s) { s.held = s.rts = true; });
  add([](RigState& s) { s.work = TruckWork::Standing; });
  return states;
}

TEST_P(EachRigSize, CutsNoHint) {
  DeskWorld world("dse");
  world.Window().resize(GetParam().width, GetParam().height);
  DeskWorld::Settle();
  for (const RigState& state : EachHint(StateOf(world.rig, {}, {3, 4}, {3, 4}))) {
    world.Window().Follow(state);
    DeskWorld::Settle();
    EXPECT_EQ(CutTexts(world.Window()), "") << Hint(state);
  }
}

TEST_P(EachRigSize, CutsNoTextAndCoversNoButton) {
  DeskWorld world("dse");
  world.Window().resize(GetParam().width, GetParam().height);
  DeskWorld::Settle();
  const auto look = [&world](const char* what) {
    world.desk->Follow();
    DeskWorld::Settle();
    EXPECT_EQ(CutTexts(world.Window()), "") << what;
  };
  look("standing");
  for (const FaultRow& row : world.Window().Faults()) {
    world.Do(FaultOrder(row, StateOf(world.rig, {}, world.numbers, {3, 4})));
    World::RunFor(2 * kSecond);
    look(FaultRowText(row).c_str());
  }
  world.Do("clear");
  world.Do("push 3");
  World::RunFor(55 * kSecond);
  look("pushing");
  world.truck.SetRTSEnable(true);
  World::RunFor(kSecond);
  look("held");
  world.Press(PanelButton::Strike);
  look("refused");
  for (QPushButton* button : world.Window().findChildren<QPushButton*>()) {
    if (!button->isVisibleTo(&world.Window())) continue;
    const QPoint place = button->mapTo(&world.Window(), button->rect().center());
    EXPECT_EQ(world.Window().childAt(place), button) << button->text().toStdString();
  }
  const auto* profile = world.Window().findChild<ProfileView*>();
  EXPECT_GE(profile->height(), world.Window().height() / 5);
  EXPECT_GE(profile->Picture().height(), 3 * profile->height() / 4);
}

INSTANTIATE_TEST_SUITE_P(RigWindow, EachRigSize,
                         testing::Values(SizeRow{352, 564}, SizeRow{360, 721}, SizeRow{400, 721},
                                         SizeRow{564, 1015}, SizeRow{1128, 2030}));

TEST(ScreenRoom, IsThePartOfTheScreenThatWasTold) {
  const QRect all = QGuiApplication::primaryScreen()->availableGeometry();
  for (const char* word : {"left", "right", "whole", "640x480+3+4"}) {
    UsePlace(*ScreenPlaceOf(word));
    const ScreenRoom room =
        RoomOn({all.x(), all.y(), all.width(), all.height()}, *ScreenPlaceOf(word));
    EXPECT_EQ(PlaceRoom(*QGuiApplication::primaryScreen()),
              QRect(room.x, room.y, room.width, room.height));
  }
  UsePlace({});
  EXPECT_EQ(PlaceRoom(*QGuiApplication::primaryScreen()), all);
}

}  // namespace
}  // namespace penlog
