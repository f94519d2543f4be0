#include <cctype>
#include <charconv>
#include <dirent.h>
#include <fstream>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "FlashSerial/DeviceUsers.hpp"

namespace tarnwick {

namespace {

std::optional<int> pidNamed(const char* name) {
  int pid = 0;
  const std::string_view text(name);
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
  if (error != std::errc() || end != text.data() + text.size() || pid <= 0) return std::nullopt;
  return pid;
}

bool holds(int pid, dev_t device) {
  const std::string directory = "/proc/" + std::to_string(pid) + "/fd";
  DIR* fds = ::opendir(directory.c_str());
  if (fds == nullptr) return false;
  bool found = false;
  while (const dirent* entry = ::readdir(fds)) {
    if (entry->d_name[0] == '.') continue;
    struct stat target {};
    // stat follows the descriptor's link to the open file itself.
    if (::stat((directory + "/" + entry->d_name).c_str(), &target) == 0 &&
        S_ISCHR(target.st_mode) && target.st_rdev == device) {
      found = true;
      break;
    }
  }
  ::closedir(fds);
  return found;
}

std::string programOf(int pid) {
  std::ifstream comm("/proc/" + std::to_string(pid) + "/comm");
  std::string name;
  std::getline(comm, name);
  return name;
}

} // namespace

std::optional<std::string> accessGroup(const std::string& path) {
  struct stat device {};
  if (::stat(path.c_str(), &device) != 0) return std::nullopt;
  constexpr mode_t readWrite = S_IRGRP | S_IWGRP;
  if ((device.st_mode & readWrite) != readWrite || device.st_gid == 0) return std::nullopt;
  group entry{};
  group* result = nullptr;
  std::vector<char> buffer(16384);
  if (::getgrgid_r(device.st_gid, &entry, buffer.data(), buffer.size(), &result) != 0 ||
      result == nullptr)
    return std::nullopt;
  return std::string(result->gr_name);
}

std::optional<DeviceHolder> deviceHolder(const std::string& path) {
  struct stat device {};
  if (::stat(path.c_str(), &device) != 0 || !S_ISCHR(device.st_mode)) return std::nullopt;
  DIR* processes = ::opendir("/proc");
  if (processes == nullptr) return std::nullopt;
  std::optional<DeviceHolder> holder;
  const int self = static_cast<int>(::getpid());
  while (const dirent* entry = ::readdir(processes)) {
    const auto pid = pidNamed(entry->d_name);
    if (!pid || *pid == self || !holds(*pid, device.st_rdev)) continue;
    std::string program = programOf(*pid);
    if (program.empty()) continue;
    holder = DeviceHolder{std::move(program), *pid};
    break;
  }
  ::closedir(processes);
  return holder;
}

} // namespace tarnwick
