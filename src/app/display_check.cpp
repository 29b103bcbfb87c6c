#include "app/display_check.h"

#include <cstdlib>

namespace penlog {

namespace {

bool IsSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

}  // namespace

bool HasDisplay() {
  return IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY");
}

bool PlatformIsNamed() {
  return IsSet("QT_QPA_PLATFORM");
}

}  // namespace penlog
