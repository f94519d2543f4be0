#pragma once
// How a simulated board turns its serial adapter's DTR and RTS lines into a reset, as the real
// board's circuit does. A pseudo-terminal has no modem lines; a board served over the network
// (RFC 2217) gets them, and through this circuit reaches its bootloader only when the reset
// sequence is right.

#include <functional>
#include <optional>

namespace tarnwick::simulator {

/// How a board wires DTR and RTS to its chip.
enum class ResetWiring {
  /// ESP boards with a USB-serial chip: two transistors pull EN low while RTS is asserted and DTR
  /// is not, and GPIO0 low while DTR is asserted and RTS is not.
  espAutoReset,
  /// ESP chips on Espressif's own USB (USB-Serial-JTAG), which read the lines as commands: RTS
  /// asserted without DTR holds the chip in reset, and the chip starts its bootloader when it
  /// leaves reset if DTR alone was asserted since the lines were last both clear.
  espUSBJTAG,
  /// Arduino boards: DTR reaches RESET through a capacitor, so asserting DTR is a short pulse
  /// that starts the bootloader.
  arduino,
};

/// What a change of the lines made the chip do.
enum class BoardStart { heldInReset, bootloader, application };

class ResetCircuit {
public:
  /// An ESP reads GPIO0 this long after EN rises (the delay of the capacitor on EN), so the two
  /// lines of one reset step must change together, not a confirmation round trip apart.
  static constexpr double strapDelaySeconds = 0.01;

  /// Both lines clear, the chip running its application. `onStart` hears every start.
  ResetCircuit(ResetWiring wiring, std::function<void(BoardStart)> onStart);

  /// A line changed at `now`, in seconds of a steady clock.
  void setDTR(bool asserted, double now) { change(asserted, rts_, now); }
  void setRTS(bool asserted, double now) { change(dtr_, asserted, now); }
  /// Time passed to `now`: a chip whose EN rose long enough ago starts. Call it before the
  /// chip gets bytes.
  void advance(double now);

  bool dtr() const { return dtr_; }
  bool rts() const { return rts_; }

private:
  void change(bool dtr, bool rts, double now);

  ResetWiring wiring_;
  std::function<void(BoardStart)> onStart_;
  bool dtr_ = false;
  bool rts_ = false;
  std::optional<double> strapSampleAt_;
  bool downloadRequested_ = false;
};

} // namespace tarnwick::simulator
