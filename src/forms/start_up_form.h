// The first screen: start a sounding, resume the last one, system setup, calibration check.
#pragma once

#include <cstdint>

#include "forms/control.h"
#include "forms/form.h"
#include "platform/serial_port.h"
#include "platform/timer.h"

namespace penlog {

struct StartUpForm : Form {
  StartUpForm();
  void Released() override;

  Label lblTitle{*this, "lblTitle", "PENLOG"};
  Label lblForeignTitle{*this, "lblForeignTitle"};
  Label lblVersionNumber{*this, "lblVersionNumber", "Version: 2019.01.17.1"};
  Label lblFeatures{*this, "lblFeatures"};
  Button cmdStart{*this, "cmdStart", "START NEW SOUNDING"};
  Button cmdResume{*this, "cmdResume", "RESUME LAST SOUNDING"};
  Button cmdSystemSetup{*this, "cmdSystemSetup", "SYSTEM SETUP / TROUBLESHOOT"};
  Button cmdCalibrate{*this, "cmdCalibrate", "CALIBRATION CHECK"};
  Button cmdExit{*this, "cmdExit", "EXIT"};

  Frame frLoad{*this, "frLoad"};
  Label lblLoad{*this, "lblLoad"};
  Label lblStatusIndicator{*this, "lblStatusIndicator"};  ///< running dots, 0 to 20

  Label lblProgress{*this, "lblProgress"};  ///< of the work under way: step, port, record
  Shape shpProgressGround{*this, "shpProgressGround"};
  Shape shpProgress{*this, "shpProgress"};  ///< the part of its ground that is done

  Frame frmResume{*this, "frmResume", "RESUME LAST SOUNDING"};
  Label lblLastSoundingConeCaption{*this, "lblLastSoundingConeCaption", "CONE OF LAST SOUNDING:"};
  Label lblLastSoundingCone{*this, "lblLastSoundingCone"};
  Label lblLastSoundingDepthCaption{*this, "lblLastSoundingDepthCaption",
                                    "DEPTH OF LAST SOUNDING:"};
  Label lblLastSoundingDepth{*this, "lblLastSoundingDepth"};
  Label lblDistanceDrilledCaption{*this, "lblDistanceDrilledCaption", "DISTANCE DRILLED:"};
  TextBox txtDistanceDrilled{*this, "txtDistanceDrilled"};
  Button cmdResumeAtLastDepth{*this, "cmdResumeAtLastDepth", "RESUME AT LAST DEPTH"};
  Button cmdResumeAtSurface{*this, "cmdResumeAtSurface", "RESUME AT SURFACE"};
  Button cmdCancel{*this, "cmdCancel", "CANCEL"};

  // As on the console: the first screen is seen in the dark too.
  MenuEntry mnuDay{*this, "mnuDay", "DAY COLOURS"};
  MenuEntry mnuNight{*this, "mnuNight", "NIGHT COLOURS"};
  MenuEntry mnuAlarmTone{*this, "mnuAlarmTone", "TONE AT A NEW ALARM"};

  SerialPort ConeComm{"StartUp.ConeComm"};
  Timer Timer1{"StartUp.Timer1", 55};
  std::int16_t CommTick = 0;  ///< ticks of Timer1 behind the pauses of the cone link
};

inline StartUpForm StartUp;

}  // namespace penlog
