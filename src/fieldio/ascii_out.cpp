#include "fieldio/ascii_out.h"

namespace penlog {

std::string ASCIIOutTestLine() {
  return "ASCII OUT TEST\r\n";
}

}  // namespace penlog
