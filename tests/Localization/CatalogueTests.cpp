#include <cerrno>
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>

#include "FlashCore/FirmwareImport.hpp"
#include "FlashCore/IntelHex.hpp"
#include "Localization/AVRTexts.hpp"
#include "Localization/CliTexts.hpp"
#include "Localization/DesktopTexts.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/IssueTexts.hpp"
#include "Localization/Language.hpp"
#include "Localization/ModelTexts.hpp"
#include "Localization/PackageTexts.hpp"
#include "Localization/PortTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/SimulatorTexts.hpp"
#include "Localization/StationTexts.hpp"
#include "Localization/WindowTexts.hpp"

using namespace tarnwick;
namespace L = tarnwick::L10n;

// Every text exists in every language; texts that are sentences differ from the English one.
TEST(Catalogue, EveryTextInEveryLanguage) {
  std::vector<std::function<std::string()>> sentences = {
      [] { return L::Errors::cannotOpen("a.twflash", "r."); },
      [] { return L::Errors::cannotUse("a.bin", "r."); },
      [] { return L::Errors::cannotRead("a.twflash"); },
      [] { return L::Errors::savingFailed("d"); },
      [] { return L::Errors::savingFailedAt("a.twflash", ENOENT); },
      [] { return L::Errors::systemCause(EACCES); },
      [] { return L::Errors::systemCause(EROFS); },
      [] { return L::Errors::systemCause(ENOSPC); },
      [] { return L::Errors::systemCause(EISDIR); },
      [] { return L::Errors::systemCause(ENOTDIR); },
      [] { return L::Errors::systemCause(ENAMETOOLONG); },
      [] { return L::Errors::systemCause(EEXIST); },
      [] { return L::Errors::systemCause(EBUSY); },
      [] { return L::Errors::systemCause(EFBIG); },
      [] { return L::Errors::systemCause(ENOMEM); },
      [] { return L::Errors::systemCause(EIO); },
      [] { return L::Errors::selectPortFirst(); },
      [] { return L::Errors::somethingWentWrong(); },
      [] { return L::Errors::missingFile("a.bin"); },
      [] { return L::Errors::damagedFile("a.bin"); },
      [] { return L::Errors::newerVersion(); },
      [] { return L::Errors::notAPackage(); },
      [] { return L::Errors::wrongSize("a.bin", 1, 2); },
      [] { return L::Errors::entryTooLarge("a.bin", 1 << 20); },
      [] { return L::Errors::tooMuchFirmware(1 << 20); },
      [] { return L::Errors::nestedTooDeeply(16); },
      [] { return L::Errors::tooManyImages(256); },
      [] { return L::Errors::unstorableName("a.bin"); },
      [] { return L::Errors::folderInTheWay(); },
      [] { return L::Issue::nothingToFlash(); },
      [] { return L::Issue::fileMissing(); },
      [] { return L::Issue::oneSketchOnly(); },
      [] { return L::Issue::tooLargeForBoard(32256); },
      [] { return L::Issue::overlaps("b.bin"); },
      [] { return L::Issue::notAligned(); },
      [] { return L::Issue::notAnImage(); },
      [] { return L::Issue::builtFor("ESP32-S3", "ESP32"); },
      [] { return L::Issue::bootloaderBelongsAt(0x1000); },
      [] { return L::Issue::largerThanPartition("app0", 1280); },
      [] { return L::Issue::notInPartition(); },
      [] { return L::Settings::connection(); },
      [] { return L::Settings::speedWhileFlashing(); },
      [] { return L::Settings::resetIntoBootloader(); },
      [] { return L::Settings::flashMemory(); },
      [] { return L::Settings::clearOTASelection(); },
      [] { return L::Settings::verifyAfterWriting(); },
      [] { return L::Settings::flashModeName(FlashMode::keep); },
      [] { return L::Product::newProduct(); },
      [] { return L::Product::espDetectAutomatically(); },
      [] { return L::Product::productName(); },
      [] { return L::Product::boardName(AVRBoard::nanoOldBootloader); },
      [] { return L::Images::partitionTable(); },
      [] { return L::Images::fileSystem(); },
      [] { return L::Cli::unknownCommand("x"); },
      [] { return L::Cli::unknownOption("--x"); },
      [] { return L::Cli::missingValue("--x"); },
      [] { return L::Cli::unexpectedValue("--x"); },
      [] { return L::Cli::badValue("--x", "y"); },
      [] { return L::Cli::missingOption("--x"); },
      [] { return L::Cli::missingInput(); },
      [] { return L::Cli::oneProductFile(); },
      [] { return L::Cli::noInputs(); },
      [] { return L::Cli::unknownTarget("x", {"esp:auto"}); },
      [] { return L::Cli::missingCommand(); },
      [] { return L::Cli::didYouMean("flash"); },
      [] {
        return L::Cli::validValues({"a", "b"});
      },
      [] { return L::Cli::espOnly("--baud"); },
      [] { return L::Cli::targetWithProduct(); },
      [] { return L::Cli::noSuchFile(); },
      [] { return L::Cli::alreadyExists("P.twflash"); },
      [] { return L::Issue::noImageHeaderAt(0x1000); },
      [] { return L::Issue::partitionBeyondFlash("ota_0"); },
      [] { return L::Issue::beyondFlash(); },
      [] { return L::Issue::otaDataTooLarge(); },
      [] { return L::Issue::baudOutOfRange(9600, 3000000); },
      [] { return L::Log::partlyWritten(); },
      [] { return L::Log::esp8266Limits(); },
      [] { return L::Cli::noUSBPort(); },
      [] {
        return L::Cli::severalPorts({"/dev/ttyUSB0", "/dev/ttyUSB1"});
      },
      [] { return L::Cli::noPortsFound(); },
      [] { return L::Cli::packed("P.twflash", 3); },
      [] { return L::Cli::noFindings(); },
      [] { return L::Cli::seeHelp("flash"); },
      [] { return L::Cli::helpOverview(); },
      [] { return L::Cli::helpFlash(); },
      [] { return L::Cli::helpPack(); },
      [] { return L::Cli::helpCheck(); },
      [] { return L::Cli::helpInfo(); },
      [] { return L::Cli::helpPorts(); },
      [] { return L::Cli::helpStation(); },
      [] { return L::Station::ready("Sensor", false); },
      [] { return L::Station::ready("Sensor", true); },
      [] { return L::Station::oneAtATime(); },
      [] { return L::Station::aboutBoard("Arduino Uno (ttyACM0)", L::Station::started()); },
      [] { return L::Station::failed("r"); },
      [] { return L::Station::status({}, 3, 1); },
      [] {
        return L::Station::status({{"ttyUSB0", 45}, {"ttyUSB1", 5}}, 3, 1);
      },
      [] { return L::Station::finishing(1); },
      [] { return L::Station::finishing(3); },
      [] { return L::Station::stopping(); },
      [] { return L::Station::limitReached(50); },
      [] { return L::Station::summary(12, 1); },
      [] { return L::Station::limitValue(); },
      [] { return L::Station::cannotOpenRecord("b.jsonl", "r"); },
      [] { return L::Station::cannotWriteRecord("b.jsonl", "r"); },
      [] { return L::Station::needsTestDevice("/dev/pts/3"); },
      [] {
        return L::Station::status({{"3", 45}, {"12", 5}}, 3, 1, true);
      },
      [] { return L::Station::otherFamily(true); },
      [] { return L::Station::otherFamily(false); },
      [] { return L::Station::leftAlone(L::Station::sameSerialNumber()); },
      [] { return L::Station::cannotTell(); },
      [] { return L::Station::sameBoardByMAC(); },
      [] { return L::Station::notTakingBoards(); },
      [] { return L::Station::recordLost("r"); },
      [] { return L::Station::waitingForPort("/dev/ttyUSB0"); },
      [] { return L::Station::outputLost(true); },
      [] { return L::Station::outputLost(false); },
      [] { return L::Station::noDevicePath("ttyUSB0"); },
      [] { return L::Station::didYouMeanDevice("/dev/ttyUSB0"); },
      [] { return L::Log::notWritten(); },
      [] { return L::Desktop::noRunToPicture(); },
      [] { return L::Window::opensAfterRun("Lamp.twflash"); },
      [] { return L::Find::findInLog(); },
      [] { return L::Find::findNext(); },
      [] { return L::Find::findPrevious(); },
      [] { return L::Find::placeholder(); },
      [] { return L::Find::matchOf(3, 12); },
      [] { return L::Find::noMatches(); },
      [] { return L::Ports::usbSerial("CH340"); },
      [] { return L::Ports::severalUSBBoards(); },
      [] { return L::Ports::cannotWatch(); },
      [] { return L::Errors::portBusyWith("/dev/ttyUSB0", "minicom", 4242); },
      [] { return L::Errors::portAccessDenied("/dev/ttyUSB0", "dialout"); },
      [] { return IntelHex::ParseError{IntelHex::ParseError::invalidLine{5}}.message(); },
      [] { return IntelHex::ParseError{IntelHex::ParseError::checksum{5}}.message(); },
      [] { return IntelHex::ParseError{IntelHex::ParseError::noData{}}.message(); },
      [] { return IntelHex::ParseError{IntelHex::ParseError::tooLarge{}}.message(); },
      [] { return FirmwareImport::ImportError{FirmwareImport::ImportError::empty{"a"}}.message(); },
      [] {
        return FirmwareImport::ImportError{FirmwareImport::ImportError::nothingFound{}}.message();
      },
      [] { return L::Simulator::help(); },
      [] { return L::Simulator::unknownBoard("x"); },
      [] { return L::Simulator::cannotSimulate("Arduino Micro"); },
      [] { return L::Simulator::unknownOption("--x"); },
      [] { return L::Simulator::missingValue("--demo-folder"); },
      [] { return L::Simulator::missingBoard(); },
      [] { return L::Simulator::seeHelp(); },
      [] { return L::Simulator::cannotOpenTerminal("r"); },
      [] { return L::Simulator::cannotWriteDemo("d", "r"); },
      [] { return L::Simulator::serving("ESP32", "/dev/pts/3"); },
      [] { return L::Simulator::demoWritten("d"); },
      [] { return L::Desktop::notSimulable("esp33", "esp32, uno"); },
      [] { return L::Model::simulatedBoard("ESP32", "/dev/pts/3"); },
      [] { return L::Model::simulatedBoardPluggedIn("Simulated ESP32 (/dev/pts/3)"); },
      [] { return L::Model::simulatedBoardUnplugged("Simulated ESP32 (/dev/pts/3)"); },
      [] { return L::Model::demoProduct("ESP32"); },
      [] { return L::Window::trySimulatedBoard(); },
      [] { return L::Window::trySimulatedBoardTooltip(); },
      [] { return L::Window::unplugSimulatedBoard("ESP32", "/dev/pts/3"); },
      [] { return L::Simulator::missingSetting("--rfc2217"); },
      [] { return L::Simulator::invalidTCPPort("x"); },
      [] { return L::Simulator::invalidResetCircuit("usbJTAG", "ESP32"); },
      [] { return L::Simulator::needsRFC2217("--bind"); },
      [] { return L::Simulator::cannotListen("127.0.0.1", "r"); },
      [] { return L::Simulator::servingNetwork("ESP32", "rfc2217://127.0.0.1:2000"); },
      [] { return L::Cli::invalidNetworkPort("rfc2217://pi"); },
      [] { return L::Log::linesUnconfirmed(); },
      [] { return L::Model::networkPort("rfc2217://pi-rack-1:4001"); },
      [] { return L::NetworkPorts::explanation(); },
      [] { return L::NetworkPorts::notAHost("pi rack"); },
      [] { return L::NetworkPorts::notAPortNumber(); },
      [] { return L::NetworkPorts::onlyRFC2217(); },
      [] { return L::Station::cannotReach("rfc2217://pi:4001", "r"); },
  };
  for (std::size_t i = 0; i < sentences.size(); ++i) {
    std::set<std::string> versions;
    for (Language language : allLanguages) {
      LanguageOverride guard(language);
      std::string text = sentences[i]();
      EXPECT_FALSE(text.empty()) << i << " " << code(language);
      // French puts one plain space before a colon, everywhere alike.
      for (auto at = text.find(": "); language == Language::fr && at != std::string::npos;
           at = text.find(": ", at + 1))
        EXPECT_EQ(text[at - 1], ' ') << text;
      versions.insert(text);
    }
    // At least four distinct versions: two languages may share a loanword ("Bootloader").
    EXPECT_GE(versions.size(), 4u) << "text " << i;
  }
  // Option tables: descriptions start in one column, counted in characters, at least two apart.
  for (Language language : allLanguages) {
    LanguageOverride guard(language);
    for (const std::string& help :
         {L::Cli::helpFlash(), L::Cli::helpPack(), L::Cli::helpStation()}) {
      std::set<std::size_t> columns;
      std::istringstream lines(help);
      for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("  -")) continue;
        std::erase_if(line, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
        columns.insert(line.find_first_not_of(' ', line.find("  ", 3)));
      }
      EXPECT_EQ(columns.size(), 1u) << code(language);
    }
  }
  LanguageOverride english(Language::en);
  EXPECT_EQ(L::Errors::cannotOpen("P.twflash", "it is not a product file of this app."),
            "Cannot open P.twflash: it is not a product file of this app.");
  EXPECT_EQ(L::Issue::largerThanPartition("app0", 1280), "Larger than partition app0 (1280 KB).");
  EXPECT_EQ(L::Settings::bootloaderName(AVRBoard::mega2560), "Wiring (STK500v2)");
}
