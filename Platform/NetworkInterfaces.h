#pragma once

#include "Platform/Export.h"

#include <string>
#include <vector>

namespace korvane {

/// Address families by the platform's numbers, which a filling translates its system's own numbers to.
struct AddressFamily {
    static constexpr int kIPv4 = 2;
    static constexpr int kIPv6 = 30;
};

/// One address of one interface; an interface with several addresses has several entries.
struct NetworkInterface {
    std::string name;
    int family = 0;
    /// The address in numbers, as in "192.0.2.1" or "fe80::1%en0"; empty where the system gives none.
    std::string address;
};

/// The network interfaces of the device.
/// Read on the main queue, when a service is initialised; belongs to its platform and lives as long.
class KORVANE_EXPORT NetworkInterfaces {
public:
    virtual ~NetworkInterfaces() = default;

    /// All entries in the system's order; none where the system does not tell.
    [[nodiscard]] virtual std::vector<NetworkInterface> list() const = 0;
};

} // namespace korvane
