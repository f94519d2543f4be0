#include "support/TerminalProbe.hpp"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <linux/capability.h>
#include <stdexcept>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tarnwick::testing {

namespace {

void dropAdminCapability() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[2]{};
  if (::syscall(SYS_capget, &header, data) != 0) return;
  data[CAP_SYS_ADMIN / 32].effective &= ~(1u << (CAP_SYS_ADMIN % 32));
  ::syscall(SYS_capset, &header, data);
}

} // namespace

int runWithoutAdminCapability(const std::function<int()>& body) {
  pid_t child = ::fork();
  if (child < 0) return -1;
  if (child == 0) {
    dropAdminCapability();
    int result = 99;
    try {
      result = body();
    } catch (...) {
    }
    ::_exit(result);
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool isHeldExclusively(const std::string& path) {
  return runWithoutAdminCapability([&] {
           int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
           if (fd >= 0) {
             ::close(fd);
             return 1;
           }
           return errno == EBUSY ? 0 : 2;
         }) == 0;
}

DeviceAlias::DeviceAlias(const std::string& target) {
  static std::atomic<int> counter{0};
  path_ = "/dev/cu.tarnwick-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++);
  if (::symlink(target.c_str(), path_.c_str()) != 0) path_.clear();
}

DeviceAlias::~DeviceAlias() {
  if (!path_.empty()) ::unlink(path_.c_str());
}

void DeviceAlias::retarget(const std::string& target) {
  // A new link renamed over the old one: the name never leads nowhere.
  const std::string next = path_ + ".next";
  if (::symlink(target.c_str(), next.c_str()) != 0 || ::rename(next.c_str(), path_.c_str()) != 0)
    throw std::runtime_error("cannot point " + path_ + " at " + target);
}

int currentThreadId() { return static_cast<int>(::syscall(SYS_gettid)); }

bool waitUntilBlockedInPoll(int threadId, double timeoutSeconds) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::duration<double>(timeoutSeconds);
  const std::string file = "/proc/self/task/" + std::to_string(threadId) + "/syscall";
  do {
    std::ifstream in(file);
    long number = -1;
    // "running" while on a processor, else the number of the system call it sleeps in.
    if (in >> number) {
#ifdef SYS_poll
      if (number == SYS_poll) return true;
#endif
      if (number == SYS_ppoll) return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  } while (Clock::now() < deadline);
  return false;
}

} // namespace tarnwick::testing
