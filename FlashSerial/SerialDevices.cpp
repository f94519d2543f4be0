#include "FlashSerial/SerialDevices.hpp"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "FlashSerial/FlashPort.hpp"

namespace tarnwick {

std::vector<std::string> serialDevicePaths(const std::string& directory) {
  namespace fs = std::filesystem;
  std::vector<std::string> paths;
  std::error_code error;
  fs::directory_iterator entries(directory, error);
  if (error) return paths;
  for (const fs::directory_entry& entry : entries) {
    const std::string name = entry.path().filename().string();
    if (!FlashPort::isValidPath("/dev/" + name)) continue;
    // status() follows links: a link whose device went away is no port.
    const fs::file_status status = entry.status(error);
    if (error || !fs::exists(status) || fs::is_directory(status)) continue;
    paths.push_back((fs::path(directory) / name).string());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

} // namespace tarnwick
