#pragma once
// The flashing station: every board plugged in is flashed at once on a thread of its own, several
// at the same time, with one product, until it is stopped. Its rules (which port holds a new
// board, the quiet time, the other family, one Caterina board at a time, the limit, the two
// stops, the record) serve the command line and the desktop program alike, which only word and
// show what it reports.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
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
#include "FlashEngine/FlashEvent.hpp"
#include "FlashSerial/PortChoice.hpp"
#include "FlashSerial/PortScanner.hpp"
#include "FlashStation/NetworkPorts.hpp"
#include "FlashStation/PortSource.hpp"

namespace tarnwick::station {

struct StationOptions {
  /// Watch only these ports; empty watches all.
  std::set<std::string> onlyPorts;
  /// The engine may open devices that are no serial adapters (pseudo-terminals).
  bool allowsTestDevices = false;
  /// Ports named as test devices: boards although no USB facts come with them. Those that are no
  /// serial adapters are flashed at start, as nothing plugs them in, and a run on them ends
  /// as on a port behind an adapter.
  std::set<std::string> testDevices;
  /// Network serial ports ("rfc2217://HOST:PORT") to watch by connecting to them, as nothing
  /// announces their boards: a board is there while its server holds the connection. Those also
  /// in `onlyPorts` were named on purpose: a board their first connection finds is flashed at
  /// start, as a test device is. Other lists' entries for these names are not heeded.
  std::vector<std::string> networkPorts;
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
  /// The name of a board for people, called on the station's thread; absent: `boardName`.
  std::function<std::string(const SerialPortInfo&)> nameBoard;
};

/// One board, as the station names it.
struct StationBoard {
  std::string path;
  /// The port's name with its device ("Arduino Uno (ttyACM0)").
  std::string name;
  /// The USB serial number of its port, where it has one.
  std::optional<std::string> serialNumber = std::nullopt;
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

/// What the station says about itself; each front end words it in its own way.
struct StationNotice {
  enum class Kind {
    /// Watching; `count` boards present at start are taken at once.
    ready,
    /// `text` names a port to watch that is not there yet.
    waitingForPort,
    /// `text` names a network port whose server cannot be reached, and `detail` says why; the
    /// station keeps trying.
    unreachable,
    /// The product's boards bring their bootloader up on a port of its own: one at a time.
    oneAtATime,
    /// The first stop: no new boards, `count` running boards finish.
    finishing,
    /// The second stop: the running boards are stopped.
    stopping,
    /// The limit, `count`, is met: no new boards.
    limitReached,
    /// The record cannot be kept, and `text` says why: no new boards.
    recordLost,
    /// The station has ended: `count` boards flashed, `failed` failed or stopped, and `text`
    /// why the record was lost (empty when it was kept).
    ended,
  };
  Kind kind = Kind::ready;
  std::int64_t count = 0;
  std::int64_t failed = 0;
  std::string text = {};
  std::string detail = {};
};

/// Receives what happens at the station. Calls come from the station's thread and, for `event`,
/// from the threads of the runs: implementations lock.
class StationReport {
public:
  virtual ~StationReport() = default;
  virtual void notice(const StationNotice& notice) = 0;
  /// A board's run begins.
  virtual void started(const StationBoard& board) = 0;
  /// Each event of a board's run, on the run's thread.
  virtual void event(const StationBoard& board, const FlashEvent& event) = 0;
  virtual void finished(const BoardOutcome& outcome) = 0;
  /// A board on this port is left alone, and why (in the interface language). Never silently.
  virtual void skipped(const StationBoard& board, const std::string& reason) = 0;
  /// Keeps the record of a finished board; why it could not, in the interface language. Called
  /// before `finished`: a board whose record is lost counts as failed.
  virtual std::optional<std::string> record(const BoardOutcome&) { return std::nullopt; }
  /// True once nobody reads what the station reports any more.
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

  StationBoard boardOn(const SerialPortInfo& port) const;
  bool isCandidate(const SerialPortInfo& port) const;
  bool isTestDevice(const std::string& path) const;
  /// Says so and returns true for a board the USB ids show to be of the product's other family.
  bool leftAsOtherFamily(const SerialPortInfo& port);
  void judge(const SerialPortInfo& port, Clock::time_point now);
  void stopTaking();
  bool canTake() const;
  void arrived(const std::vector<SerialPortInfo>& ports, Clock::time_point now);
  /// The source's last list with the network ports that have a board now.
  std::vector<SerialPortInfo> portsNow();
  void sayNetworkNotices();
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

  /// The network ports' boards, while the station runs.
  std::unique_ptr<NetworkPorts> network_;
  std::atomic<bool> networkChanged_ = false;
  /// The last list of the port source.
  std::vector<SerialPortInfo> sourcePorts_;
  /// Network ports whose first connection found their board.
  std::set<std::string> foundAtStart_;
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

} // namespace tarnwick::station
