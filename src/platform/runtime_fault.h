#pragma once

#include <stdexcept>

namespace penlog {

// The one type of run-time fault: an index out of bounds, a number out of range, a file or a port
// that fails. It is what the routines' own error traps catch; what() is a text for the operator.
class RuntimeFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace penlog
