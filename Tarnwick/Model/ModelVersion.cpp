#include "Tarnwick/Model/ModelVersion.hpp"

namespace tarnwick {
const char* applicationVersion() { return TARNWICK_VERSION; }
} // namespace tarnwick
