#pragma once
// Texts of the desktop window that the shared catalogue does not hold: the menu titles, the
// recent-documents menu, the product panel's buttons, the file dialogs' filters and "Close".

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
} // namespace tarnwick::L10n::Window
