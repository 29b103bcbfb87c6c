#include "conelink/plain_exchange.h"

#include "conelink/comm_tick.h"
#include "conelink/exchange.h"
#include "core/session.h"
#include "forms/start_up_form.h"

namespace penlog {

namespace {

constexpr char kNotDetected[] = "Cone not detected.  Plug in a cone and restart the program.";

/// The stock message that the load has stored, in the operator's language.
std::string NotDetectedMessage() {
  const std::string& stored = session.ConeNotDetectedMessage;
  return stored.empty() ? kNotDetected : stored;
}

std::string Exchange(std::string& command, const Dialect& dialect) {
  return PlainExchange(StartUp.ConeComm, StartUp.CommTick, command, dialect, NotDetectedMessage());
}

}  // namespace

std::string StartUp_CommStringCheck(const std::string& command) {
  std::string text = command;
  return Exchange(text, kStartUpDialect);
}

void StartUp_CommPause(int times) {
  CommPause(StartUp.CommTick, times);
}

void StartUp_CommBreak() {
  CommBreak(StartUp.ConeComm, StartUp.CommTick, true);
}

std::string ResistivityCommStringCheck(const std::string& command) {
  std::string text = command;
  return Exchange(text, kResistivityDialect);
}

std::string ZOLCommStringCheck(std::string& command) {
  return Exchange(command, kZOLDialect);
}

}  // namespace penlog
