#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "FlashSerial/DeviceUsers.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "Localization/Language.hpp"
#include "Simulator/PseudoTerminal.hpp"

using namespace tarnwick;
using namespace tarnwick::simulator;

extern char** environ;

TEST(DeviceUsers, ABusyPortNamesTheProgramHoldingIt) {
  LanguageOverride english(Language::en);
  PseudoTerminal terminal;
  const std::string path = terminal.path();
  const std::string anonymous =
      path + " is already in use by another program. Close that program and try again.";
  EXPECT_EQ(FlashPortError::busy(path).message(), anonymous);

  // A program keeps the device open as its standard input. posix_spawn returns once the child
  // runs, after its file actions opened the device.
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, path.c_str(), O_RDONLY | O_NOCTTY, 0);
  char program[] = "sleep", duration[] = "60";
  char* argv[] = {program, duration, nullptr};
  pid_t pid = 0;
  ASSERT_EQ(posix_spawnp(&pid, "sleep", &actions, nullptr, argv, environ), 0);
  posix_spawn_file_actions_destroy(&actions);
  EXPECT_EQ(deviceHolder(path), (DeviceHolder{"sleep", pid}));
  EXPECT_EQ(FlashPortError::busy(path).message(), path + " is already in use by sleep (process " +
                                                      std::to_string(pid) +
                                                      "). Close that program and try again.");
  ::kill(pid, SIGKILL);
  ::waitpid(pid, nullptr, 0);

  // This process holding it is no other program.
  const int own = ::open(path.c_str(), O_RDWR | O_NOCTTY);
  EXPECT_EQ(FlashPortError::busy(path).message(), anonymous);
  ::close(own);
}

TEST(DeviceUsers, RefusedAccessNamesTheGroupToJoin) {
  const group* dialout = ::getgrnam("dialout");
  const std::filesystem::path device =
      std::filesystem::temp_directory_path() / ("tarnwick-ttyUSB-" + std::to_string(::getpid()));
  std::ofstream(device).put('x');
  const std::string path = device.string();
  struct Cleanup {
    std::string path;
    ~Cleanup() { std::filesystem::remove(path); }
  } cleanup{path};
  if (dialout == nullptr || ::chown(path.c_str(), static_cast<uid_t>(-1), dialout->gr_gid) != 0)
    GTEST_SKIP() << "cannot give a file to the dialout group here";

  LanguageOverride english(Language::en);
  const std::string plain = "Cannot open " + path + ": " + systemErrorText(EACCES) + ".";
  ASSERT_EQ(::chmod(path.c_str(), 0660), 0);
  EXPECT_EQ(FlashPortError::openFailed(path, EACCES).message(),
            "You may not open " + path +
                ": only members of the group “dialout” may use it. Add yourself to that group "
                "with “sudo usermod -aG dialout $USER”, then log out and back in.");

  // Joining would not help when the group may not write, or when it is the superuser's.
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  EXPECT_EQ(FlashPortError::openFailed(path, EACCES).message(), plain);
  ASSERT_EQ(::chmod(path.c_str(), 0660), 0);
  if (::chown(path.c_str(), static_cast<uid_t>(-1), 0) == 0) {
    EXPECT_EQ(accessGroup(path), std::nullopt);
  }
  EXPECT_EQ(accessGroup("/nonexistent/ttyUSB0"), std::nullopt);
}
