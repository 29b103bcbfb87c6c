// Every screen as a whole start and sounding leave it, in virtual time, with windows of each size,
// in English and in a language that is 30 % longer: no text is cut, nothing lies on another. And a
// sounding whose colours are changed while it records.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <map>
#include <sstream>
#include <string>

#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "operator/virtual_session.h"
#include "platform/files.h"
#include "platform/memory_disk.h"
#include "platform/posix/posix_disk.h"
#include "platform/qt/box_windows.h"
#include "platform_qt/room.h"
#include "rig/rig_setups.h"
#include "sounding/sounding_state.h"
#include "support/project_file.h"

namespace penlog {
namespace {

/// The open box over that window, with its buttons. A very long text scrolls.
void ExpectBoxInReach(FormWindow& window, const QSize& display) {
  if (FrontBox() == nullptr) return;
  BoxWindows boxes;
  for (int round = 0; round < 2; ++round) {
    boxes.Follow({&window});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::processEvents();
  }
  const QWidget* box = boxes.Front();
  ASSERT_NE(box, nullptr);
  const auto* text = box->findChild<QLabel*>("lblBoxText");
  EXPECT_EQ(CutOf(*text), "") << FrontBox()->text << " at " << display.width();
  for (const auto* button : box->findChildren<QPushButton*>()) {
    EXPECT_EQ(CutOf(*button), "") << button->text().toStdString() << " at " << display.width();
    EXPECT_TRUE(box->rect().contains(QRect(button->mapTo(box, QPoint()), button->size())))
        << button->text().toStdString() << " at " << display.width();
  }
}

/// Looks at each screen that is shown, and the box over it, whenever the script takes a picture.
struct RoomWatch {
  std::string Look(const std::string& screen) {
    Form* form = FindForm(screen);
    if (form == nullptr || !form->Visible) return "no screen " + screen;
    FormWindow window(*form);
    for (const auto translation : {false, true}) {
      UseTranslation(translation ? Longer : nullptr);
      for (const QSize& display : kDisplays) {
        ExpectNothingCut(window, display);
        ExpectNoOverlap(window, display);
        ExpectAllInReach(window, display);
        ExpectBoxInReach(window, display);
        boxes += FrontBox() == nullptr ? 0 : 1;
      }
    }
    UseTranslation(nullptr);
    ++looks;
    return {};
  }
  int looks = 0;
  int boxes = 0;
};

SessionResult PlayWatched(const std::string& file, VirtualSession& session, RoomWatch& watch) {
  PlayerHands hands;
  hands.shot = [&watch](const std::string&, const std::string& screen) {
    return watch.Look(screen);
  };
  return session.Play(ParseScript(file, ProjectFile("operator/scripts/" + file)), std::move(hands));
}

struct PlayRow {
  const char* name;
  const char* file;
  bool outputs;  ///< set up with ports for both outputs that are not there
  int looks;
  bool has_box = false;  ///< a picture of it shows one
};

/// The settings that come with the program, but with the ports COM21 and COM22 for the outputs.
void WriteOutputSettings() {
  constexpr char kSettings[] = "System Setup Values.txt";
  const std::string folder = VirtualSession::DataDirectory();
  TheDisk().MakeFolder(folder);
  const QDir data(QString(PENLOG_SOURCE_DIR) + "/data");
  for (const QString& name : data.entryList({"*.txt", "*.asc"})) {
    const std::string file = name.toStdString();
    ReplaceFile(JoinPath(folder, file), ProjectFile("data/" + file));
  }
  const std::map<int, std::string> numbers = {
      {22, "1"}, {41, "3"}, {42, "4"}, {55, "21"}, {56, "22"}};
  std::string changed;
  std::istringstream lines(ProjectFile(std::string("data/") + kSettings));
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    const auto found = numbers.find(++number);
    const auto digits = line.find_first_not_of("0123456789");
    changed += (found == numbers.end() ? line : found->second + line.substr(digits)) + "\n";
  }
  ReplaceFile(JoinPath(folder, kSettings), changed);
}

class EachScript : public testing::TestWithParam<PlayRow> {};

TEST_P(EachScript, CutsNothingAtAnySize) {
  VirtualSession session(MakeRigSetup("dcs"), {});
  if (GetParam().outputs) WriteOutputSettings();
  RoomWatch watch;
  const SessionResult result = PlayWatched(GetParam().file, session, watch);
  EXPECT_EQ(result.exit_code, 0) << result.report;
  EXPECT_EQ(watch.looks, GetParam().looks);
  EXPECT_TRUE(watch.boxes > 0 || !GetParam().has_box);
}

INSTANTIATE_TEST_SUITE_P(Screens, EachScript,
                         testing::Values(PlayRow{"Demo", "demo.txt", false, 16},
                                         PlayRow{"PortsPictures", "ports_pictures.txt", false, 6},
                                         PlayRow{"MainPictures", "main_pictures.txt", false, 9,
                                                 true},
                                         PlayRow{"OutputPorts", "output_ports.txt", true, 2},
                                         PlayRow{"Guide", "guide.txt", false, 16},
                                         PlayRow{"ResumePictures", "resume_pictures.txt", false,
                                                 9, true}),
                         [](const testing::TestParamInfo<PlayRow>& row) { return row.param.name; });

TEST(Screens, ChangingTheColoursLosesNoRow) {
  const auto rows_with = [](const std::string& lines) {
    VirtualSession session(MakeRigSetup("dcs"), {});
    std::string text = ProjectFile("operator/scripts/demo.txt");
    const std::string after = "wait 30\n";
    const auto at = text.find(after, text.find("rig push 5"));
    text.insert(at + after.size(), lines);
    std::int32_t rows = 0;
    const SessionResult result =
        session.Play(ParseScript("demo.txt", text), {}, [&] { rows = sounding.RowCount; });
    EXPECT_EQ(result.exit_code, 0) << result.report;
    return rows;
  };
  const std::int32_t plain = rows_with("");
  std::string changes;
  for (int i = 0; i < 20; ++i) changes += "menu Main.mnuNight\nmenu Main.mnuDay\n";
  EXPECT_EQ(rows_with(changes), plain);
  EXPECT_GT(plain, 200);
}

TEST(Screens, LongWorkShowsProgressThatMoves) {
  VirtualSessionSetup setup;
  setup.cone_port = 7;
  setup.truck_port = 4;
  VirtualSession session(MakeRigSetup("dcs"), setup);
  const SessionResult result =
      session.Play(ParseScript("progress",
                               "screen StartUp\n"
                               "click StartUp.cmdStart\n"
                               "expect StartUp.lblProgress \"STEP 1 OF 5\"\n"
                               "answer yes \"CONE SERIAL PORT NOT DETECTED.\"\n"
                               "expect StartUp.lblProgress \"PORT 1 OF 2\"\n"
                               "expect StartUp.lblProgress \"PORT 2 OF 2\"\n"
                               "answer ok \"CONE DETECTED ON PORT 7\"\n"
                               "answer ok \"PRESS OK TO VERIFY\"\n"
                               "expect StartUp.lblProgress \"STEP 2 OF 5\"\n"
                               "select frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort 4\n"
                               "click frmSpecifyTruckInterface.cmdSavePort\n"
                               "answer ok \"TRUCK INTERFACE SERIAL PORT SET TO PORT 4\"\n"
                               "expect StartUp.lblProgress \"STEP 5 OF 5\"\n"
                               "expect StartUp.lblProgress \"CHANNEL RECORD 1\"\n"
                               "expect StartUp.lblProgress \"CHANNEL RECORD 3\"\n"
                               "screen frmConeSettings 60\n"
                               "click frmConeSettings.cmdClose\n"));
  EXPECT_EQ(result.exit_code, 0) << result.report;
  EXPECT_EQ(StartUp.lblProgress.Caption, "");
}

}  // namespace
}  // namespace penlog
