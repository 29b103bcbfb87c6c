#include "platform/qt/qt_io.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace penlog {

namespace {

int NewEventDescriptor() {
  const int fd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (fd >= 0) return fd;
  std::perror("penlog: eventfd");
  std::abort();
}

}  // namespace

QtIo::QtIo() : wake_fd_(NewEventDescriptor()), wake_(wake_fd_, QSocketNotifier::Read) {}

QtIo::~QtIo() {
  watched_.clear();
  wake_.setEnabled(false);
  close(wake_fd_);
}

int QtIo::Add(int fd, bool writable, std::function<void()> call) {
  const int id = ++last_id_;
  const auto type = writable ? QSocketNotifier::Write : QSocketNotifier::Read;
  auto notifier = std::make_unique<QSocketNotifier>(fd, type);
  notifier->setEnabled(!writable);
  watched_.emplace(id, Watched{fd, writable, writable, std::move(call), std::move(notifier)});
  return id;
}

int QtIo::Watch(int fd, std::function<void()> readable) {
  return Add(fd, false, std::move(readable));
}

int QtIo::WatchWritable(int fd, std::function<void()> writable) {
  return Add(fd, true, std::move(writable));
}

void QtIo::Pause(int id, bool paused) {
  const auto found = watched_.find(id);
  if (found == watched_.end() || found->second.paused == paused) return;
  found->second.paused = paused;
  found->second.notifier->setEnabled(!paused);
}

int QtIo::OnCollect(std::function<void()> poll) {
  polls_.emplace(++last_id_, std::move(poll));
  return last_id_;
}

void QtIo::Unwatch(int id) {
  watched_.erase(id);
  polls_.erase(id);
}

void QtIo::WakeUp() {
  const std::uint64_t one = 1;
  const int before = errno;  // a signal handler must leave it as it was
  [[maybe_unused]] const auto put = write(wake_fd_, &one, sizeof one);
  errno = before;
}

// Wake-ups are taken before the polls look: what comes after they looked wakes again.
void QtIo::CollectPolls() {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto got = read(wake_fd_, &count, sizeof count);
  std::vector<int> ids;
  for (const auto& poll : polls_) ids.push_back(poll.first);
  for (const int id : ids) {
    const auto found = polls_.find(id);
    if (found == polls_.end()) continue;
    const auto poll = found->second;  // a poll may end itself
    poll();
  }
}

void QtIo::CollectDescriptors() {
  std::vector<int> ids;
  std::vector<pollfd> fds;
  for (const auto& [id, watched] : watched_) {
    if (watched.paused) continue;
    ids.push_back(id);
    fds.push_back({watched.fd, static_cast<short>(watched.writable ? POLLOUT : POLLIN), 0});
  }
  if (::poll(fds.data(), fds.size(), 0) <= 0) return;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    if (fds[i].revents != 0) CallIfWatched(ids[i]);
  }
}

void QtIo::CallIfWatched(int id) {
  const auto found = watched_.find(id);
  if (found == watched_.end() || found->second.paused) return;
  const auto call = found->second.call;  // a callback may end its own watch
  call();
}

}  // namespace penlog
