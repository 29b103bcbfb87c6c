#include "core/start_up_load.h"

#include <string>

#include "core/channel_files.h"
#include "core/data_directory.h"
#include "core/error_trap.h"
#include "core/first_run.h"
#include "core/instance_lock.h"
#include "core/languages.h"
#include "core/message.h"
#include "core/session.h"
#include "core/settings_check.h"
#include "core/settings_file.h"
#include "core/soil_tables.h"
#include "display/view_settings.h"
#include "forms/start_up_form.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr float kDesignWidth = 800;  // pixels for which the screens were drawn
constexpr float kDesignHeight = 600;
constexpr std::int16_t kReadingsAveraged = 4;

/// A directory that can't be written is told once; what then fails in it speaks for itself.
void PrepareDataDirectory() {
  session.DataDirectory = FindDataDirectory();
  const std::string why_not = WhyNotWritable(session.DataDirectory);
  if (!why_not.empty()) {
    Tell("THE DATA DIRECTORY CANNOT BE WRITTEN, SO NO SOUNDING CAN BE RECORDED.  " + why_not);
    return;
  }
  try {
    TakeInstanceLock();
    LayDownFirstRunFiles();
  } catch (const RuntimeFault& fault) {
    Tell(std::string("THE DATA DIRECTORY COULD NOT BE PREPARED.  ") + fault.what());
  }
}

/// A text, not a constant: only the locale's own conversion shows a decimal comma.
void TestLocale() {
  session.CommaDecimal = TheHost().LocaleReads("2.1") == 2.1 ? 0 : 1;
}

void MeasureScreen() {
  session.ScreenScaleX = static_cast<float>(TheHost().ScreenWidth()) / kDesignWidth;
  session.ScreenScaleY = static_cast<float>(TheHost().ScreenHeight()) / kDesignHeight;
}

void ShowVersion() {
  StartUp.lblFeatures.Visible = false;
  StartUp.lblVersionNumber.Caption = "Version: 2019.01.17.1";
}

void ClearFlags() {
  session.ReadingsAveraged = kReadingsAveraged;
  session.CalibrationMode = 0;
  session.CalibrationPlaybackOnly = 0;
  session.LastSoundingCompletedMessage = "LAST SOUNDING COMPLETED.  CANNOT RESTART.";
  session.ConeNotDetectedMessage = "Cone not detected.  Plug in a cone and restart the program.";
  session.SoundingFiles[0] = DataPath("TemporaryData.txt");
}

void ReadDissipationRestartCount() {
  session.DissipationRestartCount = 0;
  const std::string path = DataPath("Dissipation Restart Settings.txt");
  if (!TheDisk().FileExists(path)) return;
  Trapped([&] {
    ValueReader reader("Dissipation Restart Settings.txt", ReadFile(path));
    session.DissipationRestartCount = ToInteger16(LeadingNumber(reader.ReadString()));
  });
}

void LoadChannels() {
  if (LoadChannelFiles() == 0) {
    Tell("NO CHANNEL FILES WERE FOUND IN " + session.DataDirectory +
         ".  CHANNELS HAVE NO NAMES AND UNITS.");
  }
}

void LoadSoil() {
  try {
    ValueReader reader("intubc.asc", ReadFile(DataPath("intubc.asc")));
    LoadSoilTables(reader);
  } catch (const RuntimeFault& fault) {
    Tell(std::string(fault.what()) + ".  SOIL TYPE AND SPT N ARE NOT AVAILABLE.");
  }
}

}  // namespace

void StartUp_Load() {
  PrepareDataDirectory();
  TestLocale();
  MeasureScreen();
  LoadViewSettings();
  ShowVersion();
  BackUpFirstSetup();
  ClearFlags();
  ReadDissipationRestartCount();
  LoadChannels();
  LoadLanguages();
  LoadSystemSetup();
  CheckSettings();
  LoadWordTable();
  DeriveSettings();
  RewriteUpgradedSetup();
  LoadSoil();
}

}  // namespace penlog
