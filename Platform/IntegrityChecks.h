#pragma once

#include "Platform/Export.h"

namespace korvane {

/// What the device tells about its own integrity. Each check answers yes or no and does not fail.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT IntegrityChecks {
public:
    virtual ~IntegrityChecks() = default;

    [[nodiscard]] virtual bool isJailbroken() const = 0;
    [[nodiscard]] virtual bool isEmulator() const = 0;
    [[nodiscard]] virtual bool isDebuggerAttached() const = 0;
    [[nodiscard]] virtual bool isOSVersionSupported() const = 0;
};

} // namespace korvane
