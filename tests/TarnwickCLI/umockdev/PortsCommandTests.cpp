// tarnwick-cli's port listing and port choice, run as a user runs it, on fake devices.

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "support/HexFiles.hpp"
#include "support/umockdev/Testbed.hpp"

using tarnwick::testing::Testbed;

namespace {

struct CLIRun {
  int status = -1;
  std::string out;
  std::string err;
};

// Runs tarnwick-cli in English, seeing the testbed this process set up. With `interruptAfter`,
// sends SIGINT once stdout holds that many lines.
CLIRun runCLI(std::vector<std::string> args, std::size_t interruptAfter = 0) {
  int out[2], err[2];
  EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
  EXPECT_EQ(::pipe2(err, O_CLOEXEC), 0);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], 1);
  posix_spawn_file_actions_adddup2(&actions, err[1], 2);
  args.insert(args.begin(), TARNWICK_CLI);
  std::vector<char*> argv;
  for (auto& word : args)
    argv.push_back(word.data());
  argv.push_back(nullptr);
  std::vector<std::string> env = {"LANGUAGE=en", "LANG=C.UTF-8", "PATH=/usr/bin:/bin"};
  for (const char* inherited :
       {"LD_PRELOAD", "UMOCKDEV_DIR", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
    if (const char* value = std::getenv(inherited))
      env.push_back(std::string(inherited) + "=" + value);
  }
  std::vector<char*> envp;
  for (auto& entry : env)
    envp.push_back(entry.data());
  envp.push_back(nullptr);
  pid_t pid = 0;
  EXPECT_EQ(posix_spawn(&pid, TARNWICK_CLI, &actions, nullptr, argv.data(), envp.data()), 0);
  posix_spawn_file_actions_destroy(&actions);
  ::close(out[1]);
  ::close(err[1]);

  CLIRun run;
  bool interrupted = false;
  pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
  for (int open = 2; open > 0;) {
    if (::poll(fds, 2, 20000) <= 0) {
      ADD_FAILURE() << "tarnwick-cli went quiet for 20 s";
      ::kill(pid, SIGKILL);
      break;
    }
    for (int i = 0; i < 2; ++i) {
      if (!(fds[i].revents & (POLLIN | POLLHUP))) continue;
      char buffer[4096];
      const ssize_t n = ::read(fds[i].fd, buffer, sizeof buffer);
      if (n <= 0) {
        fds[i].fd = -1;
        --open;
        continue;
      }
      (i == 0 ? run.out : run.err).append(buffer, static_cast<std::size_t>(n));
    }
    const auto lines = static_cast<std::size_t>(std::count(run.out.begin(), run.out.end(), '\n'));
    if (interruptAfter > 0 && !interrupted && lines >= interruptAfter) {
      ::kill(pid, SIGINT);
      interrupted = true;
    }
  }
  ::close(out[0]);
  ::close(err[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}

} // namespace

TEST(PortsCommand, ListsForPeopleAndForScripts) {
  Testbed bed;
  bed.addUSBPort("ttyUSB0", "1a86", "7523", "USB Serial\n");
  bed.addUSBPort("ttyACM1", "2341", "0043", "Arduino Uno");
  bed.addUSBPort("ttyACM0", "cafe", "0001", "Ga\xff\xfe Board");
  bed.addTTY("ttyS0", bed.addPlatformDevice("serial8250"), "4");

  const CLIRun people = runCLI({"ports"});
  ASSERT_EQ(people.status, 0) << people.err;
  EXPECT_EQ(people.out, "/dev/ttyACM0  Ga\xff\xfe Board          cafe:0001\n"
                        "/dev/ttyACM1  Arduino Uno         2341:0043\n"
                        "/dev/ttyUSB0  USB serial (CH340)  1a86:7523\n"
                        "/dev/ttyS0    ttyS0\n");

  const CLIRun scripts = runCLI({"ports", "--json"});
  ASSERT_EQ(scripts.status, 0) << scripts.err;
  ASSERT_EQ(std::count(scripts.out.begin(), scripts.out.end(), '\n'), 1) << scripts.out;
  const auto list = nlohmann::json::parse(scripts.out);
  const auto expected = nlohmann::json::parse(R"json([
    {"path": "/dev/ttyACM0", "name": "Ga\ufffd\ufffd Board", "vendorID": 51966, "productID": 1,
     "productName": "Ga\ufffd\ufffd Board"},
    {"path": "/dev/ttyACM1", "name": "Arduino Uno", "vendorID": 9025, "productID": 67,
     "productName": "Arduino Uno"},
    {"path": "/dev/ttyUSB0", "name": "USB serial (CH340)", "vendorID": 6790, "productID": 29987,
     "productName": "USB Serial"},
    {"path": "/dev/ttyS0", "name": "ttyS0", "vendorID": null, "productID": null,
     "productName": null}])json");
  EXPECT_EQ(list, expected);
  // The documented key order, not an alphabetical one.
  EXPECT_TRUE(scripts.out.starts_with(R"([{"path":"/dev/ttyACM0","name":)")) << scripts.out;

  // Watching prints each list as a line of its own, at once even into a pipe, until Ctrl-C.
  const CLIRun watching = runCLI({"ports", "--watch", "--json"}, 1);
  EXPECT_EQ(watching.status, 0) << watching.err;
  EXPECT_EQ(watching.out, scripts.out);

  const CLIRun wrong = runCLI({"ports", "--port", "/dev/ttyUSB0"});
  EXPECT_EQ(wrong.status, 2);
}

TEST(PortsCommand, FlashTakesTheOnlyUsbBoardOrAsks) {
  const std::filesystem::path sketch =
      std::filesystem::temp_directory_path() / ("tw-ports-" + std::to_string(::getpid()) + ".hex");
  std::ofstream(sketch) << tarnwick::testing::intelHexOf(tarnwick::Bytes(64, 0x0C));
  struct Cleanup {
    std::filesystem::path path;
    ~Cleanup() { std::filesystem::remove(path); }
  } cleanup{sketch};
  const std::vector<std::string> flash = {"flash", "--target", "avr:uno", sketch.string()};

  Testbed bed;
  bed.addTTY("ttyS0", bed.addPlatformDevice("serial8250"), "4");
  const CLIRun none = runCLI(flash);
  EXPECT_EQ(none.status, 2);
  EXPECT_TRUE(none.err.starts_with("No USB board found.")) << none.err;
  EXPECT_NE(none.err.find("Usage: tarnwick-cli flash"), std::string::npos) << none.err;

  // The only USB board is taken, though a UART is present too. Its device node does not exist
  // here, so the run stops at opening it.
  const std::string uno = bed.addUSBPort("ttyACM0", "2341", "0043", "Arduino Uno");
  const CLIRun one = runCLI(flash);
  EXPECT_EQ(one.status, 1) << one.err;
  EXPECT_NE(one.out.find("Cannot open /dev/ttyACM0"), std::string::npos) << one.out;

  bed.addUSBPort("ttyUSB0", "1a86", "7523", nullptr);
  const CLIRun several = runCLI(flash);
  EXPECT_EQ(several.status, 2);
  EXPECT_TRUE(several.err.starts_with("Several USB boards are connected. Choose one with --port:\n"
                                      "  Arduino Uno  (/dev/ttyACM0)\n"
                                      "  USB serial (CH340)  (/dev/ttyUSB0)\n"))
      << several.err;
}
