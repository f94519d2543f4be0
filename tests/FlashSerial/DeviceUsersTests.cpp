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
#include "support/PseudoTerminal.hpp"

using namespace tarnwick;

extern char** environ;

namespace {

// A program that keeps `device` open as its standard input until it is killed.
class Holder {
public:
  explicit Holder(const std::string& device) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, device.c_str(), O_RDONLY | O_NOCTTY, 0);
    char program[] = "sleep";
    char duration[] = "60";
    char* argv[] = {program, duration, nullptr};
    // The child has opened the device before posix_spawn returns: the file actions run before
    // the new program does, and glibc returns only once it runs.
    EXPECT_EQ(posix_spawnp(&pid, "sleep", &actions, nullptr, argv, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
  }
  ~Holder() { stop(); }
  void stop() {
    if (pid <= 0) return;
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    pid = 0;
  }
  pid_t pid = 0;
};

} // namespace

TEST(DeviceUsers, ABusyPortNamesTheProgramHoldingIt) {
  LanguageOverride english(Language::en);
  tarnwick::testing::PseudoTerminal terminal;
  const std::string path = terminal.path();
  const std::string anonymous =
      path + " is already in use by another program. Close that program and try again.";
  EXPECT_EQ(deviceHolder(path), std::nullopt);
  EXPECT_EQ(FlashPortError::busy(path).message(), anonymous);

  Holder holder(path);
  ASSERT_GT(holder.pid, 0);
  EXPECT_EQ(deviceHolder(path), (DeviceHolder{"sleep", holder.pid}));
  EXPECT_EQ(FlashPortError::busy(path).message(), path + " is already in use by sleep (process " +
                                                      std::to_string(holder.pid) +
                                                      "). Close that program and try again.");

  // This process holding it, or nobody: the plain message.
  holder.stop();
  const int own = ::open(path.c_str(), O_RDWR | O_NOCTTY);
  ASSERT_GE(own, 0);
  EXPECT_EQ(FlashPortError::busy(path).message(), anonymous);
  ::close(own);
  EXPECT_EQ(deviceHolder("/nonexistent/ttyUSB0"), std::nullopt);
}

TEST(DeviceUsers, RefusedAccessNamesTheGroupToJoin) {
  const group* dialout = ::getgrnam("dialout");
  if (dialout == nullptr) GTEST_SKIP() << "no dialout group on this system";
  const std::filesystem::path device =
      std::filesystem::temp_directory_path() / ("tarnwick-ttyUSB-" + std::to_string(::getpid()));
  std::ofstream(device).put('x');
  struct Cleanup {
    std::filesystem::path path;
    ~Cleanup() { std::filesystem::remove(path); }
  } cleanup{device};
  if (::chown(device.c_str(), static_cast<uid_t>(-1), dialout->gr_gid) != 0)
    GTEST_SKIP() << "cannot give a file to the dialout group here";
  const std::string path = device.string();

  ASSERT_EQ(::chmod(device.c_str(), 0660), 0);
  EXPECT_EQ(accessGroup(path), "dialout");
  {
    LanguageOverride english(Language::en);
    EXPECT_EQ(FlashPortError::openFailed(path, EACCES).message(),
              "You may not open " + path +
                  ": only members of the group “dialout” may use it. Add yourself to that group "
                  "with “sudo usermod -aG dialout $USER”, then log out and back in.");
    EXPECT_EQ(FlashPortError::openFailed(path, ENOENT).message(),
              "Cannot open " + path + ": No such file or directory.")
        << "other reasons keep their message";
  }
  LanguageOverride german(Language::de);
  EXPECT_NE(FlashPortError::openFailed(path, EACCES).message().find("„dialout“"),
            std::string::npos);

  // Joining the group would not help: the group may not write, or it is the superuser's.
  LanguageOverride english(Language::en);
  const std::string plain = "Cannot open " + path + ": " + systemErrorText(EACCES) + ".";
  ASSERT_EQ(::chmod(device.c_str(), 0640), 0);
  EXPECT_EQ(accessGroup(path), std::nullopt);
  EXPECT_EQ(FlashPortError::openFailed(path, EACCES).message(), plain);
  ASSERT_EQ(::chmod(device.c_str(), 0660), 0);
  if (::chown(device.c_str(), static_cast<uid_t>(-1), 0) == 0) {
    EXPECT_EQ(accessGroup(path), std::nullopt);
  }
  EXPECT_EQ(FlashPortError::openFailed("/nonexistent/ttyUSB0", EACCES).message(),
            "Cannot open /nonexistent/ttyUSB0: " + systemErrorText(EACCES) + ".");
}
