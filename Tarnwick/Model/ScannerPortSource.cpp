// The udev port scanner driven from Qt's event loop with the ports serial servers announce on the
// network after its own, and the model as the application makes it.
#include <QSocketNotifier>
#include <QTimer>

#include "FlashSerial/NetworkDiscovery.hpp"

#include "Tarnwick/Model/FlasherModel.hpp"
#include "Tarnwick/Model/SoundSink.hpp"

namespace tarnwick {

namespace {

class ScannerPortSource final : public PortSource {
public:
  void start(std::function<void(const std::vector<SerialPortInfo>&)> onChange) override {
    onChange_ = std::move(onChange);
    scanner_.onChange = [this](const std::vector<SerialPortInfo>& ports) {
      scanned_ = ports;
      deliver();
    };
    // The browser finds ports on a thread of its own; its lists are taken on the main thread.
    browser_ = std::make_unique<NetworkPortBrowser>([this](const std::vector<SerialPortInfo>& ports) {
      QMetaObject::invokeMethod(
          &mainThread_, [this, ports] {
            announced_ = ports;
            deliver();
          },
          Qt::QueuedConnection);
    });
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

  ~ScannerPortSource() override {
    // No list comes from the browser's thread once it is gone.
    browser_.reset();
  }

private:
  // A board behind a serial server is only connected to when the user chooses its port: without
  // its USB ids, an announced port is never taken for a board just plugged in.
  void deliver() {
    auto ports = scanned_;
    for (SerialPortInfo port : announced_) {
      port.vendorID.reset();
      port.productID.reset();
      ports.push_back(std::move(port));
    }
    onChange_(ports);
  }

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
  std::function<void(const std::vector<SerialPortInfo>&)> onChange_;
  std::vector<SerialPortInfo> scanned_;
  std::vector<SerialPortInfo> announced_;
  QObject mainThread_;
  std::unique_ptr<NetworkPortBrowser> browser_;
};

} // namespace

std::unique_ptr<PortSource> makeScannerPortSource() {
  return std::make_unique<ScannerPortSource>();
}

} // namespace tarnwick
