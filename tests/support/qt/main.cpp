// The main of test programs that need widgets: offscreen unless QT_QPA_PLATFORM says otherwise.
#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/qt_desktop.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM", "offscreen").toUtf8());
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  application.setQuitOnLastWindowClosed(false);
  platform::qt::startDesktop();
  platform::qt::setTheme(platform::qt::themeDark);
  int result = RUN_ALL_TESTS();
  platform::qt::stopDesktop();
  return result;
}
