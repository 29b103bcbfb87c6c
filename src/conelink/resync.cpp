#include "conelink/resync.h"

#include <string>

#include "conelink/cone_state.h"
#include "conelink/main_exchange.h"
#include "conelink/other_cone.h"
#include "conelink/resync_state.h"
#include "conelink/unit_memory.h"
#include "core/channels.h"
#include "forms/main_form.h"
#include "platform/yield.h"
#include "sounding/held_rows.h"
#include "sounding/port_requests.h"
#include "sounding/sounding_state.h"
#include "sounding/tell_once.h"

namespace penlog {

namespace {

constexpr std::size_t kComparedCharacters = 15;
constexpr std::size_t kShortestReading = 6;

std::string PauseAndSend(const std::string& command) {
  Main_CommPause();
  return Main_CommStringCheck(command);
}

bool Wake() {
  PauseAndSend("Y");
  PauseAndSend("X");
  return !PauseAndSend("X").empty();
}

/// A number that got lost on the wire, or half of it, must not blank the one that names the cone's
/// family; one that is new must be given twice.
void AskForNumber() {
  const auto ask = [] {
    const std::string reply = PauseAndSend("C 3 7");
    return cone.CommFailed == kFalse ? MemoryText(reply) : std::string();
  };
  const std::string number = ask();
  if (number.empty()) return;
  if (IsOtherThanKnown(number) && ask() != number) return;
  cone.ConeId = number;
  TellOtherCone();
}

void SelectChannels() {
  AskForNumber();
  cone.ConeLinkUp = kTrue;
  Main_CommPause(3);
  Main_CommStringCheck(cone.ChannelSelectCommand);
  Main_CommPause(2);
  Main_CommStringCheck(cone.ChannelSelectCommand);
  Main_CommPause(2);
}

bool RepeatsItself() {
  const std::string first = Main_CommStringCheck("D");
  Main_CommPause(2);
  const std::string second = Main_CommStringCheck("D");
  return second.size() >= kShortestReading &&
         first.substr(0, kComparedCharacters) == second.substr(0, kComparedCharacters);
}

struct UnderWay {
  UnderWay() { resync.UnderWay = kTrue; }
  ~UnderWay() { resync.UnderWay = kFalse; }
  UnderWay(const UnderWay&) = delete;
  UnderWay& operator=(const UnderWay&) = delete;
};

}  // namespace

void ResyncConeData() {
  const UnderWay under_way;
  sounding.ReadingsFresh = kFalse;  // those of before
  Main.ConeComm.SetInputMode(InputModes::Text);
  bool answered = false;
  for (;;) {
    if (Wake()) {
      SelectChannels();
      // Once: a cone that repeats itself for hours must not take each question to the operator.
      if (!answered) Main.frmLocalWarning.Visible = false;
      answered = true;
    }
    if (!RepeatsItself()) break;
    Yield();
    // No pass of the main loop comes while it does so.
    Step(ServePortRequests);
    RetryHeld();
    Main.lblCommError.Caption = "COMM ERR: duplicate";
  }
  sounding.QuitSettleCount = 0;
}

}  // namespace penlog
