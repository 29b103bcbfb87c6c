#include "conelink/exchange.h"

#include "conelink/comm_tick.h"
#include "conelink/cone_state.h"
#include "core/channels.h"
#include "platform/boxes.h"
#include "platform/serial_port.h"
#include "platform/yield.h"

namespace penlog {

const Dialect kStartUpDialect = {'\r', false, '\n', 21, 10, 2, 2, true};
const Dialect kSystemSetupDialect = {'\r', false, '\n', 21, 20, 2, 2, true};
const Dialect kTroubleshootDialect = {'\r', false, '\n', 31, 20, 1, 2, true};
const Dialect kResistivityDialect = {'\r', false, '\0', 31, 20, 1, 2, false};
const Dialect kZOLDialect = {'\x04', true, '\x04', 61, 20, 1, 1, true};

namespace {

void Send(SerialPort& port, std::string& command, const Dialect& dialect) {
  port.ClearOutBuffer();
  port.ClearInBuffer();
  port.ClearInBuffer();
  if (dialect.keeps_terminator) {
    command += dialect.terminator;
    port.Output(command);
  } else {
    port.Output(command + dialect.terminator);
  }
}

bool IsWhole(const std::string& reply, const Dialect& dialect) {
  return dialect.end_of_reply != '\0' && !reply.empty() && reply.back() == dialect.end_of_reply;
}

std::string CollectReply(SerialPort& port, std::int16_t& comm_tick, const Dialect& dialect) {
  const ReplyBound bound;
  std::string reply;
  comm_tick = 1;
  while (!IsWhole(reply, dialect)) {
    WaitYield("a reply of the cone");
    if (port.InBufferCount() > 0) {
      reply += port.Input();
      comm_tick = 1;
    }
    if (TicksOver(comm_tick, dialect.silence_limit) || bound.IsPassed(reply)) {
      cone.CommFailed = kTrue;
      return reply;
    }
  }
  return reply + port.Input();
}

}  // namespace

bool ReplyBound::IsPassed(std::string& reply) const {
  const bool too_long = reply.size() > kCharacters;
  if (too_long) reply.resize(kCharacters);
  return too_long || Now() >= end_;
}

std::string PlainExchange(SerialPort& port, std::int16_t& comm_tick, std::string& command,
                          const Dialect& dialect, const std::string& message) {
  std::string reply;
  int attempts = 0;
  const bool may_repeat = !command.empty() && command[0] == 'C';
  do {
    ++attempts;
    cone.CommFailed = kFalse;
    Send(port, command, dialect);
    reply = CollectReply(port, comm_tick, dialect);
    if (reply.size() > dialect.strip_above) reply.resize(reply.size() - dialect.strip_count);
  } while (reply.empty() && attempts < dialect.attempt_limit && may_repeat);
  comm_tick = 0;
  if (attempts == dialect.attempt_limit && dialect.ends_program) {
    MsgBox(message);
    EndProgram();
  }
  return reply;
}

}  // namespace penlog
