#include "platform/posix/pty_wire.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/clock.h"
#include "platform/posix/termios_settings.h"

namespace penlog {

namespace {

// A program sets the line up after it has opened it: its settings are read a little later.
constexpr Micros kSettingTime = 20 * kMillisecond;

FileHandle OpenMaster(const std::string& link) {
  FileHandle master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!master || ::grantpt(master.Get()) != 0 || ::unlockpt(master.Get()) != 0) {
    FailWithErrno(link + ": pseudo terminal");
  }
  return master;
}

std::string TerminalName(int master) {
  std::array<char, 128> name{};
  if (::ptsname_r(master, name.data(), name.size()) != 0) FailWithErrno("ptsname");
  return name.data();
}

/// Sets the terminal raw before anyone uses it: its echo would answer the instrument. Opening and
/// closing it once also lets the master see from then on whether it is open.
void MakeRaw(const std::string& terminal) {
  const FileHandle slave(::open(terminal.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!slave) FailWithErrno(terminal);
  ApplyPortSettings(slave.Get(), terminal, PortSettings{});
}

}  // namespace

PtyWire::PtyWire(IoWatcher& io, std::string link) : io_(io), link_(std::move(link)) {
  PlugIn();
}

PtyWire::~PtyWire() {
  PlugOut();
  DropCalls(this);
}

void PtyWire::SetLink(std::string link) {
  link_ = std::move(link);
}

void PtyWire::SetPresent(bool present) {
  if (present == Present()) return;
  if (present) {
    PlugIn();
  } else {
    PlugOut();
  }
}

void PtyWire::PlugIn() {
  FileHandle master = OpenMaster(link_);
  const std::string terminal = TerminalName(master.Get());
  MakeRaw(terminal);
  MakeLink(terminal);
  master_ = std::move(master);
  read_watch_ = io_.Watch(master_.Get(), [this] { Readable(); });
  io_.Pause(read_watch_, true);  // nobody has it open: a hang-up that would never end
  write_watch_ = io_.WatchWritable(master_.Get(), [this] { Writable(); });
  poll_ = io_.OnCollect([this] { Collect(); });
}

// Under the final name in one step, so that the port never stands half made.
void PtyWire::MakeLink(const std::string& terminal) {
  const std::string beside = link_ + ".new";
  ::unlink(beside.c_str());
  if (::symlink(terminal.c_str(), beside.c_str()) != 0 ||
      ::rename(beside.c_str(), link_.c_str()) != 0) {
    FailWithErrno(link_);
  }
  made_link_ = link_;
}

void PtyWire::PlugOut() {
  if (!master_) return;
  ::unlink(made_link_.c_str());
  for (int* watch : {&read_watch_, &write_watch_, &poll_}) io_.Unwatch(std::exchange(*watch, 0));
  master_.Reset();
  TellClosed();
}

bool PtyWire::HungUp() const {
  pollfd state{master_.Get(), 0, 0};
  return ::poll(&state, 1, 0) > 0 && (state.revents & POLLHUP) != 0;
}

void PtyWire::Collect() {
  if (!in_use_ && !HungUp()) {
    in_use_ = true;
    in_use_since_ = Now();
    io_.Pause(read_watch_, false);
  }
  if (in_use_ && !told_ && Now() - in_use_since_ >= kSettingTime) TellOpened();
}

void PtyWire::Readable() {
  std::array<char, 4096> bytes;
  const ssize_t count = Retried([&] { return ::read(master_.Get(), bytes.data(), bytes.size()); });
  if (count > 0) {
    TellOpened();
    PostCall(Now(), this,
             [this, text = std::string(bytes.data(), static_cast<std::size_t>(count))] {
               if (OnBytes) OnBytes(text);
             });
  } else if (HungUp()) {
    io_.Pause(read_watch_, true);
    TellClosed();
  }
}

void PtyWire::TellOpened() {
  if (std::exchange(told_, true)) return;
  PostCall(Now(), this, [this, settings = ReadPortSettings(master_.Get())] {
    if (OnOpened) OnOpened(settings);
  });
}

void PtyWire::TellClosed() {
  in_use_ = false;
  unsent_.clear();
  if (!std::exchange(told_, false)) return;
  PostCall(Now(), this, [this] {
    if (OnClosed) OnClosed();
  });
}

void PtyWire::Send(std::string_view bytes) {
  if (!in_use_ || !master_) return;
  unsent_ += bytes.substr(0, kUnsentLimit - std::min(kUnsentLimit, unsent_.size()));
  Writable();
}

void PtyWire::Writable() {
  while (!unsent_.empty()) {
    const ssize_t count =
        Retried([&] { return ::write(master_.Get(), unsent_.data(), unsent_.size()); });
    if (count <= 0) break;  // full: the watch goes on; hung up: the reader finds out
    unsent_.erase(0, static_cast<std::size_t>(count));
  }
  io_.Pause(write_watch_, unsent_.empty());
}

}  // namespace penlog
