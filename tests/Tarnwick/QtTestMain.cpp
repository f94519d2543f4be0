// GoogleTest main for the application's tests: a Qt application on the offscreen platform, and
// Qt's test mode so settings and data locations never touch the user's own.
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#ifdef TARNWICK_WIDGET_TESTS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QGuiApplication>
using TestApplication = QGuiApplication;
#endif

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // A run's messages are made on its worker thread, which a test's LanguageOverride does not
  // reach: the process speaks English whatever the user's locale, and tests pick other
  // languages themselves.
  qputenv("LANGUAGE", "en");
  QStandardPaths::setTestModeEnabled(true);
  TestApplication app(argc, argv);
  TestApplication::setOrganizationName("Tarnwick");
  TestApplication::setApplicationName("TarnwickTests");
  // ctest runs test programs side by side: each keeps its settings to itself, or one test's
  // clean-up would clear another's stored preferences mid-test.
  QTemporaryDir settings;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
