// A pseudo terminal: the test is the instrument at its far end.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <string>
#include <string_view>

namespace penlog {

class Pty {
 public:
  Pty() {
    int slave = -1;
    std::array<char, 128> name{};
    if (::openpty(&master_, &slave, name.data(), nullptr, nullptr) != 0) {
      ADD_FAILURE() << "no pseudo terminal";
    }
    path_ = name.data();
    ::close(slave);
    ::fcntl(master_, F_SETFL, O_NONBLOCK);
  }
  ~Pty() { HangUp(); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  const std::string& Path() const { return path_; }
  int Master() const { return master_; }

  /// The number of bytes that the terminal took.
  std::size_t Send(std::string_view bytes) const {
    const ssize_t count = ::write(master_, bytes.data(), bytes.size());
    return count < 0 ? 0 : static_cast<std::size_t>(count);
  }
  /// What the console has sent so far.
  std::string Take() const {
    std::string taken;
    std::array<char, 4096> part{};
    for (;;) {
      const ssize_t count = ::read(master_, part.data(), part.size());
      if (count <= 0) return taken;
      taken.append(part.data(), static_cast<std::size_t>(count));
    }
  }
  void HangUp() {
    if (master_ >= 0) ::close(master_);
    master_ = -1;
  }

 private:
  int master_ = -1;
  std::string path_;
};

}  // namespace penlog
