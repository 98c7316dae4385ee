#pragma once

#include "Platform/NetworkInterfaces.h"

namespace korvane {

/// The IPv4 and IPv6 addresses of getifaddrs(3), under the system's own interface names.
class NativeNetworkInterfaces final : public NetworkInterfaces {
public:
    [[nodiscard]] std::vector<NetworkInterface> list() const override;
};

} // namespace korvane
