#pragma once

#include <string>

namespace korvane {

/// The identifier that advertisers know the device by.
class ASIdentifierManager {
public:
    virtual ~ASIdentifierManager() = default;

    /// UUID text; all zeros where the user or the system withholds the identifier.
    [[nodiscard]] virtual std::string advertisingIdentifier() const = 0;
};

} // namespace korvane
