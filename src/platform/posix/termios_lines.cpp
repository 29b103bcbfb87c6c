#include "platform/posix/termios_lines.h"

#include <linux/serial.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <csignal>

#include "platform/posix/file_handle.h"

namespace penlog {

namespace {

int NudgeSignal() {
  return SIGRTMIN + 3;
}

void DoNothing(int) {}

/// Without SA_RESTART: the call that waits must end.
void InstallNudgeHandler() {
  struct sigaction action {};
  action.sa_handler = DoNothing;
  ::sigaction(NudgeSignal(), &action, nullptr);
}

/// All other signals are for the thread that yields.
void TakeNudgesOnly() {
  sigset_t others;
  ::sigfillset(&others);
  ::sigdelset(&others, NudgeSignal());
  ::pthread_sigmask(SIG_SETMASK, &others, nullptr);
}

void SetOutputLine(int fd, int line, bool on) {
  ::ioctl(fd, on ? TIOCMBIS : TIOCMBIC, &line);
}

}  // namespace

TermiosLines::TermiosLines(int fd) : fd_(fd) {
  InstallNudgeHandler();
}

std::optional<ModemLines> TermiosLines::Lines() {
  int bits = 0;
  if (Retried([&] { return ::ioctl(fd_, TIOCMGET, &bits); }) != 0) return std::nullopt;
  return ModemLines{(bits & TIOCM_CTS) != 0, (bits & TIOCM_DSR) != 0, (bits & TIOCM_CAR) != 0};
}

std::optional<EdgeCounts> TermiosLines::Counters() {
  serial_icounter_struct counts{};
  if (Retried([&] { return ::ioctl(fd_, TIOCGICOUNT, &counts); }) != 0) return std::nullopt;
  return EdgeCounts{static_cast<std::uint32_t>(counts.cts), static_cast<std::uint32_t>(counts.dsr),
                    static_cast<std::uint32_t>(counts.dcd)};
}

ModemLineSource::Outcome TermiosLines::WaitChange() {
  if (!waiting_) {
    TakeNudgesOnly();
    waiter_ = ::pthread_self();
    waiting_ = true;
  }
  if (::ioctl(fd_, TIOCMIWAIT, TIOCM_CTS | TIOCM_DSR | TIOCM_CAR) == 0) return Outcome::Woken;
  switch (errno) {
    case EINTR:
      return Outcome::Woken;
    case ENOTTY:
    case EINVAL:
    case ENOSYS:
    case EOPNOTSUPP:
      return Outcome::Unsupported;
    default:
      return Outcome::Gone;
  }
}

void TermiosLines::Interrupt() {
  if (waiting_) ::pthread_kill(waiter_, NudgeSignal());
}

void SetDtrLine(int fd, bool on) {
  SetOutputLine(fd, TIOCM_DTR, on);
}

void SetRtsLine(int fd, bool on) {
  SetOutputLine(fd, TIOCM_RTS, on);
}

}  // namespace penlog
