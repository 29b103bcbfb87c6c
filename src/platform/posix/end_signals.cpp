#include "platform/posix/end_signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>

#include "platform/runtime_fault.h"
#include "platform/yield.h"

namespace penlog {

namespace {

int signal_fd = -1;

// In a signal handler nothing else is safe: the yield does the rest.
void WriteSignal(int) {
  const int before = errno;
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto put = write(signal_fd, &one, sizeof one);
  errno = before;
}

}  // namespace

EndSignals::EndSignals(IoWatcher& io) : io_(io) {
  signal_fd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (signal_fd < 0) throw RuntimeFault("The system has no descriptor left for signals");
  watch_ = io_.Watch(signal_fd, [] {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto got = read(signal_fd, &count, sizeof count);
    RequestEnd();
  });
  struct sigaction action {};
  action.sa_handler = WriteSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < 3; ++i) sigaction(kSignals[i], &action, &before_[i]);
}

EndSignals::~EndSignals() {
  for (std::size_t i = 0; i < 3; ++i) sigaction(kSignals[i], &before_[i], nullptr);
  io_.Unwatch(watch_);
  close(signal_fd);
  signal_fd = -1;
}

}  // namespace penlog
