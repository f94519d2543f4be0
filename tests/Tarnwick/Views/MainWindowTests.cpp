// The main window driven as a user drives it: ports and the banner, the target switch, drops,
// addresses typed into the table, Ctrl+R against a simulated board, and the alert.
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include "FlashCore/ProductPackage.hpp"
#include "Localization/Language.hpp"
#include "Simulator/SimulatedBoard.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "Tarnwick/Model/ModelFixture.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Views/AddressField.hpp"
#include "Tarnwick/Views/WindowFixture.hpp"
#include "support/BuildFolders.hpp"

namespace tarnwick::testing {
namespace {

using simulator::SimulatedESP;
using simulator::SimulatedESPOptions;

SerialPortInfo port(const std::string& path, std::optional<int> vendor) {
  return {path, vendor ? std::optional<std::string>("USB Serial") : std::nullopt, vendor,
          vendor ? std::optional<int>(0x7523) : std::nullopt};
}

TEST_F(WindowTest, PortPickerBannerAndFlashFollowThePortsAndTheProduct) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  EXPECT_EQ(w.portPicker()->currentText(), "No ports found");
  EXPECT_TRUE(w.noBoardBanner()->isVisible());
  EXPECT_FALSE(w.flashButton()->isEnabled());

  // A Bluetooth serial port is no board: the banner stays, nothing is chosen for the user.
  model->portsChanged({port("/dev/rfcomm0", std::nullopt)});
  EXPECT_TRUE(w.noBoardBanner()->isVisible());
  EXPECT_EQ(w.portPicker()->currentText(), "Select a port…");

  model->portsChanged({port("/dev/rfcomm0", std::nullopt), port("/dev/ttyUSB0", 0x1A86)});
  EXPECT_FALSE(w.noBoardBanner()->isVisible());
  EXPECT_EQ(w.portPicker()->currentData().toString(), "/dev/ttyUSB0");
  EXPECT_FALSE(w.flashButton()->isEnabled()); // no firmware yet
  EXPECT_FALSE(w.flashAction()->isEnabled());

  load(*model, espProduct(ESPChip::esp32, 16 * 1024));
  EXPECT_TRUE(w.flashButton()->isEnabled());
  EXPECT_TRUE(w.flashAction()->isEnabled());
  // The planned run: files, the addresses they cover, the port.
  EXPECT_EQ(w.statusText()->text(),
            "Ready to flash · 4 files · 0x1000–0x29FFFF · USB serial (CH340)");

  // Choosing the other port from the picker, as a user does with the keyboard.
  w.portPicker()->setFocus();
  QTest::keyClick(w.portPicker(), Qt::Key_Up);
  EXPECT_EQ(model->selectedPath(), "/dev/rfcomm0");

  // A remembered port that has gone is still shown, marked.
  model->setSelectedPath("/dev/ttyUSB7");
  EXPECT_EQ(w.portPicker()->currentText(), "/dev/ttyUSB7 (not connected)");
}

TEST_F(WindowTest, TargetSwitchShowsTheSectionsAndColumnsOfTheBoard) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  SettingsSheet* sheet = w.settingsSheet();
  sheet->show();
  auto espShown = [&] {
    return sheet->connectionSection()->isVisible() && sheet->flashMemorySection()->isVisible() &&
           !sheet->boardSection()->isVisible();
  };
  QTableWidget* table = w.fileList()->table();
  EXPECT_TRUE(espShown());
  load(*model, espProduct(ESPChip::esp32, 4096));
  // The visible columns fill the table exactly, whichever columns the target shows and after
  // the window changes size: no blank band, nothing cut at the right edge.
  auto fills = [&](const char* when) {
    QCoreApplication::processEvents();
    int sum = 0;
    for (int column = 0; column < table->horizontalHeader()->count(); ++column)
      if (!table->isColumnHidden(column)) sum += table->columnWidth(column);
    EXPECT_EQ(sum, table->viewport()->width()) << when;
  };
  fills("ESP");

  w.targetPicker()->setFocus();
  QTest::keyClick(w.targetPicker(), Qt::Key_End); // the last board: Pro Micro
  fills("Arduino");
  w.resize(w.width() + 120, w.height());
  fills("Arduino, wider");
  EXPECT_EQ(model->product().target, Target::avr(AVRBoard::proMicro));
  EXPECT_FALSE(sheet->connectionSection()->isVisible());
  EXPECT_FALSE(sheet->flashMemorySection()->isVisible());
  EXPECT_TRUE(sheet->boardSection()->isVisible());
  EXPECT_TRUE(table->isColumnHidden(FileListPanel::addressColumn));
  EXPECT_EQ(table->horizontalHeaderItem(FileListPanel::fileColumn)->text(), "Sketch");

