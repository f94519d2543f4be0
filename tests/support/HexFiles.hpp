#pragma once
// Intel HEX text written the way compilers write it, for tests of the reader and the importer.
// The writer itself lives with the simulated boards, which write demo sketches with it.

#include "Simulator/DemoFirmware.hpp"

namespace tarnwick::testing {
using simulator::hexRecord;
using simulator::intelHexOf;
} // namespace tarnwick::testing
