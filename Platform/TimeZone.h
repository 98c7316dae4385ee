#pragma once

#include "Platform/Export.h"

#include <optional>
#include <string>

namespace korvane {

/// The current time zone.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT TimeZone {
public:
    virtual ~TimeZone() = default;

    /// The zone's abbreviation at the present instant, as in "CEST".
    [[nodiscard]] virtual std::optional<std::string> abbreviation() const = 0;
};

} // namespace korvane
