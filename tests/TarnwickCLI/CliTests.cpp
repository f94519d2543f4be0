#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <set>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Simulator/DemoFirmware.hpp"
#include "Simulator/SimulatedAVR.hpp"
#include "Simulator/SimulatedESP.hpp"
#include "TarnwickCLI/Arguments.hpp"
#include "TarnwickCLI/RunCLI.hpp"
#include "support/BuildFolders.hpp"
#include "support/HexFiles.hpp"
#include "support/Products.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;
using namespace tarnwick::testing;
namespace fs = std::filesystem;

namespace {

class CLI : public ::testing::Test {
protected:
  void SetUp() override {
    static int counter = 0;
    root = fs::temp_directory_path() /
           ("tw-cli-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    fs::remove_all(root);
    fs::create_directories(root);
  }
  void TearDown() override { fs::remove_all(root); }
  fs::path root;
};

} // namespace

TEST_F(CLI, PackedProductAndBuildFolderFlashTheSameContents) {
  platformIOBuild("esp32dev", ChipIDs::esp32s3, Layouts::arduinoDefault())
      .writeTo(root / "project");
  SimulatedESPOptions options;
  options.chip = ESPChip::esp32s3;
  SimulatedESP board(options);

  Result direct = runCLI({"flash", "--test-device", "--port", board.path(), "--target", "esp:auto",
                          (root / "project").string()});
  ASSERT_EQ(direct.status, 0) << direct.out << direct.err;
  EXPECT_NE(direct.out.find("Chip: ESP32-S3 · MAC AB:CD:12:34:56:78"), std::string::npos);
  EXPECT_NE(direct.out.find("✓ firmware.bin verified"), std::string::npos);
  EXPECT_TRUE(direct.lastLine().starts_with("--- Done in ")) << direct.out;
  EXPECT_TRUE(direct.out.starts_with("--- Flashing project on ")) << direct.out;
  // Output is not a terminal: no progress bar, plain lines only.
  EXPECT_EQ(direct.out.find('\r'), std::string::npos);
  Bytes fromFolder = board.flash();
  board.reset();

  Result packed = runCLI({"pack", "--target", "esp:auto", "--out", (root / "Sensor").string(),
                          "--name", "Sensor v1", (root / "project").string()});
  ASSERT_EQ(packed.status, 0) << packed.err;
  ASSERT_TRUE(fs::is_regular_file(root / "Sensor.twflash"));
  EXPECT_EQ(ProductPackage::read(root / "Sensor.twflash").product.name, "Sensor v1");

  Result fromFile = runCLI(
      {"flash", "--test-device", "--port", board.path(), (root / "Sensor.twflash").string()});
  ASSERT_EQ(fromFile.status, 0) << fromFile.out << fromFile.err;
  EXPECT_NE(fromFile.out.find("--- Flashing Sensor v1 on "), std::string::npos);
  EXPECT_EQ(board.flash(), fromFolder);

  Result info = runCLI({"info", (root / "Sensor.twflash").string()});
  EXPECT_EQ(info.status, 0);
  EXPECT_NE(info.out.find("ESP32-S3 (esp:esp32s3)"), std::string::npos);
  EXPECT_NE(info.out.find("0x290000"), std::string::npos);

  // Replacing needs --force; the settings of flash and --notes go into the product; a name
  // cannot drive the terminal; every language lines up its columns by characters, not bytes.
  std::vector<std::string> again = {
      "pack", "-t",     "esp:auto", "--out", (root / "Sensor").string(), "--name", "A\x1B]0;x\aB",
      "-b",   "921600", "--notes",  "n",     (root / "project").string()};
  EXPECT_EQ(runCLI(again).status, 2);
  EXPECT_EQ(ProductPackage::read(root / "Sensor.twflash").product.name, "Sensor v1");
  again.push_back("--force");
  ASSERT_EQ(runCLI(again).status, 0);
  auto repacked = ProductPackage::read(root / "Sensor.twflash").product;
  EXPECT_EQ(std::pair(repacked.flashBaud, repacked.notes),
            std::pair(std::int64_t{921600}, std::string("n")));
  for (const char* language : {"en", "nl", "de", "fr", "es"}) {
    std::istringstream lines(
        runCLI({"info", (root / "Sensor.twflash").string()}, {}, language).out);
    std::set<std::size_t> valueColumns, sizeEnds;
    for (std::string line; std::getline(lines, line);) {
      // Columns count characters: drop UTF-8 continuation bytes.
      std::erase_if(line, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
      if (line.starts_with("* "))
        sizeEnds.insert(line.find("  ", line.find("0x") + 12));
      else if (auto colon = line.find(": "); colon != std::string::npos)
        valueColumns.insert(line.find_first_not_of(' ', colon + 1));
      EXPECT_EQ(line.find('\x1B'), std::string::npos) << language;
    }
    EXPECT_EQ(valueColumns.size(), 1u) << language;
    EXPECT_EQ(sizeEnds.size(), 1u) << language;
  }
  Result check = runCLI({"check", (root / "Sensor.twflash").string()});
  EXPECT_EQ(check.status, 0);
}

TEST_F(CLI, SingleFilesAndArduinoSketches) {
  SimulatedESP esp;
  fs::create_directories(root / "files");
  auto write = [&](const std::string& name, const Bytes& bytes) {
    std::ofstream(root / "files" / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
    return (root / "files" / name).string();
  };
  std::string boot = write("bootloader.bin", espBootloader(ChipIDs::esp32));
  std::string parts = write("partitions.bin", partitionTable(Layouts::arduinoDefault()));
  std::string app = write("app.bin", espApplication(ChipIDs::esp32, 30000, 4));
  Result r = runCLI({"flash", "--test-device", "--port", esp.path(), "--target", "esp:esp32",
                     "--no-verify", "--keep-otadata", boot, parts, app});
  ASSERT_EQ(r.status, 0) << r.out << r.err;
  EXPECT_EQ(esp.requests(ESPCommand::spiFlashMD5), 0);
  EXPECT_EQ(r.out.find("otadata"), std::string::npos);
  EXPECT_NE(r.out.find("→ app.bin to 0x10000"), std::string::npos);

  SimulatedAVR uno;
  Bytes sketch = avrSketch(3000, 9);
  std::ofstream(root / "Blink.ino.hex") << intelHexOf(sketch);
  Result avr = runCLI({"flash", "--test-device", "--port", uno.path(), "--target", "avr:uno",
                       (root / "Blink.ino.hex").string()});
  ASSERT_EQ(avr.status, 0) << avr.out << avr.err;
  Bytes flash = uno.flash();
  EXPECT_TRUE(std::equal(sketch.begin(), sketch.end(), flash.begin()));
  EXPECT_NE(avr.out.find("Chip: ATmega328P"), std::string::npos);
}

TEST_F(CLI, BadInputAndFailingBoardsGiveTheirMessagesAndStatus) {
  // A damaged product file.
  platformIOBuild("env", ChipIDs::esp32s3, Layouts::arduinoDefault()).writeTo(root / "p");
  // The directory form, as other programs exchange it, is read with the same checks.
  ASSERT_EQ(runCLI({"pack", "--target", "esp:esp32s3", "--directory", "--out",
                    (root / "P.twflash").string(), (root / "p").string()})
                .status,
            0);
  for (const auto& entry : fs::directory_iterator(root / "P.twflash" / "files")) {
    if (entry.path().string().ends_with("firmware.bin")) {
      std::fstream f(entry.path(), std::ios::in | std::ios::out | std::ios::binary);
      f.seekp(100);
      f.put('\x5A');
    }
  }
  Result damaged =
      runCLI({"flash", "--test-device", "--port", "/dev/null", (root / "P.twflash").string()});
  EXPECT_EQ(damaged.status, 2);
  EXPECT_NE(damaged.err.find("Cannot open P.twflash: firmware.bin is damaged or changed"),
            std::string::npos)
      << damaged.err;
  EXPECT_EQ(runCLI({"info", (root / "nothing.twflash").string()}).status, 2);

  // A board of another chip, flashed from a single file saved over the damaged directory.
  ASSERT_EQ(runCLI({"pack", "--target", "esp:esp32s3", "--force", "--out",
                    (root / "P.twflash").string(), (root / "p").string()})
                .status,
            0);
  ASSERT_TRUE(fs::is_regular_file(root / "P.twflash"));
  SimulatedESPOptions c3;
  c3.chip = ESPChip::esp32c3;
  SimulatedESP wrong(c3);
  Result wrongChip =
      runCLI({"flash", "--test-device", "--port", wrong.path(), (root / "P.twflash").string()});
  EXPECT_EQ(wrongChip.status, 1);
  EXPECT_EQ(wrongChip.err, "✕ ESP32-C3 is connected, but this product is for an ESP32-S3.\n");

  // A board that never answers.
  SimulatedESPOptions mute;
  mute.silent = true;
  SimulatedESP silent(mute);
  Result noSync =
      runCLI({"flash", "--test-device", "--port", silent.path(), (root / "P.twflash").string()});
  EXPECT_EQ(noSync.status, 1);
  EXPECT_TRUE(noSync.err.starts_with("✕ No connection with the bootloader.")) << noSync.err;

  // Wrong firmware is refused, never reported done: a product file with --target, an import
  // error while packing (nothing written), several sketches for one Arduino.
  Result both =
      runCLI({"flash", "-t", "esp:esp32s3", "-p", "/dev/null", (root / "P.twflash").string()});
  EXPECT_EQ(both.err.substr(0, both.err.find('\n')),
            "A product file names its own target; leave out --target.");
  Result wrongPack =
      runCLI({"pack", "-t", "esp:esp32", "--out", (root / "W").string(), (root / "p").string()});
  EXPECT_EQ(wrongPack.status, 2);
  EXPECT_NE(wrongPack.err.find("Error: firmware.bin: Built for ESP32-S3, not for ESP32."),
            std::string::npos);
  EXPECT_FALSE(fs::exists(root / "W.twflash"));
  std::ofstream(root / "a.hex") << intelHexOf(avrSketch(100));
  Result twoSketches = runCLI({"pack", "-t", "avr:uno", "--out", (root / "W").string(),
                               (root / "a.hex").string(), (root / "a.hex").string()});
  EXPECT_EQ(std::pair(twoSketches.status, twoSketches.err),
            std::pair(2, std::string("An Arduino board takes one sketch.\n")));

  // Usage errors: one line and where the help is, on stderr, status 2.
  EXPECT_EQ(runCLI({"--version"}).out, "tarnwick-cli 0.1.0\n");
  EXPECT_EQ(runCLI({}).status, 2);
  Result typo = runCLI({"flsh"});
  EXPECT_EQ(
      std::pair(typo.status, typo.err),
      std::pair(2,
                std::string(
                    "Unknown command “flsh”. Did you mean flash?\nSee “tarnwick-cli --help”.\n")));
  EXPECT_NE(runCLI({"pack", "--bad", "x"}).err.find("Did you mean --baud?"), std::string::npos);
  EXPECT_NE(runCLI({"flash", "--baud", "1", "x"}).err.find("between 9600 and 3000000 baud"),
            std::string::npos);
  EXPECT_NE(runCLI({"flash", "-t", "avr:uno", "--reset", "classic", "x"})
                .err.find("--reset applies to ESP boards only."),
            std::string::npos);
  Result badTarget = runCLI({"flash", "--target", "esp:esp33", (root / "p").string()});
  EXPECT_EQ(badTarget.status, 2);
  EXPECT_NE(badTarget.err.find("Unknown target esp:esp33. Valid targets: esp:auto, esp:esp8266,"),
            std::string::npos);
  EXPECT_NE(runCLI({"info", (root / "nothing.twflash").string()})
                .err.find("nothing.twflash: No such file or directory."),
            std::string::npos);
  std::ofstream(root / "empty.hex").close();
  Result empty = runCLI(
      {"flash", "--target", "avr:uno", "--port", "/dev/null", (root / "empty.hex").string()});
  EXPECT_EQ(empty.status, 2);
  EXPECT_NE(empty.err.find("Cannot use empty.hex: the file is empty."), std::string::npos)
      << empty.err;
  // A file larger than any chip's flash is refused by its size, without reading it (sparse).
  std::ofstream(root / "huge.bin").close();
  fs::resize_file(root / "huge.bin", 129u << 20);
  Result huge = runCLI(
      {"pack", "-t", "esp:esp32", "--out", (root / "H").string(), (root / "huge.bin").string()});
  EXPECT_EQ(huge.status, 2);
  EXPECT_NE(huge.err.find("Cannot use huge.bin: it is larger than 128 MiB"), std::string::npos)
      << huge.err;
  Result device = runCLI({"flash", "--target", "avr:uno", "--port", "/dev/null", "/dev/null"});
  EXPECT_EQ(device.status, 2);
  EXPECT_TRUE(device.err.starts_with("Cannot use null: ")) << device.err;
}

TEST_F(CLI, CtrlCStopsTheRunAndRestartsTheBoard) {
  SimulatedESPOptions options;
  options.paceLine = true;
  SimulatedESP board(options);
  platformIOBuild("env", ChipIDs::esp32, Layouts::arduinoDefault()).writeTo(root / "p");
  Result r = runCLI({"flash", "--test-device", "--baud", "115200", "--port", board.path(),
                     "--target", "esp:esp32", (root / "p").string()},
                    "→ firmware.bin");
  EXPECT_EQ(r.status, 1) << r.out;
  EXPECT_EQ(r.err, "✕ Stopped.\nThe board was restarted and is only partly written.\n");
}

TEST(CLIArguments, OptionsAreParsedAndCheckedPerCommand) {
  using namespace tarnwick::cli;
  Arguments a = parseArguments({"flash", "--port=/dev/ttyUSB0", "--reset", "usbJTAG",
                                "--flash-size", "4MB", "--no-verify", "p.twflash"});
  EXPECT_EQ(a.command, CommandKind::flash);
  EXPECT_EQ(a.port, "/dev/ttyUSB0");
  EXPECT_EQ(a.overrides.reset, ResetMode::usbJTAG);
  EXPECT_EQ(a.overrides.flashSize, FlashSize::mb4);
  EXPECT_TRUE(a.overrides.noVerify);
  EXPECT_EQ(a.inputs, std::vector<std::string>{"p.twflash"});
  EXPECT_EQ(parseArguments({"pack", "--help"}).helpFor, CommandKind::pack);
  EXPECT_EQ(parseArguments({"help", "flash"}).helpFor, CommandKind::flash);
  EXPECT_THROW(parseArguments({"check", "--port", "x", "p"}), UsageError);
  EXPECT_THROW(parseArguments({"flash", "--reset", "sometimes", "p"}), UsageError);
  Arguments shortForms =
      parseArguments({"flash", "-p", "/dev/ttyUSB1", "-b", "9600", "-t", "esp:auto", "d"});
  EXPECT_EQ(std::tuple(shortForms.port, shortForms.overrides.baud, shortForms.target),
            std::tuple(std::optional<std::string>("/dev/ttyUSB1"),
                       std::optional<std::int64_t>(9600), std::optional<std::string>("esp:auto")));
  using Words = std::vector<std::string>;
  EXPECT_EQ(closestMatch("esp32s3", Words{"esp:esp32", "esp:esp32s3"}), "esp:esp32s3");
  EXPECT_EQ(closestMatch("--verify", Words{"--no-verify", "--port"}), "--no-verify");
  EXPECT_FALSE(closestMatch("zzz", Words{"flash", "pack"}));
  EXPECT_THROW(parseArguments({"flash", "--baud", "100", "p"}), UsageError);
  EXPECT_THROW(parseArguments({"flash", "--no-verify=yes", "p"}), UsageError);
  EXPECT_THROW(parseArguments({"pack", "--target", "esp:auto", "dir"}), UsageError);
  EXPECT_TRUE(
      parseArguments({"pack", "--target", "esp:auto", "--directory", "--out", "P", "d"}).directory);
  EXPECT_THROW(parseArguments({"flash", "--directory", "p"}), UsageError);
  EXPECT_THROW(parseArguments({"ports", "extra"}), UsageError);
  EXPECT_EQ(parseArguments({"flash", "--", "--odd-name.bin"}).inputs,
            std::vector<std::string>{"--odd-name.bin"});
}

// tarnwick-simboard as people use it: its usage errors, and a demo build for every board that
// tarnwick-cli flashes into that board (the ESP8266's once came out empty).
TEST_F(CLI, SimulatedBoardsAndTheirDemoBuilds) {
  EXPECT_EQ(runCLI({"--help"}, {}, "en", TARNWICK_SIMBOARD).status, 0);
  EXPECT_EQ(runCLI({}, {}, "en", TARNWICK_SIMBOARD).status, 2);
  EXPECT_EQ(runCLI({"esp33"}, {}, "en", TARNWICK_SIMBOARD).err,
            "tarnwick-simboard: Unknown board “esp33”. “tarnwick-simboard --list” shows the "
            "boards.\nSee “tarnwick-simboard --help”.\n");
  Result leonardo = runCLI({"leonardo"}, {}, "en", TARNWICK_SIMBOARD);
  EXPECT_EQ(leonardo.status, 1);
  EXPECT_NE(leonardo.err.find("new port"), std::string::npos);
  EXPECT_EQ(runCLI({"uno", "--demo-folder", "/proc/no/such"}, {}, "en", TARNWICK_SIMBOARD).status,
            1);

  for (ESPChip chip : ESPChips::all) {
    SCOPED_TRACE(std::string(rawValue(chip)));
    const fs::path folder = root / rawValue(chip);
    writeDemoBuild(chip, folder);
    SimulatedESPOptions options;
    options.chip = chip;
    SimulatedESP board(options);
    Result run = runCLI({"flash", "--test-device", "--port", board.path(), "--target", "esp:auto",
                         folder.string()});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    std::ifstream in(folder / "demo.bin", std::ios::binary);
    const Bytes app((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ASSERT_GT(app.size(), 0x8000u);
    EXPECT_TRUE(std::equal(app.begin(), app.end(), board.flash().begin() + 0x10000));
  }
  writeDemoSketch(root / "blink");
  SimulatedAVR uno;
  EXPECT_EQ(runCLI({"flash", "--test-device", "--port", uno.path(), "--target", "avr:uno",
                    (root / "blink").string()})
                .status,
            0);
}

// A board on another computer: tarnwick-simboard serving one over RFC 2217 with its reset
// circuit, flashed by its port name; and what is wrong with a network port said before a run.
TEST_F(CLI, NetworkPortsAsPeopleUseThem) {
  writeDemoBuild(ESPChip::esp32, root / "esp");
  writeDemoSketch(root / "blink");
  RunningProgram board(TARNWICK_SIMBOARD, {"esp32", "--rfc2217", "0"});
  const std::string port = board.firstLine();
  ASSERT_TRUE(port.starts_with("rfc2217://127.0.0.1:")) << port;
  Result run = runCLI({"flash", "--port", port, "--target", "esp:esp32", (root / "esp").string()});
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_NE(run.out.find("--- Flashing esp on " + port + " ---"), std::string::npos) << run.out;
  EXPECT_EQ(run.lastLine().substr(0, 11), "--- Done in");

  Result malformed = runCLI(
      {"flash", "--port", "rfc2217://pi:0", "--target", "avr:uno", (root / "blink").string()});
  EXPECT_EQ(malformed.status, 2);
  EXPECT_EQ(malformed.err.substr(0, malformed.err.find('\n')),
            "'rfc2217://pi:0' is not a valid network port: write rfc2217://HOST:PORT (an IPv6 "
            "address in brackets, a port from 1 to 65535).");
  Result leonardo = runCLI({"flash", "--port", port, "--target", "avr:leonardo",
                            (root / "blink").string()},
                           {}, "de");
  EXPECT_EQ(leonardo.status, 1);
  EXPECT_NE(leonardo.err.find("Arduino Leonardo-Boards lassen sich nicht über das Netzwerk"),
            std::string::npos)
      << leonardo.err;

  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{"esp32", "--bind", "::1"},
        {"esp32", "--rfc2217", "65536"},
        {"esp32", "--rfc2217"},
        {"esp32", "--rfc2217", "0", "--reset-circuit", "usbJTAG"},
        {"uno", "--rfc2217", "0", "--reset-circuit", "classic"}}) {
    EXPECT_EQ(runCLI(wrong, {}, "en", TARNWICK_SIMBOARD).status, 2) << wrong.back();
  }
}

TEST_F(CLI, PackReplacesOnlyProductsAndNamesWhatWentWrong) {
  std::ofstream(root / "sketch.hex") << intelHexOf(avrSketch(100));
  std::ofstream(root / "sk\x01tch.hex") << intelHexOf(avrSketch(100));
  auto pack = [&](const std::string& out, const std::string& input, bool force) {
    std::vector<std::string> arguments = {"pack", "-t", "avr:uno", "--out", out, input};
    if (force) arguments.push_back("--force");
    return runCLI(arguments);
  };
  // Someone's folder that happens to carry the product extension.
  fs::create_directories(root / "Photos.twflash");
  std::ofstream(root / "Photos.twflash" / "holiday.jpg") << "a photo";
  // A product directory, as other programs write it; one with someone's notes beside the files.
  for (const char* name : {"Old", "Annotated"}) {
    ASSERT_EQ(runCLI({"pack", "-t", "avr:uno", "--directory", "--out", (root / name).string(),
                      (root / "sketch.hex").string()})
                  .status,
              0);
  }
  std::ofstream(root / "Annotated.twflash" / "notes.txt") << "mine";
  // A plain file with the extension, and a product of this app damaged since.
  std::ofstream(root / "Letter.twflash") << "Dear customer";
  ASSERT_EQ(pack((root / "Damaged").string(), (root / "sketch.hex").string(), false).status, 0);
  {
    std::fstream damaged(root / "Damaged.twflash", std::ios::in | std::ios::out | std::ios::binary);
    damaged.seekp(-30, std::ios::end);
    damaged.put('\x7F');
  }

  struct Case {
    const char* what;
    std::string out;
    std::string input;
    int status;
    std::string message; // part of standard error
  };
  const std::string photos = (root / "Photos.twflash").string();
  const std::vector<Case> cases = {
      {"a folder of photos", photos, "sketch.hex", 2, "Photos.twflash is not a product"},
      {"the same with a slash", photos + "/", "sketch.hex", 2, "Photos.twflash is not a product"},
      {"a product directory, with a slash", (root / "Old.twflash").string() + "/", "sketch.hex", 0,
       ""},
      {"a product directory holding more", (root / "Annotated.twflash").string(), "sketch.hex", 2,
       "Annotated.twflash is not a product"},
      {"a plain file", (root / "Letter.twflash").string(), "sketch.hex", 2,
       "Letter.twflash is not a product"},
      {"a damaged product", (root / "Damaged.twflash").string(), "sketch.hex", 0, ""},
      {"a name with a control character", (root / "C").string(), "sk\x01tch.hex", 2,
       "“sk\\x01tch.hex” contains a character that a product cannot store"},
      {"a folder that does not exist", (root / "none" / "P").string(), "sketch.hex", 2,
       "none/P.twflash: the folder does not exist."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Result result = pack(c.out, (root / c.input).string(), true);
    EXPECT_EQ(result.status, c.status) << result.err;
    EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find('\x01'), std::string::npos);
  }
  EXPECT_TRUE(fs::exists(root / "Photos.twflash" / "holiday.jpg"));
  EXPECT_FALSE(fs::exists(root / "Photos.twflash" / ".twflash"));
  EXPECT_TRUE(fs::is_regular_file(root / "Old.twflash"));
  EXPECT_TRUE(fs::exists(root / "Annotated.twflash" / "notes.txt"));
  std::ifstream letter(root / "Letter.twflash");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(letter), {}), "Dear customer");
  EXPECT_NO_THROW(ProductPackage::read(root / "Damaged.twflash"));
  EXPECT_FALSE(fs::exists(root / "C.twflash"));
  // Saving failures say the file and the cause in the user's language.
  Result french = runCLI({"pack", "-t", "avr:uno", "--out", (root / "none" / "P").string(),
                          (root / "sketch.hex").string()},
                         {}, "fr");
  EXPECT_NE(french.err.find("none/P.twflash : le dossier n’existe pas."), std::string::npos)
      << french.err;

  // Text from a product file never reaches the terminal raw, whichever command prints it.
  ASSERT_EQ(runCLI({"pack", "-t", "avr:uno", "--out", (root / "Evil").string(), "--name",
                    "A\x1B]0;x\aB\u202Egnp.exe", (root / "sketch.hex").string()})
                .status,
            0);
  // A file name from a product made elsewhere, named in a finding, a listing and the run.
  const std::string evilName = "a\x1B]0;x\a\u202E.bin";
  ProductWithFiles evil;
  evil.product.target = Target::esp(ESPChip::esp32);
  evil.add(FirmwareImage::Role::application, 0x10000, Bytes(4096, 0xAB), evilName);
  const FirmwareImage& image = evil.product.images[0];
  fs::create_directories(root / "EvilFile.twflash" / "files");
  std::ofstream(root / "EvilFile.twflash" / "product.json") << encodeProduct(evil.product);
  std::ofstream(root / "EvilFile.twflash" / "files" / ProductPackage::storedName(image),
                std::ios::binary)
      .write(reinterpret_cast<const char*>(evil.files[image.id].data()), 4096);
  struct Shown {
    const char* file;
    std::string command;
    std::string escaped; // where it must appear
  };
  const std::vector<Shown> shown = {
      {"Evil.twflash", "info", "A\\x1B]0;x\\x07B\\u202Egnp.exe"},
      {"Evil.twflash", "check", ""},
      {"Evil.twflash", "flash", "A\\x1B]0;x\\x07B\\u202Egnp.exe"},
      {"EvilFile.twflash", "info", "a\\x1B]0;x\\x07\\u202E.bin"},
      {"EvilFile.twflash", "check", "a\\x1B]0;x\\x07\\u202E.bin: "},
      {"EvilFile.twflash", "flash", "a\\x1B]0;x\\x07\\u202E.bin"},
  };
  for (const Shown& s : shown) {
    SCOPED_TRACE(std::string(s.file) + " " + s.command);
    std::vector<std::string> command = {s.command};
    if (s.command == "flash") command.insert(command.end(), {"--test-device", "-p", "/dev/null"});
    command.push_back((root / s.file).string());
    Result result = runCLI(command);
    EXPECT_NE((result.out + result.err).find(s.escaped), std::string::npos)
        << result.out << result.err;
    for (const std::string& text : {result.out, result.err}) {
      EXPECT_EQ(text.find_first_of("\x1B\a"), std::string::npos) << text;
      EXPECT_EQ(text.find("\u202E"), std::string::npos) << text;
    }
  }
}

TEST_F(CLI, HostileProductsAreRefusedWithTheFileNamedBeforeAnyCheck) {
  std::ofstream(root / "sketch.hex") << intelHexOf(avrSketch(100));
  ASSERT_EQ(runCLI({"pack", "-t", "avr:uno", "--directory", "--out", (root / "Good").string(),
                    (root / "sketch.hex").string()})
                .status,
            0);
  ASSERT_EQ(runCLI({"pack", "-t", "avr:uno", "--out", (root / "Single").string(),
                    (root / "sketch.hex").string()})
                .status,
            0);
  auto slurp = [](const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  };
  const std::string record = slurp(root / "Good.twflash" / "product.json");
  const std::string size =
      "\"size\": " +
      std::to_string(ProductPackage::read(root / "Good.twflash").product.images[0].size);
  // The good directory product with another product.json.
  auto variant = [&](const std::string& name, const std::string& json) {
    fs::copy(root / "Good.twflash", root / name, fs::copy_options::recursive);
    std::ofstream(root / name / "product.json", std::ios::trunc) << json;
    return name;
  };
  std::string understated = record;
  understated.replace(understated.find(size), size.size(), "\"size\": 10");
  std::string tooMany = R"({"images": [0)";
  for (int i = 0; i < 256; ++i)
    tooMany += ",0";
  std::string commented = slurp(root / "Single.twflash");
  commented[commented.size() - 2] = 4;
  std::ofstream(root / "Commented.twflash", std::ios::binary) << commented << "note";

  struct Case {
    std::string file;
    std::string message; // after "Cannot open FILE: "
  };
  const std::vector<Case> cases = {
      {variant("Understated.twflash", understated),
       "sketch.hex is damaged: the product lists it with 10 bytes, but it holds"},
      {variant("Deep.twflash", "{\"extra\": " + std::string(16, '[') + std::string(16, ']') + "," +
                                   record.substr(1)),
       "product.json is nested more than 16 levels deep"},
      {variant("Many.twflash", tooMany + "]}"), "the product lists more than 256 files"},
      {variant("Large.twflash", record + std::string(1 << 20, ' ')),
       "product.json is larger than 1 MiB"},
      {"Commented.twflash", "it is not a product file of this app."},
  };
  for (const Case& c : cases) {
    for (std::vector<std::string> command : {std::vector<std::string>{"check"},
                                             {"info"},
                                             {"flash", "--test-device", "-p", "/dev/null"}}) {
      SCOPED_TRACE(c.file + " " + command[0]);
      command.push_back((root / c.file).string());
      Result result = runCLI(command);
      EXPECT_EQ(result.status, 2);
      EXPECT_TRUE(result.err.starts_with("Cannot open " + c.file + ": " + c.message)) << result.err;
      EXPECT_EQ(result.out, "");
    }
  }
  // The same refusal in the user's language.
  const std::vector<std::pair<std::string, std::string>> languages = {
      {"nl", "sketch.hex is beschadigd"},
      {"de", "sketch.hex ist beschädigt"},
      {"fr", "sketch.hex est endommagé"},
      {"es", "sketch.hex está dañado"}};
  for (const auto& [language, message] : languages) {
    Result result = runCLI({"check", (root / "Understated.twflash").string()}, {}, language);
    EXPECT_NE(result.err.find(message), std::string::npos) << language << ": " << result.err;
  }
}
