#include "FlashEngine/CompressionCache.hpp"

#include <thread>

#include "FlashCore/Digest.hpp"
#include "FlashCore/Zlib.hpp"

namespace tarnwick {

std::shared_future<CompressionCache::Stream> CompressionCache::request(const Bytes& data) {
  std::string key = Digest::sha256Hex(data);
  std::promise<Stream> promise;
  std::shared_future<Stream> future;
  {
    std::lock_guard lock(mutex_);
    if (auto it = entries_.find(key); it != entries_.end()) return it->second;
    future = promise.get_future().share();
    entries_.emplace(key, future);
    age_.emplace(inserted_++, key);
    while (entries_.size() > capacity) {
      entries_.erase(age_.begin()->second);
      age_.erase(age_.begin());
    }
  }
  // The thread owns its copy of the bytes and the promise, never the cache: a cancelled job or a
  // cache that goes away does not have to wait for the compressor.
  std::thread([promise = std::move(promise), bytes = data]() mutable {
    try {
      promise.set_value(std::make_shared<const Bytes>(Zlib::compress(bytes)));
    } catch (...) {
      promise.set_exception(std::current_exception());
    }
  }).detach();
  return future;
}

std::size_t CompressionCache::compressions() const {
  std::lock_guard lock(mutex_);
  return inserted_;
}

} // namespace tarnwick
