// The desktop program's command line.
#include <functional>
#include <gtest/gtest.h>

#include "Localization/Language.hpp"
#include "Tarnwick/Views/CommandLine.hpp"

namespace tarnwick {
namespace {

TEST(CommandLine, ReadsFilesTestDevicesAndModes) {
  LanguageOverride english(Language::en);
  struct Case {
    std::vector<std::string> arguments;
    std::function<void(CommandLine&)> expect;
  };
  const std::vector<Case> cases = {
      {{}, [](CommandLine&) {}},
      {{"Lamp.twflash"}, [](CommandLine& l) { l.files = {"Lamp.twflash"}; }},
      {{"--test-device", "/dev/pts/3", "--test-device=/dev/pts/4", "a.twflash"},
       [](CommandLine& l) {
         l.files = {"a.twflash"};
         l.testDevices = {"/dev/pts/3", "/dev/pts/4"};
       }},
      {{"--screenshots", "shots", "--dark"},
       [](CommandLine& l) {
         l.screenshotFolder = "shots";
         l.dark = true;
       }},
      {{"--station", "Lamp.twflash"},
       [](CommandLine& l) {
         l.station = true;
         l.files = {"Lamp.twflash"};
       }},
      {{"--station=on"},
       [](CommandLine& l) {
         l.station = true;
         l.error = "--station takes no value.";
       }},
      {{"--version"}, [](CommandLine& l) { l.version = true; }},
      {{"-h"}, [](CommandLine& l) { l.help = true; }},
      {{"--", "--odd name.twflash"}, [](CommandLine& l) { l.files = {"--odd name.twflash"}; }},
      {{"-"}, [](CommandLine& l) { l.files = {"-"}; }},
      {{"--test-device"}, [](CommandLine& l) { l.error = "--test-device needs a value."; }},
      {{"--test-device="}, [](CommandLine& l) { l.error = "--test-device needs a value."; }},
      {{"--frobnicate"}, [](CommandLine& l) { l.error = "Unknown option --frobnicate."; }},
      // The board's value is optional, so it is taken only after "=": the next word is a file.
      {{"--simulated-board", "uno", "--simulated-board=nanoOldBootloader"},
       [](CommandLine& l) {
         l.simulatedBoards = {"", "nanoOldBootloader"};
         l.files = {"uno"};
       }},
      {{"--simulated-board="},
       [](CommandLine& l) { l.error = "--simulated-board needs a value."; }},
      {{"--simulated-board=leonardo"},
       [](CommandLine& l) {
         l.error = "The Arduino Leonardo cannot be simulated: it starts its bootloader on a new "
                   "port, which a pseudo-terminal cannot do.";
       }},
      {{"--simulated-board=esp33"},
       [](CommandLine& l) {
         l.error = "“esp33” is no board that can be simulated; choose one of esp8266, esp32, "
                   "esp32s2, esp32s3, esp32c3, esp32c6, uno, nano, nanoOldBootloader, mega2560.";
       }},
      {{"--dark=yes"},
       [](CommandLine& l) {
         l.dark = true;
         l.error = "--dark takes no value.";
       }},
      {{"--version=2"},
       [](CommandLine& l) {
         l.version = true;
         l.error = "--version takes no value.";
       }},
  };
  for (const Case& c : cases) {
    CommandLine expected;
    c.expect(expected);
    CommandLine line = parseCommandLine(c.arguments);
    EXPECT_EQ(line, expected) << (c.arguments.empty() ? "" : c.arguments[0]) << ": " << line.error;
  }
}

} // namespace
} // namespace tarnwick
