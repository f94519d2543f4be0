#pragma once
// Texts of the desktop window: menus, header, product panel, connection settings, file list,
// status line, log options, notices and the help window.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Window {
// Menus.
std::string fileMenu();
std::string boardMenu();
std::string viewMenu();
std::string helpMenu();
std::string newProduct();
std::string openProduct();
std::string openRecent();
std::string clearRecent();
std::string saveProduct();
std::string saveProductAs();
std::string saveLog();
std::string clearLog();
std::string quit();
std::string showLog();
std::string autoscroll();
std::string timestamps();
std::string stop();

// Header.
/// "Put the product onto the connected board (" + shortcut + ")".
std::string flashTooltip(const std::string& shortcut);
/// "Stop (" + shortcut + ")".
std::string stopTooltip(const std::string& shortcut);
std::string waitUntilFinished();
std::string settingsTooltip();
std::string automatic();
std::string serialPort();
std::string noPortsFound();
std::string selectAPort();
/// path + " (not connected)".
std::string notConnected(const std::string& path);

// Notice.
std::string noUSBBoard();
std::string dismiss();

// Product panel and the unsaved-changes question.
std::string productTitle();
std::string productButtonsTooltip();
std::string newButton();
std::string openButton();
std::string saveButton();
std::string targetTooltip();
std::string notesPlaceholder();
std::string saveCurrentProduct();
std::string unsavedChangesText();
std::string saveEllipsis();
std::string dontSave();
std::string cancel();
std::string productFileFilter();
std::string firmwareFileFilter();
std::string textFileFilter();

// Connection settings.
std::string speedExplanation();
std::string resetExplanation();
std::string flashModeExplanation();
std::string flashSizeExplanation();
std::string clearOTAExplanation();
std::string bootloader();
std::string speed();
std::string roomForSketch();
std::string verificationAndProduction();
std::string verifyExplanation();
std::string flashAutomatically();
std::string flashAutomaticallyExplanation();
std::string soundWhenDone();
/// n + " baud".
std::string baud(std::int64_t rate);
std::string close();

// File list.
std::string addFiles();
std::string addFilesTooltip();
std::string buildFolder();
std::string buildFolderTooltip();
std::string remove();
std::string chooseAnotherFile();
std::string columnFile();
std::string columnSketch();
std::string columnKind();
std::string columnAddress();
std::string columnSize();
std::string columnLocation();
std::string flashThisFile();
std::string addressTooltip();
std::string chooseFirmwareFiles();
std::string chooseSketch();
std::string chooseBuildFolder();
std::string noFirmwareYet();
std::string emptyHintESP();
std::string emptyHintArduino();
/// count + " partitions".
std::string partitionCount(std::int64_t count);
/// label + " (" + size + ", " + percent + " % used)".
std::string partitionUse(const std::string& label, const std::string& size, int percent);

// Status line and log.
std::string readyToFlash();
std::string addFirmwareToBegin();
std::string noPort();
/// "Flashed " + n + " · Failed " + m.
std::string counters(int flashed, int failed);
std::string logOptions();
/// "Show or hide the log (" + shortcut + ")".
std::string logToggleTooltip(const std::string& shortcut);
std::string saveLogButton();
/// "Save the log as a text file (" + shortcut + ")".
std::string saveLogTooltip(const std::string& shortcut);
std::string clearLogButton();
/// "Clear the log and counters (" + shortcut + ")".
std::string clearLogTooltip(const std::string& shortcut);
std::string ok();
} // namespace tarnwick::L10n::Window
