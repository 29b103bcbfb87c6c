#include "conelink/other_cone.h"

#include "conelink/cone_state.h"
#include "forms/main_form.h"
#include "platform/boxes.h"
#include "platform/texts.h"

namespace penlog {

void NoteKnownCone() {
  known_cone = {cone.ConeId, ""};
}

std::string RecordedConeNumber() {
  return known_cone.Number.empty() ? cone.ConeId : known_cone.Number;
}

bool IsOtherCone() {
  return !known_cone.Answered.empty();
}

bool IsOtherThanKnown(const std::string& number) {
  const std::string& last = known_cone.Answered.empty() ? known_cone.Number : known_cone.Answered;
  return !known_cone.Number.empty() && !Trim(number).empty() && Trim(number) != Trim(last);
}

void TellOtherCone() {
  if (!IsOtherThanKnown(cone.ConeId)) return;
  const std::string number(Trim(cone.ConeId));
  const std::string known(Trim(known_cone.Number));
  Main.lblCommStatus.Caption = "Cone # " + number + " Found";
  if (number == known) {
    known_cone.Answered.clear();
    PostBox("CONE #" + known + " IS BACK.");
    return;
  }
  known_cone.Answered = number;
  if (Main.cmdStart.Caption == "START") {
    PostBox("ANOTHER CONE ANSWERS: #" + number + " IN PLACE OF #" + known + ".  CONNECT #" + known +
            " AGAIN, OR EXIT AND START WITH THE OTHER ONE.");
    return;
  }
  PostBox("ANOTHER CONE ANSWERS: #" + number + " IN PLACE OF #" + known +
          ".  ROWS FROM HERE ON HAVE THE ZEROS AND FACTORS OF #" + known +
          " AND ARE WRONG UNTIL IT IS BACK.  CONNECT IT AGAIN, OR SUSPEND.");
}

}  // namespace penlog
