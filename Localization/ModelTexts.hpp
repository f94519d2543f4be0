#pragma once
// Texts of the desktop model that no other front end shows.

#include <string>

namespace tarnwick::L10n::Model {
/// The name of a port given with --test-device: "Test device (PATH)".
std::string testDevice(const std::string& path);
/// Why the application does not quit while a run is going.
std::string quitRefused();
/// Appended to the window title while the product has unsaved changes: " (edited)".
std::string editedSuffix();
} // namespace tarnwick::L10n::Model
