#pragma once
// Event loops for libgensio stacks (network serial ports and the simulated boards' server).
// Linux, gensio-specific: included only by the files that use libgensio.

#include <gensio/gensio_os_funcs.h>

namespace tarnwick {

/// A new event loop of its own, for one thread at a time; null when none can be made. Free it
/// with gensio_os_funcs_free once its stacks are freed.
///
/// libgensio keeps the first event loop it is used with for its own bookkeeping, for the life of
/// the process; a freed first loop would later be called through. So before the first new loop
/// is handed out, the library is introduced to one that is never freed.
gensio_os_funcs* newGensioEventLoop();

} // namespace tarnwick
