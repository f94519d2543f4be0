#pragma once
// Texts of the flashing station (`tarnwick-cli station`).

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::L10n::Station {

/// The first line: what is flashed, which boards are taken, how to stop.
std::string ready(const std::string& product, bool boardsPresentToo);
/// After `ready` for boards whose bootloader comes up as a port of its own.
std::string oneAtATime();
/// A line about one board: the port's name, then the text.
std::string aboutBoard(const std::string& board, const std::string& text);
std::string started();
std::string failed(const std::string& message);
/// The live line on a terminal: the counts, then the boards in progress with their share done;
/// `compact` leaves out the word before the boards and the commas between them.
std::string status(const std::vector<std::pair<std::string, int>>& inProgress, std::int64_t flashed,
                   std::int64_t failed, bool compact = false);
/// The first Ctrl+C with `running` boards still going.
std::string finishing(std::int64_t running);
/// The second Ctrl+C.
std::string stopping();
/// `--limit` reached: boards that succeeded or run add up to `limit`.
std::string limitReached(std::int64_t limit);
/// The last line: how many boards were flashed and how many failed.
std::string summary(std::int64_t flashed, std::int64_t failed);
/// The value `--limit` takes.
std::string limitValue();
/// `reason` is a sentence of its own cause, ending with its full stop.
std::string cannotOpenRecord(const std::string& file, const std::string& reason);
std::string cannotWriteRecord(const std::string& file, const std::string& reason);
/// Why a board is left alone: it belongs to the other family than the product's.
std::string otherFamily(bool productIsESP);
/// Why a board is left alone: its own USB came back with the serial number of the last board.
std::string sameSerialNumber();
/// Why a board is left alone: its own USB came back within the quiet time, and nothing tells it
/// from the last board.
std::string cannotTell();
/// Why a board is left alone: connected, it has the MAC address of the last board.
std::string sameBoardByMAC();
/// Why a board is left alone: the station stopped taking boards (Ctrl+C, limit, lost record).
std::string notTakingBoards();
/// The console line of a board left alone.
std::string leftAlone(const std::string& reason);
/// The record stopped being kept: no new boards.
std::string recordLost(const std::string& problem);
/// A port named with --port that is not there yet.
std::string waitingForPort(const std::string& path);
/// A network port whose server cannot be reached; `reason` is a sentence or two of its own.
std::string cannotReach(const std::string& port, const std::string& reason);
/// Standard output went away: no new boards, the running ones finished (and `recorded`).
std::string outputLost(bool recorded);
/// A port named with --port that only `--test-device` allows.
std::string needsTestDevice(const std::string& path);
/// A port named by a bare device name ("ttyUSB0"), not by its path.
std::string noDevicePath(const std::string& name);
/// After `noDevicePath`: the path under /dev it most likely means.
std::string didYouMeanDevice(const std::string& path);

} // namespace tarnwick::L10n::Station
