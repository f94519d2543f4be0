#pragma once
// Simulated boards as the station's tests want them.

#include "Simulator/SimulatedESP.hpp"

namespace tarnwick::testing {

/// An ESP32 on a line paced at its real speed that answers the first sync: a run of some dozen
/// kilobytes lasts about a second, long enough to be stopped, swapped or run beside another.
inline simulator::SimulatedESPOptions pacedESP32() {
  simulator::SimulatedESPOptions options;
  options.paceLine = true;
  options.syncAnswers = 1;
  return options;
}

} // namespace tarnwick::testing
