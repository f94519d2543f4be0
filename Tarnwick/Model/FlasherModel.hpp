#pragma once
// The application's hub: the product being edited with its files, the serial ports, the running
// job, the outcome and counters, the log and the user's switches. Views read its properties and
// call its operations; nothing else changes them. Main thread only: a run's events and its end
// arrive here through queued calls that hold the model weakly.

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "FlashCore/FirmwareImport.hpp"
#include "FlashCore/Product.hpp"
#include "FlashEngine/CompressionCache.hpp"
#include "FlashEngine/FlashEvent.hpp"
#include "FlashEngine/RunNarration.hpp"
#include "FlashSerial/PortChoice.hpp"
#include "FlashSerial/PortScanner.hpp"

class QSettings;

namespace tarnwick {

/// A stored on/off setting; one that is not a bool counts as absent and gives `fallback`.
bool storedSwitch(const QSettings& settings, const char* key, bool fallback);

namespace simulator {
class SimulatedBoard;
}

class FlashJob;
class OutputBuffer;
class SoundSink;

/// Idle; one board being flashed; or the flashing station at work, which has the ports and the
/// product to itself.
enum class FlasherState { idle, flashing, station };

/// How the last run ended.
struct FlashOutcome {
  struct Success {
    FlashSummary summary;
    bool operator==(const Success&) const = default;
  };
  struct Failure {
    std::string message;
    bool operator==(const Failure&) const = default;
  };
  struct Cancelled {
    bool operator==(const Cancelled&) const = default;
  };
  std::variant<Success, Failure, Cancelled> value;
  bool operator==(const FlashOutcome&) const = default;
};

/// Counters since start or since the log was cleared.
struct FlashStatistics {
  int flashed = 0;
  int failed = 0;
  /// Duration of the last successful run.
  std::optional<double> lastSeconds;
  bool operator==(const FlashStatistics&) const = default;
};

/// The questions and panels the model needs from a person. The window implements them with real
/// dialogs; tests answer them from a script.
class FlasherDialogs {
public:
  enum class SaveChangesAnswer { save, dontSave, cancel };

