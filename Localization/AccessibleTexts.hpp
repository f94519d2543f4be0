#pragma once
// What the window tells assistive technology beyond the texts it shows: names of controls that
// show no text of their own, the values of the progress bar and of the file table's cells, and
// why an address is refused.

#include <string>

namespace tarnwick::L10n::Accessible {
/// The status line, as a screen reader's command to read the status bar finds it.
std::string statusLine();
/// The progress bar of a run.
std::string progress();
/// The progress bar's value: the file being written and how far: "bootloader.bin, 45 %"; only
/// the percentage while no file is named.
std::string progressValue(const std::string& file, int percent);
/// The table of the product's files.
std::string fileTable();
/// A file's enable box: "Flash bootloader.bin".
std::string flashFile(const std::string& file);
/// The enable box's cell as read in the table: "Flash this file: yes".
std::string flashThisFileAnswer(bool on);
/// A control of a file's row named by its column: "Address of bootloader.bin".
std::string ofFile(const std::string& column, const std::string& file);
/// A "Location and checks" cell with nothing in it.
std::string nothingToReport();
/// An address field holding text that is no address: "0x1G: not a valid address".
std::string notAValidAddress(const std::string& typed);
/// The button inside a search field that empties it.
std::string clearField();
/// An empty cell of a table whose value is not known, such as a board's serial number.
std::string unknown();
/// The station's table of boards.
std::string stationTable();
/// The help window's list of topics.
std::string helpTopics();
} // namespace tarnwick::L10n::Accessible
