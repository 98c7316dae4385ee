#pragma once

#include "Platform/Export.h"

#include <optional>

namespace korvane {

/// Degrees: north and east are positive.
struct CLLocationCoordinate2D {
    double latitude = 0;
    double longitude = 0;
};

struct CLLocation {
    CLLocationCoordinate2D coordinate;
};

/// Whether the application may know where the device is, by the platform's numbers.
enum class CLAuthorizationStatus : int {
    notDetermined = 0,
    restricted = 1,
    denied = 2,
    authorizedAlways = 3,
    authorizedWhenInUse = 4,
};

/// The last known place of the device. Nothing here asks the user or starts a search.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT CLLocationManager {
public:
    virtual ~CLLocationManager() = default;

    [[nodiscard]] virtual CLAuthorizationStatus authorizationStatus() const = 0;

    /// The last known location, or no value before the first fix.
    [[nodiscard]] virtual std::optional<CLLocation> location() const = 0;
};

} // namespace korvane