  virtual ~FlasherDialogs() = default;
  /// An open panel for one product file; none when cancelled.
  virtual std::optional<std::filesystem::path> chooseProductToOpen() = 0;
  /// A save panel for a product file proposing `proposedName`; none when cancelled.
  virtual std::optional<std::filesystem::path>
  chooseProductSaveLocation(const QString& proposedName) = 0;
  /// A save panel for plain text proposing `proposedName`; none when cancelled.
  virtual std::optional<std::filesystem::path>
  chooseLogSaveLocation(const QString& proposedName) = 0;
  /// "Save the current product?" with "Save…", "Don't Save" and "Cancel".
  virtual SaveChangesAnswer askSaveChanges() = 0;
  /// A modal alert with a single button (the refused quit).
  virtual void alert(const QString& message) = 0;
};

/// Where port lists come from. The application hands over the udev scanner driven from Qt's event
/// loop (makeScannerPortSource); tests deliver lists by calling `portsChanged` themselves.
class PortSource {
public:
  virtual ~PortSource() = default;
  /// Starts watching; `onChange` receives every list on the main thread, the first one soon.
  virtual void start(std::function<void(const std::vector<SerialPortInfo>&)> onChange) = 0;
};

/// The udev port scanner, watched from the Qt event loop.
std::unique_ptr<PortSource> makeScannerPortSource();

class FlasherModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(tarnwick::Product product READ product WRITE setProduct NOTIFY productChanged)
  Q_PROPERTY(tarnwick::FileBytesMap files READ files NOTIFY filesChanged)
  Q_PROPERTY(QString productPath READ productPath NOTIFY productURLChanged)
  Q_PROPERTY(bool hasUnsavedChanges READ hasUnsavedChanges NOTIFY hasUnsavedChangesChanged)
  Q_PROPERTY(std::vector<tarnwick::SerialPortInfo> ports READ ports NOTIFY portListChanged)
  Q_PROPERTY(
      QString selectedPath READ selectedPath WRITE setSelectedPath NOTIFY selectedPathChanged)
  Q_PROPERTY(tarnwick::FlasherState state READ state NOTIFY stateChanged)
  Q_PROPERTY(bool flashing READ isFlashing NOTIFY stateChanged)
  Q_PROPERTY(qint64 progressDone READ progressDone NOTIFY progressChanged)
  Q_PROPERTY(qint64 progressTotal READ progressTotal NOTIFY progressChanged)
  Q_PROPERTY(double progressFraction READ progressFraction NOTIFY progressChanged)
  Q_PROPERTY(QString stageText READ stageText NOTIFY stageTextChanged)
  Q_PROPERTY(std::optional<tarnwick::FlashOutcome> outcome READ outcome NOTIFY outcomeChanged)
  Q_PROPERTY(tarnwick::FlashStatistics statistics READ statistics NOTIFY statisticsChanged)
  Q_PROPERTY(bool autoFlash READ autoFlash WRITE setAutoFlash NOTIFY autoFlashChanged)
  Q_PROPERTY(bool playSounds READ playSounds WRITE setPlaySounds NOTIFY playSoundsChanged)
  Q_PROPERTY(
      bool showTimestamps READ showTimestamps WRITE setShowTimestamps NOTIFY showTimestampsChanged)
  Q_PROPERTY(bool autoscroll READ autoscroll WRITE setAutoscroll NOTIFY autoscrollChanged)
  Q_PROPERTY(bool outputIsEmpty READ outputIsEmpty NOTIFY outputIsEmptyChanged)
  Q_PROPERTY(
      QString errorMessage READ errorMessage WRITE setErrorMessage NOTIFY errorMessageChanged)
  Q_PROPERTY(bool canFlash READ canFlash NOTIFY canFlashChanged)
  Q_PROPERTY(QString windowTitle READ windowTitle NOTIFY windowTitleChanged)
  Q_PROPERTY(QStringList recentDocuments READ recentDocuments NOTIFY recentDocumentsChanged)

public:
  /// Delays and places, with the product's defaults; tests shorten the delays.
  struct Options {
    /// Paths given with --test-device: pseudo-terminals accepted as ports, the first selected.
    std::vector<std::string> testDevices;
    /// Where port lists come from; none: only test devices and lists handed to portsChanged.
    std::unique_ptr<PortSource> portSource;
    /// Plays the end-of-run sounds; none: the desktop's sound theme through libcanberra.
    std::shared_ptr<SoundSink> sounds;
    /// The autosave file; none: Current.twflash under the application's data location.
    std::optional<std::filesystem::path> autosaveLocation;
    /// From the last change to the autosave write.
    double autosaveDelaySeconds = 1.0;
    /// From a new board appearing to its automatic run.
    double autoFlashDelaySeconds = 1.2;
    /// After a run, how long a newly appearing port is not taken as a new board.
    double quietSeconds = 6.0;
    /// Shortest time between two published progress values within one file.
    double progressIntervalSeconds = 0.05;
    /// Simulated boards take as long as a real serial line, so a run can be watched.
    bool paceSimulatedBoards = true;
  };

  /// A simulated board plugged in from the Help menu or the command line.
  struct SimulatedPort {
    std::string path;
    Target target;
    bool operator==(const SimulatedPort&) const = default;
  };

  /// Ports with this USB vendor id are Espressif's own USB-JTAG interface.
  static constexpr int espressifVendorID = tarnwick::espressifVendorID;
  /// How many documents File ▸ Open Recent lists.
  static constexpr int recentDocumentsLimit = 10;

  /// Reads the preferences, restores the autosaved work and starts watching ports.
  explicit FlasherModel(Options options, QObject* parent = nullptr);
  ~FlasherModel() override;
  FlasherModel(const FlasherModel&) = delete;
  FlasherModel& operator=(const FlasherModel&) = delete;

  /// The dialogs of the window; without them every question is answered "cancel".
  void setDialogs(FlasherDialogs* dialogs);

