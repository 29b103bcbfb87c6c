// The modem lines of a serial device by the system's calls.
#pragma once

#include <pthread.h>

#include <atomic>

#include "platform/modem_watch.h"

namespace penlog {

class TermiosLines : public ModemLineSource {
 public:
  /// `fd` stays the caller's, open longer than this.
  explicit TermiosLines(int fd);

  std::optional<ModemLines> Lines() override;
  std::optional<EdgeCounts> Counters() override;
  Outcome WaitChange() override;
  /// By a signal to the waiting thread whose handler does nothing.
  void Interrupt() override;

 private:
  int fd_;
  std::atomic<bool> waiting_ = false;
  std::atomic<pthread_t> waiter_{};
};

/// Sets DTR and RTS or clears them; a device without them is none the worse.
void SetDtrLine(int fd, bool on);
void SetRtsLine(int fd, bool on);

}  // namespace penlog
