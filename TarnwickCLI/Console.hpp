#pragma once
// Output of tarnwick-cli: plain lines, and on a terminal one progress line that redraws itself.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>

namespace tarnwick::cli {

/// Columns on a terminal: one per character, not per byte, so "Größe" and "Nom du produit" line
/// up in every language.
std::size_t displayWidth(const std::string& text);
/// `text` filled with spaces to `width` columns, on the right or (`right`) on the left.
std::string padded(const std::string& text, std::size_t width, bool right = false);

class Console {
public:
  /// `interactive`: the output is a terminal, so a progress bar may be drawn.
  Console(std::FILE* out, bool interactive);

  /// One line of text; a progress bar on screen is wiped first and drawn again on the next update.
  void line(const std::string& text);
  /// Shows progress (at most twenty redraws a second; the final step always shows).
  void progress(std::int64_t done, std::int64_t total);
  /// The text shown beside the bar.
  void stage(const std::string& text);
  /// Removes the progress bar from the screen.
  void endProgress();

private:
  void draw();
  void wipe();

  std::FILE* out_;
  bool interactive_;
  std::mutex mutex_;
  std::int64_t done_ = 0;
  std::int64_t total_ = 0;
  std::string stage_;
  bool barShown_ = false;
  std::chrono::steady_clock::time_point lastDraw_{};
};

} // namespace tarnwick::cli
