// The engine's headers come before Qt's: Qt defines `emit` as a macro, and JobContext has a
// member of that name.
#include "FlashStation/PortSource.hpp"
#include "FlashStation/Station.hpp"
#include "FlashStation/StationRecord.hpp"

#include "Tarnwick/Model/StationModel.hpp"

#include <QCoreApplication>
#include <QPointer>
#include <QSettings>
#include <QTime>

#include <algorithm>
#include <mutex>
#include <system_error>
#include <variant>

#include "FlashCore/Digest.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/StationTexts.hpp"
#include "Localization/StationWindowTexts.hpp"
#include "Tarnwick/Model/FlasherModel.hpp"

namespace tarnwick {

namespace {

using Clock = StationModel::Clock;

namespace Keys {
/// The record file of each product file, by the product file's path.
constexpr const char* recordFiles = "station/recordFiles";
constexpr const char* alsoConnected = "station/alsoConnected";
constexpr const char* limit = "station/limit";
} // namespace Keys

QString qs(const std::string& text) { return QString::fromStdString(text); }

// Which exact product the boards got: the digest of product.json as saving the product in
// memory writes it, so an unsaved or edited product is told apart from the file on disk.
std::string recordDigest(const Product& product) {
  const std::string record = encodeProduct(product);
  return Digest::sha256Hex(
      ByteView(reinterpret_cast<const std::uint8_t*>(record.data()), record.size()));
}

} // namespace

// MARK: - From the station's threads to the main thread

/// What the station's threads reported since the last update, in order. Progress of a board is
/// kept only as the latest report since its last other event: nobody can see the steps between.
struct StationModel::Update {
  struct Started {
    station::StationBoard board;
  };
  struct Event {
    std::string path;
    FlashEvent event;
  };
  struct Finished {
    station::BoardOutcome outcome;
  };
  struct Skipped {
    station::StationBoard board;
    std::string reason;
  };
  struct Notice {
    station::StationNotice notice;
  };
  /// The station's thread has left the station.
  struct Ended {};
  using Item = std::variant<Started, Event, Finished, Skipped, Notice, Ended>;
  std::vector<Item> items;
};

class StationModel::Report : public station::StationReport {
public:
  Report(QPointer<StationModel> model, std::unique_ptr<station::StationRecord> record)
      : model_(std::move(model)), record_(std::move(record)) {}

  void notice(const station::StationNotice& notice) override { push({Update::Notice{notice}}); }
  void started(const station::StationBoard& board) override {
    push({Update::Started{board}}, board.path);
  }
  void event(const station::StationBoard& board, const FlashEvent& event) override {
    std::lock_guard lock(mutex_);
    if (std::holds_alternative<FlashEvents::Progress>(event)) {
      if (auto last = lastProgress_.find(board.path); last != lastProgress_.end()) {
        std::get<Update::Event>(pending_.items[last->second]).event = event;
        return;
      }
      pending_.items.push_back(Update::Event{board.path, event});
      lastProgress_[board.path] = pending_.items.size() - 1;
      scheduleLocked();
      return;
    }
    lastProgress_.erase(board.path);
    pending_.items.push_back(Update::Event{board.path, event});
    scheduleLocked();
  }
  void finished(const station::BoardOutcome& outcome) override {
    push({Update::Finished{outcome}}, outcome.board.path);
  }
  void skipped(const station::StationBoard& board, const std::string& reason) override {
    push({Update::Skipped{board, reason}}, board.path);
  }
  std::optional<std::string> record(const station::BoardOutcome& outcome) override {
    return record_ ? record_->keep(outcome) : std::nullopt;
  }
  /// Called by the station's thread as it leaves.
  void end() { push({Update::Ended{}}); }

  /// What was reported since the last call; the next report asks for an update again.
  Update take() {
    std::lock_guard lock(mutex_);
    Update update = std::move(pending_);
    pending_ = {};
    lastProgress_.clear();
    scheduled_ = false;
    return update;
  }

private:
  void push(Update::Item item, const std::string& path = {}) {
    std::lock_guard lock(mutex_);
    if (!path.empty()) lastProgress_.erase(path);
    pending_.items.push_back(std::move(item));
    scheduleLocked();
  }
  // One queued call at a time: whatever is reported before it runs goes with it.
  void scheduleLocked() {
    if (scheduled_) return;
    scheduled_ = true;
    QObject* mainContext = QCoreApplication::instance();
    if (!mainContext) return;
    QMetaObject::invokeMethod(
        mainContext,
        [model = model_] {
          if (model) model->deliver();
        },
        Qt::QueuedConnection);
  }

