// The udev port scanner driven from Qt's event loop, and the model as the application makes it.
#include <QSocketNotifier>
#include <QTimer>

#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/SoundSink.hpp"

namespace tarnwick {

namespace {

class ScannerPortSource final : public PortSource {
public:
  void start(std::function<void(const std::vector<SerialPortInfo>&)> onChange) override {
    scanner_.onChange = std::move(onChange);
    scanner_.start();
    if (scanner_.descriptor() >= 0) {
      notifier_ = std::make_unique<QSocketNotifier>(scanner_.descriptor(), QSocketNotifier::Read);
      QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
        scanner_.handleReadable();
        armTimer();
      });
    }
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      scanner_.handleTimers();
      armTimer();
    });
    armTimer();
  }

private:
  void armTimer() {
    auto deadline = scanner_.nextDeadline();
    if (!deadline) {
      timer_.stop();
      return;
    }
    auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(*deadline -
                                                                      PortScanner::Clock::now());
    timer_.start(std::max<int>(0, static_cast<int>(wait.count()) + 1));
  }

  PortScanner scanner_;
  std::unique_ptr<QSocketNotifier> notifier_;
  QTimer timer_;
};

} // namespace

std::unique_ptr<PortSource> makeScannerPortSource() {
  return std::make_unique<ScannerPortSource>();
}

} // namespace tarnwick
