#pragma once
// Texts of the desktop window that the shared catalogue does not hold: the menu titles, the
// recent-documents menu, the product panel's buttons, the file dialogs' filters and "Close".

#include <cstdint>
#include <string>

namespace tarnwick::L10n::Window {
std::string fileMenu();
std::string boardMenu();
std::string viewMenu();
std::string helpMenu();
std::string openRecent();
std::string clearRecent();
std::string quit();
std::string newButton();
std::string openButton();
std::string saveButton();
std::string productFileFilter();
std::string firmwareFileFilter();
std::string textFileFilter();
std::string close();
/// Help ▸ Try with a Simulated Board: the submenu, and the explanation shown with it.
std::string trySimulatedBoard();
std::string trySimulatedBoardTooltip();
/// The submenu's entry that pulls one simulated board out again.
std::string unplugSimulatedBoard(const std::string& board, const std::string& path);
/// A log line: the file handed over during a run opens when the run has finished.
std::string opensAfterRun(const std::string& file);
} // namespace tarnwick::L10n::Window

namespace tarnwick::L10n::Find {
/// View menu: open the find bar of the log.
std::string findInLog();
std::string findNext();
std::string findPrevious();
/// The find bar's field.
std::string placeholder();
std::string previousTooltip();
std::string nextTooltip();
/// Which match is shown: "3 of 12".
std::string matchOf(std::int64_t current, std::int64_t total);
std::string noMatches();
} // namespace tarnwick::L10n::Find

namespace tarnwick::L10n::NetworkPorts {
/// The port picker's entry that asks for a port on another computer.
std::string addNetworkPort();
/// The picker's entry that forgets the selected network port.
std::string removeNetworkPort();
/// The dialog asking for the port: its title, what it is for, its fields and its button.
std::string dialogTitle();
std::string explanation();
std::string host();
std::string hostPlaceholder();
std::string tcpPort();
std::string add();
/// What is wrong with the text typed: a host that is no host name or address, a port outside
/// 1…65535, an address of another kind than rfc2217://.
std::string notAHost(const std::string& host);
std::string notAPortNumber();
std::string onlyRFC2217();
} // namespace tarnwick::L10n::NetworkPorts
