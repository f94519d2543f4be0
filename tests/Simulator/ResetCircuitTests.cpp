#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "Simulator/ResetCircuit.hpp"

using namespace tarnwick::simulator;

namespace {

// One call of a link's setLines at `time`: its changes go out back to back, asserted lines first,
// `gap` seconds apart (a client that waits for each confirmation has a round trip there).
struct Step {
  double time;
  std::optional<bool> dtr;
  std::optional<bool> rts;
  double gap = 0.0001;
};

std::vector<BoardStart> run(ResetWiring wiring, const std::vector<Step>& steps) {
  std::vector<BoardStart> starts;
  ResetCircuit circuit(wiring, [&](BoardStart how) { starts.push_back(how); });
  double last = 0;
  for (const Step& step : steps) {
    double at = step.time;
    auto apply = [&](bool isDTR, bool value) {
      isDTR ? circuit.setDTR(value, at) : circuit.setRTS(value, at);
      last = at;
      at += step.gap;
    };
    if (step.dtr == true) apply(true, true);
    if (step.rts == true) apply(false, true);
    if (step.dtr == false) apply(true, false);
    if (step.rts == false) apply(false, false);
  }
  // The first byte of a sync request, well after the sequence.
  circuit.advance(last + 0.05);
  return starts;
}

constexpr auto held = BoardStart::heldInReset;
constexpr auto bootloader = BoardStart::bootloader;
constexpr auto application = BoardStart::application;

// The engine's sequences, with its waits.
const std::vector<Step> classic = {{0.0, false, true}, {0.1, true, false}, {0.15, false, {}}};
const std::vector<Step> usbJTAG = {
    {0.0, false, false}, {0.1, true, false}, {0.2, false, true}, {0.3, false, false}};
const std::vector<Step> hardReset = {{0.0, false, true}, {0.1, {}, false}};
const std::vector<Step> arduinoReset = {{0.0, false, false}, {0.25, true, true}};

} // namespace

TEST(ResetCircuit, ReachesTheBootloaderOnlyThroughTheRightSequence) {
  struct Case {
    std::string name;
    ResetWiring wiring;
    std::vector<Step> steps;
    std::vector<BoardStart> expected;
  };
  const std::vector<Step> classicWaitingForConfirmations = {
      {0.0, false, true, 0.2}, {0.5, true, false, 0.2}, {0.9, false, {}}};
  std::vector<Step> classicThenHardReset = classic;
  for (Step step : hardReset) {
    step.time += 1.0;
    classicThenHardReset.push_back(step);
  }
  std::vector<Step> usbJTAGThenHardReset = usbJTAG;
  for (Step step : hardReset) {
    step.time += 1.0;
    usbJTAGThenHardReset.push_back(step);
  }
  const Case cases[] = {
      {"classic on two transistors", ResetWiring::espAutoReset, classic, {held, bootloader}},
      // EN rises while GPIO0 is still high: the application boots.
      {"classic, a round trip between DTR and RTS", ResetWiring::espAutoReset,
       classicWaitingForConfirmations, {held, application}},
      {"USB-JTAG sequence on two transistors", ResetWiring::espAutoReset, usbJTAG,
       {held, application}},
      {"hard reset on two transistors", ResetWiring::espAutoReset, hardReset,
       {held, application}},
      {"classic, then the hard reset at the end", ResetWiring::espAutoReset, classicThenHardReset,
       {held, bootloader, held, application}},
      {"no change at all", ResetWiring::espAutoReset, {}, {}},
      {"USB-JTAG sequence on USB-JTAG", ResetWiring::espUSBJTAG, usbJTAG, {held, bootloader}},
      {"classic on USB-JTAG", ResetWiring::espUSBJTAG, classic, {held, application}},
      {"USB-JTAG, then the hard reset", ResetWiring::espUSBJTAG, usbJTAGThenHardReset,
       {held, bootloader, held, application}},
      {"the Arduino pulse", ResetWiring::arduino, arduinoReset, {bootloader}},
      {"RTS alone on an Arduino", ResetWiring::arduino, {{0.0, {}, true}, {0.1, {}, false}}, {}},
      {"DTR held asserted gives one pulse", ResetWiring::arduino,
       {{0.0, true, {}}, {0.1, true, true}, {0.2, true, false}}, {bootloader}},
  };
  for (const Case& c : cases)
    EXPECT_EQ(run(c.wiring, c.steps), c.expected) << c.name;
}

TEST(ResetCircuit, AnESPStartsOnlyOnceItsStrapDelayHasPassed) {
  std::vector<BoardStart> starts;
  ResetCircuit circuit(ResetWiring::espAutoReset, [&](BoardStart how) { starts.push_back(how); });
  circuit.setRTS(true, 1.0);
  circuit.setDTR(true, 1.1); // EN rises, GPIO0 high for a moment
  circuit.setRTS(false, 1.1001);
  circuit.advance(1.1 + ResetCircuit::strapDelaySeconds / 2);
  EXPECT_EQ(starts, std::vector<BoardStart>{held});
  circuit.advance(1.1 + ResetCircuit::strapDelaySeconds);
  EXPECT_EQ(starts, (std::vector<BoardStart>{held, bootloader}));
  circuit.advance(5.0); // nothing more to start
  EXPECT_EQ(starts.size(), 2u);
  EXPECT_TRUE(circuit.dtr());
  EXPECT_FALSE(circuit.rts());
}
