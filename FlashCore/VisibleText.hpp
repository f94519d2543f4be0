#pragma once
// Text that came from a product file or a device, made safe to show: on a terminal an escape
// sequence in a file name would retitle the window or clear the screen, and a bidirectional
// control would show a name reversed. Every front end passes such text through `visible`.

#include <string>
#include <string_view>

namespace tarnwick {

/// `text` as valid UTF-8 with control characters (C0, DEL, C1) shown as \xNN or \u00NN and the
/// bidirectional embedding, override and isolate controls as \u202A…; everything else is kept
/// as it is. Escaping twice changes nothing, so text may pass through several front ends.
std::string visible(std::string_view text);

/// `visible` for text of several lines: line breaks are kept, everything else is escaped.
std::string visibleLines(std::string_view text);

} // namespace tarnwick