  QTest::keyClick(w.targetPicker(), Qt::Key_Home);
  EXPECT_EQ(model->product().target, Target::esp());
  EXPECT_TRUE(espShown());
  fills("ESP again");
  w.resize(w.width() - 200, w.height());
  fills("ESP, narrower");
  EXPECT_FALSE(table->isColumnHidden(FileListPanel::addressColumn));
  EXPECT_EQ(table->horizontalHeaderItem(FileListPanel::fileColumn)->text(), "File");
}

TEST_F(WindowTest, DropsAddFilesImportBuildFoldersAndOpenProductsWithoutAsking) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  std::vector<std::filesystem::path> bins;
  for (const char* name : {"a.bin", "b.bin", "c.bin"})
    bins.push_back(writeFile(name, Bytes(4096, 0x5A)));
  drop(bins);
  EXPECT_EQ(fileNames(), (std::vector<std::string>{"a.bin", "b.bin", "c.bin"}));
  EXPECT_EQ(w.fileList()->table()->rowCount(), 3);

  // The table lights up while a drag is over it, and no longer once it has left.
  const QColor plain = w.fileList()->table()->palette().color(QPalette::Base);
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(bins.front().string()))});
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(w.fileList(), &enter);
  EXPECT_NE(w.fileList()->table()->palette().color(QPalette::Base), plain);
  QDragLeaveEvent leave;
  QCoreApplication::sendEvent(w.fileList(), &leave);
  EXPECT_EQ(w.fileList()->table()->palette().color(QPalette::Base), plain);

  auto project = path("project");
  platformIOBuild("esp32dev", ChipIDs::esp32, Layouts::arduinoDefault()).writeTo(project);
  drop({project / ".pio" / "build" / "esp32dev"});
  auto names = fileNames();
  EXPECT_EQ(std::count(names.begin(), names.end(), "a.bin"), 0);
  EXPECT_EQ(std::count(names.begin(), names.end(), "firmware.bin"), 1);
  EXPECT_EQ(w.fileList()->table()->rowCount(), static_cast<int>(names.size()));

  // A modified product is replaced by a dropped product file without the question.
  Product edited = model->product();
  edited.name = "Edited";
  model->setProduct(edited);
  ASSERT_TRUE(model->hasUnsavedChanges());
  auto saved = espProduct(ESPChip::esp32s3, 8 * 1024);
  saved.product.name = "Lamp";
  ProductPackage::write({saved.product, saved.files}, path("Lamp.twflash"));
  drop({path("Lamp.twflash")});
  EXPECT_EQ(model->product().name, "Lamp");
  EXPECT_FALSE(model->hasUnsavedChanges());
  EXPECT_EQ(dialogs.questions, 0);
  EXPECT_EQ(w.windowTitle(), "Lamp");
}

TEST_F(WindowTest, AddressesAreTypedIntoTheTableAndDeleteRemovesFiles) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  load(*model, espProduct(ESPChip::esp32, 8 * 1024));
  QTableWidget* table = w.fileList()->table();
  int last = table->rowCount() - 1;
  auto* field = w.fileList()->cellControl<AddressField>(last, FileListPanel::addressColumn);
  ASSERT_NE(field, nullptr);
  QTest::mouseClick(field, Qt::LeftButton);
  field->selectAll();
  QTest::keyClicks(field, "0x3f0000");
  EXPECT_EQ(model->product().images.back().offset, 0x3F0000u);
  QTest::keyClicks(field, "z");
  EXPECT_TRUE(field->isMarkedInvalid());
  EXPECT_EQ(model->product().images.back().offset, 0x3F0000u);
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(field->text(), "0x3F0000");

  // The enable box of the first row.
  auto* box = w.fileList()->cellControl<QCheckBox>(0, FileListPanel::enabledColumn);
  QTest::mouseClick(box, Qt::LeftButton);
  EXPECT_FALSE(model->product().images.front().enabled);

  std::size_t before = model->product().images.size();
  std::string second = model->product().images[1].fileName;
  table->setFocus();
  table->selectRow(1);
  QTest::keyClick(table, Qt::Key_Delete);
  ASSERT_EQ(model->product().images.size(), before - 1);
  auto names = fileNames();
  EXPECT_EQ(std::count(names.begin(), names.end(), second), 0);
  EXPECT_EQ(table->rowCount(), static_cast<int>(before - 1));
}

