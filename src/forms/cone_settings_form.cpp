#include "forms/cone_settings_form.h"

namespace penlog {

ConeSettingsForm::ConeSettingsForm() : Form("frmConeSettings", "CONE SETTINGS") {
  KeepFirstValues();
}

}  // namespace penlog
