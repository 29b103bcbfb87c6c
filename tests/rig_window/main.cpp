// The tests of the rig's window run without a display.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setStyle("fusion");
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
