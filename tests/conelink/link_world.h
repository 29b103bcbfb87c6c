// The surroundings of a link test: state cleared, the timers of the start screen and of the console
// counting their ticks, each on a multiple of 55 ms of virtual time.
#pragma once

#include <string>

#include "conelink/comm_tick.h"
#include "conelink/cone_state.h"
#include "conelink/other_cone.h"
#include "conelink/scripted_cone.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"
#include "sounding/sounding_state.h"
#include "support/world.h"

namespace penlog {

constexpr Micros kTick = 55 * kMillisecond;

struct LinkWorld : World {
  LinkWorld() {
    ClearState();
    StartUp.Timer1.OnTick = [] { CountCommTick(StartUp.CommTick); };
    Main.Timer1.OnTick = [] { CountCommTick(Main.CommTick); };
    StartUp.Timer1.Start();
    Main.Timer1.Start();
  }
  ~LinkWorld() {
    StartUp.Released();
    Main.Released();
    frmWarning.Released();
    StartUp.Timer1.OnTick = {};
    Main.Timer1.OnTick = {};
    ClearState();
  }

  static void ClearState() {
    channels = {};
    cone = {};
    known_cone = {};
    settings = {};
    session = {};
    sounding = {};
  }

  /// Opens a port of a screen on COM `number`.
  static void Open(SerialPort& port, int number) {
    port.SetCommPort(number);
    port.SetSettings("19200,N,8,1");
    port.Open();
  }

  /// As the console's load leaves the screens: the status window visible behind it.
  static void ShowConsole() {
    Show(Main);
    Show(frmWarning);
    SendBehind(frmWarning);
  }
  static bool WarningIsOnTop() {
    return !ShownForms().empty() && ShownForms().back() == &frmWarning;
  }

  /// Moves time to `after` behind the next tick.
  static void GoToTick(Micros after = 0) {
    const Micros past = Now() % kTick;
    RunFor(kTick - past + after);
  }

  /// Answers the next box that opens with OK, `delay` from now at the earliest; keeps its text.
  void AnswerNextBox(std::string& text, BoxAnswer answer = BoxAnswer::Ok) {
    PostCall(Now() + kMillisecond, this, [this, &text, answer] { TryAnswer(text, answer); });
  }

 private:
  void TryAnswer(std::string& text, BoxAnswer answer) {
    if (const MessageBox* box = FrontBox()) {
      text = box->text;
      AnswerBox(box->id, answer);
    } else {
      AnswerNextBox(text, answer);
    }
  }
};

}  // namespace penlog
