#include "TarnwickCLI/Console.hpp"

#include <algorithm>

#include "FlashCore/VisibleText.hpp"

namespace tarnwick::cli {

namespace {
constexpr int barWidth = 30;
constexpr auto minimumRedrawInterval = std::chrono::milliseconds(50);
} // namespace

std::size_t displayWidth(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

std::string padded(const std::string& text, std::size_t width, bool right) {
  std::string gap(width > displayWidth(text) ? width - displayWidth(text) : 0, ' ');
  return right ? gap + text : text + gap;
}

Console::Console(std::FILE* out, bool interactive) : out_(out), interactive_(interactive) {}

void Console::line(const std::string& text) {
  std::lock_guard lock(mutex_);
  wipe();
  std::fputs(visibleLines(text).c_str(), out_);
  std::fputc('\n', out_);
  std::fflush(out_);
}

void Console::progress(std::int64_t done, std::int64_t total) {
  std::lock_guard lock(mutex_);
  done_ = done;
  total_ = total;
  if (!interactive_) return;
  auto now = std::chrono::steady_clock::now();
  if (done < total && barShown_ && now - lastDraw_ < minimumRedrawInterval) return;
  lastDraw_ = now;
  draw();
}

void Console::stage(const std::string& text) {
  std::lock_guard lock(mutex_);
  stage_ = visible(text);
  if (interactive_ && barShown_) draw();
}

void Console::endProgress() {
  std::lock_guard lock(mutex_);
  wipe();
  total_ = 0;
  done_ = 0;
}

void Console::draw() {
  if (total_ <= 0) return;
  double fraction = std::clamp(static_cast<double>(done_) / static_cast<double>(total_), 0.0, 1.0);
  int filled = static_cast<int>(fraction * barWidth);
  std::string bar(static_cast<std::size_t>(filled), '#');
  bar.append(static_cast<std::size_t>(barWidth - filled), '.');
  std::fprintf(out_, "\r\033[K[%s] %3d %%  %s", bar.c_str(), static_cast<int>(fraction * 100),
               stage_.c_str());
  std::fflush(out_);
  barShown_ = true;
}

void Console::wipe() {
  if (!barShown_) return;
  std::fputs("\r\033[K", out_);
  barShown_ = false;
}

} // namespace tarnwick::cli
