#include "TarnwickCLI/Cli.hpp"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>
#include <unistd.h>

#include "FlashCore/AVR.hpp"
#include "FlashCore/ESPImage.hpp"
#include "FlashCore/FirmwareImport.hpp"
#include "FlashCore/FolderFiles.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "FlashCore/VisibleText.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "FlashEngine/RunNarration.hpp"
#include "FlashSerial/FlashPort.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "FlashSerial/NetworkPort.hpp"
#include "FlashStation/PortSource.hpp"
#include "FlashStation/Station.hpp"
#include "Localization/AVRTexts.hpp"
#include "Localization/CliTexts.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/IssueTexts.hpp"
#include "Localization/PortTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "Localization/StationTexts.hpp"
#include "TarnwickCLI/Arguments.hpp"
#include "TarnwickCLI/Console.hpp"
#include "TarnwickCLI/Ports.hpp"
#include "TarnwickCLI/StationOutput.hpp"

namespace tarnwick::cli {

namespace fs = std::filesystem;

namespace {

/// Input that cannot be used; the message is printed and the program exits with 2.
struct Unusable {
  std::string message;
};

std::atomic<bool> interrupted = false;

extern "C" void onInterrupt(int) { interrupted = true; }

// Messages quote product files and devices, whose names may hold anything.
void printError(const std::string& message) {
  std::fputs(visibleLines(message).c_str(), stderr);
  std::fputc('\n', stderr);
}

std::string usageOf(CommandKind command) {
  switch (command) {
  case CommandKind::version: return L10n::Cli::helpOverview();
  case CommandKind::flash: return L10n::Cli::helpFlash();
  case CommandKind::pack: return L10n::Cli::helpPack();
  case CommandKind::check: return L10n::Cli::helpCheck();
  case CommandKind::info: return L10n::Cli::helpInfo();
  case CommandKind::ports: return L10n::Cli::helpPorts();
  case CommandKind::station: return L10n::Cli::helpStation();
  case CommandKind::help: return L10n::Cli::helpOverview();
  }
  return {};
}

std::string nameOf(const std::string& path) {
  fs::path p(path);
  if (p.filename().empty()) p = p.parent_path();
  return p.filename().string();
}

bool exists(const std::string& path) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(path, ignored));
}

// A regular file whose container begins with the product type, as this app writes it.
bool startsAsProduct(const fs::path& path) {
  std::error_code ignored;
  // Only a regular file is looked into: reading a FIFO or a serial device could wait forever.
  if (!fs::is_regular_file(path, ignored)) return false;
  std::ifstream file(path, std::ios::binary);
  std::string head(128, '\0');
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  return head.starts_with("PK\x03\x04") && head.find(ProductPackage::mimeType) != std::string::npos;
}

// What `pack --force` may replace: a single-file product (a damaged one only when it carries
// the product type), or a product directory holding a readable product.json and nothing but
// its files/ folder.
bool isReplaceableProduct(const fs::path& path) {
  std::error_code error;
  const auto status = fs::symlink_status(path, error);
  if (error) return false;
  if (fs::is_regular_file(status)) {
    try {
      ProductPackage::read(path);
      return true;
    } catch (const PackageError&) {
    } catch (const ProductDecodingError&) {
    }
    return startsAsProduct(path);
  }
  return ProductPackage::isProductDirectory(path);
}

// A product file, whichever of its forms: a directory holding product.json, or a file with the
// product extension or the product type as the first entry of its container.
bool isProductFile(const std::string& path) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) return fs::exists(fs::path(path) / "product.json", ignored);
  std::string extension = fs::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (extension == "." + std::string(ProductPackage::fileExtension)) return true;
  return startsAsProduct(path);
}

ProductPackage openProduct(const std::string& path) {
  if (!exists(path))
    throw Unusable{L10n::Errors::cannotOpen(nameOf(path), L10n::Cli::noSuchFile())};
  try {
    return ProductPackage::read(path);
  } catch (const PackageError& error) {
    throw Unusable{L10n::Errors::cannotOpen(nameOf(path), error.message())};
  } catch (const ProductDecodingError& error) {
    throw Unusable{error.message(nameOf(path))};
  }
}

