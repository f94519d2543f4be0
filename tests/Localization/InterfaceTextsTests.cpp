#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Localization/AVRTexts.hpp"
#include "Localization/AccessibleTexts.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/Language.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/SettingsTexts.hpp"
#include "Localization/StationWindowTexts.hpp"

using namespace tarnwick;
namespace L = tarnwick::L10n;

namespace {

using enum Language;

// One text of the desktop program: its English wording, the values it inserts, and the languages
// that rightly write it as English does (names, loanwords).
struct Entry {
  std::function<std::string()> text;
  std::string english;
  std::vector<std::string> inserted = {};
  std::set<Language> likeEnglish = {};
};

#define TEXT(call) [] { return L::call; }

const std::set<Language> everyLanguage = {nl, de, fr, es};

const std::vector<Entry>& entries() {
  static const std::vector<Entry> table = {
      {TEXT(Menu::newProduct()), "&New Product"},
      {TEXT(Menu::openProduct()), "&Open Product…"},
      {TEXT(Menu::saveProduct()), "&Save Product"},
      {TEXT(Menu::saveProductAs()), "Save Product &As…"},
      {TEXT(Menu::saveLog()), "Save &Log…"},
      {TEXT(Menu::clearLog()), "&Clear Log"},
      {TEXT(State::flash()), "&Flash"},
      {TEXT(State::ready()), "Ready"},
      {TEXT(State::flashing()), "Flashing"},
      {TEXT(State::lastFlashSucceeded()), "Last flash succeeded"},
      {TEXT(State::lastFlashFailed()), "Last flash failed"},
      {TEXT(Product::newProduct()), "New product"},
      {TEXT(Product::edited()), " (edited)"},
      {TEXT(Product::panelTitle()), "Product", {}, {nl}},
      {TEXT(Product::productButtonsTooltip()),
       "Start a new product, open a product or save this one, with all its files inside"},
      {TEXT(Product::productName()), "Product name"},
      {TEXT(Product::target()), "Target"},
      {TEXT(Product::targetTooltip()), "What this product goes onto: an ESP chip (or whichever "
                                       "chip is connected) or an Arduino board"},
      {TEXT(Product::espFamily()), "ESP", {}, everyLanguage},
      {TEXT(Product::arduinoFamily()), "Arduino (AVR)", {}, everyLanguage},
      {TEXT(Product::espDetectAutomatically()), "ESP (detect automatically)"},
      {TEXT(Product::anESP()), "an ESP"},
      {TEXT(Product::boardName(AVRBoard::nanoOldBootloader)), "Arduino Nano (old bootloader)"},
      {TEXT(Product::notes()), "Notes", {}, {fr}},
      {TEXT(Product::notesPlaceholder()),
       "For example the hardware revision or where the source code is; saved in the product."},
      {TEXT(Product::saveQuestion()), "Save the current product?"},
      {TEXT(Product::unsavedChanges()),
       "The current product has changes that have not been saved."},
      {TEXT(Product::saveButton()), "Save…"},
      {TEXT(Product::dontSave()), "Don't Save"},
      {TEXT(Product::cancel()), "Cancel"},
      {TEXT(Settings::connection()), "Connection"},
      {TEXT(Settings::speedWhileFlashing()), "Speed while flashing"},
      {TEXT(Settings::speedExplanation()),
       "The bootloader starts at 115200 baud; then the app switches to this speed. If it fails "
       "with a long or cheap cable, choose a lower speed. The ESP8266 always flashes at 115200.",
       {"115200", "ESP8266"}},
      {TEXT(Settings::resetIntoBootloader()), "Reset into bootloader"},
      {TEXT(Settings::resetExplanation()),
       "How the app puts the board into its bootloader. Automatic tries both methods; choose "
       "Manual for a board without DTR/RTS.",
       {"DTR/RTS"}},
      {TEXT(Settings::resetModeName(ResetMode::auto_)), "Automatic"},
      {TEXT(Settings::resetModeName(ResetMode::classic)), "USB serial adapter (DTR/RTS)"},
      {TEXT(Settings::resetModeName(ResetMode::usbJTAG)), "Built-in USB (S3, C3, C6)"},
      {TEXT(Settings::resetModeName(ResetMode::manual)), "Manual (BOOT button)"},
      {TEXT(Settings::flashMemory()), "Flash memory"},
      {TEXT(Settings::flashModeLabel()), "Flash mode"},
      {TEXT(Settings::flashModeExplanation()),
       "Written into the bootloader. Leave it on As in file unless the module needs another mode "
       "(DIO almost always works).",
       {"DIO"}},
      {TEXT(Settings::flashModeName(FlashMode::keep)), "As in file"},
      {TEXT(Settings::flashSizeLabel()), "Flash size"},
      {TEXT(Settings::flashSizeExplanation()),
       "Written into the bootloader. As in file usually works; choose the real size if the "
       "firmware must see more flash."},
      {TEXT(Settings::clearOTASelection()), "Clear OTA selection"},
      {TEXT(Settings::clearOTAExplanation()),
       "Erases the otadata partition, so the board starts the new app and not an older OTA "
       "version.",
       {"otadata"}},
      {TEXT(Settings::bootloader()), "Bootloader", {}, everyLanguage},
      {TEXT(Settings::speed()), "Speed"},
      {TEXT(Settings::roomForSketch()), "Room for the sketch"},
      {TEXT(Settings::verificationAndProduction()), "Verification and production"},
      {TEXT(Settings::verifyAfterWriting()), "Verify after writing"},
      {TEXT(Settings::verifyExplanation()),
       "Reads back (Arduino) or lets the chip compute an MD5 (ESP32) and compares. The ESP8266 "
       "ROM cannot; there the bootloader checks every block.",
       {"MD5", "ESP32", "ESP8266"}},
      {TEXT(Settings::flashAutomatically()), "Flash &automatically when connected"},
      {TEXT(Settings::flashAutomaticallyExplanation()),
       "Flashes the product as soon as a new USB board is connected: handy for a series of "
       "boards."},
      {TEXT(Settings::soundWhenDone()), "Sound when done or failed"},
      {TEXT(Images::addFiles()), "Files…"},
      {TEXT(Images::addFilesTooltip()), "Add firmware files (.bin or .hex)", {".bin", ".hex"}},
      {TEXT(Images::buildFolder()), "Build Folder…"},
      {TEXT(Images::buildFolderTooltip()),
       "Take all files from a PlatformIO, Arduino IDE or ESP-IDF build folder, with their "
       "addresses",
       {"PlatformIO", "Arduino IDE", "ESP-IDF"}},
      {TEXT(Images::remove()), "&Remove"},
      {TEXT(Images::chooseAnotherFile()), "&Choose Another File…"},
      {TEXT(Images::file()), "File"},
      {TEXT(Images::sketch()), "Sketch", {}, {nl, de, fr, es}},
      {TEXT(Images::kind()), "Kind"},
      {TEXT(Images::address()), "Address"},
      {TEXT(Images::size()), "Size"},
      {TEXT(Images::locationAndChecks()), "Location and checks"},
      {TEXT(Images::flashThisFile()), "Flash this file"},
      {TEXT(Images::addressTooltip()),
       "Address in flash memory, hexadecimal (for example 0x10000)",
       {"0x10000"}},
      {TEXT(Images::bootloader()), "Bootloader", {}, everyLanguage},
      {TEXT(Images::partitionTable()), "Partition table"},
      {TEXT(Images::otaData()), "OTA data"},
      {TEXT(Images::application()), "Application", {}, {fr}},
      {TEXT(Images::fileSystem()), "File system"},
      {TEXT(Images::other()), "Other"},
      {TEXT(Images::chooseFirmwareFiles()),
       "Choose the firmware files: bootloader, partition table, application and possibly a file "
       "system."},
      {TEXT(Images::chooseSketch()),
       "Choose the sketch (.hex or .bin, without bootloader).",
       {".hex", ".bin"}},
      {TEXT(Images::chooseBuildFolder()),
       "Choose the build folder, for example .pio/build/esp32dev or the Arduino IDE export "
       "folder.",
       {".pio/build/esp32dev"}},
      {TEXT(Images::noFirmwareYet()), "No firmware yet"},
      {TEXT(Images::addFilesHint()),
       "Add the files or drag them here; a whole build folder works too. The app recognises "
       "bootloader, partition table, application and file system and puts them at the right "
       "address."},
      {TEXT(Images::addSketchHint()),
       "Add the sketch (.hex from the Arduino IDE or PlatformIO) or drag it here.",
       {".hex", "PlatformIO"}},
      {TEXT(Images::partitionCount(5)), "5 partitions", {"5"}, {fr}},
      {TEXT(Images::partitionUsage("app0", "1.2 MB", "64")),
       "app0 (1.2 MB, 64 % used)",
       {"app0", "1.2 MB", "64"}},
      {TEXT(Panel::readyToFlash()), "Ready to flash"},
      {TEXT(Panel::addFirmwareToBegin()), "Add firmware to begin"},
      {TEXT(Panel::noPort()), "no port"},
      {TEXT(Panel::flashingFailed()), "Flashing failed"},
      {TEXT(Panel::fileCount(1)), "1 file", {"1"}},
      {TEXT(Panel::plannedRun(3, "0x1000–0x10FFFF", "ttyUSB0")),
       "3 files · 0x1000–0x10FFFF · ttyUSB0",
       {"3", "0x1000–0x10FFFF", "ttyUSB0"}},
      {TEXT(Panel::plannedRun(1, "", "ttyACM0")), "1 file · ttyACM0", {"ttyACM0"}},
      {TEXT(Panel::addressRange("0x0", "0xFFF")), "0x0–0xFFF", {}, everyLanguage},
      {TEXT(Panel::lastSuccess("ESP32-S3", "1.2 MB", "14.2 s")),
       "ESP32-S3 · 1.2 MB in 14.2 s",
       {"ESP32-S3", "1.2 MB", "14.2 s"},
       {nl, de}},
      {TEXT(Panel::lastFailure("No answer.")), "Flashing failed: No answer.", {"No answer."}},
      {TEXT(Notice::noUSBBoard()), "No USB board found. Connect the board with a cable that "
                                   "carries data (not a charge-only cable)."},
      {TEXT(Notice::dismiss()), "Dismiss"},
      {TEXT(Notice::waitUntilFinished()),
       "Wait until flashing has finished. Stopping halfway leaves a board that does not start."},
      {TEXT(Header::applicationName()), "Tarnwick", {}, everyLanguage},
      {TEXT(Header::flashTooltip()), "Put the product onto the connected board (Ctrl+R)"},
      {TEXT(Header::stopTooltip()), "Stop (Ctrl+R)"},
      {TEXT(Header::waitUntilFlashingFinished()), "Wait until flashing has finished"},
      {TEXT(Header::connectionSettingsTooltip()), "Speed, reset, flash settings and verification"},
      {TEXT(Header::automatic()), "Automatic"},
      {TEXT(Header::serialPort()), "Serial port"},
      {TEXT(Header::noPortsFound()), "No ports found"},
      {TEXT(Header::selectPort()), "Select a port…"},
      {TEXT(Header::stop()), "&Stop"},
      {TEXT(Footer::logOptions()), "Log options"},
      {TEXT(Footer::showLog()), "Show &Log"},
      {TEXT(Footer::showLogTooltip()), "Show or hide the log (Ctrl+L)"},
      {TEXT(Footer::counters(12, 3)), "Flashed 12 · Failed 3", {"12", "3"}},
      {TEXT(Footer::autoscroll()), "&Autoscroll"},
      {TEXT(Footer::timestamps()), "&Timestamps"},
      {TEXT(Footer::save()), "&Save…"},
      {TEXT(Footer::saveTooltip()), "Save the log as a text file (Ctrl+Alt+S)"},
      {TEXT(Footer::clearLog()), "&Clear log"},
      {TEXT(Footer::clearLogTooltip()), "Clear the log and counters (Ctrl+K)"},
      {TEXT(Board::notConnected("/dev/ttyUSB3")), "/dev/ttyUSB3 (not connected)", {"/dev/ttyUSB3"}},
      {TEXT(Board::baud(460800)), "460800 baud", {"460800"}, {nl}},
      {TEXT(Board::baudRate()), "Baud rate"},
      {TEXT(Log::log()), "Log"},
      {TEXT(Errors::somethingWentWrong()), "Something went wrong"},
      {TEXT(Errors::ok()), "OK", {}, {nl, de, fr}},
      {TEXT(Accessible::statusLine()), "Status", {}, {nl, de}},
      {TEXT(Accessible::progress()), "Progress"},
      {TEXT(Accessible::progressValue("boot.bin", 45)),
       "boot.bin, 45 %",
       {"boot.bin", "45"},
       {de, es}},
      {TEXT(Accessible::progressValue("", 7)), "7 %", {"7"}, {de, es}},
      {TEXT(Accessible::fileTable()), "Firmware files"},
      {TEXT(Accessible::flashFile("app.bin")), "Flash app.bin", {"app.bin"}},
      {TEXT(Accessible::flashThisFileAnswer(true)), "Flash this file: yes"},
      {TEXT(Accessible::flashThisFileAnswer(false)), "Flash this file: no"},
      {TEXT(Accessible::ofFile("Address", "app.bin")),
       "Address of app.bin",
       {"Address", "app.bin"}},
      {TEXT(Accessible::nothingToReport()), "Nothing to report"},
      {TEXT(Accessible::notAValidAddress("0x1G")), "0x1G: not a valid address", {"0x1G"}},
      {TEXT(Accessible::clearField()), "Clear"},
      {TEXT(Accessible::stationTable()), "Boards", {}, {nl, de}},
      {TEXT(Accessible::unknown()), "Unknown"},
      {TEXT(Accessible::helpTopics()), "Help topics"},
      {TEXT(StationWindow::menuItem()), "Flashing &Station"},
      {TEXT(StationWindow::menuItemTooltip()),
       "Flash every board plugged in with this product, several at once"},
      {TEXT(StationWindow::start()), "Start"},
      {TEXT(StationWindow::stop()), "Stop"},
      {TEXT(StationWindow::stopNow()), "Stop Now"},
      {TEXT(StationWindow::startTooltip()),
       "Flash every board plugged in from now on, several at once (Ctrl+R)"},
      {TEXT(StationWindow::stopTooltip()), "Take no new boards; the running ones finish (Ctrl+R)"},
      {TEXT(StationWindow::stopNowTooltip()),
       "Stop the running boards too: they are left only partly written (Ctrl+R)"},
      {TEXT(StationWindow::alsoConnected()), "Also flash the boards already connected"},
      {TEXT(StationWindow::alsoConnectedTooltip()),
       "Without it, only boards plugged in after pressing Start are flashed"},
      {TEXT(StationWindow::limit()), "Limit:"},
      {TEXT(StationWindow::noLimit()), "No limit"},
      {TEXT(StationWindow::limitTooltip()),
       "Take no new boards once this many have been flashed or are running"},
      {TEXT(StationWindow::recordFile()), "Record file:"},
      {TEXT(StationWindow::noRecordFile()), "None"},
      {TEXT(StationWindow::chooseRecordFile()), "Choose…"},
      {TEXT(StationWindow::forgetRecordFile()), "No Record"},
      {TEXT(StationWindow::recordFileTooltip()),
       "Each finished board is added to this file as a line of JSON: time, port, chip, MAC "
       "address, product and result",
       {"JSON"}},
      {TEXT(StationWindow::recordDialogTitle()), "Record File of the Station"},
      {TEXT(StationWindow::recordFileFilter()), "JSON lines (*.jsonl)", {"*.jsonl"}},
      {TEXT(StationWindow::clearFinished()), "Clear Finished"},
      {TEXT(StationWindow::portColumn()), "Port", {}, {fr}},
      {TEXT(StationWindow::boardColumn()), "Board", {}, {nl, de}},
      {TEXT(StationWindow::serialNumberColumn()), "Serial Number"},
      {TEXT(StationWindow::chipColumn()), "Chip", {}, {nl, de, es}},
      {TEXT(StationWindow::macColumn()), "MAC Address", {"MAC"}},
      {TEXT(StationWindow::stageColumn()), "Stage"},
      {TEXT(StationWindow::progressColumn()), "Progress"},
      {TEXT(StationWindow::resultColumn()), "Result"},
      {TEXT(StationWindow::timeColumn()), "Time"},
      {TEXT(StationWindow::running()), "Running"},
      {TEXT(StationWindow::done()), "Done"},
      {TEXT(StationWindow::failed()), "Failed"},
      {TEXT(StationWindow::stopped()), "Stopped"},
      {TEXT(StationWindow::leftAlone()), "Left alone"},
      {TEXT(StationWindow::percent(45)), "45%", {"45"}, {nl}},
      {TEXT(StationWindow::flashedCount()), "Flashed"},
      {TEXT(StationWindow::failedCount()), "Failed"},
      {TEXT(StationWindow::runningCount()), "Running"},
      {TEXT(StationWindow::boardsPerHour()), "Boards per hour"},
      {TEXT(StationWindow::idleState()),
       "Press Start: then every board plugged in is flashed at once."},
      {TEXT(StationWindow::runningState()),
       "Plug boards in: each one is flashed as soon as it is there."},
      {TEXT(StationWindow::finishingState()), "No new boards are taken; the running ones finish."},
      {TEXT(StationWindow::productLocked()),
       "The station flashes this product: it cannot be changed until the station is stopped."},
      {TEXT(StationWindow::stopBeforeQuitting()),
       "Stop the station first. Boards are flashed with this product until it is stopped, and a "
       "board stopped halfway does not start."},
      {TEXT(StationWindow::ready("Sensor", 0)),
       "--- Station: flashing “Sensor” onto each board plugged in from now on ---",
       {"Sensor"}},
      {TEXT(StationWindow::ready("Sensor", 2)),
       "--- Station: flashing “Sensor” onto the boards connected now and each one plugged in "
       "later ---",
       {"Sensor"}},
      {TEXT(StationWindow::finishing(1)),
       "No new boards are taken. The running board finishes; Stop Now stops it."},
      {TEXT(StationWindow::finishing(3)),
       "No new boards are taken. The 3 running boards finish; Stop Now stops them.",
       {"3"}},
      {TEXT(StationWindow::boardLogPlaceholder()),
       "Click a board to see its own lines of the log."},
      {TEXT(StationWindow::boardLogTitle("ttyUSB0")), "Log of the board on ttyUSB0", {"ttyUSB0"}},
  };
  return table;
}

#undef TEXT

} // namespace

