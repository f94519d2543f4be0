#pragma once
// Texts of the desktop model that no other front end shows.

#include <string>

namespace tarnwick::L10n::Model {
/// The name of a port given with --test-device: "Test device (PATH)".
std::string testDevice(const std::string& path);
} // namespace tarnwick::L10n::Model