  // Published state.
  const Product& product() const { return product_; }
  const FileBytesMap& files() const { return files_; }
  const std::optional<std::filesystem::path>& productURL() const { return productURL_; }
  QString productPath() const;
  bool hasUnsavedChanges() const { return hasUnsavedChanges_; }
  const std::vector<SerialPortInfo>& ports() const { return ports_; }
  QString selectedPath() const { return selectedPath_; }
  FlasherState state() const { return state_; }
  bool isFlashing() const { return state_ == FlasherState::flashing; }
  bool isStationRunning() const { return state_ == FlasherState::station; }
  /// The product cannot be changed or replaced while boards are being flashed with it.
  bool productLocked() const { return state_ != FlasherState::idle; }
  /// The paths given with --test-device.
  const std::vector<std::string>& testDevices() const { return options_.testDevices; }
  qint64 progressDone() const { return progressDone_; }
  qint64 progressTotal() const { return progressTotal_; }
  QString stageText() const { return stageText_; }
  /// The file the run is writing or verifying, as named in its stage text; empty before the
  /// first write and between runs. Changes with the stage text.
  QString progressFile() const { return progressFile_; }
  const std::optional<FlashOutcome>& outcome() const { return outcome_; }
  const FlashStatistics& statistics() const { return statistics_; }
  bool autoFlash() const { return autoFlash_; }
  bool playSounds() const { return playSounds_; }
  bool showTimestamps() const { return showTimestamps_; }
  bool autoscroll() const { return autoscroll_; }
  bool outputIsEmpty() const { return outputIsEmpty_; }
  /// The message for the one alert; empty when there is none.
  QString errorMessage() const { return errorMessage_; }
  OutputBuffer& output() { return *output_; }
  /// Product files for File ▸ Open Recent, most recent first.
  QStringList recentDocuments() const;

  // Derived values.
  /// The product check finds at least one error.
  bool hasErrors() const;
  /// The first finding that keeps the product from being flashed, in the interface language,
  /// with the file it concerns ("app.bin: …"); none when there is none.
  std::optional<std::string> blockingFinding() const;
  /// Idle, a port chosen, and a product without errors.
  bool canFlash() const;
  /// progressDone / progressTotal, 0 before a run.
  double progressFraction() const;
  /// The listed port with the selected path.
  std::optional<SerialPortInfo> selectedPort() const;
  /// The port's name for people; a path that is not listed is shown as it is.
  QString portLabel(const QString& path) const;
  /// The product's name (or "New product"), with " (edited)" while unsaved.
  QString windowTitle() const;
  /// The running job tries Espressif's USB-JTAG reset first (its port has vendor id 0x303A).
  bool runTriesUSBJTAGFirst() const;
  /// Quitting is refused while a run is going.
  bool canQuit() const { return state_ == FlasherState::idle; }
  /// "Wait until flashing has finished. …", or while the station runs, to stop it first.
  QString quitRefusedText() const;
  /// The simulated boards plugged in, in that order.
  std::vector<SimulatedPort> simulatedBoards() const;
  bool isSimulatedBoard(const QString& path) const;
  /// A pseudo-terminal the engine may open: a test device or a simulated board.
  bool allowsTestDevice(const std::string& path) const;
  /// The network ports the user added ("rfc2217://HOST:PORT"), in the order added.
  QStringList networkPorts() const;
  /// Whether `path` names a port on another computer.
  static bool isNetworkPort(const QString& path);

  // Network ports.
  /// Adds the network port `name` ("rfc2217://HOST:PORT"), remembers it under "networkPorts" and
  /// selects it. It is listed after the local ports, never taken for a newly plugged-in board,
  /// and stays whatever the scanner finds. Returns its name as listed; empty when `name` is no
  /// well-formed network port or a run is going, and then nothing changes.
  QString addNetworkPort(const QString& name);
  /// Forgets the network port `name`; when it was selected, the first USB board (or nothing) is
  /// selected instead. Nothing changes while a run is going.
  void removeNetworkPort(const QString& name);

