#pragma once

#include "Platform/IntegrityChecks.h"
#include "Sdk/Events/Warning.h"

#include <vector>

namespace korvane {

/// Runs the checks of the device's integrity in their fixed order and logs each finding.
/// @return one warning for each finding.
[[nodiscard]] std::vector<Warning> findIntegrityWarnings(const IntegrityChecks& checks);

} // namespace korvane
