// Descriptors of the operating system beside the windows' event loop.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <map>
#include <memory>

#include "platform/io_watcher.h"

namespace penlog {

/// The descriptors are looked at by one poll() a collect, so that the callbacks run there alone;
/// notifiers of the event loop do no more than end its sleep.
class QtIo : public IoWatcher {
 public:
  QtIo();
  ~QtIo() override;
  QtIo(const QtIo&) = delete;
  QtIo& operator=(const QtIo&) = delete;

  int Watch(int fd, std::function<void()> readable) override;
  int WatchWritable(int fd, std::function<void()> writable) override;
  void Pause(int id, bool paused) override;
  int OnCollect(std::function<void()> poll) override;
  void Unwatch(int id) override;
  void WakeUp() override;

  /// The collect's part: the polls first, then each descriptor that is ready, once.
  void CollectPolls();
  void CollectDescriptors();
  /// Whether a sleep must stay short because of a poll.
  bool HasPolls() const { return !polls_.empty(); }

 private:
  struct Watched {
    int fd;
    bool writable;
    bool paused;
    std::function<void()> call;
    std::unique_ptr<QSocketNotifier> notifier;
  };

  int Add(int fd, bool writable, std::function<void()> call);
  void CallIfWatched(int id);

  std::map<int, Watched> watched_;
  std::map<int, std::function<void()>> polls_;
  int last_id_ = 0;
  int wake_fd_;
  QSocketNotifier wake_;
};

}  // namespace penlog
