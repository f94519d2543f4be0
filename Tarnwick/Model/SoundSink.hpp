#pragma once
// The end-of-run sounds, behind a seam so tests can listen without a sound card.

#include <memory>
#include <string>

namespace tarnwick {

class SoundSink {
public:
  /// The freedesktop sound theme's event after a successful run.
  static constexpr const char* successSound = "complete";
  /// … and after a failed one.
  static constexpr const char* failureSound = "dialog-error";

  virtual ~SoundSink() = default;
  /// Plays the sound theme's event `eventID`; a machine without sound stays silent.
  virtual void play(const std::string& eventID) = 0;
};

/// The desktop's sound theme through libcanberra.
std::shared_ptr<SoundSink> makeSystemSoundSink();

} // namespace tarnwick