  const QPointer<StationModel> model_;
  const std::unique_ptr<station::StationRecord> record_;
  std::mutex mutex_;
  Update pending_;
  /// Where the latest progress of each board is in `pending_`, while nothing else of it came
  /// after.
  std::map<std::string, std::size_t> lastProgress_;
  bool scheduled_ = false;
};

/// The names the station gives boards, kept by the main thread and read by the station's: the
/// program's own ports are named as the port list names them ("Simulated ESP32 (/dev/pts/4)").
struct StationModel::Names {
  std::mutex mutex;
  std::map<std::string, std::string> byPath;
};

// MARK: - Life cycle

StationModel::StationModel(FlasherModel& model, QObject* parent)
    : StationModel(model, Options{}, parent) {}

StationModel::StationModel(FlasherModel& model, Options options, QObject* parent)
    : QObject(parent), model_(model), options_(std::move(options)),
      settings_(std::make_unique<QSettings>()), names_(std::make_shared<Names>()) {
  alsoConnected_ = storedSwitch(*settings_, Keys::alsoConnected, false);
  bool valid = false;
  const qint64 stored = settings_->value(Keys::limit).toLongLong(&valid);
  if (valid && stored > 0) limit_ = stored;

  updateLater_.setSingleShot(true);
  connect(&updateLater_, &QTimer::timeout, this, &StationModel::deliver);
  tallyExpiry_.setSingleShot(true);
  connect(&tallyExpiry_, &QTimer::timeout, this, [this] {
    emit tallyChanged();
    scheduleTallyExpiry();
  });
  connect(&model_, &FlasherModel::productURLChanged, this, &StationModel::productPathChanged);
  // What was said about the last product (why it could not start, the last counts) is not said
  // about the next.
  for (auto signal : {&FlasherModel::productChanged, &FlasherModel::filesChanged})
    connect(&model_, signal, this, [this] {
      if (!isRunning()) setNotice({});
    });
  connect(&model_, &FlasherModel::portListChanged, this, &StationModel::portsChanged);
  productPathChanged();
}

StationModel::~StationModel() {
  if (!thread_.joinable()) return;
  // Boards still running are stopped as the second Stop stops them; their thread is waited for,
  // so no run outlives the model.
  station_->interrupt();
  station_->interrupt();
  thread_.join();
  model_.endStation();
}

// MARK: - Starting and stopping

void StationModel::start() {
  if (phase_ != Phase::idle) return;
  if (auto finding = model_.blockingFinding()) {
    setNotice(qs(*finding));
    return;
  }
  const Product& product = model_.product();
  station::StationOptions options;
  // The program's own ports are pseudo-terminals: the test devices and the simulated boards.
  options.allowsTestDevices = true;
  options.testDevices = {model_.testDevices().begin(), model_.testDevices().end()};
  // The network ports added to the port list: their boards are found by connecting to them.
  for (const QString& name : model_.networkPorts())
    options.networkPorts.push_back(name.toStdString());
  options.now = alsoConnected_;
  options.limit = limit_;
  options.settleSeconds = options_.settleSeconds;
  options.quietSeconds = options_.quietSeconds;
  options.nameBoard = [names = names_](const SerialPortInfo& port) {
    std::lock_guard lock(names->mutex);
    auto name = names->byPath.find(port.path);
    return name != names->byPath.end() ? name->second : station::boardName(port);
  };
  ProductPackage package{product, model_.files(), recordDigest(product)};

  std::unique_ptr<station::StationRecord> record;
  if (!recordPath_.isEmpty()) {
    try {
      record = std::make_unique<station::StationRecord>(recordPath_.toStdString(), product.name,
                                                        package.recordSHA256);
    } catch (const std::system_error& error) {
      setRecordProblem(qs(L10n::Station::cannotOpenRecord(
          recordPath_.toStdString(), L10n::Errors::systemCause(error.code().value()))));
      return;
    }
  }
  if (!model_.beginStation()) {
    setNotice(qs(L10n::Header::waitUntilFlashingFinished()));
    return;
  }
  setRecordProblem({});
  setNotice({});
  productName_ = product.name.empty() ? L10n::Product::newProduct() : product.name;
  avrTarget_ = !product.target.isESP();
  flashed_ = 0;
  failed_ = 0;
  feed_ = std::make_unique<station::PortFeed>();
  portsChanged();
  report_ = std::make_shared<Report>(QPointer<StationModel>(this), std::move(record));
  station_ = std::make_unique<station::Station>(std::move(package), options, *report_);
  setPhase(Phase::running);
  emit tallyChanged();
  thread_ = std::thread([station = station_.get(), feed = feed_.get(), report = report_] {
    station->run(*feed);
    report->end();
  });
}

void StationModel::stop() {
  switch (phase_) {
  case Phase::idle:
  case Phase::stopping: return;
  case Phase::running:
    setPhase(Phase::finishing);
    station_->interrupt();
    return;
  case Phase::finishing:
    setPhase(Phase::stopping);
    station_->interrupt();
    return;
  }
}

void StationModel::stopNow() {
  if (phase_ == Phase::running) stop();
  stop();
}

void StationModel::toggle() {
  if (phase_ == Phase::idle)
    start();
  else
    stop();
}

void StationModel::ended() {
  if (thread_.joinable()) thread_.join();
  station_.reset();
  feed_.reset();
  narrators_.clear();
  // A run the station never finished (it cannot happen, but a row must not spin forever).
  for (auto& row : rows_) {
    if (row.result == StationRow::Result::running) row.result = StationRow::Result::stopped;
  }
  model_.endStation();
  setPhase(Phase::idle);
}

// MARK: - Updates

void StationModel::deliver() {
  if (!report_) return;
  const auto now = Clock::now();
  const auto interval = station::seconds(options_.updateIntervalSeconds);
  if (lastUpdate_ && now - *lastUpdate_ < interval) {
    if (!updateLater_.isActive()) {
      const auto wait =
          std::chrono::ceil<std::chrono::milliseconds>(*lastUpdate_ + interval - now).count();
      updateLater_.start(static_cast<int>(wait));
    }
    return;
  }
  Update update = report_->take();
  lastUpdate_ = now;
  const StationTally before = tally();
  apply(update);
  ++updates_;
  emit rowsChanged();
  if (tally() != before) {
    scheduleTallyExpiry();
    emit tallyChanged();
  }
}

StationRow* StationModel::findRow(const std::string& path) {
  auto row = std::ranges::find(rows_, path, &StationRow::path);
  return row != rows_.end() ? &*row : nullptr;
}

StationRow& StationModel::rowFor(const std::string& path) {
  // A port that is used again shows its new board in the row of the last one.
  if (StationRow* row = findRow(path)) {
    *row = StationRow{};
    row->path = path;
    return *row;
  }
  rows_.push_back({});
  rows_.back().path = path;
  return rows_.back();
}

void StationModel::tell(StationRow& row, const NarratedStep& step) {
  if (step.stage) row.stage = qs(*step.stage);
  if (step.line) appendBoardLine(row, *step.line);
  if (step.note) appendBoardLine(row, *step.note);
}

void StationModel::appendBoardLine(StationRow& row, const LogSegment& line) {
  std::vector<LogSegment> own;
  if (model_.showTimestamps()) {
    own.push_back(
        {LogSegment::Kind::timestamp,
         QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz")).toStdString() + "  "});
  }
  own.push_back(line);
  row.log.push_back(std::move(own));
  // The main log keeps every board's lines, each after its port.
  model_.appendLog({{line.kind, L10n::Station::aboutBoard(deviceName(row.path), line.text)}});
}

void StationModel::apply(Update& update) {
  for (auto& item : update.items) {
    if (auto* started = std::get_if<Update::Started>(&item)) {
      StationRow& row = rowFor(started->board.path);
      row.run = ++runsStarted_;
      const QString label = model_.portLabel(qs(row.path));
      // The port has a column of its own: "Simulated ESP32", not "Simulated ESP32 (/dev/pts/4)".
      row.boardName = label;
      row.boardName.remove(QStringLiteral(" (") + qs(row.path) + u')');
      row.serialNumber = started->board.serialNumber;
      row.stage = qs(L10n::Stage::connecting());
      narrators_.insert_or_assign(row.path, RunNarrator(avrTarget_));
      appendBoardLine(row, RunNarration::opening(productName_, label.toStdString()));
    } else if (auto* reported = std::get_if<Update::Event>(&item)) {
      StationRow* row = findRow(reported->path);
      auto narrator = narrators_.find(reported->path);
      if (!row || narrator == narrators_.end()) continue;
      const NarratedStep step = narrator->second.narrate(reported->event);
      tell(*row, step);
      if (auto* progress = std::get_if<FlashEvents::Progress>(&reported->event)) {
        row->done = progress->done;
        row->total = progress->total;
      } else if (auto* connected = std::get_if<FlashEvents::Connected>(&reported->event)) {
        row->chip = connected->chip;
        row->mac = connected->mac;
      }
    } else if (auto* finished = std::get_if<Update::Finished>(&item)) {
      using Result = station::BoardOutcome::Result;
      const auto& outcome = finished->outcome;
      StationRow* found = findRow(outcome.board.path);
      StationRow& row = found ? *found : rowFor(outcome.board.path);
      auto narrator = narrators_.find(row.path);
      const bool answered = narrator != narrators_.end() ? narrator->second.boardAnswered()
                                                         : outcome.chip.has_value();
      row.chip = outcome.chip;
      row.mac = outcome.mac;
      row.seconds = outcome.seconds;
      row.cpuSeconds = outcome.cpuSeconds;
      NarratedStep step;
      switch (outcome.result) {
      case Result::done:
        row.result = StationRow::Result::done;
        row.done = row.total = std::max<qint64>(row.total, 1);
        step = RunNarration::succeeded(
            {outcome.chip.value_or(""), outcome.mac, 0, outcome.seconds, outcome.board.path});
        ++flashed_;
        finishedAt_.push_back(options_.clock());
        break;
      case Result::failed:
        row.result = StationRow::Result::failed;
        row.message = qs(outcome.message);
        step = RunNarration::failed(outcome.message, false);
        ++failed_;
        finishedAt_.push_back(options_.clock());
        break;
      case Result::stopped:
        row.result = StationRow::Result::stopped;
        row.message = qs(outcome.message);
        step = RunNarration::failed(outcome.message, true, answered);
        ++failed_;
        break;
      }
      tell(row, step);
      narrators_.erase(row.path);
      // Stopping is the person's own doing: no sound for it, as for a single board.
      if (outcome.result != Result::stopped) model_.playRunSound(outcome.result == Result::done);
    } else if (auto* skipped = std::get_if<Update::Skipped>(&item)) {
      const LogSegment line{LogSegment::Kind::meta, L10n::Station::leftAlone(skipped->reason)};
      StationRow* row = findRow(skipped->board.path);
      if (row && row->result == StationRow::Result::running) {
        // Connected to for its MAC address, and it proved to be the board just flashed.
        row->result = StationRow::Result::leftAlone;
        row->message = qs(skipped->reason);
        row->stage = qs(L10n::StationWindow::leftAlone());
        narrators_.erase(row->path);
        appendBoardLine(*row, line);
      } else {
        model_.appendLog({{line.kind, L10n::Station::aboutBoard(skipped->board.name, line.text)}});
      }
    } else if (auto* notice = std::get_if<Update::Notice>(&item)) {
      using Kind = station::StationNotice::Kind;
      const auto& said = notice->notice;
      // Every notice goes to the log; those that change what the station does are shown too.
      std::string text, shown;
      LogSegment::Kind kind = LogSegment::Kind::meta;
      switch (said.kind) {
      case Kind::ready:
        text = L10n::StationWindow::ready(productName_, said.count);
        kind = LogSegment::Kind::system;
        break;
      case Kind::waitingForPort: text = L10n::Station::waitingForPort(said.text); break;
      case Kind::unreachable:
        text = L10n::Station::cannotReach(said.text, said.detail);
        kind = LogSegment::Kind::error;
        break;
      case Kind::oneAtATime: text = L10n::Station::oneAtATime(); break;
      case Kind::finishing: shown = text = L10n::StationWindow::finishing(said.count); break;
      case Kind::stopping: shown = text = L10n::Station::stopping(); break;
      case Kind::limitReached: shown = text = L10n::Station::limitReached(said.count); break;
      case Kind::recordLost:
        text = L10n::Station::recordLost(said.text);
        kind = LogSegment::Kind::error;
        setRecordProblem(qs(text));
        break;
      case Kind::ended:
        shown = L10n::Station::summary(said.count, said.failed);
        text = "--- " + shown + " ---";
        kind = LogSegment::Kind::system;
        break;
      }
      if (!shown.empty()) setNotice(qs(shown));
      model_.appendLog({{kind, text}});
    } else if (std::holds_alternative<Update::Ended>(item)) {
      ended();
    }
  }
}

// MARK: - The tally

StationTally StationModel::tally() const {
  StationTally tally;
  tally.flashed = flashed_;
  tally.failed = failed_;
  tally.running = std::ranges::count(rows_, StationRow::Result::running, &StationRow::result);
  const auto since = options_.clock() - station::seconds(boardsPerHourWindowSeconds);
  tally.boardsPerHour =
      6 * std::ranges::count_if(finishedAt_, [&](Clock::time_point at) { return at > since; });
  return tally;
}

void StationModel::scheduleTallyExpiry() {
  const auto since = options_.clock() - station::seconds(boardsPerHourWindowSeconds);
  while (!finishedAt_.empty() && finishedAt_.front() <= since)
    finishedAt_.pop_front();
  if (finishedAt_.empty()) {
    tallyExpiry_.stop();
    return;
  }
  // The figure falls when the oldest board leaves the window.
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(finishedAt_.front() - since);
  tallyExpiry_.start(static_cast<int>(std::max<std::int64_t>(wait.count(), 1)));
}

void StationModel::clearFinished() {
  const auto kept = std::ranges::remove_if(
      rows_, [](const StationRow& row) { return row.result != StationRow::Result::running; });
  if (kept.begin() == rows_.end()) return;
  rows_.erase(kept.begin(), kept.end());
  emit rowsCleared();
}

// MARK: - Options and the record file

void StationModel::setAlsoConnected(bool on) {
  settings_->setValue(Keys::alsoConnected, on);
  if (alsoConnected_ == on) return;
  alsoConnected_ = on;
  emit optionsChanged();
}

void StationModel::setLimit(std::optional<std::int64_t> limit) {
  if (limit && *limit < 1) limit.reset();
  settings_->setValue(Keys::limit, limit ? QVariant(static_cast<qint64>(*limit)) : QVariant(0));
  if (limit_ == limit) return;
  limit_ = limit;
  emit optionsChanged();
}

void StationModel::showRecordPath(const QString& path) {
  setRecordProblem({});
  if (recordPath_ == path) return;
  recordPath_ = path;
  emit recordPathChanged();
}

void StationModel::setRecordPath(const QString& path) {
  // The running station keeps writing where it began.
  if (isRunning()) return;
  const QString product = model_.productPath();
  if (!product.isEmpty()) {
    QVariantMap files = settings_->value(Keys::recordFiles).toMap();
    if (path.isEmpty())
      files.remove(product);
    else
      files.insert(product, path);
    settings_->setValue(Keys::recordFiles, files);
  }
  showRecordPath(path);
}

void StationModel::productPathChanged() {
  // Each product file has its own record; a product not saved yet has none until one is chosen.
  const QString product = model_.productPath();
  const QString path = product.isEmpty()
                           ? QString()
                           : settings_->value(Keys::recordFiles).toMap().value(product).toString();
  showRecordPath(path);
}

void StationModel::portsChanged() {
  if (!feed_) return;
  {
    std::lock_guard lock(names_->mutex);
    names_->byPath.clear();
    for (const auto& port : model_.ports()) {
      if (model_.allowsTestDevice(port.path))
        names_->byPath[port.path] = model_.portLabel(qs(port.path)).toStdString();
    }
  }
  feed_->deliver(model_.ports());
}

// MARK: - Small setters

void StationModel::setPhase(Phase phase) {
  if (phase_ == phase) return;
  phase_ = phase;
  emit phaseChanged();
}

void StationModel::setNotice(const QString& text) {
  if (notice_ == text) return;
  notice_ = text;
  emit noticeChanged();
}

void StationModel::setRecordProblem(const QString& text) {
  if (recordProblem_ == text) return;
  recordProblem_ = text;
  emit recordProblemChanged();
}

} // namespace tarnwick
