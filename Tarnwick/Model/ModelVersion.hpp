#pragma once
// The version the application reports (--version, the about text, the package).

namespace tarnwick {
/// The project's version, for example "0.1.0".
const char* applicationVersion();
} // namespace tarnwick
