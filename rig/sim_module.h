// An add-on module on the cone's line, number 1 to 9. It is addressed by a blank and its number in
// front of a command (" 3Y"), and asked for a reading by "D" and its number ("D3"). Its reading
// begins with one character, its number; the text behind it is that of a cone. "?" without a
// selection stands alone.
#pragma once

#include <string>
#include <string_view>

#include "rig/sim_unit.h"

namespace penlog {

class SimModule : public SimUnit {
 public:
  SimModule(int number, const UnitSetup& setup, const Surroundings& surroundings,
            std::uint32_t seed)
      : SimUnit(setup, surroundings, seed), number_(number) {}

  int Number() const { return number_; }
  std::string Answer(std::string_view command) override;

 private:
  int number_;
};

/// To whom a command line goes.
struct Addressed {
  int unit = 0;  ///< 0 the cone, 1 to 9 a module
  std::string_view command;
};
Addressed AddressOf(std::string_view line);

}  // namespace penlog
