// SIGTERM, SIGINT and SIGHUP as a request for the orderly end.
#pragma once

#include <csignal>

#include "platform/io_watcher.h"

namespace penlog {

/// While it lives such a signal makes the next yield throw the end. One at a time.
class EndSignals {
 public:
  explicit EndSignals(IoWatcher& io);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  static constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

  IoWatcher& io_;
  int watch_ = 0;
  struct sigaction before_[3];
};

}  // namespace penlog