// Builds a product from a build folder or from single files, as the app's "Build Folder…" and
// "Files…" do.
ProductPackage importProduct(const std::string& targetText,
                             const std::vector<std::string>& inputs) {
  const Target target = *Target::parse(targetText); // checked with the arguments
  ProductPackage package;
  package.product.target = target;
  // Named after what it was made from, so the run's first line says what is being flashed.
  package.product.name = nameOf(inputs.front());
  std::vector<FirmwareImport::Imported> entries;
  for (const std::string& input : inputs) {
    if (!exists(input))
      throw Unusable{L10n::Errors::cannotUse(nameOf(input), L10n::Cli::noSuchFile())};
  }
  if (target.avrBoard() && inputs.size() > 1) throw Unusable{L10n::Issue::oneSketchOnly()};

  if (inputs.size() == 1 && fs::is_directory(inputs[0])) {
    const std::string folder = nameOf(inputs[0]);
    try {
      FolderFiles files = readFolderFiles(inputs[0]);
      auto build = FirmwareImport::scanFolder(files.files, files.flasherArgs, target);
      entries = std::move(build.images);
      // The chip the build was made for fills in a target that detects automatically.
      if (build.chip && package.product.target.isESP() && !package.product.target.espChip()) {
        package.product.target = Target::esp(*build.chip);
      }
      if (build.flashMode) package.product.flashMode = *build.flashMode;
      if (build.flashSize) package.product.flashSize = *build.flashSize;
    } catch (const FirmwareImport::ImportError& error) {
      throw Unusable{L10n::Errors::cannotUse(folder, error.message())};
    } catch (const fs::filesystem_error& error) {
      throw Unusable{
          L10n::Errors::cannotUse(folder, L10n::Errors::readCause(error.code().value()))};
    }
  } else {
    for (const std::string& input : inputs) {
      const std::string name = nameOf(input);
      try {
        Bytes content = FirmwareImport::content(name, readFileBytes(input));
        entries.push_back(FirmwareImport::makeImage(name, std::move(content), target, entries));
      } catch (const FirmwareImport::ImportError& error) {
        throw Unusable{L10n::Errors::cannotUse(name, error.message())};
      } catch (const fs::filesystem_error& error) {
        throw Unusable{
            L10n::Errors::cannotUse(name, L10n::Errors::readCause(error.code().value()))};
      }
    }
  }
  for (auto& entry : entries) {
    package.files[entry.image.id] = std::move(entry.bytes);
    package.product.images.push_back(std::move(entry.image));
  }
  return package;
}

ProductPackage productFor(const Arguments& arguments) {
  if (arguments.target) {
    // A product file is a product file whatever else is given: never import it as firmware.
    if (std::any_of(arguments.inputs.begin(), arguments.inputs.end(), isProductFile)) {
      throw UsageError{L10n::Cli::targetWithProduct(), arguments.command};
    }
    return importProduct(*arguments.target, arguments.inputs);
  }
  if (arguments.inputs.size() != 1)
    throw UsageError{L10n::Cli::oneProductFile(), arguments.command};
  return openProduct(arguments.inputs[0]);
}

void applyOverrides(Product& product, const SettingOverrides& overrides, CommandKind command) {
  if (auto option = overrides.espOnlyOption(); option && product.target.avrBoard()) {
    throw UsageError{L10n::Cli::espOnly(*option), command};
  }
  if (overrides.baud) product.flashBaud = *overrides.baud;
  if (overrides.reset) product.resetMode = *overrides.reset;
  if (overrides.noVerify) product.verify = false;
  if (overrides.flashMode) product.flashMode = *overrides.flashMode;
  if (overrides.flashSize) product.flashSize = *overrides.flashSize;
  if (overrides.keepOTAData) product.clearOTAData = false;
}

std::string fileOf(const Product& product, const ProductIssue& issue) {
  if (!issue.imageID) return {};
  for (const auto& image : product.images) {
    if (image.id == *issue.imageID) return image.fileName;
  }
  return {};
}

std::string findingLine(const Product& product, const ProductIssue& issue) {
  std::string file = fileOf(product, issue);
  return L10n::Cli::labelled(issue.isError() ? L10n::Cli::errorPrefix()
                                             : L10n::Cli::warningPrefix()) +
         " " + (file.empty() ? "" : file + ": ") + issue.message();
}

// Checks a product before any board is touched: warnings go to standard error, an error ends
// the command.
void checkBeforeFlashing(const ProductPackage& package) {
  auto issues = ProductCheck::check(package.product, package.files);
  for (const auto& issue : issues) {
    if (!issue.isError()) printError(findingLine(package.product, issue));
  }
  if (auto error = ProductCheck::firstError(issues)) {
    throw Unusable{findingLine(package.product, *error)};
  }
}

