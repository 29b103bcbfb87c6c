#include "platform/qt/arrangements.h"

#include <map>

#include "ui_cone_settings.h"
#include "ui_create_new_directory.h"
#include "ui_enlarged_graph.h"
#include "ui_main.h"
#include "ui_reset_comms.h"
#include "ui_restart.h"
#include "ui_resume_depth.h"
#include "ui_setup_display.h"
#include "ui_setup_sounding.h"
#include "ui_specify_ascii_out.h"
#include "ui_specify_truck_interface.h"
#include "ui_specify_video_overlay.h"
#include "ui_start_up.h"
#include "ui_warning.h"

namespace penlog {

namespace {

template <class Arrangement>
void Fill(QMainWindow& window) {
  Arrangement().setupUi(&window);
}

const std::map<std::string, void (*)(QMainWindow&)>& Arrangements() {
  static const std::map<std::string, void (*)(QMainWindow&)> arrangements = {
      {"EnlargedGraph", Fill<Ui::EnlargedGraph>},
      {"Main", Fill<Ui::Main>},
      {"SetupDisplay", Fill<Ui::SetupDisplay>},
      {"SetupSounding", Fill<Ui::SetupSounding>},
      {"StartUp", Fill<Ui::StartUp>},
      {"frmConeSettings", Fill<Ui::frmConeSettings>},
      {"frmCreateNewDirectory", Fill<Ui::frmCreateNewDirectory>},
      {"frmResetComms", Fill<Ui::frmResetComms>},
      {"frmResumeDepthStatus", Fill<Ui::frmResumeDepthStatus>},
      {"frmSpecifyASCIIOut", Fill<Ui::frmSpecifyASCIIOut>},
      {"frmSpecifyTruckInterface", Fill<Ui::frmSpecifyTruckInterface>},
      {"frmSpecifyVideoOverlay", Fill<Ui::frmSpecifyVideoOverlay>},
      {"frmWarning", Fill<Ui::frmWarning>},
      {"frmZOLRestart", Fill<Ui::frmZOLRestart>},
  };
  return arrangements;
}

}  // namespace

bool SetUpWindow(const std::string& form_name, QMainWindow& window) {
  const auto found = Arrangements().find(form_name);
  if (found == Arrangements().end()) return false;
  found->second(window);
  return true;
}

}  // namespace penlog
