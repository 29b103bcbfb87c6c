#include "platform/posix/poll_io.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ctime>

namespace penlog {

namespace {

timespec ToTimespec(Micros time) {
  const Micros rest = std::max<Micros>(time, 0);
  return {static_cast<std::time_t>(rest / kSecond), static_cast<long>(rest % kSecond * 1000)};
}

}  // namespace

PollIo::PollIo() : wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (!wake_) FailWithErrno("eventfd");
}

PollIo::~PollIo() = default;

int PollIo::Add(Entry entry) {
  entries_.emplace(++last_id_, std::move(entry));
  return last_id_;
}

int PollIo::Watch(int fd, std::function<void()> readable) {
  return Add({fd, POLLIN, false, std::move(readable)});
}

int PollIo::WatchWritable(int fd, std::function<void()> writable) {
  return Add({fd, POLLOUT, true, std::move(writable)});
}

int PollIo::OnCollect(std::function<void()> poll) {
  return Add({-1, 0, false, std::move(poll)});
}

void PollIo::Pause(int id, bool paused) {
  const auto found = entries_.find(id);
  if (found != entries_.end()) found->second.paused = paused;
}

void PollIo::Unwatch(int id) {
  entries_.erase(id);
}

void PollIo::WakeUp() {
  const std::uint64_t one = 1;
  const int error = errno;  // a signal handler must leave it as it was
  // Full only when the sleeper was woken already.
  [[maybe_unused]] const ssize_t count = ::write(wake_.Get(), &one, sizeof one);
  errno = error;
}

void PollIo::TakeWakeUps() {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t got = ::read(wake_.Get(), &count, sizeof count);
}

void PollIo::Gather(std::vector<pollfd>& fds, std::vector<int>& ids) const {
  fds.push_back({wake_.Get(), POLLIN, 0});
  ids.push_back(0);
  for (const auto& [id, entry] : entries_) {
    if (entry.fd < 0 || entry.paused) continue;
    fds.push_back({entry.fd, entry.events, 0});
    ids.push_back(id);
  }
}

// A callback may end any watch, its own too: each is looked up again and called as a copy.
void PollIo::Call(int id) {
  const auto found = entries_.find(id);
  if (found == entries_.end() || found->second.paused) return;
  const auto call = found->second.call;
  call();
}

void PollIo::RunPolls() {
  std::vector<int> polls;
  for (const auto& [id, entry] : entries_) {
    if (entry.fd < 0) polls.push_back(id);
  }
  for (const int id : polls) Call(id);
}

bool PollIo::HasPolls() const {
  return std::any_of(entries_.begin(), entries_.end(),
                     [](const auto& entry) { return entry.second.fd < 0; });
}

void PollIo::Collect() {
  TakeWakeUps();  // before the polls: what comes after they looked wakes again
  RunPolls();
  std::vector<pollfd> fds;
  std::vector<int> ids;
  Gather(fds, ids);
  if (::poll(fds.data(), fds.size(), 0) <= 0) return;
  for (std::size_t i = 1; i < fds.size(); ++i) {
    if (fds[i].revents != 0) Call(ids[i]);
  }
}

void PollIo::Sleep(std::optional<Micros> time) {
  constexpr Micros kLongest = kLongestSleepMs * kMillisecond;
  if (HasPolls()) time = std::min(time.value_or(kLongest), kLongest);
  std::vector<pollfd> fds;
  std::vector<int> ids;
  Gather(fds, ids);
  const timespec limit = ToTimespec(time.value_or(0));
  // Failing means that a signal came: as good a reason to wake up as any.
  ::ppoll(fds.data(), fds.size(), time ? &limit : nullptr, nullptr);
}

}  // namespace penlog
