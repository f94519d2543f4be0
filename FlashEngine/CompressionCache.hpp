#pragma once
// The compressed form of ESP flash writes, made once and reused by every board flashed from the
// same product in one program run (the desktop's series of boards, a flashing station).

#include <cstddef>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "FlashCore/Bytes.hpp"

namespace tarnwick {

class CompressionCache {
public:
  using Stream = std::shared_ptr<const Bytes>;

  /// Entries kept; the oldest goes first. A product has a handful of writes per chip.
  static constexpr std::size_t capacity = 32;

  CompressionCache() = default;
  CompressionCache(const CompressionCache&) = delete;
  CompressionCache& operator=(const CompressionCache&) = delete;

  /// The zlib stream of `data`, compressing it on a thread of its own unless the same bytes were
  /// compressed or are being compressed already. Entries are keyed by the bytes' SHA-256, so a
  /// changed product or another chip's plan never gets a stale stream. Any thread may call it.
  std::shared_future<Stream> request(const Bytes& data);

  /// How many streams were compressed since construction (not counting reuse).
  std::size_t compressions() const;

private:
  mutable std::mutex mutex_;
  std::map<std::string, std::shared_future<Stream>> entries_;
  std::map<std::size_t, std::string> age_; // insertion order, for eviction
  std::size_t inserted_ = 0;
};

} // namespace tarnwick
