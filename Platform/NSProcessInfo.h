#pragma once

#include "Platform/Export.h"

#include <optional>
#include <string>

namespace korvane {

/// The process and the machine beneath it.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT NSProcessInfo {
public:
    virtual ~NSProcessInfo() = default;

    /// The `machine` field of uname, octet by octet as far as the field goes: zero octets may stand in it.
    [[nodiscard]] virtual std::string machine() const = 0;

    /// A variable of the process's environment, or no value where it is not set.
    [[nodiscard]] virtual std::optional<std::string> environmentVariable(const std::string& name) const = 0;
};

} // namespace korvane
