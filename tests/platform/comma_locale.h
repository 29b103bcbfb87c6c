#pragma once

#include <clocale>
#include <locale>
#include <string>

namespace penlog {

// The C++ streams' locale with a decimal comma and points between thousands; exists everywhere.
class CommaMarks : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

// While it lives, C++ streams write a decimal comma, and C's conversions too where the machine has
// such a locale.
class CommaLocale {
 public:
  CommaLocale()
      : old_c_(std::setlocale(LC_ALL, nullptr)),
        old_cpp_(std::locale::global(std::locale(std::locale::classic(), new CommaMarks))) {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "nl_NL.UTF-8", "fr_FR.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) break;
    }
  }
  ~CommaLocale() {
    std::locale::global(old_cpp_);
    std::setlocale(LC_ALL, old_c_.c_str());
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

  bool ReachesC() const { return *std::localeconv()->decimal_point == ','; }

 private:
  std::string old_c_;
  std::locale old_cpp_;
};

}  // namespace penlog
