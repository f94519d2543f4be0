#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "FlashCore/Zlib.hpp"
#include "FlashEngine/CompressionCache.hpp"

using namespace tarnwick;

// Jobs of a flashing station ask for the same writes at once: one compression, one stream.
TEST(CompressionCache, ConcurrentRequestsShareOneCompressionAndChangedBytesGetTheirOwn) {
  CompressionCache cache;
  Bytes data(300 * 1024);
  for (std::size_t i = 0; i < data.size(); ++i)
    data[i] = static_cast<std::uint8_t>(i * 7 / 5);
  std::vector<CompressionCache::Stream> streams(6);
  std::vector<std::thread> jobs;
  for (auto& stream : streams)
    jobs.emplace_back([&] { stream = cache.request(data).get(); });
  for (auto& job : jobs)
    job.join();
  EXPECT_EQ(cache.compressions(), 1u);
  for (const auto& stream : streams)
    EXPECT_EQ(stream, streams[0]);
  EXPECT_EQ(Zlib::decompress(*streams[0], data.size()), data);

  data.back() ^= 1;
  EXPECT_EQ(Zlib::decompress(*cache.request(data).get(), data.size()), data);
  EXPECT_EQ(cache.compressions(), 2u);
  // The oldest entries make room once the cache is full.
  for (std::size_t i = 0; i < CompressionCache::capacity; ++i)
    cache.request(Bytes(1, static_cast<std::uint8_t>(i)));
  cache.request(data).get();
  EXPECT_EQ(cache.compressions(), 2 + CompressionCache::capacity + 1);
}
