#pragma once
// The flashing station in the desktop program: the station's rules on a thread of their own for
// the current product, fed with the model's ports (the scanner's, the simulated boards, the test
// devices), and on the main thread a row per board, the tally, the options and the record file.
// What the station's threads report reaches the main thread through queued calls that hold the
// model weakly, gathered so the view is updated at most 20 times a second however many boards
// run.

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "FlashEngine/RunNarration.hpp"

class QSettings;

namespace tarnwick {

namespace station {
class PortFeed;
class Station;
} // namespace station

class FlasherModel;

/// One board at the station, as its row shows it.
struct StationRow {
  enum class Result { running, done, failed, stopped, leftAlone };
  std::string path;
  /// Tells the runs of a row apart: a port used again shows its new board in the same row.
  int run = 0;
  /// The port's name for people, as the port list shows it.
  QString boardName;
  std::optional<std::string> serialNumber;
  std::optional<std::string> chip;
  std::optional<std::string> mac;
  QString stage;
  qint64 done = 0;
  qint64 total = 0;
  Result result = Result::running;
  /// Why it failed, was stopped or was left alone.
  QString message;
  /// How long its run took, once it has ended, and the CPU time of the run's own thread.
  double seconds = 0;
  double cpuSeconds = 0;
  /// The board's own lines of the log, without the port before them.
  std::vector<std::vector<LogSegment>> log;
};

/// The figures above the table.
struct StationTally {
  std::int64_t flashed = 0;
  std::int64_t failed = 0;
  std::int64_t running = 0;
  /// Boards finished (flashed or failed) in the last ten minutes, times six.
  std::int64_t boardsPerHour = 0;
  bool operator==(const StationTally&) const = default;
};

class StationModel : public QObject {
  Q_OBJECT
public:
  using Clock = std::chrono::steady_clock;

  /// Delays, with the station's own defaults; tests shorten them.
  struct Options {
    /// How long a new port must stay before it counts as a board.
    double settleSeconds = 1.2;
    /// How long after its run a port that comes back may be the same board restarting.
    double quietSeconds = 6.0;
    /// Shortest time between two updates of the rows.
    double updateIntervalSeconds = 0.05;
    /// The time boards per hour are counted by; tests set it.
    std::function<Clock::time_point()> clock = [] { return Clock::now(); };
  };

  enum class Phase {
    idle,
    /// Taking boards.
    running,
    /// The first Stop: no new boards, the running ones finish.
    finishing,
    /// The second Stop: the running boards are being stopped.
    stopping,
  };

  /// How far back boards count for boards per hour.
  static constexpr double boardsPerHourWindowSeconds = 600;

  /// A station for the products of `model`, which must outlive it.
  explicit StationModel(FlasherModel& model, QObject* parent = nullptr);
  StationModel(FlasherModel& model, Options options, QObject* parent = nullptr);
  ~StationModel() override;
  StationModel(const StationModel&) = delete;
  StationModel& operator=(const StationModel&) = delete;

  Phase phase() const { return phase_; }
  bool isRunning() const { return phase_ != Phase::idle; }
  const std::vector<StationRow>& rows() const { return rows_; }
  /// The tally as it stands at `clock()`.
  StationTally tally() const;
  /// Boards already connected at start are flashed too.
  bool alsoConnected() const { return alsoConnected_; }
  /// No new boards once this many succeeded or run; none: no limit.
  std::optional<std::int64_t> limit() const { return limit_; }
  /// Where each finished board gets its line; empty: nowhere. Remembered for the product file.
  QString recordPath() const { return recordPath_; }
  /// Why the record file could not be opened or written, in the interface language; empty while
  /// all is well.
  QString recordProblem() const { return recordProblem_; }
  /// The last thing the station said about itself (ready, finishing, the limit, the counts).
  QString notice() const { return notice_; }
  /// How many times the rows were updated since the model was made.
  int updates() const { return updates_; }

public slots:
  /// Starts the station for the current product; refused (with `notice` saying why) for a product
  /// with errors, a record file that cannot be opened, or while a single board is flashed.
  void start();
  /// The first call takes no new boards and lets the running ones finish; the second stops them.
  void stop();
  /// Stops the running boards too, at once.
  void stopNow();
  /// Start when idle, otherwise Stop: the one key of the station.
  void toggle();
  /// Removes the rows of the boards that have finished.
  void clearFinished();
  void setAlsoConnected(bool on);
  void setLimit(std::optional<std::int64_t> limit);
  /// Chooses the record file for the current product; empty keeps none. A saved product keeps
  /// it in the settings, an unsaved one until it is replaced.
  void setRecordPath(const QString& path);

signals:
  void phaseChanged();
  /// Rows changed or were added at the end; at most once per update interval.
  void rowsChanged();
  /// Finished rows were removed.
  void rowsCleared();
  void tallyChanged();
  void optionsChanged();
  void recordPathChanged();
  void recordProblemChanged();
  void noticeChanged();

private:
  class Report;
  struct Update;
  struct Names;

  /// Takes what the station's threads have reported and shows it.
  void deliver();
  void apply(Update& update);
  StationRow& rowFor(const std::string& path);
  StationRow* findRow(const std::string& path);
  /// A narrated step in the board's row: its stage, and its lines in the board's log.
  void tell(StationRow& row, const NarratedStep& step);
  void appendBoardLine(StationRow& row, const LogSegment& line);
  /// The record file the next start writes to; an earlier problem with a record is forgotten.
  void showRecordPath(const QString& path);
  void ended();
  void setPhase(Phase phase);
  void setNotice(const QString& text);
  void setRecordProblem(const QString& text);
  void productPathChanged();
  void portsChanged();
  void scheduleTallyExpiry();

  FlasherModel& model_;
  Options options_;
  std::unique_ptr<QSettings> settings_;
  std::shared_ptr<Names> names_;
  Phase phase_ = Phase::idle;
  /// The product's name and family for the lines of the station that runs.
  std::string productName_;
  bool avrTarget_ = false;
  std::vector<StationRow> rows_;
  /// Each row's narrator while its run goes on, by path.
  std::map<std::string, RunNarrator> narrators_;
  std::int64_t flashed_ = 0;
  std::int64_t failed_ = 0;
  /// When boards finished, oldest first, as far back as boards per hour looks.
  std::deque<Clock::time_point> finishedAt_;
  bool alsoConnected_ = false;
  std::optional<std::int64_t> limit_;
  QString recordPath_;
  QString recordProblem_;
  QString notice_;
  int updates_ = 0;
  int runsStarted_ = 0;
  std::optional<Clock::time_point> lastUpdate_;
  QTimer updateLater_;
  QTimer tallyExpiry_;

  std::shared_ptr<Report> report_;
  std::unique_ptr<station::PortFeed> feed_;
  std::unique_ptr<station::Station> station_;
  std::thread thread_;
};

} // namespace tarnwick
