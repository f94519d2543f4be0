// The screenshot mode: the real window is driven through its main states and each is saved as a
// picture, for the help and for checking the look in every language.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QListWidget>
#include <QTimer>
#include <cstdio>
#include <functional>

#include "Localization/DesktopTexts.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Views/FileListPanel.hpp"
#include "Tarnwick/Views/HelpWindow.hpp"
#include "Tarnwick/Views/MainWindow.hpp"
#include "Tarnwick/Views/SettingsSheet.hpp"
#include "Tarnwick/Views/TarnwickApp.hpp"

namespace tarnwick {

namespace {
/// Runs the event loop until `done` holds or the time is up; whether it holds.
bool waitFor(const std::function<bool()>& done, int timeoutMilliseconds) {
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() > timeoutMilliseconds) return false;
    QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  return true;
}

void settle() {
  waitFor([] { return false; }, 250);
}
} // namespace

int TarnwickApp::takeScreenshots() {
  QDir folder(QString::fromStdString(line_.screenshotFolder));
  if (!folder.mkpath(QStringLiteral("."))) {
    std::fprintf(stderr, "%s\n",
                 L10n::Desktop::cannotWriteScreenshots(line_.screenshotFolder).c_str());
    return 1;
  }
  bool allSaved = true;
  auto save = [&](QWidget* widget, const char* name) {
    settle();
    QString path = folder.filePath(QString::fromLatin1(name));
    if (widget->grab().save(path)) {
      std::printf("%s\n", L10n::Desktop::savedScreenshot(path.toStdString()).c_str());
    } else {
      std::fprintf(stderr, "%s\n",
                   L10n::Desktop::cannotWriteScreenshots(line_.screenshotFolder).c_str());
      allSaved = false;
    }
  };

  MainWindow& window = *window_;
  FlasherModel& model = *model_;
  window.resize(1000, 700);
  window.setLogShown(false);
  window.show();
  model.clearLog();
  waitFor([&] { return window.isVisible(); }, 2000);
  save(&window, "window-empty.png");

  // The product: a product file or a build folder given on the command line.
  if (!line_.files.empty()) {
    std::filesystem::path given = line_.files.front();
    if (dropActionFor({given}).kind == DropAction::Kind::importFolder)
      model.importFolder(given);
    else
      model.openProduct(given);
    if (!model.errorMessage().isEmpty()) {
      std::fprintf(stderr, "%s\n", model.errorMessage().toStdString().c_str());
      return 1;
    }
  }
  window.setLogShown(true);
  save(&window, "window-product.png");

  SettingsSheet* sheet = window.settingsSheet();
  sheet->show();
  save(sheet, "settings-esp.png");
  sheet->hide();

  // A real run against the test device; the picture is taken a third of the way in.
  bool sawProgress = false;
  QMetaObject::Connection watch = connect(&model, &FlasherModel::progressChanged, this, [&] {
    if (!sawProgress && model.isFlashing() && model.progressFraction() >= 0.3) {
      sawProgress = true;
      save(&window, "window-flashing.png");
    }
  });
  if (model.canFlash()) {
    model.toggleFlash();
    waitFor([&] { return !model.isFlashing(); }, 120000);
  }
  disconnect(watch);
  if (!sawProgress) {
    std::fprintf(stderr, "%s\n", L10n::Desktop::noRunToPicture().c_str());
    allSaved = false;
  }
  save(&window, "window-success.png");

  // A board that is no longer there: the run fails as with an unplugged cable.
  QString board = model.selectedPath();
  model.setSelectedPath(QStringLiteral("/dev/ttyUSB97"));
  model.toggleFlash();
  waitFor([&] { return !model.isFlashing(); }, 20000);
  save(&window, "window-failure.png");
  model.setSelectedPath(board);

  Product product = model.product();
  Product arduino = product;
  arduino.target = Target::avr(AVRBoard::uno);
  model.setProduct(arduino);
  sheet->show();
  save(sheet, "settings-arduino.png");
  sheet->hide();
  model.setProduct(product);

  HelpWindow* help = window.helpWindow();
  help->selectTopic("start");
  help->show();
  save(help, "help.png");
  help->close();
  window.close();
  return allSaved ? 0 : 1;
}

} // namespace tarnwick
