#include "platform/io_watcher.h"

namespace penlog {

namespace {
IoWatcher* io_in_use = nullptr;
}

IoWatcher* TheIo() {
  return io_in_use;
}

void UseIo(IoWatcher* io) {
  io_in_use = io;
}

}  // namespace penlog
