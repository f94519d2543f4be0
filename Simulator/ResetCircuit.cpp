#include "Simulator/ResetCircuit.hpp"

namespace tarnwick::simulator {

ResetCircuit::ResetCircuit(ResetWiring wiring, std::function<void(BoardStart)> onStart)
    : wiring_(wiring), onStart_(std::move(onStart)) {}

void ResetCircuit::advance(double now) {
  if (!strapSampleAt_ || now < *strapSampleAt_) return;
  strapSampleAt_.reset();
  const bool gpio0Low = dtr_ && !rts_;
  onStart_(gpio0Low ? BoardStart::bootloader : BoardStart::application);
}

void ResetCircuit::change(bool dtr, bool rts, double now) {
  // The lines held still until now: whatever was due by now happened with them as they were.
  advance(now);
  const bool wasDTR = dtr_;
  const bool wasReset = rts_ && !dtr_;
  dtr_ = dtr;
  rts_ = rts;
  const bool reset = rts_ && !dtr_;
  switch (wiring_) {
  case ResetWiring::espAutoReset:
    if (reset && !wasReset) {
      strapSampleAt_.reset();
      onStart_(BoardStart::heldInReset);
    } else if (!reset && wasReset) {
      strapSampleAt_ = now + strapDelaySeconds;
    }
    break;
  case ResetWiring::espUSBJTAG:
    if (reset && !wasReset) {
      onStart_(BoardStart::heldInReset);
    } else if (!reset && wasReset) {
      onStart_(downloadRequested_ ? BoardStart::bootloader : BoardStart::application);
      downloadRequested_ = false;
    }
    if (dtr_ && !rts_) downloadRequested_ = true;
    if (!dtr_ && !rts_) downloadRequested_ = false;
    break;
  case ResetWiring::arduino:
    if (dtr_ && !wasDTR) onStart_(BoardStart::bootloader);
    break;
  }
}

} // namespace tarnwick::simulator
