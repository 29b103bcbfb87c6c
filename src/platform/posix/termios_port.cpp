#include "platform/posix/termios_port.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/clock.h"
#include "platform/posix/termios_lines.h"
#include "platform/posix/termios_settings.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

IoWatcher& IoInUse() {
  if (TheIo() == nullptr) throw RuntimeFault("Local serial ports need real time");
  return *TheIo();
}

FileHandle OpenDevice(const std::string& path) {
  constexpr int kFlags = O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC;
  FileHandle device(Retried([&] { return ::open(path.c_str(), kFlags); }));
  if (!device) {
    if (errno == EBUSY) throw RuntimeFault(path + ": in use by another program");
    FailWithErrno(path);
  }
  if (::isatty(device.Get()) == 0) throw RuntimeFault(path + ": not a serial port");
  return device;
}

/// A lock on the device keeps out those who ask for it, this program's other ports too; exclusive
/// mode keeps out the rest, but for the superuser. Not on a pseudo terminal: there the mode would
/// outlive a program that crashed.
void TakeForThisProgram(int fd, const std::string& path) {
  if (Retried([&] { return ::flock(fd, LOCK_EX | LOCK_NB); }) != 0 && errno == EWOULDBLOCK) {
    throw RuntimeFault(path + ": in use by another program");
  }
  if (!IsPseudoTerminal(fd)) ::ioctl(fd, TIOCEXCL);
}

void LowerOutputs(int fd) {
  SetDtrLine(fd, false);
  SetRtsLine(fd, false);
}

/// Nothing more will come or go, now or ever: neither "try again" nor an interruption.
bool IsLasting(int error) {
  return error != EAGAIN && error != EWOULDBLOCK && error != EINTR;
}

}  // namespace

TermiosPort::TermiosPort(const std::string& path, const PortSettings& settings, PortSink& sink)
    : path_(path), sink_(sink), io_(IoInUse()), device_(OpenDevice(path)) {
  const int fd = device_.Get();
  TakeForThisProgram(fd, path_);
  LowerOutputs(fd);  // the system raised both at the opening
  ApplyPortSettings(fd, path_, settings);
  LowerOutputs(fd);  // some drivers raise them again with the speed
  ::tcflush(fd, TCIOFLUSH);
  StartWatching();
}

void TermiosPort::StartWatching() {
  auto source = std::make_unique<TermiosLines>(device_.Get());
  if (const auto lines = source->Lines()) {
    lines_ = *lines;
    modem_watch_ = std::make_unique<ModemWatch>(std::move(source), lines_, sink_,
                                                [&io = io_] { io.WakeUp(); });
  }
  read_watch_ = io_.Watch(device_.Get(), [this] { Readable(); });
  write_watch_ = io_.WatchWritable(device_.Get(), [this] { SendWaiting(); });
  collect_poll_ = io_.OnCollect([this] { Collect(); });
}

TermiosPort::~TermiosPort() {
  if (device_) {
    SendWaiting();
    if (device_) LowerOutputs(device_.Get());
  }
  CloseDevice();
}

void TermiosPort::CloseDevice() {
  for (int* watch : {&read_watch_, &write_watch_, &collect_poll_}) {
    io_.Unwatch(*watch);
    *watch = 0;
  }
  modem_watch_.reset();
  if (!device_) return;
  if (break_) ::ioctl(device_.Get(), TIOCCBRK);
  if (!IsPseudoTerminal(device_.Get())) ::ioctl(device_.Get(), TIOCNXCL);
  device_.Reset();
}

void TermiosPort::Vanish() {
  CloseDevice();
  output_.clear();
  sink_.Vanished();
}

void TermiosPort::Readable() {
  if (TheQueue().Backlog() > kBacklogLimit) {
    reading_paused_ = true;
    io_.Pause(read_watch_, true);
    return;
  }
  std::array<char, kReadSize> bytes;
  const ssize_t count = Retried([&] { return ::read(device_.Get(), bytes.data(), bytes.size()); });
  if (count > 0) {
    sink_.Received(std::string(bytes.data(), static_cast<std::size_t>(count)));
  } else if (count == 0 || IsLasting(errno)) {
    Vanish();
  }
}

void TermiosPort::Collect() {
  if (reading_paused_ && TheQueue().Backlog() <= kBacklogLimit) {
    reading_paused_ = false;
    io_.Pause(read_watch_, false);
  }
  if (modem_watch_) modem_watch_->Collect();
  if (Now() - node_checked_ < kNodeCheckMs * kMillisecond) return;
  node_checked_ = Now();
  if (!NodeStands()) Vanish();
}

/// The path still leads to the device that is open.
bool TermiosPort::NodeStands() const {
  struct stat by_path {};
  struct stat opened {};
  return ::stat(path_.c_str(), &by_path) == 0 && ::fstat(device_.Get(), &opened) == 0 &&
         by_path.st_rdev == opened.st_rdev && by_path.st_ino == opened.st_ino;
}

void TermiosPort::Write(std::string_view bytes) {
  if (!device_) return;
  output_ += bytes.substr(0, kOutputLimit - std::min(kOutputLimit, output_.size()));
  SendWaiting();
}

void TermiosPort::SendWaiting() {
  while (device_ && !output_.empty()) {
    const ssize_t count =
        Retried([&] { return ::write(device_.Get(), output_.data(), output_.size()); });
    if (count < 0 && IsLasting(errno)) return Vanish();
    if (count <= 0) break;
    output_.erase(0, static_cast<std::size_t>(count));
  }
  io_.Pause(write_watch_, output_.empty());
}

void TermiosPort::SetBreak(bool on) {
  if (!device_) return;
  break_ = on;
  ::ioctl(device_.Get(), on ? TIOCSBRK : TIOCCBRK);
}

void TermiosPort::SetDtr(bool on) {
  if (device_) SetDtrLine(device_.Get(), on);
}

void TermiosPort::SetRts(bool on) {
  if (device_) SetRtsLine(device_.Get(), on);
}

void TermiosPort::DiscardInput() {
  if (device_) ::tcflush(device_.Get(), TCIFLUSH);
}

void TermiosPort::DiscardOutput() {
  output_.clear();
  if (device_) ::tcflush(device_.Get(), TCOFLUSH);
  io_.Pause(write_watch_, true);
}

}  // namespace penlog
