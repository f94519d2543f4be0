#pragma once
// What a run looks like to a person: the stage text and the log lines for each engine event.
// Shared by every front end, so the desktop log and the command line say the same words.

#include <optional>
#include <string>

#include "FlashEngine/FlashEvent.hpp"

namespace tarnwick {

/// One piece of a log line, with the kind that decides its look.
struct LogSegment {
  enum class Kind { text, timestamp, meta, request, response, warning, error, system };
  Kind kind = Kind::text;
  std::string text;
  bool operator==(const LogSegment&) const = default;
};

/// What one event changes: the stage text, and a log line to append.
struct NarratedStep {
  std::optional<std::string> stage;
  std::optional<LogSegment> line;
  /// A further line after `line`.
  std::optional<LogSegment> note = std::nullopt;
  bool operator==(const NarratedStep&) const = default;
};

/// Narrates one run from start to end. Unlike `RunNarration::narrate` it remembers the write in
/// progress: an AVR loader connects after its `writing` event, so the stage falls back to
/// "Connecting…" and must show the write again once bytes move.
class RunNarrator {
public:
  explicit RunNarrator(bool avrTarget) : avrTarget_(avrTarget) {}
  NarratedStep narrate(const FlashEvent& event);
  /// Whether the board answered during the run (so a stop may have left it partly written).
  bool boardAnswered() const { return answered_; }

private:
  bool avrTarget_;
  bool answered_ = false;
  std::optional<std::string> writeToShow_;
};

namespace RunNarration {

/// "--- Flashing <product> on <port> ---" (an unnamed product is the new-product name).
LogSegment opening(const std::string& productName, const std::string& portLabel);
/// The stage text and log line of an event. `avrTarget`: writes have no flash address.
NarratedStep narrate(const FlashEvent& event, bool avrTarget);
/// The end of a successful run: "Done" and "--- Done in N s ---".
NarratedStep succeeded(const FlashSummary& summary);
/// The end of a failed or stopped run: "Failed" and "✕ message", or "Stopped" and "✕ Stopped."
/// with the note that the board is only partly written, or that nothing was written when it
/// never answered.
NarratedStep failed(const std::string& message, bool cancelled, bool boardAnswered = true);

} // namespace RunNarration

} // namespace tarnwick
