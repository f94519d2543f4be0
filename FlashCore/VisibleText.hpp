#pragma once
// Text that came from a product file or a device, made safe to show: on a terminal an escape
// sequence in a file name would retitle the window or clear the screen, and a bidirectional
// control would show a name reversed. Every front end passes such text through `visible`.

#include <string>
#include <string_view>

namespace tarnwick {

/// `text` as valid UTF-8 with control characters (C0, DEL, C1) shown as \xNN or \u00NN, the
/// bidirectional embedding, override and isolate controls as \u202A…, and a backslash doubled,
/// so that every escape reads back unambiguously. Everything else is kept as it is.
std::string visible(std::string_view text);

} // namespace tarnwick
