// The screenshot mode: the real window is driven through its main states and each is saved as a
// picture, for the help and for checking the look in every language.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QHash>
#include <QLineEdit>
#include <QListWidget>
#include <QTableView>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "Localization/DesktopTexts.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Model/StationModel.hpp"
#include "Tarnwick/Views/FileListPanel.hpp"
#include "Tarnwick/Views/HelpWindow.hpp"
#include "Tarnwick/Views/MainWindow.hpp"
#include "Tarnwick/Views/NetworkPortDialog.hpp"
#include "Tarnwick/Views/SettingsSheet.hpp"
#include "Tarnwick/Views/StationPanel.hpp"
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

/// The picture with at most 256 colours, a third of the file. A window has few colours of its
/// own: the most frequent ones are kept exactly, skipping those next to one already kept so that
/// the rare colours of icons get a place too; the rest (the edges of letters) take the nearest.
QImage withFewColours(const QImage& picture) {
  const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
  QHash<QRgb, int> counts;
  for (int y = 0; y < rgb.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
    for (int x = 0; x < rgb.width(); ++x)
      ++counts[line[x]];
  }
  QList<std::pair<int, QRgb>> byCount;
  for (auto it = counts.cbegin(); it != counts.cend(); ++it)
    byCount.append({it.value(), it.key()});
  std::sort(byCount.begin(), byCount.end(), std::greater<>());
  auto near = [](QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
               std::abs(qBlue(a) - qBlue(b)) <
           24;
  };
  QList<QRgb> table;
  QList<QRgb> skipped;
  for (const auto& [count, colour] : byCount) {
    if (table.size() == 256) break;
    if (std::any_of(table.begin(), table.end(), [&](QRgb kept) { return near(kept, colour); }))
      skipped.append(colour);
    else
      table.append(colour);
  }
  for (qsizetype i = 0; table.size() < 256 && i < skipped.size(); ++i)
    table.append(skipped[i]);
  return rgb.convertToFormat(QImage::Format_Indexed8, table, Qt::ThresholdDither);
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
    if (withFewColours(widget->grab().toImage()).save(path, "PNG", 0)) {
      std::printf("%s\n", L10n::Desktop::savedScreenshot(path.toStdString()).c_str());
    } else {
      std::fprintf(stderr, "%s\n",
                   L10n::Desktop::cannotWriteScreenshots(line_.screenshotFolder).c_str());
      allSaved = false;
    }
  };

  MainWindow& window = *window_;
  FlasherModel& model = *model_;
  // As wide as the help's page shows a picture at its own size, or the window's least width.
  window.resize(std::max(900, window.minimumSizeHint().width()), 660);
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

  // The station: the test device is flashed as it starts, three boards simulated inside the
  // program are plugged in after it, and one of them is pulled out during its run.
  StationModel& station = window.station();
  const QSize normalSize = window.size();
  window.resize(normalSize.width(), 820);
  window.setStationMode(true);
  model.clearLog();
  station.start();
  std::vector<QString> plugged;
  for (int i = 0; i < 3; ++i)
    plugged.push_back(model.plugInSimulatedBoard(
        product.target.espChip() ? product.target : Target::esp(ESPChip::esp32)));
  const auto runningShare = [&] {
    int going = 0;
    for (const StationRow& row : station.rows())
      going += row.result == StationRow::Result::running && row.total > 0 &&
               row.done * 10 >= row.total * 3;
    return going;
  };
  if (!waitFor([&] { return runningShare() >= 3; }, 60000)) allSaved = false;
  model.unplugSimulatedBoard(plugged.back());
  save(&window, "station-running.png");
  station.stop();
  waitFor([&] { return !station.isRunning(); }, 120000);
  // The board clicked shows its own lines under the table.
  window.stationPanel()->table()->selectRow(0);
  save(&window, "station-finished.png");
  station.clearFinished();
  for (const QString& path : plugged)
    model.unplugSimulatedBoard(path);
  window.setStationMode(false);
  window.resize(normalSize);

  // The port picker's Add Network Port…, filled in; cancelled, so the user's own list of network
  // ports stays as it was.
  window.portPicker()->askForNetworkPort();
  if (NetworkPortDialog* dialog = window.portPicker()->networkPortDialog()) {
    dialog->hostField()->setText(QStringLiteral("rack3.local"));
    dialog->portField()->setText(QStringLiteral("2000"));
    save(dialog, "network-port.png");
    dialog->reject();
  }

  HelpWindow* help = window.helpWindow();
  help->resize(900, 640);
  help->selectTopic("start");
  help->show();
  save(help, "help.png");
  help->close();
  window.close();
  return allSaved ? 0 : 1;
}

} // namespace tarnwick
