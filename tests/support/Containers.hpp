#pragma once
// ZIP containers in shapes the product writer never makes, for the tests and the benchmark of
// hostile product files.

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarnwick::testing {

/// One entry of a hand-made container.
struct ZipEntry {
  ZipEntry(std::string name, std::string data, bool stored = false,
           std::optional<mode_t> unixMode = std::nullopt)
      : name(std::move(name)), data(std::move(data)), stored(stored), unixMode(unixMode) {}
  std::string name;
  std::string data;
  /// Stored as it is rather than deflated.
  bool stored;
  /// The Unix file type and mode recorded for it, if any.
  std::optional<mode_t> unixMode;
};

/// A container of `entries` in this order, with sound CRCs and sizes. Throws std::runtime_error
/// when the library refuses an entry.
std::string zipOf(const std::vector<ZipEntry>& entries);

/// `bytes` with every occurrence of `from` replaced by `to` (of the same length, so that a name
/// changes in both the local and the central header).
std::string patched(std::string bytes, const std::string& from, const std::string& to);

/// The container with the entry `name` given a false uncompressed size in both of its headers.
std::string withDeclaredSize(std::string bytes, const std::string& name, std::uint32_t size);

} // namespace tarnwick::testing
