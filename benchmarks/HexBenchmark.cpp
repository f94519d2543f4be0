// Converts the largest HEX file the import accepts (a full 4 MB image) and prints how long it
// takes. Adding a large sketch must feel instant, so the time should stay well under a second.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "FlashCore/IntelHex.hpp"
#include "Simulator/DemoFirmware.hpp"

using namespace tarnwick;

int main() {
  constexpr std::int64_t importLimit = 4194304;
  constexpr int rounds = 5;

  const Bytes image = simulator::randomBytes(importLimit, 1);
  const std::string text = simulator::intelHexOf(image, 0, 16, "\r\n");

  std::vector<double> seconds;
  for (int round = 0; round < rounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    const Bytes converted = IntelHex::parse(text, importLimit);
    seconds.push_back(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    if (converted != image) {
      std::fprintf(stderr, "hex_benchmark: the converted image differs from the original\n");
      return 1;
    }
  }
  std::sort(seconds.begin(), seconds.end());
  std::printf("hex_benchmark: %zu bytes of HEX text to a %zu-byte image\n", text.size(),
              image.size());
  std::printf("  best %.3f s, median %.3f s, worst %.3f s over %d rounds (target: < 1 s)\n",
              seconds.front(), seconds[rounds / 2], seconds.back(), rounds);
  return seconds[rounds / 2] < 1.0 ? 0 : 2;
}