TEST(InterfaceTexts, EveryEntryInEveryLanguageWithItsInsertedValues) {
  for (std::size_t i = 0; i < entries().size(); ++i) {
    const Entry& entry = entries()[i];
    std::string english;
    {
      LanguageOverride guard(en);
      english = entry.text();
    }
    EXPECT_EQ(english, entry.english) << "entry " << i;
    for (Language language : allLanguages) {
      LanguageOverride guard(language);
      const std::string text = entry.text();
      EXPECT_FALSE(text.empty()) << entry.english << " in " << code(language);
      if (language != en) {
        EXPECT_EQ(text == english, entry.likeEnglish.contains(language))
            << entry.english << " in " << code(language) << ": " << text;
      }
      for (const std::string& value : entry.inserted) {
        EXPECT_NE(text.find(value), std::string::npos)
            << entry.english << " in " << code(language) << " lacks " << value;
      }
    }
  }
}

TEST(InterfaceTexts, ShortcutsNameThisPlatformsKeys) {
  // The control key as the menus name it with Qt's translations loaded: "Strg" in German,
  // "Control" in Spanish, "Ctrl" in the others. No text may show the symbols of another
  // platform's keys.
  const std::vector<std::function<std::string()>> tooltips = {[] { return L::Header::flashTooltip(); },
                                                              [] { return L::Header::stopTooltip(); },
                                                              [] { return L::Footer::showLogTooltip(); },
                                                              [] { return L::Footer::saveTooltip(); },
                                                              [] { return L::Footer::clearLogTooltip(); },
                                                              [] { return L::StationWindow::startTooltip(); },
                                                              [] { return L::StationWindow::stopTooltip(); },
                                                              [] { return L::StationWindow::stopNowTooltip(); }};
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    const std::string control = language == de ? "Strg+" : language == es ? "Control+" : "Ctrl+";
    for (const auto& tooltip : tooltips) {
      EXPECT_NE(tooltip().find(control), std::string::npos) << tooltip();
    }
    for (const Entry& entry : entries()) {
      for (const char* mac : {"⌘", "⌥", "⇧", "⌫", "Sandbox"}) {
        EXPECT_EQ(entry.text().find(mac), std::string::npos) << entry.text();
      }
    }
  }
}

