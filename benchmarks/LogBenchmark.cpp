// Appends 100,000 typical run lines to the log and times one append that forces the trim, once
// with the log alone and once shown in a text view (offscreen), as the window shows it. Appends
// must not slow down as the log grows, and the trim must stay under 50 ms. Times are processor
// time of the main thread.

#include <QApplication>
#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <algorithm>
#include <ctime>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Tarnwick/Model/OutputBuffer.hpp"

using namespace tarnwick;
using Kind = LogSegment::Kind;

namespace {

// The machines that run this are shared; the thread's own processor time is what the log costs,
// without the waits for other programs.
struct Clock {
  using time_point = double;
  static double now() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
  }
};

double secondsSince(double start) { return Clock::now() - start; }

// What a run of an ESP32 product writes, cycled: about 45 characters a line.
std::vector<LogSegment> typicalLine(int i) {
  char time[32];
  std::snprintf(time, sizeof time, "%02d:%02d:%02d.%03d  ", (i / 3600000) % 24, (i / 60000) % 60,
                (i / 1000) % 60, i % 1000);
  std::vector<LogSegment> line{{Kind::timestamp, time}};
  switch (i % 8) {
  case 0:
    line.push_back({Kind::system, "--- Flashing Sensor board on CP2102N (ttyUSB0) ---"});
    break;
  case 1: line.push_back({Kind::meta, "Connecting to the bootloader…"}); break;
  case 2: line.push_back({Kind::response, "Chip: ESP32-S3 · MAC 24:0A:C4:12:34:56"}); break;
  case 3: line.push_back({Kind::meta, "Speed 460800 baud"}); break;
  case 4: line.push_back({Kind::request, "→ firmware.bin to 0x10000 (1.2 MB)"}); break;
  case 5: line.push_back({Kind::response, "← firmware.bin written in 14.2 s"}); break;
  case 6: line.push_back({Kind::response, "✓ firmware.bin verified"}); break;
  default: line.push_back({Kind::system, "--- Done in 17.9 s ---"}); break;
  }
  return line;
}

struct Result {
  std::vector<double> sliceMicroseconds; // mean time per append in each 10,000-line slice
  double trimMilliseconds = 0;
  double worstAppendMilliseconds = 0;
};

Result run(bool withView) {
  constexpr int lines = 100'000;
  constexpr int slice = 10'000;
  Result result;

  std::unique_ptr<QPlainTextEdit> view;
  auto attach = [&](OutputBuffer& buffer) {
    if (!withView) return;
    view = std::make_unique<QPlainTextEdit>();
    view->setReadOnly(true);
    view->resize(900, 500);
    view->show();
    QApplication::processEvents();
    QPlainTextEdit* edit = view.get();
    buffer.attach(edit, {[edit](QTextDocument* storage) {
                           if (!qobject_cast<QPlainTextDocumentLayout*>(storage->documentLayout()))
                             storage->setDocumentLayout(new QPlainTextDocumentLayout(storage));
                           edit->setDocument(storage);
                         },
                         [edit] {
                           auto* bar = edit->verticalScrollBar();
                           bar->setValue(bar->maximum());
                         }});
  };

  {
    OutputBuffer buffer;
    attach(buffer);
    for (int start = 0; start < lines; start += slice) {
      const auto begin = Clock::now();
      for (int i = start; i < start + slice; ++i) {
        const auto one = Clock::now();
        buffer.append(typicalLine(i));
        result.worstAppendMilliseconds =
            std::max(result.worstAppendMilliseconds, secondsSince(one) * 1e3);
      }
      // Let the view catch up as it would between events.
      if (withView) QApplication::processEvents();
      result.sliceMicroseconds.push_back(secondsSince(begin) * 1e6 / slice);
    }
  }

  // A log just under the limit, then the one append that passes it.
  OutputBuffer buffer;
  attach(buffer);
  int i = 0;
  while (buffer.size() < OutputBuffer::defaultMaxCharacters - 200)
    buffer.append(typicalLine(i++));
  if (withView) QApplication::processEvents();
  std::vector<LogSegment> longLine{{Kind::error, "✕ " + std::string(300, 'x')}};
  const qsizetype before = buffer.size();
  const auto begin = Clock::now();
  buffer.append(longLine);
  result.trimMilliseconds = secondsSince(begin) * 1e3;
  if (buffer.size() > OutputBuffer::defaultTrimTarget || buffer.size() >= before) {
    std::fprintf(stderr, "log_benchmark: the append did not trim (%lld → %lld)\n",
                 static_cast<long long>(before), static_cast<long long>(buffer.size()));
  }
  view.reset();
  return result;
}

void report(const char* title, const Result& result) {
  std::printf("%s\n  µs per append, per 10,000-line slice:", title);
  for (double us : result.sliceMicroseconds)
    std::printf(" %.1f", us);
  const double first = result.sliceMicroseconds.front();
  const double last = result.sliceMicroseconds.back();
  std::printf("\n  last slice / first slice: %.2f; slowest single append %.2f ms\n", last / first,
              result.worstAppendMilliseconds);
  std::printf("  trim from just above 2,000,000 characters: %.2f ms (target: < 50 ms)\n",
              result.trimMilliseconds);
}

} // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  const Result alone = run(false);
  report("log_benchmark: the log alone", alone);
  const Result shown = run(true);
  report("log_benchmark: the log shown in a text view (offscreen)", shown);
  return alone.trimMilliseconds < 50 && shown.trimMilliseconds < 50 ? 0 : 2;
}
