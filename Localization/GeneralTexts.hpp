#pragma once
// General messages and the names of settings, roles and targets shared by every front end.

#include <string>

#include "FlashCore/FlashSettings.hpp"

namespace tarnwick::L10n::Errors {
/// "Cannot open " + file + ": " + reason (the reason ends with its own full stop).
std::string cannotOpen(const std::string& file, const std::string& reason);
/// "Cannot use " + file + ": " + reason.
std::string cannotUse(const std::string& file, const std::string& reason);
/// "Cannot read " + file + ". Is it a file of this app?"
std::string cannotRead(const std::string& file);
/// "Saving failed: " + description.
std::string savingFailed(const std::string& description);
/// "Saving failed: " + file + ": " + reason (a sentence that begins in lower case).
std::string savingFailedAt(const std::string& file, const std::string& reason);
/// "Saving failed: " + file + ": " + why the system refused, as a full sentence.
std::string savingFailedAt(const std::string& file, int errorCode);
/// Why the system refused to read or write a file, for an errno value; ends with a full stop.
std::string systemCause(int errorCode);
/// Why a firmware file or build folder could not be read, for an errno value; ends with a full
/// stop. EFBIG means larger than any firmware file can be.
std::string readCause(int errorCode);
std::string selectPortFirst();
std::string somethingWentWrong();
} // namespace tarnwick::L10n::Errors

namespace tarnwick::L10n::Settings {
std::string connection();
std::string speedWhileFlashing();
std::string resetIntoBootloader();
std::string resetModeName(ResetMode mode);
std::string flashMemory();
std::string flashModeLabel();
std::string flashModeName(FlashMode mode);
std::string flashSizeLabel();
std::string flashSizeName(FlashSize size);
std::string clearOTASelection();
std::string verifyAfterWriting();
} // namespace tarnwick::L10n::Settings

namespace tarnwick::L10n::Product {
std::string espDetectAutomatically();
std::string productName();
std::string target();
std::string notes();
} // namespace tarnwick::L10n::Product
