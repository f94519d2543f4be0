// The engine's headers come before Qt's: Qt defines `emit` as a macro, and JobContext has a
// member of that name.
#include "FlashEngine/FlashJob.hpp"

#include "Tarnwick/Model/FlasherModel.hpp"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTime>

#include <algorithm>
#include <cerrno>
#include <map>
#include <thread>

#include "FlashCore/Digest.hpp"
#include "FlashCore/FolderFiles.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "FlashCore/VisibleText.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/NetworkPort.hpp"
#include "FlashSerial/PortChoice.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/MainWindowTexts.hpp"
#include "Localization/ModelTexts.hpp"
#include "Localization/PortTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/SettingsTexts.hpp"
#include "Localization/SimulatorTexts.hpp"
#include "Localization/StationTexts.hpp"
#include "Localization/StationWindowTexts.hpp"
#include "Simulator/SimulatedBoard.hpp"
#include "Tarnwick/Model/OutputBuffer.hpp"
#include "Tarnwick/Model/SoundSink.hpp"

namespace tarnwick {

namespace {

using Clock = std::chrono::steady_clock;

namespace Keys {
constexpr const char* port = "port";
constexpr const char* autoFlash = "autoFlash";
constexpr const char* sounds = "sounds";
constexpr const char* timestamps = "timestamps";
constexpr const char* autoscroll = "autoscroll";
constexpr const char* unsaved = "unsaved";
constexpr const char* recentDocuments = "recentDocuments";
constexpr const char* networkPorts = "networkPorts";
} // namespace Keys

QString qs(const std::string& text) { return QString::fromStdString(text); }

int milliseconds(double seconds) { return static_cast<int>(seconds * 1000.0 + 0.5); }

Clock::duration duration(double seconds) {
  return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

// The new product of File ▸ New and of a start without autosave.
Product freshProduct(const Target& target) {
  Product product;
  product.name = L10n::Product::newProduct();
  product.target = target;
  return product;
}

std::string fileNameOf(const std::filesystem::path& location) {
  auto name = location.filename();
  // "Folder/" has an empty file name; the folder's own name is meant.
  if (name.empty()) name = location.parent_path().filename();
  return name.string();
}

// A firmware file that cannot be read: the system's reason after the file's name.
std::string unreadable(const std::string& name, const std::exception& error) {
  if (auto* fileError = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
    return L10n::Errors::cannotUse(name, L10n::Errors::readCause(fileError->code().value()));
  }
  return L10n::Errors::cannotRead(name);
}

// Posts `work` to the main thread; it runs only if the model still exists by then.
void postToModel(const QPointer<FlasherModel>& model, std::function<void(FlasherModel&)> work) {
  QObject* mainContext = QCoreApplication::instance();
  if (!mainContext) return;
  QMetaObject::invokeMethod(
      mainContext,
      [model, work = std::move(work)] {
        if (model) work(*model);
      },
      Qt::QueuedConnection);
}

} // namespace

// The INI store of Linux hands bools back as the words "true" and "false", so those count as
// bools too.
bool storedSwitch(const QSettings& settings, const char* key, bool fallback) {
  QVariant value = settings.value(key);
  if (value.typeId() == QMetaType::Bool) return value.toBool();
  if (value.typeId() == QMetaType::QString) {
    if (value.toString() == QLatin1String("true")) return true;
    if (value.toString() == QLatin1String("false")) return false;
  }
  return fallback;
}

FlasherModel::FlasherModel(Options options, QObject* parent)
    : QObject(parent), options_(std::move(options)), defaults_(std::make_unique<QSettings>()),
      output_(std::make_unique<OutputBuffer>()) {
  if (!options_.sounds) options_.sounds = makeSystemSoundSink();
  if (!options_.autosaveLocation) {
    options_.autosaveLocation =
        std::filesystem::path(
            QStandardPaths::writableLocation(QStandardPaths::AppDataLocation).toStdString()) /
        ("Current." + std::string(ProductPackage::fileExtension));
  }

  autosaveWork_.setSingleShot(true);
  autosaveWork_.setInterval(milliseconds(options_.autosaveDelaySeconds));
  connect(&autosaveWork_, &QTimer::timeout, this, &FlasherModel::saveWorkNow);

  selectedPath_ = defaults_->value(Keys::port).toString();
  autoFlash_ = defaults_->value(Keys::autoFlash).toBool();
  playSounds_ = storedSwitch(*defaults_, Keys::sounds, true);
  showTimestamps_ = storedSwitch(*defaults_, Keys::timestamps, true);
  autoscroll_ = storedSwitch(*defaults_, Keys::autoscroll, true);
  hasUnsavedChanges_ = defaults_->value(Keys::unsaved).toBool();
  for (const QString& stored : defaults_->value(Keys::networkPorts).toStringList()) {
    // A damaged or hand-edited list loses only the entries that name no network port.
    const auto address = parseNetworkPort(stored.toStdString());
    if (address && std::ranges::find(networkPorts_, address->name()) == networkPorts_.end())
      networkPorts_.push_back(address->name());
  }

  try {
    auto package = ProductPackage::read(*options_.autosaveLocation);
    product_ = std::move(package.product);
    files_ = std::move(package.files);
  } catch (...) {
    // A first start, or an autosave that did not survive: begin afresh without a word.
    product_ = freshProduct(Target::esp());
    files_.clear();
  }
  output_->setAutoscroll(autoscroll_);

  // A test device given on the command line is what the person wants to flash.
  if (!options_.testDevices.empty()) selectedPath_ = qs(options_.testDevices.front());
  // The remembered network ports are there before the scanner has looked.
  ports_ = withOwnPorts({});

  if (options_.portSource) {
    QPointer<FlasherModel> weak(this);
    options_.portSource->start([weak](const std::vector<SerialPortInfo>& ports) {
      if (weak) weak->portsChanged(ports);
    });
  } else if (!options_.testDevices.empty()) {
    portsChanged({});
  }
}

FlasherModel::~FlasherModel() {
  // A run still going is asked to stop; its thread holds the job and drops its results.
  if (job_) job_->cancel();
}

void FlasherModel::setDialogs(FlasherDialogs* dialogs) { dialogs_ = dialogs; }

// MARK: - Derived values

QString FlasherModel::productPath() const {
  return productURL_ ? qs(productURL_->string()) : QString();
}

QStringList FlasherModel::recentDocuments() const {
  return defaults_->value(Keys::recentDocuments).toStringList();
}

bool FlasherModel::hasErrors() const {
  return ProductCheck::firstError(ProductCheck::check(product_, files_)).has_value();
}

std::optional<std::string> FlasherModel::blockingFinding() const {
  auto error = ProductCheck::firstError(ProductCheck::check(product_, files_));
  if (!error) return std::nullopt;
  if (error->imageID) {
    auto image = std::ranges::find(product_.images, *error->imageID, &FirmwareImage::id);
    if (image != product_.images.end()) return visible(image->fileName) + ": " + error->message();
  }
  return error->message();
}

bool FlasherModel::canFlash() const {
  return state_ == FlasherState::idle && !selectedPath_.isEmpty() && !hasErrors();
}

double FlasherModel::progressFraction() const {
  if (progressTotal_ < 1) return 0;
  return static_cast<double>(progressDone_) / static_cast<double>(progressTotal_);
}

std::optional<SerialPortInfo> FlasherModel::selectedPort() const {
  std::string path = selectedPath_.toStdString();
  auto found =
      std::ranges::find_if(ports_, [&](const SerialPortInfo& port) { return port.path == path; });
  if (found == ports_.end()) return std::nullopt;
  return *found;
}

QString FlasherModel::portLabel(const QString& path) const {
  std::string raw = path.toStdString();
  if (isTestDevice(raw)) return qs(L10n::Model::testDevice(raw));
  for (const auto& board : simulated_) {
    if (board->path() == raw)
      return qs(L10n::Model::simulatedBoard(simulator::SimulatedBoard::displayName(board->target()),
                                            raw));
  }
  if (isNetworkPort(path)) {
    // One a serial server announced goes by the name it announced.
    for (const auto& port : scanned_) {
      if (port.path == raw && port.productName)
        return qs(visible(L10n::Ports::announced(*port.productName)) + " (" + raw + ")");
    }
    return qs(L10n::Model::networkPort(raw));
  }
  for (const auto& port : ports_) {
    if (port.path == raw) return qs(visible(PortScanner::displayName(port)));
  }
  return path;
}

QString FlasherModel::windowTitle() const {
  QString title = product_.name.empty() ? qs(L10n::Product::newProduct()) : qs(product_.name);
  if (hasUnsavedChanges_) title += qs(L10n::Product::edited());
  return title;
}

bool FlasherModel::runTriesUSBJTAGFirst() const { return job_ && job_->usbJTAGFirst; }

QString FlasherModel::quitRefusedText() const {
  return qs(isStationRunning() ? L10n::StationWindow::stopBeforeQuitting()
                               : L10n::Notice::waitUntilFinished());
}

void FlasherModel::emitDerived() {
  emit canFlashChanged();
  emit windowTitleChanged();
}

// MARK: - Life cycle

void FlasherModel::saveWorkNow() {
  autosaveWork_.stop();
  try {
    std::filesystem::create_directories(options_.autosaveLocation->parent_path());
    ProductPackage::write({product_, files_}, *options_.autosaveLocation);
  } catch (...) {
    // The product in memory is unaffected, and the next change tries again.
  }
}

bool FlasherModel::requestQuit() {
  if (!canQuit()) {
    if (dialogs_) dialogs_->alert(quitRefusedText());
    return false;
  }
  saveWorkNow();
  return true;
}

// MARK: - Product

void FlasherModel::setProduct(const Product& product) {
  // The station flashes board after board with this product: it stays as it is until the
  // station stops.
  if (isStationRunning()) return;
  if (product == product_) return;
  product_ = product;
  emit productChanged();
  markUnsaved();
  emitDerived();
}

void FlasherModel::markUnsaved() {
  setUnsaved(true);
  autosaveWork_.start();
}

void FlasherModel::setUnsaved(bool unsaved) {
  // Read from the same key at start, so an equal value is stored already.
  if (hasUnsavedChanges_ == unsaved) return;
  defaults_->setValue(Keys::unsaved, unsaved);
  hasUnsavedChanges_ = unsaved;
  emit hasUnsavedChangesChanged();
  emit windowTitleChanged();
}

void FlasherModel::setProductURL(std::optional<std::filesystem::path> location) {
  if (productURL_ == location) return;
  productURL_ = std::move(location);
  emit productURLChanged();
}

void FlasherModel::setFiles(FileBytesMap files) {
  if (files == files_) return;
  files_ = std::move(files);
  emit filesChanged();
  emitDerived();
}

void FlasherModel::newProduct() {
  if (isStationRunning()) return;
  if (!confirmDiscard()) return;
  setFiles({});
  setProductURL(std::nullopt);
  setProduct(freshProduct(product_.target));
  setUnsaved(false);
  setOutcome(std::nullopt);
}

void FlasherModel::openProductWithPanel() {
  if (isStationRunning()) return;
  if (!confirmDiscard() || !dialogs_) return;
  if (auto location = dialogs_->chooseProductToOpen()) openProduct(*location);
}

void FlasherModel::openProduct(const std::filesystem::path& location) {
  if (isStationRunning()) return;
  ProductPackage package;
  std::string name = fileNameOf(location);
  try {
    package = ProductPackage::read(location);
  } catch (const PackageError& error) {
    setErrorMessage(qs(L10n::Errors::cannotOpen(name, error.message())));
    return;
  } catch (const ProductDecodingError& error) {
    setErrorMessage(qs(error.message(name)));
    return;
  } catch (const std::exception&) {
    setErrorMessage(qs(L10n::Errors::cannotRead(name)));
    return;
  }
  setFiles(std::move(package.files));
  setProduct(package.product);
  setProductURL(location);
  setUnsaved(false);
  setOutcome(std::nullopt);
  addRecentDocument(location);
  appendLine({LogSegment::Kind::system,
              "--- " + L10n::Log::openedProduct(location.stem().string()) + " ---"});
}

void FlasherModel::openRecent(const QString& location) {
  if (isStationRunning()) return;
  if (!confirmDiscard()) return;
  openProduct(std::filesystem::path(location.toStdString()));
}

void FlasherModel::clearRecentDocuments() {
  defaults_->remove(Keys::recentDocuments);
  emit recentDocumentsChanged();
}

void FlasherModel::addRecentDocument(const std::filesystem::path& location) {
  QString path = qs(std::filesystem::absolute(location).lexically_normal().string());
  QStringList recent = recentDocuments();
  recent.removeAll(path);
  recent.prepend(path);
  while (recent.size() > recentDocumentsLimit)
    recent.removeLast();
  defaults_->setValue(Keys::recentDocuments, recent);
  emit recentDocumentsChanged();
}

void FlasherModel::saveProduct() {
  if (productURL_) {
    saveProductTo(*productURL_);
  } else {
    saveProductAs();
  }
}

void FlasherModel::saveProductAs() {
  if (!dialogs_) return;
  std::string name = product_.name.empty() ? L10n::Product::newProduct() : product_.name;
  auto location = dialogs_->chooseProductSaveLocation(
      qs(name + "." + std::string(ProductPackage::fileExtension)));
  if (location) saveProductTo(*location);
}

void FlasherModel::saveProductTo(const std::filesystem::path& location) {
  try {
    ProductPackage::write({product_, files_}, location);
  } catch (const PackageError& error) {
    setErrorMessage(qs(L10n::Errors::savingFailedAt(location.string(), error.message())));
    return;
  } catch (const std::filesystem::filesystem_error& error) {
    const auto& where = error.path1().empty() ? location : error.path1();
    setErrorMessage(qs(L10n::Errors::savingFailedAt(where.string(), error.code().value())));
    return;
  } catch (const std::exception& error) {
    setErrorMessage(qs(L10n::Errors::savingFailed(error.what())));
    return;
  }
  setProductURL(location);
  setUnsaved(false);
  addRecentDocument(location);
}

bool FlasherModel::confirmDiscard() {
  if (!hasUnsavedChanges_ || product_.images.empty()) return true;
  if (!dialogs_) return false;
  switch (dialogs_->askSaveChanges()) {
  case FlasherDialogs::SaveChangesAnswer::save:
    saveProduct();
    // A cancelled or failed save keeps the product.
    return !hasUnsavedChanges_;
  case FlasherDialogs::SaveChangesAnswer::dontSave: return true;
  case FlasherDialogs::SaveChangesAnswer::cancel: return false;
  }
  return false;
}

// MARK: - Images

void FlasherModel::addFiles(const std::vector<std::filesystem::path>& locations) {
  if (isStationRunning()) return;
  std::vector<FirmwareImport::Imported> list;
  for (const auto& image : product_.images) {
    auto bytes = files_.find(image.id);
    if (bytes != files_.end()) list.push_back({image, bytes->second});
  }
  std::vector<std::string> failures;
  bool avr = !product_.target.isESP();
  for (const auto& location : locations) {
    std::string name = fileNameOf(location);
    try {
      Bytes content = FirmwareImport::content(name, readFileBytes(location));
      auto imported = FirmwareImport::makeImage(name, std::move(content), product_.target, list);
      // An Arduino board takes one sketch: the last file given wins.
      if (avr) list.clear();
      list.push_back(std::move(imported));
    } catch (const FirmwareImport::ImportError& error) {
      failures.push_back(L10n::Errors::cannotUse(name, error.message()));
    } catch (const std::exception& error) {
      failures.push_back(unreadable(name, error));
    }
  }
  setImages(list);
  if (!failures.empty()) {
    std::string message;
    for (const auto& line : failures)
      message += (message.empty() ? "" : "\n") + line;
    setErrorMessage(qs(message));
  }
}

void FlasherModel::importFolder(const std::filesystem::path& folder) {
  if (isStationRunning()) return;
  std::string name = fileNameOf(folder);
  FirmwareImport::BuildFolder found;
  try {
    auto contents = readFolderFiles(folder);
    found = FirmwareImport::scanFolder(contents.files, contents.flasherArgs, product_.target);
  } catch (const FirmwareImport::ImportError& error) {
    setErrorMessage(qs(L10n::Errors::cannotUse(name, error.message())));
    return;
  } catch (const std::exception& error) {
    setErrorMessage(qs(unreadable(name, error)));
    return;
  }
  setImages(found.images);
  Product product = product_;
  if (found.chip) product.target = Target::esp(found.chip);
  if (found.flashMode) product.flashMode = *found.flashMode;
  if (found.flashSize) product.flashSize = *found.flashSize;
  setProduct(product);
  appendLine({LogSegment::Kind::meta,
              L10n::Log::filesFrom(static_cast<std::int64_t>(found.images.size()), name)});
}

void FlasherModel::setImages(const std::vector<FirmwareImport::Imported>& images) {
  if (isStationRunning()) return;
  FileBytesMap files;
  Product product = product_;
  product.images.clear();
  for (const auto& imported : images) {
    files[imported.image.id] = imported.bytes;
    product.images.push_back(imported.image);
  }
  setFiles(std::move(files));
  setProduct(product);
  markUnsaved();
}

void FlasherModel::replaceFile(const UUID& id, const std::filesystem::path& location) {
  if (isStationRunning()) return;
  auto entry = std::ranges::find_if(product_.images,
                                    [&](const FirmwareImage& image) { return image.id == id; });
  if (entry == product_.images.end()) return;
  std::string name = fileNameOf(location);
  Bytes content;
  try {
    content = FirmwareImport::content(name, readFileBytes(location));
  } catch (const FirmwareImport::ImportError& error) {
    setErrorMessage(qs(L10n::Errors::cannotUse(name, error.message())));
    return;
  } catch (const std::exception& error) {
    setErrorMessage(qs(unreadable(name, error)));
    return;
  }
  Product product = product_;
  auto& image = product.images[static_cast<std::size_t>(entry - product_.images.begin())];
  image.fileName = name;
  image.size = static_cast<std::int64_t>(content.size());
  image.sha256 = Digest::sha256Hex(content);
  FileBytesMap files = files_;
  files[id] = std::move(content);
  setFiles(std::move(files));
  setProduct(product);
}

void FlasherModel::removeImages(const std::set<UUID>& ids) {
  if (isStationRunning()) return;
  Product product = product_;
  std::erase_if(product.images, [&](const FirmwareImage& image) { return ids.contains(image.id); });
  FileBytesMap files = files_;
  for (const auto& id : ids)
    files.erase(id);
  setFiles(std::move(files));
  setProduct(product);
}

// MARK: - Ports

bool FlasherModel::isTestDevice(const std::string& path) const {
  return std::ranges::find(options_.testDevices, path) != options_.testDevices.end();
}

bool FlasherModel::isSimulatedBoard(const QString& path) const {
  return std::ranges::any_of(
      simulated_, [raw = path.toStdString()](const auto& board) { return board->path() == raw; });
}

bool FlasherModel::allowsTestDevice(const std::string& path) const {
  return isTestDevice(path) || isSimulatedBoard(qs(path));
}

std::vector<SerialPortInfo> FlasherModel::withOwnPorts(std::vector<SerialPortInfo> ports) const {
  // After the scanner's USB ports, in the order plugged in; the scanner's own order stays.
  auto usbEnd = std::ranges::find_if(ports, [](const SerialPortInfo& p) { return !p.vendorID; });
  std::vector<SerialPortInfo> simulated;
  for (const auto& board : simulated_)
    simulated.push_back(board->port());
  ports.insert(usbEnd, simulated.begin(), simulated.end());
  for (const auto& path : options_.testDevices) {
    bool listed =
        std::ranges::any_of(ports, [&](const SerialPortInfo& p) { return p.path == path; });
    if (!listed) ports.push_back({path, std::nullopt, std::nullopt, std::nullopt});
  }
  // Without a vendor id: never a new board, never the fallback for a selection that is gone.
  for (const auto& name : networkPorts_) {
    // Added by the user and announced too: listed once.
    if (std::ranges::none_of(ports, [&](const SerialPortInfo& p) { return p.path == name; }))
      ports.push_back({name, std::nullopt, std::nullopt, std::nullopt});
  }
  return ports;
}

void FlasherModel::relistOwnPorts() {
  auto listed = withOwnPorts(scanned_);
  if (listed == ports_) return;
  ports_ = std::move(listed);
  emit portListChanged();
}

QStringList FlasherModel::networkPorts() const {
  QStringList names;
  for (const auto& name : networkPorts_)
    names << qs(name);
  return names;
}

bool FlasherModel::isNetworkPort(const QString& path) {
  return looksLikeNetworkPort(path.toStdString());
}

void FlasherModel::storeNetworkPorts() {
  if (networkPorts_.empty())
    defaults_->remove(Keys::networkPorts);
  else
    defaults_->setValue(Keys::networkPorts, networkPorts());
}

QString FlasherModel::addNetworkPort(const QString& name) {
  const auto address = parseNetworkPort(name.toStdString());
  if (!address || isFlashing()) return {};
  const std::string listed = address->name();
  if (std::ranges::find(networkPorts_, listed) == networkPorts_.end()) {
    networkPorts_.push_back(listed);
    storeNetworkPorts();
    relistOwnPorts();
    emit networkPortsChanged();
  }
  selectPort(listed);
  return qs(listed);
}

void FlasherModel::removeNetworkPort(const QString& name) {
  auto entry = std::ranges::find(networkPorts_, name.toStdString());
  if (entry == networkPorts_.end() || isFlashing()) return;
  networkPorts_.erase(entry);
  storeNetworkPorts();
  relistOwnPorts();
  if (selectedPath_ == name) {
    // As when a selected board goes away: the first USB board, if there is one.
    auto decision = PortChoice::decide(ports_, std::nullopt, selectedPath_.toStdString(), {});
    selectPort(decision.fallback.value_or(""));
  }
  emit networkPortsChanged();
}

void FlasherModel::setSelectedPath(const QString& path) {
  // A test device or a simulated board lives only as long as this start; a later start would
  // offer a port that is gone and fail on it.
  if (!allowsTestDevice(path.toStdString())) defaults_->setValue(Keys::port, path);
  if (selectedPath_ == path) return;
  selectedPath_ = path;
  emit selectedPathChanged();
  emit canFlashChanged();
}

void FlasherModel::selectPort(const std::string& path) { setSelectedPath(qs(path)); }

void FlasherModel::portsChanged(const std::vector<SerialPortInfo>& ports) {
  scanned_ = ports;
  relistOwnPorts();
  auto previous = std::move(knownPaths_);
  knownPaths_ = PortChoice::pathsOf(ports_);
  if (state_ != FlasherState::idle) return;

  auto now = Clock::now();
  // A port that comes back right after a run is told by what it is, the board's USB serial
  // number or, once connected, its MAC address; one that cannot be told is left alone, and the
  // log says so.
  const bool esp = product_.target.isESP();
  std::map<std::string, std::string> compareMAC;
  auto decision = PortChoice::decide(
      ports_, previous, selectedPath_.toStdString(), [&](const std::string& path) {
        auto port = std::ranges::find(ports_, path, &SerialPortInfo::path);
        if (port == ports_.end()) return true;
        auto arrival = PortChoice::judgeArrival(*port, isTestDevice(path),
                                                lastFlashed_ ? &*lastFlashed_ : nullptr, esp, now);
        if (arrival == PortChoice::Arrival::compareMAC) compareMAC[path] = *lastFlashed_->mac;
        if (arrival == PortChoice::Arrival::newBoard || arrival == PortChoice::Arrival::compareMAC)
          return false;
        appendLine({LogSegment::Kind::meta,
                    L10n::Station::aboutBoard(
                        portLabel(qs(path)).toStdString(),
                        L10n::Station::leftAlone(PortChoice::whyLeftAlone(arrival)))});
        return true;
      });
  if (decision.newBoard) {
    selectPort(*decision.newBoard);
    if (autoFlash_ && !hasErrors()) {
      auto mac = compareMAC.find(*decision.newBoard);
      scheduleAutoFlash(*decision.newBoard,
                        mac != compareMAC.end() ? std::optional(mac->second) : std::nullopt);
    }
  } else if (decision.fallback) {
    selectPort(*decision.fallback);
  }
}

void FlasherModel::scheduleAutoFlash(const std::string& path,
                                     std::optional<std::string> leaveBoardWithMAC) {
  appendLine({LogSegment::Kind::meta, L10n::Log::newBoardOn(portLabel(qs(path)).toStdString())});
  emit autoFlashScheduled(qs(path));
  // The timer's context is the model: a model that is gone never fires it.
  QTimer::singleShot(milliseconds(options_.autoFlashDelaySeconds), this,
                     [this, path, leaveBoardWithMAC] {
                       bool present = std::ranges::any_of(
                           ports_, [&](const SerialPortInfo& port) { return port.path == path; });
                       // Switching automatic flashing off in the meantime also calls it off.
                       if (state_ == FlasherState::idle && autoFlash_ &&
                           selectedPath_.toStdString() == path && present) {
                         startRun(leaveBoardWithMAC);
                       }
                     });
}

// MARK: - Simulated boards

std::vector<FlasherModel::SimulatedPort> FlasherModel::simulatedBoards() const {
  std::vector<SimulatedPort> boards;
  for (const auto& board : simulated_)
    boards.push_back({board->path(), board->target()});
  return boards;
}

QString FlasherModel::plugInSimulatedBoard(const Target& target) {
  std::unique_ptr<simulator::SimulatedBoard> board;
  try {
    board = std::make_unique<simulator::SimulatedBoard>(target, options_.paceSimulatedBoards);
  } catch (const std::invalid_argument&) {
    setErrorMessage(
        qs(L10n::Simulator::cannotSimulate(simulator::SimulatedBoard::displayName(target))));
    return {};
  } catch (const std::exception& error) {
    setErrorMessage(qs(L10n::Simulator::cannotOpenTerminal(error.what())));
    return {};
  }
  const QString path = qs(board->path());
  simulated_.push_back(std::move(board));
  appendLine({LogSegment::Kind::meta,
              L10n::Model::simulatedBoardPluggedIn(portLabel(path).toStdString())});
  // Something to flash comes first, so that automatic flashing finds a product without errors.
  if (product_.images.empty() && state_ == FlasherState::idle) openDemoProduct(target);
  // The board was certainly not there before, even when no list has arrived yet.
  if (!knownPaths_) knownPaths_ = PortChoice::pathsOf(ports_);
  portsChanged(scanned_);
  emit simulatedBoardsChanged();
  return path;
}

void FlasherModel::unplugSimulatedBoard(const QString& path) {
  auto board = std::ranges::find_if(
      simulated_, [raw = path.toStdString()](const auto& b) { return b->path() == raw; });
  if (board == simulated_.end()) return;
  const std::string label = portLabel(path).toStdString();
  // Its pseudo-terminal closes here: a run on it sees the line hang up.
  simulated_.erase(board);
  appendLine({LogSegment::Kind::meta, L10n::Model::simulatedBoardUnplugged(label)});
  portsChanged(scanned_);
  emit simulatedBoardsChanged();
}

void FlasherModel::openDemoProduct(const Target& target) {
  const std::string name = L10n::Model::demoProduct(simulator::SimulatedBoard::displayName(target));
  // Imported as a build folder is, and then gone: the product holds its own copy of the files.
  QTemporaryDir scratch;
  const std::filesystem::path folder = std::filesystem::path(scratch.path().toStdString()) / name;
  try {
    if (!scratch.isValid()) {
      const QFileInfo temporary(QDir::tempPath());
      const std::errc cause = !temporary.exists()  ? std::errc::no_such_file_or_directory
                              : !temporary.isDir() ? std::errc::not_a_directory
                                                   : std::errc::permission_denied;
      throw std::filesystem::filesystem_error("demo", QDir::tempPath().toStdString(),
                                              std::make_error_code(cause));
    }
    simulator::SimulatedBoard::writeDemo(target, folder);
  } catch (const std::filesystem::filesystem_error& error) {
    setErrorMessage(qs(L10n::Simulator::cannotWriteDemo(
        error.path1().empty() ? folder.string() : error.path1().string(),
        L10n::Errors::systemCause(error.code().value()))));
    return;
  }
  setFiles({});
  setProductURL(std::nullopt);
  Product product = freshProduct(target);
  product.name = name;
  setProduct(product);
  importFolder(folder);
  // A demo is a new product: nothing to save until it is changed.
  setUnsaved(false);
  setOutcome(std::nullopt);
}

// MARK: - The station

bool FlasherModel::beginStation() {
  if (state_ != FlasherState::idle) return false;
  setState(FlasherState::station);
  return true;
}

void FlasherModel::endStation() {
  if (state_ != FlasherState::station) return;
  setState(FlasherState::idle);
  // The boards the station left on their ports are no new boards for automatic flashing.
  knownPaths_ = PortChoice::pathsOf(ports_);
}

void FlasherModel::playRunSound(bool succeeded) {
  if (playSounds_)
    options_.sounds->play(succeeded ? SoundSink::successSound : SoundSink::failureSound);
}

// MARK: - Flashing

void FlasherModel::startFlash() { startRun(std::nullopt); }

void FlasherModel::startRun(std::optional<std::string> leaveBoardWithMAC) {
  if (state_ != FlasherState::idle) return;
  if (selectedPath_.isEmpty()) {
    setErrorMessage(qs(L10n::Errors::selectPortFirst()));
    return;
  }
  if (auto error = ProductCheck::firstError(ProductCheck::check(product_, files_))) {
    setErrorMessage(qs(error->message()));
    return;
  }

  std::string path = selectedPath_.toStdString();
  QPointer<FlasherModel> weak(this);
  auto job = std::make_shared<FlashJob>(
      product_, files_, path, allowsTestDevice(path), [weak](const FlashEvent& event) {
        postToModel(weak, [event](FlasherModel& model) { model.handle(event); });
      });
  job->usbJTAGFirst = prefersUSBJTAGReset(selectedPort());
  job->compressionCache = compression_;
  job->leaveBoardWithMAC = leaveBoardWithMAC;
  // The port may be gone when the run ends: the board restarts.
  runSerialNumber_ = selectedPort() ? selectedPort()->serialNumber : std::nullopt;
  runMAC_.reset();

  job_ = job;
  narrator_.emplace(!product_.target.isESP());
  qint64 total = 0;
  for (const auto& image : product_.images) {
    if (image.enabled) total += image.size;
  }
  lastProgressPublish_.reset();
  progressFile_.clear();
  setProgress(0, std::max<qint64>(total, 1));
  // The first stage is known before the run is said to be under way: whoever shows the state
  // never meets a run without one.
  setStageText(qs(L10n::Stage::connecting()));
  setState(FlasherState::flashing);
  setOutcome(std::nullopt);
  appendLine(RunNarration::opening(product_.name, portLabel(selectedPath_).toStdString()));

  std::thread([job, weak] {
    std::optional<FlashSummary> summary;
    bool cancelled = false, sameBoard = false;
    std::string message;
    try {
      summary = job->run();
    } catch (const FlashJob::SameBoard&) {
      sameBoard = true;
    } catch (const FlashError& error) {
      cancelled = error.isCancelled();
      message = error.message();
    } catch (const FlashPortError& error) {
      message = error.message();
    } catch (const std::exception& error) {
      message = error.what();
    }
    postToModel(weak, [summary, cancelled, sameBoard, message](FlasherModel& model) {
      if (sameBoard)
        model.leaveSameBoard();
      else
        model.finish(summary, cancelled, message);
    });
  }).detach();
}

void FlasherModel::toggleFlash() {
  if (job_) {
    job_->cancel();
  } else {
    startFlash();
  }
}

void FlasherModel::handle(const FlashEvent& event) {
  if (state_ != FlasherState::flashing || !narrator_) return;
  // Progress too goes through the narrator: an AVR write shows its stage again once bytes move.
  if (auto* connected = std::get_if<FlashEvents::Connected>(&event)) runMAC_ = connected->mac;
  NarratedStep step = narrator_->narrate(event);
  if (auto* writing = std::get_if<FlashEvents::Writing>(&event))
    progressFile_ = qs(visible(writing->name));
  else if (auto* verifying = std::get_if<FlashEvents::Verifying>(&event))
    progressFile_ = qs(visible(verifying->name));
  if (step.stage) setStageText(qs(*step.stage));
  if (step.line) appendLine(*step.line);
  if (step.note) appendLine(*step.note);
  if (auto* progress = std::get_if<FlashEvents::Progress>(&event)) {
    qint64 total = std::max<qint64>(progress->total, 1);
    auto now = Clock::now();
    bool due = !lastProgressPublish_ ||
               now - *lastProgressPublish_ > duration(options_.progressIntervalSeconds);
    if (progress->done >= progress->total || due) {
      lastProgressPublish_ = now;
      setProgress(progress->done, total);
    } else {
      setProgress(progressDone_, total);
    }
  }
}

void FlasherModel::finish(std::optional<FlashSummary> summary, bool cancelled,
                          const std::string& message) {
  NarratedStep step;
  FlashStatistics statistics = statistics_;
  if (summary) {
    setProgress(progressTotal_, progressTotal_);
    statistics.flashed += 1;
    statistics.lastSeconds = summary->seconds;
    setOutcome(FlashOutcome{FlashOutcome::Success{*summary}});
    step = RunNarration::succeeded(*summary);
  } else if (cancelled) {
    setOutcome(FlashOutcome{FlashOutcome::Cancelled{}});
    step = RunNarration::failed(message, true, !narrator_ || narrator_->boardAnswered());
  } else {
    statistics.failed += 1;
    setOutcome(FlashOutcome{FlashOutcome::Failure{message}});
    step = RunNarration::failed(message, false);
  }
  setStatistics(statistics);
  // The outcome is known before the run is said to be over, so whoever shows the state goes
  // from the run straight to its end.
  endRun(false);
  if (step.stage) setStageText(qs(*step.stage));
  if (step.line) appendLine(*step.line);
  if (step.note) appendLine(*step.note);
  narrator_.reset();
  if (!cancelled) playRunSound(summary.has_value());
}

void FlasherModel::endRun(bool provedSame) {
  // The board restarts now and may come back as a new port: what tells it from the next one.
  const auto mac = provedSame && job_ ? job_->leaveBoardWithMAC : runMAC_;
  lastFlashed_ = PortChoice::FlashedBoard{Clock::now() + duration(options_.quietSeconds),
                                          runSerialNumber_, mac, provedSame};
  job_.reset();
  setState(FlasherState::idle);
  knownPaths_ = PortChoice::pathsOf(ports_);
}

void FlasherModel::leaveSameBoard() {
  endRun(true);
  narrator_.reset();
  appendLine(
      {LogSegment::Kind::meta,
       L10n::Station::aboutBoard(portLabel(selectedPath_).toStdString(),
                                 L10n::Station::leftAlone(L10n::Station::sameBoardByMAC()))});
}

void FlasherModel::setState(FlasherState state) {
  if (state_ == state) return;
  state_ = state;
  emit stateChanged();
  emit canFlashChanged();
}

void FlasherModel::setStageText(const QString& text) {
  if (stageText_ == text) return;
  stageText_ = text;
  emit stageTextChanged();
}

void FlasherModel::setOutcome(std::optional<FlashOutcome> outcome) {
  if (outcome_ == outcome) return;
  outcome_ = std::move(outcome);
  emit outcomeChanged();
}

void FlasherModel::setProgress(qint64 done, qint64 total) {
  if (progressDone_ == done && progressTotal_ == total) return;
  progressDone_ = done;
  progressTotal_ = total;
  emit progressChanged();
}

void FlasherModel::setStatistics(const FlashStatistics& statistics) {
  if (statistics_ == statistics) return;
  statistics_ = statistics;
  emit statisticsChanged();
}

// MARK: - Log

void FlasherModel::appendLine(const LogSegment& line) { appendLog({line}); }

void FlasherModel::appendLog(const std::vector<LogSegment>& segments) {
  std::vector<LogSegment> line;
  line.reserve(segments.size() + 1);
  if (showTimestamps_) {
    line.push_back(
        {LogSegment::Kind::timestamp,
         QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz")).toStdString() + "  "});
  }
  // Names from product files and devices may carry control and bidirectional characters.
  for (const LogSegment& segment : segments)
    line.push_back({segment.kind, visibleLines(segment.text)});
  output_->append(line);
  emit logLineAppended(line);
  if (outputIsEmpty_) {
    outputIsEmpty_ = false;
    emit outputIsEmptyChanged();
  }
}

void FlasherModel::clearLog() {
  output_->clear();
  if (!outputIsEmpty_) {
    outputIsEmpty_ = true;
    emit outputIsEmptyChanged();
  }
  setStatistics({});
}

void FlasherModel::saveLog() {
  if (!dialogs_) return;
  QString proposed = QStringLiteral("Tarnwick ") +
                     QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss")) +
                     QStringLiteral(".txt");
  auto location = dialogs_->chooseLogSaveLocation(proposed);
  if (!location) return;
  // QSaveFile writes beside the target and renames over it: a crash never leaves half a log.
  QSaveFile file(qs(location->string()));
  QByteArray text = output_->plainText().toUtf8();
  if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
    // Qt keeps the system's reason to itself; the places around the file tell it again.
    const QFileInfo target(file.fileName());
    const QFileInfo folder(target.absolutePath());
    int cause = EIO;
    if (target.isDir())
      cause = EISDIR;
    else if (!folder.exists())
      cause = ENOENT;
    else if (!folder.isDir())
      cause = ENOTDIR;
    else if (file.error() == QFileDevice::ResourceError)
      cause = ENOSPC;
    else if (file.error() == QFileDevice::PermissionsError ||
             file.error() == QFileDevice::OpenError)
      cause = EACCES;
    setErrorMessage(qs(L10n::Errors::savingFailedAt(location->string(), cause)));
  }
}

// MARK: - Switches

bool FlasherModel::storeSwitch(const char* key, bool& value, bool on) {
  defaults_->setValue(key, on);
  if (value == on) return false;
  value = on;
  return true;
}

void FlasherModel::setAutoFlash(bool on) {
  if (storeSwitch(Keys::autoFlash, autoFlash_, on)) emit autoFlashChanged();
}

void FlasherModel::setPlaySounds(bool on) {
  if (storeSwitch(Keys::sounds, playSounds_, on)) emit playSoundsChanged();
}

void FlasherModel::setShowTimestamps(bool on) {
  if (storeSwitch(Keys::timestamps, showTimestamps_, on)) emit showTimestampsChanged();
}

void FlasherModel::setAutoscroll(bool on) {
  output_->setAutoscroll(on);
  if (storeSwitch(Keys::autoscroll, autoscroll_, on)) emit autoscrollChanged();
}

void FlasherModel::setErrorMessage(const QString& message) {
  if (errorMessage_ == message) return;
  errorMessage_ = message;
  emit errorMessageChanged();
}

} // namespace tarnwick
