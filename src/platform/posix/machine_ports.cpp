#include "platform/posix/machine_ports.h"

#include <sys/stat.h>

#include "platform/numbers.h"
#include "platform/posix/posix_disk.h"
#include "platform/posix/termios_port.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

namespace {

constexpr const char* kTitle = "Serial Ports.txt";
constexpr int kLastNumber = 255;

PortMap FixedRuleMap() {
  PortMap map;
  for (int number = 1; number <= kLastNumber; ++number) {
    const std::string path = FixedRuleDevice(number);
    if (!path.empty()) map.devices[number] = {path, {}};
  }
  return map;
}

/// The kernel makes nodes for built-in ports that the board may not have; their type is then 0.
bool IsMissingHardware(const std::string& path) {
  constexpr std::string_view kBuiltIn = "/dev/ttyS";
  if (!StartsWith(path, kBuiltIn)) return false;
  try {
    return Trim(ReadPosixFile("/sys/class/tty/" + path.substr(5) + "/type")) == "0";
  } catch (const RuntimeFault&) {
    return false;
  }
}

std::int64_t Nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

MachinePorts::MachinePorts(std::function<std::string()> list_file, NetworkPorts* network,
                           std::function<void(const std::string&)> report)
    : list_file_(std::move(list_file)), network_(network), report_(std::move(report)) {}

MachinePorts::FileStamp MachinePorts::StampOf(const std::string& path) {
  struct stat facts {};
  if (path.empty() || ::stat(path.c_str(), &facts) != 0) return {};
  return {1,
          static_cast<std::int64_t>(facts.st_dev),
          static_cast<std::int64_t>(facts.st_ino),
          static_cast<std::int64_t>(facts.st_size),
          Nanoseconds(facts.st_mtim),
          Nanoseconds(facts.st_ctim)};
}

void MachinePorts::ReadAgainIfChanged() {
  const std::string path = list_file_();
  const FileStamp stamp = StampOf(path);
  if (read_ && path == list_path_ && stamp == stamp_) return;
  read_ = true;
  list_path_ = path;
  stamp_ = stamp;
  has_list_ = stamp != FileStamp{};
  ReadList(path);
  std::vector<NetworkAddress> servers;
  for (const auto& [number, device] : map_.devices) {
    if (device.path.empty()) servers.push_back(device.network);
  }
  if (network_ != nullptr) network_->SetServers(servers);
}

void MachinePorts::ReadList(const std::string& path) {
  try {
    map_ = has_list_ ? ParsePortMap(kTitle, ReadPosixFile(path)) : FixedRuleMap();
  } catch (const RuntimeFault& fault) {
    // A list that can't be read must not give the numbers another meaning.
    map_ = PortMap{};
    map_.messages.push_back(fault.what());
  }
  if (!report_) return;
  for (const auto& message : map_.messages) report_(message);
}

const PortDevice* MachinePorts::DeviceOf(int number) {
  ReadAgainIfChanged();
  const auto found = map_.devices.find(number);
  return found == map_.devices.end() ? nullptr : &found->second;
}

bool MachinePorts::DeviceExists(const PortDevice& device) const {
  if (device.path.empty()) return network_ != nullptr && network_->Exists(device.network);
  struct stat facts {};
  if (::stat(device.path.c_str(), &facts) != 0) return false;
  return has_list_ || !IsMissingHardware(device.path);
}

bool MachinePorts::Exists(int number) {
  const PortDevice* device = DeviceOf(number);
  return device != nullptr && DeviceExists(*device);
}

std::unique_ptr<PortDriver> MachinePorts::Open(int number, const PortSettings& settings,
                                               PortSink& sink) {
  const PortDevice* device = DeviceOf(number);
  const std::string name = "COM" + PlainNumber(number);
  if (device == nullptr) throw RuntimeFault(name + " does not exist");
  if (!device->path.empty()) return std::make_unique<TermiosPort>(device->path, settings, sink);
  if (network_ == nullptr) throw RuntimeFault(name + ": network ports are not available");
  return network_->Open(device->network, settings, sink);
}

std::string MachinePorts::DeviceName(int number) {
  const PortDevice* device = DeviceOf(number);
  return device == nullptr ? std::string() : device->Text();
}

}  // namespace penlog
