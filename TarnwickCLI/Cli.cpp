#include "TarnwickCLI/Cli.hpp"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <unistd.h>

#include "FlashCore/AVR.hpp"
#include "FlashCore/FirmwareImport.hpp"
#include "FlashCore/FolderFiles.hpp"
#include "FlashCore/ProductCheck.hpp"
#include "FlashCore/ProductPackage.hpp"
#include "FlashEngine/FlashJob.hpp"
#include "FlashEngine/RunNarration.hpp"
#include "FlashSerial/FlashPortError.hpp"
#include "Localization/AVRTexts.hpp"
#include "Localization/CliTexts.hpp"
#include "Localization/GeneralTexts.hpp"
#include "Localization/ProductTexts.hpp"
#include "Localization/RunTexts.hpp"
#include "TarnwickCLI/Arguments.hpp"
#include "TarnwickCLI/Console.hpp"
#include "TarnwickCLI/Ports.hpp"

namespace tarnwick::cli {

namespace fs = std::filesystem;

namespace {

/// Input that cannot be used; the message is printed and the program exits with 2.
struct Unusable {
  std::string message;
};

std::atomic<bool> interrupted = false;

extern "C" void onInterrupt(int) { interrupted = true; }

void printError(const std::string& message) {
  std::fputs(message.c_str(), stderr);
  std::fputc('\n', stderr);
}

std::string usageOf(CommandKind command) {
  switch (command) {
  case CommandKind::flash: return L10n::Cli::helpFlash();
  case CommandKind::pack: return L10n::Cli::helpPack();
  case CommandKind::check: return L10n::Cli::helpCheck();
  case CommandKind::info: return L10n::Cli::helpInfo();
  case CommandKind::ports: return L10n::Cli::helpPorts();
  case CommandKind::help: return L10n::Cli::helpOverview();
  }
  return {};
}

std::string nameOf(const std::string& path) {
  fs::path p(path);
  if (p.filename().empty()) p = p.parent_path();
  return p.filename().string();
}

ProductPackage openProduct(const std::string& path) {
  try {
    return ProductPackage::read(path);
  } catch (const PackageError& error) {
    throw Unusable{L10n::Errors::cannotOpen(nameOf(path), error.message())};
  } catch (const ProductDecodingError& error) {
    throw Unusable{L10n::Errors::cannotOpen(nameOf(path), error.message())};
  }
}

Target targetFrom(const std::string& text) {
  auto target = Target::parse(text);
  if (!target) throw Unusable{L10n::Cli::unknownTarget(text)};
  return *target;
}

// Builds a product from a build folder or from single files, as the app's "Build Folder…" and
// "Files…" do.
ProductPackage importProduct(const Target& target, const std::vector<std::string>& inputs) {
  ProductPackage package;
  package.product.target = target;
  std::vector<FirmwareImport::Imported> entries;

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
      throw Unusable{L10n::Errors::cannotUse(folder, error.code().message() + ".")};
    }
  } else {
    for (const std::string& input : inputs) {
      const std::string name = nameOf(input);
      try {
        Bytes content = FirmwareImport::content(name, readFileBytes(input));
        auto imported = FirmwareImport::makeImage(name, std::move(content), target, entries);
        // An Arduino board takes one sketch: the last file given wins.
        if (target.avrBoard()) entries.clear();
        entries.push_back(std::move(imported));
      } catch (const FirmwareImport::ImportError& error) {
        throw Unusable{L10n::Errors::cannotUse(name, error.message())};
      } catch (const fs::filesystem_error& error) {
        throw Unusable{L10n::Errors::cannotUse(name, error.code().message() + ".")};
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
  if (arguments.target) return importProduct(targetFrom(*arguments.target), arguments.inputs);
  if (arguments.inputs.size() != 1)
    throw UsageError{L10n::Cli::oneProductFile(), arguments.command};
  return openProduct(arguments.inputs[0]);
}

void applyOverrides(Product& product, const SettingOverrides& overrides) {
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
  return (issue.isError() ? L10n::Cli::errorPrefix() : L10n::Cli::warningPrefix()) + ": " +
         (file.empty() ? "" : file + ": ") + issue.message();
}

int flash(const Arguments& arguments) {
  ProductPackage package = productFor(arguments);
  applyOverrides(package.product, arguments.overrides);
  auto issues = ProductCheck::check(package.product, package.files);
  for (const auto& issue : issues) {
    if (!issue.isError()) printError(findingLine(package.product, issue));
  }
  if (auto error = ProductCheck::firstError(issues)) {
    throw Unusable{findingLine(package.product, *error)};
  }
  const std::vector<SerialPortInfo> present = PortScanner().scan();
  const std::string port = arguments.port ? *arguments.port : onlyUSBPort(present).path;

  Console console(stdout, ::isatty(STDOUT_FILENO) == 1);
  const bool avr = package.product.target.avrBoard().has_value();
  auto show = [&](const NarratedStep& step) {
    if (step.stage) console.stage(*step.stage);
    if (step.line) console.line(step.line->text);
  };
  console.line(
      RunNarration::opening(package.product.name, port.starts_with("/dev/") ? port.substr(5) : port)
          .text);

  FlashJob job(package.product, package.files, port, arguments.testDevice,
               [&](const FlashEvent& event) {
                 if (auto* progress = std::get_if<FlashEvents::Progress>(&event)) {
                   console.progress(progress->done, progress->total);
                 } else {
                   show(RunNarration::narrate(event, avr));
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
  show(RunNarration::failed(*failure, cancelled));
  return runFailed;
}

int pack(const Arguments& arguments) {
  ProductPackage package = importProduct(targetFrom(*arguments.target), arguments.inputs);
  fs::path out = *arguments.out;
  if (out.extension() != "." + std::string(ProductPackage::fileExtension)) {
    out += "." + std::string(ProductPackage::fileExtension);
  }
  package.product.name = arguments.name ? *arguments.name : out.stem().string();
  try {
    ProductPackage::write(package, out);
  } catch (const PackageError& error) {
    throw Unusable{L10n::Errors::savingFailed(error.message())};
  } catch (const fs::filesystem_error& error) {
    throw Unusable{L10n::Errors::savingFailed(error.code().message() + ".")};
  }
  for (const auto& issue : ProductCheck::check(package.product, package.files)) {
    printError(findingLine(package.product, issue));
  }
  std::printf(
      "%s\n",
      L10n::Cli::packed(out.string(), static_cast<int>(package.product.images.size())).c_str());
  return success;
}

int check(const Arguments& arguments) {
  ProductPackage package = openProduct(arguments.inputs[0]);
  auto issues = ProductCheck::check(package.product, package.files);
  if (issues.empty()) std::printf("%s\n", L10n::Cli::noFindings().c_str());
  for (const auto& issue : issues)
    std::printf("%s\n", findingLine(package.product, issue).c_str());
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
  auto row = [](const std::string& label, const std::string& value) {
    std::printf("%-28s %s\n", (label + ":").c_str(), value.c_str());
  };
  auto yesNo = [](bool value) { return value ? L10n::Cli::yes() : L10n::Cli::no(); };
  row(L10n::Product::productName(), p.name.empty() ? L10n::Product::newProduct() : p.name);
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
  if (!p.notes.empty()) row(L10n::Product::notes(), p.notes);
  std::printf("\n");
  for (const auto& image : p.images) {
    std::printf("%s %-18s %-10s %10s  %s  %s\n", image.enabled ? "*" : "-",
                roleName(image.role).c_str(), formatAddress(image.offset).c_str(),
                formatByteCount(image.size).c_str(), image.sha256.c_str(), image.fileName.c_str());
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
    case CommandKind::flash: return flash(arguments);
    case CommandKind::pack: return pack(arguments);
    case CommandKind::check: return check(arguments);
    case CommandKind::info: return info(arguments);
    case CommandKind::ports: return showPorts(arguments.json, arguments.watch);
    }
  } catch (const UsageError& error) {
    printError(error.message);
    std::fputc('\n', stderr);
    std::fputs(usageOf(error.command).c_str(), stderr);
    return unusable;
  } catch (const Unusable& error) {
    printError(error.message);
    return unusable;
  }
  return success;
}

} // namespace tarnwick::cli
