#include "Tarnwick/Model/SoundSink.hpp"

#include <canberra.h>

namespace tarnwick {

namespace {

class CanberraSoundSink final : public SoundSink {
public:
  CanberraSoundSink() {
    // Without a sound server or device the context stays null and every sound is silence.
    if (ca_context_create(&context_) != CA_SUCCESS) context_ = nullptr;
  }
  ~CanberraSoundSink() override {
    if (context_) ca_context_destroy(context_);
  }
  CanberraSoundSink(const CanberraSoundSink&) = delete;
  CanberraSoundSink& operator=(const CanberraSoundSink&) = delete;

  void play(const std::string& eventID) override {
    if (!context_) return;
    // A failure to play (no device, no theme file) is deliberately silence, never an error.
    ca_context_play(context_, 0, CA_PROP_EVENT_ID, eventID.c_str(), CA_PROP_APPLICATION_NAME,
                    "Tarnwick", nullptr);
  }

private:
  ca_context* context_ = nullptr;
};

} // namespace

std::shared_ptr<SoundSink> makeSystemSoundSink() { return std::make_shared<CanberraSoundSink>(); }

} // namespace tarnwick
