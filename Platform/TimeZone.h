#pragma once

#include <optional>
#include <string>

namespace korvane {

/// The current time zone.
class TimeZone {
public:
    virtual ~TimeZone() = default;

    /// The zone's abbreviation at the present instant, as in "CEST".
    [[nodiscard]] virtual std::optional<std::string> abbreviation() const = 0;
};

} // namespace korvane
