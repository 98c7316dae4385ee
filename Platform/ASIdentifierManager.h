#pragma once

#include "Platform/Export.h"

#include <string>

namespace korvane {

/// The identifier that advertisers know the device by.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT ASIdentifierManager {
public:
    virtual ~ASIdentifierManager() = default;

    /// UUID text; all zeros where the user or the system withholds the identifier.
    [[nodiscard]] virtual std::string advertisingIdentifier() const = 0;
};

} // namespace korvane
