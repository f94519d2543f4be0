// The flashing station in the window, as `tarnwick --station --test-device … PRODUCT` opens it:
// Ctrl+R flashes every simulated board at once, the table and the tally show them, clicking a
// board shows its lines, and Escape returns to the files once the station stands still.
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "FlashCore/ProductPackage.hpp"
#include "Localization/Language.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "Tarnwick/Model/ModelFixture.hpp"
#include "Tarnwick/Model/StationModel.hpp"
#include "Tarnwick/Model/StationTable.hpp"
#include "Tarnwick/Views/FileListPanel.hpp"
#include "Tarnwick/Views/LogView.hpp"
#include "Tarnwick/Views/MainWindow.hpp"
#include "Tarnwick/Views/StationPanel.hpp"
#include "Tarnwick/Views/TarnwickApp.hpp"
#include "support/Boards.hpp"

namespace tarnwick::testing {
namespace {

class StationWindowTest : public ModelTest {};

TEST_F(StationWindowTest, FourSimulatedBoardsFlashedAtOnceFromTheCommandLine) {
  LanguageOverride english(Language::en);
  std::vector<std::unique_ptr<simulator::SimulatedESP>> boards;
  CommandLine line;
  line.station = true;
  for (int i = 0; i < 4; ++i) {
    boards.push_back(std::make_unique<simulator::SimulatedESP>());
    line.testDevices.push_back(boards.back()->path());
  }
  auto product = espProduct(ESPChip::esp32, 64 * 1024);
  product.product.name = "Lamp";
  ProductPackage::write({product.product, product.files}, path("Lamp.twflash"));
  line.files = {path("Lamp.twflash").string()};

  TarnwickApp app(line);
  app.start(modelOptions(line.testDevices));
  MainWindow& window = *app.window();
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  ASSERT_EQ(app.model()->product().name, "Lamp");
  ASSERT_TRUE(window.stationMode());
  EXPECT_TRUE(window.stationAction()->isChecked());
  EXPECT_FALSE(window.fileList()->isVisible());
  StationPanel& panel = *window.stationPanel();
  EXPECT_TRUE(panel.isVisible());
  EXPECT_EQ(panel.startButton()->text(), "Start");

  QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(window.station().isRunning());
  EXPECT_EQ(panel.startButton()->text(), "Stop");
  EXPECT_TRUE(window.productLockedNote()->isVisible());
  EXPECT_FALSE(window.stationAction()->isEnabled()) << "left while it runs";
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_TRUE(window.stationMode());

  QTableView& table = *panel.table();
  auto resultOf = [&](int row) {
    return table.model()->index(row, StationTable::result).data().toString();
  };
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        if (table.model()->rowCount() != 4) return false;
        for (int row = 0; row < 4; ++row)
          if (resultOf(row) != "Done") return false;
        return true;
      },
      30000));
  EXPECT_EQ(panel.figure(0)->text(), "4");
  EXPECT_EQ(panel.figure(1)->text(), "0");
  EXPECT_EQ(panel.figure(2)->text(), "0");
  for (int row = 0; row < 4; ++row) {
    EXPECT_EQ(table.model()->index(row, StationTable::chip).data().toString(), "ESP32");
    EXPECT_EQ(table.model()->index(row, StationTable::progress).data().toString(), "100%");
  }
  for (const auto& board : boards)
    EXPECT_GT(board->requests(ESPCommand::flashDeflateBegin), 0);

  // Clicking a board shows its lines, and only its.
  const QRect second = table.visualRect(table.model()->index(1, StationTable::board));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, second.center());
  const QString port = table.model()->index(1, StationTable::port).data().toString();
  EXPECT_EQ(panel.boardLogTitle()->text(), "Log of the board on " + port);
  const QString lines = panel.boardLog()->toPlainText();
  EXPECT_TRUE(lines.contains("--- Done in")) << lines.toStdString();
  // Its opening line names its port; no other board's lines are among them.
  EXPECT_TRUE(lines.contains("/dev/" + port + ")")) << lines.toStdString();
  for (int row : {0, 2, 3}) {
    const QString other = table.model()->index(row, StationTable::port).data().toString();
    EXPECT_FALSE(lines.contains("/dev/" + other + ")")) << other.toStdString();
  }

  QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window.station().isRunning(); }, 10000));
  EXPECT_FALSE(panel.recordProblem()->isVisible());

  // A record file that cannot be written: the station ends by itself, and says why over the
  // table.
  window.station().setRecordPath(QStringLiteral("/dev/full"));
  QTest::keyClick(&window, Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window.station().isRunning(); }, 30000));
  EXPECT_TRUE(panel.recordProblem()->isVisible());
  const QLabel* problem = panel.recordProblem()->findChildren<QLabel*>().back();
  EXPECT_TRUE(problem->text().startsWith("This board is missing from /dev/full"))
      << problem->text().toStdString();
  EXPECT_EQ(panel.figure(1)->text(), "4");

  // Stopped, the window goes back to the files with Escape.
  EXPECT_FALSE(window.productLockedNote()->isVisible());
  EXPECT_TRUE(window.stationAction()->isEnabled());
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.stationMode());
  EXPECT_TRUE(window.fileList()->isVisible());
  EXPECT_FALSE(window.stationAction()->isChecked());
}

// A window closed while its station runs (the program ended from outside) stops the boards it
// runs and leaves the product unlocked, touching nothing of itself that is already gone.
TEST_F(StationWindowTest, AWindowGoneWhileTheStationRunsStopsItFirst) {
  simulator::SimulatedESP board(pacedESP32());
  auto model = makeModel({board.path()});
  load(*model, espProduct(ESPChip::esp32, 64 * 1024));
  auto window = std::make_unique<MainWindow>(*model);
  window->setStationMode(true);
  window->station().start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return board.requests(ESPCommand::sync) > 0; }, 10000));
  window.reset();
  EXPECT_FALSE(model->productLocked());
  EXPECT_TRUE(model->canQuit());
}

} // namespace
} // namespace tarnwick::testing