TEST(InterfaceTexts, ExplanationsNameTheChoicesAsTheyAreShown) {
  // An explanation that mentions a choice must use the words the picker shows in that language.
  auto label = [](const std::string& name) { return name.substr(0, name.find(" (")); };
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    const std::string asInFile = L::Settings::flashModeName(FlashMode::keep);
    EXPECT_EQ(asInFile, L::Settings::flashSizeName(FlashSize::keep));
    EXPECT_NE(L::Settings::flashModeExplanation().find(asInFile), std::string::npos) << asInFile;
    EXPECT_NE(L::Settings::flashSizeExplanation().find(asInFile), std::string::npos) << asInFile;
    for (ResetMode mode : {ResetMode::auto_, ResetMode::manual}) {
      const std::string name = label(L::Settings::resetModeName(mode));
      EXPECT_NE(L::Settings::resetExplanation().find(name), std::string::npos) << name;
    }
    // The station's own texts name its buttons as they read.
    EXPECT_NE(L::StationWindow::idleState().find(L::StationWindow::start()), std::string::npos);
    EXPECT_NE(L::StationWindow::alsoConnectedTooltip().find(L::StationWindow::start()),
              std::string::npos)
        << L::StationWindow::alsoConnectedTooltip();
    for (std::int64_t running : {1, 3})
      EXPECT_NE(L::StationWindow::finishing(running).find(L::StationWindow::stopNow()),
                std::string::npos)
          << L::StationWindow::finishing(running);
  }
}