// A port that is no serial adapter is a usage error, before anything is opened: a
// pseudo-terminal only with --test-device, and "ttyUSB0" is most likely /dev/ttyUSB0. A network
// port ("rfc2217://HOST:PORT") must be well formed, with or without --test-device.
void checkPortName(const std::string& path, const Arguments& arguments) {
  if (looksLikeNetworkPort(path)) {
    if (parseNetworkPort(path)) return;
    throw UsageError{L10n::Cli::invalidNetworkPort(path), arguments.command};
  }
  if (arguments.testDevice || FlashPort::isValidPath(path)) return;
  if (path.find('/') == std::string::npos && FlashPort::isValidPath("/dev/" + path)) {
    throw UsageError{L10n::Station::noDevicePath(path) + " " +
                         L10n::Station::didYouMeanDevice("/dev/" + path),
                     arguments.command};
  }
  throw UsageError{L10n::Station::needsTestDevice(path), arguments.command};
}

int flash(const Arguments& arguments) {
  ProductPackage package = productFor(arguments);
  applyOverrides(package.product, arguments.overrides, arguments.command);
  checkBeforeFlashing(package);
  const std::vector<SerialPortInfo> present = PortScanner().scan();
  const std::string port = arguments.port ? *arguments.port : onlyUSBPort(present).path;
  checkPortName(port, arguments);

  Console console(stdout, ::isatty(STDOUT_FILENO) == 1);
  const bool avr = package.product.target.avrBoard().has_value();
  auto show = [&](const NarratedStep& step) {
    if (step.stage) console.stage(*step.stage);
    if (step.line) console.line(step.line->text);
    if (step.note) console.line(step.note->text);
  };
  RunNarrator narrator(avr);
  console.line(RunNarration::opening(package.product.name, deviceName(port)).text);

  FlashJob job(package.product, package.files, port, arguments.testDevice,
               [&](const FlashEvent& event) {
                 show(narrator.narrate(event));
                 if (auto* progress = std::get_if<FlashEvents::Progress>(&event)) {
                   console.progress(progress->done, progress->total);
                 }
               });
  job.usbJTAGFirst = prefersUSBJTAGReset(portAt(present, port));

  struct sigaction action {};
  action.sa_handler = onInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);

  std::atomic<bool> finished = false;
  std::optional<FlashSummary> summary;
  std::optional<std::string> failure;
  bool cancelled = false;
  std::thread worker([&] {
    try {
      summary = job.run();
    } catch (const FlashError& error) {
      failure = error.message();
      cancelled = error.isCancelled();
    } catch (const FlashPortError& error) {
      failure = error.message();
    } catch (const std::exception& error) {
      failure = error.what();
    }
    finished = true;
  });
  // Ctrl-C stops the run as the Stop button does: the board is restarted and the run ends.
  while (!finished) {
    if (interrupted) job.cancel();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  worker.join();
  console.endProgress();
  if (summary) {
    show(RunNarration::succeeded(*summary));
    return success;
  }
  // The end of a failed run is an error: it goes where errors go.
  NarratedStep end = RunNarration::failed(*failure, cancelled, narrator.boardAnswered());
  printError(end.line->text);
  if (end.note) printError(end.note->text);
  return runFailed;
}

std::atomic<station::Station*> activeStation = nullptr;

extern "C" void onStationInterrupt(int) {
  if (station::Station* running = activeStation.load()) running->interrupt();
}

