// tarnwick: the desktop program. The command line is read before Qt is started, so --help and
// --version answer on a machine without a display.
#include <QApplication>
#include <QIcon>
#include <QStandardPaths>
#include <cstdio>

#include "Assets/AssetsLookup.hpp"
#include "Localization/DesktopTexts.hpp"
#include "Tarnwick/Model/Colours.hpp"
#include "Tarnwick/Model/ModelVersion.hpp"
#include "Tarnwick/Views/CommandLine.hpp"
#include "Tarnwick/Views/MainWindow.hpp"
#include "Tarnwick/Views/QtTranslations.hpp"
#include "Tarnwick/Views/TarnwickApp.hpp"

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  tarnwick::CommandLine line = tarnwick::parseCommandLine(arguments);
  if (!line.error.empty()) {
    std::fprintf(stderr, "tarnwick: %s\n%s\n", line.error.c_str(),
                 tarnwick::L10n::Desktop::seeHelp().c_str());
    return 2;
  }
  if (line.help) {
    std::fputs(tarnwick::L10n::Desktop::commandLineHelp().c_str(), stdout);
    return 0;
  }
  if (line.version) {
    std::printf("tarnwick %s\n", tarnwick::applicationVersion());
    return 0;
  }

  // Pictures are taken with settings of their own, never the user's.
  if (!line.screenshotFolder.empty()) QStandardPaths::setTestModeEnabled(true);
  QApplication application(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("Tarnwick"));
  QApplication::setApplicationName(QStringLiteral("Tarnwick"));
  QApplication::setApplicationVersion(QString::fromLatin1(tarnwick::applicationVersion()));
  QApplication::setDesktopFileName(QStringLiteral("tarnwick"));
  QApplication::setWindowIcon(QIcon(tarnwick::assets::iconPath));
  tarnwick::installQtTranslations(tarnwick::currentLanguage());
  if (line.dark) {
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(tarnwick::darkPalette());
  }

  tarnwick::TarnwickApp app(line);
  if (!line.screenshotFolder.empty()) {
    app.start();
    return app.takeScreenshots();
  }
  if (!app.claimInstance()) return 0;
  app.start();
  app.window()->show();
  return QApplication::exec();
}
