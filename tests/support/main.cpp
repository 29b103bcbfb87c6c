// Runs the tests under the locale of the environment, as the windows' toolkit sets it for the
// console: with a decimal comma nothing may change.
#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