int station(const Arguments& arguments) {
  // A reader of the output that goes away (`| monitor` ended) must not kill boards mid-write:
  // the station notices the failed write, takes no new boards and finishes the running ones.
  std::signal(SIGPIPE, SIG_IGN);
  ProductPackage package = openProduct(arguments.inputs[0]);
  applyOverrides(package.product, arguments.overrides, arguments.command);
  checkBeforeFlashing(package);

  station::StationOptions options;
  options.allowsTestDevices = arguments.testDevice;
  options.now = arguments.now;
  options.limit = arguments.limit;
  std::vector<std::string> testDevices;
  for (const auto& path : arguments.ports) {
    checkPortName(path, arguments);
    // A network port by the name its events and record give it, however it was written.
    if (auto address = parseNetworkPort(path)) {
      // Named twice, it is still one port: its server would take a second watcher for another
      // client.
      if (options.onlyPorts.insert(address->name()).second)
        options.networkPorts.push_back(address->name());
      continue;
    }
    options.onlyPorts.insert(path);
    if (arguments.testDevice) options.testDevices.insert(path);
    if (!FlashPort::isValidPath(path)) testDevices.push_back(path);
  }

  std::unique_ptr<StationRecord> record;
  if (arguments.record) {
    try {
      record = std::make_unique<StationRecord>(*arguments.record, package.product.name,
                                               package.recordSHA256);
    } catch (const std::system_error& error) {
      throw Unusable{L10n::Station::cannotOpenRecord(
          *arguments.record, L10n::Errors::systemCause(error.code().value()))};
    }
  }

  station::ScannerPortSource source(testDevices);
  // Named test devices and network ports need no notice of ports coming and going; anything
  // else does.
  if (!source.canWatch() &&
      testDevices.size() + options.networkPorts.size() != arguments.ports.size()) {
    throw Unusable{L10n::Ports::cannotWatch()};
  }

  std::unique_ptr<StationOutput> output;
  const std::string productName = package.product.name;
  if (arguments.json)
    output = std::make_unique<StationJSON>(stdout, stderr, std::move(record), productName);
  else
    output = std::make_unique<StationConsole>(stdout, ::isatty(STDOUT_FILENO) == 1,
                                              std::move(record), productName);

  station::Station station(std::move(package), options, *output);
  activeStation = &station;
  // Without SA_RESTART: the signal also cuts the station's wait short.
  struct sigaction action {};
  action.sa_handler = onStationInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  const std::int64_t failures = station.run(source);
  activeStation = nullptr;
  output->end();
  if (station.outputWasLost()) {
    // Standard error is all that is left to say it, with the counts nobody read (the JSON form
    // gave them there already).
    printError(L10n::Station::outputLost(arguments.record.has_value()));
    if (!arguments.json) printError(L10n::Station::summary(station.flashed(), station.failed()));
    return runFailed;
  }
  return failures == 0 && !station.recordProblem() ? success : runFailed;
}

int pack(const Arguments& arguments) {
  ProductPackage package = importProduct(*arguments.target, arguments.inputs);
  applyOverrides(package.product, arguments.overrides, arguments.command);
  // "NAME.twflash/" names NAME.twflash itself, not a file inside it.
  std::string outText = *arguments.out;
  while (outText.size() > 1 && outText.back() == '/')
    outText.pop_back();
  fs::path out = outText;
  if (out.extension() != "." + std::string(ProductPackage::fileExtension)) {
    out += "." + std::string(ProductPackage::fileExtension);
  }
  package.product.name = arguments.name ? *arguments.name : out.stem().string();
  if (arguments.notes) package.product.notes = *arguments.notes;

  // A product that cannot be flashed is not saved: a CI job must not ship it.
  auto issues = ProductCheck::check(package.product, package.files);
  for (const auto& issue : issues)
    printError(findingLine(package.product, issue));
  if (ProductCheck::firstError(issues)) return unusable;
  if (exists(out.string())) {
    if (!arguments.force) throw Unusable{L10n::Cli::alreadyExists(out.string())};
    // --force replaces a product, never a folder of someone's other files.
    if (!isReplaceableProduct(out)) throw Unusable{L10n::Cli::notAProductToReplace(out.string())};
  }
  try {
    if (arguments.directory)
      ProductPackage::writeDirectory(package, out);
    else
      ProductPackage::write(package, out);
  } catch (const PackageError& error) {
    throw Unusable{L10n::Errors::savingFailedAt(out.string(), error.message())};
  } catch (const fs::filesystem_error& error) {
    const fs::path& where = error.path1().empty() ? out : error.path1();
    throw Unusable{L10n::Errors::savingFailedAt(where.string(), error.code().value())};
  }
  std::printf("%s\n", visible(L10n::Cli::packed(out.string(),
                                                static_cast<int>(package.product.images.size())))
                          .c_str());
  return success;
}

int check(const Arguments& arguments) {
  ProductPackage package = openProduct(arguments.inputs[0]);
  auto issues = ProductCheck::check(package.product, package.files);
  if (issues.empty()) std::printf("%s\n", L10n::Cli::noFindings().c_str());
  for (const auto& issue : issues)
    std::printf("%s\n", visible(findingLine(package.product, issue)).c_str());
  return ProductCheck::firstError(issues) ? unusable : success;
}

