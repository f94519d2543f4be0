#pragma once
// Texts of the flashing station in the desktop window: its controls, the table of boards, the
// tally and what the station says in the log.

#include <cstdint>
#include <string>

namespace tarnwick::L10n::StationWindow {
/// View ▸ Station.
std::string menuItem();
std::string menuItemTooltip();
/// The station's button: start, the first stop, and the second (which stops the running boards).
std::string start();
std::string stop();
std::string stopNow();
std::string startTooltip();
std::string stopTooltip();
std::string stopNowTooltip();
/// The option that takes the boards connected at start too.
std::string alsoConnected();
std::string alsoConnectedTooltip();
/// The limit: its label, the value that stands for none, and its tooltip.
std::string limit();
std::string noLimit();
std::string limitTooltip();
/// The record file: its label, "None" when there is none, the button that chooses one and the
/// one that stops keeping it.
std::string recordFile();
std::string noRecordFile();
std::string chooseRecordFile();
std::string forgetRecordFile();
std::string recordFileTooltip();
/// The save dialog's title and filter.
std::string recordDialogTitle();
std::string recordFileFilter();
/// Removes the rows of finished boards.
std::string clearFinished();
/// The table's columns.
std::string portColumn();
std::string boardColumn();
std::string serialNumberColumn();
std::string chipColumn();
std::string macColumn();
std::string stageColumn();
std::string progressColumn();
std::string resultColumn();
std::string timeColumn();
/// A board's result.
std::string running();
std::string done();
std::string failed();
std::string stopped();
std::string leftAlone();
/// A board's share done: "45%", "45 %" where the language sets a space before the sign.
std::string percent(std::int64_t value);
/// The tally's four figures.
std::string flashedCount();
std::string failedCount();
std::string runningCount();
std::string boardsPerHour();
/// The line beside the Start/Stop button: what the station does now (while stopping, the
/// station's own "Stopping the running boards…").
std::string idleState();
std::string runningState();
std::string finishingState();
/// Shown over the product while the station runs.
std::string productLocked();
/// The quit refused while the station runs.
std::string stopBeforeQuitting();
/// The log's first line of a station: what is flashed onto which boards.
std::string ready(const std::string& product, std::int64_t boardsNow);
/// The first Stop with `running` boards still going.
std::string finishing(std::int64_t running);
/// The pane of one board's own lines, before a board is chosen.
std::string boardLogPlaceholder();
/// Its title: the board's lines, by port.
std::string boardLogTitle(const std::string& port);
} // namespace tarnwick::L10n::StationWindow
