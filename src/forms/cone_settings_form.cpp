#include "forms/cone_settings_form.h"

namespace penlog {

ConeSettingsForm::ConeSettingsForm() : Form("frmConeSettings", "CONE SETTINGS") {
  ClosingEnds = true;
  KeepFirstValues();
}

}  // namespace penlog
