#include "FlashCore/FolderFiles.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <fstream>

namespace tarnwick {

namespace fs = std::filesystem;

namespace {

std::string lowercase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

[[noreturn]] void fail(const fs::path& path, int code) {
  throw fs::filesystem_error("read", path, std::error_code(code, std::generic_category()));
}

} // namespace

Bytes readFileBytes(const fs::path& file, std::uintmax_t maximumSize) {
  std::error_code error;
  auto status = fs::status(file, error);
  if (error) throw fs::filesystem_error("read", file, error);
  if (fs::is_directory(status)) fail(file, EISDIR);
  if (!fs::is_regular_file(status)) fail(file, EINVAL);
  auto size = fs::file_size(file, error);
  if (error) throw fs::filesystem_error("read", file, error);
  if (size > maximumSize) fail(file, EFBIG);

  std::ifstream in(file, std::ios::binary);
  if (!in) fail(file, errno ? errno : EACCES);
  Bytes bytes(static_cast<std::size_t>(size));
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (in.gcount() != static_cast<std::streamsize>(bytes.size())) fail(file, EIO);
  return bytes;
}

FolderFiles readFolderFiles(const fs::path& folder) {
  if (!fs::is_directory(folder)) fail(folder, ENOTDIR);
  FolderFiles result;
  auto options = fs::directory_options::skip_permission_denied;
  fs::recursive_directory_iterator it(folder, options), end;
  for (; it != end; ++it) {
    const fs::directory_entry& entry = *it;
    std::string name = entry.path().filename().string();
    if (entry.is_symlink()) continue;
    if (entry.is_directory()) {
      if (name.starts_with(".") && name != ".pio") it.disable_recursion_pending();
      continue;
    }
    if (!entry.is_regular_file()) continue;
    std::string relative = fs::relative(entry.path(), folder).generic_string();
    if (relative == "flasher_args.json") {
      result.flasherArgs = readFileBytes(entry.path(), maximumFirmwareFileSize);
      continue;
    }
    std::string extension = lowercase(entry.path().extension().string());
    if (extension != ".bin" && extension != ".hex") continue;
    if (entry.file_size() > maximumFirmwareFileSize) continue;
    result.files.emplace(relative, readFileBytes(entry.path()));
  }
  return result;
}

} // namespace tarnwick
