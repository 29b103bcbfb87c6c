#include "conelink/main_exchange.h"

#include <limits>

#include "conelink/comm_tick.h"
#include "conelink/cone_state.h"
#include "conelink/exchange.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "platform/numbers.h"
#include "platform/yield.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

constexpr int kSilenceLimit = 11;  // ticks
constexpr int kTailTicks = 2;      // for characters behind the line end
constexpr int kScanTailTicks = 3;
constexpr int kResendAbove = 5;    // ticks without a block
constexpr int kMostSendings = 20;  // of a `B`
constexpr int kBlockOnTheWire = 128;
constexpr std::size_t kBlockTaken = 126;
constexpr std::int16_t kSeismicWait = 9;

/// A port that has vanished and come back between two looks is open but dead.
void EnsureConePortOpen() {
  if (Main.ConeComm.PortOpen() && !Main.ConeComm.Gone()) return;
  Trapped([] {
    OpenConePort(settings.ConeSerialPort);
    if (TruckSharesConePort()) NoteStepsMayBeMissing();
  });
}

void Prepare() {
  cone.CommFailed = kFalse;
  Main.ConeComm.SetInputMode(InputModes::Text);
  Main.ConeComm.ClearInBuffer();
  Main.ConeComm.ClearOutBuffer();
  Main.CommTick = 1;
}

void Send(const std::string& command) {
  Main.ConeComm.Output(command + '\r');
}

bool EndsLine(const std::string& reply) {
  return !reply.empty() && (reply.back() == '\n' || reply.back() == '\r');
}

void CountTimeout() {
  cone.CommFailed = kTrue;
  if (cone.CommTimeoutCount < std::numeric_limits<std::int16_t>::max()) ++cone.CommTimeoutCount;
  Main.lblCommError.Caption = "COMM ERR: timeout" + LeadingBlankNumber(cone.CommTimeoutCount);
}

/// Waits until `CommTick`, set to 1, has reached `ticks`, and takes what came meanwhile.
std::string Tail(int ticks) {
  Main.CommTick = 1;
  while (!TicksOver(Main.CommTick, ticks)) WaitYield("the end of a reply of the cone");
  return Main.ConeComm.Input();
}

std::string CollectText(int tail_ticks) {
  const ReplyBound bound;
  std::string reply;
  while (!EndsLine(reply)) {
    WaitYield("a reply of the cone");
    if (Main.ConeComm.InBufferCount() > 0) {
      reply += Main.ConeComm.Input();
      Main.CommTick = 1;
    }
    if (TicksOver(Main.CommTick, kSilenceLimit) || bound.IsPassed(reply)) {
      CountTimeout();
      return reply;
    }
  }
  return reply + Tail(tail_ticks);
}

/// What the block leaves in the buffer is cleared with the next command.
void TakeBlock() {
  Main.ConeComm.SetInputLen(1);
  for (std::size_t i = 1; i <= kBlockTaken; ++i) {
    cone.SeismicBlock[i] = static_cast<std::uint8_t>(Main.ConeComm.Input()[0]);
  }
  Main.ConeComm.SetInputLen(0);
  Main.CommTick = 1;
}

/// One pass of the wait for a block: until a tick or a byte has come.
void WaitForTickOrByte() {
  const int ticks = Main.CommTick;
  const int bytes = Main.ConeComm.InBufferCount();
  while (Main.CommTick == ticks && Main.ConeComm.InBufferCount() == bytes) {
    WaitYield("a seismic block of the cone");
  }
}

/// The tick count goes on through the resends: once it is above its limit, each pass sends again.
std::string FetchBlock() {
  Main.ConeComm.SetInputMode(InputModes::Binary);
  Send("B");
  int sendings = 1;
  while (sendings <= kMostSendings && Main.CommTick > 0) {
    WaitForTickOrByte();
    if (Main.ConeComm.InBufferCount() >= kBlockOnTheWire) {
      TakeBlock();
      return "SEISDATA";
    }
    if (Main.CommTick <= kResendAbove) continue;
    Send("B");
    ++sendings;
  }
  cone.CommFailed = kTrue;
  return {};
}

/// The loss takes the buttons of an open stop dialog, once: the operator opens it anew and stops or
/// suspends the sounding, however long the cone stays away.
void LoseLink() {
  const bool was_lost = cone.ConeLinkUp == kFalse;
  cone.ConeLinkUp = kFalse;
  ShowModulesLost();
  RaiseWarning();
  if (was_lost) return;
  Main.cmdWarningOK1.Visible = false;
  Main.cmdWarningOK2.Visible = false;
  Main.cmdWarningCancel.Visible = false;
}

std::string CleanUp(const std::string& command, std::string reply) {
  if (command == "B" || reply.size() < 2) {
    if (command == "D" && reply.empty()) LoseReading();
    return reply;
  }
  while (EndsLine(reply)) reply.pop_back();
  if (command == "D") reply += ' ';
  return reply;
}

}  // namespace

void LoseReading() {
  cone.ConeLinkUp = kFalse;
  ShowModulesLost();
  if (cone.WarningPinned == kFalse && cone.WarningShown == kFalse) RaiseWarning();
}

std::string Main_CommStringCheck(const std::string& command) {
  SupervisePorts();
  if (cone.ConePortLost == kTrue) return {};
  EnsureConePortOpen();
  LowerWarningIfClear();
  Prepare();
  std::string reply;
  if (command == "B") {
    reply = FetchBlock();
  } else {
    Send(command);
    reply = CollectText(kTailTicks);
  }
  const bool silence_expected = command == "Y" || sounding.ConsoleMode == kSeismicWait;
  if (cone.CommFailed == kTrue && !silence_expected) LoseLink();
  reply = CleanUp(command, std::move(reply));
  Main.CommTick = 0;
  return reply;
}

std::string ReconnectCommStringCheck(const std::string& command) {
  Prepare();
  Send(command);
  std::string reply = CollectText(kScanTailTicks);
  Main.CommTick = 0;
  return reply;
}

void Main_CommPause(int times) {
  CommPause(Main.CommTick, times);
}

void CountReplyFields(const std::string& reply) {
  int fields = 0;
  for (std::size_t i = 0; i + 1 < reply.size(); ++i) {
    const bool starts_field = static_cast<unsigned char>(reply[i + 1]) < 64;
    if (reply[i] == ' ' && starts_field) ++fields;
  }
  if (fields == cone.ChannelCount) return;
  cone.CommFailed = kTrue;
  Main.lblCommError.Caption = "COMM ERR: nchans";
}

}  // namespace penlog
