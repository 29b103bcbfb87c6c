#include "platform/small_file.h"

#include "platform/files.h"
#include "platform/runtime_fault.h"

namespace penlog {

std::string ReadSmallFile(const std::string& path) {
  if (TheDisk().SizeOf(path) > kMostOfSmallFile) {
    throw RuntimeFault(path + " IS LONGER THAN 64 MB: IT IS NO FILE OF A SOUNDING");
  }
  return ReadFile(path);
}

}  // namespace penlog