  // Simulated boards.
  /// Starts a simulated board of `target` inside the program and plugs it in: its port joins the
  /// list as a USB board would, so it is selected as a new board and flashed automatically when
  /// that is on. With no firmware in the product, a demo product for the board is opened first.
  /// Returns the board's path; empty when it could not be started (`errorMessage` says why).
  QString plugInSimulatedBoard(const tarnwick::Target& target);
  /// Pulls the simulated board on `path` out: its port leaves the list, and a run on it fails as
  /// one does when a cable is pulled.
  void unplugSimulatedBoard(const QString& path);

  // The flashing station.
  /// The station takes over: no runs of single boards, no automatic flashing, no changes to the
  /// product and no quitting until `endStation`. False while a single board is being flashed.
  bool beginStation();
  void endStation();
  /// The end-of-run sound of a board, when sounds are on.
  void playRunSound(bool succeeded);

public slots:
  // Life cycle.
  /// Writes the autosave file now; failures are ignored.
  void saveWorkNow();
  /// The application is asked to quit: refused with an alert while flashing, otherwise the work
  /// is saved and true returned.
  bool requestQuit();

  // Product.
  void setProduct(const tarnwick::Product& product);
  void markUnsaved();
  void newProduct();
  void openProductWithPanel();
  /// Opens a product file without asking about unsaved changes (files handed over by the
  /// desktop, File ▸ Open Recent after confirmDiscard).
  void openProduct(const std::filesystem::path& location);
  /// File ▸ Open Recent: asks about unsaved changes, then opens.
  void openRecent(const QString& location);
  void clearRecentDocuments();
  void saveProduct();
  void saveProductAs();
  void saveProductTo(const std::filesystem::path& location);
  /// May the current product be replaced? Asks when it has unsaved changes.
  bool confirmDiscard();

  // Images.
  void addFiles(const std::vector<std::filesystem::path>& locations);
  void importFolder(const std::filesystem::path& folder);
  void setImages(const std::vector<tarnwick::FirmwareImport::Imported>& images);
  void replaceFile(const tarnwick::UUID& id, const std::filesystem::path& location);
  void removeImages(const std::set<tarnwick::UUID>& ids);

  // Ports.
  /// The user or the port logic chose a port; remembered under "port".
  void setSelectedPath(const QString& path);
  /// A new port list from the scanner.
  void portsChanged(const std::vector<tarnwick::SerialPortInfo>& ports);

  // Flashing.
  void startFlash();
  /// Flash / Stop: cancels a running job, otherwise starts one.
  void toggleFlash();

  // Log.
  void appendLog(const std::vector<tarnwick::LogSegment>& segments);
  void clearLog();
  void saveLog();

