#pragma once
// The flashing station: every board plugged in is flashed at once on a thread of its own, several
// at the same time, with one product, until Ctrl+C.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "FlashCore/ProductPackage.hpp"
#include "FlashEngine/AVRLoader.hpp"
#include "FlashEngine/CompressionCache.hpp"
#include "FlashSerial/PortChoice.hpp"
#include "FlashSerial/PortScanner.hpp"

namespace tarnwick::cli {

/// Where the station learns which ports are present: the port scanner, or a fake in tests.
class PortSource {
public:
  using Clock = std::chrono::steady_clock;
  virtual ~PortSource() = default;
  /// Begins watching and returns the ports present now.
  virtual std::vector<SerialPortInfo> start() = 0;
  /// Waits until the ports may have changed, `wake` becomes readable or `deadline` passes, and
  /// returns the new list if there is one. Never reads `wake`.
  virtual std::optional<std::vector<SerialPortInfo>> wait(Clock::time_point deadline,
                                                         int wake) = 0;
};

/// The port scanner as a port source, with the test devices named on the command line (which
/// no scanner lists) present while their device node exists.
class ScannerPortSource : public PortSource {
public:
  explicit ScannerPortSource(
      std::vector<std::string> testDevices = {},
      PortScanner::ChangeSource changes = PortScanner::ChangeSource::automatic);
  /// False when the system gives no notice of ports coming and going.
  bool canWatch() const { return scanner_.descriptor() >= 0; }
  std::vector<SerialPortInfo> start() override;
  std::optional<std::vector<SerialPortInfo>> wait(Clock::time_point deadline, int wake) override;

private:
  std::vector<SerialPortInfo> withTestDevices(std::vector<SerialPortInfo> ports) const;

  PortScanner scanner_;
  std::vector<std::string> testDevices_;
  std::optional<std::vector<SerialPortInfo>> delivered_;
  std::vector<SerialPortInfo> last_;
};

struct StationOptions {
  /// Watch only these ports; empty watches all.
  std::set<std::string> onlyPorts;
  /// Devices that are no serial adapters (pseudo-terminals) may be flashed; those among
  /// `onlyPorts` count as boards and as newly connected at start.
  bool testDevices = false;
  /// Boards already connected at start are flashed too.
  bool now = false;
  /// Take no new board once this many have succeeded or are running.
  std::optional<std::int64_t> limit;
  /// How long a new port must stay before it counts as a board.
  double settleSeconds = 1.2;
  /// How long after its run a port that comes back is the same board restarting.
  double quietSeconds = 6.0;
  /// Where a Caterina bootloader appeared (tests); absent: the engine watches the devices.
  AVRLoader::PortFinder findBootloaderPort;
};

/// One board, as the station names it.
struct StationBoard {
  std::string path;
  /// The port's name with its device ("Arduino Uno (ttyACM0)").
  std::string name;
};

/// How one board's run ended.
struct BoardOutcome {
  enum class Result { done, failed, stopped };
  StationBoard board;
  Result result = Result::done;
  std::optional<std::string> chip;
  std::optional<std::string> mac;
  /// Why it failed, in the interface language; empty when done.
  std::string message;
  double seconds = 0;
  /// The CPU time of the run's own thread.
  double cpuSeconds = 0;
  std::chrono::system_clock::time_point finished;
};

/// Receives what happens at the station. Calls come from the station's thread and, for
/// `connected` and `progress`, from the threads of the runs: implementations lock.
class StationReport {
public:
  virtual ~StationReport() = default;
  /// A message about the station itself (ready, Ctrl+C, limit).
  virtual void notice(const std::string& text) = 0;
  virtual void started(const StationBoard& board) = 0;
  virtual void connected(const StationBoard& board, const std::string& chip,
                         const std::optional<std::string>& mac) = 0;
  virtual void progress(const StationBoard& board, std::int64_t done, std::int64_t total) = 0;
  virtual void finished(const BoardOutcome& outcome) = 0;
  /// A board on this port is left alone, and why (in the interface language). Never silently.
  virtual void skipped(const StationBoard& board, const std::string& reason) = 0;
  /// Keeps the record of a finished board; why it could not, in the interface language. Called
  /// before `finished`: a board whose record is lost counts as failed.
  virtual std::optional<std::string> record(const BoardOutcome&) { return std::nullopt; }
  /// True once nobody reads what the station prints any more.
  virtual bool outputLost() { return false; }
};

class Station {
public:
  /// A station for a checked product; watches nothing until `run`.
  Station(ProductPackage package, StationOptions options, StationReport& report);
  ~Station();
  Station(const Station&) = delete;
  Station& operator=(const Station&) = delete;

  /// Watches `source` and flashes boards until interrupted (or the limit is met) and every run
  /// has ended. Returns how many boards failed or were stopped.
  std::int64_t run(PortSource& source);

  /// First call: no new boards, the running ones finish. Second: the running ones stop as the
  /// Stop button stops them. Safe in a signal handler and from any thread.
  void interrupt();

  std::int64_t flashed() const { return flashed_; }
  std::int64_t failed() const { return failed_; }
  /// Why the record stopped being kept; none while it is kept (or there is none).
  const std::optional<std::string>& recordProblem() const { return recordProblem_; }
  /// Whether the station stopped taking boards because nobody read its output any more.
  bool outputWasLost() const { return outputLost_; }

private:
  struct Run;
  using Clock = std::chrono::steady_clock;

  bool isCandidate(const SerialPortInfo& port) const;
  bool isTestDevice(const std::string& path) const;
  /// Says so and returns true for a board the USB ids show to be of the product's other family.
  bool leftAsOtherFamily(const SerialPortInfo& port);
  void judge(const SerialPortInfo& port, Clock::time_point now);
  void stopTaking();
  bool canTake() const;
  void arrived(const std::vector<SerialPortInfo>& ports, Clock::time_point now);
  void startDue(Clock::time_point now);
  void start(const SerialPortInfo& port, std::optional<std::string> leaveBoardWithMAC);
  void reapFinished();
  void handleInterrupts();
  Clock::time_point nextDeadline(Clock::time_point now) const;
  void wake();

  ProductPackage package_;
  StationOptions options_;
  StationReport& report_;
  const bool oneAtATime_;
  std::shared_ptr<CompressionCache> cache_ = std::make_shared<CompressionCache>();

  int wakeFD_ = -1;
  std::atomic<int> interrupts_ = 0;
  int interruptsSeen_ = 0;
  bool takingBoards_ = true;
  bool limitNoticed_ = false;

  /// The ports of the last list, by path.
  std::map<std::string, SerialPortInfo> present_;
  struct Settling {
    /// When the port appeared.
    Clock::time_point since;
    /// For a board told by its MAC address: the board's it must not have to be written.
    std::optional<std::string> leaveBoardWithMAC;
  };
  /// New ports waiting to stay long enough.
  std::map<std::string, Settling> settling_;
  /// What is known of the board of the last run on each port (and on its bootloader's port).
  std::map<std::string, PortChoice::FlashedBoard> flashedOn_;
  /// Why the record could not be kept, once it could not.
  std::optional<std::string> recordProblem_;
  bool recordNoticed_ = false;
  bool outputLost_ = false;
  std::vector<std::unique_ptr<Run>> runs_;
  std::int64_t flashed_ = 0;
  std::int64_t failed_ = 0;
};

/// The name of a port with its device, as the station's lines begin ("CP2102 (ttyUSB0)").
std::string boardName(const SerialPortInfo& port);

} // namespace tarnwick::cli
