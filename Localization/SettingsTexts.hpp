#pragma once
// Texts of the product panel, the connection settings sheet and the file list. The names of
// targets, settings and roles they show are in GeneralTexts, AVRTexts and ProductTexts.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Product {
/// Appended to the window title when there are unsaved changes: " (edited)".
std::string edited();
/// The panel's title, "Product".
std::string panelTitle();
std::string productButtonsTooltip();
std::string targetTooltip();
/// The target families: "ESP", "Arduino (AVR)".
std::string espFamily();
std::string arduinoFamily();
std::string notesPlaceholder();
/// The unsaved-changes question: title, text and its three buttons in this order.
std::string saveQuestion();
std::string unsavedChanges();
std::string saveButton();
std::string dontSave();
std::string cancel();
} // namespace tarnwick::L10n::Product

namespace tarnwick::L10n::Settings {
std::string speedExplanation();
std::string resetExplanation();
std::string flashModeExplanation();
std::string flashSizeExplanation();
std::string clearOTAExplanation();
/// The facts of an Arduino board: "Bootloader", "Speed", "Room for the sketch".
std::string bootloader();
std::string speed();
std::string roomForSketch();
std::string verificationAndProduction();
std::string verifyExplanation();
std::string flashAutomatically();
std::string flashAutomaticallyExplanation();
std::string soundWhenDone();
} // namespace tarnwick::L10n::Settings

namespace tarnwick::L10n::Images {
/// The buttons above the list and their tooltips.
std::string addFiles();
std::string addFilesTooltip();
std::string buildFolder();
std::string buildFolderTooltip();
/// The context menu of selected rows.
std::string remove();
std::string chooseAnotherFile();
/// Column titles; "Sketch" replaces "File" for an Arduino target.
std::string file();
std::string sketch();
std::string kind();
std::string address();
std::string size();
std::string locationAndChecks();
std::string flashThisFile();
std::string addressTooltip();
/// Messages of the open panels.
std::string chooseFirmwareFiles();
std::string chooseSketch();
std::string chooseBuildFolder();
/// The empty list: its title and the hint for an ESP and for an Arduino target.
std::string noFirmwareYet();
std::string addFilesHint();
std::string addSketchHint();
/// A partition table entry: count + " partitions".
std::string partitionCount(std::int64_t count);
/// The partition that holds an image: label + " (" + size + ", " + percentage + " % used)"; size
/// and percentage are formatted by the caller.
std::string partitionUsage(const std::string& label, const std::string& size,
                           const std::string& percentage);
} // namespace tarnwick::L10n::Images
