#include "conelink/other_cone.h"

#include "conelink/cone_state.h"
#include "forms/main_form.h"
#include "platform/boxes.h"
#include "platform/texts.h"

namespace penlog {

void NoteKnownCone() {
  known_cone = {cone.ConeId, ""};
}

void TellOtherCone() {
  const std::string number(Trim(cone.ConeId));
  const std::string known(Trim(known_cone.Number));
  if (known.empty() || number == (known_cone.Answered.empty() ? known : known_cone.Answered))
    return;
  Main.lblCommStatus.Caption = "Cone # " + number + " Found";
  if (number == known) {
    known_cone.Answered.clear();
    PostBox("CONE #" + known + " IS BACK.");
    return;
  }
  known_cone.Answered = number;
  PostBox("ANOTHER CONE ANSWERS: #" + number + " IN PLACE OF #" + known +
          ".  ROWS FROM HERE ON HAVE THE ZEROS AND FACTORS OF #" + known +
          " AND ARE WRONG UNTIL IT IS BACK.  CONNECT IT AGAIN, OR SUSPEND.");
}

}  // namespace penlog
