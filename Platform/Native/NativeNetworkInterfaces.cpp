#include "Platform/Native/NativeNetworkInterfaces.h"

#include <ifaddrs.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <memory>

namespace korvane {

namespace {

/// One system's family number, the platform's number for it, and the size of the address structure in bytes.
struct FamilyRow {
    int native;
    int platform;
    socklen_t addressSize;
};

constexpr std::array<FamilyRow, 2> kFamilies{{
    {AF_INET, AddressFamily::kIPv4, sizeof(sockaddr_in)},
    {AF_INET6, AddressFamily::kIPv6, sizeof(sockaddr_in6)},
}};

std::string numericText(const sockaddr* address, socklen_t size) {
    std::array<char, NI_MAXHOST> text{};
    const int result = getnameinfo(address, size, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST);
    return result == 0 ? std::string(text.data()) : std::string();
}

} // namespace

std::vector<NetworkInterface> NativeNetworkInterfaces::list() const {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) return {};
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> owner(first, freeifaddrs);

    std::vector<NetworkInterface> interfaces;
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr) continue;
        for (const FamilyRow& family : kFamilies)
            if (entry->ifa_addr->sa_family == family.native)
                interfaces.push_back(
                    {entry->ifa_name, family.platform, numericText(entry->ifa_addr, family.addressSize)});
    }
    return interfaces;
}

} // namespace korvane
