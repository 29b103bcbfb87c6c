#include "core/progress.h"

#include <algorithm>
#include <array>

#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"

namespace penlog {

namespace {

constexpr int kPlacesOfWanderer = 10;

/// The part of the bar's ground that is filled.
Place FilledPart(int done, int of) {
  if (of > 0) return {true, 0, 0, std::clamp(static_cast<double>(done) / of, 0.0, 1.0), 1};
  return {true, static_cast<double>(done % kPlacesOfWanderer) / kPlacesOfWanderer, 0,
          1.0 / kPlacesOfWanderer, 1};
}

/// On each screen that may be in front while long work goes on.
std::array<Label*, 3> AllLabels() {
  return {&StartUp.lblProgress, &Main.lblProgress, &frmWarning.lblProgress};
}

}  // namespace

std::string ProgressText(const std::string& what, int done, int of) {
  const std::string text = what + " " + std::to_string(done);
  return of > 0 ? text + " OF " + std::to_string(of) : text;
}

void ShowProgress(const std::string& what, int done, int of) {
  for (Label* label : AllLabels()) label->Caption = ProgressText(what, done, of);
  StartUp.shpProgress.Where = FilledPart(done, of);
  StartUp.shpProgressGround.Visible = true;
}

void EndProgress() {
  for (Label* label : AllLabels()) label->Caption.clear();
  StartUp.shpProgressGround.Visible = false;
}

}  // namespace penlog