TEST_F(WindowTest, CtrlRStartsARunOnASimulatedBoardAndCtrlRStopsIt) {
  LanguageOverride english(Language::en);
  SimulatedESPOptions options;
  options.paceLine = true; // real line speed, so the run is still going when it is stopped
  SimulatedESP board(options);
  MainWindow& w = open({board.path()});
  load(*model, espProduct(ESPChip::esp32, 256 * 1024));
  ASSERT_TRUE(w.flashButton()->isEnabled());

  // A whole run first: the status line then says what the board got.
  QTest::keyClick(&w, Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(waitUntilIdle(*model, 60000));
  EXPECT_TRUE(w.statusText()->text().startsWith("Last flash succeeded · ESP32 · 362 KB in "))
      << w.statusText()->text().toStdString();

  QTest::keyClick(&w, Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(model->isFlashing());
  EXPECT_EQ(w.flashButton()->text(), "Stop");
  EXPECT_FALSE(w.portPicker()->isEnabled());
  EXPECT_EQ(w.portPicker()->toolTip(), "Wait until flashing has finished");
  EXPECT_FALSE(w.noBoardBanner()->isVisible());
  ASSERT_TRUE(QTest::qWaitFor([&] { return model->progressDone() > 0; }, 20000));
  // Closing the window mid-run is refused with the reason.
  EXPECT_FALSE(w.close());
  EXPECT_TRUE(w.isVisible());
  ASSERT_EQ(dialogs.alerts.size(), 1u);
  EXPECT_TRUE(dialogs.alerts.front().startsWith("Wait until flashing has finished."));

  QTest::keyClick(&w, Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(waitUntilIdle(*model));
  ASSERT_TRUE(model->outcome());
  EXPECT_TRUE(std::holds_alternative<FlashOutcome::Cancelled>(model->outcome()->value));
  EXPECT_EQ(w.flashButton()->text(), "Flash");
  EXPECT_TRUE(w.portPicker()->isEnabled());
  EXPECT_EQ(w.statusDot()->color(), QColor(0x9A, 0x9A, 0x9A));
}

// Help ▸ Try with a Simulated Board, as someone without a board uses it: the board the product
// is for is offered, its demo opens, Flash writes it, and the same menu pulls it out again.
TEST_F(WindowTest, FlashesASimulatedESP32FromTheHelpMenu) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  ASSERT_TRUE(w.noBoardBanner()->isVisible());
  QMenu* menu = w.simulatedBoardMenu();
  auto* fromBanner = w.noBoardBanner()->findChild<QPushButton*>("trySimulatedBoard");
  ASSERT_TRUE(fromBanner);
  fromBanner->click();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
  menu->hide();
  const auto boards = simulator::SimulatedBoard::simulable();
  ASSERT_EQ(menu->actions().size(), static_cast<qsizetype>(boards.size()));
  // The product's board is the one offered; for any ESP chip, or a board that cannot be
  // simulated, an ESP32.
  for (auto [target, offered] :
       {std::pair{Target::avr(AVRBoard::uno), "Arduino Uno"},
        std::pair{Target::avr(AVRBoard::leonardo), "ESP32"},
        std::pair{Target::esp(ESPChip::esp32c3), "ESP32-C3"}, std::pair{Target::esp(), "ESP32"}}) {
    Product product = model->product();
    product.target = target;
    model->setProduct(product);
    ASSERT_TRUE(menu->defaultAction());
    EXPECT_EQ(menu->defaultAction()->text(), offered);
  }

  // Opened from the keyboard, Return takes the board offered.
  menu->popup(w.mapToGlobal(QPoint(20, 20)));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
  QTest::keyClick(menu, Qt::Key_Return);
  ASSERT_EQ(model->simulatedBoards().size(), 1u);
  const QString path = QString::fromStdString(model->simulatedBoards().front().path);
  const QString label = "Simulated ESP32 (" + path + ")";
  EXPECT_EQ(w.portPicker()->currentText(), label);
  EXPECT_FALSE(w.noBoardBanner()->isVisible());
  EXPECT_EQ(model->product().name, "ESP32 demo");
  EXPECT_TRUE(w.statusText()->text().startsWith("Ready to flash · 4 files · "));
  EXPECT_TRUE(w.statusText()->text().endsWith(" · " + label));
  EXPECT_EQ(menu->actions().back()->text(), "Unplug " + label);

  w.flashAction()->trigger();
  ASSERT_TRUE(waitUntilIdle(*model));
  EXPECT_TRUE(w.statusText()->text().startsWith("Last flash succeeded · ESP32 · "))
      << w.statusText()->text().toStdString();
  EXPECT_TRUE(model->output().plainText().contains("--- Flashing ESP32 demo on " + label + " ---"));

  menu->actions().back()->trigger();
  EXPECT_TRUE(model->ports().empty());
  EXPECT_TRUE(w.noBoardBanner()->isVisible());
  EXPECT_EQ(w.portPicker()->currentText(), path + " (not connected)");
  EXPECT_EQ(menu->actions().size(), static_cast<qsizetype>(boards.size()));
}

// Whenever Flash is off the status line says why, findings about the whole product included;
// after a failed run it says the reason, not only that it failed.
TEST_F(WindowTest, TheStatusLineSaysWhyFlashIsOffAndWhyARunFailed) {
  LanguageOverride english(Language::en);
  SimulatedESPOptions mute;
  mute.silent = true;
  SimulatedESP silent(mute);
  MainWindow& w = open({silent.path()});

  auto twoSketches = avrProduct(AVRBoard::uno, 1000);
  twoSketches.add(FirmwareImage::Role::application, 0, firmwareLike(500), "other.hex");
  auto unticked = espProduct(ESPChip::esp32, 4096);
  for (auto& image : unticked.product.images)
    image.enabled = false;
  struct Case {
    const char* what;
    ProductWithFiles product;
    std::string status;
  };
  const std::vector<Case> cases = {
      {"two sketches for one Arduino", twoSketches, "An Arduino board takes one sketch."},
      {"every file unticked", unticked, "Nothing is ready to flash."},
  };
  for (const Case& c : cases) {
    load(*model, c.product);
    EXPECT_FALSE(w.flashButton()->isEnabled()) << c.what;
    EXPECT_EQ(w.statusText()->text().toStdString(), c.status) << c.what;
  }

  load(*model, espProduct(ESPChip::esp32, 4096));
  QTest::keyClick(&w, Qt::Key_R, Qt::ControlModifier);
  ASSERT_TRUE(waitUntilIdle(*model, 60000));
  EXPECT_TRUE(w.statusText()->text().startsWith("Flashing failed: No connection with the "
                                                "bootloader."))
      << w.statusText()->text().toStdString();
}

// However small the window is made, in the language with the longest words as in English, every
// control keeps the room its text needs and the product name stays readable.
TEST_F(WindowTest, TheSmallestWindowKeepsEveryControlUsable) {
  for (Language language : {Language::en, Language::de}) {
    SCOPED_TRACE(std::string(code(language)));
    LanguageOverride guard(language);
    MainWindow& w = open();
    load(*model, espProduct(ESPChip::esp32, 4096));
    w.setLogShown(true);
    w.resize(400, 300);
    QCoreApplication::processEvents();
    EXPECT_GE(w.width(), w.minimumWidth());
    for (QWidget* control : w.findChildren<QWidget*>()) {
      const bool usable = control->inherits("QAbstractButton") || control->inherits("QComboBox") ||
                          control->inherits("QLineEdit");
      if (!control->isVisible() || !usable) continue;
      EXPECT_GE(control->width(), control->minimumSizeHint().width())
          << control->metaObject()->className() << " " << control->objectName().toStdString();
      EXPECT_GE(control->height(), control->minimumSizeHint().height())
          << control->metaObject()->className() << " " << control->objectName().toStdString();
    }
    auto* name = w.findChild<QLineEdit*>("productName");
    EXPECT_GE(name->width(), name->fontMetrics().horizontalAdvance("Sensor board rev B"));
    window.reset();
  }
}

TEST_F(WindowTest, AFailedActionShowsOneAlertThatOKDismisses) {
  LanguageOverride english(Language::en);
  MainWindow& w = open();
  drop({writeFile("empty.bin", {})});
  ASSERT_TRUE(model->errorMessage().startsWith("Cannot use empty.bin: "));
  ASSERT_TRUE(QTest::qWaitFor([&] { return w.alertBox() != nullptr; }, 2000));
  QMessageBox* alert = w.alertBox();
  EXPECT_EQ(alert->windowTitle(), "Something went wrong");
  EXPECT_EQ(alert->text(), model->errorMessage());
  ASSERT_EQ(alert->buttons().size(), 1);
  EXPECT_EQ(alert->buttons().front()->text(), "OK");
  QTest::mouseClick(alert->buttons().front(), Qt::LeftButton);
  EXPECT_TRUE(model->errorMessage().isEmpty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return w.alertBox() == nullptr; }, 2000));
}

} // namespace
} // namespace tarnwick::testing
