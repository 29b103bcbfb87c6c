#include "platform/host.h"

#include <cstdlib>

namespace penlog {

namespace {
Host* host_in_use = nullptr;
}

Host& TheHost() {
  if (host_in_use == nullptr) std::abort();  // a program without a host is mis-built
  return *host_in_use;
}

void UseHost(Host* host) { host_in_use = host; }

bool VirtualHost::StartProgram(const std::string& path, const std::vector<std::string>& words) {
  if (!can_start) return false;
  std::string line = path;
  for (const auto& word : words) line += " " + word;
  started.push_back(line);
  return true;
}

bool VirtualHost::StartSelf() { return StartProgram("itself", {}); }

std::optional<std::string> VirtualHost::Environment(const std::string& name) {
  if (name == "allusersprofile" && !all_users.empty()) return all_users;
  return std::nullopt;
}

double VirtualHost::LocaleReads(const std::string& text) {
  return text == "2.1" && comma_decimal ? 2.0 : 2.1;
}

}  // namespace penlog
