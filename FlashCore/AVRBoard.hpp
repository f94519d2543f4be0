#pragma once
// The Arduino boards with an AVR chip that the program can flash.

#include <array>
#include <optional>
#include <string_view>

namespace tarnwick {

/// An Arduino board, identified by the bootloader it carries.
enum class AVRBoard { uno, nano, nanoOldBootloader, mega2560, leonardo, micro, proMicro };

namespace AVRBoards {
/// Every board, in catalogue order.
inline constexpr std::array<AVRBoard, 7> all = {
    AVRBoard::uno,      AVRBoard::nano,  AVRBoard::nanoOldBootloader, AVRBoard::mega2560,
    AVRBoard::leonardo, AVRBoard::micro, AVRBoard::proMicro};
} // namespace AVRBoards

/// The raw text used in product files ("nanoOldBootloader").
std::string_view rawValue(AVRBoard board);
/// The board whose raw text is exactly `raw`.
std::optional<AVRBoard> avrBoardFromRawValue(std::string_view raw);

} // namespace tarnwick
