// The console with its windows in real time, without a display.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <QApplication>

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
