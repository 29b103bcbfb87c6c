// Pictures of the screens, which a person looks at in the build's folder "screens".
#include <QDir>
#include <QImage>

#include "platform/qt/mirror.h"
#include "platform_qt/demo_values.h"
#include "support/world.h"

namespace penlog {
namespace {

std::string FileFor(const std::string& name) {
  const std::string folder = std::string(PENLOG_BINARY_DIR) + "/screens";
  QDir().mkpath(QString::fromStdString(folder));
  return folder + "/" + name + ".png";
}

TEST(Shot, WritesAPictureOfEachScreen) {
  World world;
  WindowMirror mirror;
  for (Form* form : AllForms()) {
    Show(*form);
    const std::string file = FileFor(form->Name() + "-first");
    QFile::remove(QString::fromStdString(file));
    ASSERT_TRUE(mirror.Shot(form->Name(), file, 1024, 768)) << form->Name();
    EXPECT_FALSE(QImage(QString::fromStdString(file)).isNull());
  }
}

TEST(Shot, HasTheSizeOfTheWindowOnThatDisplay) {
  World world;
  WindowMirror mirror;
  Show(Main);
  const std::string file = FileFor("size");
  ASSERT_TRUE(mirror.Shot("Main", file, 1024, 768));
  EXPECT_EQ(QImage(QString::fromStdString(file)).size(), QSize(1024, 768));
}

TEST(Shot, ShowsAMiddleOfASounding) {
  World world;
  WindowMirror mirror;
  FillMain();
  FillSetups();
  for (Form* form : AllForms()) Show(*form);
  for (const auto& [width, height] : {std::pair(800, 600), std::pair(1024, 768)}) {
    const std::string size = std::to_string(width);
    for (Form* form : AllForms()) {
      EXPECT_TRUE(mirror.Shot(form->Name(), FileFor(form->Name() + "-" + size), width, height));
    }
  }
  RaiseNotices();
  Main.frmTakeFinalBaseline.Visible = false;
  EXPECT_TRUE(mirror.Shot("Main", FileFor("Main-notices-800"), 800, 600));
  EXPECT_TRUE(mirror.Shot("Main", FileFor("Main-notices-1024"), 1024, 768));
  EXPECT_TRUE(mirror.Shot("Main", FileFor("Main-notices-1920"), 1920, 1080));
}

TEST(Shot, ShowsTheFullestScreens) {
  World world;
  WindowMirror mirror;
  FillMain();
  ShowChannels(30);
  Show(Main);
  Main.frmTakeFinalBaseline.Visible = true;
  EXPECT_TRUE(mirror.Shot("Main", FileFor("Main-thirty-channels"), 800, 600));
  for (Control* control : frmWarning.Controls()) {
    if (control->Kind() != ControlKind::Frame) continue;
    control->Visible = control->Name().find("Warning") != std::string::npos;
  }
  Show(frmWarning);
  EXPECT_TRUE(mirror.Shot("frmWarning", FileFor("frmWarning-all-lost"), 800, 600));
  for (Control* control : std::initializer_list<Control*>{
           &frmWarning.frmSensorayWarning, &frmWarning.frmASCIIOutWarning,
           &frmWarning.frmEncoderWarning, &frmWarning.frmModuleWarning}) {
    control->Visible = false;
  }
  frmWarning.frmEncoderConnected.Visible = frmWarning.frmModulesConnected.Visible = true;
  EXPECT_TRUE(mirror.Shot("frmWarning", FileFor("frmWarning-cone-lost"), 800, 600));
  FillStartUp();
  Show(StartUp);
  EXPECT_TRUE(mirror.Shot("StartUp", FileFor("StartUp-full"), 800, 600));
  SetupDisplay.frmSelectPPType.Visible = true;
  SetupDisplay.cmdDone.Enabled = false;
  Show(SetupDisplay);
  FillSetups();
  EXPECT_TRUE(mirror.Shot("SetupDisplay", FileFor("SetupDisplay-pp"), 800, 600));
  PostBox("Last sounding parameters file missing. Default values loaded");
  EXPECT_TRUE(mirror.Shot("SetupDisplay", FileFor("SetupDisplay-box"), 1024, 768));
}

TEST(Shot, OfAHiddenOrUnknownScreenFails) {
  World world;
  WindowMirror mirror;
  EXPECT_FALSE(mirror.Shot("Main", FileFor("none"), 0, 0));
  EXPECT_FALSE(mirror.Shot("frmNobody", FileFor("none"), 0, 0));
  EXPECT_FALSE(mirror.Shot("", FileFor("none"), 0, 0));
}

TEST(Shot, IntoAMissingFolderFails) {
  World world;
  WindowMirror mirror;
  Show(StartUp);
  EXPECT_FALSE(mirror.Shot("StartUp", "/nowhere/at/all.png", 0, 0));
}

TEST(Shot, ShowsTheBoxOverTheFrontScreen) {
  World world;
  WindowMirror mirror;
  Show(StartUp);
  ASSERT_TRUE(mirror.Shot("StartUp", FileFor("StartUp-bare"), 1024, 768));
  PostBox("CONE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SEARCH FOR THE PORT?",
          BoxButtons::YesNo);
  ASSERT_TRUE(mirror.Shot("StartUp", FileFor("StartUp-box"), 1024, 768));
  EXPECT_NE(QImage(QString::fromStdString(FileFor("StartUp-bare"))),
            QImage(QString::fromStdString(FileFor("StartUp-box"))));
}

}  // namespace
}  // namespace penlog
