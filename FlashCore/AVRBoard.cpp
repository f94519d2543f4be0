#include "FlashCore/AVRBoard.hpp"

namespace tarnwick {

std::string_view rawValue(AVRBoard board) {
  switch (board) {
  case AVRBoard::uno: return "uno";
  case AVRBoard::nano: return "nano";
  case AVRBoard::nanoOldBootloader: return "nanoOldBootloader";
  case AVRBoard::mega2560: return "mega2560";
  case AVRBoard::leonardo: return "leonardo";
  case AVRBoard::micro: return "micro";
  case AVRBoard::proMicro: return "proMicro";
  }
  return "uno";
}

std::optional<AVRBoard> avrBoardFromRawValue(std::string_view raw) {
  for (AVRBoard board : AVRBoards::all) {
    if (rawValue(board) == raw) return board;
  }
  return std::nullopt;
}

} // namespace tarnwick
