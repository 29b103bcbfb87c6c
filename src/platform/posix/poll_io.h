// The descriptor watcher on plain poll(): for a process without an event loop of its own.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/event_queue.h"
#include "platform/io_watcher.h"
#include "platform/posix/file_handle.h"

struct pollfd;

namespace penlog {

class PollIo : public IoWatcher {
 public:
  PollIo();
  ~PollIo() override;

  int Watch(int fd, std::function<void()> readable) override;
  int WatchWritable(int fd, std::function<void()> writable) override;
  void Pause(int id, bool paused) override;
  int OnCollect(std::function<void()> poll) override;
  void Unwatch(int id) override;
  void WakeUp() override;

  /// Runs the polls, then the callbacks of all descriptors that are ready; never waits.
  void Collect();
  /// Waits until a descriptor is ready, `WakeUp` or a signal comes, or `time` has passed; without
  /// a time only the former. Calls nothing.
  void Sleep(std::optional<Micros> time);

 private:
  struct Entry {
    int fd = -1;  // -1: a poll
    short events = 0;
    bool paused = false;
    std::function<void()> call;
  };
  int Add(Entry entry);
  void Call(int id);
  void RunPolls();
  void TakeWakeUps();
  bool HasPolls() const;
  /// The descriptors that are not paused, and their ids; the first is the wake-up's, with id 0.
  void Gather(std::vector<pollfd>& fds, std::vector<int>& ids) const;

  std::map<int, Entry> entries_;
  int last_id_ = 0;
  FileHandle wake_;  // an eventfd
};

}  // namespace penlog
