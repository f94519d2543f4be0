#include "FlashSerial/SerialLink.hpp"

#include <chrono>

#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/NetworkLink.hpp"
#include "FlashSerial/NetworkPort.hpp"

namespace tarnwick {

Bytes collectBytes(const std::function<Bytes(double)>& readSome, std::size_t count,
                   double timeout, Bytes& pending) {
  using Clock = std::chrono::steady_clock;
  // Bounded first, so that NaN or a huge timeout cannot overflow the clock arithmetic.
  const auto limit = std::chrono::milliseconds(waitMilliseconds(timeout));
  const auto deadline = Clock::now() + limit;

  Bytes result;
  while (result.size() < count) {
    const auto left = deadline - Clock::now();
    if (left <= Clock::duration::zero()) break;
    const Bytes part = readSome(std::chrono::duration<double>(left).count());
    result.insert(result.end(), part.begin(), part.end());
  }
  if (result.size() > count) {
    pending.assign(result.begin() + static_cast<std::ptrdiff_t>(count), result.end());
    result.resize(count);
  }
  return result;
}

std::unique_ptr<SerialLink> openSerialLink(const std::string& name, std::int64_t baudRate,
                                           const SerialLinkOptions& options) {
  if (looksLikeNetworkPort(name)) {
    const auto address = parseNetworkPort(name);
    if (!address) throw FlashPortError::invalidPath(name);
    auto link = std::make_unique<NetworkLink>(*address, baudRate, options);
    link->open();
    return link;
  }
  auto port = std::make_unique<FlashPort>(name, baudRate, options.allowsTestDevice);
  port->open();
  return port;
}

} // namespace tarnwick