  // Switches, each stored at once.
  void setAutoFlash(bool on);
  void setPlaySounds(bool on);
  void setShowTimestamps(bool on);
  void setAutoscroll(bool on);
  void setErrorMessage(const QString& message);
  void clearErrorMessage() { setErrorMessage({}); }

signals:
  void productChanged();
  void filesChanged();
  void productURLChanged();
  void hasUnsavedChangesChanged();
  void portListChanged();
  void selectedPathChanged();
  void stateChanged();
  void progressChanged();
  void stageTextChanged();
  void outcomeChanged();
  void statisticsChanged();
  void autoFlashChanged();
  void playSoundsChanged();
  void showTimestampsChanged();
  void autoscrollChanged();
  void outputIsEmptyChanged();
  void errorMessageChanged();
  void canFlashChanged();
  void windowTitleChanged();
  void recentDocumentsChanged();
  /// One line went to the log, timestamp included when shown.
  void logLineAppended(const std::vector<tarnwick::LogSegment>& segments);
  /// A board appeared and will be flashed once the delay has passed.
  void autoFlashScheduled(const QString& path);
  void simulatedBoardsChanged();
  void networkPortsChanged();

public:
  /// One event of the running job, on the main thread: stage text, throttled progress and log
  /// lines. Ignored unless flashing.
  void handle(const tarnwick::FlashEvent& event);

private:
  /// The end of a run: a summary, or the failure with its message (cancelled: no message).
  void finish(std::optional<FlashSummary> summary, bool cancelled, const std::string& message);
  /// The end of an automatic run whose board proved, by its MAC address, to be the last one: it
  /// was restarted into its firmware and is neither written nor counted.
  void leaveSameBoard();
  /// What every end of a run does first: idle, and the board remembered.
  void endRun(bool provedSame);
  /// Starts a run; with `leaveBoardWithMAC`, an ESP board with that MAC address is left alone.
  void startRun(std::optional<std::string> leaveBoardWithMAC);
  void appendLine(const LogSegment& line);
  void setState(FlasherState state);
  void setStageText(const QString& text);
  void setOutcome(std::optional<FlashOutcome> outcome);
  void setProgress(qint64 done, qint64 total);
  void setStatistics(const FlashStatistics& statistics);
  void setUnsaved(bool unsaved);
  void setProductURL(std::optional<std::filesystem::path> location);
  void setFiles(FileBytesMap files);
  void selectPort(const std::string& path);
  void addRecentDocument(const std::filesystem::path& location);
  void scheduleAutoFlash(const std::string& path, std::optional<std::string> leaveBoardWithMAC);
  bool isTestDevice(const std::string& path) const;
  /// The scanner's list with the simulated boards after its USB ports, then the test devices,
  /// and the network ports last.
  std::vector<SerialPortInfo> withOwnPorts(std::vector<SerialPortInfo> ports) const;
  /// Lists the program's own ports anew beside the scanner's last list, without taking any port
  /// for a new board.
  void relistOwnPorts();
  void storeNetworkPorts();
  /// A product with the demo build for `target`, in place of an empty one.
  void openDemoProduct(const Target& target);
  void emitDerived();
  /// Remembers a switch in the settings and in `value`; true when that changed it.
  bool storeSwitch(const char* key, bool& value, bool on);

  Options options_;
  std::unique_ptr<QSettings> defaults_;
  std::unique_ptr<OutputBuffer> output_;
  FlasherDialogs* dialogs_ = nullptr;

  Product product_;
  FileBytesMap files_;
  std::optional<std::filesystem::path> productURL_;
  bool hasUnsavedChanges_ = false;
  std::vector<SerialPortInfo> ports_;
  QString selectedPath_;
  FlasherState state_ = FlasherState::idle;
  qint64 progressDone_ = 0;
  qint64 progressTotal_ = 0;
  QString stageText_;
  QString progressFile_;
  std::optional<FlashOutcome> outcome_;
  FlashStatistics statistics_;
  bool autoFlash_ = false;
  bool playSounds_ = true;
  bool showTimestamps_ = true;
  bool autoscroll_ = true;
  bool outputIsEmpty_ = true;
  QString errorMessage_;

  /// The scanner's last list, before the program's own ports are added.
  std::vector<SerialPortInfo> scanned_;
  std::vector<std::unique_ptr<simulator::SimulatedBoard>> simulated_;
  /// The network ports the user added, by name.
  std::vector<std::string> networkPorts_;
  std::optional<std::set<std::string>> knownPaths_;
  std::shared_ptr<FlashJob> job_;
  /// The words of the run in progress.
  std::optional<RunNarrator> narrator_;
  /// The board of the last run, by which a port that comes back is told new or the same.
  std::optional<PortChoice::FlashedBoard> lastFlashed_;
  /// The USB serial number of the port of the run in progress, and the MAC address its board
  /// reported.
  std::optional<std::string> runSerialNumber_;
  std::optional<std::string> runMAC_;
  /// When progress was last published; none yet in this run, so the first is never held back
  /// (the steady clock's zero is the boot time, not "long ago").
  std::optional<std::chrono::steady_clock::time_point> lastProgressPublish_;
  QTimer autosaveWork_;
  /// Compressed writes made once for the whole series of boards.
  std::shared_ptr<CompressionCache> compression_ = std::make_shared<CompressionCache>();
};

} // namespace tarnwick

Q_DECLARE_METATYPE(tarnwick::FlashOutcome)
Q_DECLARE_METATYPE(tarnwick::FlashStatistics)
