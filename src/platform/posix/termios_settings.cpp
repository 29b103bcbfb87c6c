#include "platform/posix/termios_settings.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>

#include <array>
#include <cerrno>
#include <optional>

#include "platform/numbers.h"
#include "platform/posix/file_handle.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

struct Speed {
  int baud;
  speed_t code;
};

constexpr std::array<Speed, 29> kSpeeds = {{
    {50, B50},           {75, B75},           {110, B110},         {134, B134},
    {150, B150},         {200, B200},         {300, B300},         {600, B600},
    {1200, B1200},       {1800, B1800},       {2400, B2400},       {4800, B4800},
    {9600, B9600},       {19200, B19200},     {38400, B38400},     {57600, B57600},
    {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
    {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000},
    {1500000, B1500000}, {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000},
    {4000000, B4000000},
}};

constexpr std::array<tcflag_t, 4> kDataBits = {CS5, CS6, CS7, CS8};  // from 5 on

constexpr tcflag_t kFormFlags = CSIZE | CSTOPB | PARENB | PARODD | CMSPAR;

std::optional<speed_t> SpeedCode(int baud) {
  for (const Speed& speed : kSpeeds) {
    if (speed.baud == baud) return speed.code;
  }
  return std::nullopt;
}

tcflag_t ParityFlags(char parity) {
  switch (parity) {
    case 'E':
      return PARENB;
    case 'O':
      return PARENB | PARODD;
    case 'M':
      return PARENB | PARODD | CMSPAR;
    case 'S':
      return PARENB | CMSPAR;
    default:
      return 0;
  }
}

tcflag_t FormFlags(const PortSettings& settings) {
  return kDataBits[static_cast<std::size_t>(settings.data_bits - 5)] |
         ParityFlags(settings.parity) | (settings.stop_bits == 2 ? tcflag_t{CSTOPB} : 0);
}

std::string SettingsText(const PortSettings& settings) {
  return PlainNumber(settings.baud) + "," + settings.parity + "," +
         PlainNumber(settings.data_bits) + "," + PlainNumber(settings.stop_bits);
}

termios RawLine(const PortSettings& settings, speed_t speed) {
  termios line{};
  line.c_iflag = IGNBRK;  // a break from the cone is no byte
  line.c_cflag = CREAD | CLOCAL | HUPCL | FormFlags(settings);
  line.c_cc[VMIN] = 1;  // so that a read of nothing means the end, not an empty line
  line.c_cc[VTIME] = 0;
  ::cfsetispeed(&line, speed);
  ::cfsetospeed(&line, speed);
  return line;
}

char ParityOf(tcflag_t flags) {
  if ((flags & PARENB) == 0) return 'N';
  const bool odd = (flags & PARODD) != 0;
  if ((flags & CMSPAR) != 0) return odd ? 'M' : 'S';
  return odd ? 'O' : 'E';
}

}  // namespace

PortSettings ReadPortSettings(int fd) {
  PortSettings settings;
  termios line{};
  if (::tcgetattr(fd, &line) != 0) return settings;
  for (const Speed& speed : kSpeeds) {
    if (speed.code == ::cfgetospeed(&line)) settings.baud = speed.baud;
  }
  for (std::size_t i = 0; i < kDataBits.size(); ++i) {
    if (kDataBits[i] == (line.c_cflag & CSIZE)) settings.data_bits = static_cast<int>(i) + 5;
  }
  settings.parity = ParityOf(line.c_cflag);
  settings.stop_bits = (line.c_cflag & CSTOPB) != 0 ? 2 : 1;
  return settings;
}

bool IsPseudoTerminal(int fd) {
  constexpr unsigned kFirstMajor = 136;  // UNIX98 pseudo terminals, 136 to 143
  constexpr unsigned kLastMajor = 143;
  struct stat facts {};
  if (::fstat(fd, &facts) != 0 || !S_ISCHR(facts.st_mode)) return false;
  const unsigned major_number = major(facts.st_rdev);
  return major_number >= kFirstMajor && major_number <= kLastMajor;
}

void ApplyPortSettings(int fd, const std::string& path, const PortSettings& settings) {
  const auto speed = SpeedCode(settings.baud);
  if (!speed) {
    throw RuntimeFault(path + ": " + PlainNumber(settings.baud) + " baud is no standard speed");
  }
  const termios wanted = RawLine(settings, *speed);
  if (Retried([&] { return ::tcsetattr(fd, TCSANOW, &wanted); }) != 0) FailWithErrno(path);
  // The call succeeds when any one of the settings was taken up.
  termios found{};
  if (::tcgetattr(fd, &found) != 0) FailWithErrno(path);
  const bool form_stands = (found.c_cflag & kFormFlags) == (wanted.c_cflag & kFormFlags);
  if (::cfgetospeed(&found) != *speed || (!form_stands && !IsPseudoTerminal(fd))) {
    throw RuntimeFault(path + ": the adapter does not take " + SettingsText(settings));
  }
}

}  // namespace penlog