std::string targetName(const Target& target) {
  if (auto board = target.avrBoard()) return L10n::Product::boardName(*board);
  if (auto chip = target.espChip()) return std::string(displayName(*chip));
  return L10n::Product::espDetectAutomatically();
}

std::string roleName(FirmwareImage::Role role) {
  switch (role) {
  case FirmwareImage::Role::bootloader: return L10n::Images::bootloader();
  case FirmwareImage::Role::partitionTable: return L10n::Images::partitionTable();
  case FirmwareImage::Role::otaData: return L10n::Images::otaData();
  case FirmwareImage::Role::application: return L10n::Images::application();
  case FirmwareImage::Role::fileSystem: return L10n::Images::fileSystem();
  case FirmwareImage::Role::other: return L10n::Images::other();
  }
  return {};
}

int info(const Arguments& arguments) {
  ProductPackage package = openProduct(arguments.inputs[0]);
  const Product& p = package.product;
  std::vector<std::pair<std::string, std::string>> rows;
  auto row = [&](const std::string& label, const std::string& value) {
    rows.emplace_back(L10n::Cli::labelled(label), value);
  };
  auto yesNo = [](bool value) { return value ? L10n::Cli::yes() : L10n::Cli::no(); };
  row(L10n::Product::productName(), p.name.empty() ? L10n::Product::newProduct() : visible(p.name));
  row(L10n::Product::target(), targetName(p.target) + " (" + p.target.text() + ")");
  if (p.target.isESP()) {
    row(L10n::Settings::speedWhileFlashing(), std::to_string(p.flashBaud) + " baud");
    row(L10n::Settings::resetIntoBootloader(), L10n::Settings::resetModeName(p.resetMode));
    row(L10n::Settings::flashModeLabel(), L10n::Settings::flashModeName(p.flashMode));
    row(L10n::Settings::flashSizeLabel(), L10n::Settings::flashSizeName(p.flashSize));
    row(L10n::Settings::clearOTASelection(), yesNo(p.clearOTAData));
  } else if (auto board = p.target.avrBoard()) {
    row(L10n::Settings::bootloaderName(*board), std::to_string(baudRate(*board)) + " baud");
  }
  row(L10n::Settings::verifyAfterWriting(), yesNo(p.verify));
  if (!p.notes.empty()) row(L10n::Product::notes(), visible(p.notes));
  std::size_t labelWidth = 0;
  for (const auto& [label, value] : rows)
    labelWidth = std::max(labelWidth, displayWidth(label));
  for (const auto& [label, value] : rows)
    std::printf("%s %s\n", padded(label, labelWidth).c_str(), value.c_str());
  std::printf("\n");

  std::size_t roleWidth = 0, sizeWidth = 0;
  for (const auto& image : p.images) {
    roleWidth = std::max(roleWidth, displayWidth(roleName(image.role)));
    sizeWidth = std::max(sizeWidth, displayWidth(formatByteCount(image.size)));
  }
  for (const auto& image : p.images) {
    std::printf("%s %s  %-10s  %s  %s  %s\n", image.enabled ? "*" : "-",
                padded(roleName(image.role), roleWidth).c_str(),
                formatAddress(image.offset).c_str(),
                padded(formatByteCount(image.size), sizeWidth, true).c_str(),
                visible(image.sha256).c_str(), visible(image.fileName).c_str());
  }
  return success;
}

} // namespace

int run(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  Arguments arguments;
  try {
    arguments = parseArguments(words);
    switch (arguments.command) {
    case CommandKind::help: std::fputs(usageOf(arguments.helpFor).c_str(), stdout); return success;
    case CommandKind::version: std::printf("tarnwick-cli %s\n", TARNWICK_VERSION); return success;
    case CommandKind::flash: return flash(arguments);
    case CommandKind::pack: return pack(arguments);
    case CommandKind::check: return check(arguments);
    case CommandKind::info: return info(arguments);
    case CommandKind::ports: return showPorts(arguments.json, arguments.watch);
    case CommandKind::station: return station(arguments);
    }
  } catch (const UsageError& error) {
    printError(error.message);
    printError(L10n::Cli::seeHelp(commandName(error.command)));
    return unusable;
  } catch (const Unusable& error) {
    printError(error.message);
    return unusable;
  }
  return success;
}

} // namespace tarnwick::cli
