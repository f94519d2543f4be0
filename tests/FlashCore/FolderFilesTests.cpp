#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "FlashCore/FolderFiles.hpp"

using namespace tarnwick;
namespace fs = std::filesystem;

namespace {
void put(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}
} // namespace

TEST(FolderFiles, CollectsFirmwareFilesWithRelativePaths) {
  fs::path root = fs::temp_directory_path() / ("tw-folder-" + std::to_string(::getpid()));
  fs::remove_all(root);
  put(root / ".pio/build/esp32dev/firmware.bin", "app");
  put(root / ".pio/build/esp32dev/bootloader.BIN", "boot");
  put(root / "sketch.ino.hex", ":00000001FF\n");
  put(root / ".git/objects/blob.bin", "not firmware");
  put(root / "notes.txt", "ignored");
  put(root / "flasher_args.json", "{}");
  put(root / "sub/flasher_args.json", "nested ones are plain files");
  fs::create_symlink("/etc/passwd", root / "link.bin");

  FolderFiles found = readFolderFiles(root);
  std::vector<std::string> names;
  for (const auto& [name, bytes] : found.files)
    names.push_back(name);
  EXPECT_EQ(names,
            (std::vector<std::string>{".pio/build/esp32dev/bootloader.BIN",
                                      ".pio/build/esp32dev/firmware.bin", "sketch.ino.hex"}));
  EXPECT_EQ(found.files[".pio/build/esp32dev/firmware.bin"], (Bytes{'a', 'p', 'p'}));
  ASSERT_TRUE(found.flasherArgs);
  EXPECT_EQ(*found.flasherArgs, (Bytes{'{', '}'}));

  EXPECT_THROW(readFolderFiles(root / "missing"), fs::filesystem_error);
  EXPECT_THROW(readFileBytes(root), fs::filesystem_error);
  EXPECT_THROW(readFileBytes(root / "notes.txt", 3), fs::filesystem_error);
  EXPECT_EQ(readFileBytes(root / "notes.txt").size(), 7u);
  fs::remove_all(root);
}
